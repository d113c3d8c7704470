#include "api/mcp_server.h"

#include <httplib.h>
#include <sys/socket.h>

#include <algorithm>
#include <atomic>
#include <cctype>
#include <string_view>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <stdexcept>

namespace {

constexpr const char* kJsonContentType = "application/json; charset=utf-8";
// How long Stop waits for idle keep-alive connections to notice the server
// went away before it lets their threads run out on their own.
constexpr auto kConnectionDrainLimit = std::chrono::milliseconds(300);
// Connections served at once; an assistant and a few scripts use a handful.
constexpr int kMaxConnectionThreads = 64;
constexpr auto kIdleThreadLife = std::chrono::seconds(30);

// The connection threads: started as connections come, at most
// kMaxConnectionThreads of them; further connections wait in the queue for
// a free one. The threads are detached, and each job holds the server object
// alive until it ends, so that Stop never has to wait on a client that keeps
// an idle connection open. A thread left idle for a while ends.
class TConnectionPool : public httplib::TaskQueue {
 public:
  explicit TConnectionPool(std::weak_ptr<httplib::Server> server)
      : FServer(std::move(server)), FState(std::make_shared<TState>()) {}

  void enqueue(std::function<void()> fn) override {
    auto keepAlive = FServer.lock();
    std::lock_guard<std::mutex> lock(FState->m);
    FState->jobs.push_back([fn = std::move(fn), keepAlive]() mutable {
      fn();
      fn = nullptr;
    });
    if (FState->jobs.size() > size_t(FState->idle) && FState->threads < kMaxConnectionThreads) {
      ++FState->threads;
      std::thread(work, FState).detach();
    }
    FState->wake.notify_one();
  }

  void shutdown() override {
    std::unique_lock<std::mutex> lock(FState->m);
    FState->shutdown = true;
    FState->wake.notify_all();
    FState->done.wait_for(lock, kConnectionDrainLimit,
                          [this] { return FState->active == 0 && FState->jobs.empty(); });
  }

 private:
  struct TState {
    std::mutex m;
    std::condition_variable wake, done;
    std::deque<std::function<void()>> jobs;
    int threads = 0, idle = 0, active = 0;
    bool shutdown = false;
  };

  static void work(std::shared_ptr<TState> state) {
    std::unique_lock<std::mutex> lock(state->m);
    while (true) {
      ++state->idle;
      state->wake.wait_for(lock, kIdleThreadLife, [&] { return !state->jobs.empty() || state->shutdown; });
      --state->idle;
      if (state->jobs.empty()) break;  // shut down, or idle too long
      auto job = std::move(state->jobs.front());
      state->jobs.pop_front();
      ++state->active;
      lock.unlock();
      job();
      job = nullptr;
      lock.lock();
      --state->active;
      state->done.notify_all();
    }
    --state->threads;
    state->done.notify_all();
  }

  std::weak_ptr<httplib::Server> FServer;
  std::shared_ptr<TState> FState;
};

}  // namespace

// State that connection threads share with the server object; it outlives
// both through shared ownership.
struct TPWMCPServer::TShared {
  TPWMCPHandler handler;
  std::vector<std::string> allowedOrigins;
  int listenSocket = -1;
  std::mutex m;
  std::condition_variable idle;
  bool stopped = false;
  int inFlight = 0;
};

std::string mcpErrorBody(const std::string& message) {
  std::string escaped;
  escaped.reserve(message.size() + 8);
  for (char c : message) {
    if (c == '"') escaped += "\\\"";
    else escaped += c;
  }
  return "{\"error\":\"" + escaped + "\"}";
}

std::string decodeUtf8(const std::string& bytes) {
  std::string out;
  out.reserve(bytes.size());
  const size_t n = bytes.size();
  size_t i = 0;
  auto cont = [&](size_t k) {
    return k < n && (static_cast<unsigned char>(bytes[k]) & 0xC0) == 0x80;
  };
  while (i < n) {
    const unsigned char c = static_cast<unsigned char>(bytes[i]);
    size_t len = 0;
    uint32_t cp = 0;
    if (c < 0x80) len = 1, cp = c;
    else if (c >= 0xC2 && c <= 0xDF) len = 2, cp = c & 0x1F;
    else if (c >= 0xE0 && c <= 0xEF) len = 3, cp = c & 0x0F;
    else if (c >= 0xF0 && c <= 0xF4) len = 4, cp = c & 0x07;
    bool ok = len > 0;
    for (size_t k = 1; ok && k < len; ++k) {
      if (!cont(i + k)) ok = false;
      else cp = (cp << 6) | (static_cast<unsigned char>(bytes[i + k]) & 0x3F);
    }
    // Reject overlong forms, surrogates and values beyond the code space.
    if (ok && ((len == 3 && (cp < 0x800 || (cp >= 0xD800 && cp <= 0xDFFF))) ||
               (len == 4 && (cp < 0x10000 || cp > 0x10FFFF))))
      ok = false;
    if (ok) {
      out.append(bytes, i, len);
      i += len;
    } else {
      out += "\xEF\xBF\xBD";
      ++i;
      while (i < n && cont(i) && len > 1) ++i, --len;  // skip the rest of a broken sequence
    }
  }
  return out;
}

