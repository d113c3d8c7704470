#include "exchange/print_marks.h"

#include <algorithm>
#include <string>

#include "document/shape_list.h"
#include "exchange/print_layout.h"
#include "platform/canvas.h"
#include "surface/view_math.h"

namespace {

constexpr double kScaleLength = 100;  // millimetres of the drawing
constexpr double kMarkThickness = 0.15;  // paper millimetres

// A mapping from paper millimetres of a sheet to canvas pixels.
struct TPaperMap {
  TPointF k;       // pixels per paper millimetre
  TPointF origin;  // the sheet's corner on the canvas
  TPointF operator()(double x, double y) const {
    return TPointF::fromDouble(origin.x + x * k.x, origin.y + y * k.y);
  }
};

TPaperMap paperMapOf(const TPrintLayout& l, int page, const TPointF& scale, const TPointF& offset) {
  const TPointF k = TPointF::fromDouble(scale.x / l.FCalibrationRatio.x, scale.y / l.FCalibrationRatio.y);
  return {k, realToScreen(l.getOffsetRealPt(page), scale, offset)};
}

// The two 100 mm scales with a tick each millimetre, longer ones each 5
// and 10, and the millimetres written each 10; in the preview only the
// two lines, in red, where they will stand.
void paintScales(ICanvas& c, const TPrintLayout& l, int page, const TPaperMap& m, bool onPaper) {
  const int pos = l.FProject->FPrintScalePos.at(static_cast<size_t>(page));
  const TPrintLayout::TScaleCorner s = l.scaleCorner(pos);
  const double ux = l.FCalibrationRatio.x, uy = l.FCalibrationRatio.y;  // a drawing millimetre on paper
  if (onPaper) c.setStroke(claBlack, TBrushKind::Solid, TStrokeDash::Solid, static_cast<float>(kMarkThickness * m.k.x));
  else c.setStroke(kTileMarkColor, TBrushKind::Solid, TStrokeDash::Solid, 2);  // where they go, in the preview
  c.drawLine(m(s.x, s.y), m(s.x + s.dx * kScaleLength * ux, s.y), 1);
  c.drawLine(m(s.x, s.y), m(s.x, s.y + s.dy * kScaleLength * uy), 1);
  if (!onPaper) return;
  for (int i = 0; i <= kScaleLength; ++i) {
    const double tick = i % 10 == 0 ? 4 : i % 5 == 0 ? 2.5 : 1.5;
    const double x = s.x + s.dx * i * ux, y = s.y + s.dy * i * uy;
    c.drawLine(m(x, s.y), m(x, s.y + s.dy * tick), 1);
    c.drawLine(m(s.x, y), m(s.x + s.dx * tick, y), 1);
  }
  c.setFontSize(5);
  c.setFill(claBlack, TBrushKind::Solid);
  const float th = c.textHeight("0");
  for (int i = 10; i <= kScaleLength; i += 10) {
    const std::string t = i == kScaleLength ? "100 mm" : std::to_string(i);
    const float tw = c.textWidth(t);
    // Along the horizontal scale under (or over) its long ticks ...
    const TPointF a = m(s.x + s.dx * i * ux, s.y + s.dy * 4.5);
    const float ay = s.dy > 0 ? a.y : a.y - th;
    const float ax = i == kScaleLength && s.dx > 0 ? a.x - tw : i == kScaleLength ? a.x : a.x - tw / 2;
    c.fillText(TRectF(ax, ay, ax + tw, ay + th), t, 1, TTextAlign::Leading, TTextAlign::Leading);
    // ... and beside the vertical scale's.
    const TPointF b = m(s.x + s.dx * 4.5, s.y + s.dy * i * uy);
    const float bx = s.dx > 0 ? b.x : b.x - tw;
    const float by = i == kScaleLength && s.dy > 0 ? b.y - th : i == kScaleLength ? b.y : b.y - th / 2;
    c.fillText(TRectF(bx, by, bx + tw, by + th), t, 1, TTextAlign::Leading, TTextAlign::Leading);
  }
}

// A cross in a circle: the mark two neighbouring tiles are laid on each other by.
void registrationMark(ICanvas& c, const TPointF& p, double radius) {
  const float r = static_cast<float>(radius), arm = static_cast<float>(radius * 1.6);
  c.drawEllipse(TRectF(p.x - r, p.y - r, p.x + r, p.y + r), 1);
  c.drawLine(TPointF(p.x - arm, p.y), TPointF(p.x + arm, p.y), 1);
  c.drawLine(TPointF(p.x, p.y - arm), TPointF(p.x, p.y + arm), 1);
}

// On each side that a neighbour overlaps: a dashed line where the
// neighbour's part begins, and three marks on the middle of the overlap,
// which lies at the same place of the drawing on both tiles.
void paintTileMarks(ICanvas& c, const TPrintLayout& l, int page, const TPointF& scale, const TPointF& offset,
                    const TPaperMap& m) {
  const TRectF pr = l.printableRealRect(page);
  const double ov = l.FSwitches.FOverlapLen;
  const float thick = static_cast<float>(kMarkThickness * m.k.x);
  auto px = [&](double x, double y) { return realToScreen(TPointF::fromDouble(x, y), scale, offset); };
  auto band = [&](double from, double middle, bool vertical) {
    c.setStroke(kTileMarkColor, TBrushKind::Solid, TStrokeDash::Dash, thick);
    if (vertical) c.drawLine(px(from, pr.Top), px(from, pr.Bottom), 1);
    else c.drawLine(px(pr.Left, from), px(pr.Right, from), 1);
    c.setStrokeDash(TStrokeDash::Solid);
    for (int k = 1; k <= 3; ++k) {
      const TPointF p = vertical ? px(middle, pr.Top + pr.height() * k / 4) : px(pr.Left + pr.width() * k / 4, middle);
      registrationMark(c, p, 3 * m.k.x);
    }
  };
  if (!l.isEdgeRight(page)) band(pr.Right - ov, pr.Right - ov / 2, true);
  if (!l.isEdgeLeft(page)) band(pr.Left + ov, pr.Left + ov / 2, true);
  if (!l.isEdgeBottom(page)) band(pr.Bottom - ov, pr.Bottom - ov / 2, false);
  if (!l.isEdgeTop(page)) band(pr.Top + ov, pr.Top + ov / 2, false);
  // The tile's name at the middle of its top edge.
  int col = 0, row = 0;
  l.getTileColRow(page, col, row);
  const std::string name = tileName(col, row);
  c.setFontSize(9);
  c.setFill(kTileMarkColor, TBrushKind::Solid);
  const float tw = c.textWidth(name), th = c.textHeight(name);
  const TPointF at = m(l.FPaper.FWidthMm / 2, l.FPaper.FMarginTop + 6);
  c.fillText(TRectF(at.x - tw / 2, at.y, at.x + tw / 2, at.y + th), name, 1, TTextAlign::Center, TTextAlign::Leading);
}

}  // namespace

