// The corner methods and the chain they work on: arcs split so a hole sits
// on their middle, runs divided evenly with holes forced onto real corners,
// smooth joints passed over, and shapes ordered end to end.
#include <gtest/gtest.h>

#include <cmath>

#include "stitch_test_support.h"
#include "stitching/chain_order.h"
#include "stitching/corner_placement.h"

using namespace stitchtest;
using shapes::line;

namespace {

std::vector<TPointF> positionsOf(const std::vector<TPlannedHole>& plan) {
  std::vector<TPointF> out;
  for (const TPlannedHole& h : plan) out.push_back(h.FPosition);
  return out;
}

bool planHasPoint(const std::vector<TPlannedHole>& plan, const TPointF& p, double tol = 0.01) {
  for (const TPlannedHole& h : plan)
    if (distanceOf(h.FPosition, p) < tol) return true;
  return false;
}

// Two curves meeting at (30, 0); the second leaves turned by `turnDegrees`.
void curvesMeeting(double turnDegrees, std::unique_ptr<TPW_Path>& a, std::unique_ptr<TPW_Path>& b) {
  const double t = turnDegrees * 3.14159265358979 / 180.0;
  a = shapes::bezier({0, 0}, {10, 6}, {20, 0}, {30, 0});
  b = shapes::bezier({30, 0}, TPointF::fromDouble(30 + 10 * std::cos(t), 10 * std::sin(t)), {50, 8}, {60, 4});
}

}  // namespace

TEST(ArcSplit, ThirteenMillimetresAtFourTakeFourIntervals) {
  // Nearest is 3, odd; 2 gives 6.5 (2.5 off), 4 gives 3.25 (0.75 off).
  EXPECT_EQ(evenArcIntervals(13.0, 4.0), 4);
  EXPECT_EQ(evenArcIntervals(8.0, 4.0), 2);
  EXPECT_EQ(evenArcIntervals(5.0, 4.0), 2) << "never fewer than two";
  EXPECT_EQ(evenArcIntervals(20.0, 4.0), 6) << "5 is odd; 3.33 is nearer 4 than 5";
  EXPECT_EQ(evenArcIntervals(11.0, 4.0), 4) << "3 is odd; 2.75 is nearer 4 than 5.5";
  EXPECT_EQ(evenArcIntervals(12.0, 4.0), 4) << "a tie goes up";
}

TEST(EvenSplit, EachShapeByItselfWithAHoleOnEveryJoint) {
  auto a = line({0, 0}, {20, 0});
  // A 13 mm arc in the middle of the chain: four intervals, a hole on its middle.
  const double r = 13.0 / (3.14159265358979 / 2.0);
  auto arc = shapes::arc(TPointF::fromDouble(20, r), static_cast<float>(r), {20, 0}, 90);
  auto b = line(arc->FEndPt, TPointF::fromDouble(arc->FEndPt.x, arc->FEndPt.y + 9));
  const std::vector<TPW_Path*> chain{a.get(), arc.get(), b.get()};
  const auto plan = planEvenSplit(chain, false, 4.0f);
  // 5 on the first line, 4 on the arc, round(2.25) = 2 on the last and its end.
  ASSERT_EQ(plan.size(), 5u + 4u + 3u);
  EXPECT_TRUE(planHasPoint(plan, {20, 0}));
  EXPECT_TRUE(planHasPoint(plan, arc->FEndPt));
  EXPECT_TRUE(planHasPoint(plan, b->FEndPt));
  TPointF mid, dir;
  pointAtFraction(*arc, 0.5, mid, dir);
  EXPECT_TRUE(planHasPoint(plan, mid, 1e-3)) << "a hole on the arc's middle";
  for (size_t i = 5; i < 9; ++i) EXPECT_NEAR(plan[i].FSpacing, 13.0 / 4.0, 0.01);
  // At the joint the row turns halfway between the two shapes.
  const TPointF joint = plan[5].FDirection;
  EXPECT_NEAR(joint.x, 1.0, 1e-3);
  EXPECT_NEAR(joint.y, 0.0, 0.02) << "the line and the arc leave the joint the same way";
}

