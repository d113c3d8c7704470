// The sample project through the program itself: --write-sample writes the
// checked-in file byte for byte, and --headless opens it fitted to its
// stand-in canvas.
#include <gtest/gtest.h>
#include <httplib.h>
#include <signal.h>
#include <sys/wait.h>

#include <filesystem>

#include "platform/safe_file.h"
#include "test_support.h"

namespace {

const std::string kSampleFile = std::string(PELWRIGHT_SOURCE_DIR) + "/resources/samples/card_holder.pwc";

int runProgram(const std::vector<std::string>& args, const std::string& home) {
  TChildProcess child(PELWRIGHT_BINARY, args, {"XDG_DATA_HOME=" + home, "XDG_RUNTIME_DIR=" + home});
  int status = 0;
  if (!child.waitExit(60000, status)) return -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

}  // namespace

TEST(SampleProgram, WriteSampleGivesTheCheckedInFile) {
  // The checked-in sample is what the builder draws today: a change to the
  // builder or to the file writer shows here, not in a silently stale file.
  TTempDir home;
  ASSERT_EQ(runProgram({"--write-sample", home.file("card_holder.pwc")}, home.path()), 0);
  EXPECT_EQ(readWholeFile(home.file("card_holder.pwc")), readWholeFile(kSampleFile))
      << "regenerate with: build/pelwright --write-sample resources/samples/card_holder.pwc";
  ASSERT_EQ(runProgram({"--write-sample-ja", home.file("card_holder_ja.pwc")}, home.path()), 0);
  EXPECT_EQ(readWholeFile(home.file("card_holder_ja.pwc")), readWholeFile(kSampleFile.substr(0, kSampleFile.size() - 4) + "_ja.pwc"))
      << "regenerate with: build/pelwright --write-sample-ja resources/samples/card_holder_ja.pwc";
  // Nothing else was touched: no options file, no application data.
  EXPECT_FALSE(std::filesystem::exists(home.file("pelwright")));
  EXPECT_NE(runProgram({"--write-sample", home.file("no/such/folder/x.pwc")}, home.path()), 0);
}

TEST(SampleProgram, HeadlessOpensTheSampleAndFitsIt) {
  TTempDir home;
  writeTextFile(home.file("pelwright/pw_options.ini"), "[MCP]\nEnableServer=1\n");
  const int port = freeLoopbackPort();
  TChildProcess app(PELWRIGHT_BINARY, {"--headless", "--api-port", std::to_string(port), kSampleFile},
                    {"XDG_DATA_HOME=" + home.path(), "XDG_RUNTIME_DIR=" + home.path()});
  ASSERT_TRUE(waitForPort(port, 10000));
  httplib::Client cli("127.0.0.1", port);
  auto res = cli.Post("/viewport/fit", "", "application/json");
  ASSERT_TRUE(res);
  EXPECT_EQ(res->body, "{\"ok\":true,\"scale\":5.8,\"offsetX\":24,\"offsetY\":24}");
  res = cli.Get("/doc");
  ASSERT_TRUE(res);
  EXPECT_EQ(res->body.rfind("{\"shapeCount\":158,\"layerCount\":1,", 0), 0u) << res->body;
  app.signal(SIGTERM);
  int status = 0;
  ASSERT_TRUE(app.waitExit(5000, status));
  EXPECT_TRUE(WIFEXITED(status));
}
