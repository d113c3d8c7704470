// Cubic Bezier shapes: evaluation, slope, the nearest parameter of a point,
// and cutting a curve in two or keeping one side of it. Lengths and the point
// at a length are in geometry/bezier_length.h.
#pragma once

#include <memory>

#include "document/pw_path.h"
#include "geometry/bezier_length.h"

class TShapeList;

// The four stored points of a "BEZIER" shape, start first.
TBezier bezierOf(const TPW_Path& shape);
// Point of the shape's cubic at t (Bernstein form, factors in doubles).
TPointF bezierPointAt(const TPW_Path& shape, float t);
// First derivative of the cubic at t, in doubles.
void bezierDerivativeAt(const TBezier& b, double t, double& dx, double& dy);
// The sampled parameter (one of 10001, i / 10000) nearest to pt, the first
// one on a tie; ActualPt receives the curve's point there. Its resolution,
// 1/10000 of the parameter, is what every split of a curve inherits.
float findNearestBezierT(const TPW_Path& shape, const TPointF& pt, TPointF& ActualPt);

// Cuts the curve where it passes nearest to `clicked`. The shape keeps the
// first part; the second part is returned as a new "BEZIER" with the
// shape's palette row, colour, thickness, dash and layer and the next free
// identifier of `ids`. Refused (null, nothing changed, no identifier used)
// when the click is further than 3.0 from the curve or the cut would fall
// on one of its ends.
std::unique_ptr<TPW_Path> splitBezierAt(TPW_Path& shape, const TPointF& clicked, TShapeList& ids);

// Keeps one side of the curve at parameter t, in place (de Casteljau in
// doubles): the part from the start to t, or from t to the end.
void trimBezierKeep(TPW_Path& shape, double t, bool keepStartSide);
