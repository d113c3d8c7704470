// The colours of the canvas for each background mode, and the fixed stroke
// settings. A drawing is legible on both the black and the white canvas:
// every colour here has a value for each.
#pragma once

#include "document/types.h"

struct TStrokeDefs {
  TAlphaColor RulerColor;
  TAlphaColor RulerTextColor;
  TAlphaColor SelectionColor;
  float SelectionThickness;
  float DotRadius;  // mm
  float RulerThickness;
  TAlphaColor RulerPathColor;
  TAlphaColor OffsetTempColor;

  static TStrokeDefs forBackground(bool black);
};

// Colours that follow the background mode.
struct TModeColors {
  TAlphaColor FHandleColor;
  TAlphaColor FColor_Drawing;
  TAlphaColor FColor_Centerline;
  TAlphaColor FMandalaSectionColor;
  TAlphaColor FMandalaSectionColor2;

  static TModeColors forBackground(bool black);
};

inline constexpr TAlphaColor kDefaultWhiteBGColor = 0xFFF8F8F8;
inline constexpr TAlphaColor kBlackBGColor = 0xFF000000;
inline constexpr TAlphaColor kBlackRulerStripColor = 0xFF303030;

// The canvas: black, the white option, or plain white on paper.
TAlphaColor canvasBackground(bool black, bool printing, TAlphaColor whiteBGColor);
TAlphaColor rulerStripBackground(bool black, TAlphaColor whiteBGColor);
// Grid lines are drawn against the background: white on black, black on white.
inline TAlphaColor gridLineColor(bool black) { return black ? claWhite : claBlack; }
// Handles of dots and holes: the same rule.
inline TAlphaColor holeHandleColor(bool black) { return black ? claWhite : claBlack; }
