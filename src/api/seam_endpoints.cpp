#include "api/seam_endpoints.h"

#include <array>
#include <unordered_map>
#include <unordered_set>

#include "api/api_reply.h"
#include "api/api_request.h"
#include "app/frm_pelw.h"
#include "geometry/chain_smoothing.h"

namespace {

const char* const kInvalidBody = "invalid JSON body";

constexpr double kDefaultRadiusMm = 5.0;
// A chain or shape list longer than this is refused: ordering a chain
// grows with the square of its length.
constexpr size_t kMaxShapeIds = 10000;

// An identifier from a JSON number; -1 (no shape has it) for a fraction or
// a number beyond 32 bits. Anything but a number raises.
int idOf(const TJson& value, const char* name) {
  if (!value.is_number()) throw TApiRequestError(std::string("not a number: ") + name);
  return wholeNumber(value).value_or(-1);
}

std::vector<int> idsOf(const TJson& obj, const char* name) {
  const TJson& list = obj.at(name);
  if (!list.is_array()) throw TApiRequestError(std::string("not an array: ") + name);
  std::vector<int> ids;
  ids.reserve(list.size());
  for (const TJson& v : list) ids.push_back(idOf(v, name));
  return ids;
}

// "paletteIdx", one-based; none when absent. A number naming no row raises.
std::optional<int> paletteRowOf(const TJson& obj) {
  const auto it = obj.find("paletteIdx");
  if (it == obj.end()) return std::nullopt;
  const std::optional<int> oneBased = it->is_number() ? wholeNumber(*it) : std::nullopt;
  if (!oneBased || *oneBased < 1 || *oneBased > TPalletList::Count())
    throw TApiRequestError("paletteIdx is not a row of the palette");
  return *oneBased - 1;
}

std::string shapeError(const char* message, int id) {
  TJsonReply r;
  r.beginObject().field("error", message).field("id", id).endObject();
  return r.take();
}

void writeIds(TJsonReply& r, const char* name, const std::vector<int>& ids) {
  r.key(name).beginArray();
  for (int id : ids) r.integer(id);
  r.endArray();
}

// The distance and side every offset request needs; nothing when refused,
// with the reply in `refusal`. The plain offset asks for the distance
// first, the chain offset for the direction point.
std::optional<TSeamEdits::TOffsetRequest> readOffsetRequest(TfrmPelw& form, const TJson& obj, bool distanceFirst,
                                                             std::string& refusal) {
  for (const char* name : distanceFirst ? std::array{"distanceMm", "directionPoint"}
                                        : std::array{"directionPoint", "distanceMm"}) {
    if (!obj.contains(name)) {
      refusal = errorReply(std::string(name) + " is required");
      return std::nullopt;
    }
  }
  TSeamEdits::TOffsetRequest req;
  req.FDistance = requireLength(obj, "distanceMm");
  if (req.FDistance < 0.0) {
    refusal = errorReply("distanceMm must not be negative");
    return std::nullopt;
  }
  req.FDirectionPoint = requirePointObject(obj, "directionPoint");
  req.FPaletteRow = paletteRowOf(obj);
  req.FLayer = resolveLayer(obj, form.FActiveLayer);
  return req;
}

std::string createdReply(const std::vector<int>& created, const std::vector<int>* skipped) {
  TJsonReply r;
  r.beginObject().field("ok", true);
  writeIds(r, "createdIds", created);
  if (skipped) writeIds(r, "skippedIds", *skipped);
  r.endObject();
  return r.take();
}

}  // namespace

std::string apiChamfer(TfrmPelw& form, const std::string& body) {
  const auto obj = parseJsonObject(body);
  if (!obj) return errorReply(kInvalidBody);
  if (!obj->contains("lineId1") || !obj->contains("lineId2")) return errorReply("lineId1 and lineId2 are required");
  const int id1 = idOf(obj->at("lineId1"), "lineId1");
  const int id2 = idOf(obj->at("lineId2"), "lineId2");
  const double radius = checkedLength(optionalNumber(*obj, "radiusMm", kDefaultRadiusMm), "radiusMm");
  if (!(radius > 0.0)) return errorReply("radiusMm must be above 0");
  const TSeamEdits::TChamferReply made = form.FSeamEdits.chamferByIds(id1, id2, radius);
  if (!made.FError.empty()) return failReply(made.FError);
  TJsonReply r;
  r.beginObject().field("ok", true).field("arcId", made.FArcId).field("lineId1", id1).field("lineId2", id2);
  return r.endObject().take();
}