namespace {

std::string lowerCase(std::string s) {
  for (char& c : s) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return s;
}

std::string trimmed(const std::string& s) {
  const size_t a = s.find_first_not_of(" \t");
  if (a == std::string::npos) return {};
  return s.substr(a, s.find_last_not_of(" \t") - a + 1);
}

bool allDigits(std::string_view s) {
  return !s.empty() && s.size() <= 5 && std::all_of(s.begin(), s.end(), [](char c) { return c >= '0' && c <= '9'; });
}

// `text` is `name` alone or followed by ":" and a port.
bool isNameWithPort(std::string_view text, std::string_view name) {
  if (text.substr(0, name.size()) != name) return false;
  const std::string_view rest = text.substr(name.size());
  return rest.empty() || (rest.front() == ':' && allDigits(rest.substr(1)));
}

}  // namespace

std::string foreignRequestRefusal(const std::string* host, const std::string* origin,
                                  const std::vector<std::string>& allowedOrigins) {
  if (host) {
    const std::string h = lowerCase(trimmed(*host));
    if (!isNameWithPort(h, "127.0.0.1") && !isNameWithPort(h, "localhost") && !isNameWithPort(h, "[::1]"))
      return "forbidden: the Host must be 127.0.0.1, localhost or [::1]";
  }
  if (origin) {
    std::string o = lowerCase(trimmed(*origin));
    if (isNameWithPort(o, "http://127.0.0.1") || isNameWithPort(o, "http://localhost")) return {};
    while (!o.empty() && o.back() == '/') o.pop_back();
    for (const std::string& allowed : allowedOrigins) {
      std::string a = lowerCase(trimmed(allowed));
      while (!a.empty() && a.back() == '/') a.pop_back();
      if (!a.empty() && a == o) return {};
    }
    return "forbidden: the Origin is not allowed (AllowedOrigins in section MCP of the options names others)";
  }
  return {};
}

TPWMCPServer::TPWMCPServer(int APort, TPWMCPHandler AHandler)
    : FHandler(std::move(AHandler)), FPort(APort) {
  createServer();
}

TPWMCPServer::~TPWMCPServer() { Stop(); }

void TPWMCPServer::setAllowedOrigins(std::vector<std::string> origins) {
  FAllowedOrigins = std::move(origins);
  if (FShared) FShared->allowedOrigins = FAllowedOrigins;
}

