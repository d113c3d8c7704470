// Printing through the scene's paint onto sheets that record what they get:
// calibration, skipped pages, tiles, the view put back, the preview's
// pointer, and pages that come back with the project.
#include <gtest/gtest.h>

#include <cmath>

#include "app/program_fixture.h"
#include "exchange/print_layout.h"
#include "exchange/print_run.h"
#include "platform/recording_canvas.h"

namespace {

constexpr double kPxPerMm = 300 / 25.4;

// A printer that keeps every sheet's drawing calls.
class TRecordingPaper : public IPaperDevice {
 public:
  explicit TRecordingPaper(const TPaperSetup& paper, int failAt = -1) : FPaper(paper), FFailAt(failAt) {}
  std::vector<std::unique_ptr<TRecordingCanvas>> FSheets;
  bool FFinished = false;
  double dpiX() const override { return 300; }
  double dpiY() const override { return 300; }
  ICanvas* nextPage() override {
    if (static_cast<int>(FSheets.size()) == FFailAt) return nullptr;
    FSheets.push_back(std::make_unique<TRecordingCanvas>(int(FPaper.FWidthMm * kPxPerMm), int(FPaper.FHeightMm * kPxPerMm)));
    return FSheets.back().get();
  }
  bool finish() override { return FFinished = true; }
  std::string errorText() const override { return "out of paper"; }

