#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "document/shape_list.h"
#include "geometry/arc_math.h"
#include "geometry/bezier_math.h"
#include "geometry/ellipse_to_beziers.h"
#include "shape_factory.h"

TEST(ArcDrawing, SweepIsNormalisedOnceAndAFullTurnDrawsNothing) {
  auto full = shapes::arc(TPointF(0, 0), 10, TPointF(10, 0), 360);
  EXPECT_EQ(full->FSweepAngle, 0.0f);
  EXPECT_TRUE(full->FData.isEmpty());
  EXPECT_EQ(normaliseSweep(-360.0f), 0.0f);
  EXPECT_EQ(normaliseSweep(720.0f), 360.0f);  // once only
  EXPECT_EQ(normaliseSweep(-500.0f), -140.0f);
  EXPECT_EQ(normaliseSweep(359.5f), 359.5f);
}

TEST(ArcDrawing, StartAngleIsNegativeAboveTheCentreAndForgivesASlightlyOffPoint) {
  EXPECT_NEAR(arcStartAngle(TPointF(0, 0), 10, TPointF(0, 10)), 90.0, 1e-9);
  EXPECT_NEAR(arcStartAngle(TPointF(0, 0), 10, TPointF(0, -10)), -90.0, 1e-9);
  EXPECT_NEAR(arcStartAngle(TPointF(0, 0), 10, TPointF(-10, 0)), 180.0, 1e-9);
  // A start point a hair outside the circle still gives 0, not NaN.
  EXPECT_EQ(arcStartAngle(TPointF(0, 0), 10, TPointF(10.00004f, 0)), 0.0);
  // The cosine is rounded to five decimals: 0.999996 becomes 1.
  EXPECT_EQ(arcStartAngle(TPointF(0, 0), 10, TPointF(9.99996f, 0.03f)), 0.0);
  auto a = shapes::arc(TPointF(5, 5), 10, TPointF(5, -5), 90);
  EXPECT_FLOAT_EQ(a->FStartAngle, -90.0f);
}

namespace {

// Pieces of a split arc: each starts where the one before ends, all on the
// circle, with the given sweeps.
void expectChain(const std::vector<std::unique_ptr<TPW_Path>>& pieces, const TPW_Path& rest,
                 float step, const TPointF& start, const TPointF& end) {
  TPointF at = start;
  auto check = [&](const TPW_Path& p) {
    EXPECT_EQ(p.FShapeType, ShapeType::Arc);
    EXPECT_FLOAT_EQ(p.FSweepAngle, step);
    EXPECT_NEAR(p.FStartPt.x, at.x, 1e-4);
    EXPECT_NEAR(p.FStartPt.y, at.y, 1e-4);
    EXPECT_NEAR(distanceOf(p.FStartPt, p.FCenter), p.FWidth, 1e-4);
    at = p.FEndPt;
  };
  for (const auto& p : pieces) check(*p);
  check(rest);
  EXPECT_NEAR(rest.FEndPt.x, end.x, 1e-4);
  EXPECT_NEAR(rest.FEndPt.y, end.y, 1e-4);
}

}  // namespace

TEST(ArcSplitting, AtMostAQuarterTurnIsLeftWhole) {
  auto a = shapes::arc(TPointF(0, 0), 10, TPointF(10, 0), 90);
  EXPECT_TRUE(a->splitArc().empty());
  EXPECT_FLOAT_EQ(a->FSweepAngle, 90.0f);
  auto l = shapes::line(TPointF(0, 0), TPointF(1, 1));
  EXPECT_TRUE(l->splitArc().empty());
}

TEST(ArcSplitting, PiecesAreOneMoreThanTheWholeQuarterTurns) {
  struct Case {
    float sweep;
    size_t copies;
    float step;
  };
  // 180 and 270 deliberately give one piece more than the quarter turns.
  for (const Case c : {Case{91, 1, 45.5f}, Case{-180, 2, -60}, Case{180, 2, 60}, Case{270, 3, 67.5f},
                       Case{-300, 3, -75}}) {
    auto a = shapes::arc(TPointF(3, 4), 10, TPointF(13, 4), c.sweep, 7);
    const TPointF start = a->FStartPt, end = a->FEndPt;
    const TGUID guid = a->FGUID;
    const auto pieces = a->splitArc();
    ASSERT_EQ(pieces.size(), c.copies) << c.sweep;
    expectChain(pieces, *a, c.step, start, end);
    for (const auto& p : pieces) {
      EXPECT_EQ(p->FID, 7);  // the caller renumbers
      EXPECT_EQ(p->FGUID, guid);
    }
  }
}

TEST(ArcToBezier, QuarterTurnsInBothDirections) {
  auto a = shapes::arc(TPointF(0, 0), 10, TPointF(10, 0), 90);
  a->convertArcToBezier();
  ASSERT_EQ(a->FShapeType, ShapeType::Bezier);
  EXPECT_NEAR(a->FBezierCp1.x, 10, 1e-4);
  EXPECT_NEAR(a->FBezierCp1.y, 5.5228475, 1e-4);
  EXPECT_NEAR(a->FBezierCp2.x, 5.5228475, 1e-4);
  EXPECT_NEAR(a->FBezierCp2.y, 10, 1e-4);

  auto b = shapes::arc(TPointF(0, 0), 10, TPointF(10, 0), -90);
  b->convertArcToBezier();
  EXPECT_NEAR(b->FBezierCp1.x, 10, 1e-4);
  EXPECT_NEAR(b->FBezierCp1.y, -5.5228475, 1e-4);
  EXPECT_NEAR(b->FBezierCp2.x, 5.5228475, 1e-4);
  EXPECT_NEAR(b->FBezierCp2.y, -10, 1e-4);
}

