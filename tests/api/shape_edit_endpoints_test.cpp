// The endpoints that change the document, over real HTTP: what each makes,
// the palette and layer rules, the order of steps in an update, every
// refusal, bulk deletes, a new document and fitting the view.
#include <gtest/gtest.h>

#include <cmath>
#include <nlohmann/json.hpp>

#include "api/api_test_support.h"

namespace {

bool hasCrossingOf(const TfrmPelw& form, const TPW_Path* s) {
  for (const auto& i : form.FIntersections->items())
    if (i->FPath1 == s || i->FPath2 == s) return true;
  return false;
}

TPW_Path* shape(TApiController& c, int id) { return c.form.PathList->findByID(id); }

bool is500WithJsonBody(const THttpReply& r) {
  return r.status == 500 && r.body.rfind("{\"error\":\"", 0) == 0 && r.body.back() == '}';
}

}  // namespace

TEST(ApiCreate, EachEndpointMakesItsShapeOnTheRoadOfEveryChange) {
  TApiController c;
  c.form.selectPalletRow(2);
  EXPECT_EQ(c.post("/shapes/line", R"({"x1":0,"y1":0,"x2":10,"y2":10})").body, R"({"ok":true,"id":1})");
  TPW_Path* line = shape(c, 1);
  ASSERT_NE(line, nullptr);
  EXPECT_TRUE(line->FEndPt.identical(TPointF(10, 10)));
  // The current row's look: row 2 is white on the dark background, 1.2 thick.
  EXPECT_EQ(line->FPalletIndex, 2);
  EXPECT_EQ(line->FColor, 0xFFFFFFFFu);
  EXPECT_FLOAT_EQ(line->FThickness, 1.2f);
  EXPECT_TRUE(c.form.PathList->FIsChanged);
  EXPECT_EQ(c.canvasRepaints, 1);

  EXPECT_EQ(c.post("/shapes/circle", R"({"cx":5,"cy":5,"r":2.5,"paletteIdx":4})").body, R"({"ok":true,"id":2})");
  TPW_Path* circle = shape(c, 2);
  EXPECT_EQ(circle->FHeight, 5.0f);
  EXPECT_EQ(circle->FPalletIndex, 3);
  EXPECT_EQ(circle->FDash, TStrokeDash::Dash);  // row 3 is dashed
  EXPECT_TRUE(hasCrossingOf(c.form, circle));   // it meets the line

  // Radians, clockwise on the screen; the sweep keeps its sign.
  EXPECT_EQ(c.post("/shapes/arc", R"({"cx":1,"cy":2,"r":10,"startAngle":0,"endAngle":-1.5707963})").body,
            R"({"ok":true,"id":3})");
  TPW_Path* arc = shape(c, 3);
  EXPECT_NEAR(arc->FSweepAngle, -90.0, 1e-4);
  EXPECT_NEAR(arc->FEndPt.y, -8.0, 1e-5);

  EXPECT_EQ(c.post("/shapes/bezier", R"({"points":[{"x":0,"y":0},{"x":0,"y":5},{"x":10,"y":5},{"x":10,"y":0}],"layerId":2})")
                .body,
            R"({"ok":true,"id":4})");
  EXPECT_EQ(shape(c, 4)->FLayerID, 2);
  EXPECT_EQ(c.canvasRepaints, 4);
}

TEST(ApiCreate, PaletteAndLayerFallBackSilently) {
  TApiController c;
  c.form.selectPalletRow(5);
  c.form.FActiveLayer = 0;
  struct TCase {
    const char* extra;
    int row;
  } cases[] = {{R"("paletteIdx":0)", 5},   {R"("paletteIdx":41)", 5},  {R"("paletteIdx":40)", 39},
               {R"("paletteIdx":1)", 0},   {R"("paletteIdx":"3")", 5}, {R"("paletteIdx":2.5)", 5},
               {R"("paletteIdx":3.0)", 2}, {R"("paletteIdx":null)", 5}};
  for (const auto& k : cases) {
    const auto r = c.post("/shapes/circle", std::string(R"({"cx":0,"cy":0,"r":1,)") + k.extra + "}");
    ASSERT_EQ(r.body.rfind(R"({"ok":true,"id":)", 0), 0u) << k.extra << r.body;
    EXPECT_EQ(c.form.PathList->items().back()->FPalletIndex, k.row) << k.extra;
  }
  // A layer is taken as it comes, even one the document does not know.
  c.post("/shapes/line", R"({"x1":0,"y1":0,"x2":1,"y2":1,"layerId":12345})");
  EXPECT_EQ(c.form.PathList->items().back()->FLayerID, 12345);
  EXPECT_FALSE(c.form.PathList->hasLayer(12345));
  c.form.FActiveLayer = 3;
  c.post("/shapes/line", R"({"x1":0,"y1":0,"x2":1,"y2":1,"layerId":"7"})");
  EXPECT_EQ(c.form.PathList->items().back()->FLayerID, 3);
}

