// POST /render paints what the canvas paints, and leaves the view as it was.
#include <gtest/gtest.h>

#include <QByteArray>
#include <QImage>
#include <QPainter>
#include <nlohmann/json.hpp>

#include "api/render_endpoint.h"
#include "app/frm_pelw.h"
#include "platform/qt/qt_canvas.h"
#include "platform/qt/qt_png_image.h"
#include "test_support.h"

TEST(OffscreenRender, TheViewPictureIsTheCanvasPixelForPixelAndChangesNothing) {
  TTempDir dir;
  TfrmPelw form;
  form.FAppDataPath = dir.path();
  form.FOptions.FLoadDemoProjectAtStartup = false;
  writeTextFile(dir.file("pw_options.ini"), "[Demo]\nLoadAtStartup=0\n");
  form.FormCreate({});
  form.FMakePngImage = makeQtPngImage;
  form.pboxResize(320, 200);
  auto line = std::make_unique<TPW_Path>(0, 0xFF00FFFF, 1.5f, TStrokeDash::Solid, 0);
  line->drawLinePath(TPointF(2, 3), TPointF(28, 17));
  form.addShapeToDocument(std::move(line), 0);
  form.finishDocumentChange();

  // The canvas as the window paints it; its grid cache is kept.
  QImage screen(320, 200, QImage::Format_ARGB32_Premultiplied);
  {
    QPainter p(&screen);
    TQtCanvas canvas(p, 320, 200, 1.0);
    form.pboxPaint(&canvas);
  }
  const ICanvasBitmap* cache = form.FGridCache.get();
  const std::string cacheKey = form.FGridCacheKey;
  const TPointF scale = form.FScale, offset = form.FOffset;
  const size_t undoSteps = form.FUndoList.size();

  const auto reply = nlohmann::json::parse(apiRender(form, ""));
  ASSERT_EQ(reply.value("ok", false), true) << reply.dump();
  EXPECT_EQ(reply["width"], 320);
  EXPECT_EQ(reply["height"], 200);
  const QByteArray png = QByteArray::fromBase64(QByteArray::fromStdString(reply["png"].get<std::string>()));
  const QImage picture = QImage::fromData(png, "PNG").convertToFormat(QImage::Format_RGB32);
  EXPECT_EQ(picture, screen.convertToFormat(QImage::Format_RGB32));

  EXPECT_EQ(form.FGridCache.get(), cache);
  EXPECT_EQ(form.FGridCacheKey, cacheKey);
  EXPECT_TRUE(form.FScale.identical(scale) && form.FOffset.identical(offset));
  EXPECT_EQ(form.FPboxWidth, 320);
  EXPECT_EQ(form.FUndoList.size(), undoSteps);

  // The whole drawing fits inside whatever the picture's shape.
  const auto whole = nlohmann::json::parse(apiRender(form, R"({"area":"drawing","width":64,"height":640})"));
  ASSERT_EQ(whole.value("ok", false), true);
  const double s = whole["scale"];
  const double ox = whole["offsetX"];
  EXPECT_GE(2 * s + ox, 0.0);
  EXPECT_LE(28 * s + ox, 64.0);

  EXPECT_EQ(apiRender(form, R"({"width":4097})"),
            R"({"error":"width and height must be whole numbers of pixels from 16 to 4096"})");
  EXPECT_EQ(apiRender(form, R"({"width":4096,"height":2048})"),
            R"x({"error":"a picture may have at most 4194304 pixels (2048 x 2048)"})x");
  EXPECT_EQ(apiRender(form, R"({"area":"sky"})"), R"({"error":"area must be \"view\" or \"drawing\""})");
  form.FormDestroy();
}
