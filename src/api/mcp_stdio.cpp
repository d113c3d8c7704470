#include "api/mcp_stdio.h"

#include <errno.h>
#include <fcntl.h>
#include <httplib.h>
#include <signal.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstring>
#include <filesystem>

#include "api/json_reply.h"
#include "api/json_schema_check.h"
#include "app/app_paths.h"
#include "app/ini_file.h"
#include "document/json_nesting.h"

namespace {

// JSON-RPC's error codes, and the protocol's own for a resource.
constexpr int kParseError = -32700;
constexpr int kInvalidRequest = -32600;
constexpr int kMethodNotFound = -32601;
constexpr int kInvalidParams = -32602;
constexpr int kInternalError = -32603;
constexpr int kResourceNotFound = -32002;

// The newest first: an initialize asking for one of these gets it, any
// other the newest.
constexpr std::array<const char*, 3> kProtocolVersions{"2025-06-18", "2025-03-26", "2024-11-05"};

// No message of this protocol nests deeper; a deeper one is not parsed.
constexpr int kMaxNesting = 64;
// A kept-alive connection idle longer than this may have been closed by
// the program: the next request opens a fresh one.
constexpr auto kIdleReconnect = std::chrono::milliseconds(1000);

struct TRpcError {
  int code;
  std::string message;
};

TMcpJson errorReply(const TMcpJson& id, int code, const std::string& message) {
  return {{"jsonrpc", "2.0"}, {"id", id}, {"error", {{"code", code}, {"message", message}}}};
}

std::string line(const TMcpJson& msg) {
  return msg.dump(-1, ' ', false, TMcpJson::error_handler_t::replace);
}

void logLine(const std::string& text) { std::fprintf(stderr, "pelwright --mcp: %s\n", text.c_str()); }

TMcpJson textContent(const std::string& text) { return {{"type", "text"}, {"text", text}}; }

// A tool's result of one text, written straight: the text may be a reply
// of megabytes, and the program's replies are ASCII already.
std::string toolResult(const std::string& text, bool isError) {
  std::string out;
  out.reserve(text.size() + text.size() / 8 + 64);
  out += "{\"content\":[{\"type\":\"text\",\"text\":";
  appendJsonString(out, text);
  out += isError ? "}],\"isError\":true}" : "}],\"isError\":false}";
  return out;
}
std::string toolError(const std::string& text) { return toolResult(text, true); }

struct TResource {
  const char* uri;
  const char* name;
  const char* title;
  const char* description;
  const char* mimeType;
  TForwardRequest request;
};

const std::vector<TResource>& resources() {
  static const std::vector<TResource> list{
      {"pelwright://document", "document", "Document summary",
       "Counts of shapes, layers and palette rows, the active line type and layer, and the "
       "bounding box of the drawing in mm (y downwards).",
       "application/json", {"GET", "/doc", ""}},
      {"pelwright://shapes", "shapes", "Shapes",
       "Every shape with its type, line type, layer, end points, centre, size, rotation and path "
       "points, in mm (y downwards).",
       "application/json", {"GET", "/paths", ""}},
      {"pelwright://picture/view", "picture-view", "Picture of the view",
       "PNG of what the program's canvas shows now.", "image/png",
       {"POST", "/render", "{\"area\":\"view\"}"}},
      {"pelwright://picture/drawing", "picture-drawing", "Picture of the whole drawing",
       "PNG of every shape with a 5 mm margin.", "image/png",
       {"POST", "/render", "{\"area\":\"drawing\"}"}},
  };
  return list;
}

// The reply's JSON object, or null when the body is none.
TMcpJson replyObject(const std::string& body) {
  TMcpJson j = TMcpJson::parse(body, nullptr, false);
  return j.is_object() ? j : TMcpJson();
}

// Whether a reply of the program is a refusal. Its replies write their keys
// in a fixed order, and a refusal begins with "error" or "ok":false, so the
// head tells without parsing a reply that may run to megabytes.
bool isRefusal(const std::string& body) {
  const size_t start = body.find_first_not_of(" \t\r\n");
  if (start == std::string::npos || body[start] != '{') return true;
  const std::string_view head(body.data() + start, std::min<size_t>(body.size() - start, 64));
  return head.rfind("{\"error\"", 0) == 0 || head.rfind("{\"ok\":false", 0) == 0;
}

bool writeAll(int fd, const std::string& text) {
  size_t done = 0;
  while (done < text.size()) {
    const ssize_t n = ::write(fd, text.data() + done, text.size() - done);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) return false;
    done += static_cast<size_t>(n);
  }
  return true;
}

}  // namespace

