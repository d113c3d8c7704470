// The polyline engine of crossings: shapes compared as their drawn straight
// segments, rounded to 1/10000 mm, with end matching and a 0.05 margin on
// segment ranges. The full recalculation of the document's crossings and
// the trim and extend commands use it.
#pragma once

#include <vector>

#include "document/pw_path.h"
#include "geometry/intersect_pair.h"

class TShapeList;

// One drawn segment, ends rounded to four decimals, with its box.
struct TPolySegment {
  TPointF p0, p1;
  double l, t, r, b;
};

// A shape as the polyline engine sees it, worked out once so that one
// shape can meet many others cheaply.
struct TPolyShape {
  TPW_Path* FShape = nullptr;
  bool FIsLine = false;
  bool FIsEllipse = false;
  bool FIsDimension = false;
  // "OTHER" and "TEXT" never meet anything; "S_HOLE" never as the second.
  bool FNeverMeets = false;
  bool FIsHole = false;
  int FLayer = 0;
  double l = 0, t = 0, r = 0, b = 0;  // the normalised boundary
  TPointF FStart, FEnd;
  TPointF FCenter;
  // An ellipse's reach, in ten-thousandths: segments of a partner further
  // from the centre are not tried.
  long long FReach = 0;
  // Segments no shorter than 0.01.
  std::vector<TPolySegment> FSegments;
  // Ends of the drawn pieces, for matching loose ends (T-joints).
  std::vector<TPointF> FVertices;
};

TPolyShape preparePolyShape(TPW_Path& shape);

// Crossings of a with b. `layers` (may be null) applies the independent
// layer rule; `forceExtended` drops the box and range tests, so that lines
// meet where they would if drawn on.
TIntersectionList calcPolylineIntersections(TPW_Path* a, TPW_Path* b, const TShapeList* layers,
                                            bool forceExtended);
void calcPolylineIntersections(const TPolyShape& a, const TPolyShape& b, const TShapeList* layers,
                               bool forceExtended, TIntersectionList& out);

// Crossing of the infinite lines through two segments, coordinates rounded
// to four decimals. Extents of at most 0.001 make a segment vertical or
// horizontal, and such a segment gives its coordinate as the mean of its
// ends. False for parallels.
bool crossOfSegments(const TPointF& p0, const TPointF& p1, const TPointF& q0, const TPointF& q1,
                     TDPoint& pt);
