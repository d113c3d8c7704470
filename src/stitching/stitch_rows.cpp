#include "stitching/stitch_rows.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "document/point_helpers.h"
#include "geometry/geom_helpers.h"
#include "stitching/chain_order.h"
#include "stitching/closed_walk.h"
#include "stitching/corner_placement.h"
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

double TRowOutcome::chainPitch(bool closed, float pitch) const {
  if (FCount <= 1) return pitch;
  return FChainLength / (closed ? FCount : FCount - 1);
}

namespace {

// The count mode's start pitch: the route's length made a whole number of
// ten-thousandths before it is divided.
float countModePitch(float routeLength, float n, TRowCaller caller) {
  if (caller == TRowCaller::Api) return static_cast<float>(double(routeLength) / (double(n) - 1.0));
  const double tenThousandths = double(roundHalfEven(double(routeLength) * 10000.0));
  return static_cast<float>(double(static_cast<float>(tenThousandths / (double(n) - 1.0))) / 10000.0);
}

void punchBest(TPitchSearch& search, const TOpenRow& row, const TStitchSettings& settings,
               TRowHoles& holes, TRowCaller caller, TRowOutcome& out) {
  const TTrial& best = search.bestWithDirections();
  const float pitch = search.bestPitch();
  const float half = pitch / 2.0f;
  const bool tool = caller == TRowCaller::Tool;
  TPW_Path* previous = nullptr;
  for (size_t i = 0; i < best.FPositions.size(); ++i) {
    TPointF pos = best.FPositions[i];
    const bool lastOne = i + 1 == best.FPositions.size();
    if (tool && lastOne && settings.isAuto() && settings.FForceFitLastPrick &&
        half > distanceBetween(pos, row.FEnds.FEnd))
      pos = row.FEnds.FEnd;
    if (tool && holes.findHoleNear(pos, half)) continue;
    TPW_Path* hole = holes.makeHole(pos, rotationOfDirection(TPointF(), best.FDirections[i]));
    if (!hole) continue;
    holes.chainAfterLast(*hole, pitch);
    if (previous)
      out.FTotal = roundHalfEven(double(out.FTotal) + double(distanceBetween(previous->FCenter, hole->FCenter)) * 10000.0);
    previous = hole;
    ++out.FCount;
  }
}

}  // namespace

TOpenRow openRowAlong(const TVertexNetwork& network, const TRouteVertex* endVertex, const TPointF& start,
                      const TPointF& end, const TPointF& lastPos,
                      std::vector<std::unique_ptr<TPW_Path>>& stretches) {
  stretches = network.getActualPathList(endVertex);
  TPointF firstWaypoint = lastPos;
  for (const TRouteVertex* v = endVertex; v && v->FMinDistJoint; v = v->FMinDistFromVertex) firstWaypoint = v->FPoint;
  if (firstWaypoint.identical(lastPos)) firstWaypoint = end;
  TOpenRow row;
  for (const auto& r : stretches) row.FRoute.push_back(r.get());
  row.FEnds = TWalkEnds{start, end, firstWaypoint, lastPos};
  row.FHasEndVertex = network.FEndVertex != nullptr;
  row.FRouteLength = row.FHasEndVertex ? network.FEndVertex->FMinDist : 0.0f;
  return row;
}

