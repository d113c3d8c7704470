#include <gtest/gtest.h>

#include <numbers>

#include "geometry/geom_helpers.h"
#include "geometry/normal_line.h"

TEST(PointHelpers, AnglesRunClockwiseOnTheScreen) {
  const double pi = std::numbers::pi;
  EXPECT_DOUBLE_EQ(directionAngle(TPointF(0, 0)), 0.0);
  EXPECT_NEAR(directionAngle(TPointF(0, 1)), pi / 2, 1e-12);
  EXPECT_NEAR(directionAngle(TPointF(0, -1)), 1.5 * pi, 1e-12);  // never negative
  const TPointF r = rotateAround(TPointF(11, 5), TPointF(1, 5), 90);
  EXPECT_NEAR(r.x, 1.0, 1e-5);
  EXPECT_NEAR(r.y, 15.0, 1e-5);
  EXPECT_NEAR(rotateUnitVector(TPointF(0, 7), 90).x, -1.0, 1e-6);  // length lost
  EXPECT_FLOAT_EQ(cosBetween(TPointF(1, 0), TPointF(0, 0)), -1.0f);
  EXPECT_NEAR(angleBetween(TPointF(1, 0), TPointF(-1, 1)), 135.0, 1e-4);
}

TEST(PointHelpers, TriangleHeightAndPointOnSegment) {
  EXPECT_NEAR(triangleHeight(3, 4, 5), 2.4, 1e-5);
  EXPECT_EQ(triangleHeight(1, 1, 5), 0.0f);  // cannot close
  double cross = 0;
  // The limit is on the cross product: 0.05 beside a 10 mm segment fails,
  // beside a 1 mm segment it passes.
  EXPECT_FALSE(pointOnSegmentTest(TPointF(0, 0), TPointF(10, 0), TPointF(5, 0.05f), 0.06, cross));
  EXPECT_NEAR(cross, 0.5, 1e-6);
  EXPECT_TRUE(pointOnSegmentTest(TPointF(0, 0), TPointF(1, 0), TPointF(0.5f, 0.05f), 0.06, cross));
  EXPECT_FALSE(pointOnSegmentTest(TPointF(0, 0), TPointF(1, 0), TPointF(1.01f, 0), 1.0, cross));
}

TEST(NormalFormLines, DistanceFootAndDegenerateLines) {
  const TNormalLine l = normalizeLine(TNormalLine{3, 4, -10});
  EXPECT_DOUBLE_EQ(signedDistance(l, 0, 0), -2.0);
  const TPointF f = footOfPoint(l, TPointF(0, 0));
  EXPECT_NEAR(f.x, 1.2, 1e-6);
  EXPECT_NEAR(f.y, 1.6, 1e-6);
  EXPECT_EQ(normalizeLine(TNormalLine{1e-10, 0, 5}).c, 0.0);
  EXPECT_DOUBLE_EQ(signedDistance(lineThroughPoints(TPointF(1, 1), TPointF(5, 1)), 3, 4), 3.0);
  const TNormalLine d = lineThroughPoints(TPointF(2, 3), TPointF(2, 3));
  EXPECT_DOUBLE_EQ(d.a, 1.0);
  EXPECT_DOUBLE_EQ(d.c, -2.0);
}
