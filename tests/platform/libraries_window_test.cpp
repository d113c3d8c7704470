// The libraries through Qt: PDF pages and pictures decoded by the window's
// services (a PDF the test writes itself, a protected one, a thousand
// pages, a picture whose header claims 50,000 by 50,000 pixels), and the
// panels in the real window, with screenshots when asked for.
#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QDockWidget>
#include <QElapsedTimer>
#include <QImage>
#include <QListWidget>
#include <QPainter>
#include <QPdfWriter>
#include <QTest>
#include <QTreeWidget>
#include <cstdio>

#include "app/frm_pelw.h"
#include "platform/qt/canvas_widget.h"
#include "platform/qt/catalog_window.h"
#include "platform/qt/library_panels.h"
#include "platform/qt/main_window.h"
#include "platform/qt/qt_pictures.h"
#include "platform/qt/qt_text_layout.h"
#include "platform/qt/repository_panel.h"
#include "test_support.h"

namespace {

// An A4 document of `pages` pages, each with a black 50 mm square whose
// left edge is 20 mm further right on each page.
void writePdf(const QString& file, int pages) {
  QPdfWriter pdf(file);
  pdf.setPageSize(QPageSize(QPageSize::A4));
  pdf.setResolution(72);
  pdf.setPageMargins(QMarginsF(0, 0, 0, 0));
  QPainter p(&pdf);
  const double perMm = 72.0 / 25.4;
  for (int i = 0; i < pages; ++i) {
    if (i > 0) pdf.newPage();
    p.fillRect(QRectF((20 + 20 * i) * perMm, 40 * perMm, 50 * perMm, 50 * perMm), Qt::black);
  }
}

class LibrariesWindow : public ::testing::Test {
 protected:
  TTempDir dir;
  TQtTextLayout layout;
  TScriptedDialogs dialogs;
  TfrmPelw form;
  void SetUp() override {
    setTextLayout(&layout);
    useQtPictures();
    form.FAppDataPath = dir.file("appdata");
    form.FDialogs = &dialogs;
    form.FHeadless = true;
    form.FApiPort = 0;
    form.FormCreate({});
  }
  void TearDown() override {
    form.FormDestroy();
    setPictureDecoder(nullptr);
    setPdfReader(nullptr);
    setTextLayout(nullptr);
  }
  void keep(QWidget& w, const QString& name) {
    const QByteArray folder = qgetenv("PELWRIGHT_SCREENSHOT_DIR");
    if (folder.isEmpty()) return;
    QElapsedTimer settle;
    settle.start();
    while (settle.elapsed() < 300) QApplication::processEvents(QEventLoop::AllEvents, 20);
    w.grab().save(QDir(QString::fromUtf8(folder)).filePath(name));
  }
};

}  // namespace

TEST_F(LibrariesWindow, PdfPagesBecomeBackdropsAtTheirRealSize) {
  const QString file = QString::fromStdString(dir.file("pattern.pdf"));
  writePdf(file, 2);
  dialogs.FPdfPages.push_back({1});
  ASSERT_TRUE(form.addBackdropFromFile(file.toStdString()));
  ASSERT_EQ(form.FBackdrops.size(), 1u);
  const TBackdrop& b = *form.FBackdrops[0];
  EXPECT_NEAR(b.FWidth, 210.0, 0.5);
  EXPECT_NEAR(b.FHeight, 297.0, 0.5);
  // The second page's square: 40 to 90 mm across, 40 to 90 mm down.
  auto pixelAtMm = [&](double x, double y) {
    return b.FBitmap.pixel(int(x / b.FWidth * b.FBitmap.FWidth), int(y / b.FHeight * b.FBitmap.FHeight));
  };
  EXPECT_EQ(pixelAtMm(65, 65) & 0xFFFFFF, 0x000000u);
  EXPECT_EQ(pixelAtMm(30, 65) & 0xFFFFFF, 0xFFFFFFu);
  EXPECT_EQ(pixelAtMm(85, 85) & 0xFFFFFF, 0x000000u);

  // A thousand pages: the list opens and only the chosen page is rendered.
  const QString big = QString::fromStdString(dir.file("catalogue.pdf"));
  writePdf(big, 1000);
  ASSERT_TRUE(form.addBackdropFromFile(big.toStdString()));
  EXPECT_EQ(form.FBackdrops.size(), 2u);
}

