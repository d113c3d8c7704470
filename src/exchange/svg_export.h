// SVG export: one user unit is one millimetre, the page is the drawing's
// bounds, and the document's coordinates stay as they are. Lines, curves
// and arcs that chain are one "path"; every other shape is an element of
// its own kind.
#pragma once

#include <string>

#include "exchange/export_settings.h"

// The file's text; empty when the filter leaves nothing to write.
std::string svgExportText(const TExportScene& scene, const TExportSettings& settings);

// "#RRGGBB" of a colour, the alpha left out.
std::string svgColorText(TAlphaColor color);
