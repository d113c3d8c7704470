// Cuts on the controller: trims, notches, round corners, extend-or-trim
// and centre lines.
#include <algorithm>
#include <cmath>

#include "app/frm_pelw.h"
#include "app/seam_edits.h"
#include "document/point_helpers.h"
#include "geometry/intersect_pair.h"
#include "geometry/line_corners.h"
#include "geometry/shape_ends.h"
#include "platform/canvas.h"

namespace {

constexpr TAlphaColor kNotchDepthColor = 0xFF0000FF;
constexpr TAlphaColor kNotchArmColor = 0xFFFFFF00;
constexpr TAlphaColor kCenterLineMarkColor = 0xFFFFFF00;
// The notch's first click must lie this close to an edge.
constexpr float kNotchOnEdge = 0.5f;

bool isLine(const TPW_Path* s) { return s && s->isType(ShapeType::Line); }

}  // namespace

void TSeamEdits::showMessage(const char* key) { F.dialogs().showMessage(F.phrase(key)); }

std::vector<TPointF> TSeamEdits::crossingsOf(const TPW_Path* shape) const {
  std::vector<TPointF> points;
  if (!F.FIntersections) return points;
  for (const auto& x : F.FIntersections->items())
    if (x->FPath1 == shape || x->FPath2 == shape) points.push_back(x->FPoint);
  return points;
}

void TSeamEdits::replaceByPieces(TPW_Path* shape, TCutPieces& pieces) {
  const int layer = shape->FLayerID;
  size_t first = 0;
  if (pieces.FFirstReplacesShape && !pieces.FPieces.empty()) {
    const TPW_Path& keep = *pieces.FPieces.front();
    shape->drawBezierPath(keep.FStartPt, keep.FBezierCp1, keep.FBezierCp2, keep.FEndPt);
    F.shapeChanged(shape);
    first = 1;
  } else {
    F.deleteShape(shape);
  }
  for (size_t i = first; i < pieces.FPieces.size(); ++i) F.addShapeToDocument(std::move(pieces.FPieces[i]), layer);
}

// ---- trim ----

TTrimOutcome TSeamEdits::trimAt(const TPointF& point) {
  if (!F.PathList) return TTrimOutcome::NothingHere;
  const std::vector<TPW_Path*> hits = F.stitchHitTest(point);
  if (hits.empty()) return TTrimOutcome::NothingHere;
  TPW_Path* target = hits.front();
  switch (trimSupportOf(*target)) {
    case TTrimSupport::NotSupported: return TTrimOutcome::NotSupported;
    case TTrimSupport::OvalNotSupported: return TTrimOutcome::OvalNotSupported;
    case TTrimSupport::Supported: break;
  }
  // A mandala's copies keep no crossings of their own.
  if (target->FMandalaID > 0) F.shapeChanged(target);
  TCutPieces pieces = trimPieces(*target, crossingsOf(target), point);
  replaceByPieces(target, pieces);
  F.RepaintCanvas();
  F.finishDocumentChange();
  return TTrimOutcome::Trimmed;
}

bool TSeamEdits::trimClicked(const TPointF& point) {
  switch (trimAt(point)) {
    case TTrimOutcome::Trimmed: return true;
    case TTrimOutcome::NotSupported: showMessage("TrimmingNotSupported"); break;
    case TTrimOutcome::OvalNotSupported: showMessage("OvalTrimmingNotSupported"); break;
    case TTrimOutcome::NothingHere: break;
  }
  return false;
}

// ---- notch ----

bool TSeamEdits::notchStep(ICanvas* canvas, const TPointF& point) {
  if (!F.PathList) return false;
  if (!FNotchPoint) {
    if (canvas) return false;
    const std::vector<TPW_Path*> hits = F.stitchHitTest(point);
    int interval = 0;
    if (hits.empty() || !hits.front()->isOnPath(point, interval, kNotchOnEdge)) return false;
    FNotchPoint = point;
    F.RepaintCanvas();
    return true;
  }
  const double depth = F.FOptions.FNotchDepth, angle = F.FOptions.FNotchAngle;
  if (!(depth > 0.0 && depth <= 1000.0) || !(angle > 0.0 && angle < 180.0)) return false;
  const TNotchArms arms = notchArms(*FNotchPoint, point, depth, angle);
  if (canvas) {
    canvas->setStroke(kNotchDepthColor, TBrushKind::Solid, TStrokeDash::Solid, 1.0f);
    canvas->drawLine(F.RealToScreen(arms.FP), F.RealToScreen(arms.FTip), 1.0f);
    canvas->setStroke(kNotchArmColor, TBrushKind::Solid, TStrokeDash::Solid, 1.0f);
    canvas->drawLine(F.RealToScreen(arms.FTip), F.RealToScreen(arms.FEnd1), 1.0f);
    canvas->drawLine(F.RealToScreen(arms.FTip), F.RealToScreen(arms.FEnd2), 1.0f);
    return false;
  }
  const TPointF p = *FNotchPoint;
  FNotchPoint.reset();
  const std::vector<TPW_Path*> hits = F.stitchHitTest(p);
  if (hits.empty() || trimSupportOf(*hits.front()) != TTrimSupport::Supported) return false;
  TCutPieces pieces = notchPieces(*hits.front(), arms);
  if (pieces.FPieces.empty()) return false;
  replaceByPieces(hits.front(), pieces);
  F.RepaintCanvas();
  F.finishDocumentChange();
  return true;
}

