// Offsets as a pattern maker uses them: a stitch line inside a closed
// outline, open chains of lines and arcs with their outer and inner
// corners, curves, and the end-joining step after a commit.
#include <gtest/gtest.h>

#include <cmath>

#include "geometry/bezier_math.h"
#include "geometry/offset.h"
#include "geometry/shape_ends.h"
#include "shape_factory.h"

namespace {

using Copies = std::vector<std::unique_ptr<TPW_Path>>;

Copies chainOffset(const std::vector<std::unique_ptr<TPW_Path>>& shapes, double d, TPointF dir, bool closed) {
  std::vector<const TPW_Path*> chain;
  for (const auto& s : shapes) chain.push_back(s.get());
  return smartOffset(chain, d, dir, closed);
}

void expectPoint(const TPointF& p, double x, double y, double tol = 1e-4) {
  EXPECT_NEAR(p.x, x, tol);
  EXPECT_NEAR(p.y, y, tol);
}

double arcLength(const TPW_Path& arc) { return std::fabs(arc.FSweepAngle) * M_PI / 180.0 * arc.FWidth; }

}  // namespace

TEST(Offset, ClosedRectangleInwardHasExactCornersAndNoConnectors) {
  std::vector<std::unique_ptr<TPW_Path>> rect;
  rect.push_back(shapes::line({0, 0}, {60, 0}));
  rect.push_back(shapes::line({60, 0}, {60, 40}));
  rect.push_back(shapes::line({60, 40}, {0, 40}));
  rect.push_back(shapes::line({0, 40}, {0, 0}));
  for (const TPointF dir : {TPointF(30, 20), TPointF(1, 1)}) {
    const Copies out = chainOffset(rect, 3, dir, true);
    ASSERT_EQ(out.size(), 4u);
    expectPoint(out[0]->FStartPt, 3, 3);
    expectPoint(out[0]->FEndPt, 57, 3);
    expectPoint(out[1]->FEndPt, 57, 37);
    expectPoint(out[2]->FEndPt, 3, 37);
    expectPoint(out[3]->FEndPt, 3, 3);
  }
  // Outside the outline the copy grows; at distance 0 it lies on the source.
  const Copies outer = chainOffset(rect, 3, TPointF(-10, 50), true);
  expectPoint(outer[0]->FStartPt, -3, -3);
  const Copies same = chainOffset(rect, 0, TPointF(30, 20), true);
  expectPoint(same[1]->FStartPt, 60, 0);
}

TEST(Offset, LineAndTangentArcAlreadyMeetWithoutNewShapes) {
  std::vector<std::unique_ptr<TPW_Path>> chain;
  chain.push_back(shapes::line({0, 0}, {20, 0}));
  chain.push_back(shapes::arcAt({20, 10}, 10, -90, 90));  // turns down on the screen
  const Copies out = chainOffset(chain, 2, TPointF(10, 5), false);
  ASSERT_EQ(out.size(), 2u);
  expectPoint(out[0]->FStartPt, 0, 2);
  expectPoint(out[0]->FEndPt, 20, 2, 1e-3);
  EXPECT_NEAR(out[1]->FWidth, 8, 1e-5);
  EXPECT_TRUE(samePoint(out[0]->FEndPt, out[1]->FStartPt, 0.0));
}

