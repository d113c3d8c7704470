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
    ASSERT_EQ(a[i]->FPath1, b[i]->FPath1) << i;
    ASSERT_EQ(a[i]->FPath2, b[i]->FPath2) << i;
    ASSERT_TRUE(a[i]->FPoint.identical(b[i]->FPoint)) << i;
    ASSERT_EQ(a[i]->FIsCrossing, b[i]->FIsCrossing) << i;
  }
}

// Moves a shape by rebuilding it the way the tools do.
void moveShape(TPW_Path& s, float dx, float dy) {
  const TPointF d(dx, dy);
  if (s.FShapeType == ShapeType::Line) s.drawLinePath(s.FStartPt + d, s.FEndPt + d);
  else if (s.FShapeType == ShapeType::Arc)
    s.drawArcPath(s.FCenter + d, TPointF(s.FWidth, s.FHeight), s.FStartPt + d, s.FEndPt + d, s.FSweepAngle);
  else if (s.FShapeType == ShapeType::Ellipse) s.drawEllipsePath(s.FCenter + d, s.FWidth, s.FHeight);
  else if (s.FShapeType == ShapeType::Bezier)
    s.drawBezierPath(s.FStartPt + d, s.FBezierCp1 + d, s.FBezierCp2 + d, s.FEndPt + d);
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
  }
  EXPECT_GT(adds, 100);
  EXPECT_GT(changes, 30);
  EXPECT_GT(deletes, 10);
  EXPECT_GT(crossings().Count(), 20u);
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
  // Deleting a shape that is not in the document changes nothing.
  auto stray = line(TPointF(0, 0), TPointF(1, 1));
  frm.deleteShape(stray.get());
  EXPECT_EQ(doc().Count(), 4u);
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

TEST_F(TDocumentFixture, AddingManyAtOnceGathersLikeAddingOneByOne) {
  doc().addLayer(-1, "", true);
  frm.addShapeToDocument(line(TPointF(0, 5), TPointF(20, 5), 0), 0);
  std::vector<std::unique_ptr<TPW_Path>> run;
  run.push_back(line(TPointF(5, 0), TPointF(5, 10), 0));
  run.push_back(line(TPointF(0, 0), TPointF(10, 10), 0));
  run.back()->FLayerID = 1;
  frm.addShapesToDocument(std::move(run), TfrmPelw::kOwnLayer);
  EXPECT_EQ(doc()[2]->FLayerID, 1);
  std::vector<TPW_Path*> order{doc()[0], doc()[1], doc()[2]};
  TIntersections expected;
  expectedList(doc(), order, expected);
  EXPECT_EQ(expected.Count(), 3u);
  expectSameList(crossings(), expected);
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
}
