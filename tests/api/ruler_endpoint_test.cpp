// POST /ruler over real HTTP: the whole reply between connected points,
// between points on shapes that never meet and on no shape at all, the
// number forms, and the refusals. The network is the call's own: nothing
// of the document changes.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "api/api_test_support.h"

namespace {

void addLine(TApiController& c, TPointF a, TPointF b) {
  auto s = newApiTestShape();
  s->drawLinePath(a, b);
  c.addShape(std::move(s));
}

}  // namespace

TEST(ApiRuler, RouteOverTwoLinesIsListedWhole) {
  TApiController c;
  addLine(c, TPointF(0, 0), TPointF(10, 0));
  addLine(c, TPointF(10, 0), TPointF(10, 5));
  const size_t undoSteps = c.form.FUndoList.size();
  const THttpReply r = c.post("/ruler", R"({"x1":0,"y1":0,"x2":10,"y2":5})");
  EXPECT_EQ(r.status, 200);
  EXPECT_EQ(r.body,
            R"({"rp1":{"x":0.0,"y":0.0},"rp2":{"x":10.0,"y":5.0},"connected":true,"totalDistance":15.0,)"
            R"("vertices":[)"
            R"({"idx":0,"point":{"x":0.0,"y":0.0},"minDist":0.0,"minDistJointIdx":null,"minDistFromVertexIdx":null,"isStart":true,"isEnd":false},)"
            R"({"idx":1,"point":{"x":10.0,"y":0.0},"minDist":10.0,"minDistJointIdx":0,"minDistFromVertexIdx":0,"isStart":false,"isEnd":false},)"
            R"({"idx":2,"point":{"x":10.0,"y":5.0},"minDist":15.0,"minDistJointIdx":1,"minDistFromVertexIdx":1,"isStart":false,"isEnd":true}],)"
            R"("joints":[)"
            R"({"idx":0,"pathId":1,"fLength":10.0,"pt0":{"x":0.0,"y":0.0},"pt1":{"x":10.0,"y":0.0}},)"
            R"({"idx":1,"pathId":2,"fLength":5.0,"pt0":{"x":10.0,"y":0.0},"pt1":{"x":10.0,"y":5.0}}],)"
            R"("routeChain":[2,1,0]})");
  // A measurement is no change.
  EXPECT_EQ(c.form.FUndoList.size(), undoSteps);
  EXPECT_EQ(c.canvasRepaints, 0);
}

TEST(ApiRuler, UnconnectedPointsStillListTheNetwork) {
  TApiController c;
  // On nothing at all: one vertex, no joint, no end.
  EXPECT_EQ(c.post("/ruler", R"({"x1":12.3,"y1":1,"x2":5,"y2":5})").body,
            R"({"rp1":{"x":12.3000001907349,"y":1.0},"rp2":{"x":5.0,"y":5.0},"connected":false,)"
            R"("totalDistance":null,"vertices":[{"idx":0,"point":{"x":12.3000001907349,"y":1.0},"minDist":0.0,)"
            R"("minDistJointIdx":null,"minDistFromVertexIdx":null,"isStart":false,"isEnd":false}],)"
            R"("joints":[],"routeChain":[]})");
  // The same point twice: refused before anything grows.
  EXPECT_EQ(c.post("/ruler", R"({"x1":3,"y1":4,"x2":3,"y2":4})").body,
            R"({"rp1":{"x":3.0,"y":4.0},"rp2":{"x":3.0,"y":4.0},"connected":false,"totalDistance":null,)"
            R"("vertices":[],"joints":[],"routeChain":[]})");

  // Two lines that never meet: the growth covers the first only.
  addLine(c, TPointF(0, 0), TPointF(10, 0));
  addLine(c, TPointF(0, 50), TPointF(10, 50));
  const auto j = nlohmann::json::parse(c.post("/ruler", R"({"x1":0,"y1":0,"x2":10,"y2":50})").body);
  EXPECT_TRUE(j["totalDistance"].is_null());
  EXPECT_TRUE(j["routeChain"].empty());
  ASSERT_EQ(j["joints"].size(), 1u);
  EXPECT_EQ(j["joints"][0]["pathId"], 1);
  for (const auto& v : j["vertices"]) {
    EXPECT_FALSE(v["isEnd"].get<bool>());
    EXPECT_DOUBLE_EQ(v["point"]["y"].get<double>(), 0.0);
  }
}

TEST(ApiRuler, Refusals) {
  TApiController c;
  EXPECT_EQ(c.post("/ruler", "").body, R"({"error":"invalid JSON body"})");
  EXPECT_EQ(c.post("/ruler", "[0,0,1,1]").body, R"({"error":"invalid JSON body"})");
  const THttpReply missing = c.post("/ruler", R"({"x1":0,"y1":0,"x2":1})");
  EXPECT_EQ(missing.status, 500);
  EXPECT_EQ(missing.body.rfind("{\"error\":\"", 0), 0u);
  EXPECT_EQ(c.post("/ruler", R"({"x1":0,"y1":"0","x2":1,"y2":1})").status, 500);
  EXPECT_EQ(c.get("/ruler").status, 404);
}
