#include <gtest/gtest.h>

#include "document/shape_list.h"
#include "geometry/intersect_polyline.h"
#include "shape_factory.h"

using shapes::bezier;
using shapes::circle;
using shapes::line;

namespace {

TIntersectionList poly(TPW_Path& a, TPW_Path& b, const TShapeList* layers = nullptr,
                       bool extended = false) {
  return calcPolylineIntersections(&a, &b, layers, extended);
}

}  // namespace

TEST(CrossOfSegments, VerticalsAndHorizontalsGiveTheirMeanCoordinate) {
  TDPoint p;
  // Nearly vertical (0.0008 across) and nearly horizontal.
  ASSERT_TRUE(crossOfSegments(TPointF(5, 0), TPointF(5.0008f, 10), TPointF(0, 3), TPointF(10, 3.0006f), p));
  EXPECT_NEAR(p.x, 5.0004, 1e-6);
  EXPECT_NEAR(p.y, 3.0003, 1e-6);
  ASSERT_TRUE(crossOfSegments(TPointF(0, 0), TPointF(4, 4), TPointF(0, 4), TPointF(4, 0), p));
  EXPECT_NEAR(p.x, 2, 1e-9);
  EXPECT_NEAR(p.y, 2, 1e-9);
  // Coordinates are rounded to four decimals before solving.
  ASSERT_TRUE(crossOfSegments(TPointF(1.00004f, 0), TPointF(1.00004f, 5), TPointF(0, 1), TPointF(3, 4), p));
  EXPECT_NEAR(p.x, 1.0, 1e-9);
  EXPECT_NEAR(p.y, 2.0, 1e-6);
}

TEST(CrossOfSegments, ParallelsGiveNothing) {
  TDPoint p;
  EXPECT_FALSE(crossOfSegments(TPointF(0, 0), TPointF(10, 10), TPointF(0, 1), TPointF(10, 11.005f), p));
  EXPECT_FALSE(crossOfSegments(TPointF(0, 0), TPointF(0, 10), TPointF(1, 0), TPointF(1, 10), p));
  EXPECT_FALSE(crossOfSegments(TPointF(0, 0), TPointF(10, 0), TPointF(0, 1), TPointF(10, 1), p));
}

TEST(PolylineEngine, CollinearLinesSharingAnEndMeetThereAsAJoint) {
  auto a = line(TPointF(0, 0), TPointF(10, 0), 1);
  auto b = line(TPointF(10, 0), TPointF(20, 0), 2);
  auto x = poly(*a, *b);
  ASSERT_EQ(x.size(), 1u);
  EXPECT_TRUE(x[0]->FPoint.identical(TPointF(10, 0)));
  EXPECT_FALSE(x[0]->FIsCrossing);
  EXPECT_EQ(x[0]->FPathID1, 1);
  EXPECT_EQ(x[0]->FPathID2, 2);
}

TEST(PolylineEngine, EndsWithinATenthAreMatchedAtTheFirstShapesEnd) {
  auto a = line(TPointF(0, 0), TPointF(10, 0));
  auto b = line(TPointF(10.05f, 0.05f), TPointF(10, 10));
  auto x = poly(*a, *b);
  ASSERT_EQ(x.size(), 1u);
  EXPECT_TRUE(x[0]->FPoint.identical(TPointF(10, 0)));
  EXPECT_FALSE(x[0]->FIsCrossing);
  auto c = line(TPointF(10.08f, 0.08f), TPointF(10, 10));  // 0.113 away
  EXPECT_TRUE(poly(*a, *c).empty());
}

TEST(PolylineEngine, RangeMarginIsFiveHundredthsOnEachAxis) {
  auto a = line(TPointF(0, 0), TPointF(10, 10));
  // Stops 0.03 short of the crossing at (5, 5) on each axis: accepted.
  auto shortOf = line(TPointF(0, 10), TPointF(4.97f, 5.03f));
  auto x = poly(*a, *shortOf);
  ASSERT_EQ(x.size(), 1u);
  EXPECT_NEAR(x[0]->FPoint.x, 5, 1e-5);
  EXPECT_NEAR(x[0]->FPoint.y, 5, 1e-5);
  EXPECT_TRUE(x[0]->FIsCrossing);
  // 0.07 short: refused.
  auto tooShort = line(TPointF(0, 10), TPointF(4.93f, 5.07f));
  EXPECT_TRUE(poly(*a, *tooShort).empty());
  // Unless the lines are extended.
  x = poly(*a, *tooShort, nullptr, true);
  ASSERT_EQ(x.size(), 1u);
  EXPECT_NEAR(x[0]->FPoint.x, 5, 1e-5);
}