TEST(ApiCreate, RefusalsAndUnreadableNumbersChangeNothing) {
  TApiController c;
  c.post("/shapes/line", R"({"x1":0,"y1":0,"x2":1,"y2":1})");
  const int repaints = c.canvasRepaints;
  for (const char* body : {"", "not json", "[1,2]", "{\"x1\":1,"}) {
    for (const char* path : {"/shapes/line", "/shapes/circle", "/shapes/arc", "/shapes/bezier"}) {
      const auto r = c.post(path, body);
      EXPECT_EQ(r.status, 200) << path << " " << body;
      EXPECT_EQ(r.body, R"({"error":"invalid JSON body"})") << path << " " << body;
    }
  }
  const char* const wrongPoints = R"({"error":"points must have exactly 4 elements [P0,C1,C2,P1]"})";
  EXPECT_EQ(c.post("/shapes/bezier", "{}").body, wrongPoints);
  EXPECT_EQ(c.post("/shapes/bezier", R"({"points":[{"x":0,"y":0},{"x":1,"y":1},{"x":2,"y":2}]})").body, wrongPoints);
  EXPECT_EQ(c.post("/shapes/bezier", R"({"points":{"x":0}})").body, wrongPoints);
  // Missing numbers and numbers of another type raise: 500 with a JSON body.
  for (const auto& [path, body] : std::vector<std::pair<const char*, const char*>>{
           {"/shapes/line", R"({"x1":0,"y1":0,"x2":1})"},
           {"/shapes/line", R"({"x1":0,"y1":"0","x2":1,"y2":1})"},
           {"/shapes/circle", R"({"cx":0,"cy":0,"r":true})"},
           {"/shapes/arc", R"({"cx":0,"cy":0,"r":1,"startAngle":0})"},
           {"/shapes/bezier", R"({"points":[{"x":0,"y":0},{"x":1},{"x":2,"y":2},{"x":3,"y":3}]})"},
           {"/shapes/bezier", R"({"points":[1,2,3,4]})"}}) {
    const auto r = c.post(path, body);
    EXPECT_TRUE(is500WithJsonBody(r)) << path << " " << body << " -> " << r.status << " " << r.body;
  }
  EXPECT_EQ(c.post("/shapes/line", R"({"x1":0,"y1":0,"x2":1})").body, R"({"error":"missing number: y2"})");
  EXPECT_EQ(c.shapeCount(), 1u);
  EXPECT_EQ(c.canvasRepaints, repaints);
  // No identifier was used up by the failures.
  EXPECT_EQ(c.post("/shapes/line", R"({"x1":0,"y1":0,"x2":1,"y2":1})").body, R"({"ok":true,"id":2})");
}

TEST(ApiCreate, ValuesAreNotValidated) {
  TApiController c;
  EXPECT_EQ(c.post("/shapes/circle", R"({"cx":0,"cy":0,"r":-3})").body, R"({"ok":true,"id":1})");
  EXPECT_EQ(c.post("/shapes/line", R"({"x1":4,"y1":4,"x2":4,"y2":4})").body, R"({"ok":true,"id":2})");
  EXPECT_EQ(c.post("/shapes/arc", R"({"cx":0,"cy":0,"r":0,"startAngle":0,"endAngle":1})").body,
            R"({"ok":true,"id":3})");
}

