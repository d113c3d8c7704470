#include "stitching/route_probe.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <unordered_map>

#include "document/intersections.h"
#include "document/point_helpers.h"
#include "geometry/collect_intersections.h"
#include "geometry/geom_helpers.h"
#include "geometry/intersect_pair.h"

namespace {

// The crossing engine's box margin, and a little more for the grid, which
// only has to find a superset.
constexpr double kBoxMargin = 0.1;
constexpr double kGridMargin = 0.11;
// An interval takes a point whose cross product with it is at most this.
constexpr double kOnIntervalTolerance = 0.01;

TGridBox boxOf(const TRectF& rect) {
  const TRectF n = rect.normalized();
  return TGridBox{n.Left, n.Top, n.Right, n.Bottom};
}

TGridBox boxOf(const TDPoint& a, const TDPoint& b) {
  return TGridBox{std::min(a.x, b.x), std::min(a.y, b.y), std::max(a.x, b.x), std::max(a.y, b.y)};
}

constexpr TGridBox kNoBox{NAN, NAN, NAN, NAN};
// Intervals that take points further sideways than this are kept out of
// the grid.
constexpr double kWideReach = 5.0;

// The box of the temporary search circle, as its flattened path gives it.
TGridBox circleBox(const TPointF& c, float width) {
  const TPointF lt = TPointF::fromDouble(double(c.x) - width / 2.0, double(c.y) - width / 2.0);
  const TPointF rb = TPointF::fromDouble(double(c.x) + width / 2.0, double(c.y) + width / 2.0);
  return TGridBox{lt.x, lt.y, rb.x, rb.y};
}

// Whether the solver could find a point of the segment on the circle: the
// segment, stretched by the solver's 0.8 % at each end, must neither lie
// wholly inside the circle nor wholly further from its centre than the
// solver's tangency slack allows. Both tests keep a margin, so that only
// pieces the solver would reject are passed over.
bool pieceMayMeetCircle(const TDPoint& p0, const TDPoint& p1, const TDPoint& c, double r) {
  // The piece stretched by the solver's 0.008 mm past each end.
  const double len = std::hypot(p1.x - p0.x, p1.y - p0.y);
  const double k = len > 0.0 ? 0.008 / len : 0.0;
  const double dx = (p1.x - p0.x) * k, dy = (p1.y - p0.y) * k;
  const double ax = p0.x - dx - c.x, ay = p0.y - dy - c.y;
  const double bx = p1.x + dx - c.x, by = p1.y + dy - c.y;
  const double inner = r - 1e-6;
  if (inner > 0.0 && ax * ax + ay * ay < inner * inner && bx * bx + by * by < inner * inner) return false;
  // Nearest point of the stretched segment to the centre.
  const double ex = bx - ax, ey = by - ay, len2 = ex * ex + ey * ey;
  double t = len2 > 0.0 ? -(ax * ex + ay * ey) / len2 : 0.0;
  t = std::clamp(t, 0.0, 1.0);
  const double nx = ax + t * ex, ny = ay + t * ey;
  return nx * nx + ny * ny <= r * r + 0.005 + 1e-6 * (1.0 + r * r);
}

}  // namespace

bool pastLineEnds(const TDPoint& p0, const TDPoint& p1, const TDPoint& p) {
  const double dx = p1.x - p0.x, dy = p1.y - p0.y;
  const double len = std::hypot(dx, dy);
  if (len <= 0.0) return false;
  const double along = ((p.x - p0.x) * dx + (p.y - p0.y) * dy) / len;
  return along < -kPairNear || along > len + kPairNear;
}

void TRouteProbe::prepareArcFilter(TShape& sh) {
  const TPW_Path& a = *sh.path;
  const double sweep = double(a.FSweepAngle) * std::numbers::pi / 180.0;
  if (!(sh.r > 0.05) || std::fabs(sweep) > std::numbers::pi) return;
  const double aStart = std::atan2(double(a.FStartPt.y) - sh.c.y, double(a.FStartPt.x) - sh.c.x);
  // The end point must be where the sweep ends, since points near it count.
  const double aEnd = aStart + sweep;
  const double ex = double(a.FEndPt.x) - sh.c.x, ey = double(a.FEndPt.y) - sh.c.y;
  const double el = std::hypot(ex, ey);
  if (!(el > 0.0) || (ex * std::cos(aEnd) + ey * std::sin(aEnd)) / el < std::cos(1e-3)) return;
  const double nearAngle = 1.6 * 0.0081 / (sh.r - 0.0081) + 1e-3;
  const double half = std::fabs(sweep) / 2.0 + nearAngle;
  if (half >= std::numbers::pi) return;
  sh.angleFilter = true;
  sh.mx = std::cos(aStart + sweep / 2.0);
  sh.my = std::sin(aStart + sweep / 2.0);
  sh.cosLimit = std::cos(half);
}

