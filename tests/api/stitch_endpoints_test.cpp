// The stitching endpoints over real HTTP: one hole, rows along a route by
// the divider walk and by a corner method, rows round a circle and a
// rounded rectangle, every refusal family, and one undo step per call.
#include <gtest/gtest.h>

#include <cmath>
#include <nlohmann/json.hpp>

#include "api/api_test_support.h"
#include "document/point_helpers.h"

namespace {

// A line drawn as a tool draws it: one undo step of its own.
TPW_Path* addLine(TApiController& c, TPointF a, TPointF b) {
  auto s = newApiTestShape();
  s->drawLinePath(a, b);
  TPW_Path* added = c.addShape(std::move(s));
  c.form.finishDocumentChange();
  return added;
}

std::vector<const TPW_Path*> holesOf(const TApiController& c) {
  std::vector<const TPW_Path*> out;
  for (const auto& s : *c.form.PathList)
    if (s->FShapeType == ShapeType::Hole) out.push_back(s.get());
  return out;
}

std::string idList(int first, int last) {
  std::string s;
  for (int id = first; id <= last; ++id) s += (s.empty() ? "" : ",") + std::to_string(id);
  return s;
}

bool is500(const THttpReply& r) { return r.status == 500 && r.body.rfind("{\"error\":\"", 0) == 0; }

// A 60 x 40 rectangle whose corners are quarter circles of radius 5, drawn
// through the API as four lines and four arcs, each ending where the next
// begins.
void addRoundedRectangle(TApiController& c) {
  const double q = std::acos(0.0);  // a quarter turn
  const char* parts[] = {
      R"({"x1":5,"y1":0,"x2":55,"y2":0})",
      nullptr,
      R"({"x1":60,"y1":5,"x2":60,"y2":35})",
      nullptr,
      R"({"x1":55,"y1":40,"x2":5,"y2":40})",
      nullptr,
      R"({"x1":0,"y1":35,"x2":0,"y2":5})",
      nullptr,
  };
  const double centres[4][2] = {{55, 5}, {55, 35}, {5, 35}, {5, 5}};
  for (int i = 0; i < 4; ++i) {
    ASSERT_EQ(c.post("/shapes/line", parts[2 * i]).status, 200);
    const double a0 = -q + i * q;
    nlohmann::json arc = {{"cx", centres[i][0]}, {"cy", centres[i][1]}, {"r", 5}, {"startAngle", a0},
                          {"endAngle", a0 + q}};
    ASSERT_EQ(c.post("/shapes/arc", arc.dump()).status, 200);
  }
}

}  // namespace

// ---- one hole ----

TEST(ApiStitchHole, MakesOneHoleOnTheHolePaletteRowAndOneUndoStep) {
  TApiController c;
  addLine(c, TPointF(0, 0), TPointF(20, 0));
  const size_t crossings = c.form.FIntersections->Count();
  const size_t undoSteps = c.form.FUndoList.size();
  EXPECT_EQ(c.post("/shapes/stitch_hole", R"({"cx":5,"cy":0,"angle":30,"stitchType":"FLAT","layerId":2})").body,
            R"({"ok":true,"id":2})");
  const TPW_Path* h = c.form.PathList->findByID(2);
  ASSERT_NE(h, nullptr);
  EXPECT_EQ(h->FShapeType, ShapeType::Hole);
  EXPECT_EQ(h->FStitchType, "L");
  EXPECT_EQ(h->FPalletIndex, 36);
  EXPECT_EQ(h->FColor, c.form.FColor_StitchingHole);
  EXPECT_FLOAT_EQ(h->FRotation, 30.0f);
  EXPECT_EQ(h->FLayerID, 2);
  EXPECT_TRUE(h->FCenter.identical(TPointF(5, 0)));
  EXPECT_EQ(c.form.FIntersections->Count(), crossings) << "a hole on a line makes no crossing";
  EXPECT_EQ(c.form.FUndoList.size(), undoSteps + 1);
  EXPECT_EQ(c.canvasRepaints, 1);

  // Defaults: a diamond hole, unturned, on the active layer.
  EXPECT_EQ(c.post("/shapes/stitch_hole", R"({"cx":9,"cy":0})").body, R"({"ok":true,"id":3})");
  const TPW_Path* d = c.form.PathList->findByID(3);
  EXPECT_EQ(d->FStitchType, "D");
  EXPECT_FLOAT_EQ(d->FRotation, 0.0f);
  EXPECT_EQ(d->FLayerID, 0);

  c.form.actUndo();
  EXPECT_EQ(c.form.PathList->findByID(3), nullptr);
  EXPECT_NE(c.form.PathList->findByID(2), nullptr) << "undo takes back the last hole only";
  // Refusals make nothing.
  EXPECT_EQ(c.post("/shapes/stitch_hole", "[1,2]").body, R"({"error":"invalid JSON body"})");
  EXPECT_TRUE(is500(c.post("/shapes/stitch_hole", R"({"cx":5})")));
  EXPECT_EQ(c.shapeCount(), 2u);
}

