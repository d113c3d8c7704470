// The corner-aware ways of laying a row, which measure along the path
// rather than by chord: "AllJunctions" divides each shape by itself with a
// hole on every joint; "SmartCorner" divides each straight run evenly and
// forces holes onto the real corners, and puts one hole in the middle of a
// small rounded corner, the way a craftsman sets an iron round it.
#pragma once

#include <vector>

#include "document/pw_path.h"

class TRowHoles;

// One hole of a plan: where, which way the row runs there, and the spacing
// of its run (a hole already within half of it is left as it is).
struct TPlannedHole {
  TPointF FPosition;
  TPointF FDirection;
  double FSpacing = 0.0;
};

// The point at fraction t of the shape's length, and the unit direction of
// the interval it falls in ((1, 0) when that has none). Intervals of no
// length are passed over. A shape of no length gives its start.
void pointAtFraction(const TPW_Path& shape, double t, TPointF& position, TPointF& direction);
// Unit direction of the shape's first and last interval of some length;
// (0, 0) for a shape without one.
TPointF startDirectionOf(const TPW_Path& shape);
TPointF endDirectionOf(const TPW_Path& shape);
// The angle at the joint of a and b in degrees: 180 where b runs straight
// on from a, smaller the sharper the turn; 180 when either has no direction.
double jointAngle(const TPW_Path& a, const TPW_Path& b);
// How many intervals an arc of length L is split into so that a hole sits
// on its middle: the nearest count, made even by going up or down
// whichever spacing comes nearer the pitch (up on a tie), at least 2.
int evenArcIntervals(double L, double pitch);
// Sum of the shapes' lengths along their paths.
double chainLength(const std::vector<TPW_Path*>& chain);

std::vector<TPlannedHole> planEvenSplit(const std::vector<TPW_Path*>& chain, bool closed, float pitch);
std::vector<TPlannedHole> planSmartCorner(const std::vector<TPW_Path*>& chain, bool closed, float pitch,
                                          float threshold);

// Punches a plan: a hole for each planned one that has no hole within half
// its spacing, chained in order behind the last hole of the controller when
// it follows it, and closed into a ring for a closed chain. Returns the
// plan's count, which counts passed-over holes too.
int placePlannedHoles(const std::vector<TPlannedHole>& plan, bool closed, TRowHoles& holes);

// The two placements as the tools call them: with `holes` null nothing is
// made (a dry run) and only the count comes back.
int placeEvenSplit(const std::vector<TPW_Path*>& chain, bool closed, float pitch, TRowHoles* holes);
int placeSmartCorner(const std::vector<TPW_Path*>& chain, bool closed, float pitch, float threshold,
                     TRowHoles* holes);
