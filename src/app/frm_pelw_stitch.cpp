// The stitch tool on the controller: the sequence of its clicks, the press
// of the iron, the one-click row round a closed outline, and the end of a
// stitching. The rows themselves are laid by src/stitching/.
#include <algorithm>
#include <cmath>

#include "app/frm_pelw.h"
#include "app/length_format.h"
#include "document/point_helpers.h"
#include "geometry/collect_intersections.h"
#include "platform/canvas.h"
#include "stitching/chain_order.h"
#include "stitching/iron_press.h"
#include "stitching/row_holes.h"
#include "stitching/stitch_rows.h"
#include "stitching/stitch_rules.h"

namespace {

// A click this close to a shape end or crossing starts a route, not a
// one-click row round an outline.
constexpr double kClickNearEnd = 0.1;
// The hit test's reach in pixels for a plain click.
constexpr double kHitPixels = 4.0;
constexpr TAlphaColor kPressReachColor = 0xFFADFF2F;

bool offersEnds(const TPW_Path& s) {
  return s.FShapeType != ShapeType::Hole && s.FShapeType != ShapeType::Text &&
         s.FShapeType != ShapeType::Dot;
}

}  // namespace

// ---- small helpers ----

TPrickingIron* TfrmPelw::stitchIron() {
  if (FSelectedPrickingIron) return FSelectedPrickingIron;
  if (!FOwnStitchIron) {
    FOwnStitchIron = std::make_unique<TPrickingIron>();
    FOwnStitchIron->FBladeType = BladeType::Diamond;
    FOwnStitchIron->FPitch = 4.0f;
    bladeDefaults(BladeType::Diamond, FOwnStitchIron->FWidth, FOwnStitchIron->FHeight, FOwnStitchIron->FAngle);
    FOwnStitchIron->FName = "Diamond 4mm";
  }
  return FOwnStitchIron.get();
}

std::string TfrmPelw::stitchPhrase(const char* key, const char* english) const {
  if (FMultiLang) {
    std::string text = FMultiLang->getTranslation(FLangID, key);
    if (!text.empty()) return text;
  }
  return english;
}

TPW_Path* TfrmPelw::validLastStitch() {
  if (FLastStitch) {
    // Known by its identifier, or at least found in the list (compared as an
    // address only, so that a freed hole is never read), and still a hole.
    bool live = PathList && PathList->findByID(FLastStitchID) == FLastStitch;
    if (!live && PathList && PathList->indexOf(FLastStitch) >= 0)
      live = FLastStitch->FShapeType == ShapeType::Hole;
    if (!live) FLastStitch = nullptr;
  }
  noteLastStitch();
  return FLastStitch;
}

void TfrmPelw::noteLastStitch() { FLastStitchID = FLastStitch ? FLastStitch->FID : -1; }

TPW_Path* TfrmPelw::findHoleNear(const TPointF& pt, float radius) const {
  if (!PathList) return nullptr;
  for (const auto& s : *PathList) {
    if (s->FShapeType != ShapeType::Hole || s->FLayerID != FActiveLayer) continue;
    if (distanceOf(s->FCenter, pt) < radius) return s.get();
  }
  return nullptr;
}

// Where the reach of the next press crosses the drawing: the points a
// press may aim at.
void TfrmPelw::prepareStitchCandidates() {
  if (!FStitchIntersections) FStitchIntersections = std::make_unique<TIntersections>();
  FStitchIntersections->Clear();
  if (!PathList) return;
  const int blades = std::max(1, FSelectedNumOfBlades);
  FNextHoleCnt = nextHoleCount(blades, FStitchingCount + 1, FStitchSettings.FReduceOneBlade);
  const double reach = double(FNextHoleCnt) * FStitchSettings.FPitch;
  if (!(reach > 0.0)) return;
  TPW_Path circle(0, claWhite, 1.0f, TStrokeDash::Solid, 0);
  circle.FLayerID = FActiveLayer;
  const float width = static_cast<float>(2.0 * reach);
  circle.drawEllipsePath(FStitchRealLastPos, width, width);
  TIntersections found;
  collectIntersections(*PathList, found, &circle);
  for (const auto& ict : found.items()) {
    // The circle goes with this call: the entries keep only the drawing's shape.
    TPW_Path* shape = ict->FPath1 == &circle ? ict->FPath2 : ict->FPath1;
    auto copy = std::make_unique<TIntersection>(ict->FPoint, shape, nullptr);
    copy->FIsCrossing = ict->FIsCrossing;
    FStitchIntersections->Add(copy);
  }
}

