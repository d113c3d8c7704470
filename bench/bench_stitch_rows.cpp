// Whole stitch rows: the divider walk round a closed outline of a metre and
// along an open route of two metres, as the stitch tool runs them, and
// their parts: one trial, the pitch search, the route network.
#include <benchmark/benchmark.h>

#include <cmath>
#include <memory>
#include <numbers>
#include <vector>

#include "app/frm_pelw.h"
#include "document/point_helpers.h"
#include "document/shape_list.h"
#include "geometry/collect_intersections.h"
#include "stitching/divider_walk.h"
#include "stitching/pricking_iron.h"
#include "stitching/route_network.h"
#include "stitching/row_holes.h"
#include "stitching/stitch_rows.h"

namespace {

std::unique_ptr<TPW_Path> blank() { return std::make_unique<TPW_Path>(0, 0xFF000000, 0.3f, TStrokeDash::Solid, 0); }

// The shape from p to q: a line, a shallow arc or a gentle curve in turn.
std::unique_ptr<TPW_Path> piece(int i, const TPointF& p, const TPointF& q) {
  auto s = blank();
  const double dx = double(q.x) - p.x, dy = double(q.y) - p.y, c = std::hypot(dx, dy);
  const double nx = -dy / c, ny = dx / c;
  switch (i % 3) {
    case 0:
      s->drawLinePath(p, q);
      break;
    case 1: {
      // A shallow arc bulging to one side: of the two centres that carry
      // p onto q by the sweep, the one that does.
      const double sweep = i % 2 == 0 ? 16.0 : -16.0;
      const double h = (c / 2.0) / std::tan(std::fabs(sweep) * std::numbers::pi / 360.0);
      TPointF center;
      for (const double side : {1.0, -1.0}) {
        center = TPointF::fromDouble((p.x + q.x) / 2.0 + side * nx * h, (p.y + q.y) / 2.0 + side * ny * h);
        if (distanceOf(rotatePointAbout(p, sweep, center), q) < 1e-3) break;
      }
      const float r = distanceOf(center, p);
      s->drawArcPath(center, TPointF(r, r), p, rotatePointAbout(p, sweep, center), static_cast<float>(sweep));
      break;
    }
    default: {
      const double o = 0.25 * ((i / 3) % 2 == 0 ? 1.0 : -1.0);
      s->drawBezierPath(p, TPointF::fromDouble(p.x + dx / 3 + nx * o, p.y + dy / 3 + ny * o),
                        TPointF::fromDouble(p.x + 2 * dx / 3 + nx * o, p.y + 2 * dy / 3 + ny * o), q);
    }
  }
  return s;
}

// A closed outline of about a metre in `count` mixed shapes, wavy.
std::vector<std::unique_ptr<TPW_Path>> closedOutline(int count) {
  std::vector<std::unique_ptr<TPW_Path>> out;
  const double R = 1000.0 / (2.0 * std::numbers::pi);
  auto at = [&](int i) {
    const double a = 2.0 * std::numbers::pi * i / count;
    const double r = R + 2.0 * std::sin(a * 7.0);
    return TPointF::fromDouble(300 + r * std::cos(a), 300 + r * std::sin(a));
  };
  TPointF p = at(0);
  for (int i = 0; i < count; ++i) {
    const TPointF q = i + 1 == count ? at(0) : at(i + 1);
    out.push_back(i + 1 == count ? [&] { auto s = blank(); s->drawLinePath(p, q); return s; }() : piece(i, p, q));
    p = out.back()->FEndPt;
  }
  return out;
}

// An open meander of about two metres in `count` mixed shapes.
std::vector<std::unique_ptr<TPW_Path>> openMeander(int count) {
  std::vector<std::unique_ptr<TPW_Path>> out;
  auto at = [&](int i) {
    const double x = 1800.0 * i / count;
    return TPointF::fromDouble(x, 100 + 60.0 * std::sin(x / 60.0));
  };
  TPointF p = at(0);
  for (int i = 0; i < count; ++i) {
    out.push_back(piece(i, p, at(i + 1)));
    p = out.back()->FEndPt;
  }
  return out;
}

TStitchSettings uniformAuto() {
  TStitchSettings s;
  s.FCornerMode = kCornerUniform;
  return s;
}

struct TBenchDoc {
  TShapeList list{nullptr, "en"};
  TIntersections crossings;
  TPrickingIron iron;
  TPW_Path* last = nullptr;
  std::vector<TPW_Path*> shapes;
  explicit TBenchDoc(std::vector<std::unique_ptr<TPW_Path>> src) {
    for (auto& s : src) {
      s->updateId(list.getNextID());
      shapes.push_back(s.get());
      list.add(std::move(s), 0);
    }
    collectIntersectionsFrom(list, crossings, 0);
  }
  TRowHoles holes() {
    return TRowHoles(list, 0, &iron, false, THoleLook{}, [this](std::unique_ptr<TPW_Path> h) {
      TPW_Path* raw = h.get();
      list.add(std::move(h), 0);
      return raw;
    }, last);
  }
};

// The whole one-click row round the outline: the ring whose pitch comes
// nearest the wanted one, found by halving, and the holes punched.
void BM_ClosedOutlineRow(benchmark::State& state) {
  int holes = 0;
  for (auto _ : state) {
    state.PauseTiming();
    auto doc = std::make_unique<TBenchDoc>(closedOutline(400));
    state.ResumeTiming();
    TRowHoles h = doc->holes();
    const TClosedOutcome out = placeOnClosedPath(doc->shapes, doc->shapes[0]->FStartPt, uniformAuto(), h);
    holes = out.count();
    state.PauseTiming();
    doc.reset();
    state.ResumeTiming();
  }
  state.counters["holes"] = holes;
}
BENCHMARK(BM_ClosedOutlineRow)->Unit(benchmark::kMillisecond);

// One walk of the dividers round the outline.
void BM_ClosedOutlineWalk(benchmark::State& state) {
  TBenchDoc doc(closedOutline(400));
  const TRouteTrack track = TRouteTrack::aroundLoop(doc.shapes, doc.shapes[0]->FStartPt);
  int steps = 0;
  for (auto _ : state) benchmark::DoNotOptimize(steps = track.stepsAt(4.0, 1000000));
  state.counters["positions"] = steps + 1;
}
BENCHMARK(BM_ClosedOutlineWalk)->Unit(benchmark::kMicrosecond);

// The second click of the stitch tool along the open route: the route
// network grown afresh, the pitch search, the holes made. Arg 1 makes the
// search run every round.
void BM_OpenRouteRowByTool(benchmark::State& state) {
  int holes = 0;
  for (auto _ : state) {
    state.PauseTiming();
    auto frm = std::make_unique<TfrmPelw>();
    frm->PathList = std::make_unique<TShapeList>(nullptr, "en");
    frm->FIntersections = std::make_unique<TIntersections>();
    frm->FStitchSettings = uniformAuto();
    if (state.range(0) == 1) frm->FStitchSettings.FAutoPitchStopGap = 0.0f;
    frm->addShapesToDocument(openMeander(800), 0);
    const TPointF a = (*frm->PathList)[0]->FStartPt;
    const TPointF b = (*frm->PathList)[frm->PathList->Count() - 1]->FEndPt;
    frm->stitchClickedAt(a);
    state.ResumeTiming();
    frm->stitchClickedAt(b);
    state.PauseTiming();
    holes = static_cast<int>(frm->PathList->Count()) - 800;
    frm.reset();
    state.ResumeTiming();
  }
  state.counters["holes"] = holes;
}
BENCHMARK(BM_OpenRouteRowByTool)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

// The pitch search alone along the open route, and one trial.
// Arg 0: the search as it runs (it stops once the gap is small enough);
// arg 1: every round of it, the most it can cost.
void BM_OpenRouteSearch(benchmark::State& state) {
  TBenchDoc doc(openMeander(800));
  TVertexNetwork net(&doc.list, &doc.crossings);
  const TPointF a = doc.shapes.front()->FStartPt, b = doc.shapes.back()->FEndPt;
  net.dpConnect(a, b);
  std::vector<std::unique_ptr<TPW_Path>> stretches;
  const TOpenRow row = openRowAlong(net, net.FEndVertex, a, b, stretches);
  const TRouteTrack track(row.FLegs);
  TStitchSettings s = uniformAuto();
  if (state.range(0) == 1) s.FAutoPitchStopGap = 0.0f;
  int trials = 0;
  for (auto _ : state) {
    TDividerWalk walk(track);
    TPitchSearch search(walk, s, TKeepRule::Tool);
    search.run(4.0f, true);
    trials = search.trials();
    benchmark::DoNotOptimize(search.bestGap());
  }
  state.counters["trials"] = trials;
}
BENCHMARK(BM_OpenRouteSearch)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

void BM_OpenRouteTrial(benchmark::State& state) {
  TBenchDoc doc(openMeander(800));
  TVertexNetwork net(&doc.list, &doc.crossings);
  const TPointF a = doc.shapes.front()->FStartPt, b = doc.shapes.back()->FEndPt;
  net.dpConnect(a, b);
  std::vector<std::unique_ptr<TPW_Path>> stretches;
  const TOpenRow row = openRowAlong(net, net.FEndVertex, a, b, stretches);
  const TRouteTrack track(row.FLegs);
  TDividerWalk walk(track);
  TTrial t;
  for (auto _ : state) benchmark::DoNotOptimize(walk.tryPitch(4.0f, t));
  state.counters["positions"] = t.count();
}
BENCHMARK(BM_OpenRouteTrial)->Unit(benchmark::kMicrosecond);

// Growing the network over the whole route and finding the way.
void BM_OpenRouteNetwork(benchmark::State& state) {
  TBenchDoc doc(openMeander(800));
  const TPointF a = doc.shapes.front()->FStartPt, b = doc.shapes.back()->FEndPt;
  for (auto _ : state) {
    TVertexNetwork net(&doc.list, &doc.crossings);
    benchmark::DoNotOptimize(net.dpConnect(a, b));
  }
}
BENCHMARK(BM_OpenRouteNetwork)->Unit(benchmark::kMillisecond);

// A row of 10,000 holes (fixed pitch along a straight 4 m line) made in a
// document that already holds range(0) holes: each new hole's identifier
// is checked against the document, and must cost the same whatever its size.
void BM_RowAmongHoles(benchmark::State& state) {
  TfrmPelw frm;
  frm.PathList = std::make_unique<TShapeList>(nullptr, "en");
  frm.FIntersections = std::make_unique<TIntersections>();
  TPrickingIron iron;
  TPW_Path* last = nullptr;
  auto rowHoles = [&] {
    return TRowHoles(*frm.PathList, 0, &iron, false, THoleLook{},
                     [&frm](std::unique_ptr<TPW_Path> h) { return frm.addShapeToDocument(std::move(h), 0); }, last);
  };
  {
    TRowHoles existing = rowHoles();
    for (int i = 0; i < state.range(0); ++i)
      existing.makeHole(TPointF::fromDouble(i % 1000, -100.0 - i / 1000), 0.0f);
  }
  auto line = blank();
  line->drawLinePath(TPointF(0, 100), TPointF(3999.6f, 100));
  TPW_Path* route = frm.addShapeToDocument(std::move(line), 0);
  TStitchSettings fixed = uniformAuto();
  fixed.FPitchMode = TPitchMode::Fixed;
  fixed.FPitch = 0.4f;
  int made = 0;
  for (auto _ : state) {
    // The index of the holes already there is built once per row, outside
    // the timing: what is timed is the work per hole.
    state.PauseTiming();
    TOpenRow row;
    row.FRoute = {route};
    row.FLegs = {TTrackLeg{route, route->FStartPt, route->FEndPt}};
    row.FStart = route->FStartPt;
    row.FEnd = route->FEndPt;
    row.FHasEndVertex = true;
    TRowHoles holes = rowHoles();
    state.ResumeTiming();
    made = static_cast<int>(layOpenRow(row, fixed, holes, TRowCaller::Api).FMade.size());
    state.PauseTiming();
    for (int k = 0; k < made; ++k) frm.PathList->erase(frm.PathList->Count() - 1);
    last = nullptr;
    state.ResumeTiming();
  }
  state.counters["holes"] = made;
  state.SetItemsProcessed(state.iterations() * made);
}
BENCHMARK(BM_RowAmongHoles)->Arg(1000)->Arg(100000)->Unit(benchmark::kMillisecond);

}  // namespace
