#include "surface/view_math.h"

#include <algorithm>
#include <cmath>

TPointF realToScreen(const TPointF& real, const TPointF& scale, const TPointF& offset) {
  return TPointF::fromDouble(double(real.x) * scale.x + offset.x, double(real.y) * scale.y + offset.y);
}

namespace {
double round3(double v) { return std::nearbyint(v * 1000.0) / 1000.0; }
}  // namespace

TPointF screenToReal(const TPointF& pixel, const TPointF& scale, const TPointF& offset) {
  if (scale.x == 0 || scale.y == 0) return TPointF();
  return TPointF::fromDouble(round3((double(pixel.x) - offset.x) / scale.x),
                             round3((double(pixel.y) - offset.y) / scale.y));
}

TRectF visibleRealRect(const TPointF& scale, const TPointF& offset, double w, double h) {
  if (scale.x == 0 || scale.y == 0) return TRectF();
  return TRectF(TPointF::fromDouble(-double(offset.x) / scale.x, -double(offset.y) / scale.y),
                TPointF::fromDouble((w - offset.x) / scale.x, (h - offset.y) / scale.y));
}

TPointF clampViewScale(const TPointF& scale) {
  if (scale.x < kMinViewScale || scale.y < kMinViewScale) return TPointF(kMinViewScale, kMinViewScale);
  if (scale.x > kMaxViewScale || scale.y > kMaxViewScale) return TPointF(kMaxViewScale, kMaxViewScale);
  return scale;
}

double wheelZoomFactor(int delta) { return std::pow(2.0, delta / 500.0); }

TViewPlacement zoomAround(const TPointF& scale, const TPointF& offset, const TPointF& pixel,
                          double factor) {
  const TPointF r = screenToReal(pixel, scale, offset);
  TViewPlacement v;
  v.scale = clampViewScale(TPointF::fromDouble(scale.x * factor, scale.y * factor));
  v.offset = offset + (pixel - realToScreen(r, v.scale, offset));
  return v;
}

TViewPlacement fitView(const TRectF& bounds, bool empty, double w, double h) {
  if (empty) return {TPointF(10, 10), TPointF(0, 0)};
  const TRectF b = bounds.normalized();
  const double left = double(b.Left) - 5, top = double(b.Top) - 5;
  const double width = std::max(b.width() + 10, 10.0);
  const double height = std::max(b.height() + 10, 10.0);
  double s = std::min(w / width, h / height);
  s = std::nearbyint((s + 0.05) * 10) / 10;
  TViewPlacement v;
  v.scale = TPointF::fromDouble(s, s);
  v.offset = TPointF::fromDouble(std::nearbyint(-left * s) - 5, std::nearbyint(-top * s) - 5);
  return v;
}

TViewPlacement fitInside(const TRectF& bounds, double w, double h) {
  const TRectF b = bounds.normalized();
  const double width = std::max(b.width() + 10, 10.0), height = std::max(b.height() + 10, 10.0);
  const double s = std::min(w / width, h / height);
  const double cx = (double(b.Left) + b.Right) / 2, cy = (double(b.Top) + b.Bottom) / 2;
  return {TPointF::fromDouble(s, s), TPointF::fromDouble(w / 2 - cx * s, h / 2 - cy * s)};
}

TViewPlacement sameViewResized(const TPointF& scale, const TPointF& offset, double w0, double h0,
                               double w, double h) {
  if (w0 <= 0 || h0 <= 0 || scale.x == 0 || scale.y == 0) return {scale, offset};
  const double k = std::min(w / w0, h / h0);
  const double cx = (w0 / 2 - offset.x) / scale.x, cy = (h0 / 2 - offset.y) / scale.y;
  const double sx = scale.x * k, sy = scale.y * k;
  return {TPointF::fromDouble(sx, sy), TPointF::fromDouble(w / 2 - cx * sx, h / 2 - cy * sy)};
}

const std::vector<double>& gridTickTable(TUnitMode unit) {
  static const std::vector<double> mm{0.1, 0.2, 0.5, 1, 2, 5, 10, 20, 50};
  static const std::vector<double> in = [] {
    std::vector<double> t;
    for (double f : {1.0 / 128, 1.0 / 64, 1.0 / 32, 1.0 / 16, 1.0 / 8, 1.0 / 4, 1.0 / 2, 1.0, 2.0})
      t.push_back(f * kMmPerInch);
    return t;
  }();
  return unit == TUnitMode::umIN ? in : mm;
}

double chooseGridTick(TUnitMode unit, double pixelsPerMm) {
  const auto& table = gridTickTable(unit);
  for (double tick : table)
    if (tick * pixelsPerMm >= 10.0) return tick;
  return table.back();
}

TGridLineStyle gridLineStyle(int counter, const TLengthFormatSettings& settings) {
  if (counter == settings.SmallTickInterval) return {TStrokeDash::Solid, 0.75f};
  if (counter == 0) return {TStrokeDash::Solid, 1.0f};
  return {TStrokeDash::Dash, 0.5f};
}

double firstGridLine(double left, double tick) {
  const double big = tick * 10;
  return std::nearbyint(left / big) * big - big;
}

double screenThickness(double thickness, double pixelsPerMm) {
  return (thickness - 0.5) + std::log10(pixelsPerMm) / 2;
}
