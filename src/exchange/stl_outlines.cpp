#include "exchange/stl_outlines.h"

#include <algorithm>
#include <cmath>
#include <unordered_map>

#include "document/pw_path.h"
#include "document/shape_list.h"
#include "exchange/stl_polygons.h"
#include "stitching/pricking_iron.h"

namespace {

constexpr double kJoinTolerance = 0.2;  // ends closer than this meet
constexpr int kCurvePieces = 32;

struct TSubpath {
  std::vector<TVec2> pts;
  bool closed = false;
};

TVec2 vec(const TPointF& p) { return {p.x, p.y}; }

double dist(const TVec2& a, const TVec2& b) { return std::hypot(a.x - b.x, a.y - b.y); }

// The path's figures as polylines in drawing coordinates.
std::vector<TSubpath> flatten(const TPathData& d) {
  std::vector<TSubpath> out;
  const auto& pts = d.points();
  for (size_t i = 0; i < pts.size(); ++i) {
    switch (pts[i].Kind) {
      case TPathPointKind::MoveTo:
        out.push_back({{vec(pts[i].Point)}, false});
        break;
      case TPathPointKind::LineTo:
        if (out.empty()) out.push_back({});
        out.back().pts.push_back(vec(pts[i].Point));
        break;
      case TPathPointKind::CurveTo: {
        if (out.empty() || out.back().pts.empty() || i + 2 >= pts.size()) break;
        const TPointF p0 = TPointF::fromDouble(out.back().pts.back().x, out.back().pts.back().y);
        for (int k = 1; k <= kCurvePieces; ++k)
          out.back().pts.push_back(
              vec(cubicPointAt(p0, pts[i].Point, pts[i + 1].Point, pts[i + 2].Point, double(k) / kCurvePieces)));
        i += 2;
        break;
      }
      case TPathPointKind::Close:
        if (!out.empty()) out.back().closed = true;
        break;
    }
  }
  return out;
}

// Drops points within 1e-5 of the one before, and a last point on the first.
void clean(std::vector<TVec2>& p) {
  std::vector<TVec2> q;
  q.reserve(p.size());
  for (const TVec2& v : p)
    if (q.empty() || dist(q.back(), v) >= 1e-5) q.push_back(v);
  while (q.size() > 1 && dist(q.back(), q.front()) < 1e-5) q.pop_back();
  p = std::move(q);
}

struct TPiece {
  std::vector<TVec2> pts;
  int row = 0;
  bool used = false;
};

// The open pieces' ends, by cells of one millimetre.
class TEndIndex {
 public:
  explicit TEndIndex(const std::vector<TPiece>& pieces) : FPieces(pieces) {
    for (size_t i = 0; i < pieces.size(); ++i) {
      FCells[cell(pieces[i].pts.front())].push_back({int(i), 0});
      FCells[cell(pieces[i].pts.back())].push_back({int(i), 1});
    }
  }
  // The nearest unused piece of the row with an end within the tolerance:
  // its index and which end (0 start, 1 end); -1 for none.
  int find(const TVec2& p, int row, int& whichEnd) const {
    int best = -1;
    double bestD = kJoinTolerance;
    const long long cx = static_cast<long long>(std::floor(p.x)), cy = static_cast<long long>(std::floor(p.y));
    for (long long dx = -1; dx <= 1; ++dx)
      for (long long dy = -1; dy <= 1; ++dy) {
        const auto it = FCells.find(key(cx + dx, cy + dy));
        if (it == FCells.end()) continue;
        for (const auto& [i, e] : it->second) {
          const TPiece& q = FPieces[size_t(i)];
          if (q.used || q.row != row) continue;
          const double d = dist(p, e ? q.pts.back() : q.pts.front());
          if (d < bestD) bestD = d, best = i, whichEnd = e;
        }
      }
    return best;
  }

 private:
  const std::vector<TPiece>& FPieces;
  std::unordered_map<long long, std::vector<std::pair<int, int>>> FCells;
  static long long key(long long x, long long y) { return x * 4000037LL + y; }
  static long long cell(const TVec2& p) { return key(static_cast<long long>(std::floor(p.x)), static_cast<long long>(std::floor(p.y))); }
};

// Joins the pieces end to end. Closed chains become outlines; the rest are
// counted as open.
void chainPieces(std::vector<TPiece>& pieces, std::vector<TPolygon2>& outlines, int& open) {
  const TEndIndex index(pieces);
  for (TPiece& start : pieces) {
    if (start.used) continue;
    start.used = true;
    std::vector<TVec2> chain = start.pts;
    auto closed = [&] { return chain.size() >= 3 && dist(chain.front(), chain.back()) < kJoinTolerance; };
    for (bool forward : {true, false}) {
      while (!closed()) {
        int end = 0;
        const int next = index.find(forward ? chain.back() : chain.front(), start.row, end);
        if (next < 0) break;
        TPiece& q = pieces[size_t(next)];
        q.used = true;
        std::vector<TVec2> add = q.pts;
        // Forward, the piece must start where the chain ends; backward, end
        // where it starts.
        if ((forward && end == 1) || (!forward && end == 0)) add.assign(q.pts.rbegin(), q.pts.rend());
        if (forward) chain.insert(chain.end(), add.begin() + 1, add.end());
        else chain.insert(chain.begin(), add.begin(), add.end() - 1);
      }
    }
    if (closed()) {
      chain.pop_back();
      clean(chain);
      if (chain.size() >= 3) outlines.push_back(std::move(chain));
    } else {
      ++open;
    }
  }
}

double bladeAngle(const TPW_Path& hole) {
  if (!hole.FPrickingIron || hole.FStitchType == "L") return 0;
  return hole.FStitchInversed ? double(hole.FPrickingIron->FAngle) : -double(hole.FPrickingIron->FAngle);
}

// A hole in drawing coordinates.
TPolygon2 holePolygon(const TPW_Path& h, const TSTLExportSettings& s) {
  const TVec2 c = vec(h.FCenter);
  const std::string& type = h.FStitchType;
  double len = 0, wid = 0;
  if (!s.StitchAsRound) {
    if (type == "D") len = s.DiamondL, wid = s.DiamondW;
    else if (type == "F") len = s.EuropeanL, wid = s.EuropeanW;
    else if (type == "L") len = s.FlatL, wid = s.FlatW;
  }
  if (len <= 0) {
    const double d = !s.StitchAsRound && type == "R" && h.FWidth > 0 ? double(h.FWidth) : s.StitchDiameter;
    return stlpoly::circlePolygon(c, d / 2);
  }
  TPolygon2 p;
  if (type == "D") p = {{0, -len / 2}, {wid / 2, 0}, {0, len / 2}, {-wid / 2, 0}};
  else p = {{-wid / 2, -len / 2}, {wid / 2, -len / 2}, {wid / 2, len / 2}, {-wid / 2, len / 2}};
  const double a = (double(h.FRotation) + bladeAngle(h)) * 0.017453292519943295;
  const double co = std::cos(a), si = std::sin(a);
  for (TVec2& v : p) v = {c.x + v.x * co - v.y * si, c.y + v.x * si + v.y * co};
  return p;
}

bool isChained(const TPW_Path& s) {
  return s.isType(ShapeType::Line) || s.isType(ShapeType::Bezier) || s.isType(ShapeType::Arc);
}

}  // namespace

