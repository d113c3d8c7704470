// Small point helpers used all over the drawing code.
#pragma once

#include "document/types.h"

// Rounds to two decimals, half away from zero.
double round2(double v);
// Rounds to `decimals` decimals, half away from zero.
double roundDecimals(double v, int decimals);

// With eps 0: both coordinates agree after round2. Otherwise the distance is
// strictly below eps.
bool samePoint(const TPointF& a, const TPointF& b, double eps = 0.0);
float distanceOf(const TPointF& a, const TPointF& b);
// Unit vector from a to b; (0,0) for equal points.
TPointF unitVector(const TPointF& a, const TPointF& b);
// The vector of unit length at the angle of v plus `degrees`.
TPointF rotateVector(const TPointF& v, double degrees);
TPointF rotatePointAbout(const TPointF& pt, double degrees, const TPointF& center);
