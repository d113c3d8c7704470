#include "geometry/bezier_length.h"

#include <cmath>

#include "document/path_data.h"

namespace {

// Ten-point Gauss-Legendre nodes and weights on [-1, 1], in ascending order.
constexpr double kNodes[10] = {-0.9739065285171717, -0.8650633666889845, -0.6794095682990244,
                               -0.4333953941292472, -0.1488743389816312, 0.1488743389816312,
                               0.4333953941292472,  0.6794095682990244,  0.8650633666889845,
                               0.9739065285171717};
constexpr double kWeights[10] = {0.0666713443086881, 0.1494513491505806, 0.2190863625159820,
                                 0.2692667193099963, 0.2955242247147529, 0.2955242247147529,
                                 0.2692667193099963, 0.2190863625159820, 0.1494513491505806,
                                 0.0666713443086881};

// Speed of the curve at t: the derivative is computed in doubles, kept as
// two singles, and its magnitude taken in single precision.
double speedAt(const TBezier& b, double t) {
  const double u = 1.0 - t;
  const double k0 = 3.0 * u * u, k1 = 6.0 * u * t, k2 = 3.0 * t * t;
  const float dx = static_cast<float>(k0 * (double(b.P1.x) - b.P0.x) + k1 * (double(b.P2.x) - b.P1.x) +
                                      k2 * (double(b.P3.x) - b.P2.x));
  const float dy = static_cast<float>(k0 * (double(b.P1.y) - b.P0.y) + k1 * (double(b.P2.y) - b.P1.y) +
                                      k2 * (double(b.P3.y) - b.P2.y));
  return std::hypot(dx, dy);
}

}  // namespace

double bezierSegmentLength(const TBezier& b, double t0, double t1) {
  const double half = (t1 - t0) / 2.0, mid = (t1 + t0) / 2.0;
  double sum = 0.0;
  for (int i = 0; i < 10; ++i) sum += kWeights[i] * speedAt(b, half * kNodes[i] + mid);
  return sum * half;
}

double bezierLength(const TBezier& b) { return bezierSegmentLength(b, 0.0, 1.0); }

TBezierLengthTable::TBezierLengthTable(const TBezier& b) : FCurve(b), FTotal(bezierLength(b)) {}

TPointF TBezierLengthTable::pointAtLength(double distance) const {
  const TBezier& b = FCurve;
  if (!(FTotal > 0.0) || !(distance > 0.0)) return b.P0;
  if (distance >= FTotal) return b.P3;

  auto stepT = [](int i) { return double(i) / kSteps; };
  if (!FBuilt) {
    FLength[0] = 0.0;
    for (int i = 1; i <= kSteps; ++i)
      FLength[i] = FLength[i - 1] + bezierSegmentLength(b, stepT(i - 1), stepT(i));
    FBuilt = true;
  }
  // The first step whose running length reaches the distance, the last at
  // the latest; then 31 halvings of that step.
  int i = 1;
  while (i < kSteps && FLength[i] < distance) ++i;
  const double t0 = stepT(i - 1);
  double lo = t0, hi = stepT(i);
  for (int round = 0; round < 31; ++round) {
    const double mid = (lo + hi) / 2.0;
    const double len = FLength[i - 1] + bezierSegmentLength(b, t0, mid);
    if (distance > len) lo = mid;
    else hi = mid;
  }
  return cubicPointAt(b.P0, b.P1, b.P2, b.P3, (lo + hi) / 2.0);
}

TPointF bezierPointAtLength(const TBezier& b, double distance, double& total) {
  const TBezierLengthTable table(b);
  total = table.total();
  return table.pointAtLength(distance);
}
