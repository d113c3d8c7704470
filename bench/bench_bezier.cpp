// Arc length work on Bezier curves: the point at a length and the quarter
// marks a curve offers as snap points.
#include <benchmark/benchmark.h>

#include "document/pw_path.h"
#include "geometry/bezier_length.h"

namespace {

const TBezier kCurve{TPointF(0, 0), TPointF(10, 25), TPointF(40, -20), TPointF(50, 5)};

void BM_BezierPointAtLength(benchmark::State& state) {
  double total = 0;
  const double len = bezierLength(kCurve);
  double f = 0.1;
  for (auto _ : state) {
    const TPointF p = bezierPointAtLength(kCurve, len * f, total);
    benchmark::DoNotOptimize(p);
    f = f > 0.9 ? 0.1 : f + 0.0137;
  }
}
BENCHMARK(BM_BezierPointAtLength);

void BM_BezierQuarterMarks(benchmark::State& state) {
  TPW_Path s(0, claBlack, 0.3f, TStrokeDash::Solid, 1);
  s.drawBezierPath(kCurve.P0, kCurve.P1, kCurve.P2, kCurve.P3);
  for (auto _ : state) {
    s.FControlPointsCache.clear();  // as after resetBoundary, without re-flattening
    benchmark::DoNotOptimize(s.getControlPoints(false, false, true));
  }
}
BENCHMARK(BM_BezierQuarterMarks);

void BM_BezierQuarterMarksCached(benchmark::State& state) {
  TPW_Path s(0, claBlack, 0.3f, TStrokeDash::Solid, 1);
  s.drawBezierPath(kCurve.P0, kCurve.P1, kCurve.P2, kCurve.P3);
  for (auto _ : state) benchmark::DoNotOptimize(s.getControlPoints(false, false, true));
}
BENCHMARK(BM_BezierQuarterMarksCached);

void BM_FindNearestBezierT(benchmark::State& state) {
  TPW_Path s(0, claBlack, 0.3f, TStrokeDash::Solid, 1);
  s.drawBezierPath(kCurve.P0, kCurve.P1, kCurve.P2, kCurve.P3);
  TPointF at;
  for (auto _ : state) benchmark::DoNotOptimize(s.findNearestBezierT(TPointF(22, 4), at));
}
BENCHMARK(BM_FindNearestBezierT)->Unit(benchmark::kMicrosecond);

}  // namespace
