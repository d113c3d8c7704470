#include "exchange/stl_mesh.h"

#include <GL/glu.h>

#ifndef CALLBACK
#define CALLBACK
#endif

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <unordered_map>
#include <unordered_set>

#include "exchange/stl_polygons.h"

namespace {

// ---- caps ----

struct TTessState {
  std::vector<std::array<GLdouble, 3>> coords;
  std::vector<size_t> corners;  // three per triangle, indices into coords
  bool failed = false;
  GLenum mode = 0;
};

void CALLBACK tessBegin(GLenum mode, void* data) { static_cast<TTessState*>(data)->mode = mode; }
void CALLBACK tessVertex(void* vertex, void* data) {
  static_cast<TTessState*>(data)->corners.push_back(reinterpret_cast<uintptr_t>(vertex));
}
void CALLBACK tessEnd(void*) {}
// Only triangles: a registered edge flag callback keeps the tessellator from
// making fans and strips.
void CALLBACK tessEdgeFlag(GLboolean, void*) {}
void CALLBACK tessCombine(GLdouble coords[3], void*[4], GLfloat[4], void** out, void* data) {
  // A new corner would have no partner in the walls: the cap fails.
  auto* s = static_cast<TTessState*>(data);
  s->failed = true;
  *out = reinterpret_cast<void*>(uintptr_t(0));
  (void)coords;
}
void CALLBACK tessError(GLenum, void* data) { static_cast<TTessState*>(data)->failed = true; }

// Twice the signed area of a triangle of the cap.
double turnOf(const std::vector<std::array<GLdouble, 3>>& c, size_t a, size_t b, size_t d) {
  return (c[b][0] - c[a][0]) * (c[d][1] - c[a][1]) - (c[b][1] - c[a][1]) * (c[d][0] - c[a][0]);
}

// The tessellator joins corners that lie in a line (the sides of a row of
// holes) by triangles of no area. Each such triangle has one corner on its
// long side; the triangle beyond that side is split at the corner, which
// keeps every edge paired and leaves no flat facet.
void splitFlatTriangles(const std::vector<std::array<GLdouble, 3>>& c, std::vector<size_t>& t) {
  auto key = [](size_t a, size_t b) { return (uint64_t(a) << 32) | uint64_t(b); };
  std::unordered_map<uint64_t, size_t> owner;  // directed edge -> triangle
  auto index = [&](size_t tri) {
    for (int k = 0; k < 3; ++k) owner[key(t[3 * tri + k], t[3 * tri + (k + 1) % 3])] = tri;
  };
  const size_t count = t.size() / 3;
  std::vector<size_t> flat;
  for (size_t i = 0; i < count; ++i) {
    index(i);
    if (std::abs(turnOf(c, t[3 * i], t[3 * i + 1], t[3 * i + 2])) < 1e-9) flat.push_back(i);
  }
  std::vector<bool> dropped(count, false);
  size_t budget = 4 * count + 16;
  while (!flat.empty() && budget-- > 0) {
    const size_t i = flat.back();
    flat.pop_back();
    if (dropped[i] || std::abs(turnOf(c, t[3 * i], t[3 * i + 1], t[3 * i + 2])) >= 1e-9) continue;
    // The long side a-b with the corner m between its ends.
    int k = 0;
    double longest = -1;
    for (int e = 0; e < 3; ++e) {
      const auto& p = c[t[3 * i + e]];
      const auto& q = c[t[3 * i + (e + 1) % 3]];
      const double d = (p[0] - q[0]) * (p[0] - q[0]) + (p[1] - q[1]) * (p[1] - q[1]);
      if (d > longest) longest = d, k = e;
    }
    const size_t a = t[3 * i + k], b = t[3 * i + (k + 1) % 3], m = t[3 * i + (k + 2) % 3];
    const auto it = owner.find(key(b, a));
    if (it == owner.end() || dropped[it->second]) continue;
    const size_t j = it->second;
    size_t d = 0;
    for (int e = 0; e < 3; ++e)
      if (t[3 * j + e] != a && t[3 * j + e] != b) d = t[3 * j + e];
    // (b, a, d) becomes (b, m, d) and (m, a, d); (a, b, m) goes.
    for (int e = 0; e < 3; ++e) {
      owner.erase(key(t[3 * i + e], t[3 * i + (e + 1) % 3]));
      owner.erase(key(t[3 * j + e], t[3 * j + (e + 1) % 3]));
    }
    dropped[i] = true;
    t[3 * j] = b, t[3 * j + 1] = m, t[3 * j + 2] = d;
    t.insert(t.end(), {m, a, d});
    dropped.push_back(false);
    index(j);
    index(dropped.size() - 1);
    for (size_t n : {j, dropped.size() - 1})
      if (std::abs(turnOf(c, t[3 * n], t[3 * n + 1], t[3 * n + 2])) < 1e-9) flat.push_back(n);
  }
  std::vector<size_t> kept;
  kept.reserve(t.size());
  for (size_t i = 0; i < dropped.size(); ++i)
    if (!dropped[i]) kept.insert(kept.end(), {t[3 * i], t[3 * i + 1], t[3 * i + 2]});
  t = std::move(kept);
}

// ---- walls ----

TVec3 at(const TVec2& p, double z) { return {p.x, p.y, z}; }

void push(TTriangleList& out, const TVec3& a, const TVec3& b, const TVec3& c) { out.push_back({{a, b, c}}); }

// A wall straight up from zLo to zHi along a contour whose material lies on
// its left; the wall faces right.
void addWall(const TPolygon2& c, double zLo, double zHi, TTriangleList& out) {
  for (size_t i = 0, n = c.size(); i < n; ++i) {
    const TVec2& a = c[i];
    const TVec2& b = c[(i + 1) % n];
    push(out, at(a, zLo), at(b, zLo), at(b, zHi));
    push(out, at(a, zLo), at(b, zHi), at(a, zHi));
  }
}

double dist2(const TVec2& a, const TVec2& b) { return (a.x - b.x) * (a.x - b.x) + (a.y - b.y) * (a.y - b.y); }

// A wall between two contours of one side of a profile, the lower at zLo
// and the upper at zHi, both with the material on their left. The contours
// are zipped from their nearest corners, taking the shorter rung at each
// step, so each edge of both is used exactly once and the band closes. A
// rung used twice would pinch the band (one contour running a whole lap
// against one corner of the other): the other step is taken instead, and
// where neither will do the wall fails.
bool addStitchedWall(const TPolygon2& lo, double zLo, const TPolygon2& hi, double zHi, TTriangleList& out) {
  const size_t n = lo.size(), m = hi.size();
  size_t j0 = 0;
  double best = 1e300;
  for (size_t j = 0; j < m; ++j)
    if (const double d = dist2(lo[0], hi[j]); d < best) best = d, j0 = j;
  auto L = [&](size_t k) -> const TVec2& { return lo[k % n]; };
  auto H = [&](size_t k) -> const TVec2& { return hi[(j0 + k) % m]; };
  std::unordered_set<uint64_t> rungs{0};
  auto rung = [&](size_t i, size_t j) { return (uint64_t(i % n) << 32) | uint64_t(j % m); };
  size_t i = 0, j = 0;
  while (i < n || j < m) {
    const bool canLow = i < n && (i + 1 == n && j == m ? true : !rungs.count(rung(i + 1, j)));
    const bool canHigh = j < m && (j + 1 == m && i == n ? true : !rungs.count(rung(i, j + 1)));
    if (!canLow && !canHigh) return false;
    bool advanceLow = j == m || (i < n && dist2(L(i + 1), H(j)) <= dist2(L(i), H(j + 1)));
    if (advanceLow && !canLow) advanceLow = false;
    if (!advanceLow && !canHigh) advanceLow = true;
    if (advanceLow) {
      push(out, at(L(i), zLo), at(L(i + 1), zLo), at(H(j), zHi));
      ++i;
    } else {
      push(out, at(L(i), zLo), at(H(j + 1), zHi), at(H(j), zHi));
      ++j;
    }
    if (i < n || j < m) rungs.insert(rung(i, j));
  }
  return true;
}

// Pairs each hole of `lo` with the nearest hole of `hi` by their centroids;
// false when the two levels do not have the same holes.
bool matchHoles(const std::vector<TPolygon2>& lo, const std::vector<TPolygon2>& hi, std::vector<size_t>& match) {
  if (lo.size() != hi.size()) return false;
  std::vector<TVec2> hc(hi.size());
  for (size_t k = 0; k < hi.size(); ++k) hc[k] = stlpoly::polygonCentroid(hi[k]);
  std::vector<bool> used(hi.size(), false);
  match.assign(lo.size(), 0);
  for (size_t k = 0; k < lo.size(); ++k) {
    const TVec2 c = stlpoly::polygonCentroid(lo[k]);
    double best = 1e300;
    size_t pick = hi.size();
    for (size_t q = 0; q < hi.size(); ++q)
      if (!used[q])
        if (const double d = dist2(c, hc[q]); d < best) best = d, pick = q;
    if (pick == hi.size()) return false;
    used[pick] = true;
    match[k] = pick;
  }
  return true;
}

void addRegionContours(const TPolyRegion& r, std::vector<const TPolygon2*>& contours) {
  contours.push_back(&r.Outer);
  for (const TPolygon2& h : r.Holes) contours.push_back(&h);
}

TPolygon2 reversed(const TPolygon2& p) { return TPolygon2(p.rbegin(), p.rend()); }

// The walls of a recess, facing into it.
void addCutWalls(const TPolyRegion& r, double zLo, double zHi, TTriangleList& out) {
  addWall(reversed(r.Outer), zLo, zHi, out);
  for (const TPolygon2& h : r.Holes) addWall(reversed(h), zLo, zHi, out);
}

struct TSolidBuilder {
  const TSolidPlan& plan;
  TTriangleList& out;
  double zBottom, zTop;
  std::vector<const TPolygon2*> bottomCap, topCap;

