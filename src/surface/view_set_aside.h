// The view's mapping, grid cache and paper flags put aside while the scene
// is painted somewhere else (a picture, a preview, a printer's sheet) and
// put back when the object goes, also when painting failed: the grid is
// drawn into a cache of its own meanwhile, so the canvas keeps the bitmap
// it has.
#pragma once

#include <memory>
#include <string>
#include <utility>

#include "surface/view_state.h"

class TViewSetAside {
 public:
  explicit TViewSetAside(TViewState& v)
      : V(v), FScale(v.FScale), FPrevScale(v.FPrevScale), FOffset(v.FOffset), FWidth(v.FPboxWidth),
        FHeight(v.FPboxHeight), FGridTick(v.FGridTick), FCache(std::move(v.FGridCache)),
        FCacheKey(std::move(v.FGridCacheKey)), FCacheScale(v.FGridCacheScale),
        FCacheOffset(v.FGridCacheOffset), FIsPrinting(v.FIsPrinting), FIsPrintPreviewing(v.FIsPrintPreviewing),
        FPrintLineFactor(v.FPrintLineFactor), FPaintSwitches(v.FPaintSwitches) {
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
    V.FIsPrinting = FIsPrinting;
    V.FIsPrintPreviewing = FIsPrintPreviewing;
    V.FPrintLineFactor = FPrintLineFactor;
    V.FPaintSwitches = FPaintSwitches;
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
  bool FIsPrinting, FIsPrintPreviewing;
  float FPrintLineFactor;
  TPaintSwitches FPaintSwitches;
};
