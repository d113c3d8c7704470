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
