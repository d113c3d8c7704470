// Whole stitch rows: the divider walk round a closed outline of a metre and
// along an open route of two metres, as the stitch tool runs them, and
// their parts: one trial, the pitch search, the route network. Beside the
// rows, in the same run, the references of reference_rows.h over the same
// routes: the plain even-split pass a simpler program lays, and the full
// pitch search of up to a hundred walks.
#include <benchmark/benchmark.h>

#include <cmath>
#include <memory>
#include <numbers>
#include <vector>

#include "app/frm_pelw.h"
#include "app/sample_card_holder.h"
#include "document/point_helpers.h"
#include "document/shape_list.h"
#include "reference_rows.h"
#include "stitching/chain_order.h"
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

// ---- rows beside the references: holes made and added in every case ----

// Times `row(doc)` (it returns the holes it made) over the drawing, the
// holes taken out again between rounds outside the timing.
template <class TRow>
void timeRows(benchmark::State& state, TBenchDoc& doc, TRow&& row) {
  const size_t drawn = doc.list.Count();
  int holes = 0;
  for (auto _ : state) {
    holes = row(doc);
    state.PauseTiming();
    while (doc.list.Count() > drawn) doc.list.erase(doc.list.Count() - 1);
    doc.last = nullptr;
    state.ResumeTiming();
  }
  state.counters["holes"] = holes;
}

// The body's stitch line of the card holder: four runs, four rounded corners.
struct TCardHolderDoc : TBenchDoc {
  std::vector<TPW_Path*> loop;
  TCardHolderDoc() : TBenchDoc({}) {
    buildCardHolderSample(list, nullptr);
    collectIntersectionsFrom(list, crossings, 0);
    for (const auto& s : list)
      if (s->FShapeType == ShapeType::Line && s->FStartPt.y == 3.0f && s->FEndPt.y == 3.0f) {
        loop = findClosedLoop(s.get(), list);
        break;
      }
  }
};

std::unique_ptr<TBenchDoc> straightLine() {
  auto line = blank();
  line->drawLinePath(TPointF(10, 10), TPointF(110, 10));
  std::vector<std::unique_ptr<TPW_Path>> v;
  v.push_back(std::move(line));
  return std::make_unique<TBenchDoc>(std::move(v));
}

// Arg: the pitch search as it is (0), the full search of the reference (1),
// the even-split pass (2).
int outlineRow(TBenchDoc& doc, const std::vector<TPW_Path*>& loop, float pitch, int how) {
  TRowHoles h = doc.holes();
  TStitchSettings s = uniformAuto();
  s.FPitch = pitch;
  if (how == 0) return placeOnClosedPath(loop, loop[0]->FStartPt, s, h).count();
  if (how == 2)
    return reference::evenSplitPass(loop, pitch, true, [&](const TPointF& p, float r) { h.makeHole(p, r); });
  const TRouteTrack track = TRouteTrack::aroundLoop(loop, loop[0]->FStartPt);
  for (const TTrackPos& place : reference::ring(track, s))
    if (TPW_Path* hole = h.makeHole(track.onDrawing(place), rotationOfDirection(TPointF(), toPointF(track.directionAt(place)))))
      h.chainAfterLast(*hole, pitch);
  return static_cast<int>(h.made().size());
}

void BM_RowOutline(benchmark::State& state) {
  TBenchDoc doc(closedOutline(400));
  timeRows(state, doc, [&](TBenchDoc& d) { return outlineRow(d, d.shapes, 4.0f, int(state.range(0))); });
}
BENCHMARK(BM_RowOutline)->Arg(0)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

void BM_RowCardHolder(benchmark::State& state) {
  TCardHolderDoc doc;
  timeRows(state, doc, [&](TBenchDoc& d) { return outlineRow(d, doc.loop, 3.85f, int(state.range(0))); });
}
BENCHMARK(BM_RowCardHolder)->Arg(0)->Arg(1)->Arg(2)->Unit(benchmark::kMicrosecond);

// Arg: the row by the API's rules (0), the even-split pass (2).
void BM_RowLine100(benchmark::State& state) {
  auto doc = straightLine();
  TPW_Path* line = doc->shapes[0];
  timeRows(state, *doc, [&](TBenchDoc& d) {
    TRowHoles h = d.holes();
    if (state.range(0) == 2)
      return reference::evenSplitPass({line}, 4.0, false, [&](const TPointF& p, float r) { h.makeHole(p, r); });
    TOpenRow row;
    row.FRoute = {line};
    row.FLegs = {TTrackLeg{line, line->FStartPt, line->FEndPt}};
    row.FStart = line->FStartPt;
    row.FEnd = line->FEndPt;
    row.FHasEndVertex = true;
    row.FRouteLength = 100.0f;
    return layOpenRow(row, uniformAuto(), h, TRowCaller::Api).count();
  });
}
BENCHMARK(BM_RowLine100)->Arg(0)->Arg(2)->Unit(benchmark::kMicrosecond);

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
