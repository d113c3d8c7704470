// A canvas that draws nothing and writes down every drawing call with the
// stroke and fill in force, so that tests can read what a paint did and in
// which order.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/canvas.h"

struct TCanvasOp {
  // "clear", "line", "drawEllipse", "fillEllipse", "drawRect", "fillRect",
  // "drawPath", "fillPath", "bitmap", "text", "matrix", "fillPathBitmap".
  std::string op;
  TPointF a, b;           // line ends
  TRectF rect;            // ellipse, rectangle, text box, bitmap destination
  TRectF source;          // bitmap source
  TPathData path;         // paths
  std::string text;
  float opacity = 1.0f;
  TAlphaColor color = 0;  // the stroke colour for draw calls, the fill colour for fill calls
  TStrokeDash dash = TStrokeDash::Solid;
  float thickness = 1.0f;
  TStrokeCap cap = TStrokeCap::Round;
  TBrushKind brush = TBrushKind::Solid;
  float fontSize = 0;
  bool fastStretch = false;
  const ICanvasBitmap* bitmap = nullptr;
};

class TRecordingCanvas : public ICanvas {
 public:
  TRecordingCanvas(int w = 800, int h = 600, double scale = 1.0) : FW(w), FH(h), FScale(scale) {}

  std::vector<TCanvasOp> FOps;
  int FScenes = 0;
  // Width of a character for textWidth, height of a line for textHeight.
  float FCharWidth = 7.0f;
  float FLineHeight = 14.0f;
  // Called before each recorded operation; a test can throw from it.
  std::function<void(const TCanvasOp&)> FOnOp;

  // Operations whose name is `op`, in order.
  std::vector<const TCanvasOp*> ops(const std::string& op) const;
  size_t count(const std::string& op) const { return ops(op).size(); }

  int width() const override { return FW; }
  int height() const override { return FH; }
  double canvasScale() const override { return FScale; }
  bool beginScene() override;
  void endScene() override {}
  void clear(TAlphaColor color) override;
  void setStroke(TAlphaColor color, TBrushKind kind, TStrokeDash dash, float thickness) override;
  void setStrokeColor(TAlphaColor color) override { FStrokeColor = color; }
  void setStrokeDash(TStrokeDash dash) override { FDash = dash; }
  void setStrokeThickness(float thickness) override { FThickness = thickness; }
  void setStrokeCap(TStrokeCap cap) override { FCap = cap; }
  void setFill(TAlphaColor color, TBrushKind kind) override;
  void setFillBitmap(const ICanvasBitmap* bitmap) override;
  void setFontSize(float points) override { FFontSize = points; }
  void drawLine(const TPointF& a, const TPointF& b, float opacity) override;
  void drawEllipse(const TRectF& r, float opacity) override;
  void fillEllipse(const TRectF& r, float opacity) override;
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
  // A recorded bitmap of the picture's size; the fill is recorded as
  // "fillPathBitmap", its matrix kept in FLastBitmapFillMatrix.
  std::unique_ptr<ICanvasBitmap> createBitmapFromImage(const TRasterImage& image) override;
  void fillPathWithBitmap(const TPathData& path, const ICanvasBitmap& bitmap, const TMatrix& bitmapToCanvas,
                          float opacity) override;
  TMatrix FLastBitmapFillMatrix;

 private:
  int FW, FH;
  double FScale;
  TAlphaColor FStrokeColor = 0xFF000000, FFillColor = 0xFF000000;
  TStrokeDash FDash = TStrokeDash::Solid;
  float FThickness = 1.0f, FFontSize = 9.0f;
  TStrokeCap FCap = TStrokeCap::Round;
  TBrushKind FStrokeKind = TBrushKind::Solid, FFillKind = TBrushKind::Solid;
  const ICanvasBitmap* FFillBitmap = nullptr;
  TMatrix FMatrix;
  TCanvasOp& record(const char* op, bool fill, float opacity);
};

// A recorded bitmap: its canvas records too.
class TRecordingBitmap : public ICanvasBitmap {
 public:
  TRecordingBitmap(int w, int h, double scale);
  int width() const override { return FCanvas.width(); }
  int height() const override { return FCanvas.height(); }
  double bitmapScale() const override { return FScale; }
  ICanvas& canvas() override { return FCanvas; }
  TRecordingCanvas& recording() { return FCanvas; }

 private:
  double FScale;
  TRecordingCanvas FCanvas;
};
