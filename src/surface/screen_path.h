// A shape's path in canvas pixels, as the painter strokes it. Straight runs
// are thinned where their points lie closer together than the screen can
// show: a curve flattened for millimetres has points a third of a pixel
// apart when the whole drawing is in view, and each of them costs the
// stroker as much as a visible corner.
#pragma once

#include "document/path_data.h"
#include "document/types.h"

// A line-to is left out when it lies closer than kScreenPathMinStep to the
// last point kept and within kScreenPathTolerance of the straight line
// through that point and the next one; in pixels. Moves, curves, closes and the last
// point of each straight run are always kept.
inline constexpr double kScreenPathMinStep = 1.0;
inline constexpr double kScreenPathTolerance = 0.1;

// Writes `real` scaled by `scale` and moved by `offset` into `out`, reusing
// its storage, thinned as above.
void toScreenPath(const TPathData& real, const TPointF& scale, const TPointF& offset, TPathData& out);
