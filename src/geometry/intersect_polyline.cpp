#include "geometry/intersect_polyline.h"

#include <algorithm>
#include <cmath>

#include "document/point_helpers.h"
#include "document/shape_list.h"
#include "geometry/geom_helpers.h"

namespace {

// Ends and crossings closer than this are one.
constexpr double kPolyNear = 0.1;
// Gap that still counts as touching between a segment and a box.
constexpr double kSegmentBoxGap = 0.01;
// Margin of a segment's range, in ten-thousandths (0.05 mm).
constexpr double kRangeMargin = 500.0;

bool segmentMeetsBox(const TPolySegment& s, const TPolyShape& o, double gap) {
  return s.l <= o.r + gap && o.l <= s.r + gap && s.t <= o.b + gap && o.t <= s.b + gap;
}

bool segmentsNear(const TPolySegment& s, const TPolySegment& q, double gap) {
  return s.l <= q.r + gap && q.l <= s.r + gap && s.t <= q.b + gap && q.t <= s.b + gap;
}

bool withinReach(const TPolySegment& s, const TPolyShape& ellipse) {
  auto inside = [&](const TPointF& p) {
    return std::llround(double(distanceOf(p, ellipse.FCenter)) * 10000.0) <= ellipse.FReach;
  };
  return inside(s.p0) && inside(s.p1);
}

bool insideRange(double v, float e0, float e1) {
  const double lo = std::min(e0, e1) * 10000.0, hi = std::max(e0, e1) * 10000.0;
  const double x = v * 10000.0;
  return x >= lo - kRangeMargin && x <= hi + kRangeMargin;
}

bool insideSegment(const TDPoint& p, const TPolySegment& s) {
  return insideRange(p.x, s.p0.x, s.p1.x) && insideRange(p.y, s.p0.y, s.p1.y);
}

bool isEndOf(const TPointF& p, const TPolyShape& s) {
  return samePoint(p, s.FStart, 0.0) || samePoint(p, s.FEnd, 0.0);
}

struct TFound {
  TPointF point;
  bool crossing;
};

bool layersKeepApart(const TPolyShape& a, const TPolyShape& b, const TShapeList* layers) {
  if (!layers || a.FLayer == b.FLayer) return false;
  return layers->GetIsIndependentLayer(a.FLayer) || layers->GetIsIndependentLayer(b.FLayer);
}

}  // namespace

TPolyShape preparePolyShape(TPW_Path& shape) {
  TPolyShape p;
  p.FShape = &shape;
  p.FIsLine = shape.FShapeType == ShapeType::Line;
  p.FIsEllipse = shape.FShapeType == ShapeType::Ellipse;
  p.FIsDimension = shape.FIsDimensionLine;
  p.FIsHole = shape.FShapeType == ShapeType::Hole;
  p.FNeverMeets = shape.FShapeType == ShapeType::Other || shape.FShapeType == ShapeType::Text;
  p.FLayer = shape.FLayerID;
  const TRectF box = shape.getBoundary(false).normalized();
  p.l = box.Left;
  p.t = box.Top;
  p.r = box.Right;
  p.b = box.Bottom;
  p.FStart = shape.FStartPt;
  p.FEnd = shape.FEndPt;
  p.FCenter = shape.FCenter;
  p.FReach = std::llround(std::max(shape.FWidth, shape.FHeight) / 1.5 * 10000.0);
  const std::vector<TPathInterval> intervals = shape.getIntervalsFast(false);
  p.FSegments.reserve(intervals.size());
  p.FVertices.reserve(intervals.size() + 1);
  for (const TPathInterval& iv : intervals) {
    if (p.FVertices.empty() || !p.FVertices.back().identical(iv.St)) p.FVertices.push_back(iv.St);
    p.FVertices.push_back(iv.Ed);
    const TPointF a = roundPointTo4Decimals(iv.St), b = roundPointTo4Decimals(iv.Ed);
    if (samePoint(a, b, 0.01)) continue;
    p.FSegments.push_back(TPolySegment{a, b, std::min(a.x, b.x), std::min(a.y, b.y),
                                       std::max(a.x, b.x), std::max(a.y, b.y)});
  }
  return p;
}