// ---- rows along a route ----

TEST(ApiStitchAlongPath, HundredMillimetreLineAtPitchFour) {
  TApiController c;
  addLine(c, TPointF(0, 0), TPointF(100, 0));
  const size_t undoSteps = c.form.FUndoList.size();
  const THttpReply r =
      c.post("/stitch/along_path", R"({"startPoint":{"x":0,"y":0},"endPoint":{"x":100,"y":0},"pitchMm":4})");
  EXPECT_EQ(r.status, 200);
  // The route walk's reply has no corner mode; the pitch reads to a thousandth.
  EXPECT_EQ(r.body, R"({"ok":true,"holeCount":26,"actualPitchMm":4,"createdIds":[)" + idList(2, 27) + "]}");
  for (const TPW_Path* h : holesOf(c)) EXPECT_EQ(h->FPalletIndex, 36);
  EXPECT_EQ(c.form.FUndoList.size(), undoSteps + 1) << "a whole row is one undo step";
  EXPECT_EQ(c.canvasRepaints, 1);

  c.form.actUndo();
  EXPECT_TRUE(holesOf(c).empty());
  EXPECT_EQ(c.shapeCount(), 1u) << "the line stays";
}

TEST(ApiStitchAlongPath, CornerModeBelowTwoLaysAChainAndSaysSo) {
  TApiController c;
  addLine(c, TPointF(0, 0), TPointF(40, 0));
  addLine(c, TPointF(40, 0), TPointF(40, 30));
  // Each line divided by itself, a hole on the joint and one on the end:
  // 10 + 8 + 1 holes over 70 mm.
  const THttpReply r = c.post("/stitch/along_path",
                              R"({"startPoint":{"x":0,"y":0},"endPoint":{"x":40,"y":30},"cornerMode":1,)"
                              R"("stitchType":"French","layerId":4})");
  EXPECT_EQ(r.body,
            R"({"ok":true,"holeCount":19,"actualPitchMm":3.889,"cornerMode":1,"createdIds":[)" + idList(3, 21) + "]}");
  for (const TPW_Path* h : holesOf(c)) {
    EXPECT_EQ(h->FStitchType, "F");
    EXPECT_EQ(h->FLayerID, 4);
  }
  c.form.actUndo();
  EXPECT_TRUE(holesOf(c).empty());
  EXPECT_EQ(c.shapeCount(), 2u);
}

TEST(ApiStitchAlongPath, RefusalsLeaveTheDocumentAndTakeNoUndoStep) {
  TApiController c;
  addLine(c, TPointF(0, 0), TPointF(100, 0));
  addLine(c, TPointF(0, 50), TPointF(100, 50));
  const size_t undoSteps = c.form.FUndoList.size();
  const auto along = [&](const char* start, const char* end, const char* extra = "") {
    return c.post("/stitch/along_path", std::string(R"({"startPoint":)") + start + R"(,"endPoint":)" + end + extra + "}");
  };
  EXPECT_EQ(along(R"({"x":20,"y":20})", R"({"x":100,"y":0})").body,
            R"({"ok":false,"error":"no route found between startPoint and endPoint"})");
  EXPECT_EQ(along(R"({"x":0,"y":0})", R"({"x":100,"y":50})").body,
            R"({"ok":false,"error":"destination vertex not found in network"})");
  EXPECT_EQ(along(R"({"x":0,"y":0})", R"({"x":100,"y":0})", R"(,"mode":"count","holeCount":1)").body,
            R"({"ok":false,"error":"cannot compute pitch: no route or holeCount <= 1"})");
  EXPECT_TRUE(is500(along(R"({"x":0,"y":0})", R"({"x":100,"y":0})", R"(,"mode":2)")));

  EXPECT_TRUE(holesOf(c).empty());
  EXPECT_EQ(c.form.FUndoList.size(), undoSteps);
  EXPECT_EQ(c.canvasRepaints, 0);
}

