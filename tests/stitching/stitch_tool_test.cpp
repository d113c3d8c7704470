// The stitch tool on the controller, click by click, and the stitching
// operations of the local API: rows along realistic outlines, with what a
// leatherworker checks of them.
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "app/frm_pelw.h"
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
  std::vector<TPW_Path*> drawing() const {
    std::vector<TPW_Path*> out;
    for (const auto& s : *frm.PathList)
      if (s->FShapeType != ShapeType::Hole) out.push_back(s.get());
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
  expectOnDrawing(made, {l}, 1e-4);
  EXPECT_EQ(frm.FLastStitch, chain.back());
  for (const TPW_Path* h : made) {
    EXPECT_EQ(h->FPalletIndex, 36);
    EXPECT_EQ(h->FLayerID, frm.FActiveLayer);
    EXPECT_FLOAT_EQ(h->FRotation, -90.0f) << "a row running to the right";
  }
}

TEST_F(TStitchToolFixture, FixedPitchTellsThePitchThatWouldHaveClosed) {
  uniform();
  frm.FStitchSettings.FPitchMode = TPitchMode::Fixed;
  add(line({0, 0}, {101, 0}));
  frm.stitchClickedAt({0, 0});
  frm.stitchClickedAt({101, 0});
  EXPECT_EQ(frm.FStitchLengthText, "Estimated best pitch:   4.04 mm");
}

TEST_F(TStitchToolFixture, AClickOffTheRouteIsDropped) {
  uniform();
  add(line({0, 0}, {100, 0}));
  frm.stitchClickedAt({0, 0});
  frm.stitchClickedAt({50, 30});
  EXPECT_EQ(frm.FStitchingCount, 1);
  EXPECT_TRUE(holes().empty());
}

TEST_F(TStitchToolFixture, WalletEdgeInSmartCornerMode) {
  const auto edge = walletEdge();
  frm.stitchClickedAt({0, 0});
  frm.stitchClickedAt({10, 66});
  const auto made = holes();
  ASSERT_GT(made.size(), 50u);
  // Every sharp corner and both ends have a hole; the rounded corner has
  // one on its middle.
  for (const TPointF p : {TPointF(0, 0), TPointF(86, 60), TPointF(70, 66), TPointF(10, 66)})
    EXPECT_TRUE(hasHoleAt(made, p, 1e-3)) << p.x << "," << p.y;
  TPointF mid, dir;
  pointAtFraction(*edge[1], 0.5, mid, dir);
  EXPECT_TRUE(hasHoleAt(made, mid, 1e-3));
  expectOnDrawing(made, edge, 0.02);
  const auto chain = walkChain(*frm.PathList, chainHead(made));
  EXPECT_EQ(chain.size(), made.size()) << "the links walk every hole once";
  // Spacing is even along each run: within a tenth of the pitch.
  expectEvenSpacing(chain, 4.0, 0.4);
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
  expectOnDrawing(made, edge, 0.02);
  const auto chain = walkChain(*frm.PathList, chainHead(made));
  EXPECT_EQ(chain.size(), made.size());
  // Chords at the searched pitch, the last one within the stop gap of it.
  const float pitch = static_cast<float>(distanceOf(chain[0]->FCenter, chain[1]->FCenter));
  EXPECT_NEAR(pitch, 4.0, 0.1);
  for (size_t i = 0; i + 2 < chain.size(); ++i)
    EXPECT_NEAR(distanceOf(chain[i]->FCenter, chain[i + 1]->FCenter), pitch, 1e-3) << i;
  EXPECT_NEAR(distanceOf(chain[chain.size() - 2]->FCenter, chain.back()->FCenter), pitch, 0.1);
}

TEST_F(TStitchToolFixture, OneClickOnACircleStitchesItRound) {
  TPW_Path* c = add(shapes::circle({50, 50}, 40));
  frm.stitchClickedAt({70, 50});  // on the circle, away from its points
  const auto made = holes();
  ASSERT_EQ(made.size(), 31u);
  EXPECT_EQ(frm.FStitchCountText, "# of Pricked Holes:  31");
  EXPECT_EQ(frm.FStitchingCount, 0);
  bool ring = false;
  EXPECT_EQ(walkChain(*frm.PathList, made.front(), &ring).size(), 31u);
  EXPECT_TRUE(ring);
  expectOnDrawing(made, {c}, 0.02);
}

