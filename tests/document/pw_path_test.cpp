#include <gtest/gtest.h>

#include <cmath>

#include "document/point_helpers.h"
#include "document/pw_path.h"
#include "platform/text_layout.h"

namespace {

std::unique_ptr<TPW_Path> newShape(int id = 1) {
  return std::make_unique<TPW_Path>(3, 0xFF112233, 0.5f, TStrokeDash::Dash, id);
}

std::unique_ptr<TPW_Path> line(TPointF a, TPointF b) {
  auto s = newShape();
  s->drawLinePath(a, b);
  return s;
}

}  // namespace

TEST(ShapeRecord, CopyKeepsIdentityButNotScratch) {
  auto s = newShape(9);
  s->drawBezierPath(TPointF(0, 0), TPointF(10, 20), TPointF(30, 20), TPointF(40, 0));
  s->FArrowLen = 4;
  s->FIsManuallyClicked = true;
  s->FExportStrokeDashToSVG = true;
  s->FTemp_HasStichingHole = true;
  s->FClickedPathIndex = 5;
  s->FName = "flap";
  s->getControlPoints(false, false, true);  // fills the cache
  ASSERT_FALSE(s->FControlPointsCache.empty());
  auto c = s->createCopy();
  EXPECT_EQ(c->FID, 9);
  EXPECT_EQ(c->FGUID, s->FGUID);
  EXPECT_TRUE(c->isIdentical(*s));
  EXPECT_EQ(c->FData.getData(), s->FData.getData());
  EXPECT_EQ(c->FName, "flap");
  EXPECT_FLOAT_EQ(c->FArrowLen, 1.0f);
  EXPECT_FALSE(c->FIsManuallyClicked);
  EXPECT_FALSE(c->FExportStrokeDashToSVG);
  EXPECT_FALSE(c->FTemp_HasStichingHole);
  EXPECT_EQ(c->FClickedPathIndex, 0);
  EXPECT_TRUE(c->FControlPointsCache.empty());
}

TEST(ShapeRecord, LineParametersAndCrossing) {
  auto v = line(TPointF(1.004f, 0), TPointF(1, 50));  // 0.004 in x: vertical
  EXPECT_TRUE(v->FIsVerticalLine);
  EXPECT_FLOAT_EQ(v->FLine_param_a, 2147483648.0f);
  auto tiny = line(TPointF(0, 0), TPointF(0.004f, 0.003f));  // x is tested first
  EXPECT_TRUE(tiny->FIsVerticalLine);
  EXPECT_FALSE(tiny->FIsHorizontalLine);
  auto h = line(TPointF(0, 7), TPointF(20, 7.004f));
  EXPECT_TRUE(h->FIsHorizontalLine);
  EXPECT_FLOAT_EQ(h->FLine_param_b, 7.0f);
  auto d = line(TPointF(0, 0), TPointF(10, 10));
  EXPECT_FLOAT_EQ(d->FLine_param_a, 1.0f);

  TPointF p;
  ASSERT_TRUE(v->calcCrossPointWith(*h, p));
  EXPECT_NEAR(p.x, 1.004, 1e-6);
  EXPECT_FLOAT_EQ(p.y, 7.0f);
  ASSERT_TRUE(d->calcCrossPointWith(*h, p));
  EXPECT_FLOAT_EQ(p.x, 7.0f);
  EXPECT_FALSE(v->calcCrossPointWith(*line(TPointF(5, 0), TPointF(5, 9)), p));
  EXPECT_FALSE(d->calcCrossPointWith(*line(TPointF(0, 3), TPointF(10, 13.001f)), p));  // parallel
}