TEST(PolylineEngine, TJointCrossesAndPointsCloserThanATenthAreOne) {
  auto a = line(TPointF(0, 0), TPointF(10, 0));
  auto t = line(TPointF(5, 0), TPointF(5, 8));
  auto x = poly(*a, *t);
  ASSERT_EQ(x.size(), 1u);
  EXPECT_TRUE(x[0]->FPoint.identical(TPointF(5, 0)));
  EXPECT_TRUE(x[0]->FIsCrossing);
  // A zigzag crossing the line twice 0.06 apart gives one entry.
  auto zig = bezier(TPointF(4.97f, -1), TPointF(4.97f, 2), TPointF(5.03f, 2), TPointF(5.03f, -1));
  x = poly(*a, *zig);
  EXPECT_EQ(x.size(), 1u);
}

TEST(PolylineEngine, LooseEndNearAVertexOfACurveIsCaught) {
  auto curve = bezier(TPointF(0, 0), TPointF(10, 10), TPointF(20, 10), TPointF(30, 0));
  const auto iv = curve->getIntervalsFast(false);
  const TPointF v = iv[iv.size() / 2].Ed;
  // A line stopping 0.08 above a vertex of the drawn curve (not reaching it).
  auto l = line(TPointF(v.x, v.y - 5), TPointF(v.x, v.y - 0.08f));
  auto x = poly(*l, *curve);
  ASSERT_EQ(x.size(), 1u);
  EXPECT_TRUE(x[0]->FPoint.identical(l->FEndPt));
  EXPECT_FALSE(x[0]->FIsCrossing);
}

TEST(PolylineEngine, KindsAndLayersThatNeverMeet) {
  auto a = line(TPointF(0, 0), TPointF(10, 10));
  auto b = line(TPointF(0, 10), TPointF(10, 0));
  TShapeList layers(nullptr, "en");
  layers.addLayer(-1, "", true);
  layers.SetIsIndependentLayer(1, true);
  b->FLayerID = 1;
  EXPECT_TRUE(poly(*a, *b, &layers).empty());
  EXPECT_EQ(poly(*a, *b).size(), 1u);  // no layers given: no rule
  a->FLayerID = 1;
  EXPECT_EQ(poly(*a, *b, &layers).size(), 1u);
  b->FShapeType = ShapeType::Hole;  // never as the second shape
  EXPECT_TRUE(poly(*a, *b).empty());
  b->FShapeType = ShapeType::Text;
  EXPECT_TRUE(poly(*b, *a).empty());
  // A dimension line still matches ends, but is never crossed.
  auto dim = line(TPointF(10, 10), TPointF(0, 5));
  dim->FIsDimensionLine = true;
  auto y = poly(*a, *dim);
  ASSERT_EQ(y.size(), 1u);
  EXPECT_TRUE(y[0]->FPoint.identical(TPointF(10, 10)));
  auto across = line(TPointF(0, 10), TPointF(10, 0));
  across->FIsDimensionLine = true;
  EXPECT_TRUE(poly(*a, *across).empty());
}

TEST(PolylineEngine, EllipseSkipsEndMatchingAndFindsCrossings) {
  auto c = circle(TPointF(0, 0), 20);
  auto l = line(TPointF(-10, 0), TPointF(0, 0));  // starts at the circle's stored ends
  auto x = poly(*c, *l);
  ASSERT_EQ(x.size(), 1u);
  EXPECT_NEAR(x[0]->FPoint.x, -10, 1e-3);
  auto curve = bezier(TPointF(-20, 2), TPointF(-5, 3), TPointF(5, 3), TPointF(20, 2));
  x = poly(*c, *curve);
  ASSERT_EQ(x.size(), 2u);
  EXPECT_TRUE(x[0]->FIsCrossing);
  EXPECT_NEAR(std::fabs(x[0]->FPoint.x), std::sqrt(100.0 - 2.5 * 2.5), 0.2);
}