  // A cut into the top face (fromTop) or the bottom face, whose parent
  // surface lies at zFace. Its own contours join the parent's cap.
  bool cut(const TSolidCut& c, double zFace, bool fromTop, std::vector<const TPolygon2*>& parentCap) {
    addRegionContours(c.Region, parentCap);
    const bool through = fromTop ? c.FloorZ <= zBottom + 1e-9 : c.FloorZ >= zTop - 1e-9;
    if (through) {
      if (!c.Inner.empty()) return false;
      addRegionContours(c.Region, fromTop ? bottomCap : topCap);
      if (fromTop) addCutWalls(c.Region, zBottom, zFace, out);
      else addCutWalls(c.Region, zFace, zTop, out);
      return true;
    }
    if (fromTop) addCutWalls(c.Region, c.FloorZ, zFace, out);
    else addCutWalls(c.Region, zFace, c.FloorZ, out);
    std::vector<const TPolygon2*> floor;
    addRegionContours(c.Region, floor);
    for (const TSolidCut& inner : c.Inner)
      if (!cut(inner, c.FloorZ, fromTop, floor)) return false;
    return tessellateCap(floor, c.FloorZ, fromTop, out);
  }

  bool build() {
    const auto& lv = plan.Levels;
    zBottom = lv.front().Z;
    zTop = lv.back().Z;
    addRegionContours(lv.front().Region, bottomCap);
    addRegionContours(lv.back().Region, topCap);
    for (size_t k = 0; k + 1 < lv.size(); ++k) {
      const TPolyRegion& a = lv[k].Region;
      const TPolyRegion& b = lv[k + 1].Region;
      std::vector<size_t> match;
      if (!matchHoles(a.Holes, b.Holes, match)) return false;
      if (!addStitchedWall(a.Outer, lv[k].Z, b.Outer, lv[k + 1].Z, out)) return false;
      for (size_t h = 0; h < a.Holes.size(); ++h)
        if (!addStitchedWall(a.Holes[h], lv[k].Z, b.Holes[match[h]], lv[k + 1].Z, out)) return false;
    }
    for (const TSolidCut& c : plan.TopCuts)
      if (!cut(c, zTop, true, topCap)) return false;
    for (const TSolidCut& c : plan.BottomCuts)
      if (!cut(c, zBottom, false, bottomCap)) return false;
    return tessellateCap(bottomCap, zBottom, false, out) && tessellateCap(topCap, zTop, true, out);
  }
};

}  // namespace

