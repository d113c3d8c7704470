// The canvas on QPainter: the screen, images, and later the printer.
#pragma once

#include <QFont>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <memory>

#include "platform/canvas.h"

QPainterPath toQPainterPath(const TPathData& path);
TPathData fromQPainterPath(const QPainterPath& path);

class TQtCanvas : public ICanvas {
 public:
  // Paints through `painter`, which is active and outlives this canvas.
  TQtCanvas(QPainter& painter, int width, int height, double scale);

  int width() const override { return FW; }
  int height() const override { return FH; }
  double canvasScale() const override { return FScale; }
  bool beginScene() override { return FPainter->isActive(); }
  void endScene() override {}
  void clear(TAlphaColor color) override;
  void setStroke(TAlphaColor color, TBrushKind kind, TStrokeDash dash, float thickness) override;
  void setStrokeColor(TAlphaColor color) override;
  void setStrokeDash(TStrokeDash dash) override;
  void setStrokeThickness(float thickness) override;
  void setStrokeCap(TStrokeCap cap) override;
  void setFill(TAlphaColor color, TBrushKind kind) override;
  void setFillBitmap(const ICanvasBitmap* bitmap) override;
  void setFontSize(float points) override;
  void drawLine(const TPointF& a, const TPointF& b, float opacity) override;
  void drawStrokedLines(const std::vector<TStrokedLine>& lines, float opacity) override;
  void drawEllipse(const TRectF& r, float opacity) override;
  void fillEllipse(const TRectF& r, float opacity) override;
  void fillCircles(const std::vector<TPointF>& centres, float radius, float opacity) override;
  void drawRect(const TRectF& r, float opacity) override;
  void fillRect(const TRectF& r, float opacity) override;
  void drawPath(const TPathData& path, float opacity) override;
  void fillPath(const TPathData& path, float opacity) override;
  void drawBitmap(const ICanvasBitmap& bitmap, const TRectF& src, const TRectF& dst, float opacity,
                  bool fastStretch) override;
  void fillText(const TRectF& r, const std::string& text, float opacity, TTextAlign horz,
                TTextAlign vert) override;
  float textWidth(const std::string& text) override;
  float textHeight(const std::string& text) override;
  TPathData textToPath(const std::string& text, const TRectF& r) override;
  void setMatrix(const TMatrix& m) override;
  TMatrix matrix() const override { return FMatrix; }
  std::unique_ptr<ICanvasBitmap> createBitmap(int w, int h, double scale) override;
  std::unique_ptr<ICanvasBitmap> createBitmapFromImage(const TRasterImage& image) override;
  std::unique_ptr<ICanvasBitmap> createOpaqueBitmap(int w, int h, double scale) override;
  void fillPathWithBitmap(const TPathData& path, const ICanvasBitmap& bitmap, const TMatrix& bitmapToCanvas,
                          float opacity) override;
  // Every mark drawn as a vector, for printers and PDF files: none of the
  // screen's shortcuts through small images.
  void setVectorOutput(bool on) { FVectorOutput = on; }

 protected:
  TQtCanvas() = default;
  void attach(QPainter& painter, int width, int height, double scale);
  QPainter* FPainter = nullptr;

 private:
  int FW = 0, FH = 0;
  double FScale = 1;
  QPen FPen;
  QBrush FBrush;
  QFont FFont;
  TMatrix FMatrix;
  bool FVectorOutput = false;
  void stroke();
  void fill(float opacity);
  bool smallDisc(const QRectF& box, float opacity, QPointF& at, const QImage*& image) const;
  // Long vertical lines drawn across, in a scratch image kept for the next
  // time, and turned into place.
  QImage FAcross;
  void drawVerticalRun(const TStrokedLine* first, const TStrokedLine* last, float opacity);
};

// A bitmap in memory; its canvas paints into it between beginScene and endScene.
class TQtBitmap : public ICanvasBitmap {
 public:
  TQtBitmap(int w, int h, double scale);
  // A bitmap showing the image (shared, not copied where Qt can draw it as it is).
  explicit TQtBitmap(QImage image);
  ~TQtBitmap() override;
  int width() const override { return FImage.width(); }
  int height() const override { return FImage.height(); }
  double bitmapScale() const override { return FImage.devicePixelRatio(); }
  ICanvas& canvas() override;
  const QImage& image() const { return FImage; }

 private:
  class TImageCanvas;
  QImage FImage;
  std::unique_ptr<TImageCanvas> FCanvas;
};
