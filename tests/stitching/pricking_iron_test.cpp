// Irons, groups, the built-in table, names by language and the toolbox edits.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "app/multi_lang.h"
#include "stitching/iron_groups.h"
#include "stitching/pricking_iron.h"
#include "stitching/system_irons.h"

using json = nlohmann::ordered_json;

// ---- the iron and its blade ----

TEST(PrickingIron, NewIronCloneAndJsonForms) {
  TPrickingIron i;
  EXPECT_EQ(i.FBladeType, "F");
  EXPECT_EQ(i.FPitch, 4.0f);
  EXPECT_EQ(i.FWidth, 1.0f);
  EXPECT_EQ(i.FHeight, 2.0f);
  EXPECT_EQ(i.FAngle, 45.0f);
  EXPECT_EQ(i.FName, "Unknown");

  i.FName = "Diamond 3.38mm";
  i.FBladeType = "D";
  i.FPitch = 3.38f;
  i.FWidth = 0.6f;
  EXPECT_EQ(i.toJsonObjectFull().dump(),
            R"({"nm":"Diamond 3.38mm","bt":"D","p":"3.38000011444092","w":"0.600000023841858",)"
            R"("h":"2.0","a":"45.0"})");
  EXPECT_EQ(i.toJsonObjectMinimal().dump(), R"({"bt":"D","p":"3.38000011444092"})");

  auto c = i.Clone();
  EXPECT_EQ(c->toJsonObjectFull(), i.toJsonObjectFull());
  TPrickingIron back;
  back.loadJson(i.toJsonObjectFull());
  EXPECT_EQ(back.FPitch, 3.38f);  // the float survives its text form exactly
  EXPECT_EQ(back.FWidth, 0.6f);
  EXPECT_EQ(back.FName, "Diamond 3.38mm");
}

TEST(PrickingIron, LoadToleratesHandWrittenNumbers) {
  TPrickingIron i;
  i.loadJson(json::parse(R"({"bt":"L","p":"3,5","w":0.4,"a":"-10"})"));
  EXPECT_EQ(i.FBladeType, "L");
  EXPECT_EQ(i.FPitch, 3.5f);
  EXPECT_EQ(i.FWidth, 0.4f);
  EXPECT_EQ(i.FHeight, 2.0f);  // absent: kept
  EXPECT_EQ(i.FAngle, -10.0f);
  EXPECT_EQ(i.FName, "Unknown");
}

TEST(PrickingIron, LoadRefusesNumbersItCannotUseAndKeepsTheIron) {
  for (const char* bad : {R"({"p":"abc"})", R"({"p":"0"})", R"({"p":"-3"})", R"({"p":"inf"})",
                          R"({"w":"-1"})", R"({"a":"nan"})", R"({"nm":5})", R"([1,2])"}) {
    TPrickingIron i;
    i.FName = "kept";
    EXPECT_THROW(i.loadJson(json::parse(bad)), std::runtime_error) << bad;
    EXPECT_EQ(i.FName, "kept") << bad;
    EXPECT_EQ(i.FPitch, 4.0f) << bad;
  }
}

TEST(PrickingIron, BladeDefaultsAndLookups) {
  struct Row {
    const char* letter;
    float w, h, a;
    int index;
  };
  for (const Row& r : {Row{"D", 0.8f, 2.2f, 32, 0}, Row{"F", 0.25f, 2.0f, 45, 1},
                       Row{"L", 0.3f, 2.0f, 0, 2}, Row{"R", 1.0f, 1.0f, 0, 3},
                       Row{"d", 0.8f, 2.2f, 32, 0}, Row{"X", 1.2f, 1.2f, 0, -1},
                       Row{"", 1.2f, 1.2f, 0, -1}}) {
    float w = -1, h = -1, a = -1;
    bladeDefaults(r.letter, w, h, a);
    EXPECT_EQ(w, r.w) << r.letter;
    EXPECT_EQ(h, r.h) << r.letter;
    EXPECT_EQ(a, r.a) << r.letter;
    EXPECT_EQ(bladeTypeIndex(r.letter), r.index) << r.letter;
  }
  EXPECT_EQ(bladeTypeLetter(0), "D");
  EXPECT_EQ(bladeTypeLetter(3), "R");
  EXPECT_EQ(bladeTypeLetter(4), "");
  EXPECT_EQ(bladeTypeLetter(-1), "");
  EXPECT_EQ(bladeTypeLabel("F", "ja"), "ヨーロッパ目");
  EXPECT_EQ(bladeTypeLabel("F", "de"), "French");
  EXPECT_EQ(bladeTypeLabel("Q", "en"), "");
}

