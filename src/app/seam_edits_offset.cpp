// Offsets on the controller: the offset tool's preview and click, and the
// two offsets of the local API.
#include <algorithm>
#include <unordered_set>

#include "app/frm_pelw.h"
#include "app/seam_edits.h"
#include "document/number_text.h"
#include "geometry/intersect_pair.h"
#include "geometry/offset.h"
#include "geometry/shape_ends.h"
#include "platform/canvas.h"
#include "stitching/chain_order.h"
#include "surface/screen_path.h"

namespace {

// Palette row of copies shown while the pointer moves.
constexpr int kOffsetPreviewPalletRow = 39;
// Palette row of the frame round a pattern.
constexpr int kOuterEdgePalletRow = 37;

std::vector<const TPW_Path*> constChain(const std::vector<TPW_Path*>& shapes) {
  return {shapes.begin(), shapes.end()};
}

// An arc as the local API offsets it: outward when the line from its
// centre to the direction point crosses it, else inward.
std::unique_ptr<TPW_Path> apiArcOffset(TPW_Path& arc, double d, const TPointF& directionPoint) {
  TPW_Path ray(0, claWhite, 1, TStrokeDash::Solid, -1);
  ray.drawLinePath(arc.FCenter, directionPoint);
  const bool crosses = !calcShapeIntersections(&ray, &arc).empty();
  return offsetShape(arc, crosses ? d : -d);
}

}  // namespace

std::vector<TPW_Path*> TSeamEdits::selectedShapes() const {
  std::vector<TPW_Path*> out;
  if (!F.PathList) return out;
  for (const auto& s : *F.PathList)
    if (s->FSelected) out.push_back(s.get());
  return out;
}

std::vector<std::unique_ptr<TPW_Path>> TSeamEdits::selectionCopies(const TPointF& directionPoint) {
  const double d = FSettings.FOffsetDistance;
  const std::vector<TPW_Path*> selection = selectedShapes();
  std::vector<std::unique_ptr<TPW_Path>> copies;
  if (selection.empty()) return copies;
  if (std::all_of(selection.begin(), selection.end(), [](TPW_Path* s) { return isLineCurveOrArc(*s); })) {
    std::vector<TPW_Path*> chain;
    std::vector<std::unique_ptr<TPW_Path>> turned;
    if (mayFormOneChain(selection) && orderIntoChain(selection, chain, turned)) {
      const TPointF a = chain.front()->FStartPt, b = chain.back()->FEndPt;
      const bool closed = std::fabs(double(a.x) - b.x) <= 1e-4 && std::fabs(double(a.y) - b.y) <= 1e-4;
      return smartOffset(constChain(chain), d, directionPoint, closed);
    }
  }
  for (TPW_Path* s : selection) {
    if (auto copy = offsetTowards(*s, d, directionPoint)) copies.push_back(std::move(copy));
  }
  return copies;
}

std::vector<std::unique_ptr<TPW_Path>> TSeamEdits::offsetOfSelection(const TPointF& directionPoint) {
  std::vector<std::unique_ptr<TPW_Path>> copies = selectionCopies(directionPoint);
  for (auto& c : copies) c->FPalletIndex = kOffsetPreviewPalletRow;
  return copies;
}

void TSeamEdits::strokePreview(ICanvas& canvas, const TPW_Path& shape) {
  TPathData screen;
  toScreenPath(shape.FData, F.FScale, F.FOffset, screen);
  canvas.drawPath(screen, 1.0f);
}

void TSeamEdits::paintOffsetPreview(ICanvas& canvas, const TPointF& pointerReal) {
  const std::vector<std::unique_ptr<TPW_Path>> copies = offsetOfSelection(pointerReal);
  if (copies.empty()) return;
  canvas.setStroke(F.FStrokeDefs.OffsetTempColor, TBrushKind::Solid, TStrokeDash::Solid, 0.0f);
  for (const auto& c : copies) strokePreview(canvas, *c);
}

std::vector<int> TSeamEdits::commitOffset(const TPointF& directionPoint) {
  std::vector<std::unique_ptr<TPW_Path>> copies = selectionCopies(directionPoint);
  for (auto& c : copies) {
    c->FPalletIndex = F.FSelectedPalette;
    c->FColor = F.FCurrentColor;
    c->FThickness = F.FCurrentThickness;
    c->FDash = F.FCurrentDash;
  }
  return addOffsetCopies(std::move(copies), F.FActiveLayer);
}

std::vector<int> TSeamEdits::addOffsetCopies(std::vector<std::unique_ptr<TPW_Path>> copies, int layer) {
  std::vector<int> ids;
  if (copies.empty() || !F.PathList) return ids;
  const size_t first = F.PathList->Count();
  F.addShapesToDocument(std::move(copies), layer);
  for (size_t i = first; i < F.PathList->Count(); ++i) ids.push_back((*F.PathList)[i]->FID);
  for (TPW_Path* moved : snapEndsToLineEnds(*F.PathList)) F.shapeChanged(moved);
  F.RepaintCanvas();
  F.finishDocumentChange();
  return ids;
}

