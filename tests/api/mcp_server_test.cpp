// The transport of the local API, over real HTTP on loopback.
#include <gtest/gtest.h>
#include <httplib.h>

#include <atomic>
#include <future>
#include <latch>
#include <stdexcept>

#include "api/mcp_router.h"
#include "api/mcp_server.h"
#include "test_support.h"

namespace {

struct TRunningServer {
  std::atomic<int> calls{0};
  std::unique_ptr<TPWMCPServer> server;

  explicit TRunningServer(TPWMCPHandler handler) {
    server = std::make_unique<TPWMCPServer>(0, std::move(handler));
    server->Start();
  }
  httplib::Client client() const { return httplib::Client("127.0.0.1", server->boundPort()); }
};

TPWMCPHandler echoHandler(std::atomic<int>* calls) {
  return [calls](const std::string& method, const std::string& path, const std::string& body,
                 int& status, std::string&) {
    ++*calls;
    status = 200;
    return method + " " + path + " [" + body + "]";
  };
}

}  // namespace

TEST(McpServer, OptionsAnswersItselfWithTheThreeHeaders) {
  std::atomic<int> calls{0};
  TRunningServer s(echoHandler(&calls));
  auto res = s.client().Options("/no/such/thing");
  ASSERT_TRUE(res);
  EXPECT_EQ(res->status, 204);
  EXPECT_EQ(res->body, "");
  EXPECT_EQ(res->get_header_value("Access-Control-Allow-Origin"), "*");
  EXPECT_EQ(res->get_header_value("Access-Control-Allow-Methods"), "GET, POST, OPTIONS");
  EXPECT_EQ(res->get_header_value("Access-Control-Allow-Headers"), "Content-Type");
  EXPECT_EQ(calls, 0);
}

TEST(McpServer, HandlerGetsMethodPathAndBodyAndItsReplyGoesBack) {
  std::atomic<int> calls{0};
  TRunningServer s(echoHandler(&calls));
  auto cli = s.client();
  auto res = cli.Post("/shapes/line", "{\"x1\":1}", "application/json");
  ASSERT_TRUE(res);
  EXPECT_EQ(res->status, 200);
  EXPECT_EQ(res->body, "POST /shapes/line [{\"x1\":1}]");
  EXPECT_EQ(res->get_header_value("Content-Type"), "application/json; charset=utf-8");
  EXPECT_EQ(res->get_header_value("Access-Control-Allow-Origin"), "*");
  // A body that is not valid UTF-8 arrives with replacement characters.
  res = cli.Put("/x", std::string("a\xFF" "b\xC3"), "text/plain");
  ASSERT_TRUE(res);
  EXPECT_EQ(res->body, "PUT /x [a\xEF\xBF\xBD" "b\xEF\xBF\xBD]");
  // No body at all is the empty string, for every method.
  res = cli.Delete("/shapes");
  ASSERT_TRUE(res);
  EXPECT_EQ(res->body, "DELETE /shapes []");
  EXPECT_EQ(calls, 3);
}

TEST(McpServer, RequestsTheLibraryRefusesGetAJsonBodyAndTheCorsHeader) {
  std::atomic<int> calls{0};
  TRunningServer s(echoHandler(&calls));
  auto res = s.client().Get("/" + std::string(20000, 'a'));
  ASSERT_TRUE(res);
  EXPECT_EQ(res->status, 414);
  EXPECT_EQ(res->body, R"({"error":"request address too long"})");
  EXPECT_EQ(res->get_header_value("Access-Control-Allow-Origin"), "*");
  EXPECT_EQ(res->get_header_value("Content-Type"), "application/json; charset=utf-8");
  EXPECT_EQ(calls, 0);
}

TEST(McpServer, FailuresBecomeFiveHundredWithAJsonBody) {
  TRunningServer raising([](const std::string&, const std::string&, const std::string&, int&,
                            std::string&) -> std::string {
    throw std::runtime_error("bad \"ids\" value");
  });
  auto res = raising.client().Get("/doc");
  ASSERT_TRUE(res);
  EXPECT_EQ(res->status, 500);
  EXPECT_EQ(res->body, "{\"error\":\"bad \\\"ids\\\" value\"}");

  TRunningServer unbound(nullptr);
  res = unbound.client().Get("/doc");
  ASSERT_TRUE(res);
  EXPECT_EQ(res->status, 500);
  EXPECT_EQ(res->body, "{\"error\":\"no handler bound\"}");
}

