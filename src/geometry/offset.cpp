#include "geometry/offset.h"

#include <algorithm>

#include "document/shape_list.h"
#include "geometry/bezier_math.h"
#include "geometry/geom_helpers.h"
#include "geometry/shape_ends.h"

namespace {

constexpr double kNoLength = 1e-9;

TDPoint cubicPoint(const TBezier& b, double t) {
  const double u = 1.0 - t;
  const double k0 = u * u * u, k1 = 3 * u * u * t, k2 = 3 * u * t * t, k3 = t * t * t;
  return {k0 * b.P0.x + k1 * b.P1.x + k2 * b.P2.x + k3 * b.P3.x,
          k0 * b.P0.y + k1 * b.P1.y + k2 * b.P2.y + k3 * b.P3.y};
}

// Direction of the cubic at t; where the derivative vanishes (a leg of no
// length at an end) the direction a hair further in.
TDPoint cubicDirection(const TBezier& b, double t) {
  for (double probe : {t, t < 0.5 ? t + 1e-4 : t - 1e-4, t < 0.5 ? t + 1e-2 : t - 1e-2}) {
    const double u = 1.0 - probe;
    const TDPoint d = (toDPoint(b.P1) - toDPoint(b.P0)) * (3 * u * u) +
                      (toDPoint(b.P2) - toDPoint(b.P1)) * (6 * u * probe) +
                      (toDPoint(b.P3) - toDPoint(b.P2)) * (3 * probe * probe);
    if (length(d) > kNoLength) return unit(d);
  }
  return unit(toDPoint(b.P3) - toDPoint(b.P0));
}

bool allFinite(const TPW_Path& s) {
  for (const TPointF& p : {s.FStartPt, s.FEndPt, s.FBezierCp1, s.FBezierCp2, s.FCenter}) {
    if (!std::isfinite(p.x) || !std::isfinite(p.y)) return false;
  }
  return std::isfinite(s.FWidth) && std::isfinite(s.FHeight) && std::isfinite(s.FSweepAngle);
}

// Where the lines p + t u and q + s v meet, as t along u; false for parallels.
bool tangentMeet(const TDPoint& p, const TDPoint& u, const TDPoint& q, const TDPoint& v, double& t) {
  const double c = cross(u, v);
  if (std::fabs(c) < 1e-12) return false;
  t = cross(q - p, v) / c;
  return true;
}

// J on the circle of an arc, along the ray from its centre.
TDPoint ontoCircle(const TPW_Path& arc, const TDPoint& j) {
  const TDPoint c = toDPoint(arc.FCenter);
  const TDPoint r = j - c;
  if (length(r) == 0.0) return {c.x + arc.FWidth, c.y};
  return c + unit(r) * arc.FWidth;
}

void moveEndsTogether(TPW_Path& a, TPW_Path& b, const TDPoint& pa, const TDPoint& ta, const TDPoint& pb,
                      const TDPoint& tb, double reach) {
  TDPoint j = (pa + pb) * 0.5;
  double t = 0;
  if (std::fabs(cross(ta, tb)) > 0.001 && tangentMeet(pa, ta, pb, tb, t)) {
    const TDPoint meet = pa + ta * t;
    if (distance(meet, pa) <= reach) j = meet;
  }
  if (b.isType(ShapeType::Arc)) j = ontoCircle(b, j);
  else if (a.isType(ShapeType::Arc)) j = ontoCircle(a, j);
  const TPointF jp = toPointF(j);
  moveShapeEnd(a, true, jp);
  moveShapeEnd(b, false, jp);
}

// The shape at 40 points along its parameter, for the overlap test.
constexpr int kOverlapPoints = 40;

std::vector<TDPoint> sampledForOverlap(const TPW_Path& s) {
  std::vector<TDPoint> pts;
  pts.reserve(kOverlapPoints);
  const TDPoint p0 = toDPoint(s.FStartPt), p3 = toDPoint(s.FEndPt);
  for (int i = 0; i < kOverlapPoints; ++i) {
    const double t = double(i) / (kOverlapPoints - 1);
    if (s.isType(ShapeType::Bezier)) {
      pts.push_back(cubicPoint(TBezier{s.FStartPt, s.FBezierCp1, s.FBezierCp2, s.FEndPt}, t));
    } else if (s.isType(ShapeType::Arc)) {
      const TDPoint c = toDPoint(s.FCenter);
      const double a = std::atan2(p0.y - c.y, p0.x - c.x) + s.FSweepAngle * t * kDegToRad;
      pts.push_back({c.x + s.FWidth * std::cos(a), c.y + s.FWidth * std::sin(a)});
    } else {
      pts.push_back(p0 + (p3 - p0) * t);
    }
  }
  return pts;
}

bool segmentsCross(const TDPoint& p0, const TDPoint& p1, const TDPoint& q0, const TDPoint& q1, double& s,
                   double& u) {
  const TDPoint r = p1 - p0, v = q1 - q0;
  const double c = cross(r, v);
  if (std::fabs(c) < 1e-15) return false;
  s = cross(q0 - p0, v) / c;
  u = cross(q0 - p0, r) / c;
  return s >= 0.0 && s <= 1.0 && u >= 0.0 && u <= 1.0;
}

// Cuts a at its end (keepStart) or b at its start to the point at parameter
// t of its 40-point sampling, ending exactly on x.
void cutAt(TPW_Path& s, double t, const TDPoint& x, bool keepStart) {
  const TPointF xp = toPointF(x);
  if (s.isType(ShapeType::Arc)) {
    const TPointF radius(s.FWidth, s.FHeight);
    if (keepStart) s.drawArcPath(s.FCenter, radius, s.FStartPt, xp, static_cast<float>(s.FSweepAngle * t));
    else s.drawArcPath(s.FCenter, radius, xp, s.FEndPt, static_cast<float>(s.FSweepAngle * (1.0 - t)));
    return;
  }
  // De Casteljau at t, then the last hair onto the crossing.
  if (s.isType(ShapeType::Bezier)) trimBezierKeep(s, t, keepStart);
  moveShapeEnd(s, keepStart, xp);
}

// Inner corner: the copies overlap. Cuts both back to the crossing nearest
// their ends; false when they don't cross.
bool cutBackToCrossing(TPW_Path& a, TPW_Path& b, const TDPoint& pa, const TDPoint& pb) {
  const std::vector<TDPoint> sa = sampledForOverlap(a), sb = sampledForOverlap(b);
  bool found = false;
  double best = 0, bestTa = 0, bestTb = 0;
  TDPoint bestX;
  for (int i = 0; i + 1 < kOverlapPoints; ++i) {
    for (int j = 0; j + 1 < kOverlapPoints; ++j) {
      double s = 0, u = 0;
      if (!segmentsCross(sa[i], sa[i + 1], sb[j], sb[j + 1], s, u)) continue;
      const TDPoint x = sa[i] + (sa[i + 1] - sa[i]) * s;
      const double score = distance(x, pa) + distance(x, pb);
      if (!found || score < best) {
        found = true;
        best = score;
        bestX = x;
        bestTa = (i + s) / (kOverlapPoints - 1);
        bestTb = (j + u) / (kOverlapPoints - 1);
      }
    }
  }
  if (!found) return false;
  cutAt(a, bestTa, bestX, true);
  cutAt(b, bestTb, bestX, false);
  return true;
}

// How many places ahead a copy may meet one it swallows the others with.
constexpr size_t kSwallowWindow = 24;

TRectF boxOf(TPW_Path& s) { return s.getBoundary(false).normalized(); }

bool boxesMeet(const TRectF& a, const TRectF& b) {
  constexpr float e = 1e-4f;
  return a.Left <= b.Right + e && b.Left <= a.Right + e && a.Top <= b.Bottom + e && b.Top <= a.Bottom + e;
}

// Short pieces at a convex corner are swallowed whole by the corner: their
// copies lie beyond it, and the copies before and after them cross. Such a
// pair is cut back to its crossing and the copies between are dropped, so
// that the corner comes out clean. Never across an empty place.
std::vector<char> dropSwallowedCopies(std::vector<std::unique_ptr<TPW_Path>>& places, bool closed) {
  const size_t n = places.size();
  std::vector<char> gone(n, 0);
  if (n < 3) return gone;
  std::vector<TRectF> box(n);
  for (size_t i = 0; i < n; ++i)
    if (places[i]) box[i] = boxOf(*places[i]);
  const size_t window = std::min(kSwallowWindow, closed ? (n - 1) / 2 : n - 1);
  for (size_t i = 0; i < n; ++i) {
    if (!places[i] || gone[i]) continue;
    size_t reach = 1;  // places ahead without a gap
    while (reach < window && (closed || i + reach + 1 < n) && places[(i + reach) % n] && !gone[(i + reach) % n])
      ++reach;
    for (size_t k = reach; k >= 2; --k) {
      const size_t j = (i + k) % n;
      if (!places[j] || gone[j] || !boxesMeet(box[i], box[j])) continue;
      TPW_Path& a = *places[i];
      TPW_Path& b = *places[j];
      if (!cutBackToCrossing(a, b, toDPoint(a.FEndPt), toDPoint(b.FStartPt))) continue;
      for (size_t m = 1; m < k; ++m) gone[(i + m) % n] = 1;
      box[i] = boxOf(a);
      box[j] = boxOf(b);
      break;
    }
  }
  return gone;
}

void appendConnector(const TPW_Path& style, const TDPoint& from, const TDPoint& to,
                     std::vector<std::unique_ptr<TPW_Path>>& out) {
  if (distance(from, to) <= 0.0001) return;
  auto line = newShapeStyledLike(style);
  line->drawLinePath(toPointF(from), toPointF(to));
  out.push_back(std::move(line));
}

}  // namespace

