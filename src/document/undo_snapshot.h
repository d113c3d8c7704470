// Undo snapshots that share what did not change. A snapshot holds the whole
// document as it was after an operation (shapes with their ids, selection
// flags and layers; the layers' names, visibility and independence; the
// crossings by shape id), exactly as a full copy would. But a shape that is
// the same as in the previous snapshot is not copied again: snapshots hold
// shapes as shared, immutable copies, and long runs of them in shared
// pieces, so the memory of one undo level follows what the operation changed.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "document/types.h"

class TPW_Path;
class TShapeList;
class TIntersections;

// A crossing as a snapshot keeps it: by the ids of its two shapes.
struct TStoredIntersection {
  TPointF FPoint;
  int FPathID1 = -1;
  int FPathID2 = -1;
  bool FIsCrossing = false;
  bool operator==(const TStoredIntersection& o) const;
};

struct TLayerState {
  std::vector<int> FLayers;
  std::map<int, std::string> FLayerDict;
  std::map<int, bool> FLayerVisible;
  std::map<int, bool> FIsIndependentLayer;
  bool operator==(const TLayerState& o) const = default;
};

using TShapeCopy = std::shared_ptr<const TPW_Path>;
template <class T>
using TSharedRun = std::shared_ptr<const std::vector<T>>;

class TUndoSnapshot {
 public:
  std::vector<TSharedRun<TShapeCopy>> FShapeRuns;
  std::vector<TSharedRun<TStoredIntersection>> FIntersectionRuns;
  std::shared_ptr<const TLayerState> FLayers;
  // A snapshot always counts as changed; undo takes the flag from it.
  bool FIsChanged = true;

  size_t shapeCount() const;
  size_t intersectionCount() const;
  // The shapes in list order.
  std::vector<const TPW_Path*> shapes() const;
  std::vector<TStoredIntersection> intersections() const;
};

// Which live shape stands for which copy of the last snapshot taken or
// restored, so that the next snapshot can tell the unchanged ones.
struct TSnapshotLinks {
  std::vector<const TPW_Path*> FLive;
  std::vector<TShapeCopy> FCopies;
  void clear() {
    FLive.clear();
    FCopies.clear();
  }
};

// Everything a snapshot keeps of a shape is the same in both: all the
// fields that createCopy copies, bit for bit.
bool sameForUndo(const TPW_Path& a, const TPW_Path& b);

// The snapshot of the live document. `previous` (the last snapshot, may be
// null) and `links` let unchanged shapes and runs be shared; `links` then
// points at the new snapshot.
std::unique_ptr<TUndoSnapshot> takeUndoSnapshot(const TShapeList& live, const TIntersections& crossings,
                                                const TUndoSnapshot* previous, TSnapshotLinks& links);

// Replaces the live document's shapes and layers by a copy of the
// snapshot's, and its crossings by the stored ones, re-linked by id. Memo,
// print areas and times stay. `clearSelection` unselects every shape.
// `links` then points at this snapshot.
void restoreUndoSnapshot(const TUndoSnapshot& snapshot, TShapeList& live, TIntersections& crossings,
                         bool clearSelection, TSnapshotLinks& links);