// ---- groups ----

TEST(PrickingIronGroup, BladeCountsSortedWhenAddedButNotWhenRead) {
  TPrickingIronGroup g;
  EXPECT_EQ(g.FAvailableBlades, std::vector<int>{1});
  EXPECT_FALSE(g.FIsSystemGroup);
  g.addPrickingIron(9);
  g.addPrickingIron(2);
  g.addPrickingIron(9);
  EXPECT_EQ(g.FAvailableBlades, (std::vector<int>{1, 2, 9}));

  TPrickingIronGroup r;
  r.loadJson(json::parse(R"({"iron":{"bt":"D","p":"4"},"blades":[6,2,"4",2,0,2.5,"x",1]})"));
  // Whole counts of 1 or more, each once, in file order after the 1.
  EXPECT_EQ(r.FAvailableBlades, (std::vector<int>{1, 6, 2, 4}));
  EXPECT_FALSE(r.FIsSystemGroup);
  r.loadJson(json::parse(R"({"iron":{},"system_iron":true})"));
  EXPECT_TRUE(r.FIsSystemGroup);

  EXPECT_EQ(g.toJsonObject().dump(),
            R"({"iron":{"nm":"Unknown","bt":"F","p":"4.0","w":"1.0","h":"2.0","a":"45.0"},)"
            R"("blades":[1,2,9],"system_iron":false})");
}

TEST(PrickingIronGroup, RefusesAGroupWithoutAnIronObject) {
  TPrickingIronGroup g;
  EXPECT_THROW(g.loadJson(json::parse(R"({"blades":[2]})")), std::runtime_error);
  EXPECT_THROW(g.loadJson(json::parse(R"({"iron":"D 3mm"})")), std::runtime_error);
  EXPECT_THROW(g.loadJson(json::parse(R"({"iron":{},"system_iron":"maybe"})")),
               std::runtime_error);
}

// ---- the built-in table ----

TEST(SystemIrons, TableInOrderWithNamesPitchesAndBlades) {
  const auto groups = buildSystemIronGroups("en");
  ASSERT_EQ(groups.size(), 20u);
  std::vector<std::string> names;
  for (const auto& g : groups) {
    EXPECT_TRUE(g->FIsSystemGroup);
    names.push_back(g->FPrickingIron->FName);
  }
  EXPECT_EQ(names, (std::vector<std::string>{
                       "Diamond 3mm", "Diamond 3.38mm", "Diamond 3.85mm", "Diamond 4mm",
                       "Diamond 4.5mm", "Diamond 5mm", "Diamond 1/8 inch", "Diamond 5/32 inch",
                       "French 3mm", "French 3.38mm", "French 3.85mm", "French 4mm",
                       "French 1/8 inch", "French 5/32 inch", "Flat 3mm", "Flat 4mm", "Flat 5mm",
                       "Round 3mm", "Round 4mm", "Round 5mm"}));

  // The two finest diamonds have narrow blades; the others the defaults.
  EXPECT_EQ(groups[0]->FPrickingIron->FWidth, 0.6f);
  EXPECT_EQ(groups[1]->FPrickingIron->FWidth, 0.6f);
  EXPECT_EQ(groups[2]->FPrickingIron->FWidth, 0.8f);
  EXPECT_EQ(groups[2]->FPrickingIron->FHeight, 2.2f);
  EXPECT_EQ(groups[2]->FPrickingIron->FAngle, 32.0f);
  EXPECT_EQ(groups[9]->FPrickingIron->FWidth, 0.25f);
  EXPECT_EQ(groups[15]->FPrickingIron->FBladeType, "L");
  EXPECT_EQ(groups[19]->FPrickingIron->FWidth, 1.0f);

  // Inch irons hold their pitch exactly.
  EXPECT_EQ(groups[6]->FPrickingIron->FPitch, 3.175f);
  EXPECT_EQ(groups[7]->FPrickingIron->FPitch, 3.96875f);
  EXPECT_EQ(double(groups[7]->FPrickingIron->FPitch), 25.4 * 5 / 32);

  EXPECT_EQ(groups[0]->FAvailableBlades, (std::vector<int>{1, 2, 5, 10}));
  EXPECT_EQ(groups[2]->FAvailableBlades, (std::vector<int>{1, 2, 5, 9}));
  EXPECT_EQ(groups[3]->FAvailableBlades, (std::vector<int>{1, 2, 4, 6}));
  EXPECT_EQ(groups[11]->FAvailableBlades, (std::vector<int>{1, 2, 5, 9}));
  EXPECT_EQ(groups[13]->FAvailableBlades, (std::vector<int>{1, 2, 4, 6}));
}

