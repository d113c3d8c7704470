// The controller's view: mapping, zoom and pan by wheel, drag, keys and
// gestures, the reset view, the background mode and the status line.
#include <cmath>
#include <cstdio>
#include <ctime>

#include "app/app_paths.h"
#include "app/frm_pelw.h"
#include "surface/offscreen_render.h"
#include "surface/view_math.h"

TPointF TfrmPelw::RealToScreen(const TPointF& real) const { return realToScreen(real, FScale, FOffset); }

TPointF TfrmPelw::ScreenToReal(const TPointF& pixel, bool snap) const {
  // Snapping to shape points comes with the snap service; until a snap
  // point is found the plain position stands.
  (void)snap;
  return screenToReal(pixel, FScale, FOffset);
}

TRectF TfrmPelw::VisibleRealRect() const {
  return visibleRealRect(FScale, FOffset, FPboxWidth, FPboxHeight);
}

void TfrmPelw::RepaintCanvas(bool skipBox) {
  if (!skipBox && FViewHost.invalidateCanvas) FViewHost.invalidateCanvas();
  if (FViewHost.invalidateRulers) FViewHost.invalidateRulers();
}

void TfrmPelw::pboxResize(int width, int height) {
  FPboxWidth = width;
  FPboxHeight = height;
}

void TfrmPelw::updateGridTick() {
  if (FScale.identical(FPrevScale)) return;
  FGridTick = static_cast<float>(chooseGridTick(FViewOptions.FUnitMode, FScale.x));
  FPrevScale = FScale;
}

void TfrmPelw::FormMouseWheel(int delta, TShiftState shift) {
  FLastShiftState = shift;
  const bool ctrl = shift & ssCtrl, sh = shift & ssShift, alt = shift & ssAlt;
  if (ctrl || alt) {
    // Ctrl and Alt turn, scale and thicken the selection; Shift with Alt
    // pans upwards and downwards.
    if (sh && alt && !ctrl) FOffset.y = static_cast<float>(FOffset.y - delta / 2);
  } else if (sh) {
    FOffset.x = static_cast<float>(FOffset.x + delta / 2);
  } else {
    if (FViewOptions.FReverseMouseWheelZoomDirection) delta = -delta;
    const TViewPlacement v = zoomAround(FScale, FOffset, FLastMousePos, wheelZoomFactor(delta));
    FScale = v.scale;
    FOffset = v.offset;
  }
  refreshStatus();
  RepaintCanvas();
}

void TfrmPelw::pboxMouseDown(TMouseButton button, TShiftState shift, const TPointF& pixel) {
  FLastShiftState = shift;
  FIsMouseDown = true;
  FFirstMousePos = pixel;
  FLastMousePos = pixel;
  if (button == TMouseButton::mbLeft && backdropMouseDown(pixel)) return;
  if (button == TMouseButton::mbRight || button == TMouseButton::mbMiddle) {
    FOriginalOffset = FOffset;
    FIsScreenDragging = true;
  }
}

void TfrmPelw::pboxMouseMove(TShiftState shift, const TPointF& pixel) {
  FLastShiftState = shift;
  FLastMousePos = pixel;
  if (backdropMouseMove(pixel)) return;
  if (FIsScreenDragging) FOffset = FOriginalOffset + (pixel - FFirstMousePos);
  refreshStatus();
  RepaintCanvas(!FIsScreenDragging);
}

void TfrmPelw::pboxMouseUp(TMouseButton button, TShiftState shift, const TPointF& pixel) {
  FLastShiftState = shift;
  FLastMousePos = pixel;
  FIsMouseDown = false;
  if (button == TMouseButton::mbLeft && backdropMouseUp(pixel)) return;
  if (FIsScreenDragging) {
    FIsScreenDragging = false;
    RepaintCanvas();
  }
}

