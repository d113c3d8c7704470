#include "surface/pallet_paint_palette.h"

TPaletteLook paletteLookOf(const TDrawPallet& row) {
  TPaletteLook look;
  look.FColor_BlackMode = row.FColor_BlackMode;
  look.FColor_WhiteMode = row.FColor_WhiteMode;
  look.FThickness = row.FThickness;
  look.FDash = row.FDash;
  look.FIsVisible = row.FIsVisible;
  look.FIgnoreInPrinting = row.FIgnoreInPrinting;
  return look;
}

TPaletteLook TPalletListPaintPalette::row(int index) const {
  if (!FList.validIndex(index)) return TPaletteLook{};
  return paletteLookOf(FList[index]);
}

TAlphaColor stitchingHoleColor(const IPaintPalette* palette, bool black) {
  if (palette && palette->contains(kStitchHolePalletIndex))
    return palette->row(kStitchHolePalletIndex).colorFor(black);
  const TDrawPallet factory = factoryPallet(kStitchHolePalletIndex);
  return black ? factory.FColor_BlackMode : factory.FColor_WhiteMode;
}
