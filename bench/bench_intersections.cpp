// Crossings of a pattern-sized document: the full recalculation, gathering
// after a load, and one shape added through the controller.
#include <benchmark/benchmark.h>

#include <map>
#include <memory>

#include "app/frm_pelw.h"
#include "geometry/collect_intersections.h"
#include "pattern_document.h"

namespace {

constexpr int kShapes = 10000;

TShapeList& patternDocument() {
  static TShapeList* doc = [] {
    auto* d = new TShapeList(nullptr, "en");
    bench_doc::fill(*d, kShapes);
    return d;
  }();
  return *doc;
}

void BM_RecalcIntersections(benchmark::State& state) {
  TShapeList& doc = patternDocument();
  const auto search = state.range(0) ? TPairSearch::Grid : TPairSearch::AllPairs;
  TIntersections list;
  for (auto _ : state) {
    recalcAllIntersections(doc, list, search);
    benchmark::DoNotOptimize(list.Count());
  }
  state.counters["shapes"] = double(doc.Count());
  state.counters["crossings"] = double(list.Count());
}
BENCHMARK(BM_RecalcIntersections)->Arg(1)->Unit(benchmark::kMillisecond)->MinTime(2.0);
BENCHMARK(BM_RecalcIntersections)->Arg(0)->Unit(benchmark::kMillisecond)->Iterations(1);

// What a load does: every shape meets those before it.
void BM_GatherAllAsLoaded(benchmark::State& state) {
  TShapeList& doc = patternDocument();
  const auto search = state.range(0) ? TPairSearch::Grid : TPairSearch::AllPairs;
  for (auto _ : state) {
    TIntersections list;
    collectIntersectionsFrom(doc, list, 0, search);
    benchmark::DoNotOptimize(list.Count());
    state.counters["crossings"] = double(list.Count());
  }
}
BENCHMARK(BM_GatherAllAsLoaded)->Arg(1)->Unit(benchmark::kMillisecond)->MinTime(2.0);
BENCHMARK(BM_GatherAllAsLoaded)->Arg(0)->Unit(benchmark::kMillisecond)->Iterations(1);

struct TControllerDoc {
  TfrmPelw frm;
  explicit TControllerDoc(int shapes) {
    frm.PathList = std::make_unique<TShapeList>(nullptr, "en");
    frm.FIntersections = std::make_unique<TIntersections>();
    bench_doc::fill(*frm.PathList, shapes);
    collectIntersectionsFrom(*frm.PathList, *frm.FIntersections, 0);
  }
};

// Documents of the given size with their crossings, made once per size.
TControllerDoc& controllerDocument(int shapes) {
  static std::map<int, std::unique_ptr<TControllerDoc>> docs;
  auto& d = docs[shapes];
  if (!d) d = std::make_unique<TControllerDoc>(shapes);
  return *d;
}

std::unique_ptr<TPW_Path> newLineAcross(int i) {
  auto s = std::make_unique<TPW_Path>(0, claBlack, 0.3f, TStrokeDash::Solid, 0);
  const float x = 30.0f + (i % 20) * 125.0f, y = 20.0f + (i % 20) * 105.0f;
  s->drawLinePath(TPointF(x, y), TPointF(x + 40, y + 30));
  return s;
}

// One line drawn across a piece: added and its crossings gathered.
void BM_AddShapeToDocument(benchmark::State& state) {
  TControllerDoc& d = controllerDocument(static_cast<int>(state.range(0)));
  int i = 0;
  size_t found = 0;
  for (auto _ : state) {
    auto s = newLineAcross(i++);
    const size_t before = d.frm.FIntersections->Count();
    TPW_Path* p = d.frm.addShapeToDocument(std::move(s), 0);
    state.PauseTiming();
    found += d.frm.FIntersections->Count() - before;
    d.frm.deleteShape(p);
    state.ResumeTiming();
  }
  state.counters["crossings_per_add"] = double(found) / double(state.iterations());
  state.counters["document_crossings"] = double(d.frm.FIntersections->Count());
}
BENCHMARK(BM_AddShapeToDocument)->Arg(kShapes)->Arg(50000)->Unit(benchmark::kMicrosecond);

// One shape of the document moved: old crossings dropped, new gathered.
void BM_ShapeChanged(benchmark::State& state) {
  TControllerDoc& d = controllerDocument(kShapes);
  TPW_Path* s = (*d.frm.PathList)[d.frm.PathList->Count() / 2];
  float dx = 0.5f;
  for (auto _ : state) {
    s->drawLinePath(s->FStartPt + TPointF(dx, 0), s->FEndPt + TPointF(dx, 0));
    dx = -dx;
    d.frm.shapeChanged(s);
  }
}
BENCHMARK(BM_ShapeChanged)->Unit(benchmark::kMicrosecond);

}  // namespace
