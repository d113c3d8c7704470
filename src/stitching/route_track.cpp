#include "stitching/route_track.h"

#include <algorithm>
#include <cmath>
#include <climits>
#include <iterator>
#include <map>

#include "document/point_helpers.h"
#include "stitching/route_stretch.h"

namespace {

// A point put onto a drawn shape may move this far at most; anything more
// means the shape's fields do not describe its path, and the track's point
// stays.
constexpr double kMostOnto = 0.05;

TDPoint operator-(const TDPoint& a, const TDPoint& b) { return {a.x - b.x, a.y - b.y}; }
double dot(const TDPoint& a, const TDPoint& b) { return a.x * b.x + a.y * b.y; }
double distance(const TDPoint& a, const TDPoint& b) { return std::hypot(a.x - b.x, a.y - b.y); }

// The nearest point of the axis-aligned ellipse about c with half axes a, b.
TDPoint ontoEllipse(const TDPoint& c, double a, double b, const TDPoint& p) {
  if (std::fabs(a - b) <= 1e-9 * std::max(a, 1.0)) {
    const double d = distance(p, c);
    if (!(d > 0.0)) return p;
    return {c.x + (p.x - c.x) * a / d, c.y + (p.y - c.y) * a / d};
  }
  double t = std::atan2((p.y - c.y) / b, (p.x - c.x) / a);
  for (int i = 0; i < 12; ++i) {
    const double cs = std::cos(t), sn = std::sin(t);
    const TDPoint e{c.x + a * cs - p.x, c.y + b * sn - p.y};
    const TDPoint d1{-a * sn, b * cs}, d2{-a * cs, -b * sn};
    const double f = dot(e, d1), df = dot(d1, d1) + dot(e, d2);
    if (!(std::fabs(df) > 1e-15)) break;
    t -= f / df;
  }
  return {c.x + a * std::cos(t), c.y + b * std::sin(t)};
}

// The nearest point of the cubic p0..p3 to p.
TDPoint ontoCubic(const TDPoint (&q)[4], const TDPoint& p) {
  auto at = [&](double t) {
    const double u = 1.0 - t;
    const double k0 = u * u * u, k1 = 3 * u * u * t, k2 = 3 * u * t * t, k3 = t * t * t;
    return TDPoint{k0 * q[0].x + k1 * q[1].x + k2 * q[2].x + k3 * q[3].x,
                   k0 * q[0].y + k1 * q[1].y + k2 * q[2].y + k3 * q[3].y};
  };
  auto d1 = [&](double t) {
    const double u = 1.0 - t;
    return TDPoint{3 * u * u * (q[1].x - q[0].x) + 6 * u * t * (q[2].x - q[1].x) + 3 * t * t * (q[3].x - q[2].x),
                   3 * u * u * (q[1].y - q[0].y) + 6 * u * t * (q[2].y - q[1].y) + 3 * t * t * (q[3].y - q[2].y)};
  };
  auto d2 = [&](double t) {
    const double u = 1.0 - t;
    return TDPoint{6 * u * (q[2].x - 2 * q[1].x + q[0].x) + 6 * t * (q[3].x - 2 * q[2].x + q[1].x),
                   6 * u * (q[2].y - 2 * q[1].y + q[0].y) + 6 * t * (q[3].y - 2 * q[2].y + q[1].y)};
  };
  constexpr int kSamples = 64;
  double best = 0.0, bestD = 1e300;
  for (int i = 0; i <= kSamples; ++i) {
    const double t = double(i) / kSamples, d = distance(at(t), p);
    if (d < bestD) {
      bestD = d;
      best = t;
    }
  }
  double t = best;
  for (int i = 0; i < 12; ++i) {
    const TDPoint e = at(t) - p, v = d1(t);
    const double f = dot(e, v), df = dot(v, v) + dot(e, d2(t));
    if (!(std::fabs(df) > 1e-15)) break;
    t = std::clamp(t - f / df, 0.0, 1.0);
  }
  return at(t);
}

TDPoint ontoShape(const TPW_Path& s, const TDPoint& p) {
  if (s.FShapeType == ShapeType::Ellipse)
    return ontoEllipse(toDPoint(s.FCenter), s.FWidth / 2.0, s.FHeight / 2.0, p);
  if (s.FShapeType == ShapeType::Arc && std::fabs(double(s.FWidth) - s.FHeight) <= 1e-6 * s.FWidth)
    return ontoEllipse(toDPoint(s.FCenter), s.FWidth, s.FWidth, p);
  if (s.FShapeType == ShapeType::Bezier) {
    const TDPoint q[4] = {toDPoint(s.FStartPt), toDPoint(s.FBezierCp1), toDPoint(s.FBezierCp2), toDPoint(s.FEndPt)};
    return ontoCubic(q, p);
  }
  return p;
}

}  // namespace