// ---- corners ----

TPW_Path* TSeamEdits::applyChamfer(TPW_Path* a, TPW_Path* b, double radius, const TPointF& crossing) {
  const std::optional<TChamferPlan> plan = planChamfer(*a, *b, radius, crossing);
  if (!plan) return nullptr;
  auto arc = newShapeStyledLike(*a);
  const float r = static_cast<float>(radius);
  arc->drawArcPath(plan->FCentre, TPointF(r, r), plan->FTouchA, plan->FTouchB, plan->FSweep);
  moveShapeEnd(*a, plan->FMoveEndOfA, plan->FTouchA);
  moveShapeEnd(*b, plan->FMoveEndOfB, plan->FTouchB);
  for (TPW_Path* line : {a, b}) {
    // A line used up by the arc goes.
    if (samePoint(line->FStartPt, line->FEndPt, 0.0)) F.deleteShape(line);
    else F.shapeChanged(line);
  }
  return F.addShapeToDocument(std::move(arc), F.FActiveLayer);
}

TPW_Path* TSeamEdits::chamferLines(TPW_Path* a, TPW_Path* b, double radius, const TPointF& crossing) {
  if (!isLine(a) || !isLine(b) || a == b) return nullptr;
  TPW_Path* arc = applyChamfer(a, b, radius, crossing);
  if (!arc) return nullptr;
  F.RepaintCanvas();
  F.finishDocumentChange();
  return arc;
}

bool TSeamEdits::tryChamferOfSelection() {
  const std::vector<TPW_Path*> sel = selectedShapes();
  if (sel.size() != 2 || !isLine(sel[0]) || !isLine(sel[1])) return false;
  const std::optional<TPointF> crossing = crossingOfLines(*sel[0], *sel[1]);
  if (!crossing || calcShapeIntersections(sel[0], sel[1]).empty() ||
      !chamferLines(sel[0], sel[1], FSettings.FMentoriRadius, *crossing)) {
    showMessage("CantMentori");
    return false;
  }
  return true;
}

TSeamEdits::TChamferReply TSeamEdits::chamferByIds(int lineId1, int lineId2, double radius) {
  TChamferReply reply;
  TPW_Path* a = F.PathList ? F.PathList->findByID(lineId1) : nullptr;
  TPW_Path* b = F.PathList ? F.PathList->findByID(lineId2) : nullptr;
  if (!a) reply.FError = "lineId1 not found";
  else if (!b) reply.FError = "lineId2 not found";
  else if (!isLine(a)) reply.FError = "lineId1 is not a line";
  else if (!isLine(b)) reply.FError = "lineId2 is not a line";
  if (!reply.FError.empty()) return reply;
  // Worked out on copies first, so that a refusal leaves the drawing as it was.
  std::unique_ptr<TPW_Path> ca = a->createCopy(), cb = b->createCopy();
  for (TPW_Path* c : {ca.get(), cb.get()}) {
    c->calcLineParam();
    c->FClickedPoint = TPointF::fromDouble((double(c->FStartPt.x) + c->FEndPt.x) / 2.0,
                                           (double(c->FStartPt.y) + c->FEndPt.y) / 2.0);
  }
  if (calcShapeIntersections(ca.get(), cb.get()).empty()) {
    if (const std::optional<TPointF> p = extendOrTrimPoint(*ca, *cb)) {
      bringLineTo(*ca, *p);
      bringLineTo(*cb, *p);
    }
  }
  if (calcShapeIntersections(ca.get(), cb.get()).empty()) {
    reply.FError = "lines do not intersect \xE2\x80\x94 cannot chamfer";
    return reply;
  }
  const std::optional<TPointF> crossing = crossingOfLines(*ca, *cb);
  if (!crossing) {
    reply.FError = "could not compute intersection point";
    return reply;
  }
  if (!planChamfer(*ca, *cb, radius, *crossing)) {
    reply.FError = "chamfer produced no arc";
    return reply;
  }
  for (auto [line, copy] : {std::pair{a, ca.get()}, std::pair{b, cb.get()}}) {
    line->drawLinePath(copy->FStartPt, copy->FEndPt);
    line->FClickedPoint = copy->FClickedPoint;
  }
  TPW_Path* arc = applyChamfer(a, b, radius, *crossing);
  reply.FArcId = arc->FID;
  F.RepaintCanvas();
  F.finishDocumentChange();
  return reply;
}

