// The arithmetic of the view: millimetres to canvas pixels and back, zoom
// limits, the wheel step, fitting a drawing into the canvas, and the choice
// of grid spacing. Free functions over plain values, so that the controller,
// the printer and the tests share one version of each rule.
#pragma once

#include <vector>

#include "app/length_format.h"
#include "document/types.h"

// Zoom limits for the wheel and gestures, in pixels per millimetre.
inline constexpr float kMinViewScale = 0.5f;
inline constexpr float kMaxViewScale = 200.0f;

// real * scale + offset, member by member, without rounding.
TPointF realToScreen(const TPointF& real, const TPointF& scale, const TPointF& offset);
// (pixel - offset) / scale, each member rounded to three decimals (ties to even).
TPointF screenToReal(const TPointF& pixel, const TPointF& scale, const TPointF& offset);
// The millimetres a canvas of w by h pixels shows.
TRectF visibleRealRect(const TPointF& scale, const TPointF& offset, double w, double h);

// Keeps a scale inside the limits; a value outside sets both members.
TPointF clampViewScale(const TPointF& scale);
// The factor one wheel event of `delta` zooms by: 2 ^ (delta / 500).
double wheelZoomFactor(int delta);

struct TViewPlacement {
  TPointF scale;
  TPointF offset;
};
// Scale by `factor` (then clamped) keeping the real point under `pixel` where it is.
TViewPlacement zoomAround(const TPointF& scale, const TPointF& offset, const TPointF& pixel,
                          double factor);
// Fits `bounds` with 5 mm margins into w by h pixels. With `empty` the view
// returns to 10 pixels per millimetre with the origin at the top left.
TViewPlacement fitView(const TRectF& bounds, bool empty, double w, double h);
// Fits `bounds` with 5 mm margins wholly inside w by h pixels, centred, at
// the exact scale (fitView rounds its scale up, which may cut off an edge).
TViewPlacement fitInside(const TRectF& bounds, double w, double h);
// The same middle of the picture seen on a w0 by h0 canvas, shown whole on
// a w by h one.
TViewPlacement sameViewResized(const TPointF& scale, const TPointF& offset, double w0, double h0,
                               double w, double h);

// Grid spacings in millimetres, finest first: 0.1 mm ... 50 mm, or in
// inches 1/128 in ... 2 in.
const std::vector<double>& gridTickTable(TUnitMode unit);
// The finest spacing that is at least 10 pixels apart, or the largest one.
double chooseGridTick(TUnitMode unit, double pixelsPerMm);

// The style of one grid line by its counter: the middle line, the heavy
// line, the light dashed line.
struct TGridLineStyle {
  TStrokeDash dash;
  float thickness;
};
TGridLineStyle gridLineStyle(int counter, const TLengthFormatSettings& settings);
// Real coordinate of the first grid line at or before `left`: aligned to ten ticks.
double firstGridLine(double left, double tick);

// The pen thickness a shape gets on the screen: grows gently with the zoom.
double screenThickness(double thickness, double pixelsPerMm);
