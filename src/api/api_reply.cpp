#include "api/api_reply.h"

#include "document/path_data.h"
#include "document/pw_path.h"

void writePoint(TJsonReply& r, const TPointF& p) {
  r.beginObject().fieldSingle("x", p.x).fieldSingle("y", p.y).endObject();
}

namespace {

// The start of an item up to its x value, by kind of path point.
const char* itemHead(TPathPointKind kind) {
  switch (kind) {
    case TPathPointKind::MoveTo:
      return R"({"kind":"M","x":)";
    case TPathPointKind::LineTo:
      return R"({"kind":"L","x":)";
    case TPathPointKind::CurveTo:
      return R"({"kind":"C","x":)";
    case TPathPointKind::Close:
      return R"({"kind":"Z","x":)";
  }
  return R"({"kind":"?","x":)";
}

}  // namespace

// Path data is most of a large reply: each item is written in one piece.
void writePathData(TJsonReply& r, const TPathData& data) {
  r.beginArray();
  for (const TPathPoint& p : data.points()) {
    std::string& out = r.appendValue();
    out += itemHead(p.Kind);
    appendJsonSingle(out, p.Point.x);
    out += R"(,"y":)";
    appendJsonSingle(out, p.Point.y);
    out += '}';
  }
  r.endArray();
}

TPointF apiShapeCenter(TPW_Path& shape) {
  if (shape.isType(ShapeType::Other)) {
    shape.resetBoundary();
    shape.getBoundary(true);
    return shape.FCenter;
  }
  return shape.getCenterPoint();
}

std::string errorReply(std::string_view message) {
  TJsonReply r;
  r.beginObject().field("error", message).endObject();
  return r.take();
}

std::string failReply(std::string_view message, int id) {
  TJsonReply r;
  r.beginObject().field("ok", false).field("error", message).field("id", id).endObject();
  return r.take();
}

std::string failReply(std::string_view message) {
  TJsonReply r;
  r.beginObject().field("ok", false).field("error", message).endObject();
  return r.take();
}

std::string okReply(std::string_view name, int value) {
  TJsonReply r;
  r.beginObject().field("ok", true).field(name, value).endObject();
  return r.take();
}

std::string okReply() { return "{\"ok\":true}"; }
