// Arc length of cubic Bezier curves and the point at a given length along
// one. Lengths use ten-point Gauss-Legendre quadrature of the speed.
#pragma once

#include <array>

#include "document/types.h"

// A cubic as start, control 1, control 2, end.
struct TBezier {
  TPointF P0, P1, P2, P3;
};

double bezierSegmentLength(const TBezier& b, double t0, double t1);
double bezierLength(const TBezier& b);
// The point `distance` along the curve from its start; `total` receives the
// curve's whole length. At or below 0 gives the start, at or beyond the
// total the end.
TPointF bezierPointAtLength(const TBezier& b, double distance, double& total);

// Points at several lengths along one curve: the table of running lengths
// at 64 equal steps of the parameter is built once, on the first point that
// needs it. Each answer equals bezierPointAtLength's.
class TBezierLengthTable {
 public:
  explicit TBezierLengthTable(const TBezier& b);
  // The whole length, by one quadrature over 0 to 1.
  double total() const { return FTotal; }
  TPointF pointAtLength(double distance) const;

 private:
  static constexpr int kSteps = 64;
  TBezier FCurve;
  double FTotal;
  mutable bool FBuilt = false;
  mutable std::array<double, kSteps + 1> FLength{};
};
