#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "document/shape_list.h"
#include "geometry/bezier_math.h"
#include "shape_factory.h"

namespace {

// Straight, with speed 90 t^2: arc length and parameter differ.
const TBezier kUneven{TPointF(0, 0), TPointF(0, 0), TPointF(0, 0), TPointF(30, 0)};
// The usual cubic quarter circle of radius 10 about the origin.
constexpr float kK = 5.522847498f;
const TBezier kQuarter{TPointF(10, 0), TPointF(10, kK), TPointF(kK, 10), TPointF(0, 10)};

void expectOnCurve(const TPointF& p, const TBezier& b, double t) {
  const TPointF e = cubicPointAt(b.P0, b.P1, b.P2, b.P3, t);
  EXPECT_NEAR(p.x, e.x, 1e-4) << t;
  EXPECT_NEAR(p.y, e.y, 1e-4) << t;
}

}  // namespace

TEST(BezierLength, StraightCurveAndQuarterCircle) {
  EXPECT_NEAR(bezierLength(kUneven), 30.0, 1e-5);
  EXPECT_NEAR(bezierSegmentLength(kUneven, 0.0, 0.5), 30.0 / 8.0, 1e-5);
  // The cubic is a little longer than the circle: 15.710167 by a fine
  // polyline in doubles.
  EXPECT_NEAR(bezierLength(kQuarter), 15.710167, 1e-5);
}

TEST(BezierPointAtLength, FollowsArcLengthAndClampsToTheEnds) {
  double total = 0;
  const TPointF p = bezierPointAtLength(kUneven, 10.0, total);
  EXPECT_NEAR(total, 30.0, 1e-5);
  EXPECT_NEAR(p.x, 10.0, 1e-4);
  const TPointF h = bezierPointAtLength(kQuarter, bezierLength(kQuarter) / 2.0, total);
  EXPECT_NEAR(h.x, h.y, 1e-4);  // half way round lies on the diagonal
  total = -1;
  EXPECT_TRUE(bezierPointAtLength(kQuarter, -3.0, total).identical(kQuarter.P0));
  EXPECT_GT(total, 15.0);  // given even when the distance is out of range
  EXPECT_TRUE(bezierPointAtLength(kQuarter, total, total).identical(kQuarter.P3));
  const TBezier zero{TPointF(3, 4), TPointF(3, 4), TPointF(3, 4), TPointF(3, 4)};
  EXPECT_TRUE(bezierPointAtLength(zero, 1.0, total).identical(TPointF(3, 4)));
  EXPECT_EQ(total, 0.0);
}

TEST(BezierSplit, TheTwoHalvesRetraceTheOriginal) {
  TShapeList ids(nullptr, "en");
  ids.FLastID = 41;
  auto s = shapes::bezier(TPointF(0, 0), TPointF(10, 20), TPointF(20, -20), TPointF(30, 0));
  s->FLayerID = 3;
  s->FColor = 0xFF112233;
  const TBezier orig = bezierOf(*s);
  TPointF cut;
  const float t = s->findNearestBezierT(TPointF(9, 5), cut);
  auto second = splitBezierAt(*s, TPointF(9, 5), ids);
  ASSERT_TRUE(second);
  EXPECT_EQ(second->FID, 42);
  EXPECT_EQ(second->FLayerID, 3);
  EXPECT_EQ(second->FColor, 0xFF112233u);
  EXPECT_TRUE(s->FEndPt.identical(cut));
  EXPECT_TRUE(second->FStartPt.identical(cut));
  for (int i = 0; i <= 10; ++i) {
    const double u = i / 10.0;
    expectOnCurve(bezierPointAt(*s, float(u)), orig, t * u);
    expectOnCurve(bezierPointAt(*second, float(u)), orig, t + (1 - t) * u);
  }
}

TEST(BezierSplit, RefusedFarFromTheCurveOrAtAnEnd) {
  TShapeList ids(nullptr, "en");
  auto s = shapes::bezier(TPointF(0, 0), TPointF(10, 0), TPointF(20, 0), TPointF(30, 0));
  EXPECT_FALSE(splitBezierAt(*s, TPointF(15, 3.01f), ids));
  EXPECT_FALSE(splitBezierAt(*s, TPointF(0.004f, 1), ids));  // lands on the start
  EXPECT_FALSE(splitBezierAt(*s, TPointF(31, 0), ids));      // lands on the end
  EXPECT_EQ(ids.FLastID, 0);                                 // no identifier used
  EXPECT_TRUE(s->FEndPt.identical(TPointF(30, 0)));
  EXPECT_TRUE(splitBezierAt(*s, TPointF(15, 2.99f), ids));
}

TEST(BezierTrim, EitherKeptSideLiesOnTheOriginal) {
  for (bool keepStart : {true, false}) {
    auto s = shapes::bezier(TPointF(0, 0), TPointF(5, 25), TPointF(25, -15), TPointF(30, 10));
    const TBezier orig = bezierOf(*s);
    trimBezierKeep(*s, 0.4, keepStart);
    for (int i = 0; i <= 10; ++i)
      expectOnCurve(bezierPointAt(*s, i / 10.0f), orig, keepStart ? 0.04 * i : 0.4 + 0.06 * i);
  }
}
