// Rows round closed outlines: the ring whose pitch comes nearest the wanted
// one, the ring of a count, the wanted pitch as it stands, and the ring of
// links.
#include <gtest/gtest.h>

#include "stitch_test_support.h"
#include "stitching/stitch_rows.h"

using namespace stitchtest;
using shapes::line;

namespace {

TStitchSettings settingsFor(TPitchMode mode, int corner = kCornerUniform, float pitch = 4.0f) {
  TStitchSettings s;
  s.FPitchMode = mode;
  s.FCornerMode = corner;
  s.FPitch = pitch;
  return s;
}

// A rectangle with corners rounded by quarter arcs, clockwise from the top
// left, as a list of shapes joined end to end.
std::vector<TPW_Path*> roundedRectangle(TDoc& doc, float x, float y, float w, float h, float r) {
  return {doc.add(line({x + r, y}, {x + w - r, y})), doc.add(shapes::arc({x + w - r, y + r}, r, {x + w - r, y}, 90)),
          doc.add(line({x + w, y + r}, {x + w, y + h - r})),
          doc.add(shapes::arc({x + w - r, y + h - r}, r, {x + w, y + h - r}, 90)),
          doc.add(line({x + w - r, y + h}, {x + r, y + h})), doc.add(shapes::arc({x + r, y + h - r}, r, {x + r, y + h}, 90)),
          doc.add(line({x, y + h - r}, {x, y + r})), doc.add(shapes::arc({x + r, y + r}, r, {x, y + r}, 90))};
}

// The ring in sewing order, checked for what every ring must be.
std::vector<TPW_Path*> ringOf(TDoc& doc, const TClosedOutcome& out, const std::vector<TPW_Path*>& outline,
                              double pitch) {
  const auto made = doc.holesInList();
  EXPECT_EQ(out.count(), static_cast<int>(made.size()));
  bool ring = false;
  const auto chain = walkChain(doc.list, chainHead(made), &ring);
  EXPECT_TRUE(ring) << "the last hole links back to the first";
  EXPECT_EQ(chain.size(), made.size()) << "every hole once";
  expectFaithfulRow(chain, outline, pitch, true);
  return chain;
}

}  // namespace

TEST(ClosedRow, ACircleTakesTheCountWhoseChordIsNearestThePitch) {
  TDoc doc;
  TPW_Path* c = doc.add(shapes::circle({50, 50}, 40));
  auto holes = doc.holes();
  const TClosedOutcome out = placeOnClosedPath({c}, c->FStartPt, settingsFor(TPitchMode::Auto), *holes);
  // 31 holes: 40 sin(pi/31) = 4.046 is nearer 4 than 40 sin(pi/32) = 3.920.
  const double chord = 40.0 * std::sin(std::numbers::pi / 31.0);
  ASSERT_EQ(out.count(), 31);
  EXPECT_NEAR(out.pitch(), chord, 1e-4);
  const auto chain = ringOf(doc, out, {c}, 4.0);
  expectEvenSpacing(chain, chord, 1e-3, true);
  EXPECT_EQ(chain.front()->FPrevStitchID, -1) << "only the one forward link closes the ring";
}

TEST(ClosedRow, CountModeTakesTheChordOfTheCount) {
  TDoc doc;
  TPW_Path* c = doc.add(shapes::circle({0, 0}, 30));
  TStitchSettings s = settingsFor(TPitchMode::Count);
  s.FNumOfHoles = 24;
  auto holes = doc.holes();
  const TClosedOutcome out = placeOnClosedPath({c}, c->FStartPt, s, *holes);
  EXPECT_EQ(out.count(), 24);
  expectEvenSpacing(ringOf(doc, out, {c}, 4.0), 30.0 * std::sin(std::numbers::pi / 24.0), 1e-3, true);
}

TEST(ClosedRow, FixedPitchKeepsThePitchAndClosesWithWhatIsLeft) {
  TDoc doc;
  TPW_Path* c = doc.add(shapes::circle({0, 0}, 40));
  auto holes = doc.holes();
  const TClosedOutcome out = placeOnClosedPath({c}, c->FStartPt, settingsFor(TPitchMode::Fixed), *holes);
  const auto chain = ringOf(doc, out, {c}, 4.0);
  for (size_t i = 0; i + 1 < chain.size(); ++i)
    EXPECT_NEAR(distanceOf(chain[i]->FCenter, chain[i + 1]->FCenter), 4.0, 1e-3);
  EXPECT_GE(distanceOf(chain.back()->FCenter, chain.front()->FCenter), 2.0) << "no hole within half a pitch of the first";
}

