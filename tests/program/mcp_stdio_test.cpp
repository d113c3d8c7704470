// `pelwright --mcp` as an assistant runs it: a child process spoken to
// through its standard input and output, in front of a real headless
// program.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <zlib.h>

#include <nlohmann/json.hpp>
#include <set>

#include "api/json_schema_check.h"
#include "api/mcp_routes.h"
#include "api/mcp_tools.h"
#include "app/frm_pelw.h"
#include "test_support.h"

extern char** environ;

namespace {

using json = nlohmann::json;

// The bridge with pipes on its standard input and output.
class TMcpClient {
 public:
  TMcpClient(int apiPort, const std::string& home) {
    int in[2], out[2];
    if (pipe(in) != 0 || pipe(out) != 0) throw std::runtime_error("pipe");
    posix_spawn_file_actions_t fa;
    posix_spawn_file_actions_init(&fa);
    posix_spawn_file_actions_adddup2(&fa, in[0], 0);
    posix_spawn_file_actions_adddup2(&fa, out[1], 1);
    posix_spawn_file_actions_addopen(&fa, 2, "/dev/null", O_WRONLY, 0);
    for (int fd : {in[0], in[1], out[0], out[1]}) posix_spawn_file_actions_addclose(&fa, fd);
    std::vector<std::string> store{PELWRIGHT_BINARY, "--mcp", "--api-port", std::to_string(apiPort)};
    std::vector<char*> argv;
    for (auto& a : store) argv.push_back(a.data());
    argv.push_back(nullptr);
    std::vector<std::string> envStore{"XDG_DATA_HOME=" + home};
    for (char** e = environ; *e; ++e) envStore.emplace_back(*e);
    std::vector<char*> envp;
    for (auto& e : envStore) envp.push_back(e.data());
    envp.push_back(nullptr);
    if (posix_spawn(&FPid, PELWRIGHT_BINARY, &fa, nullptr, argv.data(), envp.data()) != 0)
      throw std::runtime_error("cannot start the bridge");
    posix_spawn_file_actions_destroy(&fa);
    close(in[0]);
    close(out[1]);
    FIn = in[1];
    FOut = out[0];
  }
  ~TMcpClient() {
    close(FIn);
    close(FOut);
    kill(FPid, SIGKILL);
    waitpid(FPid, nullptr, 0);
  }
  void send(const std::string& text) {
    for (size_t done = 0; done < text.size();) {
      const ssize_t n = write(FIn, text.data() + done, text.size() - done);
      ASSERT_GT(n, 0);
      done += static_cast<size_t>(n);
    }
  }
  // The next line of output, or "" after 20 s.
  std::string readLine() {
    for (;;) {
      const size_t nl = FBuffer.find('\n');
      if (nl != std::string::npos) {
        std::string line = FBuffer.substr(0, nl);
        FBuffer.erase(0, nl + 1);
        return line;
      }
      pollfd p{FOut, POLLIN, 0};
      if (poll(&p, 1, 20000) <= 0) return {};
      char buf[65536];
      const ssize_t n = read(FOut, buf, sizeof buf);
      if (n <= 0) return {};
      FBuffer.append(buf, static_cast<size_t>(n));
    }
  }
  json reply(const std::string& text) {
    send(text + "\n");
    const std::string line = readLine();
    EXPECT_TRUE(json::accept(line)) << "not a protocol message: " << line.substr(0, 200);
    return json::parse(line, nullptr, false);
  }
  json call(int id, const std::string& method, const json& params = json::object()) {
    return reply(json{{"jsonrpc", "2.0"}, {"id", id}, {"method", method}, {"params", params}}.dump());
  }
  json tool(int id, const std::string& name, const json& args) {
    return call(id, "tools/call", {{"name", name}, {"arguments", args}});
  }

