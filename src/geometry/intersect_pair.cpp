#include "geometry/intersect_pair.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

#include "geometry/bezier_math.h"
#include "geometry/intersect_primitives.h"

namespace {

enum class TPairKind { None, Line, Arc, Ellipse, Bezier };

bool isRound(const TPW_Path& ellipse) {
  return std::fabs(double(ellipse.FWidth) - ellipse.FHeight) <= 1e-6 * std::fabs(double(ellipse.FWidth));
}

TPairKind pairKindOf(const TPW_Path& s) {
  if (s.FIsDimensionLine) return TPairKind::None;
  if (s.FShapeType == ShapeType::Line) return TPairKind::Line;
  if (s.FShapeType == ShapeType::Arc) return TPairKind::Arc;
  // A circle is solved exactly; an ellipse that isn't round by the pieces
  // of its path, like a curve.
  if (s.FShapeType == ShapeType::Ellipse) return isRound(s) ? TPairKind::Ellipse : TPairKind::Bezier;
  if (s.FShapeType == ShapeType::Bezier) return TPairKind::Bezier;
  return TPairKind::None;
}

struct TBox {
  double l, t, r, b;
};

TBox boxOf(const TRectF& rect) {
  const TRectF n = rect.normalized();
  return TBox{n.Left, n.Top, n.Right, n.Bottom};
}

TBox boxOf(const TDPoint& p0, const TDPoint& p1) {
  return TBox{std::min(p0.x, p1.x), std::min(p0.y, p1.y), std::max(p0.x, p1.x),
              std::max(p0.y, p1.y)};
}

bool boxesMeet(const TBox& a, const TBox& b, double margin) {
  return a.l <= b.r + margin && b.l <= a.r + margin && a.t <= b.b + margin && b.t <= a.b + margin;
}

constexpr double kBoxMargin = 0.1;

// One analytic form: a segment, or a circle that may be an arc.
struct TPrimitive {
  bool isCircle = false;
  TDPoint p0, p1;          // segment
  TDPoint c;               // circle
  double r = 0.0;          // circle
  const TPW_Path* arc = nullptr;  // the drawn part, for the on-arc filter
};

TPrimitive segmentOf(const TDPoint& p0, const TDPoint& p1) {
  TPrimitive p;
  p.p0 = p0;
  p.p1 = p1;
  return p;
}

// The analytic form of a non-Bezier shape.
TPrimitive primitiveOf(const TPW_Path& s, TPairKind k) {
  TPrimitive p;
  switch (k) {
    case TPairKind::Line:
      return segmentOf(toDPoint(s.FStartPt), toDPoint(s.FEndPt));
    case TPairKind::Ellipse:
      // A round shape of the full width; the height plays no part here.
      p.isCircle = true;
      p.c = toDPoint(s.FCenter);
      p.r = double(s.FWidth) * 0.5;
      return p;
    case TPairKind::Arc:
      p.isCircle = true;
      p.c = toDPoint(s.FCenter);
      p.r = s.FWidth;
      p.arc = &s;
      return p;
    default:
      return p;
  }
}

void solve(const TPrimitive& a, const TPrimitive& b, TDPointList& out) {
  if (!a.isCircle && !b.isCircle) intersectSegments(a.p0, a.p1, b.p0, b.p1, out);
  else if (!a.isCircle) intersectSegmentCircle(a.p0, a.p1, b.c, b.r, out);
  else if (!b.isCircle) intersectSegmentCircle(b.p0, b.p1, a.c, a.r, out);
  else intersectCircles(a.c, a.r, b.c, b.r, out);
  if (!a.arc && !b.arc) return;
  std::erase_if(out, [&](const TDPoint& p) {
    return (a.arc && !isPointOnArc(*a.arc, p.x, p.y)) || (b.arc && !isPointOnArc(*b.arc, p.x, p.y));
  });
}

// The flattened pieces of a curve worth solving: not shorter than the
// near tolerance.
struct TPiece {
  TDPoint p0, p1;
  TBox box;
};

std::vector<TPiece> piecesOf(const TPW_Path& s) {
  std::vector<TPiece> out;
  for (const TPathInterval& iv : s.getIntervalsFast(false)) {
    const TDPoint p0 = toDPoint(iv.St), p1 = toDPoint(iv.Ed);
    if (isNear(p0, p1)) continue;
    out.push_back(TPiece{p0, p1, boxOf(p0, p1)});
  }
  return out;
}

void addPoints(TIntersectionList& list, const TDPointList& pts, TPW_Path* a, TPW_Path* b) {
  for (const TDPoint& p : pts) addIntersection(list, toPointF(p), a, b, isCrossingAt(*a, *b, p.x, p.y));
}

bool sharesEnd(const TPointF& p, const TPW_Path& a, const TPW_Path& b) {
  const TDPoint d = toDPoint(p);
  return (isNear(d, a.FStartPt) || isNear(d, a.FEndPt)) && (isNear(d, b.FStartPt) || isNear(d, b.FEndPt));
}

}  // namespace

