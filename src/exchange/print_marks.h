// What a print adds to the drawing: on each sheet the masked margins, the
// marks where tiles overlap and the two 100 mm scales; over the drawing in
// the preview and on the canvas, the pages themselves.
#pragma once

#include <string>

#include "document/types.h"

class ICanvas;
class TPrintLayout;

// Tile marks are red.
inline constexpr TAlphaColor kTileMarkColor = 0xFFFF0000;

// On the device canvas of sheet `page`, whose drawing lies at `scale` and
// `offset` (device pixels = millimetres * scale + offset), sheet corner at
// (0, 0): the margins masked when tiling or not printing into them, the
// tile marks when tiling, the scales at the page's corner.
void paintSheetMarks(ICanvas& canvas, const TPrintLayout& layout, int page, const TPointF& scale,
                     const TPointF& offset);

// "A1", "A2", ... "B1": the tile's row as letters, its column as a number.
std::string tileName(int col, int row);

// The pages over the drawing in the preview: printed ones in blue with
// their number, skipped ones crossed out in grey, each with its scales.
void paintPreviewPages(ICanvas& canvas, const TPrintLayout& layout, const TPointF& scale, const TPointF& offset);

// The pages on the drawing canvas after a print: dashed frames, and where
// tiles overlap, the line to join them along.
void paintPrintAreas(ICanvas& canvas, const TPrintLayout& layout, const TPointF& scale, const TPointF& offset);