bool tessellateCap(const std::vector<const TPolygon2*>& contours, double z, bool faceUp, TTriangleList& out) {
  TTessState s;
  size_t total = 0;
  for (const TPolygon2* c : contours) total += c->size();
  s.coords.reserve(total);
  for (const TPolygon2* c : contours)
    for (const TVec2& v : *c) s.coords.push_back({v.x, v.y, z});
  GLUtesselator* tess = gluNewTess();
  if (!tess) return false;
  gluTessCallback(tess, GLU_TESS_BEGIN_DATA, reinterpret_cast<_GLUfuncptr>(tessBegin));
  gluTessCallback(tess, GLU_TESS_VERTEX_DATA, reinterpret_cast<_GLUfuncptr>(tessVertex));
  gluTessCallback(tess, GLU_TESS_END_DATA, reinterpret_cast<_GLUfuncptr>(tessEnd));
  gluTessCallback(tess, GLU_TESS_EDGE_FLAG_DATA, reinterpret_cast<_GLUfuncptr>(tessEdgeFlag));
  gluTessCallback(tess, GLU_TESS_COMBINE_DATA, reinterpret_cast<_GLUfuncptr>(tessCombine));
  gluTessCallback(tess, GLU_TESS_ERROR_DATA, reinterpret_cast<_GLUfuncptr>(tessError));
  gluTessProperty(tess, GLU_TESS_WINDING_RULE, GLU_TESS_WINDING_ODD);
  gluTessNormal(tess, 0, 0, 1);
  gluTessBeginPolygon(tess, &s);
  size_t index = 0;
  for (const TPolygon2* c : contours) {
    gluTessBeginContour(tess);
    for (size_t k = 0; k < c->size(); ++k, ++index)
      gluTessVertex(tess, s.coords[index].data(), reinterpret_cast<void*>(uintptr_t(index)));
    gluTessEndContour(tess);
  }
  gluTessEndPolygon(tess);
  gluDeleteTess(tess);
  if (s.failed || s.corners.size() % 3 != 0) return false;
  splitFlatTriangles(s.coords, s.corners);
  out.reserve(out.size() + s.corners.size() / 3);
  for (size_t k = 0; k < s.corners.size(); k += 3) {
    const auto& a = s.coords[s.corners[k]];
    const auto& b = s.coords[s.corners[k + 1]];
    const auto& c = s.coords[s.corners[k + 2]];
    const TVec3 A{a[0], a[1], z}, B{b[0], b[1], z}, C{c[0], c[1], z};
    // Counter-clockwise from above faces up.
    const double turn = (B.x - A.x) * (C.y - A.y) - (B.y - A.y) * (C.x - A.x);
    const bool up = turn >= 0;
    if (up == faceUp) out.push_back({{A, B, C}});
    else out.push_back({{A, C, B}});
  }
  return true;
}

