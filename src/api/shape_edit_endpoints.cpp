#include "api/shape_edit_endpoints.h"

#include <cmath>
#include <functional>
#include <map>
#include <unordered_set>

#include "api/api_reply.h"
#include "api/api_request.h"
#include "api/query_endpoints.h"
#include "app/frm_pelw.h"

namespace {

constexpr double kDegreesPerRadian = 57.29577951308232;

const char* const kInvalidBody = "invalid JSON body";

// Draws the geometry read from a request onto a shape.
using TDrawStep = std::function<void(TPW_Path&)>;

TDrawStep readLine(const TJson& obj) {
  const TPointF a = requirePoint(obj, "x1", "y1");
  const TPointF b = requirePoint(obj, "x2", "y2");
  return [a, b](TPW_Path& s) { s.drawLinePath(a, b); };
}

TDrawStep readCircle(const TJson& obj) {
  const TPointF c = requirePoint(obj, "cx", "cy");
  const float r = static_cast<float>(requireLength(obj, "r"));
  return [c, r](TPW_Path& s) { s.drawEllipsePath(c, 2.0f * r, 2.0f * r); };
}

// An ellipse may be given by both half axes, or else by one radius.
TDrawStep readEllipse(const TJson& obj) {
  const TPointF c = requirePoint(obj, "cx", "cy");
  float w = 0, h = 0;
  if (obj.contains("rx") && obj.contains("ry")) {
    w = 2.0f * static_cast<float>(requireLength(obj, "rx"));
    h = 2.0f * static_cast<float>(requireLength(obj, "ry"));
  } else {
    w = h = 2.0f * static_cast<float>(requireLength(obj, "r"));
  }
  return [c, w, h](TPW_Path& s) { s.drawEllipsePath(c, w, h); };
}

// Angles in radians, measured clockwise on the screen (y grows downwards).
// The sweep is the difference of the two as given, sign and size kept.
TDrawStep readArc(const TJson& obj) {
  const TPointF c = requirePoint(obj, "cx", "cy");
  const float r = static_cast<float>(requireLength(obj, "r"));
  const double a0 = requireLength(obj, "startAngle");
  const double a1 = requireLength(obj, "endAngle");
  const TPointF st = TPointF::fromDouble(c.x + std::cos(a0) * r, c.y + std::sin(a0) * r);
  const TPointF ep = TPointF::fromDouble(c.x + std::cos(a1) * r, c.y + std::sin(a1) * r);
  const float sweep = static_cast<float>((a1 - a0) * kDegreesPerRadian);
  return [c, r, st, ep, sweep](TPW_Path& s) { s.drawArcPath(c, TPointF(r, r), st, ep, sweep); };
}

// The numbers of any geometry the body holds, held to their range before a
// shape changes: the refusal then leaves the document as it was.
void checkGeometryRange(const TJson& obj) {
  for (const char* key : {"x1", "y1", "x2", "y2", "cx", "cy", "r", "rx", "ry", "startAngle", "endAngle"}) {
    const auto it = obj.find(key);
    if (it != obj.end() && it->is_number()) checkedLength(it->get<double>(), key);
  }
  const auto points = obj.find("points");
  if (points == obj.end() || !points->is_array()) return;
  for (const TJson& p : *points)
    if (p.is_object())
      for (const char* key : {"x", "y"})
        if (const auto it = p.find(key); it != p.end() && it->is_number()) checkedLength(it->get<double>(), key);
}

TDrawStep bezierStep(const std::array<TPointF, 4>& p) {
  return [p](TPW_Path& s) { s.drawBezierPath(p[0], p[1], p[2], p[3]); };
}

// Creating a shape: read the geometry (which may raise, before anything
// changed), resolve row and layer, then add it the way every tool does.
std::string createShape(TfrmPelw& form, const TJson& obj, const TDrawStep& draw) {
  const int row = resolvePaletteRow(obj, form.FPalletList, activePalletRow(form));
  const int layer = resolveLayer(obj, form.FActiveLayer);
  const TDrawPallet& pallet = form.FPalletList[row];
  auto shape = std::make_unique<TPW_Path>(row, pallet.getColor(), pallet.FThickness, pallet.FDash,
                                          form.PathList->getNextID());
  draw(*shape);
  TPW_Path* added = form.addShapeToDocument(std::move(shape), layer);
  finishApiChange(form);
  return okReply("id", added->FID);
}

template <typename Reader>
std::string createFromBody(TfrmPelw& form, const std::string& body, Reader read) {
  const auto obj = parseJsonObject(body);
  if (!obj) return errorReply(kInvalidBody);
  const TDrawStep draw = read(*obj);
  return createShape(form, *obj, draw);
}

}  // namespace

void finishApiChange(TfrmPelw& form) {
  form.finishDocumentChange();
  form.RepaintCanvas();
}

std::string apiCreateLine(TfrmPelw& form, const std::string& body) {
  return createFromBody(form, body, readLine);
}

std::string apiCreateCircle(TfrmPelw& form, const std::string& body) {
  return createFromBody(form, body, readCircle);
}

