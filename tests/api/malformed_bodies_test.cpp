// Bodies a careless or hostile client may send: not JSON, wrong types, huge
// arrays, deep nesting. Each gets its worded refusal or a 500 with a JSON
// body, and the document stays whole.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <set>

#include "api/api_test_support.h"

namespace {

// Every crossing names shapes of the document, identifiers are unique, and
// the replies of the queries parse and agree with the document.
void expectConsistent(TApiController& c, const std::string& context) {
  std::set<int> ids;
  for (const auto& s : *c.form.PathList) EXPECT_TRUE(ids.insert(s->FID).second) << context;
  for (const auto& i : c.form.FIntersections->items()) {
    EXPECT_NE(c.form.PathList->indexOf(i->FPath1), -1) << context;
    if (i->FPath2) EXPECT_NE(c.form.PathList->indexOf(i->FPath2), -1) << context;
  }
  const auto paths = c.get("/paths");
  ASSERT_EQ(paths.status, 200) << context;
  const auto j = nlohmann::json::parse(paths.body, nullptr, false);
  ASSERT_FALSE(j.is_discarded()) << context;
  EXPECT_EQ(j["count"], c.form.PathList->Count()) << context;
  EXPECT_FALSE(nlohmann::json::parse(c.get("/intersections").body, nullptr, false).is_discarded()) << context;
}

bool isJsonError(const THttpReply& r) {
  const auto j = nlohmann::json::parse(r.body, nullptr, false);
  return !j.is_discarded() && j.is_object() && j.contains("error") && (r.status == 200 || r.status == 500);
}

}  // namespace

TEST(ApiMalformedBodies, EveryWriteEndpointRefusesCleanly) {
  TApiController c;
  c.post("/shapes/line", R"({"x1":0,"y1":0,"x2":10,"y2":10})");
  c.post("/shapes/circle", R"({"cx":5,"cy":5,"r":3})");
  const std::string deep = std::string(100000, '[') + std::string(100000, ']');
  const std::string deepObject = "{\"x1\":" + std::string(5000, '[') + std::string(5000, ']') + "}";
  std::string hugePoints = R"({"points":[)";
  for (int i = 0; i < 200000; ++i) hugePoints += (i ? "," : "") + std::string(R"({"x":1,"y":2})");
  hugePoints += "]}";
  const std::vector<std::string> bodies = {
      "garbage",  "{\"x1\":",      "\xFF\xFE{}",   deep,
      deepObject, hugePoints,      R"({"x1":[1],"y1":{},"x2":"2","y2":null,"cx":false,"points":"abcd"})",
      R"({"x1":1,"y1":1,"x2":2,"y2":"2","cx":1,"cy":1,"r":"1","startAngle":0,"endAngle":0,"points":[{"x":1}]})"};
  const std::vector<std::pair<std::string, std::string>> targets = {
      {"POST", "/shapes/line"}, {"POST", "/shapes/circle"}, {"POST", "/shapes/arc"},
      {"POST", "/shapes/bezier"}, {"PUT", "/shapes/1"},      {"PUT", "/shapes/2"},
      {"POST", "/ruler"},         {"POST", "/stitch/along_path"}, {"POST", "/stitch/loop"}};
  for (const auto& [method, path] : targets) {
    for (const auto& body : bodies) {
      const size_t before = c.shapeCount();
      const auto r = c.request(method, path, body);
      const std::string context = method + " " + path + " " + body.substr(0, 40);
      EXPECT_TRUE(isJsonError(r)) << context << " -> " << r.status << " " << r.body.substr(0, 200);
      EXPECT_EQ(c.shapeCount(), before) << context;
    }
  }
  expectConsistent(c, "after the write endpoints");
}

TEST(ApiMalformedBodies, BulkDeleteTakesHugeListsAndTreatsNonsenseAsClearAll) {
  TApiController c;
  for (int i = 0; i < 50; ++i)
    c.post("/shapes/line", R"({"x1":)" + std::to_string(i) + R"(,"y1":0,"x2":0,"y2":)" + std::to_string(i) + "}");
  // A list of 300,000 identifiers, most unknown.
  std::string ids = R"({"ids":[)";
  for (int i = 300000; i >= 1; --i) ids += std::to_string(i * 2) + (i > 1 ? "," : "");
  ids += "]}";
  const auto r = c.del("/shapes", ids);
  ASSERT_EQ(r.status, 200);
  const auto j = nlohmann::json::parse(r.body);
  EXPECT_EQ(j["deletedCount"], 25);
  EXPECT_EQ(j["notFoundIds"].size(), 300000u - 25u);
  EXPECT_EQ(j["notFoundIds"][0], 52);  // the table's order: ascending
  EXPECT_EQ(c.shapeCount(), 25u);
  expectConsistent(c, "after the huge list");

  // A wrong element anywhere in a long list: nothing goes.
  ids.insert(ids.size() - 2, ",\"x\"");
  EXPECT_EQ(c.del("/shapes", ids).status, 500);
  EXPECT_EQ(c.shapeCount(), 25u);

  // Nesting too deep to be read counts as no list: the drawing is cleared,
  // as with any other body that is not a list of identifiers.
  const auto deep = c.del("/shapes", "{\"ids\":" + std::string(100000, '[') + std::string(100000, ']') + "}");
  EXPECT_EQ(deep.body, R"({"ok":true,"deletedCount":25,"notFoundIds":[]})");
  expectConsistent(c, "after the deep body");
}
