// Corners of two lines: bringing both exactly to their crossing (extend or
// trim), and rounding the corner with an arc of a given radius (the
// chamfer of the corner tool).
#pragma once

#include <optional>

#include "document/pw_path.h"

// The crossing of the two lines drawn on without end; nothing for
// parallels or a line without length.
std::optional<TPointF> crossingOfLines(const TPW_Path& a, const TPW_Path& b);
// The same, where it is not
// already an end of both. Nothing for parallel lines or lines that meet
// at their ends already.
std::optional<TPointF> extendOrTrimPoint(const TPW_Path& a, const TPW_Path& b);
// Moves the end of the line nearer the point onto it (on a tie the end,
// not the start) and redraws the line.
void bringLineTo(TPW_Path& line, const TPointF& p);

// The round corner of radius R between two lines that meet at `crossing`.
// Each line keeps the side towards its FClickedPoint (its far end when the
// click lies on the crossing); the arc touches both, and each line's end at
// the corner moves to its touching point.
struct TChamferPlan {
  TPointF FCentre;
  TPointF FTouchA, FTouchB;  // where the arc meets a and b
  bool FMoveEndOfA = true;   // a's end moves (else its start)
  bool FMoveEndOfB = true;
  float FSweep = 0;          // from FTouchA to FTouchB, the short way
};
// Nothing when the lines are parallel, the radius is not above 0, or a
// line is too short to take the arc on its kept side.
std::optional<TChamferPlan> planChamfer(const TPW_Path& a, const TPW_Path& b, double radius,
                                        const TPointF& crossing);
