// A stretch of one shape between two points on it: where the points lie
// along the drawn path, which way the stretch runs, how long it is, and a
// temporary shape that holds only that stretch. The route network measures
// its joints with these and hands the stretches of a route to the rows.
#pragma once

#include <memory>
#include <vector>

#include "document/pw_path.h"

// Ends closer than this are the same end of a route.
inline constexpr double kRoutePointTolerance = 0.02;

// A shape whose path comes back to where it starts: an ellipse, or a curve
// whose two ends meet. Between two of its points there are two ways round.
bool isClosedShape(const TPW_Path& p);

// How far along the drawn path (flattened, from FStartPt) the point lies:
// on the first piece that holds it; -1 when it lies on none.
double positionAlong(const TPW_Path& p, const TPointF& pt);
// The same for several points at once.
std::vector<double> positionsAlong(const TPW_Path& p, const std::vector<TPointF>& pts);

// The stretch from one point of a shape to another.
struct TStretchWay {
  double FFrom = 0.0;   // position of the first point along the path
  double FTo = 0.0;     // position of the second
  double FTotal = 0.0;  // length of the whole path
  // On a closed shape the short way round wins; it may pass the shape's
  // start point, running from FFrom past the end of the path on to FTo.
  bool FWraps = false;

  double length() const;
  // Whether the stretch runs the path's own way.
  bool forward() const { return FWraps ? FFrom > FTo : FTo >= FFrom; }
};

// A shape whose ends are the two points is taken whole (a closed shape from
// its start back to its start goes once round). A line measures straight
// from its start. Otherwise both points are placed on the flattened path; a
// point on no piece counts as the nearer end.
TStretchWay stretchWay(const TPW_Path& p, const TPointF& from, const TPointF& to);

// The stretch's length along the path; Len2FromPt and Len2ToPt receive how
// far along the path each point lies.
float calcPathLen(const TPW_Path& p, const TPointF& FromPt, const TPointF& ToPt, float& Len2FromPt,
                  float& Len2ToPt);

// A new shape, owned by the caller and in no list, that holds only the
// stretch from `from` to `to`: the shape as it stands (its own way) when the
// two points are its ends; a line from `from` to `to` for a line; otherwise
// the flattened pieces between them, the short way round a closed shape,
// with `from` first and `to` last. Its kind stays, but its curve fields no
// longer describe it.
std::unique_ptr<TPW_Path> makeStretchPath(const TPW_Path& shape, const TPointF& from, const TPointF& to);