bool TfrmPelw::FormKeyDown(TViewKey key, TShiftState shift) {
  FLastShiftState = shift;
  if (shift & (ssCtrl | ssCommand)) return false;
  const float step = 50.0f * (FViewOptions.FReverseCursorKeyGridAreaMove ? -1.0f : 1.0f);
  TPointF move;
  switch (key) {
    case TViewKey::Right: move = TPointF(step, 0); break;
    case TViewKey::Left: move = TPointF(-step, 0); break;
    case TViewKey::Down: move = TPointF(0, step); break;
    case TViewKey::Up: move = TPointF(0, -step); break;
    case TViewKey::Other: return false;
  }
  FOffset += move;
  FLastMousePos += move;
  refreshStatus();
  RepaintCanvas();
  return true;
}

void TfrmPelw::FormGestureZoom(const TGestureEvent& g) {
  if (g.Begins || FGestureLastZoomDistance <= 0) {
    FGestureLastZoomDistance = g.Distance;
  } else if (g.Distance > 0) {
    const TViewPlacement v =
        zoomAround(FScale, FOffset, g.Location, g.Distance / FGestureLastZoomDistance);
    FScale = v.scale;
    FOffset = v.offset;
    FGestureLastZoomDistance = g.Distance;
    refreshStatus();
    RepaintCanvas();
  }
  if (g.Ends) FGestureLastZoomDistance = 0;
}

void TfrmPelw::FormGesturePan(const TGestureEvent& g) {
  if (g.Begins || !FGesturePanStarted) {
    FGesturePanStarted = true;
  } else {
    FOffset += g.Location - FGesturePrevLocation;
    RepaintCanvas();
  }
  FGesturePrevLocation = g.Location;
  if (g.Ends) FGesturePanStarted = false;
}

void TfrmPelw::actResetView() {
  TRectF bounds;
  const bool empty = !PathList || !drawingBounds(*PathList, bounds);
  const TViewPlacement v = fitView(bounds, empty, FPboxWidth, FPboxHeight);
  FScale = v.scale;
  FOffset = v.offset;
  RepaintCanvas();
  refreshStatus();
}

void TfrmPelw::setBackgroundMode(bool black) {
  FIsBlackBackgroundMode = black;
  const TModeColors c = TModeColors::forBackground(black);
  FHandleColor = c.FHandleColor;
  FColor_Drawing = c.FColor_Drawing;
  FColor_Centerline = c.FColor_Centerline;
  FMandalaSectionColor = c.FMandalaSectionColor;
  FMandalaSectionColor2 = c.FMandalaSectionColor2;
  FStrokeDefs = TStrokeDefs::forBackground(black);
  // Every row of the palette shows the colour for the new background.
  FPalletList.setBlackBackgroundMode(black);
  FColor_StitchingHole = stitchingHoleColor(FPaintPalette, black);
  RepaintCanvas();
}

void TfrmPelw::actSetGridBackgroundBlack() { setBackgroundMode(true); }
void TfrmPelw::actSetGridBackgroundWhite() { setBackgroundMode(false); }

void TfrmPelw::actToggleGrid() {
  FShowGrid = !FShowGrid;
  RepaintCanvas();
}

std::string TfrmPelw::statusText() const {
  char scale[64];
  std::snprintf(scale, sizeof scale, "%.2f", std::floor(double(FScale.x) * 100.0) / 100.0);
  const TPointF p = FStickyExists ? FStickyPoint : ScreenToReal(FLastMousePos);
  const TLengthFormatSettings& s = lengthSettings();
  std::string text = std::string("Scale ") + scale + ", Pos: (" + FormatLength(p.x, s) + ", " +
                     FormatLength(p.y, s) + ")";
  if (FStickyExists) text += "<Sticky>";
  if (FRequireSnapshotRotate != 0 || FRequireSnapshotScale != 0)
    text += ";  Rotate: " + std::to_string(FRequireSnapshotRotate) +
            "; Scale: " + std::to_string(FRequireSnapshotScale);
  return text;
}

void TfrmPelw::refreshStatus() {
  if (FViewHost.showStatus) FViewHost.showStatus(statusText());
}

// The paint failure log (logPaintError) lives with autosave in
// app/frm_pelw_autosave.cpp.
