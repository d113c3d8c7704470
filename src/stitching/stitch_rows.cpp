#include "stitching/stitch_rows.h"

#include <algorithm>
#include <cmath>

#include "document/point_helpers.h"
#include "geometry/geom_helpers.h"
#include "stitching/chain_order.h"
#include "stitching/corner_placement.h"
#include "stitching/divider_walk.h"
#include "stitching/route_network.h"
#include "stitching/row_holes.h"
#include "stitching/stitch_rules.h"

TRowSize checkRowSize(double length, const TStitchSettings& settings) {
  const double pitch = settings.FPitch;
  if (!(pitch > 0.0) || pitch > kMaxLengthMm) return TRowSize::BadPitch;
  const double holes = settings.isCount() ? std::round(double(settings.FNumOfHoles)) : length / pitch + 1.0;
  return holes > kMaxRowHoles ? TRowSize::TooManyHoles : TRowSize::Fine;
}

double routeLength(const std::vector<TPW_Path*>& shapes) {
  double length = 0.0;
  for (const TPW_Path* s : shapes)
    if (s) length += s->calcTotalLength();
  return length;
}

double TRowOutcome::pitch() const { return meanHoleSpacing(FMade, false); }

double TClosedOutcome::pitch() const { return meanHoleSpacing(FMade, FClosed); }

namespace {

// The count mode's start pitch: the route's length made a whole number of
// ten-thousandths before it is divided.
float countModePitch(float routeLength, float n, TRowCaller caller) {
  if (caller == TRowCaller::Api) return static_cast<float>(double(routeLength) / (double(n) - 1.0));
  const double tenThousandths = double(roundHalfEven(double(routeLength) * 10000.0));
  return static_cast<float>(double(static_cast<float>(tenThousandths / (double(n) - 1.0))) / 10000.0);
}

float rotationAt(const TRouteTrack& track, const TTrackPos& place) {
  return rotationOfDirection(TPointF(), toPointF(track.directionAt(place)));
}

void punchBest(const TPitchSearch& search, const TRouteTrack& track, const TOpenRow& row,
               const TStitchSettings& settings, TRowHoles& holes, TRowCaller caller) {
  const TTrial& best = search.best();
  const float pitch = search.bestPitch();
  const float half = pitch / 2.0f;
  const bool tool = caller == TRowCaller::Tool;
  for (size_t i = 0; i < best.FPlaces.size(); ++i) {
    TPointF pos = track.onDrawing(best.FPlaces[i]);
    const bool lastOne = i + 1 == best.FPlaces.size();
    if (tool && lastOne && settings.isAuto() && settings.FForceFitLastPrick &&
        half > distanceBetween(pos, row.FEnd))
      pos = row.FEnd;
    if (tool && holes.findHoleNear(pos, half)) continue;
    if (TPW_Path* hole = holes.makeHole(pos, rotationAt(track, best.FPlaces[i]))) holes.chainAfterLast(*hole, pitch);
  }
}

// The end of joint j that stands on vertex v.
TPointF jointEndAt(const TJointInfo& j, const TRouteVertex& v) {
  return samePoint(j.FPoints[0].FPoint, v.FPoint, 0.0) ? j.FPoints[0].FPoint : j.FPoints[1].FPoint;
}

}  // namespace

TOpenRow openRowAlong(const TVertexNetwork& network, const TRouteVertex* endVertex, const TPointF& start,
                      const TPointF& end, std::vector<std::unique_ptr<TPW_Path>>& stretches) {
  stretches = network.getActualPathList(endVertex);
  TOpenRow row;
  for (const auto& r : stretches) row.FRoute.push_back(r.get());
  size_t guard = network.Count() + 1;
  for (const TRouteVertex* v = endVertex; v && v->FMinDistJoint && v->FMinDistFromVertex && guard-- > 0;
       v = v->FMinDistFromVertex) {
    const TJointInfo& j = *v->FMinDistJoint;
    row.FLegs.push_back(TTrackLeg{j.FPath, jointEndAt(j, *v->FMinDistFromVertex), jointEndAt(j, *v)});
  }
  std::reverse(row.FLegs.begin(), row.FLegs.end());
  row.FStart = start;
  row.FEnd = end;
  row.FHasEndVertex = network.FEndVertex != nullptr;
  row.FRouteLength = row.FHasEndVertex ? network.FEndVertex->FMinDist : 0.0f;
  return row;
}

