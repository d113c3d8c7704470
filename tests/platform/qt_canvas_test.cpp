// The QPainter canvas: hole dots from its cache of small discs look like the
// circles Qt would draw, one by one or in a batch.
#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>
#include <cmath>
#include <cstdlib>

#include "platform/qt/qt_canvas.h"

namespace {

QImage blank() {
  QImage img(60, 40, QImage::Format_ARGB32_Premultiplied);
  img.fill(Qt::black);
  return img;
}

// The largest difference of any channel of any pixel.
int largestDifference(const QImage& a, const QImage& b) {
  int worst = 0;
  for (int y = 0; y < a.height(); ++y)
    for (int x = 0; x < a.width(); ++x) {
      const QRgb p = a.pixel(x, y), q = b.pixel(x, y);
      worst = std::max({worst, std::abs(qRed(p) - qRed(q)), std::abs(qGreen(p) - qGreen(q)),
                        std::abs(qBlue(p) - qBlue(q))});
    }
  return worst;
}

const std::vector<TPointF> kCentres{TPointF(10.3f, 10.6f), TPointF(20.77f, 11.1f), TPointF(30.5f, 30.5f),
                                    TPointF(45.12f, 20.9f)};

QImage circlesOneByOne(float radius, float opacity) {
  QImage img = blank();
  QPainter p(&img);
  TQtCanvas c(p, img.width(), img.height(), 1.0);
  c.setFill(0xFFD2691E, TBrushKind::Solid);
  for (const TPointF& at : kCentres) c.fillEllipse(ICanvas::circleBox(at, radius), opacity);
  return img;
}

QImage circlesInABatch(float radius, float opacity) {
  QImage img = blank();
  QPainter p(&img);
  TQtCanvas c(p, img.width(), img.height(), 1.0);
  c.setFill(0xFFD2691E, TBrushKind::Solid);
  c.fillCircles(kCentres, radius, opacity);
  return img;
}

QImage circlesByQt(float radius, float opacity) {
  QImage img = blank();
  QPainter p(&img);
  p.setRenderHint(QPainter::Antialiasing);
  p.setPen(Qt::NoPen);
  p.setBrush(QColor(0xD2, 0x69, 0x1E));
  p.setOpacity(opacity);
  for (const TPointF& at : kCentres) p.drawEllipse(QPointF(at.x, at.y), radius, radius);
  return img;
}

TEST(QtCanvasDots, BatchesAndSingleDotsMatchQtsOwnCircles) {
  for (float radius : {2.04f, 2.9f, 4.5f, 9.0f}) {
    for (float opacity : {0.6f, 0.1f, 1.0f}) {
      const QImage single = circlesOneByOne(radius, opacity);
      EXPECT_EQ(largestDifference(single, circlesInABatch(radius, opacity)), 0) << radius << " " << opacity;
      // Small dots stand at the nearest quarter pixel: an edge pixel may be
      // off by what an eighth of a pixel covers, scaled by the opacity.
      // Larger ones are Qt's own circles.
      const int allowed = radius < 6 ? static_cast<int>(std::lround(48 * opacity)) + 2 : 0;
      EXPECT_LE(largestDifference(single, circlesByQt(radius, opacity)), allowed)
          << radius << " " << opacity;
    }
  }
}

TEST(QtCanvasDots, TheFillColourChangesTheDots) {
  QImage img = blank();
  {
    QPainter p(&img);
    TQtCanvas c(p, img.width(), img.height(), 1.0);
    c.setFill(0xFFFF0000, TBrushKind::Solid);
    c.fillCircles({TPointF(10, 10)}, 2.5f, 1.0f);
    c.setFill(0xFF0000FF, TBrushKind::Solid);
    c.fillCircles({TPointF(30, 10)}, 2.5f, 1.0f);
  }
  EXPECT_EQ(img.pixelColor(10, 10), QColor(255, 0, 0));
  EXPECT_EQ(img.pixelColor(30, 10), QColor(0, 0, 255));
}

}  // namespace

namespace {

// Grid-like lines: long verticals at odd sub-pixel places in the three grid
// styles, short ones, and horizontals.
std::vector<TStrokedLine> gridLikeLines(float w, float h) {
  std::vector<TStrokedLine> lines;
  for (int i = 0; i < 40; ++i) {
    TStrokedLine l;
    const float x = 3.37f + i * 10.9f;
    l.a = TPointF(x, 0);
    l.b = TPointF(x, h);
    l.color = 0xFFFFFFFF;
    l.dash = i % 10 == 5 || i % 10 == 0 ? TStrokeDash::Solid : TStrokeDash::Dash;
    l.thickness = i % 10 == 0 ? 1.0f : i % 10 == 5 ? 0.75f : 0.5f;
    lines.push_back(l);
  }
  lines.push_back({TPointF(20.5f, 30), TPointF(20.5f, 60), 0xFF00FF00, TStrokeDash::Solid, 2});  // short
  for (int i = 0; i < 25; ++i)
    lines.push_back({TPointF(0, 2.71f + i * 10.9f), TPointF(w, 2.71f + i * 10.9f), 0xFFFFFFFF,
                     i % 5 ? TStrokeDash::Dash : TStrokeDash::Solid, 0.5f});
  return lines;
}

// The lines drawn by the canvas's own way and by one drawLine each, on a
// bitmap of `scale` device pixels a pixel over `background`.
void drawBothWays(double scale, QRgb background, QImage& together, QImage& oneByOne) {
  const int w = 430, h = 270;
  const auto lines = gridLikeLines(w, h);
  for (int way = 0; way < 2; ++way) {
    TQtBitmap bitmap(w, h, scale);
    ICanvas& c = bitmap.canvas();
    ASSERT_TRUE(c.beginScene());
    c.clear(background);
    if (way == 0) {
      c.drawStrokedLines(lines, 0.4f);
    } else {
      for (const TStrokedLine& l : lines) {
        c.setStroke(l.color, TBrushKind::Solid, l.dash, l.thickness);
        c.drawLine(l.a, l.b, 0.4f);
      }
    }
    c.endScene();
    (way == 0 ? together : oneByOne) = bitmap.image();
  }
}

TEST(QtCanvasGridLines, ManyLinesAtOnceArePixelForPixelTheLinesOneByOne) {
  for (double scale : {1.0, 2.0}) {
    for (QRgb background : {qRgba(0, 0, 0, 0), qRgba(0, 0, 0, 255), qRgba(248, 248, 248, 255)}) {
      QImage together, oneByOne;
      drawBothWays(scale, background, together, oneByOne);
      ASSERT_EQ(together.size(), oneByOne.size());
      int differing = 0;
      for (int y = 0; y < together.height(); ++y)
        for (int x = 0; x < together.width(); ++x) differing += together.pixel(x, y) != oneByOne.pixel(x, y);
      EXPECT_EQ(differing, 0) << "scale " << scale << " background " << std::hex << background;
      // And something was drawn.
      EXPECT_NE(together.pixel(static_cast<int>(3.37 * scale), 100), background);
    }
  }
}

}  // namespace
