#include "geometry/normal_line.h"

#include <cmath>

TNormalLine normalizeLine(const TNormalLine& l) {
  const double len = std::hypot(l.a, l.b);
  if (len < 1e-9) return TNormalLine{};
  return TNormalLine{l.a / len, l.b / len, l.c / len};
}

double signedDistance(const TNormalLine& l, double x, double y) { return l.a * x + l.b * y + l.c; }

double signedDistance(const TNormalLine& l, const TPointF& p) { return signedDistance(l, p.x, p.y); }

TPointF footOfPoint(const TNormalLine& l, const TPointF& p) {
  const double d = signedDistance(l, p);
  return TPointF::fromDouble(p.x - l.a * d, p.y - l.b * d);
}

TNormalLine lineThroughPoints(const TPointF& p0, const TPointF& p1) {
  const double dx = double(p1.x) - p0.x, dy = double(p1.y) - p0.y;
  const double len = std::hypot(dx, dy);
  if (len < 1e-9) return TNormalLine{1.0, 0.0, -double(p0.x)};
  TNormalLine l{-dy / len, dx / len, 0.0};
  l.c = -(l.a * p0.x + l.b * p0.y);
  return l;
}
