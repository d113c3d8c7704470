#include "document/undo_snapshot.h"

#include <bit>
#include <cstring>
#include <unordered_map>

#include "document/intersections.h"
#include "document/pw_path.h"
#include "document/shape_list.h"

namespace {

// Runs are cut where an element's hash says so (about one in 64), so that
// a change moves the cuts only near itself and the runs around it are the
// same objects as in the snapshot before. A run never grows past 256.
constexpr uint64_t kCutMask = 63;
constexpr size_t kMaxRun = 256;

uint64_t mix(uint64_t x) {
  x ^= x >> 33;
  x *= 0xff51afd7ed558ccdULL;
  x ^= x >> 33;
  x *= 0xc4ceb9fe1a85ec53ULL;
  x ^= x >> 33;
  return x;
}

uint64_t hashOf(const TShapeCopy& c) { return mix(reinterpret_cast<uintptr_t>(c.get())); }

uint64_t hashOf(const TStoredIntersection& r) {
  uint64_t h = mix(std::bit_cast<uint32_t>(r.FPoint.x));
  h = mix(h ^ std::bit_cast<uint32_t>(r.FPoint.y));
  h = mix(h ^ static_cast<uint32_t>(r.FPathID1));
  h = mix(h ^ (uint64_t(static_cast<uint32_t>(r.FPathID2)) << 1) ^ (r.FIsCrossing ? 7 : 0));
  return h;
}

bool sameElement(const TShapeCopy& a, const TShapeCopy& b) { return a.get() == b.get(); }
bool sameElement(const TStoredIntersection& a, const TStoredIntersection& b) { return a == b; }

// Cuts `elements` into runs, reusing each run of `previous` whose elements
// are the same.
template <class T>
std::vector<TSharedRun<T>> shareRuns(const std::vector<T>& elements, const std::vector<TSharedRun<T>>* previous) {
  std::unordered_multimap<uint64_t, const TSharedRun<T>*> byFirst;
  if (previous)
    for (const auto& run : *previous)
      if (!run->empty()) byFirst.emplace(hashOf(run->front()), &run);
  std::vector<TSharedRun<T>> out;
  out.reserve(elements.size() / 48 + 1);
  size_t start = 0;
  const size_t n = elements.size();
  for (size_t i = 0; i < n; ++i) {
    const bool cut = (hashOf(elements[i]) & kCutMask) == 0 || i + 1 - start >= kMaxRun || i + 1 == n;
    if (!cut) continue;
    const size_t len = i + 1 - start;
    const TSharedRun<T>* reuse = nullptr;
    const auto range = byFirst.equal_range(hashOf(elements[start]));
    for (auto it = range.first; it != range.second && !reuse; ++it) {
      const auto& run = **it->second;
      if (run.size() != len) continue;
      bool same = true;
      for (size_t k = 0; k < len && same; ++k) same = sameElement(run[k], elements[start + k]);
      if (same) reuse = it->second;
    }
    if (reuse) out.push_back(*reuse);
    else out.push_back(std::make_shared<const std::vector<T>>(elements.begin() + static_cast<std::ptrdiff_t>(start),
                                                               elements.begin() + static_cast<std::ptrdiff_t>(i + 1)));
    start = i + 1;
  }
  return out;
}

bool sameBits(float a, float b) { return std::bit_cast<uint32_t>(a) == std::bit_cast<uint32_t>(b); }
bool sameBits(const TPointF& a, const TPointF& b) { return sameBits(a.x, b.x) && sameBits(a.y, b.y); }

TStoredIntersection storedOf(const TIntersection& i) {
  TStoredIntersection r;
  r.FPoint = i.FPoint;
  r.FPathID1 = i.FPath1 ? i.FPath1->FID : -1;
  r.FPathID2 = i.FPath2 ? i.FPath2->FID : -1;
  r.FIsCrossing = i.FIsCrossing;
  return r;
}

}  // namespace

bool TStoredIntersection::operator==(const TStoredIntersection& o) const {
  return sameBits(FPoint, o.FPoint) && FPathID1 == o.FPathID1 && FPathID2 == o.FPathID2 &&
         FIsCrossing == o.FIsCrossing;
}

