// What a shape can tell about itself: control points, boxes, centres,
// straight intervals and lengths.
#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>

#include "document/point_helpers.h"
#include "document/pw_path.h"
#include "geometry/bezier_length.h"

namespace {

bool hasCurves(const TPathData& d) {
  for (const auto& p : d.points())
    if (p.Kind == TPathPointKind::CurveTo) return true;
  return false;
}

// Calls f(St, Ed) for each LineTo piece of the path flattened at 0.25. A
// MoveTo only moves the pen; Close gives no piece. Stored shapes are already
// flat, so the copy is made only when curves are present.
template <typename F>
void forEachInterval(const TPathData& data, F&& f) {
  TPathData flat;
  const TPathData* src = &data;
  if (hasCurves(data)) {
    flat = data;
    flat.Flatten(0.25);
    src = &flat;
  }
  TPointF prev;
  for (const auto& p : src->points()) {
    switch (p.Kind) {
      case TPathPointKind::LineTo:
        f(prev, p.Point);
        prev = p.Point;
        break;
      case TPathPointKind::MoveTo:
      case TPathPointKind::Close:
        prev = p.Point;
        break;
      case TPathPointKind::CurveTo:
        break;
    }
  }
}

double segmentLength(const TPointF& a, const TPointF& b) {
  return std::hypot(double(b.x) - a.x, double(b.y) - a.y);
}

}  // namespace

TPointFArray TPW_Path::getControlPoints(bool IncludeCenterForArc, bool forceEachPathPoints,
                                        bool DoBezierQuaters) {
  TPointFArray pts;
  auto rel = [this](double dx, double dy) {
    return TPointF::fromDouble(double(FCenter.x) + dx, double(FCenter.y) + dy);
  };
  if (forceEachPathPoints) {
    const auto& e = FData.points();
    for (size_t i = 0; i < e.size(); ++i) {
      switch (e[i].Kind) {
        case TPathPointKind::MoveTo:
        case TPathPointKind::LineTo:
          pts.push_back(e[i].Point);
          break;
        case TPathPointKind::CurveTo:
          if (i > 0) pts.push_back(e[i - 1].Point);
          break;
        case TPathPointKind::Close:
          break;
      }
    }
    if (!e.empty() && (pts.empty() || pts.back() != e.back().Point)) pts.push_back(e.back().Point);
    return pts;
  }

  if (FShapeType == ShapeType::Ellipse) {
    const double hw = FWidth / 2.0, hh = FHeight / 2.0;
    if (std::fabs(double(FWidth) - FHeight) <= 0.001) {
      pts = {FCenter, rel(0, hh), rel(0, -hh), rel(hw, 0), rel(-hw, 0)};
    } else {
      // The diagonal points use the half width on both axes, so they lie
      // on a circle and not on the ellipse.
      const double rd = hw / std::sqrt(2.0);
      pts = {rel(0, -hh), rel(rd, -rd), rel(hw, 0), rel(rd, rd), rel(0, hh),
             rel(-rd, rd), rel(-hw, 0), rel(-rd, -rd), FCenter};
    }
  } else if (FShapeType == ShapeType::Dot || FShapeType == ShapeType::Hole) {
    pts = {FCenter};
  } else if (FShapeType == ShapeType::Arc) {
    const TPointF u = unitVector(FCenter, FStartPt);
    pts.push_back(FStartPt);
    for (double f : {0.25, 0.5, 0.75}) {
      const TPointF v = rotateVector(u, FSweepAngle * f);
      pts.push_back(rel(double(FWidth) * v.x, double(FWidth) * v.y));
    }
    pts.push_back(FEndPt);
    if (IncludeCenterForArc) pts.push_back(FCenter);
  } else if (FShapeType == ShapeType::Line) {
    const double sx = FStartPt.x, sy = FStartPt.y, ex = FEndPt.x, ey = FEndPt.y;
    pts = {FStartPt, TPointF::fromDouble((3 * sx + ex) / 4, (3 * sy + ey) / 4),
           TPointF::fromDouble((sx + ex) / 2, (sy + ey) / 2),
           TPointF::fromDouble((sx + 3 * ex) / 4, (sy + 3 * ey) / 4), FEndPt};
  } else if (FShapeType == ShapeType::Bezier) {
    if (!DoBezierQuaters) return {FStartPt, FEndPt};
    if (!FControlPointsCache.empty()) return FControlPointsCache;
    // The marks at a quarter, half and three quarters of the arc length;
    // the three share one table of running lengths.
    const TBezierLengthTable table(TBezier{FStartPt, FBezierCp1, FBezierCp2, FEndPt});
    pts = {FStartPt, FEndPt};
    for (double f : {0.25, 0.5, 0.75}) pts.push_back(table.pointAtLength(table.total() * f));
    FControlPointsCache = pts;
  } else {
    const TRectF r = getBoundary(false);
    pts = {TPointF(r.Left, r.Top), TPointF(r.Right, r.Top), TPointF(r.Right, r.Bottom),
           TPointF(r.Left, r.Bottom)};
  }
  return pts;
}

