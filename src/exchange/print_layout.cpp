#include "exchange/print_layout.h"

#include <algorithm>
#include <cctype>
#include <cmath>

#include "app/length_format.h"
#include "app/multi_lang.h"
#include "document/shape_list.h"
#include "document/number_text.h"
#include "document/pw_path.h"
#include "surface/offscreen_render.h"
#include "surface/view_state.h"

namespace {

// A screen pixel, which shape thicknesses are measured in, at 96 dpi.
constexpr double kMmPerScreenPixel = kMmPerInch / 96.0;

std::string lowerCase(std::string s) {
  std::transform(s.begin(), s.end(), s.begin(), [](unsigned char c) { return char(std::tolower(c)); });
  return s;
}

// Tiles of `step` after a first one of `span` that cover `length`.
long tilesFor(double length, double span, double step) {
  if (length <= span + 1e-6 || step <= 0) return 1;
  return 1 + static_cast<long>(std::min(1e9, std::ceil((length - span) / step - 1e-9)));
}

}  // namespace

const std::vector<TPaperSize>& paperSizes() {
  static const std::vector<TPaperSize> sizes{
      {"A4", 210, 297}, {"A3", 297, 420}, {"A5", 148, 210}, {"Letter", 215.9, 279.4}, {"Legal", 215.9, 355.6}};
  return sizes;
}

const TPaperSize* findPaperSize(const std::string& name) {
  for (const TPaperSize& p : paperSizes())
    if (lowerCase(p.FName) == lowerCase(name)) return &p;
  return nullptr;
}

TPaperSetup paperSetupFor(const TPaperSize& size, bool landscape) {
  TPaperSetup s;
  s.FName = size.FName;
  s.FLandscape = landscape;
  s.FWidthMm = landscape ? size.FHeightMm : size.FWidthMm;
  s.FHeightMm = landscape ? size.FWidthMm : size.FHeightMm;
  return s;
}

std::string paperSizeNames() {
  std::string s;
  for (const TPaperSize& p : paperSizes()) s += (s.empty() ? "" : ", ") + std::string(p.FName);
  return s;
}

bool TPrintLayout::setBoundaryFromDrawing() {
  TRectF b;
  if (!drawingBounds(*FProject, b)) return false;
  FBoundary = TRectF(TPointF::fromDouble(double(b.Left) - 5, double(b.Top) - 5),
                     TPointF::fromDouble(double(b.Right) + 10, double(b.Bottom) + 10));
  return true;
}

void TPrintLayout::repairPages() {
  TShapeList& p = *FProject;
  size_t n = std::min({p.FPrintOffset.size(), p.FPrintTarget.size(), p.FPrintScalePos.size()});
  n = std::min<size_t>(n, kMaxPrintPages);
  if (n == 0) {
    p.clearPrintPagesInfo();
    return;
  }
  p.FPrintOffset.resize(n);
  p.FPrintTarget.resize(n);
  p.FPrintScalePos.resize(n);
  for (size_t i = 0; i < n; ++i) {
    TPointF& o = p.FPrintOffset[i];
    // A page more than a kilometre away was never placed by a person.
    const double limit = 1e6 / kMmPerInch * FDPI;
    if (!std::isfinite(o.x) || !std::isfinite(o.y) || std::abs(o.x) > limit || std::abs(o.y) > limit) o = TPointF();
    int& pos = p.FPrintScalePos[i];
    pos = ((pos % kScalePositions) + kScalePositions) % kScalePositions;
  }
}

int TPrintLayout::pageCount() const { return static_cast<int>(FProject->FPrintOffset.size()); }

bool TPrintLayout::isTarget(int page) const {
  return page >= 0 && page < static_cast<int>(FProject->FPrintTarget.size()) && FProject->FPrintTarget[page];
}

int TPrintLayout::targetCount() const {
  return static_cast<int>(std::count(FProject->FPrintTarget.begin(), FProject->FPrintTarget.end(), true));
}

TPointF TPrintLayout::getOffsetRealPt(int page) const {
  const TPointF o = FProject->FPrintOffset.at(static_cast<size_t>(page));
  return TPointF::fromDouble(double(FBoundary.Left) + double(o.x) / FDPI * kMmPerInch,
                             double(FBoundary.Top) + double(o.y) / FDPI * kMmPerInch);
}

