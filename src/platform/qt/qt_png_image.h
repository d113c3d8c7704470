// Images for pictures of the drawing, on QImage, encoded by Qt's PNG writer.
#pragma once

#include "platform/png_image.h"

std::unique_ptr<IPngImage> makeQtPngImage(int width, int height);
