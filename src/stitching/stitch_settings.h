// The settings a stitch row is laid with: how the pitch is found, how
// corners are treated, and the search's limits. The stitch panel and the
// options file feed one of these; every field starts at its factory value.
#pragma once

// Which of the three pitch buttons is down.
enum class TPitchMode {
  Auto,   // rbAutoPitchAdjust: search a pitch near the wanted one that closes the row
  Fixed,  // rbFixedPitch: the wanted pitch as it stands
  Count   // rbSetNumOfHoles: a given number of holes over the route
};

// Index of cmbCornerMode.
enum TCornerMode : int {
  kCornerSmart = 0,         // even division per straight run, holes forced onto corners
  kCornerAllJunctions = 1,  // each shape divided by itself, a hole on every joint
  kCornerUniform = 2        // divider walk with the pitch search
};

struct TStitchSettings {
  TPitchMode FPitchMode = TPitchMode::Auto;
  int FCornerMode = kCornerSmart;       // option "CornerMode" (FAutoPrickMode)
  float FCornerAngleThreshold = 160.0f;  // nbCornerAngle, 1 to 179 degrees
  bool FForceFitLastPrick = true;        // move the last hole onto the end point
  int FAutoPitchSteps = 50;              // rounds of the search
  float FAutoPitchPrecision = 0.001f;    // pitch step of the search, mm
  float FAutoPitchStopGap = 0.1f;        // stop once the best gap is below this, mm
  float FPitch = 4.0f;                   // nbFixedPitchLen1, in mm
  float FNumOfHoles = 10.0f;             // nbNumOfStitchingHoles
  bool FReduceOneBlade = false;          // chkReduceOneBlade

  bool isAuto() const { return FPitchMode == TPitchMode::Auto; }
  bool isFixed() const { return FPitchMode == TPitchMode::Fixed; }
  bool isCount() const { return FPitchMode == TPitchMode::Count; }
  // The corner methods run only when the pitch is searched and the corner
  // mode asks for one.
  bool usesCornerMethod() const { return isAuto() && FCornerMode < kCornerUniform; }
  // nbCornerAngle's limits.
  static float clampCornerAngle(float degrees) {
    return degrees < 1.0f ? 1.0f : (degrees > 179.0f ? 179.0f : degrees);
  }
};
