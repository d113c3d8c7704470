// Irons, groups, the built-in table, names by language and the toolbox edits.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "app/multi_lang.h"
#include "stitching/iron_groups.h"
#include "stitching/system_irons.h"

using json = nlohmann::ordered_json;

TEST(PrickingIron, JsonFormsAndTolerantReading) {
  TPrickingIron i;
  i.FBladeType = "D";
  i.FPitch = 3.38f;
  EXPECT_EQ(i.toJsonObjectFull().dump(),
            R"({"nm":"Unknown","bt":"D","p":"3.38000011444092","w":"1.0","h":"2.0","a":"45.0"})");
  EXPECT_EQ(i.toJsonObjectMinimal().dump(), R"({"bt":"D","p":"3.38000011444092"})");
  TPrickingIron back;
  back.loadJson(i.toJsonObjectFull());
  EXPECT_EQ(back.FPitch, 3.38f);  // exact through its text form

  TPrickingIron h;
  h.loadJson(json::parse(R"({"bt":"L","p":"3,5","w":0.4})"));
  EXPECT_EQ(h.FPitch, 3.5f);
  EXPECT_EQ(h.FWidth, 0.4f);
  EXPECT_EQ(h.FHeight, 2.0f);  // absent: kept

  for (const char* bad : {R"({"p":"abc"})", R"({"p":"0"})", R"({"p":"inf"})", R"({"w":"-1"})",
                          R"({"nm":5})"}) {
    TPrickingIron k;
    k.FName = "kept";
    EXPECT_THROW(k.loadJson(json::parse(bad)), std::runtime_error) << bad;
    EXPECT_EQ(k.FName, "kept") << bad;
  }
}

TEST(PrickingIronGroup, BladeCountsSortedWhenAddedNotWhenRead) {
  TPrickingIronGroup g;
  g.addPrickingIron(9);
  g.addPrickingIron(2);
  g.addPrickingIron(9);
  EXPECT_EQ(g.FAvailableBlades, (std::vector<int>{1, 2, 9}));

  TPrickingIronGroup r;
  r.loadJson(json::parse(R"({"iron":{"bt":"D","p":"4"},"blades":[6,2,"4",2,0,2.5,1]})"));
  EXPECT_EQ(r.FAvailableBlades, (std::vector<int>{1, 6, 2, 4}));
  EXPECT_FALSE(r.FIsSystemGroup);
  EXPECT_THROW(r.loadJson(json::parse(R"({"iron":"D 3mm"})")), std::runtime_error);
}

TEST(SystemIrons, NamesFollowTheLanguage) {
  EXPECT_EQ(ironNameForLanguage("菱目 3mm", "en"), "Diamond 3mm");
  EXPECT_EQ(ironNameForLanguage("平目3mm", "fr"), "Flat 3mm");
  EXPECT_EQ(ironNameForLanguage("Round 5mm", "ja"), "丸目 5mm");
  EXPECT_EQ(ironNameForLanguage("Diamond 3mm", "en"), "Diamond 3mm");
  EXPECT_EQ(ironNameForLanguage("Flat Flat", "ja"), "平目 Flat");  // first occurrence only
  EXPECT_EQ(ironNameForLanguage("a    b", "en"), "a  b");         // one pass over pairs

  TPrickingIronGroups list;
  list.append(buildSystemIronGroups("en"));
  list.renameForLanguage("ja");
  EXPECT_EQ(list[8]->FPrickingIron->FName, "ヨーロッパ目 3mm");
  list.renameForLanguage("ru");
  EXPECT_EQ(list[8]->FPrickingIron->FName, "French 3mm");
  EXPECT_EQ(bladeCountCaption(*list[8], 5), "French 3mm(5)");
}

TEST(PrickingIronGroups, SystemGroupsStayAndIronsOutliveTheirGroup) {
  TPrickingIronGroups list;
  list.append(buildSystemIronGroups("en"));
  EXPECT_FALSE(list.deleteGroup(0));
  TPrickingIronGroup* mine = list.addNewUserGroup();
  mine->FPrickingIron->FName = "Mine";
  TPrickingIron* borrowed = mine->FPrickingIron.get();  // as a hole holds it
  list.move(20, 0);
  EXPECT_EQ(list.indexOf(mine), 0);
  EXPECT_TRUE(list.deleteGroup(0));
  EXPECT_EQ(list.Count(), 20u);
  EXPECT_EQ(borrowed->FName, "Mine");
}

TEST(PrickingIronGroups, IronOfAHoleExactThenLooseElseUnknown) {
  TPrickingIronGroups list;
  list.append(buildSystemIronGroups("en"));
  EXPECT_EQ(list.findIron("D", 3.38f), list[1]->FPrickingIron.get());
  EXPECT_EQ(list.findIron("f", 3.1751f), list[12]->FPrickingIron.get());
  EXPECT_EQ(list.findIron("D", 3.97f), list[7]->FPrickingIron.get());
  EXPECT_EQ(list.findIron("L", 3.38f), nullptr);

  TPrickingIron* unknown = list.ironForHole("D", 3.5f);
  EXPECT_EQ(unknown->FName, "Unknown 3.5mm");
  EXPECT_EQ(unknown->FAngle, 32.0f);  // blade defaults keep the slant of old holes
  EXPECT_EQ(list.ironForHole("D", 3.5f), unknown);
  EXPECT_EQ(list.Count(), 20u);
}

TEST(IronToolbox, BladeCountFieldAndApply) {
  std::vector<int> counts{42};
  EXPECT_EQ(parseBladeCounts("2 5 5", counts), "");
  EXPECT_EQ(counts, (std::vector<int>{1, 2, 5}));
  EXPECT_EQ(parseBladeCounts("  10  4 1 ", counts), "");
  EXPECT_EQ(counts, (std::vector<int>{1, 10, 4}));
  counts = {42};
  for (const char* bad : {"2 five", "2.5", "2,5", "99999999999999"})
    EXPECT_EQ(parseBladeCounts(bad, counts), "bladeformaterror") << bad;
  EXPECT_EQ(parseBladeCounts("2 0", counts), "bladeformaterror2");
  EXPECT_EQ(parseBladeCounts("-4", counts), "bladeformaterror2");
  EXPECT_EQ(counts, std::vector<int>{42});

  auto groups = buildSystemIronGroups("en");
  TPrickingIronGroup& g = *groups[0];
  EXPECT_EQ(applyIronEdit(g, {"Wide", "D", 1.0f, 2.5f, 30.0f, 3.2f, "4 2 4"}), "");
  EXPECT_EQ(g.FPrickingIron->FPitch, 3.2f);
  EXPECT_EQ(g.FAvailableBlades, (std::vector<int>{1, 4, 2}));
  EXPECT_EQ(applyIronEdit(g, {"Changed", "F", 1, 1, 1, 1, "3 x"}), "bladeformaterror");
  EXPECT_EQ(g.FPrickingIron->FName, "Wide");

  TMultiLang lang;
  lang.addTranslation("en", "OK2DeletePrickingIron", "Are you sure to delete ");
  lang.addTranslation("ja", "OK2DeletePrickingIron", "を削除しますか");
  EXPECT_EQ(deleteIronQuestion(lang, "en", "Mine"), "Are you sure to delete Mine");
  EXPECT_EQ(deleteIronQuestion(lang, "ja", "Mine"), "Mineを削除しますか?");
}
