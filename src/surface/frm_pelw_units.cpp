// Switching the whole program between millimetres and inches.
#include "app/frm_pelw.h"
#include "app/number_box.h"
#include "app/unit_captions.h"

void TfrmPelw::setUnitMode(TUnitMode unit) {
  // The boxes hold their values in the unit they show: only a change of
  // unit converts them.
  const bool changed = unit != FViewOptions.FUnitMode;
  FViewOptions.FUnitMode = unit;
  FViewOptions.FLengthFormatSettings = TLengthFormatSettings::defaultsFor(unit);
  FIsInch = unit == TUnitMode::umIN;
  applyUnitToCaptions(FUnitLabels, FIsInch, FMmInchDict);
  for (INumberBox* box : FNBList)
    if (box && changed) convertLengthBox(*box, FViewOptions.FLengthFormatSettings);
  // The grid's spacing comes from the unit's own table.
  FPrevScale = TPointF();
  refreshStatus();
  RepaintCanvas();
}
