// The outline each blade punches and where the thread passes through it.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "document/point_helpers.h"
#include "document/pw_path.h"
#include "stitching/pricking_iron.h"

namespace {

constexpr double kTol = 1e-5;

TPrickingIron iron(const char* letter, float pitch = 4.0f) {
  TPrickingIron i;
  i.FBladeType = letter;
  i.FPitch = pitch;
  bladeDefaults(letter, i.FWidth, i.FHeight, i.FAngle);
  return i;
}

TPW_Path newShape() { return TPW_Path(36, 0xFFFFFFFF, 1.0f, TStrokeDash::Dot, 7); }

struct TExpect {
  TPathPointKind kind;
  double x, y;
};

void expectPath(const TPathData& d, const std::vector<TExpect>& want) {
  ASSERT_EQ(d.Count(), want.size()) << d.getData();
  for (size_t i = 0; i < want.size(); ++i) {
    EXPECT_EQ(d[i].Kind, want[i].kind) << "entry " << i;
    EXPECT_NEAR(d[i].Point.x, want[i].x, kTol) << "entry " << i << " of " << d.getData();
    EXPECT_NEAR(d[i].Point.y, want[i].y, kTol) << "entry " << i << " of " << d.getData();
  }
}

constexpr auto M = TPathPointKind::MoveTo;
constexpr auto L = TPathPointKind::LineTo;

}  // namespace

// ---- outlines ----

TEST(HoleOutline, DiamondIsTiltedAgainstTheRowByTheBladeAngle) {
  TPrickingIron d = iron("D");  // 0.8 x 2.2, 32 degrees
  TPW_Path s = newShape();
  s.setAsDiamondHole(TPointF(10, 20), d, false, 0, 0);
  // Not inverted: turned by -32 degrees, the top tip leaning back.
  expectPath(s.FData, {{M, 9.417089, 19.067147},
                       {L, 10.339219, 19.788032},
                       {L, 10.582911, 20.932853},
                       {L, 9.660781, 20.211968},
                       {L, 9.417089, 19.067147}});
  EXPECT_EQ(s.FShapeType, "S_HOLE");
  EXPECT_EQ(s.FStitchType, "D");
  EXPECT_FALSE(s.FStitchInversed);
  EXPECT_FLOAT_EQ(s.FWidth, 0.8f);
  EXPECT_FLOAT_EQ(s.FHeight, 2.2f);
  EXPECT_FLOAT_EQ(s.FCenter.x, 10);
  EXPECT_FLOAT_EQ(s.FRotation, 0);
}

TEST(HoleOutline, InvertedDiamondMirrorsTheAngle) {
  TPrickingIron d = iron("D");
  TPW_Path s = newShape();
  // Inverted, a row at 58 degrees turns the blade by 58 + 32 = 90: the
  // diamond lies across, its top tip pointing along +x.
  s.setAsDiamondHole(TPointF(1, 2), d, true, 58, 0);
  expectPath(s.FData, {{M, 2.1, 2}, {L, 1, 2.4}, {L, -0.1, 2}, {L, 1, 1.6}, {L, 2.1, 2}});
  EXPECT_TRUE(s.FStitchInversed);
  // The same row not inverted turns by 58 - 32 = 26 degrees instead.
  s.setAsDiamondHole(TPointF(1, 2), d, false, 58, 0);
  EXPECT_NEAR(s.FData[0].Point.x, 1 + 1.1 * std::sin(26 * 0.017453292519943295), kTol);
  EXPECT_NEAR(s.FData[0].Point.y, 2 - 1.1 * std::cos(26 * 0.017453292519943295), kTol);
}

TEST(HoleOutline, BladesOfNoWidthAreASingleStroke) {
  TPrickingIron d = iron("D");
  d.FWidth = 0;
  TPW_Path s = newShape();
  s.setAsDiamondHole(TPointF(5, 5), d, true, -32, 0);  // turned by 0
  expectPath(s.FData, {{M, 5, 3.9}, {L, 5, 6.1}});

  TPrickingIron f = iron("F");
  f.FWidth = 0;
  s.setAsFrenchHole(TPointF(5, 5), f, true, -45, 0);
  expectPath(s.FData, {{M, 5, 4}, {L, 5, 6}});

  // A flat blade of no width runs on to (0, h), one and a half blades long.
  TPrickingIron l = iron("L");
  l.FWidth = 0;
  s.setAsFlatHole(TPointF(5, 5), l, 0, 0);
  expectPath(s.FData, {{M, 5, 4}, {L, 5, 7}});
}

TEST(HoleOutline, FrenchIsARectangleTurnedByRowAndAngle) {
  TPrickingIron f = iron("F");  // 0.25 x 2, 45 degrees
  TPW_Path s = newShape();
  s.setAsFrenchHole(TPointF(0, 0), f, true, 45, 0);  // 90 in all
  expectPath(s.FData, {{M, 1, -0.125},
                       {L, 1, 0.125},
                       {L, -1, 0.125},
                       {L, -1, -0.125},
                       {L, 1, -0.125}});
  EXPECT_EQ(s.FStitchType, "F");
  EXPECT_TRUE(s.FStitchInversed);
}

