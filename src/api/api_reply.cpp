#include "api/api_reply.h"

#include "document/path_data.h"
#include "document/pw_path.h"

void writePoint(TJsonReply& r, const TPointF& p) {
  r.beginObject().fieldSingle("x", p.x).fieldSingle("y", p.y).endObject();
}

namespace {

const char* kindLetter(TPathPointKind kind) {
  switch (kind) {
    case TPathPointKind::MoveTo:
      return "M";
    case TPathPointKind::LineTo:
      return "L";
    case TPathPointKind::CurveTo:
      return "C";
    case TPathPointKind::Close:
      return "Z";
  }
  return "?";
}

}  // namespace

void writePathData(TJsonReply& r, const TPathData& data) {
  r.beginArray();
  for (const TPathPoint& p : data.points()) {
    r.beginObject()
        .field("kind", kindLetter(p.Kind))
        .fieldSingle("x", p.Point.x)
        .fieldSingle("y", p.Point.y)
        .endObject();
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

std::string okReply(std::string_view name, int value) {
  TJsonReply r;
  r.beginObject().field("ok", true).field(name, value).endObject();
  return r.take();
}

std::string okReply() { return "{\"ok\":true}"; }
