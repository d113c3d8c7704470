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
