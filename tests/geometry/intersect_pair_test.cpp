#include <gtest/gtest.h>

#include <cmath>

#include "geometry/intersect_pair.h"
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

TEST(PrimitiveSolvers, SegmentsParallelsAndTheirParameterTolerance) {
  TDPointList out;
  // Overlapping collinear pieces meet only at a shared end.
  intersectSegments({0, 0}, {10, 0}, {5, 0}, {10.005, 0}, out);
  ASSERT_EQ(out.size(), 1u);
  EXPECT_EQ(out[0].x, 10.0);
  out.clear();
  intersectSegments({0, 0}, {10, 0}, {2, 0}, {8, 0}, out);
  EXPECT_TRUE(out.empty());
  intersectSegments({0, 0}, {10, 0}, {10.07, -5}, {10.07, 5}, out);  // t = 1.007
  EXPECT_EQ(out.size(), 1u);
  out.clear();
  intersectSegments({0, 0}, {10, 0}, {10.09, -5}, {10.09, 5}, out);  // t = 1.009
  EXPECT_TRUE(out.empty());
}

TEST(PairEngine, LinesCrossJoinAtEndsAndTJoin) {
  auto a = line(TPointF(0, 0), TPointF(10, 10), 3);
  auto b = line(TPointF(0, 10), TPointF(10, 0), 4);
  auto x = cross(*a, *b);
  ASSERT_EQ(x.size(), 1u);
  expectPoint(*x[0], 5, 5, true);
  EXPECT_EQ(x[0]->FPath1, a.get());
  EXPECT_EQ(x[0]->FPathID2, 4);
  // Collinear lines sharing an end: a joint, not a crossing.
  x = cross(*a, *line(TPointF(10, 10), TPointF(15, 15)));
  ASSERT_EQ(x.size(), 1u);
  expectPoint(*x[0], 10, 10, false);
  // A T: the end of one on the middle of the other does cross.
  x = cross(*line(TPointF(0, 0), TPointF(10, 0)), *line(TPointF(5, 0), TPointF(5, 8)));
  ASSERT_EQ(x.size(), 1u);
  expectPoint(*x[0], 5, 0, true);
  // Within the solver's reach (t = 1.005 of 100 mm) but boxes 0.5 apart.
  EXPECT_TRUE(cross(*line(TPointF(0, 0), TPointF(100, 0)), *line(TPointF(100.5f, -5), TPointF(100.5f, 5))).empty());
}

TEST(PairEngine, CirclesTangentsAndEllipseWidth) {
  auto c = circle(TPointF(0, 0), 20);
  auto x = cross(*line(TPointF(-15, 10), TPointF(15, 10)), *c);  // tangent
  ASSERT_EQ(x.size(), 1u);
  expectPoint(*x[0], 0, 10, false);
  x = cross(*line(TPointF(-15, 6), TPointF(15, 6)), *c);
  ASSERT_EQ(x.size(), 2u);
  expectPoint(*x[0], -8, 6, true);  // in order along the line
  expectPoint(*x[1], 8, 6, true);
  x = cross(*c, *circle(TPointF(5, 0), 10));  // touching from inside
  ASSERT_EQ(x.size(), 1u);
  expectPoint(*x[0], 10, 0, false);
  // An ellipse that isn't round is met where it is drawn.
  x = cross(*line(TPointF(0, -20), TPointF(0, 20)), *shapes::ellipse(TPointF(0, 0), 20, 6));
  ASSERT_EQ(x.size(), 2u);
  expectPoint(*x[0], 0, -3, true);
  expectPoint(*x[1], 0, 3, true);
}

TEST(PairEngine, ArcsMeetOnlyWhereDrawn) {
  auto upper = arc(TPointF(0, 0), 10, TPointF(10, 0), -180);  // y < 0 on screen
  EXPECT_TRUE(cross(*upper, *line(TPointF(-20, 5), TPointF(20, 5))).empty());
  auto x = cross(*line(TPointF(-20, -6), TPointF(20, -6)), *upper);
  ASSERT_EQ(x.size(), 2u);
  expectPoint(*x[0], -8, -6, true);
  // Touching at the arc's end, from outside.
  x = cross(*upper, *line(TPointF(-10, 5), TPointF(-10, -5)));
  ASSERT_EQ(x.size(), 1u);
  expectPoint(*x[0], -10, 0, false);

  auto a = arcAt(TPointF(0, 0), 10, 0, 90);  // lower right quarter
  x = cross(*a, *arcAt(TPointF(12, 0), 10, 90, 90));
  ASSERT_EQ(x.size(), 1u);
  expectPoint(*x[0], 6, 8, true);
  EXPECT_TRUE(cross(*a, *arcAt(TPointF(12, 0), 10, 180, 90)).empty());
  EXPECT_EQ(cross(*a, *circle(TPointF(12, 0), 20)).size(), 1u);
}

TEST(PairEngine, BezierPiecesAgainstLinesAndCurves) {
  auto s = bezier(TPointF(0, 0), TPointF(10, 20), TPointF(20, -20), TPointF(30, 0));
  auto l = line(TPointF(15, -10), TPointF(15, 10));
  auto x = cross(*s, *l);
  ASSERT_EQ(x.size(), 1u);
  EXPECT_NEAR(x[0]->FPoint.y, 0, 0.02);  // on the flattened curve
  EXPECT_TRUE(x[0]->FIsCrossing);
  EXPECT_EQ(cross(*l, *s)[0]->FPath1, l.get());
  auto mirror = bezier(TPointF(0, 0), TPointF(10, -20), TPointF(20, 20), TPointF(30, 0));
  x = cross(*s, *mirror);
  ASSERT_EQ(x.size(), 3u);  // both ends as joints, and the middle once
  expectPoint(*x[0], 0, 0, false);
  EXPECT_NEAR(x[1]->FPoint.x, 15, 0.05);
  EXPECT_TRUE(x[1]->FIsCrossing);
  expectPoint(*x[2], 30, 0, false);
  // An arch resting on a line touches it.
  auto arch = bezier(TPointF(0, 0), TPointF(10, -20), TPointF(20, -20), TPointF(30, 0));
  x = cross(*arch, *line(TPointF(0, -15), TPointF(30, -15)));
  ASSERT_EQ(x.size(), 1u);
  EXPECT_FALSE(x[0]->FIsCrossing);
}

TEST(PairEngine, NearDuplicatesAndShapesThatNeverMeet) {
  // A line grazing a circle of radius 1: two points 0.0063 apart are one.
  EXPECT_EQ(cross(*line(TPointF(-2, 0.999995f), TPointF(2, 0.999995f)), *circle(TPointF(0, 0), 2)).size(), 1u);
  auto l = line(TPointF(0, 0), TPointF(10, 10));
  EXPECT_TRUE(cross(*l, *shapes::dot(TPointF(5, 5), 1)).empty());
  auto other = line(TPointF(0, 10), TPointF(10, 0));
  other->FIsDimensionLine = true;
  EXPECT_TRUE(cross(*l, *other).empty());
  EXPECT_TRUE(calcShapeIntersections(l.get(), nullptr).empty());
  EXPECT_TRUE(cross(*l, *l).empty());
}

TEST(PairEngine, AddIntersectionSettlesFlagsOfNearbyEntries) {
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
  addIntersection(list, TPointF(10, 0), a.get(), b.get(), true);  // a joint clears it
  EXPECT_FALSE(list[1]->FIsCrossing);
}
