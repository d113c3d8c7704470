// The road every change of the document takes: shapes in, changed, out,
// with the list of crossings kept current on the way.
#include "app/frm_pelw.h"
#include "geometry/collect_intersections.h"

TPW_Path* TfrmPelw::addShapeToDocument(std::unique_ptr<TPW_Path> shape, int layer) {
  if (!shape || !PathList) return nullptr;
  if (shape->FID <= 0 || PathList->idInUse(shape->FID)) shape->updateId(PathList->getNextID());
  TPW_Path* added = shape.get();
  PathList->add(std::move(shape), layer);
  collectIntersectionsFor(added);
  return added;
}

void TfrmPelw::addShapesToDocument(std::vector<std::unique_ptr<TPW_Path>> shapes, int layer) {
  if (!PathList) return;
  const size_t first = PathList->Count();
  for (auto& shape : shapes) {
    if (!shape) continue;
    if (shape->FID <= 0 || PathList->idInUse(shape->FID)) shape->updateId(PathList->getNextID());
    const int target = layer == kOwnLayer ? shape->FLayerID : layer;
    PathList->add(std::move(shape), target);
  }
  if (FHoldCrossings) return;
  collectIntersectionsFrom(*PathList, *FIntersections, first);
}

void TfrmPelw::forgetIntersectionsOf(TPW_Path* shape) {
  if (shape && FIntersections) FIntersections->removeFor(shape);
}

void TfrmPelw::collectIntersectionsFor(TPW_Path* shape) {
  if (!shape || !PathList || !FIntersections || FHoldCrossings) return;
  collectIntersections(*PathList, *FIntersections, shape);
}

void TfrmPelw::shapeChanged(TPW_Path* shape) {
  if (!shape) return;
  forgetIntersectionsOf(shape);
  collectIntersectionsFor(shape);
}

void TfrmPelw::deleteShape(TPW_Path* shape) {
  if (!shape || !PathList) return;
  const int index = PathList->indexOf(shape);
  if (index < 0) return;
  forgetIntersectionsOf(shape);
  PathList->erase(static_cast<size_t>(index));
}

void TfrmPelw::recalcIntersections() {
  if (!PathList || !FIntersections) return;
  recalcAllIntersections(*PathList, *FIntersections);
}

void TfrmPelw::btnRecalcIntersectionsClick() {
  recalcIntersections();
  finishDocumentChange();
}

void TfrmPelw::setLayerIndependent(int layerId, bool independent) {
  if (!PathList) return;
  PathList->SetIsIndependentLayer(layerId, independent);
  btnRecalcIntersectionsClick();
}

// finishDocumentChange takes the undo snapshot: see frm_pelw_undo.cpp.
