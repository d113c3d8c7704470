#include "api/query_endpoints.h"

#include <algorithm>

#include "api/api_reply.h"
#include "api/api_request.h"
#include "app/frm_pelw.h"

int activePalletRow(const TfrmPelw& form) { return std::clamp(form.FSelectedPalette, 0, TPalletList::Count() - 1); }

namespace {

// The fields that both shape replies begin with.
void writeShapeHead(TJsonReply& r, const TPW_Path& s) {
  r.field("id", s.FID).field("shapeType", s.FShapeType).field("paletteIdx", s.FPalletIndex + 1)
      .field("layerId", s.FLayerID);
}

}  // namespace

std::string apiGetPaths(TfrmPelw& form) {
  TJsonReply r;
  // A large drawing gives a reply of tens of megabytes: growing it by
  // doubling would copy it over and over.
  size_t estimate = 64;
  for (const auto& s : *form.PathList) estimate += 400 + 60 * s->FData.Count();
  r.reserve(estimate);
  r.beginObject().key("paths").beginArray();
  int count = 0;
  for (const auto& item : *form.PathList) {
    if (!item) continue;
    TPW_Path& s = *item;
    r.beginObject();
    writeShapeHead(r, s);
    // Start and end are written before the centre: for a free outline the
    // centre rule sets them anew.
    r.key("startPt");
    writePoint(r, s.FStartPt);
    r.key("endPt");
    writePoint(r, s.FEndPt);
    r.key("center");
    writePoint(r, apiShapeCenter(s));
    r.fieldSingle("width", s.FWidth).fieldSingle("height", s.FHeight).fieldSingle("rotation", s.FRotation);
    r.key("data");
    writePathData(r, s.FData);
    r.endObject();
    ++count;
  }
  r.endArray().field("count", count).endObject();
  return r.take();
}

std::string apiGetIntersections(TfrmPelw& form) {
  TJsonReply r;
  r.beginObject().key("intersections").beginArray();
  int count = 0;
  for (const auto& ict : form.FIntersections->items()) {
    r.beginObject().key("point");
    writePoint(r, ict->FPoint);
    r.key("path1Id");
    if (ict->FPath1) r.integer(ict->FPath1->FID);
    else r.null();
    r.key("path2Id");
    if (ict->FPath2) r.integer(ict->FPath2->FID);
    else r.null();
    r.endObject();
    ++count;
  }
  r.endArray().field("count", count).endObject();
  return r.take();
}

std::string apiGetDoc(TfrmPelw& form) {
  const TShapeList& doc = *form.PathList;
  bool any = false;
  float xMin = 0, yMin = 0, xMax = 0, yMax = 0;
  for (const auto& s : doc) {
    // The boundary as it is, without moving the shape's start, end, centre.
    const TRectF b = s->getBoundary(false);
    if (!(b.width() + b.height() > 0)) continue;
    if (!any) {
      xMin = b.Left, yMin = b.Top, xMax = b.Right, yMax = b.Bottom;
      any = true;
    } else {
      xMin = std::min(xMin, b.Left);
      yMin = std::min(yMin, b.Top);
      xMax = std::max(xMax, b.Right);
      yMax = std::max(yMax, b.Bottom);
    }
  }
  TJsonReply r;
  r.beginObject()
      .field("shapeCount", static_cast<int>(doc.Count()))
      .field("layerCount", static_cast<int>(doc.FLayers.size()))
      .field("paletteCount", TPalletList::Count())
      .field("activePaletteIdx", activePalletRow(form) + 1)
      .field("activeLayerId", form.FActiveLayer)
      .key("bbox");
  if (any) {
    r.beginObject()
        .fieldSingle("xMin", xMin)
        .fieldSingle("yMin", yMin)
        .fieldSingle("xMax", xMax)
        .fieldSingle("yMax", yMax)
        .endObject();
  } else {
    r.null();
  }
  r.endObject();
  return r.take();
}

std::string apiGetShape(TfrmPelw& form, const std::string& path) {
  const auto id = parseShapeId(path);
  if (!id) return errorReply("invalid id");
  TPW_Path* found = form.PathList->findByID(*id);
  if (!found) {
    TJsonReply r;
    r.beginObject().field("error", "shape not found").field("id", *id).endObject();
    return r.take();
  }
  TPW_Path& s = *found;
  const bool bezier = s.isType(ShapeType::Bezier);
  TJsonReply r;
  r.beginObject();
  writeShapeHead(r, s);
  r.field("selected", s.FSelected);
  r.key("startPt");
  writePoint(r, s.FStartPt);
  r.key("endPt");
  writePoint(r, s.FEndPt);
  r.key("center");
  writePoint(r, apiShapeCenter(s));
  // Left, top, width and height: a different form from the box of GET /doc.
  const TRectF b = s.getBoundary(false);
  r.key("bbox")
      .beginObject()
      .fieldSingle("x", b.Left)
      .fieldSingle("y", b.Top)
      .fieldSingle("width", static_cast<float>(b.width()))
      .fieldSingle("height", static_cast<float>(b.height()))
      .endObject();
  r.fieldSingle("rotation", s.FRotation).fieldSingle("length", s.calcTotalLength());
  r.field("prevStitchID", s.FPrevStitchID).field("nextStitchID", s.FNextStitchID);
  r.key("bezierCp1");
  if (bezier) writePoint(r, s.FBezierCp1);
  else r.null();
  r.key("bezierCp2");
  if (bezier) writePoint(r, s.FBezierCp2);
  else r.null();
  r.key("data");
  writePathData(r, s.FData);
  r.endObject();
  return r.take();
}