TRowOutcome layOpenRow(TOpenRow& row, const TStitchSettings& settings, TRowHoles& holes, TRowCaller caller) {
  TRowOutcome out;
  const bool tool = caller == TRowCaller::Tool;
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
      const size_t before = holes.made().size();
      const int count = placePlannedHoles(plan, false, holes);
      if (count > 0 || !tool) {
        out.FCornerMethod = true;
        out.FCount = count;
        out.FChainLength = chainLength(chain);
        out.FMade.assign(holes.made().begin() + static_cast<std::ptrdiff_t>(before), holes.made().end());
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

  TDividerWalk walk(row.FRoute, row.FEnds, &holes.holeIndex());
  TPitchSearch search(walk, settings, tool ? TKeepRule::Tool : TKeepRule::Api);
  search.run(pitch, row.FHasEndVertex);
  out.FEndlessLoop = walk.endlessLoop();
  out.FEstimate = search.estimate();
  out.FTrials = search.trials();
  if (!search.kept()) {
    out.FNoTrial = true;
    return out;
  }
  out.FBestPitch = search.bestPitch();
  out.FPositions = search.best().count();
  const size_t before = holes.made().size();
  punchBest(search, row, settings, holes, caller, out);
  out.FMade.assign(holes.made().begin() + static_cast<std::ptrdiff_t>(before), holes.made().end());
  return out;
}

// ---- closed outlines ----

namespace {

bool isLoneCircle(const std::vector<TPW_Path*>& shapes) {
  return shapes.size() == 1 && shapes[0]->FShapeType == ShapeType::Ellipse &&
         std::fabs(double(shapes[0]->FWidth) - shapes[0]->FHeight) <= 1e-12;
}

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
      const bool closed = chainCloses(chain);
      const std::vector<TPlannedHole> plan =
          settings.FCornerMode == kCornerSmart
              ? planSmartCorner(chain, closed, p0, settings.FCornerAngleThreshold)
              : planEvenSplit(chain, closed, p0);
      out.FCornerMethod = true;
      out.FCount = placePlannedHoles(plan, closed, holes);
      out.FPitch = out.FCount > 1
                       ? static_cast<float>(chainLength(chain) / (closed ? out.FCount : out.FCount - 1))
                       : p0;
      collectMade();
      return out;
    }
  }

  TClosedWalk walk(shapes, startPt);
  int count = 0;
  const float g = walk.walkClosedPath(count, p0, nullptr);
  ++out.FWalks;
  float e = p0;
  if (count > 1) e = p0 / 2.0f <= g ? static_cast<float>(p0 - double(g) / count)
                                   : static_cast<float>(p0 + double(g) / (count - 1));
  float bestPitch = p0, bestGap = g;
  int bestCount = 1;
  const bool circle = isLoneCircle(shapes);

  if (settings.isAuto() && e > 0.0f) {
    const float step = settings.FAutoPitchPrecision * 2.0f;
    for (int k = 0; k < settings.FAutoPitchSteps && bestGap >= 0.0f; ++k) {
      const float delta = step * static_cast<float>(k);
      for (int side = 0; side < (delta > 0.0f ? 2 : 1); ++side) {
        const float trial = side == 0 ? e + delta : e - delta;
        int c = 0;
        const float gap = walk.walkClosedPath(c, trial, nullptr);
        ++out.FWalks;
        if (gap < bestGap) {
          bestGap = gap;
          bestPitch = trial;
          bestCount = c;
        }
      }
    }
    if (circle) {
      // A circle closes exactly with the chord of a whole number of holes.
      const double width = shapes[0]->FWidth;
      double bestDiff = 0.0;
      int bestN = -1;
      for (int o = -20; o <= 20; ++o) {
        const int n = bestCount + o;
        if (n <= 1) continue;
        const double chord = width * std::sin(std::numbers::pi / n);
        const double diff = std::fabs(chord - p0);
        if (bestN < 0 || diff < bestDiff) {
          bestDiff = diff;
          bestN = n;
        }
      }
      if (bestN > 0) {
        bestCount = bestN;
        bestPitch = static_cast<float>(width * std::sin(std::numbers::pi / bestN));
      }
    }
  } else if (settings.isCount()) {
    const long long n = roundHalfEven(settings.FNumOfHoles);
    if (n >= 1) {
      const double length = double(count - 1) * p0 + g;
      float estimate = static_cast<float>(length / double(n));
      bestPitch = estimate;
      bestGap = g;
      if (circle) {
        estimate = static_cast<float>(shapes[0]->FWidth * std::sin(std::numbers::pi / double(n)));
        bestPitch = estimate;
        bestGap = 0.0f;
      }
      const float step = settings.FAutoPitchPrecision;
      for (int k = 0; k < settings.FAutoPitchSteps * 4 && bestGap > 0.0f; ++k) {
        const float delta = step * static_cast<float>(k);
        for (int side = 0; side < (delta > 0.0f ? 2 : 1); ++side) {
          const float trial = side == 0 ? estimate + delta : estimate - delta;
          int c = 0;
          const float gap = walk.walkClosedPath(c, trial, nullptr);
          ++out.FWalks;
          const float err = std::fabs(trial - gap);
          if (err < bestGap && c == n) {
            bestGap = err;
            bestPitch = trial;
          }
        }
      }
    }
  }
  (void)bestCount;

  int made = 0;
  walk.walkClosedPath(made, bestPitch, &holes);
  ++out.FWalks;
  out.FCount = made;
  out.FPitch = bestPitch;
  collectMade();
  return out;
}
