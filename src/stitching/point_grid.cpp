#include "stitching/point_grid.h"

#include <algorithm>

#include "document/point_helpers.h"
#include "document/shape_list.h"

void TPointGrid::reset(double cellSize) {
  FCell = cellSize > 1e-6 ? cellSize : 1e-6;
  FNodes.clear();
  FUsedSlots = 0;
  if (++FStamp == 0) {  // the stamp wrapped: forget every old slot
    for (TSlot& s : FSlots) s.stamp = 0;
    FStamp = 1;
  }
}

int64_t TPointGrid::findSlot(int64_t cx, int64_t cy) const {
  if (FSlots.empty()) return -1;
  const size_t mask = FSlots.size() - 1;
  for (size_t i = hashOf(cx, cy) & mask;; i = (i + 1) & mask) {
    const TSlot& s = FSlots[i];
    if (s.stamp != FStamp) return -1;
    if (s.cx == cx && s.cy == cy) return int64_t(i);
  }
}

void TPointGrid::grow() {
  std::vector<TSlot> old = std::move(FSlots);
  FSlots.assign(std::max<size_t>(64, old.size() * 2), TSlot{});
  const size_t mask = FSlots.size() - 1;
  for (const TSlot& s : old) {
    if (s.stamp != FStamp) continue;
    size_t i = hashOf(s.cx, s.cy) & mask;
    while (FSlots[i].stamp == FStamp) i = (i + 1) & mask;
    FSlots[i] = s;
  }
}

void TPointGrid::insert(const TPointF& p, int tag) {
  if ((FUsedSlots + 1) * 2 > FSlots.size()) grow();
  const int64_t cx = cellOf(p.x), cy = cellOf(p.y);
  const size_t mask = FSlots.size() - 1;
  size_t i = hashOf(cx, cy) & mask;
  while (FSlots[i].stamp == FStamp && (FSlots[i].cx != cx || FSlots[i].cy != cy)) i = (i + 1) & mask;
  TSlot& s = FSlots[i];
  if (s.stamp != FStamp) {
    s = TSlot{cx, cy, FStamp, -1};
    ++FUsedSlots;
  }
  FNodes.push_back(TNode{p, tag, s.head});
  s.head = static_cast<int>(FNodes.size() - 1);
}

// ---- holes ----

namespace {
constexpr double kHoleCell = 2.0;
}

THoleIndex::THoleIndex(const TShapeList* list, int layer) {
  FGrid.reset(kHoleCell);
  if (!list) return;
  for (const auto& s : *list) {
    if (s->FShapeType != ShapeType::Hole || s->FLayerID != layer) continue;
    add(s.get());
  }
}

void THoleIndex::add(TPW_Path* hole) {
  FGrid.insert(hole->FCenter, static_cast<int>(FHoles.size()));
  FHoles.push_back(hole);
}

TPW_Path* THoleIndex::findHoleNear(const TPointF& pt, double radius) const {
  int best = -1;
  FGrid.forEachNear(pt, radius, [&](const TPointF& p, int tag) {
    if ((best < 0 || tag < best) && distanceOf(p, pt) < radius) best = tag;
    return true;
  });
  return best < 0 ? nullptr : FHoles[size_t(best)];
}
