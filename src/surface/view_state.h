// The view's state on the controller: scale and offset, the grid and its
// cache, background mode and colours, the pointer as the view tracks it,
// and the few options the view reads. TfrmPelw carries these fields as its
// own; the functions that work on them live beside this file.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "app/length_format.h"
#include "document/types.h"
#include "platform/canvas.h"
#include "platform/timer.h"
#include "surface/paint_palette.h"
#include "surface/view_colors.h"
#include "surface/view_input.h"

// Options the view reads; they belong to the options file.
struct TViewOptions {
  TUnitMode FUnitMode = TUnitMode::umMM;
  TLengthFormatSettings FLengthFormatSettings;
  bool FReverseMouseWheelZoomDirection = false;
  bool FReverseCursorKeyGridAreaMove = true;
  TAlphaColor FWhiteBGColor = kDefaultWhiteBGColor;
  bool FShowStitchPattern = false;
  // Thread colour of the simulator for holes that keep the default white
  // thread; -1 leaves them white. A hole's own thread colour always shows.
  int64_t FStitchColor = -1;
  float FStitchThickness = 3.0f;
  float FStitchOpacity = 1.0f;
  bool FHighlightSnapTargets = true;
};

// Check boxes of the side panel and of the print preview that painting
// reads, as plain values.
struct TPaintSwitches {
  bool chkSimulatorOn = false;
  bool chkFillOn = false;
  bool chkHighlightActiveLayer = false;
  bool chkPrintSelectedShapesOnly = false;
  bool chkPrintInColor = false;
  bool chkPrintStitchingHoleAsDot = false;
  bool chkShowNotForPrintLines = false;
  double printThicknessFactor = 1.0;  // getPrintThicknessFactor
  // The simulator's two threads: the stitches of even and of odd places in
  // their row.
  bool chkShowEvenStitches = true;
  bool chkShowOddStitches = true;
};

// What the window provides to the view: repaints and the status line.
struct TViewHost {
  std::function<void()> invalidateCanvas;
  std::function<void()> invalidateRulers;
  std::function<void(const std::string&)> showStatus;
};

struct TViewState {
  // ---- mapping ----
  TPointF FScale{10, 10};  // pixels per millimetre
  TPointF FPrevScale;      // FScale when FGridTick was last chosen
  TPointF FOffset;         // pixel position of real (0, 0)
  TPointF FOriginalOffset;
  int FPboxWidth = 0;  // canvas size in logical pixels
  int FPboxHeight = 0;

  // ---- grid ----
  float FGridTick = 1;
  std::unique_ptr<ICanvasBitmap> FGridCache;
  std::string FGridCacheKey;
  TPointF FGridCacheScale;
  TPointF FGridCacheOffset;
  std::unique_ptr<ITimer> FGridSettleTimer;
  bool FShowGrid = true;

  // ---- background and colours ----
  bool FIsBlackBackgroundMode = true;
  TAlphaColor FHandleColor = 0xFFFFFFFF;
  TAlphaColor FColor_Drawing = 0xFF00FFFF;
  TAlphaColor FColor_Centerline = 0xFFFFC0CB;
  TAlphaColor FColor_StitchingHole = 0xFFFFFFFF;
  TAlphaColor FMandalaSectionColor = 0xFFFFFFFF;
  TAlphaColor FMandalaSectionColor2 = 0xFFFF0000;
  TStrokeDefs FStrokeDefs = TStrokeDefs::forBackground(true);

  // ---- printing (set around the print calls of the paint) ----
  bool FIsPrinting = false;
  bool FIsPrintPreviewing = false;
  float FPrintLineFactor = 1.0f;
  bool FShowPrintAreas = true;
  bool FIsPrintAreaAvailable = false;

  // ---- what the scene shows ----
  bool FShowPathDirec = false;
  bool FShowDimensionShapes = true;
  bool FShow_intersections = false;
  bool FIgnoreLayer = false;
  bool FSelectNextStitchingHoleMode = false;
  std::string FBusyMessage;
  std::string FLastPaintError;
  TPaintSwitches FPaintSwitches;

  // ---- pointer and gestures ----
  TPointF FFirstMousePos;
  TPointF FLastMousePos;
  bool FIsMouseDown = false;
  bool FIsScreenDragging = false;
  TShiftState FLastShiftState = 0;
  TPointF FGesturePrevLocation;
  bool FGesturePanStarted = false;
  double FGestureLastZoomDistance = 0;
  bool FStickyExists = false;
  TPointF FStickyPoint;
  int FRequireSnapshotRotate = 0;
  int FRequireSnapshotScale = 0;

  // ---- links ----
  TViewOptions FViewOptions;
  TViewHost FViewHost;
};