TEST(HoleOutline, FlatIgnoresTheBladeAngle) {
  TPrickingIron l = iron("L");  // 0.3 x 2
  l.FAngle = 30;
  TPW_Path s = newShape();
  s.setAsFlatHole(TPointF(3, 4), l, 90, 0);
  // Only the row turns it; the single-precision degree makes it a hair off
  // a true quarter turn, well inside a hundredth of a millimetre.
  expectPath(s.FData, {{M, 4, 3.85}, {L, 4, 4.15}, {L, 2, 4.15}, {L, 2, 3.85}, {L, 4, 3.85}});
  EXPECT_EQ(s.FStitchType, "L");
}

TEST(HoleOutline, RoundIsACircleOfTheBladeWidthNeverTurned) {
  TPrickingIron r = iron("R");
  r.FWidth = 1.2f;
  r.FHeight = 5;  // ignored
  TPW_Path a = newShape(), b = newShape();
  a.setAsRoundHole(TPointF(10, 10), r, 0, 0);
  b.setAsRoundHole(TPointF(10, 10), r, 37, 0);
  EXPECT_FLOAT_EQ(a.FWidth, 1.2f);
  EXPECT_FLOAT_EQ(a.FHeight, 1.2f);
  EXPECT_EQ(a.FData.getData(), b.FData.getData());
  EXPECT_FLOAT_EQ(b.FRotation, 37);
  const TRectF box = a.FData.GetBounds();
  EXPECT_NEAR(box.Left, 9.4, kTol);
  EXPECT_NEAR(box.Top, 9.4, kTol);
  EXPECT_NEAR(box.Right, 10.6, kTol);
  EXPECT_NEAR(box.Bottom, 10.6, kTol);
  EXPECT_EQ(a.FData[0].Kind, M);
  EXPECT_EQ(a.FData.Count(), 13u);  // an ellipse: a move and four cubics
}

TEST(HoleOutline, RulerCrossComesFirstAndTurnsWithTheBlade) {
  TPrickingIron f = iron("F");
  TPW_Path s = newShape();
  s.setAsFrenchHole(TPointF(10, 0), f, true, 45, 3);  // turned by 90
  ASSERT_EQ(s.FData.Count(), 9u);
  expectPath([&] {
    TPathData first4;
    for (size_t i = 0; i < 4; ++i) first4.points().push_back(s.FData[i]);
    return first4;
  }(), {{M, 10, -3}, {L, 10, 3}, {M, 13, 0}, {L, 7, 0}});

  // The round hole draws its cross around the origin, not the hole.
  TPrickingIron r = iron("R");
  s.setAsRoundHole(TPointF(10, 10), r, 0, 2);
  expectPath([&] {
    TPathData first4;
    for (size_t i = 0; i < 4; ++i) first4.points().push_back(s.FData[i]);
    return first4;
  }(), {{M, -2, 0}, {L, 2, 0}, {M, 0, -2}, {L, 0, 2}});

  // No cross for a length of 0 or below.
  s.setAsFrenchHole(TPointF(10, 0), f, true, 45, -1);
  EXPECT_EQ(s.FData.Count(), 5u);
}

TEST(HoleOutline, MakersStartAfresh) {
  TPW_Path s = newShape();
  s.drawLinePath(TPointF(0, 0), TPointF(5, 5));
  s.getBoundary(false);
  ASSERT_TRUE(s.FIsBoundaryCalculated);
  s.setAsDiamondHole(TPointF(50, 50), iron("D"), false, 0, 0);
  EXPECT_FALSE(s.FIsBoundaryCalculated);
  EXPECT_EQ(s.FDash, TStrokeDash::Solid);
  EXPECT_EQ(s.FData.Count(), 5u);
  const TRectF b = s.getBoundary(false);
  EXPECT_GT(b.Left, 49);
  EXPECT_LT(b.Right, 51);
}

// ---- createStichPath ----

TEST(CreateStitchPath, DispatchesOnTheBladeAndSetsTheHoleFields) {
  TPrickingIron d = iron("D");
  d.FBladeType = "d";  // compared upper-cased
  TPW_Path s = newShape();
  s.FThickness = 2.5f;
  s.FLine_param_a = 3;
  s.FIsVerticalLine = true;
  s.createStichPath(TPointF(7, 8), false, &d, 12, 0);
  EXPECT_EQ(s.FShapeType, "S_HOLE");
  EXPECT_EQ(s.FStitchType, "D");
  EXPECT_EQ(s.FPrickingIron, &d);
  EXPECT_FLOAT_EQ(s.FStartPt.x, 7);
  EXPECT_FLOAT_EQ(s.FStartPt.y, 8);
  EXPECT_FLOAT_EQ(s.FCenter.x, 7);
  EXPECT_FLOAT_EQ(s.FThickness, 1.0f);
  EXPECT_FLOAT_EQ(s.FRotation, 12);
  EXPECT_FLOAT_EQ(s.FLine_param_a, 0);
  EXPECT_FALSE(s.FIsVerticalLine);
  EXPECT_EQ(s.FData.Count(), 5u);
  // The thread points are ready for the simulator.
  EXPECT_GT(distanceOf(s.FStitchIn, s.FStitchOut), 1.0f);
  EXPECT_FLOAT_EQ(s.getCenterPoint().x, 7);

  for (const char* letter : {"F", "L", "R"}) {
    TPrickingIron i = iron(letter);
    s.createStichPath(TPointF(0, 0), false, &i, 0, 0);
    EXPECT_EQ(s.FStitchType, letter);
    EXPECT_EQ(s.FPrickingIron, &i);
  }
}