TPointF TPrintLayout::paperToReal(double x, double y) const {
  return TPointF::fromDouble(x / FCalibrationRatio.x, y / FCalibrationRatio.y);
}

TRectF TPrintLayout::sheetRealRect(int page) const {
  const TPointF r = getOffsetRealPt(page);
  return TRectF(r, r + paperToReal(FPaper.FWidthMm, FPaper.FHeightMm));
}

TRectF TPrintLayout::printableRealRect(int page) const {
  const TPointF r = getOffsetRealPt(page);
  return TRectF(r + paperToReal(FPaper.FMarginLeft, FPaper.FMarginTop),
                r + paperToReal(FPaper.FWidthMm - FPaper.FMarginRight, FPaper.FHeightMm - FPaper.FMarginBottom));
}

TPointF TPrintLayout::deviceScale() const {
  return TPointF::fromDouble(FDPIxy.x / kMmPerInch * FCalibrationRatio.x, FDPIxy.y / kMmPerInch * FCalibrationRatio.y);
}

double TPrintLayout::getPrintThicknessFactor(double pixelsPerMm) const {
  return FSwitches.FLineFactor * kMmPerScreenPixel * pixelsPerMm;
}

void TPrintLayout::applySwitches(TPaintSwitches& paint, double pixelsPerMm) const {
  paint.chkPrintSelectedShapesOnly = FSwitches.FSelectedOnly;
  paint.chkPrintInColor = FSwitches.FInColor;
  paint.chkPrintStitchingHoleAsDot = FSwitches.FHolesAsDots;
  paint.chkShowNotForPrintLines = FSwitches.FShowNotForPrint;
  paint.printThicknessFactor = getPrintThicknessFactor(pixelsPerMm);
}

// ---- tiles ----

int TPrintLayout::getNumTileX() const { return std::clamp(FSwitches.FTileX, 1, kMaxPrintPages); }

int TPrintLayout::getNumTileY() const {
  const int nx = getNumTileX();
  return (std::max(1, pageCount()) + nx - 1) / nx;
}

void TPrintLayout::getTileColRow(int index, int& col, int& row) const {
  const int nx = getNumTileX();
  col = index % nx;
  row = index / nx;
}

bool TPrintLayout::isEdgeTop(int index) const { return index < getNumTileX(); }
bool TPrintLayout::isEdgeBottom(int index) const { return index + getNumTileX() >= pageCount(); }
bool TPrintLayout::isEdgeLeft(int index) const { return index % getNumTileX() == 0; }
bool TPrintLayout::isEdgeRight(int index) const {
  return index % getNumTileX() == getNumTileX() - 1 || index + 1 >= pageCount();
}

TPointF TPrintLayout::tileStep() const {
  const double w = FPaper.FWidthMm - FPaper.FMarginLeft - FPaper.FMarginRight;
  const double h = FPaper.FHeightMm - FPaper.FMarginTop - FPaper.FMarginBottom;
  return TPointF::fromDouble(w / FCalibrationRatio.x - FSwitches.FOverlapLen,
                             h / FCalibrationRatio.y - FSwitches.FOverlapLen);
}

void TPrintLayout::setOffsetMm(int page, const TPointF& mm) {
  FProject->FPrintOffset.at(static_cast<size_t>(page)) =
      TPointF::fromDouble(double(mm.x) / kMmPerInch * FDPI, double(mm.y) / kMmPerInch * FDPI);
}

void TPrintLayout::resetTile() {
  const TPointF step = tileStep();
  const TPointF margin = paperToReal(FPaper.FMarginLeft, FPaper.FMarginTop);
  for (int i = 0; i < pageCount(); ++i) {
    int col = 0, row = 0;
    getTileColRow(i, col, row);
    setOffsetMm(i, TPointF::fromDouble(col * double(step.x) - margin.x, row * double(step.y) - margin.y));
  }
}

long TPrintLayout::tileToCover() {
  const TPointF step = tileStep();
  const TPointF span = step + TPointF::fromDouble(FSwitches.FOverlapLen, FSwitches.FOverlapLen);
  const long needX = tilesFor(FBoundary.width(), span.x, step.x);
  const long needY = tilesFor(FBoundary.height(), span.y, step.y);
  const int nx = static_cast<int>(std::clamp<long>(needX, 1, kMaxPrintPages));
  const int ny = static_cast<int>(std::clamp<long>(needY, 1, kMaxPrintPages / nx));
  const size_t n = static_cast<size_t>(nx * ny);
  FSwitches.FTileX = nx;
  FProject->FPrintOffset.assign(n, TPointF());
  FProject->FPrintTarget.assign(n, true);
  FProject->FPrintScalePos.assign(n, 0);
  resetTile();
  chooseScaleCorners();
  return needX * needY;
}