TEST(ClosedRow, AnEllipseIsWalkedOnTheEllipse) {
  for (const TPitchMode mode : {TPitchMode::Auto, TPitchMode::Fixed}) {
    TDoc doc;
    TPW_Path* e = doc.add(shapes::ellipse({0, 0}, 60, 30));
    auto holes = doc.holes();
    const TClosedOutcome out = placeOnClosedPath({e}, e->FStartPt, settingsFor(mode), *holes);
    const auto chain = ringOf(doc, out, {e}, 4.0);
    EXPECT_EQ(chain.size(), 36u) << "round 145 mm of ellipse";
    if (mode == TPitchMode::Auto) expectEvenSpacing(chain, out.pitch(), 0.003, true);
  }
}

TEST(ClosedRow, TheRingNearestThePitchWinsOnACircleOfCurves) {
  // A circle of 40 mm drawn as four curves: 33 holes at 3.80 are nearer
  // 3.85 than 34 at 3.69.
  TDoc doc;
  const float k = 0.5522847498f * 20.0f;
  std::vector<TPW_Path*> outline{doc.add(shapes::bezier({20, 0}, {20, k}, {k, 20}, {0, 20})),
                                 doc.add(shapes::bezier({0, 20}, {-k, 20}, {-20, k}, {-20, 0})),
                                 doc.add(shapes::bezier({-20, 0}, {-20, -k}, {-k, -20}, {0, -20})),
                                 doc.add(shapes::bezier({0, -20}, {k, -20}, {20, -k}, {20, 0}))};
  auto holes = doc.holes();
  const TClosedOutcome out = placeOnClosedPath(outline, outline[0]->FStartPt, settingsFor(TPitchMode::Auto, kCornerUniform, 3.85f), *holes);
  EXPECT_EQ(out.count(), 33);
  EXPECT_NEAR(out.pitch(), 3.80, 0.01);
  expectEvenSpacing(ringOf(doc, out, outline, 3.85), out.pitch(), 1e-3, true);
}

TEST(ClosedRow, RoundedRectanglesCloseEvenlyAndKeepTheHolesOnTheDrawing) {
  // Long sides into small corners too: a crossing engine that reached past
  // a line's end would put holes off the rounded corner.
  for (const float pitch : {3.0f, 3.85f, 4.0f, 5.0f}) {
    SCOPED_TRACE(pitch);
    TDoc doc;
    const auto outline = roundedRectangle(doc, 0, 0, 300, 40, 3);
    auto holes = doc.holes();
    const TClosedOutcome out =
        placeOnClosedPath(outline, outline[0]->FStartPt, settingsFor(TPitchMode::Auto, kCornerUniform, pitch), *holes);
    expectEvenSpacing(ringOf(doc, out, outline, pitch), out.pitch(), 1e-3, true);
    EXPECT_NEAR(out.pitch(), pitch, pitch / 50);
  }
}

TEST(ClosedRow, CornerModesLayTheOutlineAsAChain) {
  TDoc doc;
  std::vector<TPW_Path*> outline{doc.add(line({0, 0}, {60, 0})), doc.add(line({60, 0}, {60, 30})),
                                 doc.add(line({0, 30}, {60, 30})),  // drawn the other way
                                 doc.add(line({0, 30}, {0, 0}))};
  auto holes = doc.holes();
  const TClosedOutcome out =
      placeOnClosedPath(outline, outline[0]->FStartPt, settingsFor(TPitchMode::Auto, kCornerSmart), *holes);
  EXPECT_TRUE(out.FCornerMethod);
  const auto made = doc.holesInList();
  EXPECT_EQ(out.count(), 46) << "60 / 4 = 15 on the long sides, 30 / 4 = 7.5 rounds to 8 on the short ones";
  for (const TPointF corner : {TPointF(0, 0), TPointF(60, 0), TPointF(60, 30), TPointF(0, 30)})
    EXPECT_TRUE(hasHoleAt(made, corner)) << corner.x << "," << corner.y;
  ringOf(doc, out, outline, 4.0);
  EXPECT_EQ(made.front()->FPrevStitchID, made.back()->FID) << "the corner methods link the ring both ways";
  EXPECT_NEAR(out.pitch(), 180.0 / made.size(), 1e-4);
}
