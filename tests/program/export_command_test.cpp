// The conversion command through the program itself: what it refuses, what
// it leaves behind, and a project written out again.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>

#include "app/safe_file.h"
#include "exchange_program.h"
#include "test_support.h"

TEST(ExportCommand, RefusesWhatItDoesNotKnowAndLeavesNoFile) {
  TTempDir home;
  const std::string out = home.file("out.svg");
  // An unknown option is refused with the usage in every mode, before any window.
  for (const auto& args : std::vector<std::vector<std::string>>{
           {"--bogus"}, {"--headless", "--frobnicate"}, {"--export", out, "--bogus", kCardHolderFile},
           {"--export", out, "--dxf-version", "R14", kCardHolderFile},  // a DXF option for SVG
           {"--export", home.file("o.dxf"), "--dxf-version", "R13", kCardHolderFile},
           {"--export", out},
           {"--export", out, kCardHolderFile, kCardHolderFile}}) {
    const TProgramRun r = runPelwright(args, home);
    EXPECT_EQ(r.status, 2) << args.back();
    EXPECT_NE(r.err.find("Usage: pelwright"), std::string::npos) << r.err;
  }
  // Unknown extension, missing input, unreadable input: one line, status 1.
  writeTextFile(home.file("broken.pwc"), "{\"shapes\":[{");
  writeTextFile(home.file("notes.txt"), "hello");
  for (const auto& [output, input] : std::vector<std::pair<std::string, std::string>>{
           {home.file("out.xyz"), kCardHolderFile}, {out, home.file("absent.pwc")},
           {out, home.file("broken.pwc")}, {out, home.file("notes.txt")}, {home.file("broken.pwc"), home.file("broken.pwc")}}) {
    const TProgramRun r = runPelwright({"--export", output, input}, home);
    EXPECT_EQ(r.status, 1) << input;
    EXPECT_EQ(std::count(r.err.begin(), r.err.end(), '\n'), 1) << r.err;
    EXPECT_EQ(r.err.rfind("pelwright: ", 0), 0u) << r.err;
  }
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(home.path()), {}), 2) << "only the inputs";
  EXPECT_EQ(readWholeFile(home.file("broken.pwc")), "{\"shapes\":[{");
}

TEST(ExportCommand, WritesAProjectAgainAndTouchesNothingElse) {
  TTempDir home;
  const std::string input = home.file("in.pwc");
  std::filesystem::copy_file(kCardHolderFile, input);
  const auto stamp = std::filesystem::last_write_time(input);
  const TProgramRun r = runPelwright({"--export", home.file("again.PWC"), input}, home);
  ASSERT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.err, "");
  EXPECT_EQ(readWholeFile(home.file("again.PWC")), readWholeFile(kCardHolderFile));
  EXPECT_EQ(std::filesystem::last_write_time(input), stamp);
  // No options, no autosave, no folders of the application data.
  EXPECT_FALSE(std::filesystem::exists(home.file("pelwright")));
}
