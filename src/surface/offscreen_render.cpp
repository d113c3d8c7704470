#include "surface/offscreen_render.h"

#include <algorithm>
#include <utility>

#include "app/frm_pelw.h"
#include "surface/view_math.h"

bool drawingBounds(const TShapeList& list, TRectF& bounds) {
  bool first = true;
  for (const auto& shape : list) {
    const TRectF b = shape->getBoundary(false).normalized();
    bounds = first ? b
                   : TRectF(std::min(bounds.Left, b.Left), std::min(bounds.Top, b.Top),
                            std::max(bounds.Right, b.Right), std::max(bounds.Bottom, b.Bottom));
    first = false;
  }
  return !first;
}

namespace {

// The view's mapping and grid cache, put aside while the scene is painted
// at another size and scale, and put back afterwards: the grid is drawn
// into a cache of its own, so the canvas keeps the bitmap it has.
class TViewSetAside {
 public:
  explicit TViewSetAside(TViewState& v)
      : V(v), FScale(v.FScale), FPrevScale(v.FPrevScale), FOffset(v.FOffset), FWidth(v.FPboxWidth),
        FHeight(v.FPboxHeight), FGridTick(v.FGridTick), FCache(std::move(v.FGridCache)),
        FCacheKey(std::move(v.FGridCacheKey)), FCacheScale(v.FGridCacheScale),
        FCacheOffset(v.FGridCacheOffset) {
    v.FGridCacheKey.clear();
    v.FGridCacheScale = TPointF();
  }
  ~TViewSetAside() {
    V.FScale = FScale;
    V.FPrevScale = FPrevScale;
    V.FOffset = FOffset;
    V.FPboxWidth = FWidth;
    V.FPboxHeight = FHeight;
    V.FGridTick = FGridTick;
    V.FGridCache = std::move(FCache);
    V.FGridCacheKey = std::move(FCacheKey);
    V.FGridCacheScale = FCacheScale;
    V.FGridCacheOffset = FCacheOffset;
  }
  TViewSetAside(const TViewSetAside&) = delete;
  TViewSetAside& operator=(const TViewSetAside&) = delete;

 private:
  TViewState& V;
  TPointF FScale, FPrevScale, FOffset;
  int FWidth, FHeight;
  float FGridTick;
  std::unique_ptr<ICanvasBitmap> FCache;
  std::string FCacheKey;
  TPointF FCacheScale, FCacheOffset;
};

}  // namespace

TRenderedPicture renderScenePicture(TfrmPelw& form, TRenderArea area, int width, int height) {
  TRenderedPicture out;
  out.width = width;
  out.height = height;
  TViewPlacement place{form.FScale, form.FOffset};
  TRectF bounds;
  if (area == TRenderArea::Drawing) {
    if (form.PathList && drawingBounds(*form.PathList, bounds)) place = fitInside(bounds, width, height);
    else place = fitView(bounds, true, width, height);
  } else {
    place = sameViewResized(form.FScale, form.FOffset, form.FPboxWidth, form.FPboxHeight, width, height);
  }
  out.scale = place.scale;
  out.offset = place.offset;
  if (!form.FMakePngImage) return out;
  std::unique_ptr<IPngImage> image = form.FMakePngImage(width, height);
  if (!image) return out;
  ICanvas& canvas = image->canvas();
  {
    TViewSetAside aside(form);
    form.FScale = place.scale;
    form.FOffset = place.offset;
    form.pboxResize(width, height);
    if (!canvas.beginScene()) return out;
    form.pboxPaint(&canvas);
    canvas.endScene();
  }
  out.png = image->pngBytes();
  return out;
}
