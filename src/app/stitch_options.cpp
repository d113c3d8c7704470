#include "app/stitch_options.h"

#include <algorithm>
#include <cmath>

#include "app/frm_pelw.h"

namespace {

float finiteOr(float value, float fallback) { return std::isfinite(value) ? value : fallback; }

}  // namespace

void stitchSettingsFromOptions(const TPW_Options& o, TStitchSettings& s, bool atStartUp) {
  const TStitchSettings factory;
  s.FCornerMode = std::clamp(o.FAutoPrickMode, int(kCornerSmart), int(kCornerUniform));
  s.FCornerAngleThreshold =
      TStitchSettings::clampCornerAngle(finiteOr(o.FCornerAngleThreshold, factory.FCornerAngleThreshold));
  s.FForceFitLastPrick = o.FForceFitLastPrick;
  s.FAutoPitchSteps = std::max(0, o.FAutoPitchSteps);
  s.FAutoPitchPrecision = finiteOr(o.FAutoPitchPrecision, factory.FAutoPitchPrecision);
  s.FAutoPitchStopGap = finiteOr(o.FAutoPitchStopGap, factory.FAutoPitchStopGap);
  if (atStartUp) s.FPitchMode = o.FIsFixedPitchDefault ? TPitchMode::Fixed : TPitchMode::Auto;
}

void stitchSettingsToOptions(const TStitchSettings& s, TPW_Options& o) {
  o.FAutoPrickMode = std::clamp(s.FCornerMode, int(kCornerSmart), int(kCornerUniform));
  o.FCornerAngleThreshold = TStitchSettings::clampCornerAngle(s.FCornerAngleThreshold);
}

void TfrmPelw::stitchOptionsChanged(bool atStartUp) {
  stitchSettingsFromOptions(FOptions, FStitchSettings, atStartUp);
}
