#include "document/intersections.h"

#include <algorithm>
#include <functional>

#include "document/point_helpers.h"

std::unique_ptr<TIntersection> TIntersection::createCopy() const {
  auto c = std::make_unique<TIntersection>(FPoint, FPath1, FPath2);
  c->FIsCrossing = FIsCrossing;
  return c;
}

uint64_t TIntersections::pairKey(const TPW_Path* a, const TPW_Path* b) {
  auto ua = reinterpret_cast<uintptr_t>(a), ub = reinterpret_cast<uintptr_t>(b);
  if (ua > ub) std::swap(ua, ub);
  // A hash key only: collisions are resolved by comparing the shapes.
  return static_cast<uint64_t>(ua) * 0x9E3779B97F4A7C15ULL ^ static_cast<uint64_t>(ub);
}

std::vector<TIntersection*> TIntersections::findPair(const TPW_Path* a, const TPW_Path* b) const {
  std::vector<TIntersection*> out;
  const auto it = FByPair.find(pairKey(a, b));
  if (it == FByPair.end()) return out;
  for (TIntersection* e : it->second)
    if ((e->FPath1 == a && e->FPath2 == b) || (e->FPath1 == b && e->FPath2 == a)) out.push_back(e);
  return out;
}

int TIntersections::Add(std::unique_ptr<TIntersection>& ict) {
  if (!ict) return kRejected;
  auto& bucket = FByPair[pairKey(ict->FPath1, ict->FPath2)];
  for (const TIntersection* e : bucket) {
    const bool samePair = (e->FPath1 == ict->FPath1 && e->FPath2 == ict->FPath2) ||
                          (e->FPath1 == ict->FPath2 && e->FPath2 == ict->FPath1);
    if (samePair && samePoint(e->FPoint, ict->FPoint, 0.0)) return kRejected;
  }
  bucket.push_back(ict.get());
  FItems.push_back(std::move(ict));
  return static_cast<int>(FItems.size() - 1);
}

void TIntersections::Clear() {
  FItems.clear();
  FByPair.clear();
}

void TIntersections::Delete(size_t index) {
  if (index >= FItems.size()) return;
  TIntersection* gone = FItems[index].get();
  const auto it = FByPair.find(pairKey(gone->FPath1, gone->FPath2));
  if (it != FByPair.end()) {
    std::erase(it->second, gone);
    if (it->second.empty()) FByPair.erase(it);
  }
  FItems.erase(FItems.begin() + static_cast<std::ptrdiff_t>(index));
}

size_t TIntersections::removeIf(const std::function<bool(const TIntersection&)>& pred) {
  // Only the buckets of the removed entries are touched, so that dropping
  // one shape's crossings from a large list stays cheap.
  std::vector<TIntersection*> gone;
  for (const auto& e : FItems)
    if (pred(*e)) gone.push_back(e.get());
  if (gone.empty()) return 0;
  for (TIntersection* g : gone) {
    const auto it = FByPair.find(pairKey(g->FPath1, g->FPath2));
    if (it == FByPair.end()) continue;
    std::erase(it->second, g);
    if (it->second.empty()) FByPair.erase(it);
  }
  std::sort(gone.begin(), gone.end());
  std::erase_if(FItems, [&gone](const std::unique_ptr<TIntersection>& e) {
    return std::binary_search(gone.begin(), gone.end(), e.get());
  });
  return gone.size();
}

size_t TIntersections::removeFor(const TPW_Path* shape) {
  return removeIf([shape](const TIntersection& e) { return e.FPath1 == shape || e.FPath2 == shape; });
}
