// Rebuilding the sewing order of selected holes through the controller's
// command, as a user runs it with the pointer somewhere on the canvas.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>

#include "../app/program_fixture.h"
#include "stitching/pricking_iron.h"
#include "stitching/stitching_order.h"

namespace {

class StitchingOrder : public ::testing::Test {
 protected:
  TProgram program;
  TfrmPelw* form = nullptr;
  TPrickingIron iron;
  void SetUp() override {
    form = &program.start();
    iron.FBladeType = "D";
    iron.FPitch = 4;
    iron.FWidth = 0.8f;
    iron.FHeight = 2.2f;
  }
  TPW_Path* hole(float x, float y, bool selected = true) {
    auto h = std::make_unique<TPW_Path>(36, 0xFFFFFFFF, 1, TStrokeDash::Solid, 0);
    h->createStichPath(TPointF(x, y), false, &iron, 0, 0);
    h->FSelected = selected;
    h->FPrevStitchID = h->FNextStitchID = 99999;  // lost links
    return form->addShapeToDocument(std::move(h), 0);
  }
  void fixWithPointerAt(float x, float y) {
    form->FLastMousePos = form->RealToScreen(TPointF(x, y));
    form->actFixStitchingOrder();
  }
  // The holes' ids along the chain from `first`.
  std::vector<int> chainFrom(const TPW_Path* first) {
    std::vector<int> ids;
    for (const TPW_Path* h = first; h && ids.size() <= form->PathList->Count(); h = form->PathList->findByID(h->FNextStitchID)) {
      ids.push_back(h->FID);
      if (h->FNextStitchID == first->FID) break;
    }
    return ids;
  }
};

TEST_F(StitchingOrder, OneAndTwoHolesStayOpen) {
  TPW_Path* a = hole(0, 0);
  fixWithPointerAt(50, 50);
  EXPECT_EQ(a->FPrevStitchID, -1);
  EXPECT_EQ(a->FNextStitchID, -1);

  TPW_Path* b = hole(4, 0);
  fixWithPointerAt(5, 0);  // b is nearer: the tour starts there
  EXPECT_EQ(b->FPrevStitchID, -1);
  EXPECT_EQ(b->FNextStitchID, a->FID);
  EXPECT_EQ(a->FPrevStitchID, b->FID);
  EXPECT_EQ(a->FNextStitchID, -1);
}

TEST_F(StitchingOrder, ATriangleClosesAndARowAlongALineStaysOpen) {
  TPW_Path* a = hole(0, 0);
  TPW_Path* b = hole(4, 0);
  TPW_Path* c = hole(2, 3);
  fixWithPointerAt(0, 0);
  // From a the nearest is c (3.6 mm), then b; b leads back to a.
  EXPECT_EQ(chainFrom(a), (std::vector<int>{a->FID, c->FID, b->FID}));
  EXPECT_EQ(b->FNextStitchID, a->FID);
  EXPECT_EQ(a->FPrevStitchID, b->FID);
  for (TPW_Path* h : {a, b, c}) h->FSelected = false;

  // Twenty holes along a line, listed out of order: the chain runs along
  // the line from the end nearest the pointer, and does not close.
  std::vector<TPW_Path*> row;
  std::vector<int> xs(20);
  for (int i = 0; i < 20; ++i) xs[i] = i;
  std::shuffle(xs.begin(), xs.end(), std::mt19937(7));
  for (int x : xs) row.push_back(hole(100 + 4.0f * x, 50));
  std::sort(row.begin(), row.end(), [](auto* p, auto* q) { return p->FStartPt.x < q->FStartPt.x; });
  std::vector<int> along;
  for (auto* h : row) along.push_back(h->FID);

  fixWithPointerAt(90, 50);
  EXPECT_EQ(chainFrom(row.front()), along);
  EXPECT_EQ(row.front()->FPrevStitchID, -1);
  EXPECT_EQ(row.back()->FNextStitchID, -1);
  // The pointer near the other end turns the row round.
  fixWithPointerAt(200, 50);
  std::reverse(along.begin(), along.end());
  EXPECT_EQ(chainFrom(row.back()), along);
  EXPECT_EQ(row.back()->FPrevStitchID, -1);
  // The triangle, no longer selected, kept its links.
  EXPECT_EQ(b->FNextStitchID, a->FID);
}

TEST_F(StitchingOrder, OtherKindsAndUnselectedHolesAreLeftAloneInOneUndoStep) {
  TPW_Path* line = form->addShapeToDocument(makeLine(TPointF(0, 0), TPointF(10, 0)), 0);
  line->FSelected = true;
  TPW_Path* unselected = hole(8, 0, false);
  form->finishDocumentChange();
  const size_t steps = form->FUndoList.size();
  // Nothing but a line selected: no change, no undo step.
  fixWithPointerAt(0, 0);
  EXPECT_EQ(form->FUndoList.size(), steps);
  EXPECT_EQ(unselected->FNextStitchID, 99999);

  TPW_Path* a = hole(0, 0);
  TPW_Path* b = hole(4, 0);
  form->finishDocumentChange();
  fixWithPointerAt(0, 0);
  EXPECT_EQ(form->FUndoList.size(), steps + 2);
  EXPECT_EQ(a->FNextStitchID, b->FID);
  EXPECT_EQ(unselected->FNextStitchID, 99999);
  EXPECT_EQ(line->FNextStitchID, -1);
  form->actUndo();
  EXPECT_EQ(form->PathList->findByID(a->FID)->FNextStitchID, 99999);
}

TEST(StitchingOrderTour, ScatteredHolesEndWithNoTwoOptMoveLeft) {
  // Holes strewn at random: the tour starts at the hole nearest the start
  // point, visits each once, and no exchange of two edges shortens it.
  TShapeList list(nullptr, "en");
  std::vector<TPW_Path*> holes;
  std::mt19937 gen(3);
  std::uniform_real_distribution<float> at(0, 100);
  for (int i = 0; i < 300; ++i) {
    auto h = std::make_unique<TPW_Path>(36, 0xFFFFFFFF, 1, TStrokeDash::Solid, list.getNextID());
    h->FShapeType = ShapeType::Hole;
    h->FStartPt = TPointF(at(gen), at(gen));
    holes.push_back(h.get());
    list.add(std::move(h), 0);
  }
  const TStitchTour tour = planStitchingOrder(holes, TPointF(50, 50));
  const auto& t = tour.FOrder;
  ASSERT_EQ(t.size(), holes.size());
  EXPECT_EQ(t.front(), holes[nearestHole(TPointF(50, 50), holes)]);
  EXPECT_EQ(std::set<TPW_Path*>(t.begin(), t.end()).size(), holes.size());
  auto d = [&](size_t a, size_t b) { return holeDistance(*t[a], *t[b]); };
  for (size_t i = 0; i + 3 <= t.size(); ++i)
    for (size_t j = i + 2; j + 2 <= t.size(); ++j)
      ASSERT_GE(d(i, j) + d(i + 1, j + 1) + 0.0001, d(i, i + 1) + d(j, j + 1)) << i << " " << j;
}

}  // namespace
