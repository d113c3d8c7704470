// The controller's side of the local API: the route table, the hand-over to
// the main thread, and shutting down with requests waiting.
#include <gtest/gtest.h>
#include <httplib.h>

#include <atomic>
#include <future>
#include <thread>

#include "api/mcp_routes.h"
#include "app/frm_pelw.h"
#include "test_support.h"

namespace {

// A controller started with the server switched on, on a port of its own.
// The test's thread is the main thread and must drain the queued calls.
struct TServedController {
  TTempDir dir;
  TfrmPelw form;
  int port = freeLoopbackPort();

  explicit TServedController(const std::string& options = "[MCP]\nEnableServer=true\n") {
    writeTextFile(dir.file("pw_options.ini"), options);
    form.FAppDataPath = dir.path();
    form.FApiPort = port;
    form.FormCreate({});
  }

  // Runs work on another thread while this (main) thread serves its calls.
  template <typename F>
  auto serveWhile(F work) {
    auto fut = std::async(std::launch::async, work);
    while (fut.wait_for(std::chrono::milliseconds(0)) != std::future_status::ready)
      form.mainThreadCalls().waitAndDrain(5);
    return fut.get();
  }
};

}  // namespace

TEST(McpDispatch, InfoDocumentAndUnknownEndpointsOverHttp) {
  TServedController c;
  ASSERT_NE(c.form.FMCPServer, nullptr);
  c.serveWhile([&] {
    httplib::Client cli("127.0.0.1", c.port);
    auto res = cli.Get("/");
    EXPECT_TRUE(res);
    if (!res) return 0;
    EXPECT_EQ(res->status, 200);
    EXPECT_EQ(res->body, kMcpInfoDocument);
    EXPECT_EQ(res->get_header_value("Content-Type"), "application/json; charset=utf-8");
    res = cli.Post("/paths", "", "application/json");
    EXPECT_EQ(res->status, 404);
    EXPECT_EQ(res->body, "{\"error\":\"unknown endpoint\",\"method\":\"POST\",\"path\":\"/paths\"}");
    res = cli.Get("/Paths");
    EXPECT_EQ(res->status, 404);
    res = cli.Get("/shapes/");
    EXPECT_EQ(res->status, 404);
    EXPECT_EQ(res->body, "{\"error\":\"unknown endpoint\",\"method\":\"GET\",\"path\":\"/shapes/\"}");
    return 0;
  });
}

TEST(McpDispatch, InfoDocumentIsTheFixedText) {
  EXPECT_EQ(std::string(kMcpInfoDocument),
            R"X({"name":"Pelwright MCP","phase":1,"endpoints":["GET /paths","GET /intersections","POST /ruler","GET /doc","GET /shapes/{id}","POST /shapes/line","POST /shapes/circle","POST /shapes/arc","POST /shapes/bezier","PUT /shapes/{id}","POST /shapes/stitch_hole","POST /stitch/along_path","POST /shapes/chamfer","POST /shapes/offset","POST /shapes/offset/smart","POST /shapes/smooth_chain","POST /stitch/loop","POST /doc/new","POST /viewport/fit","DELETE /shapes/{id}","DELETE /shapes (body:{ids:[...]} for bulk, no body = clear all)"]})X");
}

TEST(McpDispatch, ServerStaysOffUnlessTheOptionSaysSo) {
  for (const char* options : {"", "[MCP]\nEnableServer=0\n", "[MCP]\nEnableServer=maybe\n",
                              "[General]\nEnableServer=1\n", "\x01\x02garbage[[["}) {
    TServedController c(options);
    EXPECT_EQ(c.form.FMCPServer, nullptr) << options;
    EXPECT_FALSE(portAcceptsConnections(c.port)) << options;
  }
  TServedController on("[mcp]\nenableserver = 1\n");
  EXPECT_NE(on.form.FMCPServer, nullptr);
}

TEST(McpDispatch, APortThatIsTakenLeavesTheProgramWithoutAServer) {
  TServedController first;
  ASSERT_NE(first.form.FMCPServer, nullptr);
  TTempDir dir;
  writeTextFile(dir.file("pw_options.ini"), "[MCP]\nEnableServer=1\n");
  TfrmPelw second;
  second.FAppDataPath = dir.path();
  second.FApiPort = first.port;
  second.FormCreate({});
  EXPECT_EQ(second.FMCPServer, nullptr);
}

TEST(McpDispatch, ConcurrentClientsAllGetTheirReplies) {
  TServedController c;
  constexpr int kClients = 8, kRequests = 200;
  const int good = c.serveWhile([&] {
    std::vector<std::future<int>> clients;
    for (int k = 0; k < kClients; ++k) {
      clients.push_back(std::async(std::launch::async, [&, k] {
        httplib::Client cli("127.0.0.1", c.port);
        cli.set_keep_alive(k % 2 == 0);  // half reuse their connection
        cli.set_tcp_nodelay(true);
        int ok = 0;
        for (int i = 0; i < kRequests; ++i) {
          auto res = (i % 3 == 0) ? cli.Post("/nothing", "{}", "application/json") : cli.Get("/");
          if (!res) continue;
          if (i % 3 == 0) ok += res->status == 404 && res->body.find("\"/nothing\"") != std::string::npos;
          else ok += res->status == 200 && res->body == kMcpInfoDocument;
        }
        return ok;
      }));
    }
    int total = 0;
    for (auto& f : clients) total += f.get();
    return total;
  });
  EXPECT_EQ(good, kClients * kRequests);
}

TEST(McpDispatch, ShuttingDownAnswersOrRefusesEveryWaitingRequest) {
  auto c = std::make_unique<TServedController>();
  constexpr int kClients = 6;
  std::atomic<int> sent{0};
  std::vector<std::future<int>> clients;
  for (int k = 0; k < kClients; ++k) {
    clients.push_back(std::async(std::launch::async, [&, port = c->port] {
      httplib::Client cli("127.0.0.1", port);
      cli.set_read_timeout(5, 0);
      ++sent;
      auto res = cli.Get("/");
      if (!res) return -1;  // the connection was refused or closed
      return res->status;
    }));
  }
  // Nobody drains the queue: the requests wait for the main thread.
  while (sent < kClients) std::this_thread::sleep_for(std::chrono::milliseconds(1));
  std::this_thread::sleep_for(std::chrono::milliseconds(100));
  const auto t0 = std::chrono::steady_clock::now();
  c->form.FormDestroy();
  const auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(
                      std::chrono::steady_clock::now() - t0)
                      .count();
  EXPECT_LT(ms, 1000);
  for (auto& f : clients) {
    const int status = f.get();
    EXPECT_TRUE(status == 200 || status == 503 || status == -1) << status;
  }
  EXPECT_FALSE(portAcceptsConnections(c->port));
}
