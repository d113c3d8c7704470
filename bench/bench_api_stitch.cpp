// POST /stitch/loop round the card holder's body: a stitch line of four
// straight runs and four rounded corners, through the real server and the
// hand-over to the controller's main thread. Once by the divider walk with
// its pitch search, once by the corner method. The holes are deleted again
// outside the timing, so every round starts from the same drawing.
// POST /ruler across a grid of crossing lines, where the network it grows
// and lists covers the whole grid.
#include <benchmark/benchmark.h>
#include <httplib.h>

#include <stdlib.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <filesystem>
#include <functional>
#include <fstream>
#include <future>
#include <memory>
#include <nlohmann/json.hpp>
#include <thread>

#include "app/frm_pelw.h"
#include "app/sample_card_holder.h"
#include "geometry/collect_intersections.h"

namespace {

// A controller on a main thread of its own that only serves the API, over
// the drawing that `build` makes.
struct TServedDrawing {
  std::string dir;
  std::atomic<bool> stop{false};
  std::thread mainThread;
  int port = 0;

  explicit TServedDrawing(const std::function<void(TShapeList&)>& build) {
    char tmpl[] = "/tmp/pelwright_bench_XXXXXX";
    dir = mkdtemp(tmpl);
    std::ofstream(dir + "/pw_options.ini") << "[MCP]\nEnableServer=1\n";
    std::promise<void> ready;
    mainThread = std::thread([this, &ready, &build] {
      TfrmPelw f;
      f.FAppDataPath = dir;
      f.FApiPort = 0;
      f.FormCreate({});
      build(*f.PathList);
      collectIntersectionsFrom(*f.PathList, *f.FIntersections, 0);
      f.pboxResize(1600, 1000);
      port = f.FMCPServer->boundPort();
      ready.set_value();
      while (!stop) f.mainThreadCalls().waitAndDrain(5);
      f.FormDestroy();
    });
    ready.get_future().wait();
  }
  ~TServedDrawing() {
    stop = true;
    mainThread.join();
    std::filesystem::remove_all(dir);
  }
};

TServedDrawing& servedCardHolder() {
  // The outlines and stitch lines only: the rows are what is measured.
  static TServedDrawing s([](TShapeList& list) { buildCardHolderSample(list, nullptr); });
  return s;
}

// n lines across and n down, 5 mm apart, 10 mm past the outer ones.
TServedDrawing& servedGrid(int n) {
  static TServedDrawing s([n](TShapeList& list) {
    const float len = 5.0f * float(n - 1) + 20.0f;
    for (int i = 0; i < n; ++i) {
      const float at = 10.0f + 5.0f * float(i);
      for (int across = 0; across < 2; ++across) {
        auto line = std::make_unique<TPW_Path>(0, claWhite, 1.0f, TStrokeDash::Solid, list.getNextID());
        if (across) line->drawLinePath(TPointF(0, at), TPointF(len, at));
        else line->drawLinePath(TPointF(at, 0), TPointF(at, len));
        list.add(std::move(line), 0);
      }
    }
  });
  return s;
}

httplib::Client* clientOf(const TServedDrawing& d) {
  auto* cli = new httplib::Client("127.0.0.1", d.port);
  cli->set_keep_alive(true);
  cli->set_tcp_nodelay(true);
  cli->set_read_timeout(60, 0);
  return cli;
}

double median(std::vector<double> v) {
  if (v.empty()) return 0.0;
  std::sort(v.begin(), v.end());
  return v[v.size() / 2];
}

// Arg: the corner mode, 2 for the divider walk, 0 for the corner method.
void BM_ApiStitchLoopCardHolder(benchmark::State& state) {
  std::unique_ptr<httplib::Client> client(clientOf(servedCardHolder()));
  httplib::Client& cli = *client;
  const std::string body = R"({"pointOnLoop":{"x":50,"y":3},"pitchMm":3.85,"cornerMode":)" +
                           std::to_string(state.range(0)) + "}";
  std::vector<double> ms;
  size_t holes = 0;
  for (auto _ : state) {
    const auto t0 = std::chrono::steady_clock::now();
    auto r = cli.Post("/stitch/loop", body, "application/json");
    const auto t1 = std::chrono::steady_clock::now();
    const double sec = std::chrono::duration<double>(t1 - t0).count();
    state.SetIterationTime(sec);
    ms.push_back(sec * 1e3);
    const auto reply = r ? nlohmann::json::parse(r->body, nullptr, false) : nlohmann::json();
    if (!reply.is_object() || !reply.value("ok", false)) {
      state.SkipWithError("loop refused");
      break;
    }
    holes = reply["createdIds"].size();
    cli.Delete("/shapes", nlohmann::json{{"ids", reply["createdIds"]}}.dump(), "application/json");
  }
  state.counters["holes"] = static_cast<double>(holes);
  state.counters["median_ms"] = median(ms);
}
BENCHMARK(BM_ApiStitchLoopCardHolder)->Arg(2)->Arg(0)->Unit(benchmark::kMillisecond)->UseManualTime()->MinTime(2.0);

// From one corner of a 20 x 20 grid to the opposite one: 40 lines, 400
// crossings, the whole grid grown, relaxed and listed.
void BM_ApiRulerGrid(benchmark::State& state) {
  constexpr int kLines = 20;
  std::unique_ptr<httplib::Client> client(clientOf(servedGrid(kLines)));
  const float far = 5.0f * float(kLines - 1) + 20.0f;
  const std::string body = R"({"x1":10,"y1":0,"x2":)" + std::to_string(far - 10.0f) + R"(,"y2":)" +
                           std::to_string(far) + "}";
  size_t vertices = 0, joints = 0;
  for (auto _ : state) {
    auto r = client->Post("/ruler", body, "application/json");
    const auto reply = r ? nlohmann::json::parse(r->body, nullptr, false) : nlohmann::json();
    if (!reply.is_object() || !reply.value("connected", false)) {
      state.SkipWithError("no route");
      break;
    }
    vertices = reply["vertices"].size();
    joints = reply["joints"].size();
  }
  state.counters["vertices"] = static_cast<double>(vertices);
  state.counters["joints"] = static_cast<double>(joints);
}
BENCHMARK(BM_ApiRulerGrid)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