bool canHaveCrossings(const TPW_Path& shape) {
  if (shape.FIsDimensionLine) return false;
  return shape.FShapeType != ShapeType::Other && shape.FShapeType != ShapeType::Text &&
         shape.FShapeType != ShapeType::Hole;
}

bool isPointOnArc(const TPW_Path& arc, double x, double y) {
  const double cx = arc.FCenter.x, cy = arc.FCenter.y;
  if (std::fabs(std::hypot(x - cx, y - cy) - double(arc.FWidth)) > 0.0005) return false;
  const TDPoint p{x, y};
  if (isNear(p, arc.FStartPt) || isNear(p, arc.FEndPt)) return true;
  const double sweep = arc.FSweepAngle;
  if (std::fabs(sweep) <= 1e-6) return false;
  const double toDeg = 180.0 / std::numbers::pi;
  const double aStart = std::atan2(double(arc.FStartPt.y) - cy, double(arc.FStartPt.x) - cx) * toDeg;
  const double aPoint = std::atan2(y - cy, x - cx) * toDeg;
  // Offset from the start, measured in the arc's own direction.
  double off = std::fmod((aPoint - aStart) * (sweep < 0 ? -1.0 : 1.0), 360.0);
  if (off < 0.0) off += 360.0;
  if (off > 360.0 - 1e-6) off -= 360.0;
  return off >= -1e-6 && off <= std::fabs(sweep) + 1e-6;
}

TDPoint shapeTangentAt(const TPW_Path& shape, double x, double y) {
  double tx = 0.0, ty = 0.0;
  if (shape.FShapeType == ShapeType::Line) {
    tx = double(shape.FEndPt.x) - shape.FStartPt.x;
    ty = double(shape.FEndPt.y) - shape.FStartPt.y;
  } else if (shape.FShapeType == ShapeType::Arc || shape.FShapeType == ShapeType::Ellipse) {
    // Across the radius, scaled to the ellipse's axes.
    const double a = shape.FShapeType == ShapeType::Ellipse ? shape.FWidth / 2.0 : 1.0;
    const double b = shape.FShapeType == ShapeType::Ellipse ? shape.FHeight / 2.0 : 1.0;
    tx = -(y - shape.FCenter.y) * (b > 0.0 ? a / b : 1.0);
    ty = (x - shape.FCenter.x) * (a > 0.0 ? b / a : 1.0);
  } else if (shape.FShapeType == ShapeType::Bezier) {
    const TBezier b = bezierOf(shape);
    double bestT = 0.0, bestD = std::numeric_limits<double>::infinity();
    for (int i = 0; i <= 250; ++i) {
      const double t = i / 250.0;
      const TPointF q = cubicPointAt(b.P0, b.P1, b.P2, b.P3, t);
      const double d = std::hypot(double(q.x) - x, double(q.y) - y);
      if (d < bestD) {
        bestD = d;
        bestT = t;
      }
    }
    bezierDerivativeAt(b, bestT, tx, ty);
  }
  const double len = std::hypot(tx, ty);
  if (len < 1e-12) return TDPoint{};
  return TDPoint{tx / len, ty / len};
}

