// The card holder sample as a real project file: the checked-in file is the
// builder's drawing, it goes through the program's load and save unchanged,
// it ships as the demo project, and --headless fits it to a canvas of its own.
#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>

#include "app/command_line.h"
#include "app/demo_projects.h"
#include "platform/safe_file.h"
#include "app/sample_card_holder.h"
#include "app/sample_project_file.h"
#include "document/json_text_writer.h"
#include "document/shape_list.h"
#include "document/shape_normalise.h"
#include "program_fixture.h"
#include "stitching/iron_groups.h"
#include "stitching/system_irons.h"

namespace fs = std::filesystem;

namespace {

const std::string kSampleFile = std::string(PELWRIGHT_SOURCE_DIR) + "/resources/samples/card_holder.pwc";

// A shape as the file holds it, less what the builder cannot know: its
// random identifier, and the outline of a text with the size and centre
// measured from it (the glyphs come from the window's text layout, which
// these tests run without).
nlohmann::json comparable(const TPW_Path& s) {
  TJsonTextWriter w;
  s.toJson(w);
  nlohmann::json j = nlohmann::json::parse(w.text());
  j.erase("guid");
  if (s.FShapeType == "TEXT")
    for (const char* measured : {"path", "ct", "w", "h"}) j.erase(measured);
  return j;
}

}  // namespace

TEST(SampleProjectFile, CheckedInFileLoadsToTheBuildersShapes) {
  TPrickingIronGroups irons;
  irons.append(buildSystemIronGroups("en"));
  TShapeList built(nullptr, "en");
  buildCardHolderSample(built, irons.findIron(kCardHolderIronBlade, kCardHolderIronPitch));
  for (const auto& shape : built) normaliseLine(*shape);

  TProgram p;
  TfrmPelw& f = p.start({kSampleFile});
  EXPECT_TRUE(p.dialogs.FMessages.empty());
  EXPECT_EQ(f.FFilename, kSampleFile);
  EXPECT_FALSE(f.PathList->FIsChanged);
  ASSERT_EQ(f.PathList->Count(), built.Count());
  int texts = 0;
  for (size_t i = 0; i < built.Count(); ++i) {
    const TPW_Path& loaded = *(*f.PathList)[i];
    SCOPED_TRACE("shape " + std::to_string(i) + " " + loaded.FShapeType);
    EXPECT_EQ(comparable(loaded), comparable(*built[i]));
    EXPECT_EQ(loaded.FGUID.toString(), cardHolderSampleGuidText(loaded.FID));
    if (loaded.FShapeType == "TEXT") {
      ++texts;
      EXPECT_GT(loaded.FData.points().size(), 20u);  // the letters' outlines came with the file
    }
    if (loaded.FShapeType == "S_HOLE") {
      ASSERT_NE(loaded.FPrickingIron, nullptr);  // the user's own 3.85 mm diamond iron
      EXPECT_EQ(loaded.FPrickingIron, f.FPrickingIronGroups.findIron("D", 3.85f));
    }
  }
  EXPECT_EQ(texts, 4);
}

TEST(SampleProjectFile, TheJapaneseDemoIsTheSampleInJapanese) {
  TProgram p;
  TfrmPelw& f = p.start({std::string(PELWRIGHT_SOURCE_DIR) + "/resources/samples/card_holder_ja.pwc"});
  EXPECT_EQ(f.PathList->GetLayerName(0), "レイヤー 1");
  std::vector<std::string> texts;
  for (const auto& s : *f.PathList)
    if (s->FShapeType == "TEXT") texts.push_back(s->FText);
  ASSERT_EQ(texts.size(), 4u);
  EXPECT_EQ(texts[0], "カードケース 本体 1枚");
  TProgram en;
  EXPECT_EQ(en.start({kSampleFile}).PathList->GetLayerName(0), "Layer 1") << "named from the phrase table";
}

