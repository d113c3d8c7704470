#include "stitching/divider_walk.h"

#include <cmath>

#include "document/point_helpers.h"
#include "geometry/geom_helpers.h"
#include "stitching/stitch_rules.h"

TDividerWalk::TDividerWalk(const std::vector<TPW_Path*>& route, const TWalkEnds& ends,
                           const THoleIndex* holes)
    : FProbe(route), FEnds(ends), FHoles(holes), FVisited(route.size(), 0) {}

bool TDividerWalk::nearWalkedPosition(const TPointF& x, float radius) const {
  bool near = false;
  FWalked.forEachNear(x, radius, [&](const TPointF& p, int) {
    if (distanceBetween(p, x) < radius) near = true;
    return !near;
  });
  return near;
}

void TDividerWalk::appendPosition(const TPointF& cur) {
  FTrial->FPositions.push_back(cur);
  FWalked.insert(cur, static_cast<int>(FTrial->FPositions.size()) - 1);
}

void TDividerWalk::fillDirections(TTrial& trial) const {
  trial.FDirections.clear();
  TPointF direction;
  for (const TPointF& p : trial.FPositions) {
    int shape = -1;
    TPointF tangent;
    const bool onShape = FReference ? FProbe.tangentAtReference(p, shape, tangent) : FProbe.tangentAt(p, shape, tangent);
    if (onShape) direction = tangent;
    trial.FDirections.push_back(direction);
  }
}

bool TDividerWalk::placeStep(int index, const TPointF& prev, const TPointF& cur, TPointF& next) {
  if (FReference) FProbe.circleCrossingsReference(cur, FPitch, FCrossings);
  else FProbe.circleCrossings(cur, FPitch, FCrossings);

  // The way the row runs: towards the first waypoint at first, then on
  // from the last position.
  const TPointF dir = index == 0 ? TPointF::fromDouble(double(FEnds.FFirstWaypoint.x) - cur.x,
                                                       double(FEnds.FFirstWaypoint.y) - cur.y)
                                 : TPointF::fromDouble(double(cur.x) - prev.x, double(cur.y) - prev.y);
  const bool hasDir = double(dir.x) * dir.x + double(dir.y) * dir.y > 1e-12;
  const float half = FPitch / 2.0f;

  float bestDist = 100000.0f;
  bool found = false;
  for (const TProbeCrossing& x : FCrossings) {
    if (nearWalkedPosition(x.FPoint, half)) continue;
    if (FHoles && FHoles->findHoleNear(x.FPoint, half)) continue;
    if (hasDir && double(dir.x) * (double(x.FPoint.x) - cur.x) + double(dir.y) * (double(x.FPoint.y) - cur.y) < 0.0)
      continue;
    // The walk never goes back to a shape it has left.
    if (!FVisited[size_t(x.FShape)]) {
      FVisited[size_t(x.FShape)] = 1;
      FLastVisited = x.FShape;
    } else if (x.FShape != FLastVisited) {
      continue;
    }
    const float d = distanceBetween(FEnds.FEnd, x.FPoint);
    if (bestDist > d) {
      bestDist = d;
      if (!found || index > 0) {
        next = x.FPoint;
        found = true;
      } else {
        // A second way from the start point: the other direction.
        FTrial->FHasSecond = true;
        if (!FUseSecond) next = x.FPoint;
      }
    }
  }

  appendPosition(cur);
  return found;
}