TEST(Offset, OuterCornerGainsConnectorsInnerCornerIsCutBack) {
  // A line running right, then an arc leaving the corner at a right angle,
  // bending back: the corner's outside is up and to the right.
  std::vector<std::unique_ptr<TPW_Path>> chain;
  chain.push_back(shapes::line({0, 0}, {20, 0}));
  chain.push_back(shapes::arcAt({10, 0}, 10, 0, 90));
  const double lineLen = 20, arcLen = arcLength(*chain[1]);
  const Copies outer = chainOffset(chain, 2, TPointF(10, -5), false);
  ASSERT_GE(outer.size(), 3u);
  EXPECT_NEAR(distanceOf(outer.front()->FStartPt, outer.front()->FEndPt), lineLen, 1e-4);
  EXPECT_NEAR(arcLength(*outer.back()), arcLength(*offsetShape(*chain[1], 2)), 1e-4);
  for (size_t i = 1; i + 1 < outer.size(); ++i) EXPECT_EQ(outer[i]->FShapeType, ShapeType::Line);
  for (size_t i = 0; i + 1 < outer.size(); ++i) EXPECT_TRUE(samePoint(outer[i]->FEndPt, outer[i + 1]->FStartPt, 0.0));

  const Copies inner = chainOffset(chain, 2, TPointF(10, 5), false);
  ASSERT_EQ(inner.size(), 2u);
  EXPECT_LT(distanceOf(inner[0]->FStartPt, inner[0]->FEndPt), lineLen);
  EXPECT_LT(arcLength(*inner[1]), arcLen);
  EXPECT_TRUE(samePoint(inner[0]->FEndPt, inner[1]->FStartPt, 0.0));
  // The crossing lies on the copy of the line and on the circle of radius 8.
  EXPECT_NEAR(inner[0]->FEndPt.y, 2, 1e-3);
  EXPECT_NEAR(distanceOf(inner[1]->FStartPt, TPointF(10, 0)), 8, 0.01);
}

TEST(Offset, CurveCopyKeepsEndDirectionsAndDistance) {
  auto c = shapes::bezier({0, 0}, {10, -15}, {30, 15}, {40, 0});
  for (double d : {3.0, -3.0}) {
    const TBezier o = offsetBezier(bezierOf(*c), d);
    EXPECT_NEAR(distanceOf(o.P0, c->FStartPt), std::fabs(d), 1e-4);
    EXPECT_NEAR(distanceOf(o.P3, c->FEndPt), std::fabs(d), 1e-4);
    const TDPoint leg0 = toDPoint(o.P1) - toDPoint(o.P0), leg3 = toDPoint(o.P3) - toDPoint(o.P2);
    EXPECT_NEAR(cross(unit(leg0), unit(toDPoint(c->FBezierCp1) - toDPoint(c->FStartPt))), 0, 1e-5);
    EXPECT_NEAR(cross(unit(leg3), unit(toDPoint(c->FEndPt) - toDPoint(c->FBezierCp2))), 0, 1e-5);
  }
  // The side follows the direction point.
  EXPECT_GT(offsetTowards(*c, 3, TPointF(20, 30))->FStartPt.y, 0.0f);
}

TEST(Offset, UnusableCopiesGiveNothing) {
  EXPECT_EQ(offsetShape(*shapes::arcAt({0, 0}, 2, 0, 90), -2), nullptr);  // inward to its centre
  EXPECT_EQ(offsetShape(*shapes::line({5, 5}, {5, 5}), 3), nullptr);
  EXPECT_EQ(offsetShape(*shapes::dot({0, 0}, 1), 3), nullptr);
  EXPECT_EQ(offsetCircleTowards(*shapes::circle({0, 0}, 4), 5, TPointF(1, 0)), nullptr);
  // A chain is not joined across the gap of a vanished arc.
  std::vector<std::unique_ptr<TPW_Path>> chain;
  chain.push_back(shapes::line({-20, -1}, {0, -1}));
  chain.push_back(shapes::arcAt({0, 0}, 1, -90, 180));
  chain.push_back(shapes::line({0, 1}, {-20, 1}));
  const Copies out = chainOffset(chain, 2, TPointF(-10, 0), false);
  ASSERT_EQ(out.size(), 2u);
  expectPoint(out[0]->FEndPt, 0, 1);
}

TEST(Offset, EndJoiningPullsNearEndsOntoLineEnds) {
  TShapeList doc(nullptr, "en");
  doc.add(shapes::line({0, 0}, {10, 0}, 1), 0);
  TPW_Path* curve = doc[doc.add(shapes::bezier({10.05f, 0}, {12, 2}, {14, 2}, {20, 0}, 2), 0)];
  TPW_Path* far = doc[doc.add(shapes::line({0.2f, 0}, {0.2f, 10}, 3), 0)];
  const std::vector<TPW_Path*> moved = snapEndsToLineEnds(doc);
  ASSERT_EQ(moved, std::vector<TPW_Path*>{curve});
  expectPoint(curve->FStartPt, 10, 0, 0);
  expectPoint(curve->FBezierCp1, 11.95, 2);
  expectPoint(far->FStartPt, 0.2, 0, 1e-6);
}
