// A hash grid of points for the questions a row asks at every step: is a
// hole, or a position already walked, within so much of here? Emptied in
// constant time and reused, so that a search of a hundred trials does not
// allocate once it has warmed up.
#pragma once

#include <cmath>
#include <cstdint>
#include <vector>

#include "document/types.h"

class TPointGrid {
 public:
  // Empties the grid and sets the cell size; memory is kept.
  void reset(double cellSize);
  void insert(const TPointF& p, int tag);
  size_t size() const { return FNodes.size(); }

  // Calls f(point, tag) for every point in the cells within `radius` of p,
  // a superset of the points within that distance; the caller measures.
  // f returns false to stop early.
  template <typename F>
  void forEachNear(const TPointF& p, double radius, F&& f) const {
    if (FNodes.empty()) return;
    const int64_t c0 = cellOf(p.x - radius), c1 = cellOf(p.x + radius);
    const int64_t r0 = cellOf(p.y - radius), r1 = cellOf(p.y + radius);
    if (double(c1 - c0 + 1) * double(r1 - r0 + 1) > double(FNodes.size())) {
      // A reach wider than the points are many: look at every point.
      for (const TNode& n : FNodes)
        if (!f(n.p, n.tag)) return;
      return;
    }
    for (int64_t cx = c0; cx <= c1; ++cx)
      for (int64_t cy = r0; cy <= r1; ++cy) {
        const int64_t slot = findSlot(cx, cy);
        if (slot < 0) continue;
        for (int n = FSlots[size_t(slot)].head; n >= 0; n = FNodes[size_t(n)].next)
          if (!f(FNodes[size_t(n)].p, FNodes[size_t(n)].tag)) return;
      }
  }

 private:
  struct TSlot {
    int64_t cx = 0, cy = 0;
    uint32_t stamp = 0;
    int head = -1;
  };
  struct TNode {
    TPointF p;
    int tag;
    int next;
  };
  double FCell = 1.0;
  uint32_t FStamp = 1;
  size_t FUsedSlots = 0;
  std::vector<TSlot> FSlots;
  std::vector<TNode> FNodes;

  int64_t cellOf(double v) const { return static_cast<int64_t>(std::floor(v / FCell)); }
  static size_t hashOf(int64_t cx, int64_t cy) {
    return size_t(uint64_t(cx) * 0x9E3779B97F4A7C15ULL ^ (uint64_t(cy) * 0xC2B2AE3D27D4EB4FULL));
  }
  // The slot holding the cell, or -1.
  int64_t findSlot(int64_t cx, int64_t cy) const;
  void grow();
};

class TPW_Path;
class TShapeList;

// The stitching holes of one layer, for "is there a hole here already".
class THoleIndex {
 public:
  // Every "S_HOLE" of `layer` in the list, in list order.
  THoleIndex(const TShapeList* list, int layer);
  // A hole made after the index was built; it counts after all listed ones.
  void add(TPW_Path* hole);
  // The first hole (in list order) whose centre is closer than `radius`.
  TPW_Path* findHoleNear(const TPointF& pt, double radius) const;

 private:
  TPointGrid FGrid;
  std::vector<TPW_Path*> FHoles;
};
