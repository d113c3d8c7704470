// A whole row: along an open route between two clicks, or once round a
// closed outline. Chooses the placement the settings ask for, runs the
// pitch search, and punches the holes through a TRowHoles. What a row
// reports is what it made: the holes and their mean spacing.
#pragma once

#include <memory>
#include <vector>

#include "document/pw_path.h"
#include "stitching/route_track.h"
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
  // the start; borrowed. The corner methods chain these.
  std::vector<TPW_Path*> FRoute;
  // The same route as drawn shapes from the start to the end.
  std::vector<TTrackLeg> FLegs;
  TPointF FStart;  // the first hole
  TPointF FEnd;    // where the row should end
  bool FHasEndVertex = false;
  float FRouteLength = 0.0f;  // the end vertex's distance (count mode)
};

struct TRowOutcome {
  bool FCornerMethod = false;  // laid by SmartCorner or AllJunctions
  bool FAbandoned = false;     // count mode without a route end or with too few holes
  bool FNoTrial = false;       // no trial gave a pitch: nothing made
  bool FEndlessLoop = false;   // some trial walked into an endless loop
  float FEstimate = 0.0f;      // E: the pitch that would close the row
  int FTrials = 0;
  std::vector<TPW_Path*> FMade;  // the holes made, in order

  int count() const { return static_cast<int>(FMade.size()); }
  // The mean straight distance between neighbouring made holes.
  double pitch() const;
};

class TVertexNetwork;
class TRouteVertex;

// The row along the network's route from its start to `endVertex`: the
// stretches (owned by `stretches`, which must outlive the row) and the
// shapes they are cut from.
TOpenRow openRowAlong(const TVertexNetwork& network, const TRouteVertex* endVertex, const TPointF& start,
                      const TPointF& end, std::vector<std::unique_ptr<TPW_Path>>& stretches);

// The open row. The route is turned to run from the start when a corner
// method is tried.
TRowOutcome layOpenRow(TOpenRow& row, const TStitchSettings& settings, TRowHoles& holes, TRowCaller caller);

struct TClosedOutcome {
  bool FCornerMethod = false;
  bool FClosed = true;  // a corner method's chain may stay open
  std::vector<TPW_Path*> FMade;  // the holes made, round the ring in order

  int count() const { return static_cast<int>(FMade.size()); }
  // The mean straight distance between neighbouring made holes, the last
  // and the first included when the row closes.
  double pitch() const;
};

// Round a closed outline from startPt: a corner method when the outline
// orders into a chain of several shapes and the settings ask for one,
// otherwise the closed walk: the ring whose pitch comes nearest the wanted
// one (auto), the ring of the count asked for (count), or the wanted pitch
// as it stands (fixed).
TClosedOutcome placeOnClosedPath(const std::vector<TPW_Path*>& shapes, const TPointF& startPt,
                                 const TStitchSettings& settings, TRowHoles& holes);
