// The divider walk round a closed outline: from the start the circle of the
// pitch steps on, always to the crossing that goes most nearly straight
// ahead, until it comes back between two holes already walked.
#pragma once

#include <vector>

#include "document/pw_path.h"
#include "stitching/point_grid.h"
#include "stitching/route_probe.h"

class TRowHoles;

class TClosedWalk {
 public:
  // The outline's shapes, borrowed.
  TClosedWalk(const std::vector<TPW_Path*>& shapes, const TPointF& start);

  // Steps through the reference forms (slow), for tests.
  void setReference(bool on) { FReference = on; }

  // One walk at `pitch`. With `holes` it punches as it goes (skipping a
  // position that has a hole within half a pitch) and closes the ring with
  // one link from the last hole to the first; without, it only counts.
  // Returns the straight distance from the start to the last position.
  float walkClosedPath(int& count, float pitch, TRowHoles* holes);

  // Whether cur has come back between two neighbouring positions: for
  // some pair (a, b), with the distances rounded to hundredths, |ab| is at
  // least |a cur| and |b cur|.
  static bool loopClosedBack(const TPointF& cur, const std::vector<TPointF>& positions);

  const std::vector<TPointF>& positions() const { return FPositions; }
  const std::vector<TPointF>& directions() const { return FDirections; }
  TPointF start() const { return FStart; }

 private:
  TRouteProbe FProbe;
  TPointF FStart;
  double FOutlineLength = 0.0;
  bool FReference = false;

  std::vector<TPointF> FPositions;
  std::vector<TPointF> FDirections;
  std::vector<TProbeCrossing> FCrossings;
  // Neighbouring pairs by their first position, for the closing test.
  TPointGrid FPairs;
  float FLongestPair = 0.0f;

  bool closedBack(const TPointF& cur) const;
  void addPosition(const TPointF& p, const TPointF& direction);
};
