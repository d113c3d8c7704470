// Where shapes cross or touch. The document keeps one list of these beside
// its shapes; an entry points at live shapes and is re-linked by identifier
// when an undo snapshot is restored.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <unordered_map>
#include <vector>

#include "document/types.h"

class TPW_Path;

class TIntersection {
 public:
  TIntersection(const TPointF& pt, TPW_Path* APath1, TPW_Path* APath2)
      : FPoint(pt), FPath1(APath1), FPath2(APath2) {}
  // Same point, shapes and flag; the ids stay -1.
  std::unique_ptr<TIntersection> createCopy() const;

  TPointF FPoint;
  TPW_Path* FPath1;  // not owned
  TPW_Path* FPath2;  // not owned
  bool FIsCrossing = false;
  int FPathID2 = -1;
  int FPathID1 = -1;
};

class TIntersections {
 public:
  static constexpr int kRejected = -1;

  // Stores the crossing and returns its index, unless an entry for the same
  // pair of shapes (in either order) already lies at the same point (to a
  // hundredth of a millimetre): then nothing is stored, the result is
  // kRejected and `ict` still holds the caller's object.
  int Add(std::unique_ptr<TIntersection>& ict);
  int Add(std::unique_ptr<TIntersection>&& ict) { return Add(ict); }

  size_t Count() const { return FItems.size(); }
  bool empty() const { return FItems.empty(); }
  TIntersection* operator[](size_t i) const { return FItems[i].get(); }
  const std::vector<std::unique_ptr<TIntersection>>& items() const { return FItems; }
  void Clear();
  void Delete(size_t index);
  // Removes every entry that the predicate selects, keeping the order of
  // the rest. Returns how many went.
  size_t removeIf(const std::function<bool(const TIntersection&)>& pred);
  // Removes every entry that involves the shape.
  size_t removeFor(const TPW_Path* shape);
  // Entries for the pair, in either order, in list order.
  std::vector<TIntersection*> findPair(const TPW_Path* a, const TPW_Path* b) const;

 private:
  std::vector<std::unique_ptr<TIntersection>> FItems;
  // Pair of shapes -> their entries, so that Add need not scan the list.
  std::unordered_map<uint64_t, std::vector<TIntersection*>> FByPair;
  static uint64_t pairKey(const TPW_Path* a, const TPW_Path* b);
};
