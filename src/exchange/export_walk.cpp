#include "exchange/export_walk.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <unordered_map>

#include "app/options.h"
#include "document/shape_list.h"
#include "libraries/draw_pallet.h"

TExportSettings exportSettingsFrom(const TPW_Options& o, const TExportSettings& run) {
  TExportSettings s = run;
  s.FHolesAsDots = o.FSVG_as_dots;
  s.FDotRadius = o.FSVGDotRadius;
  s.FWithText = o.FSVG_with_text_shapes;
  s.FWithTemplates = o.FSVG_with_templates;
  s.FInvertY = o.FDXFExportInvertY;
  s.FUseR14 = o.FUseDXFR14;
  return s;
}

void exportSettingsInto(const TExportSettings& s, TPW_Options& o) {
  o.FSVG_as_dots = s.FHolesAsDots;
  o.FSVGDotRadius = s.FDotRadius;
  o.FSVG_with_text_shapes = s.FWithText;
  o.FSVG_with_templates = s.FWithTemplates;
  o.FDXFExportInvertY = s.FInvertY;
  o.FUseDXFR14 = s.FUseR14;
}

bool writtenAsDot(const TPW_Path& s, bool holesAsDots) {
  return s.isType(ShapeType::Dot) || (holesAsDots && s.isType(ShapeType::Hole));
}

namespace {

bool chainable(const TPW_Path& s) {
  return s.isType(ShapeType::Line) || s.isType(ShapeType::Bezier) || s.isType(ShapeType::Arc);
}

double gap(const TPointF& a, const TPointF& b) { return std::hypot(double(a.x) - b.x, double(a.y) - b.y); }

// Closer than the join distance, with room for the rounding of stored
// singles: ends typed 0.2 mm apart stay apart.
bool joins(const TPointF& a, const TPointF& b) { return gap(a, b) < kChainJoinDistance - 1e-4; }

bool rowHidden(const TPW_Path& s, const TPalletList& pallet) {
  int row = pallet.validIndex(s.FPalletIndex) ? s.FPalletIndex : -1;
  for (int i = 0; row < 0 && i < TPalletList::Count(); ++i)
    if (pallet[i].getColor() == s.FColor) row = i;
  return row >= 0 && !pallet[row].FIsVisible;
}

bool keeps(const TPW_Path& s, const TExportScene& scene, const TExportSettings& settings) {
  if (s.FIsDimensionLine && !scene.FShowDimensionShapes) return false;
  if (settings.FSkipHiddenLineTypes && rowHidden(s, scene.FPallet)) return false;
  if (!scene.FList.GetlayerVisible(s.FLayerID)) return false;
  if (settings.FOnlySelected && !s.FSelected) return false;
  if (s.isType(ShapeType::Other) && !settings.FWithTemplates) return false;
  if ((s.isType(ShapeType::Text) || s.FIsDimensionLine) && !settings.FWithText) return false;
  return true;
}

// The shapes of one layer while they are chained: each end sits in a grid
// of cells as wide as the join distance, so a join is found among the
// nine cells around a point, and the first shape in list order wins.
class TChainer {
 public:
  explicit TChainer(std::vector<std::unique_ptr<TPW_Path>> shapes) : FShapes(std::move(shapes)) {
    FTaken.assign(FShapes.size(), false);
    for (size_t i = 0; i < FShapes.size(); ++i) {
      if (!chainable(*FShapes[i])) continue;
      addEnd(static_cast<int>(i), FShapes[i]->FStartPt);
      addEnd(static_cast<int>(i), FShapes[i]->FEndPt);
    }
  }

  void run(std::vector<TExportRun>& out) {
    for (size_t i = 0; i < FShapes.size(); ++i) {
      if (FTaken[i]) continue;
      FTaken[i] = true;
      TExportRun r;
      if (!chainable(*FShapes[i])) {
        r.FShapes.push_back(std::move(FShapes[i]));
        out.push_back(std::move(r));
        continue;
      }
      std::vector<int> chain{static_cast<int>(i)};
      // Backwards from the start: shapes of the same look that end there.
      const TPW_Path& seed = *FShapes[i];
      for (int head = static_cast<int>(i);;) {
        const TPointF at = FShapes[head]->FStartPt;
        const int c = firstJoining(at, [&](const TPW_Path& s) {
          return s.FColor == seed.FColor && s.FThickness == seed.FThickness && s.FDash == seed.FDash &&
                 s.FPalletIndex == seed.FPalletIndex;
        });
        if (c < 0) break;
        if (gap(FShapes[c]->FEndPt, at) > gap(FShapes[c]->FStartPt, at)) FShapes[c]->reversePath();
        FTaken[c] = true;
        chain.insert(chain.begin(), c);
        head = c;
      }
      // Forwards from the end: the palette row alone decides.
      for (int tail = static_cast<int>(i);;) {
        const TPointF at = FShapes[tail]->FEndPt;
        const int row = FShapes[tail]->FPalletIndex;
        const int c = firstJoining(at, [&](const TPW_Path& s) { return s.FPalletIndex == row; });
        if (c < 0) break;
        if (gap(FShapes[c]->FStartPt, at) > gap(FShapes[c]->FEndPt, at)) FShapes[c]->reversePath();
        FTaken[c] = true;
        chain.push_back(c);
        tail = c;
      }
      for (int k : chain) r.FShapes.push_back(std::move(FShapes[k]));
      out.push_back(std::move(r));
    }
  }

