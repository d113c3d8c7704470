// The outline each blade punches and where the thread passes through it.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "document/pw_path.h"
#include "stitching/pricking_iron.h"

namespace {

TPrickingIron iron(const char* letter) {
  TPrickingIron i;
  i.FBladeType = letter;
  bladeDefaults(letter, i.FWidth, i.FHeight, i.FAngle);
  return i;
}

TPW_Path newShape() { return TPW_Path(36, 0xFFFFFFFF, 1.0f, TStrokeDash::Dot, 7); }

// The points of the path from entry `from` on, all of kind LineTo except
// where a MoveTo is listed as a pair with `true`.
void expectPoints(const TPathData& d, const std::vector<std::pair<double, double>>& want,
                  size_t from = 0) {
  ASSERT_GE(d.Count(), from + want.size()) << d.getData();
  for (size_t i = 0; i < want.size(); ++i) {
    EXPECT_NEAR(d[from + i].Point.x, want[i].first, 1e-5) << i << ": " << d.getData();
    EXPECT_NEAR(d[from + i].Point.y, want[i].second, 1e-5) << i << ": " << d.getData();
  }
}

}  // namespace

TEST(HoleOutline, DiamondTiltsAgainstTheRowAndMirrorsWhenInverted) {
  const TPrickingIron d = iron("D");  // 0.8 x 2.2, 32 degrees
  TPW_Path s = newShape();
  s.setAsDiamondHole(TPointF(10, 20), d, false, 0, 0);  // turned by -32
  ASSERT_EQ(s.FData.Count(), 5u);
  EXPECT_EQ(s.FData[0].Kind, TPathPointKind::MoveTo);
  expectPoints(s.FData, {{9.417089, 19.067147},
                         {10.339219, 19.788032},
                         {10.582911, 20.932853},
                         {9.660781, 20.211968},
                         {9.417089, 19.067147}});
  EXPECT_EQ(s.FShapeType, "S_HOLE");
  EXPECT_EQ(s.FStitchType, "D");
  EXPECT_EQ(s.FDash, TStrokeDash::Solid);
  EXPECT_EQ(s.FHeight, 2.2f);

  // Inverted, a row at 58 degrees turns the blade by 58 + 32 = 90.
  s.setAsDiamondHole(TPointF(1, 2), d, true, 58, 0);
  expectPoints(s.FData, {{2.1, 2}, {1, 2.4}, {-0.1, 2}, {1, 1.6}, {2.1, 2}});
  EXPECT_TRUE(s.FStitchInversed);
}

TEST(HoleOutline, FrenchAndFlatAreRectanglesOnlyFrenchTakesTheAngle) {
  TPW_Path s = newShape();
  s.setAsFrenchHole(TPointF(0, 0), iron("F"), true, 45, 0);  // 0.25 x 2 turned by 90
  expectPoints(s.FData, {{1, -0.125}, {1, 0.125}, {-1, 0.125}, {-1, -0.125}, {1, -0.125}});

  TPrickingIron l = iron("L");  // 0.3 x 2
  l.FAngle = 30;
  s.setAsFlatHole(TPointF(3, 4), l, 90, 0);
  expectPoints(s.FData, {{4, 3.85}, {4, 4.15}, {2, 4.15}, {2, 3.85}, {4, 3.85}});
  EXPECT_EQ(s.FStitchType, "L");
}

TEST(HoleOutline, RoundIsACircleOfTheBladeWidthNeverTurned) {
  TPrickingIron r = iron("R");
  r.FWidth = 1.2f;
  r.FHeight = 5;  // ignored
  TPW_Path a = newShape(), b = newShape();
  a.setAsRoundHole(TPointF(10, 10), r, 0, 0);
  b.setAsRoundHole(TPointF(10, 10), r, 37, 0);
  EXPECT_EQ(a.FHeight, 1.2f);
  EXPECT_EQ(a.FData.getData(), b.FData.getData());
  const TRectF box = a.FData.GetBounds();
  EXPECT_NEAR(box.Left, 9.4, 1e-5);
  EXPECT_NEAR(box.Bottom, 10.6, 1e-5);
}

TEST(CreateStitchPath, DispatchesOnTheBladeAndSetsTheHoleFields) {
  TPrickingIron d = iron("D");
  d.FBladeType = "d";  // compared upper-cased
  TPW_Path s = newShape();
  s.drawLinePath(TPointF(0, 0), TPointF(0, 5));
  s.getBoundary(false);
  s.createStichPath(TPointF(7, 8), false, &d, 12, 0);
  EXPECT_EQ(s.FStitchType, "D");
  EXPECT_EQ(s.FPrickingIron, &d);
  EXPECT_TRUE(s.FStartPt.identical(TPointF(7, 8)));
  EXPECT_TRUE(s.FCenter.identical(TPointF(7, 8)));
  EXPECT_EQ(s.FThickness, 1.0f);
  EXPECT_EQ(s.FRotation, 12.0f);
  EXPECT_FALSE(s.FIsVerticalLine);
  EXPECT_EQ(s.FLine_param_a, 0.0f);
  EXPECT_FALSE(s.FIsBoundaryCalculated);
  EXPECT_LT(s.getBoundary(false).Right, 8.0f);

  TPrickingIron x = iron("X");
  s.createStichPath(TPointF(1, 1), false, &x, 0, 0);
  EXPECT_TRUE(s.FData.isEmpty());  // an unknown blade has no outline
  s.createStichPath(TPointF(9, 9), false, nullptr, 0, 0);
  EXPECT_TRUE(s.FCenter.identical(TPointF(1, 1)));  // no iron: nothing changes
}