TEST(SystemIrons, NewRowsAndJapaneseNames) {
  const auto added = buildSystemIronGroups("ja", true);
  std::vector<std::string> names;
  for (const auto& g : added) names.push_back(g->FPrickingIron->FName);
  EXPECT_EQ(names, (std::vector<std::string>{"菱目 4.5mm", "菱目 5mm", "菱目 1/8 inch",
                                             "菱目 5/32 inch", "ヨーロッパ目 1/8 inch",
                                             "ヨーロッパ目 5/32 inch"}));
}

TEST(SystemIrons, NamesFollowTheLanguage) {
  EXPECT_EQ(ironNameForLanguage("菱目 3mm", "en"), "Diamond 3mm");
  EXPECT_EQ(ironNameForLanguage("ヨーロッパ目 4mm", "fr"), "French 4mm");
  EXPECT_EQ(ironNameForLanguage("平目3mm", "en"), "Flat 3mm");
  EXPECT_EQ(ironNameForLanguage("Diamond 3mm", "ja"), "菱目 3mm");
  EXPECT_EQ(ironNameForLanguage("Round 5mm", "ja"), "丸目 5mm");
  // Already in the language, or a name of the user's own: unchanged.
  EXPECT_EQ(ironNameForLanguage("Diamond 3mm", "en"), "Diamond 3mm");
  EXPECT_EQ(ironNameForLanguage("My Vergez 3.85", "ja"), "My Vergez 3.85");
  // Only the first occurrence of each word is replaced.
  EXPECT_EQ(ironNameForLanguage("Flat Flat", "ja"), "平目 Flat");
  // The blank collapse is one pass over pairs of blanks.
  EXPECT_EQ(ironNameForLanguage("a    b", "en"), "a  b");

  TPrickingIronGroups list;
  list.append(buildSystemIronGroups("en"));
  list.renameForLanguage("ja");
  EXPECT_EQ(list[0]->FPrickingIron->FName, "菱目 3mm");
  EXPECT_EQ(list[19]->FPrickingIron->FName, "丸目 5mm");
  list.renameForLanguage("ru");
  EXPECT_EQ(list[0]->FPrickingIron->FName, "Diamond 3mm");
  EXPECT_EQ(list[8]->FPrickingIron->FName, "French 3mm");
}

// ---- the list ----

TEST(PrickingIronGroups, SystemGroupsSurviveDeleteAndIronsOutliveTheirGroup) {
  TPrickingIronGroups list;
  list.append(buildSystemIronGroups("en"));
  EXPECT_FALSE(list.deleteGroup(0));
  EXPECT_EQ(list.Count(), 20u);

  TPrickingIronGroup* mine = list.addNewUserGroup();
  mine->FPrickingIron->FName = "Mine";
  TPrickingIron* borrowed = mine->FPrickingIron.get();  // as a hole holds it
  EXPECT_EQ(list.indexOf(mine), 20);
  EXPECT_EQ(list.groupOfIron(borrowed), mine);
  list.move(20, 0);
  EXPECT_EQ(list.indexOf(mine), 0);
  EXPECT_TRUE(list.deleteGroup(0));
  EXPECT_EQ(list.Count(), 20u);
  EXPECT_EQ(borrowed->FName, "Mine");  // still alive for the holes
  EXPECT_EQ(list.groupOfIron(borrowed), nullptr);
  EXPECT_FALSE(list.deleteGroup(99));
}

