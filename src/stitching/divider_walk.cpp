#include "stitching/divider_walk.h"

#include <algorithm>
#include <cmath>

#include "stitching/stitch_rules.h"

float TDividerWalk::tryPitch(double pitch, TTrial& out) {
  out.FPositions.clear();
  out.FPlaces.clear();
  out.FGap = 0.0f;
  out.FEstimate = 0.0f;
  if (!(pitch > 0.0) || FTrack.empty()) return 0.0f;
  const double most = std::floor(double(kEndlessWalk) / pitch);
  FTrack.walk(pitch, static_cast<int>(std::min(most, double(kMaxRowHoles))) + 1, out.FPlaces);
  if (double(out.FPlaces.size()) > most + 1.0) {
    FEndless = true;
    return 0.0f;
  }
  // A row this long was refused before; a walk that gets here anyway stops.
  if (out.FPlaces.size() > size_t(kMaxRowHoles)) return 0.0f;
  for (const TTrackPos& p : out.FPlaces) out.FPositions.push_back(toPointF(FTrack.pointAt(p)));
  const TDPoint cur = FTrack.pointAt(out.FPlaces.back());

  // The rest of the route lies within a pitch of the last position.
  const TDPoint end = FTrack.end();
  const double gap = std::hypot(end.x - cur.x, end.y - cur.y);
  const int n = out.count();
  float estimate;
  if (pitch / 2.0 > gap) {
    // The last position is close to the end: the pitch that would put it
    // there.
    estimate = static_cast<float>(n > 1 ? pitch + gap / (n - 1) : pitch);
    out.FGap = static_cast<float>(gap);
  } else {
    // The end gets a position of its own; the last interval falls short.
    estimate = static_cast<float>(pitch - (pitch - gap) / n);
    out.FPositions.push_back(toPointF(end));
    out.FPlaces.push_back(FTrack.endPos());
    out.FGap = static_cast<float>(std::fabs(gap - pitch));
  }
  out.FEstimate = estimate;
  return estimate;
}

// ---- the search ----

TPitchSearch::TPitchSearch(TDividerWalk& walk, const TStitchSettings& settings, TKeepRule rule)
    : FWalk(walk), FSettings(settings), FRule(rule) {}

void TPitchSearch::judge(TTrial& trial, float estimate) {
  if (!(estimate > 0.0f)) return;
  const bool countMode = FSettings.isCount();
  const bool smaller = trial.FGap < FBestGap;
  bool accept;
  if (FRule == TKeepRule::Api && !countMode) {
    accept = !FKept || smaller;
  } else {
    const float n = FSettings.FNumOfHoles;
    const bool wanted = trial.count() == n;
    accept = !FKept || (smaller && (!countMode || wanted)) || (wanted && FBestCount != n);
  }
  if (!accept) return;
  FKept = true;
  FBestGap = trial.FGap;
  FBestCount = trial.count();
  FBestPitch = estimate;
  std::swap(FBest, trial);
}

void TPitchSearch::keepBestTrial(double pitch) {
  ++FTrials;
  const float estimate = FWalk.tryPitch(pitch, FScratch);
  judge(FScratch, estimate);
}

void TPitchSearch::rounds(float estimate) {
  for (int k = 0; k < FSettings.FAutoPitchSteps; ++k) {
    if (FBestGap < FSettings.FAutoPitchStopGap) break;
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
  const TRouteTrack& track = FWalk.track();
  if (FSettings.isCount()) {
    // The pitch whose last step of the count lands on the end.
    if (!hasEndVertex) return;
    const double p = track.pitchForSteps(static_cast<int>(std::lround(FSettings.FNumOfHoles)) - 1);
    if (p > 0.0) keepBestTrial(p);
    return;
  }
  rounds(e);
  // Where no pitch near the estimate closes the row (sharp turns shorten
  // the steps unevenly), the row of the count whose closing pitch comes
  // nearest the wanted one; but no two holes closer than half of it.
  if (FBestGap >= FSettings.FAutoPitchStopGap) {
    double p = 0.0;
    track.nearestStepCount(FSettings.FPitch, &p);
    if (p >= FSettings.FPitch / 2.0) keepBestTrial(p);
  }
}
