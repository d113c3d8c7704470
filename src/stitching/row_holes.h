// The holes of one row going into the document: made with the iron, turned
// to the row, kept on the layer, chained in sewing order, and remembered so
// that no position is punched twice.
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "document/pw_path.h"
#include "stitching/point_grid.h"

class TShapeList;
struct TPrickingIron;

// Holes always take palette row 36; their stroke comes from the caller.
struct THoleLook {
  TAlphaColor FColor = 0xFFFFFFFF;
  float FThickness = 1.0f;
  TStrokeDash FDash = TStrokeDash::Dot;
};

class TRowHoles {
 public:
  // Puts a finished hole into the document (on the layer it carries) and
  // returns it as the document now holds it.
  using TAddHole = std::function<TPW_Path*(std::unique_ptr<TPW_Path>)>;

  // `lastStitch` is the controller's FLastStitch: the hole a new row may
  // continue from, moved on as holes are made. It must be null or a shape
  // of `doc`.
  TRowHoles(TShapeList& doc, int layer, TPrickingIron* iron, bool inverted, const THoleLook& look,
            TAddHole add, TPW_Path*& lastStitch);

  // The first hole of the layer closer than `radius`, made before or during
  // this row.
  TPW_Path* findHoleNear(const TPointF& pt, double radius) const { return FIndex.findHoleNear(pt, radius); }
  const THoleIndex& holeIndex() const { return FIndex; }

  // A new hole at pos, turned by rotation, added to the document. Null when
  // there is no iron to punch with.
  TPW_Path* makeHole(const TPointF& pos, float rotation);

  // The last hole is still in the document and its centre lies closer than
  // 1.8 pitches to this one's.
  bool followsLastHole(const TPW_Path& hole, double pitch) const;
  // Continues the chain: when the last hole has no next and this one
  // follows it, the two are linked. Either way this hole becomes the last.
  void chainAfterLast(TPW_Path& hole, double pitch);
  TPW_Path* lastStitch() const { return FLastStitch; }
  void setLastStitch(TPW_Path* hole) { FLastStitch = hole; FLastInDocument = hole != nullptr; }

  // prev -> next in sewing order.
  static void link(TPW_Path& prev, TPW_Path& next);

  // Every hole made through this maker, in order.
  const std::vector<TPW_Path*>& made() const { return FMade; }
  int layer() const { return FLayer; }

 private:
  TShapeList& FDoc;
  int FLayer;
  TPrickingIron* FIron;
  bool FInverted;
  THoleLook FLook;
  TAddHole FAdd;
  TPW_Path*& FLastStitch;
  bool FLastInDocument;
  THoleIndex FIndex;
  std::vector<TPW_Path*> FMade;
};

// The mean straight distance between neighbouring holes in the order
// given, the last and the first counted as neighbours round a ring; 0 for
// fewer than two holes.
double meanHoleSpacing(const std::vector<TPW_Path*>& holes, bool ring);