std::string buildSolid(const TSolidPlan& plan, TTriangleList& out) {
  if (plan.Levels.size() < 2) return "Stack too short";
  TTriangleList mine;
  TSolidBuilder b{plan, mine, 0, 0, {}, {}};
  if (!b.build()) return "the levels or the caps do not close";
  out.insert(out.end(), mine.begin(), mine.end());
  return {};
}

std::string extrudeRegion(const TPolyRegion& region, double z0, double z1, TTriangleList& out) {
  TSolidPlan plan;
  plan.Levels = {{region, z0, 0}, {region, z1, 0}};
  const std::string why = buildSolid(plan, out);
  if (why.empty()) return why;
  // A corner lying on another contour's edge stops the caps: a region a
  // hair smaller parts them.
  std::vector<TPolyRegion> parted = stlpoly::regionsOf(
      stlpoly::offsetPaths(stlpoly::regionPaths(region, stlpoly::kGridScale), -0.02, ClipperLib::jtMiter),
      ClipperLib::pftNonZero, 1e-4);
  if (parted.empty() || !stlpoly::separateRegions(parted)) return why;
  TTriangleList mine;
  for (const TPolyRegion& p : parted) {
    plan.Levels = {{p, z0, 0}, {p, z1, 0}};
    if (!buildSolid(plan, mine).empty()) return why;
  }
  out.insert(out.end(), mine.begin(), mine.end());
  return {};
}