TStlOutlines prepareStlOutlines(const std::vector<const TPW_Path*>& shapes, const TSTLExportSettings& settings) {
  TStlOutlines r;
  std::vector<TPiece> pieces;
  size_t points = 0;
  for (const TPW_Path* s : shapes) {
    points += s->FData.Count() * 4;
    if (points > kMaxStlPoints) {
      r = {};
      r.TooDetailed = true;
      return r;
    }
    if (s->isType(ShapeType::Hole)) {
      r.Holes.push_back(holePolygon(*s, settings));
      continue;
    }
    if (s->isType(ShapeType::Text)) {
      std::vector<TPolygon2> glyphs;
      for (TSubpath& f : flatten(s->FData)) {
        clean(f.pts);
        if (f.pts.size() >= 3) glyphs.push_back(std::move(f.pts));
      }
      if (!glyphs.empty()) r.Texts.push_back(std::move(glyphs));
      continue;
    }
    const bool chained = isChained(*s);
    if (!chained && !s->isType(ShapeType::Ellipse) && !s->isType(ShapeType::Other)) continue;
    for (TSubpath& f : flatten(s->FData)) {
      if (f.pts.size() < 2) continue;
      const bool closes = f.closed || s->isType(ShapeType::Ellipse) ||
                          (f.pts.size() >= 3 && dist(f.pts.front(), f.pts.back()) < kJoinTolerance);
      if (closes) {
        clean(f.pts);
        if (f.pts.size() >= 3) r.Outlines.push_back(std::move(f.pts));
      } else {
        pieces.push_back({std::move(f.pts), s->FPalletIndex, false});
      }
    }
  }
  chainPieces(pieces, r.Outlines, r.OpenShapes);

  // Centre the outlines' bounds on the origin and turn y up.
  TVec2 lo, hi;
  if (!r.Outlines.empty()) stlpoly::boundsOf(r.Outlines, lo, hi);
  else stlpoly::boundsOf(r.Holes, lo, hi);
  if (hi.x - lo.x > kMaxStlSize || hi.y - lo.y > kMaxStlSize) {
    r = {};
    r.TooDetailed = true;
    return r;
  }
  const TVec2 c{(lo.x + hi.x) / 2, (lo.y + hi.y) / 2};
  auto place = [&](std::vector<TPolygon2>& ps) {
    for (TPolygon2& p : ps)
      for (TVec2& v : p) v = {v.x - c.x, c.y - v.y};
  };
  place(r.Outlines);
  place(r.Holes);
  // Holes all one way round, so that overlapping ones add up.
  for (TPolygon2& h : r.Holes)
    if (polygonArea(h) < 0) std::reverse(h.begin(), h.end());
  for (auto& t : r.Texts) place(t);
  return r;
}

TStlSource stlSourceShapes(const TShapeList& list, bool useSelection) {
  TStlSource src;
  for (const auto& s : list)
    if (useSelection && s->FSelected) src.Shapes.push_back(s.get());
  if (!src.Shapes.empty()) {
    src.FromSelection = true;
    return src;
  }
  std::vector<const TPW_Path*> all, solid;
  for (const auto& s : list) {
    if (!list.GetlayerVisible(s->FLayerID)) continue;
    all.push_back(s.get());
    if (s->FDash == TStrokeDash::Solid || s->isType(ShapeType::Hole) || s->isType(ShapeType::Text))
      solid.push_back(s.get());
  }
  const bool solidCloses = !prepareStlOutlines(solid, TSTLExportSettings{}).Outlines.empty();
  src.Shapes = solidCloses ? std::move(solid) : std::move(all);
  return src;
}

void TStlSource::keepCopies() {
  for (const TPW_Path*& s : Shapes) {
    std::shared_ptr<TPW_Path> copy = s->createCopy();
    if (copy->FPrickingIron) {
      std::shared_ptr<TPrickingIron> iron = copy->FPrickingIron->Clone();
      copy->FPrickingIron = iron.get();
      FIrons.push_back(std::move(iron));
    }
    s = copy.get();
    FCopies.push_back(std::move(copy));
  }
}
