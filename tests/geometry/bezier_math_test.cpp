#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "document/shape_list.h"
#include "geometry/bezier_math.h"
#include "shape_factory.h"

namespace {

const TBezier kStraight{TPointF(0, 0), TPointF(10, 0), TPointF(20, 0), TPointF(30, 0)};
// Straight but with speed 90 t^2: arc length and parameter differ.
const TBezier kStraightUneven{TPointF(0, 0), TPointF(0, 0), TPointF(0, 0), TPointF(30, 0)};
// The usual cubic quarter circle of radius 10 about the origin.
constexpr float kK = 5.522847498f;
const TBezier kQuarter{TPointF(10, 0), TPointF(10, kK), TPointF(kK, 10), TPointF(0, 10)};

// A fine polyline in doubles, for comparison.
double polylineLength(const TBezier& b, double t0, double t1) {
  auto at = [&b](double t, double& x, double& y) {
    const double u = 1 - t;
    x = u * u * u * b.P0.x + 3 * u * u * t * b.P1.x + 3 * u * t * t * b.P2.x + t * t * t * b.P3.x;
    y = u * u * u * b.P0.y + 3 * u * u * t * b.P1.y + 3 * u * t * t * b.P2.y + t * t * t * b.P3.y;
  };
  const int n = 100000;
  double sum = 0, px, py;
  at(t0, px, py);
  for (int i = 1; i <= n; ++i) {
    double x, y;
    at(t0 + (t1 - t0) * i / n, x, y);
    sum += std::hypot(x - px, y - py);
    px = x;
    py = y;
  }
  return sum;
}

}  // namespace

TEST(BezierLength, StraightCurvesMeasureTheirChord) {
  EXPECT_NEAR(bezierLength(kStraight), 30.0, 1e-5);
  EXPECT_NEAR(bezierLength(kStraightUneven), 30.0, 1e-5);
  EXPECT_NEAR(bezierSegmentLength(kStraightUneven, 0.0, 0.5), 30.0 / 8.0, 1e-5);
}

TEST(BezierLength, QuarterCircleAgreesWithTheArcAndAFinePolyline) {
  const double len = bezierLength(kQuarter);
  // The cubic is a little longer than the true quarter circle.
  EXPECT_NEAR(len, 5.0 * std::numbers::pi, 3e-3);
  EXPECT_NEAR(len, polylineLength(kQuarter, 0, 1), 1e-5);
  EXPECT_NEAR(bezierSegmentLength(kQuarter, 0.2, 0.7), polylineLength(kQuarter, 0.2, 0.7), 1e-5);
}

TEST(BezierPointAtLength, FollowsArcLengthNotTheParameter) {
  double total = 0;
  const TPointF p = bezierPointAtLength(kStraightUneven, 10.0, total);
  EXPECT_NEAR(total, 30.0, 1e-5);
  EXPECT_NEAR(p.x, 10.0, 1e-4);
  EXPECT_NEAR(p.y, 0.0, 1e-6);
  // Half way round the quarter circle lies on the diagonal.
  const TPointF h = bezierPointAtLength(kQuarter, bezierLength(kQuarter) / 2.0, total);
  EXPECT_NEAR(h.x, h.y, 1e-4);
  EXPECT_NEAR(std::hypot(h.x, h.y), 10.0, 3e-3);
}

TEST(BezierPointAtLength, OutOfRangeGivesTheEndsAndStillTheTotal) {
  double total = -1;
  const TPointF s = bezierPointAtLength(kQuarter, 0.0, total);
  EXPECT_TRUE(s.identical(kQuarter.P0));
  EXPECT_GT(total, 15.0);
  total = -1;
  EXPECT_TRUE(bezierPointAtLength(kQuarter, -3.0, total).identical(kQuarter.P0));
  EXPECT_GT(total, 15.0);
  EXPECT_TRUE(bezierPointAtLength(kQuarter, total, total).identical(kQuarter.P3));
  EXPECT_TRUE(bezierPointAtLength(kQuarter, 100.0, total).identical(kQuarter.P3));
  const TBezier zero{TPointF(3, 4), TPointF(3, 4), TPointF(3, 4), TPointF(3, 4)};
  EXPECT_TRUE(bezierPointAtLength(zero, 1.0, total).identical(TPointF(3, 4)));
  EXPECT_EQ(total, 0.0);
}

TEST(BezierQuarterMarks, MarksAtQuarterLengthsAreCachedUntilReset) {
  auto s = shapes::bezier(TPointF(0, 0), TPointF(0, 0), TPointF(0, 0), TPointF(40, 0));
  const TPointFArray pts = s->getControlPoints(false, false, true);
  ASSERT_EQ(pts.size(), 5u);
  EXPECT_TRUE(pts[0].identical(TPointF(0, 0)));
  EXPECT_TRUE(pts[1].identical(TPointF(40, 0)));
  EXPECT_NEAR(pts[2].x, 10.0, 1e-4);
  EXPECT_NEAR(pts[3].x, 20.0, 1e-4);
  EXPECT_NEAR(pts[4].x, 30.0, 1e-4);
  // Without quarter marks only the ends.
  EXPECT_EQ(s->getControlPoints(false, false, false).size(), 2u);
  // Moving a handle behind the shape's back leaves the cache as it was...
  s->FBezierCp1 = TPointF(0, 20);
  EXPECT_NEAR(s->getControlPoints(false, false, true)[2].y, 0.0, 1e-6);
  // ...until the cache is reset.
  s->resetBoundary();
  EXPECT_GT(s->getControlPoints(false, false, true)[2].y, 1.0);
}

