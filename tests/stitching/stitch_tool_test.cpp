// The stitch tool on the controller, click by click, and the stitching
// operations of the local API: rows along realistic outlines, with what a
// leatherworker checks of them.
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "app/frm_pelw.h"
#include "platform/recording_canvas.h"
#include "stitch_test_support.h"
#include "stitching/corner_placement.h"

using namespace stitchtest;
using shapes::line;

namespace {

struct TStitchToolFixture : ::testing::Test {
  TfrmPelw frm;
  TStitchToolFixture() {
    frm.PathList = std::make_unique<TShapeList>(nullptr, "en");
    frm.FIntersections = std::make_unique<TIntersections>();
  }
  TPW_Path* add(std::unique_ptr<TPW_Path> s) { return frm.addShapeToDocument(std::move(s), frm.FActiveLayer); }
  std::vector<TPW_Path*> holes() const {
    std::vector<TPW_Path*> out;
    for (const auto& s : *frm.PathList)
      if (s->FShapeType == ShapeType::Hole) out.push_back(s.get());
    return out;
  }
  void uniform() { frm.FStitchSettings.FCornerMode = kCornerUniform; }

  // The edge of a card wallet's pocket: a straight top, a rounded corner, a
  // curved side, a sharp notch and a long base.
  std::vector<TPW_Path*> walletEdge() {
    std::vector<TPW_Path*> out;
    out.push_back(add(line({0, 0}, {80, 0})));
    out.push_back(add(shapes::arc({80, 6}, 6, {80, 0}, 90)));
    out.push_back(add(shapes::bezier({86, 6}, {92, 25}, {80, 40}, {86, 60})));
    out.push_back(add(line({86, 60}, {70, 66})));
    out.push_back(add(line({70, 66}, {10, 66})));
    return out;
  }
};

}  // namespace

TEST_F(TStitchToolFixture, TwoClicksLayARowAndEndTheStitching) {
  uniform();
  TPW_Path* l = add(line({0, 0}, {100, 0}));
  frm.stitchClickedAt({0, 0});
  EXPECT_EQ(frm.FStitchingCount, 1);
  EXPECT_TRUE(holes().empty());
  EXPECT_FALSE(frm.PathList->FIsChanged) << "the first click changes nothing";
  frm.stitchClickedAt({100, 0});
  EXPECT_EQ(frm.FStitchingCount, 0);
  EXPECT_TRUE(frm.Clicked_Points.empty());
  EXPECT_TRUE(frm.PathList->FIsChanged);
  const auto made = holes();
  ASSERT_EQ(made.size(), 26u);
  EXPECT_EQ(frm.FStitchCountText, "# of Pricked Holes:  26");
  EXPECT_EQ(frm.FStitchLengthText.rfind("Auto pitch:   4.00", 0), 0u) << frm.FStitchLengthText;
  const auto chain = walkChain(*frm.PathList, chainHead(made));
  EXPECT_EQ(chain.size(), 26u);
  expectEvenSpacing(chain, 4.0, 1e-4);
  expectFaithfulRow(made, {l}, 4.0);
  EXPECT_EQ(frm.FLastStitch, chain.back());
  for (const TPW_Path* h : made) {
    EXPECT_EQ(h->FPalletIndex, 36);
    EXPECT_EQ(h->FLayerID, frm.FActiveLayer);
    EXPECT_FLOAT_EQ(h->FRotation, -90.0f) << "a row running to the right";
  }
}

TEST_F(TStitchToolFixture, FixedPitchTellsThePitchThatWouldHaveClosedAndOffRouteClicksAreDropped) {
  uniform();
  frm.FStitchSettings.FPitchMode = TPitchMode::Fixed;
  add(line({0, 0}, {101, 0}));
  frm.stitchClickedAt({0, 0});
  frm.stitchClickedAt({50, 30});
  EXPECT_EQ(frm.FStitchingCount, 1) << "not on the route: dropped";
  EXPECT_TRUE(holes().empty());
  frm.stitchClickedAt({101, 0});
  EXPECT_EQ(frm.FStitchLengthText, "Estimated best pitch:   4.04 mm");
  EXPECT_EQ(frm.FStitchCountText, "# of Pricked Holes:  26");
}