TEST(SampleProjectFile, SavingItAgainGivesTheSameBytes) {
  const std::string original = readWholeFile(kSampleFile);
  ASSERT_EQ(original.rfind("\xEF\xBB\xBF{\"meta\":{\"file_type\":\"Pelwright\",\"version\":\"3.6.1\"", 0), 0u);
  TProgram p;
  TfrmPelw& f = p.start({kSampleFile});
  f.FFilename = p.file("again.pwc");
  ASSERT_TRUE(f.saveProject());
  // The file holds no time or other field that changes by itself.
  EXPECT_EQ(readWholeFile(p.file("again.pwc")), original);
  // And what was saved opens to the same file once more.
  p.stop();
  TfrmPelw& g = p.start({p.file("again.pwc")});
  g.FFilename = p.file("third.pwc");
  ASSERT_TRUE(g.saveProject());
  EXPECT_EQ(readWholeFile(p.file("third.pwc")), original);
}

// ---- the demo project ----

TEST(DemoProjects, ShippedFilesAreCopiedWhereMissingOrOlder) {
  TTempDir dir;
  const std::string shipped = dir.file("exe/demo"), target = dir.file("data/demo");
  EXPECT_EQ(deployDemoProjects(shipped, target), 0);  // nothing shipped
  EXPECT_FALSE(fs::exists(target));
  writeTextFile(shipped + "/demo_2.0.8_en.pwc", "shipped en");
  writeTextFile(shipped + "/demo_2.0.8_ja.pwc", "shipped ja");
  writeTextFile(shipped + "/notes.txt", "not a project");
  EXPECT_EQ(deployDemoProjects(shipped, target), 2);
  EXPECT_EQ(readWholeFile(target + "/demo_2.0.8_en.pwc"), "shipped en");
  EXPECT_FALSE(fs::exists(target + "/notes.txt"));
  // The user saved the demo since: it is newer than the shipped one and stays.
  writeTextFile(target + "/demo_2.0.8_en.pwc", "the user's own");
  EXPECT_EQ(deployDemoProjects(shipped, target), 0);
  EXPECT_EQ(readWholeFile(target + "/demo_2.0.8_en.pwc"), "the user's own");
  // A newer program ships a newer demo.
  fs::last_write_time(target + "/demo_2.0.8_ja.pwc", fs::file_time_type::clock::now() - std::chrono::hours(24));
  writeTextFile(shipped + "/demo_2.0.8_ja.pwc", "shipped ja, newer");
  EXPECT_EQ(deployDemoProjects(shipped, target), 1);
  EXPECT_EQ(readWholeFile(target + "/demo_2.0.8_ja.pwc"), "shipped ja, newer");
  EXPECT_EQ(readWholeFile(target + "/demo_2.0.8_en.pwc"), "the user's own");
}

TEST(DemoProjects, TheSampleOpensAsTheDemoInAWindowOnly) {
  TProgram p;
  writeTextFile(p.file("exe/demo/demo_2.0.8_en.pwc"), readWholeFile(kSampleFile));
  p.demoSource = p.file("exe/demo");
  // Headless: no demo, and nothing copied for one.
  TfrmPelw& h = p.start({}, true);
  EXPECT_TRUE(h.PathList->empty());
  EXPECT_FALSE(fs::exists(p.appData() + "/demo"));
  p.stop();
  TfrmPelw& f = p.start({}, false);
  EXPECT_TRUE(p.dialogs.FMessages.empty());
  EXPECT_EQ(f.FFilename, p.appData() + "/demo/demo_2.0.8_en.pwc");
  EXPECT_EQ(f.PathList->Count(), 33u + 80u + 45u);
  EXPECT_FALSE(f.PathList->FIsChanged);
  p.stop();
  // A project on the command line comes instead of the demo.
  writeTextFile(p.file("mine.pwc"), "{}");
  TfrmPelw& g = p.start({p.file("mine.pwc")}, false);
  EXPECT_EQ(g.FFilename, p.file("mine.pwc"));
  EXPECT_TRUE(g.PathList->empty());
}

TEST(DemoProjects, AMissingDemoIsStillSaidOnce) {
  // Japanese is not shipped in this folder: the language's file is missing.
  TProgram p;
  writeTextFile(p.file("exe/demo/demo_2.0.8_en.pwc"), readWholeFile(kSampleFile));
  p.seed("pw_options.ini", "[General]\nLangID=ja\n");
  p.demoSource = p.file("exe/demo");
  TfrmPelw& f = p.start({}, false);
  ASSERT_EQ(p.dialogs.FMessages.size(), 1u);
  EXPECT_EQ(p.dialogs.FMessages[0], "Demo project file not found.");
  EXPECT_TRUE(f.PathList->empty());
}