TEST(ArcToBezier, HalfTurnUsesTheStartTangentAtBothEnds) {
  for (float sweep : {180.0f, -180.0f}) {
    auto a = shapes::arc(TPointF(0, 0), 10, TPointF(10, 0), sweep);
    a->convertArcToBezier();
    const float side = sweep > 0 ? 1.0f : -1.0f;
    EXPECT_NEAR(a->FBezierCp1.x, 10, 1e-4);
    EXPECT_NEAR(a->FBezierCp1.y, side * 40.0 / 3.0, 1e-4);
    EXPECT_NEAR(a->FBezierCp2.x, -10, 1e-4);
    EXPECT_NEAR(a->FBezierCp2.y, side * 40.0 / 3.0, 1e-4);
  }
}

TEST(ArcToBezier, CurveFollowsTheArcAndLongArcsAreLeftAlone) {
  auto a = shapes::arcAt(TPointF(2, 3), 20, 30, 120);
  a->convertArcToBezier();
  for (int i = 0; i <= 10; ++i) {
    const TPointF p = cubicPointAt(a->FStartPt, a->FBezierCp1, a->FBezierCp2, a->FEndPt, i / 10.0);
    // One cubic for 120 degrees strays by about 0.15 % of the radius.
    EXPECT_NEAR(distanceOf(p, TPointF(2, 3)), 20.0, 0.04);
  }
  auto big = shapes::arc(TPointF(0, 0), 10, TPointF(10, 0), 270);
  big->convertArcToBezier();
  EXPECT_EQ(big->FShapeType, ShapeType::Arc);
  EXPECT_FLOAT_EQ(big->FSweepAngle, 270.0f);
}

TEST(EllipseToBeziers, FullCircleIsFourSmoothPieces) {
  TShapeList ids(nullptr, "en");
  TShapeStyle style;
  style.FColor = 0xFF00FF00;
  const auto pieces = ellipseToBeziers(TPointF(0, 0), TPointF(10, 0), TPointF(0, 10), 0.0,
                                       2 * std::numbers::pi, style, ids);
  ASSERT_EQ(pieces.size(), 4u);
  for (size_t i = 0; i < 4; ++i) {
    const TPW_Path& p = *pieces[i];
    EXPECT_EQ(p.FID, int(i) + 1);
    EXPECT_EQ(p.FColor, 0xFF00FF00u);
    EXPECT_NEAR(distanceOf(p.FStartPt, TPointF(0, 0)), 10.0, 1e-4);
    const TPW_Path& next = *pieces[(i + 1) % 4];
    EXPECT_NEAR(p.FEndPt.x, next.FStartPt.x, 1e-4);
    EXPECT_NEAR(p.FEndPt.y, next.FStartPt.y, 1e-4);
    // Smooth joint: the next handle mirrors this one through the joint.
    EXPECT_NEAR(next.FBezierCp1.x - p.FEndPt.x, p.FEndPt.x - p.FBezierCp2.x, 1e-4);
    EXPECT_NEAR(next.FBezierCp1.y - p.FEndPt.y, p.FEndPt.y - p.FBezierCp2.y, 1e-4);
  }
  EXPECT_NEAR(pieces[0]->FEndPt.x, 0.0, 1e-4);
  EXPECT_NEAR(pieces[0]->FEndPt.y, 10.0, 1e-4);  // runs from the first axis to the second
}

TEST(EllipseToBeziers, ArcsStartAnglesAndDirection) {
  TShapeList ids(nullptr, "en");
  EXPECT_TRUE(ellipseToBeziers(TPointF(0, 0), TPointF(10, 0), TPointF(0, 5), 0, 0, {}, ids).empty());
  EXPECT_EQ(ids.FLastID, 0);
  // A negative sweep runs the other way round.
  auto back = ellipseToBeziers(TPointF(0, 0), TPointF(20, 0), TPointF(0, 10), 0, -std::numbers::pi / 2,
                               {}, ids);
  ASSERT_EQ(back.size(), 1u);
  EXPECT_NEAR(back[0]->FEndPt.x, 0.0, 1e-4);
  EXPECT_NEAR(back[0]->FEndPt.y, -10.0, 1e-4);
  const TPointF mid = bezierPointAt(*back[0], 0.5f);
  EXPECT_NEAR(mid.x, 20 * std::sqrt(0.5), 0.02);
  EXPECT_NEAR(mid.y, -10 * std::sqrt(0.5), 0.02);
  // Three quarters of a turn from a start angle of a quarter: three pieces
  // from the second axis round to the first.
  auto part = ellipseToBeziers(TPointF(1, 1), TPointF(21, 1), TPointF(1, 11), std::numbers::pi / 2,
                               1.5 * std::numbers::pi, {}, ids);
  ASSERT_EQ(part.size(), 3u);
  EXPECT_NEAR(part[0]->FStartPt.x, 1.0, 1e-4);
  EXPECT_NEAR(part[0]->FStartPt.y, 11.0, 1e-4);
  EXPECT_NEAR(part[2]->FEndPt.x, 21.0, 1e-4);
  EXPECT_NEAR(part[2]->FEndPt.y, 1.0, 1e-4);
  // 100 degrees needs two pieces.
  EXPECT_EQ(ellipseToBeziers(TPointF(0, 0), TPointF(5, 0), TPointF(0, 5), 0, 100 * std::numbers::pi / 180,
                             {}, ids)
                .size(),
            2u);
}
