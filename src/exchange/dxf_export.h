// DXF export on the walk of SVG export: R12, a plain writer of lines and
// circles on one layer, or R14 through TDXFR14Writer with real arcs,
// ellipses and splines, one layer per palette row.
#pragma once

#include <string>

#include "exchange/export_settings.h"

class TPW_Path;
class TDXFR14Writer;

// The file's text; empty when the filter leaves nothing to write.
std::string dxfExportText(const TExportScene& scene, const TExportSettings& settings);

// One shape into an R12 entity list (LINE and CIRCLE lines) on `layerName`,
// y negated when flipY; or, with no R12 list, into the R14 writer on the
// layer of its palette row, y always turned upwards.
void addToDXF(const TPW_Path& shape, std::string* dxfR12, TDXFR14Writer* dxfR14, bool holesAsDots, float dotSize,
              const std::string& layerName, bool flipY);
