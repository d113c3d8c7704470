// The rulers beside the canvas: ticks on the grid's spacing, heavy ones
// numbered in the chosen unit, and a mark where the pointer is.
#include <cmath>
#include <string>

#include "app/frm_pelw.h"
#include "document/number_text.h"
#include "platform/canvas.h"
#include "surface/view_colors.h"
#include "surface/view_math.h"

namespace {

// The number at a heavy tick: millimetres as a plain number, inches as a
// fraction.
std::string rulerLabel(double mm, const TLengthFormatSettings& s) {
  if (s.isInch()) return formatInchFraction(mm / kMmPerInch, 64, false);
  return floatToText(std::nearbyint(mm * 1000.0) / 1000.0);
}

struct TRulerAxis {
  double scale, offset;  // of this axis
  double length;         // canvas pixels along the ruler
  double pointer;        // pointer position in pixels along the ruler
};

template <typename DrawTick, typename DrawLabel>
void walkTicks(const TRulerAxis& axis, double tick, const TLengthFormatSettings& s, DrawTick tickAt,
               DrawLabel labelAt) {
  if (tick <= 0 || axis.scale <= 0) return;
  const double start = (0 - axis.offset) / axis.scale;
  const double end = (axis.length - axis.offset) / axis.scale;
  if (!((end - start) / tick < 100000)) return;
  const int large = s.LargeTickInterval > 0 ? s.LargeTickInterval : 10;
  int counter = 0;
  for (double real = firstGridLine(start, tick); real <= end; real += tick) {
    const double p = real * axis.scale + axis.offset;
    const double size = counter == 0 ? 1.0 : counter == s.SmallTickInterval ? 0.6 : 0.3;
    tickAt(p, size);
    if (counter == 0) labelAt(p, rulerLabel(real, s));
    if (++counter >= large) counter = 0;
  }
}

}  // namespace

void TfrmPelw::pbRulerXPaint(ICanvas& c) {
  const float h = static_cast<float>(c.height());
  c.clear(rulerStripBackground(FIsBlackBackgroundMode, FViewOptions.FWhiteBGColor));
  const double tick = chooseGridTick(FViewOptions.FUnitMode, FScale.x);
  c.setFontSize(8);
  c.setFill(FStrokeDefs.RulerTextColor, TBrushKind::Solid);
  walkTicks(
      {FScale.x, FOffset.x, double(c.width()), FLastMousePos.x}, tick, lengthSettings(),
      [&](double p, double size) {
        c.setStroke(FStrokeDefs.RulerColor, TBrushKind::Solid, TStrokeDash::Solid, FStrokeDefs.RulerThickness);
        const float x = static_cast<float>(std::floor(p) + 0.5);
        c.drawLine(TPointF(x, h), TPointF(x, static_cast<float>(h - h * size)), 1.0f);
      },
      [&](double p, const std::string& label) {
        c.fillText(TRectF(static_cast<float>(p + 2), 0, static_cast<float>(p + 60), h * 0.55f), label,
                   1.0f, TTextAlign::Leading, TTextAlign::Leading);
      });
  c.setStroke(FStrokeDefs.SelectionColor, TBrushKind::Solid, TStrokeDash::Solid, 1);
  c.drawLine(TPointF(FLastMousePos.x, 0), TPointF(FLastMousePos.x, h), 1.0f);
}

void TfrmPelw::pbRulerYPaint(ICanvas& c) {
  const float w = static_cast<float>(c.width());
  c.clear(rulerStripBackground(FIsBlackBackgroundMode, FViewOptions.FWhiteBGColor));
  const double tick = chooseGridTick(FViewOptions.FUnitMode, FScale.y);
  c.setFontSize(8);
  c.setFill(FStrokeDefs.RulerTextColor, TBrushKind::Solid);
  walkTicks(
      {FScale.y, FOffset.y, double(c.height()), FLastMousePos.y}, tick, lengthSettings(),
      [&](double p, double size) {
        c.setStroke(FStrokeDefs.RulerColor, TBrushKind::Solid, TStrokeDash::Solid, FStrokeDefs.RulerThickness);
        const float y = static_cast<float>(std::floor(p) + 0.5);
        c.drawLine(TPointF(w, y), TPointF(static_cast<float>(w - w * size), y), 1.0f);
      },
      [&](double p, const std::string& label) {
        c.fillText(TRectF(1, static_cast<float>(p + 1), w * 0.75f, static_cast<float>(p + 14)), label, 1.0f,
                   TTextAlign::Leading, TTextAlign::Leading);
      });
  c.setStroke(FStrokeDefs.SelectionColor, TBrushKind::Solid, TStrokeDash::Solid, 1);
  c.drawLine(TPointF(0, FLastMousePos.y), TPointF(w, FLastMousePos.y), 1.0f);
}
