// One press of a multi-blade iron: how many pitches it reaches and which of
// its blade positions punch. A press starts at the last hole and runs in a
// straight line towards the click.
#pragma once

#include <vector>

#include "document/types.h"

// Blades the next press uses. With two blades or more, one fewer when the
// first blade goes into the last hole: on the first click, or always with
// "reduce one blade" on.
int nextHoleCount(int blades, int stitchingCount, bool reduceOneBlade);

struct TPressRange {
  int FFirst = 0;
  int FLast = 0;
};

// The blade positions (0 being the last hole) that punch. `shiftOrSkip`:
// Shift is held or the first click fell on a hole, which is then not
// punched again.
TPressRange pressRange(int blades, int stitchingCount, bool preview, bool shiftOrSkip);

// Positions 0 .. reach along the unit direction from the last hole, one
// pitch apart.
std::vector<TPointF> pressPositions(const TPointF& lastPos, const TPointF& direction, double pitch, int reach);
