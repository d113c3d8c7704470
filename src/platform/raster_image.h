// A picture in memory: rows of 32-bit pixels 0xAARRGGBB (not
// premultiplied), top row first. The pixels are shared between copies and
// never change once made, so a backdrop's undo state or a copy of a
// leather item costs nothing.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

struct TRasterImage {
  int FWidth = 0;
  int FHeight = 0;
  std::shared_ptr<const std::vector<uint32_t>> FPixels;

  static TRasterImage fromPixels(int width, int height, std::vector<uint32_t> pixels);
  bool isEmpty() const { return FWidth <= 0 || FHeight <= 0 || !FPixels; }
  const uint32_t* row(int y) const { return FPixels->data() + static_cast<size_t>(y) * FWidth; }
  uint32_t pixel(int x, int y) const { return row(y)[x]; }
  int64_t pixelCount() const { return int64_t(FWidth) * FHeight; }
  // Half the size each way (odd sizes round up), each pixel the mean of
  // the two by two it covers: the next level of a picture's pyramid.
  TRasterImage halved() const;
};

// The most pixels a picture may keep in memory (48 megapixels, about
// 190 MB): an A3 scan at 600 dots per inch is reduced, a photograph of
// 6000 by 4000 is kept whole.
inline constexpr int64_t kMaxPicturePixels = 48ll * 1000 * 1000;
