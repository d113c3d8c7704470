// Cutting shapes: trims between crossings, notches, round corners of two
// lines and extend-or-trim, on the geometry alone.
#include <gtest/gtest.h>

#include "geometry/bezier_math.h"
#include "geometry/line_corners.h"
#include "geometry/trim.h"
#include "shape_factory.h"

namespace {

void expectPoint(const TPointF& p, double x, double y, double tol = 1e-4) {
  EXPECT_NEAR(p.x, x, tol);
  EXPECT_NEAR(p.y, y, tol);
}

}  // namespace

TEST(Trim, LinePiecesBetweenCrossingsAndShortRestsVanish) {
  auto l = shapes::line({0, 0}, {100, 0});
  EXPECT_TRUE(trimPieces(*l, {}, TPointF(50, 0.2f)).FPieces.empty());  // no crossings: all of it goes

  const std::vector<TPointF> xs{{30, 0}, {70, 0}, {99.95f, 0}};
  TCutPieces mid = trimPieces(*l, xs, TPointF(50, 0.2f));
  ASSERT_EQ(mid.FPieces.size(), 2u);
  expectPoint(mid.FPieces[0]->FEndPt, 30, 0);
  expectPoint(mid.FPieces[1]->FEndPt, 70, 0);
  EXPECT_FALSE(mid.FFirstReplacesShape);
  // Between 70 and 99.95 the 0.05 mm left at the end goes with the piece.
  TCutPieces nearEnd = trimPieces(*l, xs, TPointF(85, 0));
  ASSERT_EQ(nearEnd.FPieces.size(), 1u);
  expectPoint(nearEnd.FPieces[0]->FEndPt, 70, 0);
}

TEST(Trim, ArcsCirclesAndCurves) {
  auto arc = shapes::arcAt({0, 0}, 10, 0, 90);
  TCutPieces a = trimPieces(*arc, {rotatePointAbout({10, 0}, 45, {0, 0})}, rotatePointAbout({10, 0}, 60, {0, 0}));
  ASSERT_EQ(a.FPieces.size(), 1u);
  EXPECT_NEAR(a.FPieces[0]->FSweepAngle, 45, 1e-3);

  // A circle cut at 0 and 90 degrees, clicked between them, keeps the long way round.
  auto circle = shapes::circle({0, 0}, 20);
  TCutPieces c = trimPieces(*circle, {{10, 0}, {0, 10}}, rotatePointAbout({10, 0}, 45, {0, 0}));
  ASSERT_EQ(c.FPieces.size(), 1u);
  EXPECT_EQ(c.FPieces[0]->FShapeType, ShapeType::Arc);
  EXPECT_NEAR(c.FPieces[0]->FSweepAngle, 270, 1e-3);
  expectPoint(c.FPieces[0]->FStartPt, 0, 10);

  auto curve = shapes::bezier({0, 0}, {10, 10}, {20, 10}, {30, 0});
  TPointF mid = bezierPointAt(*curve, 0.5f);
  TCutPieces b = trimPieces(*curve, {mid}, TPointF(28, 2));
  ASSERT_EQ(b.FPieces.size(), 1u);
  EXPECT_TRUE(b.FFirstReplacesShape);
  expectPoint(b.FPieces[0]->FEndPt, mid.x, mid.y, 0.01);

  EXPECT_EQ(trimSupportOf(*shapes::ellipse({0, 0}, 20, 10)), TTrimSupport::OvalNotSupported);
  EXPECT_EQ(trimSupportOf(*shapes::dot({0, 0}, 1)), TTrimSupport::NotSupported);
}

TEST(Trim, NotchCutsAVTowardsThePointer) {
  auto edge = shapes::line({0, 0}, {40, 0});
  const TNotchArms arms = notchArms({20, 0}, {20, 10}, 2, 90);
  expectPoint(arms.FTip, 20, 2);
  TCutPieces n = notchPieces(*edge, arms);
  ASSERT_EQ(n.FPieces.size(), 4u);
  expectPoint(n.FPieces[0]->FEndPt, 18, 0, 1e-3);
  expectPoint(n.FPieces[1]->FEndPt, 22, 0, 1e-3);
  expectPoint(n.FPieces[2]->FEndPt, 20, 2);
  expectPoint(n.FPieces[3]->FStartPt, 20, 2);
}

TEST(Corners, ChamferTouchesBothLinesAtTheRadius) {
  auto a = shapes::line({0, 0}, {20, 0});
  auto b = shapes::line({20, 0}, {20, 20});
  a->FClickedPoint = TPointF(10, 0);
  b->FClickedPoint = TPointF(20, 10);
  const auto plan = planChamfer(*a, *b, 5, TPointF(20, 0));
  ASSERT_TRUE(plan);
  expectPoint(plan->FCentre, 15, 5);
  expectPoint(plan->FTouchA, 15, 0);
  expectPoint(plan->FTouchB, 20, 5);
  EXPECT_TRUE(plan->FMoveEndOfA);
  EXPECT_FALSE(plan->FMoveEndOfB);
  EXPECT_NEAR(plan->FSweep, 90, 1e-4);
  EXPECT_FALSE(planChamfer(*a, *b, 25, TPointF(20, 0)));  // longer than the lines
}

TEST(Corners, ExtendOrTrimBringsBothLinesToTheirCrossing) {
  auto a = shapes::line({0, 0}, {25, 0});
  EXPECT_FALSE(extendOrTrimPoint(*a, *shapes::line({0, 0}, {0, 10})));  // meet at their ends already
  EXPECT_FALSE(extendOrTrimPoint(*a, *shapes::line({0, 5}, {25, 5})));  // parallel
  auto b = shapes::line({20, -10}, {20, -2});
  const auto p = extendOrTrimPoint(*a, *b);
  ASSERT_TRUE(p);
  bringLineTo(*a, *p);
  bringLineTo(*b, *p);
  expectPoint(a->FEndPt, 20, 0, 0);  // overshooting: shortened
  expectPoint(b->FEndPt, 20, 0, 0);  // falling short: lengthened
}