bool isCrossingAt(const TPW_Path& a, const TPW_Path& b, double x, double y) {
  const TDPoint ta = shapeTangentAt(a, x, y);
  const TDPoint tb = shapeTangentAt(b, x, y);
  if ((ta.x == 0.0 && ta.y == 0.0) || (tb.x == 0.0 && tb.y == 0.0)) return true;
  return std::fabs(ta.x * tb.y - ta.y * tb.x) > 0.001;
}

void addIntersection(TIntersectionList& list, const TPointF& point, TPW_Path* a, TPW_Path* b,
                     bool isCrossing) {
  const bool joint = a && b && sharesEnd(point, *a, *b);
  if (joint) isCrossing = false;
  const TDPoint p = toDPoint(point);
  for (const auto& e : list) {
    if (!isNear(p, e->FPoint)) continue;
    if (joint) e->FIsCrossing = false;
    else if (isCrossing) e->FIsCrossing = true;
    return;
  }
  auto ict = std::make_unique<TIntersection>(point, a, b);
  ict->FIsCrossing = isCrossing;
  ict->FPathID1 = a ? a->FID : -1;
  ict->FPathID2 = b ? b->FID : -1;
  list.push_back(std::move(ict));
}

TIntersectionList calcShapeIntersections(TPW_Path* a, TPW_Path* b) {
  TIntersectionList list;
  if (!a || !b || a == b) return list;
  const TPairKind ka = pairKindOf(*a), kb = pairKindOf(*b);
  if (ka == TPairKind::None || kb == TPairKind::None) return list;
  const TBox boxA = boxOf(a->getBoundary(false)), boxB = boxOf(b->getBoundary(false));
  if (!boxesMeet(boxA, boxB, kBoxMargin)) return list;

  TDPointList pts;
  if (ka == TPairKind::Bezier && kb == TPairKind::Bezier) {
    const std::vector<TPiece> pa = piecesOf(*a), pb = piecesOf(*b);
    std::vector<const TPiece*> nearA;  // b's pieces that come near a at all
    for (const TPiece& q : pb)
      if (boxesMeet(q.box, boxA, kBoxMargin)) nearA.push_back(&q);
    for (const TPiece& p : pa) {
      if (!boxesMeet(p.box, boxB, kBoxMargin)) continue;
      for (const TPiece* q : nearA) {
        if (!boxesMeet(q->box, p.box, kBoxMargin)) continue;
        pts.clear();
        intersectSegments(p.p0, p.p1, q->p0, q->p1, pts);
        addPoints(list, pts, a, b);
      }
    }
  } else if (ka == TPairKind::Bezier || kb == TPairKind::Bezier) {
    const bool curveFirst = ka == TPairKind::Bezier;
    const TPW_Path& curve = curveFirst ? *a : *b;
    const TPW_Path& other = curveFirst ? *b : *a;
    const TPrimitive form = primitiveOf(other, curveFirst ? kb : ka);
    const TBox& otherBox = curveFirst ? boxB : boxA;
    for (const TPiece& p : piecesOf(curve)) {
      if (!boxesMeet(p.box, otherBox, kBoxMargin)) continue;
      pts.clear();
      const TPrimitive piece = segmentOf(p.p0, p.p1);
      if (curveFirst) solve(piece, form, pts);
      else solve(form, piece, pts);
      addPoints(list, pts, a, b);
    }
  } else {
    solve(primitiveOf(*a, ka), primitiveOf(*b, kb), pts);
    addPoints(list, pts, a, b);
  }
  return list;
}