TRectF TPW_Path::getBoundary(bool SetStartEndCenter) {
  if (FIsBoundaryCalculated) return FBoundaryCache;
  const TPointFArray pts = getControlPoints(false, true, false);
  if (pts.empty()) return TRectF(FStartPt, FEndPt);
  float l = pts[0].x, t = pts[0].y, r = l, b = t;
  double sx = 0, sy = 0;
  for (const auto& p : pts) {
    l = std::min(l, p.x);
    r = std::max(r, p.x);
    t = std::min(t, p.y);
    b = std::max(b, p.y);
    sx += p.x;
    sy += p.y;
  }
  if (SetStartEndCenter) {
    FStartPt = TPointF(l, t);
    FEndPt = TPointF(r, b);
    FCenter = TPointF::fromDouble(sx / pts.size(), sy / pts.size());
  }
  FBoundaryCache = TRectF(l, t, r, b);
  FIsBoundaryCalculated = true;
  return FBoundaryCache;
}

TRectF TPW_Path::getMinMaxRect() const { return FData.GetBounds(); }

TPointF TPW_Path::getCenterPoint() {
  if (FShapeType == ShapeType::Line) {
    FCenter = TPointF::fromDouble((double(FStartPt.x) + FEndPt.x) / 2.0,
                                  (double(FStartPt.y) + FEndPt.y) / 2.0);
  } else if (FShapeType == ShapeType::Bezier) {
    FCenter = getBoundary(false).centerPoint();
  } else if (FShapeType == ShapeType::Other) {
    getBoundary(true);
  }
  return FCenter;
}

TPointF TPW_Path::calcCenter() {
  const TPointF c = getBoundary(false).centerPoint();
  FData.Translate(-double(c.x), -double(c.y));
  resetBoundary();
  return TPointF();
}

std::vector<TRectF> TPW_Path::getIntervals(bool DoReverse) const {
  std::vector<TRectF> out;
  forEachInterval(FData, [&out](const TPointF& a, const TPointF& b) { out.emplace_back(a, b); });
  if (DoReverse) {
    std::reverse(out.begin(), out.end());
    for (auto& r : out) r = TRectF(r.Right, r.Bottom, r.Left, r.Top);
  }
  return out;
}

std::vector<TPathInterval> TPW_Path::getIntervalsFast(bool DoReverse) const {
  std::vector<TPathInterval> out;
  out.reserve(FData.Count());
  TPointF prev;
  for (const auto& p : FData.points()) {
    if (p.Kind == TPathPointKind::LineTo) {
      out.push_back({prev, p.Point});
      prev = p.Point;
    } else if (p.Kind != TPathPointKind::CurveTo) {
      prev = p.Point;
    }
  }
  if (DoReverse) {
    std::reverse(out.begin(), out.end());
    for (auto& iv : out) std::swap(iv.St, iv.Ed);
  }
  return out;
}

float TPW_Path::calcTotalLength() const {
  double sum = 0.0;
  forEachInterval(FData, [&sum](const TPointF& a, const TPointF& b) { sum += segmentLength(a, b); });
  return static_cast<float>(sum);
}

