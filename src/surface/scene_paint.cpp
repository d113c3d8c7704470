// pboxPaint: the whole scene in its fixed order, with each failure logged
// once and the paint going on.
#include <cxxabi.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <exception>
#include <memory>
#include <typeinfo>

#include "app/frm_pelw.h"
#include "exchange/print_marks.h"
#include "surface/scene_painter.h"
#include "surface/screen_path.h"
#include "surface/view_math.h"
#include "surface/view_phrases.h"

namespace {

std::string exceptionClassName(const std::exception& e) {
  int status = 0;
  std::unique_ptr<char, void (*)(void*)> name(
      abi::__cxa_demangle(typeid(e).name(), nullptr, nullptr, &status), std::free);
  return status == 0 && name ? name.get() : typeid(e).name();
}

}  // namespace

void TfrmPelw::pboxPaint(ICanvas* canvas) {
  if (!canvas) return;
  if (canvas->width() <= 0 || canvas->height() <= 0) return;
  TScenePainter painter(*this, *canvas);
  painter.paint();
}

TScenePainter::TScenePainter(TfrmPelw& form, ICanvas& canvas)
    : F(form), C(canvas), FPixel(form.FScale.x != 0 ? 1.0 / form.FScale.x : 1.0),
      FLogScale(std::log10(double(form.FScale.x))), FBlack(form.FIsBlackBackgroundMode) {
  if (const IPaintPalette* pal = form.FPaintPalette) {
    const int n = std::clamp(pal->count(), 0, 1000);
    FRows.reserve(static_cast<size_t>(n));
    for (int i = 0; i < n; ++i) FRows.push_back(pal->row(i));
  }
}

TPointF TScenePainter::px(const TPointF& real) const { return realToScreen(real, F.FScale, F.FOffset); }

const TPathData& TScenePainter::toScreen(const TPathData& real) {
  toScreenPath(real, F.FScale, F.FOffset, FScreenPath);
  return FScreenPath;
}

bool TScenePainter::layerVisible(int layer) {
  if (!FHaveMemoLayer || layer != FMemoLayer) {
    FMemoLayer = layer;
    FMemoLayerVisible = F.PathList->GetlayerVisible(layer);
    FHaveMemoLayer = true;
  }
  return FMemoLayerVisible;
}

void TScenePainter::paint() {
  F.updateGridTick();
  // Back to front: the background and the backdrops (which paint the
  // background themselves when there are any), the grid, the shapes, then
  // what lies over the drawing. A failure in one part is logged and the
  // rest still paints.
  const TAlphaColor background = canvasBackground(FBlack, F.FIsPrinting, F.FViewOptions.FWhiteBGColor);
  bool painted = false;
  try {
    painted = paintBackdrops(background);
  } catch (const std::exception& e) {
    F.logPaintError(exceptionClassName(e), e.what(), nullptr);
  }
  if (!painted) C.clear(background);
  if (F.FShowGrid && !F.FIsPrinting) {
    try {
      paintGrid();
    } catch (const std::exception& e) {
      F.logPaintError(exceptionClassName(e), e.what(), nullptr);
    }
  }
  // The pages of the last print, under the shapes.
  if (F.FShowPrintAreas && F.FIsPrintAreaAvailable && !F.FIsPrinting && !F.FIsPrintPreviewing &&
      F.FPrintLayout && F.FPrintLayout->FProject == F.PathList.get())
    paintPrintAreas(C, *F.FPrintLayout, F.FScale, F.FOffset);
  // Each shape in a guard of its own: one bad shape loses only itself.
  paintShapes();
  // Frames, crossings, thread, banners and the scale bar share one guard.
  try {
    paintGroupFrames();
    if (F.FShow_intersections) paintIntersections();
    if (F.FViewOptions.FShowStitchPattern || (F.PathList && F.PathList->FNumAlwaysShowStitchSimulator > 0))
      paintStitchSimulator();
    if (!F.FIsPrinting) {
      paintBanners();
      paintScaleBar();
    }
  } catch (const std::exception& e) {
    F.logPaintError(exceptionClassName(e), e.what(), nullptr);
  } catch (...) {
    F.logPaintError("unknown", "non-standard exception", nullptr);
  }
}

