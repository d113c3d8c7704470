// The route network: growth over shape ends and crossings, shortest
// distances by relaxation, and the stretches a route hands to the walk.
#include <gtest/gtest.h>

#include <cmath>

#include "geometry/intersect_pair.h"
#include "stitch_test_support.h"
#include "stitching/route_network.h"
#include "stitching/route_stretch.h"

using namespace stitchtest;
using shapes::line;

namespace {

const double kDiag = std::sqrt(200.0);

}  // namespace

TEST(RouteNetwork, ACrossingJoinsTwoLinesWithLengthsFromTheCrossing) {
  TDoc doc;
  TPW_Path* a = doc.add(line({0, 0}, {20, 20}));
  TPW_Path* b = doc.add(line({20, 0}, {0, 20}));
  TVertexNetwork net(&doc.list, &doc.crossings);
  ASSERT_TRUE(net.dpConnect({0, 0}, {0, 20}));
  ASSERT_NE(net.FEndVertex, nullptr);
  EXPECT_NEAR(net.FEndVertex->FMinDist, 2 * kDiag, 1e-4);
  const auto route = net.getActualPathList(net.FEndVertex);
  ASSERT_EQ(route.size(), 2u);
  EXPECT_EQ(route[0]->FID, b->FID);
  EXPECT_EQ(route[1]->FID, a->FID);
  EXPECT_NEAR(route[0]->calcTotalLength(), kDiag, 1e-4);
  EXPECT_NEAR(route[1]->calcTotalLength(), kDiag, 1e-4);
  EXPECT_EQ(net.FEndVertex->FMinDistFromVertex->FPoint, TPointF(10, 10));
}

TEST(RouteNetwork, AGoalOnACrossingCutsTheShapeThere) {
  TDoc doc;
  doc.add(line({0, 0}, {20, 20}));
  doc.add(line({20, 0}, {0, 20}));
  TVertexNetwork net(&doc.list, &doc.crossings);
  ASSERT_TRUE(net.dpConnect({0, 0}, {10, 10}));
  EXPECT_NEAR(net.FEndVertex->FMinDist, kDiag, 1e-4);
  EXPECT_EQ(net.FEndVertex->FMinDistFromVertex, net.FStartVertex);
}

TEST(RouteNetwork, EndsJoinShapesIntoRoutesAndTheShortestWins) {
  TDoc doc;
  doc.add(line({0, 0}, {30, 0}));
  doc.add(line({30, 0}, {30, 40}));
  doc.add(line({0, 0}, {0, 100}));  // a longer way round
  doc.add(line({0, 100}, {30, 40}));
  TVertexNetwork net(&doc.list, &doc.crossings);
  ASSERT_TRUE(net.dpConnect({0, 0}, {30, 40}));
  EXPECT_NEAR(net.FEndVertex->FMinDist, 70.0, 1e-4);
  EXPECT_EQ(net.getActualPathList(net.FEndVertex).size(), 2u);
  EXPECT_EQ(net.FStartVertex->FMinDist, 0.0f) << "the start keeps 0";
}

TEST(RouteNetwork, OfTwoEqualRoutesTheOneFoundFirstStays) {
  TDoc doc;
  doc.add(line({0, 0}, {10, 0}));
  TPW_Path* right = doc.add(line({10, 0}, {10, 10}));
  doc.add(line({0, 0}, {0, 10}));
  TPW_Path* top = doc.add(line({0, 10}, {10, 10}));
  TVertexNetwork net(&doc.list, &doc.crossings);
  ASSERT_TRUE(net.dpConnect({0, 0}, {10, 10}));
  EXPECT_NEAR(net.FEndVertex->FMinDist, 20.0, 1e-5);
  EXPECT_EQ(net.FEndVertex->FMinDistJoint->FPath, right);
  EXPECT_NE(net.FEndVertex->FMinDistJoint->FPath, top);
}

TEST(RouteNetwork, RefusesAPointToItselfAndReachesNothingFromNowhere) {
  TDoc doc;
  doc.add(line({0, 0}, {10, 0}));
  TVertexNetwork net(&doc.list, &doc.crossings);
  EXPECT_FALSE(net.dpConnect({0, 0}, {0.001f, 0}));
  EXPECT_EQ(net.Count(), 0u);
  EXPECT_FALSE(net.dpConnect({50, 50}, {10, 0}));
  EXPECT_EQ(net.FEndVertex, nullptr);
}

TEST(RouteNetwork, AStartInTheMiddleGoesToTheFurtherEndFirst) {
  TDoc doc;
  doc.add(line({0, 0}, {100, 0}));
  TVertexNetwork net(&doc.list, &doc.crossings);
  net.dpConnectAddJoints({30, 0}, {30, 0});
  ASSERT_FALSE(net.joints().empty());
  const TJointInfo& first = *net.joints()[0];
  EXPECT_EQ(first.FPoints[0].FPoint, TPointF(30, 0));
  EXPECT_EQ(first.FPoints[1].FPoint, TPointF(100, 0));
  EXPECT_FLOAT_EQ(first.FLength, 70.0f);
}