bool TSeamEdits::extendOrTrimLines(TPW_Path* a, TPW_Path* b, TPointF& point) {
  if (!isLine(a) || !isLine(b) || a == b) return false;
  const std::optional<TPointF> p = extendOrTrimPoint(*a, *b);
  if (!p) return false;
  point = *p;
  bringLineTo(*a, *p);
  bringLineTo(*b, *p);
  F.shapeChanged(a);
  F.shapeChanged(b);
  return true;
}

// ---- centre lines ----

std::vector<std::unique_ptr<TPW_Path>> TSeamEdits::centerLineShapes(const TPointF& first,
                                                                    const TPointF& second) const {
  std::vector<std::unique_ptr<TPW_Path>> lines;
  const double len = FSettings.FCenterLineLength;
  const int n = std::clamp(FSettings.FCenterLineDivisions, 1, 1000);
  const TDPoint a = toDPoint(first), span = toDPoint(second) - a;
  const TDPoint dir = unit(span);
  if (!(len > 0.0) || len > 1e6 || length(dir) == 0.0) return lines;
  const TDPoint half = TDPoint{-dir.y, dir.x} * (len / 2.0);
  for (int i = 0; i <= n; ++i) {
    if ((i == 0 || i == n) && !FSettings.FCenterLineDrawEdges) continue;
    const TDPoint p = a + span * (double(i) / n);
    auto line = std::make_unique<TPW_Path>(F.FSelectedPalette, F.FCurrentColor, F.FCurrentThickness,
                                           F.FCurrentDash, -1);
    line->drawLinePath(toPointF(p - half), toPointF(p + half));
    lines.push_back(std::move(line));
  }
  return lines;
}

int TSeamEdits::addCenterLines(const TPointF& first, const TPointF& second) {
  if (!F.PathList) return 0;
  std::vector<std::unique_ptr<TPW_Path>> lines = centerLineShapes(first, second);
  const int count = static_cast<int>(lines.size());
  if (count == 0) return 0;
  F.addShapesToDocument(std::move(lines), F.FActiveLayer);
  F.RepaintCanvas();
  F.finishDocumentChange();
  return count;
}

void TSeamEdits::paintCenterLinePreview(ICanvas& canvas, const TPointF& first, const TPointF& pointerReal) {
  canvas.setStroke(F.FCurrentColor, TBrushKind::Solid, F.FCurrentDash, F.FCurrentThickness * 2.0f);
  for (const auto& line : centerLineShapes(first, pointerReal))
    canvas.drawLine(F.RealToScreen(line->FStartPt), F.RealToScreen(line->FEndPt), 1.0f);
  const TPointF c = F.RealToScreen(first);
  canvas.setStroke(kCenterLineMarkColor, TBrushKind::Solid, TStrokeDash::Solid, 1.0f);
  canvas.drawEllipse(TRectF(c.x - 5.0f, c.y - 5.0f, c.x + 5.0f, c.y + 5.0f), 1.0f);
  canvas.setStroke(kCenterLineMarkColor, TBrushKind::Solid, TStrokeDash::Dot, 2.0f);
  canvas.drawLine(c, F.RealToScreen(pointerReal), 1.0f);
}

// ---- the extend-or-trim command ----

void TfrmPelw::actExtendOrTrimLines() {
  std::vector<TPW_Path*> lines;
  if (PathList) {
    for (const auto& s : *PathList)
      if (s->FSelected) lines.push_back(s.get());
  }
  TPointF point;
  if (lines.size() != 2 || !FSeamEdits.extendOrTrimLines(lines[0], lines[1], point)) return;
  RepaintCanvas();
  finishDocumentChange();
}
