#include <gtest/gtest.h>

#include "app/multi_lang.h"
#include "document/intersections.h"
#include "document/shape_list.h"

namespace {

std::unique_ptr<TPW_Path> shape(int id, int groupId = 0) {
  auto s = std::make_unique<TPW_Path>(0, claWhite, 0.5f, TStrokeDash::Solid, id);
  s->FGroupID = groupId;
  return s;
}

struct ShapeListTest : ::testing::Test {
  TMultiLang lang;
  ShapeListTest() {
    lang.addTranslation("en", "lblLayerCaption", "Layer");
    lang.addTranslation("ja", "lblLayerCaption", "レイヤー");
  }
};

}  // namespace

TEST_F(ShapeListTest, NewListHasOneVisibleLayerNamedFromThePhrases) {
  TShapeList list(&lang, "ja");
  ASSERT_EQ(list.FLayers, std::vector<int>{0});
  EXPECT_TRUE(list.GetlayerVisible(0));
  EXPECT_FALSE(list.GetIsIndependentLayer(0));
  EXPECT_EQ(list.GetLayerName(0), "レイヤー 1");
  EXPECT_EQ(list.FPrintTarget.size(), 1u);
  EXPECT_EQ(list.FPrintOffset.size(), 1u);
  EXPECT_EQ(list.FPrintScalePos.size(), 1u);
  EXPECT_EQ(list.getNextID(), 1);
}

TEST_F(ShapeListTest, LayerIdentifiersAreTheirOwnSequence) {
  TShapeList list(&lang, "en");
  EXPECT_EQ(list.addLayer(-1, "ignored", false), 1);
  EXPECT_TRUE(list.GetlayerVisible(1));  // a new layer is always visible
  EXPECT_EQ(list.GetLayerName(1), "Layer 2");
  EXPECT_EQ(list.addLayer(7, "Lining", false), 7);
  EXPECT_FALSE(list.GetlayerVisible(7));
  EXPECT_EQ(list.addLayer(-1, "", true), 8);
  for (int id : std::vector<int>(list.FLayers)) list.deleteLayer(id);
  EXPECT_TRUE(list.FLayers.empty());
  EXPECT_EQ(list.addLayer(-1, "", true), 0);
}

TEST_F(ShapeListTest, RestoreLayersGivesOrphansALayer) {
  TShapeList list(&lang, "en");
  list.add(shape(1), 0);
  list.add(shape(2), 2);
  list.add(shape(3), 2);
  list.restoreLayers();
  EXPECT_EQ(list.FLayers, (std::vector<int>{0, 2}));
  EXPECT_EQ(list.GetLayerName(2), "Layer 3");
  EXPECT_TRUE(list.GetlayerVisible(2));
}

TEST_F(ShapeListTest, IdentifiersComeFromOneCounter) {
  TShapeList list(&lang, "en");
  list.add(shape(3), 0);
  list.add(shape(10, 900), 0);
  list.updateLastID();
  EXPECT_EQ(list.FLastID, 900);
  EXPECT_EQ(list.getNextID(), 901);
  list.clearAll();  // an emptied document keeps counting upward
  EXPECT_EQ(list.Count(), 0u);
  EXPECT_EQ(list.getNextID(), 902);
  EXPECT_EQ(list.FLayers, std::vector<int>{0});
}

TEST_F(ShapeListTest, ClearAllResetsTheDocumentState) {
  TShapeList list(&lang, "en");
  list.FMemo = "lining in goat";
  list.FIsChanged = true;
  list.FLastChangeTime = 45000.5;
  list.FPrintTarget = {true, false};
  list.FPrintOffset = {TPointF(), TPointF(200, 0)};
  list.FPrintScalePos = {0, 1};
  list.addLayer(-1, "", true);
  auto s = shape(1);
  s->FAlwaysShowStitchSimulator = true;
  list.add(std::move(s), 1);
  list.countNumOfAlwaysShowStitchSimulator();
  EXPECT_EQ(list.FNumAlwaysShowStitchSimulator, 1);
  list.clearAll();
  EXPECT_EQ(list.FMemo, "");
  EXPECT_FALSE(list.FIsChanged);
  EXPECT_EQ(list.FLastChangeTime, 0.0);
  EXPECT_EQ(list.FPrintTarget, std::vector<bool>{true});
  EXPECT_EQ(list.FNumAlwaysShowStitchSimulator, 0);
  EXPECT_EQ(list.FLayers, std::vector<int>{0});
}

TEST(Intersections, SameCrossingOfTheSamePairIsStoredOnce) {
  auto a = shape(1), b = shape(2), c = shape(3);
  TIntersections list;
  auto first = std::make_unique<TIntersection>(TPointF(1, 1), a.get(), b.get());
  EXPECT_EQ(list.Add(first), 0);
  EXPECT_EQ(first, nullptr);  // taken over
  auto swapped = std::make_unique<TIntersection>(TPointF(1.004f, 0.996f), b.get(), a.get());
  EXPECT_EQ(list.Add(swapped), TIntersections::kRejected);
  ASSERT_NE(swapped, nullptr);  // still the caller's
  EXPECT_EQ(static_cast<unsigned>(TIntersections::kRejected), 4294967295u);
  EXPECT_EQ(list.Add(std::make_unique<TIntersection>(TPointF(1.006f, 1), a.get(), b.get())), 1);
  EXPECT_EQ(list.Add(std::make_unique<TIntersection>(TPointF(1, 1), a.get(), c.get())), 2);
  EXPECT_EQ(list.findPair(b.get(), a.get()).size(), 2u);
  EXPECT_EQ(list.removeFor(a.get()), 3u);
  EXPECT_TRUE(list.empty());
  // After a removal the same crossing can be added again.
  EXPECT_EQ(list.Add(std::make_unique<TIntersection>(TPointF(1, 1), a.get(), b.get())), 0);
}
