#include "geometry/shape_ends.h"

#include <algorithm>
#include <numbers>

namespace {

constexpr double kRadToDeg = 180.0 / std::numbers::pi;
constexpr double kNoLength = 1e-9;

TDPoint cubicAt(const TDPoint& p0, const TDPoint& p1, const TDPoint& p2, const TDPoint& p3, double t) {
  const double u = 1.0 - t;
  const double a = u * u * u, b = 3 * u * u * t, c = 3 * u * t * t, d = t * t * t;
  return {a * p0.x + b * p1.x + c * p2.x + d * p3.x, a * p0.y + b * p1.y + c * p2.y + d * p3.y};
}

// The first of the candidate directions that has a length.
TDPoint firstDirection(std::initializer_list<TDPoint> candidates) {
  for (const TDPoint& v : candidates) {
    if (length(v) > kNoLength) return unit(v);
  }
  return {1.0, 0.0};
}

TDPoint arcTangentAt(const TPW_Path& s, const TPointF& p) {
  const TDPoint r = toDPoint(p) - toDPoint(s.FCenter);
  if (length(r) <= kNoLength) return {1.0, 0.0};
  return quarterTurn(unit(r), s.FSweepAngle < 0 ? -1.0 : 1.0);
}

}  // namespace

double signedAngleDeg(const TDPoint& u, const TDPoint& v) {
  return std::atan2(cross(u, v), dot(u, v)) * kRadToDeg;
}

bool isLineCurveOrArc(const TPW_Path& s) {
  return s.isType(ShapeType::Line) || s.isType(ShapeType::Bezier) || s.isType(ShapeType::Arc);
}

namespace {

uint64_t cellKey(int64_t cx, int64_t cy) { return (static_cast<uint64_t>(cx) << 32) ^ static_cast<uint32_t>(cy); }

bool finitePoint(const TPointF& p) { return std::isfinite(p.x) && std::isfinite(p.y); }

int64_t cellOf(double v) { return static_cast<int64_t>(std::floor(v / kEndJoinGap)); }

}  // namespace

TEndGrid::TEndGrid(const std::vector<TPW_Path*>& shapes) {
  for (size_t i = 0; i < shapes.size(); ++i) {
    for (const TPointF& p : {shapes[i]->FStartPt, shapes[i]->FEndPt}) {
      if (!finitePoint(p) || std::fabs(p.x) > 1e12 || std::fabs(p.y) > 1e12) continue;
      auto& cell = FCells[cellKey(cellOf(p.x), cellOf(p.y))];
      if (cell.empty() || cell.back() != i) cell.push_back(i);
    }
  }
}

void TEndGrid::near(const TPointF& p, std::vector<size_t>& out) const {
  out.clear();
  if (!finitePoint(p) || std::fabs(p.x) > 1e12 || std::fabs(p.y) > 1e12) return;
  const int64_t cx = cellOf(p.x), cy = cellOf(p.y);
  for (int64_t dx = -1; dx <= 1; ++dx) {
    for (int64_t dy = -1; dy <= 1; ++dy) {
      const auto it = FCells.find(cellKey(cx + dx, cy + dy));
      if (it != FCells.end()) out.insert(out.end(), it->second.begin(), it->second.end());
    }
  }
  std::sort(out.begin(), out.end());
  out.erase(std::unique(out.begin(), out.end()), out.end());
}

bool mayFormOneChain(const std::vector<TPW_Path*>& shapes) {
  const size_t n = shapes.size();
  if (n < 2) return n == 1;
  const TEndGrid grid(shapes);
  std::vector<size_t> parent(n);
  for (size_t i = 0; i < n; ++i) parent[i] = i;
  auto root = [&](size_t i) {
    while (parent[i] != i) i = parent[i] = parent[parent[i]];
    return i;
  };
  size_t freeEnds = 0, pieces = n;
  std::vector<size_t> near;
  for (size_t i = 0; i < n; ++i) {
    for (const TPointF& e : {shapes[i]->FStartPt, shapes[i]->FEndPt}) {
      bool joined = false;
      grid.near(e, near);
      for (size_t j : near) {
        if (j == i || !(endsJoin(e, shapes[j]->FStartPt) || endsJoin(e, shapes[j]->FEndPt))) continue;
        joined = true;
        const size_t a = root(i), b = root(j);
        if (a != b) {
          parent[a] = b;
          --pieces;
        }
      }
      if (!joined && ++freeEnds > 2) return false;
    }
  }
  return pieces == 1;
}

std::unique_ptr<TPW_Path> newShapeStyledLike(const TPW_Path& source) {
  auto s = std::make_unique<TPW_Path>(source.FPalletIndex, source.FColor, source.FThickness, source.FDash, -1);
  s->FLayerID = source.FLayerID;
  return s;
}

TDPoint startTangent(const TPW_Path& s) {
  const TDPoint p0 = toDPoint(s.FStartPt), p3 = toDPoint(s.FEndPt);
  if (s.isType(ShapeType::Line)) return firstDirection({p3 - p0});
  if (s.isType(ShapeType::Bezier))
    return firstDirection({toDPoint(s.FBezierCp1) - p0, toDPoint(s.FBezierCp2) - p0, p3 - p0});
  if (s.isType(ShapeType::Arc)) return arcTangentAt(s, s.FStartPt);
  return {1.0, 0.0};
}