TBezier offsetBezier(const TBezier& b, double d) {
  TDPoint q[4];
  for (int i = 0; i < 4; ++i) {
    const double t = i / 3.0;
    const TDPoint dir = cubicDirection(b, t);
    q[i] = cubicPoint(b, t) + TDPoint{dir.y, -dir.x} * d;
  }
  TDPoint c1 = (q[0] * -5.0 + q[1] * 18.0 - q[2] * 9.0 + q[3] * 2.0) * (1.0 / 6.0);
  TDPoint c2 = (q[0] * 2.0 - q[1] * 9.0 + q[2] * 18.0 - q[3] * 5.0) * (1.0 / 6.0);
  const TDPoint leg1 = toDPoint(b.P1) - toDPoint(b.P0), leg2 = toDPoint(b.P3) - toDPoint(b.P2);
  if (length(c1 - q[0]) > kNoLength && length(leg1) > kNoLength) c1 = q[0] + unit(leg1) * length(c1 - q[0]);
  if (length(q[3] - c2) > kNoLength && length(leg2) > kNoLength) c2 = q[3] - unit(leg2) * length(q[3] - c2);
  return TBezier{toPointF(q[0]), toPointF(c1), toPointF(c2), toPointF(q[3])};
}

std::unique_ptr<TPW_Path> offsetShape(const TPW_Path& source, double d) {
  if (!std::isfinite(d)) return nullptr;
  std::unique_ptr<TPW_Path> copy;
  if (source.isType(ShapeType::Bezier)) {
    const TDPoint p0 = toDPoint(source.FStartPt), p1 = toDPoint(source.FBezierCp1);
    const TDPoint p2 = toDPoint(source.FBezierCp2), p3 = toDPoint(source.FEndPt);
    if (distance(p0, p1) + distance(p1, p2) + distance(p2, p3) < kNoLength) return nullptr;
    const TBezier o = offsetBezier(TBezier{source.FStartPt, source.FBezierCp1, source.FBezierCp2, source.FEndPt}, d);
    copy = newShapeStyledLike(source);
    copy->drawBezierPath(o.P0, o.P1, o.P2, o.P3);
  } else if (source.isType(ShapeType::Line)) {
    const TDPoint p0 = toDPoint(source.FStartPt), p1 = toDPoint(source.FEndPt);
    const double l = distance(p0, p1);
    if (l < kNoLength) return nullptr;
    const TDPoint n{(p1.y - p0.y) / l * d, -(p1.x - p0.x) / l * d};
    copy = newShapeStyledLike(source);
    copy->drawLinePath(toPointF(p0 + n), toPointF(p1 + n));
  } else if (source.isType(ShapeType::Arc)) {
    const double rx = double(source.FWidth) + d, ry = double(source.FHeight) + d;
    if (!(rx > 0.0) || !(ry > 0.0)) return nullptr;
    const TDPoint c = toDPoint(source.FCenter);
    const TDPoint st = toDPoint(source.FStartPt), ep = toDPoint(source.FEndPt);
    copy = newShapeStyledLike(source);
    copy->drawArcPath(source.FCenter, TPointF::fromDouble(rx, ry), toPointF(st + unit(st - c) * d),
                      toPointF(ep + unit(ep - c) * d), source.FSweepAngle);
  } else {
    return nullptr;
  }
  if (!allFinite(*copy)) return nullptr;
  return copy;
}

