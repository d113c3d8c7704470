// Hit tests and sameness of shapes.
#include <algorithm>
#include <cmath>

#include "document/point_helpers.h"
#include "document/pw_path.h"

bool TPW_Path::isOnPath(const TPointF& rp, int& intervalIdx, float /*Threshold*/) const {
  // The test is on the cross product, not the distance: a long interval
  // tolerates less sideways offset than a short one. The 0.06 is fixed.
  const std::vector<TRectF> iv = getIntervals(false);
  double best = 2147483648.0;
  int bestIdx = -1;
  for (size_t i = 0; i < iv.size(); ++i) {
    const double px = iv[i].Left, py = iv[i].Top, qx = iv[i].Right, qy = iv[i].Bottom;
    const double dx = qx - px, dy = qy - py;
    const double len2 = dx * dx + dy * dy;
    if (len2 == 0.0) continue;
    const double c = dy * (double(rp.x) - px) - dx * (double(rp.y) - py);
    if (std::fabs(c) > 0.06) continue;
    const double e = dx * (double(rp.x) - px) + dy * (double(rp.y) - py);
    if (e < 0.0 || e > len2) continue;
    if (c < best) {
      best = c;
      bestIdx = static_cast<int>(i);
    }
  }
  if (bestIdx < 0) return false;
  intervalIdx = bestIdx;
  return true;
}

bool TPW_Path::isInRect(const TPointF& rp) const { return TRectF(FStartPt, FEndPt).containsPoint(rp); }

bool TPW_Path::isAPointInsideShape(const TPointF& pt) { return getBoundary(false).containsPoint(pt); }

bool TPW_Path::inRange(const TPointF& rsp, const TPointF& rep, bool AllowPartial) {
  const TRectF sel = TRectF(rsp, rep).normalized();
  const TRectF b = getBoundary(false).normalized();
  if (!AllowPartial)
    return b.Left >= sel.Left && b.Right <= sel.Right && b.Top >= sel.Top && b.Bottom <= sel.Bottom;
  if (FShapeType == ShapeType::Hole) {
    return sel.containsPoint(TPointF(b.Left, b.Top)) || sel.containsPoint(TPointF(b.Right, b.Top)) ||
           sel.containsPoint(TPointF(b.Right, b.Bottom)) ||
           sel.containsPoint(TPointF(b.Left, b.Bottom));
  }
  // An overlap on one axis alone is enough: the wide test is the settled one.
  const bool xOverlap = b.Left <= sel.Right && b.Right >= sel.Left;
  if (xOverlap) return true;
  return b.Top <= sel.Bottom && b.Bottom >= sel.Top;
}

bool TPW_Path::doesItIntersectWith(TPW_Path& tp) {
  const TRectF a = getBoundary(false).normalized();
  const TRectF b = tp.getBoundary(false).normalized();
  constexpr double gap = 0.01;
  const bool x = double(a.Left) <= double(b.Right) + gap && double(b.Left) <= double(a.Right) + gap;
  const bool y = double(a.Top) <= double(b.Bottom) + gap && double(b.Top) <= double(a.Bottom) + gap;
  return x && y;
}

namespace {

bool sameEnds(const TPW_Path& a, const TPW_Path& b) {
  return (samePoint(a.FStartPt, b.FStartPt) && samePoint(a.FEndPt, b.FEndPt)) ||
         (samePoint(a.FStartPt, b.FEndPt) && samePoint(a.FEndPt, b.FStartPt));
}

// Equality of the text forms: every coordinate prints the same.
bool samePathText(const TPathData& a, const TPathData& b) {
  if (a.Count() != b.Count()) return false;
  auto sameNum = [](float x, float y) { return x == y || (std::isnan(x) && std::isnan(y)); };
  for (size_t i = 0; i < a.Count(); ++i) {
    if (a[i].Kind != b[i].Kind) return false;
    if (a[i].Kind == TPathPointKind::Close) continue;  // "Z" carries no numbers
    if (!sameNum(a[i].Point.x, b[i].Point.x) || !sameNum(a[i].Point.y, b[i].Point.y)) return false;
  }
  return true;
}

}  // namespace

bool TPW_Path::isIdentical(TPW_Path& p) {
  if (FShapeType != p.FShapeType) return false;
  if (FShapeType == ShapeType::Line) return sameEnds(*this, p);
  if (FShapeType == ShapeType::Dot) return FCenter == p.getCenterPoint();
  if (FShapeType == ShapeType::Ellipse)
    return FCenter == p.FCenter && FWidth == p.FWidth && FHeight == p.FHeight &&
           FRotation == p.FRotation;
  if (FShapeType == ShapeType::Hole) return FStartPt == p.FStartPt;
  if (FShapeType == ShapeType::Arc)
    return sameEnds(*this, p) && samePoint(FCenter, p.FCenter) &&
           std::fabs(double(FWidth) - p.FWidth) <= 1e-12 &&
           std::fabs(double(FHeight) - p.FHeight) <= 1e-12;
  if (FShapeType == ShapeType::Bezier)
    return sameEnds(*this, p) && FBezierCp1 == p.FBezierCp1 && FBezierCp2 == p.FBezierCp2;
  if (FShapeType == ShapeType::Text || FShapeType == ShapeType::Other)
    return samePathText(FData, p.FData);
  return false;
}