TEST(ShapeRecord, ArcSweepNormalisationAndFlatness) {
  auto a = newShape();
  a->drawArcPath(TPointF(0, 0), TPointF(10, 10), TPointF(10, 0), TPointF(10, 0), 360);
  EXPECT_FLOAT_EQ(a->FSweepAngle, 0.0f);
  EXPECT_TRUE(a->FData.isEmpty());
  a->drawArcPath(TPointF(0, 0), TPointF(10, 10), TPointF(0, -10), TPointF(10, 0), -450);
  EXPECT_FLOAT_EQ(a->FSweepAngle, -90.0f);
  EXPECT_FLOAT_EQ(a->FStartAngle, -90.0f);  // the start lies above the centre
  a->drawArcPath(TPointF(0, 0), TPointF(10, 10), TPointF(0, 10), TPointF(-10, 0), 90);
  EXPECT_FLOAT_EQ(a->FStartAngle, 90.0f);
  EXPECT_EQ(a->FShapeType, "ARC");
  EXPECT_NEAR(a->FData.LastPoint().x, -10, 1e-4);
  EXPECT_NEAR(a->calcTotalLength(), M_PI * 5, 0.01);
  EXPECT_DOUBLE_EQ(arcFlatness(0.4), 0.02);
  EXPECT_DOUBLE_EQ(arcFlatness(4.0), 0.08);
  EXPECT_DOUBLE_EQ(arcFlatness(5.0), 0.3);
}

TEST(ShapeRecord, BoundaryIsCachedUntilReset) {
  auto b = newShape();
  b->drawBezierPath(TPointF(0, 0), TPointF(0, -20), TPointF(40, -20), TPointF(40, 0));
  const TRectF r = b->getBoundary(false);
  EXPECT_FLOAT_EQ(r.Left, 0);
  EXPECT_FLOAT_EQ(r.Right, 40);
  EXPECT_NEAR(r.Top, -15, 0.01);  // the curve's peak, from the flattened path
  b->FData.Translate(100, 0);     // moved behind the cache's back
  EXPECT_FLOAT_EQ(b->getBoundary(false).Left, 0);
  b->resetBoundary();
  EXPECT_FLOAT_EQ(b->getBoundary(false).Left, 100);
  EXPECT_NEAR(b->getCenterPoint().x, 120, 1e-4);

  auto other = newShape();
  other->FData.setData("M10,10 L30,10 L30,20");
  other->getCenterPoint();  // "OTHER" takes ends and centre from its boundary
  EXPECT_EQ(other->FStartPt, TPointF(10, 10));
  EXPECT_EQ(other->FEndPt, TPointF(30, 20));
  EXPECT_EQ(other->FCenter, TPointF(70.0f / 3.0f, 40.0f / 3.0f));  // mean of the three vertices
  EXPECT_FALSE(other->fillPath());
  other->FData.setData("M10,10 L30,10 L30,20 Z");
  EXPECT_TRUE(other->fillPath());
  EXPECT_FALSE(line(TPointF(0, 0), TPointF(1, 1))->fillPath());
  EXPECT_FALSE(newShape()->fillPath());
}

TEST(ShapeRecord, OnPathLimitIsOnTheCrossProduct) {
  int idx = -1;
  auto longLine = line(TPointF(0, 0), TPointF(100, 0));
  EXPECT_FALSE(longLine->isOnPath(TPointF(50, 0.05f), idx));  // cross product 5
  auto shortLine = line(TPointF(0, 0), TPointF(1, 0));
  EXPECT_TRUE(shortLine->isOnPath(TPointF(0.5f, 0.05f), idx));  // cross product 0.05
  EXPECT_EQ(idx, 0);
  EXPECT_FALSE(shortLine->isOnPath(TPointF(1.5f, 0), idx));    // beyond the end

  auto zig = newShape();
  zig->FData.setData("M0,0 L10,0 L10,10 L0,10");
  ASSERT_TRUE(zig->isOnPath(TPointF(10, 5), idx));
  EXPECT_EQ(idx, 1);
  // At a corner both pieces pass; the smallest signed cross product wins.
  ASSERT_TRUE(zig->isOnPath(TPointF(10, 0), idx));
  EXPECT_EQ(idx, 0);
}

