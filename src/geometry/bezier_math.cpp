#include "geometry/bezier_math.h"

#include "document/point_helpers.h"
#include "document/shape_list.h"

TBezier bezierOf(const TPW_Path& shape) {
  return TBezier{shape.FStartPt, shape.FBezierCp1, shape.FBezierCp2, shape.FEndPt};
}

TPointF bezierPointAt(const TPW_Path& shape, float t) {
  return cubicPointAt(shape.FStartPt, shape.FBezierCp1, shape.FBezierCp2, shape.FEndPt, t);
}

void bezierDerivativeAt(const TBezier& b, double t, double& dx, double& dy) {
  const double u = 1.0 - t;
  const double k0 = 3.0 * u * u, k1 = 6.0 * u * t, k2 = 3.0 * t * t;
  dx = k0 * (double(b.P1.x) - b.P0.x) + k1 * (double(b.P2.x) - b.P1.x) + k2 * (double(b.P3.x) - b.P2.x);
  dy = k0 * (double(b.P1.y) - b.P0.y) + k1 * (double(b.P2.y) - b.P1.y) + k2 * (double(b.P3.y) - b.P2.y);
}

float findNearestBezierT(const TPW_Path& shape, const TPointF& pt, TPointF& ActualPt) {
  return shape.findNearestBezierT(pt, ActualPt);
}

namespace {

struct TDPoint {
  double x, y;
};

TDPoint lerp(const TDPoint& a, const TDPoint& b, double t) {
  return {a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t};
}

TDPoint dp(const TPointF& p) { return {p.x, p.y}; }
TPointF fp(const TDPoint& p) { return TPointF::fromDouble(p.x, p.y); }

}  // namespace

std::unique_ptr<TPW_Path> splitBezierAt(TPW_Path& shape, const TPointF& clicked, TShapeList& ids) {
  if (shape.FShapeType != ShapeType::Bezier) return nullptr;
  TPointF S;
  const double t = shape.findNearestBezierT(clicked, S);
  if (distanceOf(clicked, S) > 3.0f) return nullptr;
  if (samePoint(S, shape.FStartPt, 0.0) || samePoint(S, shape.FEndPt, 0.0)) return nullptr;
  if (t <= 0.0 || t >= 1.0) return nullptr;

  const TDPoint P0 = dp(shape.FStartPt), P1 = dp(shape.FBezierCp1), P2 = dp(shape.FBezierCp2),
                P3 = dp(shape.FEndPt), s = dp(S);
  const double u = 1.0 - t;
  const TDPoint A = lerp(P0, P1, t);
  const TDPoint B{u * u * P0.x + 2 * u * t * P1.x + t * t * P2.x,
                  u * u * P0.y + 2 * u * t * P1.y + t * t * P2.y};
  // The second half's first handle continues the first half's last one
  // through the cut, scaled by the ratio of the two parameter spans.
  const TDPoint C{s.x + (s.x - B.x) * u / t, s.y + (s.y - B.y) * u / t};
  const TDPoint D{P3.x + (P2.x - P3.x) * u, P3.y + (P2.y - P3.y) * u};

  auto second = std::make_unique<TPW_Path>(shape.FPalletIndex, shape.FColor, shape.FThickness,
                                           shape.FDash, ids.getNextID());
  second->FLayerID = shape.FLayerID;
  second->drawBezierPath(S, fp(C), fp(D), shape.FEndPt);
  shape.drawBezierPath(shape.FStartPt, fp(A), fp(B), S);
  return second;
}

void trimBezierKeep(TPW_Path& shape, double t, bool keepStartSide) {
  if (shape.FShapeType != ShapeType::Bezier) return;
  const TDPoint P0 = dp(shape.FStartPt), P1 = dp(shape.FBezierCp1), P2 = dp(shape.FBezierCp2),
                P3 = dp(shape.FEndPt);
  const TDPoint Q0 = lerp(P0, P1, t), Q1 = lerp(P1, P2, t), Q2 = lerp(P2, P3, t);
  const TDPoint R0 = lerp(Q0, Q1, t), R1 = lerp(Q1, Q2, t);
  const TDPoint S = lerp(R0, R1, t);
  if (keepStartSide) shape.drawBezierPath(fp(P0), fp(Q0), fp(R0), fp(S));
  else shape.drawBezierPath(fp(S), fp(R1), fp(Q2), fp(P3));
}
