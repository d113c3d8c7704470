#include "platform/recording_canvas.h"

#include <cmath>

std::vector<const TCanvasOp*> TRecordingCanvas::ops(const std::string& op) const {
  std::vector<const TCanvasOp*> out;
  for (const auto& o : FOps)
    if (o.op == op) out.push_back(&o);
  return out;
}

TCanvasOp& TRecordingCanvas::record(const char* op, bool fill, float opacity) {
  TCanvasOp o;
  o.op = op;
  o.opacity = opacity;
  o.color = fill ? FFillColor : FStrokeColor;
  o.brush = fill ? FFillKind : FStrokeKind;
  o.dash = FDash;
  o.thickness = FThickness;
  o.cap = FCap;
  o.fontSize = FFontSize;
  if (fill && FFillKind == TBrushKind::Bitmap) o.bitmap = FFillBitmap;
  FOps.push_back(std::move(o));
  return FOps.back();
}

bool TRecordingCanvas::beginScene() {
  ++FScenes;
  return true;
}

void TRecordingCanvas::clear(TAlphaColor color) {
  TCanvasOp& o = record("clear", false, 1.0f);
  o.color = color;
  if (FOnOp) FOnOp(o);
}

void TRecordingCanvas::setStroke(TAlphaColor color, TBrushKind kind, TStrokeDash dash,
                                 float thickness) {
  FStrokeColor = color;
  FStrokeKind = kind;
  FDash = dash;
  FThickness = thickness;
}

void TRecordingCanvas::setFill(TAlphaColor color, TBrushKind kind) {
  FFillColor = color;
  FFillKind = kind;
  FFillBitmap = nullptr;
}

void TRecordingCanvas::setFillBitmap(const ICanvasBitmap* bitmap) {
  FFillKind = TBrushKind::Bitmap;
  FFillBitmap = bitmap;
}

#define PW_RECORD(name, fill, opacity, fields) \
  do {                                         \
    TCanvasOp& o = record(name, fill, opacity); \
    fields;                                    \
    if (FOnOp) FOnOp(o);                       \
  } while (0)

void TRecordingCanvas::drawLine(const TPointF& a, const TPointF& b, float opacity) {
  PW_RECORD("line", false, opacity, (o.a = a, o.b = b));
}
void TRecordingCanvas::drawEllipse(const TRectF& r, float opacity) {
  PW_RECORD("drawEllipse", false, opacity, o.rect = r);
}
void TRecordingCanvas::fillEllipse(const TRectF& r, float opacity) {
  PW_RECORD("fillEllipse", true, opacity, o.rect = r);
}
void TRecordingCanvas::drawRect(const TRectF& r, float opacity) {
  PW_RECORD("drawRect", false, opacity, o.rect = r);
}
void TRecordingCanvas::fillRect(const TRectF& r, float opacity) {
  PW_RECORD("fillRect", true, opacity, o.rect = r);
}
void TRecordingCanvas::drawPath(const TPathData& path, float opacity) {
  PW_RECORD("drawPath", false, opacity, o.path = path);
}
void TRecordingCanvas::fillPath(const TPathData& path, float opacity) {
  PW_RECORD("fillPath", true, opacity, o.path = path);
}
void TRecordingCanvas::drawBitmap(const ICanvasBitmap& bitmap, const TRectF& src, const TRectF& dst,
                                  float opacity, bool fastStretch) {
  PW_RECORD("bitmap", false, opacity,
            (o.source = src, o.rect = dst, o.fastStretch = fastStretch, o.bitmap = &bitmap));
}
void TRecordingCanvas::fillText(const TRectF& r, const std::string& text, float opacity,
                                TTextAlign, TTextAlign) {
  PW_RECORD("text", true, opacity, (o.rect = r, o.text = text));
}
void TRecordingCanvas::setMatrix(const TMatrix& m) {
  FMatrix = m;
  PW_RECORD("matrix", false, 1.0f, (void)0);
}

void TRecordingCanvas::fillPathWithBitmap(const TPathData& path, const ICanvasBitmap& bitmap,
                                          const TMatrix& bitmapToCanvas, float opacity) {
  FLastBitmapFillMatrix = bitmapToCanvas;
  PW_RECORD("fillPathBitmap", true, opacity, (o.path = path, o.bitmap = &bitmap));
}

#undef PW_RECORD

float TRecordingCanvas::textWidth(const std::string& text) {
  return FCharWidth * static_cast<float>(text.size());
}

float TRecordingCanvas::textHeight(const std::string&) { return FLineHeight; }

TPathData TRecordingCanvas::textToPath(const std::string& text, const TRectF& r) {
  TPathData p;
  p.MoveTo(r.topLeft());
  p.LineTo(TPointF(r.Left + textWidth(text), r.Top));
  return p;
}

std::unique_ptr<ICanvasBitmap> TRecordingCanvas::createBitmap(int w, int h, double scale) {
  return std::make_unique<TRecordingBitmap>(w, h, scale);
}

std::unique_ptr<ICanvasBitmap> TRecordingCanvas::createBitmapFromImage(const TRasterImage& image) {
  if (image.isEmpty()) return nullptr;
  return std::make_unique<TRecordingBitmap>(image.FWidth, image.FHeight, 1.0);
}

TRecordingBitmap::TRecordingBitmap(int w, int h, double scale)
    : FScale(scale),
      FCanvas(static_cast<int>(std::lround(w * scale)), static_cast<int>(std::lround(h * scale)),
              scale) {}