std::string apiOffset(TfrmPelw& form, const std::string& body) {
  const auto obj = parseJsonObject(body);
  if (!obj) return errorReply(kInvalidBody);
  std::string refusal;
  std::optional<TSeamEdits::TOffsetRequest> req = readOffsetRequest(form, *obj, true, refusal);
  if (!req) return refusal;
  if (obj->contains("shapeIds")) {
    req->FShapeIds = idsOf(*obj, "shapeIds");
    if (req->FShapeIds->size() > kMaxShapeIds) return errorReply("shapeIds holds more than 10000 shapes");
  }
  const TSeamEdits::TOffsetResult made = form.FSeamEdits.offsetShapes(*req);
  return createdReply(made.FCreatedIds, &made.FSkippedIds);
}

std::string apiSmartOffset(TfrmPelw& form, const std::string& body) {
  const auto obj = parseJsonObject(body);
  if (!obj) return errorReply(kInvalidBody);
  const std::vector<int> ids = obj->contains("shapeIds") ? idsOf(*obj, "shapeIds") : std::vector<int>{};
  if (ids.empty()) return errorReply("shapeIds is required and must be non-empty");
  if (ids.size() > kMaxShapeIds) return errorReply("shapeIds holds more than 10000 shapes");
  std::string refusal;
  const std::optional<TSeamEdits::TOffsetRequest> req = readOffsetRequest(form, *obj, false, refusal);
  if (!req) return refusal;
  const auto closed = obj->find("closed");
  if (closed != obj->end() && !closed->is_boolean()) throw TApiRequestError("not a boolean: closed");
  std::unordered_map<int, TPW_Path*> byId;
  for (const auto& s : *form.PathList) byId.emplace(s->FID, s.get());
  std::vector<TPW_Path*> shapes;
  std::unordered_set<const TPW_Path*> taken;
  for (int id : ids) {
    const auto it = byId.find(id);
    if (it == byId.end()) return shapeError("shape not found", id);
    TPW_Path* s = it->second;
    if (!s->isType(ShapeType::Bezier) && !s->isType(ShapeType::Line) && !s->isType(ShapeType::Arc))
      return shapeError("shape type not supported for smart offset", id);
    if (taken.insert(s).second) shapes.push_back(s);
  }
  const bool isClosed = closed != obj->end() && closed->get<bool>();
  return createdReply(form.FSeamEdits.smartOffsetShapes(shapes, *req, isClosed), nullptr);
}

std::string apiSmoothChain(TfrmPelw& form, const std::string& body, bool withLegs) {
  const auto obj = parseJsonObject(body);
  if (!obj) return errorReply(kInvalidBody);
  std::vector<TPW_Path*> chain;
  if (obj->contains("shapeIds")) {
    const std::vector<int> ids = idsOf(*obj, "shapeIds");
    if (ids.size() > kMaxShapeIds) return errorReply("shapeIds holds more than 10000 shapes");
    std::unordered_map<int, TPW_Path*> byId;
    for (const auto& s : *form.PathList) byId.emplace(s->FID, s.get());
    for (int id : ids) {
      const auto it = byId.find(id);
      if (it == byId.end()) return shapeError("shape not found", id);
      chain.push_back(it->second);
    }
  } else if (obj->contains("shapeId")) {
    const int id = idOf(obj->at("shapeId"), "shapeId");
    TPW_Path* s = form.PathList->findByID(id);
    if (!s) return shapeError("shape not found", id);
    chain = gatherChain(s, *form.PathList);
  } else {
    return errorReply("shapeId or shapeIds is required");
  }
  if (chain.empty()) return failReply("no shapes in chain");
  const TSmoothOutcome done = form.FSeamEdits.smoothShapes(chain, withLegs);
  TJsonReply r;
  r.beginObject().field("ok", true).field("updatedCount", done.FUpdatedCount).field("closedLoop", done.FClosedLoop);
  return r.field("chainLength", static_cast<int>(chain.size())).endObject().take();
}

std::string apiTrim(TfrmPelw& form, const std::string& body) {
  const auto obj = parseJsonObject(body);
  if (!obj) return failReply(kInvalidBody);
  const auto point = obj->find("point");
  if (point == obj->end()) return failReply("point is required");
  if (!point->is_object() || !point->contains("x") || !point->contains("y"))
    return failReply("point.x and point.y are required");
  TPointF p;
  try {
    p = requirePoint(*point, "x", "y");
  } catch (const TApiRangeError& e) {
    return failReply(e.what());
  }
  if (form.FSeamEdits.trimAt(p) != TTrimOutcome::Trimmed) return failReply("no trimmable shape found at this point");
  return okReply();
}