std::string tileName(int col, int row) {
  std::string letters;
  for (int r = row + 1; r > 0; r = (r - 1) / 26) letters.insert(letters.begin(), char('A' + (r - 1) % 26));
  return letters + std::to_string(col + 1);
}

void paintSheetMarks(ICanvas& c, const TPrintLayout& l, int page, const TPointF& scale, const TPointF& offset) {
  const TPaperMap m = paperMapOf(l, page, scale, offset);
  const TPaperSetup& p = l.FPaper;
  const bool tiles = l.FSwitches.FTilePrint && l.pageCount() > 1;
  if (l.FSwitches.FTilePrint || !l.FSwitches.FPrintIntoMargin) {
    c.setFill(claWhite, TBrushKind::Solid);
    const TPointF a = m(0, 0), b = m(p.FWidthMm, p.FHeightMm);
    const TPointF i = m(p.FMarginLeft, p.FMarginTop), j = m(p.FWidthMm - p.FMarginRight, p.FHeightMm - p.FMarginBottom);
    if (p.FMarginLeft > 0) c.fillRect(TRectF(a.x, a.y, i.x, b.y), 1);
    if (p.FMarginRight > 0) c.fillRect(TRectF(j.x, a.y, b.x, b.y), 1);
    if (p.FMarginTop > 0) c.fillRect(TRectF(a.x, a.y, b.x, i.y), 1);
    if (p.FMarginBottom > 0) c.fillRect(TRectF(a.x, j.y, b.x, b.y), 1);
  }
  if (tiles) paintTileMarks(c, l, page, scale, offset, m);
  paintScales(c, l, page, m, true);
}

