// Chain smoothing on the controller, and the two smoothing commands, which
// drive the local API's handlers so that the menu and the API are one path.
#include "api/seam_endpoints.h"
#include "app/frm_pelw.h"
#include "app/seam_edits.h"

TSmoothOutcome TSeamEdits::smoothShapes(const std::vector<TPW_Path*>& chain, bool withLegs) {
  TSmoothOutcome outcome = smoothChain(chain, withLegs);
  for (TPW_Path* s : outcome.FChanged) F.shapeChanged(s);
  if (!outcome.FChanged.empty()) {
    F.RepaintCanvas();
    F.finishDocumentChange();
  }
  return outcome;
}

namespace {

// {"shapeId":id} for one selected curve, {"shapeIds":[...]} for several;
// empty without a selected curve.
std::string smoothingBody(const TShapeList* list) {
  std::vector<int> ids;
  if (list) {
    for (const auto& s : *list)
      if (s->FSelected && s->isType(ShapeType::Bezier)) ids.push_back(s->FID);
  }
  if (ids.empty()) return {};
  if (ids.size() == 1) return "{\"shapeId\":" + std::to_string(ids.front()) + "}";
  std::string body = "{\"shapeIds\":[";
  for (size_t i = 0; i < ids.size(); ++i) body += (i ? "," : "") + std::to_string(ids[i]);
  return body + "]}";
}

}  // namespace

std::string TfrmPelw::actBezier_G1Smoothing() {
  const std::string body = smoothingBody(PathList.get());
  return body.empty() ? std::string() : apiSmoothChain(*this, body, false);
}

std::string TfrmPelw::actBezier_G2Smoothing() {
  const std::string body = smoothingBody(PathList.get());
  return body.empty() ? std::string() : apiSmoothChain(*this, body, true);
}
