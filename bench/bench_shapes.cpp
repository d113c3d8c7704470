// Interval walks and hit tests over a document-sized set of shapes.
#include <benchmark/benchmark.h>

#include <memory>
#include <random>
#include <vector>

#include "document/pw_path.h"

namespace {

std::vector<std::unique_ptr<TPW_Path>> mixedShapes(int n) {
  std::mt19937 rng(42);
  std::uniform_real_distribution<float> pos(0, 1000), len(5, 60);
  std::vector<std::unique_ptr<TPW_Path>> shapes;
  for (int i = 0; i < n; ++i) {
    auto s = std::make_unique<TPW_Path>(0, 0xFFFFFFFF, 0.5f, TStrokeDash::Solid, i + 1);
    const TPointF a(pos(rng), pos(rng));
    const float l = len(rng);
    switch (i % 4) {
      case 0: s->drawLinePath(a, TPointF(a.x + l, a.y + l / 2)); break;
      case 1: s->drawBezierPath(a, TPointF(a.x + l / 3, a.y - l), TPointF(a.x + l, a.y - l), TPointF(a.x + l, a.y)); break;
      case 2: s->drawArcPath(a, TPointF(l / 2, l / 2), TPointF(a.x + l / 2, a.y), TPointF(a.x, a.y + l / 2), 90); break;
      default: s->drawEllipsePath(a, l, l); break;
    }
    shapes.push_back(std::move(s));
  }
  return shapes;
}

void BM_IntervalsFast10k(benchmark::State& state) {
  const auto shapes = mixedShapes(10000);
  for (auto _ : state) {
    size_t n = 0;
    for (const auto& s : shapes) n += s->getIntervalsFast(false).size();
    benchmark::DoNotOptimize(n);
  }
  state.SetItemsProcessed(state.iterations() * 10000);
}
BENCHMARK(BM_IntervalsFast10k)->Unit(benchmark::kMillisecond);

void BM_IsOnPath10k(benchmark::State& state) {
  const auto shapes = mixedShapes(10000);
  for (auto _ : state) {
    int hits = 0, idx = 0;
    for (const auto& s : shapes) hits += s->isOnPath(s->FStartPt, idx);
    benchmark::DoNotOptimize(hits);
  }
  state.SetItemsProcessed(state.iterations() * 10000);
}
BENCHMARK(BM_IsOnPath10k)->Unit(benchmark::kMillisecond);

}  // namespace
