// The endpoints that read the document, over real HTTP: exact replies,
// the centre rule, identifiers, and the order in which the routes are tried.
#include <gtest/gtest.h>

#include "api/api_test_support.h"
#include "document/number_text.h"

namespace {

TPW_Path* addLine(TApiController& c, TPointF a, TPointF b, int row = 0, int layer = 0) {
  auto s = newApiTestShape(row);
  s->drawLinePath(a, b);
  return c.addShape(std::move(s), layer);
}

// A free outline: a closed triangle with a move, two lines and a close.
TPW_Path* addOutline(TApiController& c, int row, int layer) {
  auto s = newApiTestShape(row);
  s->FData.setData("M1,2 L4,2 L4,6 Z");
  return c.addShape(std::move(s), layer);
}

}  // namespace

TEST(ApiQueries, AnEmptyDocumentReadsAsEmpty) {
  TApiController c;
  EXPECT_EQ(c.get("/paths").body, R"({"paths":[],"count":0})");
  EXPECT_EQ(c.get("/intersections").body, R"({"intersections":[],"count":0})");
  EXPECT_EQ(c.get("/doc").body,
            R"({"shapeCount":0,"layerCount":1,"paletteCount":40,"activePaletteIdx":1,"activeLayerId":0,"bbox":null})");
}

TEST(ApiQueries, PathsListEveryShapeWithItsPathData) {
  TApiController c;
  addLine(c, TPointF(0, 0), TPointF(12.3f, 10), 2);
  addOutline(c, 5, 3);
  const std::string line =
      R"({"id":1,"shapeType":"LINE","paletteIdx":3,"layerId":0,"startPt":{"x":0.0,"y":0.0},)"
      R"("endPt":{"x":12.3000001907349,"y":10.0},"center":{"x":6.15000009536743,"y":5.0},)"
      R"("width":0.0,"height":0.0,"rotation":0.0,)"
      R"("data":[{"kind":"M","x":0.0,"y":0.0},{"kind":"L","x":12.3000001907349,"y":10.0}]})";
  const std::string outlineData =
      R"("data":[{"kind":"M","x":1.0,"y":2.0},{"kind":"L","x":4.0,"y":2.0},{"kind":"L","x":4.0,"y":6.0},)"
      R"({"kind":"Z","x":1.0,"y":2.0}]})";
  // The outline's start and end are written before its centre is worked
  // out, and the centre rule sets them from the boundary: so the first
  // reply still shows the old ones, the second the new.
  const auto first = c.get("/paths");
  EXPECT_EQ(first.status, 200);
  TPW_Path* outline = (*c.form.PathList)[1];
  const std::string centre = R"("center":{"x":)" + floatToTextWithPoint(outline->FCenter.x) + R"(,"y":)" +
                             floatToTextWithPoint(outline->FCenter.y) + "}";
  EXPECT_EQ(first.body, R"({"paths":[)" + line +
                            R"(,{"id":2,"shapeType":"OTHER","paletteIdx":6,"layerId":3,"startPt":{"x":0.0,"y":0.0},)"
                            R"("endPt":{"x":0.0,"y":0.0},)" + centre +
                            R"(,"width":0.0,"height":0.0,"rotation":0.0,)" + outlineData + R"(],"count":2})");
  EXPECT_TRUE(outline->FStartPt.identical(TPointF(1, 2)));
  EXPECT_TRUE(outline->FEndPt.identical(TPointF(4, 6)));
  EXPECT_NE(c.get("/paths").body.find(R"("startPt":{"x":1.0,"y":2.0},"endPt":{"x":4.0,"y":6.0},)" + centre),
            std::string::npos);
}