// ---- what a reply says is what was made ----

namespace {

// Checks a row's reply against its holes: the count is that of the holes
// made, the pitch their mean straight spacing (round a ring the closing
// pair too), no neighbours further apart than 1.5 pitches. Returns the
// holes in order.
std::vector<const TPW_Path*> expectHonestRow(TApiController& c, const THttpReply& r, double pitch, bool ring) {
  const auto reply = nlohmann::json::parse(r.body, nullptr, false);
  EXPECT_TRUE(reply.is_object() && reply.value("ok", false)) << r.body;
  if (!reply.is_object() || !reply.contains("createdIds")) return {};
  std::vector<const TPW_Path*> row;
  for (int id : reply["createdIds"]) row.push_back(c.form.PathList->findByID(id));
  EXPECT_EQ(reply["holeCount"].get<size_t>(), row.size());
  double sum = 0;
  size_t pairs = 0;
  for (size_t i = 0; i + 1 < row.size() + (ring ? 1 : 0) && row.size() > 1; ++i, ++pairs) {
    const double d = distanceOf(row[i]->FCenter, row[(i + 1) % row.size()]->FCenter);
    EXPECT_LE(d, 1.5 * pitch) << "after hole " << i;
    sum += d;
  }
  EXPECT_NEAR(reply["actualPitchMm"].get<double>(), pairs ? sum / double(pairs) : 0.0, 0.0006);
  return row;
}

}  // namespace

TEST(ApiStitchRows, RepliesTellWhatWasMadeOnTheRowsThatUsedToLie) {
  TApiController c;
  // A V: the walk used to stop at the sharp turn and jump to the end.
  c.post("/shapes/line", R"({"x1":0,"y1":0,"x2":50,"y2":150})");
  c.post("/shapes/line", R"({"x1":50,"y1":150,"x2":100,"y2":0})");
  expectHonestRow(c, c.post("/stitch/along_path", R"({"startPoint":{"x":0,"y":0},"endPoint":{"x":100,"y":0},"pitchMm":3.85})"), 3.85, false);
  const auto count = expectHonestRow(
      c, c.post("/stitch/along_path", R"({"startPoint":{"x":0,"y":0},"endPoint":{"x":100,"y":0},"mode":"count","holeCount":83})"),
      3.86, false);
  EXPECT_EQ(count.size(), 83u);
  c.del("/shapes");
  // A curve turning back on itself within 20 mm.
  c.post("/shapes/bezier", R"({"points":[{"x":0,"y":0},{"x":120,"y":0},{"x":120,"y":20},{"x":0,"y":20}]})");
  expectHonestRow(c, c.post("/stitch/along_path", R"({"startPoint":{"x":0,"y":0},"endPoint":{"x":0,"y":20}})"), 4, false);
  c.del("/shapes");

  // A 60 x 30 ellipse: holes on it, not on a circle of its width.
  c.post("/shapes/circle", R"({"cx":0,"cy":0,"r":30})");
  c.put("/shapes/" + std::to_string(c.form.PathList->items().back()->FID), R"({"cx":0,"cy":0,"rx":30,"ry":15})");
  for (const TPW_Path* h : expectHonestRow(c, c.post("/stitch/loop", R"({"pointOnLoop":{"x":30,"y":0},"pitchMm":4})"), 4, true))
    EXPECT_NEAR(std::pow(h->FCenter.x / 30.0, 2) + std::pow(h->FCenter.y / 15.0, 2), 1.0, 1e-3);
  c.del("/shapes");

  // A circle with lines to its left point and its bottom: the ruler and the
  // row go the short way round.
  c.post("/shapes/circle", R"({"cx":0,"cy":0,"r":20})");
  c.post("/shapes/line", R"({"x1":-50,"y1":0,"x2":-20,"y2":0})");
  c.post("/shapes/line", R"({"x1":0,"y1":20,"x2":0,"y2":50})");
  const auto ruler = nlohmann::json::parse(c.post("/ruler", R"({"x1":-50,"y1":0,"x2":0,"y2":50})").body);
  EXPECT_NEAR(ruler["totalDistance"].get<double>(), 91.416, 0.01);
  expectHonestRow(c, c.post("/stitch/along_path", R"({"startPoint":{"x":-50,"y":0},"endPoint":{"x":0,"y":50}})"), 4, false);
  c.del("/shapes");

  // From the middle of a line to its end, and a line shorter than a hole.
  c.post("/shapes/line", R"({"x1":0,"y1":0,"x2":100,"y2":0})");
  EXPECT_EQ(expectHonestRow(c, c.post("/stitch/along_path", R"({"startPoint":{"x":10,"y":0},"endPoint":{"x":0,"y":0},"pitchMm":2})"), 2, false).size(), 6u);
  const auto mid = expectHonestRow(c, c.post("/stitch/along_path", R"({"startPoint":{"x":30,"y":0},"endPoint":{"x":70,"y":0}})"), 4, false);
  ASSERT_EQ(mid.size(), 11u);
  EXPECT_TRUE(mid.front()->FCenter.identical(TPointF(30, 0)) && mid.back()->FCenter.identical(TPointF(70, 0)));
  c.post("/shapes/line", R"({"x1":0,"y1":10,"x2":0.3,"y2":10})");
  EXPECT_EQ(c.post("/stitch/along_path", R"({"startPoint":{"x":0,"y":10},"endPoint":{"x":0.3,"y":10}})").body.substr(0, 46),
            R"({"ok":true,"holeCount":1,"actualPitchMm":0,"cr)");
}