int offsetSideSign(const TPW_Path& first, double d, const TPointF& directionPoint) {
  const TDPoint dir = toDPoint(directionPoint);
  if (first.isType(ShapeType::Bezier)) {
    const TBezier src{first.FStartPt, first.FBezierCp1, first.FBezierCp2, first.FEndPt};
    const TBezier plus = offsetBezier(src, d), minus = offsetBezier(src, -d);
    const double a = distance(dir, toDPoint(plus.P0)) + distance(dir, toDPoint(plus.P3));
    const double b = distance(dir, toDPoint(minus.P0)) + distance(dir, toDPoint(minus.P3));
    return b <= a ? -1 : 1;
  }
  if (first.isType(ShapeType::Line)) {
    const TDPoint p0 = toDPoint(first.FStartPt), p1 = toDPoint(first.FEndPt);
    const double l = distance(p0, p1);
    if (l <= kNoLength) return 1;
    const TDPoint n{(p1.y - p0.y) / l * d, -(p1.x - p0.x) / l * d};
    return distance(p0 - n, dir) <= distance(p0 + n, dir) ? -1 : 1;
  }
  if (first.isType(ShapeType::Arc)) {
    const TDPoint st = toDPoint(first.FStartPt);
    const TDPoint r = unit(st - toDPoint(first.FCenter)) * (d * chainSignOf(first));
    return distance(st - r, dir) <= distance(st + r, dir) ? -1 : 1;
  }
  return 1;
}

