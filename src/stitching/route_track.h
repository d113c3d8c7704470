// A route laid out as one track of straight pieces from the row's start to
// its end: the stretches of the route in order, each turned the way the row
// runs, as their flattened paths. The divider walk steps along it: the next
// hole is the first point further along the track whose straight distance
// from the last hole is the pitch, so a row follows the drawing round any
// turn and never skips part of it. A position found on the track is put
// back onto the drawn shape it belongs to (the track follows curves to
// within a few thousandths of a millimetre).
#pragma once

#include <vector>

#include "document/pw_path.h"
#include "geometry/intersect_primitives.h"

// One stretch of the route: a drawn shape from one point to another, the
// way the row runs.
struct TTrackLeg {
  const TPW_Path* FShape = nullptr;  // borrowed
  TPointF FFrom;
  TPointF FTo;
};

// A place on the track: a piece and how far along it, 0 to 1.
struct TTrackPos {
  int FPiece = 0;
  double FAlong = 0.0;
};

class TRouteTrack {
 public:
  TRouteTrack() = default;
  explicit TRouteTrack(const std::vector<TTrackLeg>& legs);

  // A closed outline once round from `start`: the shapes joined end to end
  // in the order given (a closed outline as findClosedLoop lists it, or one
  // ellipse), the first from its start to its end.
  static TRouteTrack aroundLoop(const std::vector<TPW_Path*>& shapes, const TPointF& start);

  bool empty() const { return FPoints.size() < 2; }
  double length() const { return FAt.empty() ? 0.0 : FAt.back(); }
  TDPoint start() const { return FPoints.front(); }
  TDPoint end() const { return FPoints.back(); }
  TTrackPos endPos() const { return TTrackPos{pieceCount() - 1, 1.0}; }

  TDPoint pointAt(const TTrackPos& pos) const;
  // How far along the track the position lies.
  double distanceAt(const TTrackPos& pos) const;
  // The way the row runs there: the unit direction of the piece.
  TDPoint directionAt(const TTrackPos& pos) const;

  // The first place after `from` whose straight distance from `center` is
  // `radius`, where the track leaves the circle. `center` must lie within
  // the circle at `from` (it is normally the point at `from`). False when
  // the rest of the track stays inside.
  bool nextAtChord(const TTrackPos& from, const TDPoint& center, double radius, TTrackPos& next) const;

  // The dividers at `pitch` from the start: the start and each step after
  // it, at most `most` steps, until the rest of the track lies within a
  // pitch of the last one.
  void walk(double pitch, int most, std::vector<TTrackPos>& places) const;
  // The number of steps of that walk.
  int stepsAt(double pitch, int most) const;
  // The pitch whose `steps`-th step lands on the end of the track, so that
  // the row closes there exactly; 0 when there is none. Found by halving
  // the pitch between a tenth below length / steps and length / steps.
  // Where the track runs steadily (see steadyOver) a longer pitch never
  // makes more steps, so a few walks home in on the pitch at which the
  // count is lost and the halving's other answers follow from it; the
  // result is the halving's, bit for bit. Elsewhere every answer is walked.
  double pitchForSteps(int steps) const;
  // True when no stretch of the track `window` long turns its direction
  // through a right angle or more (less a margin): within it, the straight
  // distance from any point grows steadily in both directions along the
  // track. A hairpin or a sharp point within the window makes it false.
  bool steadyOver(double window) const;
  // Of the step counts whose pitches lie either side of the wanted one,
  // the one whose pitch comes nearer (the fewer steps on a tie); 0 when
  // the track takes no step at all. `closingPitch`, when given, receives
  // that count's pitchForSteps.
  int nearestStepCount(double pitch, double* closingPitch = nullptr) const;

  // The point at the position put onto its drawn shape: radially onto an
  // arc or circle, to the nearest point of an ellipse or a curve. Shapes of
  // other kinds, and anything that would move further than a twentieth of
  // a millimetre, keep the track's point.
  TPointF onDrawing(const TTrackPos& pos) const;

 private:
  std::vector<TDPoint> FPoints;  // piece i runs from FPoints[i] to FPoints[i + 1]
  std::vector<double> FAt;       // distance along the track at FPoints[i]
  std::vector<int> FLegOf;       // the leg of piece i
  std::vector<const TPW_Path*> FLegShapes;
  // The direction of each piece as an angle, unwound along the track, and
  // the longest window found steady and shortest found not; filled when
  // first asked.
  mutable std::vector<double> FHeading;
  mutable double FSteadyUpTo = 0.0;
  mutable double FUnsteadyFrom = -1.0;
  mutable std::vector<int> FSpecks;  // the specks among the pieces, in order

  int pieceCount() const { return static_cast<int>(FPoints.size()) - 1; }
  // nextAtChord looking from piece `first` on (at or after from's piece).
  bool exitFrom(const TTrackPos& from, int first, const TDPoint& center, double radius, TTrackPos& next) const;
  // The dividers' next step from a place on the track, standing on it.
  bool stepFrom(const TTrackPos& from, const TDPoint& center, double pitch, TTrackPos& next) const;
  void addLeg(const TTrackLeg& leg);
  // The most length of specks (pieces too short to have a heading) that a
  // window holds.
  double speckWithin(double window) const;
  // What the walks of one halving have shown (closing_pitch.cpp).
  struct TStepLog;
  // Walks at `pitch`, at most `steps` steps, into the log; true when it
  // makes them all.
  bool probeSteps(double pitch, int steps, TStepLog& log) const;
  // A few walks that bracket the pitch at which `steps` steps are lost,
  // the first at `seed` when it is a guess (above 0).
  void homeIn(int steps, double seed, TStepLog& log) const;
  // pitchForSteps, its walks homing in from `seed`.
  double pitchForStepsFrom(int steps, double seed) const;
  // Whether `pitch` makes `steps` steps as the log proves it: 1, 0, or -1
  // when only a walk can tell.
  int knownReach(double pitch, int steps, const TStepLog& log, double margin) const;
};