// When TPW_Path gains a field, it must be compared here (and copied by
// createCopy); this size check is the reminder.
static_assert(sizeof(void*) != 8 || sizeof(TPW_Path) == 536,
              "TPW_Path changed: update sameForUndo and this size");

bool sameForUndo(const TPW_Path& a, const TPW_Path& b) {
  if (&a == &b) return true;
  // The cheap and most telling fields first.
  if (a.FID != b.FID || a.FSelected != b.FSelected || a.FLayerID != b.FLayerID) return false;
  if (!sameBits(a.FStartPt, b.FStartPt) || !sameBits(a.FEndPt, b.FEndPt) || !sameBits(a.FCenter, b.FCenter))
    return false;
  if (!(a.FData.sharesPointsWith(b.FData) || a.FData == b.FData)) return false;
  return a.FColor == b.FColor && a.FDash == b.FDash && a.FShapeType == b.FShapeType &&
         sameBits(a.FRotation, b.FRotation) && sameBits(a.FWidth, b.FWidth) && sameBits(a.FHeight, b.FHeight) &&
         a.FStitchType == b.FStitchType && a.FStitchInversed == b.FStitchInversed &&
         sameBits(a.FBezierCp2, b.FBezierCp2) && sameBits(a.FBezierCp1, b.FBezierCp1) &&
         sameBits(a.FThickness, b.FThickness) && a.FPrickingIron == b.FPrickingIron &&
         sameBits(a.FLine_param_a, b.FLine_param_a) && sameBits(a.FLine_param_b, b.FLine_param_b) &&
         a.FIsVerticalLine == b.FIsVerticalLine && a.FIsHorizontalLine == b.FIsHorizontalLine &&
         sameBits(a.FClickedPoint, b.FClickedPoint) && sameBits(a.FSweepAngle, b.FSweepAngle) &&
         sameBits(a.FStartAngle, b.FStartAngle) && a.FText == b.FText && sameBits(a.FFontSize, b.FFontSize) &&
         a.FFontFamily == b.FFontFamily && a.FName == b.FName && a.FGUID == b.FGUID &&
         a.FGroupID == b.FGroupID && a.FIsSymmetryTarget == b.FIsSymmetryTarget &&
         a.FIsDimensionLine == b.FIsDimensionLine && a.FShowArrowSt == b.FShowArrowSt &&
         a.FShowArrowEd == b.FShowArrowEd && sameBits(a.FStitchIn, b.FStitchIn) &&
         sameBits(a.FStitchOut, b.FStitchOut) && a.FPrevStitchID == b.FPrevStitchID &&
         a.FNextStitchID == b.FNextStitchID && a.FMandalaID == b.FMandalaID &&
         a.FMandalaSectionID == b.FMandalaSectionID && sameBits(a.FMandalaCenter, b.FMandalaCenter) &&
         a.FNumMandalaSections == b.FNumMandalaSections && sameBits(a.FMandalaRotation, b.FMandalaRotation) &&
         a.FShowBezierOffsetSupport == b.FShowBezierOffsetSupport && a.FPalletIndex == b.FPalletIndex &&
         sameBits(a.FOpacity, b.FOpacity) && sameBits(a.FTextStretch, b.FTextStretch) &&
         sameBits(a.FTextRadius, b.FTextRadius) && a.FCatalogGUID == b.FCatalogGUID &&
         a.FThreadColor == b.FThreadColor && sameBits(a.FCatalogRotation, b.FCatalogRotation) &&
         a.FAlwaysShowStitchSimulator == b.FAlwaysShowStitchSimulator &&
         sameBits(a.FCatalogScale, b.FCatalogScale) && a.FTextFill == b.FTextFill;
}

size_t TUndoSnapshot::shapeCount() const {
  size_t n = 0;
  for (const auto& r : FShapeRuns) n += r->size();
  return n;
}

size_t TUndoSnapshot::intersectionCount() const {
  size_t n = 0;
  for (const auto& r : FIntersectionRuns) n += r->size();
  return n;
}

std::vector<const TPW_Path*> TUndoSnapshot::shapes() const {
  std::vector<const TPW_Path*> out;
  out.reserve(shapeCount());
  for (const auto& r : FShapeRuns)
    for (const auto& c : *r) out.push_back(c.get());
  return out;
}

