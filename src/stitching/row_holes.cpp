#include "stitching/row_holes.h"

#include <cmath>

#include "document/point_helpers.h"
#include "document/shape_list.h"
#include "stitching/pricking_iron.h"

TRowHoles::TRowHoles(TShapeList& doc, int layer, TPrickingIron* iron, bool inverted,
                     const THoleLook& look, TAddHole add, TPW_Path*& lastStitch)
    : FDoc(doc),
      FLayer(layer),
      FIron(iron),
      FInverted(inverted),
      FLook(look),
      FAdd(std::move(add)),
      FLastStitch(lastStitch),
      FLastInDocument(lastStitch && doc.indexOf(lastStitch) >= 0),
      FIndex(&doc, layer) {}

TPW_Path* TRowHoles::makeHole(const TPointF& pos, float rotation) {
  if (!FIron) return nullptr;
  auto hole = std::make_unique<TPW_Path>(kStitchHolePalletIndex, FLook.FColor, FLook.FThickness,
                                         FLook.FDash, FDoc.getNextID());
  hole->FLayerID = FLayer;
  hole->createStichPath(pos, FInverted, FIron, rotation, 0.0f);
  TPW_Path* added = FAdd ? FAdd(std::move(hole)) : nullptr;
  if (!added) return nullptr;
  FIndex.add(added);
  FMade.push_back(added);
  return added;
}

bool TRowHoles::followsLastHole(const TPW_Path& hole, double pitch) const {
  if (!FLastStitch || !FLastInDocument) return false;
  return distanceOf(FLastStitch->FCenter, hole.FCenter) < pitch * 1.8;
}

void TRowHoles::link(TPW_Path& prev, TPW_Path& next) {
  prev.FNextStitchID = next.FID;
  next.FPrevStitchID = prev.FID;
}

void TRowHoles::chainAfterLast(TPW_Path& hole, double pitch) {
  if (FLastStitch && FLastStitch != &hole && FLastInDocument && FLastStitch->FNextStitchID < 0 &&
      followsLastHole(hole, pitch))
    link(*FLastStitch, hole);
  setLastStitch(&hole);
}

double meanHoleSpacing(const std::vector<TPW_Path*>& holes, bool ring) {
  const size_t n = holes.size();
  if (n < 2) return 0.0;
  double sum = 0.0;
  for (size_t i = 0; i + 1 < n; ++i) sum += std::hypot(double(holes[i + 1]->FCenter.x) - holes[i]->FCenter.x,
                                                       double(holes[i + 1]->FCenter.y) - holes[i]->FCenter.y);
  if (!ring) return sum / double(n - 1);
  sum += std::hypot(double(holes[0]->FCenter.x) - holes[n - 1]->FCenter.x,
                    double(holes[0]->FCenter.y) - holes[n - 1]->FCenter.y);
  return sum / double(n);
}