TPrintLayout::TScaleCorner TPrintLayout::scaleCorner(int position) const {
  const double inset = FSwitches.FRulerInside ? 15 : 5;
  const bool right = position == 1 || position == 2, bottom = position == 2 || position == 3;
  return {right ? FPaper.FWidthMm - FPaper.FMarginRight - inset : FPaper.FMarginLeft + inset,
          bottom ? FPaper.FHeightMm - FPaper.FMarginBottom - inset : FPaper.FMarginTop + inset, right ? -1.0 : 1.0,
          bottom ? -1.0 : 1.0};
}

namespace {

// Whether the segment a-b meets the rectangle (Liang and Barsky's clip).
bool segmentMeetsRect(const TPointF& a, const TPointF& b, const TRectF& r) {
  double t0 = 0, t1 = 1;
  const double dx = double(b.x) - a.x, dy = double(b.y) - a.y;
  const double p[4] = {-dx, dx, -dy, dy};
  const double q[4] = {double(a.x) - r.Left, double(r.Right) - a.x, double(a.y) - r.Top, double(r.Bottom) - a.y};
  for (int i = 0; i < 4; ++i) {
    if (p[i] == 0) {
      if (q[i] < 0) return false;
      continue;
    }
    const double t = q[i] / p[i];
    if (p[i] < 0) t0 = std::max(t0, t);
    else t1 = std::min(t1, t);
    if (t0 > t1) return false;
  }
  return true;
}

bool shapeMeetsRect(TPW_Path& shape, const TRectF& r) {
  const TRectF b = shape.getBoundary(false).normalized();
  if (b.Right < r.Left || b.Left > r.Right || b.Bottom < r.Top || b.Top > r.Bottom) return false;
  const auto& pts = shape.FData.points();
  for (size_t i = 1; i < pts.size(); ++i)
    if (pts[i].Kind != TPathPointKind::MoveTo && segmentMeetsRect(pts[i - 1].Point, pts[i].Point, r)) return true;
  return pts.size() == 1 && r.containsPoint(pts[0].Point);
}

}  // namespace

void TPrintLayout::chooseScaleCorners() {
  for (int page = 0; page < pageCount(); ++page) {
    const TPointF corner = getOffsetRealPt(page);
    int best = 0, fewest = -1;
    for (int pos = 0; pos < kScalePositions; ++pos) {
      const TScaleCorner c = scaleCorner(pos);
      // The band of each scale with its ticks and figures, 7 mm wide.
      auto band = [&](double x0, double y0, double x1, double y1) {
        const TPointF a = corner + paperToReal(std::min(x0, x1), std::min(y0, y1));
        const TPointF b = corner + paperToReal(std::max(x0, x1), std::max(y0, y1));
        return TRectF(a, b);
      };
      const TRectF across = band(c.x, c.y, c.x + c.dx * 100 * FCalibrationRatio.x, c.y + c.dy * 7);
      const TRectF down = band(c.x, c.y, c.x + c.dx * 7, c.y + c.dy * 100 * FCalibrationRatio.y);
      int crossing = 0;
      for (const auto& shape : *FProject)
        if (shapeMeetsRect(*shape, across) || shapeMeetsRect(*shape, down)) ++crossing;
      if (fewest < 0 || crossing < fewest) {
        fewest = crossing;
        best = pos;
      }
      if (fewest == 0) break;
    }
    FProject->FPrintScalePos[static_cast<size_t>(page)] = best;
  }
}

bool TPrintLayout::fitsOnePage() const {
  const TPointF span = tileStep() + TPointF::fromDouble(FSwitches.FOverlapLen, FSwitches.FOverlapLen);
  return FBoundary.width() <= double(span.x) + 1e-6 && FBoundary.height() <= double(span.y) + 1e-6;
}

