// The divider walk along an open route. A pricking iron is a rigid comb,
// so what counts between two holes is the chord. A circle of the pitch is
// put on the last hole and the next hole is where it crosses the route,
// the crossing nearest the end winning; a trial walks the whole route at
// one pitch, and the pitch search tries pitches around the wanted one
// until the row closes well on the end point.
#pragma once

#include <memory>
#include <vector>

#include "document/pw_path.h"
#include "stitching/point_grid.h"
#include "stitching/route_probe.h"
#include "stitching/stitch_settings.h"

// What one trial leaves.
struct TTrial {
  std::vector<TPointF> FPositions;
  // Unit directions of the drawing, one per position; filled by
  // TDividerWalk::fillDirections for the trial that is punched.
  std::vector<TPointF> FDirections;
  float FGap = 0.0f;                 // how badly the row closes on the end
  float FEstimate = 0.0f;            // the pitch this trial suggests; 0 after failure
  bool FHasSecond = false;           // the first step also offered the other direction
  int count() const { return static_cast<int>(FPositions.size()); }
};

// Where an open row runs.
struct TWalkEnds {
  TPointF FStart;          // the first hole
  TPointF FEnd;            // where the row should end
  TPointF FFirstWaypoint;  // sets the direction of the first step
  TPointF FLastPos;        // "previous" position of the first step (the last hole so far)
};

// Of two walks at this many millimetres, the row is in an endless loop.
inline constexpr float kEndlessWalk = 5000.0f;

class TDividerWalk {
 public:
  // `route`: the shapes the row may lie on, borrowed, in the order their
  // crossings are listed. `holes`: holes already in the layer, or null.
  TDividerWalk(const std::vector<TPW_Path*>& route, const TWalkEnds& ends, const THoleIndex* holes);

  // Steps through the reference forms of the probe (slow), for tests.
  void setReference(bool on) { FReference = on; }

  // One walk at `pitch`. Returns the estimate, 0 after failure (an endless
  // walk sets endlessLoop()).
  float tryPitch(float pitch, bool useSecond, TTrial& out);
  // One step from cur: appends cur with the drawing's direction to the
  // trial and finds the next position. False when there is none.
  bool placeStep(int index, const TPointF& prev, const TPointF& cur, TPointF& next);
  // The drawing's direction at each position: of the interval the position
  // lies on, or where it lies on none the direction before it. The walk
  // itself does not need them, so a trial gets them only when it is kept
  // for punching.
  void fillDirections(TTrial& trial) const;

  bool endlessLoop() const { return FEndless; }
  const TWalkEnds& ends() const { return FEnds; }

 private:
  TRouteProbe FProbe;
  TWalkEnds FEnds;
  const THoleIndex* FHoles;
  bool FReference = false;
  bool FEndless = false;

  // The trial under way.
  TTrial* FTrial = nullptr;
  float FPitch = 0.0f;
  bool FUseSecond = false;
  std::vector<char> FVisited;
  int FLastVisited = -1;
  TPointGrid FWalked;
  std::vector<TProbeCrossing> FCrossings;

  bool nearWalkedPosition(const TPointF& x, float radius) const;
  void appendPosition(const TPointF& cur);
};

// The pitch search of a row: trials at pitches around an estimate, the
// best kept. The tool's rules judge a trial by its closing gap and by the
// number of holes asked for; the API's by the gap alone.
enum class TKeepRule { Tool, Api };

class TPitchSearch {
 public:
  TPitchSearch(TDividerWalk& walk, const TStitchSettings& settings, TKeepRule rule);

  // Walks at the pitch (and, when the first step offered it, the other way)
  // and keeps the trial if it beats the best.
  void keepBestTrial(float pitch);
  // The whole search from the start pitch: one trial, then the rounds the
  // pitch mode asks for. `hasEndVertex`: the route has an end (count mode).
  void run(float startPitch, bool hasEndVertex);

  bool kept() const { return FKept; }
  const TTrial& best() const { return FBest; }
  // The best trial with the drawing's direction at each position.
  const TTrial& bestWithDirections();
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
  float FBestPitch = 0.0f;
  float FEstimate = 0.0f;
  int FTrials = 0;
  TTrial FBest;
  TTrial FScratch;

  void judge(TTrial& trial, float estimate, int countForN);
  void rounds(float estimate, bool countMode);
};
