// Requests a second through the local API over kept-alive connections, with
// every request handed to a main thread as the program does.
#include <benchmark/benchmark.h>
#include <httplib.h>

#include <atomic>
#include <future>
#include <thread>

#include "api/mcp_routes.h"
#include "api/mcp_server.h"
#include "platform/main_thread.h"

namespace {

// A main thread that serves queued calls, and a server whose handler runs
// the info document route there.
struct TServedLoop {
  std::atomic<bool> stop{false};
  TMainThreadCalls* calls = nullptr;
  std::thread mainThread;
  std::unique_ptr<TPWMCPServer> server;

  TServedLoop() {
    std::promise<TMainThreadCalls*> ready;
    mainThread = std::thread([this, &ready] {
      TMainThreadCalls local;
      ready.set_value(&local);
      while (!stop) local.waitAndDrain(5);
      local.cancelPending();
    });
    calls = ready.get_future().get();
    server = std::make_unique<TPWMCPServer>(
        0, [this](const std::string&, const std::string&, const std::string&, int&, std::string&) {
          std::string out;
          calls->runSync([&out] { out = kMcpInfoDocument; });
          return out;
        });
    server->Start();
  }
  ~TServedLoop() {
    calls->close();
    server->Stop();
    stop = true;
    mainThread.join();
  }
};

void BM_GetInfoKeepAlive(benchmark::State& state) {
  static TServedLoop loop;
  const int clients = static_cast<int>(state.range(0));
  constexpr int kPerClient = 500;
  for (auto _ : state) {
    std::vector<std::future<int>> f;
    for (int c = 0; c < clients; ++c) {
      f.push_back(std::async(std::launch::async, [] {
        httplib::Client cli("127.0.0.1", loop.server->boundPort());
        cli.set_keep_alive(true);
        cli.set_tcp_nodelay(true);
        int ok = 0;
        for (int i = 0; i < kPerClient; ++i) {
          auto r = cli.Get("/");
          ok += r && r->status == 200;
        }
        return ok;
      }));
    }
    int ok = 0;
    for (auto& x : f) ok += x.get();
    if (ok != clients * kPerClient) state.SkipWithError("lost replies");
  }
  state.SetItemsProcessed(state.iterations() * clients * kPerClient);
}
BENCHMARK(BM_GetInfoKeepAlive)->Arg(1)->Arg(8)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
