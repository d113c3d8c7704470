// What painting needs of the line palette: for a row, its colour on each
// background, thickness, dash and whether its shapes show and print. The
// controller hands the painter one of these; rows are looked up by a
// shape's FPalletIndex.
#pragma once

#include "document/types.h"

struct TPaletteLook {
  TAlphaColor FColor_BlackMode = 0xFFFFFFFF;
  TAlphaColor FColor_WhiteMode = 0xFF000000;
  float FThickness = 2;
  TStrokeDash FDash = TStrokeDash::Solid;
  bool FIsVisible = true;
  bool FIgnoreInPrinting = false;

  TAlphaColor colorFor(bool blackBackground) const {
    return blackBackground ? FColor_BlackMode : FColor_WhiteMode;
  }
};

class IPaintPalette {
 public:
  virtual ~IPaintPalette() = default;
  virtual int count() const = 0;
  // Row `index`, 0 <= index < count().
  virtual TPaletteLook row(int index) const = 0;
  bool contains(int index) const { return index >= 0 && index < count(); }
};

// Rows used by the view itself.
inline constexpr int kScaleBarPaletteRow = 38;