std::unique_ptr<TPW_Path> offsetCircleTowards(const TPW_Path& source, double d, const TPointF& directionPoint) {
  if (!source.isType(ShapeType::Ellipse) || !std::isfinite(d)) return nullptr;
  const double delta = source.FWidth > distance(toDPoint(directionPoint), toDPoint(source.FCenter)) ? -d : d;
  const double w = double(source.FWidth) + delta;
  if (!(w > 0.0) || !std::isfinite(w)) return nullptr;
  auto copy = newShapeStyledLike(source);
  copy->drawEllipsePath(source.FCenter, static_cast<float>(w), static_cast<float>(w));
  return copy;
}

std::unique_ptr<TPW_Path> offsetTowards(const TPW_Path& source, double d, const TPointF& directionPoint) {
  if (source.isType(ShapeType::Ellipse)) return offsetCircleTowards(source, d, directionPoint);
  if (!isLineCurveOrArc(source)) return nullptr;
  return offsetShape(source, d * offsetSideSign(source, d, directionPoint) * chainSignOf(source));
}

void joinOffsets(TPW_Path& a, TPW_Path& b, double distanceMm, std::vector<std::unique_ptr<TPW_Path>>& out) {
  const double reach = 10.0 * std::fabs(distanceMm);
  const TDPoint pa = toDPoint(a.FEndPt), pb = toDPoint(b.FStartPt);
  const TDPoint ta = endTangent(a), tb = startTangent(b);
  const double c = cross(ta, tb);
  const double gap = distance(pa, pb);
  const bool arcInvolved = a.isType(ShapeType::Arc) || b.isType(ShapeType::Arc);
  if (!arcInvolved || std::fabs(c) <= 0.05 || gap < 0.05) {
    moveEndsTogether(a, b, pa, ta, pb, tb, reach);
    return;
  }
  double t = 0;
  tangentMeet(pa, ta, pb, tb, t);  // |c| > 0.05: never parallel here
  if (t >= 0) {
    const TDPoint h = pa + ta * t;
    if (distance(h, pa) <= reach && distance(h, pb) <= reach) {
      appendConnector(a, pa, h, out);
      appendConnector(a, h, pb, out);
    } else {
      appendConnector(a, pa, pb, out);
    }
    return;
  }
  if (!cutBackToCrossing(a, b, pa, pb)) moveEndsTogether(a, b, pa, ta, pb, tb, reach);
}

