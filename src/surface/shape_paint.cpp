// Drawing one shape: its pen, its body by kind, holes with their dot, and
// the handles of a selected shape.
#include <cmath>
#include <numbers>

#include "app/frm_pelw.h"
#include "document/point_helpers.h"
#include "surface/scene_painter.h"
#include "surface/view_math.h"

TShapePen screenPenFromRow(const TPW_Path& shape, const TPaletteLook* row, bool black,
                           double log10PixelsPerMm, const TStrokeDefs& defs, TAlphaColor centerlineColor) {
  TShapePen pen;
  const TAlphaColor rowColor = row ? row->colorFor(black) : shape.FColor;
  pen.fill = rowColor;
  if (shape.FIsSymmetryTarget) {
    pen.color = centerlineColor;
    pen.thickness = 2.5f;
    pen.dash = TStrokeDash::Dot;
    return pen;
  }
  pen.color = shape.FSelected ? defs.SelectionColor : rowColor;
  // As screenThickness, with the logarithm worked out once for the paint.
  pen.thickness = static_cast<float>((double(shape.FThickness) - 0.5) + log10PixelsPerMm / 2.0);
  pen.dash = row ? row->FDash : shape.FDash;
  return pen;
}

TShapePen screenPenFor(const TPW_Path& shape, const IPaintPalette* palette, bool black,
                       double pixelsPerMm, const TStrokeDefs& defs, TAlphaColor centerlineColor) {
  TPaletteLook look;
  const bool hasRow = palette && palette->contains(shape.FPalletIndex);
  if (hasRow) look = palette->row(shape.FPalletIndex);
  return screenPenFromRow(shape, hasRow ? &look : nullptr, black, std::log10(pixelsPerMm), defs,
                          centerlineColor);
}

double holeDotRadiusFromLog(double log10PixelsPerMm, bool threadShowing) {
  const double l = log10PixelsPerMm;
  return threadShowing ? (l - 1) / 10 + 2 : l + 2;
}

double holeDotRadius(double pixelsPerMm, bool threadShowing) {
  return holeDotRadiusFromLog(std::log10(pixelsPerMm), threadShowing);
}

float TScenePainter::shapeOpacity(const TPW_Path& shape) const {
  if (F.FIsPrinting || F.FIsPrintPreviewing || F.FPaintSwitches.chkHighlightActiveLayer) return 1.0f;
  if (F.FIgnoreLayer || shape.FLayerID == F.FActiveLayer) return 1.0f;
  return 0.5f;
}

TShapePen TScenePainter::paperPen(const TPW_Path& shape) const {
  TShapePen pen;
  TAlphaColor colour = shape.FColor;
  if (const TPaletteLook* row = rowOf(shape.FPalletIndex)) colour = row->colorFor(false);
  pen.color = F.FPaintSwitches.chkPrintInColor ? colour : claBlack;
  pen.fill = pen.color;
  pen.thickness = static_cast<float>(shape.FThickness * F.FPaintSwitches.printThicknessFactor);
  pen.dash = shape.FDash;
  // Lines of a row kept off paper print with no thickness.
  if (!(F.FIsPrintPreviewing && F.FPaintSwitches.chkShowNotForPrintLines)) {
    for (const TPaletteLook& row : FRows) {
      if (row.FIgnoreInPrinting && row.FThickness == shape.FThickness && row.FDash == shape.FDash &&
          (row.FColor_BlackMode == shape.FColor || row.FColor_WhiteMode == shape.FColor)) {
        pen.thickness = 0;
        break;
      }
    }
  }
  return pen;
}

