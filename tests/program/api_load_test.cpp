// The real program under load: sixteen clients mix reads, writes, bad
// requests and deletes for thirty seconds (PELWRIGHT_API_LOAD_SECONDS
// changes that). No request may hang, every reply must be well-formed JSON
// of the kind its request calls for, and at the end the document must hold
// exactly the shapes that were created and not deleted.
#include <gtest/gtest.h>
#include <httplib.h>
#include <signal.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <future>
#include <nlohmann/json.hpp>
#include <random>

#include "test_support.h"

namespace {

using nlohmann::json;

struct TClientTally {
  long created = 0;
  long deleted = 0;
  long requests = 0;
  std::vector<std::string> faults;  // the first few, for the report
  void fault(const std::string& what) {
    if (faults.size() < 5) faults.push_back(what);
  }
};

int loadSeconds() {
  const char* s = std::getenv("PELWRIGHT_API_LOAD_SECONDS");
  const int v = s ? std::atoi(s) : 0;
  return v > 0 ? v : 30;
}

std::string num(std::mt19937& rng, double lo, double hi) {
  return std::to_string(std::uniform_real_distribution<double>(lo, hi)(rng));
}

// One client's loop. Its own identifiers are the ones it deletes and
// changes, but any client may take any shape away with a bulk delete.
TClientTally runClient(int port, int seed, std::chrono::steady_clock::time_point end) {
  TClientTally t;
  std::mt19937 rng(seed);
  httplib::Client cli("127.0.0.1", port);
  cli.set_keep_alive(seed % 2 == 0);
  cli.set_tcp_nodelay(true);
  cli.set_read_timeout(20, 0);  // a hang is a failure, not a wait
  cli.set_write_timeout(20, 0);
  std::vector<int> mine;
  const auto coord = [&] { return num(rng, 0, 400); };

  while (std::chrono::steady_clock::now() < end) {
    const int pick = std::uniform_int_distribution<int>(0, 99)(rng);
    std::string what;
    httplib::Result res{nullptr, httplib::Error::Unknown};
    enum class TExpect { Query, Created, DeletedOne, DeletedMany, Ok, Refusal, Raise } expect;
    if (pick < 24) {
      const char* kinds[] = {"line", "circle", "arc", "bezier"};
      const int k = static_cast<int>(rng() % 4);
      std::string body;
      if (k == 0) body = "{\"x1\":" + coord() + ",\"y1\":" + coord() + ",\"x2\":" + coord() + ",\"y2\":" + coord() + "}";
      if (k == 1) body = "{\"cx\":" + coord() + ",\"cy\":" + coord() + ",\"r\":" + num(rng, 1, 30) + ",\"paletteIdx\":" + std::to_string(rng() % 45) + "}";
      if (k == 2) body = "{\"cx\":" + coord() + ",\"cy\":" + coord() + ",\"r\":" + num(rng, 1, 30) + ",\"startAngle\":" + num(rng, -6, 6) + ",\"endAngle\":" + num(rng, -6, 6) + "}";
      if (k == 3) {
        body = "{\"points\":[";
        for (int i = 0; i < 4; ++i) body += std::string(i ? "," : "") + "{\"x\":" + coord() + ",\"y\":" + coord() + "}";
        body += "]}";
      }
      what = std::string("POST /shapes/") + kinds[k];
      res = cli.Post(std::string("/shapes/") + kinds[k], body, "application/json");
      expect = TExpect::Created;
    } else if (pick < 42 && !mine.empty()) {
      const size_t i = rng() % mine.size();
      const int id = mine[i];
      mine.erase(mine.begin() + static_cast<long>(i));
      what = "DELETE /shapes/" + std::to_string(id);
      res = cli.Delete("/shapes/" + std::to_string(id));
      expect = TExpect::DeletedOne;
    } else if (pick < 46) {
      std::string ids = "{\"ids\":[";
      for (int i = 0; i < 5; ++i) ids += std::string(i ? "," : "") + std::to_string(rng() % 3000 + 1);
      ids += "]}";
      what = "DELETE /shapes " + ids;
      res = cli.Delete("/shapes", ids, "application/json");
      expect = TExpect::DeletedMany;
    } else if (pick < 54 && !mine.empty()) {
      const int id = mine[rng() % mine.size()];
      what = "PUT /shapes/" + std::to_string(id);
      // Right keys for lines, wrong for the rest: either way a JSON reply.
      res = cli.Put("/shapes/" + std::to_string(id),
                    "{\"x1\":" + coord() + ",\"y1\":" + coord() + ",\"x2\":" + coord() + ",\"y2\":" + coord() +
                        ",\"cx\":1,\"cy\":2,\"r\":3,\"startAngle\":0,\"endAngle\":1}",
                    "application/json");
      expect = TExpect::Query;  // ok, refusal or "shape not found" after a bulk delete
    } else if (pick < 60) {
      const int k = static_cast<int>(rng() % 3);
      what = "bad body " + std::to_string(k);
      if (k == 0) res = cli.Post("/shapes/line", "{not json", "application/json"), expect = TExpect::Refusal;
      if (k == 1) res = cli.Post("/shapes/circle", "{\"cx\":\"a\"}", "application/json"), expect = TExpect::Raise;
      if (k == 2) res = cli.Post("/shapes/bezier", "{\"points\":[]}", "application/json"), expect = TExpect::Refusal;
    } else if (pick < 62) {
      what = "POST /viewport/fit";
      res = cli.Post("/viewport/fit");
      expect = TExpect::Ok;
    } else {
      const char* reads[] = {"/paths", "/doc", "/intersections", "/shapes/"};
      const int k = static_cast<int>(rng() % 4);
      std::string path = reads[k];
      if (k == 3) path += std::to_string(rng() % 3000 + 1);
      what = "GET " + path;
      res = cli.Get(path);
      expect = TExpect::Query;
    }
    ++t.requests;
    if (!res) {
      t.fault(what + ": no reply (" + httplib::to_string(res.error()) + ")");
      continue;
    }
    const json j = json::parse(res->body, nullptr, false);
    if (j.is_discarded() || !j.is_object()) {
      t.fault(what + ": not a JSON object: " + res->body.substr(0, 80));
      continue;
    }
    const bool ok200 = res->status == 200;
    switch (expect) {
      case TExpect::Created:
        if (ok200 && j.value("ok", false) && j.contains("id")) {
          ++t.created;
          mine.push_back(j["id"].get<int>());
        } else {
          t.fault(what + ": " + res->body);
        }
        break;
      case TExpect::DeletedOne:
        if (ok200 && j.value("ok", false)) ++t.deleted;
        else if (!(ok200 && j.value("error", "") == "shape not found")) t.fault(what + ": " + res->body);
        break;
      case TExpect::DeletedMany:
        if (ok200 && j.value("ok", false)) t.deleted += j["deletedCount"].get<long>();
        else t.fault(what + ": " + res->body);
        break;
      case TExpect::Ok:
        if (!ok200 || !j.value("ok", false)) t.fault(what + ": " + res->body);
        break;
      case TExpect::Refusal:
        if (!ok200 || !j.contains("error")) t.fault(what + ": " + res->body);
        break;
      case TExpect::Raise:
        if (res->status != 500 || !j.contains("error")) t.fault(what + ": " + res->body);
        break;
      case TExpect::Query:
        if (!ok200) t.fault(what + ": status " + std::to_string(res->status));
        break;
    }
  }
  return t;
}

}  // namespace

