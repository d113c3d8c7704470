#include "geometry/ellipse_to_beziers.h"

#include <cmath>
#include <numbers>

#include "document/shape_list.h"

namespace {

struct TVec {
  double x, y;
};

// Turns the pair of half axes by `angle`, as a parametric ellipse
// centre + a cos + b sin moves its origin along by that angle.
void turnAxes(TVec& a, TVec& b, double angle) {
  const double c = std::cos(angle), s = std::sin(angle);
  const TVec na{a.x * c + b.x * s, a.y * c + b.y * s};
  const TVec nb{b.x * c - a.x * s, b.y * c - a.y * s};
  a = na;
  b = nb;
}

}  // namespace

std::vector<std::unique_ptr<TPW_Path>> ellipseToBeziers(const TPointF& center,
                                                        const TPointF& axisPoint1,
                                                        const TPointF& axisPoint2,
                                                        double startAngle, double sweep,
                                                        const TShapeStyle& style, TShapeList& ids) {
  std::vector<std::unique_ptr<TPW_Path>> out;
  if (sweep == 0.0 || std::isnan(sweep)) return out;
  const double pi = std::numbers::pi;
  const double cx = center.x, cy = center.y;
  TVec a{double(axisPoint1.x) - cx, double(axisPoint1.y) - cy};
  TVec b{double(axisPoint2.x) - cx, double(axisPoint2.y) - cy};
  if (startAngle != 0.0) turnAxes(a, b, startAngle);
  if (sweep < 0.0) {
    b = {-b.x, -b.y};
    sweep = -sweep;
  }
  if (sweep > 6.2831855) sweep = 6.2831855;

  int pieces = 1;
  if (sweep > pi / 2.0) {
    if (std::fabs(sweep - 2.0 * pi) < 0.001) pieces = 4;
    else pieces = static_cast<int>(std::ceil(sweep / (pi / 2.0)));
  }
  const double step = sweep / pieces;
  const double k = 4.0 / 3.0 * std::tan(step / 4.0);

  TPointF prevEnd, prevCp2;
  for (int i = 0; i < pieces; ++i) {
    const TPointF P = TPointF::fromDouble(cx + a.x, cy + a.y);
    // After the first piece the handle is the previous end's handle
    // mirrored through the joint, so that the pieces meet smoothly.
    const TPointF cp1 =
        i == 0 ? TPointF::fromDouble(double(P.x) + k * b.x, double(P.y) + k * b.y)
               : TPointF::fromDouble(2.0 * prevEnd.x - prevCp2.x, 2.0 * prevEnd.y - prevCp2.y);
    turnAxes(a, b, step);
    const TPointF Q = TPointF::fromDouble(cx + a.x, cy + a.y);
    const TPointF cp2 = TPointF::fromDouble(double(Q.x) - k * b.x, double(Q.y) - k * b.y);
    auto shape = std::make_unique<TPW_Path>(style.FPalletIndex, style.FColor, style.FThickness,
                                            style.FDash, ids.getNextID());
    shape->drawBezierPath(i == 0 ? P : prevEnd, cp1, cp2, Q);
    out.push_back(std::move(shape));
    prevEnd = Q;
    prevCp2 = cp2;
  }
  return out;
}
