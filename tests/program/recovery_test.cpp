// The program killed in the middle of work and started again: the autosave
// file of the first run brings the drawing back, renamed "delete_anytime"
// while it loads.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>

#include <chrono>
#include <filesystem>
#include <thread>

#include "platform/safe_file.h"
#include "test_support.h"

namespace {

namespace fs = std::filesystem;

const char* const kWork =
    "\xEF\xBB\xBF{\"shapes\":[{\"id\":\"1\",\"type\":\"LINE\",\"sp\":[0,0],\"ep\":[42,0],\"ct\":[21,0],\"w\":\"0\","
    "\"h\":\"0\",\"color\":\"Aqua\",\"dash\":\"Solid\",\"path\":\"M0,0 L42,0\",\"rt\":\"0\",\"st\":\"\","
    "\"inv\":\"0\",\"bz1\":[0,0],\"bz2\":[0,0],\"thk\":\"1.5\",\"la\":\"0\",\"lb\":\"0\",\"iv\":\"0\","
    "\"ih\":\"-1\",\"sta\":\"0\",\"swa\":\"0\",\"guid\":\"{11111111-2222-3333-4444-555555555555}\"}]}";

std::vector<std::string> filesStartingWith(const std::string& folder, const std::string& prefix) {
  std::vector<std::string> out;
  std::error_code ec;
  for (const auto& e : fs::directory_iterator(folder, ec)) {
    const std::string n = e.path().filename().string();
    if (n.rfind(prefix, 0) == 0) out.push_back(e.path().string());
  }
  return out;
}

// Waits until an autosave file appears that holds the work.
std::string waitForAutosave(const std::string& folder, int timeoutMs, const std::string& except = {}) {
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
  while (std::chrono::steady_clock::now() < deadline) {
    for (const auto& f : filesStartingWith(folder, "autosave_")) {
      if (f == except) continue;
      std::string text;
      try {
        text = readWholeFile(f);
      } catch (...) {
        continue;
      }
      if (text.find("{11111111-2222-3333-4444-555555555555}") != std::string::npos) return f;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
  }
  return {};
}

std::unique_ptr<TChildProcess> startHeadless(const TTempDir& home) {
  return std::make_unique<TChildProcess>(
      PELWRIGHT_BINARY, std::vector<std::string>{"--headless", "--api-port", std::to_string(freeLoopbackPort())},
      std::vector<std::string>{"XDG_DATA_HOME=" + home.path(), "XDG_RUNTIME_DIR=" + home.path()});
}

TEST(Recovery, KilledMidWorkThenStartedAgainBringsTheDrawingBack) {
  TTempDir home;
  const std::string data = home.file("pelwright");
  // Unsaved work that the first run takes over (it counts as changed).
  writeTextFile(data + "/autosave_1.tmp", kWork);
  auto first = startHeadless(home);
  const std::string written = waitForAutosave(data, 20000, data + "/autosave_1.tmp");
  ASSERT_FALSE(written.empty()) << "the first run wrote no autosave file";
  EXPECT_FALSE(fs::exists(data + "/autosave_1.tmp"));
  first->signal(SIGKILL);
  int status = 0;
  ASSERT_TRUE(first->waitExit(5000, status));
  EXPECT_TRUE(WIFSIGNALED(status));
  ASSERT_TRUE(fs::exists(written));

  auto second = startHeadless(home);
  // The second run takes the file, renames it, loads it and deletes it;
  // its own autosave then holds the same drawing again.
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
  while (fs::exists(written) && std::chrono::steady_clock::now() < deadline)
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
  EXPECT_FALSE(fs::exists(written));
  const std::string again = waitForAutosave(data, 20000, written);
  ASSERT_FALSE(again.empty());
  EXPECT_NE(again, written);
  EXPECT_TRUE(filesStartingWith(data, "delete_anytime").empty());
  fs::remove(again);
  // Ended by a signal, it writes its unsaved work without a question.
  second->signal(SIGTERM);
  ASSERT_TRUE(second->waitExit(10000, status));
  ASSERT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 0);
  EXPECT_TRUE(fs::exists(again));
  EXPECT_NE(readWholeFile(again).find("{11111111-2222-3333-4444-555555555555}"), std::string::npos);
}

}  // namespace
