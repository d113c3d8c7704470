#include "api/mcp_tools.h"

#include <utility>

#include "api/mcp_router.h"
#include "api/render_endpoint.h"

const char* const kMcpInstructions =
    "Pelwright draws leather goods patterns in true millimetres; these tools read and edit the "
    "drawing open in the running program. Every length and coordinate is in millimetres; x grows "
    "to the right and y grows DOWNWARDS, as on the screen, so 'up' means a smaller y. Arc angles "
    "are radians from the +x axis and, because y points down, a growing angle turns clockwise on "
    "the screen. Shapes are known by whole-number ids; stitching holes are shapes of type "
    "\"S_HOLE\". Every change is one undo step in the program, and the user sees it at once. "
    "Replies are the program's own JSON: commands answer {\"ok\":true,...}; a refusal comes back "
    "as a tool error carrying {\"ok\":false,\"error\":...} or {\"error\":...}. Look at the drawing "
    "with render_picture, and read exact geometry with get_document, list_shapes and get_shape.";

namespace {

constexpr double kMaxMm = 1000000;  // the largest length or coordinate taken
constexpr int kMaxId = 2147483647;
constexpr int kPaletteRows = 40;

TMcpJson number(const std::string& description, double lo, double hi) {
  return {{"type", "number"}, {"description", description}, {"minimum", lo}, {"maximum", hi}};
}
TMcpJson mm(const std::string& description) { return number(description + ", in mm", -kMaxMm, kMaxMm); }
TMcpJson whole(const std::string& description, int lo, int hi) {
  return {{"type", "integer"}, {"description", description}, {"minimum", lo}, {"maximum", hi}};
}
TMcpJson shapeId(const std::string& description) { return whole(description, 0, kMaxId); }
TMcpJson withDefault(TMcpJson schema, TMcpJson value) {
  schema["default"] = std::move(value);
  return schema;
}
TMcpJson choice(const std::string& description, std::vector<std::string> values, const std::string& def) {
  return {{"type", "string"}, {"description", description}, {"enum", values}, {"default", def}};
}
TMcpJson objectOf(std::vector<std::pair<std::string, TMcpJson>> properties,
                  std::vector<std::string> required = {}) {
  TMcpJson props = TMcpJson::object();
  for (auto& [name, schema] : properties) props[name] = std::move(schema);
  TMcpJson o = {{"type", "object"}, {"properties", std::move(props)}};
  if (!required.empty()) o["required"] = std::move(required);
  o["additionalProperties"] = false;
  return o;
}
TMcpJson point(const std::string& description) {
  TMcpJson p = objectOf({{"x", mm("x")}, {"y", mm("y, growing downwards")}}, {"x", "y"});
  p["description"] = description;
  return p;
}
TMcpJson idList(const std::string& description, int minItems) {
  return {{"type", "array"},
          {"description", description},
          {"items", shapeId("a shape id")},
          {"minItems", minItems},
          {"maxItems", 100000}};
}

std::pair<std::string, TMcpJson> paletteIdx(const std::string& fallback) {
  return {"paletteIdx", whole("line type: row of the line palette, 1 to 40. Default: " + fallback, 1,
                              kPaletteRows)};
}
std::pair<std::string, TMcpJson> layerId() {
  return {"layerId", whole("layer of the new shapes. Default: the active layer (get_document's "
                           "activeLayerId)",
                           0, kMaxId)};
}
std::pair<std::string, TMcpJson> stitchType() {
  return {"stitchType",
          choice("blade shape of the pricking iron: diamond, french, flat (slits) or round", {"diamond", "french", "flat", "round"},
                 "diamond")};
}

const char* const kNewShapeReply = " Reply {\"ok\":true,\"id\":<id of the new shape>}.";
const char* const kPointsDescription =
    "the four points [P0, C1, C2, P1]: start, control of the start, control of the end, end; "
    "each {\"x\",\"y\"} in mm";

TMcpJson bezierPoints() {
  return {{"type", "array"},
          {"description", kPointsDescription},
          {"items", point("a point")},
          {"minItems", 4},
          {"maxItems", 4}};
}

TMcpJson smoothSchema() {
  return objectOf({{"shapeIds", idList("the chain of shapes in order; its Beziers are adjusted", 1)},
                   {"shapeId", shapeId("one shape of the chain, used when shapeIds is not given: the "
                                       "connected chain through it is found")}});
}

std::vector<TMcpTool> buildTools() {
  std::vector<TMcpTool> t;
  auto add = [&t](std::string name, std::string title, std::string method, std::string path,
                  std::string description, TMcpJson schema) -> TMcpTool& {
    TMcpTool tool;
    tool.name = std::move(name);
    tool.title = std::move(title);
    tool.method = std::move(method);
    tool.path = std::move(path);
    tool.description = std::move(description);
    tool.inputSchema = std::move(schema);
    tool.readOnly = tool.method == "GET";
    tool.idempotent = tool.readOnly || tool.method == "PUT" || tool.method == "DELETE";
    tool.destructive = tool.method == "DELETE" || tool.method == "PUT";
    t.push_back(std::move(tool));
    return t.back();
  };
  const TMcpJson none = objectOf({});

  add("list_shapes", "List shapes", "GET", "/paths",
      "Every shape of the drawing with its geometry. Reply {\"paths\":[{\"id\",\"shapeType\" (LINE, "
      "ARC, BEZIER, ELLIPSE, S_HOLE = stitching hole, DOT, TEXT, OTHER),\"paletteIdx\" (line type, "
      "1-based),\"layerId\",\"startPt\",\"endPt\",\"center\",\"width\",\"height\",\"rotation\" "
      "(degrees),\"data\":[{\"kind\":\"M\"|\"L\"|\"C\"|\"Z\",\"x\",\"y\"}]}],\"count\"}. Points are "
      "{\"x\",\"y\"} in mm, y downwards. Long for large drawings: get_document gives a summary.",
      none);
  add("list_intersections", "List crossings", "GET", "/intersections",
      "The points where shapes cross or touch. Reply {\"intersections\":[{\"point\":{\"x\",\"y\"},"
      "\"path1Id\",\"path2Id\"}],\"count\"}. Stitch rows and measured routes run along shapes and "
      "may turn only at shape ends and at these points.",
      none);
  add("measure_route", "Measure along the drawing", "POST", "/ruler",
      "Measures the shortest way along the drawn shapes from (x1, y1) to (x2, y2), changing nothing. "
      "Both points should lie on shapes (ends, crossings or on a line). Reply: \"connected\" (a "
      "route was found), \"totalDistance\" (mm along the route, null without one), \"routeChain\" "
      "(vertex indexes, end first) and the route network (\"vertices\", \"joints\").",
      objectOf({{"x1", mm("start x")}, {"y1", mm("start y")}, {"x2", mm("end x")}, {"y2", mm("end y")}},
               {"x1", "y1", "x2", "y2"}))
      .readOnly = true;
  add("get_document", "Document summary", "GET", "/doc",
      "Summary of the open drawing: {\"shapeCount\",\"layerCount\",\"paletteCount\","
      "\"activePaletteIdx\" (1-based line type of new shapes),\"activeLayerId\",\"bbox\":{\"xMin\","
      "\"yMin\",\"xMax\",\"yMax\"} in mm, or null for an empty drawing}.",
      none);
  add("get_shape", "Get one shape", "GET", "/shapes/{id}",
      "One shape by id: {\"id\",\"shapeType\",\"paletteIdx\",\"layerId\",\"selected\",\"startPt\","
      "\"endPt\",\"center\",\"bbox\":{\"x\",\"y\",\"width\",\"height\"},\"rotation\",\"length\" (mm "
      "along the shape),\"prevStitchID\",\"nextStitchID\" (neighbours in a stitch row),\"bezierCp1\","
      "\"bezierCp2\" (control points of a BEZIER, else null),\"data\"}. An unknown id is refused.",
      objectOf({{"id", shapeId("the shape's id")}}, {"id"}));
  add("add_line", "Draw a line", "POST", "/shapes/line",
      std::string("Draws a straight line from (x1, y1) to (x2, y2), in mm with y downwards.") +
          kNewShapeReply,
      objectOf({{"x1", mm("start x")}, {"y1", mm("start y")}, {"x2", mm("end x")}, {"y2", mm("end y")},
                paletteIdx("the active line type"), layerId()},
               {"x1", "y1", "x2", "y2"}));
  add("add_circle", "Draw a circle", "POST", "/shapes/circle",
      std::string("Draws a circle of radius r about (cx, cy), in mm.") + kNewShapeReply,
      objectOf({{"cx", mm("centre x")}, {"cy", mm("centre y")}, {"r", number("radius, in mm", 0, kMaxMm)},
                paletteIdx("the active line type"), layerId()},
               {"cx", "cy", "r"}));
  add("add_arc", "Draw an arc", "POST", "/shapes/arc",
      std::string("Draws a circular arc of radius r about (cx, cy) from startAngle to endAngle. "
                  "Angles are radians from the +x axis; the point at angle a is (cx + r cos a, "
                  "cy + r sin a), so with y downwards a growing angle turns clockwise on the "
                  "screen and pi/2 points down. The sweep is endAngle - startAngle as given "
                  "(negative turns the other way; not normalised).") +
          kNewShapeReply,
      objectOf({{"cx", mm("centre x")}, {"cy", mm("centre y")}, {"r", number("radius, in mm", 0, kMaxMm)},
                {"startAngle", number("start angle, radians", -1000, 1000)},
                {"endAngle", number("end angle, radians", -1000, 1000)}, paletteIdx("the active line type"),
                layerId()},
               {"cx", "cy", "r", "startAngle", "endAngle"}));
  add("add_bezier", "Draw a Bezier curve", "POST", "/shapes/bezier",
      std::string("Draws a cubic Bezier curve through its start and end, shaped by two control "
                  "points.") +
          kNewShapeReply,
      objectOf({{"points", bezierPoints()}, paletteIdx("the active line type"), layerId()}, {"points"}));
  add("update_shape", "Change a shape's geometry", "PUT", "/shapes/{id}",
      "Replaces the geometry of a shape, keeping its id, type and layer. Give every key of its "
      "type: LINE x1, y1, x2, y2; ELLIPSE cx, cy and r (a circle) or rx and ry; ARC cx, cy, r, "
      "startAngle, endAngle (radians, as add_arc); BEZIER points. Other types cannot be changed. "
      "paletteIdx changes the line type. Reply {\"ok\":true,\"id\"}.",
      objectOf({{"id", shapeId("the shape's id")},
                {"x1", mm("LINE start x")}, {"y1", mm("LINE start y")}, {"x2", mm("LINE end x")},
                {"y2", mm("LINE end y")}, {"cx", mm("ELLIPSE or ARC centre x")},
                {"cy", mm("ELLIPSE or ARC centre y")}, {"r", number("radius, in mm", 0, kMaxMm)},
                {"rx", number("ELLIPSE horizontal radius, in mm", 0, kMaxMm)},
                {"ry", number("ELLIPSE vertical radius, in mm", 0, kMaxMm)},
                {"startAngle", number("ARC start angle, radians", -1000, 1000)},
                {"endAngle", number("ARC end angle, radians", -1000, 1000)}, {"points", bezierPoints()},
                paletteIdx("unchanged")},
               {"id"}));
  add("add_stitch_hole", "Punch one stitching hole", "POST", "/shapes/stitch_hole",
      "Punches one stitching hole centred at (cx, cy), shaped by the selected pricking iron. Rows "
      "are better laid with stitch_along_path or stitch_loop." +
          std::string(kNewShapeReply),
      objectOf({{"cx", mm("centre x")}, {"cy", mm("centre y")},
                {"angle", withDefault(number("rotation of the hole in degrees, clockwise on the screen",
                                             -360000, 360000),
                                      0)},
                stitchType(), layerId()},
               {"cx", "cy"}));
  add("stitch_along_path", "Lay a stitch row between two points", "POST", "/stitch/along_path",
      "Lays a row of stitching holes along the drawn shapes from startPoint to endPoint, following "
      "the shortest route over lines, arcs, curves and their crossings, as the stitch tool does "
      "with two clicks. Both points must lie on the drawing (shape ends or crossings are safest). "
      "To stitch a seam inside an outline, first draw the seam line (offset_shapes or "
      "offset_chain, e.g. 3 mm inwards) and stitch along that. mode auto: a pitch near pitchMm, "
      "searched so that the row ends exactly on endPoint; fixed: exactly pitchMm; count: holeCount "
      "holes spread evenly. Reply {\"ok\":true,\"holeCount\",\"actualPitchMm\",\"createdIds\":[...]} "
      "(with \"cornerMode\" when a corner method laid it); no route gives a refusal.",
      objectOf({{"startPoint", point("where the row starts, on the drawing")},
                {"endPoint", point("where the row ends, on the drawing")},
                {"mode", choice("how the pitch is chosen", {"auto", "fixed", "count"}, "auto")},
                {"pitchMm", withDefault(number("wanted distance between holes, in mm", 0.1, 1000), 4.0)},
                {"cornerMode",
                 withDefault(whole("2: walk the route with a chord pitch (uniform); 1: a hole on every "
                                   "junction, each shape divided by itself; 0: holes forced onto real "
                                   "corners, each straight run divided evenly. 0 and 1 only in auto mode",
                                   0, 2),
                             2)},
                {"holeCount", withDefault(whole("number of holes in count mode", 2, 100000), 10)},
                stitchType(), layerId()},
               {"startPoint", "endPoint"}));
  add("chamfer_corner", "Round a corner of two lines", "POST", "/shapes/chamfer",
      "Rounds the corner where two straight lines meet (or would meet, extended) with an arc of "
      "radiusMm, trimming both lines to it. Reply {\"ok\":true,\"arcId\",\"lineId1\",\"lineId2\"}.",
      objectOf({{"lineId1", shapeId("id of the first LINE")}, {"lineId2", shapeId("id of the second LINE")},
                {"radiusMm", withDefault(number("radius of the rounding arc, in mm", 0.01, 100000), 5.0)}},
               {"lineId1", "lineId2"}));
  add("offset_chain", "Offset a chain of shapes", "POST", "/shapes/offset/smart",
      "Draws a parallel copy of a connected chain of LINE, ARC and BEZIER shapes at distanceMm, on "
      "the side of directionPoint, with the corners of the copy joined: the usual way to draw a "
      "stitch line 3 to 4 mm inside an outline. closed: the chain is a closed outline. Reply "
      "{\"ok\":true,\"createdIds\":[...]}.",
      objectOf({{"shapeIds", idList("the shapes of the chain", 1)},
                {"directionPoint", point("any point on the side the copy goes to, e.g. inside the outline")},
                {"distanceMm", number("distance of the copy, in mm", 0.001, 100000)},
                {"closed", {{"type", "boolean"}, {"description", "treat the chain as a closed outline"},
                            {"default", false}}},
                paletteIdx("each source shape's own"), layerId()},
               {"shapeIds", "directionPoint", "distanceMm"}));
  add("smooth_chain", "Smooth a chain (tangents)", "POST", "/shapes/smooth_chain",
      "Adjusts the control points of the Bezier curves in a chain so that each joint is smooth "
      "(the tangent runs on). Reply {\"ok\":true,\"updatedCount\",\"closedLoop\",\"chainLength\"}.",
      smoothSchema())
      .oneOfRequired = {"shapeIds", "shapeId"};
  add("smooth_chain_g2", "Smooth a chain (even legs)", "POST", "/shapes/smooth_chain_g2",
      "As smooth_chain, and at each joint of two Bezier curves the two control legs are also "
      "made equal in length, which evens out the bend across the joint. Reply {\"ok\":true,\"updatedCount\",\"closedLoop\",\"chainLength\"}.",
      smoothSchema())
      .oneOfRequired = {"shapeIds", "shapeId"};
  add("trim_at_point", "Trim at a point", "POST", "/shapes/trim",
      "Cuts away the piece of a shape at the point, between the nearest crossings with other "
      "shapes, as the trim tool does with a click. Reply {\"ok\":true}.",
      objectOf({{"point", point("a point on the piece to cut away")}}, {"point"}));
  add("offset_shapes", "Offset shapes one by one", "POST", "/shapes/offset",
      "Draws a parallel copy of each shape by itself at distanceMm on the side of directionPoint "
      "(lines, arcs, Beziers; an ellipse comes out as a circle whose diameter changes by the "
      "distance), then joins ends that meet. Holes and other types are skipped. Reply "
      "{\"ok\":true,\"createdIds\":[...],\"skippedIds\":[...]}.",
      objectOf({{"distanceMm", number("distance of the copies, in mm", 0.001, 100000)},
                {"directionPoint", point("any point on the side the copies go to")},
                paletteIdx("each source shape's own"), layerId(),
                {"shapeIds", idList("the shapes to offset. Default: every shape of the drawing", 1)}},
               {"distanceMm", "directionPoint"}));
  add("stitch_loop", "Lay a stitch row round a closed outline", "POST", "/stitch/loop",
      "Lays a row of stitching holes all the way round the closed outline (a circle, or a chain of "
      "shapes that closes) that passes through pointOnLoop, evenly so that the row closes. mode "
      "auto: a pitch near pitchMm that closes evenly; fixed: exactly pitchMm; count: holeCount "
      "holes. Reply {\"ok\":true,\"holeCount\",\"actualPitchMm\",\"createdIds\":[...]}.",
      objectOf({{"pointOnLoop", point("a point on the closed outline")},
                {"mode", choice("how the pitch is chosen", {"auto", "fixed", "count"}, "auto")},
                {"pitchMm", withDefault(number("wanted distance between holes, in mm", 0.1, 1000), 4.0)},
                {"holeCount", withDefault(whole("number of holes in count mode", 2, 100000), 10)},
                stitchType(),
                {"cornerMode", whole("as in stitch_along_path; default the program's setting", 0, 2)},
                layerId()},
               {"pointOnLoop"}));
  add("new_document", "Start a new drawing", "POST", "/doc/new",
      "Closes the drawing without saving and starts an empty one (the program's undo can bring "
      "the old one back). Reply {\"ok\":true}.",
      none)
      .destructive = true;
  add("fit_view", "Fit the view", "POST", "/viewport/fit",
      "Zooms and pans the program's canvas so that the whole drawing shows. Reply {\"ok\":true,"
      "\"scale\" (pixels per mm),\"offsetX\",\"offsetY\" (pixel of the point 0,0)}.",
      none)
      .idempotent = true;
  add("delete_shapes", "Delete shapes", "DELETE", "/shapes",
      "Deletes the shapes with the given ids, or every shape with all: true (give one of the "
      "two). Reply {\"ok\":true,\"deletedCount\",\"notFoundIds\":[...]}.",
      objectOf({{"ids", idList("ids of the shapes to delete", 1)},
                {"all", {{"type", "boolean"}, {"description", "true: delete every shape of the drawing"}}}}))
      .oneOfRequired = {"ids", "all"};
  add("delete_shape", "Delete one shape", "DELETE", "/shapes/{id}",
      "Deletes one shape. Reply {\"ok\":true,\"deletedId\"}.",
      objectOf({{"id", shapeId("the shape's id")}}, {"id"}));
  TMcpTool& render = add(
      "render_picture", "Picture of the drawing", "POST", "/render",
      "A PNG picture of the drawing as the program paints it (background, grid, shapes, holes), "
      "changing nothing. area view: what the program's canvas shows now; drawing: every shape "
      "with a 5 mm margin. Comes with {\"width\",\"height\",\"scale\",\"offsetX\",\"offsetY\"}: a "
      "point (x, y) in mm lies at pixel (x * scale + offsetX, y * scale + offsetY). At most "
      "2048 x 2048 pixels in all.",
      objectOf({{"area", choice("what to show", {"view", "drawing"}, "view")},
                {"width", whole("picture width in pixels. Default: the canvas's width", kMinRenderSide,
                                kMaxRenderSide)},
                {"height", whole("picture height in pixels. Default: the canvas's height",
                                 kMinRenderSide, kMaxRenderSide)}}));
  render.readOnly = true;
  render.picture = true;
  add("server_info", "API information", "GET", "/",
      "The name of the program's local API and the endpoints it publishes.", none);
  // Commands that change or remove what is already drawn.
  for (TMcpTool& tool : t)
    for (const char* name : {"chamfer_corner", "smooth_chain", "smooth_chain_g2", "trim_at_point", "new_document"})
      if (tool.name == name) tool.destructive = true;
  return t;
}

}  // namespace

