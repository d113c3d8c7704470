// Rows round closed outlines: the closed walk and its pitch search, the
// chord rule of a circle, and the ring of links.
#include <gtest/gtest.h>

#include <numbers>

#include "stitch_test_support.h"
#include "stitching/closed_walk.h"
#include "stitching/stitch_rows.h"

using namespace stitchtest;
using shapes::line;

namespace {

TStitchSettings settingsFor(TPitchMode mode, int corner = kCornerUniform) {
  TStitchSettings s;
  s.FPitchMode = mode;
  s.FCornerMode = corner;
  return s;
}

// A rectangle with corners rounded by quarter arcs, clockwise from the top
// left, as a list of shapes joined end to end.
void roundedRectangle(TDoc& doc, float x, float y, float w, float h, float r, std::vector<TPW_Path*>& out) {
  out.push_back(doc.add(line({x + r, y}, {x + w - r, y})));
  out.push_back(doc.add(shapes::arc({x + w - r, y + r}, r, {x + w - r, y}, 90)));
  out.push_back(doc.add(line({x + w, y + r}, {x + w, y + h - r})));
  out.push_back(doc.add(shapes::arc({x + w - r, y + h - r}, r, {x + w, y + h - r}, 90)));
  out.push_back(doc.add(line({x + w - r, y + h}, {x + r, y + h})));
  out.push_back(doc.add(shapes::arc({x + r, y + h - r}, r, {x + r, y + h}, 90)));
  out.push_back(doc.add(line({x, y + h - r}, {x, y + r})));
  out.push_back(doc.add(shapes::arc({x + r, y + r}, r, {x, y + r}, 90)));
}

}  // namespace

TEST(ClosedWalk, ComesBackBetweenTwoHoles) {
  const std::vector<TPointF> row{{0, 0}, {4, 0}, {8, 0}};
  EXPECT_TRUE(TClosedWalk::loopClosedBack({2, 0.5f}, row));
  EXPECT_TRUE(TClosedWalk::loopClosedBack({4, 0}, row)) << "on a hole counts";
  EXPECT_FALSE(TClosedWalk::loopClosedBack({12, 0}, row));
  EXPECT_FALSE(TClosedWalk::loopClosedBack({2, 4}, row));
  EXPECT_FALSE(TClosedWalk::loopClosedBack({0, 0}, {{0, 0}})) << "one position has no pair";
  // Distances compare to the hundredth: 4.004 away from a pair 4 apart is as far.
  EXPECT_TRUE(TClosedWalk::loopClosedBack({-0.004f, 0}, row));
}

TEST(ClosedRow, ACircleOfFortyTakesTheCountWhoseChordIsNearestThePitch) {
  TDoc doc;
  TPW_Path* c = doc.add(shapes::circle({50, 50}, 40));
  auto holes = doc.holes();
  const TClosedOutcome out = placeOnClosedPath({c}, c->FStartPt, settingsFor(TPitchMode::Auto), *holes);
  const double chord = 40.0 * std::sin(std::numbers::pi / 31.0);
  EXPECT_EQ(out.FCount, 31);
  EXPECT_NEAR(out.FPitch, chord, 1e-5);
  const auto made = doc.holesInList();
  ASSERT_EQ(made.size(), 31u);
  bool ring = false;
  const auto chain = walkChain(doc.list, made.front(), &ring);
  EXPECT_EQ(chain.size(), 31u);
  EXPECT_TRUE(ring) << "the last hole links back to the first";
  EXPECT_EQ(made.front()->FPrevStitchID, -1) << "only the one forward link closes the ring";
  expectEvenSpacing(chain, chord, 1e-3, true);
  expectOnDrawing(made, {c}, 0.02);
}

TEST(ClosedRow, CountModeOnACircleUsesTheChordOfTheCount) {
  TDoc doc;
  TPW_Path* c = doc.add(shapes::circle({0, 0}, 30));
  TStitchSettings s = settingsFor(TPitchMode::Count);
  s.FNumOfHoles = 24;
  auto holes = doc.holes();
  const TClosedOutcome out = placeOnClosedPath({c}, c->FStartPt, s, *holes);
  EXPECT_EQ(out.FCount, 24);
  EXPECT_NEAR(out.FPitch, 30.0 * std::sin(std::numbers::pi / 24.0), 1e-5);
  EXPECT_EQ(doc.holesInList().size(), 24u);
}

