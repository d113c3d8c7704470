// Switching the whole program between millimetres and inches.
#include "app/frm_pelw.h"
#include "app/number_box.h"
#include "app/unit_captions.h"

void TfrmPelw::setUnitMode(TUnitMode unit) {
  FViewOptions.FUnitMode = unit;
  FViewOptions.FLengthFormatSettings = TLengthFormatSettings::defaultsFor(unit);
  FIsInch = unit == TUnitMode::umIN;
  applyUnitToCaptions(FUnitLabels, FIsInch, FMmInchDict);
  for (INumberBox* box : FNBList)
    if (box) convertLengthBox(*box, FViewOptions.FLengthFormatSettings);
  // The grid's spacing comes from the unit's own table.
  FPrevScale = TPointF();
  refreshStatus();
  RepaintCanvas();
}
