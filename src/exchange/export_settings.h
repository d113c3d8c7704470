// What one SVG or DXF export is written with, and the drawing it reads.
#pragma once

#include "document/types.h"

class TShapeList;
class TPalletList;
struct TPW_Options;

struct TExportSettings {
  // Kept in the options file.
  bool FHolesAsDots = true;    // stitching holes as circles of FDotRadius
  float FDotRadius = 0.5f;     // half the dialog's diameter
  bool FWithText = false;      // text and dimension shapes
  bool FWithTemplates = false; // "OTHER" shapes, the repository templates
  bool FInvertY = true;        // DXF R12 only; R14 always turns y upwards
  bool FUseR14 = true;
  // The dialog's own switches, kept for the run of the program only.
  bool FOnlySelected = false;
  bool FSkipHiddenLineTypes = true;
  bool FNoStrokeDash = true;  // SVG strokes all solid
};

// The switches kept in the options, with the run-only ones left at `run`'s.
TExportSettings exportSettingsFrom(const TPW_Options& options, const TExportSettings& run = {});
// Puts the kept switches back into the options.
void exportSettingsInto(const TExportSettings& s, TPW_Options& options);

// The drawing an export reads; nothing in it is changed.
struct TExportScene {
  const TShapeList& FList;
  const TPalletList& FPallet;
  TAlphaColor FHoleColor;  // every hole written on its own takes this colour
  bool FShowDimensionShapes = true;
};