double TPrintLayout::maxOverlap() const {
  const double w = (FPaper.FWidthMm - FPaper.FMarginLeft - FPaper.FMarginRight) / FCalibrationRatio.x;
  const double h = (FPaper.FHeightMm - FPaper.FMarginTop - FPaper.FMarginBottom) / FCalibrationRatio.y;
  return std::max(0.0, std::min(w, h) / 2);
}

std::string TPrintLayout::checkSettings(const TMultiLang& phrases, const std::string& langID) const {
  for (double c : {double(FCalibrationRatio.x), double(FCalibrationRatio.y)})
    if (!(c * 100 >= kMinCalibration - 1e-9 && c * 100 <= kMaxCalibration + 1e-9))
      return fillPhrase(phrases.getTranslation(langID, "PrintCalibrationOutOfRange"), {floatToText(std::round(c * 1e4) / 100)});
  if (!(FSwitches.FOverlapLen >= 0 && FSwitches.FOverlapLen <= maxOverlap()))
    return fillPhrase(phrases.getTranslation(langID, "PrintOverlapOutOfRange"),
                      {floatToText(FSwitches.FOverlapLen), floatToText(std::floor(maxOverlap() * 10) / 10)});
  return {};
}

// ---- Page + and Page - ----

void TPrintLayout::pageAdd() {
  TShapeList& p = *FProject;
  if (pageCount() >= kMaxPrintPages) return;
  const TPointF last = p.FPrintOffset.empty() ? TPointF() : p.FPrintOffset.back();
  p.FPrintTarget.push_back(true);
  p.FPrintScalePos.push_back(0);
  const double stepPx = double(tileStep().x) / kMmPerInch * FDPI;
  p.FPrintOffset.push_back(TPointF::fromDouble(double(last.x) + stepPx, last.y));
  if (FSwitches.FTilePrint) resetTile();
}

void TPrintLayout::pageRemove() {
  TShapeList& p = *FProject;
  if (pageCount() <= 1) return;
  p.FPrintOffset.pop_back();
  p.FPrintTarget.pop_back();
  p.FPrintScalePos.pop_back();
}

// ---- the pointer ----

int TPrintLayout::pageAt(const TPointF& real) const {
  for (int i = pageCount() - 1; i >= 0; --i)
    if (sheetRealRect(i).containsPoint(real)) return i;
  return -1;
}

bool TPrintLayout::mouseDown(bool rightButton, const TPointF& pixel, const TPointF& real) {
  FDraggingPageIdx = pageAt(real);
  if (rightButton) {
    if (FDraggingPageIdx < 0) return false;
    auto&& target = FProject->FPrintTarget[static_cast<size_t>(FDraggingPageIdx)];
    target = !target;
    return true;
  }
  FIsMouseDown = true;
  FMouseDownPos = pixel;
  FMouseDownReal = real;
  if (FDraggingPageIdx >= 0)
    FOrgOffset = FProject->FPrintOffset[static_cast<size_t>(FSwitches.FTilePrint ? 0 : FDraggingPageIdx)];
  return false;
}

bool TPrintLayout::mouseMove(const TPointF&, const TPointF& real) {
  if (!FIsMouseDown || FDraggingPageIdx < 0) return false;
  const TPointF moved = TPointF::fromDouble((double(real.x) - FMouseDownReal.x) / kMmPerInch * FDPI,
                                            (double(real.y) - FMouseDownReal.y) / kMmPerInch * FDPI);
  auto& offsets = FProject->FPrintOffset;
  if (!FSwitches.FTilePrint) {
    offsets[static_cast<size_t>(FDraggingPageIdx)] = FOrgOffset + moved;
    return true;
  }
  // Tiles move as one, after page 0.
  const TPointF by = FOrgOffset + moved - offsets[0];
  for (TPointF& o : offsets) o += by;
  return true;
}

bool TPrintLayout::mouseUp(bool rightButton, const TPointF& pixel, const TPointF&) {
  const bool wasDown = FIsMouseDown;
  FIsMouseDown = false;
  if (rightButton || !wasDown || FDraggingPageIdx < 0) return false;
  if (std::abs(double(pixel.x) - FMouseDownPos.x) > 1 || std::abs(double(pixel.y) - FMouseDownPos.y) > 1) return false;
  int& pos = FProject->FPrintScalePos[static_cast<size_t>(FDraggingPageIdx)];
  pos = (pos + 1) % kScalePositions;
  return true;
}