TEST(PrickingIronGroups, FindsTheIronOfAHoleExactlyThenLoosely) {
  TPrickingIronGroups list;
  list.append(buildSystemIronGroups("en"));
  EXPECT_EQ(list.findIron("D", 3.38f), list[1]->FPrickingIron.get());
  EXPECT_EQ(list.findIron("F", 3.175f), list[12]->FPrickingIron.get());
  // Loose: any case, the pitch to 1/100 mm.
  EXPECT_EQ(list.findIron("f", 3.1751f), list[12]->FPrickingIron.get());
  EXPECT_EQ(list.findIron("D", 3.97f), list[7]->FPrickingIron.get());
  EXPECT_EQ(list.findIron("D", 3.5f), nullptr);
  EXPECT_EQ(list.findIron("L", 3.38f), nullptr);

  TPrickingIron* unknown = list.ironForHole("D", 3.5f);
  ASSERT_NE(unknown, nullptr);
  EXPECT_EQ(unknown->FName, "Unknown 3.5mm");
  EXPECT_EQ(unknown->FBladeType, "D");
  EXPECT_EQ(unknown->FAngle, 32.0f);  // the blade's defaults, so holes keep their slant
  EXPECT_EQ(list.ironForHole("D", 3.5f), unknown);
  EXPECT_EQ(list.Count(), 20u);  // not added to the user's list
  EXPECT_EQ(list.ironForHole("R", 4.0f), list[18]->FPrickingIron.get());
}

TEST(PrickingIronGroups, TreeCaptions) {
  TPrickingIronGroups list;
  list.append(buildSystemIronGroups("en"));
  EXPECT_EQ(ironGroupCaption(*list[3]), "Diamond 4mm");
  EXPECT_EQ(bladeCountCaption(*list[3], 6), "Diamond 4mm(6)");
}

// ---- the toolbox ----

TEST(IronToolbox, BladeCountField) {
  std::vector<int> counts{42};
  EXPECT_EQ(parseBladeCounts("2 5 5", counts), "");
  EXPECT_EQ(counts, (std::vector<int>{1, 2, 5}));
  EXPECT_EQ(parseBladeCounts("  10  4 1 ", counts), "");
  EXPECT_EQ(counts, (std::vector<int>{1, 10, 4}));
  EXPECT_EQ(parseBladeCounts("", counts), "");
  EXPECT_EQ(counts, std::vector<int>{1});

  counts = {42};
  EXPECT_EQ(parseBladeCounts("2 five", counts), "bladeformaterror");
  EXPECT_EQ(parseBladeCounts("2.5", counts), "bladeformaterror");
  EXPECT_EQ(parseBladeCounts("2,5", counts), "bladeformaterror");
  EXPECT_EQ(parseBladeCounts("99999999999999", counts), "bladeformaterror");
  EXPECT_EQ(parseBladeCounts("2 0", counts), "bladeformaterror2");
  EXPECT_EQ(parseBladeCounts("-4", counts), "bladeformaterror2");
  EXPECT_EQ(counts, std::vector<int>{42});  // untouched on a refusal
}

TEST(IronToolbox, ApplyEditsEvenASystemGroupAndRefusesBadCounts) {
  auto groups = buildSystemIronGroups("en");
  TPrickingIronGroup& g = *groups[0];
  TIronEdit e{"Wide diamond", "D", 1.0f, 2.5f, 30.0f, 3.2f, "4 2 4"};
  EXPECT_EQ(applyIronEdit(g, e), "");
  EXPECT_EQ(g.FPrickingIron->FName, "Wide diamond");
  EXPECT_EQ(g.FPrickingIron->FWidth, 1.0f);
  EXPECT_EQ(g.FPrickingIron->FPitch, 3.2f);
  EXPECT_EQ(g.FAvailableBlades, (std::vector<int>{1, 4, 2}));
  EXPECT_TRUE(g.FIsSystemGroup);

  TIronEdit bad = e;
  bad.FName = "changed";
  bad.FNumOfBlades = "3 x";
  EXPECT_EQ(applyIronEdit(g, bad), "bladeformaterror");
  EXPECT_EQ(g.FPrickingIron->FName, "Wide diamond");
  EXPECT_EQ(g.FAvailableBlades, (std::vector<int>{1, 4, 2}));
}

TEST(IronToolbox, DeleteQuestionPutsTheNameByLanguage) {
  TMultiLang lang;
  lang.addTranslation("en", "OK2DeletePrickingIron", "Are you sure to delete ");
  lang.addTranslation("ja", "OK2DeletePrickingIron", "を削除しますか");
  EXPECT_EQ(deleteIronQuestion(lang, "en", "Mine"), "Are you sure to delete Mine");
  EXPECT_EQ(deleteIronQuestion(lang, "ja", "Mine"), "Mineを削除しますか?");
  EXPECT_STREQ(kCannotDeleteSystemIronKey, "CannotDeleteSystePrickingIrons");
}