TEST(CreateStitchPath, UnknownBladeMakesNoOutlineAndNoIronChangesNothing) {
  TPrickingIron x = iron("X");
  TPW_Path s = newShape();
  s.drawLinePath(TPointF(0, 0), TPointF(5, 5));
  s.createStichPath(TPointF(1, 1), false, &x, 0, 0);
  EXPECT_TRUE(s.FData.isEmpty());
  EXPECT_EQ(s.FShapeType, "S_HOLE");
  EXPECT_FLOAT_EQ(s.FCenter.x, 1);

  TPW_Path t = newShape();
  t.drawLinePath(TPointF(0, 0), TPointF(5, 5));
  const std::string before = t.FData.getData();
  t.createStichPath(TPointF(1, 1), false, nullptr, 0, 0);
  EXPECT_EQ(t.FShapeType, "LINE");
  EXPECT_EQ(t.FData.getData(), before);
}

// ---- thread entry and exit ----

TEST(StitchInOut, EachBladeHasItsOwnOffsets) {
  TPW_Path s = newShape();
  // Round, width 1: (0, -/+0.375) turned by the row alone (angle 0).
  TPrickingIron r = iron("R");
  s.createStichPath(TPointF(10, 10), false, &r, 90, 0);
  EXPECT_NEAR(s.FStitchIn.x, 10.375, kTol);
  EXPECT_NEAR(s.FStitchIn.y, 10, kTol);
  EXPECT_NEAR(s.FStitchOut.x, 9.625, kTol);
  EXPECT_NEAR(s.FStitchOut.y, 10, kTol);

  // Diamond inverted at 58 + 32 = 90: (0.12, -0.715) becomes (0.715, 0.12).
  TPrickingIron d = iron("D");
  s.createStichPath(TPointF(0, 0), true, &d, 58, 0);
  EXPECT_NEAR(s.FStitchIn.x, 0.715, kTol);
  EXPECT_NEAR(s.FStitchIn.y, 0.12, kTol);
  EXPECT_NEAR(s.FStitchOut.x, -0.715, kTol);
  EXPECT_NEAR(s.FStitchOut.y, -0.12, kTol);

  // French not inverted at row 0: (0.0375, -0.75) turned by -45.
  TPrickingIron f = iron("F");
  s.createStichPath(TPointF(0, 0), false, &f, 0, 0);
  EXPECT_NEAR(s.FStitchIn.x, -0.503814, kTol);
  EXPECT_NEAR(s.FStitchIn.y, -0.556847, kTol);
  EXPECT_NEAR(s.FStitchOut.x, 0.503814, kTol);
  EXPECT_NEAR(s.FStitchOut.y, 0.556847, kTol);

  // Flat: (0.015, -0.75) at row 0.
  TPrickingIron l = iron("L");
  s.createStichPath(TPointF(0, 0), false, &l, 0, 0);
  EXPECT_NEAR(s.FStitchIn.x, 0.015, kTol);
  EXPECT_NEAR(s.FStitchIn.y, -0.75, kTol);
  EXPECT_NEAR(s.FStitchOut.x, -0.015, kTol);
  EXPECT_NEAR(s.FStitchOut.y, 0.75, kTol);
}

TEST(StitchInOut, FollowsTheStoredFieldsAndTheIronsAngle) {
  TPrickingIron f = iron("F");
  TPW_Path s = newShape();
  s.createStichPath(TPointF(0, 0), true, &f, 45, 0);
  // Moved by a transform command: recomputed from FCenter and FRotation.
  s.FCenter = TPointF(100, 0);
  s.FRotation = -45;  // with the inverted +45: no turn at all
  s.calcStitchInOutPos();
  EXPECT_NEAR(s.FStitchIn.x, 100.0375, kTol);
  EXPECT_NEAR(s.FStitchIn.y, -0.75, kTol);
  // Without an iron the angle offset is 0: turned by -45 only.
  s.FPrickingIron = nullptr;
  s.calcStitchInOutPos();
  EXPECT_NEAR(s.FStitchIn.x, 100 + (0.0375 - 0.75) * std::sqrt(0.5), kTol);
  EXPECT_NEAR(s.FStitchIn.y, (-0.0375 - 0.75) * std::sqrt(0.5), kTol);
}
