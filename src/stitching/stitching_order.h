// The sewing order of holes that lost it (placed by hand, pasted, edited):
// a short open or closed tour through them, nearest neighbour first and
// then 2-opt, a small travelling-salesman heuristic.
#pragma once

#include <vector>

#include "document/pw_path.h"

// Index of the hole whose FStartPt is nearest the point, the first on a
// tie; -1 for no holes.
int nearestHole(const TPointF& point, const std::vector<TPW_Path*>& holes);
// Distance of the two holes' FStartPt.
double holeDistance(const TPW_Path& a, const TPW_Path& b);

struct TStitchTour {
  std::vector<TPW_Path*> FOrder;  // in sewing order
  // The last hole leads back to the first: more than two holes, and the gap
  // from last to first under twice the mean step of the tour.
  bool FClosed = false;
};

// The tour through the holes that starts at the one nearest `start`.
TStitchTour planStitchingOrder(const std::vector<TPW_Path*>& holes, const TPointF& start);
// Writes the tour into FPrevStitchID and FNextStitchID of its holes; the
// ends of an open tour get -1.
void linkStitchingOrder(const TStitchTour& tour);
