// Offsets, round corners, chain smoothing and trim over real HTTP: exact
// replies, the geometry made, one undo step per change and none for a
// refusal, which leaves the document as it was.
#include <gtest/gtest.h>

#include "api/api_test_support.h"
#include "document/point_helpers.h"

namespace {

// Each body gets its reply (status 500 for those marked "500:") and the
// document stays as it was, undo list included.
void expectRefusals(TApiController& c, const std::string& path,
                    const std::vector<std::pair<std::string, std::string>>& bodyAndReply) {
  const std::string before = c.get("/paths").body;
  const size_t steps = c.form.FUndoList.size();
  for (const auto& [body, reply] : bodyAndReply) {
    const THttpReply r = c.post(path, body);
    const bool raises = reply.rfind("500:", 0) == 0;
    EXPECT_EQ(r.body, raises ? reply.substr(4) : reply) << body;
    EXPECT_EQ(r.status, raises ? 500 : 200) << body;
  }
  EXPECT_EQ(c.get("/paths").body, before);
  EXPECT_EQ(c.form.FUndoList.size(), steps);
}

TPW_Path* shape(TApiController& c, int id) { return c.form.PathList->findByID(id); }

void addLines(TApiController& c, const std::vector<std::array<int, 4>>& lines) {
  for (const auto& l : lines) {
    const std::string body = "{\"x1\":" + std::to_string(l[0]) + ",\"y1\":" + std::to_string(l[1]) +
                             ",\"x2\":" + std::to_string(l[2]) + ",\"y2\":" + std::to_string(l[3]) + "}";
    ASSERT_EQ(c.post("/shapes/line", body).status, 200);
  }
}

}  // namespace

TEST(ApiSeams, OffsetEachShapeSkipsHolesAndVanishingArcs) {
  TApiController c;
  addLines(c, {{0, 0, 20, 0}});
  c.post("/shapes/arc", R"({"cx":50,"cy":0,"r":2,"startAngle":0,"endAngle":1.5707963})");
  c.post("/shapes/stitch_hole", R"({"cx":5,"cy":5})");
  size_t steps = c.form.FUndoList.size();
  EXPECT_EQ(c.post("/shapes/offset", R"({"distanceMm":3,"directionPoint":{"x":10,"y":10},"paletteIdx":3})").body,
            R"({"ok":true,"createdIds":[4],"skippedIds":[2,3]})");
  EXPECT_EQ(c.form.FUndoList.size(), steps + 1);
  EXPECT_EQ(shape(c, 4)->FStartPt, TPointF(0, 3));
  EXPECT_EQ(shape(c, 4)->FEndPt, TPointF(20, 3));
  EXPECT_EQ(shape(c, 4)->FPalletIndex, 2);
  // Outward when the ray from the centre crosses the arc.
  EXPECT_EQ(c.post("/shapes/offset", R"({"distanceMm":1,"directionPoint":{"x":60,"y":10},"shapeIds":[2]})").body,
            R"({"ok":true,"createdIds":[5],"skippedIds":[]})");
  EXPECT_FLOAT_EQ(shape(c, 5)->FWidth, 3);
  expectRefusals(c, "/shapes/offset",
                 {{R"({"distanceMm":3,"directionPoint":{"x":0,"y":9},"shapeIds":[3]})",
                   R"({"ok":true,"createdIds":[],"skippedIds":[3]})"},
                  {"{}", R"({"error":"distanceMm is required"})"},
                  {R"({"directionPoint":{"x":0,"y":9}})", R"({"error":"distanceMm is required"})"},
                  {R"({"distanceMm":3})", R"({"error":"directionPoint is required"})"},
                  {R"({"distanceMm":-1,"directionPoint":{"x":0,"y":9}})", R"({"error":"distanceMm must not be negative"})"},
                  {R"({"distanceMm":1e7,"directionPoint":{"x":0,"y":9}})",
                   R"({"error":"distanceMm out of range: its size must not pass 1000000"})"},
                  {"[1]", R"({"error":"invalid JSON body"})"},
                  {R"({"distanceMm":"3","directionPoint":{"x":0,"y":9}})", R"(500:{"error":"not a number: distanceMm"})"},
                  {R"({"distanceMm":3,"directionPoint":{"x":0,"y":9},"paletteIdx":41})",
                   R"(500:{"error":"paletteIdx is not a row of the palette"})"}});
}

