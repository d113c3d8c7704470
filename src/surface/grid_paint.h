// The grid: drawing its lines for a piece of canvas, and the key that tells
// when the cached bitmap of it must be drawn again.
#pragma once

#include <string>

#include "app/length_format.h"
#include "document/types.h"

class ICanvas;

// Draws the grid lines for the canvas area that starts at screen pixel
// (x0, y0) and is w by h pixels, into a canvas whose (0, 0) is that pixel.
void drawGridLines(ICanvas& canvas, double x0, double y0, double w, double h, const TPointF& scale,
                   const TPointF& offset, double tick, const TLengthFormatSettings& settings,
                   bool blackBackground);

// "W;H;c;unit;small;large;black" as the cache key.
std::string gridCacheKey(double W, double H, double canvasScale, const TLengthFormatSettings& settings,
                         bool blackBackground);

// How far the cache reaches beyond the canvas on each side, in pixels.
inline constexpr int kGridCacheMargin = 300;
inline constexpr int kGridSettleMilliseconds = 140;