TEST(ShapeRecord, LengthsAlongTheIntervals) {
  auto zig = newShape();
  zig->FShapeType = "OTHER";
  zig->FData.setData("M0,0 L10,0 L10,10 L0,10 L0,5");
  EXPECT_FLOAT_EQ(zig->calcTotalLength(), 35.0f);
  EXPECT_FLOAT_EQ(zig->calcLengthBetween(1, 2, 1), 20.0f);
  EXPECT_TRUE(std::isnan(zig->calcLengthBetween(3, 1, 1)));
  EXPECT_TRUE(std::isnan(zig->calcLengthBetween(1, 3, -1)));
  EXPECT_FLOAT_EQ(zig->calcLengthBetween(3, 1, -1), 25.0f);
  zig->FShapeType = "ELLIPSE";  // a closed outline walks round: 3, 0, 1
  EXPECT_FLOAT_EQ(zig->calcLengthBetween(3, 1, 1), 5 + 10 + 10.0f);
  EXPECT_FLOAT_EQ(zig->calcLengthFromAnIndex(2, 1), 15.0f);
  EXPECT_FLOAT_EQ(zig->calcLengthFromAnIndex(2, -1), 20.0f);
  EXPECT_THROW(zig->calcLengthFromAnIndex(9, 1), std::out_of_range);
  // From a point: the partial piece plus, on top, the whole piece it lies on.
  EXPECT_FLOAT_EQ(zig->calcLengthFromAPoint(TPointF(10, 4), 1), 6 + 10 + 10 + 5.0f);
  EXPECT_FLOAT_EQ(zig->calcLengthFromAPoint(TPointF(10, 4), -1), 4 + 10 + 10.0f);
  EXPECT_FLOAT_EQ(zig->calcLengthFromAPoint(TPointF(50, 50), 1), 0.0f);
}

TEST(ShapeRecord, SelectionTests) {
  auto l = line(TPointF(10, 10), TPointF(20, 20));
  EXPECT_TRUE(l->inRange(TPointF(25, 25), TPointF(5, 5), false));
  EXPECT_FALSE(l->inRange(TPointF(15, 5), TPointF(25, 25), false));
  // Partial selection is the wide test: one overlapping axis is enough.
  EXPECT_TRUE(l->inRange(TPointF(12, 100), TPointF(13, 200), true));
  EXPECT_FALSE(l->inRange(TPointF(30, 30), TPointF(40, 40), true));
  EXPECT_TRUE(l->isInRect(TPointF(20, 10)));
  EXPECT_TRUE(l->isAPointInsideShape(TPointF(11, 19)));
  auto near = line(TPointF(20.005f, 20.005f), TPointF(30, 30));
  EXPECT_TRUE(l->doesItIntersectWith(*near));
  auto far = line(TPointF(20.02f, 20.02f), TPointF(30, 30));
  EXPECT_FALSE(l->doesItIntersectWith(*far));
}

TEST(ShapeRecord, ReverseSwapsEndsAndDirection) {
  auto a = newShape();
  a->drawArcPath(TPointF(0, 0), TPointF(10, 10), TPointF(10, 0), TPointF(0, 10), 90);
  const size_t n = a->FData.Count();
  const TPointF first = a->FData[0].Point;
  a->reversePath();
  EXPECT_NEAR(a->FData[0].Point.x, 0, 1e-4);
  EXPECT_NEAR(a->FData[0].Point.y, 10, 1e-4);
  EXPECT_EQ(a->FStartPt, TPointF(0, 10));
  EXPECT_FLOAT_EQ(a->FSweepAngle, -90.0f);
  EXPECT_EQ(a->FData.LastPoint(), first);
  EXPECT_LE(a->FData.Count(), n);  // zero-length pieces are dropped

  auto l = line(TPointF(1, 2), TPointF(3, 4));
  l->reversePath();
  EXPECT_EQ(l->FData.getData(), "M3,4 L1,2 ");

  auto t = newShape();
  t->FShapeType = "TEXT";
  t->FData.setData("M0,0 L5,5");
  t->reversePath();
  EXPECT_EQ(t->FData.getData(), "M0,0 L5,5 ");
}

