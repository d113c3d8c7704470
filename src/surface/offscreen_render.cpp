#include "surface/offscreen_render.h"

#include <algorithm>
#include <utility>

#include "app/frm_pelw.h"
#include "surface/view_math.h"
#include "surface/view_set_aside.h"

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
