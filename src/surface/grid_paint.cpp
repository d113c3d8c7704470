// The grid and its bitmap cache. While the view moves, the cached bitmap
// is shown stretched and shifted; 140 ms after the last movement it is
// drawn again, sharp.
#include "surface/grid_paint.h"

#include <cmath>
#include <cstdio>
#include <vector>

#include "app/frm_pelw.h"
#include "platform/canvas.h"
#include "surface/scene_painter.h"
#include "surface/view_colors.h"
#include "surface/view_math.h"

void drawGridLines(ICanvas& c, double x0, double y0, double w, double h, const TPointF& scale,
                   const TPointF& offset, double tick, const TLengthFormatSettings& settings,
                   bool black) {
  if (tick <= 0 || scale.x <= 0 || scale.y <= 0) return;
  const TAlphaColor colour = gridLineColor(black);
  const int large = settings.LargeTickInterval > 0 ? settings.LargeTickInterval : 10;
  std::vector<TStrokedLine> all;
  auto lines = [&](double start, double end, double s, double o, double origin, bool vertical) {
    int counter = 0;
    // A guard against a runaway loop on absurd input.
    const double count = (end - start) / tick;
    if (!(count < 100000)) return;
    for (double real = firstGridLine(start, tick); real <= end; real += tick) {
      const TGridLineStyle st = gridLineStyle(counter, settings);
      const float p = static_cast<float>(real * s + o - origin);
      TStrokedLine l;
      l.a = vertical ? TPointF(p, 0) : TPointF(0, p);
      l.b = vertical ? TPointF(p, static_cast<float>(h)) : TPointF(static_cast<float>(w), p);
      l.color = colour;
      l.dash = st.dash;
      l.thickness = st.thickness;
      all.push_back(l);
      if (++counter >= large) counter = 0;
    }
  };
  lines((x0 - offset.x) / scale.x, (x0 + w - offset.x) / scale.x, scale.x, offset.x, x0, true);
  lines((y0 - offset.y) / scale.y, (y0 + h - offset.y) / scale.y, scale.y, offset.y, y0, false);
  c.drawStrokedLines(all, 0.4f);
}

std::string gridCacheKey(double W, double H, double canvasScale, const TLengthFormatSettings& s,
                         bool black) {
  char buf[160];
  std::snprintf(buf, sizeof buf, "%.1f;%.1f;%.3f;%d;%d;%d;%d", W, H, canvasScale,
                static_cast<int>(s.UnitMode), s.SmallTickInterval, s.LargeTickInterval, black ? 1 : 0);
  return buf;
}

void TScenePainter::paintGrid() {
  const int w = C.width(), h = C.height();
  if (w <= 0 || h <= 0) return;
  double c = C.canvasScale();
  if (!(c > 0)) c = 1;
  const double W = w + 2 * kGridCacheMargin, H = h + 2 * kGridCacheMargin;
  const std::string key = gridCacheKey(W, H, c, F.lengthSettings(), FBlack);
  const double m = kGridCacheMargin;

  const bool usable = F.FGridCache && !F.FGridCache->isEmpty() && F.FGridCacheScale.x != 0 &&
                      F.FGridCacheScale.y != 0;
  TRectF dest;
  double ratio = 1;
  bool viewChanged = false;
  if (usable) {
    // The real rectangle the cache covers, in today's pixels. Worked out
    // unrounded: while the view stands still it must come back exactly to
    // whole pixels, or the bitmap is stretched by a hair, which blurs it
    // and costs Qt several times a plain copy.
    auto toToday = [](double px, double cacheScale, double cacheOffset, double scale, double offset) {
      return static_cast<float>((px - cacheOffset) / cacheScale * scale + offset);
    };
    const TPointF cs = F.FGridCacheScale, co = F.FGridCacheOffset;
    dest = TRectF(toToday(-m, cs.x, co.x, F.FScale.x, F.FOffset.x), toToday(-m, cs.y, co.y, F.FScale.y, F.FOffset.y),
                  toToday(w + m, cs.x, co.x, F.FScale.x, F.FOffset.x),
                  toToday(h + m, cs.y, co.y, F.FScale.y, F.FOffset.y));
    ratio = double(F.FScale.x) / F.FGridCacheScale.x;
    viewChanged = !F.FScale.identical(F.FGridCacheScale) || !F.FOffset.identical(F.FGridCacheOffset);
  }
  const bool keyChanged = !usable || key != F.FGridCacheKey;
  const bool covers = dest.Left <= 0 && dest.Top <= 0 && dest.Right >= w && dest.Bottom >= h;
  const bool outOfRange = ratio < 0.5 || ratio > 2 || !covers;
  if (keyChanged || (outOfRange && !viewChanged)) {
    // The bitmap is drawn again in place while its size holds: a fresh one
    // of some sixteen megabytes costs more in page faults than the drawing.
    const int bw = static_cast<int>(std::lround(W * c)), bh = static_cast<int>(std::lround(H * c));
    if (!F.FGridCache || F.FGridCache->width() != bw || F.FGridCache->height() != bh ||
        F.FGridCache->bitmapScale() != c)
      F.FGridCache = C.createBitmap(static_cast<int>(W), static_cast<int>(H), c);
    if (!F.FGridCache) return;
    F.FGridCacheScale = F.FScale;
    F.FGridCacheOffset = F.FOffset;
    ICanvas& bc = F.FGridCache->canvas();
    if (bc.beginScene()) {
      bc.clear(0x00000000);
      drawGridLines(bc, -m, -m, W, H, F.FScale, F.FOffset, F.FGridTick, F.lengthSettings(), FBlack);
      bc.endScene();
    }
    F.FGridCacheKey = key;
    dest = TRectF(static_cast<float>(-m), static_cast<float>(-m), static_cast<float>(w + m),
                  static_cast<float>(h + m));
  }
  const ICanvasBitmap& bmp = *F.FGridCache;
  C.drawBitmap(bmp, TRectF(0, 0, static_cast<float>(bmp.width()), static_cast<float>(bmp.height())),
               dest, 1.0f, true);
  if (!F.FScale.identical(F.FGridCacheScale) || !F.FOffset.identical(F.FGridCacheOffset)) {
    if (!F.FGridSettleTimer) {
      F.FGridSettleTimer = createTimer();
      F.FGridSettleTimer->setInterval(kGridSettleMilliseconds);
      TfrmPelw* form = &F;
      F.FGridSettleTimer->setOnTimer([form] {
        form->FGridSettleTimer->stop();
        form->FGridCacheKey.clear();
        form->RepaintCanvas();
      });
    }
    F.FGridSettleTimer->stop();
    F.FGridSettleTimer->start();
  }
}
