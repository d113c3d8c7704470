// An image in memory that the paint code draws on, written out as a PNG
// file's bytes: pictures of the drawing for other programs. The platform
// provides the raster and the encoder.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/canvas.h"

class IPngImage {
 public:
  virtual ~IPngImage() = default;
  // The image's canvas, one logical pixel to one image pixel; painting goes
  // between its beginScene and endScene.
  virtual ICanvas& canvas() = 0;
  // The picture as it stands, opaque, as the bytes of a PNG file; empty
  // when it cannot be encoded.
  virtual std::string pngBytes() = 0;
};

// Makes a width by height image, or null when the platform cannot.
using TPngImageFactory = std::function<std::unique_ptr<IPngImage>(int width, int height)>;
