// The program itself, started as a user or a script would start it.
#include <gtest/gtest.h>
#include <httplib.h>
#include <signal.h>
#include <sys/wait.h>

#include <atomic>
#include <cstdio>
#include <fstream>
#include <future>
#include <sstream>

#include "api/mcp_routes.h"
#include "api/mcp_server.h"
#include "test_support.h"

namespace {

struct THeadless {
  TTempDir home;
  int port = freeLoopbackPort();
  std::unique_ptr<TChildProcess> child;

  explicit THeadless(const std::string& options) {
    if (!options.empty()) writeTextFile(home.file("pelwright/pw_options.ini"), options);
    child = std::make_unique<TChildProcess>(
        PELWRIGHT_BINARY, std::vector<std::string>{"--headless", "--api-port", std::to_string(port)},
        std::vector<std::string>{"XDG_DATA_HOME=" + home.path(), "XDG_RUNTIME_DIR=" + home.path()});
  }
};

// Local addresses of the listening TCP sockets on the port, as the kernel
// lists them ("0100007F" is 127.0.0.1).
std::vector<std::string> listeningAddresses(int port) {
  std::vector<std::string> out;
  for (const char* table : {"/proc/net/tcp", "/proc/net/tcp6"}) {
    std::ifstream in(table);
    std::string line;
    std::getline(in, line);
    while (std::getline(in, line)) {
      std::istringstream ss(line);
      std::string slot, local, remote, state;
      ss >> slot >> local >> remote >> state;
      const size_t colon = local.rfind(':');
      if (state != "0A" || colon == std::string::npos) continue;
      if (std::stoi(local.substr(colon + 1), nullptr, 16) == port) out.push_back(local.substr(0, colon));
    }
  }
  return out;
}

std::string runAndCapture(const std::string& command, int& exitCode) {
  std::string out;
  FILE* p = popen(command.c_str(), "r");
  char buf[512];
  while (p && fgets(buf, sizeof buf, p)) out += buf;
  const int status = p ? pclose(p) : -1;
  exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  return out;
}

}  // namespace

TEST(Headless, ServesTheInfoDocumentOnLoopbackOnly) {
  THeadless app("[MCP]\nEnableServer=1\n");
  ASSERT_TRUE(waitForPort(app.port, 10000));
  httplib::Client cli("127.0.0.1", app.port);
  auto res = cli.Get("/");
  ASSERT_TRUE(res);
  EXPECT_EQ(res->status, 200);
  EXPECT_EQ(res->body, kMcpInfoDocument);
  res = cli.Options("/anything");
  ASSERT_TRUE(res);
  EXPECT_EQ(res->status, 204);
  EXPECT_EQ(res->body, "");
  EXPECT_EQ(listeningAddresses(app.port), std::vector<std::string>{"0100007F"});
  app.child->signal(SIGTERM);
  int status = 0;
  ASSERT_TRUE(app.child->waitExit(5000, status));
  EXPECT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 0);
}

TEST(Headless, TerminatingWhileRequestsAreInFlightAnswersOrRefusesThemAll) {
  THeadless app("[MCP]\nEnableServer=true\n");
  ASSERT_TRUE(waitForPort(app.port, 10000));
  std::atomic<bool> stop{false};
  std::atomic<int> answered{0};
  std::vector<std::future<int>> clients;
  for (int k = 0; k < 8; ++k) {
    clients.push_back(std::async(std::launch::async, [&] {
      httplib::Client cli("127.0.0.1", app.port);
      cli.set_connection_timeout(2, 0);
      cli.set_read_timeout(3, 0);
      int malformed = 0;
      while (!stop) {
        auto res = cli.Get("/");
        if (!res) continue;  // refused or closed: the server is going away
        ++answered;
        const bool ok = (res->status == 200 && res->body == kMcpInfoDocument) ||
                        (res->status == 503 && res->body.rfind("{\"error\":", 0) == 0);
        malformed += !ok;
      }
      return malformed;
    }));
  }
  while (answered < 200) std::this_thread::sleep_for(std::chrono::milliseconds(1));
  const auto t0 = std::chrono::steady_clock::now();
  app.child->signal(SIGTERM);
  int status = 0;
  const bool ended = app.child->waitExit(5000, status);
  const auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(
                      std::chrono::steady_clock::now() - t0)
                      .count();
  stop = true;
  for (auto& c : clients) EXPECT_EQ(c.get(), 0);
  ASSERT_TRUE(ended);
  EXPECT_TRUE(WIFEXITED(status));
  EXPECT_LT(ms, 1500);  // well within a second normally; generous for a loaded machine
  EXPECT_FALSE(portAcceptsConnections(app.port));
}

TEST(Headless, HelpAndBadOptions) {
  int code = -1;
  const std::string help = runAndCapture(std::string(PELWRIGHT_BINARY) + " --help", code);
  EXPECT_EQ(code, 0);
  EXPECT_NE(help.find("--headless"), std::string::npos);
  EXPECT_NE(help.find("--api-port"), std::string::npos);
  const std::string bad =
      runAndCapture(std::string(PELWRIGHT_BINARY) + " --headless --api-port 99999 2>&1", code);
  EXPECT_EQ(code, 2);
  EXPECT_NE(bad.find("--api-port"), std::string::npos);
}

TEST(Headless, ATakenPortIsSaidAndEndsIt) {
  TTempDir home;
  writeTextFile(home.file("pelwright/pw_options.ini"), "[MCP]\nEnableServer=1\n");
  TPWMCPServer holder(freeLoopbackPort(), nullptr);
  holder.Start();
  const std::string port = std::to_string(holder.boundPort());
  int code = -1;
  const std::string err = runAndCapture("XDG_DATA_HOME=" + home.path() + " timeout -s KILL 30 " + PELWRIGHT_BINARY +
                                            " --headless --api-port " + port + " 2>&1",
                                        code);
  EXPECT_EQ(code, 1);
  EXPECT_NE(err.find("pelwright: Local API not started, the port is in use: 127.0.0.1:" + port), std::string::npos)
      << err;
}