bool TRouteProbe::onArc(const TShape& sh, const TDPoint& p) const {
  if (sh.angleFilter) {
    const double dx = p.x - sh.c.x, dy = p.y - sh.c.y;
    const double d = std::sqrt(dx * dx + dy * dy);
    if (d > 0.0 && dx * sh.mx + dy * sh.my < d * sh.cosLimit) return false;
  }
  return isPointOnArc(*sh.path, p.x, p.y);
}

TRouteProbe::TRouteProbe(const std::vector<TPW_Path*>& shapes) {
  std::vector<TGridBox> shapeBoxes;
  std::vector<TGridBox> intervalBoxes;
  for (TPW_Path* s : shapes) {
    TShape sh;
    sh.path = s;
    const int index = static_cast<int>(FShapes.size());
    if (s && !s->FIsDimensionLine) {
      if (s->FShapeType == ShapeType::Line) sh.kind = TKind::Line;
      else if (s->FShapeType == ShapeType::Arc) sh.kind = TKind::Arc;
      else if (s->FShapeType == ShapeType::Ellipse) sh.kind = TKind::Ellipse;
      else if (s->FShapeType == ShapeType::Bezier) sh.kind = TKind::Bezier;
    }
    sh.box = sh.kind == TKind::None ? kNoBox : boxOf(s->getBoundary(false));
    switch (sh.kind) {
      case TKind::Line:
        sh.p0 = toDPoint(s->FStartPt);
        sh.p1 = toDPoint(s->FEndPt);
        break;
      case TKind::Arc:
        sh.c = toDPoint(s->FCenter);
        sh.r = s->FWidth;
        prepareArcFilter(sh);
        break;
      case TKind::Ellipse:
        sh.c = toDPoint(s->FCenter);
        sh.r = double(s->FWidth) * 0.5;
        break;
      case TKind::Bezier:
        sh.firstPiece = static_cast<int>(FPieces.size());
        for (const TPathInterval& iv : s->getIntervalsFast(false)) {
          const TDPoint a = toDPoint(iv.St), b = toDPoint(iv.Ed);
          if (isNear(a, b)) continue;
          FPieces.push_back(TPiece{a, b, boxOf(a, b)});
        }
        sh.pieceCount = static_cast<int>(FPieces.size()) - sh.firstPiece;
        break;
      case TKind::None:
        break;
    }
    shapeBoxes.push_back(sh.box);
    FShapes.push_back(sh);
    if (!s) continue;
    // Intervals for the direction at a point: a point passes an interval
    // when it lies within 0.01 / length of it, sideways.
    for (const TPathInterval& iv : s->getIntervalsFast(false)) {
      if (iv.St == iv.Ed) continue;
      const double len = distanceOf(iv.St, iv.Ed);
      const double reach = (len > 0.0 ? kOnIntervalTolerance / len : 1e300) + 1e-9;
      TGridBox b = boxOf(toDPoint(iv.St), toDPoint(iv.Ed));
      b = TGridBox{b.l - reach, b.t - reach, b.r + reach, b.b + reach};
      if (reach > kWideReach) {
        // A very short interval reaches far sideways: tested at every point.
        FWideIntervals.push_back(static_cast<int>(FIntervals.size()));
        b = kNoBox;
      }
      FIntervals.push_back(TInterval{iv.St, iv.Ed, index});
      intervalBoxes.push_back(b);
    }
  }
  FShapeGrid = std::make_unique<TBoxGrid>(shapeBoxes);
  FIntervalGrid = std::make_unique<TBoxGrid>(intervalBoxes);
}

void TRouteProbe::addPairPoints(int shape, std::vector<TProbeCrossing>& out) {
  // As the crossing engine lists one pair: points within 0.008 of one
  // already listed merge into it...
  FPair.clear();
  for (const TDPoint& d : FSolved) {
    const TPointF p = toPointF(d);
    bool near = false;
    for (const TPointF& q : FPair)
      if (isNear(toDPoint(p), q)) {
        near = true;
        break;
      }
    if (!near) FPair.push_back(p);
  }
  // ...and the document's list takes no second entry of the pair at the
  // same point to the hundredth.
  const size_t first = out.size();
  for (const TPointF& p : FPair) {
    bool same = false;
    for (size_t k = first; k < out.size(); ++k)
      if (samePoint(out[k].FPoint, p, 0.0)) {
        same = true;
        break;
      }
    if (!same) out.push_back(TProbeCrossing{p, shape});
  }
}

