// The divider walk along an open route. A pricking iron is a rigid comb,
// so what counts between two holes is the chord. The dividers stand on the
// last hole and the next hole is the first point further along the route at
// the pitch from it; a trial walks the whole route at one pitch, and the
// pitch search tries pitches around the wanted one until the row closes
// well on the end point.
#pragma once

#include <vector>

#include "stitching/route_track.h"
#include "stitching/stitch_settings.h"

// What one trial leaves.
struct TTrial {
  std::vector<TPointF> FPositions;
  // Where each position lies on the track; the end, when it is given a
  // position of its own, lies at the track's end.
  std::vector<TTrackPos> FPlaces;
  float FGap = 0.0f;       // how badly the row closes on the end
  float FEstimate = 0.0f;  // the pitch this trial suggests; 0 after failure
  int count() const { return static_cast<int>(FPositions.size()); }
};

// Of two walks at this many millimetres, the row is in an endless loop.
inline constexpr float kEndlessWalk = 5000.0f;

class TDividerWalk {
 public:
  // `track` runs from the row's first hole to where it should end; borrowed.
  explicit TDividerWalk(const TRouteTrack& track) : FTrack(track) {}

  // One walk at `pitch`. Returns the estimate, 0 after failure (an endless
  // walk sets endlessLoop()). The pitch is taken in double precision: the
  // pitch at which a row closes exactly must not be rounded on the way.
  float tryPitch(double pitch, TTrial& out);

  bool endlessLoop() const { return FEndless; }
  const TRouteTrack& track() const { return FTrack; }

 private:
  const TRouteTrack& FTrack;
  bool FEndless = false;
};

// The pitch search of a row: trials at pitches around an estimate, the
// best kept. In count mode a trial with the number of holes asked for beats
// one without; otherwise, and among those, the smaller closing gap wins.
// The tool's rules also prefer that count in the other modes (it reads the
// count box whatever the mode); the API's do not.
enum class TKeepRule { Tool, Api };

class TPitchSearch {
 public:
  TPitchSearch(TDividerWalk& walk, const TStitchSettings& settings, TKeepRule rule);

  // Walks at the pitch and keeps the trial if it beats the best.
  void keepBestTrial(double pitch);
  // The whole search from the start pitch: one trial, then what the pitch
  // mode asks for. Auto: trials at pitches around the first one's estimate
  // until one closes within the stop gap, else the row of the count whose
  // closing pitch is nearest the wanted one. Count: the pitch at which the
  // count asked for closes on the end. `hasEndVertex`: the route has an
  // end (count mode).
  void run(float startPitch, bool hasEndVertex);

  bool kept() const { return FKept; }
  const TTrial& best() const { return FBest; }
  float bestGap() const { return FBestGap; }
  int bestCount() const { return FBestCount; }
  float bestPitch() const { return FBestPitch; }
  // The estimate of the first kept trial, about which the rounds search; 0
  // when none was kept.
  float estimate() const { return FEstimate; }
  int trials() const { return FTrials; }

 private:
  TDividerWalk& FWalk;
  const TStitchSettings& FSettings;
  TKeepRule FRule;
  bool FKept = false;
  float FBestGap = 2147483648.0f;
  int FBestCount = 0;
  float FBestPitch = 0.0f;  // the estimate of the best trial
  float FEstimate = 0.0f;
  int FTrials = 0;
  TTrial FBest;
  TTrial FScratch;

  void judge(TTrial& trial, float estimate);
  void rounds(float estimate);
};
