#include "exchange/stl_polygons.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <numbers>

using namespace ClipperLib;

double polygonArea(const TPolygon2& p) {
  double a = 0;
  for (size_t i = 0, n = p.size(); i < n; ++i) {
    const TVec2& u = p[i];
    const TVec2& v = p[(i + 1) % n];
    a += u.x * v.y - v.x * u.y;
  }
  return a / 2;
}

double regionArea(const TPolyRegion& r) {
  double a = std::abs(polygonArea(r.Outer));
  for (const TPolygon2& h : r.Holes) a -= std::abs(polygonArea(h));
  return a;
}

namespace stlpoly {

namespace {

// Drops repeated points and points in line with their neighbours to within
// 0.001 mm: no more, so that curves keep every flattened point.
void cleaned(const Paths& in, Paths& out) { CleanPolygons(in, out, 0.001 * kGridScale); }

}  // namespace

Path toPath(const TPolygon2& p, double scale) {
  Path out;
  out.reserve(p.size());
  for (const TVec2& v : p) out.emplace_back(std::llround(v.x * scale), std::llround(v.y * scale));
  return out;
}

Paths toPaths(const std::vector<TPolygon2>& ps, double scale) {
  Paths out;
  out.reserve(ps.size());
  for (const TPolygon2& p : ps) out.push_back(toPath(p, scale));
  return out;
}

Paths regionPaths(const TPolyRegion& r, double scale) {
  Paths out;
  out.reserve(r.Holes.size() + 1);
  out.push_back(toPath(r.Outer, scale));
  for (const TPolygon2& h : r.Holes) out.push_back(toPath(h, scale));
  return out;
}

Paths regionPaths(const std::vector<TPolyRegion>& rs, double scale) {
  Paths out;
  for (const TPolyRegion& r : rs) {
    Paths one = regionPaths(r, scale);
    out.insert(out.end(), one.begin(), one.end());
  }
  return out;
}

TPolygon2 fromPath(const Path& p, double scale) {
  TPolygon2 out;
  out.reserve(p.size());
  for (const IntPoint& q : p) out.push_back({double(q.X) / scale, double(q.Y) / scale});
  return out;
}

Paths clip(const Paths& subject, const Paths& clipPaths, ClipType op, PolyFillType subjectFill,
           PolyFillType clipFill) {
  Paths s, c;
  cleaned(subject, s);
  cleaned(clipPaths, c);
  Clipper clipper;
  clipper.StrictlySimple(true);
  clipper.AddPaths(s, ptSubject, true);
  clipper.AddPaths(c, ptClip, true);
  Paths out;
  clipper.Execute(op, out, subjectFill, clipFill);
  return out;
}

Paths offsetPaths(const Paths& gridPaths, double delta, JoinType join, double miterLimit) {
  const double up = kFineScale / kGridScale;
  Paths fine;
  fine.reserve(gridPaths.size());
  for (const Path& p : gridPaths) {
    Path q;
    q.reserve(p.size());
    for (const IntPoint& v : p) q.emplace_back(v.X * cInt(up), v.Y * cInt(up));
    fine.push_back(std::move(q));
  }
  // Round joins follow their arcs to 0.01 mm, far finer than a printer.
  ClipperOffset offset(miterLimit, 0.01 * kFineScale);
  offset.AddPaths(fine, join, etClosedPolygon);
  Paths grown;
  offset.Execute(grown, delta * kFineScale);
  Paths grid;
  grid.reserve(grown.size());
  for (const Path& p : grown) {
    Path q;
    q.reserve(p.size());
    for (const IntPoint& v : p)
      q.emplace_back(std::llround(double(v.X) / up), std::llround(double(v.Y) / up));
    grid.push_back(std::move(q));
  }
  return grid;
}

namespace {

void collectRegions(const PolyNode& outer, double minArea, std::vector<TPolyRegion>& out) {
  TPolygon2 o = fromPath(outer.Contour, kGridScale);
  if (polygonArea(o) < 0) std::reverse(o.begin(), o.end());
  const bool keep = o.size() >= 3 && polygonArea(o) > minArea;
  TPolyRegion r;
  if (keep) r.Outer = std::move(o);
  for (const PolyNode* hole : outer.Childs) {
    TPolygon2 h = fromPath(hole->Contour, kGridScale);
    if (polygonArea(h) > 0) std::reverse(h.begin(), h.end());
    if (keep && h.size() >= 3 && -polygonArea(h) > minArea) r.Holes.push_back(std::move(h));
    for (const PolyNode* island : hole->Childs) collectRegions(*island, minArea, out);
  }
  if (keep) out.push_back(std::move(r));
}

}  // namespace

std::vector<TPolyRegion> regionsOf(const Paths& gridPaths, PolyFillType fill, double minArea) {
  Paths tidy;
  cleaned(gridPaths, tidy);
  Clipper clipper;
  clipper.StrictlySimple(true);
  clipper.AddPaths(tidy, ptSubject, true);
  PolyTree tree;
  clipper.Execute(ctUnion, tree, fill, fill);
  std::vector<TPolyRegion> out;
  for (const PolyNode* top : tree.Childs) collectRegions(*top, minArea, out);
  return out;
}

TOffsetRegion inflateRegion(const TPolyRegion& region, double delta) {
  TOffsetRegion out;
  if (std::abs(delta) < 1e-12) {
    out.Valid = true;
    out.Reason = "Zero delta";
    out.Outer = region.Outer;
    out.Holes = region.Holes;
    return out;
  }
  const Paths in = regionPaths(region, kGridScale);
  if (region.Outer.empty()) {
    out.Reason = "InPaths empty";
    return out;
  }
  const Paths grown = offsetPaths(in, -delta, jtMiter, 3.0);
  if (grown.empty()) {
    out.Reason = "OutPaths empty after Inflate/Simplify";
    return out;
  }
  std::vector<TPolyRegion> regions = regionsOf(grown, pftNonZero);
  char text[96];
  if (regions.size() != 1) {
    std::snprintf(text, sizeof text, "BuildPolyRegions count = %d", int(regions.size()));
    out.Reason = text;
    return out;
  }
  // The limit of 200 keeps the edges of very detailed outlines plain.
  const size_t n = regions.front().Outer.size();
  if (n < 3 || n > 200) {
    std::snprintf(text, sizeof text, "Outer point count invalid = %d", int(n));
    out.Reason = text;
    return out;
  }
  out.Valid = true;
  out.Reason = "OK";
  out.Outer = std::move(regions.front().Outer);
  out.Holes = std::move(regions.front().Holes);
  return out;
}

bool contoursTouch(const std::vector<TPolyRegion>& regions) {
  std::vector<std::pair<long long, long long>> corners;
  for (const TPolyRegion& r : regions) {
    auto add = [&](const TPolygon2& p) {
      for (const TVec2& v : p) corners.emplace_back(std::llround(v.x * kGridScale), std::llround(v.y * kGridScale));
    };
    add(r.Outer);
    for (const TPolygon2& h : r.Holes) add(h);
  }
  std::sort(corners.begin(), corners.end());
  return std::adjacent_find(corners.begin(), corners.end()) != corners.end();
}

bool separateRegions(std::vector<TPolyRegion>& regions) {
  for (int attempt = 0; attempt < 3; ++attempt) {
    if (!contoursTouch(regions)) return true;
    if (attempt == 2) break;
    regions = regionsOf(offsetPaths(regionPaths(regions, kGridScale), -0.01, jtMiter), pftNonZero, 1e-4);
  }
  return false;
}

std::vector<TPolyRegion> regionsInside(const Paths& shapes, const Paths& face, double margin, PolyFillType shapesFill) {
  const Paths inner = offsetPaths(face, -margin, jtMiter);
  if (inner.empty() || shapes.empty()) return {};
  Paths s;
  if (shapesFill == pftEvenOdd) s = clip(shapes, {}, ctUnion, pftEvenOdd, pftEvenOdd);
  else s = shapes;
  std::vector<TPolyRegion> r = regionsOf(clip(s, inner, ctIntersection), pftNonZero, 1e-4);
  if (!separateRegions(r)) return {};
  return r;
}

void boundsOf(const std::vector<TPolygon2>& ps, TVec2& lo, TVec2& hi) {
  lo = {1e300, 1e300};
  hi = {-1e300, -1e300};
  for (const TPolygon2& p : ps)
    for (const TVec2& v : p) {
      lo.x = std::min(lo.x, v.x);
      lo.y = std::min(lo.y, v.y);
      hi.x = std::max(hi.x, v.x);
      hi.y = std::max(hi.y, v.y);
    }
  if (lo.x > hi.x) lo = hi = {0, 0};
}

TVec2 polygonCentroid(const TPolygon2& p) {
  double a = 0, cx = 0, cy = 0;
  for (size_t i = 0, n = p.size(); i < n; ++i) {
    const TVec2& u = p[i];
    const TVec2& v = p[(i + 1) % n];
    const double c = u.x * v.y - v.x * u.y;
    a += c;
    cx += (u.x + v.x) * c;
    cy += (u.y + v.y) * c;
  }
  if (std::abs(a) < 1e-12) {
    TVec2 m;
    for (const TVec2& v : p) {
      m.x += v.x / double(p.size());
      m.y += v.y / double(p.size());
    }
    return m;
  }
  return {cx / (3 * a), cy / (3 * a)};
}

bool pointInPolygon(const TVec2& pt, const TPolygon2& poly) {
  bool inside = false;
  for (size_t i = 0, n = poly.size(), j = n - 1; i < n; j = i++) {
    const TVec2& a = poly[i];
    const TVec2& b = poly[j];
    if ((a.y > pt.y) != (b.y > pt.y) && pt.x < (b.x - a.x) * (pt.y - a.y) / (b.y - a.y) + a.x) inside = !inside;
  }
  return inside;
}

TPolygon2 circlePolygon(const TVec2& centre, double radius, int minPoints) {
  int n = minPoints;
  if (radius > 0.01) n = std::max(n, int(std::ceil(std::numbers::pi / std::acos(1 - 0.01 / radius))));
  n = std::min(n, 720);
  TPolygon2 p;
  p.reserve(size_t(n));
  for (int i = 0; i < n; ++i) {
    const double a = 2 * std::numbers::pi * i / n;
    p.push_back({centre.x + radius * std::cos(a), centre.y + radius * std::sin(a)});
  }
  return p;
}

}  // namespace stlpoly
