// The user's iron file: its exact form, round trips, old files, the one-time
// upgrade with the newer built-in irons, and damaged files.
#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <string>

#include "stitching/iron_file.h"
#include "stitching/system_irons.h"
#include "test_support.h"

namespace {

bool exists(const std::string& f) {
  struct stat st {};
  return ::stat(f.c_str(), &st) == 0;
}

std::vector<std::string> names(const TPrickingIronGroups& list) {
  std::vector<std::string> out;
  for (const auto& g : list) out.push_back(g->FPrickingIron->FName);
  return out;
}

// Two user groups as an older version wrote them: no new rows, numbers as
// text, one pitch with a decimal comma.
const char* kOldFile = "\xEF\xBB\xBF" R"({
  "meta": {"file_type": "Pelwright_PrickingIronGroups", "version": "2.0.8"},
  "pricking_iron_groups": [
    {"iron": {"nm": "My diamond", "bt": "D", "p": "3,5", "w": "0.7", "h": "2.1", "a": "30"},
     "blades": [1, 2, 7], "system_iron": false},
    {"iron": {"nm": "菱目 3mm", "bt": "D", "p": "3", "w": "0.6", "h": "2.2", "a": "32"},
     "blades": [1, 2, 5, 10], "system_iron": true}
  ]
})";

}  // namespace

TEST(IronFile, ExactText) {
  TPrickingIronGroups list;
  TPrickingIronGroup* g = list.addNewUserGroup();
  g->FPrickingIron->FName = "Mine";
  g->FPrickingIron->FBladeType = "R";
  g->FPrickingIron->FPitch = 3.5f;
  g->addPrickingIron(4);
  EXPECT_EQ(prickingIronFileText(list), "\xEF\xBB\xBF"
                                        R"({
  "meta": {
    "file_type": "Pelwright_PrickingIronGroups",
    "version": "3.6.1"
  },
  "pricking_iron_groups": [
    {
      "iron": {
        "nm": "Mine",
        "bt": "R",
        "p": "3.5",
        "w": "1.0",
        "h": "2.0",
        "a": "45.0"
      },
      "blades": [
        1,
        4
      ],
      "system_iron": false
    }
  ]
}
)");
}

TEST(IronFile, RoundTripKeepsEveryFieldAndTheOrder) {
  TTempDir dir;
  const std::string file = dir.file(kPrickingIronFileName);
  TPrickingIronGroups list;
  list.append(buildSystemIronGroups("ja"));
  TPrickingIronGroup* mine = list.addNewUserGroup();
  mine->FPrickingIron->FName = "Ünïcode \"quoted\" iron";
  mine->FPrickingIron->FPitch = 2.7f;
  mine->FPrickingIron->FAngle = -12.5f;
  mine->FAvailableBlades = {1, 8, 3};
  list.move(20, 5);
  writePrickingIronFile(file, list);

  TPrickingIronGroups back;
  const TIronStartup st = loadPrickingIronsAtStartup(back, file, "en");
  EXPECT_EQ(st.FState, TIronFileState::Read);
  EXPECT_TRUE(st.FGroupsRead);
  EXPECT_TRUE(st.FMessage.empty());
  ASSERT_EQ(back.Count(), list.Count());
  for (size_t i = 0; i < list.Count(); ++i) {
    EXPECT_EQ(back[i]->toJsonObject(), list[i]->toJsonObject()) << i;
    EXPECT_EQ(back[i]->FIsSystemGroup, list[i]->FIsSystemGroup) << i;
  }
  EXPECT_EQ(back[5]->FAvailableBlades, (std::vector<int>{1, 8, 3}));
  EXPECT_EQ(back[5]->FPrickingIron->FPitch, 2.7f);
  // And written again, the same text.
  EXPECT_EQ(prickingIronFileText(back), readTextFile(file));
}

TEST(IronFile, NoFileGivesTheWholeTableAndNoUpgradeOnTop) {
  TTempDir dir;
  TPrickingIronGroups list;
  const TIronStartup st = loadPrickingIronsAtStartup(list, dir.file(kPrickingIronFileName), "en");
  EXPECT_EQ(st.FState, TIronFileState::Missing);
  EXPECT_FALSE(st.FGroupsRead);
  EXPECT_EQ(list.Count(), 20u);
  bool newSet = false;
  addNewSystemIronsOnce(list, st, newSet, "en");
  EXPECT_EQ(list.Count(), 20u);
  EXPECT_TRUE(newSet);
}

