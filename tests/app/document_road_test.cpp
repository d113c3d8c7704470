#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "app/frm_pelw.h"
#include "geometry/collect_intersections.h"
#include "geometry/intersect_pair.h"
#include "../geometry/shape_factory.h"

using shapes::line;

namespace {

// A controller with a document and no window, server or files.
struct TDocumentFixture : ::testing::Test {
  TfrmPelw frm;
  TDocumentFixture() {
    frm.PathList = std::make_unique<TShapeList>(nullptr, "en");
    frm.FIntersections = std::make_unique<TIntersections>();
  }
  TShapeList& doc() { return *frm.PathList; }
  TIntersections& crossings() { return *frm.FIntersections; }
};

void expectSameList(const TIntersections& a, const TIntersections& b) {
  ASSERT_EQ(a.Count(), b.Count());
  for (size_t i = 0; i < a.Count(); ++i) {
    SCOPED_TRACE(i);
    EXPECT_EQ(a[i]->FPath1, b[i]->FPath1);
    EXPECT_EQ(a[i]->FPath2, b[i]->FPath2);
    EXPECT_TRUE(a[i]->FPoint.identical(b[i]->FPoint));
    EXPECT_EQ(a[i]->FIsCrossing, b[i]->FIsCrossing);
  }
}

// Moves a shape by rebuilding it the way the tools do.
void moveShape(TPW_Path& s, float dx, float dy) {
  const TPointF d(dx, dy);
  if (s.FShapeType == ShapeType::Line) {
    s.drawLinePath(s.FStartPt + d, s.FEndPt + d);
  } else if (s.FShapeType == ShapeType::Arc) {
    s.drawArcPath(s.FCenter + d, TPointF(s.FWidth, s.FHeight), s.FStartPt + d, s.FEndPt + d,
                  s.FSweepAngle);
  } else if (s.FShapeType == ShapeType::Ellipse) {
    s.drawEllipsePath(s.FCenter + d, s.FWidth, s.FHeight);
  } else if (s.FShapeType == ShapeType::Bezier) {
    s.drawBezierPath(s.FStartPt + d, s.FBezierCp1 + d, s.FBezierCp2 + d, s.FEndPt + d);
  } else if (s.FShapeType == ShapeType::Dot) {
    s.drawDotPath(s.FCenter + d, s.FWidth / 2);
  }
}

// What the list must be after any history of adds, changes and deletes:
// each shape, in the order it was last added or changed, meets the shapes
// touched before it, in document order.
void expectedList(TShapeList& doc, const std::vector<TPW_Path*>& touchOrder, TIntersections& out) {
  out.Clear();
  for (size_t k = 0; k < touchOrder.size(); ++k) {
    std::vector<TPW_Path*> before;
    for (const auto& s : doc)
      if (std::find(touchOrder.begin(), touchOrder.begin() + k, s.get()) != touchOrder.begin() + k)
        before.push_back(s.get());
    collectIntersections(before, &doc, out, touchOrder[k]);
  }
}

}  // namespace

TEST_F(TDocumentFixture, ListStaysRightThroughAddChangeAndDelete) {
  // Shapes of a random document, fed in through the controller one by one.
  TShapeList source(nullptr, "en");
  shapes::fillRandomDocument(source, 99, 160, 80.0f);
  doc().copyLayersFrom(source);
  std::vector<std::unique_ptr<TPW_Path>> pending;
  while (source.Count()) pending.push_back(source.extract(0));
  std::reverse(pending.begin(), pending.end());

  std::mt19937 rng(5);
  std::vector<TPW_Path*> touched;
  TIntersections expected;
  int adds = 0, changes = 0, deletes = 0;
  for (int step = 0; step < 260 && (!pending.empty() || doc().Count()); ++step) {
    const unsigned r = rng() % 100;
    if ((r < 55 || doc().Count() < 5) && !pending.empty()) {
      auto s = std::move(pending.back());
      pending.pop_back();
      const int layer = s->FLayerID;
      TPW_Path* p = frm.addShapeToDocument(std::move(s), layer);
      touched.push_back(p);
      ++adds;
    } else if (r < 85 && doc().Count()) {
      TPW_Path* p = doc()[rng() % doc().Count()];
      moveShape(*p, float(rng() % 7) - 3.0f, float(rng() % 7) - 3.0f);
      frm.shapeChanged(p);
      std::erase(touched, p);
      touched.push_back(p);
      ++changes;
    } else if (doc().Count()) {
      TPW_Path* p = doc()[rng() % doc().Count()];
      std::erase(touched, p);
      frm.deleteShape(p);
      ++deletes;
    }
    expectedList(doc(), touched, expected);
    SCOPED_TRACE(step);
    expectSameList(crossings(), expected);
    if (HasFailure()) return;
  }
  EXPECT_GT(adds, 100);
  EXPECT_GT(changes, 30);
  EXPECT_GT(deletes, 10);
  EXPECT_GT(crossings().Count(), 20u);
}