TRowOutcome layOpenRow(TOpenRow& row, const TStitchSettings& settings, TRowHoles& holes, TRowCaller caller) {
  TRowOutcome out;
  const bool tool = caller == TRowCaller::Tool;
  const size_t before = holes.made().size();
  auto collectMade = [&] {
    out.FMade.assign(holes.made().begin() + static_cast<std::ptrdiff_t>(before), holes.made().end());
  };
  const bool cornerWanted = tool ? settings.usesCornerMethod() : settings.FCornerMode < kCornerUniform;
  if (cornerWanted && !row.FRoute.empty()) {
    std::reverse(row.FRoute.begin(), row.FRoute.end());
    std::vector<TPW_Path*> chain;
    std::vector<std::unique_ptr<TPW_Path>> temporaries;
    orderIntoChain(row.FRoute, chain, temporaries);
    if (!chain.empty()) {
      const std::vector<TPlannedHole> plan =
          settings.FCornerMode == kCornerSmart
              ? planSmartCorner(chain, false, settings.FPitch, settings.FCornerAngleThreshold)
              : planEvenSplit(chain, false, settings.FPitch);
      // The tool walks the route instead when the plan has no hole at all.
      if (placePlannedHoles(plan, false, holes) > 0 || !tool) {
        out.FCornerMethod = true;
        collectMade();
        return out;
      }
    }
  }

  float pitch = settings.FPitch;
  if (settings.isCount()) {
    if (!row.FHasEndVertex || !(settings.FNumOfHoles > 1.0f)) {
      out.FAbandoned = true;
      return out;
    }
    pitch = countModePitch(row.FRouteLength, settings.FNumOfHoles, caller);
  }

  const TRouteTrack track(row.FLegs);
  TDividerWalk walk(track);
  TPitchSearch search(walk, settings, tool ? TKeepRule::Tool : TKeepRule::Api);
  search.run(pitch, row.FHasEndVertex);
  out.FEndlessLoop = walk.endlessLoop();
  out.FEstimate = search.estimate();
  out.FTrials = search.trials();
  if (!search.kept()) {
    out.FNoTrial = true;
    return out;
  }
  punchBest(search, track, row, settings, holes, caller);
  collectMade();
  return out;
}

// ---- closed outlines ----

namespace {

// The chain closes when its last end comes back within half a millimetre
// of its first start on both axes.
bool chainCloses(const std::vector<TPW_Path*>& chain) {
  if (chain.size() < 2) return false;
  const TPointF a = chain.back()->FEndPt, b = chain.front()->FStartPt;
  return std::fabs((double(a.x) - b.x) * 10000.0) <= 5000.0 && std::fabs((double(a.y) - b.y) * 10000.0) <= 5000.0;
}

}  // namespace

TClosedOutcome placeOnClosedPath(const std::vector<TPW_Path*>& shapes, const TPointF& startPt,
                                 const TStitchSettings& settings, TRowHoles& holes) {
  TClosedOutcome out;
  if (shapes.empty()) return out;
  const float p0 = settings.FPitch;
  const size_t before = holes.made().size();
  auto collectMade = [&] {
    out.FMade.assign(holes.made().begin() + static_cast<std::ptrdiff_t>(before), holes.made().end());
  };

  if (shapes.size() > 1 && settings.usesCornerMethod()) {
    std::vector<TPW_Path*> chain;
    std::vector<std::unique_ptr<TPW_Path>> temporaries;
    if (orderIntoChain(shapes, chain, temporaries)) {
      out.FClosed = chainCloses(chain);
      const std::vector<TPlannedHole> plan =
          settings.FCornerMode == kCornerSmart
              ? planSmartCorner(chain, out.FClosed, p0, settings.FCornerAngleThreshold)
              : planEvenSplit(chain, out.FClosed, p0);
      out.FCornerMethod = true;
      placePlannedHoles(plan, out.FClosed, holes);
      collectMade();
      return out;
    }
  }

  // A ring of n holes closes evenly when the dividers' n-th step lands back
  // on the first hole.
  const TRouteTrack track = TRouteTrack::aroundLoop(shapes, startPt);
  int holeCount = 0;
  double ringPitch = 0.0;
  if (settings.isAuto()) {
    holeCount = track.nearestStepCount(p0, &ringPitch);
    if (holeCount < 2) ringPitch = 0.0;
  } else if (settings.isCount()) {
    holeCount = static_cast<int>(roundHalfEven(settings.FNumOfHoles));
    if (holeCount >= 2) ringPitch = track.pitchForSteps(holeCount);
  }
  std::vector<TTrackPos> ring;
  const double pitch = ringPitch > 0.0 ? ringPitch : p0;
  track.walk(pitch, ringPitch > 0.0 ? holeCount - 1 : kMaxRowHoles, ring);
  if (!(ringPitch > 0.0) && ring.size() >= 2) {
    // The wanted pitch as it stands: a last step that nearly meets the
    // first hole is left out.
    const TDPoint last = track.pointAt(ring.back()), first = track.start();
    if (std::hypot(last.x - first.x, last.y - first.y) < pitch / 2.0) ring.pop_back();
  }

  TPW_Path* firstMade = nullptr;
  for (const TTrackPos& place : ring) {
    const TPointF pos = track.onDrawing(place);
    if (holes.findHoleNear(pos, pitch / 2.0)) continue;
    TPW_Path* hole = holes.makeHole(pos, rotationAt(track, place));
    if (!hole) continue;
    holes.chainAfterLast(*hole, pitch);
    if (!firstMade) firstMade = hole;
  }
  // One link closes the ring; the first hole's back link stays as it is.
  if (firstMade && holes.lastStitch() && holes.lastStitch() != firstMade)
    holes.lastStitch()->FNextStitchID = firstMade->FID;
  collectMade();
  return out;
}
