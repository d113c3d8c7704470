#include "document/path_data.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "document/number_text.h"

TMatrix TMatrix::translation(double dx, double dy) {
  TMatrix m;
  m.m31 = dx;
  m.m32 = dy;
  return m;
}

TMatrix TMatrix::scaling(double sx, double sy) {
  TMatrix m;
  m.m11 = sx;
  m.m22 = sy;
  return m;
}

TMatrix TMatrix::rotation(double radians) {
  TMatrix m;
  const double c = std::cos(radians), s = std::sin(radians);
  m.m11 = c;
  m.m12 = s;
  m.m21 = -s;
  m.m22 = c;
  return m;
}

TMatrix TMatrix::operator*(const TMatrix& o) const {
  TMatrix r;
  r.m11 = m11 * o.m11 + m12 * o.m21;
  r.m12 = m11 * o.m12 + m12 * o.m22;
  r.m21 = m21 * o.m11 + m22 * o.m21;
  r.m22 = m21 * o.m12 + m22 * o.m22;
  r.m31 = m31 * o.m11 + m32 * o.m21 + o.m31;
  r.m32 = m31 * o.m12 + m32 * o.m22 + o.m32;
  return r;
}

TPointF TMatrix::apply(const TPointF& p) const {
  return TPointF::fromDouble(p.x * m11 + p.y * m21 + m31, p.x * m12 + p.y * m22 + m32);
}

TPointF cubicPointAt(const TPointF& p0, const TPointF& p1, const TPointF& p2, const TPointF& p3,
                     double t) {
  const double u = 1.0 - t;
  const double b0 = u * u * u, b1 = 3.0 * u * u * t, b2 = 3.0 * u * t * t, b3 = t * t * t;
  return TPointF::fromDouble(b0 * p0.x + b1 * p1.x + b2 * p2.x + b3 * p3.x,
                             b0 * p0.y + b1 * p1.y + b2 * p2.y + b3 * p3.y);
}

const std::vector<TPathPoint>& TPathData::emptyPoints() {
  static const std::vector<TPathPoint> empty;
  return empty;
}

std::vector<TPathPoint>& TPathData::mutablePoints() {
  if (!FShared) FShared = std::make_shared<std::vector<TPathPoint>>();
  else if (FShared.use_count() > 1) FShared = std::make_shared<std::vector<TPathPoint>>(*FShared);
  return *FShared;
}

void TPathData::MoveTo(const TPointF& p) { push(TPathPointKind::MoveTo, p); }

void TPathData::LineTo(const TPointF& p) { push(TPathPointKind::LineTo, p); }

void TPathData::CurveTo(const TPointF& c1, const TPointF& c2, const TPointF& p) {
  auto& v = mutablePoints();
  v.push_back({TPathPointKind::CurveTo, c1});
  v.push_back({TPathPointKind::CurveTo, c2});
  v.push_back({TPathPointKind::CurveTo, p});
}

TPointF TPathData::figureStart() const {
  const auto& v = points();
  for (size_t i = v.size(); i-- > 0;)
    if (v[i].Kind == TPathPointKind::MoveTo) return v[i].Point;
  return v.empty() ? TPointF() : v.front().Point;
}

void TPathData::ClosePath() { push(TPathPointKind::Close, figureStart()); }

void TPathData::Translate(double dx, double dy) {
  if (isEmpty()) return;
  for (auto& p : mutablePoints()) p.Point = TPointF::fromDouble(p.Point.x + dx, p.Point.y + dy);
}

void TPathData::ApplyMatrix(const TMatrix& m) {
  if (isEmpty()) return;
  for (auto& p : mutablePoints()) p.Point = m.apply(p.Point);
}

TPointF TPathData::LastPoint() const { return isEmpty() ? TPointF() : points().back().Point; }