TEST_F(TStitchToolFixture, OneClickOnARoundedRectangleStitchesTheOutline) {
  uniform();
  std::vector<TPW_Path*> outline;
  const float r = 5;
  outline.push_back(add(line({r, 0}, {70 - r, 0})));
  outline.push_back(add(shapes::arc({70 - r, r}, r, {70 - r, 0}, 90)));
  outline.push_back(add(line({70, r}, {70, 40 - r})));
  outline.push_back(add(shapes::arc({70 - r, 40 - r}, r, {70, 40 - r}, 90)));
  outline.push_back(add(line({70 - r, 40}, {r, 40})));
  outline.push_back(add(shapes::arc({r, 40 - r}, r, {r, 40}, 90)));
  outline.push_back(add(line({0, 40 - r}, {0, r})));
  outline.push_back(add(shapes::arc({r, r}, r, {0, r}, 90)));
  frm.stitchClickedAt({30, 20.0f - 20.0f});  // on the top side
  const auto made = holes();
  ASSERT_GT(made.size(), 45u);
  bool ring = false;
  const auto chain = walkChain(*frm.PathList, chainHead(made), &ring);
  EXPECT_TRUE(ring);
  EXPECT_EQ(chain.size(), made.size());
  expectOnDrawing(made, outline, 0.02);
  const double pitch = distanceOf(chain[0]->FCenter, chain[1]->FCenter);
  expectEvenSpacing(chain, pitch, 1e-3);
  EXPECT_NEAR(distanceOf(chain.back()->FCenter, chain.front()->FCenter), pitch, 0.1) << "the ring closes evenly";
}

TEST_F(TStitchToolFixture, AClickOnAnOpenLineAloneIsDropped) {
  add(line({0, 0}, {100, 0}));
  frm.stitchClickedAt({50, 0});
  EXPECT_TRUE(holes().empty());
  EXPECT_EQ(frm.FStitchingCount, 0);
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
  struct TCounting : ICanvas {
    int ellipses = 0;
    int width() const override { return 100; }
    int height() const override { return 100; }
    bool beginScene() override { return true; }
    void endScene() override {}
    void clear(TAlphaColor) override {}
    void setStroke(TAlphaColor, TBrushKind, TStrokeDash, float) override {}
    void setStrokeColor(TAlphaColor) override {}
    void setStrokeDash(TStrokeDash) override {}
    void setStrokeThickness(float) override {}
    void setFill(TAlphaColor, TBrushKind) override {}
    void setFillBitmap(const ICanvasBitmap*) override {}
    void setFontSize(float) override {}
    void drawLine(const TPointF&, const TPointF&, float) override {}
    void drawEllipse(const TRectF&, float) override { ++ellipses; }
    void fillEllipse(const TRectF&, float) override {}
    void drawRect(const TRectF&, float) override {}
    void fillRect(const TRectF&, float) override {}
    void drawPath(const TPathData&, float) override {}
    void fillPath(const TPathData&, float) override {}
    void drawBitmap(const ICanvasBitmap&, const TRectF&, const TRectF&, float, bool) override {}
    void fillText(const TRectF&, const std::string&, float, TTextAlign, TTextAlign) override {}
    float textWidth(const std::string&) override { return 0; }
    float textHeight(const std::string&) override { return 0; }
    TPathData textToPath(const std::string&, const TRectF&) override { return {}; }
    void setMatrix(const TMatrix&) override {}
    TMatrix matrix() const override { return {}; }
    std::unique_ptr<ICanvasBitmap> createBitmap(int, int, double) override { return nullptr; }
  } canvas;
  EXPECT_FALSE(frm.pressIron(&canvas, {}, {4, 0}, 4.0f));
  EXPECT_EQ(canvas.ellipses, 2) << "the reach and one would-be hole";
  EXPECT_TRUE(holes().empty());
}

// ---- the local API's operations (their replies are tested over HTTP) ----

TEST_F(TStitchToolFixture, ApiRowInCountMode) {
  add(line({0, 0}, {90, 0}));
  TfrmPelw::TStitchAlongPathRequest req;
  req.FStartPoint = TPointF(0, 0);
  req.FEndPoint = TPointF(90, 0);
  req.FMode = "count";
  req.FHoleCount = 10;
  const auto reply = frm.apiStitchAlongPath(req);
  ASSERT_TRUE(reply.FOk);
  EXPECT_EQ(reply.FHoleCount, 10);
  EXPECT_NEAR(reply.FActualPitchMm, 10.0, 1e-4);
}

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