TRouteTrack::TRouteTrack(const std::vector<TTrackLeg>& legs) {
  for (const TTrackLeg& leg : legs) addLeg(leg);
}

void TRouteTrack::addLeg(const TTrackLeg& leg) {
  if (!leg.FShape) return;
  std::vector<TDPoint> pts;
  for (const TRectF& r : makeStretchPath(*leg.FShape, leg.FFrom, leg.FTo)->getIntervals(false)) {
    const TDPoint a = toDPoint(r.topLeft()), b = toDPoint(r.bottomRight());
    if (a.x == b.x && a.y == b.y) continue;
    if (pts.empty()) pts.push_back(a);
    pts.push_back(b);
  }
  if (pts.empty()) return;
  // A whole shape keeps its own way; turn it to run from the leg's start.
  const TDPoint from = toDPoint(leg.FFrom);
  if (distance(pts.front(), from) > distance(pts.back(), from)) std::reverse(pts.begin(), pts.end());
  const int legIndex = static_cast<int>(FLegShapes.size());
  FLegShapes.push_back(leg.FShape);
  for (const TDPoint& p : pts) {
    if (!FPoints.empty()) {
      const double step = distance(FPoints.back(), p);
      if (step == 0.0) continue;
      FLegOf.push_back(legIndex);
      FAt.push_back(FAt.back() + step);
    } else {
      FAt.push_back(0.0);
    }
    FPoints.push_back(p);
  }
}

TRouteTrack TRouteTrack::aroundLoop(const std::vector<TPW_Path*>& shapes, const TPointF& start) {
  std::vector<TTrackLeg> legs;
  TPointF cur = start;
  for (const TPW_Path* s : shapes) {
    const bool turned = !samePoint(s->FStartPt, cur, kRoutePointTolerance) &&
                        samePoint(s->FEndPt, cur, kRoutePointTolerance);
    legs.push_back(turned ? TTrackLeg{s, s->FEndPt, s->FStartPt} : TTrackLeg{s, s->FStartPt, s->FEndPt});
    cur = legs.back().FTo;
  }
  return TRouteTrack(legs);
}

TDPoint TRouteTrack::pointAt(const TTrackPos& pos) const {
  const TDPoint& a = FPoints[size_t(pos.FPiece)];
  const TDPoint& b = FPoints[size_t(pos.FPiece) + 1];
  return {a.x + (b.x - a.x) * pos.FAlong, a.y + (b.y - a.y) * pos.FAlong};
}

double TRouteTrack::distanceAt(const TTrackPos& pos) const {
  const size_t i = size_t(pos.FPiece);
  return FAt[i] + (FAt[i + 1] - FAt[i]) * pos.FAlong;
}

TDPoint TRouteTrack::directionAt(const TTrackPos& pos) const {
  const TDPoint& a = FPoints[size_t(pos.FPiece)];
  const TDPoint& b = FPoints[size_t(pos.FPiece) + 1];
  const double len = distance(a, b);
  return {(b.x - a.x) / len, (b.y - a.y) / len};
}

bool TRouteTrack::nextAtChord(const TTrackPos& from, const TDPoint& center, double radius,
                              TTrackPos& next) const {
  return exitFrom(from, from.FPiece, center, radius, next);
}