float TPW_Path::calcLengthBetween(int fromIndex, int toIndex, int direction) const {
  const bool wraps = (fromIndex < toIndex && direction < 0) || (fromIndex > toIndex && direction >= 1);
  if (wraps && FShapeType != ShapeType::Ellipse) return std::numeric_limits<float>::quiet_NaN();
  const std::vector<TRectF> iv = getIntervals(false);
  const int n = static_cast<int>(iv.size());
  if (fromIndex < 0 || fromIndex >= n || toIndex < 0 || toIndex >= n)
    throw std::out_of_range("interval index out of range");
  if (direction == 0 && fromIndex != toIndex) return std::numeric_limits<float>::quiet_NaN();
  const int step = direction < 0 ? -1 : 1;
  double sum = 0.0;
  int i = fromIndex;
  while (true) {
    sum += segmentLength(iv[i].topLeft(), iv[i].bottomRight());
    if (i == toIndex) break;
    i += step;
    if (i >= n) i = 0;
    else if (i < 0) i = n - 1;
  }
  return static_cast<float>(sum);
}

float TPW_Path::calcLengthFromAnIndex(int fromIndex, int direction) const {
  TPathData flat = FData;
  flat.Flatten(0.25);
  const auto& e = flat.points();
  const int n = static_cast<int>(e.size());
  if (fromIndex < 0 || fromIndex >= n) throw std::out_of_range("path index out of range");
  double sum = 0.0;
  if (direction > 0) {
    for (int i = fromIndex; i + 1 < n; ++i) sum += segmentLength(e[i].Point, e[i + 1].Point);
  } else {
    for (int i = fromIndex; i > 0; --i) sum += segmentLength(e[i].Point, e[i - 1].Point);
  }
  return static_cast<float>(sum);
}

float TPW_Path::calcLengthFromAPoint(const TPointF& fromPt, int direction) const {
  int idx = -1;
  if (!isOnPath(fromPt, idx)) return 0.0f;
  const std::vector<TRectF> iv = getIntervals(false);
  const TRectF& hit = iv[idx];
  // The hit interval is counted whole on top of the partial piece; the
  // pitch corrections of the stitch tools are tuned to this.
  double sum = direction > 0 ? segmentLength(fromPt, hit.bottomRight())
                             : segmentLength(fromPt, hit.topLeft());
  sum += segmentLength(hit.topLeft(), hit.bottomRight());
  if (direction > 0) {
    for (size_t i = idx + 1; i < iv.size(); ++i) sum += segmentLength(iv[i].topLeft(), iv[i].bottomRight());
  } else {
    for (int i = 0; i < idx; ++i) sum += segmentLength(iv[i].topLeft(), iv[i].bottomRight());
  }
  return static_cast<float>(sum);
}

void TPW_Path::getFirstTwoPoints(TPointF& pt1, TPointF& pt2) const {
  pt1 = TPointF();
  pt2 = TPointF();
  for (const auto& p : FData.points()) {
    if (p.Kind == TPathPointKind::MoveTo) {
      pt1 = p.Point;
    } else if (p.Point != pt1) {
      pt2 = p.Point;
      return;
    }
  }
}

void TPW_Path::getLastTwoPoints(TPointF& pt1, TPointF& pt2) const {
  pt1 = TPointF();
  pt2 = TPointF();
  const auto& e = FData.points();
  if (e.empty()) return;
  pt2 = e.back().Point;
  for (size_t i = e.size() - 1; i-- > 0;) {
    if (e[i].Point != pt2) {
      pt1 = e[i].Point;
      return;
    }
  }
}

float TPW_Path::findNearestBezierT(const TPointF& pt, TPointF& ActualPt) const {
  // An exhaustive scan of 10001 samples, no refinement. Distances are kept
  // as singles, and only a strictly closer sample replaces the best, so on
  // a tie the smallest t wins.
  float bestT = 0.0f;
  float bestD = 0.0f;
  for (int i = 0; i <= 10000; ++i) {
    const float t = static_cast<float>(i / 10000.0);
    const TPointF q = cubicPointAt(FStartPt, FBezierCp1, FBezierCp2, FEndPt, t);
    const float d = distanceOf(q, pt);
    if (i == 0 || d < bestD) {
      bestD = d;
      bestT = t;
      ActualPt = q;
    }
  }
  return bestT;
}

bool TPW_Path::fillPath() const {
  return !FData.isEmpty() && FData.points().back().Kind == TPathPointKind::Close;
}