TEST_F(TStitchToolFixture, WalletEdgeWalkedWithTheDividers) {
  uniform();
  const auto edge = walletEdge();
  frm.stitchClickedAt({0, 0});
  frm.stitchClickedAt({10, 66});
  const auto made = holes();
  ASSERT_GT(made.size(), 50u);
  EXPECT_TRUE(hasHoleAt(made, {0, 0}, 1e-4));
  EXPECT_TRUE(hasHoleAt(made, {10, 66}, 1e-4)) << "forced onto the end";
  const auto chain = walkChain(*frm.PathList, chainHead(made));
  EXPECT_EQ(chain.size(), made.size());
  expectFaithfulRow(chain, edge, 4.0);
  // The labels tell what was made: the count and the mean spacing.
  EXPECT_EQ(frm.FStitchCountText, "# of Pricked Holes:  " + std::to_string(made.size()));
  double sum = 0;
  for (size_t i = 0; i + 1 < chain.size(); ++i) sum += distanceOf(chain[i]->FCenter, chain[i + 1]->FCenter);
  char expected[64];
  std::snprintf(expected, sizeof expected, "Auto pitch:   %.2f mm", sum / double(chain.size() - 1));
  EXPECT_EQ(frm.FStitchLengthText, expected);
}

TEST_F(TStitchToolFixture, OneClickOnACircleStitchesItRoundButOnAnOpenLineDoesNothing) {
  add(line({0, 0}, {20, 0}));
  frm.stitchClickedAt({10, 0});
  EXPECT_TRUE(holes().empty());
  EXPECT_EQ(frm.FStitchingCount, 0);
  TPW_Path* c = add(shapes::circle({50, 50}, 40));
  frm.stitchClickedAt({70, 50});  // on the circle, away from its points
  const auto made = holes();
  ASSERT_EQ(made.size(), 31u);
  EXPECT_EQ(frm.FStitchCountText, "# of Pricked Holes:  31");
  EXPECT_EQ(frm.FStitchingCount, 0);
  bool ring = false;
  EXPECT_EQ(walkChain(*frm.PathList, made.front(), &ring).size(), 31u);
  EXPECT_TRUE(ring);
  expectFaithfulRow(made, {c}, 4.0, true);
}

TEST_F(TStitchToolFixture, PressesOfAFourBladeIronFollowTheClicks) {
  uniform();
  add(line({0, 0}, {100, 0}));
  frm.FSelectedNumOfBlades = 4;
  frm.stitchClickedAt({0, 0});
  // The iron reaches four pitches; the crossing of that reach with the line
  // is a target, though not a vertex.
  ASSERT_FALSE(frm.FStitchIntersections->empty());
  EXPECT_TRUE(samePoint((*frm.FStitchIntersections)[0]->FPoint, {16, 0}, 0.0));
  frm.stitchClickedAt({16, 0});
  auto made = holes();
  ASSERT_EQ(made.size(), 4u) << "the first press punches blades 0 to 3";
  EXPECT_TRUE(frm.FStitchRealLastPos.identical(TPointF(12, 0)));
  EXPECT_EQ(frm.FStitchingCount, 2) << "a press goes on with the stitching";
  // The next press starts one pitch on and reaches four more.
  frm.stitchClickedAt({28, 0});
  made = holes();
  ASSERT_EQ(made.size(), 8u);
  const auto chain = walkChain(*frm.PathList, chainHead(made));
  EXPECT_EQ(chain.size(), 8u);
  expectEvenSpacing(chain, 4.0, 1e-4);
  EXPECT_TRUE(frm.FStitchRealLastPos.identical(TPointF(28, 0)));
}

TEST_F(TStitchToolFixture, AFirstClickOnAHoleDoesNotPunchItAgain) {
  uniform();
  add(line({0, 0}, {100, 0}));
  TfrmPelw::TStitchHoleRequest one;
  one.FCenter = TPointF(0, 0);
  frm.apiAddStitchHole(one);
  frm.stitchClickedAt({0, 0});
  EXPECT_TRUE(frm.FSkipFirstStitch);
  frm.stitchClickedAt({4, 0});  // a single blade's reach
  const auto made = holes();
  EXPECT_EQ(made.size(), 2u);
  EXPECT_TRUE(hasHoleAt(made, {4, 0}));
}

TEST_F(TStitchToolFixture, PressPreviewDrawsAndMakesNothing) {
  uniform();
  add(line({0, 0}, {100, 0}));
  frm.stitchClickedAt({0, 0});
  TRecordingCanvas canvas;
  EXPECT_FALSE(frm.pressIron(&canvas, {}, {4, 0}, 4.0f));
  EXPECT_EQ(canvas.count("drawEllipse"), 2u) << "the reach and one would-be hole";
  EXPECT_TRUE(holes().empty());
}

