// The route network: growth over shape ends and crossings, shortest
// distances by relaxation, and the stretches a route hands to the walk.
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

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

TEST(RouteNetwork, AGoalOnACrossingOrInTheMiddleOfALineCutsTheShapeThere) {
  TDoc doc;
  doc.add(line({0, 0}, {20, 20}));
  doc.add(line({20, 0}, {0, 20}));
  TVertexNetwork net(&doc.list, &doc.crossings);
  ASSERT_TRUE(net.dpConnect({0, 0}, {10, 10}));
  EXPECT_NEAR(net.FEndVertex->FMinDist, kDiag, 1e-4);
  EXPECT_EQ(net.FEndVertex->FMinDistFromVertex, net.FStartVertex);
  TVertexNetwork mid(&doc.list, &doc.crossings);
  EXPECT_FALSE(mid.dpConnect({0, 0}, {5, 5}) && mid.FEndVertex) << "the tool's goal: ends and crossings only";
  TVertexNetwork anywhere(&doc.list, &doc.crossings);
  anywhere.FGoalOnShapes = true;
  ASSERT_TRUE(anywhere.dpConnect({0, 0}, {5, 5}));
  EXPECT_NEAR(anywhere.FEndVertex->FMinDist, kDiag / 2, 1e-4);
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

TEST(RouteNetwork, AStartInTheMiddleReachesBothEnds) {
  TDoc doc;
  doc.add(line({0, 0}, {100, 0}));
  TVertexNetwork net(&doc.list, &doc.crossings);
  ASSERT_TRUE(net.dpConnect({10, 0}, {0, 0}));
  EXPECT_NEAR(net.FEndVertex->FMinDist, 10.0, 1e-4) << "not round by the far end";
}

TEST(RouteNetwork, ACrossingAtTheEndOfOneShapeJoinsThatEndToTheOther) {
  // A T: the stem ends on the middle of the bar.
  TDoc doc;
  doc.add(line({0, 0}, {100, 0}));
  doc.add(line({50, 40}, {50, 0}));
  TVertexNetwork net(&doc.list, &doc.crossings);
  ASSERT_TRUE(net.dpConnect({0, 0}, {50, 40}));
  EXPECT_NEAR(net.FEndVertex->FMinDist, 90.0, 1e-4);
  TVertexNetwork fromMid(&doc.list, &doc.crossings);
  ASSERT_TRUE(fromMid.dpConnect({30, 0}, {50, 40}));
  EXPECT_NEAR(fromMid.FEndVertex->FMinDist, 60.0, 1e-4);
}

TEST(RouteNetwork, RoundACircleTheShortWayWins) {
  // Lines to the circle's left point (where its path starts) and to its
  // bottom: a quarter of the circle between them, not three.
  TDoc doc;
  doc.add(shapes::circle({0, 0}, 40));
  doc.add(line({-50, 0}, {-20, 0}));
  doc.add(line({0, 20}, {0, 50}));
  for (const bool reversed : {false, true}) {
    TVertexNetwork net(&doc.list, &doc.crossings);
    const TPointF a(-50, 0), b(0, 50);
    ASSERT_TRUE(reversed ? net.dpConnect(b, a) : net.dpConnect(a, b));
    EXPECT_NEAR(net.FEndVertex->FMinDist, 60 + 10 * std::numbers::pi, 0.01);
  }
}

// ---- stretches ----

TEST(RouteStretch, OnAClosedShapeTheStretchRunsTheShortWayRoundThroughItsStart) {
  auto c = shapes::circle({0, 0}, 40);  // its path starts at (-20, 0)
  const TPointF top(0, -20), bottom(0, 20);
  float la = 0, lb = 0;
  const double quarter = 10 * std::numbers::pi;
  for (const TPointF& p : {top, bottom}) {
    EXPECT_NEAR(calcPathLen(*c, c->FStartPt, p, la, lb), quarter, 0.01);
    EXPECT_NEAR(calcPathLen(*c, p, c->FStartPt, la, lb), quarter, 0.01);
  }
  EXPECT_NEAR(calcPathLen(*c, top, bottom, la, lb), 2 * quarter, 0.02) << "half round either way";
  const TStretchWay w = stretchWay(*c, bottom, top);
  auto s = makeStretchPath(*c, bottom, top);
  EXPECT_NEAR(s->calcTotalLength(), w.length(), 1e-3);
  EXPECT_TRUE(s->FStartPt.identical(bottom) && s->FEndPt.identical(top));
  for (const TPathInterval& iv : s->getIntervalsFast(false))
    EXPECT_NEAR(distanceOf(iv.Ed, {0, 0}), 20.0, 0.01) << "on the circle";
  auto wraps = makeStretchPath(*c, {-14.142f, 14.142f}, {-14.142f, -14.142f});
  EXPECT_NEAR(wraps->calcTotalLength(), quarter, 0.01);
  for (const TPathInterval& iv : wraps->getIntervalsFast(false)) EXPECT_LT(iv.Ed.x, -14.0) << "through the start, not past the right";
  EXPECT_NEAR(calcPathLen(*c, c->FStartPt, c->FEndPt, la, lb), c->calcTotalLength(), 1e-4) << "start to itself: once round";
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
  EXPECT_EQ(calcPathLen(*c, {50, 50}, {60, 60}, a, b), 0.0f) << "points on neither measure nothing";
}