 private:
  pid_t FPid = -1;
  int FIn = -1, FOut = -1;
  std::string FBuffer;
};

std::string text(const json& toolReply) { return toolReply["result"]["content"][0].value("text", ""); }

std::string base64Decode(const std::string& s) {
  static const std::string digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string out;
  unsigned value = 0;
  int bits = 0;
  for (char c : s) {
    const size_t d = digits.find(c);
    if (d == std::string::npos) break;
    value = (value << 6) | static_cast<unsigned>(d);
    bits += 6;
    if (bits >= 8) out += static_cast<char>((value >> (bits -= 8)) & 0xFF);
  }
  return out;
}

// Width and height of a PNG whose chunks check out and whose pixel data
// inflates to exactly the rows of that size; 0 x 0 otherwise.
std::pair<int, int> decodedPngSize(const std::string& png) {
  auto be32 = [&](size_t at) {
    return static_cast<uint32_t>(static_cast<unsigned char>(png[at])) << 24 |
           static_cast<unsigned char>(png[at + 1]) << 16 | static_cast<unsigned char>(png[at + 2]) << 8 |
           static_cast<unsigned char>(png[at + 3]);
  };
  if (png.size() < 33 || png.compare(0, 8, "\x89PNG\r\n\x1a\n") != 0) return {0, 0};
  const uint32_t w = be32(16), h = be32(20);
  const int channels = png[25] == 2 ? 3 : png[25] == 6 ? 4 : 0;
  if (png[24] != 8 || channels == 0) return {0, 0};
  std::string idat;
  for (size_t at = 8; at + 12 <= png.size();) {
    const uint32_t len = be32(at);
    if (at + 12 + len > png.size()) return {0, 0};
    const auto* type = reinterpret_cast<const Bytef*>(png.data() + at + 4);
    if (crc32(0, type, len + 4) != be32(at + 8 + len)) return {0, 0};
    if (png.compare(at + 4, 4, "IDAT") == 0) idat.append(png, at + 8, len);
    at += 12 + len;
  }
  std::string rows(static_cast<size_t>(h) * (1 + w * channels) + 1, '\0');
  uLongf size = rows.size();
  if (uncompress(reinterpret_cast<Bytef*>(rows.data()), &size, reinterpret_cast<const Bytef*>(idat.data()),
                 idat.size()) != Z_OK ||
      size != rows.size() - 1)
    return {0, 0};
  return {static_cast<int>(w), static_cast<int>(h)};
}

// The structure of a schema as the tools use it; JSON Schema's own rules
// for each keyword, and every default valid against its own schema.
void expectWellFormedSchema(const json& s, const std::string& where) {
  static const std::set<std::string> keywords{"type",  "description", "properties", "required", "additionalProperties",
                                              "minimum", "maximum",   "default",    "enum",     "items",
                                              "minItems", "maxItems"};
  static const std::set<std::string> types{"object", "array", "string", "number", "integer", "boolean"};
  ASSERT_TRUE(s.is_object()) << where;
  for (const auto& [k, v] : s.items()) EXPECT_TRUE(keywords.count(k)) << where << ": keyword " << k;
  ASSERT_TRUE(s.contains("type") && s["type"].is_string() && types.count(s["type"])) << where;
  if (s.contains("description")) EXPECT_TRUE(s["description"].is_string()) << where;
  if (s.contains("minimum") && s.contains("maximum")) EXPECT_LE(s["minimum"], s["maximum"]) << where;
  if (s.contains("enum")) EXPECT_TRUE(s["enum"].is_array() && !s["enum"].empty()) << where;
  if (s["type"] == "array") expectWellFormedSchema(s["items"], where + "[]");
  if (s["type"] == "object") {
    ASSERT_TRUE(s["properties"].is_object()) << where;
    for (const auto& [k, v] : s["properties"].items()) expectWellFormedSchema(v, where + "." + k);
    for (const auto& r : s.value("required", json::array()))
      EXPECT_TRUE(r.is_string() && s["properties"].contains(r.get<std::string>())) << where << " requires " << r;
    if (s.contains("additionalProperties")) EXPECT_TRUE(s["additionalProperties"].is_boolean()) << where;
  }
  if (s.contains("default"))
    EXPECT_EQ(schemaMismatch(TMcpJson::parse(s.dump()), TMcpJson::parse(s["default"].dump())), "") << where;
}

}  // namespace

