// The QPainter canvas's short cuts draw what QPainter would: hole dots from
// its cache of small discs, and runs of long grid lines drawn across.
#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>
#include <cmath>
#include <cstdlib>

#include "platform/qt/qt_canvas.h"

namespace {

// The largest difference of any colour channel of any pixel.
int largestDifference(const QImage& a, const QImage& b) {
  int worst = 0;
  for (int y = 0; y < a.height(); ++y)
    for (int x = 0; x < a.width(); ++x) {
      const QRgb p = a.pixel(x, y), q = b.pixel(x, y);
      worst = std::max({worst, std::abs(qRed(p) - qRed(q)), std::abs(qGreen(p) - qGreen(q)),
                        std::abs(qBlue(p) - qBlue(q)), std::abs(qAlpha(p) - qAlpha(q))});
    }
  return worst;
}

// Draws with `how` on a 60 x 40 black image.
template <typename How>
QImage drawn(How how) {
  QImage img(60, 40, QImage::Format_ARGB32_Premultiplied);
  img.fill(Qt::black);
  QPainter p(&img);
  TQtCanvas c(p, img.width(), img.height(), 1.0);
  how(p, c);
  return img;
}

TEST(QtCanvas, HoleDotsOneByOneInABatchAndByQtAlike) {
  const std::vector<TPointF> at{TPointF(10.3f, 10.6f), TPointF(20.77f, 11.1f), TPointF(45.12f, 20.9f)};
  for (float radius : {2.04f, 4.5f, 9.0f}) {
    for (float opacity : {0.6f, 0.1f, 1.0f}) {
      const QImage single = drawn([&](QPainter&, TQtCanvas& c) {
        c.setFill(0xFFD2691E, TBrushKind::Solid);
        for (const TPointF& p : at) c.fillEllipse(ICanvas::circleBox(p, radius), opacity);
      });
      const QImage batch = drawn([&](QPainter&, TQtCanvas& c) {
        c.setFill(0xFFD2691E, TBrushKind::Solid);
        c.fillCircles(at, radius, opacity);
      });
      const QImage qt = drawn([&](QPainter& p, TQtCanvas&) {
        p.setPen(Qt::NoPen);
        p.setBrush(QColor(0xD2, 0x69, 0x1E));
        p.setOpacity(opacity);
        for (const TPointF& c : at) p.drawEllipse(QPointF(c.x, c.y), radius, radius);
      });
      EXPECT_EQ(largestDifference(single, batch), 0) << radius << " " << opacity;
      // Small dots stand at the nearest quarter pixel: an edge pixel may be
      // off by what an eighth of a pixel covers. Larger ones are Qt's own.
      const int allowed = radius < 6 ? static_cast<int>(std::lround(48 * opacity)) + 2 : 0;
      EXPECT_LE(largestDifference(single, qt), allowed) << radius << " " << opacity;
    }
  }
  // Another fill colour, other dots.
  const QImage two = drawn([](QPainter&, TQtCanvas& c) {
    c.setFill(0xFFFF0000, TBrushKind::Solid);
    c.fillCircles({TPointF(10, 10)}, 2.5f, 1.0f);
    c.setFill(0xFF0000FF, TBrushKind::Solid);
    c.fillCircles({TPointF(30, 10)}, 2.5f, 1.0f);
  });
  EXPECT_EQ(two.pixelColor(10, 10), QColor(255, 0, 0));
  EXPECT_EQ(two.pixelColor(30, 10), QColor(0, 0, 255));
}

TEST(QtCanvas, GridLinesAtOnceArePixelForPixelTheLinesOneByOne) {
  const int w = 430, h = 270;
  std::vector<TStrokedLine> lines;
  for (int i = 0; i < 40; ++i) {
    const float x = 3.37f + i * 10.9f;
    const bool heavy = i % 10 == 0, middle = i % 10 == 5;
    lines.push_back({TPointF(x, 0), TPointF(x, h), 0xFFFFFFFF, heavy || middle ? TStrokeDash::Solid : TStrokeDash::Dash,
                     heavy ? 1.0f : middle ? 0.75f : 0.5f});
  }
  lines.push_back({TPointF(20.5f, 30), TPointF(20.5f, 60), 0xFF00FF00, TStrokeDash::Solid, 2});  // short
  for (int i = 0; i < 25; ++i)
    lines.push_back({TPointF(0, 2.71f + i * 10.9f), TPointF(w, 2.71f + i * 10.9f), 0xFFFFFFFF, TStrokeDash::Dash, 0.5f});
  for (double scale : {1.0, 2.0}) {
    for (QRgb background : {qRgba(0, 0, 0, 0), qRgba(248, 248, 248, 255)}) {
      QImage images[2];
      for (int way = 0; way < 2; ++way) {
        TQtBitmap bitmap(w, h, scale);
        ICanvas& c = bitmap.canvas();
        ASSERT_TRUE(c.beginScene());
        c.clear(background);
        if (way == 0) c.drawStrokedLines(lines, 0.4f);
        for (size_t i = 0; way == 1 && i < lines.size(); ++i) {
          c.setStroke(lines[i].color, TBrushKind::Solid, lines[i].dash, lines[i].thickness);
          c.drawLine(lines[i].a, lines[i].b, 0.4f);
        }
        c.endScene();
        images[way] = bitmap.image();
      }
      EXPECT_EQ(largestDifference(images[0], images[1]), 0) << scale << " " << std::hex << background;
      EXPECT_NE(images[0].pixel(static_cast<int>(3.37 * scale), 100), background);  // something was drawn
    }
  }
}

}  // namespace
