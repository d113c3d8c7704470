#include "geometry/trim.h"

#include <algorithm>
#include <cmath>

#include "geometry/bezier_math.h"
#include "geometry/geom_helpers.h"
#include "geometry/intersect_pair.h"
#include "geometry/shape_ends.h"

namespace {

// A piece this short or shorter is not kept.
constexpr double kMinPiece = 0.1;

bool isCircle(const TPW_Path& s) {
  return s.isType(ShapeType::Ellipse) && std::fabs(double(s.FWidth) - s.FHeight) <= 0.01;
}

// A cut point: where it lies along the shape, and the point itself.
struct TCutPoint {
  double pos = 0;
  TPointF pt;
};

// Degrees of the point about the centre, 0 to 360, clockwise on the screen from +x.
double angleAbout(const TPointF& centre, const TPointF& p) {
  double a = std::atan2(double(p.y) - centre.y, double(p.x) - centre.x) / kDegToRad;
  if (a < 0) a += 360.0;
  return a;
}

TPointF pointAtAngle(const TPointF& centre, double radius, double degrees) {
  return TPointF::fromDouble(centre.x + radius * std::cos(degrees * kDegToRad),
                             centre.y + radius * std::sin(degrees * kDegToRad));
}

// Fraction of the sweep at which the point lies; a point a hair outside
// the arc counts as the nearer end.
double arcFraction(const TPW_Path& arc, const TPointF& p) {
  const double sweep = std::fabs(double(arc.FSweepAngle));
  if (sweep < 1e-9) return 0.0;
  const TDPoint c = toDPoint(arc.FCenter);
  double a = signedAngleDeg(toDPoint(arc.FStartPt) - c, toDPoint(p) - c) * (arc.FSweepAngle < 0 ? -1.0 : 1.0);
  if (a < 0) a += 360.0;
  if (a > sweep) a = (a - sweep < 360.0 - a) ? sweep : 0.0;
  return a / sweep;
}

double positionOn(const TPW_Path& s, const TPointF& p) {
  if (s.isType(ShapeType::Arc)) return arcFraction(s, p);
  if (s.isType(ShapeType::Bezier)) {
    TPointF actual;
    return findNearestBezierT(s, p, actual);
  }
  return distanceOf(s.FStartPt, p);  // a line: straight from the start
}

void keepPiece(TCutPieces& out, std::unique_ptr<TPW_Path> piece) { out.FPieces.push_back(std::move(piece)); }

void lineTrim(const TPW_Path& line, const TPointF& a, const TPointF& b, TCutPieces& out) {
  const TPointF st = line.FStartPt, ep = line.FEndPt;
  TPointF first[2], second[2];
  if (double(distanceOf(st, b)) + distanceOf(ep, a) <= double(distanceOf(st, a)) + distanceOf(ep, b)) {
    first[0] = st, first[1] = b, second[0] = ep, second[1] = a;
  } else {
    first[0] = st, first[1] = a, second[0] = ep, second[1] = b;
  }
  for (const TPointF* piece : {first, second}) {
    if (distanceOf(piece[0], piece[1]) <= kMinPiece) continue;
    auto s = newShapeStyledLike(line);
    s->drawLinePath(piece[0], piece[1]);
    keepPiece(out, std::move(s));
  }
}

void arcTrim(const TPW_Path& arc, double fa, double fb, TCutPieces& out) {
  const double sweep = arc.FSweepAngle;
  const double arcLength = std::fabs(sweep) * kDegToRad * arc.FWidth;
  const double a0 = angleAbout(arc.FCenter, arc.FStartPt);
  const TPointF radius(arc.FWidth, arc.FHeight);
  if (arcLength * fa > kMinPiece) {
    auto s = newShapeStyledLike(arc);
    s->drawArcPath(arc.FCenter, radius, arc.FStartPt, pointAtAngle(arc.FCenter, arc.FWidth, a0 + sweep * fa),
                   static_cast<float>(sweep * fa));
    keepPiece(out, std::move(s));
  }
  if (arcLength * (1.0 - fb) > kMinPiece) {
    auto s = newShapeStyledLike(arc);
    s->drawArcPath(arc.FCenter, radius, pointAtAngle(arc.FCenter, arc.FWidth, a0 + sweep * fb), arc.FEndPt,
                   static_cast<float>(sweep * (1.0 - fb)));
    keepPiece(out, std::move(s));
  }
}

void bezierTrim(const TPW_Path& curve, double ta, double tb, TCutPieces& out) {
  const TBezier b = bezierOf(curve);
  if (bezierSegmentLength(b, 0.0, ta) > kMinPiece) {
    auto s = newShapeStyledLike(curve);
    s->drawBezierPath(b.P0, b.P1, b.P2, b.P3);
    trimBezierKeep(*s, ta, true);
    keepPiece(out, std::move(s));
  }
  if (bezierSegmentLength(b, tb, 1.0) > kMinPiece) {
    auto s = newShapeStyledLike(curve);
    s->drawBezierPath(b.P0, b.P1, b.P2, b.P3);
    trimBezierKeep(*s, tb, false);
    keepPiece(out, std::move(s));
  }
  out.FFirstReplacesShape = !out.FPieces.empty();
}

// A circle keeps the arc from the cut point after the click, clockwise, to
// the one before it.
void circleTrim(const TPW_Path& circle, const std::vector<TPointF>& crossings, const TPointF& click,
                TCutPieces& out) {
  const double clickAngle = angleAbout(circle.FCenter, click);
  bool any = false;
  double after = 360.0, before = 0.0;
  for (const TPointF& x : crossings) {
    double off = angleAbout(circle.FCenter, x) - clickAngle;
    if (off <= 0) off += 360.0;
    if (off >= 360.0) continue;  // on the click itself
    any = true;
    after = std::min(after, off);
    before = std::max(before, off);
  }
  const double radius = circle.FWidth / 2.0;
  const double sweep = before - after;
  if (!any || sweep * kDegToRad * radius <= kMinPiece) return;
  auto s = newShapeStyledLike(circle);
  s->drawArcPath(circle.FCenter, TPointF::fromDouble(radius, radius),
                 pointAtAngle(circle.FCenter, radius, clickAngle + after),
                 pointAtAngle(circle.FCenter, radius, clickAngle + before), static_cast<float>(sweep));
  keepPiece(out, std::move(s));
}

}  // namespace