TEST(RouteNetwork, TextAndDotEndsOfferNoConnection) {
  TDoc doc;
  doc.add(shapes::dot({5, 5}, 1.0f));
  auto text = shapes::blank();
  text->FShapeType = ShapeType::Text;
  text->FStartPt = TPointF(8, 8);
  text->FEndPt = TPointF(8, 8);
  doc.add(std::move(text));
  TPW_Path* l = doc.add(line({8, 8}, {20, 8}));
  TVertexNetwork net(&doc.list, &doc.crossings);
  EXPECT_TRUE(net.searchEdgeAndIntersections({5, 5}).empty());
  const auto at = net.searchEdgeAndIntersections({8, 8});
  ASSERT_EQ(at.size(), 1u);
  EXPECT_EQ(at[0].FPath, l);
  EXPECT_TRUE(at[0].FIsStartPt);
}

TEST(RouteNetwork, WalksBackAGivenDistanceAlongTheRoute) {
  TDoc doc;
  doc.add(line({0, 0}, {20, 20}));
  doc.add(line({20, 0}, {0, 20}));
  TVertexNetwork net(&doc.list, &doc.crossings);
  ASSERT_TRUE(net.dpConnect({0, 0}, {0, 20}));
  TPointF p;
  ASSERT_TRUE(net.getPointOfSpecifiedDistance(net.FEndVertex, 5.0f, p));
  EXPECT_NEAR(distanceOf(p, {0, 20}), 5.0, 1e-4);
  EXPECT_NEAR(p.x + p.y, 20.0, 1e-4) << "on the second line";
  ASSERT_TRUE(net.getPointOfSpecifiedDistance(net.FEndVertex, static_cast<float>(kDiag + 3.0), p));
  EXPECT_NEAR(p.x, p.y, 1e-4) << "past the crossing, on the first line";
  EXPECT_FALSE(net.getPointOfSpecifiedDistance(net.FEndVertex, 100.0f, p));
}

// ---- stretches ----

TEST(RouteStretch, AnArcStretchMeetsTheSearchCircleOnlyOnTheStretch) {
  auto arc = shapes::arc({0, 0}, 10, {10, 0}, 180);  // clockwise on screen, through (0, 10)
  const TPointF p45 = rotatePointAbout({10, 0}, 45, {0, 0});
  const TPointF p135 = rotatePointAbout({10, 0}, 135, {0, 0});
  for (const bool forward : {true, false}) {
    SCOPED_TRACE(forward);
    auto s = forward ? makeStretchPath(*arc, p45, p135) : makeStretchPath(*arc, p135, p45);
    EXPECT_EQ(s->FShapeType, ShapeType::Arc);
    EXPECT_NEAR(s->FSweepAngle, forward ? 90.0 : -90.0, 1e-3);
    EXPECT_NEAR(s->calcTotalLength(), 10.0 * 3.14159265 / 2.0, 0.01);
    const TPointF p90(0, 10), p170 = rotatePointAbout({10, 0}, 170, {0, 0}), p20 = rotatePointAbout({10, 0}, 20, {0, 0});
    EXPECT_TRUE(isPointOnArc(*s, p90.x, p90.y));
    EXPECT_FALSE(isPointOnArc(*s, p170.x, p170.y));
    EXPECT_FALSE(isPointOnArc(*s, p20.x, p20.y));
  }
}

TEST(RouteStretch, ACurveStretchKeepsThePointsBetweenInOrder) {
  auto c = shapes::bezier({0, 0}, {10, 20}, {30, 20}, {40, 0});
  TPointF a, b;
  const float ta = c->findNearestBezierT({8, 10}, a);
  const float tb = c->findNearestBezierT({32, 10}, b);
  ASSERT_LT(ta, tb);
  float la = 0, lb = 0;
  const float len = calcPathLen(*c, a, b, la, lb);
  EXPECT_LT(la, lb);
  auto s = makeStretchPath(*c, b, a);  // walked from b back to a
  EXPECT_TRUE(s->FStartPt.identical(b));
  EXPECT_TRUE(s->FEndPt.identical(a));
  EXPECT_NEAR(s->calcTotalLength(), len, 0.01);
  const auto pieces = s->getIntervalsFast(false);
  ASSERT_GT(pieces.size(), 10u);
  EXPECT_GT(pieces.front().St.x, pieces.back().Ed.x) << "runs from b to a";
}

TEST(RouteStretch, WholeShapesAndLinesMeasure) {
  auto l = line({0, 0}, {10, 0});
  float a = 0, b = 0;
  EXPECT_FLOAT_EQ(calcPathLen(*l, {2, 0}, {7, 0}, a, b), 5.0f);
  EXPECT_FLOAT_EQ(a, 2.0f);
  EXPECT_FLOAT_EQ(b, 7.0f);
  auto c = shapes::circle({0, 0}, 20);
  EXPECT_NEAR(calcPathLen(*c, c->FStartPt, c->FEndPt, a, b), c->calcTotalLength(), 1e-4);
  EXPECT_EQ(calcPathLen(*c, {50, 50}, {60, 60}, a, b), 0.0f) << "points on neither measure nothing";
}
