#include "platform/raster_image.h"

#include <algorithm>

TRasterImage TRasterImage::fromPixels(int width, int height, std::vector<uint32_t> pixels) {
  TRasterImage r;
  if (width <= 0 || height <= 0 || pixels.size() != size_t(width) * size_t(height)) return r;
  r.FWidth = width;
  r.FHeight = height;
  r.FPixels = std::make_shared<const std::vector<uint32_t>>(std::move(pixels));
  return r;
}

TRasterImage TRasterImage::halved() const {
  if (isEmpty()) return {};
  const int w = (FWidth + 1) / 2, h = (FHeight + 1) / 2;
  std::vector<uint32_t> out(size_t(w) * size_t(h));
  for (int y = 0; y < h; ++y) {
    const uint32_t* r0 = row(2 * y);
    const uint32_t* r1 = row(std::min(2 * y + 1, FHeight - 1));
    uint32_t* o = out.data() + size_t(y) * w;
    for (int x = 0; x < w; ++x) {
      const int x0 = 2 * x, x1 = std::min(2 * x + 1, FWidth - 1);
      const uint32_t p[4] = {r0[x0], r0[x1], r1[x0], r1[x1]};
      uint32_t v = 0;
      for (int shift = 0; shift < 32; shift += 8) {
        uint32_t sum = 2;
        for (uint32_t q : p) sum += (q >> shift) & 0xFF;
        v |= (sum / 4) << shift;
      }
      o[x] = v;
    }
  }
  return fromPixels(w, h, std::move(out));
}