// The API's loop borrows the stitch panel's settings for one call.
TEST_F(TStitchToolFixture, ApiLoopOnALoneCircleAndSettingsComeBack) {
  add(shapes::circle({0, 0}, 40));
  frm.FStitchSettings.FPitch = 3.0f;
  frm.FStitchSettings.FPitchMode = TPitchMode::Fixed;
  TPrickingIron iron;
  iron.FBladeType = "L";
  frm.FSelectedPrickingIron = &iron;
  TfrmPelw::TStitchLoopRequest req;
  req.FPointOnLoop = TPointF(20, 0);
  req.FStitchType = "ROUND";
  req.FLayerId = 3;
  frm.PathList->addLayer(3, "three", true);
  const auto reply = frm.apiStitchLoop(req);
  ASSERT_TRUE(reply.FOk) << reply.FError;
  EXPECT_EQ(reply.FHoleCount, 31);
  EXPECT_NEAR(reply.FActualPitchMm, 40.0 * std::sin(std::numbers::pi / 31.0), 1e-5);
  ASSERT_EQ(reply.FCreatedIds.size(), 31u);
  for (int id : reply.FCreatedIds) {
    EXPECT_EQ(frm.PathList->findByID(id)->FStitchType, "R");
    EXPECT_EQ(frm.PathList->findByID(id)->FLayerID, 3);
  }
  EXPECT_FLOAT_EQ(frm.FStitchSettings.FPitch, 3.0f);
  EXPECT_EQ(frm.FStitchSettings.FPitchMode, TPitchMode::Fixed);
  EXPECT_EQ(frm.FActiveLayer, 0);
  EXPECT_EQ(iron.FBladeType, "L");
}

// ---- rows on untidy drawings ----

TEST_F(TStitchToolFixture, RowsBetweenAnyEndsOfARandomDrawingKeepTheDocumentConsistent) {
  for (unsigned seed = 1; seed <= 4; ++seed) {
    frm.PathList = std::make_unique<TShapeList>(nullptr, "en");
    frm.FIntersections = std::make_unique<TIntersections>();
    frm.FLastStitch = nullptr;
    shapes::fillRandomDocument(*frm.PathList, seed, 120, 120.0f);
    frm.recalcIntersections();
    frm.FStitchSettings.FCornerMode = static_cast<int>(seed % 3);
    std::vector<TPointF> ends;
    for (const auto& s : *frm.PathList)
      if (s->FShapeType != ShapeType::Dot && s->FLayerID == 0) ends.push_back(s->FStartPt);
    for (size_t k = 0; k + 1 < ends.size() && k < 40; k += 2) {
      frm.cancelStitching();
      frm.stitchClickedAt(ends[k]);
      frm.stitchClickedAt(ends[k + 1]);
    }
    const auto made = holes();
    ASSERT_FALSE(made.empty()) << "seed " << seed;
    std::map<int, int> linkedFrom;
    for (const TPW_Path* h : made) {
      if (h->FNextStitchID < 0) continue;
      const TPW_Path* next = frm.PathList->findByID(h->FNextStitchID);
      ASSERT_NE(next, nullptr) << "a link to a shape that is not there";
      EXPECT_EQ(next->FShapeType, ShapeType::Hole);
      EXPECT_EQ(++linkedFrom[h->FNextStitchID], 1) << "two holes sew into one";
      EXPECT_NE(next, h);
    }
    for (const TPW_Path* h : made) {
      EXPECT_TRUE(std::isfinite(h->FCenter.x) && std::isfinite(h->FCenter.y));
      EXPECT_TRUE(std::isfinite(h->FRotation));
    }
    // No hole is punched twice. The divider walk keeps half a pitch between
    // holes; the corner methods half the spacing of their run, which on a
    // tiny shape may be little.
    const double apart = frm.FStitchSettings.FCornerMode == kCornerUniform ? 1.9 : 1e-3;
    for (size_t i = 0; i < made.size(); ++i)
      for (size_t j = i + 1; j < made.size(); ++j)
        EXPECT_GE(distanceOf(made[i]->FCenter, made[j]->FCenter), apart) << "seed " << seed;
  }
}