bool TRouteTrack::exitFrom(const TTrackPos& from, int first, const TDPoint& center, double radius,
                           TTrackPos& next) const {
  const double r2 = radius * radius;
  for (int i = first; i < pieceCount(); ++i) {
    const TDPoint& a = FPoints[size_t(i)];
    const TDPoint& b = FPoints[size_t(i) + 1];
    const double u0 = i == from.FPiece ? from.FAlong : 0.0;
    const TDPoint ac = a - center, e = b - a;
    // Where |a + u e - center| = radius: the larger root is where the piece
    // leaves the circle.
    const double A = dot(e, e), B = 2.0 * dot(e, ac), C = dot(ac, ac) - r2;
    if (i != from.FPiece && C >= 0.0) {
      // Already outside at the start of the piece: the previous one left
      // the circle at its very end.
      next = TTrackPos{i, 0.0};
      return true;
    }
    const double disc = B * B - 4.0 * A * C;
    if (disc < 0.0) continue;
    const double u = (-B + std::sqrt(disc)) / (2.0 * A);
    if (u >= u0 && u <= 1.0) {
      next = TTrackPos{i, u};
      return true;
    }
  }
  return false;
}

bool TRouteTrack::stepFrom(const TTrackPos& from, const TDPoint& center, double pitch, TTrackPos& next) const {
  // A chord is never longer than the way it spans, so every piece that ends
  // less than a pitch along the track from the dividers lies inside their
  // circle: the search starts at the first piece reaching that far (less a
  // margin well above the rounding of the length table).
  const double reach = distanceAt(from) + pitch - 1e-9 * (length() + pitch + 1.0);
  const auto it = std::lower_bound(FAt.begin() + from.FPiece + 1, FAt.end(), reach);
  const int first = std::max(from.FPiece, static_cast<int>(it - FAt.begin()) - 1);
  return exitFrom(from, first, center, pitch, next);
}

TPointF TRouteTrack::onDrawing(const TTrackPos& pos) const {
  const TDPoint p = pointAt(pos);
  const TPW_Path* s = FLegShapes[size_t(FLegOf[size_t(pos.FPiece)])];
  const TDPoint q = ontoShape(*s, p);
  return toPointF(distance(p, q) <= kMostOnto ? q : p);
}

void TRouteTrack::walk(double pitch, int most, std::vector<TTrackPos>& places) const {
  places.clear();
  if (empty() || !(pitch > 0.0)) return;
  TTrackPos at{0, 0.0}, next;
  places.push_back(at);
  TDPoint cur = start();
  for (int step = 0; step < most && stepFrom(at, cur, pitch, next); ++step) {
    at = next;
    cur = pointAt(at);
    places.push_back(at);
  }
}

int TRouteTrack::stepsAt(double pitch, int most) const {
  if (empty() || !(pitch > 0.0)) return 0;
  TTrackPos at{0, 0.0}, next;
  TDPoint cur = start();
  int steps = 0;
  for (; steps < most && stepFrom(at, cur, pitch, next); ++steps) {
    at = next;
    cur = pointAt(at);
  }
  return steps;
}

// ---- the pitch that closes a count (its halving in closing_pitch.cpp) ----

int TRouteTrack::nearestStepCount(double pitch, double* closingPitch) const {
  if (closingPitch) *closingPitch = 0.0;
  if (!(pitch > 0.0) || !(length() > 0.0)) return 0;
  // Each count's pitch is found once, and the one chosen handed back.
  std::map<int, double> found;
  auto pitchOf = [&](int steps) {
    const auto it = found.find(steps);
    if (it != found.end()) return it->second;
    // A neighbouring count's pitch, scaled, is a close first guess.
    double seed = 0.0;
    if (!found.empty()) {
      const auto near = found.lower_bound(steps) == found.end() ? std::prev(found.end()) : found.lower_bound(steps);
      seed = near->second * near->first / steps;
    }
    return found[steps] = pitchForStepsFrom(steps, seed);
  };
  // The pitches fall as the steps rise: find the two counts either side.
  int more = std::max(1, static_cast<int>(std::lround(length() / pitch)));
  int fewer = more;
  if (pitchOf(more) >= pitch) {
    for (int k = 0; k < 64 && pitchOf(more) >= pitch && pitchOf(more) > 0.0; ++k) fewer = more++;
  } else {
    for (int k = 0; k < 64 && pitchOf(fewer) < pitch && fewer > 1; ++k) more = fewer--;
  }
  int count = fewer;
  if (!(pitchOf(fewer) > 0.0)) count = pitchOf(more) > 0.0 ? more : 0;
  else if (pitchOf(more) > 0.0 && std::fabs(pitchOf(more) - pitch) < std::fabs(pitchOf(fewer) - pitch)) count = more;
  if (closingPitch && count > 0) *closingPitch = pitchOf(count);
  return count;
}