TEST(ApiUpdate, NewGeometryKeepsIdentifierTypeAndLayer) {
  TApiController c;
  c.post("/shapes/line", R"({"x1":0,"y1":0,"x2":10,"y2":0,"layerId":4})");
  c.post("/shapes/line", R"({"x1":20,"y1":-5,"x2":20,"y2":5})");
  EXPECT_FALSE(hasCrossingOf(c.form, shape(c, 1)));
  EXPECT_EQ(c.put("/shapes/1", R"({"x1":0,"y1":0,"x2":30,"y2":0,"paletteIdx":4})").body, R"({"ok":true,"id":1})");
  TPW_Path* line = shape(c, 1);
  EXPECT_TRUE(line->FEndPt.identical(TPointF(30, 0)));
  EXPECT_EQ(line->FLayerID, 4);
  EXPECT_EQ(line->FPalletIndex, 3);
  EXPECT_EQ(line->FDash, TStrokeDash::Dash);
  EXPECT_FALSE(hasCrossingOf(c.form, line));  // layer 4 is not a visible layer: no crossings

  c.post("/shapes/circle", R"({"cx":0,"cy":0,"r":1})");
  EXPECT_EQ(c.put("/shapes/3", R"({"cx":5,"cy":6,"rx":2,"ry":3})").body, R"({"ok":true,"id":3})");
  EXPECT_EQ(shape(c, 3)->FWidth, 4.0f);
  EXPECT_EQ(shape(c, 3)->FHeight, 6.0f);
  // "rx" without "ry" counts for nothing: the radius is needed.
  EXPECT_EQ(c.put("/shapes/3", R"({"cx":5,"cy":6,"rx":2,"r":1.5})").body, R"({"ok":true,"id":3})");
  EXPECT_EQ(shape(c, 3)->FWidth, 3.0f);
  EXPECT_EQ(shape(c, 3)->FHeight, 3.0f);

  c.post("/shapes/arc", R"({"cx":0,"cy":0,"r":5,"startAngle":0,"endAngle":1})");
  EXPECT_EQ(c.put("/shapes/4", R"({"cx":20,"cy":0,"r":5,"startAngle":3.14159265358979,"endAngle":0})").body,
            R"({"ok":true,"id":4})");
  EXPECT_NEAR(shape(c, 4)->FSweepAngle, -180.0, 1e-4);
  // From (15, 0) to (25, 0) through (20, 5), the lower end of the vertical
  // line: the rebuilt arc has crossings again.
  EXPECT_TRUE(hasCrossingOf(c.form, shape(c, 4)));

  c.post("/shapes/bezier", R"({"points":[{"x":0,"y":0},{"x":0,"y":5},{"x":10,"y":5},{"x":10,"y":0}]})");
  EXPECT_EQ(c.put("/shapes/5", R"({"points":[{"x":1,"y":1},{"x":1,"y":6},{"x":11,"y":6},{"x":11,"y":1}]})").body,
            R"({"ok":true,"id":5})");
  EXPECT_TRUE(shape(c, 5)->FBezierCp1.identical(TPointF(1, 6)));
  EXPECT_EQ(shape(c, 5)->FShapeType, "BEZIER");
}

TEST(ApiUpdate, RefusalsComeInTheirOrderAndLateOnesKeepTheEarlySteps) {
  TApiController c;
  c.post("/shapes/line", R"({"x1":0,"y1":0,"x2":10,"y2":10})");
  c.post("/shapes/line", R"({"x1":0,"y1":10,"x2":10,"y2":0})");
  c.post("/shapes/bezier", R"({"points":[{"x":0,"y":5},{"x":3,"y":0},{"x":6,"y":10},{"x":10,"y":5}]})");
  auto text = newApiTestShape();
  text->FShapeType = "TEXT";
  text->FData.setData("M0,0 L1,1");
  c.addShape(std::move(text));

  // The identifier is looked at first, then the body, then the shape.
  EXPECT_EQ(c.put("/shapes/x", "not json").body, R"({"error":"invalid id in path"})");
  EXPECT_EQ(c.put("/shapes/99", "not json").body, R"({"error":"invalid JSON body"})");
  EXPECT_EQ(c.put("/shapes/99", "{}").body, R"({"ok":false,"error":"shape not found","id":99})");

  // Refused after the palette change and the removal of the crossings:
  // both stay, and there is no repaint.
  ASSERT_TRUE(hasCrossingOf(c.form, shape(c, 3)));
  const int repaints = c.canvasRepaints;
  EXPECT_EQ(c.put("/shapes/3", R"({"paletteIdx":8})").body, R"({"error":"bezier requires points:[P0,C1,C2,P1]"})");
  EXPECT_EQ(shape(c, 3)->FPalletIndex, 7);
  EXPECT_FALSE(hasCrossingOf(c.form, shape(c, 3)));
  EXPECT_EQ(c.canvasRepaints, repaints);
  EXPECT_EQ(c.put("/shapes/4", R"({"paletteIdx":2})").body, R"({"error":"unsupported shapeType for update: TEXT"})");
  EXPECT_TRUE(is500WithJsonBody(c.put("/shapes/1", R"({"x1":0,"y1":0,"x2":5})")));
  EXPECT_TRUE(shape(c, 1)->FEndPt.identical(TPointF(10, 10)));

  // A "paletteIdx" that is not a number leaves the row alone.
  EXPECT_EQ(c.put("/shapes/2", R"({"paletteIdx":"5","x1":0,"y1":10,"x2":10,"y2":0})").body, R"({"ok":true,"id":2})");
  EXPECT_EQ(shape(c, 2)->FPalletIndex, 0);
}

