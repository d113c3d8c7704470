// Undo and redo through the controller: sequences, the wheel flush, the
// changed flag, what a restored state holds, and the sharing of unchanged
// shapes between snapshots.
#include <gtest/gtest.h>

#include "program_fixture.h"

namespace {

class Undo : public ::testing::Test {
 protected:
  TProgram program;
  TfrmPelw* f = nullptr;
  void SetUp() override { f = &program.start(); }
  TPW_Path* add(TPointF a, TPointF b) {
    TPW_Path* s = f->addShapeToDocument(makeLine(a, b), f->FActiveLayer);
    f->finishDocumentChange();
    return s;
  }
  std::vector<int> ids() {
    std::vector<int> out;
    for (const auto& s : *f->PathList) out.push_back(s->FID);
    return out;
  }
};

TEST_F(Undo, TheFirstStateCannotBeUndoneAway) {
  ASSERT_EQ(f->FUndoList.size(), 1u);
  f->actUndo();
  EXPECT_EQ(f->FUndoList.size(), 1u);
  EXPECT_FALSE(f->canUndo());
  add(TPointF(0, 0), TPointF(10, 0));
  f->actUndo();
  f->actUndo();
  EXPECT_TRUE(f->PathList->empty());
  EXPECT_EQ(f->FUndoList.size(), 1u);
  EXPECT_EQ(f->FRedoList.size(), 1u);
}

TEST_F(Undo, UndoRedoSequenceAndANewOperationClearsRedo) {
  add(TPointF(0, 0), TPointF(10, 0));
  add(TPointF(0, 5), TPointF(10, 5));
  add(TPointF(0, 9), TPointF(10, 9));
  EXPECT_EQ(ids(), (std::vector<int>{1, 2, 3}));
  f->actUndo();
  f->actUndo();
  EXPECT_EQ(ids(), std::vector<int>{1});
  f->actRedo();
  EXPECT_EQ(ids(), (std::vector<int>{1, 2}));
  EXPECT_TRUE(f->canRedo());
  add(TPointF(0, 20), TPointF(10, 20));
  EXPECT_FALSE(f->canRedo());
  f->actRedo();  // nothing left to redo
  EXPECT_EQ(ids(), (std::vector<int>{1, 2, 4}));
}

TEST_F(Undo, RestoredStateKeepsIdsLayersCrossingsAndSelectionRules) {
  TPW_Path* a = add(TPointF(0, 0), TPointF(10, 10));
  f->PathList->addLayer(-1, "", true);
  f->PathList->SetLayerName(1, "Lining");
  TPW_Path* b = f->addShapeToDocument(makeLine(TPointF(0, 10), TPointF(10, 0)), 1);
  a->FSelected = true;
  b->FSelected = true;
  f->finishDocumentChange();
  ASSERT_EQ(f->FIntersections->Count(), 1u);
  f->deleteShape(b);
  f->PathList->deleteLayer(1);
  f->finishDocumentChange();
  EXPECT_EQ(f->FIntersections->Count(), 0u);

  f->actUndo();
  ASSERT_EQ(f->PathList->Count(), 2u);
  EXPECT_EQ(ids(), (std::vector<int>{1, 2}));
  EXPECT_EQ(f->PathList->GetLayerName(1), "Lining");
  EXPECT_EQ((*f->PathList)[1]->FLayerID, 1);
  // Undo unselects; the crossing points at the rebuilt shapes.
  EXPECT_FALSE((*f->PathList)[0]->FSelected);
  EXPECT_FALSE((*f->PathList)[1]->FSelected);
  ASSERT_EQ(f->FIntersections->Count(), 1u);
  const TIntersection* x = (*f->FIntersections)[0];
  EXPECT_EQ(x->FPath1, (*f->PathList)[1]);
  EXPECT_EQ(x->FPath2, (*f->PathList)[0]);
  EXPECT_NEAR(x->FPoint.x, 5, 1e-4);

  f->actUndo();
  f->actRedo();  // redo keeps the selection flags of the snapshot
  EXPECT_TRUE((*f->PathList)[0]->FSelected);
  EXPECT_TRUE((*f->PathList)[1]->FSelected);
}

TEST_F(Undo, WheelRunIsFlushedAsOneLevelBeforeUndo) {
  TPW_Path* s = add(TPointF(0, 0), TPointF(10, 0));
  // Three wheel steps move the shape without snapshots of their own.
  for (int i = 1; i <= 3; ++i) {
    s->drawLinePath(TPointF(0, float(i)), TPointF(10, float(i)));
    f->FRequireSnapshotRotate += 1;
  }
  const size_t levels = f->FUndoList.size();
  f->actUndo();
  // The flush stored the turned state, then undo returned to before it.
  EXPECT_EQ(f->FUndoList.size(), levels);
  EXPECT_EQ(f->FRequireSnapshotRotate, 0);
  EXPECT_EQ((*f->PathList)[0]->FStartPt, TPointF(0, 0));
  f->actRedo();
  EXPECT_EQ((*f->PathList)[0]->FStartPt, TPointF(0, 3));
}

TEST_F(Undo, ChangedFlagFollowsTheSnapshot) {
  add(TPointF(0, 0), TPointF(10, 0));
  add(TPointF(0, 5), TPointF(10, 5));
  const std::string file = program.file("p.pwc");
  f->FFilename = file;
  ASSERT_TRUE(f->saveProject());
  EXPECT_FALSE(f->PathList->FIsChanged);
  // Undo after a save counts as a change, even back to the saved state.
  f->actUndo();
  EXPECT_TRUE(f->PathList->FIsChanged);
  f->PathList->FIsChanged = false;
  f->actRedo();  // redo leaves the flag alone
  EXPECT_FALSE(f->PathList->FIsChanged);
}

TEST_F(Undo, LinesAreNormalisedBeforeEachSnapshot) {
  TPW_Path* s = f->addShapeToDocument(makeLine(TPointF(0.123456f, 0), TPointF(10.000049f, 3.33333f)), 0);
  f->finishDocumentChange();
  EXPECT_EQ(s->FStartPt, TPointF(0.1235f, 0));
  EXPECT_EQ(s->FEndPt, TPointF(10, 3.3333f));
  EXPECT_EQ(s->FData.getData(), "M0.123499996960163,0 L10,3.33330011367798 ");
}

TEST_F(Undo, SnapshotsShareTheShapesThatDidNotChange) {
  for (int i = 0; i < 300; ++i) f->addShapeToDocument(makeLine(TPointF(0, float(i)), TPointF(10, float(i))), 0);
  f->finishDocumentChange();
  TPW_Path* moved = (*f->PathList)[150];
  f->shapeChanged(moved);
  moved->drawLinePath(TPointF(1, 150), TPointF(11, 150));
  f->finishDocumentChange();
  const auto before = f->FUndoList[f->FUndoList.size() - 2]->shapes();
  const auto after = f->FUndoList.back()->shapes();
  ASSERT_EQ(before.size(), 300u);
  ASSERT_EQ(after.size(), 300u);
  size_t shared = 0;
  for (size_t i = 0; i < 300; ++i) shared += before[i] == after[i];
  EXPECT_EQ(shared, 299u);
  EXPECT_NE(before[150], after[150]);
  EXPECT_EQ(after[150]->FStartPt, TPointF(1, 150));
  // Most runs of the spine are the very same objects.
  const auto& r1 = f->FUndoList[f->FUndoList.size() - 2]->FShapeRuns;
  const auto& r2 = f->FUndoList.back()->FShapeRuns;
  size_t sameRuns = 0;
  for (const auto& a : r2)
    for (const auto& b : r1) sameRuns += a == b;
  EXPECT_GE(sameRuns + 2, r2.size());
  // After an undo the restored shapes are linked again: the next snapshot
  // shares everything that stayed.
  f->actUndo();
  f->finishDocumentChange();
  const auto again = f->FUndoList.back()->shapes();
  size_t reused = 0;
  for (size_t i = 0; i < 300; ++i) reused += again[i] == before[i];
  EXPECT_EQ(reused, 300u);
}

TEST_F(Undo, EveryFieldACopyKeepsCountsAsAChange) {
  TPW_Path* s = add(TPointF(0, 0), TPointF(10, 0));
  auto copy = s->createCopy();
  EXPECT_TRUE(sameForUndo(*s, *copy));
  const std::vector<std::function<void(TPW_Path&)>> edits = {
      [](TPW_Path& p) { p.FColor = 1; },          [](TPW_Path& p) { p.FSelected = true; },
      [](TPW_Path& p) { p.FName = "x"; },         [](TPW_Path& p) { p.FGroupID = 3; },
      [](TPW_Path& p) { p.FThreadColor = 5; },    [](TPW_Path& p) { p.FTextFill = false; },
      [](TPW_Path& p) { p.FCatalogScale.y = 2; }, [](TPW_Path& p) { p.FMandalaRotation = 1; },
      [](TPW_Path& p) { p.FLayerID = 4; },        [](TPW_Path& p) { p.FData.Translate(1, 0); },
      [](TPW_Path& p) { p.FNextStitchID = 9; },   [](TPW_Path& p) { p.FOpacity = 0.7f; },
      [](TPW_Path& p) { p.FWidth = -0.0f; },      [](TPW_Path& p) { p.FIsSymmetryTarget = true; }};
  for (const auto& edit : edits) {
    auto c = s->createCopy();
    edit(*c);
    EXPECT_FALSE(sameForUndo(*s, *c));
  }
  // Scratch and cache fields are not part of a snapshot.
  copy->FTemp_HasStichingHole = true;
  copy->FArrowLen = 5;
  copy->FIsManuallyClicked = true;
  EXPECT_TRUE(sameForUndo(*s, *copy));
}

}  // namespace
