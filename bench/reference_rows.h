// Reference implementations the row code is measured and checked against.
//
// The full pitch search: every walk stepping over every piece of the track,
// the closing pitch of a count found by plain halving (some thirty walks),
// and the auto rounds of the open row trying every pitch in turn. It is the
// search as it stood before it was made to converge in a few walks; the
// tests compare the two hole by hole, and the benchmarks time both.
//
// The even-split pass: what a simple program does instead of the dividers.
// One table of the route's length, the nearest whole number of gaps, and
// hole k at k times the length over the gaps, measured along the way.
#pragma once

#include <algorithm>
#include <cmath>
#include <memory>
#include <vector>

#include "document/point_helpers.h"
#include "stitching/divider_walk.h"
#include "stitching/route_track.h"
#include "stitching/stitch_rules.h"

namespace reference {

inline void walk(const TRouteTrack& t, double pitch, int most, std::vector<TTrackPos>& places) {
  places.clear();
  if (t.empty() || !(pitch > 0.0)) return;
  TTrackPos at{0, 0.0}, next;
  places.push_back(at);
  TDPoint cur = t.start();
  for (int step = 0; step < most && t.nextAtChord(at, cur, pitch, next); ++step) {
    at = next;
    cur = t.pointAt(at);
    places.push_back(at);
  }
}

inline int stepsAt(const TRouteTrack& t, double pitch, int most) {
  std::vector<TTrackPos> places;
  walk(t, pitch, most, places);
  return places.empty() ? 0 : static_cast<int>(places.size()) - 1;
}

inline double pitchForSteps(const TRouteTrack& t, int steps) {
  if (steps < 1 || !(t.length() > 0.0)) return 0.0;
  auto reaches = [&](double p) { return stepsAt(t, p, steps) >= steps; };
  double hi = t.length() / steps * (1.0 + 1e-12);
  double lo = t.length() / steps * 0.9;
  for (int i = 0; i < 40 && !reaches(lo); ++i) lo /= 2.0;
  if (!reaches(lo)) return 0.0;
  for (int i = 0; i < 64 && hi - lo > 1e-9 * std::max(1.0, hi); ++i) {
    const double mid = (lo + hi) / 2.0;
    (reaches(mid) ? lo : hi) = mid;
  }
  return lo;
}

inline int nearestStepCount(const TRouteTrack& t, double pitch) {
  if (!(pitch > 0.0) || !(t.length() > 0.0)) return 0;
  int more = std::max(1, static_cast<int>(std::lround(t.length() / pitch)));
  double pMore = pitchForSteps(t, more);
  int fewer = more;
  double pFewer = pMore;
  if (pMore >= pitch) {
    for (int k = 0; k < 64 && pMore >= pitch && pMore > 0.0; ++k) {
      fewer = more;
      pFewer = pMore;
      pMore = pitchForSteps(t, ++more);
    }
  } else {
    for (int k = 0; k < 64 && pFewer < pitch && fewer > 1; ++k) {
      more = fewer;
      pMore = pFewer;
      pFewer = pitchForSteps(t, --fewer);
    }
  }
  if (!(pFewer > 0.0)) return pMore > 0.0 ? more : 0;
  if (pMore > 0.0 && std::fabs(pMore - pitch) < std::fabs(pFewer - pitch)) return more;
  return fewer;
}

// One trial of the open row, as TDividerWalk::tryPitch, over the full walk.
inline float tryPitch(const TRouteTrack& t, double pitch, TTrial& out) {
  out.FPositions.clear();
  out.FPlaces.clear();
  out.FGap = 0.0f;
  out.FEstimate = 0.0f;
  if (!(pitch > 0.0) || t.empty()) return 0.0f;
  const double most = std::floor(double(kEndlessWalk) / pitch);
  walk(t, pitch, static_cast<int>(std::min(most, double(kMaxRowHoles))) + 1, out.FPlaces);
  if (double(out.FPlaces.size()) > most + 1.0 || out.FPlaces.size() > size_t(kMaxRowHoles)) return 0.0f;
  for (const TTrackPos& p : out.FPlaces) out.FPositions.push_back(toPointF(t.pointAt(p)));
  const TDPoint cur = t.pointAt(out.FPlaces.back()), end = t.end();
  const double gap = std::hypot(end.x - cur.x, end.y - cur.y);
  const int n = out.count();
  if (pitch / 2.0 > gap) {
    out.FEstimate = static_cast<float>(n > 1 ? pitch + gap / (n - 1) : pitch);
    out.FGap = static_cast<float>(gap);
  } else {
    out.FEstimate = static_cast<float>(pitch - (pitch - gap) / n);
    out.FPositions.push_back(toPointF(end));
    out.FPlaces.push_back(t.endPos());
    out.FGap = static_cast<float>(std::fabs(gap - pitch));
  }
  return out.FEstimate;
}

// The open row's whole search, as TPitchSearch::run: what it keeps.
struct TSearchResult {
  bool kept = false;
  float bestPitch = 0.0f, estimate = 0.0f;
  TTrial best;
  int trials = 0;
};

inline TSearchResult search(const TRouteTrack& t, const TStitchSettings& s, TKeepRule rule, float startPitch,
                            bool hasEndVertex) {
  TSearchResult r;
  float bestGap = 2147483648.0f;
  int bestCount = 0;
  TTrial trial;
  auto keep = [&](double pitch) {
    ++r.trials;
    const float estimate = tryPitch(t, pitch, trial);
    if (!(estimate > 0.0f)) return;
    const bool countMode = s.isCount(), smaller = trial.FGap < bestGap;
    bool accept;
    if (rule == TKeepRule::Api && !countMode) {
      accept = !r.kept || smaller;
    } else {
      const bool wanted = trial.count() == s.FNumOfHoles;
      accept = !r.kept || (smaller && (!countMode || wanted)) || (wanted && bestCount != s.FNumOfHoles);
    }
    if (!accept) return;
    r.kept = true;
    bestGap = trial.FGap;
    bestCount = trial.count();
    r.bestPitch = estimate;
    std::swap(r.best, trial);
  };
  keep(startPitch);
  const float e = r.kept ? r.bestPitch : 0.0f;
  r.estimate = e;
  if (!(e > 0.0f) || s.isFixed()) return r;
  if (s.isCount()) {
    if (!hasEndVertex) return r;
    const double p = pitchForSteps(t, static_cast<int>(std::lround(s.FNumOfHoles)) - 1);
    if (p > 0.0) keep(p);
    return r;
  }
  for (int k = 0; k < s.FAutoPitchSteps; ++k) {
    if (bestGap < s.FAutoPitchStopGap) break;
    const float delta = static_cast<float>(s.FAutoPitchPrecision * k);
    keep(e + delta);
    if (delta > 0.0f) keep(e - delta);
  }
  if (bestGap >= s.FAutoPitchStopGap) {
    const double p = pitchForSteps(t, nearestStepCount(t, s.FPitch));
    if (p >= s.FPitch / 2.0) keep(p);
  }
  return r;
}

// The ring round a closed outline in auto or count mode, as the closed walk
// lays it: the places of its holes.
inline std::vector<TTrackPos> ring(const TRouteTrack& t, const TStitchSettings& s) {
  std::vector<TTrackPos> places;
  const int count = s.isAuto() ? nearestStepCount(t, s.FPitch)
                               : static_cast<int>(roundHalfEven(s.FNumOfHoles));
  const double p = count >= 2 ? pitchForSteps(t, count) : 0.0;
  if (p > 0.0) walk(t, p, count - 1, places);
  return places;
}

// ---- the even-split pass ----

// The route's flattened points and the length along it at each, built once.
struct TLengthTable {
  std::vector<TDPoint> points;
  std::vector<double> at;
  explicit TLengthTable(const std::vector<TPW_Path*>& shapes) {
    for (const TPW_Path* s : shapes)
      for (const TRectF& r : s->getIntervals(false)) {
        const TDPoint a = toDPoint(r.topLeft()), b = toDPoint(r.bottomRight());
        if (points.empty()) {
          points.push_back(a);
          at.push_back(0.0);
        }
        at.push_back(at.back() + std::hypot(b.x - a.x, b.y - a.y));
        points.push_back(b);
      }
  }
  double length() const { return at.empty() ? 0.0 : at.back(); }
  // The point at distance d along the route and the direction there.
  void pointAt(double d, TDPoint& p, TDPoint& dir) const {
    const size_t i = std::min<size_t>(
        std::max<ptrdiff_t>(std::upper_bound(at.begin(), at.end(), d) - at.begin() - 1, 0), at.size() - 2);
    const double len = at[i + 1] - at[i], u = len > 0.0 ? (d - at[i]) / len : 0.0;
    const TDPoint& a = points[i];
    const TDPoint& b = points[i + 1];
    p = {a.x + (b.x - a.x) * u, a.y + (b.y - a.y) * u};
    dir = len > 0.0 ? TDPoint{(b.x - a.x) / len, (b.y - a.y) / len} : TDPoint{1.0, 0.0};
  }
};

// Holes at k * length / gaps along the shapes, gaps the nearest whole number
// of pitches; `closed` leaves out the hole on the end, which is the start.
// Each hole is handed to `make(position, rotation)`.
template <class TMake>
int evenSplitPass(const std::vector<TPW_Path*>& shapes, double pitch, bool closed, TMake&& make) {
  const TLengthTable table(shapes);
  const double length = table.length();
  if (!(length > 0.0) || !(pitch > 0.0)) return 0;
  const int gaps = std::max(1, static_cast<int>(std::lround(length / pitch)));
  const int holes = closed ? gaps : gaps + 1;
  TDPoint p, dir;
  for (int k = 0; k < holes; ++k) {
    table.pointAt(length * k / gaps, p, dir);
    make(toPointF(p), rotationOfDirection(TPointF(), toPointF(dir)));
  }
  return holes;
}

}  // namespace reference
