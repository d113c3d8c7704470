#include "geometry/line_corners.h"

#include <algorithm>
#include <cmath>

#include "document/point_helpers.h"
#include "geometry/shape_ends.h"

namespace {

bool isEndOf(const TPW_Path& line, const TPointF& p) {
  return samePoint(line.FStartPt, p, 0.0) || samePoint(line.FEndPt, p, 0.0);
}

// The direction along the line from the crossing towards the side it keeps.
TDPoint keptDirection(const TPW_Path& line, const TDPoint& crossing) {
  const TDPoint dir = unit(toDPoint(line.FEndPt) - toDPoint(line.FStartPt));
  double side = dot(toDPoint(line.FClickedPoint) - crossing, dir);
  if (std::fabs(side) < 1e-6) {
    // The click tells nothing: the far end does.
    const double s = dot(toDPoint(line.FStartPt) - crossing, dir), e = dot(toDPoint(line.FEndPt) - crossing, dir);
    side = std::fabs(s) > std::fabs(e) ? s : e;
  }
  return side < 0 ? dir * -1.0 : dir;
}

}  // namespace

std::optional<TPointF> crossingOfLines(const TPW_Path& a, const TPW_Path& b) {
  const TDPoint p = toDPoint(a.FStartPt), u = toDPoint(a.FEndPt) - p;
  const TDPoint q = toDPoint(b.FStartPt), v = toDPoint(b.FEndPt) - q;
  const double c = cross(u, v);
  if (std::fabs(c) <= 1e-12 * length(u) * length(v) || length(u) == 0.0 || length(v) == 0.0) return std::nullopt;
  const TDPoint x = p + u * (cross(q - p, v) / c);
  if (!isFinite(x)) return std::nullopt;
  return toPointF(x);
}

std::optional<TPointF> extendOrTrimPoint(const TPW_Path& a, const TPW_Path& b) {
  const std::optional<TPointF> pt = crossingOfLines(a, b);
  if (!pt || (isEndOf(a, *pt) && isEndOf(b, *pt))) return std::nullopt;
  return pt;
}

void bringLineTo(TPW_Path& line, const TPointF& p) {
  if (distanceOf(line.FStartPt, p) < distanceOf(line.FEndPt, p)) line.drawLinePath(p, line.FEndPt);
  else line.drawLinePath(line.FStartPt, p);
}

std::optional<TChamferPlan> planChamfer(const TPW_Path& a, const TPW_Path& b, double radius,
                                        const TPointF& crossing) {
  if (!(radius > 0.0) || !std::isfinite(radius)) return std::nullopt;
  if (!a.isType(ShapeType::Line) || !b.isType(ShapeType::Line)) return std::nullopt;
  const TDPoint i = toDPoint(crossing);
  const TDPoint ua = keptDirection(a, i), ub = keptDirection(b, i);
  if (length(ua) == 0.0 || length(ub) == 0.0) return std::nullopt;
  // Half the corner's angle; the centre lies on the bisector.
  const double half = std::acos(std::clamp(dot(ua, ub), -1.0, 1.0)) / 2.0;
  if (std::sin(half) < 1e-9 || std::cos(half) < 1e-9) return std::nullopt;
  const double reach = radius / std::tan(half);
  TChamferPlan plan;
  const TDPoint centre = i + unit(ua + ub) * (radius / std::sin(half));
  const TDPoint touchA = i + ua * reach, touchB = i + ub * reach;
  // Each line keeps its end furthest along its kept side; that end must not
  // lie short of the touching point.
  auto moveEnd = [&](const TPW_Path& line, const TDPoint& u, bool& moveEndOut) {
    const double s = dot(toDPoint(line.FStartPt) - i, u), e = dot(toDPoint(line.FEndPt) - i, u);
    moveEndOut = s >= e;
    return std::max(s, e) >= reach - 1e-4;
  };
  if (!moveEnd(a, ua, plan.FMoveEndOfA) || !moveEnd(b, ub, plan.FMoveEndOfB)) return std::nullopt;
  if (!isFinite(centre) || !isFinite(touchA) || !isFinite(touchB)) return std::nullopt;
  plan.FCentre = toPointF(centre);
  plan.FTouchA = toPointF(touchA);
  plan.FTouchB = toPointF(touchB);
  plan.FSweep = static_cast<float>(signedAngleDeg(touchA - centre, touchB - centre));
  return plan;
}
