#include <gtest/gtest.h>

#include "document/shape_list.h"
#include "geometry/collect_intersections.h"
#include "geometry/intersect_pair.h"
#include "geometry/spatial_index.h"
#include "shape_factory.h"

using shapes::circle;
using shapes::line;

namespace {

// Entry by entry: same shapes, same point to the bit, same flag.
void expectSameList(const TIntersections& a, const TIntersections& b) {
  ASSERT_EQ(a.Count(), b.Count());
  for (size_t i = 0; i < a.Count(); ++i) {
    SCOPED_TRACE(i);
    EXPECT_EQ(a[i]->FPath1, b[i]->FPath1);
    EXPECT_EQ(a[i]->FPath2, b[i]->FPath2);
    EXPECT_TRUE(a[i]->FPoint.identical(b[i]->FPoint));
    EXPECT_EQ(a[i]->FIsCrossing, b[i]->FIsCrossing);
    EXPECT_EQ(a[i]->FPathID1, b[i]->FPathID1);
    EXPECT_EQ(a[i]->FPathID2, b[i]->FPathID2);
  }
}

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
  boxes.push_back(TGridBox{0, 250, 500, 250.5});  // a long one across everything
  boxes.push_back(TGridBox{10, 10, 10, 10});     // a point
  boxes.push_back(TGridBox{NAN, 0, 1, 1});       // never found
  const TBoxGrid grid(boxes);
  std::vector<int> out;
  for (int q = 0; q < 300; ++q) {
    const double x = pos(rng) - 20, y = pos(rng) - 20;
    const TGridBox query{x, y, x + size(rng) * 3, y + size(rng)};
    grid.query(query, 0.1, out);
    std::vector<int> sorted = out;
    std::sort(sorted.begin(), sorted.end());
    ASSERT_EQ(std::adjacent_find(sorted.begin(), sorted.end()), sorted.end());
    for (size_t i = 0; i < boxes.size(); ++i)
      if (gridBoxesMeet(query, boxes[i], 0.1))
        ASSERT_TRUE(std::binary_search(sorted.begin(), sorted.end(), int(i))) << q << " " << i;
    EXPECT_FALSE(std::binary_search(sorted.begin(), sorted.end(), int(boxes.size() - 1)));
  }
  // Just 0.1 from the point box still finds it.
  grid.query(TGridBox{10.1, 10.1, 11, 11}, 0.1, out);
  EXPECT_NE(std::find(out.begin(), out.end(), int(boxes.size() - 2)), out.end());
}

TEST(CollectIntersections, ListOrderAndFilteringAdd) {
  TShapeList doc(nullptr, "en");
  TPW_Path* a = addTo(doc, line(TPointF(0, 5), TPointF(20, 5)));
  TPW_Path* b = addTo(doc, line(TPointF(5, 0), TPointF(5, 10)));
  TPW_Path* c = addTo(doc, circle(TPointF(15, 5), 4));
  TPW_Path* d = addTo(doc, line(TPointF(10, 0), TPointF(10, 10)));
  TIntersections list;
  collectIntersections(doc, list, d);
  ASSERT_EQ(list.Count(), 1u);  // a; b is parallel, c is too far
  EXPECT_EQ(list[0]->FPath1, d);
  EXPECT_EQ(list[0]->FPath2, a);
  collectIntersections(doc, list, a);
  ASSERT_EQ(list.Count(), 4u);  // b, then c twice; d again is rejected by Add
  EXPECT_EQ(list[1]->FPath2, b);
  EXPECT_EQ(list[2]->FPath2, c);
  EXPECT_EQ(list[3]->FPath2, c);
}

TEST(CollectIntersections, HiddenAndIndependentLayers) {
  TShapeList doc(nullptr, "en");
  doc.addLayer(-1, "", true);  // 1
  doc.addLayer(-1, "", true);  // 2
  TPW_Path* base = addTo(doc, line(TPointF(0, 5), TPointF(20, 5)), 0);
  addTo(doc, line(TPointF(2, 0), TPointF(2, 10)), 1);
  addTo(doc, line(TPointF(4, 0), TPointF(4, 10)), 2);
  TPW_Path* sameIndependent = addTo(doc, line(TPointF(6, 0), TPointF(6, 10)), 1);
  TIntersections list;
  collectIntersections(doc, list, base);
  EXPECT_EQ(list.Count(), 3u);

  doc.SetIsIndependentLayer(1, true);
  doc.SetlayerVisible(2, false);
  list.Clear();
  collectIntersections(doc, list, base);
  EXPECT_EQ(list.Count(), 0u);
  // On the independent layer the shapes still meet each other.
  TPW_Path* cross = addTo(doc, line(TPointF(0, 8), TPointF(20, 8)), 1);
  collectIntersections(doc, list, cross);
  ASSERT_EQ(list.Count(), 2u);
  EXPECT_EQ(list[1]->FPath2, sameIndependent);
  // A shape on a hidden layer gathers nothing at all.
  list.Clear();
  TPW_Path* hidden = addTo(doc, line(TPointF(0, 9), TPointF(20, 9)), 2);
  collectIntersections(doc, list, hidden);
  EXPECT_EQ(list.Count(), 0u);
}