TMcpBridge::TMcpBridge(int apiPort) : FPort(apiPort) {}
TMcpBridge::~TMcpBridge() = default;

std::string TMcpBridge::tooLargeLine() {
  return line(errorReply(nullptr, kInvalidRequest,
                         "Invalid Request: message longer than " +
                             std::to_string(kMaxMcpMessageBytes >> 20) + " MB, not read"));
}

std::string TMcpBridge::handleLine(const std::string& text) {
  if (text.find_first_not_of(" \t\r\n") == std::string::npos) return {};
  if (!jsonNestingWithin(text, kMaxNesting))
    return line(errorReply(nullptr, kParseError, "Parse error: nested too deeply"));
  const TMcpJson msg = TMcpJson::parse(text, nullptr, false);
  if (msg.is_discarded()) return line(errorReply(nullptr, kParseError, "Parse error: not a JSON text"));
  if (!msg.is_array()) return handleMessage(msg);
  // A batch, as clients of the 2025-03-26 version may send.
  if (msg.empty()) return line(errorReply(nullptr, kInvalidRequest, "Invalid Request: empty batch"));
  std::string replies;
  for (const TMcpJson& one : msg) {
    const std::string reply = handleMessage(one);
    if (reply.empty()) continue;
    replies += replies.empty() ? "[" : ",";
    replies += reply;
  }
  return replies.empty() ? replies : replies + "]";
}

std::string TMcpBridge::handleMessage(const TMcpJson& msg) {
  auto error = [](const TMcpJson& id, int code, const std::string& message) {
    return line(errorReply(id, code, message));
  };
  if (!msg.is_object()) return error(nullptr, kInvalidRequest, "Invalid Request: not a JSON object");
  const bool hasId = msg.contains("id");
  const bool goodId = hasId && (msg["id"].is_string() || msg["id"].is_number());
  const TMcpJson id = goodId ? msg["id"] : TMcpJson();
  if (!msg.contains("method")) {
    // A client's answer to a request of ours; this server sends none.
    if (hasId && (msg.contains("result") || msg.contains("error"))) return {};
    return error(id, kInvalidRequest, "Invalid Request: no method");
  }
  if (!msg.contains("jsonrpc") || msg["jsonrpc"] != "2.0")
    return error(id, kInvalidRequest, "Invalid Request: \"jsonrpc\" must be \"2.0\"");
  if (!msg["method"].is_string())
    return error(id, kInvalidRequest, "Invalid Request: \"method\" must be a string");
  // Notifications (initialized, cancelled, ...) need nothing of this server.
  if (!hasId) return {};
  if (!goodId) return error(nullptr, kInvalidRequest, "Invalid Request: \"id\" must be a string or a number");
  const TMcpJson params = msg.contains("params") ? msg["params"] : TMcpJson::object();
  if (!params.is_object()) return error(id, kInvalidParams, "Invalid params: \"params\" must be an object");
  const std::string method = msg["method"].get<std::string>();
  try {
    const std::string result = dispatch(method, params);
    std::string reply = "{\"jsonrpc\":\"2.0\",\"id\":" + line(id) + ",\"result\":";
    reply.reserve(reply.size() + result.size() + 2);
    reply += result;
    reply += '}';
    return reply;
  } catch (const TRpcError& e) {
    if (e.code != kMethodNotFound) logLine(method + ": " + e.message);
    return error(id, e.code, e.message);
  } catch (const std::exception& e) {
    logLine(method + ": " + e.what());
    return error(id, kInternalError, std::string("Internal error: ") + e.what());
  }
}

std::string TMcpBridge::dispatch(const std::string& method, const TMcpJson& params) {
  if (method == "initialize") return line(initialize(params));
  if (method == "ping") return "{}";
  if (method == "tools/list") return line(listTools());
  if (method == "tools/call") return callTool(params);
  if (method == "resources/list") return line(listResources());
  if (method == "resources/read") return line(readResource(params));
  if (method == "resources/templates/list") return "{\"resourceTemplates\":[]}";
  throw TRpcError{kMethodNotFound, "Method not found: " + method};
}