TEST(IronFile, OldFileGainsTheSixNewIronsOnceAtTheEnd) {
  TTempDir dir;
  const std::string file = dir.file(kPrickingIronFileName);
  writeTextFile(file, kOldFile);

  TPrickingIronGroups list;
  const TIronStartup st = loadPrickingIronsAtStartup(list, file, "en");
  ASSERT_EQ(st.FState, TIronFileState::Read);
  ASSERT_EQ(list.Count(), 2u);
  EXPECT_EQ(list[0]->FPrickingIron->FPitch, 3.5f);
  EXPECT_EQ(list[0]->FPrickingIron->FWidth, 0.7f);
  EXPECT_FALSE(list[0]->FIsSystemGroup);
  EXPECT_TRUE(list[1]->FIsSystemGroup);

  bool newSet = false;  // the option was never written by the old version
  addNewSystemIronsOnce(list, st, newSet, "en");
  EXPECT_TRUE(newSet);
  EXPECT_EQ(names(list), (std::vector<std::string>{
                             "My diamond", "菱目 3mm", "Diamond 4.5mm", "Diamond 5mm",
                             "Diamond 1/8 inch", "Diamond 5/32 inch", "French 1/8 inch",
                             "French 5/32 inch"}));
  EXPECT_TRUE(list[7]->FIsSystemGroup);

  // Saved and started again with the option now set: nothing more is added.
  writePrickingIronFile(file, list);
  TPrickingIronGroups again;
  const TIronStartup st2 = loadPrickingIronsAtStartup(again, file, "en");
  addNewSystemIronsOnce(again, st2, newSet, "en");
  EXPECT_EQ(again.Count(), 8u);
}

TEST(IronFile, GroupsWithoutAListReadAsNone) {
  TTempDir dir;
  const std::string file = dir.file(kPrickingIronFileName);
  for (const char* text : {R"({"meta":{}})", R"({"pricking_iron_groups":{}})",
                           R"({"pricking_iron_groups":[]})"}) {
    writeTextFile(file, text);
    TPrickingIronGroups list;
    const TIronStartup st = loadPrickingIronsAtStartup(list, file, "en");
    EXPECT_EQ(st.FState, TIronFileState::Read) << text;
    EXPECT_FALSE(st.FGroupsRead) << text;
    EXPECT_EQ(list.Count(), 20u) << text;  // the built-in table instead
  }
}

TEST(IronFile, DamagedFileIsNamedKeptAsideAndLeavesTheDefaults) {
  TTempDir dir;
  const std::string file = dir.file(kPrickingIronFileName);
  for (const char* text :
       {"", "{\"pricking_iron_groups\": [", "[1, 2]", "\xEF\xBB\xBF plain words",
        R"({"pricking_iron_groups":[{"iron":{"bt":"D","p":"3"}}, 7]})",
        R"({"pricking_iron_groups":[{"blades":[1,2]}]})",
        R"({"pricking_iron_groups":[{"iron":{"bt":"D","p":"three"}}]})",
        R"({"pricking_iron_groups":[{"iron":{"bt":"D","p":"0"}}]})"}) {
    writeTextFile(file, text);
    ::unlink((file + ".damaged").c_str());
    TPrickingIronGroups list;
    TIronStartup st;
    ASSERT_NO_THROW(st = loadPrickingIronsAtStartup(list, file, "en")) << text;
    EXPECT_EQ(st.FState, TIronFileState::Damaged) << text;
    EXPECT_FALSE(st.FGroupsRead);
    EXPECT_NE(st.FMessage.find("\"" + file + "\""), std::string::npos) << st.FMessage;
    EXPECT_EQ(list.Count(), 20u) << text;
    EXPECT_EQ(list[0]->FPrickingIron->FName, "Diamond 3mm");
    EXPECT_EQ(readTextFile(file), text);  // the file itself is not touched at start
    if (*text) {
      EXPECT_EQ(readTextFile(file + ".damaged"), text);
      EXPECT_NE(st.FMessage.find(".damaged"), std::string::npos);
    }
    bool newSet = false;
    addNewSystemIronsOnce(list, st, newSet, "en");
    EXPECT_EQ(list.Count(), 20u);
  }
}

TEST(IronFile, WriteIsAtomicAndFailsNamingTheFile) {
  TTempDir dir;
  const std::string file = dir.file(kPrickingIronFileName);
  TPrickingIronGroups list;
  list.append(buildSystemIronGroups("en"));
  writePrickingIronFile(file, list);
  const std::string before = readTextFile(file);

  const std::string nowhere = dir.file("missing/folder/") + kPrickingIronFileName;
  try {
    writePrickingIronFile(nowhere, list);
    FAIL() << "no error";
  } catch (const std::runtime_error& e) {
    EXPECT_NE(std::string(e.what()).find(nowhere), std::string::npos) << e.what();
  }
  EXPECT_FALSE(exists(nowhere));
  EXPECT_EQ(readTextFile(file), before);
}
