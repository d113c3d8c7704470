// Step 2 of a paint: the backdrops, in list order at the common opacity,
// each turned about its middle, the selected one framed while the backdrop
// tool is active. On the screen they are drawn on the background into an
// opaque layer kept for the next paint: while the view and the backdrops
// stay, steps 1 and 2 are one copy of that layer.
#include <cmath>
#include <numbers>
#include <vector>

#include "app/frm_pelw.h"
#include "surface/picture_paint.h"
#include "surface/scene_painter.h"

namespace {

struct TBackdropLayer {
  std::vector<double> FKey;
  std::unique_ptr<ICanvasBitmap> FBitmap;
};

}  // namespace

void TScenePainter::paintOneBackdrop(ICanvas& c, TBackdrop& b, float opacity) {
  if (b.FBitmap.isEmpty() || !(b.FWidth > 0) || !(b.FHeight > 0)) return;
  const double perPicturePixel = double(F.FScale.x) * b.FWidth / b.FBitmap.FWidth * c.canvasScale();
  double levelScale = 1;
  const ICanvasBitmap* bitmap = pictureBitmapFor(b.FPaintCache, b.FBitmap, c, perPicturePixel, levelScale);
  const TPointF tl = px(b.FLeftTop);
  const TRectF dst(tl.x, tl.y, static_cast<float>(tl.x + double(b.FWidth) * F.FScale.x),
                   static_cast<float>(tl.y + double(b.FHeight) * F.FScale.y));
  const TPointF mid = dst.centerPoint();
  const TMatrix old = c.matrix();
  c.setMatrix(TMatrix::translation(-mid.x, -mid.y) * TMatrix::rotation(b.FAngle * std::numbers::pi / 180.0) *
              TMatrix::translation(mid.x, mid.y) * old);
  if (bitmap)
    c.drawBitmap(*bitmap, TRectF(0, 0, float(bitmap->width()), float(bitmap->height())), dst, opacity, false);
  if (b.FIsSelected && F.FBackdropToolActive && !F.FIsPrinting) {
    c.setStroke(F.FStrokeDefs.SelectionColor, TBrushKind::Solid, TStrokeDash::Dash, F.FStrokeDefs.SelectionThickness);
    c.drawRect(dst, 1.0f);
  }
  c.setMatrix(old);
  (void)levelScale;
}

bool TScenePainter::paintBackdrops(TAlphaColor background) {
  if (F.FBackdrops.empty() || !F.FShowBackdrops) return false;
  const float alpha = F.FBackdropAlpha;
  if (F.FIsPrinting || F.FIsPrintPreviewing) {
    C.clear(background);
    for (const auto& b : F.FBackdrops) paintOneBackdrop(C, *b, alpha);
    return true;
  }
  // What the layer shows: the background, the view, the canvas, and each backdrop.
  std::vector<double> key = {double(background), F.FScale.x, F.FScale.y, F.FOffset.x, F.FOffset.y,
                             double(C.width()), double(C.height()), C.canvasScale(), alpha,
                             double(F.FBackdropToolActive)};
  for (const auto& b : F.FBackdrops)
    key.insert(key.end(), {double(reinterpret_cast<uintptr_t>(b->FBitmap.FPixels.get())), b->FLeftTop.x,
                           b->FLeftTop.y, b->FWidth, b->FHeight, b->FAngle, double(b->FIsSelected)});
  auto layer = std::static_pointer_cast<TBackdropLayer>(F.FBackdropLayerCache);
  if (!layer || layer->FKey != key || !layer->FBitmap) {
    if (!layer) {
      layer = std::make_shared<TBackdropLayer>();
      F.FBackdropLayerCache = layer;
    }
    const int bw = static_cast<int>(std::lround(C.width() * C.canvasScale()));
    const int bh = static_cast<int>(std::lround(C.height() * C.canvasScale()));
    if (!layer->FBitmap || layer->FBitmap->width() != bw || layer->FBitmap->height() != bh)
      layer->FBitmap = C.createOpaqueBitmap(C.width(), C.height(), C.canvasScale());
    if (!layer->FBitmap) return false;
    ICanvas& lc = layer->FBitmap->canvas();
    if (!lc.beginScene()) return false;
    lc.clear(background);
    for (const auto& b : F.FBackdrops) paintOneBackdrop(lc, *b, alpha);
    lc.endScene();
    layer->FKey = std::move(key);
  }
  const ICanvasBitmap& bmp = *layer->FBitmap;
  C.drawBitmap(bmp, TRectF(0, 0, float(bmp.width()), float(bmp.height())),
               TRectF(0, 0, float(C.width()), float(C.height())), 1.0f, true);
  return true;
}

bool TScenePainter::fillWithLeather(TPW_Path& shape, const TPathData& screenPath, float opacity) {
  if (shape.FCatalogGUID.isEmpty() || !F.FCatalogDict) return false;
  TPW_Catalog* item = F.FCatalogDict->findCatalogItem(shape.FCatalogGUID);
  if (!item) return false;
  const TRasterImage& picture = item->bitmap();
  if (picture.isEmpty()) return false;
  double levelScale = 1;
  const ICanvasBitmap* bitmap = pictureBitmapFor(item->FBrushBitmap, picture, C, 1.0, levelScale);
  if (!bitmap) return false;
  // Picture pixels to millimetres by the item's resolution and the shape's
  // scale, its middle on the shape's middle, turned by the shape's angle;
  // then to the screen.
  const double mmPerPixel = 25.4 / (item->FImageDPI > 0 ? item->FImageDPI : kDefaultCatalogDpi);
  const TPointF mid = shape.getBoundary(false).normalized().centerPoint();
  const TMatrix m =
      TMatrix::translation(-picture.FWidth / 2.0, -picture.FHeight / 2.0) *
      TMatrix::scaling(mmPerPixel * shape.FCatalogScale.x, mmPerPixel * shape.FCatalogScale.y) *
      TMatrix::rotation(shape.FCatalogRotation * std::numbers::pi / 180.0) * TMatrix::translation(mid.x, mid.y) *
      TMatrix::scaling(F.FScale.x, F.FScale.y) * TMatrix::translation(F.FOffset.x, F.FOffset.y);
  C.fillPathWithBitmap(screenPath, *bitmap, m, shape.FOpacity * opacity);
  return true;
}