TEST_F(LibrariesWindow, ProtectedPdfAsksForThePassword) {
  const std::string file = std::string(PELWRIGHT_SOURCE_DIR) + "/tests/platform/data/protected.pdf";
  dialogs.FInputs.push_back("wrong");
  dialogs.FInputs.push_back("leather");
  ASSERT_TRUE(form.addBackdropFromFile(file));
  EXPECT_EQ(dialogs.FQuestions.at(0), "Enter Password: Password:");
  EXPECT_EQ(dialogs.FMessages.at(0), "The password is wrong.");
  EXPECT_NEAR(form.FBackdrops.at(0)->FWidth, 595 / 72.0 * 25.4, 0.5);
  // Cancel at the prompt adds nothing.
  EXPECT_FALSE(form.addBackdropFromFile(file));
  EXPECT_EQ(form.FBackdrops.size(), 1u);
}

TEST_F(LibrariesWindow, PicturesDecodeAndHugeOnesAreRefusedAtTheHeader) {
  QImage img(120, 80, QImage::Format_RGB32);
  img.fill(QColor(200, 100, 50));
  ASSERT_TRUE(img.save(QString::fromStdString(dir.file("leather.png"))));
  ASSERT_TRUE(img.save(QString::fromStdString(dir.file("leather.jpg")), "JPG", 95));
  EXPECT_TRUE(form.addBackdropFromFile(dir.file("leather.png")));
  EXPECT_EQ(form.FBackdrops.back()->FBitmap.pixel(10, 10), 0xFFC86432u);
  EXPECT_TRUE(form.addBackdropFromFile(dir.file("leather.jpg")));
  EXPECT_EQ(form.FBackdrops.back()->FBitmap.FWidth, 120);

  // A PNG whose header claims 50,000 x 50,000 pixels: refused before any
  // pixel is read.
  auto chunk = [](const QByteArray& type, const QByteArray& data) {
    const QByteArray body = type + data;
    quint32 c = 0xFFFFFFFFu;
    for (unsigned char byte : body) {
      c ^= byte;
      for (int k = 0; k < 8; ++k) c = (c >> 1) ^ (0xEDB88320u & (0u - (c & 1u)));
    }
    c = ~c;
    QByteArray out;
    for (int s = 24; s >= 0; s -= 8) out += char((data.size() >> s) & 0xFF);
    out += body;
    for (int s = 24; s >= 0; s -= 8) out += char((c >> s) & 0xFF);
    return out;
  };
  const QByteArray png = QByteArray::fromHex("89504E470D0A1A0A") +
                         chunk("IHDR", QByteArray::fromHex("0000C3500000C3500802000000")) +
                         chunk("IDAT", QByteArray::fromHex("789C030000000001")) + chunk("IEND", {});
  writeTextFile(dir.file("huge.png"), png.toStdString());
  const size_t before = form.FBackdrops.size();
  EXPECT_FALSE(form.addBackdropFromFile(dir.file("huge.png")));
  EXPECT_EQ(form.FBackdrops.size(), before);
  EXPECT_NE(dialogs.FMessages.back().find("too large"), std::string::npos);
}

