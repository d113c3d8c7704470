// The dye mixer's recipe search, the stitching order of a large selection
// and the largest jigsaw: commands that run on the main thread while the
// user waits.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <random>
#include <vector>

#include "bench_form.h"
#include "simulators/dye_mixer.h"
#include "stitching/pricking_iron.h"
#include "stitching/stitching_order.h"

namespace {

// Four dyes out of the ten of each range, with diluent: 45 + 120 + 210
// combinations.
void BM_DyeInverseSearch(benchmark::State& state) {
  const TDyeSystem sys = state.range(0) ? TDyeSystem::dsCrafters : TDyeSystem::dsREN;
  const TDyeRGB targets[] = {{107, 58, 42}, {40, 60, 90}, {0, 0, 0}, {200, 160, 60}};
  size_t i = 0;
  for (auto _ : state) benchmark::DoNotOptimize(dyeInverseSearch(targets[i++ % 4], sys, true));
}
BENCHMARK(BM_DyeInverseSearch)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

// 2,000 selected holes whose links were lost, through the whole command
// (tour, links, undo snapshot): arg 0 is one closed outline of a large bag
// panel at a 4 mm pitch, arg 1 four open rows of 500, listed shuffled.
void BM_FixStitchingOrder2000(benchmark::State& state) {
  TBenchForm b;
  TfrmPelw& f = *b.form;
  TPrickingIron iron;
  std::vector<TPointF> at;
  if (state.range(0) == 0) {
    const double r = 2000 * 4.0 / (2 * 3.14159265358979);
    for (int i = 0; i < 2000; ++i) {
      const double a = i * 2 * 3.14159265358979 / 2000;
      at.push_back(TPointF::fromDouble(r * std::cos(a) * 1.3, r * std::sin(a) / 1.3));
    }
  } else {
    for (int row = 0; row < 4; ++row)
      for (int i = 0; i < 500; ++i) at.push_back(TPointF(4.0f * i, 30.0f * row));
  }
  std::shuffle(at.begin(), at.end(), std::mt19937(5));
  for (const TPointF& p : at) {
    auto h = std::make_unique<TPW_Path>(36, 0xFFFFFFFF, 1, TStrokeDash::Solid, 0);
    h->createStichPath(p, false, &iron, 0, 0);
    h->FSelected = true;
    f.addShapeToDocument(std::move(h), 0);
  }
  f.finishDocumentChange();
  f.FLastMousePos = f.RealToScreen(at.front());
  for (auto _ : state) f.actFixStitchingOrder();
}
BENCHMARK(BM_FixStitchingOrder2000)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

// The largest jigsaw the dialog takes: 50 by 50 pieces of 30 mm, drawn into
// an empty document with its crossings and undo step.
void BM_Jigsaw50x50(benchmark::State& state) {
  TJigsawSettings s;
  s.FNumPiecesX = s.FNumPiecesY = 50;
  for (auto _ : state) {
    state.PauseTiming();
    auto b = std::make_unique<TBenchForm>();
    state.ResumeTiming();
    b->form->actJigsaw(s);
    state.PauseTiming();
    state.counters["shapes"] = double(b->form->PathList->Count());
    b.reset();
    state.ResumeTiming();
  }
}
BENCHMARK(BM_Jigsaw50x50)->Unit(benchmark::kMillisecond)->Iterations(3);

}  // namespace