 private:
  TPaperSetup FPaper;
  int FFailAt;
};

class Printing : public ::testing::Test {
 protected:
  TProgram program;
  TfrmPelw* f = nullptr;
  void SetUp() override {
    f = &program.start();
    // A 100 mm line across and one down, from (10, 10).
    f->addShapeToDocument(makeLine(TPointF(10, 10), TPointF(110, 10)), 0);
    f->addShapeToDocument(makeLine(TPointF(10, 10), TPointF(10, 110)), 0);
  }
  TPrintLayout layout(const char* paper = "A4") {
    TPrintLayout l(*f->PathList);
    EXPECT_TRUE(l.setBoundaryFromDrawing());
    l.FPaper = paperSetupFor(*findPaperSize(paper), false);
    l.repairPages();
    return l;
  }
  // The shape paths drawn on a sheet, by their first point.
  static std::vector<TRectF> pathBoxes(const TRecordingCanvas& sheet) {
    std::vector<TRectF> boxes;
    for (const TCanvasOp* op : sheet.ops("drawPath")) boxes.push_back(op->path.GetBounds());
    return boxes;
  }
};

TEST_F(Printing, CalibrationStretchesThePaperOnlyAndTheViewComesBack) {
  f->FScale = TPointF(3.5f, 3.5f);
  f->FOffset = TPointF(40, -20);
  f->FPaintSwitches.chkPrintInColor = true;
  TPrintLayout l = layout();
  l.FCalibrationRatio = TPointF(0.99f, 1.0f);
  TRecordingPaper paper(l.FPaper);
  ASSERT_EQ(printPages(*f, l, paper), "");
  ASSERT_EQ(paper.FSheets.size(), 1u);
  const std::vector<TRectF> boxes = pathBoxes(*paper.FSheets[0]);
  ASSERT_EQ(boxes.size(), 2u);
  // 100 mm across prints at 99 mm, 100 mm down at 100 mm; the area begins
  // 5 mm before the drawing, on the sheet's corner.
  EXPECT_NEAR(boxes[0].width(), 99 * kPxPerMm, 0.01);
  EXPECT_NEAR(boxes[1].height(), 100 * kPxPerMm, 0.01);
  EXPECT_NEAR(boxes[0].Left, 5 * 0.99 * kPxPerMm, 0.01);
  EXPECT_NEAR(boxes[0].Top, 5 * kPxPerMm, 0.01);
  // The sheet's horizontal scale is 100 mm of the drawing too.
  const auto lines = paper.FSheets[0]->ops("line");
  ASSERT_GE(lines.size(), 2u);
  EXPECT_NEAR(std::abs(lines[0]->b.x - lines[0]->a.x), 99 * kPxPerMm, 0.01);
  EXPECT_NEAR(std::abs(lines[1]->b.y - lines[1]->a.y), 100 * kPxPerMm, 0.01);
  EXPECT_TRUE(paper.FFinished);
  // The screen is as it was.
  EXPECT_TRUE(f->FScale.identical(TPointF(3.5f, 3.5f)));
  EXPECT_TRUE(f->FOffset.identical(TPointF(40, -20)));
  EXPECT_EQ(f->FPrintLineFactor, 1.0f);
  EXPECT_FALSE(f->FIsPrinting);
  EXPECT_TRUE(f->FPaintSwitches.chkPrintInColor);
  EXPECT_EQ(f->FPaintSwitches.printThicknessFactor, 1.0);
}

TEST_F(Printing, SkippedPagesUseNoSheetAndAFailingPrinterStillRestores) {
  TPrintLayout l = layout();
  l.pageAdd();
  l.pageAdd();
  // The third page 300 mm to the right of the first.
  f->PathList->FPrintOffset[2] = TPointF::fromDouble(0, 300 * 300 / 25.4);
  f->PathList->FPrintTarget[1] = false;
  TRecordingPaper paper(l.FPaper);
  int sheets = 0;
  ASSERT_EQ(printPages(*f, l, paper, &sheets), "");
  EXPECT_EQ(sheets, 2);
  ASSERT_EQ(paper.FSheets.size(), 2u);
  EXPECT_EQ(pathBoxes(*paper.FSheets[1]).size(), 0u) << "the drawing lies above the third page";

  TRecordingPaper broken(l.FPaper, 1);
  f->FScale = TPointF(2, 2);
  EXPECT_EQ(printPages(*f, l, broken), "out of paper");
  EXPECT_TRUE(f->FScale.identical(TPointF(2, 2)));
  EXPECT_FALSE(f->FIsPrinting);
}

TEST_F(Printing, TilesCoverTheDrawingOverlappingBySetLength) {
  f->addShapeToDocument(makeLine(TPointF(0, 0), TPointF(500, 400)), 0);
  TPrintLayout l = layout();
  l.FSwitches.FOverlapLen = 20;
  EXPECT_FALSE(l.fitsOnePage());
  l.FSwitches.FTilePrint = true;
  l.tileToCover();
  // 515 x 415 mm on A4 with 20 mm overlap: steps of 190 and 277 mm.
  EXPECT_EQ(l.getNumTileX(), 3);
  EXPECT_EQ(l.pageCount(), 6);
  int col = 0, row = 0;
  l.getTileColRow(4, col, row);
  EXPECT_EQ(col, 1);
  EXPECT_EQ(row, 1);
  EXPECT_TRUE(l.isEdgeTop(1) && !l.isEdgeBottom(1) && !l.isEdgeLeft(1) && !l.isEdgeRight(1));
  EXPECT_TRUE(l.isEdgeRight(5) && l.isEdgeBottom(5));
  EXPECT_NEAR(l.getOffsetRealPt(1).x - l.getOffsetRealPt(0).x, 190, 1e-3);
  EXPECT_NEAR(l.getOffsetRealPt(3).y - l.getOffsetRealPt(0).y, 277, 1e-3);
  EXPECT_NEAR(l.sheetRealRect(0).Right - l.sheetRealRect(1).Left, 20, 1e-3);
  // Tiles drag as one.
  const TPointF p0 = l.sheetRealRect(4).centerPoint();
  l.mouseDown(false, TPointF(100, 100), p0);
  l.mouseMove(TPointF(110, 100), p0 + TPointF(25.4f, 0));
  l.mouseUp(false, TPointF(110, 100), p0 + TPointF(25.4f, 0));
  EXPECT_NEAR(l.getOffsetRealPt(0).x, -5 + 25.4, 1e-3);
  EXPECT_NEAR(l.getOffsetRealPt(1).x - l.getOffsetRealPt(0).x, 190, 1e-3);
}

TEST_F(Printing, RefusesCalibrationAndOverlapOutOfRange) {
  TPrintLayout l = layout();
  const TMultiLang& lang = *f->FMultiLang;
  EXPECT_EQ(l.checkSettings(lang, "en"), "");
  l.FCalibrationRatio = TPointF(0.49f, 1);
  EXPECT_EQ(l.checkSettings(lang, "en"), "The print calibration (49 per cent) must lie between 50 and 200 per cent.");
  l.FCalibrationRatio = TPointF(1, 2.01f);
  EXPECT_NE(l.checkSettings(lang, "en"), "");
  l.FCalibrationRatio = TPointF(1, 1);
  l.FSwitches.FOverlapLen = -1;
  EXPECT_EQ(l.checkSettings(lang, "en"), "The overlap of tiles (-1 mm) must lie between 0 mm and half the page, 105 mm.");
  l.FSwitches.FOverlapLen = 105.5;
  EXPECT_NE(l.checkSettings(lang, "en"), "");
  EXPECT_EQ(findPaperSize("letter")->FWidthMm, 215.9);
  EXPECT_EQ(findPaperSize("B5"), nullptr);
}

TEST_F(Printing, PagesMovedInThePreviewReturnWithTheProject) {
  TPrintLayout l = layout();
  l.pageAdd();
  const TPointF inSecond = l.sheetRealRect(1).centerPoint();
  // Right click skips, a click moves the scales, a drag moves the page.
  EXPECT_TRUE(l.mouseDown(true, TPointF(5, 5), inSecond));
  l.mouseUp(true, TPointF(5, 5), inSecond);
  l.mouseDown(false, TPointF(5, 5), l.sheetRealRect(0).centerPoint());
  l.mouseUp(false, TPointF(5.5f, 5), l.sheetRealRect(0).centerPoint());
  l.mouseDown(false, TPointF(5, 5), inSecond);
  l.mouseMove(TPointF(50, 5), inSecond + TPointF(0, 50.8f));
  l.mouseUp(false, TPointF(50, 5), inSecond + TPointF(0, 50.8f));
  const std::vector<TPointF> offsets = f->PathList->FPrintOffset;
  EXPECT_NEAR(offsets[1].y, 600, 1e-3);
  EXPECT_EQ(f->PathList->FPrintTarget, (std::vector<bool>{true, false}));
  EXPECT_EQ(f->PathList->FPrintScalePos, (std::vector<int>{1, 0}));

  const std::string file = program.file("pages.pwc");
  f->writeProjectFile(file);
  f->actNewProject();
  ASSERT_TRUE(f->loadProject(file));
  ASSERT_EQ(f->PathList->FPrintOffset.size(), 2u);
  EXPECT_TRUE(f->PathList->FPrintOffset[1].identical(offsets[1]));
  EXPECT_EQ(f->PathList->FPrintTarget, (std::vector<bool>{true, false}));
  EXPECT_EQ(f->PathList->FPrintScalePos, (std::vector<int>{1, 0}));
}

TEST_F(Printing, PrintCommandRefusalsAndPaperColours) {
  // No printer service: the note on the scales, then no printers.
  f->actPrint();
  ASSERT_EQ(program.dialogs.FMessages.size(), 2u);
  EXPECT_EQ(program.dialogs.FMessages[1], "No printers were found.");
  f->newProjectWithoutQuestion();
  f->actPrint();
  EXPECT_EQ(program.dialogs.FMessages.back(), "There is nothing to print.");
  // On paper a shape is black, its thickness in printer pixels from the line factor.
  f->addShapeToDocument(makeLine(TPointF(0, 0), TPointF(50, 0)), 0);
  TPrintLayout l = layout();
  l.FSwitches.FLineFactor = 1;
  TRecordingPaper paper(l.FPaper);
  ASSERT_EQ(printPages(*f, l, paper), "");
  const TCanvasOp* line = paper.FSheets[0]->ops("drawPath").at(0);
  EXPECT_EQ(line->color, claBlack);
  EXPECT_NEAR(line->thickness, 1.5 * 300 / 96.0, 1e-3);
}

}  // namespace
