#include "geometry/arc_math.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "document/point_helpers.h"

double arcStartAngle(const TPointF& center, double radiusX, const TPointF& pt) {
  double c = roundDecimals((double(pt.x) - center.x) / radiusX, 5);
  if (std::isnan(c)) c = 1.0;  // a radius of 0 with the point on the centre
  c = std::clamp(c, -1.0, 1.0);
  const double angle = std::acos(c) * 180.0 / std::numbers::pi;
  return center.y > pt.y ? -angle : angle;
}

float normaliseSweep(float sweep) {
  if (sweep >= 360.0f) return sweep - 360.0f;
  if (sweep <= -360.0f) return sweep + 360.0f;
  return sweep;
}