TEST(HeadlessLoad, SixteenClientsMixingReadsAndWrites) {
  TTempDir home;
  const int port = freeLoopbackPort();
  writeTextFile(home.file("pelwright/pw_options.ini"), "[MCP]\nEnableServer=1\n");
  TChildProcess app(PELWRIGHT_BINARY, {"--headless", "--api-port", std::to_string(port)},
                    {"XDG_DATA_HOME=" + home.path(), "XDG_RUNTIME_DIR=" + home.path()});
  ASSERT_TRUE(waitForPort(port, 10000));

  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(loadSeconds());
  std::vector<std::future<TClientTally>> clients;
  for (int k = 0; k < 16; ++k) clients.push_back(std::async(std::launch::async, runClient, port, 1000 + k, end));
  long created = 0, deleted = 0, requests = 0;
  for (auto& f : clients) {
    const TClientTally t = f.get();
    created += t.created;
    deleted += t.deleted;
    requests += t.requests;
    for (const auto& msg : t.faults) ADD_FAILURE() << msg;
  }
  EXPECT_GT(requests, 1000);
  EXPECT_GT(deleted, 0);

  httplib::Client cli("127.0.0.1", port);
  cli.set_read_timeout(20, 0);
  const auto doc = cli.Get("/doc");
  ASSERT_TRUE(doc);
  const json j = json::parse(doc->body);
  EXPECT_EQ(j["shapeCount"].get<long>(), created - deleted) << created << " created, " << deleted << " deleted";
  const auto paths = cli.Get("/paths");
  ASSERT_TRUE(paths);
  EXPECT_EQ(json::parse(paths->body)["count"].get<long>(), created - deleted);
  std::printf("[ load     ] %ld requests, %ld shapes created, %ld deleted\n", requests, created, deleted);

  app.signal(SIGTERM);
  int status = 0;
  EXPECT_TRUE(app.waitExit(5000, status));
}
