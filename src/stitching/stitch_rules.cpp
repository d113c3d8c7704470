#include "stitching/stitch_rules.h"

#include <cmath>

float rotationOfDirection(const TPointF& from, const TPointF& to) {
  const float dx = static_cast<float>(double(to.x) - from.x);
  const float dy = static_cast<float>(double(to.y) - from.y);
  if (dx == 0.0f) return dy < 0.0f ? 180.0f : 0.0f;
  const float angle = static_cast<float>(std::atan2(double(dy), double(dx)));
  return (angle - 1.5707964f) * 57.29578f;
}

long long roundHalfEven(double v) { return static_cast<long long>(std::nearbyint(v)); }
