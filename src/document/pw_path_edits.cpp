// Edits of a shape in place: reversing, arcs into curves, arcs into pieces.
#include <cmath>
#include <numbers>

#include "document/point_helpers.h"
#include "document/pw_path.h"

void TPW_Path::reversePath() {
  if (FShapeType != ShapeType::Bezier && FShapeType != ShapeType::Line &&
      FShapeType != ShapeType::Arc)
    return;
  const auto& e = FData.points();
  TPathData rev;
  if (!e.empty()) {
    TPointF last = e.back().Point;
    rev.MoveTo(last);
    for (size_t i = e.size() - 1; i-- > 0;) {
      if (e[i + 1].Kind == TPathPointKind::LineTo && e[i].Point != last) {
        rev.LineTo(e[i].Point);
        last = e[i].Point;
      }
    }
  }
  FData = rev;
  std::swap(FStartPt, FEndPt);
  std::swap(FBezierCp1, FBezierCp2);
  FSweepAngle = -FSweepAngle;
}

void TPW_Path::convertArcToBezier() {
  const double sweep = std::fabs(double(FSweepAngle));
  if (sweep > 180.0) return;
  const double k = std::tan(sweep * std::numbers::pi / 720.0) * 4.0 / 3.0;
  const TPointF uStart = unitVector(FCenter, FStartPt);
  const TPointF uEnd = unitVector(FCenter, FEndPt);
  const TPointF m = TPointF::fromDouble(double(uStart.x) + uEnd.x, double(uStart.y) + uEnd.y);
  const TPointF cm = TPointF::fromDouble(double(FCenter.x) + m.x, double(FCenter.y) + m.y);

  auto tangentAt = [&](const TPointF& e) -> TPointF {
    if (sweep == 180.0) return rotateVector(uStart, FSweepAngle < 0 ? -90.0 : 90.0);
    const TPointF t1 = rotateVector(unitVector(FCenter, e), 90.0);
    const TPointF t2 = -t1;
    const double d1 = distanceOf(cm, e + t1);
    const double d2 = distanceOf(cm, e + t2);
    // Below a half turn the tangent pointing towards the arc's middle wins.
    return d2 > d1 ? t1 : t2;
  };
  const TPointF ts = tangentAt(FStartPt);
  const TPointF te = tangentAt(FEndPt);
  const double len = double(FWidth) * k;
  const TPointF cp1 = TPointF::fromDouble(FStartPt.x + ts.x * len, FStartPt.y + ts.y * len);
  const TPointF cp2 = TPointF::fromDouble(FEndPt.x + te.x * len, FEndPt.y + te.y * len);
  drawBezierPath(FStartPt, cp1, cp2, FEndPt);
}

std::vector<std::unique_ptr<TPW_Path>> TPW_Path::splitArc() {
  std::vector<std::unique_ptr<TPW_Path>> pieces;
  if (FShapeType != ShapeType::Arc || std::fabs(FSweepAngle) <= 90.0f) return pieces;
  // As few equal pieces as keep each within a quarter turn: 270 degrees
  // gives three of 90, 100 degrees two of 50.
  const int n = static_cast<int>(std::ceil(std::fabs(double(FSweepAngle)) / 90.0));
  const float step = static_cast<float>(double(FSweepAngle) / n);
  const TPointF radius(FWidth, FHeight);
  for (int i = 1; i < n; ++i) {
    auto piece = createCopy();
    const TPointF end = rotatePointAbout(FStartPt, step, FCenter);
    piece->FEndPt = end;
    piece->FSweepAngle = step;
    piece->drawArcPath(FCenter, radius, FStartPt, end, step);
    pieces.push_back(std::move(piece));
    FStartPt = end;
    FSweepAngle = static_cast<float>(double(FSweepAngle) - step);
  }
  drawArcPath(FCenter, radius, FStartPt, FEndPt, FSweepAngle);
  return pieces;
}