// The shapes under a click in the active layer, as the canvas's hit test
// finds them for a plain click, nearest only.
std::vector<TPW_Path*> TfrmPelw::stitchHitTest(const TPointF& point) const {
  std::vector<TPW_Path*> hits;
  if (!PathList) return hits;
  const double tol = distanceOf(ScreenToReal(TPointF(0, 0)), ScreenToReal(TPointF(kHitPixels, kHitPixels)));
  TPW_Path* best = nullptr;
  double bestDist = 2147483647.0;
  for (auto it = PathList->items().rbegin(); it != PathList->items().rend(); ++it) {
    TPW_Path* s = it->get();
    if (FPaintPalette) {
      const int row = s->FShapeType == ShapeType::Hole ? kStitchHolePalletIndex : s->FPalletIndex;
      if (FPaintPalette->contains(row) && !FPaintPalette->row(row).FIsVisible) continue;
    }
    if (!PathList->GetlayerVisible(s->FLayerID) || s->FLayerID != FActiveLayer) continue;
    bool hit = false;
    for (const TPathInterval& iv : s->getIntervalsFast(false)) {
      const double dx = double(iv.Ed.x) - iv.St.x, dy = double(iv.Ed.y) - iv.St.y;
      const double px = double(point.x) - iv.St.x, py = double(point.y) - iv.St.y;
      const double len2 = dx * dx + dy * dy;
      double d;
      if (len2 == 0.0) d = 2147483647.0;
      else if (dx * px + dy * py < 0.0) d = std::hypot(px, py);
      else if (dx * px + dy * py > len2) d = distanceOf(iv.Ed, point);
      else d = (dx * py - dy * px) * (dx * py - dy * px) / len2;  // squared, kept as it is
      if (d < tol) {
        hit = true;
        if (d < bestDist) {
          bestDist = d;
          best = s;
        }
      }
    }
    if (!hit && (s->FShapeType == ShapeType::Dot || s->FShapeType == ShapeType::Hole) &&
        distanceOf(s->FCenter, point) < tol) {
      hit = true;
      if (!best) best = s;
    }
    if (!hit && s->FShapeType == ShapeType::Ellipse && s->FCenter == point && !best) best = s;
    if (!hit && s->FShapeType == ShapeType::Text && s->isAPointInsideShape(point) && !best) best = s;
  }
  if (best) hits.push_back(best);
  return hits;
}

std::string TfrmPelw::rowSizeRefusal(const std::vector<TPW_Path*>& shapes, const TStitchSettings& settings,
                                     bool api) const {
  switch (checkRowSize(routeLength(shapes), settings)) {
    case TRowSize::Fine:
      return {};
    case TRowSize::BadPitch:
      return api ? "pitchMm must be greater than 0 and at most 1000000"
                 : stitchPhrase("RowPitchNotPositive", "The pitch must be greater than 0.");
    case TRowSize::TooManyHoles:
      return api ? "the row would need more than 100000 holes"
                 : stitchPhrase("RowTooManyHoles", "This row would need more than 100,000 holes. Choose a larger pitch.");
  }
  return {};
}

// ---- the end of a stitching ----

void TfrmPelw::finishStitching(int shownCount, const std::string& lengthText) {
  Clicked_Points.clear();
  FStitchingCount = 0;
  if (FStitchIntersections) FStitchIntersections->Clear();
  FVertexNetwork = std::make_unique<TVertexNetwork>(PathList.get(), FIntersections.get());
  FStitchCountText = stitchPhrase("#ofAutoPricks", "# of Pricked Holes:") + "  " + std::to_string(shownCount);
  FStitchLengthText = lengthText;
  noteLastStitch();
  RepaintCanvas();
  finishDocumentChange();
}

void TfrmPelw::cancelStitching() {
  Clicked_Points.clear();
  FStitchingCount = 0;
  if (FStitchIntersections) FStitchIntersections->Clear();
  FVertexNetwork.reset();
}

// ---- the closed outline ----

void TfrmPelw::placeOnClosedPath(const std::vector<TPW_Path*>& shapes, const TPointF& startPt, int& count,
                                 float& pitch) {
  count = 0;
  pitch = FStitchSettings.FPitch;
  if (!PathList || shapes.empty()) return;
  if (const std::string refusal = rowSizeRefusal(shapes, FStitchSettings, false); !refusal.empty()) {
    FStitchMessage = refusal;
    if (FShowStitchMessage) FShowStitchMessage(FStitchMessage);
    return;
  }
  validLastStitch();
  const THoleLook look{FColor_StitchingHole, 1.0f, TStrokeDash::Dot};
  TRowHoles holes(*PathList, FActiveLayer, stitchIron(), FIsInvertedStitchMode, look,
                  [this](std::unique_ptr<TPW_Path> h) { return addShapeToDocument(std::move(h), FActiveLayer); },
                  FLastStitch);
  const TClosedOutcome out = ::placeOnClosedPath(shapes, startPt, FStitchSettings, holes);
  count = out.count();
  pitch = static_cast<float>(out.pitch());
  noteLastStitch();
}

