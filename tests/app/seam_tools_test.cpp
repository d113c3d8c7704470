// What the seam tools call on the controller: the offset preview and its
// click, the round corner of the selection, the notch's two clicks, centre
// lines and the frame round a pattern; a change is one undo step.
#include <gtest/gtest.h>

#include "platform/recording_canvas.h"
#include "program_fixture.h"

namespace {

TPW_Path* addSelectedLine(TfrmPelw& f, TPointF a, TPointF b) {
  TPW_Path* s = f.addShapeToDocument(makeLine(a, b), 0);
  s->FSelected = true;
  return s;
}

}  // namespace

TEST(SeamTools, OffsetPreviewFollowsThePointerAndTheClickCommits) {
  TProgram p;
  TfrmPelw& f = p.start();
  addSelectedLine(f, {0, 0}, {20, 0});
  f.FSeamEdits.FSettings.FOffsetDistance = 3;
  const auto below = f.FSeamEdits.offsetOfSelection({10, 8});
  ASSERT_EQ(below.size(), 1u);
  EXPECT_EQ(below[0]->FStartPt, TPointF(0, 3));
  EXPECT_EQ(below[0]->FPalletIndex, 39);
  EXPECT_EQ(f.FSeamEdits.offsetOfSelection({10, -8})[0]->FStartPt, TPointF(0, -3));
  TRecordingCanvas canvas;
  f.FSeamEdits.paintOffsetPreview(canvas, {10, 8});
  ASSERT_EQ(canvas.FOps.size(), 1u);
  EXPECT_EQ(canvas.FOps[0].color, f.FStrokeDefs.OffsetTempColor);
  EXPECT_EQ(f.PathList->Count(), 1u);

  const size_t steps = f.FUndoList.size();
  const std::vector<int> ids = f.FSeamEdits.commitOffset({10, 8});
  ASSERT_EQ(ids.size(), 1u);
  EXPECT_EQ(f.PathList->findByID(ids[0])->FPalletIndex, f.FSelectedPalette);
  EXPECT_EQ(f.FUndoList.size(), steps + 1);
}

TEST(SeamTools, RoundCornerOfTheSelectionAndItsRefusal) {
  TProgram p;
  TfrmPelw& f = p.start();
  TPW_Path* a = addSelectedLine(f, {0, 0}, {20, 0});
  TPW_Path* b = addSelectedLine(f, {30, 5}, {30, 20});
  EXPECT_FALSE(f.FSeamEdits.tryChamferOfSelection());  // they don't meet
  ASSERT_EQ(p.dialogs.FMessages.size(), 1u);
  b->drawLinePath({20, 0}, {20, 20});
  f.shapeChanged(b);
  a->FClickedPoint = TPointF(5, 0);
  b->FClickedPoint = TPointF(20, 15);
  f.FSeamEdits.FSettings.FMentoriRadius = 4;
  const size_t steps = f.FUndoList.size();
  EXPECT_TRUE(f.FSeamEdits.tryChamferOfSelection());
  EXPECT_EQ(f.FUndoList.size(), steps + 1);
  EXPECT_EQ(a->FEndPt, TPointF(16, 0));
  EXPECT_EQ(b->FStartPt, TPointF(20, 4));
}

TEST(SeamTools, NotchTakesTwoClicksAndCutsOneStep) {
  TProgram p;
  TfrmPelw& f = p.start();
  f.addShapeToDocument(makeLine({0, 0}, {40, 0}), 0);
  f.FOptions.FNotchDepth = 2;
  f.FOptions.FNotchAngle = 90;
  EXPECT_FALSE(f.FSeamEdits.notchStep(nullptr, {20, 5}));  // off the edge
  EXPECT_TRUE(f.FSeamEdits.notchStep(nullptr, {20, 0}));
  TRecordingCanvas canvas;
  f.FSeamEdits.notchStep(&canvas, {20, 10});
  EXPECT_EQ(canvas.FOps.size(), 3u);
  const size_t steps = f.FUndoList.size();
  EXPECT_TRUE(f.FSeamEdits.notchStep(nullptr, {20, 10}));
  EXPECT_FALSE(f.FSeamEdits.notchStarted());
  EXPECT_EQ(f.PathList->Count(), 4u);
  EXPECT_EQ(f.FUndoList.size(), steps + 1);
}

TEST(SeamTools, CentreLinesAndTheFrameRoundThePattern) {
  TProgram p;
  TfrmPelw& f = p.start();
  f.FSeamEdits.FSettings.FCenterLineDivisions = 4;
  f.FSeamEdits.FSettings.FCenterLineLength = 6;
  EXPECT_EQ(f.FSeamEdits.addCenterLines({0, 0}, {40, 0}), 3);
  EXPECT_EQ(f.PathList->findByID(2)->FStartPt, TPointF(20, -3));

  p.dialogs.FInputs = {"abc", "2"};
  f.btnDrawOuterOffsetEdgeClick();  // not a number: a message, nothing drawn
  EXPECT_EQ(f.PathList->Count(), 3u);
  f.btnDrawOuterOffsetEdgeClick();
  ASSERT_EQ(f.PathList->Count(), 7u);
  EXPECT_EQ(f.PathList->findByID(4)->FStartPt, TPointF(8, -5));
  EXPECT_EQ(f.PathList->findByID(4)->FPalletIndex, 37);
}
