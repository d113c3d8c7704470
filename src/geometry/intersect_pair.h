// The pair engine: where two shapes cross or touch, solved on their
// analytic forms (segment, circle, arc) and, for Bezier curves, piece by
// piece on the flattened path. Stitching and the incremental upkeep of the
// document's crossings use it.
#pragma once

#include <memory>
#include <vector>

#include "document/intersections.h"
#include "document/pw_path.h"
#include "geometry/intersect_primitives.h"

using TIntersectionList = std::vector<std::unique_ptr<TIntersection>>;

// Whether the shape takes part in crossings at all: never "OTHER", "TEXT",
// "S_HOLE", nor a dimension line.
bool canHaveCrossings(const TPW_Path& shape);

// All crossings and touchings of a with b, FPath1 = a, FPath2 = b. Empty for
// a missing shape, for kinds the engine does not solve ("DOT" and those
// above) and for boxes that stay more than 0.1 apart.
TIntersectionList calcShapeIntersections(TPW_Path* a, TPW_Path* b);

// Whether (x, y), known to lie near the arc's circle, lies on the drawn part
// of the arc: within 0.0005 of the circle (radius FWidth) and then near an
// end, or within the sweep from the start (1e-6 degrees of slack).
bool isPointOnArc(const TPW_Path& arc, double x, double y);

// Direction of the shape at a point on it, of unit length, or (0,0) when it
// has none there. "LINE": start to end; "ARC", "ELLIPSE": across the radius;
// "BEZIER": the slope at the nearest of 251 samples.
TDPoint shapeTangentAt(const TPW_Path& shape, double x, double y);

// Crossing (true) or touching (false) of the two shapes at a point on both:
// the sine of the angle between their tangents must exceed 0.001. A shape
// without a tangent there makes it a crossing.
bool isCrossingAt(const TPW_Path& a, const TPW_Path& b, double x, double y);

// Puts a found point into the list of the pair. A point near an end of both
// shapes is a joint, never a crossing. A point within 0.008 of a listed one
// adds nothing but may settle that entry's flag: a joint clears it, a
// crossing sets it.
void addIntersection(TIntersectionList& list, const TPointF& point, TPW_Path* a, TPW_Path* b,
                     bool isCrossing);