 private:
  std::vector<std::unique_ptr<TPW_Path>> FShapes;
  std::vector<bool> FTaken;
  std::unordered_map<uint64_t, std::vector<int>> FCells;

  static bool cellOf(const TPointF& p, int64_t& cx, int64_t& cy) {
    if (!std::isfinite(p.x) || !std::isfinite(p.y)) return false;
    cx = static_cast<int64_t>(std::floor(double(p.x) / kChainJoinDistance));
    cy = static_cast<int64_t>(std::floor(double(p.y) / kChainJoinDistance));
    return true;
  }
  static uint64_t key(int64_t cx, int64_t cy) {
    return (static_cast<uint64_t>(cx) << 32) ^ (static_cast<uint64_t>(cy) & 0xFFFFFFFFu);
  }
  void addEnd(int index, const TPointF& p) {
    int64_t cx = 0, cy = 0;
    if (!cellOf(p, cx, cy)) return;
    std::vector<int>& cell = FCells[key(cx, cy)];
    if (cell.empty() || cell.back() != index) cell.push_back(index);
  }
  template <class Accept>
  int firstJoining(const TPointF& at, Accept accept) const {
    int64_t cx = 0, cy = 0;
    if (!cellOf(at, cx, cy)) return -1;
    int best = -1;
    for (int64_t dx = -1; dx <= 1; ++dx)
      for (int64_t dy = -1; dy <= 1; ++dy) {
        const auto it = FCells.find(key(cx + dx, cy + dy));
        if (it == FCells.end()) continue;
        for (int k : it->second) {
          if ((best >= 0 && k >= best) || FTaken[k]) continue;
          const TPW_Path& s = *FShapes[k];
          if ((joins(s.FStartPt, at) || joins(s.FEndPt, at)) && accept(s)) best = k;
        }
      }
    return best;
  }
};

}  // namespace

std::vector<TExportRun> walkExportShapes(const TExportScene& scene, const TExportSettings& settings) {
  const TShapeList& list = scene.FList;
  std::vector<const TPW_Path*> kept;
  for (const auto& s : list)
    if (keeps(*s, scene, settings)) kept.push_back(s.get());
  std::vector<TExportRun> out;
  std::vector<bool> used(kept.size(), false);
  auto chainLayer = [&](auto inLayer) {
    std::vector<std::unique_ptr<TPW_Path>> shapes;
    for (size_t i = 0; i < kept.size(); ++i) {
      if (used[i] || !inLayer(*kept[i])) continue;
      used[i] = true;
      auto copy = kept[i]->createCopy();
      copy->FExportStrokeDashToSVG = !settings.FNoStrokeDash;
      shapes.push_back(std::move(copy));
    }
    if (!shapes.empty()) TChainer(std::move(shapes)).run(out);
  };
  for (int layer : list.FLayers) chainLayer([layer](const TPW_Path& s) { return s.FLayerID == layer; });
  chainLayer([](const TPW_Path&) { return true; });
  return out;
}

TRectF exportBounds(const std::vector<TExportRun>& runs, bool asDots, float dotRadius) {
  double l = 0, t = 0, r = 0, b = 0;
  bool any = false;
  auto take = [&](double x0, double y0, double x1, double y1) {
    if (!any) {
      l = x0, t = y0, r = x1, b = y1;
      any = true;
      return;
    }
    l = std::min(l, x0), t = std::min(t, y0), r = std::max(r, x1), b = std::max(b, y1);
  };
  for (const TExportRun& run : runs)
    for (const auto& s : run.FShapes) {
      if (writtenAsDot(*s, asDots)) {
        const TPointF c = s->FCenter;
        take(double(c.x) - dotRadius, double(c.y) - dotRadius, double(c.x) + dotRadius, double(c.y) + dotRadius);
      } else if (!s->FData.isEmpty()) {
        const TRectF bb = s->FData.GetBounds();
        take(bb.Left, bb.Top, bb.Right, bb.Bottom);
      }
    }
  return TRectF(TPointF::fromDouble(l, t), TPointF::fromDouble(r, b));
}
