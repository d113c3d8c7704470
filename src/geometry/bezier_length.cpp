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

TPointF bezierPointAtLength(const TBezier& b, double distance, double& total) {
  total = bezierLength(b);
  if (!(total > 0.0) || !(distance > 0.0)) return b.P0;
  if (distance >= total) return b.P3;

  constexpr int kSteps = 64;
  double tableT[kSteps + 1];
  double tableLen[kSteps + 1];
  tableT[0] = 0.0;
  tableLen[0] = 0.0;
  for (int i = 1; i <= kSteps; ++i) {
    tableT[i] = double(i) / kSteps;
    tableLen[i] = tableLen[i - 1] + bezierSegmentLength(b, tableT[i - 1], tableT[i]);
  }
  int i = 1;
  while (i < kSteps && tableLen[i] < distance) ++i;

  double lo = tableT[i - 1], hi = tableT[i];
  for (int round = 0; round < 31; ++round) {
    const double mid = (lo + hi) / 2.0;
    const double len = tableLen[i - 1] + bezierSegmentLength(b, tableT[i - 1], mid);
    if (distance > len) lo = mid;
    else hi = mid;
  }
  return cubicPointAt(b.P0, b.P1, b.P2, b.P3, (lo + hi) / 2.0);
}
