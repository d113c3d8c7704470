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
  for (const char* options : {"[mcp]\nenableserver = 1\n", "[MCP]\nEnableServer=-1\n", "[MCP]\nEnableServer=True\n"}) {
    TServedController on(options);
    EXPECT_NE(on.form.FMCPServer, nullptr) << options;
  }
}
