// Pictures of the drawing for other programs: the scene painted by the same
// routine as the canvas, into an image in memory, as PNG. Painting one
// leaves the view, its grid cache and the document as they were.
#pragma once

#include <string>

#include "document/types.h"

class TfrmPelw;
class TShapeList;

// The union of the boundaries of all shapes; false for an empty list.
bool drawingBounds(const TShapeList& list, TRectF& bounds);

enum class TRenderArea {
  View,     // what the canvas shows, fitted into the picture
  Drawing,  // every shape, with a 5 mm margin
};

struct TRenderedPicture {
  std::string png;  // the PNG file's bytes; empty when nothing could be drawn
  int width = 0;
  int height = 0;
  // The mapping of the picture: pixel = millimetres * scale + offset.
  TPointF scale;
  TPointF offset;
};

// Paints the scene into a width by height picture through the platform's
// image factory (FMakePngImage). Empty png without one.
TRenderedPicture renderScenePicture(TfrmPelw& form, TRenderArea area, int width, int height);
