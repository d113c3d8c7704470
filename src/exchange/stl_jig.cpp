// "Positioning Jig": a block whose pocket, the pattern grown by a gap,
// holds the leather in place. A pocket as deep as the block goes through
// it (a frame); a shallower one has a floor with finger holes to push the
// leather out, and the stitching holes through the floor to mark them.
#include <algorithm>
#include <cmath>
#include <set>

#include "exchange/stl_mesh.h"
#include "exchange/stl_polygons.h"
#include "exchange/stl_solids.h"

using namespace ClipperLib;
using stlpoly::kGridScale;

namespace {

// Cut regions keep this much material between them and any other edge.
constexpr double kMargin = 0.1;

// The outlines once each, without those of no area.
std::vector<TPolygon2> distinctOutlines(const std::vector<TPolygon2>& outlines) {
  std::set<std::vector<std::pair<long long, long long>>> seen;
  std::vector<TPolygon2> out;
  for (const TPolygon2& p : outlines) {
    if (std::abs(polygonArea(p)) <= 1e-9) continue;
    std::vector<std::pair<long long, long long>> key;
    key.reserve(p.size());
    for (const TVec2& v : p) key.emplace_back(std::llround(v.x * 10000.0), std::llround(v.y * 10000.0));
    std::sort(key.begin(), key.end());
    if (seen.insert(std::move(key)).second) out.push_back(p);
  }
  return out;
}

// The outlines' area: nested outlines are holes under the even-odd rule,
// or are filled in when every outline is taken counter-clockwise.
Paths outlineArea(const std::vector<TPolygon2>& outlines, bool keepNested) {
  Paths ps = stlpoly::toPaths(outlines, kGridScale);
  if (keepNested) return stlpoly::clip(ps, {}, ctUnion, pftEvenOdd, pftEvenOdd);
  for (Path& p : ps)
    if (!Orientation(p)) ReversePath(p);
  return stlpoly::clip(ps, {}, ctUnion, pftNonZero, pftNonZero);
}

std::vector<TPolyRegion> outersOnly(std::vector<TPolyRegion> rs) {
  for (TPolyRegion& r : rs) r.Holes.clear();
  return rs;
}

Paths rectangle(const TVec2& lo, const TVec2& hi) {
  return stlpoly::toPaths({{{lo.x, lo.y}, {hi.x, lo.y}, {hi.x, hi.y}, {lo.x, hi.y}}}, kGridScale);
}

Paths joined(Paths a, const Paths& b) {
  a.insert(a.end(), b.begin(), b.end());
  return a;
}

double areaOf(const Paths& ps) {
  double a = 0;
  for (const Path& p : ps) a += Area(p);
  return a / (kGridScale * kGridScale);
}

std::vector<TSolidCut> cutsOf(const std::vector<TPolyRegion>& regions, double floorZ) {
  std::vector<TSolidCut> out;
  for (const TPolyRegion& r : regions) out.push_back({r, floorZ, {}});
  return out;
}

void append(std::vector<TSolidCut>& to, std::vector<TSolidCut> more) {
  to.insert(to.end(), std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()));
}

}  // namespace