TEST(BezierQuarterMarks, SharedTableGivesExactlyThePointsAtLength) {
  auto s = shapes::bezier(TPointF(0, 0), TPointF(10, 25), TPointF(40, -20), TPointF(50, 5));
  const TPointFArray pts = s->getControlPoints(false, false, true);
  const TBezier b = bezierOf(*s);
  const double len = bezierLength(b);
  double total = 0;
  for (int i = 0; i < 3; ++i)
    EXPECT_TRUE(pts[2 + i].identical(bezierPointAtLength(b, len * (i + 1) / 4.0, total))) << i;
}

TEST(NearestBezierParameter, TiesGoToTheSmallerParameter) {
  // A closed loop: start and end are the same nearest point.
  auto loop = shapes::bezier(TPointF(0, 0), TPointF(10, 10), TPointF(-10, 10), TPointF(0, 0));
  TPointF at;
  EXPECT_EQ(loop->findNearestBezierT(TPointF(0, -5), at), 0.0f);
  EXPECT_TRUE(at.identical(TPointF(0, 0)));
}

TEST(NearestBezierParameter, EndIsInsideTheScanAndResolutionIsATenThousandth) {
  auto s = shapes::bezier(TPointF(0, 0), TPointF(10, 0), TPointF(20, 0), TPointF(30, 0));
  TPointF at;
  EXPECT_EQ(s->findNearestBezierT(TPointF(30, 0), at), 1.0f);
  EXPECT_EQ(s->findNearestBezierT(TPointF(45, 2), at), 1.0f);
  const float t = findNearestBezierT(*s, TPointF(12.34f, 1.0f), at);
  EXPECT_NEAR(t, 0.4113f, 1e-6);
  EXPECT_NEAR(at.x, 12.339, 1e-3);
}

TEST(BezierSplit, TheTwoHalvesRetraceTheOriginal) {
  TShapeList ids(nullptr, "en");
  ids.FLastID = 41;
  auto s = shapes::bezier(TPointF(0, 0), TPointF(10, 20), TPointF(20, -20), TPointF(30, 0));
  s->FLayerID = 3;
  s->FPalletIndex = 5;
  s->FColor = 0xFF112233;
  s->FThickness = 0.8f;
  s->FDash = TStrokeDash::Dash;
  const TBezier orig = bezierOf(*s);
  TPointF onCurve;
  const float t = s->findNearestBezierT(TPointF(9, 5), onCurve);
  auto second = splitBezierAt(*s, TPointF(9, 5), ids);
  ASSERT_TRUE(second);
  EXPECT_EQ(second->FID, 42);
  EXPECT_EQ(second->FLayerID, 3);
  EXPECT_EQ(second->FPalletIndex, 5);
  EXPECT_EQ(second->FColor, 0xFF112233u);
  EXPECT_FLOAT_EQ(second->FThickness, 0.8f);
  EXPECT_EQ(second->FDash, TStrokeDash::Dash);
  EXPECT_TRUE(s->FEndPt.identical(onCurve));
  EXPECT_TRUE(second->FStartPt.identical(onCurve));
  EXPECT_TRUE(second->FEndPt.identical(orig.P3));
  for (int i = 0; i <= 20; ++i) {
    const double u = i / 20.0;
    const TPointF a = cubicPointAt(s->FStartPt, s->FBezierCp1, s->FBezierCp2, s->FEndPt, u);
    const TPointF ea = cubicPointAt(orig.P0, orig.P1, orig.P2, orig.P3, t * u);
    EXPECT_NEAR(a.x, ea.x, 1e-4);
    EXPECT_NEAR(a.y, ea.y, 1e-4);
    const TPointF b = bezierPointAt(*second, static_cast<float>(u));
    const TPointF eb = cubicPointAt(orig.P0, orig.P1, orig.P2, orig.P3, t + (1 - t) * u);
    EXPECT_NEAR(b.x, eb.x, 1e-4);
    EXPECT_NEAR(b.y, eb.y, 1e-4);
  }
}

TEST(BezierSplit, RefusedFarFromTheCurveOrAtAnEnd) {
  TShapeList ids(nullptr, "en");
  auto s = shapes::bezier(TPointF(0, 0), TPointF(10, 0), TPointF(20, 0), TPointF(30, 0));
  EXPECT_FALSE(splitBezierAt(*s, TPointF(15, 3.01f), ids));
  EXPECT_FALSE(splitBezierAt(*s, TPointF(0.004f, 1), ids));  // lands on the start
  EXPECT_FALSE(splitBezierAt(*s, TPointF(31, 0), ids));      // lands on the end
  EXPECT_EQ(ids.FLastID, 0);
  EXPECT_TRUE(s->FEndPt.identical(TPointF(30, 0)));
  EXPECT_TRUE(s->FBezierCp2.identical(TPointF(20, 0)));
  EXPECT_TRUE(splitBezierAt(*s, TPointF(15, 2.99f), ids));
}

TEST(BezierTrim, EitherKeptSideLiesOnTheOriginal) {
  for (bool keepStart : {true, false}) {
    auto s = shapes::bezier(TPointF(0, 0), TPointF(5, 25), TPointF(25, -15), TPointF(30, 10));
    const TBezier orig = bezierOf(*s);
    trimBezierKeep(*s, 0.4, keepStart);
    EXPECT_EQ(s->FShapeType, ShapeType::Bezier);
    for (int i = 0; i <= 10; ++i) {
      const double u = i / 10.0;
      const double t = keepStart ? 0.4 * u : 0.4 + 0.6 * u;
      const TPointF a = bezierPointAt(*s, static_cast<float>(u));
      const TPointF e = cubicPointAt(orig.P0, orig.P1, orig.P2, orig.P3, t);
      EXPECT_NEAR(a.x, e.x, 1e-4) << keepStart << " " << u;
      EXPECT_NEAR(a.y, e.y, 1e-4) << keepStart << " " << u;
    }
  }
}