void TPWMCPServer::createServer() {
  FShared = std::make_shared<TShared>();
  FShared->handler = FHandler;
  FShared->allowedOrigins = FAllowedOrigins;
  FServer = std::make_shared<httplib::Server>();
  httplib::Server& svr = *FServer;

  // Plain address reuse for quick restarts, but never port sharing: a
  // second copy of the program must fail to bind.
  // The listening socket is noted, so that Start can give it a longer queue
  // than the library's five: a burst of clients connecting at once would
  // otherwise see their connections dropped and retried a second later.
  std::weak_ptr<TShared> noted = FShared;
  svr.set_socket_options([noted](socket_t sock) {
    int yes = 1;
    setsockopt(sock, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof(yes));
    if (auto shared = noted.lock()) shared->listenSocket = sock;
  });
  std::weak_ptr<httplib::Server> weak = FServer;
  svr.new_task_queue = [weak] { return new TConnectionPool(weak); };
  // Headers and body leave in separate writes; without this a client that
  // delays its acknowledgements stalls every reply on a kept-alive connection.
  svr.set_tcp_nodelay(true);
  svr.set_keep_alive_max_count(1000000);
  svr.set_keep_alive_timeout(2);
  svr.set_payload_max_length(size_t(64) << 20);
  // Replies the library writes by itself (a request it cannot read, an
  // address or a body too long) get what every reply of the API has: the
  // CORS header and a JSON body.
  svr.set_error_handler(httplib::Server::HandlerWithResponse([](const httplib::Request&, httplib::Response& res) {
    if (!res.has_header("Access-Control-Allow-Origin")) res.set_header("Access-Control-Allow-Origin", "*");
    if (res.body.empty()) {
      const char* what = res.status == 413 ? "request body too large"
                         : res.status == 414 ? "request address too long"
                         : res.status == 400 ? "bad request"
                                             : "request refused";
      res.set_content(mcpErrorBody(what), kJsonContentType);
    }
    return httplib::Server::HandlerResponse::Handled;
  }));

  auto shared = FShared;
  auto onRequest = [shared](const httplib::Request& req, httplib::Response& res) {
    if (req.method == "OPTIONS") {
      res.status = 204;
      res.set_header("Access-Control-Allow-Origin", "*");
      res.set_header("Access-Control-Allow-Methods", "GET, POST, OPTIONS");
      res.set_header("Access-Control-Allow-Headers", "Content-Type");
      return;
    }
    {
      std::lock_guard<std::mutex> lock(shared->m);
      if (shared->stopped) {
        res.status = 503;
        res.set_header("Connection", "close");
        res.set_content(mcpErrorBody("server is shutting down"), kJsonContentType);
        return;
      }
      ++shared->inFlight;
    }
    int status = 200;
    std::string contentType = kJsonContentType;
    std::string body;
    try {
      const std::string text = req.body.empty() ? std::string() : decodeUtf8(req.body);
      if (shared->handler) {
        body = shared->handler(req.method, req.path, text, status, contentType);
      } else {
        status = 500;
        body = "{\"error\":\"no handler bound\"}";
      }
    } catch (const std::exception& e) {
      status = 500;
      body = mcpErrorBody(e.what());
    } catch (...) {
      status = 500;
      body = mcpErrorBody("unknown error");
    }
    {
      std::lock_guard<std::mutex> lock(shared->m);
      --shared->inFlight;
      shared->idle.notify_all();
    }
    if (contentType.find("charset") == std::string::npos) contentType += "; charset=utf-8";
    res.status = status;
    res.set_header("Access-Control-Allow-Origin", "*");
    // What set_content does, without copying a reply that may run to tens
    // of megabytes.
    res.body = std::move(body);
    res.set_header("Content-Type", contentType);
  };
  // Two kinds of request are answered here, before the library's own
  // routing: a POST, PUT or DELETE without a Content-Length (curl -X POST
  // sends none), whose body is empty and would otherwise be refused while
  // the library looks for it; and methods the library has no routes for
  // (TRACE, CONNECT), which get the unknown-endpoint reply like any other.
  svr.set_pre_routing_handler([onRequest, shared](const httplib::Request& req, httplib::Response& res) {
    // A web page in the user's browser may not drive the drawing: refused
    // before anything else, preflights included.
    const auto header = [&req](const char* name) -> const std::string* {
      const auto it = req.headers.find(name);
      return it == req.headers.end() ? nullptr : &it->second;
    };
    const std::string refusal = foreignRequestRefusal(header("Host"), header("Origin"), shared->allowedOrigins);
    if (!refusal.empty()) {
      res.status = 403;
      res.set_header("Access-Control-Allow-Origin", "*");
      res.set_content(mcpErrorBody(refusal), kJsonContentType);
      return httplib::Server::HandlerResponse::Handled;
    }
    const std::string& m = req.method;
    const bool mayHaveBody = m == "POST" || m == "PUT" || m == "PATCH" || m == "DELETE";
    const bool routed = mayHaveBody || m == "GET" || m == "HEAD" || m == "OPTIONS";
    const bool bodyless =
        mayHaveBody && !req.has_header("Content-Length") && !req.has_header("Transfer-Encoding");
    if (routed && !bodyless) return httplib::Server::HandlerResponse::Unhandled;
    onRequest(req, res);
    return httplib::Server::HandlerResponse::Handled;
  });
  const std::string any = ".*";
  svr.Get(any, onRequest);
  svr.Post(any, onRequest);
  svr.Put(any, onRequest);
  svr.Patch(any, onRequest);
  svr.Delete(any, onRequest);
  svr.Options(any, onRequest);
}

void TPWMCPServer::Start() {
  if (FActive) return;
  if (!FServer) createServer();
  if (FPort == 0) {
    FBoundPort = FServer->bind_to_any_port(kAddress);
    if (FBoundPort <= 0) throw std::runtime_error("cannot bind a port on 127.0.0.1");
  } else {
    if (!FServer->bind_to_port(kAddress, FPort))
      throw std::runtime_error("cannot bind 127.0.0.1:" + std::to_string(FPort));
    FBoundPort = FPort;
  }
  // Linux takes a second listen() on a listening socket as a new queue length.
  if (FShared->listenSocket >= 0) ::listen(FShared->listenSocket, SOMAXCONN);
  auto server = FServer;
  FListenThread = std::thread([server] { server->listen_after_bind(); });
  // Wait until the accept loop runs, so that an early Stop is not lost.
  for (int i = 0; i < 2000 && !server->is_running(); ++i)
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  FActive = true;
}

void TPWMCPServer::Stop() {
  if (!FActive) return;
  {
    std::unique_lock<std::mutex> lock(FShared->m);
    FShared->stopped = true;
    FShared->idle.wait(lock, [this] { return FShared->inFlight == 0; });
  }
  FServer->stop();
  if (FListenThread.joinable()) FListenThread.join();
  // Connection threads that still run hold their own reference; a later
  // Start builds a fresh server.
  FServer.reset();
  FActive = false;
}
