// Making holes and laying the simulated thread: both run for every hole of
// a row, and the thread for every hole on every paint.
#include <benchmark/benchmark.h>

#include <memory>
#include <vector>

#include "document/pw_path.h"
#include "stitching/pricking_iron.h"
#include "stitching/stitch_simulation.h"

namespace {

void BM_CreateStitchPath(benchmark::State& state) {
  TPrickingIron iron;
  iron.FBladeType = state.range(0) == 0 ? "D" : "R";
  bladeDefaults(iron.FBladeType, iron.FWidth, iron.FHeight, iron.FAngle);
  TPW_Path hole(36, 0xFFFFFFFF, 1.0f, TStrokeDash::Dot, 1);
  float x = 0;
  for (auto _ : state) {
    hole.createStichPath(TPointF(x, 10), false, &iron, 17, 0);
    benchmark::DoNotOptimize(hole.FStitchOut);
    x += 0.5f;
  }
}
BENCHMARK(BM_CreateStitchPath)->Arg(0)->Arg(1);

// 5000 holes in rows of 50, the simulator on for all.
void BM_BuildStitchSimulation(benchmark::State& state) {
  TPrickingIron iron;
  iron.FBladeType = "D";
  std::vector<std::unique_ptr<TPW_Path>> holes;
  for (int i = 0; i < 5000; ++i) {
    auto h = std::make_unique<TPW_Path>(36, 0xFFFFFFFF, 1.0f, TStrokeDash::Dot, i + 1);
    h->createStichPath(TPointF(4.0f * (i % 50), 10.0f * (i / 50)), false, &iron, 0, 0);
    if (i % 50 != 49) h->FNextStitchID = i + 2;
    holes.push_back(std::move(h));
  }
  std::vector<const TPW_Path*> shapes;
  for (const auto& h : holes) shapes.push_back(h.get());
  TStitchSimulationOptions o;
  o.FShowStitchPattern = true;
  for (auto _ : state) {
    const TStitchSimulation sim = buildStitchSimulation(shapes, o);
    benchmark::DoNotOptimize(sim.FStitches.data());
  }
  state.SetItemsProcessed(state.iterations() * 5000);
}
BENCHMARK(BM_BuildStitchSimulation);

}  // namespace
