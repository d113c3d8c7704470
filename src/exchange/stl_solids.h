// The two solids of the STL export: "3D Pattern", a plate of each closed
// outline with its holes, bevelled edges and engraved text; and
// "Positioning Jig", a block with a pocket of the pattern's shape.
#pragma once

#include <string>
#include <vector>

#include "exchange/stl_outlines.h"
#include "exchange/stl_settings.h"
#include "exchange/stl_types.h"

struct TStlResult {
  TTriangleList Body;
  // The letters of a multi-colour print, solids of their own.
  TTriangleList Text;
  // Plates that came out plain because their edges did not fit.
  int SkippedRegions = 0;
  // Plates that gave no solid at all.
  int FailedRegions = 0;
  int OpenShapes = 0;
  // Warnings as the builder gives them ("Bevel total ...").
  std::vector<std::string> Warnings;
  // The phrase key of why nothing was built, or empty.
  std::string ErrorKey;
};

// The two solids from outlines that are not too detailed.
TStlResult buildPatternSolid(const TStlOutlines& in, const TSTLExportSettings& settings);
TStlResult buildJigSolid(const TStlOutlines& in, const TSTLTemplateSettings& jig);

// The solid the settings' mode asks for, from the shapes; with the count of
// open shapes among them.
TStlResult buildStlSolid(const std::vector<const TPW_Path*>& shapes, const TSTLExportSettings& settings);
