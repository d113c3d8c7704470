// Small vector and point helpers of the geometry services. Model values are
// singles; every formula computes in doubles and rounds when it returns a
// stored value. Where a helper of the same meaning exists beside the shape
// record (document/point_helpers.h), the one here calls it.
#pragma once

#include "document/point_helpers.h"
#include "document/types.h"

// Degrees to radians, as every rotation of the drawing uses it.
inline constexpr double kDegToRad = 0.017453292519943295;

// Straight distance, computed in doubles and returned as a single.
float distanceBetween(const TPointF& a, const TPointF& b);
// (to - from) / distanceBetween; exactly (0,0) when that distance is 0.
TPointF unitVectorTo(const TPointF& from, const TPointF& to);
// Half away from zero, to two decimals.
float roundTo2Decimals(float x);
// Both coordinates to four decimals, half away from zero.
TPointF roundPointTo4Decimals(const TPointF& p);
// Height over the base c of the triangle with sides a, b, c (Heron, with the
// half perimeter and the squared area kept as singles); 0 for a triangle
// that cannot close.
float triangleHeight(float a, float b, float c);
// Angle of the vector in radians, 0 to 2 pi (y down, so clockwise on the
// screen); 0 for the zero vector.
double directionAngle(const TPointF& v);
// The unit vector at the angle of v plus `degrees`; the length of v is lost.
TPointF rotateUnitVector(const TPointF& v, double degrees);
// The point turned about the centre by `degrees` (clockwise on the screen).
TPointF rotateAround(const TPointF& pt, const TPointF& center, double degrees);
// Cosine of the angle between two vectors; -1 when either is zero.
float cosBetween(const TPointF& v1, const TPointF& v2);
// The angle between two vectors in degrees, 0 to 180.
float angleBetween(const TPointF& v1, const TPointF& v2);
// Whether pt lies on the segment st-ed: the cross product must not exceed the
// tolerance in absolute value (it is an area, not a distance) and the
// projection must fall between the ends. `cross` receives the cross product.
bool pointOnSegmentTest(const TPointF& st, const TPointF& ed, const TPointF& pt, double tolerance,
                        double& cross);