bool crossOfSegments(const TPointF& p0in, const TPointF& p1in, const TPointF& q0in,
                     const TPointF& q1in, TDPoint& pt) {
  const TPointF p0 = roundPointTo4Decimals(p0in), p1 = roundPointTo4Decimals(p1in);
  const TPointF q0 = roundPointTo4Decimals(q0in), q1 = roundPointTo4Decimals(q1in);
  const double pdx = double(p1.x) - p0.x, pdy = double(p1.y) - p0.y;
  const double qdx = double(q1.x) - q0.x, qdy = double(q1.y) - q0.y;
  const bool pVert = std::fabs(pdx) <= 0.001, qVert = std::fabs(qdx) <= 0.001;
  const bool pHorz = std::fabs(pdy) <= 0.001, qHorz = std::fabs(qdy) <= 0.001;
  const double pm = pVert ? 0.0 : pdy / pdx, qm = qVert ? 0.0 : qdy / qdx;
  const double pb = p0.y - pm * p0.x, qb = q0.y - qm * q0.x;
  if (!pVert && !qVert && std::fabs(pm - qm) <= 0.001 && std::fabs(pm) > 0.001 &&
      std::fabs(qm) > 0.001)
    return false;
  if ((pVert && qVert) || (pHorz && qHorz)) return false;
  double x, y;
  if (pVert) {
    x = (double(p0.x) + p1.x) / 2.0;
    y = qHorz ? (double(q0.y) + q1.y) / 2.0 : qm * x + qb;
  } else if (qVert) {
    x = (double(q0.x) + q1.x) / 2.0;
    y = pHorz ? (double(p0.y) + p1.y) / 2.0 : pm * x + pb;
  } else if (pHorz) {
    y = (double(p0.y) + p1.y) / 2.0;
    x = (y - qb) / qm;
  } else if (qHorz) {
    y = (double(q0.y) + q1.y) / 2.0;
    x = (y - pb) / pm;
  } else {
    if (pm == qm) return false;
    x = (qb - pb) / (pm - qm);
    y = pm * x + pb;
  }
  if (!std::isfinite(x) || !std::isfinite(y)) return false;
  pt = TDPoint{x, y};
  return true;
}

