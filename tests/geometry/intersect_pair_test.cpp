#include <gtest/gtest.h>

#include <cmath>

#include "geometry/intersect_pair.h"
#include "geometry/intersect_primitives.h"
#include "shape_factory.h"

using shapes::arc;
using shapes::arcAt;
using shapes::bezier;
using shapes::circle;
using shapes::line;

namespace {

TIntersectionList cross(TPW_Path& a, TPW_Path& b) { return calcShapeIntersections(&a, &b); }

void expectPoint(const TIntersection& e, double x, double y, bool crossing, double tol = 1e-4) {
  EXPECT_NEAR(e.FPoint.x, x, tol);
  EXPECT_NEAR(e.FPoint.y, y, tol);
  EXPECT_EQ(e.FIsCrossing, crossing);
}

}  // namespace

TEST(SegmentSolver, ParallelSegmentsMeetOnlyAtTheFirstSharedEnd) {
  TDPointList out;
  intersectSegments({0, 0}, {10, 0}, {10, 0}, {20, 0}, out);
  ASSERT_EQ(out.size(), 1u);
  EXPECT_EQ(out[0].x, 10.0);
  out.clear();
  // Overlapping collinear segments: p0 is near neither end of q, p1 is.
  intersectSegments({0, 0}, {10, 0}, {5, 0}, {10.005, 0}, out);
  ASSERT_EQ(out.size(), 1u);
  EXPECT_EQ(out[0].x, 10.0);
  out.clear();
  intersectSegments({0, 0}, {10, 0}, {2, 0}, {8, 0}, out);
  EXPECT_TRUE(out.empty());
}

TEST(SegmentSolver, ParameterToleranceIsEightThousandthsOfEachSegment) {
  TDPointList out;
  intersectSegments({0, 0}, {10, 0}, {10.07, -5}, {10.07, 5}, out);  // t = 1.007
  EXPECT_EQ(out.size(), 1u);
  out.clear();
  intersectSegments({0, 0}, {10, 0}, {10.09, -5}, {10.09, 5}, out);  // t = 1.009
  EXPECT_TRUE(out.empty());
}

TEST(CircleSolver, TangencyInnerTouchingAndMisses) {
  TDPointList out;
  intersectCircles({0, 0}, 10, {15, 0}, 5, out);  // outside, touching
  ASSERT_EQ(out.size(), 1u);
  EXPECT_NEAR(out[0].x, 10, 1e-9);
  out.clear();
  intersectCircles({0, 0}, 10, {5, 0}, 5, out);  // inside, touching
  ASSERT_EQ(out.size(), 1u);
  EXPECT_NEAR(out[0].x, 10, 1e-9);
  out.clear();
  intersectCircles({0, 0}, 1, {0.4999, 0}, 0.5, out);  // inside, missing by 0.0001
  EXPECT_EQ(out.size(), 1u);
  out.clear();
  intersectCircles({0, 0}, 10, {4.99, 0}, 5, out);  // inside, missing by 0.01
  EXPECT_TRUE(out.empty());
  intersectCircles({0, 0}, 10, {0, 0}, 5, out);  // concentric
  EXPECT_TRUE(out.empty());
  intersectCircles({0, 0}, 10, {20.01, 0}, 10, out);  // outside, 0.01 apart
  EXPECT_TRUE(out.empty());
  intersectCircles({0, 0}, 10, {12, 0}, 10, out);
  ASSERT_EQ(out.size(), 2u);
  EXPECT_NEAR(out[0].x, 6, 1e-9);
  EXPECT_NEAR(std::fabs(out[0].y), 8, 1e-9);
  EXPECT_NEAR(out[0].y, -out[1].y, 1e-9);
}

TEST(SegmentCircleSolver, PointsInOrderAlongTheSegment) {
  TDPointList out;
  intersectSegmentCircle({-20, 1}, {20, 1}, {0, 0}, 5, out);
  ASSERT_EQ(out.size(), 2u);
  EXPECT_NEAR(out[0].x, -std::sqrt(24.0), 1e-9);
  EXPECT_NEAR(out[1].x, std::sqrt(24.0), 1e-9);
  out.clear();
  intersectSegmentCircle({20, 1}, {0, 1}, {0, 0}, 5, out);  // ends inside: one point
  ASSERT_EQ(out.size(), 1u);
  EXPECT_NEAR(out[0].x, std::sqrt(24.0), 1e-9);
  out.clear();
  intersectSegmentCircle({-20, 5.0001}, {20, 5.0001}, {0, 0}, 5, out);  // grazing just outside
  ASSERT_EQ(out.size(), 1u);
  EXPECT_NEAR(out[0].x, 0, 1e-9);
  out.clear();
  intersectSegmentCircle({-20, 5.01}, {20, 5.01}, {0, 0}, 5, out);
  EXPECT_TRUE(out.empty());
  intersectSegmentCircle({-20, 0}, {20, 0}, {0, 0}, 0, out);
  EXPECT_TRUE(out.empty());
}

