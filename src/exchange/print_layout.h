// The pages of a print: where each sheet lies over the drawing, tiles with
// their overlap, calibration, and what the preview's pointer does to them.
// The pages themselves live in the document's print lists (FPrintOffset,
// FPrintTarget, FPrintScalePos), so a layout returns with the project.
// Lengths are millimetres of the drawing unless named otherwise; "paper
// millimetres" are measured on the sheet, which differ by the calibration.
#pragma once

#include <string>
#include <vector>

#include "document/types.h"
#include "platform/paper_device.h"

class TShapeList;
class TMultiLang;
struct TPaintSwitches;

// Papers known by name, portrait.
struct TPaperSize {
  const char* FName;
  double FWidthMm;
  double FHeightMm;
};
const std::vector<TPaperSize>& paperSizes();  // A4, A3, A5, Letter, Legal
// Case does not matter; null for an unknown name.
const TPaperSize* findPaperSize(const std::string& name);
// The sheet as it lies, no margins.
TPaperSetup paperSetupFor(const TPaperSize& size, bool landscape);
// "A4, Letter, ..." for messages.
std::string paperSizeNames();

// The preview's boxes.
struct TPrintSwitches {
  double FLineFactor = 0.5;        // nbPrintLineThickFactor
  bool FHolesAsDots = false;       // chkPrintStitchingHoleAsDot
  bool FShowNotForPrint = false;   // chkShowNotForPrintLines
  bool FPrintIntoMargin = false;   // chkPrintIntoMergin
  bool FSelectedOnly = false;      // chkPrintSelectedShapesOnly
  bool FTilePrint = false;         // chkTilePrint
  int FTileX = 1;                  // nbPreview_TileX
  double FOverlapLen = 10;         // nbTileOverlapLen
  bool FInColor = false;           // chkPrintInColor
  bool FRulerInside = false;       // chkPreview_RulerInside
};

// Limits of what a user may set.
inline constexpr double kMinCalibration = 50, kMaxCalibration = 200;  // per cent
inline constexpr double kMinLineFactor = 0.05, kMaxLineFactor = 10;
inline constexpr int kMaxPrintPages = 400;
// The corners a page's scales can stand at: top left, top right, bottom
// right, bottom left; a click on the page moves them to the next.
inline constexpr int kScalePositions = 4;

class TPrintLayout {
 public:
  explicit TPrintLayout(TShapeList& project) : FProject(&project) {}

  TShapeList* FProject;          // borrowed: the pages are its print lists
  TRectF FBoundary;              // the area of the drawing: 5 mm left and top, 10 mm right and bottom
  double FDPI = 300;             // the unit of FPrintOffset: pixels at this resolution
  TPointF FDPIxy{300, 300};      // the device's own resolution
  TPaperSetup FPaper;            // the sheet: FPageWidth, FPageHeight and the margins
  TPointF FCalibrationRatio{1, 1};
  TPrintSwitches FSwitches;

  // The area round all shapes; false for an empty drawing.
  bool setBoundaryFromDrawing();
  // The document's print lists made whole: equal lengths, at least one
  // page, at most kMaxPrintPages, offsets finite.
  void repairPages();

  int pageCount() const;
  bool isTarget(int page) const;
  int targetCount() const;
  // The sheet's top left corner over the drawing.
  TPointF getOffsetRealPt(int page) const;
  TRectF sheetRealRect(int page) const;
  // The part of the sheet the device prints on.
  TRectF printableRealRect(int page) const;
  // Device pixels per drawing millimetre: the resolution with the calibration.
  TPointF deviceScale() const;
  // The thickness multiplier of shapes on a canvas of `pixelsPerMm`: a
  // thickness of 1 is a screen pixel at 96 dpi, times the line factor.
  double getPrintThicknessFactor(double pixelsPerMm) const;
  // The preview's boxes as the paint reads them, for a canvas of `pixelsPerMm`.
  void applySwitches(TPaintSwitches& paint, double pixelsPerMm) const;

  // ---- tiles: a grid of getNumTileX columns, neighbours overlapping ----
  int getNumTileX() const;
  int getNumTileY() const;
  void getTileColRow(int index, int& col, int& row) const;
  bool isEdgeTop(int index) const;
  bool isEdgeBottom(int index) const;
  bool isEdgeLeft(int index) const;
  bool isEdgeRight(int index) const;
  // From one tile to the next: the printable part less the overlap.
  TPointF tileStep() const;
  // Puts every page at its place in the grid, page 0's printable corner
  // on the area's top left.
  void resetTile();
  // Just enough columns and rows of tiles to cover the area, laid anew.
  // Returns how many that takes; beyond kMaxPrintPages only that many are laid.
  long tileToCover();
  // Each page's scales to the corner where they cross the fewest shapes.
  void chooseScaleCorners();
  // Where a page's scales start, in paper millimetres from the sheet's
  // corner, and which way (+1 or -1) they run into the page.
  struct TScaleCorner {
    double x, y, dx, dy;
  };
  TScaleCorner scaleCorner(int position) const;
  // Whether the area fits on one sheet's printable part.
  bool fitsOnePage() const;
  // The largest overlap a page allows: half its shorter printable side.
  double maxOverlap() const;
  // "" or why the calibration or the overlap cannot be used, in the language.
  std::string checkSettings(const TMultiLang& phrases, const std::string& langID) const;

  // ---- Page + and Page - ----
  // A new page after the last: in the grid when tiling, else to the right
  // of the last page.
  void pageAdd();
  // The last page goes; one always stays.
  void pageRemove();

  // ---- the pointer in the preview: pixels for the click test, drawing
  // millimetres for the pages ----
  // The page under a point, the one drawn last first; -1 for none.
  int pageAt(const TPointF& real) const;
  // Right button: the page is printed or skipped. Left: a drag begins.
  // True when the pages changed.
  bool mouseDown(bool rightButton, const TPointF& pixel, const TPointF& real);
  bool mouseMove(const TPointF& pixel, const TPointF& real);
  // A left release within a pixel of the press is a click: the page's
  // scales move to the next corner.
  bool mouseUp(bool rightButton, const TPointF& pixel, const TPointF& real);
  int FDraggingPageIdx = -1;
  TPointF FMouseDownPos;   // preview pixels
  TPointF FMouseDownReal;  // drawing millimetres
  TPointF FOrgOffset;      // the dragged page's offset at the press
  bool FIsMouseDown = false;

 private:
  TPointF paperToReal(double paperMm, double paperMmY) const;
  void setOffsetMm(int page, const TPointF& mm);
};