TEST(SmartCorner, ASmoothJointIsNoCorner) {
  std::unique_ptr<TPW_Path> a, b;
  curvesMeeting(5.0, a, b);
  EXPECT_NEAR(jointAngle(*a, *b), 175.0, 1.0) << "measured on the flattened pieces";
  const std::vector<TPW_Path*> chain{a.get(), b.get()};
  const auto plan = planSmartCorner(chain, false, 4.0f, 160.0f);
  // One run over both curves, divided evenly along the path.
  const double total = chainLength(chain);
  const int n = static_cast<int>(std::nearbyint(total / 4.0));
  ASSERT_EQ(plan.size(), size_t(n) + 1);
  for (const TPlannedHole& h : plan) EXPECT_NEAR(h.FSpacing == 4.0 ? total / n : h.FSpacing, total / n, 1e-9);
  const double jointAt = chainLength({a.get()}) / (total / n);
  ASSERT_GT(std::fabs(jointAt - std::nearbyint(jointAt)), 0.1) << "the joint falls between two holes";
  EXPECT_FALSE(planHasPoint(plan, {30, 0}, 0.05));
}

TEST(SmartCorner, ASharpJointGetsAHole) {
  std::unique_ptr<TPW_Path> a, b;
  curvesMeeting(50.0, a, b);
  EXPECT_LT(jointAngle(*a, *b), 160.0);
  const auto plan = planSmartCorner({a.get(), b.get()}, false, 4.0f, 160.0f);
  EXPECT_TRUE(planHasPoint(plan, {30, 0}, 1e-4));
  EXPECT_TRUE(planHasPoint(plan, {0, 0}, 1e-4));
  EXPECT_TRUE(planHasPoint(plan, {60, 4}, 1e-4));
}

TEST(SmartCorner, SmallRoundedCornersTakeOneHoleOnTheirMiddle) {
  TDoc doc;
  std::vector<TPW_Path*> outline;
  const float r = 2.0f;  // a quarter of 3.1 mm: two intervals, a rounded corner
  outline.push_back(doc.add(line({r, 0}, {40 - r, 0})));
  outline.push_back(doc.add(shapes::arc({40 - r, r}, r, {40 - r, 0}, 90)));
  outline.push_back(doc.add(line({40, r}, {40, 24 - r})));
  outline.push_back(doc.add(shapes::arc({40 - r, 24 - r}, r, {40, 24 - r}, 90)));
  outline.push_back(doc.add(line({40 - r, 24}, {r, 24})));
  outline.push_back(doc.add(shapes::arc({r, 24 - r}, r, {r, 24}, 90)));
  outline.push_back(doc.add(line({0, 24 - r}, {0, r})));
  outline.push_back(doc.add(shapes::arc({r, r}, r, {0, r}, 90)));
  const auto plan = planSmartCorner(outline, true, 4.0f, 160.0f);
  for (int k = 1; k < 8; k += 2) {
    TPointF mid, dir;
    pointAtFraction(*outline[size_t(k)], 0.5, mid, dir);
    EXPECT_TRUE(planHasPoint(plan, mid, 1e-3)) << "corner " << k;
  }
  // The runs reach from one corner's middle to the next, evenly.
  const double side = 40 - 2 * r + 2 * (3.14159265358979 * r / 4.0);
  const int n = static_cast<int>(std::nearbyint(side / 4.0));
  EXPECT_EQ(plan.size(), 2u * size_t(n) + 2u * size_t(std::nearbyint((24 - 2 * r + 3.14159265358979 * r / 2.0) / 4.0)));
  auto holes = doc.holes();
  placePlannedHoles(plan, true, *holes);
  const auto made = doc.holesInList();
  bool ring = false;
  const auto chain = walkChain(doc.list, made.front(), &ring);
  EXPECT_TRUE(ring);
  EXPECT_EQ(chain.size(), made.size());
  expectFaithfulRow(made, outline, 4.0);
}

