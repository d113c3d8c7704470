#include "stitching/closed_walk.h"

#include <algorithm>
#include <cmath>

#include "document/point_helpers.h"
#include "geometry/geom_helpers.h"
#include "stitching/row_holes.h"
#include "stitching/stitch_rules.h"

namespace {

// Whether cur lies between a and b, to the hundredth.
bool between(const TPointF& a, const TPointF& b, const TPointF& cur) {
  const float ab = roundTo2Decimals(distanceBetween(a, b));
  return ab >= roundTo2Decimals(distanceBetween(a, cur)) && ab >= roundTo2Decimals(distanceBetween(b, cur));
}

}  // namespace

TClosedWalk::TClosedWalk(const std::vector<TPW_Path*>& shapes, const TPointF& start)
    : FProbe(shapes), FStart(start) {
  for (TPW_Path* s : shapes)
    if (s) FOutlineLength += s->calcTotalLength();
}

bool TClosedWalk::loopClosedBack(const TPointF& cur, const std::vector<TPointF>& positions) {
  for (size_t i = 0; i + 1 < positions.size(); ++i)
    if (between(positions[i], positions[i + 1], cur)) return true;
  return false;
}

bool TClosedWalk::closedBack(const TPointF& cur) const {
  if (FReference) return loopClosedBack(cur, FPositions);
  // cur can only lie between a and b when a is within |ab| of it.
  bool closed = false;
  FPairs.forEachNear(cur, double(FLongestPair) + 0.02, [&](const TPointF&, int i) {
    if (between(FPositions[size_t(i)], FPositions[size_t(i) + 1], cur)) closed = true;
    return !closed;
  });
  return closed;
}

void TClosedWalk::addPosition(const TPointF& p, const TPointF& direction) {
  FPositions.push_back(p);
  FDirections.push_back(direction);
  const size_t n = FPositions.size();
  if (n < 2) return;
  const TPointF& a = FPositions[n - 2];
  FPairs.insert(a, static_cast<int>(n - 2));
  FLongestPair = std::max(FLongestPair, distanceBetween(a, p));
}

float TClosedWalk::walkClosedPath(int& count, float pitch, TRowHoles* holes) {
  FPositions.clear();
  FDirections.clear();
  FPairs.reset(std::max(double(pitch), 1e-3));
  FLongestPair = 0.0f;
  count = 0;
  TPointF cur = FStart, prev(0.0f, 0.0f), next = FStart;
  TPointF direction;
  TPW_Path* firstMade = nullptr;
  const float half = pitch / 2.0f;
  // An outline walks round once; many times its length means it never will.
  const double giveUp = 4.0 * FOutlineLength + 10.0 * pitch;
  double walked = 0.0;
  do {
    if (FReference) FProbe.circleCrossingsReference(cur, pitch, FCrossings);
    else FProbe.circleCrossings(cur, pitch, FCrossings);
    // The drawing's direction at cur turns the hole, and at an open end
    // tells the way on; a dry walk needs it only there.
    int shape = -1;
    TPointF tangent;
    const bool wanted = holes || FCrossings.size() == 1;
    const bool onShape = wanted && (FReference ? FProbe.tangentAtReference(cur, shape, tangent)
                                               : FProbe.tangentAt(cur, shape, tangent));
    if (FCrossings.size() == 1 && onShape) {
      // At an open end: the nearer end of the shape is the way on.
      const TPW_Path* s = FProbe.shape(shape);
      const bool startNearer = distanceBetween(cur, s->FStartPt) < distanceBetween(cur, s->FEndPt);
      FCrossings.push_back(TProbeCrossing{startNearer ? s->FStartPt : s->FEndPt, shape});
    }
    if (FCrossings.size() > 1) {
      // Straight ahead beats turning back: the widest angle at cur between
      // the way back and the crossing, that is the smallest cosine; the
      // first wins a tie.
      const TPointF back = unitVectorTo(cur, prev);
      double smallest = 2.0;
      for (const TProbeCrossing& x : FCrossings) {
        const double c = std::clamp(double(cosBetween(back, unitVectorTo(cur, x.FPoint))), -1.0, 1.0);
        if (c < smallest) {
          smallest = c;
          next = x.FPoint;
        }
      }
    }
    if (onShape) direction = tangent;
    if (holes && !holes->findHoleNear(cur, half)) {
      TPW_Path* hole = holes->makeHole(cur, rotationOfDirection(TPointF(), direction));
      if (hole) {
        holes->chainAfterLast(*hole, pitch);
        if (!firstMade) firstMade = hole;
      }
    }
    ++count;
    addPosition(cur, direction);
    walked += pitch;
    prev = cur;
    cur = next;
  } while (!closedBack(cur) && walked <= giveUp && count < kMaxRowHoles);
  if (holes && firstMade && holes->lastStitch() && holes->lastStitch() != firstMade) {
    // One link closes the ring; the first hole's back link stays as it is.
    holes->lastStitch()->FNextStitchID = firstMade->FID;
  }
  return distanceBetween(FStart, prev);
}