TEST(ApiSeams, SmartOffsetOfAClosedOutline) {
  TApiController c;
  addLines(c, {{0, 0, 60, 0}, {0, 40, 0, 0}, {60, 0, 60, 40}, {60, 40, 0, 40}});
  c.post("/shapes/stitch_hole", R"({"cx":5,"cy":5})");
  const size_t steps = c.form.FUndoList.size();
  EXPECT_EQ(c.post("/shapes/offset/smart",
                   R"({"shapeIds":[1,2,3,4],"directionPoint":{"x":30,"y":20},"distanceMm":3,"closed":true})")
                .body,
            R"({"ok":true,"createdIds":[6,7,8,9]})");
  EXPECT_EQ(c.form.FUndoList.size(), steps + 1);
  for (int id = 6; id <= 9; ++id) {
    const TPW_Path* s = shape(c, id);
    for (const TPointF p : {s->FStartPt, s->FEndPt}) {
      EXPECT_TRUE(p == TPointF(3, 3) || p == TPointF(57, 3) || p == TPointF(57, 37) || p == TPointF(3, 37));
    }
  }
  const std::string dir = R"(,"directionPoint":{"x":1,"y":1})";
  expectRefusals(c, "/shapes/offset/smart",
                 {{R"({"shapeIds":[]})", R"({"error":"shapeIds is required and must be non-empty"})"},
                  {R"({"shapeIds":[1],"distanceMm":2})", R"({"error":"directionPoint is required"})"},
                  {R"({"shapeIds":[1])" + dir + "}", R"({"error":"distanceMm is required"})"},
                  {R"({"shapeIds":[1,99],"distanceMm":2)" + dir + "}", R"({"error":"shape not found","id":99})"},
                  {R"({"shapeIds":[5],"distanceMm":2)" + dir + "}",
                   R"({"error":"shape type not supported for smart offset","id":5})"},
                  {R"({"shapeIds":[1],"distanceMm":2,"closed":1)" + dir + "}", R"(500:{"error":"not a boolean: closed"})"}});
}

TEST(ApiSeams, ChamferExtendsLinesThatFallShortAndRoundsTheCorner) {
  TApiController c;
  addLines(c, {{0, 0, 20, 0}, {25, 5, 25, 20}, {0, 10, 20, 10}});
  expectRefusals(c, "/shapes/chamfer",
                 {{R"({"lineId1":1})", R"({"error":"lineId1 and lineId2 are required"})"},
                  {R"({"lineId1":9,"lineId2":2})", R"({"ok":false,"error":"lineId1 not found"})"},
                  {R"({"lineId1":1,"lineId2":9})", R"({"ok":false,"error":"lineId2 not found"})"},
                  {R"({"lineId1":1,"lineId2":3})", R"({"ok":false,"error":"lines do not intersect \u2014 cannot chamfer"})"},
                  {R"({"lineId1":1,"lineId2":2,"radiusMm":100})", R"({"ok":false,"error":"chamfer produced no arc"})"},
                  {R"({"lineId1":1,"lineId2":2,"radiusMm":0})", R"({"error":"radiusMm must be above 0"})"}});
  const size_t steps = c.form.FUndoList.size();
  EXPECT_EQ(c.post("/shapes/chamfer", R"({"lineId1":1,"lineId2":2})").body,
            R"({"ok":true,"arcId":4,"lineId1":1,"lineId2":2})");
  EXPECT_EQ(c.form.FUndoList.size(), steps + 1);
  const TPW_Path* arc = shape(c, 4);
  EXPECT_EQ(arc->FCenter, TPointF(20, 5));
  EXPECT_FLOAT_EQ(arc->FWidth, 5);
  EXPECT_EQ(arc->FStartPt, shape(c, 1)->FEndPt);
  EXPECT_EQ(arc->FEndPt, shape(c, 2)->FStartPt);
  EXPECT_EQ(shape(c, 2)->FStartPt, TPointF(25, 5));
}

