// Requests that would take the program down: numbers past a kilometre and
// rows of millions of holes are refused at once, in each endpoint's own
// form, and the document stays as it was.
#include <gtest/gtest.h>

#include <chrono>

#include "api/api_test_support.h"

TEST(ApiLimits, HugeNumbersAndRowsAreRefusedAndChangeNothing) {
  TApiController c;
  // A loop of 320 mm and a line through it.
  ASSERT_EQ(c.post("/shapes/circle", R"({"cx":0,"cy":0,"r":50.93})").body, R"({"ok":true,"id":1})");
  ASSERT_EQ(c.post("/shapes/line", R"({"x1":-80,"y1":0,"x2":80,"y2":0})").body, R"({"ok":true,"id":2})");
  const std::string before = c.get("/paths").body, crossings = c.get("/intersections").body;
  const size_t undoLevels = c.form.FUndoList.size();

  const std::string range = "out of range: its size must not pass 1000000";
  const auto t0 = std::chrono::steady_clock::now();
  const std::pair<const char*, const char*> rows[] = {
      {R"({"pointOnLoop":{"x":0,"y":50.93},"pitchMm":1e-6})", "the row would need more than 100000 holes"},
      {R"({"pointOnLoop":{"x":0,"y":50.93},"mode":"count","holeCount":2e5})", "the row would need more than 100000 holes"},
      {R"({"pointOnLoop":{"x":0,"y":50.93},"pitchMm":0})", "pitchMm must be greater than 0 and at most 1000000"},
      {R"({"pointOnLoop":{"x":1e308,"y":0}})", "x "},
  };
  for (const auto& [body, error] : rows)
    EXPECT_EQ(c.post("/stitch/loop", body).body.rfind(std::string(R"({"ok":false,"error":")") + error, 0), 0u)
        << body << " -> " << c.post("/stitch/loop", body).body;
  EXPECT_EQ(c.post("/stitch/along_path", R"({"startPoint":{"x":-80,"y":0},"endPoint":{"x":80,"y":0},"pitchMm":-1})").body,
            R"({"ok":false,"error":"pitchMm must be greater than 0 and at most 1000000"})");
  EXPECT_EQ(c.post("/stitch/along_path", R"({"startPoint":{"x":-80,"y":0},"endPoint":{"x":80,"y":0},"pitchMm":1e-3})").body,
            R"({"ok":false,"error":"the row would need more than 100000 holes"})");
  EXPECT_LT(std::chrono::steady_clock::now() - t0, std::chrono::seconds(1));

  const std::pair<const char*, const char*> shapes[] = {
      {"/shapes/line", R"({"x1":1e308,"y1":0,"x2":0,"y2":1})"},
      {"/shapes/circle", R"({"cx":0,"cy":0,"r":1e30})"},
      {"/shapes/arc", R"({"cx":0,"cy":0,"r":5,"startAngle":0,"endAngle":-1e300})"},
      {"/shapes/bezier", R"({"points":[{"x":0,"y":0},{"x":1,"y":1},{"x":2,"y":-2e6},{"x":3,"y":0}]})"},
      {"/shapes/stitch_hole", R"({"cx":1000000.5,"cy":0})"},
      {"/ruler", R"({"x1":0,"y1":0,"x2":0,"y2":-1e9})"},
  };
  for (const auto& [path, body] : shapes) {
    const THttpReply r = c.post(path, body);
    EXPECT_EQ(r.status, 200);
    EXPECT_NE(r.body.find(range), std::string::npos) << path << " -> " << r.body;
    EXPECT_EQ(r.body.rfind(R"({"error":")", 0), 0u) << r.body;
  }
  // An update is refused before its palette row or crossings change.
  EXPECT_EQ(c.put("/shapes/1", R"({"paletteIdx":5,"cx":0,"cy":0,"r":2e6})").body,
            std::string(R"({"error":"r )") + range + "\"}");
  EXPECT_EQ(c.get("/paths").body, before);
  EXPECT_EQ(c.get("/intersections").body, crossings);
  EXPECT_EQ(c.form.FUndoList.size(), undoLevels);
}
