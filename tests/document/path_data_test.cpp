#include <gtest/gtest.h>

#include <cmath>

#include "document/path_data.h"

namespace {

std::string parsed(const std::string& svg) {
  TPathData d;
  d.setData(svg);
  return d.getData();
}

}  // namespace

TEST(PathDataText, RoundTripIsExact) {
  TPathData d;
  d.MoveTo(TPointF(1.0f / 3.0f, 2.7182817f));
  d.CurveTo(TPointF(-1e-7f, 5e6f), TPointF(6, 7), TPointF(8, 9));
  d.LineTo(TPointF(123456.79f, -0.001f));
  d.ClosePath();
  TPathData e;
  EXPECT_TRUE(e.setData(d.getData()));
  EXPECT_TRUE(e == d);
  EXPECT_EQ(e.getData(), d.getData());
}

TEST(PathDataSvg, AbsoluteAndRelativeCommandsWithImplicitRepeats) {
  EXPECT_EQ(parsed("M10 20 30 40 50 60"), "M10,20 L30,40 L50,60 ");
  EXPECT_EQ(parsed("m10 20 5 5 l1 1 1 1"), "M10,20 L15,25 L16,26 L17,27 ");
  EXPECT_EQ(parsed("M0,0 H10 V5 h-3 v-2 z"), "M0,0 L10,0 L10,5 L7,5 L7,3 Z ");
  // Compact number syntax: signs and points separate numbers.
  EXPECT_EQ(parsed("M1-2L.5.5-3e1-1E-1"), "M1,-2 L0.5,0.5 L-30,-0.100000001490116 ");
  // After a close the pen is back at the figure's start.
  EXPECT_EQ(parsed("M10,10 L20,10 Z l5,5"), "M10,10 L20,10 Z L15,15 ");
}

TEST(PathDataSvg, SmoothAndQuadraticCurvesBecomeCubics) {
  EXPECT_EQ(parsed("M0,0 C1,2 3,4 5,6 S9,10 11,12"), "M0,0 C1,2 3,4 5,6 C7,8 9,10 11,12 ");
  // S without a preceding cubic takes the current point as first control.
  EXPECT_EQ(parsed("M0,0 S3,3 6,0"), "M0,0 C0,0 3,3 6,0 ");
  // Q 3,6 6,0 from 0,0: controls at 2/3 of the way to the quadratic's control.
  EXPECT_EQ(parsed("M0,0 Q3,6 6,0"), "M0,0 C2,4 4,4 6,0 ");
  // T reflects the previous quadratic control: 9,-6.
  EXPECT_EQ(parsed("M0,0 Q3,6 6,0 T12,0"), "M0,0 C2,4 4,4 6,0 C8,-4 10,-4 12,0 ");
  EXPECT_EQ(parsed("M0,0 q3,6 6,0 t6,0"), "M0,0 C2,4 4,4 6,0 C8,-4 10,-4 12,0 ");
}

TEST(PathDataSvg, EllipticalArcsLandOnTheirEndAndStayOnTheCircle) {
  TPathData d;
  ASSERT_TRUE(d.setData("M10,0 A10,10 0 0 1 -10,0"));
  // A half circle through y > 0 (sweep flag 1 turns clockwise on the y-down
  // screen), in two quarter pieces.
  ASSERT_EQ(d.Count(), 7u);
  EXPECT_EQ(d[6].Point, TPointF(-10, 0));
  for (double t : {0.25, 0.5, 0.75}) {
    const TPointF p = cubicPointAt(d[0].Point, d[1].Point, d[2].Point, d[3].Point, t);
    EXPECT_NEAR(std::hypot(p.x, p.y), 10.0, 0.01);
    EXPECT_GT(p.y, 0.0f);
  }
  // Flags written without separators, and radii too small are scaled up.
  TPathData e;
  ASSERT_TRUE(e.setData("M0,0a1,1 0 1110,0"));
  EXPECT_EQ(e.LastPoint(), TPointF(10, 0));
  // Zero radius is a straight line.
  EXPECT_EQ(parsed("M0,0 A0,5 0 0 1 10,0"), "M0,0 L10,0 ");
}

