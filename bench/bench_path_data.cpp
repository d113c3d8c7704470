// Text form and flattening of path data.
#include <benchmark/benchmark.h>

#include <string>

#include "document/path_data.h"

namespace {

TPathData polyline(int n) {
  TPathData d;
  d.MoveTo(TPointF(0.1f, 0.2f));
  for (int i = 1; i < n; ++i) d.LineTo(TPointF(i * 0.731f, (i % 17) * 1.379f));
  return d;
}

void BM_PathDataWrite(benchmark::State& state) {
  const TPathData d = polyline(10000);
  size_t bytes = 0;
  for (auto _ : state) {
    const std::string s = d.getData();
    bytes += s.size();
    benchmark::DoNotOptimize(s.data());
  }
  state.SetBytesProcessed(static_cast<int64_t>(bytes));
}
BENCHMARK(BM_PathDataWrite);

void BM_PathDataParse(benchmark::State& state) {
  const std::string s = polyline(10000).getData();
  size_t bytes = 0;
  for (auto _ : state) {
    TPathData d;
    d.setData(s);
    bytes += s.size();
    benchmark::DoNotOptimize(d.Count());
  }
  state.SetBytesProcessed(static_cast<int64_t>(bytes));
}
BENCHMARK(BM_PathDataParse);

void BM_FlattenCurves(benchmark::State& state) {
  TPathData curves;
  curves.MoveTo(TPointF(0, 0));
  for (int i = 0; i < 100; ++i)
    curves.CurveTo(TPointF(i * 10 + 3, 20), TPointF(i * 10 + 7, -20), TPointF(i * 10 + 10, 0));
  for (auto _ : state) {
    TPathData d = curves;
    d.Flatten(0.3);
    benchmark::DoNotOptimize(d.Count());
  }
  state.SetItemsProcessed(state.iterations() * 100);
}
BENCHMARK(BM_FlattenCurves);

}  // namespace
