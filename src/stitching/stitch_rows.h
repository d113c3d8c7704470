// A whole row: along an open route between two clicks, or once round a
// closed outline. Chooses the placement the settings ask for, runs the
// pitch search, and punches the holes through a TRowHoles.
#pragma once

#include <memory>
#include <vector>

#include "document/pw_path.h"
#include "stitching/divider_walk.h"
#include "stitching/stitch_settings.h"

class TRowHoles;

// Whether a row over a route of `length` millimetres may be laid with the
// settings, judged before any walk: the pitch must be a positive number no
// larger than kMaxLengthMm, and the row may not need more than kMaxRowHoles
// holes (the count asked for, or the length over the pitch).
enum class TRowSize { Fine, BadPitch, TooManyHoles };
TRowSize checkRowSize(double length, const TStitchSettings& settings);
// The length of the shapes of a route or an outline.
double routeLength(const std::vector<TPW_Path*>& shapes);

// Who asked for the row. The stitch tool and the local API differ in
// small, settled ways: which trials the search keeps, whether the corner
// methods need auto pitch, how count mode finds its pitch, and whether the
// last hole is forced onto the end and positions with a hole are passed.
enum class TRowCaller { Tool, Api };

struct TOpenRow {
  // The route's stretches as the network reads them, from the end back to
  // the start; borrowed.
  std::vector<TPW_Path*> FRoute;
  TWalkEnds FEnds;
  bool FHasEndVertex = false;
  float FRouteLength = 0.0f;  // the end vertex's distance (count mode)
};

struct TRowOutcome {
  bool FCornerMethod = false;  // laid by SmartCorner or AllJunctions
  bool FAbandoned = false;     // count mode without a route end or with too few holes
  bool FNoTrial = false;       // no trial gave a pitch: nothing made
  bool FEndlessLoop = false;   // some trial walked into an endless loop
  int FCount = 0;              // holes counted: made by the walk, planned by a corner method
  int FPositions = 0;          // positions of the best trial
  long long FTotal = 0;        // sum of distances between made holes, in ten-thousandths
  float FEstimate = 0.0f;      // E: the pitch that would close the row
  float FBestPitch = 0.0f;
  double FChainLength = 0.0;   // the corner methods' chain
  int FTrials = 0;
  std::vector<TPW_Path*> FMade;

  // The pitch the status line shows for a walked row: mean distance
  // between the made holes, 0 for fewer than two.
  double madePitch() const { return FCount > 1 ? double(FTotal) / (FCount - 1) / 10000.0 : 0.0; }
  // For a corner method: the chain's length over the gaps between holes.
  double chainPitch(bool closed, float pitch) const;
};

class TVertexNetwork;
class TRouteVertex;

// The row along the network's route from its start to `endVertex`: the
// stretches (owned by `stretches`, which must outlive the row), the ends,
// and the first waypoint, the vertex after the start (or the end when that
// vertex is the start itself). `lastPos` is where the last hole stands.
TOpenRow openRowAlong(const TVertexNetwork& network, const TRouteVertex* endVertex, const TPointF& start,
                      const TPointF& end, const TPointF& lastPos,
                      std::vector<std::unique_ptr<TPW_Path>>& stretches);

// The open row. The route is turned to run from the start when a corner
// method is tried.
TRowOutcome layOpenRow(TOpenRow& row, const TStitchSettings& settings, TRowHoles& holes, TRowCaller caller);

struct TClosedOutcome {
  bool FCornerMethod = false;
  int FCount = 0;
  float FPitch = 0.0f;
  int FWalks = 0;
  std::vector<TPW_Path*> FMade;
};

// Round a closed outline from startPt: a corner method when the outline
// orders into a chain of several shapes and the settings ask for one,
// otherwise the closed walk with its pitch search; a lone circle takes the
// count whose chord comes nearest the pitch.
TClosedOutcome placeOnClosedPath(const std::vector<TPW_Path*>& shapes, const TPointF& startPt,
                                 const TStitchSettings& settings, TRowHoles& holes);