TEST_F(LibrariesWindow, PanelsShowTheRepositoryCatalogAndATracedBackdrop) {
  // A backdrop to trace, a leather, and a shape filled with it.
  QImage scan(900, 600, QImage::Format_RGB32);
  scan.fill(QColor(235, 225, 205));
  {
    QPainter p(&scan);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(QPen(QColor(60, 40, 30), 6));
    p.drawRoundedRect(QRectF(100, 100, 700, 400), 60, 60);
    p.drawEllipse(QPointF(450, 300), 90, 90);
  }
  scan.save(QString::fromStdString(dir.file("wallet_scan.png")));
  ASSERT_TRUE(form.addBackdropFromFile(dir.file("wallet_scan.png")));
  form.moveBackdrop(TPointF(10, 10));
  TPW_CatalogShop* shop = form.addCatalogShop("Tannery Nord");
  TPW_CatalogGroup* group = form.addCatalogGroup(*shop, "Vegetable tanned");
  TPW_Catalog* item = form.addCatalogItem(*group, "Buttero tan");
  QImage grain(64, 64, QImage::Format_RGB32);
  for (int y = 0; y < 64; ++y)
    for (int x = 0; x < 64; ++x) grain.setPixel(x, y, qRgb(150 + (x * 7 + y * 13) % 30, 90 + (x * y) % 20, 40));
  grain.save(QString::fromStdString(dir.file("buttero.png")));
  ASSERT_TRUE(form.loadCatalogPicture(*item, dir.file("buttero.png")));
  // The outline traced over the scan (its corners at 60 px of 300 dpi),
  // and the middle cut filled with the leather.
  auto traced = [&](const std::string& path, bool select) {
    auto shape = std::make_unique<TPW_Path>(0, 0xFF00FFFF, 1.5f, TStrokeDash::Solid, 0);
    shape->FShapeType = ShapeType::Other;
    shape->FData.setData(path);
    shape->resetBoundary();
    shape->FSelected = select;
    shape->FOpacity = 0.9f;
    form.addShapeToDocument(std::move(shape), 0);
  };
  const double mm = 25.4 / 300, x0 = 10 + 100 * mm, y0 = 10 + 100 * mm, x1 = 10 + 800 * mm, y1 = 10 + 500 * mm;
  const double r = 60 * mm, k = r * 0.5523;
  char outline[512];
  std::snprintf(outline, sizeof outline,
                "M%f,%f L%f,%f C%f,%f %f,%f %f,%f L%f,%f C%f,%f %f,%f %f,%f L%f,%f C%f,%f %f,%f %f,%f L%f,%f "
                "C%f,%f %f,%f %f,%f",
                x0 + r, y0, x1 - r, y0, x1 - r + k, y0, x1, y0 + r - k, x1, y0 + r, x1, y1 - r, x1, y1 - r + k,
                x1 - r + k, y1, x1 - r, y1, x0 + r, y1, x0 + r - k, y1, x0, y1 - r + k, x0, y1 - r, x0, y0 + r, x0,
                y0 + r - k, x0 + r - k, y0, x0 + r, y0);
  traced(outline, false);
  const double cx = 10 + 450 * mm, cy = 10 + 300 * mm, cr = 90 * mm, ck = cr * 0.5523;
  char circle[512];
  std::snprintf(circle, sizeof circle, "M%f,%f C%f,%f %f,%f %f,%f C%f,%f %f,%f %f,%f C%f,%f %f,%f %f,%f C%f,%f %f,%f %f,%f Z",
                cx - cr, cy, cx - cr, cy - ck, cx - ck, cy - cr, cx, cy - cr, cx + ck, cy - cr, cx + cr, cy - ck, cx + cr,
                cy, cx + cr, cy + ck, cx + ck, cy + cr, cx, cy + cr, cx - ck, cy + cr, cx - cr, cy + ck, cx - cr, cy);
  traced(circle, true);
  EXPECT_EQ(form.applyCatalogToSelection(item, 15, TPointF(1, 1)), 1);
  for (const auto& s : *form.PathList) s->FSelected = false;

  TMainWindow window(form);
  window.resize(1400, 900);
  window.show();
  window.activateWindow();
  EXPECT_TRUE(QTest::qWaitForWindowExposed(&window));
  QTest::qWaitForWindowActive(&window);
  QApplication::processEvents();
  // The whole scan in view.
  form.FScale = TPointF(11, 11);
  form.FOffset = TPointF(-40, -40);
  form.refreshStatus();
  form.RepaintCanvas();
  // "y" on the canvas opens the repository with its six built-in folders.
  window.canvas()->setFocus();
  QTest::keyClick(window.canvas(), Qt::Key_Y);
  QApplication::processEvents();
  TfrmRepository* repo = window.FLibraries->repository();
  EXPECT_TRUE(window.FLibraries->repositoryDock()->isVisible());
  ASSERT_EQ(repo->tree()->topLevelItemCount(), 6);
  repo->tree()->topLevelItem(5)->setExpanded(true);
  repo->tree()->setCurrentItem(repo->tree()->topLevelItem(5)->child(2));
  ASSERT_NE(repo->getSelectedTemplate(), nullptr);
  EXPECT_EQ(form.FSelectedTemplate, repo->getSelectedTemplate());
  // "w" on the canvas is the backdrop tool.
  window.canvas()->setFocus();
  QApplication::processEvents();
  QTest::keyClick(window.canvas(), Qt::Key_W);
  EXPECT_TRUE(form.FBackdropToolActive);
  keep(window, "libraries_traced_backdrop.png");

  window.FLibraries->openCatalog();
  TfrmCatalog* catalog = window.FLibraries->catalog();
  ASSERT_NE(catalog, nullptr);
  EXPECT_EQ(catalog->FShops->count(), 1);
  EXPECT_EQ(catalog->FItems->count(), 1);
  keep(*catalog, "libraries_leather_catalog.png");
  catalog->close();
}