TEST(ApiDelete, OneShapeByIdentifier) {
  TApiController c;
  c.post("/shapes/line", R"({"x1":0,"y1":0,"x2":10,"y2":10})");
  c.post("/shapes/line", R"({"x1":0,"y1":10,"x2":10,"y2":0})");
  ASSERT_EQ(c.form.FIntersections->Count(), 1u);
  EXPECT_EQ(c.del("/shapes/abc").body, R"({"error":"invalid id"})");
  EXPECT_EQ(c.del("/shapes/-1").body, R"({"error":"invalid id"})");
  EXPECT_EQ(c.del("/shapes/3").body, R"({"ok":false,"error":"shape not found","id":3})");
  const int repaints = c.canvasRepaints;
  EXPECT_EQ(c.del("/shapes/1").body, R"({"ok":true,"deletedId":1})");
  EXPECT_EQ(c.shapeCount(), 1u);
  EXPECT_EQ(c.form.FIntersections->Count(), 0u);
  EXPECT_EQ(c.canvasRepaints, repaints + 1);
  EXPECT_EQ(c.get("/shapes/1").body, R"({"error":"shape not found","id":1})");
}

TEST(ApiDelete, BulkByIdentifiers) {
  TApiController c;
  for (int i = 0; i < 5; ++i)
    c.post("/shapes/line", R"({"x1":)" + std::to_string(i) + R"(,"y1":-1,"x2":5,"y2":)" + std::to_string(i) + "}");
  ASSERT_GT(c.form.FIntersections->Count(), 0u);
  EXPECT_EQ(c.del("/shapes", R"({"ids":[4,2,99,2,-7,2]})").body,
            R"({"ok":true,"deletedCount":2,"notFoundIds":[-7,99]})");
  EXPECT_EQ(c.shapeCount(), 3u);
  EXPECT_EQ(shape(c, 2), nullptr);
  EXPECT_EQ(shape(c, 4), nullptr);
  for (const auto& i : c.form.FIntersections->items()) {
    EXPECT_NE(c.form.PathList->indexOf(i->FPath1), -1);
    EXPECT_NE(c.form.PathList->indexOf(i->FPath2), -1);
  }
  // Nothing found: no change, no repaint.
  const int repaints = c.canvasRepaints;
  EXPECT_EQ(c.del("/shapes", R"({"ids":[]})").body, R"({"ok":true,"deletedCount":0,"notFoundIds":[]})");
  EXPECT_EQ(c.del("/shapes", R"({"ids":[2]})").body, R"({"ok":true,"deletedCount":0,"notFoundIds":[2]})");
  EXPECT_EQ(c.canvasRepaints, repaints);
  // An element that is not a whole number raises before anything goes.
  for (const char* body : {R"({"ids":[1,"3"]})", R"({"ids":[1,null]})", R"({"ids":[1,3.5]})",
                           R"({"ids":[1,4294967296]})"}) {
    EXPECT_TRUE(is500WithJsonBody(c.del("/shapes", body))) << body;
    EXPECT_EQ(c.shapeCount(), 3u) << body;
  }
}