// ---- rows round a closed outline ----

TEST(ApiStitchLoop, RoundedRectangleGetsAClosedRing) {
  TApiController c;
  addRoundedRectangle(c);
  ASSERT_EQ(c.shapeCount(), 8u);
  const THttpReply r = c.post("/stitch/loop", R"({"pointOnLoop":{"x":30,"y":0},"cornerMode":0})");
  const auto reply = nlohmann::json::parse(r.body);
  ASSERT_TRUE(reply.value("ok", false)) << r.body;
  const auto holes = holesOf(c);
  ASSERT_EQ(reply["createdIds"].size(), holes.size());
  EXPECT_EQ(reply["holeCount"], holes.size());
  // Straight runs divided evenly, one hole in the middle of each corner.
  EXPECT_EQ(holes.size(), 46u);
  // The mean straight distance between neighbouring holes, round the ring.
  EXPECT_NE(r.body.find(R"("actualPitchMm":4.141,)"), std::string::npos) << r.body;
  // Every hole on the outline (the corners' flattened to 0.01 mm); the ring
  // closes from the last hole to the first.
  for (const TPW_Path* h : holes) {
    const double x = h->FCenter.x, y = h->FCenter.y;
    const double dx = std::max({5.0 - x, 0.0, x - 55.0}), dy = std::max({5.0 - y, 0.0, y - 35.0});
    EXPECT_NEAR(std::hypot(dx, dy), 5.0, 0.01) << x << "," << y;
  }
  const int first = reply["createdIds"].front(), last = reply["createdIds"].back();
  EXPECT_EQ(c.form.PathList->findByID(last)->FNextStitchID, first);

  c.form.actUndo();
  EXPECT_TRUE(holesOf(c).empty());
  EXPECT_EQ(c.shapeCount(), 8u);
}

TEST(ApiStitchLoop, Refusals) {
  TApiController c;
  addLine(c, TPointF(0, 0), TPointF(100, 0));
  const size_t undoSteps = c.form.FUndoList.size();
  EXPECT_EQ(c.post("/stitch/loop", "{").body, R"({"error":"invalid JSON body"})");
  EXPECT_EQ(c.post("/stitch/loop", R"({"mode":"auto"})").body, R"({"error":"pointOnLoop is required"})");
  EXPECT_EQ(c.post("/stitch/loop", R"({"pointOnLoop":{"x":50,"y":30}})").body,
            R"({"ok":false,"error":"no shape found near pointOnLoop"})");
  EXPECT_EQ(c.post("/stitch/loop", R"({"pointOnLoop":{"x":50,"y":0}})").body,
            R"({"ok":false,"error":"shape at pointOnLoop is not part of a closed loop"})");
  EXPECT_TRUE(is500(c.post("/stitch/loop", R"({"pointOnLoop":"here"})")));
  EXPECT_TRUE(is500(c.post("/stitch/loop", R"({"pointOnLoop":{"x":50,"y":0},"holeCount":[]})")));
  EXPECT_TRUE(holesOf(c).empty());
  EXPECT_EQ(c.form.FUndoList.size(), undoSteps);
}