namespace {

void restyle(std::vector<std::unique_ptr<TPW_Path>>& copies, const std::optional<int>& row,
             const TPalletList& pallets) {
  if (!row) return;
  const TDrawPallet& p = pallets[*row];
  for (auto& c : copies) {
    c->FPalletIndex = *row;
    c->FColor = p.getColor();
    c->FThickness = p.FThickness;
    c->FDash = p.FDash;
  }
}

}  // namespace

TSeamEdits::TOffsetResult TSeamEdits::offsetShapes(const TOffsetRequest& request) {
  TOffsetResult result;
  if (!F.PathList) return result;
  std::unordered_set<int> wanted;
  if (request.FShapeIds) wanted.insert(request.FShapeIds->begin(), request.FShapeIds->end());
  std::vector<std::unique_ptr<TPW_Path>> copies;
  const double d = request.FDistance;
  for (const auto& item : *F.PathList) {
    TPW_Path& s = *item;
    if (request.FShapeIds && !wanted.count(s.FID)) continue;
    std::unique_ptr<TPW_Path> copy;
    if (s.isType(ShapeType::Arc)) copy = apiArcOffset(s, d, request.FDirectionPoint);
    else if (!s.isType(ShapeType::Hole)) copy = offsetTowards(s, d, request.FDirectionPoint);
    if (!copy) {
      result.FSkippedIds.push_back(s.FID);
      continue;
    }
    copies.push_back(std::move(copy));
  }
  restyle(copies, request.FPaletteRow, F.FPalletList);
  result.FCreatedIds = addOffsetCopies(std::move(copies), request.FLayer);
  return result;
}

std::vector<int> TSeamEdits::smartOffsetShapes(const std::vector<TPW_Path*>& shapes, const TOffsetRequest& request,
                                               bool closed) {
  std::vector<TPW_Path*> chain;
  std::vector<std::unique_ptr<TPW_Path>> turned;
  if (shapes.size() < 2 || !mayFormOneChain(shapes) || !orderIntoChain(shapes, chain, turned)) chain = shapes;
  std::vector<std::unique_ptr<TPW_Path>> copies =
      smartOffset(constChain(chain), request.FDistance, request.FDirectionPoint, closed);
  restyle(copies, request.FPaletteRow, F.FPalletList);
  return addOffsetCopies(std::move(copies), request.FLayer);
}

bool TSeamEdits::drawOuterOffsetEdge(double margin) {
  if (!F.PathList || !std::isfinite(margin) || std::fabs(margin) > 1e6) return false;
  std::vector<TPW_Path*> shapes = selectedShapes();
  if (shapes.empty()) {
    for (const auto& s : *F.PathList) shapes.push_back(s.get());
  }
  if (shapes.empty()) return false;
  TRectF box = shapes.front()->getBoundary(false).normalized();
  for (TPW_Path* s : shapes) {
    const TRectF b = s->getBoundary(false).normalized();
    box = TRectF(std::min(box.Left, b.Left), std::min(box.Top, b.Top), std::max(box.Right, b.Right),
                 std::max(box.Bottom, b.Bottom));
  }
  const double l = box.Left - margin, t = box.Top - margin, r = box.Right + margin, b = box.Bottom + margin;
  const TPointF corners[4] = {TPointF::fromDouble(l, t), TPointF::fromDouble(r, t), TPointF::fromDouble(r, b),
                              TPointF::fromDouble(l, b)};
  const TDrawPallet& row = F.FPalletList[kOuterEdgePalletRow];
  std::vector<std::unique_ptr<TPW_Path>> lines;
  for (int i = 0; i < 4; ++i) {
    auto line = std::make_unique<TPW_Path>(kOuterEdgePalletRow, row.getColor(), row.FThickness, row.FDash, -1);
    line->drawLinePath(corners[i], corners[(i + 1) % 4]);
    lines.push_back(std::move(line));
  }
  F.addShapesToDocument(std::move(lines), F.FActiveLayer);
  F.RepaintCanvas();
  F.finishDocumentChange();
  return true;
}

void TfrmPelw::btnDrawOuterOffsetEdgeClick() {
  if (!PathList) return;
  const bool anySelected =
      std::any_of(PathList->begin(), PathList->end(), [](const auto& s) { return s->FSelected; });
  if (!anySelected && PathList->empty()) {
    dialogs().showMessage(phrase("Require1Shape"));
    return;
  }
  const std::optional<std::string> text =
      dialogs().inputText("Mergin", "Please specify the margin length in mm:", "5");
  if (!text) return;
  double margin = 0;
  if (!textToFloat(*text, margin) || !(std::fabs(margin) <= 1e6)) {
    dialogs().showMessage(phrase("MarginNotANumber"));
    return;
  }
  FSeamEdits.drawOuterOffsetEdge(margin);
}