TEST(ApiDelete, WithoutAListOfIdsEverythingGoesButTheLayers) {
  for (const char* body : {"", R"({"ids":5})"}) {
    TApiController c;
    c.form.PathList->addLayer(-1, "", true);
    c.post("/shapes/line", R"({"x1":0,"y1":0,"x2":10,"y2":10})");
    c.post("/shapes/line", R"({"x1":0,"y1":10,"x2":10,"y2":0,"layerId":1})");
    const auto r = *body ? c.del("/shapes", body) : c.del("/shapes");
    EXPECT_EQ(r.body, R"({"ok":true,"deletedCount":2,"notFoundIds":[]})") << body;
    EXPECT_EQ(c.shapeCount(), 0u);
    EXPECT_EQ(c.form.FIntersections->Count(), 0u);
    EXPECT_EQ(c.form.PathList->FLayers.size(), 2u);
    // An empty document: count 0, nothing to repaint.
    const int repaints = c.canvasRepaints;
    EXPECT_EQ(c.del("/shapes").body, R"({"ok":true,"deletedCount":0,"notFoundIds":[]})");
    EXPECT_EQ(c.canvasRepaints, repaints);
  }
}

TEST(ApiDocument, NewDocumentStartsAfreshButIdentifiersCountOn) {
  TApiController c;
  c.post("/shapes/line", R"({"x1":0,"y1":0,"x2":10,"y2":10})");
  c.post("/shapes/line", R"({"x1":0,"y1":10,"x2":10,"y2":0})");
  c.form.PathList->addLayer(-1, "", true);
  c.form.PathList->FMemo = "notes";
  c.form.FActiveLayer = 1;
  c.form.selectPalletRow(9);
  c.form.FScale = TPointF(3, 3);
  EXPECT_EQ(c.post("/doc/new", "").body, R"({"ok":true})");
  EXPECT_EQ(c.request("POST", "/doc/new", "", false).body, R"({"ok":true})");
  EXPECT_EQ(c.shapeCount(), 0u);
  EXPECT_EQ(c.form.FIntersections->Count(), 0u);
  EXPECT_EQ(c.form.PathList->FLayers, std::vector<int>{0});
  EXPECT_EQ(c.form.PathList->FMemo, "");
  EXPECT_FALSE(c.form.PathList->FIsChanged);
  EXPECT_EQ(c.form.FActiveLayer, 0);
  EXPECT_EQ(c.form.FSelectedPalette, 0);
  EXPECT_TRUE(c.form.FScale.identical(TPointF(10, 10)));
  EXPECT_EQ(c.post("/shapes/line", R"({"x1":0,"y1":0,"x2":1,"y2":1})").body, R"({"ok":true,"id":3})");
}

TEST(ApiDocument, FittingTheViewReportsScaleAndOffset) {
  TApiController c;
  c.form.pboxResize(800, 600);
  EXPECT_EQ(c.post("/viewport/fit", "").body, R"({"ok":true,"scale":10,"offsetX":0,"offsetY":0})");
  c.post("/shapes/line", R"({"x1":0,"y1":0,"x2":100,"y2":50})");
  // 110 by 60 mm with the margins: 800 / 110 rounds to 7.3 pixels a mm, and
  // the 5 mm margin is 36.5 pixels, rounded to even.
  const int repaints = c.canvasRepaints;
  EXPECT_EQ(c.post("/viewport/fit", "").body, R"({"ok":true,"scale":7.3,"offsetX":31,"offsetY":31})");
  EXPECT_EQ(c.canvasRepaints, repaints + 1);
}

TEST(ApiDocument, EachCallIsOneUndoStepAndANewDocumentCanBeTakenBack) {
  TApiController c;
  c.post("/shapes/line", R"({"x1":0,"y1":0,"x2":10,"y2":10})");
  c.post("/shapes/circle", R"({"cx":5,"cy":5,"r":3})");
  EXPECT_EQ(c.put("/shapes/1", R"({"x1":0,"y1":0,"x2":20,"y2":10})").status, 200);
  c.post("/doc/new", "");
  ASSERT_EQ(c.shapeCount(), 0u);

  c.form.actUndo();  // the new document goes
  ASSERT_EQ(c.shapeCount(), 2u);
  EXPECT_FLOAT_EQ(shape(c, 1)->FEndPt.x, 20.0f);
  c.form.actUndo();  // the update goes
  EXPECT_FLOAT_EQ(shape(c, 1)->FEndPt.x, 10.0f);
  c.form.actUndo();  // the circle goes
  EXPECT_EQ(c.shapeCount(), 1u);
  EXPECT_EQ(c.form.FIntersections->Count(), 0u);
  c.form.actRedo();
  EXPECT_EQ(c.shapeCount(), 2u);
  EXPECT_GT(c.form.FIntersections->Count(), 0u);
}