std::vector<TStoredIntersection> TUndoSnapshot::intersections() const {
  std::vector<TStoredIntersection> out;
  out.reserve(intersectionCount());
  for (const auto& r : FIntersectionRuns) out.insert(out.end(), r->begin(), r->end());
  return out;
}

std::unique_ptr<TUndoSnapshot> takeUndoSnapshot(const TShapeList& live, const TIntersections& crossings,
                                                const TUndoSnapshot* previous, TSnapshotLinks& links) {
  auto snap = std::make_unique<TUndoSnapshot>();
  const size_t n = live.Count();
  std::vector<TShapeCopy> copies;
  copies.reserve(n);
  std::unordered_map<const TPW_Path*, size_t> linkIndex;  // built only when the order changed
  bool indexBuilt = false;
  for (size_t i = 0; i < n; ++i) {
    const TPW_Path* shape = live[i];
    const TShapeCopy* candidate = nullptr;
    if (i < links.FLive.size() && links.FLive[i] == shape) {
      candidate = &links.FCopies[i];
    } else if (!links.FLive.empty()) {
      if (!indexBuilt) {
        for (size_t k = 0; k < links.FLive.size(); ++k) linkIndex.emplace(links.FLive[k], k);
        indexBuilt = true;
      }
      const auto it = linkIndex.find(shape);
      if (it != linkIndex.end()) candidate = &links.FCopies[it->second];
    }
    if (candidate && sameForUndo(*shape, **candidate)) copies.push_back(*candidate);
    else copies.push_back(TShapeCopy(shape->createCopy()));
  }
  snap->FShapeRuns = shareRuns(copies, previous ? &previous->FShapeRuns : nullptr);

  std::vector<TStoredIntersection> stored;
  stored.reserve(crossings.Count());
  for (const auto& c : crossings.items()) stored.push_back(storedOf(*c));
  snap->FIntersectionRuns = shareRuns(stored, previous ? &previous->FIntersectionRuns : nullptr);

  TLayerState layers{live.FLayers, live.FLayerDict, live.FLayerVisible, live.FIsIndependentLayer};
  if (previous && previous->FLayers && *previous->FLayers == layers) snap->FLayers = previous->FLayers;
  else snap->FLayers = std::make_shared<const TLayerState>(std::move(layers));

  links.FLive.resize(n);
  for (size_t i = 0; i < n; ++i) links.FLive[i] = live[i];
  links.FCopies = std::move(copies);
  return snap;
}

void restoreUndoSnapshot(const TUndoSnapshot& snapshot, TShapeList& live, TIntersections& crossings,
                         bool clearSelection, TSnapshotLinks& links) {
  crossings.Clear();
  live.clearShapes();
  if (snapshot.FLayers) {
    live.FLayers = snapshot.FLayers->FLayers;
    live.FLayerDict = snapshot.FLayers->FLayerDict;
    live.FLayerVisible = snapshot.FLayers->FLayerVisible;
    live.FIsIndependentLayer = snapshot.FLayers->FIsIndependentLayer;
  }
  links.clear();
  for (const auto& run : snapshot.FShapeRuns) {
    for (const auto& copy : *run) {
      auto shape = copy->createCopy();
      if (clearSelection) shape->FSelected = false;
      links.FLive.push_back(shape.get());
      links.FCopies.push_back(copy);
      const int layer = shape->FLayerID;
      live.add(std::move(shape), layer);
    }
  }
  std::unordered_map<int, TPW_Path*> byId;
  for (const auto& s : live) byId.emplace(s->FID, s.get());  // the first of an id, as a search finds it
  for (const auto& run : snapshot.FIntersectionRuns) {
    for (const auto& r : *run) {
      const auto a = byId.find(r.FPathID1);
      const auto b = byId.find(r.FPathID2);
      if (a == byId.end() || b == byId.end()) continue;
      auto ict = std::make_unique<TIntersection>(r.FPoint, a->second, b->second);
      ict->FIsCrossing = r.FIsCrossing;
      crossings.Add(ict);
    }
  }
}
