// The dye mixer: colours predicted for recipes on natural leather, and
// recipes searched for wanted colours.
#include <gtest/gtest.h>

#include <cmath>

#include "simulators/dye_mixer.h"

namespace {

const TDyeRGB kLeather{187, 142, 123};

TEST(DyeMixer, TablesAreAnchoredOnTheOneLeather) {
  EXPECT_EQ(dyeBaseColour().RGB, kLeather);
  EXPECT_EQ(dyePigmentList(TDyeSystem::dsREN).size(), 10u);
  EXPECT_EQ(dyePigmentList(TDyeSystem::dsCrafters).size(), 10u);
  EXPECT_EQ(dyePigmentList(TDyeSystem::dsREN).front()->Id, "navy_blue");
  const TDyePigment* diluent = findDyePigment(TDyeSystem::dsCrafters, "diluent");
  ASSERT_NE(diluent, nullptr);
  EXPECT_EQ(diluent->RGB, kLeather);
  EXPECT_EQ(findDyePigment(TDyeSystem::dsREN, "natural")->LabelEn, "Diluent");
  // Lemon yellow is redder than the leather: its red strength is negative.
  const TDyePigment* lemon = findDyePigment(TDyeSystem::dsREN, "lemon_yellow");
  EXPECT_LT(lemon->KOverS[0], 0);
  EXPECT_GT(lemon->KOverS[2], 0);
  // A chart swatch is the dye thinned one to one: mixed so, it comes back.
  for (const TDyeSystem sys : {TDyeSystem::dsREN, TDyeSystem::dsCrafters})
    for (const TDyePigment* p : dyePigmentList(sys))
      EXPECT_EQ(dyeForwardMix(dyeWithDilution({{p->Id, 3}}, sys, 2.0), sys).RGB, p->RGB) << p->Id;
}

TEST(DyeMixer, NoDyeGivesTheLeatherAndDilutionAddsDiluent) {
  for (const TDyeSystem sys : {TDyeSystem::dsREN, TDyeSystem::dsCrafters}) {
    EXPECT_EQ(dyeForwardMix({}, sys).RGB, kLeather);
    EXPECT_EQ(dyeForwardMix({{dyeDiluentId(sys), 2.5}}, sys).RGB, kLeather);
    EXPECT_EQ(dyeForwardMix({{"no_such_dye", 1}}, sys).RGB, kLeather);
  }
  const std::vector<TDyeRecipeEntry> recipe{{"navy_blue", 1}, {"wine_red", 3}};
  EXPECT_EQ(dyeWithDilution(recipe, TDyeSystem::dsREN, 1.0).size(), 2u);
  const auto thinned = dyeWithDilution(recipe, TDyeSystem::dsREN, 2.5);
  ASSERT_EQ(thinned.size(), 3u);
  EXPECT_EQ(thinned[2].PigmentId, "natural");
  EXPECT_DOUBLE_EQ(thinned[2].Weight, 6.0);
  // Thinner is lighter, every channel.
  const TDyeMix pure = dyeForwardMix(recipe, TDyeSystem::dsREN), thin = dyeForwardMix(thinned, TDyeSystem::dsREN);
  for (int c = 0; c < 3; ++c) EXPECT_GT(thin.Linear[c], pure.Linear[c]);
  EXPECT_EQ(dyeHexText({187, 142, 11}), "#bb8e0b");
}

TEST(DyeMixer, SearchFindsAMixItCanMakeAndTheLeatherIsAllDiluent) {
  // A colour mixed from two dyes and diluent is found again, nearly exactly.
  const TDyeRGB target =
      dyeForwardMix({{"sky_blue", 0.2}, {"banana_yellow", 0.3}, {"natural", 0.5}}, TDyeSystem::dsREN).RGB;
  const TInverseResults found = dyeInverseSearch(target, TDyeSystem::dsREN, true);
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(found[i].K, i + 2);
    ASSERT_TRUE(found[i].HasResult);
    EXPECT_LT(found[i].DeltaE, 1.0);
    EXPECT_EQ(found[i].Recipe.size(), size_t(i + 2));
    EXPECT_FALSE(found[i].OutOfGamut);
  }
  EXPECT_NEAR(found[0].Dilution, 2.0, 0.1);
  double sum = 0;
  for (const auto& e : found[0].Recipe) sum += e.Fraction;
  EXPECT_NEAR(sum, 1.0, 1e-9);

  const TInverseResults leather = dyeInverseSearch(kLeather, TDyeSystem::dsREN, true);
  ASSERT_TRUE(leather[0].HasResult);
  EXPECT_EQ(leather[0].PredictedRGB, kLeather);
  EXPECT_DOUBLE_EQ(leather[0].Dilution, 1.0);
  for (const auto& e : leather[0].Recipe) EXPECT_EQ(e.Fraction, 0.0);
  // Without diluent there is nothing to mix the bare leather from.
  EXPECT_FALSE(dyeInverseSearch(kLeather, TDyeSystem::dsCrafters, false)[1].HasResult);
}

TEST(DyeMixer, ATargetDarkerThanAnyMixIsOutOfGamutWithItsDistance) {
  const TDyeRGB black{0, 0, 0};
  for (const bool diluent : {true, false}) {
    const TInverseResults r = dyeInverseSearch(black, TDyeSystem::dsREN, diluent);
    for (const TInverseResult& k : r) {
      ASSERT_TRUE(k.HasResult);
      EXPECT_TRUE(k.OutOfGamut);
      EXPECT_DOUBLE_EQ(k.Dilution, 1.0);
      EXPECT_GT(k.DeltaE, 5.0);
      EXPECT_DOUBLE_EQ(k.DeltaE, dyeDeltaE(k.PredictedRGB, black));
    }
  }
}

TEST(DyeMixer, ColoursAndAmountsFromTheUser) {
  TDyeRGB rgb{};
  for (const auto& [text, want] : {std::pair{"#1a2B3c", TDyeRGB{26, 43, 60}}, {" 1a2b3c ", {26, 43, 60}},
                                   {"#abc", {170, 187, 204}}, {"10, 20,30", {10, 20, 30}}, {"0 0 255", {0, 0, 255}}}) {
    ASSERT_TRUE(parseDyeColour(text, rgb)) << text;
    EXPECT_EQ(rgb, want) << text;
  }
  rgb = {1, 2, 3};
  for (const char* bad : {"", "#12345", "abc", "#ggg000", "256,0,0", "1,2", "1,2,3,4", "-1 0 0", "1.5 2 3", "red"})
    EXPECT_FALSE(parseDyeColour(bad, rgb)) << bad;
  EXPECT_EQ(rgb, (TDyeRGB{1, 2, 3}));

  EXPECT_EQ(checkDyeRecipe({{"navy", 0}, {"red", 1000}}, 1), "");
  EXPECT_EQ(checkDyeRecipe({{"navy", -0.1}}, 1), "dye_bad_amount");
  EXPECT_EQ(checkDyeRecipe({{"navy", std::nan("")}}, 1), "dye_bad_amount");
  EXPECT_EQ(checkDyeRecipe({{"navy", 1}}, 0.5), "dye_bad_dilution");
  EXPECT_EQ(checkDyeRecipe({{"navy", 1}}, 101), "dye_bad_dilution");
}

}  // namespace