TMcpJson TMcpBridge::initialize(const TMcpJson& params) {
  FProtocolVersion = kProtocolVersions.front();
  if (params.contains("protocolVersion") && params["protocolVersion"].is_string())
    for (const char* v : kProtocolVersions)
      if (params["protocolVersion"] == v) FProtocolVersion = v;
  return {{"protocolVersion", FProtocolVersion},
          {"capabilities",
           {{"tools", {{"listChanged", false}}}, {"resources", {{"subscribe", false}, {"listChanged", false}}}}},
          {"serverInfo", {{"name", "pelwright"}, {"title", "Pelwright"}, {"version", PELWRIGHT_VERSION}}},
          {"instructions", kMcpInstructions}};
}

TMcpJson TMcpBridge::listTools() const {
  TMcpJson tools = TMcpJson::array();
  for (const TMcpTool& t : mcpTools()) {
    tools.push_back({{"name", t.name},
                     {"title", t.title},
                     {"description", t.description},
                     {"inputSchema", t.inputSchema},
                     {"annotations",
                      {{"title", t.title},
                       {"readOnlyHint", t.readOnly},
                       {"destructiveHint", t.destructive},
                       {"idempotentHint", t.readOnly || t.idempotent},
                       {"openWorldHint", false}}}});
  }
  return {{"tools", tools}};
}

std::string TMcpBridge::callTool(const TMcpJson& params) {
  if (!params.contains("name") || !params["name"].is_string())
    throw TRpcError{kInvalidParams, "Invalid params: \"name\" must name a tool"};
  const std::string name = params["name"].get<std::string>();
  const TMcpTool* tool = findMcpTool(name);
  if (!tool) throw TRpcError{kInvalidParams, "Unknown tool: " + name};
  TMcpJson args = params.contains("arguments") ? params["arguments"] : TMcpJson::object();
  if (args.is_null()) args = TMcpJson::object();
  std::string problem = schemaMismatch(tool->inputSchema, args);
  TForwardRequest req;
  if (problem.empty()) req = forwardRequestFor(*tool, args, problem);
  if (!problem.empty()) throw TRpcError{kInvalidParams, "Invalid arguments for " + name + ": " + problem};

  const THttpOutcome out = send(req);
  if (!out.reached) return toolError(unreachableText(out.failure));
  const std::string endpoint = req.method + " " + req.path;
  if (out.status == 404)
    return toolError("The running Pelwright does not offer " + endpoint +
                     " (it is another version than this bridge), so nothing was done.");
  if (out.status != 200)
    return toolError("Pelwright could not carry out " + endpoint + " (HTTP " + std::to_string(out.status) +
                     "): " + out.body);
  if (isRefusal(out.body)) return toolError(out.body);
  if (tool->picture) {
    TMcpJson reply = replyObject(out.body);
    if (!reply.contains("png") || !reply["png"].is_string()) return toolError(out.body);
    TMcpJson image = {{"type", "image"}, {"data", reply["png"]}, {"mimeType", "image/png"}};
    reply.erase("png");
    return line({{"content", TMcpJson::array({std::move(image), textContent(reply.dump())})}, {"isError", false}});
  }
  return toolResult(out.body, false);
}

TMcpJson TMcpBridge::listResources() const {
  TMcpJson list = TMcpJson::array();
  for (const TResource& r : resources())
    list.push_back({{"uri", r.uri},
                    {"name", r.name},
                    {"title", r.title},
                    {"description", r.description},
                    {"mimeType", r.mimeType}});
  return {{"resources", list}};
}

TMcpJson TMcpBridge::readResource(const TMcpJson& params) {
  if (!params.contains("uri") || !params["uri"].is_string())
    throw TRpcError{kInvalidParams, "Invalid params: \"uri\" must be a string"};
  const std::string uri = params["uri"].get<std::string>();
  for (const TResource& r : resources()) {
    if (uri != r.uri) continue;
    const THttpOutcome out = send(r.request);
    if (!out.reached) throw TRpcError{kInternalError, unreachableText(out.failure)};
    if (out.status != 200 || isRefusal(out.body))
      throw TRpcError{kInternalError, "Pelwright refused " + r.request.method + " " + r.request.path + ": " + out.body};
    TMcpJson content = {{"uri", uri}, {"mimeType", r.mimeType}};
    if (std::string(r.mimeType) == "image/png") content["blob"] = replyObject(out.body).value("png", "");
    else content["text"] = out.body;
    return {{"contents", TMcpJson::array({std::move(content)})}};
  }
  throw TRpcError{kResourceNotFound, "Resource not found: " + uri};
}