void TScenePainter::paintShape(TPW_Path& shape) {
  if (shape.FIsDimensionLine && !F.FShowDimensionShapes) return;
  const std::string& type = shape.FShapeType;
  const bool hole = isHoleShape(shape) || type == ShapeType::Dot;
  // Holes send the waiting dots themselves, only when they draw more than a dot.
  if (!hole) flushDots();
  const bool paper = F.FIsPrinting || F.FIsPrintPreviewing;
  TShapePen pen = paper ? paperPen(shape)
                        : screenPenFromRow(shape, rowOf(shape.FPalletIndex), FBlack, FLogScale, F.FStrokeDefs,
                                           F.FColor_Centerline);
  // A line kept off paper leaves nothing there.
  if (paper && pen.thickness <= 0) return;
  float opacity = shapeOpacity(shape);
  if (hole && shape.FID < 0) {  // a preview
    pen.color = pen.fill = 0xFFFFFF00;
    pen.thickness = 2;
    opacity = 1;
  }
  const bool known = type == ShapeType::Line || type == ShapeType::Bezier || type == ShapeType::Arc ||
                     type == ShapeType::Ellipse || hole || type == ShapeType::Text ||
                     type == ShapeType::Other;
  if (!known) {
    C.setStroke(shape.FColor, TBrushKind::Solid, shape.FDash, shape.FThickness * F.FPrintLineFactor);
    C.drawPath(toScreen(shape.FData), opacity);
    return;
  }
  // A hole sets the pen itself, when it draws its outline.
  if (hole) {
    paintHole(shape, pen, opacity);
  } else {
    C.setStroke(pen.color, TBrushKind::Solid, pen.dash, pen.thickness);
    paintBody(shape, pen, opacity);
  }
  paintArrows(shape, pen, opacity);
  if (shape.FSelected && shape.FGroupID == 0 && !paper) {
    flushDots();
    paintHandles(shape);
  }
}

void TScenePainter::paintBody(TPW_Path& shape, const TShapePen& pen, float opacity) {
  const std::string& type = shape.FShapeType;
  const TPathData& path = toScreen(shape.FData);
  if (type == ShapeType::Text) {
    if (shape.FTextFill) {
      C.setFill(pen.color, TBrushKind::Solid);
      C.fillPath(path, opacity);
    } else {
      C.drawPath(path, opacity);
    }
    return;
  }
  if (type == ShapeType::Other) {
    const bool filled = shape.fillPath() && F.FPaintSwitches.chkFillOn;
    if (filled && !fillWithLeather(shape, path, opacity)) {
      C.setFill(pen.fill, TBrushKind::Solid);
      C.fillPath(path, shape.FOpacity * opacity);
    }
    if (!filled || shape.FSelected) {
      if (shape.FSelected) C.setStrokeThickness(pen.thickness * 1.5f);
      C.drawPath(path, opacity);
    }
    return;
  }
  C.drawPath(path, opacity);
}

bool TScenePainter::threadShowsOn(const TPW_Path& hole) const {
  return (F.FViewOptions.FShowStitchPattern || hole.FAlwaysShowStitchSimulator) &&
         !F.FSelectNextStitchingHoleMode;
}

void TScenePainter::paintHole(TPW_Path& shape, const TShapePen& pen, float opacity) {
  const TPointF centre = px(shape.FStartPt);
  if (F.FIsPrinting && F.FPaintSwitches.chkPrintStitchingHoleAsDot) {
    queueDot(centre, static_cast<float>(0.25 * F.FScale.x), pen.color, opacity);
    return;
  }
  const bool thread = threadShowsOn(shape);
  const double radius = holeDotRadiusFromLog(FLogScale, thread);
  // A hole that covers less than a pixel or two shows as its dot alone: its
  // outline would only blur the dot.
  const TRectF box = shape.getBoundary(false).normalized();
  const double extent = std::max(box.width(), box.height()) * F.FScale.x;
  if (extent >= 2.0 * radius || shape.FShapeType == ShapeType::Dot) {
    flushDots();
    C.setStroke(pen.color, TBrushKind::Solid, pen.dash, pen.thickness);
    const float pathOpacity = thread && !shape.FSelected ? 0.1f : opacity;
    C.drawPath(toScreen(shape.FData), pathOpacity);
  }
  queueDot(centre, static_cast<float>(radius), pen.fill, thread ? 0.1f : 0.6f);
  if (shape.FTemp_OnPath) {
    flushDots();
    // The direction the hole was laid in: a tick across it.
    const TPointF n(-shape.FTemp_vector.y, shape.FTemp_vector.x);
    const double l = 5.0 * F.FScale.x;
    C.setStroke(0xFF0000FF, TBrushKind::Solid, TStrokeDash::Solid, 1);
    C.drawLine(TPointF::fromDouble(centre.x - n.x * l, centre.y - n.y * l),
               TPointF::fromDouble(centre.x + n.x * l, centre.y + n.y * l), 0.7f);
  }
}

void TScenePainter::arrowHead(const TPointF& tip, const TPointF& from, double length, float opacity) {
  const TPointF back = unitVector(tip, from);
  if (back.x == 0 && back.y == 0) return;
  for (double turn : {30.0, -30.0}) {
    const TPointF d = rotateVector(back, turn);
    C.drawLine(tip, TPointF::fromDouble(tip.x + d.x * length, tip.y + d.y * length), opacity);
  }
}

