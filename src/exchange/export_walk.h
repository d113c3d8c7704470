// The walk shared by SVG and DXF export: which shapes go out, in which
// order, and which of them join into one path. Lines, curves and arcs of
// one palette row whose ends meet within 0.2 mm form a chain that starts
// at its true beginning; the walk works on copies, so reversing a shape to
// fit a chain leaves the drawing as it is.
#pragma once

#include <memory>
#include <vector>

#include "document/pw_path.h"
#include "exchange/export_settings.h"

// One element of the output: a lone shape, or a chain of two or more in
// path order, each turned to run from the previous one's end.
struct TExportRun {
  std::vector<std::unique_ptr<TPW_Path>> FShapes;
  bool isChain() const { return FShapes.size() > 1; }
};

// Ends closer than this join a chain.
inline constexpr double kChainJoinDistance = 0.2;

// The shapes the filter keeps (dimension shapes when hidden, hidden
// palette rows and layers, the selection, text and templates by the
// settings), grouped by layer in the document's layer order, chained.
std::vector<TExportRun> walkExportShapes(const TExportScene& scene, const TExportSettings& settings);

// The rectangle the runs cover: their path points, and each hole or dot
// written as a circle of radius `dotRadius` when asDots.
TRectF exportBounds(const std::vector<TExportRun>& runs, bool asDots, float dotRadius);

// Whether a hole or dot is written as a circle of the dot radius.
bool writtenAsDot(const TPW_Path& shape, bool holesAsDots);