TMcpBridge::THttpOutcome TMcpBridge::send(const TForwardRequest& req) {
  const auto now = std::chrono::steady_clock::now();
  if (!FClient || now - FLastRequest > kIdleReconnect) {
    FClient = std::make_unique<httplib::Client>("127.0.0.1", FPort);
    FClient->set_keep_alive(true);
    FClient->set_tcp_nodelay(true);
    FClient->set_connection_timeout(2, 0);
    // A long search in the program answers late, but it answers.
    FClient->set_read_timeout(600, 0);
    FClient->set_write_timeout(30, 0);
  }
  FLastRequest = now;
  const char* type = "application/json";
  httplib::Client& cli = *FClient;
  httplib::Result res = req.method == "GET"   ? cli.Get(req.path)
                        : req.method == "PUT" ? cli.Put(req.path, req.body, type)
                        : req.method != "DELETE" ? cli.Post(req.path, req.body, type)
                        : req.body.empty()       ? cli.Delete(req.path)
                                                 : cli.Delete(req.path, req.body, type);
  FLastRequest = std::chrono::steady_clock::now();
  THttpOutcome out;
  if (!res) {
    out.failure = httplib::to_string(res.error());
    FClient.reset();
    return out;
  }
  out.reached = true;
  out.status = res->status;
  out.body = std::move(res->body);
  return out;
}

std::string TMcpBridge::unreachableText(const std::string& failure) const {
  const std::string options = joinPath(defaultAppDataPath(), "pw_options.ini");
  bool enabled = false;
  try {
    if (std::filesystem::exists(options)) enabled = TIniFile(options).ReadBool("MCP", "EnableServer", false);
  } catch (...) {
  }
  std::string text = "Pelwright is not answering on 127.0.0.1:" + std::to_string(FPort) + " (" + failure +
                     "), so nothing was done. ";
  if (enabled)
    text += "Its local API is switched on in " + options +
            ", so the program is probably not running: start it (the window, or `pelwright --headless` "
            "without one).";
  else
    text += "Switch its local API on: add the two lines\n[MCP]\nEnableServer=1\nto " + options +
            ", then start the program (the window, or `pelwright --headless` without one); a copy "
            "already running must be started again.";
  text += " If it listens on another port (--api-port N), start this server with `pelwright --mcp "
          "--api-port N`.";
  return text;
}

int runMcpStdio(int apiPort, int inFd, int outFd) {
  TMcpBridge bridge(apiPort);
  std::string pending;
  bool skipping = false;  // inside a line too long to read
  std::vector<char> buf(size_t(1) << 16);
  auto answer = [&](std::string reply) {
    if (reply.empty()) return true;
    reply += '\n';
    return writeAll(outFd, reply);
  };
  // Large replies leave in fewer, larger writes when the output is a pipe.
  ::fcntl(outFd, F_SETPIPE_SZ, 1 << 20);
  auto handle = [&](const std::string& text) {
    try {
      return answer(bridge.handleLine(text));
    } catch (const std::exception& e) {
      logLine(e.what());
      return answer(line(errorReply(nullptr, kInternalError, std::string("Internal error: ") + e.what())));
    }
  };
  for (;;) {
    const ssize_t n = ::read(inFd, buf.data(), buf.size());
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) break;
    const char* p = buf.data();
    const char* end = p + n;
    while (p < end) {
      const char* nl = static_cast<const char*>(std::memchr(p, '\n', static_cast<size_t>(end - p)));
      const char* stop = nl ? nl : end;
      if (!skipping) {
        pending.append(p, stop);
        if (pending.size() > kMaxMcpMessageBytes) {
          logLine("a message longer than the limit was skipped");
          pending.clear();
          pending.shrink_to_fit();
          skipping = true;
          if (!answer(TMcpBridge::tooLargeLine())) return 0;
        }
      }
      if (nl) {
        if (!skipping && !handle(pending)) return 0;
        pending.clear();
        skipping = false;
      }
      p = nl ? nl + 1 : end;
    }
  }
  if (!skipping && !pending.empty()) handle(pending);
  return 0;
}

int runMcpOnStandardStreams(int apiPort) {
  // A client that goes away must end the writes, not the process by signal.
  ::signal(SIGPIPE, SIG_IGN);
  const int protocolOut = ::dup(STDOUT_FILENO);
  if (protocolOut < 0) return 1;
  ::dup2(STDERR_FILENO, STDOUT_FILENO);
  logLine("serving on standard input and output; tool calls go to 127.0.0.1:" + std::to_string(apiPort));
  const int rc = runMcpStdio(apiPort, STDIN_FILENO, protocolOut);
  ::close(protocolOut);
  return rc;
}
