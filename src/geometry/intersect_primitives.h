// The exact solvers under the pair engine of crossings: segment with
// segment, circle with circle, segment with circle. All work in doubles and
// drop a point that lies within 0.008 of one they already found.
#pragma once

#include <vector>

#include "document/types.h"

struct TDPoint {
  double x = 0.0;
  double y = 0.0;
};

inline TDPoint toDPoint(const TPointF& p) { return TDPoint{p.x, p.y}; }
inline TPointF toPointF(const TDPoint& p) { return TPointF::fromDouble(p.x, p.y); }

using TDPointList = std::vector<TDPoint>;

// Two points this close are one crossing in the pair engine.
inline constexpr double kPairNear = 0.008;

bool isNear(const TDPoint& a, const TDPoint& b, double tolerance = kPairNear);
bool isNear(const TDPoint& a, const TPointF& b, double tolerance = kPairNear);
// Appends p unless a listed point lies within the tolerance of it.
void addUniquePoint(TDPointList& list, const TDPoint& p, double tolerance = kPairNear);

// Segments p0-p1 and q0-q1. Parallel ones (cross of the directions at most
// 1e-12) meet only at a shared end: p0 if it is near q0 or q1, else p1 if
// it is. Otherwise the crossing counts when it lies within -0.008 .. 1.008
// of both segments' parameters.
void intersectSegments(const TDPoint& p0, const TDPoint& p1, const TDPoint& q0, const TDPoint& q1,
                       TDPointList& out);
// Circles c0, r0 and c1, r1. Circles that miss by up to 0.005, outside or
// inside, still touch; a tangency gives one point.
void intersectCircles(const TDPoint& c0, double r0, const TDPoint& c1, double r1, TDPointList& out);
// Segment p0-p1 with the circle c, r, points in order along the segment.
// A line that passes the circle by as little as a squared half chord of
// -0.005 touches it; points up to 0.008 mm past either end count.
void intersectSegmentCircle(const TDPoint& p0, const TDPoint& p1, const TDPoint& c, double r,
                            TDPointList& out);
