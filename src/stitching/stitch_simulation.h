// The geometry of the stitch simulator: where the thread lies on the face of
// the leather, as data a painter can draw without knowing about holes.
//
// The holes of a row are chained in sewing order by FNextStitchID. On the
// face, each stitch runs from the point where the thread leaves one hole
// (FStitchOut) to the point where it enters the next (FStitchIn). A saddle
// stitch is two running stitches that fill each other's gaps, so stitches
// are numbered along their row: the even ones are one needle's thread, the
// odd ones the other's, and a painter may show either or both.
#pragma once

#include <vector>

#include "document/types.h"

class TPW_Path;
class TShapeList;

struct TStitchSimulationOptions {
  // The simulator is switched on for every hole; otherwise only stitches
  // touching a hole with FAlwaysShowStitchSimulator are given.
  bool FShowStitchPattern = false;
  // Thread colour for holes that keep the default (white) thread colour.
  TAlphaColor FStitchColor = 0xFFFFFFFF;
  float FStitchThickness = 3.0f;
  float FStitchOpacity = 1.0f;
};

struct TThreadStitch {
  TPointF FFrom;  // FStitchOut of the hole the stitch leaves
  TPointF FTo;    // FStitchIn of the next hole
  int FFromID = -1;
  int FToID = -1;
  int FIndexInRow = 0;  // 0 for the first stitch of a row
  bool isEven() const { return FIndexInRow % 2 == 0; }
  TAlphaColor FColor = 0xFFFFFFFF;
};

struct TStitchSimulation {
  // Row by row; within a row in sewing order. Rows start at holes that no
  // other hole leads to, in list order; closed rows follow, each from its
  // first hole in list order, with the stitch that closes the loop last.
  std::vector<TThreadStitch> FStitches;
  float FThickness = 3.0f;
  float FOpacity = 1.0f;
};

// Shapes other than "S_HOLE" are passed over. A link to a missing hole or
// to the hole itself ends its row; a hole reached twice ends the walk.
TStitchSimulation buildStitchSimulation(const std::vector<const TPW_Path*>& shapes,
                                        const TStitchSimulationOptions& options);
TStitchSimulation buildStitchSimulation(const TShapeList& shapes,
                                        const TStitchSimulationOptions& options);
