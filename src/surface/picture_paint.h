// Pictures on a canvas: each picture keeps its halvings (a pyramid) and
// the canvas bitmaps made of them, so that a large backdrop is drawn from
// the level nearest the screen's resolution and nothing is converted
// twice. The cache lives in the picture's owner (a shared_ptr<void> slot).
#pragma once

#include <memory>

#include "platform/canvas.h"
#include "platform/raster_image.h"

// The bitmap of the level of `image` for a picture shown at
// `devicePixelsPerPicturePixel` (the level whose pixels are as close to
// one device pixel each as not to lose detail). `levelScale` is set to the
// level's pixels per picture pixel. Null when the canvas shows no pictures.
const ICanvasBitmap* pictureBitmapFor(std::shared_ptr<void>& slot, const TRasterImage& image, ICanvas& canvas,
                                      double devicePixelsPerPicturePixel, double& levelScale);
