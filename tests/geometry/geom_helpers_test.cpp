#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "geometry/geom_helpers.h"
#include "geometry/normal_line.h"

TEST(PointComparison, SamePointRoundsToHundredthsWithZeroTolerance) {
  EXPECT_TRUE(samePoint(TPointF(1.004f, 0), TPointF(0.996f, 0), 0.0));
  EXPECT_FALSE(samePoint(TPointF(1.004f, 0), TPointF(1.006f, 0), 0.0));
  // Any other tolerance is a strict bound on the distance.
  EXPECT_TRUE(samePoint(TPointF(0, 0), TPointF(3, 4), 5.001));
  EXPECT_FALSE(samePoint(TPointF(0, 0), TPointF(3, 4), 5.0));
}

TEST(PointComparison, RoundingIsHalfAwayFromZero) {
  EXPECT_FLOAT_EQ(roundTo2Decimals(2.125f), 2.13f);
  EXPECT_FLOAT_EQ(roundTo2Decimals(-2.125f), -2.13f);
  EXPECT_FLOAT_EQ(roundTo2Decimals(-0.004f), 0.0f);
  const TPointF p = roundPointTo4Decimals(TPointF(1.23456f, -7.00006f));
  EXPECT_FLOAT_EQ(p.x, 1.2346f);
  EXPECT_FLOAT_EQ(p.y, -7.0001f);
}

TEST(PointComparison, DistanceAndUnitVector) {
  EXPECT_FLOAT_EQ(distanceBetween(TPointF(1, 1), TPointF(4, 5)), 5.0f);
  const TPointF u = unitVectorTo(TPointF(1, 1), TPointF(4, 5));
  EXPECT_FLOAT_EQ(u.x, 0.6f);
  EXPECT_FLOAT_EQ(u.y, 0.8f);
  const TPointF z = unitVectorTo(TPointF(2, 2), TPointF(2, 2));
  EXPECT_EQ(z.x, 0.0f);
  EXPECT_EQ(z.y, 0.0f);
}

TEST(VectorAngles, DirectionRunsClockwiseOnTheScreenFromZeroToTwoPi) {
  const double pi = std::numbers::pi;
  EXPECT_DOUBLE_EQ(directionAngle(TPointF(0, 0)), 0.0);
  EXPECT_NEAR(directionAngle(TPointF(0, 1)), pi / 2, 1e-12);     // y down: a quarter turn clockwise
  EXPECT_NEAR(directionAngle(TPointF(0, -1)), 1.5 * pi, 1e-12);  // never negative
  EXPECT_NEAR(directionAngle(TPointF(-1, 0)), pi, 1e-12);
}

TEST(VectorAngles, RotationsTurnClockwiseAndUnitRotationDropsLength) {
  const TPointF r = rotateAround(TPointF(11, 5), TPointF(1, 5), 90);
  EXPECT_NEAR(r.x, 1.0, 1e-5);
  EXPECT_NEAR(r.y, 15.0, 1e-5);
  const TPointF u = rotateUnitVector(TPointF(0, 7), 90);
  EXPECT_NEAR(u.x, -1.0, 1e-6);
  EXPECT_NEAR(u.y, 0.0, 1e-6);
}

TEST(VectorAngles, CosineAndAngleBetween) {
  EXPECT_FLOAT_EQ(cosBetween(TPointF(1, 0), TPointF(0, 0)), -1.0f);  // a zero vector
  EXPECT_NEAR(cosBetween(TPointF(2, 0), TPointF(3, 3)), std::sqrt(0.5), 1e-6);
  EXPECT_NEAR(angleBetween(TPointF(1, 0), TPointF(-1, 1)), 135.0, 1e-4);
  EXPECT_NEAR(angleBetween(TPointF(0, 1), TPointF(1, 0)), 90.0, 1e-5);
}

TEST(TriangleHeight, HeronOverTheBase) {
  EXPECT_NEAR(triangleHeight(3, 4, 5), 2.4, 1e-5);
  EXPECT_NEAR(triangleHeight(5, 5, 6), 4.0, 1e-5);
  EXPECT_EQ(triangleHeight(1, 1, 5), 0.0f);  // cannot close
}

TEST(PointOnSegment, CrossProductIsAnAreaNotADistance) {
  double cross = 0;
  // 0.05 beside a 10 mm segment: cross product 0.5.
  EXPECT_FALSE(pointOnSegmentTest(TPointF(0, 0), TPointF(10, 0), TPointF(5, 0.05f), 0.06, cross));
  EXPECT_NEAR(cross, 0.5, 1e-6);
  // The same offset beside a 1 mm segment passes.
  EXPECT_TRUE(pointOnSegmentTest(TPointF(0, 0), TPointF(1, 0), TPointF(0.5f, 0.05f), 0.06, cross));
  // Beyond the end it fails whatever the tolerance.
  EXPECT_FALSE(pointOnSegmentTest(TPointF(0, 0), TPointF(1, 0), TPointF(1.01f, 0), 1.0, cross));
}

TEST(NormalFormLines, NormalisationDistanceAndFoot) {
  const TNormalLine l = normalizeLine(TNormalLine{3, 4, -10});
  EXPECT_DOUBLE_EQ(l.a, 0.6);
  EXPECT_DOUBLE_EQ(l.b, 0.8);
  EXPECT_DOUBLE_EQ(l.c, -2.0);
  EXPECT_DOUBLE_EQ(signedDistance(l, 0, 0), -2.0);
  const TPointF f = footOfPoint(l, TPointF(0, 0));
  EXPECT_NEAR(signedDistance(l, f), 0.0, 1e-6);
  EXPECT_NEAR(f.x, 1.2, 1e-6);
  EXPECT_NEAR(f.y, 1.6, 1e-6);
  const TNormalLine z = normalizeLine(TNormalLine{1e-10, 0, 5});
  EXPECT_EQ(z.a, 0.0);
  EXPECT_EQ(z.c, 0.0);
}

TEST(NormalFormLines, ThroughTwoPointsAndDegenerate) {
  const TNormalLine l = lineThroughPoints(TPointF(1, 1), TPointF(5, 1));
  EXPECT_DOUBLE_EQ(l.a, 0.0);
  EXPECT_DOUBLE_EQ(l.b, 1.0);
  EXPECT_DOUBLE_EQ(signedDistance(l, 3, 4), 3.0);  // below the line, y down
  const TNormalLine d = lineThroughPoints(TPointF(2, 3), TPointF(2, 3));
  EXPECT_DOUBLE_EQ(d.a, 1.0);
  EXPECT_DOUBLE_EQ(d.b, 0.0);
  EXPECT_DOUBLE_EQ(d.c, -2.0);
}
