// One paint of the canvas: the scene in its fixed order, each shape on a
// copy of its path in pixels. Made by pboxPaint for a single paint; it
// borrows the controller and the canvas.
#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "document/path_data.h"
#include "document/pw_path.h"
#include "document/types.h"
#include "platform/canvas.h"
#include "surface/paint_palette.h"
#include "surface/view_colors.h"

class TfrmPelw;
class TBackdrop;

// The stroke a shape gets.
struct TShapePen {
  TAlphaColor color = 0;
  TAlphaColor fill = 0;
  float thickness = 1;
  TStrokeDash dash = TStrokeDash::Solid;
};

// The pen on the screen: the palette row's colour for the background (the
// shape's own colour without a row), the selection colour when selected, a
// thickness that grows gently with the zoom, the row's dash. A symmetry
// target is drawn as a dotted centre line.
TShapePen screenPenFor(const TPW_Path& shape, const IPaintPalette* palette, bool blackBackground,
                       double pixelsPerMm, const TStrokeDefs& defs, TAlphaColor centerlineColor);
// The same from the shape's row itself (null: none) and log10 of the
// pixels per millimetre, as one paint works them out once.
TShapePen screenPenFromRow(const TPW_Path& shape, const TPaletteLook* row, bool blackBackground,
                           double log10PixelsPerMm, const TStrokeDefs& defs, TAlphaColor centerlineColor);

// Radius in pixels of the dot drawn on a hole or a dot, with and without
// the simulated thread showing.
double holeDotRadius(double pixelsPerMm, bool threadShowing);
double holeDotRadiusFromLog(double log10PixelsPerMm, bool threadShowing);

// "S_HOLE", told quickly: the painter asks it of every shape.
inline bool isHoleShape(const TPW_Path& s) {
  return s.FShapeType.size() == 6 && s.FShapeType == ShapeType::Hole;
}

// The simulator's settings from the options: a thread colour of -1 leaves
// each hole its own.
struct TViewOptions;
struct TStitchSimulationOptions;
TStitchSimulationOptions stitchSimulationOptions(const TViewOptions& options);
// The thread's width on the screen: the thickness option in fifths of a
// millimetre, never under a pixel.
double threadWidthPixels(float stitchThickness, double pixelsPerMm);

class TScenePainter {
 public:
  TScenePainter(TfrmPelw& form, ICanvas& canvas);

  void paint();

  // Steps, in the order paint() runs them.
  // The background with the backdrops on it; false (nothing painted)
  // without backdrops to show.
  bool paintBackdrops(TAlphaColor background);
  void paintGrid();
  void paintShapes();
  void paintGroupFrames();
  void paintIntersections();
  void paintStitchSimulator();
  void paintBanners();
  void paintScaleBar();

  // One shape, already known to be visible.
  void paintShape(TPW_Path& shape);

 private:
  TfrmPelw& F;
  ICanvas& C;
  TPathData FScreenPath;  // the shape's path in pixels, reused for each shape
  double FPixel;          // one pixel in millimetres
  double FLogScale;       // log10 of the pixels per millimetre
  bool FBlack;
  // The palette's rows, read once for the paint.
  std::vector<TPaletteLook> FRows;
  const TPaletteLook* rowOf(int index) const {
    return index >= 0 && index < static_cast<int>(FRows.size()) ? &FRows[static_cast<size_t>(index)] : nullptr;
  }
  // The last layer asked about, and whether it shows.
  int FMemoLayer = 0;
  bool FMemoLayerVisible = false;
  bool FHaveMemoLayer = false;
  bool layerVisible(int layer);

  // Dots of holes wait here to be drawn in one call; anything else drawn
  // sends them first, so the order on the canvas stays that of the shapes.
  struct TDotBatch {
    TAlphaColor color = 0;
    float radius = 0;
    float opacity = 0;
    std::vector<TPointF> centres;
  } FDots;
  void queueDot(const TPointF& centre, float radius, TAlphaColor color, float opacity);
  void flushDots();

  const TPathData& toScreen(const TPathData& real);
  TPointF px(const TPointF& real) const;
  bool shapeIsShown(TPW_Path& shape, const TRectF& visible);
  float shapeOpacity(const TPW_Path& shape) const;
  TShapePen paperPen(const TPW_Path& shape) const;
  void paintBody(TPW_Path& shape, const TShapePen& pen, float opacity);
  void paintHole(TPW_Path& shape, const TShapePen& pen, float opacity);
  void paintHandles(TPW_Path& shape);
  void paintArrows(TPW_Path& shape, const TShapePen& pen, float opacity);
  void handleSquare(const TPointF& real, float opacity);
  void handleCircle(const TPointF& real, float opacity);
  void dottedBox(const TRectF& real, float opacity);
  void arrowHead(const TPointF& tip, const TPointF& from, double length, float opacity);
  bool threadShowsOn(const TPW_Path& hole) const;
  // Backdrops and leather pictures (surface/backdrop_paint.cpp).
  void paintOneBackdrop(ICanvas& canvas, TBackdrop& backdrop, float opacity);
  bool fillWithLeather(TPW_Path& shape, const TPathData& screenPath, float opacity);
};