std::string apiCreateArc(TfrmPelw& form, const std::string& body) {
  return createFromBody(form, body, readArc);
}

std::string apiCreateBezier(TfrmPelw& form, const std::string& body) {
  const auto obj = parseJsonObject(body);
  if (!obj) return errorReply(kInvalidBody);
  const auto pts = readBezierPoints(*obj);
  if (!pts) return errorReply("points must have exactly 4 elements [P0,C1,C2,P1]");
  return createShape(form, *obj, bezierStep(*pts));
}

std::string apiUpdateShape(TfrmPelw& form, const std::string& path, const std::string& body) {
  const auto id = parseShapeId(path);
  if (!id) return errorReply("invalid id in path");
  const auto obj = parseJsonObject(body);
  if (!obj) return errorReply(kInvalidBody);
  TPW_Path* shape = form.PathList->findByID(*id);
  if (!shape) return failReply("shape not found", *id);
  checkGeometryRange(*obj);

  const auto palette = obj->find("paletteIdx");
  if (palette != obj->end() && palette->is_number()) {
    const int row = resolvePaletteRow(*obj, form.FPalletList, activePalletRow(form));
    const TDrawPallet& p = form.FPalletList[row];
    shape->FPalletIndex = row;
    shape->FColor = p.getColor();
    shape->FThickness = p.FThickness;
    shape->FDash = p.FDash;
  }
  // From here on the shape has no crossings until it is rebuilt; a refusal
  // or a missing number below leaves it so.
  form.forgetIntersectionsOf(shape);

  TDrawStep draw;
  const std::string& type = shape->FShapeType;
  if (type == ShapeType::Bezier) {
    const auto pts = readBezierPoints(*obj);
    if (!pts) return errorReply("bezier requires points:[P0,C1,C2,P1]");
    draw = bezierStep(*pts);
  } else if (type == ShapeType::Line) {
    draw = readLine(*obj);
  } else if (type == ShapeType::Ellipse) {
    draw = readEllipse(*obj);
  } else if (type == ShapeType::Arc) {
    draw = readArc(*obj);
  } else {
    return errorReply("unsupported shapeType for update: " + type);
  }
  draw(*shape);
  form.collectIntersectionsFor(shape);
  finishApiChange(form);
  return okReply("id", *id);
}

std::string apiDeleteShape(TfrmPelw& form, const std::string& path) {
  const auto id = parseShapeId(path);
  if (!id) return errorReply("invalid id");
  TPW_Path* shape = form.PathList->findByID(*id);
  if (!shape) return failReply("shape not found", *id);
  form.deleteShape(shape);
  finishApiChange(form);
  return okReply("deletedId", *id);
}

namespace {

std::string deletedReply(int count, const std::vector<int>& notFound) {
  TJsonReply r;
  r.beginObject().field("ok", true).field("deletedCount", count).key("notFoundIds").beginArray();
  for (int id : notFound) r.integer(id);
  r.endArray().endObject();
  return r.take();
}

// Takes the shapes out of the document in one pass each over the crossings
// and the list, so that deleting thousands stays cheap.
void deleteShapesOf(TfrmPelw& form, const std::unordered_set<const TPW_Path*>& doomed) {
  form.FIntersections->removeIf([&doomed](const TIntersection& ict) {
    return doomed.count(ict.FPath1) > 0 || doomed.count(ict.FPath2) > 0;
  });
  TShapeList& doc = *form.PathList;
  for (size_t i = doc.Count(); i-- > 0;)
    if (doomed.count(doc[i])) doc.erase(i);
}

}  // namespace

std::string apiDeleteShapes(TfrmPelw& form, const std::string& body) {
  std::optional<TJson> obj;
  if (!body.empty()) obj = parseJsonObject(body);
  const TJson* ids = nullptr;
  if (obj) {
    const auto it = obj->find("ids");
    if (it != obj->end() && it->is_array()) ids = &*it;
  }
  TShapeList& doc = *form.PathList;

  if (!ids) {
    // No list of ids: the whole drawing goes. A malformed body lands here
    // too; that is how this endpoint has always behaved.
    const int count = static_cast<int>(doc.Count());
    form.FIntersections->Clear();
    for (size_t i = doc.Count(); i-- > 0;) doc.erase(i);
    if (count > 0) finishApiChange(form);
    return deletedReply(count, {});
  }

  // Every element is checked before anything is deleted.
  std::map<int, bool> wanted;  // id -> found
  for (const TJson& v : *ids) {
    const auto id = wholeNumber(v);
    if (!id) throw TApiRequestError("ids must hold whole numbers");
    wanted.emplace(*id, false);
  }
  std::unordered_set<const TPW_Path*> doomed;
  for (const auto& s : doc) {
    const auto it = wanted.find(s->FID);
    if (it == wanted.end()) continue;
    it->second = true;
    doomed.insert(s.get());
  }
  std::vector<int> notFound;
  for (const auto& [id, found] : wanted)
    if (!found) notFound.push_back(id);
  const int count = static_cast<int>(doomed.size());
  if (count > 0) {
    deleteShapesOf(form, doomed);
    finishApiChange(form);
  }
  return deletedReply(count, notFound);
}
