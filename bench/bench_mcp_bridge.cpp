// What the assistant bridge adds to a tool call: the same endpoint called
// straight over HTTP, and through `--mcp`'s loop (a JSON-RPC line into a
// pipe, the schema check, the forwarded request, the reply wrapped and
// written back). The endpoint answers a fixed reply of the given size.
#include <benchmark/benchmark.h>
#include <httplib.h>
#include <unistd.h>

#include <memory>
#include <string>
#include <thread>

#include "api/mcp_server.h"
#include "api/mcp_stdio.h"

namespace {

// A reply of about `bytes`, shaped like the program's.
std::string replyOfSize(size_t bytes) {
  std::string r = "{\"ok\":true,\"id\":12";
  if (bytes > r.size() + 10) r += ",\"pad\":\"" + std::string(bytes - r.size() - 10, 'x') + "\"";
  return r + "}";
}

struct TEndpoint {
  std::string reply;
  std::unique_ptr<TPWMCPServer> server;
  explicit TEndpoint(size_t bytes) : reply(replyOfSize(bytes)) {
    server = std::make_unique<TPWMCPServer>(
        0, [this](const std::string&, const std::string&, const std::string&, int&, std::string&) {
          return reply;
        });
    server->Start();
  }
};

const char* const kLineBody = "{\"x1\":0,\"y1\":0,\"x2\":100,\"y2\":50}";

void BM_EndpointDirect(benchmark::State& state) {
  TEndpoint endpoint(static_cast<size_t>(state.range(0)));
  httplib::Client cli("127.0.0.1", endpoint.server->boundPort());
  cli.set_keep_alive(true);
  cli.set_tcp_nodelay(true);
  for (auto _ : state) {
    auto r = cli.Post("/shapes/line", kLineBody, "application/json");
    if (!r || r->status != 200) state.SkipWithError("no reply");
  }
}
BENCHMARK(BM_EndpointDirect)->Arg(20)->Arg(1 << 20)->Unit(benchmark::kMicrosecond)->UseRealTime();

void BM_ToolCallThroughBridge(benchmark::State& state) {
  TEndpoint endpoint(static_cast<size_t>(state.range(0)));
  int toBridge[2], fromBridge[2];
  if (pipe(toBridge) != 0 || pipe(fromBridge) != 0) return state.SkipWithError("pipe");
  std::thread bridge([&] { runMcpStdio(endpoint.server->boundPort(), toBridge[0], fromBridge[1]); });
  const std::string call = std::string("{\"jsonrpc\":\"2.0\",\"id\":7,\"method\":\"tools/call\",\"params\":"
                                       "{\"name\":\"add_line\",\"arguments\":") +
                           kLineBody + "}}\n";
  std::string pending;
  std::vector<char> buf(1 << 16);
  for (auto _ : state) {
    if (write(toBridge[1], call.data(), call.size()) != static_cast<ssize_t>(call.size())) {
      state.SkipWithError("write");
      break;
    }
    size_t nl, searched = 0;
    ssize_t n = 1;
    while ((nl = pending.find('\n', searched)) == std::string::npos && n > 0) {
      searched = pending.size();
      n = read(fromBridge[0], buf.data(), buf.size());
      if (n > 0) pending.append(buf.data(), static_cast<size_t>(n));
    }
    if (nl == std::string::npos || pending.find("\"isError\":false", nl > 64 ? nl - 64 : 0) > nl) {
      state.SkipWithError("no reply, or a tool error");
      break;
    }
    pending.erase(0, nl + 1);
  }
  close(toBridge[1]);
  bridge.join();
  for (int fd : {toBridge[0], fromBridge[0], fromBridge[1]}) close(fd);
}
BENCHMARK(BM_ToolCallThroughBridge)->Arg(20)->Arg(1 << 20)->Unit(benchmark::kMicrosecond)->UseRealTime();

}  // namespace
