#include "geometry/geom_helpers.h"

#include <algorithm>
#include <cmath>
#include <numbers>

float distanceBetween(const TPointF& a, const TPointF& b) { return distanceOf(a, b); }

TPointF unitVectorTo(const TPointF& from, const TPointF& to) { return unitVector(from, to); }

float roundTo2Decimals(float x) { return static_cast<float>(round2(x)); }

TPointF roundPointTo4Decimals(const TPointF& p) {
  return TPointF::fromDouble(roundDecimals(p.x, 4), roundDecimals(p.y, 4));
}

float triangleHeight(float a, float b, float c) {
  const float s = static_cast<float>((double(a) + b + c) / 2.0);
  const float area2 =
      static_cast<float>(double(s) * (double(s) - a) * (double(s) - b) * (double(s) - c));
  if (area2 < 0.0f) return 0.0f;
  return static_cast<float>(std::sqrt(double(area2)) / 0.5 / c);
}

double directionAngle(const TPointF& v) {
  const double len = std::hypot(double(v.x), double(v.y));
  if (len == 0.0) return 0.0;
  const double a = std::acos(std::clamp(double(v.x) / len, -1.0, 1.0));
  return v.y < 0 ? 2.0 * std::numbers::pi - a : a;
}

TPointF rotateUnitVector(const TPointF& v, double degrees) { return rotateVector(v, degrees); }

TPointF rotateAround(const TPointF& pt, const TPointF& center, double degrees) {
  return rotatePointAbout(pt, degrees, center);
}

float cosBetween(const TPointF& v1, const TPointF& v2) {
  const double l1 = std::hypot(double(v1.x), double(v1.y));
  const double l2 = std::hypot(double(v2.x), double(v2.y));
  if (l1 == 0.0 || l2 == 0.0) return -1.0f;
  return static_cast<float>((double(v1.x) * v2.x + double(v1.y) * v2.y) / (l1 * l2));
}

float angleBetween(const TPointF& v1, const TPointF& v2) {
  const double c = std::clamp(double(cosBetween(v1, v2)), -1.0, 1.0);
  return static_cast<float>(std::acos(c) * 180.0 / std::numbers::pi);
}

bool pointOnSegmentTest(const TPointF& st, const TPointF& ed, const TPointF& pt, double tolerance,
                        double& cross) {
  const double dx = double(ed.x) - st.x, dy = double(ed.y) - st.y;
  const double px = double(pt.x) - st.x, py = double(pt.y) - st.y;
  cross = dx * py - dy * px;
  if (std::fabs(cross) > tolerance) return false;
  const double dot = dx * px + dy * py;
  return dot >= 0.0 && dot <= dx * dx + dy * dy;
}