bool TScenePainter::shapeIsShown(TPW_Path& shape, const TRectF& visible) {
  const bool printSelection = F.FIsPrinting || F.FIsPrintPreviewing;
  if (printSelection && F.FPaintSwitches.chkPrintSelectedShapesOnly && !shape.FSelected) return false;
  // On paper too: a sheet gets only the shapes that reach it.
  const TRectF b = shape.getBoundary(false).normalized();
  if (b.Right < visible.Left || b.Left > visible.Right || b.Bottom < visible.Top || b.Top > visible.Bottom)
    return false;
  const TPaletteLook* row = rowOf(shape.FPalletIndex);
  if (row && !row->FIsVisible) {
    const bool leather = !shape.FCatalogGUID.isEmpty() && F.FPaintSwitches.chkSimulatorOn &&
                         F.FPaintSwitches.chkFillOn;
    if (!leather) return false;
  }
  return layerVisible(shape.FLayerID);
}

void TScenePainter::paintShapes() {
  if (!F.PathList) return;
  TShapeList& list = *F.PathList;
  // Holes lie above lines whatever their ids: first everything else, then
  // the holes, each in document order.
  std::vector<TPW_Path*> order;
  order.reserve(list.Count());
  for (const auto& s : list)
    if (!isHoleShape(*s)) order.push_back(s.get());
  for (const auto& s : list)
    if (isHoleShape(*s)) order.push_back(s.get());
  TRectF visible = F.VisibleRealRect().normalized();
  // A pen on paper reaches past a shape's outline by half its width.
  if (F.FIsPrinting)
    visible = TRectF(TPointF::fromDouble(double(visible.Left) - 2, double(visible.Top) - 2),
                     TPointF::fromDouble(double(visible.Right) + 2, double(visible.Bottom) + 2));
  for (TPW_Path* shape : order) {
    if (shape->FID < 0) list.renumber(*shape, list.getNextID());
    if (!shapeIsShown(*shape, visible)) continue;
    try {
      paintShape(*shape);
    } catch (const std::exception& e) {
      F.logPaintError(exceptionClassName(e), e.what(), shape);
    } catch (...) {
      F.logPaintError("unknown", "non-standard exception", shape);
    }
  }
  try {
    flushDots();
  } catch (const std::exception& e) {
    F.logPaintError(exceptionClassName(e), e.what(), nullptr);
  } catch (...) {
    F.logPaintError("unknown", "non-standard exception", nullptr);
  }
}

void TScenePainter::queueDot(const TPointF& centre, float radius, TAlphaColor color, float opacity) {
  if (!FDots.centres.empty() &&
      (FDots.color != color || FDots.radius != radius || FDots.opacity != opacity))
    flushDots();
  FDots.color = color;
  FDots.radius = radius;
  FDots.opacity = opacity;
  FDots.centres.push_back(centre);
}

void TScenePainter::flushDots() {
  if (FDots.centres.empty()) return;
  C.setFill(FDots.color, TBrushKind::Solid);
  // Cleared before drawing, so that a canvas that fails leaves no dots
  // behind to be drawn twice.
  std::vector<TPointF> centres;
  centres.swap(FDots.centres);
  C.fillCircles(centres, FDots.radius, FDots.opacity);
  centres.clear();
  FDots.centres.swap(centres);  // keep the capacity for the next batch
}

void TScenePainter::paintGroupFrames() {
  if (!F.PathList) return;
  // Bounding rectangles of the groups that have a selected member.
  std::unordered_map<int, TRectF> frames;
  std::unordered_map<int, bool> selected;
  for (const auto& s : *F.PathList) {
    if (s->FGroupID == 0) continue;
    const TRectF b = s->getBoundary(false).normalized();
    auto it = frames.find(s->FGroupID);
    if (it == frames.end()) {
      frames.emplace(s->FGroupID, b);
    } else {
      TRectF& r = it->second;
      r = TRectF(std::min(r.Left, b.Left), std::min(r.Top, b.Top), std::max(r.Right, b.Right),
                 std::max(r.Bottom, b.Bottom));
    }
    if (s->FSelected) selected[s->FGroupID] = true;
  }
  for (const auto& [id, r] : frames) {
    if (!selected.count(id)) continue;
    const TPointF a = px(r.topLeft()), b = px(r.bottomRight());
    C.setStroke(claWhite, TBrushKind::Solid, TStrokeDash::Dot, 1.0f);
    C.drawRect(TRectF(a.x - 2, a.y - 2, b.x + 2, b.y + 2), 1.0f);
  }
}