std::vector<std::unique_ptr<TPW_Path>> smartOffset(const std::vector<const TPW_Path*>& chain, double d,
                                                   const TPointF& directionPoint, bool closed) {
  std::vector<std::unique_ptr<TPW_Path>> result;
  if (chain.empty() || !std::isfinite(d)) return result;
  const bool closedChain = closed && chain.size() >= 2;
  int s = 1;
  if (!closedChain) {
    s = offsetSideSign(*chain.front(), d, directionPoint);
  } else {
    std::vector<TDPoint> polygon;
    for (const TPW_Path* shape : chain) appendOutlinePoints(*shape, polygon);
    if (polygon.size() > 2) {
      const bool dirInside = pointInPolygon(polygon, toDPoint(directionPoint));
      // A trial copy tells which side is which: of a line if there is one
      // (its edge of the outline is exact, so even a tiny distance is told
      // right), else of the first shape that gives one (a small arc may
      // vanish on one side).
      std::vector<const TPW_Path*> trials;
      for (const TPW_Path* shape : chain)
        if (shape->isType(ShapeType::Line)) trials.push_back(shape);
      trials.insert(trials.end(), chain.begin(), chain.end());
      for (const TPW_Path* shape : trials) {
        const auto trial = offsetShape(*shape, d * chainSignOf(*shape));
        if (!trial) continue;
        const TDPoint m0 = shapeMidpoint(*shape), m1 = shapeMidpoint(*trial);
        const TDPoint probe = m0 + (m1 - m0) * 0.25;
        s = pointInPolygon(polygon, probe) == dirInside ? 1 : -1;
        break;
      }
    }
  }
  std::vector<std::unique_ptr<TPW_Path>> places;
  places.reserve(chain.size());
  for (const TPW_Path* shape : chain) places.push_back(offsetShape(*shape, d * s * chainSignOf(*shape)));
  const size_t n = places.size();
  const std::vector<char> swallowed = dropSwallowedCopies(places, closedChain);
  result.reserve(n * 2);
  // Raw pointers stay valid while the copies move into the result.
  std::vector<TPW_Path*> raw(n);
  for (size_t i = 0; i < n; ++i) raw[i] = places[i].get();
  auto successor = [&](size_t i) {
    do {
      i = i + 1 < n ? i + 1 : (closedChain ? 0 : n);
    } while (i < n && swallowed[i]);
    return i;
  };
  for (size_t i = 0; i < n; ++i) {
    if (!raw[i] || swallowed[i]) continue;
    result.push_back(std::move(places[i]));
    const size_t next = successor(i);
    if (next < n && raw[next] && raw[next] != raw[i]) joinOffsets(*raw[i], *raw[next], d, result);
  }
  // A join never leaves a point that is not finite in the drawing.
  std::erase_if(result, [](const std::unique_ptr<TPW_Path>& p) { return !allFinite(*p); });
  return result;
}

std::vector<TPW_Path*> snapEndsToLineEnds(TShapeList& list) {
  constexpr double kSnap = 0.1;
  std::vector<TPW_Path*> lines;
  for (const auto& s : list)
    if (s->isType(ShapeType::Line)) lines.push_back(s.get());
  const TEndGrid grid(lines);
  std::vector<TPW_Path*> moved;
  std::vector<size_t> near;
  // Lines in list order, each pulling the point onto its start or else its end.
  auto snap = [&](TPointF pt, const TPW_Path* self) {
    grid.near(pt, near);
    for (size_t li : near) {
      const TPW_Path& line = *lines[li];
      if (&line == self) continue;
      if (!pt.identical(line.FStartPt) && distanceOf(pt, line.FStartPt) < kSnap) pt = line.FStartPt;
      else if (!pt.identical(line.FEndPt) && distanceOf(pt, line.FEndPt) < kSnap) pt = line.FEndPt;
    }
    return pt;
  };
  for (const auto& item : list) {
    TPW_Path& s = *item;
    if (!isLineCurveOrArc(s)) continue;
    const TPointF st = snap(s.FStartPt, &s);
    const TPointF ep = snap(s.FEndPt, &s);
    const bool startMoves = !st.identical(s.FStartPt), endMoves = !ep.identical(s.FEndPt);
    if (!startMoves && !endMoves) continue;
    if (startMoves) moveShapeEnd(s, false, st);
    if (endMoves) moveShapeEnd(s, true, ep);
    moved.push_back(&s);
  }
  return moved;
}
