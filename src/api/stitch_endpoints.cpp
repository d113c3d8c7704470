#include "api/stitch_endpoints.h"

#include "api/api_reply.h"
#include "api/api_request.h"
#include "api/doc_endpoints.h"
#include "app/frm_pelw.h"

namespace {

const char* const kInvalidBody = "invalid JSON body";

// Wanted distance of holes, and the hole count of count mode, when the
// request leaves them out.
constexpr double kDefaultPitchMm = 4.0;
constexpr double kDefaultHoleCount = 10.0;

// What a row made: its count, the pitch it closed with (to a thousandth),
// the corner mode when a corner method laid it, and the new holes.
std::string rowReply(const TfrmPelw::TStitchReply& made, bool withCornerMode) {
  TJsonReply r;
  r.beginObject().field("ok", true).field("holeCount", made.FHoleCount);
  r.key("actualPitchMm").numberText(formatUpTo3Decimals(made.FActualPitchMm));
  if (withCornerMode) r.field("cornerMode", made.FCornerMode);
  r.key("createdIds").beginArray();
  for (int id : made.FCreatedIds) r.integer(id);
  r.endArray().endObject();
  return r.take();
}

}  // namespace

std::string apiStitchHole(TfrmPelw& form, const std::string& body) {
  const auto obj = parseJsonObject(body);
  if (!obj) return errorReply(kInvalidBody);
  TfrmPelw::TStitchHoleRequest req;
  req.FCenter = requirePoint(*obj, "cx", "cy");
  req.FAngle = static_cast<float>(checkedLength(optionalNumber(*obj, "angle", 0.0), "angle"));
  req.FStitchType = optionalText(*obj, "stitchType", req.FStitchType);
  req.FLayerId = resolveLayer(*obj, form.FActiveLayer);
  // The hole takes the current stroke, as one set by hand does.
  req.FThickness = form.FCurrentThickness;
  req.FDash = form.FCurrentDash;
  const int id = form.apiAddStitchHole(req);
  return okReply("id", id);
}

std::string apiStitchAlongPath(TfrmPelw& form, const std::string& body) {
  const auto obj = parseJsonObject(body);
  if (!obj) return errorReply(kInvalidBody);
  TfrmPelw::TStitchAlongPathRequest req;
  try {
    req.FStartPoint = requirePointObject(*obj, "startPoint");
    req.FEndPoint = requirePointObject(*obj, "endPoint");
  } catch (const TApiRangeError& e) {
    return failReply(e.what());
  }
  req.FMode = optionalText(*obj, "mode", req.FMode);
  req.FPitchMm = static_cast<float>(optionalNumber(*obj, "pitchMm", kDefaultPitchMm));
  req.FCornerMode = optionalWholeNumber(*obj, "cornerMode", kCornerUniform);
  req.FHoleCount = static_cast<float>(optionalNumber(*obj, "holeCount", kDefaultHoleCount));
  req.FStitchType = optionalText(*obj, "stitchType", req.FStitchType);
  req.FLayerId = resolveLayer(*obj, form.FActiveLayer);
  const TfrmPelw::TStitchReply made = form.apiStitchAlongPath(req);
  if (!made.FOk) return failReply(made.FError);
  return rowReply(made, made.FChainPlacement);
}

std::string apiStitchLoop(TfrmPelw& form, const std::string& body) {
  const auto obj = parseJsonObject(body);
  if (!obj) return errorReply(kInvalidBody);
  if (!obj->contains("pointOnLoop")) return errorReply("pointOnLoop is required");
  TfrmPelw::TStitchLoopRequest req;
  try {
    req.FPointOnLoop = requirePointObject(*obj, "pointOnLoop");
  } catch (const TApiRangeError& e) {
    return failReply(e.what());
  }
  req.FMode = optionalText(*obj, "mode", req.FMode);
  req.FPitchMm = static_cast<float>(optionalNumber(*obj, "pitchMm", kDefaultPitchMm));
  req.FHoleCount = static_cast<float>(optionalNumber(*obj, "holeCount", kDefaultHoleCount));
  req.FStitchType = optionalText(*obj, "stitchType", req.FStitchType);
  if (obj->contains("cornerMode")) req.FCornerMode = optionalWholeNumber(*obj, "cornerMode", kCornerUniform);
  req.FLayerId = resolveLayer(*obj, form.FActiveLayer);
  const TfrmPelw::TStitchReply made = form.apiStitchLoop(req);
  if (!made.FOk) return failReply(made.FError);
  return rowReply(made, false);
}