void TScenePainter::paintIntersections() {
  if (!F.FIntersections || !F.PathList) return;
  const IPaintPalette* pal = F.FPaintPalette;
  auto paletteVisible = [pal](const TPW_Path* s) {
    return !pal || !pal->contains(s->FPalletIndex) || pal->row(s->FPalletIndex).FIsVisible;
  };
  for (const auto& ict : F.FIntersections->items()) {
    const TPW_Path* a = ict->FPath1;
    const TPW_Path* b = ict->FPath2;
    if (!a || !b) continue;
    if (!F.PathList->GetlayerVisible(a->FLayerID) || !F.PathList->GetlayerVisible(b->FLayerID)) continue;
    if (!paletteVisible(a) && !paletteVisible(b)) continue;
    const TPointF p = px(ict->FPoint);
    C.setFill(ict->FIsCrossing ? 0xFFFF0000 : 0xFF0000FF, TBrushKind::Solid);
    C.fillEllipse(TRectF(p.x - 3, p.y - 3, p.x + 3, p.y + 3), 1.0f);
  }
}

void TScenePainter::paintBanners() {
  struct TBanner {
    TAlphaColor color;
    std::string text;
  };
  auto phrase = [this](const TPhraseKey& k) { return viewPhrase(F.FMultiLang.get(), F.FLangID, k); };
  std::vector<TBanner> banners;
  if (F.FSelectNextStitchingHoleMode)
    banners.push_back({0xFFFF0000, phrase(ViewPhrase::SelectNextStitchingHole)});
  if (!F.FBusyMessage.empty()) banners.push_back({0xFFFF0000, F.FBusyMessage});
  if (F.PathList && !F.PathList->GetlayerVisible(F.FActiveLayer))
    banners.push_back({0xFFFF0000, phrase(ViewPhrase::LayerIsNotVisible)});
  if (F.FIgnoreLayer)
    banners.push_back({0xFFFF0000, phrase(ViewPhrase::LayerIgnored) + "(" +
                                       phrase(ViewPhrase::CancelLayerIgnored) + ")"});
  if (F.PathList && F.PathList->GetIsIndependentLayer(F.FActiveLayer))
    banners.push_back({0xFF008000, "** " + phrase(ViewPhrase::IndependentLayer) + " **"});
  if (banners.empty()) return;
  C.setFontSize(15);
  float top = 0;
  for (size_t i = 0; i < banners.size(); ++i) {
    const std::string& t = banners[i].text;
    const float tw = C.textWidth(t), th = C.textHeight(t);
    C.setFill(banners[i].color, TBrushKind::Solid);
    C.fillRect(TRectF(0, top, tw + 4, top + th + 4), 1.0f);
    C.setFill(claWhite, TBrushKind::Solid);
    const float textTop = i == 0 ? top + 2 : top;
    C.fillText(TRectF(2, textTop, 2 + tw + 2, textTop + th + 2), t, 1.0f, TTextAlign::Leading,
               TTextAlign::Leading);
    top += th + (i == 0 ? 5 : 6);
  }
}

void TScenePainter::paintScaleBar() {
  const double w = C.width();
  const bool inch = F.FViewOptions.FUnitMode == TUnitMode::umIN;
  double ticks = inch ? 8 : 10;
  const double pxPerTick = double(F.FGridTick) * F.FScale.x;
  if (pxPerTick <= 0) return;
  while (ticks * pxPerTick > w / 4 && ticks > 1e-6) ticks /= 2;
  const double len = ticks * pxPerTick;
  const float x1 = static_cast<float>(w - len - 10), x2 = static_cast<float>(w - 10), y = 10;
  TPaletteLook look;
  look.FColor_BlackMode = 0xFFFFFFFF;
  look.FColor_WhiteMode = 0xFF000000;
  look.FThickness = 2;
  if (F.FPaintPalette && F.FPaintPalette->contains(kScaleBarPaletteRow))
    look = F.FPaintPalette->row(kScaleBarPaletteRow);
  // The plate: white on the white canvas, black on the black one.
  C.setFill(FBlack ? claBlack : claWhite, TBrushKind::Solid);
  C.fillRect(TRectF(x1 - 3, y - 7, x2 + 3, y + 17), 0.5f);
  C.setStroke(look.colorFor(FBlack), TBrushKind::Solid, look.FDash, look.FThickness);
  C.drawLine(TPointF(x1, y - 5), TPointF(x1, y + 5), 1.0f);
  C.drawLine(TPointF(x2, y - 5), TPointF(x2, y + 5), 1.0f);
  C.drawLine(TPointF(x1, y), TPointF(x2, y), 1.0f);
  C.setFontSize(15);
  C.setFill(look.colorFor(FBlack), TBrushKind::Solid);
  C.fillText(TRectF(x1, y + 2, x2, y + 17), FormatLength(ticks * F.FGridTick, F.lengthSettings()), 1.0f,
             TTextAlign::Center, TTextAlign::Center);
}
