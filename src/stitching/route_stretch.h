// A stretch of one shape between two points on it: how long it is along
// the drawn path, and a temporary shape that holds only that stretch. The
// route network measures its joints with these and hands the stretches of
// a route to the stitch walk.
#pragma once

#include <memory>

#include "document/pw_path.h"

// Ends closer than this are the same end of a route.
inline constexpr double kRoutePointTolerance = 0.02;

// Length of the stretch of `p` from FromPt to ToPt along its drawn path.
// Len2FromPt and Len2ToPt receive how far along the path each point lies.
// A line measures straight; a shape whose two ends are the two points gives
// its whole length. Otherwise the flattened pieces are walked and each
// point is placed on the first piece it lies within; a point on no piece
// counts as the nearer end. Points that coincide measure 0.
float calcPathLen(const TPW_Path& p, const TPointF& FromPt, const TPointF& ToPt, float& Len2FromPt,
                  float& Len2ToPt);

// A new shape, owned by the caller and in no list, that holds only the
// stretch from `from` to `to`: the shape as it stands when the two points
// are its ends; a line between the points for a line; otherwise the
// flattened pieces between them with the two points first and last. Its
// kind stays; an arc keeps its circle and takes the stretch's start and
// sweep, so that it still meets the search circle only on the stretch.
std::unique_ptr<TPW_Path> makeStretchPath(const TPW_Path& shape, const TPointF& from, const TPointF& to);