TEST(PairEngineLines, CrossingCornerAndCollinearJoint) {
  auto a = line(TPointF(0, 0), TPointF(10, 10), 3);
  auto b = line(TPointF(0, 10), TPointF(10, 0), 4);
  auto x = cross(*a, *b);
  ASSERT_EQ(x.size(), 1u);
  expectPoint(*x[0], 5, 5, true);
  EXPECT_EQ(x[0]->FPath1, a.get());
  EXPECT_EQ(x[0]->FPath2, b.get());
  EXPECT_EQ(x[0]->FPathID1, 3);
  EXPECT_EQ(x[0]->FPathID2, 4);

  // Two lines meeting at their ends at a right angle: a joint.
  auto c = line(TPointF(10, 10), TPointF(20, 10));
  x = cross(*a, *c);
  ASSERT_EQ(x.size(), 1u);
  expectPoint(*x[0], 10, 10, false);

  // Collinear lines sharing an end.
  auto d = line(TPointF(10, 10), TPointF(15, 15));
  x = cross(*a, *d);
  ASSERT_EQ(x.size(), 1u);
  expectPoint(*x[0], 10, 10, false);
}

TEST(PairEngineLines, TJointCrossesAndFarBoxesNeverMeet) {
  auto a = line(TPointF(0, 0), TPointF(10, 0));
  auto t = line(TPointF(5, 0), TPointF(5, 8));
  auto x = cross(*a, *t);
  ASSERT_EQ(x.size(), 1u);
  expectPoint(*x[0], 5, 0, true);
  // Within the solver's reach (t = 1.005 of a 100 mm line) but the boxes
  // are 0.5 apart: the box test comes first.
  auto longLine = line(TPointF(0, 0), TPointF(100, 0));
  auto beyond = line(TPointF(100.5f, -5), TPointF(100.5f, 5));
  EXPECT_TRUE(cross(*longLine, *beyond).empty());
}

TEST(PairEngineCircles, TangentLineTouchesOnce) {
  auto c = circle(TPointF(0, 0), 20);
  auto l = line(TPointF(-15, 10), TPointF(15, 10));
  auto x = cross(*l, *c);
  ASSERT_EQ(x.size(), 1u);
  expectPoint(*x[0], 0, 10, false);
  auto through = line(TPointF(-15, 6), TPointF(15, 6));
  x = cross(*through, *c);
  ASSERT_EQ(x.size(), 2u);
  expectPoint(*x[0], -8, 6, true);
  expectPoint(*x[1], 8, 6, true);
}

TEST(PairEngineCircles, InnerTouchingCircleGivesOneTouchingPoint) {
  auto big = circle(TPointF(0, 0), 20);
  auto small = circle(TPointF(5, 0), 10);
  auto x = cross(*big, *small);
  ASSERT_EQ(x.size(), 1u);
  expectPoint(*x[0], 10, 0, false);
}

TEST(PairEngineCircles, EllipseCountsAsACircleOfItsWidth) {
  auto e = shapes::ellipse(TPointF(0, 0), 20, 6);
  auto l = line(TPointF(0, -20), TPointF(0, 20));
  auto x = cross(*l, *e);
  ASSERT_EQ(x.size(), 2u);
  expectPoint(*x[0], 0, -10, true);
  expectPoint(*x[1], 0, 10, true);
}

TEST(PairEngineArcs, MissingPartOfAnArcGivesNothing) {
  // Upper half of the circle on screen (y < 0): from (10,0) anticlockwise.
  auto a = arc(TPointF(0, 0), 10, TPointF(10, 0), -180);
  auto below = line(TPointF(-20, 5), TPointF(20, 5));
  EXPECT_TRUE(cross(*a, *below).empty());
  auto above = line(TPointF(-20, -6), TPointF(20, -6));
  auto x = cross(*above, *a);
  ASSERT_EQ(x.size(), 2u);
  expectPoint(*x[0], -8, -6, true);
  expectPoint(*x[1], 8, -6, true);
  // The arc's end counts even though a line passes there from the outside.
  auto atEnd = line(TPointF(-10, 5), TPointF(-10, -5));
  x = cross(*a, *atEnd);
  ASSERT_EQ(x.size(), 1u);
  expectPoint(*x[0], -10, 0, false);
}