void calcPolylineIntersections(const TPolyShape& a, const TPolyShape& b, const TShapeList* layers,
                               bool forceExtended, TIntersectionList& out) {
  if (!a.FShape || !b.FShape) return;
  if (a.FNeverMeets || b.FNeverMeets || b.FIsHole) return;
  if (layersKeepApart(a, b, layers)) return;

  std::vector<TFound> found;
  // Ends first: ends of the two shapes that nearly meet are a joint.
  bool aStartTaken = false, aEndTaken = false, bStartTaken = false, bEndTaken = false;
  if (!a.FIsEllipse && !b.FIsEllipse) {
    auto matchEnds = [&](const TPointF& ea, bool& takenA, const TPointF& eb, bool& takenB) {
      if (!samePoint(ea, eb, kPolyNear)) return;
      found.push_back(TFound{ea, false});
      takenA = takenB = true;
    };
    matchEnds(a.FStart, aStartTaken, b.FStart, bStartTaken);
    matchEnds(a.FStart, aStartTaken, b.FEnd, bEndTaken);
    matchEnds(a.FEnd, aEndTaken, b.FStart, bStartTaken);
    matchEnds(a.FEnd, aEndTaken, b.FEnd, bEndTaken);
  }

  const bool boxesTouch = a.l <= b.r + kSegmentBoxGap && b.l <= a.r + kSegmentBoxGap &&
                          a.t <= b.b + kSegmentBoxGap && b.t <= a.b + kSegmentBoxGap;
  if (!a.FIsDimension && !b.FIsDimension && (boxesTouch || forceExtended)) {
    std::vector<const TPolySegment*> bSegs;
    bSegs.reserve(b.FSegments.size());
    for (const TPolySegment& s : b.FSegments) {
      if (!b.FIsLine && !segmentMeetsBox(s, a, kSegmentBoxGap)) continue;
      if (a.FIsEllipse && !b.FIsLine && !withinReach(s, a)) continue;
      bSegs.push_back(&s);
    }
    for (const TPolySegment& sa : a.FSegments) {
      if (!a.FIsLine && !segmentMeetsBox(sa, b, kSegmentBoxGap)) continue;
      if (b.FIsEllipse && !a.FIsLine && !withinReach(sa, b)) continue;
      for (const TPolySegment* sb : bSegs) {
        // Without extension a crossing lies in both ranges widened by 0.05,
        // and shared ends are within a hundredth: farther pairs give nothing.
        if (!forceExtended && !segmentsNear(sa, *sb, 0.11)) continue;
        TPointF pt;
        if (samePoint(sa.p0, sb->p0, 0.0) || samePoint(sa.p0, sb->p1, 0.0)) {
          pt = sa.p0;
        } else if (samePoint(sa.p1, sb->p0, 0.0) || samePoint(sa.p1, sb->p1, 0.0)) {
          pt = sa.p1;
        } else {
          TDPoint c;
          if (!crossOfSegments(sa.p0, sa.p1, sb->p0, sb->p1, c)) continue;
          if (!forceExtended && !(insideSegment(c, sa) && insideSegment(c, *sb))) continue;
          pt = toPointF(c);
        }
        const bool known = std::any_of(found.begin(), found.end(),
                                       [&](const TFound& f) { return samePoint(f.point, pt, 0.0); });
        if (known) continue;
        found.push_back(TFound{pt, !(isEndOf(pt, a) && isEndOf(pt, b))});
      }
    }
  }

  const size_t first = out.size();
  // Whether an entry of this pair already lies closer than 0.1.
  auto listedNear = [&out, first](const TPointF& p) {
    return std::any_of(out.begin() + static_cast<std::ptrdiff_t>(first), out.end(),
                       [&](const auto& e) { return samePoint(e->FPoint, p, kPolyNear); });
  };
  auto list = [&](const TPointF& p, bool crossing) {
    auto ict = std::make_unique<TIntersection>(p, a.FShape, b.FShape);
    ict->FIsCrossing = crossing;
    ict->FPathID1 = a.FShape->FID;
    ict->FPathID2 = b.FShape->FID;
    out.push_back(std::move(ict));
  };
  for (const TFound& f : found)
    if (!listedNear(f.point)) list(f.point, f.crossing);

  // Loose ends lying at a point of the other's path: T-joints and ends
  // stopped just short of a curve.
  auto looseEnd = [&](const TPointF& end, bool taken, const TPolyShape& other) {
    if (taken) return;
    const bool atVertex = std::any_of(other.FVertices.begin(), other.FVertices.end(),
                                      [&](const TPointF& v) { return samePoint(end, v, kPolyNear); });
    if (atVertex && !listedNear(end)) list(end, false);
  };
  if (!a.FIsEllipse) {
    looseEnd(a.FStart, aStartTaken, b);
    looseEnd(a.FEnd, aEndTaken, b);
  }
  if (!b.FIsEllipse) {
    looseEnd(b.FStart, bStartTaken, a);
    looseEnd(b.FEnd, bEndTaken, a);
  }
}

TIntersectionList calcPolylineIntersections(TPW_Path* a, TPW_Path* b, const TShapeList* layers,
                                            bool forceExtended) {
  TIntersectionList out;
  if (!a || !b) return out;
  calcPolylineIntersections(preparePolyShape(*a), preparePolyShape(*b), layers, forceExtended, out);
  return out;
}