TDPoint endTangent(const TPW_Path& s) {
  const TDPoint p0 = toDPoint(s.FStartPt), p3 = toDPoint(s.FEndPt);
  if (s.isType(ShapeType::Line)) return firstDirection({p3 - p0});
  if (s.isType(ShapeType::Bezier))
    return firstDirection({p3 - toDPoint(s.FBezierCp2), p3 - toDPoint(s.FBezierCp1), p3 - p0});
  if (s.isType(ShapeType::Arc)) return arcTangentAt(s, s.FEndPt);
  return {1.0, 0.0};
}

void moveShapeEnd(TPW_Path& s, bool atEnd, const TPointF& p) {
  if (s.isType(ShapeType::Line)) {
    if (atEnd) s.drawLinePath(s.FStartPt, p);
    else s.drawLinePath(p, s.FEndPt);
  } else if (s.isType(ShapeType::Bezier)) {
    if (atEnd) {
      const TDPoint shift = toDPoint(p) - toDPoint(s.FEndPt);
      s.drawBezierPath(s.FStartPt, s.FBezierCp1, toPointF(toDPoint(s.FBezierCp2) + shift), p);
    } else {
      const TDPoint shift = toDPoint(p) - toDPoint(s.FStartPt);
      s.drawBezierPath(p, toPointF(toDPoint(s.FBezierCp1) + shift), s.FBezierCp2, s.FEndPt);
    }
  } else if (s.isType(ShapeType::Arc)) {
    const TDPoint c = toDPoint(s.FCenter);
    const TPointF old = atEnd ? s.FEndPt : s.FStartPt;
    const double turn = signedAngleDeg(toDPoint(old) - c, toDPoint(p) - c);
    const TPointF radius(s.FWidth, s.FHeight);
    if (atEnd) s.drawArcPath(s.FCenter, radius, s.FStartPt, p, static_cast<float>(s.FSweepAngle + turn));
    else s.drawArcPath(s.FCenter, radius, p, s.FEndPt, static_cast<float>(s.FSweepAngle - turn));
  }
}

TDPoint shapeMidpoint(const TPW_Path& s) {
  const TDPoint p0 = toDPoint(s.FStartPt), p3 = toDPoint(s.FEndPt);
  if (s.isType(ShapeType::Bezier))
    return cubicAt(p0, toDPoint(s.FBezierCp1), toDPoint(s.FBezierCp2), p3, 0.5);
  if (s.isType(ShapeType::Arc)) {
    const TDPoint c = toDPoint(s.FCenter);
    const double a = std::atan2(p0.y - c.y, p0.x - c.x) + s.FSweepAngle / kRadToDeg / 2.0;
    return {c.x + s.FWidth * std::cos(a), c.y + s.FWidth * std::sin(a)};
  }
  return (p0 + p3) * 0.5;
}

void appendOutlinePoints(const TPW_Path& s, std::vector<TDPoint>& out) {
  const TDPoint p0 = toDPoint(s.FStartPt), p3 = toDPoint(s.FEndPt);
  if (s.isType(ShapeType::Line)) {
    out.push_back(p0);
    out.push_back(p3);
  } else if (s.isType(ShapeType::Bezier)) {
    const TDPoint p1 = toDPoint(s.FBezierCp1), p2 = toDPoint(s.FBezierCp2);
    const double reach = distance(p0, p1) + distance(p1, p2) + distance(p2, p3);
    const int n = std::clamp(static_cast<int>(std::ceil(reach / 0.25)), 4, 1000);
    for (int i = 0; i <= n; ++i) out.push_back(cubicAt(p0, p1, p2, p3, double(i) / n));
  } else if (s.isType(ShapeType::Arc)) {
    const TDPoint c = toDPoint(s.FCenter);
    const double r = s.FWidth;
    const double a0 = std::atan2(p0.y - c.y, p0.x - c.x);
    const double sweep = s.FSweepAngle / kRadToDeg;
    // Chords whose bulge stays under 2 micrometres.
    const double step = r > 0.002 ? 2.0 * std::acos(1.0 - 0.002 / r) : std::numbers::pi;
    const int n = std::clamp(static_cast<int>(std::ceil(std::fabs(sweep) / step)), 1, 2000);
    for (int i = 0; i <= n; ++i) {
      const double a = a0 + sweep * i / n;
      out.push_back({c.x + r * std::cos(a), c.y + r * std::sin(a)});
    }
  } else {
    for (const TPathInterval& iv : s.getIntervalsFast(false)) {
      if (out.empty()) out.push_back(toDPoint(iv.St));
      out.push_back(toDPoint(iv.Ed));
    }
  }
}

bool pointInPolygon(const std::vector<TDPoint>& polygon, const TDPoint& p) {
  bool inside = false;
  const size_t n = polygon.size();
  if (n < 3) return false;
  for (size_t i = 0, j = n - 1; i < n; j = i++) {
    const TDPoint& a = polygon[i];
    const TDPoint& b = polygon[j];
    if ((a.y > p.y) != (b.y > p.y) && p.x < (b.x - a.x) * (p.y - a.y) / (b.y - a.y) + a.x) inside = !inside;
  }
  return inside;
}
