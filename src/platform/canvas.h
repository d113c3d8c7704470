// The drawing operations the paint code needs, and nothing more, so that the
// same scene can be painted on the screen, on a printer, into a preview or
// into a recording for tests. Coordinates are canvas pixels (logical pixels
// on the screen); thicknesses are pixels; opacity runs from 0 to 1.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "document/path_data.h"
#include "document/types.h"
#include "platform/raster_image.h"

enum class TBrushKind { None, Solid, Bitmap };
// The ends of a stroke: round unless asked otherwise.
enum class TStrokeCap { Round, Square };
enum class TTextAlign { Leading, Center, Trailing };

class ICanvasBitmap;

// A line with its own stroke, for drawing many at once.
struct TStrokedLine {
  TPointF a, b;
  TAlphaColor color = 0xFF000000;
  TStrokeDash dash = TStrokeDash::Solid;
  float thickness = 1;
};

class ICanvas {
 public:
  virtual ~ICanvas() = default;

  // Size in logical pixels, and device pixels per logical pixel (1 if the
  // canvas has no such notion).
  virtual int width() const = 0;
  virtual int height() const = 0;
  virtual double canvasScale() const { return 1.0; }

  // An off-screen bitmap has its own canvas between these two.
  virtual bool beginScene() = 0;
  virtual void endScene() = 0;

  virtual void clear(TAlphaColor color) = 0;

  virtual void setStroke(TAlphaColor color, TBrushKind kind, TStrokeDash dash, float thickness) = 0;
  virtual void setStrokeColor(TAlphaColor color) = 0;
  virtual void setStrokeDash(TStrokeDash dash) = 0;
  virtual void setStrokeThickness(float thickness) = 0;
  // Square ends draw much faster than round ones on short thick strokes
  // and look the same when they are only a few pixels wide. Stays until
  // changed again.
  virtual void setStrokeCap(TStrokeCap cap) { (void)cap; }
  virtual void setFill(TAlphaColor color, TBrushKind kind) = 0;
  // A bitmap brush (kind Bitmap); the bitmap is borrowed until the next setFill.
  virtual void setFillBitmap(const ICanvasBitmap* bitmap) = 0;
  virtual void setFontSize(float points) = 0;

  virtual void drawLine(const TPointF& a, const TPointF& b, float opacity) = 0;
  // Each line in its own stroke (solid brush), in order, all at one
  // opacity: the grid's hundreds of lines. The same picture as setStroke
  // and drawLine for each; a canvas may draw them faster. The stroke is
  // left undefined afterwards.
  virtual void drawStrokedLines(const std::vector<TStrokedLine>& lines, float opacity) {
    for (const TStrokedLine& l : lines) {
      setStroke(l.color, TBrushKind::Solid, l.dash, l.thickness);
      drawLine(l.a, l.b, opacity);
    }
  }
  virtual void drawEllipse(const TRectF& r, float opacity) = 0;
  virtual void fillEllipse(const TRectF& r, float opacity) = 0;
  // Circles of one radius at each centre, filled in the fill colour: the
  // dots of many holes at once. The same picture as a fillEllipse for each,
  // in order; a canvas may draw them faster.
  virtual void fillCircles(const std::vector<TPointF>& centres, float radius, float opacity) {
    for (const TPointF& c : centres) fillEllipse(circleBox(c, radius), opacity);
  }
  static TRectF circleBox(const TPointF& c, float radius) {
    return TRectF(c.x - radius, c.y - radius, c.x + radius, c.y + radius);
  }
  virtual void drawRect(const TRectF& r, float opacity) = 0;
  virtual void fillRect(const TRectF& r, float opacity) = 0;
  virtual void drawPath(const TPathData& path, float opacity) = 0;
  virtual void fillPath(const TPathData& path, float opacity) = 0;
  // Copies `src` (in the bitmap's device pixels) into `dst` (canvas pixels).
  // `fastStretch` trades smoothness for speed.
  virtual void drawBitmap(const ICanvasBitmap& bitmap, const TRectF& src, const TRectF& dst,
                          float opacity, bool fastStretch) = 0;
  virtual void fillText(const TRectF& r, const std::string& text, float opacity, TTextAlign horz,
                        TTextAlign vert) = 0;
  virtual float textWidth(const std::string& text) = 0;
  virtual float textHeight(const std::string& text) = 0;
  // The outline of the text laid out in `r`, for text set vertically.
  virtual TPathData textToPath(const std::string& text, const TRectF& r) = 0;

  virtual void setMatrix(const TMatrix& m) = 0;
  virtual TMatrix matrix() const = 0;

  // A bitmap of the same kind as this canvas: w by h logical pixels at
  // `scale` device pixels each, transparent.
  virtual std::unique_ptr<ICanvasBitmap> createBitmap(int w, int h, double scale) = 0;

  // ---- pictures: backdrops and leather fills ----
  // A bitmap with no transparency (what is painted on it is laid on black
  // where it leaves holes); drawn, it covers what is under it, which a
  // canvas may do as a plain copy.
  virtual std::unique_ptr<ICanvasBitmap> createOpaqueBitmap(int w, int h, double scale) {
    return createBitmap(w, h, scale);
  }
  // A bitmap holding the picture's pixels (one device pixel each); null
  // when this canvas shows no pictures.
  virtual std::unique_ptr<ICanvasBitmap> createBitmapFromImage(const TRasterImage& image) {
    (void)image;
    return nullptr;
  }
  // Fills the path with the bitmap repeated, its pixels laid on the canvas
  // through `bitmapToCanvas`. Nothing where the canvas shows no pictures.
  virtual void fillPathWithBitmap(const TPathData& path, const ICanvasBitmap& bitmap, const TMatrix& bitmapToCanvas,
                                  float opacity) {
    (void)path, (void)bitmap, (void)bitmapToCanvas, (void)opacity;
  }
};

class ICanvasBitmap {
 public:
  virtual ~ICanvasBitmap() = default;
  // Device pixels.
  virtual int width() const = 0;
  virtual int height() const = 0;
  virtual double bitmapScale() const = 0;
  virtual bool isEmpty() const { return width() <= 0 || height() <= 0; }
  virtual ICanvas& canvas() = 0;
};