TEST(SmartCorner, RunsStopAtCornersAndEveryCornerHasAHole) {
  // An open chain: line, sharp turn, line, sharp turn, line.
  auto a = line({0, 0}, {21, 0});
  auto b = line({21, 0}, {21, 13});
  auto c = line({21, 13}, {5, 20});
  const auto plan = planSmartCorner({a.get(), b.get(), c.get()}, false, 4.0f, 160.0f);
  for (const TPointF p : {TPointF(0, 0), TPointF(21, 0), TPointF(21, 13), TPointF(5, 20)})
    EXPECT_TRUE(planHasPoint(plan, p, 1e-4)) << p.x << "," << p.y;
  // round(21 / 4) = 5, round(13 / 4) = 3, round(17.46 / 4) = 4, and the end.
  EXPECT_EQ(plan.size(), 5u + 3u + 4u + 1u);
  // The corner hole turns halfway between the two sides.
  for (const TPlannedHole& h : plan) {
    if (distanceOf(h.FPosition, {21, 0}) > 1e-4) continue;
    EXPECT_NEAR(h.FDirection.x, std::sqrt(0.5), 1e-6);
    EXPECT_NEAR(h.FDirection.y, std::sqrt(0.5), 1e-6);
  }
}

// ---- ordering shapes end to end ----

TEST(ChainOrder, JoinsEndsWithinHalfAMillimetre) {
  auto a = line({0, 0}, {10, 0});
  auto near = line({10.4f, 0.3f}, {20, 0});
  auto far = line({10.6f, 0}, {20, 0});
  std::vector<TPW_Path*> chain;
  std::vector<std::unique_ptr<TPW_Path>> temps;
  EXPECT_TRUE(orderIntoChain({a.get(), near.get()}, chain, temps));
  EXPECT_EQ(chain.size(), 2u);
  EXPECT_FALSE(orderIntoChain({a.get(), far.get()}, chain, temps));
  EXPECT_TRUE(chain.empty());
  EXPECT_TRUE(temps.empty());
}

TEST(ChainOrder, TurnsShapesThatRunTheOtherWayAndFindsTheHead) {
  auto a = line({10, 0}, {20, 0});
  auto b = line({10, 0}, {0, 0});  // runs away from the chain's start
  auto c = shapes::arc({20, 5}, 5, {25, 5}, -90);  // ends where a ends
  std::vector<TPW_Path*> chain;
  std::vector<std::unique_ptr<TPW_Path>> temps;
  ASSERT_TRUE(orderIntoChain({a.get(), b.get(), c.get()}, chain, temps));
  ASSERT_EQ(chain.size(), 3u);
  for (size_t i = 0; i + 1 < chain.size(); ++i)
    EXPECT_LE(distanceOf(chain[i]->FEndPt, chain[i + 1]->FStartPt), 0.01) << i;
  EXPECT_FALSE(temps.empty()) << "turned copies are kept as temporaries";
  for (TPW_Path* s : chain) EXPECT_NE(s, b.get()) << "b takes part turned round, as a copy";
}

TEST(ChainOrder, FindsTheClosedOutlineOfAShape) {
  TDoc doc;
  TPW_Path* a = doc.add(line({0, 0}, {10, 0}));
  TPW_Path* b = doc.add(line({10, 10}, {10, 0}));
  TPW_Path* c = doc.add(line({10, 10}, {0, 0}));
  doc.add(line({20, 20}, {30, 30}));
  const auto loop = findClosedLoop(b, doc.list);
  ASSERT_EQ(loop.size(), 3u);
  EXPECT_EQ(loop[0], b);
  EXPECT_EQ(loop[1], a);
  EXPECT_EQ(loop[2], c);
  TPW_Path* open = doc.add(line({40, 0}, {50, 0}));
  EXPECT_TRUE(findClosedLoop(open, doc.list).empty());
}