TEST(ApiSeams, SmoothChainG1ThenG2) {
  TApiController c;
  c.post("/shapes/bezier", R"({"points":[{"x":0,"y":0},{"x":10,"y":0},{"x":20,"y":1},{"x":30,"y":0}]})");
  c.post("/shapes/bezier", R"({"points":[{"x":30,"y":0},{"x":36,"y":-1},{"x":50,"y":0},{"x":60,"y":0}]})");
  addLines(c, {{100, 0, 110, 0}});
  size_t steps = c.form.FUndoList.size();
  EXPECT_EQ(c.post("/shapes/smooth_chain", R"({"shapeId":1})").body,
            R"({"ok":true,"updatedCount":2,"closedLoop":false,"chainLength":2})");
  EXPECT_EQ(c.form.FUndoList.size(), ++steps);
  EXPECT_EQ(c.post("/shapes/smooth_chain_g2", R"({"shapeIds":[2,1]})").body,
            R"({"ok":true,"updatedCount":4,"closedLoop":false,"chainLength":2})");
  EXPECT_EQ(c.form.FUndoList.size(), ++steps);
  EXPECT_NEAR(distanceOf(shape(c, 1)->FBezierCp2, TPointF(30, 0)), distanceOf(shape(c, 2)->FBezierCp1, TPointF(30, 0)),
              1e-4);
  expectRefusals(c, "/shapes/smooth_chain",
                 {{R"({"shapeId":3})", R"({"ok":true,"updatedCount":0,"closedLoop":false,"chainLength":1})"},
                  {"{}", R"({"error":"shapeId or shapeIds is required"})"},
                  {R"({"shapeId":99})", R"({"error":"shape not found","id":99})"},
                  {R"({"shapeIds":[]})", R"({"ok":false,"error":"no shapes in chain"})"}});
}

TEST(ApiSeams, TrimRemovesThePieceUpToTheCrossing) {
  TApiController c;
  addLines(c, {{0, 0, 100, 0}, {50, -10, 50, 10}});
  expectRefusals(c, "/shapes/trim",
                 {{"nonsense", R"({"ok":false,"error":"invalid JSON body"})"},
                  {"{}", R"({"ok":false,"error":"point is required"})"},
                  {R"({"point":{"x":1}})", R"({"ok":false,"error":"point.x and point.y are required"})"},
                  {R"({"point":{"x":1,"y":2e6}})", R"({"ok":false,"error":"y out of range: its size must not pass 1000000"})"},
                  {R"({"point":{"x":500,"y":500}})", R"({"ok":false,"error":"no trimmable shape found at this point"})"}});
  const size_t steps = c.form.FUndoList.size();
  EXPECT_EQ(c.post("/shapes/trim", R"({"point":{"x":25,"y":0}})").body, R"({"ok":true})");
  EXPECT_EQ(c.form.FUndoList.size(), steps + 1);
  EXPECT_EQ(shape(c, 1), nullptr);
  ASSERT_NE(shape(c, 3), nullptr);
  EXPECT_EQ(shape(c, 3)->FStartPt, TPointF(100, 0));
  EXPECT_EQ(shape(c, 3)->FEndPt, TPointF(50, 0));
}

TEST(ApiSeams, ExtendOrTrimCommandTakesAStepOnlyWhenLinesMove) {
  TApiController c;
  addLines(c, {{0, 0, 20, 0}, {20, 0, 20, 10}, {30, -5, 30, -1}});
  auto select = [&](int a, int b) {
    for (const auto& s : *c.form.PathList) s->FSelected = s->FID == a || s->FID == b;
  };
  const size_t steps = c.form.FUndoList.size();
  select(1, 2);
  c.form.actExtendOrTrimLines();
  EXPECT_EQ(c.form.FUndoList.size(), steps);
  select(1, 3);
  c.form.actExtendOrTrimLines();
  EXPECT_EQ(c.form.FUndoList.size(), steps + 1);
  EXPECT_EQ(shape(c, 1)->FEndPt, TPointF(30, 0));
  EXPECT_EQ(shape(c, 3)->FEndPt, TPointF(30, 0));
}
