// A uniform grid over axis-aligned boxes, to find the boxes that may meet a
// given one without looking at every box. It answers a superset: callers
// still apply their exact tests, and sort the answer into the order they
// need.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

struct TGridBox {
  double l = 0, t = 0, r = 0, b = 0;  // normalised
};

inline bool gridBoxesMeet(const TGridBox& a, const TGridBox& b, double margin) {
  return a.l <= b.r + margin && b.l <= a.r + margin && a.t <= b.b + margin && b.t <= a.b + margin;
}

class TBoxGrid {
 public:
  // Indexes the boxes by their position in `boxes`. A box with a NaN
  // coordinate is never found.
  explicit TBoxGrid(const std::vector<TGridBox>& boxes);

  // Positions of all boxes that may come within `margin` of `box`, each
  // once, in no particular order. Not safe to call from two threads.
  void query(const TGridBox& box, double margin, std::vector<int>& out) const;

  size_t cellCount() const { return FCellStart.empty() ? 0 : FCellStart.size() - 1; }

 private:
  double FLeft = 0, FTop = 0, FCell = 1;
  int FCols = 0, FRows = 0;
  // Cell c holds FEntries[FCellStart[c] .. FCellStart[c + 1]).
  std::vector<uint32_t> FCellStart;
  std::vector<int> FEntries;
  // Boxes that would cover too many cells: offered to every query.
  std::vector<int> FLarge;
  mutable std::vector<uint32_t> FSeen;
  mutable uint32_t FQueryNo = 0;

  void cellRange(const TGridBox& b, int& c0, int& r0, int& c1, int& r1) const;
};
