// "3D Pattern": each closed outline a plate with its holes through it, its
// edges chamfered or rounded where they fit, and the text cut into one face.
#include <algorithm>
#include <cmath>
#include <cstdio>

#include "exchange/stl_bevel.h"
#include "exchange/stl_mesh.h"
#include "exchange/stl_polygons.h"
#include "exchange/stl_solids.h"

using namespace ClipperLib;
using stlpoly::kGridScale;

namespace {

// Letters keep at least this share of the plate under them.
constexpr double kMaxEngraveShare = 0.8;

struct TTextBlock {
  Paths paths;   // the glyphs' area, on the grid
  TVec2 anchor;  // the middle of its bounds, to find its plate
};

std::vector<TTextBlock> textBlocks(const TStlOutlines& in) {
  std::vector<TTextBlock> out;
  for (const std::vector<TPolygon2>& glyphs : in.Texts) {
    TTextBlock b;
    b.paths = stlpoly::clip(stlpoly::toPaths(glyphs, kGridScale), {}, ctUnion, pftEvenOdd, pftEvenOdd);
    if (b.paths.empty()) continue;
    TVec2 lo, hi;
    stlpoly::boundsOf(glyphs, lo, hi);
    b.anchor = {(lo.x + hi.x) / 2, (lo.y + hi.y) / 2};
    out.push_back(std::move(b));
  }
  return out;
}

// Mirrors in x about `centre`, so that text cut into the underside reads
// from below.
Paths mirrored(const Paths& ps, double centre) {
  Paths out = ps;
  const cInt c2 = std::llround(2 * centre * kGridScale);
  for (Path& p : out)
    for (IntPoint& v : p) v.X = c2 - v.X;
  return out;
}

struct TPlateBuilder {
  const TSTLExportSettings& s;
  TExtrudeOptions o;
  bool edges;
  TStlResult& r;

  // One plate; `text` is the area of the letters on it, empty for none.
  void build(const TPolyRegion& region, const Paths& textArea) {
    const double H = o.Height;
    const bool top = s.EngraveSide == TEngraveSide::Top;
    double depth = s.EngraveDepth;
    if (depth > H * kMaxEngraveShare) {
      depth = H * kMaxEngraveShare;
      char text[128];
      std::snprintf(text, sizeof text, "Engrave depth reduced to %g mm to leave a floor under the letters.", depth);
      if (std::find(r.Warnings.begin(), r.Warnings.end(), text) == r.Warnings.end()) r.Warnings.push_back(text);
    }
    const bool engrave = !textArea.empty() && s.EngraveSide != TEngraveSide::None && depth > 0;

    std::vector<TBevelStackItem> stack;
    bool bevelled = false;
    if (edges) {
      std::string message;
      bevelled = BuildBevelStack(region, o, stack, message);
      if (!bevelled) ++r.SkippedRegions;
    }
    // As asked; then plain; then plain without letters.
    std::vector<std::pair<bool, bool>> tries;
    if (bevelled) tries.push_back({true, engrave});
    tries.push_back({false, engrave});
    if (engrave) tries.push_back({false, false});
    for (const auto& [withBevel, withText] : tries) {
      TSolidPlan plan;
      if (withBevel) plan.Levels = stack;
      else plan.Levels = {{region, 0, 0}, {region, H, 0}};
      std::vector<TPolyRegion> letters;
      if (withText) {
        const double margin = (withBevel ? std::max(topBevelSize(o), bottomBevelSize(o)) : 0.0) + 0.1;
        letters = stlpoly::regionsInside(textArea, stlpoly::regionPaths(region, kGridScale), margin);
        for (const TPolyRegion& l : letters)
          (top ? plan.TopCuts : plan.BottomCuts).push_back({l, top ? H - depth : depth, {}});
      }
      if (buildSolid(plan, r.Body).empty()) {
        if (bevelled && !withBevel) ++r.SkippedRegions;
        if (withText && s.MultiColorPrint)
          for (const TPolyRegion& l : letters) extrudeRegion(l, top ? H - depth : 0, top ? H : depth, r.Text);
        return;
      }
    }
    // Last, a plain plate a hair smaller.
    if (extrudeRegion(region, 0, H, r.Body).empty()) {
      if (bevelled) ++r.SkippedRegions;
      return;
    }
    ++r.FailedRegions;
  }
};

}  // namespace

TStlResult buildPatternSolid(const TStlOutlines& in, const TSTLExportSettings& s) {
  TStlResult r;
  const Paths plates = stlpoly::clip(stlpoly::toPaths(in.Outlines, kGridScale), stlpoly::toPaths(in.Holes, kGridScale),
                                     ctDifference, pftEvenOdd, pftNonZero);
  std::vector<TPolyRegion> regions = stlpoly::regionsOf(plates, pftNonZero, 1e-4);
  if (regions.empty() || !stlpoly::separateRegions(regions)) {
    r.ErrorKey = "stl_msg_no_closed_shapes";
    return r;
  }
  const TExtrudeOptions o = s.extrudeOptions();
  bool edges = topBevelSize(o) > 0 || bottomBevelSize(o) > 0;
  if (const std::string warning = bevelTotalWarning(o); !warning.empty()) {
    r.Warnings.push_back(warning);
    edges = false;
  }
  std::vector<TTextBlock> texts;
  if (s.EngraveSide != TEngraveSide::None) texts = textBlocks(in);
  // Each text goes to the smallest plate whose outer holds it.
  std::vector<Paths> textOf(regions.size());
  for (const TTextBlock& t : texts) {
    size_t best = regions.size();
    double bestArea = 1e300;
    for (size_t k = 0; k < regions.size(); ++k) {
      const double a = std::abs(polygonArea(regions[k].Outer));
      if (a < bestArea && stlpoly::pointInPolygon(t.anchor, regions[k].Outer)) best = k, bestArea = a;
    }
    if (best < regions.size()) textOf[best].insert(textOf[best].end(), t.paths.begin(), t.paths.end());
  }
  TPlateBuilder builder{s, o, edges, r};
  for (size_t k = 0; k < regions.size(); ++k) {
    Paths text = textOf[k];
    if (!text.empty() && s.EngraveSide == TEngraveSide::Bottom) {
      TVec2 lo, hi;
      stlpoly::boundsOf({regions[k].Outer}, lo, hi);
      text = mirrored(text, (lo.x + hi.x) / 2);
    }
    builder.build(regions[k], text);
  }
  if (r.Body.empty()) r.ErrorKey = "stl_msg_no_mesh_to_save";
  return r;
}