// ---- the click sequence ----

void TfrmPelw::stitchClicked(float x, float y, bool shift) {
  const TPointF point = FStickyExists ? FStickyPoint : ScreenToReal(TPointF(x, y), true);
  stitchClickedAt(point, shift);
}

void TfrmPelw::stitchClickedAt(const TPointF& point, bool shift) {
  if (!PathList || !FIntersections) return;
  if (!FStitchIntersections) FStitchIntersections = std::make_unique<TIntersections>();

  bool nearEndOrCrossing = false;
  for (const auto& s : *PathList) {
    if (!offersEnds(*s)) continue;
    if (distanceOf(s->FStartPt, point) <= kClickNearEnd || distanceOf(s->FEndPt, point) <= kClickNearEnd) {
      nearEndOrCrossing = true;
      break;
    }
  }
  for (size_t i = 0; !nearEndOrCrossing && i < FIntersections->Count(); ++i)
    nearEndOrCrossing = distanceOf((*FIntersections)[i]->FPoint, point) <= kClickNearEnd;

  // The route from the last hole to this point. The network is grown afresh
  // for each click: distances hold only from the start they were found for.
  TRouteVertex* vertex = nullptr;
  if (FStitchingCount > 0) {
    FVertexNetwork = std::make_unique<TVertexNetwork>(PathList.get(), FIntersections.get());
    if (FVertexNetwork->dpConnect(FStitchRealLastPos, point)) vertex = FVertexNetwork->GetVertex(point);
  }

  // One click on a closed outline, away from ends and crossings: a row round it.
  if (FStitchingCount < 1 && !nearEndOrCrossing) {
    const std::vector<TPW_Path*> hits = stitchHitTest(point);
    if (hits.size() == 1) {
      TPW_Path* shape = hits[0];
      std::vector<TPW_Path*> loop;
      if (shape->FShapeType == ShapeType::Ellipse) {
        loop.push_back(shape);
      } else if (shape->FShapeType == ShapeType::Line || shape->FShapeType == ShapeType::Bezier ||
                 shape->FShapeType == ShapeType::Arc) {
        loop = findClosedLoop(shape, *PathList);
        if (loop.empty()) return;
      }
      if (!loop.empty()) {
        int count = 0;
        float pitch = 0.0f;
        placeOnClosedPath(loop, shape->FStartPt, count, pitch);
        FStitchCountText = stitchPhrase("#ofAutoPricks", "# of Pricked Holes:") + "  " + std::to_string(count);
        FStitchLengthText = stitchPhrase("AutoPitch", "Auto pitch: ") + "  " + FormatLength(pitch, lengthSettings());
        RepaintCanvas();
        finishDocumentChange();
        return;
      }
    }
  }

  if (FStitchingCount > 0) {
    bool target = vertex != nullptr;
    for (size_t i = 0; !target && i < FStitchIntersections->Count(); ++i)
      target = samePoint((*FStitchIntersections)[i]->FPoint, point, 0.0);
    if (!target) return;
  }

  ++FStitchingCount;
  Clicked_Points.push_back(point);
  if (FStitchingCount == 1) {
    FStitchRealOrigin = point;
    FStitchRealLastPos = point;
    FSkipFirstStitch = findHoleNear(point, FStitchSettings.FPitch / 2.0f) != nullptr;
    FVertexNetwork = std::make_unique<TVertexNetwork>(PathList.get(), FIntersections.get());
    FVertexNetwork->dpConnectAddJoints(point, point);
    FVertexNetwork->checkJoints();
    prepareStitchCandidates();
    RepaintCanvas();
    return;
  }
  if (FSelectedNumOfBlades > 1 || FStitchingCount > 2) FSkipFirstStitch = false;

  if (!vertex) {
    if (pressIron(nullptr, RealToScreen(point), point, FStitchSettings.FPitch, shift)) finishDocumentChange();
    prepareStitchCandidates();
    RepaintCanvas();
    return;
  }

  // The route, the end's stretch first; these temporaries live for this click.
  std::vector<std::unique_ptr<TPW_Path>> route;
  TOpenRow row = openRowAlong(*FVertexNetwork, vertex, FStitchRealLastPos, point, route);

  if (const std::string refusal = rowSizeRefusal(row.FRoute, FStitchSettings, false); !refusal.empty()) {
    FStitchMessage = refusal;
    if (FShowStitchMessage) FShowStitchMessage(FStitchMessage);
    return;
  }
  validLastStitch();
  const THoleLook look{FColor_StitchingHole, 1.0f, TStrokeDash::Dot};
  TRowHoles holes(*PathList, FActiveLayer, stitchIron(), FIsInvertedStitchMode, look,
                  [this](std::unique_ptr<TPW_Path> h) { return addShapeToDocument(std::move(h), FActiveLayer); },
                  FLastStitch);
  const TRowOutcome out = layOpenRow(row, FStitchSettings, holes, TRowCaller::Tool);
  noteLastStitch();
  if (out.FEndlessLoop) {
    FStitchMessage = stitchPhrase("endlessloop", "Endless loop error");
    if (FShowStitchMessage) FShowStitchMessage(FStitchMessage);
  }
  if (out.FAbandoned || out.FNoTrial) return;

  // The labels tell what was made: the holes and their mean spacing; with a
  // fixed pitch, the pitch that would have closed the row.
  const std::string length =
      FStitchSettings.isFixed() && !out.FCornerMethod
          ? stitchPhrase("EstimatedBestPitch", "Estimated best pitch: ") + "  " + FormatLength(out.FEstimate, lengthSettings())
          : stitchPhrase("AutoPitch", "Auto pitch: ") + "  " + FormatLength(out.pitch(), lengthSettings());
  finishStitching(out.count(), length);
}