void paintPreviewPages(ICanvas& c, const TPrintLayout& l, const TPointF& scale, const TPointF& offset) {
  int number = 0;
  for (int i = 0; i < l.pageCount(); ++i) {
    const TRectF r(realToScreen(l.sheetRealRect(i).topLeft(), scale, offset),
                   realToScreen(l.sheetRealRect(i).bottomRight(), scale, offset));
    const bool target = l.isTarget(i);
    std::string label = "-";
    if (target) {
      label = std::to_string(++number);
      c.setFill(0xFF0000FF, TBrushKind::Solid);
      c.fillRect(r, 0.06f);
      c.setStroke(0xFF0000FF, TBrushKind::Solid, TStrokeDash::Solid, 1.5f);
      c.drawRect(r, 1);
      const TRectF pr(realToScreen(l.printableRealRect(i).topLeft(), scale, offset),
                      realToScreen(l.printableRealRect(i).bottomRight(), scale, offset));
      if (!(pr == r)) {
        c.setStroke(0xFF0000FF, TBrushKind::Solid, TStrokeDash::Dot, 1);
        c.drawRect(pr, 0.6f);
      }
      paintScales(c, l, i, paperMapOf(l, i, scale, offset), false);
    } else {
      c.setStroke(0xFF909090, TBrushKind::Solid, TStrokeDash::Dash, 1.5f);
      c.drawRect(r, 1);
      c.drawLine(r.topLeft(), r.bottomRight(), 0.6f);
      c.drawLine(TPointF(r.Right, r.Top), TPointF(r.Left, r.Bottom), 0.6f);
    }
    if (l.FSwitches.FTilePrint) {
      int col = 0, row = 0;
      l.getTileColRow(i, col, row);
      label += " (" + tileName(col, row) + ")";
    }
    c.setFontSize(14);
    c.setFill(target ? 0xFF0000FF : 0xFF909090, TBrushKind::Solid);
    c.fillText(r, label, 0.7f, TTextAlign::Center, TTextAlign::Center);
  }
}

void paintPrintAreas(ICanvas& c, const TPrintLayout& l, const TPointF& scale, const TPointF& offset) {
  for (int i = 0; i < l.pageCount(); ++i) {
    const TRectF s = l.sheetRealRect(i);
    c.setStroke(0xFF0000FF, TBrushKind::Solid, TStrokeDash::DashDotDot, 1);
    c.drawRect(TRectF(realToScreen(s.topLeft(), scale, offset), realToScreen(s.bottomRight(), scale, offset)), 0.9f);
    if (!l.FSwitches.FTilePrint || l.pageCount() < 2) continue;
    // The lines the tiles are joined along.
    const TRectF pr = l.printableRealRect(i);
    const double half = l.FSwitches.FOverlapLen / 2;
    c.setStroke(kTileMarkColor, TBrushKind::Solid, TStrokeDash::Dot, 1);
    auto line = [&](double x0, double y0, double x1, double y1) {
      c.drawLine(realToScreen(TPointF::fromDouble(x0, y0), scale, offset),
                 realToScreen(TPointF::fromDouble(x1, y1), scale, offset), 0.9f);
    };
    if (!l.isEdgeRight(i)) line(pr.Right - half, pr.Top, pr.Right - half, pr.Bottom);
    if (!l.isEdgeBottom(i)) line(pr.Left, pr.Bottom - half, pr.Right, pr.Bottom - half);
  }
}
