#include "surface/view_colors.h"

TStrokeDefs TStrokeDefs::forBackground(bool black) {
  TStrokeDefs d;
  d.RulerColor = black ? 0xFFFFA500 : 0xFFFF8C00;
  d.RulerTextColor = black ? 0xFFFFFFFF : 0xFF333333;
  d.SelectionColor = 0xFFFF5500;
  d.SelectionThickness = 2.0f;
  d.DotRadius = 0.45f;
  d.RulerThickness = 1.0f;
  d.RulerPathColor = 0xFF0000FF;
  d.OffsetTempColor = black ? 0xFFFF00FF : 0xFFBB00BB;
  return d;
}

TModeColors TModeColors::forBackground(bool black) {
  TModeColors c;
  c.FHandleColor = black ? 0xFFFFFFFF : 0xFF666666;
  c.FColor_Drawing = black ? 0xFF00FFFF : 0xFF00BBBB;
  c.FColor_Centerline = black ? 0xFFFFC0CB : 0xFFFF4500;
  c.FMandalaSectionColor = black ? 0xFFFFFFFF : 0xFFA9A9A9;
  c.FMandalaSectionColor2 = 0xFFFF0000;
  return c;
}

TAlphaColor canvasBackground(bool black, bool printing, TAlphaColor whiteBGColor) {
  if (printing) return claWhite;
  return black ? kBlackBGColor : whiteBGColor;
}

TAlphaColor rulerStripBackground(bool black, TAlphaColor whiteBGColor) {
  return black ? kBlackRulerStripColor : whiteBGColor;
}
