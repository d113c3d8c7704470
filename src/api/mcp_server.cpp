#include "api/mcp_server.h"

#include <httplib.h>
#include <sys/socket.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <list>
#include <mutex>
#include <stdexcept>

namespace {

constexpr const char* kJsonContentType = "application/json; charset=utf-8";
// How long Stop waits for idle keep-alive connections to notice the server
// went away before it lets their threads run out on their own.
constexpr auto kConnectionDrainLimit = std::chrono::milliseconds(300);

// One thread for each connection. The threads are detached, and each holds
// the server object alive until it ends, so that Stop never has to wait on a
// client that keeps an idle connection open.
class TThreadPerConnection : public httplib::TaskQueue {
 public:
  explicit TThreadPerConnection(std::weak_ptr<httplib::Server> server)
      : FServer(std::move(server)), FCount(std::make_shared<TCount>()) {}

  void enqueue(std::function<void()> fn) override {
    auto keepAlive = FServer.lock();
    {
      std::lock_guard<std::mutex> lock(FCount->m);
      ++FCount->active;
    }
    std::thread([fn = std::move(fn), keepAlive, count = FCount]() mutable {
      fn();
      fn = nullptr;
      std::lock_guard<std::mutex> lock(count->m);
      --count->active;
      count->cv.notify_all();
    }).detach();
  }

  void shutdown() override {
    std::unique_lock<std::mutex> lock(FCount->m);
    FCount->cv.wait_for(lock, kConnectionDrainLimit, [this] { return FCount->active == 0; });
  }

 private:
  struct TCount {
    std::mutex m;
    std::condition_variable cv;
    int active = 0;
  };
  std::weak_ptr<httplib::Server> FServer;
  std::shared_ptr<TCount> FCount;
};

}  // namespace

// State that connection threads share with the server object; it outlives
// both through shared ownership.
struct TPWMCPServer::TShared {
  TPWMCPHandler handler;
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

TPWMCPServer::TPWMCPServer(int APort, TPWMCPHandler AHandler)
    : FHandler(std::move(AHandler)), FPort(APort) {
  createServer();
}

TPWMCPServer::~TPWMCPServer() { Stop(); }

void TPWMCPServer::createServer() {
  FShared = std::make_shared<TShared>();
  FShared->handler = FHandler;
  FServer = std::make_shared<httplib::Server>();
  httplib::Server& svr = *FServer;

  // Plain address reuse for quick restarts, but never port sharing: a
  // second copy of the program must fail to bind.
  svr.set_socket_options([](socket_t sock) {
    int yes = 1;
    setsockopt(sock, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof(yes));
  });
  std::weak_ptr<httplib::Server> weak = FServer;
  svr.new_task_queue = [weak] { return new TThreadPerConnection(weak); };
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
  svr.set_pre_routing_handler([onRequest](const httplib::Request& req, httplib::Response& res) {
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
