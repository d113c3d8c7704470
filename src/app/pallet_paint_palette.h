// The line palette as painting sees it.
#pragma once

#include "libraries/draw_pallet.h"
#include "surface/paint_palette.h"

class TPalletPaintPalette : public IPaintPalette {
 public:
  explicit TPalletPaintPalette(const TPalletList& list) : FList(list) {}
  int count() const override { return TPalletList::Count(); }
  TPaletteLook row(int index) const override {
    const TDrawPallet& r = FList[index];
    TPaletteLook look;
    look.FColor_BlackMode = r.FColor_BlackMode;
    look.FColor_WhiteMode = r.FColor_WhiteMode;
    look.FThickness = r.FThickness;
    look.FDash = r.FDash;
    look.FIsVisible = r.FIsVisible;
    look.FIgnoreInPrinting = r.FIgnoreInPrinting;
    return look;
  }

 private:
  const TPalletList& FList;
};
