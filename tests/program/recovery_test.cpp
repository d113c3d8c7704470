// The program killed, hung up on or handed a broken file: no work older
// than about ten seconds is lost, and no file that failed to load is
// written over.
#include <gtest/gtest.h>
#include <httplib.h>
#include <signal.h>
#include <sys/wait.h>

#include <chrono>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <thread>

#include "platform/safe_file.h"
#include "test_support.h"

namespace {

namespace fs = std::filesystem;
using std::chrono::steady_clock;

const char* const kOptions = "[MCP]\nEnableServer=1\n[Demo]\nLoadAtStartup=0\n";

// The program on a port of its own, with the application data under `home`.
struct TRun {
  int port = freeLoopbackPort();
  std::unique_ptr<TChildProcess> child;
  TRun(const TTempDir& home, std::vector<std::string> args, bool window = false) {
    args.insert(args.begin(), {"--api-port", std::to_string(port)});
    if (!window) args.insert(args.begin(), "--headless");
    child = std::make_unique<TChildProcess>(
        PELWRIGHT_BINARY, args,
        std::vector<std::string>{"XDG_DATA_HOME=" + home.path(), "XDG_RUNTIME_DIR=" + home.path(),
                                 "QT_QPA_PLATFORM=offscreen"});
    EXPECT_TRUE(waitForPort(port, 20000));
  }
  httplib::Client client() const { return httplib::Client("127.0.0.1", port); }
  bool addLine(int i) {
    const std::string x = std::to_string(i);
    auto res = client().Post("/shapes/line", "{\"x1\":" + x + ",\"y1\":0,\"x2\":" + x + ",\"y2\":10}", "application/json");
    return res && res->status == 200;
  }
  int shapeCount() {
    auto res = client().Get("/doc");
    return res ? nlohmann::json::parse(res->body).value("shapeCount", -1) : -1;
  }
  // Ends on the signal and tells whether it went with status 0.
  bool endsCleanlyOn(int sig) {
    child->signal(sig);
    int status = 0;
    return child->waitExit(15000, status) && WIFEXITED(status) && WEXITSTATUS(status) == 0;
  }
};

std::vector<std::string> autosaveFiles(const std::string& folder) {
  std::vector<std::string> out;
  for (const auto& e : fs::directory_iterator(folder))
    if (e.path().filename().string().rfind("autosave_", 0) == 0) out.push_back(e.path().string());
  return out;
}

}  // namespace

TEST(Recovery, KillsDuringSteadyEditsLoseNothingOlderThanTenSeconds) {
  TTempDir home;
  const std::string data = home.file("pelwright");
  writeTextFile(data + "/pw_options.ini", kOptions);
  int older = 0, sent = 0;
  {
    // An edit every quarter second: never the three quiet seconds the
    // autosave waits for.
    TRun first(home, {});
    std::vector<steady_clock::time_point> acknowledged;
    const auto end = steady_clock::now() + std::chrono::seconds(14);
    while (steady_clock::now() < end) {
      ASSERT_TRUE(first.addLine(sent++));
      acknowledged.push_back(steady_clock::now());
      std::this_thread::sleep_for(std::chrono::milliseconds(250));
    }
    first.child->signal(SIGKILL);
    const auto killed = steady_clock::now();
    for (const auto& t : acknowledged) older += t < killed - std::chrono::milliseconds(11500);
  }
  ASSERT_GT(older, 0);
  // An older leftover of another run: the newest file wins.
  writeTextFile(data + "/autosave_1.tmp", "{\"shapes\":[]}");
  fs::last_write_time(data + "/autosave_1.tmp", fs::file_time_type::clock::now() - std::chrono::hours(1));
  int recovered = 0;
  {
    TRun second(home, {});
    recovered = second.shapeCount();
    EXPECT_GE(recovered, older);
    EXPECT_LE(recovered, sent);
    // Killed again before it wrote anything of its own.
    second.child->signal(SIGKILL);
  }
  TRun third(home, {});
  EXPECT_EQ(third.shapeCount(), recovered);
  EXPECT_TRUE(third.endsCleanlyOn(SIGTERM));
}

TEST(Recovery, HangupAndTerminateWriteTheAutosaveWithoutAQuestion) {
  for (const bool window : {false, true}) {
    TTempDir home;
    writeTextFile(home.file("pelwright/pw_options.ini"), kOptions);
    TRun run(home, {}, window);
    ASSERT_TRUE(run.addLine(7));
    // The window asks nothing and keeps the file it wrote.
    EXPECT_TRUE(run.endsCleanlyOn(window ? SIGTERM : SIGHUP)) << (window ? "window" : "headless");
    const auto files = autosaveFiles(home.file("pelwright"));
    ASSERT_EQ(files.size(), 1u);
    EXPECT_NE(readWholeFile(files[0]).find("\"LINE\""), std::string::npos);
  }
}

TEST(Recovery, AFailedLoadIsNeverWrittenOverAndLeftoverTemporariesGo) {
  TTempDir home;
  const std::string data = home.file("pelwright");
  writeTextFile(data + "/pw_options.ini", std::string(kOptions) + "[AutoSave]\nUseAutoSave=1\n");
  const std::string truncated = "\xEF\xBB\xBF{\"meta\":{\"file_type\":\"Pelwright\"},\"shapes\":[{\"id\":\"1\",\"ty";
  writeTextFile(home.file("card.pwc"), truncated);
  const std::vector<std::string> ours = {data + "/.pw_options.ini.part123456", data + "/.autosave_5.tmp.part7",
                                         home.file(".card.pwc.part42")};
  const std::vector<std::string> others = {home.file(".other.pwc.part42"), data + "/notes.part12",
                                           data + "/.x.partabc", data + "/.y.part1234567"};
  for (const auto& f : ours) writeTextFile(f, "half");
  for (const auto& f : others) writeTextFile(f, "keep");

  TRun run(home, {home.file("card.pwc")});
  for (const auto& f : ours) EXPECT_FALSE(fs::exists(f)) << f;
  for (const auto& f : others) EXPECT_TRUE(fs::exists(f)) << f;
  ASSERT_TRUE(run.addLine(1));
  // The autosave goes to its own file, not over the project.
  const auto deadline = steady_clock::now() + std::chrono::seconds(20);
  while (autosaveFiles(data).empty() && steady_clock::now() < deadline)
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
  EXPECT_EQ(autosaveFiles(data).size(), 1u);
  EXPECT_EQ(readWholeFile(home.file("card.pwc")), truncated);
  EXPECT_TRUE(run.endsCleanlyOn(SIGTERM));
  EXPECT_EQ(readWholeFile(home.file("card.pwc")), truncated);
}