TEST(PairEngineArcs, ArcsMeetOnlyWhereBothAreDrawn) {
  auto a = arcAt(TPointF(0, 0), 10, 0, 90);     // lower right quarter
  auto b = arcAt(TPointF(12, 0), 10, 90, 90);   // lower left quarter of the other
  auto x = cross(*a, *b);
  ASSERT_EQ(x.size(), 1u);
  expectPoint(*x[0], 6, 8, true);
  auto c = arcAt(TPointF(12, 0), 10, 180, 90);  // upper left quarter
  EXPECT_TRUE(cross(*a, *c).empty());
  // Arc against a circle: the full circle meets both points, the arc one.
  auto full = circle(TPointF(12, 0), 20);
  x = cross(*a, *full);
  ASSERT_EQ(x.size(), 1u);
  expectPoint(*x[0], 6, 8, true);
}

TEST(PairEngineCurves, BezierAgainstLineArcAndCurve) {
  auto s = bezier(TPointF(0, 0), TPointF(10, 20), TPointF(20, -20), TPointF(30, 0));
  auto l = line(TPointF(15, -10), TPointF(15, 10));
  auto x = cross(*s, *l);
  ASSERT_EQ(x.size(), 1u);
  EXPECT_NEAR(x[0]->FPoint.x, 15, 1e-4);
  EXPECT_NEAR(x[0]->FPoint.y, 0, 0.02);  // on the flattened curve
  EXPECT_TRUE(x[0]->FIsCrossing);
  EXPECT_EQ(x[0]->FPath1, s.get());

  // The same pair the other way round names the line first.
  x = cross(*l, *s);
  ASSERT_EQ(x.size(), 1u);
  EXPECT_EQ(x[0]->FPath1, l.get());

  auto mirror = bezier(TPointF(0, 0), TPointF(10, -20), TPointF(20, 20), TPointF(30, 0));
  x = cross(*s, *mirror);
  ASSERT_EQ(x.size(), 3u);  // both ends (joints) and the middle
  expectPoint(*x[0], 0, 0, false);
  EXPECT_NEAR(x[1]->FPoint.x, 15, 0.05);
  EXPECT_TRUE(x[1]->FIsCrossing);
  expectPoint(*x[2], 30, 0, false);
}

TEST(PairEngineCurves, CurveTouchingALineIsNotACrossing) {
  // A symmetric arch whose top (y = -15 at t = 0.5) rests on a line.
  auto s = bezier(TPointF(0, 0), TPointF(10, -20), TPointF(20, -20), TPointF(30, 0));
  auto l = line(TPointF(0, -15), TPointF(30, -15));
  auto x = cross(*s, *l);
  ASSERT_GE(x.size(), 1u);
  EXPECT_NEAR(x[0]->FPoint.x, 15, 0.5);
  EXPECT_FALSE(x[0]->FIsCrossing);
}

TEST(PairEngineTolerances, TwoCrossingsCloserThanEightThousandthsAreOne) {
  // A line grazing a circle of radius 1: the two points are 0.0063 apart.
  auto c = circle(TPointF(0, 0), 2);
  auto l = line(TPointF(-2, 0.999995f), TPointF(2, 0.999995f));
  auto x = cross(*l, *c);
  ASSERT_EQ(x.size(), 1u);
  // The line does pass through, at a sine of about 0.003.
  EXPECT_TRUE(x[0]->FIsCrossing);
}

TEST(PairEngineTolerances, ShapesThatNeverMeet) {
  auto l = line(TPointF(0, 0), TPointF(10, 10));
  auto d = shapes::dot(TPointF(5, 5), 1);
  EXPECT_TRUE(cross(*l, *d).empty());
  auto other = line(TPointF(0, 10), TPointF(10, 0));
  other->FIsDimensionLine = true;
  EXPECT_TRUE(cross(*l, *other).empty());
  other->FIsDimensionLine = false;
  other->FShapeType = ShapeType::Other;
  EXPECT_TRUE(cross(*l, *other).empty());
  EXPECT_TRUE(calcShapeIntersections(l.get(), nullptr).empty());
  EXPECT_TRUE(cross(*l, *l).empty());
}

TEST(AddIntersection, JointsAndCrossingsSettleTheFlagOfANearbyEntry) {
  auto a = line(TPointF(0, 0), TPointF(10, 0));
  auto b = line(TPointF(10, 0), TPointF(10, 10));
  TIntersectionList list;
  addIntersection(list, TPointF(5, 0), a.get(), b.get(), false);
  addIntersection(list, TPointF(5.005f, 0), a.get(), b.get(), true);  // near: sets the flag
  ASSERT_EQ(list.size(), 1u);
  EXPECT_TRUE(list[0]->FIsCrossing);
  addIntersection(list, TPointF(10.004f, 0), a.get(), b.get(), true);  // a joint whatever it says
  ASSERT_EQ(list.size(), 2u);
  EXPECT_FALSE(list[1]->FIsCrossing);
  list[1]->FIsCrossing = true;
  addIntersection(list, TPointF(10, 0), a.get(), b.get(), true);
  EXPECT_EQ(list.size(), 2u);
  EXPECT_FALSE(list[1]->FIsCrossing);  // the joint clears it
}