TEST(CollectIntersections, ShapesThatNeverMeetGatherNothing) {
  TShapeList doc(nullptr, "en");
  addTo(doc, line(TPointF(0, 5), TPointF(20, 5)));
  TPW_Path* l = addTo(doc, line(TPointF(5, 0), TPointF(5, 10)));
  TIntersections list;
  l->FShapeType = ShapeType::Hole;
  collectIntersections(doc, list, l);
  l->FShapeType = ShapeType::Line;
  l->FIsDimensionLine = true;
  collectIntersections(doc, list, l);
  collectIntersections(doc, list, nullptr);
  EXPECT_EQ(list.Count(), 0u);
}

TEST(FullRecalculation, RoundShapesFarApartAreNotCompared) {
  TShapeList doc(nullptr, "en");
  // Two arcs of radius 10 whose centres are 15 apart cross, but the centres
  // lie further than 1.1 times the width (radius) of each: skipped.
  addTo(doc, shapes::arcAt(TPointF(0, 0), 10, -90, 180));
  addTo(doc, shapes::arcAt(TPointF(15, 0), 10, 90, 180));
  TIntersections list;
  recalcAllIntersections(doc, list);
  EXPECT_EQ(list.Count(), 0u);
  // Circles store the diameter as width: the same centres are compared.
  TShapeList circles(nullptr, "en");
  addTo(circles, circle(TPointF(0, 0), 20));
  addTo(circles, circle(TPointF(15, 0), 20));
  recalcAllIntersections(circles, list);
  EXPECT_EQ(list.Count(), 2u);
}

TEST(FullRecalculation, EmptiesTheListAndLeavesDotsAndTextOut) {
  TShapeList doc(nullptr, "en");
  addTo(doc, line(TPointF(0, 0), TPointF(10, 10)));
  addTo(doc, line(TPointF(0, 10), TPointF(10, 0)));
  addTo(doc, shapes::dot(TPointF(5, 5), 1));
  TIntersections list;
  list.Add(std::make_unique<TIntersection>(TPointF(1, 1), nullptr, nullptr));
  recalcAllIntersections(doc, list);
  ASSERT_EQ(list.Count(), 1u);
  EXPECT_TRUE(list[0]->FIsCrossing);
  EXPECT_EQ(list[0]->FPath1, doc[0]);
}

// The grid must find exactly what walking every pair finds, in the same
// order, on documents with all the awkward joints a drawing has.
TEST(IndexedSearch, FullRecalculationMatchesTheAllPairsWalk) {
  for (unsigned seed : {1u, 2u, 3u, 4u, 5u, 6u}) {
    SCOPED_TRACE(seed);
    TShapeList doc(nullptr, "en");
    shapes::fillRandomDocument(doc, seed, 300, seed % 2 ? 120.0f : 400.0f);
    TIntersections grid, plain;
    recalcAllIntersections(doc, grid, TPairSearch::Grid);
    recalcAllIntersections(doc, plain, TPairSearch::AllPairs);
    EXPECT_GT(plain.Count(), 50u);
    expectSameList(grid, plain);
  }
}

TEST(IndexedSearch, BatchGatheringMatchesAddingOneByOne) {
  for (unsigned seed : {11u, 12u, 13u, 14u}) {
    SCOPED_TRACE(seed);
    TShapeList doc(nullptr, "en");
    shapes::fillRandomDocument(doc, seed, 300, seed % 2 ? 120.0f : 400.0f);
    TIntersections grid, plain, oneByOne;
    const size_t first = seed % 3 == 0 ? 0 : 120;
    // The first shapes are in already, with their crossings.
    collectIntersectionsFrom(doc, grid, 0, TPairSearch::Grid);
    collectIntersectionsFrom(doc, plain, 0, TPairSearch::AllPairs);
    expectSameList(grid, plain);
    EXPECT_GT(plain.Count(), 50u);

    // Reference: a growing list, each shape collected as it arrives.
    TShapeList growing(nullptr, "en");
    growing.copyLayersFrom(doc);
    std::vector<std::unique_ptr<TPW_Path>> taken;
    while (doc.Count()) taken.push_back(doc.extract(0));
    for (auto& s : taken) {
      TPW_Path* p = s.get();
      growing.add(std::move(s), p->FLayerID);
      if (growing.Count() > first) collectIntersections(growing, oneByOne, p);
    }
    TIntersections batch;
    collectIntersectionsFrom(growing, batch, first);
    expectSameList(batch, oneByOne);
  }
}