const std::vector<TMcpTool>& mcpTools() {
  static const std::vector<TMcpTool> tools = buildTools();
  return tools;
}

const TMcpTool* findMcpTool(const std::string& name) {
  for (const TMcpTool& tool : mcpTools())
    if (tool.name == name) return &tool;
  return nullptr;
}

const TMcpTool* mcpToolForRoute(const TMcpRoute& route) {
  const std::string path =
      route.match == TMcpRoute::TMatch::Exact ? route.path : route.path + "{id}";
  for (const TMcpTool& tool : mcpTools())
    if (tool.method == route.method && tool.path == path) return &tool;
  return nullptr;
}

TForwardRequest forwardRequestFor(const TMcpTool& tool, const TMcpJson& arguments, std::string& problem) {
  TForwardRequest req{tool.method, tool.path, {}};
  if (!tool.oneOfRequired.empty()) {
    bool given = false;
    for (const std::string& key : tool.oneOfRequired) given = given || arguments.contains(key);
    if (!given) {
      problem = "give one of:";
      for (const std::string& key : tool.oneOfRequired) problem += " " + key;
      return req;
    }
  }
  TMcpJson body = arguments.is_object() ? arguments : TMcpJson::object();
  const size_t at = req.path.find("{id}");
  if (at != std::string::npos) {
    req.path.replace(at, 4, std::to_string(body.value("id", 0LL)));
    body.erase("id");
  }
  if (tool.name == "delete_shapes") {
    // Without ids the endpoint clears the drawing: only when asked in so many words.
    if (!body.contains("ids") && !body.value("all", false)) {
      problem = "give ids, or all: true to delete every shape";
      return req;
    }
    body.erase("all");
    if (body.empty()) return req;
  }
  if (tool.method != "GET" && !tool.inputSchema["properties"].empty()) req.body = body.dump();
  return req;
}