TEST(ApiQueries, IntersectionsNameBothShapesOrNull) {
  TApiController c;
  addLine(c, TPointF(0, 0), TPointF(10, 10));
  TPW_Path* second = addLine(c, TPointF(0, 10), TPointF(10, 0));
  c.form.FIntersections->Add(std::make_unique<TIntersection>(TPointF(0.1f, -2), second, nullptr));
  c.form.FIntersections->Add(std::make_unique<TIntersection>(TPointF(3, 4), nullptr, second));
  EXPECT_EQ(c.get("/intersections").body,
            R"({"intersections":[{"point":{"x":5.0,"y":5.0},"path1Id":2,"path2Id":1},)"
            R"({"point":{"x":0.100000001490116,"y":-2.0},"path1Id":2,"path2Id":null},)"
            R"({"point":{"x":3.0,"y":4.0},"path1Id":null,"path2Id":2}],"count":3})");
}

TEST(ApiQueries, DocSummaryBoxLeavesOutShapesOfNoSize) {
  TApiController c;
  auto dot = newApiTestShape();
  dot->drawDotPath(TPointF(100, 100), 0);  // no size: no part of the box
  c.addShape(std::move(dot));
  EXPECT_NE(c.get("/doc").body.find(R"("shapeCount":1,)"), std::string::npos);
  EXPECT_NE(c.get("/doc").body.find(R"("bbox":null})"), std::string::npos);

  addLine(c, TPointF(-1.5f, 2), TPointF(3, 0.1f));
  auto circle = newApiTestShape();
  circle->drawEllipsePath(TPointF(10, 10), 4, 4);
  c.addShape(std::move(circle), 2);
  c.form.PathList->addLayer(-1, "", true);
  c.form.selectPalletRow(7);
  c.form.FActiveLayer = 1;
  EXPECT_EQ(c.get("/doc").body,
            R"({"shapeCount":3,"layerCount":2,"paletteCount":40,"activePaletteIdx":8,"activeLayerId":1,)"
            R"("bbox":{"xMin":-1.5,"yMin":0.100000001490116,"xMax":12.0,"yMax":12.0}})");
}

TEST(ApiQueries, OneShapeInFull) {
  TApiController c;
  TPW_Path* line = addLine(c, TPointF(0, 0), TPointF(12.3f, 10));
  line->FBezierCp1 = TPointF(7, 7);  // stale values a line must not show
  line->FCenter = TPointF(99, 99);
  line->FSelected = true;
  line->FPrevStitchID = 4;
  EXPECT_EQ(c.get("/shapes/1").body,
            R"({"id":1,"shapeType":"LINE","paletteIdx":1,"layerId":0,"selected":true,)"
            R"("startPt":{"x":0.0,"y":0.0},"endPt":{"x":12.3000001907349,"y":10.0},)"
            R"("center":{"x":6.15000009536743,"y":5.0},)"
            R"("bbox":{"x":0.0,"y":0.0,"width":12.3000001907349,"height":10.0},)"
            R"("rotation":0.0,"length":15.8521289825439,"prevStitchID":4,"nextStitchID":-1,)"
            R"("bezierCp1":null,"bezierCp2":null,)"
            R"("data":[{"kind":"M","x":0.0,"y":0.0},{"kind":"L","x":12.3000001907349,"y":10.0}]})");
  // The centre is stored as reported.
  EXPECT_TRUE(line->FCenter.identical(TPointF(6.15f, 5)));

  auto bez = newApiTestShape(4);
  bez->drawBezierPath(TPointF(0, 0), TPointF(0, 10), TPointF(20, 10), TPointF(20, 0));
  c.addShape(std::move(bez));
  const std::string reply = c.get("/shapes/2").body;
  EXPECT_NE(reply.find(R"("bezierCp1":{"x":0.0,"y":10.0},"bezierCp2":{"x":20.0,"y":10.0},"data":[{"kind":"M")"),
            std::string::npos)
      << reply;
  EXPECT_NE(reply.find(R"("shapeType":"BEZIER","paletteIdx":5,)"), std::string::npos);

  // An arc reports the centre it keeps, whatever that is.
  auto arc = newApiTestShape();
  arc->drawArcPath(TPointF(0, 0), TPointF(5, 5), TPointF(5, 0), TPointF(0, 5), 90);
  arc->FCenter = TPointF(0.5f, -1);
  c.addShape(std::move(arc));
  EXPECT_NE(c.get("/shapes/3").body.find(R"("center":{"x":0.5,"y":-1.0},)"), std::string::npos);
}