float TDividerWalk::tryPitch(float pitch, bool useSecond, TTrial& out) {
  FTrial = &out;
  out.FPositions.clear();
  out.FDirections.clear();
  out.FHasSecond = false;
  out.FGap = 0.0f;
  out.FEstimate = 0.0f;
  FPitch = pitch;
  FUseSecond = useSecond;
  std::fill(FVisited.begin(), FVisited.end(), 0);
  FLastVisited = -1;
  FWalked.reset(std::max(double(pitch), 1e-3));
  if (!(pitch > 0.0f)) return 0.0f;

  float walked = -pitch;
  int index = 0;
  TPointF prev = FEnds.FLastPos, cur = FEnds.FStart, next = FEnds.FStart;
  float gap = 0.0f;
  while (true) {
    const bool found = placeStep(index, prev, cur, next);
    walked = walked + pitch;
    if (walked > kEndlessWalk) {
      FEndless = true;
      return 0.0f;
    }
    // A row this long was refused before; a walk that gets here anyway stops.
    if (index >= kMaxRowHoles) return 0.0f;
    ++index;
    gap = distanceBetween(FEnds.FEnd, cur);
    if (pitch > gap || !found) break;
    prev = cur;
    cur = next;
  }

  const float half = pitch / 2.0f;
  const int n = out.count();
  float estimate;
  if (half > gap) {
    // The walk came out a little past the end.
    estimate = n > 1 ? static_cast<float>(double(pitch) + double(gap) / (n - 1)) : pitch;
    out.FGap = gap;
  } else {
    estimate = static_cast<float>(double(pitch) - (double(pitch) - gap) / n);
    // The end gets a position of its own.
    appendPosition(FEnds.FEnd);
    out.FGap = gap > half ? std::fabs(gap - pitch) : gap;
  }
  out.FEstimate = estimate;
  return estimate;
}

// ---- the search ----

TPitchSearch::TPitchSearch(TDividerWalk& walk, const TStitchSettings& settings, TKeepRule rule)
    : FWalk(walk), FSettings(settings), FRule(rule) {}

void TPitchSearch::judge(TTrial& trial, float estimate, int countForN) {
  if (!(estimate > 0.0f)) return;
  bool accept;
  if (FRule == TKeepRule::Api) {
    accept = !FKept || trial.FGap < FBestGap;
  } else {
    const float n = FSettings.FNumOfHoles;
    const bool countMode = FSettings.isCount();
    const bool smaller = trial.FGap < FBestGap;
    accept = !FKept || (smaller && !countMode) || (smaller && countMode && countForN == n) ||
             (countForN == n && FBestCount != n);
  }
  if (!accept) return;
  FKept = true;
  FBestGap = trial.FGap;
  FBestCount = trial.count();
  FBestPitch = estimate;
  std::swap(FBest, trial);
}

const TTrial& TPitchSearch::bestWithDirections() {
  if (FBest.FDirections.size() != FBest.FPositions.size()) FWalk.fillDirections(FBest);
  return FBest;
}

void TPitchSearch::keepBestTrial(float pitch) {
  ++FTrials;
  const float first = FWalk.tryPitch(pitch, false, FScratch);
  const int firstCount = FScratch.count();
  const bool second = FScratch.FHasSecond;
  judge(FScratch, first, firstCount);
  if (!second) return;
  ++FTrials;
  const float other = FWalk.tryPitch(pitch, true, FScratch);
  judge(FScratch, other, firstCount);
}

void TPitchSearch::rounds(float estimate, bool countMode) {
  const float n = FSettings.FNumOfHoles;
  for (int k = 0;; ++k) {
    if (k >= FSettings.FAutoPitchSteps) break;
    if (FRule == TKeepRule::Tool && countMode) {
      if (FBestGap < FSettings.FAutoPitchStopGap && FBestCount == n) break;
    } else if (FBestGap < FSettings.FAutoPitchStopGap) {
      break;
    }
    const float delta = static_cast<float>(FSettings.FAutoPitchPrecision * k);
    keepBestTrial(estimate + delta);
    if (delta > 0.0f) keepBestTrial(estimate - delta);
  }
}

void TPitchSearch::run(float startPitch, bool hasEndVertex) {
  keepBestTrial(startPitch);
  const float e = FKept ? FBestPitch : 0.0f;
  FEstimate = e;
  if (!(e > 0.0f) || FSettings.isFixed()) return;
  if (FSettings.isCount()) {
    if (FRule == TKeepRule::Tool && !hasEndVertex) return;
    rounds(e, true);
  } else {
    rounds(e, false);
  }
}