TEST(ClosedRow, FixedPitchWalksOnceAtThePitch) {
  TDoc doc;
  TPW_Path* c = doc.add(shapes::circle({0, 0}, 40));
  auto holes = doc.holes();
  const TClosedOutcome out = placeOnClosedPath({c}, c->FStartPt, settingsFor(TPitchMode::Fixed), *holes);
  EXPECT_FLOAT_EQ(out.FPitch, 4.0f);
  EXPECT_EQ(out.FWalks, 2) << "the measuring walk and the one that punches";
  const auto made = doc.holesInList();
  for (size_t i = 0; i + 1 < made.size(); ++i)
    EXPECT_NEAR(distanceOf(made[i]->FCenter, made[i + 1]->FCenter), 4.0, 1e-4);
}

TEST(ClosedRow, RoundedRectangleWalkedAsOneRing) {
  TDoc doc;
  std::vector<TPW_Path*> outline;
  roundedRectangle(doc, 0, 0, 90, 55, 6, outline);
  auto holes = doc.holes();
  const TClosedOutcome out = placeOnClosedPath(outline, outline[0]->FStartPt, settingsFor(TPitchMode::Auto), *holes);
  EXPECT_FALSE(out.FCornerMethod);
  const auto made = doc.holesInList();
  ASSERT_GT(made.size(), 60u);
  bool ring = false;
  const auto chain = walkChain(doc.list, chainHead(made), &ring);
  EXPECT_EQ(chain.size(), made.size()) << "every hole once";
  EXPECT_TRUE(ring);
  expectOnDrawing(made, outline, 0.02);
  // Chords all at the row's pitch; where the ring closes the search left
  // a gap within a tenth of a millimetre of it.
  expectEvenSpacing(chain, out.FPitch, 1e-3);
  EXPECT_NEAR(distanceOf(chain.back()->FCenter, chain.front()->FCenter), out.FPitch, 0.1);
  EXPECT_NEAR(out.FPitch, 4.0, 0.15);
}

TEST(ClosedRow, CornerModesLayTheOutlineAsAChain) {
  TDoc doc;
  std::vector<TPW_Path*> outline;
  // Sharp corners: a plain rectangle of four lines.
  outline.push_back(doc.add(line({0, 0}, {60, 0})));
  outline.push_back(doc.add(line({60, 0}, {60, 30})));
  outline.push_back(doc.add(line({0, 30}, {60, 30})));  // drawn the other way
  outline.push_back(doc.add(line({0, 30}, {0, 0})));
  auto holes = doc.holes();
  const TClosedOutcome out =
      placeOnClosedPath(outline, outline[0]->FStartPt, settingsFor(TPitchMode::Auto, kCornerSmart), *holes);
  EXPECT_TRUE(out.FCornerMethod);
  const auto made = doc.holesInList();
  EXPECT_EQ(out.FCount, 46) << "60 / 4 = 15 on the long sides, 30 / 4 = 7.5 rounds to 8 on the short ones";
  for (const TPointF corner : {TPointF(0, 0), TPointF(60, 0), TPointF(60, 30), TPointF(0, 30)})
    EXPECT_TRUE(hasHoleAt(made, corner)) << corner.x << "," << corner.y;
  bool ring = false;
  const auto chain = walkChain(doc.list, made.front(), &ring);
  EXPECT_EQ(chain.size(), made.size());
  EXPECT_TRUE(ring);
  EXPECT_EQ(made.front()->FPrevStitchID, made.back()->FID) << "the corner methods link the ring both ways";
  EXPECT_NEAR(out.FPitch, 180.0 / made.size(), 1e-4);
}

TEST(ClosedRow, LongSidesIntoSmallRoundedCornersKeepTheHolesOnTheDrawing) {
  // The crossing engine reaches 0.8 % of a line's length past its end; on
  // a 300 mm side that would put a hole up to 2.4 mm past the corner's
  // start, half a millimetre off the rounded corner.
  for (float pitch : {3.0f, 3.85f, 4.0f, 5.0f}) {
    TDoc doc;
    std::vector<TPW_Path*> outline;
    roundedRectangle(doc, 0, 0, 300, 40, 3, outline);
    auto holes = doc.holes();
    TStitchSettings s = settingsFor(TPitchMode::Fixed);
    s.FPitch = pitch;
    placeOnClosedPath(outline, outline[0]->FStartPt, s, *holes);
    const auto made = doc.holesInList();
    ASSERT_GT(made.size(), 120u);
    double worst = 0.0;
    for (const TPW_Path* h : made) worst = std::max(worst, distanceToDrawing(h->FCenter, outline));
    EXPECT_LT(worst, 0.02) << "pitch " << pitch;
  }
}