TTrimSupport trimSupportOf(const TPW_Path& s) {
  if (isLineCurveOrArc(s) || isCircle(s)) return TTrimSupport::Supported;
  return s.isType(ShapeType::Ellipse) ? TTrimSupport::OvalNotSupported : TTrimSupport::NotSupported;
}

TCutPieces trimPieces(const TPW_Path& shape, const std::vector<TPointF>& crossings, const TPointF& click) {
  TCutPieces out;
  if (trimSupportOf(shape) != TTrimSupport::Supported) return out;
  if (isCircle(shape)) {
    circleTrim(shape, crossings, click, out);
    return out;
  }
  const bool isLine = shape.isType(ShapeType::Line);
  const double endPos = isLine ? distanceOf(shape.FStartPt, shape.FEndPt) : 1.0;
  // The cut points before the click and after it, each list led by an end.
  std::vector<TCutPoint> before{{0.0, shape.FStartPt}}, after{{endPos, shape.FEndPt}};
  const double clickPos = positionOn(shape, click);
  for (const TPointF& x : crossings) {
    const double pos = positionOn(shape, x);
    std::vector<TCutPoint>& list = clickPos <= pos ? after : before;
    if (std::none_of(list.begin(), list.end(), [&](const TCutPoint& c) { return c.pt == x; }))
      list.push_back({pos, x});
  }
  // Nearest to the click: a line's by straight distance, the others' along the shape.
  auto nearest = [&](const std::vector<TCutPoint>& list) {
    const TCutPoint* best = &list.front();
    double bestDist = 0;
    for (const TCutPoint& c : list) {
      const double d = isLine ? double(distanceOf(c.pt, click)) : std::fabs(c.pos - clickPos);
      if (&c == &list.front() || d < bestDist) {
        best = &c;
        bestDist = d;
      }
    }
    return *best;
  };
  const TCutPoint a = nearest(before), b = nearest(after);
  if (isLine) lineTrim(shape, a.pt, b.pt, out);
  else if (shape.isType(ShapeType::Arc)) arcTrim(shape, a.pos, b.pos, out);
  else bezierTrim(shape, a.pos, b.pos, out);
  return out;
}

TNotchArms notchArms(const TPointF& p, const TPointF& pointer, double depth, double angleDeg) {
  TDPoint d = unit(toDPoint(p) - toDPoint(pointer));
  if (length(d) == 0.0) d = {-1.0, 0.0};
  const double h = angleDeg / 2.0 * kDegToRad;
  const TDPoint a1{d.x * std::cos(h) - d.y * std::sin(h), d.x * std::sin(h) + d.y * std::cos(h)};
  const TDPoint a2{d.x * std::cos(h) + d.y * std::sin(h), -d.x * std::sin(h) + d.y * std::cos(h)};
  const TDPoint tip = toDPoint(p) - d * depth;
  return TNotchArms{p, toPointF(tip), toPointF(tip + a1 * (depth * 1.5)), toPointF(tip + a2 * (depth * 1.5))};
}

TCutPieces notchPieces(const TPW_Path& shape, const TNotchArms& arms) {
  // Where each arm, from the tip outward, first meets the shape.
  auto copy = shape.createCopy();
  std::vector<TPointF> meets;
  for (const TPointF& end : {arms.FEnd1, arms.FEnd2}) {
    TPW_Path arm(0, claWhite, 1, TStrokeDash::Solid, -1);
    arm.drawLinePath(arms.FTip, end);
    const TIntersectionList found = calcShapeIntersections(&arm, copy.get());
    const TIntersection* best = nullptr;
    for (const auto& x : found) {
      if (!best || distanceOf(x->FPoint, arms.FTip) < distanceOf(best->FPoint, arms.FTip)) best = x.get();
    }
    if (!best) return {};
    meets.push_back(best->FPoint);
  }
  TCutPieces out = trimPieces(shape, meets, arms.FP);
  for (const auto& [from, to] : {std::pair{meets[0], arms.FTip}, std::pair{arms.FTip, meets[1]}}) {
    auto s = newShapeStyledLike(shape);
    s->drawLinePath(from, to);
    out.FPieces.push_back(std::move(s));
  }
  return out;
}