// ---- the press of the iron ----

bool TfrmPelw::pressIron(ICanvas* canvas, const TPointF& clickScreen, const TPointF& clickReal, float pitch,
                         bool shift) {
  (void)clickScreen;
  const int blades = std::max(1, FSelectedNumOfBlades);
  FNextHoleCnt = nextHoleCount(blades, FStitchingCount, FStitchSettings.FReduceOneBlade);
  const TPointF base = FStitchRealLastPos;
  const TPointF direction = unitVector(base, clickReal);
  const bool preview = canvas != nullptr;
  const TPressRange range = pressRange(blades, FStitchingCount, preview, shift || FSkipFirstStitch);
  const std::vector<TPointF> positions = pressPositions(base, direction, pitch, FNextHoleCnt);

  if (preview) {
    const double reach = double(FNextHoleCnt) * pitch;
    const TPointF lt = RealToScreen(TPointF::fromDouble(base.x - reach, base.y - reach));
    const TPointF rb = RealToScreen(TPointF::fromDouble(base.x + reach, base.y + reach));
    canvas->setStroke(kPressReachColor, TBrushKind::Solid, TStrokeDash::Solid, 1.0f);
    canvas->drawEllipse(TRectF(lt, rb), 1.0f);
    canvas->setStroke(FColor_StitchingHole, TBrushKind::Solid, TStrokeDash::Solid, 1.5f);
    canvas->setFill(FColor_StitchingHole, TBrushKind::Solid);
    for (int i = range.FFirst; i <= range.FLast && i < static_cast<int>(positions.size()); ++i) {
      const TPointF c = RealToScreen(positions[size_t(i)]);
      const TRectF r(c.x - 3.0f, c.y - 3.0f, c.x + 3.0f, c.y + 3.0f);
      canvas->fillEllipse(r, 0.6f);
      canvas->drawEllipse(r, 0.7f);
    }
    return false;
  }

  if (!PathList) return false;
  validLastStitch();
  const THoleLook look{FColor_StitchingHole, 1.0f, TStrokeDash::Dot};
  TRowHoles holes(*PathList, FActiveLayer, stitchIron(), FIsInvertedStitchMode, look,
                  [this](std::unique_ptr<TPW_Path> h) { return addShapeToDocument(std::move(h), FActiveLayer); },
                  FLastStitch);
  const float rotation = rotationOfDirection(TPointF(), direction);
  bool made = false;
  for (int i = 0; i < static_cast<int>(positions.size()); ++i) {
    FStitchNextPos = positions[size_t(i)];
    FStitchLastDirection = direction;
    if (i < range.FFirst || i > range.FLast) continue;
    if (!holes.findHoleNear(positions[size_t(i)], pitch / 2.0f)) {
      if (TPW_Path* hole = holes.makeHole(positions[size_t(i)], rotation)) {
        holes.chainAfterLast(*hole, pitch);
        made = true;
      }
    }
    FStitchRealLastPos = positions[size_t(i)];
  }
  noteLastStitch();
  return made;
}
