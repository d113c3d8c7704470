#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "document/shape_list.h"
#include "geometry/arc_math.h"
#include "geometry/bezier_math.h"
#include "geometry/ellipse_to_beziers.h"
#include "shape_factory.h"

TEST(ArcSplitting, AsFewEqualPiecesAsKeepEachWithinAQuarterTurn) {
  EXPECT_TRUE(shapes::arc(TPointF(0, 0), 10, TPointF(10, 0), 90)->splitArc().empty());
  EXPECT_TRUE(shapes::line(TPointF(0, 0), TPointF(1, 1))->splitArc().empty());
  struct Case {
    float sweep;
    size_t copies;
    float step;
  };
  for (const Case c : {Case{91, 1, 45.5f}, Case{-180, 1, -90}, Case{270, 2, 90}, Case{300, 3, 75}}) {
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
