// The real window on the offscreen platform with the sample project opened
// from the command line: the fitted view, reset view by its key, wheel
// zoom, the View menu, and screenshots when asked for.
#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QImage>
#include <QLabel>
#include <QTest>
#include <QWheelEvent>
#include <cmath>

#include "app/frm_pelw.h"
#include "platform/qt/canvas_widget.h"
#include "platform/qt/main_window.h"
#include "platform/qt/qt_text_layout.h"
#include "test_support.h"

namespace {

const std::string kSampleFile = std::string(PELWRIGHT_SOURCE_DIR) + "/resources/samples/card_holder.pwc";

class MainWindowView : public ::testing::Test {
 protected:
  TTempDir dir;
  TQtTextLayout layout;
  TScriptedDialogs dialogs;
  TfrmPelw form;
  std::unique_ptr<TMainWindow> window;
  void SetUp() override {
    setTextLayout(&layout);
    form.FAppDataPath = dir.path();
    form.FDialogs = &dialogs;
    // As `pelwright card_holder.pwc` starts.
    form.FormCreate({kSampleFile});
    window = std::make_unique<TMainWindow>(form);
    window->resize(1000, 700);
    window->show();
    QApplication::processEvents();
  }
  void TearDown() override {
    window.reset();
    setTextLayout(nullptr);
  }
  QImage grabCanvas() { return window->canvas()->grab().toImage(); }
  // Saves a screenshot when PELWRIGHT_SCREENSHOT_DIR is set, once the grid
  // has settled and been drawn sharp at the present zoom.
  void keep(const QString& name) {
    const QByteArray folder = qgetenv("PELWRIGHT_SCREENSHOT_DIR");
    if (folder.isEmpty()) return;
    QElapsedTimer settle;
    settle.start();
    while (settle.elapsed() < 300) QApplication::processEvents(QEventLoop::AllEvents, 20);
    window->grab().save(QDir(QString::fromUtf8(folder)).filePath(name));
  }
};

TEST_F(MainWindowView, OpensFittedOnTheSample) {
  window->FActShowStitchSimulator->trigger();
  EXPECT_EQ(form.PathList->Count(), 33u + 80u + 45u);
  EXPECT_FALSE(form.PathList->FIsChanged);
  EXPECT_EQ(form.FPboxWidth, window->canvas()->width());
  // Fitted to the canvas the window has once shown: 140 mm of height (the
  // 130 mm of the pieces and 5 mm each side) fill the canvas.
  const float s = std::round((std::min(form.FPboxWidth / 110.0f, form.FPboxHeight / 140.0f) + 0.05f) * 10) / 10;
  EXPECT_FLOAT_EQ(form.FScale.x, s);
  EXPECT_FLOAT_EQ(form.FOffset.x, std::round(5 * s) - 5);
  EXPECT_TRUE(window->windowTitle().startsWith("card_holder.pwc - Pelwright"));
  // Fitted: the whole card holder is in view, and fairly large.
  const TRectF v = form.VisibleRealRect();
  EXPECT_LE(v.Left, 0);
  EXPECT_GE(v.Right, 100);
  EXPECT_LE(v.Top, 0);
  EXPECT_GE(v.Bottom, 130);
  EXPECT_GT(form.FScale.x, 3);
  const QImage img = grabCanvas();
  // Cyan outline pixels are on the black canvas.
  int cyan = 0;
  for (int y = 0; y < img.height(); y += 2)
    for (int x = 0; x < img.width(); x += 2) {
      const QColor c = img.pixelColor(x, y);
      if (c.red() < 80 && c.green() > 180 && c.blue() > 180) ++cyan;
    }
  EXPECT_GT(cyan, 100);
  EXPECT_TRUE(window->findChild<QLabel*>("lblStatus")->text().startsWith("Scale "));
  keep("card_holder_black_fit.png");
}

TEST_F(MainWindowView, ViewMenuSwitchesBackgroundAndGrid) {
  window->FActShowStitchSimulator->trigger();
  window->FActWhiteBackground->trigger();
  EXPECT_FALSE(form.FIsBlackBackgroundMode);
  QImage img = grabCanvas();
  EXPECT_EQ(img.pixelColor(img.width() / 2, img.height() - 3).lightness() > 200, true);
  keep("card_holder_white_fit.png");
  window->FActShowGrid->toggle();
  EXPECT_FALSE(form.FShowGrid);
  window->FActBlackBackground->trigger();
  EXPECT_TRUE(form.FIsBlackBackgroundMode);
}

TEST_F(MainWindowView, RulersGridAndDrawingStandInStep) {
  form.FScale = TPointF(20, 20);
  form.FOffset = TPointF(-1400, -1000);
  form.RepaintCanvas();
  QApplication::processEvents();
  auto* rulerX = window->findChild<QWidget*>("pbRulerX");
  auto* rulerY = window->findChild<QWidget*>("pbRulerY");
  ASSERT_TRUE(rulerX && rulerY);
  TCanvasWidget* canvas = window->canvas();
  // The rulers start where the canvas starts.
  EXPECT_EQ(rulerX->mapTo(window.get(), QPoint(0, 0)).x(), canvas->mapTo(window.get(), QPoint(0, 0)).x());
  EXPECT_EQ(rulerY->mapTo(window.get(), QPoint(0, 0)).y(), canvas->mapTo(window.get(), QPoint(0, 0)).y());
  // The heavy tick of 100 mm stands over the body's right edge, and that of
  // 70 mm beside its bottom edge.
  const TPointF corner = form.RealToScreen(TPointF(100, 70));
  const int x = static_cast<int>(std::floor(corner.x)), y = static_cast<int>(std::floor(corner.y));
  const QImage rx = rulerX->grab().toImage(), ry = rulerY->grab().toImage(), c = grabCanvas();
  auto orange = [](const QColor& k) { return k.red() > 200 && k.green() > 100 && k.green() < 200 && k.blue() < 80; };
  auto cyan = [](const QColor& k) { return k.red() < 80 && k.green() > 150 && k.blue() > 150; };
  EXPECT_TRUE(orange(rx.pixelColor(x, rx.height() - 2)));
  EXPECT_FALSE(orange(rx.pixelColor(x + 4, rx.height() - 2)));
  EXPECT_TRUE(orange(ry.pixelColor(ry.width() - 2, y)));
  EXPECT_TRUE(cyan(c.pixelColor(x, static_cast<int>(form.RealToScreen(TPointF(100, 55)).y))));
  EXPECT_TRUE(cyan(c.pixelColor(static_cast<int>(form.RealToScreen(TPointF(80, 70)).x), y)));
}

}  // namespace