TEST(PathDataSvg, ParsingStopsAtTheFirstErrorKeepingWhatCameBefore) {
  TPathData d;
  EXPECT_FALSE(d.setData("M0,0 L10,10 X 5,5"));
  EXPECT_EQ(d.getData(), "M0,0 L10,10 ");
  EXPECT_FALSE(d.setData("M0,0 L10"));
  EXPECT_EQ(d.getData(), "M0,0 ");
  EXPECT_FALSE(d.setData("12 13"));
  EXPECT_TRUE(d.isEmpty());
  EXPECT_TRUE(d.setData("   "));
  EXPECT_TRUE(d.isEmpty());
}

TEST(PathDataShapes, EllipseStartsAtTheLeftMiddleWithoutClose) {
  TPathData d;
  d.AddEllipse(TRectF(0, 0, 20, 10));
  ASSERT_EQ(d.Count(), 13u);
  EXPECT_EQ(d[0].Kind, TPathPointKind::MoveTo);
  EXPECT_EQ(d[0].Point, TPointF(0, 5));
  EXPECT_EQ(d[3].Point, TPointF(10, 0));
  EXPECT_EQ(d[6].Point, TPointF(20, 5));
  EXPECT_EQ(d[9].Point, TPointF(10, 10));
  EXPECT_EQ(d[12].Point, TPointF(0, 5));
  EXPECT_NEAR(d[1].Point.y, 5 - 5 * 0.5522847498, 1e-5);
}

TEST(PathDataFlatten, PieceCountFollowsTheChordLength) {
  // A straight cubic from 0 to 30: length 30, N = 30 / 0.3 = 100 points
  // from t = 0 (a zero-length first piece) to t = 98/99, then the end.
  TPathData d;
  d.MoveTo(TPointF(0, 0));
  d.CurveTo(TPointF(10, 0), TPointF(20, 0), TPointF(30, 0));
  d.Flatten(0.3);
  ASSERT_EQ(d.Count(), 1u + 99u + 1u);
  EXPECT_EQ(d[1].Point, TPointF(0, 0));
  EXPECT_EQ(d[100].Point, TPointF(30, 0));
  for (size_t i = 1; i < d.Count(); ++i) EXPECT_EQ(d[i].Kind, TPathPointKind::LineTo);

  // Flatness below 0.05 is raised to it: 30 / 0.05 = 600.
  TPathData fine;
  fine.MoveTo(TPointF(0, 0));
  fine.CurveTo(TPointF(10, 0), TPointF(20, 0), TPointF(30, 0));
  fine.Flatten(0.001);
  EXPECT_EQ(fine.Count(), 1u + 599u + 1u);
}

TEST(PathDataFlatten, HugeCurvesStopWhereMorePiecesGainNothing) {
  // A circle a kilometre across: 3.1 million chord lengths, but a few
  // thousand pieces a quarter already stay within a hundredth of it. A
  // curve of two metres keeps its count.
  for (const double r : {500000.0, 1000.0}) {
    TPathData d;
    d.AddEllipse(TRectF(TPointF::fromDouble(-r, -r), TPointF::fromDouble(r, r)));
    d.Flatten(0.3);
    const double full = 2.0 * 3.14159265 * r / 0.3;
    if (r < 10000.0) EXPECT_NEAR(double(d.Count()), full, full * 0.01);
    else EXPECT_LE(d.Count(), 4u * 10000u + 1u);
    for (size_t i = 1; i < d.Count(); ++i) {
      const TPointF a = d[i - 1].Point, b = d[i].Point;
      const double mid = std::hypot((double(a.x) + b.x) / 2.0, (double(a.y) + b.y) / 2.0);
      ASSERT_LT(r - mid, 0.01) << i;
    }
  }
}

TEST(PathDataSharing, CopiesShareUntilOneChanges) {
  TPathData a;
  a.MoveTo(TPointF(0, 0));
  a.LineTo(TPointF(10, 0));
  TPathData b = a;
  EXPECT_TRUE(b.sharesPointsWith(a));
  b.Translate(5, 0);
  EXPECT_FALSE(b.sharesPointsWith(a));
  EXPECT_EQ(a.getData(), "M0,0 L10,0 ");
  EXPECT_EQ(b.getData(), "M5,0 L15,0 ");
  TPathData c = a;
  c.mutablePoints()[1].Point = TPointF(1, 1);
  EXPECT_EQ(a.getData(), "M0,0 L10,0 ");
  TPathData d = a;
  d.Clear();
  EXPECT_TRUE(d.isEmpty());
  EXPECT_EQ(a.Count(), 2u);
  TPathData e = a;
  e.Flatten(0.3);  // nothing to flatten: still shared
  EXPECT_TRUE(e.sharesPointsWith(a));
}
