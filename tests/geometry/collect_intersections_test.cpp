#include <gtest/gtest.h>

#include "document/shape_list.h"
#include "geometry/collect_intersections.h"
#include "geometry/spatial_index.h"
#include "shape_factory.h"

using shapes::circle;
using shapes::line;

namespace {

TPW_Path* addTo(TShapeList& doc, std::unique_ptr<TPW_Path> s, int layer = 0) {
  TPW_Path* p = s.get();
  s->updateId(doc.getNextID());
  doc.add(std::move(s), layer);
  return p;
}

}  // namespace

TEST(BoxGrid, AnswersEveryBoxThatComesNearEachOnce) {
  std::mt19937 rng(7);
  std::uniform_real_distribution<double> pos(0, 500), size(0, 8);
  std::vector<TGridBox> boxes;
  for (int i = 0; i < 2000; ++i) {
    const double x = pos(rng), y = pos(rng);
    boxes.push_back(TGridBox{x, y, x + size(rng), y + size(rng)});
  }
  boxes.push_back(TGridBox{0, 250, 500, 250.5});  // across everything
  boxes.push_back(TGridBox{NAN, 0, 1, 1});         // never found
  const TBoxGrid grid(boxes);
  std::vector<int> out;
  for (int q = 0; q < 300; ++q) {
    const double x = pos(rng) - 20, y = pos(rng) - 20;
    const TGridBox query{x, y, x + size(rng) * 3, y + size(rng)};
    grid.query(query, 0.1, out);
    std::sort(out.begin(), out.end());
    ASSERT_EQ(std::adjacent_find(out.begin(), out.end()), out.end());
    for (size_t i = 0; i < boxes.size(); ++i)
      if (gridBoxesMeet(query, boxes[i], 0.1))
        ASSERT_TRUE(std::binary_search(out.begin(), out.end(), int(i))) << q << " " << i;
    EXPECT_FALSE(std::binary_search(out.begin(), out.end(), int(boxes.size() - 1)));
  }
}

TEST(CollectIntersections, ListOrderAndLayerRule) {
  TShapeList doc(nullptr, "en");
  doc.addLayer(-1, "", true);
  doc.addLayer(-1, "", true);
  TPW_Path* base = addTo(doc, line(TPointF(0, 5), TPointF(20, 5)));
  TPW_Path* onOne = addTo(doc, line(TPointF(2, 0), TPointF(2, 10)), 1);
  addTo(doc, line(TPointF(4, 0), TPointF(4, 10)), 2);
  addTo(doc, circle(TPointF(15, 5), 4));
  TIntersections list;
  collectIntersections(doc, list, base);
  ASSERT_EQ(list.Count(), 4u);  // in list order: layer 1, layer 2, the circle twice
  EXPECT_EQ(list[0]->FPath1, base);
  EXPECT_EQ(list[0]->FPath2, onOne);
  collectIntersections(doc, list, onOne);  // the same points again: Add refuses them
  EXPECT_EQ(list.Count(), 4u);

  doc.SetIsIndependentLayer(1, true);
  doc.SetlayerVisible(2, false);
  list.Clear();
  collectIntersections(doc, list, base);
  EXPECT_EQ(list.Count(), 2u);  // only the circle
  TPW_Path* alsoOnOne = addTo(doc, line(TPointF(0, 8), TPointF(20, 8)), 1);
  list.Clear();
  collectIntersections(doc, list, alsoOnOne);
  ASSERT_EQ(list.Count(), 1u);  // its own layer only
  EXPECT_EQ(list[0]->FPath2, onOne);
  list.Clear();
  collectIntersections(doc, list, addTo(doc, line(TPointF(0, 9), TPointF(20, 9)), 2));
  EXPECT_EQ(list.Count(), 0u);  // on a hidden layer
  base->FShapeType = ShapeType::Hole;
  collectIntersections(doc, list, base);
  EXPECT_EQ(list.Count(), 0u);
}

TEST(FullRecalculation, RoundShapesFarApartAreNotComparedAndTheListIsEmptiedFirst) {
  TShapeList doc(nullptr, "en");
  // Arcs of radius 10 with centres 15 apart cross, but 15 exceeds 1.1 times
  // the width (radius) of each: the recalculation skips them.
  addTo(doc, shapes::arcAt(TPointF(0, 0), 10, -90, 180));
  addTo(doc, shapes::arcAt(TPointF(15, 0), 10, 90, 180));
  TIntersections list;
  list.Add(std::make_unique<TIntersection>(TPointF(1, 1), nullptr, nullptr));
  recalcAllIntersections(doc, list);
  EXPECT_EQ(list.Count(), 0u);
  // Circles keep the diameter as width, so the same centres are compared.
  TShapeList circles(nullptr, "en");
  addTo(circles, circle(TPointF(0, 0), 20));
  addTo(circles, circle(TPointF(15, 0), 20));
  addTo(circles, shapes::dot(TPointF(7.5f, 0), 1));
  recalcAllIntersections(circles, list);
  EXPECT_EQ(list.Count(), 2u);
}

namespace {

void expectSameList(const TIntersections& a, const TIntersections& b) {
  ASSERT_EQ(a.Count(), b.Count());
  for (size_t i = 0; i < a.Count(); ++i) {
    ASSERT_EQ(a[i]->FPath1, b[i]->FPath1) << i;
    ASSERT_EQ(a[i]->FPath2, b[i]->FPath2) << i;
    ASSERT_TRUE(a[i]->FPoint.identical(b[i]->FPoint)) << i;
    ASSERT_EQ(a[i]->FIsCrossing, b[i]->FIsCrossing) << i;
  }
}

}  // namespace

// The grid must find exactly what walking every pair finds, in the same
// order, on documents with all the awkward joints a drawing has.
TEST(IndexedSearch, GridAgreesWithTheAllPairsWalk) {
  for (unsigned seed : {1u, 2u, 3u, 4u}) {
    SCOPED_TRACE(seed);
    TShapeList doc(nullptr, "en");
    shapes::fillRandomDocument(doc, seed, 300, seed % 2 ? 120.0f : 400.0f);
    TIntersections grid, plain;
    recalcAllIntersections(doc, grid, TPairSearch::Grid);
    recalcAllIntersections(doc, plain, TPairSearch::AllPairs);
    EXPECT_GT(plain.Count(), 50u);
    expectSameList(grid, plain);
    TIntersections gridGather, plainGather;
    const size_t first = seed * 40;
    collectIntersectionsFrom(doc, gridGather, first, TPairSearch::Grid);
    collectIntersectionsFrom(doc, plainGather, first, TPairSearch::AllPairs);
    EXPECT_GT(plainGather.Count(), 50u);
    expectSameList(gridGather, plainGather);
  }
}

TEST(IndexedSearch, ArcEndOffItsDrawnPathStillMeetsANearbyEnd) {
  // The start angle rounds the cosine 0.9999969 to 1: the drawn arc starts
  // at (40, 0), 0.1 away from the stored start, outside the arc's box.
  TShapeList doc(nullptr, "en");
  TPW_Path* a = addTo(doc, shapes::arc(TPointF(0, 0), 40, TPointF(39.999875f, 0.1f), -90));
  ASSERT_LT(a->getBoundary(false).Bottom, 0.001f);
  addTo(doc, line(TPointF(39.999875f, 5), TPointF(39.999875f, 0.16f)));
  TIntersections grid, plain;
  recalcAllIntersections(doc, grid, TPairSearch::Grid);
  recalcAllIntersections(doc, plain, TPairSearch::AllPairs);
  ASSERT_EQ(plain.Count(), 1u);
  expectSameList(grid, plain);
}
