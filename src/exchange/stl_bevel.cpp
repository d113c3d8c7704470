#include "exchange/stl_bevel.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "exchange/stl_polygons.h"

namespace {

constexpr double kQuarterTurn = 1.5707963267948966;

std::string printed(const char* format, double a, double b) {
  char text[160];
  std::snprintf(text, sizeof text, format, a, b);
  return text;
}

// The region inset by `inset`; below 0.001 the region itself.
bool insetItem(const TPolyRegion& base, double z, double inset, std::vector<TBevelStackItem>& items,
               std::string& reason) {
  if (inset < 0.001) {
    items.push_back({base, z, inset});
    return true;
  }
  TOffsetRegion r = stlpoly::inflateRegion(base, inset);
  if (!r.Valid) {
    reason = r.Reason;
    return false;
  }
  items.push_back({{std::move(r.Outer), std::move(r.Holes)}, z, inset});
  return true;
}

}  // namespace

bool BuildBevelStack(const TPolyRegion& region, const TExtrudeOptions& o, std::vector<TBevelStackItem>& items,
                     std::string& message) {
  items.clear();
  const double H = o.Height, b = bottomBevelSize(o), t = topBevelSize(o);
  const int n = std::clamp(o.FilletSteps, 2, 16);
  if (b + t >= H) {
    message = printed("BottomSize + TopSize (%g) must be less than Height (%g).", b + t, H);
    return false;
  }
  TOffsetRegion base = stlpoly::inflateRegion(region, 0);
  if (!base.Valid) {
    message = "Base region (offset 0) failed: " + base.Reason;
    return false;
  }
  const TPolyRegion r{base.Outer, base.Holes};
  std::string reason;
  switch (bottomEdgeMode(o)) {
    case TEdgeMode::Plain:
      if (!insetItem(r, 0, 0, items, reason)) {
        message = "Bottom base push failed";
        return false;
      }
      break;
    case TEdgeMode::Chamfer:
      if (!insetItem(r, 0, b, items, reason) || !insetItem(r, b, 0, items, reason)) {
        message = "Bottom chamfer offset failed: " + reason;
        return false;
      }
      break;
    case TEdgeMode::Fillet:
      for (int i = 0; i <= n; ++i) {
        const double a = double(i) / n * kQuarterTurn;
        if (!insetItem(r, b * (1 - std::cos(a)), b * (1 - std::sin(a)), items, reason)) {
          char text[256];
          std::snprintf(text, sizeof text, "Bottom fillet step %d offset failed: %s", i, reason.c_str());
          message = text;
          return false;
        }
      }
      break;
  }
  switch (topEdgeMode(o)) {
    case TEdgeMode::Plain:
      if (!insetItem(r, H, 0, items, reason)) {
        message = "Top base push failed";
        return false;
      }
      break;
    case TEdgeMode::Chamfer:
      if (!insetItem(r, H - t, 0, items, reason) || !insetItem(r, H, t, items, reason)) {
        message = "Top chamfer offset failed: " + reason;
        return false;
      }
      break;
    case TEdgeMode::Fillet:
      for (int i = 0; i <= n; ++i) {
        const double a = double(i) / n * kQuarterTurn;
        if (!insetItem(r, H - t + t * std::sin(a), t * (1 - std::cos(a)), items, reason)) {
          char text[256];
          std::snprintf(text, sizeof text, "Top fillet step %d offset failed: %s", i, reason.c_str());
          message = text;
          return false;
        }
      }
      break;
  }
  return true;
}

std::string bevelTotalWarning(const TExtrudeOptions& o) {
  const double b = bottomBevelSize(o), t = topBevelSize(o);
  if ((b > 0 || t > 0) && b + t >= o.Height)
    return printed("Bevel total (%g) >= Height (%g) \xE2\x80\x94 falling back to normal extrude.", b + t, o.Height);
  return {};
}