void TRouteProbe::circleCrossings(const TPointF& center, float pitch, std::vector<TProbeCrossing>& out) {
  out.clear();
  const float width = static_cast<float>(2.0 * pitch);
  const double r = double(width) * 0.5;
  if (!(r > 1e-12)) return;
  const TDPoint c = toDPoint(center);
  const TGridBox cbox = circleBox(center, width);
  FShapeGrid->query(cbox, kGridMargin, FCandidates);
  std::sort(FCandidates.begin(), FCandidates.end());
  for (int i : FCandidates) {
    const TShape& sh = FShapes[size_t(i)];
    if (sh.kind == TKind::None || !gridBoxesMeet(cbox, sh.box, kBoxMargin)) continue;
    FSolved.clear();
    switch (sh.kind) {
      case TKind::Line:
        intersectSegmentCircle(sh.p0, sh.p1, c, r, FSolved);
        std::erase_if(FSolved, [&](const TDPoint& p) { return pastLineEnds(sh.p0, sh.p1, p); });
        break;
      case TKind::Ellipse:
        intersectCircles(c, r, sh.c, sh.r, FSolved);
        break;
      case TKind::Arc:
        intersectCircles(c, r, sh.c, sh.r, FSolved);
        std::erase_if(FSolved, [&](const TDPoint& p) { return !onArc(sh, p); });
        break;
      case TKind::Bezier:
        // Piece by piece: the solver merges points within one piece, the
        // pair's list across pieces.
        for (int k = 0; k < sh.pieceCount; ++k) {
          const TPiece& pc = FPieces[size_t(sh.firstPiece + k)];
          if (!gridBoxesMeet(pc.box, cbox, kBoxMargin) || !pieceMayMeetCircle(pc.p0, pc.p1, c, r)) continue;
          FPieceSolved.clear();
          intersectSegmentCircle(pc.p0, pc.p1, c, r, FPieceSolved);
          FSolved.insert(FSolved.end(), FPieceSolved.begin(), FPieceSolved.end());
        }
        break;
      case TKind::None:
        break;
    }
    addPairPoints(i, out);
  }
}

void TRouteProbe::circleCrossingsReference(const TPointF& center, float pitch,
                                           std::vector<TProbeCrossing>& out) const {
  out.clear();
  TPW_Path circle(0, claWhite, 1.0f, TStrokeDash::Solid, 0);
  const float width = static_cast<float>(2.0 * pitch);
  circle.drawEllipsePath(center, width, width);
  circle.flattenAndClean(0.5);
  std::vector<TPW_Path*> shapes;
  std::unordered_map<const TPW_Path*, int> indexOf;
  for (size_t i = 0; i < FShapes.size(); ++i) {
    shapes.push_back(FShapes[i].path);
    indexOf.emplace(FShapes[i].path, static_cast<int>(i));
  }
  TIntersections found;
  collectIntersections(shapes, nullptr, found, &circle);
  for (const auto& ict : found.items()) {
    const TPW_Path* other = ict->FPath1 == &circle ? ict->FPath2 : ict->FPath1;
    if (other->FShapeType == ShapeType::Line &&
        pastLineEnds(toDPoint(other->FStartPt), toDPoint(other->FEndPt), toDPoint(ict->FPoint)))
      continue;
    out.push_back(TProbeCrossing{ict->FPoint, indexOf.at(other)});
  }
}

bool TRouteProbe::tangentAt(const TPointF& pt, int& shape, TPointF& direction) const {
  const TGridBox at{pt.x, pt.y, pt.x, pt.y};
  FIntervalGrid->query(at, 1e-9, FIntervalCandidates);
  FIntervalCandidates.insert(FIntervalCandidates.end(), FWideIntervals.begin(), FWideIntervals.end());
  std::sort(FIntervalCandidates.begin(), FIntervalCandidates.end());
  double best = std::numeric_limits<double>::infinity();
  int bestIv = -1;
  for (int k : FIntervalCandidates) {
    const TInterval& iv = FIntervals[size_t(k)];
    double cross = 0.0;
    if (!pointOnSegmentTest(iv.st, iv.ed, pt, kOnIntervalTolerance, cross)) continue;
    if (cross < best) {
      best = cross;
      bestIv = k;
    }
  }
  if (bestIv < 0) return false;
  shape = FIntervals[size_t(bestIv)].shape;
  direction = unitVector(FIntervals[size_t(bestIv)].st, FIntervals[size_t(bestIv)].ed);
  return true;
}

bool TRouteProbe::tangentAtReference(const TPointF& pt, int& shape, TPointF& direction) const {
  std::vector<TPW_Path*> shapes;
  for (const TShape& sh : FShapes) shapes.push_back(sh.path);
  TPW_Path* found = nullptr;
  if (!tangentAtPoint(shapes, pt, found, direction)) return false;
  for (size_t i = 0; i < FShapes.size(); ++i)
    if (FShapes[i].path == found) {
      shape = static_cast<int>(i);
      break;
    }
  return true;
}

bool tangentAtPoint(const std::vector<TPW_Path*>& shapes, const TPointF& pt, TPW_Path*& shape,
                    TPointF& direction) {
  double best = std::numeric_limits<double>::infinity();
  bool found = false;
  for (TPW_Path* s : shapes) {
    if (!s) continue;
    for (const TPathInterval& iv : s->getIntervalsFast(false)) {
      if (iv.St == iv.Ed) continue;
      double cross = 0.0;
      if (!pointOnSegmentTest(iv.St, iv.Ed, pt, kOnIntervalTolerance, cross) || !(cross < best)) continue;
      best = cross;
      shape = s;
      direction = unitVector(iv.St, iv.Ed);
      found = true;
    }
  }
  return found;
}
