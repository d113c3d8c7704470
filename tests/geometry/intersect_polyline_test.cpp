#include <gtest/gtest.h>

#include <cmath>

#include "document/shape_list.h"
#include "geometry/intersect_polyline.h"
#include "shape_factory.h"

using shapes::bezier;
using shapes::line;

namespace {

TIntersectionList poly(TPW_Path& a, TPW_Path& b, const TShapeList* layers = nullptr,
                       bool extended = false) {
  return calcPolylineIntersections(&a, &b, layers, extended);
}

}  // namespace

TEST(CrossOfSegments, NearlyVerticalAndHorizontalUseTheirMeanAndParallelsMiss) {
  TDPoint p;
  ASSERT_TRUE(crossOfSegments(TPointF(5, 0), TPointF(5.0008f, 10), TPointF(0, 3), TPointF(10, 3.0006f), p));
  EXPECT_NEAR(p.x, 5.0004, 1e-6);
  EXPECT_NEAR(p.y, 3.0003, 1e-6);
  // Rounded to four decimals before solving.
  ASSERT_TRUE(crossOfSegments(TPointF(1.00004f, 0), TPointF(1.00004f, 5), TPointF(0, 1), TPointF(3, 4), p));
  EXPECT_NEAR(p.y, 2.0, 1e-6);
  // Slopes 1 and 1.0005 count as parallel.
  EXPECT_FALSE(crossOfSegments(TPointF(0, 0), TPointF(10, 10), TPointF(0, 1), TPointF(10, 11.005f), p));
  EXPECT_FALSE(crossOfSegments(TPointF(0, 0), TPointF(10, 0), TPointF(0, 1), TPointF(10, 1), p));
}

TEST(PolylineEngine, EndsWithinATenthMeetAtTheFirstShapesEnd) {
  auto a = line(TPointF(0, 0), TPointF(10, 0), 1);
  auto x = poly(*a, *line(TPointF(10, 0), TPointF(20, 0), 2));  // collinear
  ASSERT_EQ(x.size(), 1u);
  EXPECT_TRUE(x[0]->FPoint.identical(TPointF(10, 0)));
  EXPECT_FALSE(x[0]->FIsCrossing);
  EXPECT_EQ(x[0]->FPathID2, 2);
  x = poly(*a, *line(TPointF(10.05f, 0.05f), TPointF(10, 10)));  // 0.07 away
  ASSERT_EQ(x.size(), 1u);
  EXPECT_TRUE(x[0]->FPoint.identical(TPointF(10, 0)));
  EXPECT_TRUE(poly(*a, *line(TPointF(10.08f, 0.08f), TPointF(10, 10))).empty());  // 0.113
}

TEST(PolylineEngine, CrossingsCloserThanATenthAreOneAndLooseEndsAreCaught) {
  auto a = line(TPointF(0, 0), TPointF(10, 0));
  auto zig = bezier(TPointF(4.97f, -1), TPointF(4.97f, 2), TPointF(5.03f, 2), TPointF(5.03f, -1));
  EXPECT_EQ(poly(*a, *zig).size(), 1u);  // crosses twice, 0.06 apart
  // A line stopping 0.08 short of a vertex of a drawn curve.
  auto curve = bezier(TPointF(0, 0), TPointF(10, 10), TPointF(20, 10), TPointF(30, 0));
  const auto iv = curve->getIntervalsFast(false);
  const TPointF v = iv[iv.size() / 2].Ed;
  auto l = line(TPointF(v.x, v.y - 5), TPointF(v.x, v.y - 0.08f));
  auto x = poly(*l, *curve);
  ASSERT_EQ(x.size(), 1u);
  EXPECT_TRUE(x[0]->FPoint.identical(l->FEndPt));
  EXPECT_FALSE(x[0]->FIsCrossing);
}

TEST(PolylineEngine, LayersKindsAndDimensionLines) {
  auto a = line(TPointF(0, 0), TPointF(10, 10));
  auto b = line(TPointF(0, 10), TPointF(10, 0));
  TShapeList layers(nullptr, "en");
  layers.addLayer(-1, "", true);
  layers.SetIsIndependentLayer(1, true);
  b->FLayerID = 1;
  EXPECT_TRUE(poly(*a, *b, &layers).empty());
  a->FLayerID = 1;
  EXPECT_EQ(poly(*a, *b, &layers).size(), 1u);
  b->FShapeType = ShapeType::Hole;  // never as the second shape
  EXPECT_TRUE(poly(*a, *b).empty());
  // A dimension line still matches ends but is never crossed.
  auto dim = line(TPointF(10, 10), TPointF(0, 5));
  dim->FIsDimensionLine = true;
  EXPECT_EQ(poly(*a, *dim).size(), 1u);
  dim->drawLinePath(TPointF(0, 10), TPointF(10, 0));
  EXPECT_TRUE(poly(*a, *dim).empty());
}
