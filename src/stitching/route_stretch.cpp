#include "stitching/route_stretch.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "document/point_helpers.h"

namespace {

bool isEndOf(const TPointF& a, const TPointF& end) { return samePoint(a, end, kRoutePointTolerance); }

bool joinsBothEnds(const TPW_Path& p, const TPointF& a, const TPointF& b) {
  return (isEndOf(a, p.FStartPt) && isEndOf(b, p.FEndPt)) ||
         (isEndOf(a, p.FEndPt) && isEndOf(b, p.FStartPt));
}

// The drawn path's corners with their positions along it, from the first
// point (position 0) to the last (the whole length).
struct TVertex {
  double pos;
  TPointF point;
};

std::vector<TVertex> verticesOf(const TPW_Path& p) {
  std::vector<TVertex> out;
  double acc = 0.0;
  for (const TRectF& r : p.getIntervals(false)) {
    const TPointF a = r.topLeft(), b = r.bottomRight();
    const double s = distanceOf(a, b);
    if (!(s > 0.0)) continue;
    if (out.empty()) out.push_back({0.0, a});
    acc += s;
    out.push_back({acc, b});
  }
  return out;
}

// A point lies on a piece when neither end of the piece is further from it
// than the piece is long (with a little slack); the first such piece wins.
double placeOnVertices(const std::vector<TVertex>& v, const TPointF& pt) {
  for (size_t i = 0; i + 1 < v.size(); ++i) {
    const double s = v[i + 1].pos - v[i].pos;
    const double tol = std::max(s * 0.005, 0.0001);
    const double da = distanceOf(v[i].point, pt), db = distanceOf(v[i + 1].point, pt);
    if (da <= s + tol && db <= s + tol) return v[i].pos + std::min(s, da);
  }
  return -1.0;
}

}  // namespace

bool isClosedShape(const TPW_Path& p) {
  if (p.FShapeType == ShapeType::Ellipse) return true;
  if (p.FShapeType == ShapeType::Line) return false;
  return isEndOf(p.FStartPt, p.FEndPt) && p.calcTotalLength() > 2.0 * kRoutePointTolerance;
}

double positionAlong(const TPW_Path& p, const TPointF& pt) { return placeOnVertices(verticesOf(p), pt); }

std::vector<double> positionsAlong(const TPW_Path& p, const std::vector<TPointF>& pts) {
  const std::vector<TVertex> v = verticesOf(p);
  std::vector<double> out;
  out.reserve(pts.size());
  for (const TPointF& pt : pts) out.push_back(placeOnVertices(v, pt));
  return out;
}

double TStretchWay::length() const {
  const double direct = std::fabs(FTo - FFrom);
  return FWraps ? FTotal - direct : direct;
}

TStretchWay stretchWay(const TPW_Path& p, const TPointF& from, const TPointF& to) {
  TStretchWay w;
  if (p.FShapeType == ShapeType::Line) {
    w.FTotal = distanceOf(p.FStartPt, p.FEndPt);
    w.FFrom = distanceOf(p.FStartPt, from);
    w.FTo = distanceOf(p.FStartPt, to);
    return w;
  }
  const std::vector<TVertex> v = verticesOf(p);
  w.FTotal = v.empty() ? 0.0 : v.back().pos;
  const bool closed = isClosedShape(p);
  if (joinsBothEnds(p, from, to)) {
    // Whole: a closed shape from its start once round to it again.
    const bool forward = closed || (isEndOf(from, p.FStartPt) && isEndOf(to, p.FEndPt));
    w.FFrom = forward ? 0.0 : w.FTotal;
    w.FTo = forward ? w.FTotal : 0.0;
    return w;
  }
  w.FFrom = placeOnVertices(v, from);
  w.FTo = placeOnVertices(v, to);
  auto nearerEnd = [&](const TPointF& pt) {
    return distanceOf(pt, p.FStartPt) < distanceOf(pt, p.FEndPt) ? 0.0 : w.FTotal;
  };
  if (w.FFrom < 0.0 && w.FTo < 0.0) {
    w.FFrom = w.FTo = w.FTotal;
  } else if (w.FFrom < 0.0) {
    w.FFrom = nearerEnd(from);
  } else if (w.FTo < 0.0) {
    w.FTo = nearerEnd(to);
  }
  w.FWraps = closed && std::fabs(w.FTo - w.FFrom) > w.FTotal / 2.0;
  return w;
}

float calcPathLen(const TPW_Path& p, const TPointF& FromPt, const TPointF& ToPt, float& Len2FromPt,
                  float& Len2ToPt) {
  const TStretchWay w = stretchWay(p, FromPt, ToPt);
  Len2FromPt = static_cast<float>(w.FFrom);
  Len2ToPt = static_cast<float>(w.FTo);
  if (Len2FromPt == Len2ToPt) return 0.0f;
  return static_cast<float>(w.length());
}

std::unique_ptr<TPW_Path> makeStretchPath(const TPW_Path& shape, const TPointF& from, const TPointF& to) {
  std::unique_ptr<TPW_Path> out = shape.createCopy();
  if (joinsBothEnds(shape, from, to)) return out;
  if (shape.FShapeType == ShapeType::Line) {
    out->drawLinePath(from, to);
    return out;
  }
  const std::vector<TVertex> v = verticesOf(shape);
  const TStretchWay w = stretchWay(shape, from, to);
  // The path's corners strictly inside the stretch, in the order it runs.
  std::vector<TPointF> inner;
  auto take = [&](double lo, double hi, bool ascending) {
    std::vector<TPointF> part;
    for (const TVertex& x : v)
      if (x.pos > lo + 1e-9 && x.pos < hi - 1e-9) part.push_back(x.point);
    if (!ascending) std::reverse(part.begin(), part.end());
    inner.insert(inner.end(), part.begin(), part.end());
  };
  const double lo = std::min(w.FFrom, w.FTo), hi = std::max(w.FFrom, w.FTo);
  if (!w.FWraps) {
    take(lo, hi, w.forward());
  } else if (w.forward()) {
    // On past the end of the path, which is its start, to the second point.
    take(w.FFrom, w.FTotal + 1.0, true);
    take(0.0, w.FTo, true);
  } else {
    take(-1.0, w.FFrom, false);
    take(w.FTo, w.FTotal, false);
  }
  out->resetBoundary();
  out->FData.Clear();
  out->FData.MoveTo(from);
  for (const TPointF& p : inner) out->FData.LineTo(p);
  out->FData.LineTo(to);
  out->FStartPt = from;
  out->FEndPt = to;
  return out;
}