TRectF TPathData::GetBounds() const {
  bool any = false;
  float l = 0, t = 0, r = 0, b = 0;
  for (const auto& p : points()) {
    if (p.Kind == TPathPointKind::Close) continue;
    if (!any) {
      l = r = p.Point.x;
      t = b = p.Point.y;
      any = true;
    } else {
      l = std::min(l, p.Point.x);
      r = std::max(r, p.Point.x);
      t = std::min(t, p.Point.y);
      b = std::max(b, p.Point.y);
    }
  }
  return any ? TRectF(l, t, r, b) : TRectF();
}

bool TPathData::operator==(const TPathData& o) const {
  if (FShared == o.FShared) return true;
  const auto& a = points();
  const auto& b = o.points();
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i)
    if (a[i].Kind != b[i].Kind || !a[i].Point.identical(b[i].Point)) return false;
  return true;
}

void TPathData::AddEllipse(const TRectF& rect) {
  const double k = 0.5522847498;
  const double cx = (double(rect.Left) + rect.Right) / 2.0;
  const double cy = (double(rect.Top) + rect.Bottom) / 2.0;
  const double rx = (double(rect.Right) - rect.Left) / 2.0;
  const double ry = (double(rect.Bottom) - rect.Top) / 2.0;
  const double ox = rx * k, oy = ry * k;
  auto P = [](double x, double y) { return TPointF::fromDouble(x, y); };
  MoveTo(P(cx - rx, cy));
  CurveTo(P(cx - rx, cy - oy), P(cx - ox, cy - ry), P(cx, cy - ry));
  CurveTo(P(cx + ox, cy - ry), P(cx + rx, cy - oy), P(cx + rx, cy));
  CurveTo(P(cx + rx, cy + oy), P(cx + ox, cy + ry), P(cx, cy + ry));
  CurveTo(P(cx - ox, cy + ry), P(cx - rx, cy + oy), P(cx - rx, cy));
}

void TPathData::AddArc(const TPointF& center, const TPointF& radius, double startAngle,
                       double sweepAngle) {
  const double pi = std::numbers::pi;
  const double quarter = pi / 2.0;
  double sweep = sweepAngle * pi / 180.0;
  sweep = std::clamp(sweep, -2.0 * pi, 2.0 * pi);
  if (std::fabs(sweep) < 1e-10) return;
  const double cx = center.x, cy = center.y, rx = radius.x, ry = radius.y;
  double a = startAngle * pi / 180.0;
  double done = 0.0;
  bool first = true;
  const double dir = sweep < 0 ? -1.0 : 1.0;
  while (true) {
    double piece = dir * quarter;
    bool last = false;
    if (std::fabs(sweep - (done + piece)) < 0.01 || std::fabs(done + piece) > std::fabs(sweep)) {
      piece = sweep - done;
      last = true;
    }
    // One cubic for the piece from a to a + piece: controls along the
    // tangents at 4/3 tan(piece / 4) of the derivative.
    const double b = a + piece;
    const double k = 4.0 / 3.0 * std::tan(piece / 4.0);
    const double x0 = cx + rx * std::cos(a), y0 = cy + ry * std::sin(a);
    const double x3 = cx + rx * std::cos(b), y3 = cy + ry * std::sin(b);
    const double x1 = x0 - k * rx * std::sin(a), y1 = y0 + k * ry * std::cos(a);
    const double x2 = x3 + k * rx * std::sin(b), y2 = y3 - k * ry * std::cos(b);
    const TPointF start = TPointF::fromDouble(x0, y0);
    if (first) MoveTo(start);
    else LineTo(start);
    CurveTo(TPointF::fromDouble(x1, y1), TPointF::fromDouble(x2, y2), TPointF::fromDouble(x3, y3));
    first = false;
    if (last) break;
    done += piece;
    a = b;
  }
}