TEST_F(TDocumentFixture, DeletingAShapeDropsItsCrossingsOnly) {
  TPW_Path* a = frm.addShapeToDocument(line(TPointF(0, 5), TPointF(20, 5), 0), 0);
  TPW_Path* b = frm.addShapeToDocument(line(TPointF(5, 0), TPointF(5, 10), 0), 0);
  TPW_Path* c = frm.addShapeToDocument(line(TPointF(10, 0), TPointF(10, 10), 0), 0);
  ASSERT_EQ(crossings().Count(), 2u);
  frm.deleteShape(b);
  ASSERT_EQ(crossings().Count(), 1u);
  EXPECT_EQ(crossings()[0]->FPath1, c);
  EXPECT_EQ(crossings()[0]->FPath2, a);
  EXPECT_EQ(doc().Count(), 2u);
  // A shape that is not in the document is left alone.
  auto stray = line(TPointF(0, 0), TPointF(1, 1));
  frm.deleteShape(stray.get());
  frm.deleteShape(nullptr);
  EXPECT_EQ(doc().Count(), 2u);
  EXPECT_EQ(crossings().Count(), 1u);
}

TEST_F(TDocumentFixture, NewShapesGetFreeIdentifiers) {
  TPW_Path* a = frm.addShapeToDocument(line(TPointF(0, 0), TPointF(1, 0), 0), 0);
  EXPECT_EQ(a->FID, 1);
  TPW_Path* b = frm.addShapeToDocument(line(TPointF(0, 1), TPointF(1, 1), 1), 0);  // taken
  EXPECT_EQ(b->FID, 2);
  TPW_Path* c = frm.addShapeToDocument(line(TPointF(0, 2), TPointF(1, 2), 40), 0);  // free
  EXPECT_EQ(c->FID, 40);
  auto copy = c->createCopy();
  TPW_Path* d = frm.addShapeToDocument(std::move(copy), 0);
  EXPECT_EQ(d->FID, 3);
  EXPECT_EQ(frm.addShapeToDocument(nullptr, 0), nullptr);
}

TEST_F(TDocumentFixture, HeldCrossingsAreGatheredWhenTheDragEnds) {
  TPW_Path* a = frm.addShapeToDocument(line(TPointF(0, 5), TPointF(20, 5), 0), 0);
  TPW_Path* b = frm.addShapeToDocument(line(TPointF(5, 0), TPointF(5, 10), 0), 0);
  ASSERT_EQ(crossings().Count(), 1u);
  frm.FHoldCrossings = true;
  moveShape(*b, 5, 0);
  frm.shapeChanged(b);
  EXPECT_EQ(crossings().Count(), 0u);
  frm.FHoldCrossings = false;
  frm.shapeChanged(b);
  ASSERT_EQ(crossings().Count(), 1u);
  EXPECT_NEAR(crossings()[0]->FPoint.x, 10, 1e-5);
  EXPECT_EQ(crossings()[0]->FPath2, a);
}

TEST_F(TDocumentFixture, AddingManyAtOnceEqualsAddingOneByOne) {
  TShapeList source(nullptr, "en");
  shapes::fillRandomDocument(source, 21, 200);
  doc().copyLayersFrom(source);
  TfrmPelw other;
  other.PathList = std::make_unique<TShapeList>(nullptr, "en");
  other.FIntersections = std::make_unique<TIntersections>();
  other.PathList->copyLayersFrom(source);
  std::vector<std::unique_ptr<TPW_Path>> batch;
  for (const auto& s : source) {
    batch.push_back(s->createCopy());
    auto single = s->createCopy();
    const int layer = single->FLayerID;
    other.addShapeToDocument(std::move(single), layer);
  }
  frm.addShapesToDocument(std::move(batch), TfrmPelw::kOwnLayer);
  ASSERT_EQ(doc().Count(), other.PathList->Count());
  ASSERT_EQ(crossings().Count(), other.FIntersections->Count());
  EXPECT_GT(crossings().Count(), 30u);
  for (size_t i = 0; i < crossings().Count(); ++i) {
    EXPECT_EQ(doc().indexOf(crossings()[i]->FPath1),
              other.PathList->indexOf((*other.FIntersections)[i]->FPath1));
    EXPECT_EQ(doc().indexOf(crossings()[i]->FPath2),
              other.PathList->indexOf((*other.FIntersections)[i]->FPath2));
    EXPECT_TRUE(crossings()[i]->FPoint.identical((*other.FIntersections)[i]->FPoint));
  }
  // A pasted run joins one layer.
  std::vector<std::unique_ptr<TPW_Path>> paste;
  paste.push_back(line(TPointF(0, 0), TPointF(5, 5), 0));
  frm.addShapesToDocument(std::move(paste), 2);
  EXPECT_EQ(doc()[doc().Count() - 1]->FLayerID, 2);
}

TEST_F(TDocumentFixture, IndependentLayerTogglesRecalculateAndMarkTheDocument) {
  doc().addLayer(-1, "", true);
  frm.addShapeToDocument(line(TPointF(0, 5), TPointF(20, 5), 0), 0);
  frm.addShapeToDocument(line(TPointF(5, 0), TPointF(5, 10), 0), 1);
  ASSERT_EQ(crossings().Count(), 1u);
  EXPECT_FALSE(doc().FIsChanged);
  frm.setLayerIndependent(1, true);
  EXPECT_EQ(crossings().Count(), 0u);
  EXPECT_TRUE(doc().FIsChanged);
  EXPECT_GT(doc().FLastChangeTime, 0.0);
  frm.setLayerIndependent(1, false);
  EXPECT_EQ(crossings().Count(), 1u);
  TIntersections fresh;
  recalcAllIntersections(doc(), fresh);
  expectSameList(crossings(), fresh);
}