TEST(McpServer, WebPagesAreRefusedScriptsAreNot) {
  std::atomic<int> calls{0};
  TRunningServer s(echoHandler(&calls));
  s.server->Stop();
  s.server->setAllowedOrigins({" http://192.168.1.5:8080/", ""});
  s.server->Start();
  auto cli = s.client();
  const std::pair<const char*, const char*> refused[] = {
      {"Host", "evil.example"}, {"Host", "127.0.0.1.evil.example"}, {"Host", "localhost:80x"},
      {"Origin", "http://evil.example"}, {"Origin", "null"}, {"Origin", "https://localhost"},
      {"Origin", "http://localhost.evil.example"}, {"Origin", "http://192.168.1.5"}};
  for (const auto& [name, value] : refused) {
    const httplib::Headers headers{{name, value}};
    for (int preflight = 0; preflight < 2; ++preflight) {
      auto res = preflight ? cli.Options("/doc", headers) : cli.Post("/shapes/line", headers, "{}", "text/plain");
      ASSERT_TRUE(res);
      EXPECT_EQ(res->status, 403) << name << ": " << value;
      EXPECT_EQ(res->body.rfind("{\"error\":\"forbidden: the ", 0), 0u) << res->body;
      EXPECT_EQ(res->get_header_value("Access-Control-Allow-Origin"), "*");
    }
  }
  EXPECT_EQ(calls, 0);
  const std::pair<const char*, const char*> passed[] = {
      {"Host", "localhost:7777"}, {"Host", "[::1]"}, {"Host", "LOCALHOST"},
      {"Origin", "http://127.0.0.1:5173"}, {"Origin", "http://localhost"}, {"Origin", "http://192.168.1.5:8080"}};
  for (const auto& [name, value] : passed) {
    auto res = cli.Post("/shapes/line", httplib::Headers{{name, value}}, "{}", "application/json");
    ASSERT_TRUE(res);
    EXPECT_EQ(res->status, 200) << name << ": " << value;
  }
  EXPECT_EQ(calls, 6);
}

TEST(McpServer, MoreClientsThanConnectionThreadsAreAllServed) {
  std::atomic<int> calls{0};
  TRunningServer s(echoHandler(&calls));
  std::vector<std::future<bool>> clients;
  std::latch served(100);
  for (int k = 0; k < 100; ++k)
    clients.push_back(std::async(std::launch::async, [&s, &served] {
      auto cli = s.client();
      cli.set_read_timeout(10, 0);
      cli.set_keep_alive(true);  // the first ones hold their threads until their connections idle out
      auto res = cli.Get("/");
      served.arrive_and_wait();
      return res && res->status == 200;
    }));
  for (auto& c : clients) EXPECT_TRUE(c.get());
  EXPECT_EQ(calls, 100);
}

TEST(McpServer, StopClosesThePortAndStartOpensItAgain) {
  std::atomic<int> calls{0};
  const int port = freeLoopbackPort();
  TPWMCPServer server(port, echoHandler(&calls));
  server.Start();
  EXPECT_TRUE(portAcceptsConnections(port));
  server.Stop();
  EXPECT_FALSE(server.isActive());
  EXPECT_FALSE(portAcceptsConnections(port));
  server.Start();
  httplib::Client cli("127.0.0.1", port);
  auto res = cli.Get("/again");
  ASSERT_TRUE(res);
  EXPECT_EQ(res->body, "GET /again []");
}

TEST(McpServer, StopDoesNotWaitForIdleKeepAliveConnections) {
  std::atomic<int> calls{0};
  auto server = std::make_unique<TPWMCPServer>(0, echoHandler(&calls));
  server->Start();
  httplib::Client cli("127.0.0.1", server->boundPort());
  cli.set_keep_alive(true);
  ASSERT_TRUE(cli.Get("/one"));  // the connection stays open, idle
  const auto t0 = std::chrono::steady_clock::now();
  server.reset();
  const auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(
                      std::chrono::steady_clock::now() - t0)
                      .count();
  EXPECT_LT(ms, 1000);
}

TEST(McpRouter, FirstFittingRowAnswersAndCaseCounts) {
  TMcpRouter router;
  auto reply = [](std::string text) {
    return [text](const std::string& path, const std::string&) { return text + path; };
  };
  router.setRoutes({
      {"GET", "/paths", TMcpRoute::TMatch::Exact, reply("paths:")},
      {"GET", "/shapes/", TMcpRoute::TMatch::PrefixLongerThan8, reply("shape:")},
      {"POST", "/shapes/line", TMcpRoute::TMatch::Exact, reply("line:")},
      {"PUT", "/shapes/", TMcpRoute::TMatch::Prefix, reply("put:")},
      {"GET", "/boom", TMcpRoute::TMatch::Exact,
       [](const std::string&, const std::string&) -> std::string {
         throw std::runtime_error("no \"shape\"");
       }},
  });
  int status = 200;
  EXPECT_EQ(router.route("GET", "/paths", "", status), "paths:/paths");
  EXPECT_EQ(router.route("GET", "/shapes/line", "", status), "shape:/shapes/line");
  EXPECT_EQ(router.route("PUT", "/shapes/", "", status), "put:/shapes/");
  EXPECT_EQ(status, 200);
  EXPECT_EQ(router.route("GET", "/shapes/", "", status),
            "{\"error\":\"unknown endpoint\",\"method\":\"GET\",\"path\":\"/shapes/\"}");
  EXPECT_EQ(status, 404);
  status = 200;
  EXPECT_EQ(router.route("GET", "/Paths", "", status),
            "{\"error\":\"unknown endpoint\",\"method\":\"GET\",\"path\":\"/Paths\"}");
  EXPECT_EQ(status, 404);
  status = 200;
  // Method and path go into the reply as they came, unescaped.
  EXPECT_EQ(router.route("POST", "/a\"b", "", status),
            "{\"error\":\"unknown endpoint\",\"method\":\"POST\",\"path\":\"/a\"b\"}");
  status = 200;
  EXPECT_EQ(router.route("GET", "/boom", "", status), "{\"error\":\"no \\\"shape\\\"\"}");
  EXPECT_EQ(status, 500);
}