namespace {

// A curve is cut into pieces of the flatness in length; a curve a kilometre
// long would become millions of them. Pieces past these counts are of no
// use to anyone: the chords then stray from the curve by less than
// kFlattenTolerance, half a pixel at the deepest zoom.
constexpr double kFlattenTolerance = 0.0025;
// Curves whose count stays below this (three metres at 0.3) keep it as it is.
constexpr double kFlattenKeepCount = 10000.0;
// Whatever the curve, for coordinates past any sane drawing.
constexpr double kFlattenMaxCount = 65536.0;

double usefulPieceCount(double n, const TPointF& p0, const TPointF& p1, const TPointF& p2, const TPointF& p3) {
  if (!(n > kFlattenKeepCount)) return n;
  // N chords of a cubic stray from it by at most 6 M / (8 N^2), M the larger
  // of its two second differences.
  auto second = [](const TPointF& a, const TPointF& b, const TPointF& c) {
    return std::hypot(double(a.x) - 2.0 * b.x + c.x, double(a.y) - 2.0 * b.y + c.y);
  };
  const double m = std::max(second(p0, p1, p2), second(p1, p2, p3));
  const double enough = std::ceil(std::sqrt(0.75 * m / kFlattenTolerance)) + 1.0;
  return std::min({n, std::max(kFlattenKeepCount, enough), kFlattenMaxCount});
}

}  // namespace

void TPathData::Flatten(double flatness) {
  if (flatness < 0.05) flatness = 0.05;
  const auto& pts = points();
  bool curves = false;
  for (const auto& p : pts) curves = curves || p.Kind == TPathPointKind::CurveTo;
  if (!curves) return;
  std::vector<TPathPoint> out;
  out.reserve(pts.size());
  TPointF current;
  size_t i = 0;
  while (i < pts.size()) {
    const TPathPoint& p = pts[i];
    if (p.Kind != TPathPointKind::CurveTo) {
      out.push_back(p);
      current = p.Point;
      ++i;
      continue;
    }
    if (i + 2 >= pts.size()) {  // a truncated curve keeps its last point as a line
      const TPointF end = pts.back().Point;
      out.push_back({TPathPointKind::LineTo, end});
      current = end;
      break;
    }
    const TPointF p0 = current, p1 = pts[i].Point, p2 = pts[i + 1].Point,
                  p3 = pts[i + 2].Point;
    // Length estimate from the chords through t = 1/6, 2/6, 3/6, 4/6 and 1.
    static const double ts[] = {1.0 / 6.0, 2.0 / 6.0, 3.0 / 6.0, 4.0 / 6.0, 1.0};
    double len = 0.0;
    TPointF prev = p0;
    for (double t : ts) {
      const TPointF q = cubicPointAt(p0, p1, p2, p3, t);
      len += std::hypot(double(q.x) - prev.x, double(q.y) - prev.y);
      prev = q;
    }
    const double n = usefulPieceCount(std::nearbyint(len / flatness), p0, p1, p2, p3);
    if (n >= 3) {
      const int N = static_cast<int>(n);
      for (int k = 0; k <= N - 2; ++k)
        out.push_back({TPathPointKind::LineTo, cubicPointAt(p0, p1, p2, p3, double(k) / (N - 1))});
    }
    out.push_back({TPathPointKind::LineTo, p3});
    current = p3;
    i += 3;
  }
  FShared = std::make_shared<std::vector<TPathPoint>>(std::move(out));
}

std::string TPathData::getData() const {
  const auto& pts = points();
  std::string s;
  s.reserve(pts.size() * 24);
  auto pt = [&s](const TPointF& p) {
    s += floatToText(p.x);
    s += ',';
    s += floatToText(p.y);
    s += ' ';
  };
  size_t i = 0;
  while (i < pts.size()) {
    const TPathPoint& p = pts[i];
    switch (p.Kind) {
      case TPathPointKind::MoveTo:
        s += 'M';
        pt(p.Point);
        ++i;
        break;
      case TPathPointKind::LineTo:
        s += 'L';
        pt(p.Point);
        ++i;
        break;
      case TPathPointKind::CurveTo:
        s += 'C';
        for (int k = 0; k < 3 && i < pts.size(); ++k, ++i) pt(pts[i].Point);
        break;
      case TPathPointKind::Close:
        s += "Z ";
        ++i;
        break;
    }
  }
  return s;
}
