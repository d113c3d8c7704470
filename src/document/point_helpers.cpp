#include "document/point_helpers.h"

#include <cmath>
#include <numbers>

double roundDecimals(double v, int decimals) {
  const double f = std::pow(10.0, decimals);
  return std::trunc(v * f + (v < 0 ? -0.5 : 0.5)) / f;
}

double round2(double v) { return std::trunc(v * 100.0 + (v < 0 ? -0.5 : 0.5)) / 100.0; }

bool samePoint(const TPointF& a, const TPointF& b, double eps) {
  if (eps == 0.0) return round2(a.x) == round2(b.x) && round2(a.y) == round2(b.y);
  return distanceOf(a, b) < eps;
}

float distanceOf(const TPointF& a, const TPointF& b) {
  const double dx = double(b.x) - a.x, dy = double(b.y) - a.y;
  return static_cast<float>(std::sqrt(dx * dx + dy * dy));
}

TPointF unitVector(const TPointF& a, const TPointF& b) {
  // Divided by the distance as a single, the way every length is stored.
  const double len = distanceOf(a, b);
  if (len == 0.0) return TPointF();
  return TPointF::fromDouble((double(b.x) - a.x) / len, (double(b.y) - a.y) / len);
}

TPointF rotateVector(const TPointF& v, double degrees) {
  const double a = std::atan2(double(v.y), double(v.x)) + degrees * std::numbers::pi / 180.0;
  return TPointF::fromDouble(std::cos(a), std::sin(a));
}

TPointF rotatePointAbout(const TPointF& pt, double degrees, const TPointF& center) {
  const double a = degrees * 0.017453292519943295;
  const double c = std::cos(a), s = std::sin(a);
  const double dx = double(pt.x) - center.x, dy = double(pt.y) - center.y;
  return TPointF::fromDouble(center.x + dx * c - dy * s, center.y + dx * s + dy * c);
}
