// Circular arcs as the shape record keeps them: the start angle drawArcPath
// derives from the start point, and the sweep it stores.
#pragma once

#include "document/types.h"

// Angle in degrees of `pt` about `center` on a circle of x radius rx, as the
// arc's FStartAngle: the cosine is rounded to five decimals (a start point a
// hair off the circle still gives a clean angle), clamped to -1..1, and the
// angle is negated when the centre lies below the point in y.
double arcStartAngle(const TPointF& center, double radiusX, const TPointF& pt);

// The sweep as an arc stores it: 360 or more loses 360, -360 or less gains
// 360, once only, so that a full turn is stored as 0.
float normaliseSweep(float sweep);
