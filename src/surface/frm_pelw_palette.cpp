// The controller's line palette as the view sees it.
#include "app/frm_pelw.h"

void TfrmPelw::palletListChanged() {
  FColor_StitchingHole = stitchingHoleColor(FPaintPalette, FIsBlackBackgroundMode);
  RepaintCanvas();
}
