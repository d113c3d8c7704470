// The print preview and the File menu's PDF on the offscreen platform: the
// boxes show the layout, the pointer skips a page, tiles cover a large
// drawing, and a PDF is written from the menu. Screenshots when asked for
// (run under Xvfb with PELWRIGHT_SCREENSHOT_DIR).
#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QDir>
#include <QElapsedTimer>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QTest>

#include "app/frm_pelw.h"
#include "app/safe_file.h"
#include "platform/qt/main_window.h"
#include "platform/qt/print_preview.h"
#include "platform/qt/qt_paper_device.h"
#include "test_support.h"

namespace {

class PrintPreview : public ::testing::Test {
 protected:
  TTempDir dir;
  TScriptedDialogs dialogs;
  TfrmPelw form;
  void SetUp() override {
    form.FAppDataPath = dir.path();
    form.FDialogs = &dialogs;
    form.FMakePdfDocument = makeQtPdfDocument;
    writeTextFile(dir.file("pw_options.ini"), "[Demo]\nLoadAtStartup=0\n[General]\nLangID=en\n");
    form.FormCreate({std::string(PELWRIGHT_SOURCE_DIR) + "/resources/samples/card_holder.pwc"});
  }
  static void keep(QWidget* w, const QString& name) {
    const QString folder = QString::fromUtf8(qgetenv("PELWRIGHT_SCREENSHOT_DIR"));
    if (folder.isEmpty()) return;
    QElapsedTimer t;
    t.start();
    while (t.elapsed() < 300) QApplication::processEvents(QEventLoop::AllEvents, 20);
    w->grab().save(QDir(folder).filePath(name));
  }
};

TEST_F(PrintPreview, PointerSkipsAPageAndTilesCoverALargeDrawing) {
  std::unique_ptr<TPrintLayout> layout = form.makePrintLayout(form.FPdfPaper);
  ASSERT_TRUE(layout);
  TfrmPreview preview(form, *layout, nullptr, true);
  preview.show();
  preview.pbPreview->grab();  // painted once: the pages have their place
  EXPECT_FALSE(preview.chkTilePrint->isChecked());
  EXPECT_EQ(preview.lblSheets->text(), "Sheets to print: 1");
  // 99 per cent across: the sheet covers more of the drawing.
  preview.nbPrintCalibrationX->setValue(99);
  EXPECT_NEAR(layout->sheetRealRect(0).width(), 210 / 0.99, 1e-3);
  keep(&preview, "print_preview.png");

  const TPointF middle = preview.pbPreview->toPixels(layout->sheetRealRect(0).centerPoint());
  QTest::mouseClick(preview.pbPreview, Qt::RightButton, {}, QPoint(int(middle.x), int(middle.y)));
  EXPECT_FALSE(layout->isTarget(0));
  EXPECT_EQ(preview.lblSheets->text(), "Sheets to print: 0");
  EXPECT_FALSE(preview.btnExecutePrint->isEnabled());

  // Tiles over a drawing wider than the sheet, in a row of four.
  auto wide = std::make_unique<TPW_Path>(0, 0xFF00FFFF, 1.5f, TStrokeDash::Solid, 0);
  wide->drawLinePath(TPointF(0, 300), TPointF(700, 300));
  form.addShapeToDocument(std::move(wide), 0);
  ASSERT_TRUE(layout->setBoundaryFromDrawing());
  preview.chkTilePrint->setChecked(true);
  EXPECT_EQ(preview.nbPreview_TileX->value(), 4);
  EXPECT_EQ(layout->pageCount(), 8);
  preview.pbPreview->drawingChanged();
  keep(&preview, "print_preview_tiles.png");
  preview.reject();
}

TEST_F(PrintPreview, ExportAsPdfFromTheMenuWritesTheFile) {
  TMainWindow window(form);
  const std::string pdf = dir.file("card holder.pdf");
  dialogs.FFileNames = {pdf};
  window.FActExportAsPDF->trigger();
  ASSERT_EQ(dialogs.FMessages.size(), 1u);
  EXPECT_EQ(dialogs.FMessages[0], "Exported as PDF:\n" + pdf);
  EXPECT_EQ(readWholeFile(pdf).rfind("%PDF-", 0), 0u);
  EXPECT_EQ(dialogs.FFileDialogs.back().substr(dialogs.FFileDialogs.back().find('|')), "|card_holder.pdf");
  // The pages are shown on the canvas now; F7 hides them.
  EXPECT_TRUE(form.FIsPrintAreaAvailable);
  window.resize(1000, 700);
  window.show();
  form.FScale = TPointF(2.0f, 2.0f);
  form.FOffset = TPointF(40, 30);
  form.RepaintCanvas();
  keep(&window, "print_areas.png");
  window.FActShowHidePrintAreas->trigger();
  EXPECT_FALSE(form.FShowPrintAreas);
}

}  // namespace