TStlResult buildJigSolid(const TStlOutlines& in, const TSTLTemplateSettings& j) {
  TStlResult r;
  const std::vector<TPolygon2> outlines = distinctOutlines(in.Outlines);
  if (outlines.empty()) {
    r.ErrorKey = "stl_msg_no_closed_shapes";
    return r;
  }
  // The pocket: the pattern grown by the gap.
  std::vector<TPolyRegion> shape = stlpoly::regionsOf(outlineArea(outlines, j.KeepNestedContours), pftNonZero, 0.01);
  if (!j.KeepNestedContours) shape = outersOnly(std::move(shape));
  std::vector<TPolyRegion> pockets = stlpoly::regionsOf(
      stlpoly::offsetPaths(stlpoly::regionPaths(shape, kGridScale), j.PocketGap, jtRound), pftNonZero, 0.01);
  if (!j.KeepNestedContours) pockets = outersOnly(std::move(pockets));
  if (pockets.empty() || !stlpoly::separateRegions(pockets)) {
    r.ErrorKey = "stl_msg_template_failed";
    return r;
  }
  const Paths pocketArea = stlpoly::regionPaths(pockets, kGridScale);

  // The outside.
  std::vector<TPolygon2> pocketOuters;
  for (const TPolyRegion& p : pockets) pocketOuters.push_back(p.Outer);
  TVec2 lo, hi;
  stlpoly::boundsOf(pocketOuters, lo, hi);
  Paths outsideArea;
  switch (j.OuterMode) {
    case TSTLTemplateOuterMode::omRectMargin:
      outsideArea = rectangle({lo.x - j.OuterMargin, lo.y - j.OuterMargin}, {hi.x + j.OuterMargin, hi.y + j.OuterMargin});
      break;
    case TSTLTemplateOuterMode::omRectExplicit: {
      const TVec2 c{(lo.x + hi.x) / 2, (lo.y + hi.y) / 2};
      outsideArea = rectangle({c.x - j.OuterWidth / 2, c.y - j.OuterHeight / 2}, {c.x + j.OuterWidth / 2, c.y + j.OuterHeight / 2});
      break;
    }
    case TSTLTemplateOuterMode::omPatternOffset:
      outsideArea = stlpoly::regionPaths(
          outersOnly(stlpoly::regionsOf(
              stlpoly::offsetPaths(outlineArea(outlines, false), j.OuterMargin, jtRound), pftNonZero, 0.01)),
          kGridScale);
      break;
  }
  const std::vector<TPolyRegion> outside = outersOnly(stlpoly::regionsOf(outsideArea, pftNonZero, 0.01));
  outsideArea = stlpoly::regionPaths(outside, kGridScale);
  const Paths holes = j.StitchHoles ? stlpoly::toPaths(in.Holes, kGridScale) : Paths{};
  Paths text;
  for (const auto& glyphs : in.Texts)
    text = joined(text, stlpoly::clip(stlpoly::toPaths(glyphs, kGridScale), {}, ctUnion, pftEvenOdd, pftEvenOdd));
  const bool engrave = j.EngraveContours && !text.empty() && j.EngraveDepth > 0;
  const double T = j.TotalHeight, P = j.PocketDepth;

  if (P >= T) {
    // A frame: the pocket goes through.
    std::vector<TPolyRegion> ring = stlpoly::regionsOf(
        stlpoly::clip(outsideArea, joined(pocketArea, holes), ctDifference), pftNonZero, 0.01);
    if (!stlpoly::separateRegions(ring)) ring.clear();
    const double depth = std::min(j.EngraveDepth, T * 0.8);
    for (const TPolyRegion& part : ring) {
      TSolidPlan plan;
      plan.Levels = {{part, 0, 0}, {part, T, 0}};
      if (engrave)
        plan.TopCuts = cutsOf(stlpoly::regionsInside(text, stlpoly::regionPaths(part, kGridScale), kMargin), T - depth);
      if (buildSolid(plan, r.Body).empty()) continue;
      // The letters did not fit: a plain frame.
      if (!extrudeRegion(part, 0, T, r.Body).empty()) ++r.FailedRegions;
    }
    if (r.Body.empty()) r.ErrorKey = "stl_msg_template_failed";
    return r;
  }

  // A blind pocket: it has to lie inside the outside with a wall round it.
  const Paths wallInside = stlpoly::offsetPaths(outsideArea, -0.05, jtMiter);
  if (std::abs(areaOf(stlpoly::clip(pocketArea, wallInside, ctDifference))) > 1e-4) {
    r.ErrorKey = "stl_msg_pocket_too_big";
    return r;
  }
  const double floorZ = T - P;
  const double floorDepth = std::min(j.EngraveDepth, floorZ * 0.8);
  const double ringDepth = std::min(j.EngraveDepth, T * 0.8);
  // Holes outside the pockets go through the block from its top.
  const Paths ringHoleArea = stlpoly::clip(holes, stlpoly::offsetPaths(pocketArea, kMargin, jtMiter), ctDifference);
  for (const TPolyRegion& block : outside) {
    const Paths blockArea = stlpoly::regionPaths(block, kGridScale);
    TSolidPlan plan;
    plan.Levels = {{block, 0, 0}, {block, T, 0}};
    const std::vector<TPolyRegion> ringHoles = stlpoly::regionsInside(ringHoleArea, blockArea, kMargin);
    append(plan.TopCuts, cutsOf(ringHoles, 0));
    Paths taken = stlpoly::regionPaths(ringHoles, kGridScale);
    for (const TPolyRegion& pocket : pockets) {
      if (!stlpoly::pointInPolygon(pocket.Outer.front(), block.Outer)) continue;
      const Paths pocketPaths = stlpoly::regionPaths(pocket, kGridScale);
      taken = joined(taken, pocketPaths);
      Paths through = holes;
      if (j.FingerHoleAtCentroid)
        through.push_back(stlpoly::toPath(
            stlpoly::circlePolygon(stlpoly::polygonCentroid(pocket.Outer), j.CentroidFingerDiameter / 2, 16), kGridScale));
      for (const TSTLTemplateFingerHole& f : j.CustomFingerHoles)
        through.push_back(stlpoly::toPath(stlpoly::circlePolygon(f.Centre, f.Diameter / 2, 16), kGridScale));
      const std::vector<TPolyRegion> floorHoles = stlpoly::regionsInside(through, pocketPaths, kMargin);
      TSolidCut cut{pocket, floorZ, cutsOf(floorHoles, 0)};
      if (engrave && floorDepth > 0) {
        const Paths floorFace = stlpoly::clip(pocketPaths, stlpoly::regionPaths(floorHoles, kGridScale), ctDifference);
        append(cut.Inner, cutsOf(stlpoly::regionsInside(text, floorFace, kMargin), floorZ - floorDepth));
      }
      plan.TopCuts.push_back(std::move(cut));
    }
    if (engrave)
      append(plan.TopCuts, cutsOf(stlpoly::regionsInside(text, stlpoly::clip(blockArea, taken, ctDifference), kMargin),
                                  T - ringDepth));
    if (!buildSolid(plan, r.Body).empty()) ++r.FailedRegions;
  }
  if (r.Body.empty() || r.FailedRegions > 0) {
    r.Body.clear();
    r.ErrorKey = "stl_msg_template_failed";
  }
  return r;
}