TEST(McpOverPipes, AnAssistantLaysARowAndLooksAtItThroughTheRunningProgram) {
  TTempDir home;
  writeTextFile(home.file("pelwright/pw_options.ini"), "[MCP]\nEnableServer=1\n");
  const int port = freeLoopbackPort();
  TChildProcess program(PELWRIGHT_BINARY, {"--headless", "--api-port", std::to_string(port)},
                        {"XDG_DATA_HOME=" + home.path(), "XDG_RUNTIME_DIR=" + home.path()});
  ASSERT_TRUE(waitForPort(port, 10000));
  TMcpClient mcp(port, home.path());

  json r = mcp.call(1, "initialize", {{"protocolVersion", "2024-11-05"}, {"capabilities", json::object()}});
  EXPECT_EQ(r["result"]["protocolVersion"], "2024-11-05");
  r = mcp.call(2, "initialize", {{"protocolVersion", "2025-06-18"}, {"capabilities", json::object()}});
  EXPECT_EQ(r["result"]["protocolVersion"], "2025-06-18");
  EXPECT_TRUE(r["result"]["capabilities"].contains("tools"));
  EXPECT_EQ(r["result"]["serverInfo"]["name"], "pelwright");
  mcp.send(R"({"jsonrpc":"2.0","method":"notifications/initialized"})" "\n");
  EXPECT_EQ(mcp.call(3, "ping"), json::parse(R"({"jsonrpc":"2.0","id":3,"result":{}})"));

  // Every route of the program is a tool, and every schema is well formed.
  r = mcp.call(4, "tools/list");
  std::set<std::string> listed;
  for (const json& t : r["result"]["tools"]) {
    listed.insert(t["name"].get<std::string>());
    EXPECT_FALSE(t.value("description", "").empty()) << t["name"];
    expectWellFormedSchema(t["inputSchema"], t["name"].get<std::string>());
  }
  TfrmPelw form;
  for (const TMcpRoute& route : buildMcpRoutes(form)) {
    const TMcpTool* tool = mcpToolForRoute(route);
    ASSERT_NE(tool, nullptr) << "no tool for the route " << route.method << " " << route.path;
    EXPECT_TRUE(listed.count(tool->name)) << tool->name;
  }

  // A card slot: a 90 x 60 rectangle, stitched round at 3.85 mm.
  const double corners[4][2] = {{0, 0}, {90, 0}, {90, 60}, {0, 60}};
  for (int i = 0; i < 4; ++i) {
    r = mcp.tool(10 + i, "add_line",
                 {{"x1", corners[i][0]}, {"y1", corners[i][1]}, {"x2", corners[(i + 1) % 4][0]},
                  {"y2", corners[(i + 1) % 4][1]}});
    EXPECT_EQ(r["result"]["isError"], false) << r.dump();
  }
  r = mcp.tool(20, "stitch_loop", {{"pointOnLoop", {{"x", 45}, {"y", 0}}}, {"pitchMm", 3.85}});
  ASSERT_EQ(r["result"]["isError"], false) << r.dump();
  const json row = json::parse(text(r));
  EXPECT_GT(row["holeCount"].get<int>(), 70);
  r = mcp.tool(21, "list_shapes", json::object());
  std::vector<int> holes;
  const json shapes = json::parse(text(r));
  for (const json& s : shapes["paths"])
    if (s["shapeType"] == "S_HOLE") holes.push_back(s["id"]);
  EXPECT_EQ(holes, row["createdIds"].get<std::vector<int>>());
  r = mcp.call(22, "resources/read", {{"uri", "pelwright://document"}});
  EXPECT_EQ(json::parse(r["result"]["contents"][0]["text"].get<std::string>())["shapeCount"], 4 + holes.size());

  // A refusal of the program is the tool's error, not the protocol's.
  r = mcp.tool(30, "get_shape", {{"id", 99999}});
  EXPECT_EQ(r["result"]["isError"], true);
  EXPECT_EQ(text(r), R"({"error":"shape not found","id":99999})");

  r = mcp.tool(40, "render_picture", {{"area", "drawing"}, {"width", 320}, {"height", 200}});
  ASSERT_EQ(r["result"]["content"][0]["type"], "image") << r.dump().substr(0, 300);
  EXPECT_EQ(r["result"]["content"][0]["mimeType"], "image/png");
  EXPECT_EQ(decodedPngSize(base64Decode(r["result"]["content"][0]["data"])), std::make_pair(320, 200));
  r = mcp.call(41, "resources/read", {{"uri", "pelwright://picture/view"}});
  EXPECT_EQ(decodedPngSize(base64Decode(r["result"]["contents"][0]["blob"])),
            std::make_pair(TfrmPelw::kHeadlessCanvasWidth, TfrmPelw::kHeadlessCanvasHeight));
}

