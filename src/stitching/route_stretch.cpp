#include "stitching/route_stretch.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

#include "document/point_helpers.h"

namespace {

bool isEndOf(const TPointF& a, const TPointF& end) { return samePoint(a, end, kRoutePointTolerance); }

bool joinsBothEnds(const TPW_Path& p, const TPointF& a, const TPointF& b) {
  return (isEndOf(a, p.FStartPt) && isEndOf(b, p.FEndPt)) ||
         (isEndOf(a, p.FEndPt) && isEndOf(b, p.FStartPt));
}

struct TWalkedPoints {
  double from = -1.0;
  double to = -1.0;
  double total = 0.0;
};

// Places both points on the pieces of the drawn path. A point counts as
// lying on a piece when neither end of the piece is further from it than
// the piece is long (with a little slack); the first such piece wins.
TWalkedPoints walkPieces(const std::vector<TRectF>& pieces, const TPW_Path& p, const TPointF& fromPt,
                         const TPointF& toPt) {
  TWalkedPoints w;
  double acc = 0.0;
  auto place = [&](double& slot, const TPointF& a, const TPointF& b, double s, const TPointF& pt) {
    if (slot >= 0.0) return;
    const double tol = std::max(s * 0.005, 0.0001);
    const double da = distanceOf(a, pt), db = distanceOf(b, pt);
    if (da <= s + tol && db <= s + tol) slot = acc + std::min(s, da);
  };
  for (const TRectF& r : pieces) {
    const TPointF a = r.topLeft(), b = r.bottomRight();
    const double s = distanceOf(a, b);
    if (!(s > 0.0)) continue;
    place(w.from, a, b, s, fromPt);
    place(w.to, a, b, s, toPt);
    acc += s;
  }
  w.total = acc;
  auto nearerEnd = [&](const TPointF& pt) {
    return distanceOf(pt, p.FStartPt) < distanceOf(pt, p.FEndPt) ? 0.0 : acc;
  };
  if (w.from < 0.0 && w.to < 0.0) {
    w.from = w.to = acc;
  } else if (w.from < 0.0) {
    w.from = nearerEnd(fromPt);
  } else if (w.to < 0.0) {
    w.to = nearerEnd(toPt);
  }
  return w;
}

// Start angle of an arc from its start point, as the arc maker works it out.
float arcStartAngle(const TPointF& center, float radius, const TPointF& start) {
  const double c = std::clamp((double(start.x) - center.x) / radius, -1.0, 1.0);
  double deg = std::acos(c) * 180.0 / std::numbers::pi;
  if (center.y > start.y) deg = -deg;
  return static_cast<float>(deg);
}

// The sweep, in degrees with the sign of the direction of travel, from
// `from` to `to` about the arc's centre; `forward` tells whether the
// stretch runs the arc's own way. `length` settles a stretch that returns
// to its start (a whole turn rather than none).
float stretchSweep(const TPW_Path& arc, const TPointF& from, const TPointF& to, bool forward,
                   double length) {
  const double sign = ((arc.FSweepAngle < 0) == forward) ? -1.0 : 1.0;
  const double toDeg = 180.0 / std::numbers::pi;
  const double a0 = std::atan2(double(from.y) - arc.FCenter.y, double(from.x) - arc.FCenter.x);
  const double a1 = std::atan2(double(to.y) - arc.FCenter.y, double(to.x) - arc.FCenter.x);
  double off = std::fmod((a1 - a0) * toDeg * sign, 360.0);
  if (off < 0.0) off += 360.0;
  const double expected = arc.FWidth > 0 ? length / arc.FWidth * toDeg : 0.0;
  if (off < 1e-6 && expected > 180.0) off = 360.0;
  return static_cast<float>(off * sign);
}

}  // namespace

float calcPathLen(const TPW_Path& p, const TPointF& FromPt, const TPointF& ToPt, float& Len2FromPt,
                  float& Len2ToPt) {
  if (p.FShapeType == ShapeType::Line) {
    Len2FromPt = distanceOf(p.FStartPt, FromPt);
    Len2ToPt = distanceOf(p.FStartPt, ToPt);
    return distanceOf(FromPt, ToPt);
  }
  if (joinsBothEnds(p, FromPt, ToPt)) {
    const float total = p.calcTotalLength();
    const bool forward = isEndOf(FromPt, p.FStartPt) && isEndOf(ToPt, p.FEndPt);
    Len2FromPt = forward ? 0.0f : total;
    Len2ToPt = forward ? total : 0.0f;
    return total;
  }
  const TWalkedPoints w = walkPieces(p.getIntervals(false), p, FromPt, ToPt);
  Len2FromPt = static_cast<float>(w.from);
  Len2ToPt = static_cast<float>(w.to);
  if (Len2FromPt == Len2ToPt) return 0.0f;
  return std::fabs(Len2ToPt - Len2FromPt);
}

std::unique_ptr<TPW_Path> makeStretchPath(const TPW_Path& shape, const TPointF& from, const TPointF& to) {
  std::unique_ptr<TPW_Path> out = shape.createCopy();
  if (joinsBothEnds(shape, from, to)) return out;
  if (shape.FShapeType == ShapeType::Line) {
    out->drawLinePath(from, to);
    return out;
  }
  const std::vector<TRectF> pieces = shape.getIntervals(false);
  const TWalkedPoints w = walkPieces(pieces, shape, from, to);
  const bool forward = w.from <= w.to;
  const double lo = std::min(w.from, w.to), hi = std::max(w.from, w.to);
  // The path's vertices that lie strictly inside the stretch, in path order.
  std::vector<TPointF> inner;
  double acc = 0.0;
  for (const TRectF& r : pieces) {
    const double s = distanceOf(r.topLeft(), r.bottomRight());
    if (!(s > 0.0)) continue;
    acc += s;
    if (acc > lo + 1e-9 && acc < hi - 1e-9) inner.push_back(r.bottomRight());
  }
  if (!forward) std::reverse(inner.begin(), inner.end());
  out->resetBoundary();
  out->FData.Clear();
  out->FData.MoveTo(from);
  for (const TPointF& v : inner) out->FData.LineTo(v);
  out->FData.LineTo(to);
  out->FStartPt = from;
  out->FEndPt = to;
  if (shape.FShapeType == ShapeType::Arc) {
    out->FSweepAngle = stretchSweep(shape, from, to, forward, hi - lo);
    out->FStartAngle = arcStartAngle(shape.FCenter, shape.FWidth, from);
  }
  return out;
}