TEST(ApiQueries, IdentifiersComeFromTheLastSegmentOfThePath) {
  TApiController c;
  for (int i = 0; i < 9; ++i) addLine(c, TPointF(i, 0), TPointF(i, 5));
  EXPECT_NE(c.get("/shapes/7/9").body.find(R"({"id":9,)"), std::string::npos);
  EXPECT_NE(c.get("/shapes/+5").body.find(R"({"id":5,)"), std::string::npos);
  EXPECT_NE(c.get("/shapes/007").body.find(R"({"id":7,)"), std::string::npos);
  for (const char* bad : {"/shapes/abc", "/shapes/-3", "/shapes/1.5", "/shapes/2147483648", "/shapes/9/",
                          "/shapes/ 4", "/shapes/4x", "/shapes/line"}) {
    const auto r = c.get(bad);
    EXPECT_EQ(r.status, 200) << bad;
    EXPECT_EQ(r.body, R"({"error":"invalid id"})") << bad;
  }
  EXPECT_EQ(c.get("/shapes/2147483647").body, R"({"error":"shape not found","id":2147483647})");
  EXPECT_EQ(c.get("/shapes/0").body, R"({"error":"shape not found","id":0})");
}

TEST(ApiRoutes, RowsAreTriedInTableOrder) {
  TApiController c;
  addLine(c, TPointF(0, 0), TPointF(1, 1));
  const auto notFound = [](const char* method, const char* path) {
    return std::string(R"({"error":"unknown endpoint","method":")") + method + R"(","path":")" + path + R"("})";
  };
  // GET /shapes/ is too short for the shape row; PUT has no length test.
  EXPECT_EQ(c.get("/shapes/").status, 404);
  EXPECT_EQ(c.get("/shapes/").body, notFound("GET", "/shapes/"));
  EXPECT_EQ(c.put("/shapes/", "{}").body, R"({"error":"invalid id in path"})");
  EXPECT_EQ(c.put("/shapes/line", "{}").body, R"({"error":"invalid id in path"})");
  EXPECT_EQ(c.del("/shapes/").status, 404);
  // Exact rows take no trailing slash, and case counts.
  EXPECT_EQ(c.get("/paths/").status, 404);
  EXPECT_EQ(c.get("/DOC").status, 404);
  EXPECT_EQ(c.post("/paths", "").body, notFound("POST", "/paths"));
  // "/shapes/offset/smart" is its own row, tried before "/shapes/offset".
  EXPECT_EQ(c.post("/shapes/offset/smart", "{}").body, R"({"error":"shapeIds is required and must be non-empty"})");
  EXPECT_EQ(c.post("/shapes/offset", "{}").body, R"({"error":"distanceMm is required"})");
  EXPECT_EQ(c.post("/shapes/offset/", "{}").body, notFound("POST", "/shapes/offset/"));
  // Built rows answer on their exact method and path only.
  EXPECT_EQ(c.post("/ruler", "[]").body, R"({"error":"invalid JSON body"})");
  EXPECT_EQ(c.post("/shapes/stitch_hole", "[]").body, R"({"error":"invalid JSON body"})");
  EXPECT_EQ(c.post("/stitch/along_path", "[]").body, R"({"error":"invalid JSON body"})");
  EXPECT_EQ(c.post("/stitch/loop", "[]").body, R"({"error":"invalid JSON body"})");
  EXPECT_EQ(c.get("/stitch/loop").status, 404);
  EXPECT_EQ(c.post("/stitch/Loop", "{}").status, 404);
  EXPECT_EQ(c.post("/shapes/stitch_hole/", "{}").status, 404);
  // Nothing of that changed the document.
  EXPECT_EQ(c.shapeCount(), 1u);
  EXPECT_EQ(c.canvasRepaints, 0);
}