TEST(McpOverPipes, WithoutTheProgramACallIsAToolErrorThatSaysWhatToDo) {
  TTempDir home;
  TMcpClient mcp(freeLoopbackPort(), home.path());
  const json r = mcp.tool(1, "get_document", json::object());
  EXPECT_EQ(r["result"]["isError"], true);
  EXPECT_NE(text(r).find("EnableServer=1"), std::string::npos) << text(r);
  EXPECT_NE(text(r).find(home.file("pelwright/pw_options.ini")), std::string::npos) << text(r);
  EXPECT_NE(text(r).find("--headless"), std::string::npos);
  EXPECT_EQ(mcp.call(2, "ping")["result"], json::object());
}

TEST(McpOverPipes, BadInputGetsTheProtocolsErrorsAndServingGoesOn) {
  TTempDir home;
  TMcpClient mcp(freeLoopbackPort(), home.path());
  auto code = [](const json& r) { return r["error"].value("code", 0); };
  EXPECT_EQ(code(mcp.reply("this is not JSON")), -32700);
  EXPECT_EQ(code(mcp.reply(std::string(100000, '[') + std::string(100000, ']'))), -32700);
  for (const char* id : {"{\"a\":1}", "true", "null", "[1]"}) {
    const json r = mcp.reply(std::string(R"({"jsonrpc":"2.0","method":"ping","id":)") + id + "}");
    EXPECT_EQ(code(r), -32600) << id;
    EXPECT_TRUE(r["id"].is_null());
  }
  EXPECT_EQ(code(mcp.reply(R"({"id":1,"method":"ping"})")), -32600);
  EXPECT_EQ(code(mcp.reply("[]")), -32600);
  EXPECT_EQ(code(mcp.call(1, "no/such/method")), -32601);
  EXPECT_EQ(code(mcp.tool(2, "no_such_tool", json::object())), -32602);
  EXPECT_EQ(code(mcp.tool(3, "add_line", {{"x1", 0}, {"y1", 0}, {"x2", 1}})), -32602);
  EXPECT_EQ(code(mcp.tool(4, "add_line", {{"x1", "0"}, {"y1", 0}, {"x2", 1}, {"y2", 1}})), -32602);
  EXPECT_EQ(code(mcp.tool(5, "add_circle", {{"cx", 0}, {"cy", 0}, {"r", 5}, {"colour", "red"}})), -32602);
  EXPECT_EQ(code(mcp.tool(6, "stitch_along_path",
                          {{"startPoint", {{"x", 0}, {"y", 0}}}, {"endPoint", {{"x", 1e7}, {"y", 0}}}})),
            -32602);
  EXPECT_EQ(code(mcp.tool(7, "delete_shapes", json::object())), -32602);
  // A batch answers each request in it, and nothing for a notification.
  const json batch = mcp.reply(R"([{"jsonrpc":"2.0","id":8,"method":"ping"},{"jsonrpc":"2.0","method":"x"}])");
  EXPECT_EQ(batch, json::parse(R"([{"jsonrpc":"2.0","id":8,"result":{}}])"));
  // 100 MB in one line is refused without being read whole.
  mcp.send(R"({"jsonrpc":"2.0","id":9,"method":"ping","params":{"pad":")");
  const std::string megabyte(1 << 20, 'x');
  for (int i = 0; i < 100; ++i) mcp.send(megabyte);
  mcp.send("\"}}\n");
  const json big = json::parse(mcp.readLine(), nullptr, false);
  EXPECT_EQ(code(big), -32600);
  EXPECT_EQ(mcp.call(10, "ping")["id"], 10);
}
