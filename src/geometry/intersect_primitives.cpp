#include "geometry/intersect_primitives.h"

#include <cmath>

namespace {

constexpr double kParamLow = -0.008;
constexpr double kParamHigh = 1.008;
// How far past a tangency two curves may miss and still count as touching.
constexpr double kTouchSlack = 0.005;
// Distance within which two points are one.
constexpr double kPointSlack = 0.008;

bool paramInside(double t) { return t >= kParamLow && t <= kParamHigh; }

}  // namespace

bool isNear(const TDPoint& a, const TDPoint& b, double tolerance) {
  const double dx = b.x - a.x, dy = b.y - a.y;
  return dx * dx + dy * dy <= tolerance * tolerance;
}

bool isNear(const TDPoint& a, const TPointF& b, double tolerance) {
  return isNear(a, toDPoint(b), tolerance);
}

void addUniquePoint(TDPointList& list, const TDPoint& p, double tolerance) {
  for (const TDPoint& q : list)
    if (isNear(p, q, tolerance)) return;
  list.push_back(p);
}

void intersectSegments(const TDPoint& p0, const TDPoint& p1, const TDPoint& q0, const TDPoint& q1,
                       TDPointList& out) {
  const double rx = p1.x - p0.x, ry = p1.y - p0.y;
  const double sx = q1.x - q0.x, sy = q1.y - q0.y;
  const double d = rx * sy - ry * sx;
  if (std::fabs(d) <= 1e-12) {
    // Collinear pieces count only where they share an end, the first one.
    if (isNear(p0, q0) || isNear(p0, q1)) addUniquePoint(out, p0);
    else if (isNear(p1, q0) || isNear(p1, q1)) addUniquePoint(out, p1);
    return;
  }
  const double wx = q0.x - p0.x, wy = q0.y - p0.y;
  const double t = (wx * sy - wy * sx) / d;
  const double u = (wx * ry - wy * rx) / d;
  if (paramInside(t) && paramInside(u)) addUniquePoint(out, TDPoint{p0.x + t * rx, p0.y + t * ry});
}

void intersectCircles(const TDPoint& c0, double r0, const TDPoint& c1, double r1, TDPointList& out) {
  if (r0 < 1e-12 || r1 < 1e-12) return;
  const double dx = c1.x - c0.x, dy = c1.y - c0.y;
  const double d2 = dx * dx + dy * dy;
  if (d2 <= 1e-12) return;  // concentric: all or nothing, never a point
  const double d = std::sqrt(d2);
  if (d > r0 + r1 + kTouchSlack || d < std::fabs(r0 - r1) - kTouchSlack) return;
  const double a = (r0 * r0 - r1 * r1 + d2) / (2.0 * d);
  double h2 = r0 * r0 - a * a;
  if (h2 < 0.0) {
    if (h2 < -kTouchSlack) return;
    h2 = 0.0;
  }
  const double h = std::sqrt(h2);
  const double mx = c0.x + a * dx / d, my = c0.y + a * dy / d;
  addUniquePoint(out, TDPoint{mx + h * dy / d, my - h * dx / d});
  addUniquePoint(out, TDPoint{mx - h * dy / d, my + h * dx / d});
}

void intersectSegmentCircle(const TDPoint& p0, const TDPoint& p1, const TDPoint& c, double r,
                            TDPointList& out) {
  if (r <= 1e-12) return;
  const double dx = p1.x - p0.x, dy = p1.y - p0.y;
  const double A = dx * dx + dy * dy;
  if (A <= 1e-24) return;
  const double fx = p0.x - c.x, fy = p0.y - c.y;
  const double B = 2.0 * (fx * dx + fy * dy);
  const double C = fx * fx + fy * fy - r * r;
  // Squared half chord: r^2 minus the squared distance of the line.
  double h2 = (B * B - 4.0 * A * C) / (4.0 * A);
  if (h2 < 0.0) {
    if (h2 < -kTouchSlack) return;
    h2 = 0.0;
  }
  const double root = std::sqrt(h2 * 4.0 * A);
  const double t1 = (-B - root) / (2.0 * A);
  const double t2 = (-B + root) / (2.0 * A);
  // The ends may be missed by the same 0.008 mm that makes two points one,
  // measured along the segment: a fraction of its length would let a long
  // line reach a circle millimetres past its end.
  const double slack = kPointSlack / std::sqrt(A);
  auto onSegment = [slack](double t) { return t >= -slack && t <= 1.0 + slack; };
  if (onSegment(t1)) addUniquePoint(out, TDPoint{p0.x + t1 * dx, p0.y + t1 * dy});
  if (onSegment(t2)) addUniquePoint(out, TDPoint{p0.x + t2 * dx, p0.y + t2 * dy});
}
