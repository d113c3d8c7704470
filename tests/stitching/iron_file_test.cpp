// The user's iron file: its exact form, round trips, old files, the one-time
// upgrade with the newer built-in irons, and damaged files.
#include <gtest/gtest.h>

#include <unistd.h>

#include <string>

#include "stitching/iron_file.h"
#include "stitching/system_irons.h"
#include "test_support.h"

TEST(IronFile, ExactTextAndRoundTrip) {
  TTempDir dir;
  const std::string file = dir.file(kPrickingIronFileName);
  TPrickingIronGroups one;
  TPrickingIronGroup* g = one.addNewUserGroup();
  g->FPrickingIron->FName = "Mine";
  g->FPrickingIron->FPitch = 3.5f;
  g->addPrickingIron(4);
  EXPECT_EQ(prickingIronFileText(one),
            "\xEF\xBB\xBF{\n  \"meta\": {\n    \"file_type\": \"Pelwright_PrickingIronGroups\",\n"
            "    \"version\": \"3.6.1\"\n  },\n  \"pricking_iron_groups\": [\n    {\n"
            "      \"iron\": {\n        \"nm\": \"Mine\",\n        \"bt\": \"F\",\n"
            "        \"p\": \"3.5\",\n        \"w\": \"1.0\",\n        \"h\": \"2.0\",\n"
            "        \"a\": \"45.0\"\n      },\n      \"blades\": [\n        1,\n        4\n"
            "      ],\n      \"system_iron\": false\n    }\n  ]\n}\n");

  TPrickingIronGroups list;
  list.append(buildSystemIronGroups("ja"));
  TPrickingIronGroup* mine = list.addNewUserGroup();
  mine->FPrickingIron->FName = "Ünïcode \"quoted\"";
  mine->FAvailableBlades = {1, 8, 3};
  list.move(20, 5);
  writePrickingIronFile(file, list);
  TPrickingIronGroups back;
  const TIronStartup st = loadPrickingIronsAtStartup(back, file, "en");
  EXPECT_EQ(st.FState, TIronFileState::Read);
  EXPECT_TRUE(st.FMessage.empty());
  ASSERT_EQ(back.Count(), 21u);
  EXPECT_EQ(back[5]->FAvailableBlades, (std::vector<int>{1, 8, 3}));
  EXPECT_FALSE(back[5]->FIsSystemGroup);
  EXPECT_TRUE(back[6]->FIsSystemGroup);
  EXPECT_EQ(prickingIronFileText(back), readTextFile(file));
}

TEST(IronFile, OldFileGainsTheSixNewIronsOnceAtTheEnd) {
  TTempDir dir;
  const std::string file = dir.file(kPrickingIronFileName);
  writeTextFile(file, R"({"meta": {"version": "2.0.8"}, "pricking_iron_groups": [
      {"iron": {"nm": "My diamond", "bt": "D", "p": "3,5", "w": "0.7"}, "blades": [1, 7]},
      {"iron": {"nm": "Diamond 3mm", "bt": "D", "p": "3"}, "system_iron": true}]})");
  TPrickingIronGroups list;
  const TIronStartup st = loadPrickingIronsAtStartup(list, file, "en");
  ASSERT_EQ(list.Count(), 2u);
  EXPECT_EQ(list[0]->FPrickingIron->FPitch, 3.5f);
  bool newSet = false;
  addNewSystemIronsOnce(list, st, newSet, "en");
  EXPECT_TRUE(newSet);
  ASSERT_EQ(list.Count(), 8u);
  EXPECT_EQ(list[1]->FPrickingIron->FName, "Diamond 3mm");
  EXPECT_EQ(list[2]->FPrickingIron->FName, "Diamond 4.5mm");
  EXPECT_EQ(list[7]->FPrickingIron->FName, "French 5/32 inch");

  // Saved, and started again with the option now set: nothing more.
  writePrickingIronFile(file, list);
  TPrickingIronGroups again;
  addNewSystemIronsOnce(again, loadPrickingIronsAtStartup(again, file, "en"), newSet, "en");
  EXPECT_EQ(again.Count(), 8u);

  // No file, or a file without groups: the whole table and no rows on top.
  for (const char* text : {"", R"({"pricking_iron_groups":{}})"}) {
    if (*text) {
      writeTextFile(file, text);
    } else {
      ::unlink(file.c_str());
    }
    TPrickingIronGroups fresh;
    bool flag = false;
    addNewSystemIronsOnce(fresh, loadPrickingIronsAtStartup(fresh, file, "en"), flag, "en");
    EXPECT_EQ(fresh.Count(), 20u);
    EXPECT_TRUE(flag);
  }
}

TEST(IronFile, DamagedFileIsNamedKeptAsideAndLeavesTheDefaults) {
  TTempDir dir;
  const std::string file = dir.file(kPrickingIronFileName);
  for (const char* text : {"", "{\"pricking_iron_groups\": [", "[1, 2]",
                           R"({"pricking_iron_groups":[{"iron":{"bt":"D","p":"3"}}, 7]})",
                           R"({"pricking_iron_groups":[{"blades":[1,2]}]})",
                           R"({"pricking_iron_groups":[{"iron":{"p":"three"}}]})"}) {
    writeTextFile(file, text);
    TPrickingIronGroups list;
    TIronStartup st;
    ASSERT_NO_THROW(st = loadPrickingIronsAtStartup(list, file, "en")) << text;
    EXPECT_EQ(st.FState, TIronFileState::Damaged) << text;
    EXPECT_NE(st.FMessage.find("\"" + file + "\""), std::string::npos) << st.FMessage;
    EXPECT_EQ(list.Count(), 20u) << text;
    EXPECT_EQ(readTextFile(file), text);
    if (*text) {
      EXPECT_EQ(readTextFile(file + ".damaged"), text);
    }
    bool newSet = false;
    addNewSystemIronsOnce(list, st, newSet, "en");
    EXPECT_EQ(list.Count(), 20u);
  }
}

TEST(IronFile, FailedWriteNamesTheFileAndLeavesNothing) {
  TTempDir dir;
  TPrickingIronGroups list;
  list.append(buildSystemIronGroups("en"));
  const std::string nowhere = dir.file("missing/") + kPrickingIronFileName;
  try {
    writePrickingIronFile(nowhere, list);
    FAIL() << "no error";
  } catch (const std::runtime_error& e) {
    EXPECT_NE(std::string(e.what()).find(nowhere), std::string::npos) << e.what();
  }
}
