// The painter's view of the line palette: the forty rows of TPalletList as
// the painter reads them, both colours of each row, so that a shape is
// stroked with the colour of the background it is shown on.
#pragma once

#include "libraries/draw_pallet.h"
#include "surface/paint_palette.h"

class TPalletListPaintPalette : public IPaintPalette {
 public:
  // Borrows the list; rows edited in it show at the next paint.
  explicit TPalletListPaintPalette(const TPalletList& list) : FList(list) {}
  TPalletListPaintPalette(const TPalletListPaintPalette&) = delete;
  TPalletListPaintPalette& operator=(const TPalletListPaintPalette&) = delete;

  int count() const override { return TPalletList::Count(); }
  TPaletteLook row(int index) const override;

 private:
  const TPalletList& FList;
};

// The look of one palette row.
TPaletteLook paletteLookOf(const TDrawPallet& row);

// The colour of stitching holes on a background: row 36's, or the factory
// one when there is no palette.
TAlphaColor stitchingHoleColor(const IPaintPalette* palette, bool blackBackground);