namespace {

// Every character is a box half as wide as the size and as high as it.
class TBoxTextLayout : public ITextLayout {
 public:
  TTextExtent measure(const std::string& text, const std::string&, double size) override {
    return {0.5 * size * static_cast<double>(text.size()), size};
  }
  TPathData outline(const std::string& text, const std::string&, double size) override {
    TPathData d;
    const float w = static_cast<float>(0.5 * size * text.size());
    const float h = static_cast<float>(size);
    d.MoveTo(TPointF(0, 0));
    d.LineTo(TPointF(w, 0));
    d.LineTo(TPointF(w, h));
    d.LineTo(TPointF(0, h));
    d.ClosePath();
    return d;
  }
};

struct TLayoutScope {
  TBoxTextLayout layout;
  TLayoutScope() { setTextLayout(&layout); }
  ~TLayoutScope() { setTextLayout(nullptr); }
};

}  // namespace

TEST(ShapeRecord, StraightTextRunsRightAndTurnsAboutItsTopLeft) {
  TLayoutScope scope;
  auto t = newShape();
  t->drawTextPath("AB", TPointF(100, 50), 10, 0, "Sans", 0, 1);
  EXPECT_EQ(t->FShapeType, "TEXT");
  const TRectF r = t->getMinMaxRect();
  EXPECT_EQ(r, TRectF(100, 45, 110, 55));
  EXPECT_EQ(t->FCenter, TPointF(105, 50));
  EXPECT_FLOAT_EQ(t->FWidth, 10);
  EXPECT_FLOAT_EQ(t->FHeight, 10);
  EXPECT_TRUE(t->fillPath());

  t->drawTextPath("AB", TPointF(100, 50), 10, 0, "Sans", 0, 2);  // letter spacing doubled
  EXPECT_FLOAT_EQ(t->getMinMaxRect().Right, 115);
  EXPECT_FLOAT_EQ(t->FWidth, 20);

  t->drawTextPath("AB", TPointF(100, 50), 10, 90, "Sans", 0, 1);
  const TRectF turned = t->getMinMaxRect();
  EXPECT_NEAR(turned.Left, 90, 1e-4);
  EXPECT_NEAR(turned.Right, 100, 1e-4);
  EXPECT_NEAR(turned.Top, 45, 1e-4);
  EXPECT_NEAR(turned.Bottom, 55, 1e-4);
}

TEST(PointHelpers, RoundingAndSameness) {
  EXPECT_DOUBLE_EQ(round2(1.005), 1.0);  // 1.005 is a hair below in binary
  EXPECT_DOUBLE_EQ(round2(-2.345), -2.35);
  EXPECT_DOUBLE_EQ(round2(2.5e-3), 0.0);
  EXPECT_TRUE(samePoint(TPointF(1.004f, 0), TPointF(0.996f, 0)));
  EXPECT_FALSE(samePoint(TPointF(1.004f, 0), TPointF(1.006f, 0)));
  EXPECT_TRUE(samePoint(TPointF(0, 0), TPointF(0.3f, 0.4f), 0.51));
  EXPECT_FALSE(samePoint(TPointF(0, 0), TPointF(0.3f, 0.4f), 0.5));
  EXPECT_EQ(unitVector(TPointF(1, 1), TPointF(1, 1)), TPointF(0, 0));
  const TPointF r = rotateVector(TPointF(3, 0), 90);
  EXPECT_NEAR(r.x, 0, 1e-6);
  EXPECT_NEAR(r.y, 1, 1e-6);
  const TPointF p = rotatePointAbout(TPointF(2, 1), 180, TPointF(1, 1));
  EXPECT_NEAR(p.x, 0, 1e-6);
  EXPECT_NEAR(p.y, 1, 1e-6);
  EXPECT_TRUE(TPointF(1e6f, 0) == TPointF(1000001.0f, 0));  // within the relative tolerance
  EXPECT_FALSE(TPointF(1, 0) == TPointF(1.00001f, 0));
}