void TScenePainter::paintArrows(TPW_Path& shape, const TShapePen& pen, float opacity) {
  const std::string& type = shape.FShapeType;
  if (type == ShapeType::Line && (shape.FShowArrowSt || shape.FShowArrowEd)) {
    const TPointF a = px(shape.FStartPt), b = px(shape.FEndPt);
    const double len = double(shape.FArrowLen) * F.FScale.x;
    if (shape.FShowArrowSt) arrowHead(a, b, len, opacity);
    if (shape.FShowArrowEd) arrowHead(b, a, len, opacity);
  }
  if (F.FShowPathDirec &&
      (type == ShapeType::Line || type == ShapeType::Bezier || type == ShapeType::Ellipse ||
       type == ShapeType::Arc || type == ShapeType::Other)) {
    TPointF p1, p2;
    shape.getLastTwoPoints(p1, p2);
    arrowHead(px(p2), px(p1), 10, opacity);
  }
}

void TScenePainter::handleSquare(const TPointF& real, float opacity) {
  const TPointF p = px(real);
  C.drawRect(TRectF(p.x - 3, p.y - 3, p.x + 3, p.y + 3), opacity);
}

void TScenePainter::handleCircle(const TPointF& real, float opacity) {
  const TPointF p = px(real);
  C.drawEllipse(TRectF(p.x - 3, p.y - 3, p.x + 3, p.y + 3), opacity);
}

void TScenePainter::dottedBox(const TRectF& real, float opacity) {
  C.setStrokeDash(TStrokeDash::Dot);
  C.drawRect(TRectF(px(real.topLeft()), px(real.bottomRight())), opacity);
  C.setStrokeDash(TStrokeDash::Solid);
}

void TScenePainter::paintHandles(TPW_Path& shape) {
  const std::string& type = shape.FShapeType;
  C.setStroke(F.FHandleColor, TBrushKind::Solid, TStrokeDash::Solid, 1);
  if (type == ShapeType::Line) {
    handleSquare(shape.FStartPt, 1);
    handleSquare(shape.FEndPt, 1);
  } else if (type == ShapeType::Bezier) {
    C.drawLine(px(shape.FStartPt), px(shape.FBezierCp1), 0.7f);
    C.drawLine(px(shape.FEndPt), px(shape.FBezierCp2), 0.7f);
    for (const TPointF& p : {shape.FStartPt, shape.FBezierCp1, shape.FBezierCp2, shape.FEndPt})
      handleSquare(p, 0.7f);
  } else if (type == ShapeType::Arc) {
    for (const TPointF& p : {shape.FCenter, shape.FStartPt, shape.FEndPt}) handleCircle(p, 1);
    C.setStrokeDash(TStrokeDash::Dot);
    C.drawLine(px(shape.FStartPt), px(shape.FCenter), 0.8f);
    C.drawLine(px(shape.FEndPt), px(shape.FCenter), 0.8f);
  } else if (type == ShapeType::Ellipse) {
    const TRectF b = shape.getBoundary(false).normalized();
    handleSquare(shape.FCenter, 1);
    for (const TPointF& p : {b.topLeft(), TPointF(b.Right, b.Top), b.bottomRight(), TPointF(b.Left, b.Bottom)})
      handleSquare(p, 1);
    dottedBox(b, 0.7f);
  } else if (type == ShapeType::Dot || type == ShapeType::Hole) {
    C.setStrokeColor(holeHandleColor(FBlack));
    handleSquare(shape.FStartPt, 0.7f);
  } else if (type == ShapeType::Text) {
    const TRectF b = shape.getBoundary(false).normalized();
    for (const TPointF& p : {b.topLeft(), TPointF(b.Right, b.Top), b.bottomRight(), TPointF(b.Left, b.Bottom)})
      handleSquare(p, 1);
    dottedBox(b, 0.7f);
    if (shape.FTextRadius > 0)
      handleSquare(TPointF::fromDouble(double(shape.FStartPt.x) + shape.FTextRadius, shape.FStartPt.y), 1);
  } else if (type == ShapeType::Other) {
    const TRectF b = shape.getBoundary(false).normalized();
    for (const TPointF& p : {b.topLeft(), TPointF(b.Right, b.Top), b.bottomRight(), TPointF(b.Left, b.Bottom)})
      handleCircle(p, 1);
    dottedBox(b, 0.7f);
  }
}
