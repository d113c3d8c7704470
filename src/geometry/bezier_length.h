// Arc length of cubic Bezier curves and the point at a given length along
// one. Lengths use ten-point Gauss-Legendre quadrature of the speed.
#pragma once

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
