#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "document/shape_list.h"
#include "geometry/arc_math.h"
#include "geometry/bezier_math.h"
#include "geometry/ellipse_to_beziers.h"
#include "shape_factory.h"

TEST(ArcDrawing, SweepNormalisedOnceAndStartAngleForgiving) {
  auto full = shapes::arc(TPointF(0, 0), 10, TPointF(10, 0), 360);
  EXPECT_EQ(full->FSweepAngle, 0.0f);
  EXPECT_TRUE(full->FData.isEmpty());
  EXPECT_EQ(normaliseSweep(720.0f), 360.0f);  // once only
  EXPECT_EQ(normaliseSweep(-500.0f), -140.0f);
  EXPECT_NEAR(arcStartAngle(TPointF(0, 0), 10, TPointF(0, -10)), -90.0, 1e-9);  // above: negative
  EXPECT_NEAR(arcStartAngle(TPointF(0, 0), 10, TPointF(-10, 0)), 180.0, 1e-9);
  // Slightly outside the circle, or a cosine of 0.999996: rounded to 1.
  EXPECT_EQ(arcStartAngle(TPointF(0, 0), 10, TPointF(10.00004f, 0)), 0.0);
  EXPECT_EQ(arcStartAngle(TPointF(0, 0), 10, TPointF(9.99996f, 0.03f)), 0.0);
}

TEST(ArcSplitting, PiecesAreOneMoreThanTheWholeQuarterTurns) {
  EXPECT_TRUE(shapes::arc(TPointF(0, 0), 10, TPointF(10, 0), 90)->splitArc().empty());
  EXPECT_TRUE(shapes::line(TPointF(0, 0), TPointF(1, 1))->splitArc().empty());
  struct Case {
    float sweep;
    size_t copies;
    float step;
  };
  // 180 and 270 deliberately give one piece more than the quarter turns.
  for (const Case c : {Case{91, 1, 45.5f}, Case{-180, 2, -60}, Case{270, 3, 67.5f}}) {
    auto a = shapes::arc(TPointF(3, 4), 10, TPointF(13, 4), c.sweep, 7);
    const TPointF end = a->FEndPt;
    const auto pieces = a->splitArc();
    ASSERT_EQ(pieces.size(), c.copies) << c.sweep;
    TPointF at(13, 4);
    for (size_t i = 0; i <= pieces.size(); ++i) {
      const TPW_Path& p = i < pieces.size() ? *pieces[i] : *a;  // the shape keeps the last
      EXPECT_FLOAT_EQ(p.FSweepAngle, c.step);
      EXPECT_NEAR(distanceOf(p.FStartPt, at), 0.0, 1e-4);
      EXPECT_EQ(p.FID, 7);  // the caller renumbers
      at = p.FEndPt;
    }
    EXPECT_NEAR(distanceOf(at, end), 0.0, 1e-4);
  }
}

TEST(ArcToBezier, QuarterAndHalfTurnsInBothDirections) {
  for (float side : {1.0f, -1.0f}) {
    auto q = shapes::arc(TPointF(0, 0), 10, TPointF(10, 0), 90 * side);
    q->convertArcToBezier();
    ASSERT_EQ(q->FShapeType, ShapeType::Bezier);
    EXPECT_NEAR(q->FBezierCp1.y, side * 5.5228475, 1e-4);
    EXPECT_NEAR(q->FBezierCp2.x, 5.5228475, 1e-4);
    EXPECT_NEAR(q->FBezierCp2.y, side * 10, 1e-4);
    // A half turn takes the start's tangent at both ends.
    auto h = shapes::arc(TPointF(0, 0), 10, TPointF(10, 0), 180 * side);
    h->convertArcToBezier();
    EXPECT_NEAR(h->FBezierCp1.y, side * 40.0 / 3.0, 1e-4);
    EXPECT_NEAR(h->FBezierCp2.x, -10, 1e-4);
    EXPECT_NEAR(h->FBezierCp2.y, side * 40.0 / 3.0, 1e-4);
  }
  auto big = shapes::arc(TPointF(0, 0), 10, TPointF(10, 0), 270);
  big->convertArcToBezier();
  EXPECT_EQ(big->FShapeType, ShapeType::Arc);  // split it first
}

TEST(EllipseToBeziers, FullTurnIsFourSmoothPiecesAndSweepSetsDirection) {
  TShapeList ids(nullptr, "en");
  const double pi = std::numbers::pi;
  const auto full = ellipseToBeziers(TPointF(0, 0), TPointF(10, 0), TPointF(0, 10), 0, 2 * pi, {}, ids);
  ASSERT_EQ(full.size(), 4u);
  for (size_t i = 0; i < 4; ++i) {
    const TPW_Path &p = *full[i], &next = *full[(i + 1) % 4];
    EXPECT_EQ(p.FID, int(i) + 1);
    EXPECT_NEAR(distanceOf(p.FEndPt, next.FStartPt), 0.0, 1e-4);
    // The next handle mirrors this one through the joint.
    EXPECT_NEAR(next.FBezierCp1.x - p.FEndPt.x, p.FEndPt.x - p.FBezierCp2.x, 1e-4);
    EXPECT_NEAR(next.FBezierCp1.y - p.FEndPt.y, p.FEndPt.y - p.FBezierCp2.y, 1e-4);
  }
  EXPECT_NEAR(full[0]->FEndPt.y, 10.0, 1e-4);  // from the first axis towards the second
  EXPECT_TRUE(ellipseToBeziers(TPointF(0, 0), TPointF(10, 0), TPointF(0, 5), 0, 0, {}, ids).empty());
  auto back = ellipseToBeziers(TPointF(0, 0), TPointF(20, 0), TPointF(0, 10), 0, -pi / 2, {}, ids);
  ASSERT_EQ(back.size(), 1u);
  EXPECT_NEAR(back[0]->FEndPt.y, -10.0, 1e-4);
  const TPointF mid = bezierPointAt(*back[0], 0.5f);
  EXPECT_NEAR(mid.x, 20 * std::sqrt(0.5), 0.02);
  EXPECT_NEAR(mid.y, -10 * std::sqrt(0.5), 0.02);
  auto part = ellipseToBeziers(TPointF(1, 1), TPointF(21, 1), TPointF(1, 11), pi / 2, 1.5 * pi, {}, ids);
  ASSERT_EQ(part.size(), 3u);
  EXPECT_NEAR(distanceOf(part[0]->FStartPt, TPointF(1, 11)), 0.0, 1e-4);
  EXPECT_NEAR(distanceOf(part[2]->FEndPt, TPointF(21, 1)), 0.0, 1e-4);
}
