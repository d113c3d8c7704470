#include "surface/picture_paint.h"

#include <typeindex>
#include <vector>

namespace {

struct TPictureCache {
  const void* FSource = nullptr;  // the pixels the levels were made from
  std::vector<TRasterImage> FLevels;
  std::type_index FCanvasType = typeid(void);
  std::vector<std::unique_ptr<ICanvasBitmap>> FBitmaps;
};

}  // namespace

const ICanvasBitmap* pictureBitmapFor(std::shared_ptr<void>& slot, const TRasterImage& image, ICanvas& canvas,
                                      double devicePixelsPerPicturePixel, double& levelScale) {
  levelScale = 1.0;
  if (image.isEmpty()) return nullptr;
  auto cache = std::static_pointer_cast<TPictureCache>(slot);
  if (!cache || cache->FSource != image.FPixels.get()) {
    cache = std::make_shared<TPictureCache>();
    cache->FSource = image.FPixels.get();
    cache->FLevels.push_back(image);
    slot = cache;
  }
  if (cache->FCanvasType != std::type_index(typeid(canvas))) {
    cache->FBitmaps.clear();
    cache->FCanvasType = typeid(canvas);
  }
  int level = 0;
  double perLevelPixel = devicePixelsPerPicturePixel;
  const TRasterImage* current = &image;
  while (perLevelPixel * 2.0 <= 1.0 && current->FWidth > 16 && current->FHeight > 16) {
    ++level;
    perLevelPixel *= 2.0;
    if (int(cache->FLevels.size()) <= level) cache->FLevels.push_back(cache->FLevels.back().halved());
    current = &cache->FLevels[size_t(level)];
  }
  if (int(cache->FBitmaps.size()) <= level) cache->FBitmaps.resize(size_t(level) + 1);
  auto& bitmap = cache->FBitmaps[size_t(level)];
  if (!bitmap) bitmap = canvas.createBitmapFromImage(*current);
  levelScale = double(current->FWidth) / image.FWidth;
  return bitmap.get();
}
