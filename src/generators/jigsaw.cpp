#include "generators/jigsaw.h"

#include <cmath>


namespace {

// The tab's circle: its radius and the height of its centre over the side,
// both as fractions of the side's length.
constexpr float kTabRadiusRatio = 0.15f;
constexpr float kTabHeightRatio = 0.16666667f;

struct TPt {
  double x = 0, y = 0;
};

// One flank from (0, 0) up to the tab's circle, in the side's own frame.
struct TFlank {
  TPt cp1, cp2, end;
  double angle = 0;  // degrees from the circle's far point to the flank's end
};

TFlank drawFlank(double L, const TPt& C, double R, TJigsawRandom& rnd) {
  TFlank f;
  f.angle = rnd.random() * 10 - 5 + 40;
  // The far point of the circle, turned by the angle about the centre.
  const double a = f.angle * 0.017453292519943295;
  f.end = {C.x - R * std::sin(a), C.y + R * std::cos(a)};
  // The tangent there, so that the flank runs into the arc without a kink.
  const double ux = (f.end.x - C.x) / R, uy = (f.end.y - C.y) / R;
  const double tx = uy, ty = -ux;
  const double reach = R + R * (rnd.random() * 0.1 + 0.05);
  f.cp2 = {f.end.x + tx * reach, f.end.y + ty * reach};
  const double ry = rnd.random();
  const double rx = rnd.random();
  f.cp1 = {L * (rx * 0.2 + 0.2), L * (ry * 0.1 + 0.05)};
  return f;
}

std::unique_ptr<TPW_Path> newShape(const TJigsawStyle& style, int id) {
  return std::make_unique<TPW_Path>(style.FPalletIdx, style.FColor, style.FThickness, style.FDash, id);
}

// The side's shapes in the order they join the document.
void takeEdge(TPW_JigsawEdge& e, std::vector<std::unique_ptr<TPW_Path>>& into) {
  into.push_back(std::move(e.FBezier1));
  into.push_back(std::move(e.FBezier2));
  into.push_back(std::move(e.FLoop));
}

}  // namespace

std::string checkJigsawSettings(const TJigsawSettings& s) {
  if (s.FNumPiecesX < 1 || s.FNumPiecesX > kJigsawMaxPieces || s.FNumPiecesY < 1 ||
      s.FNumPiecesY > kJigsawMaxPieces)
    return "jigsaw_bad_count";
  if (!(s.FPieceLen >= kJigsawMinPieceLen && s.FPieceLen <= kJigsawMaxPieceLen)) return "jigsaw_bad_length";
  return {};
}

TPW_JigsawEdge::TPW_JigsawEdge(int APalletIdx, TAlphaColor AColor, float AThickness, TStrokeDash ADash, int ID)
    : FBezier1(std::make_unique<TPW_Path>(APalletIdx, AColor, AThickness, ADash, ID)),
      FBezier2(std::make_unique<TPW_Path>(APalletIdx, AColor, AThickness, ADash, ID + 1)),
      FLoop(std::make_unique<TPW_Path>(APalletIdx, AColor, AThickness, ADash, ID + 2)) {}

void TPW_JigsawEdge::build(double L, bool vertical, const TPointF& origin, TJigsawRandom& rnd) {
  // The knob stands on the other side of the line from the flanks' first
  // control points: the shoulders dip away from the knob, and each flank
  // runs up into the neck and on round the knob's far side without a kink.
  // (With the circle on the shoulders' side the flanks would run past it
  // and hook back into its far side, an outline nobody could cut.)
  const TPt C{L / 2, -L * double(kTabHeightRatio)};
  const double R = L * double(kTabRadiusRatio);
  const TFlank f1 = drawFlank(L, C, R, rnd);
  // The second flank is drawn like the first, then mirrored onto the far end
  // of the side and run backwards, from the circle down to (L, 0).
  TFlank f2 = drawFlank(L, C, R, rnd);
  for (TPt* p : {&f2.cp1, &f2.cp2, &f2.end}) p->x = L - p->x;
  const bool flip = rnd.randomInt(2) == 0;  // the tab points the other way
  double sweep = 360 - f1.angle - f2.angle;
  if (flip) sweep = -sweep;

  auto place = [&](TPt p) {
    if (flip) p.y = -p.y;
    if (vertical) p = {-p.y, p.x};
    return TPointF::fromDouble(origin.x + p.x, origin.y + p.y);
  };
  FBezier1->drawBezierPath(place({0, 0}), place(f1.cp1), place(f1.cp2), place(f1.end));
  FBezier2->drawBezierPath(place(f2.end), place(f2.cp2), place(f2.cp1), place({L, 0}));
  FLoop->drawArcPath(place(C), TPointF::fromDouble(R, R), place(f1.end), place(f2.end), static_cast<float>(sweep));
}

std::vector<std::unique_ptr<TPW_Path>> makeJigsaw(const TJigsawSettings& s, const TJigsawStyle& style,
                                                  const std::function<int()>& nextId) {
  const int nx = s.FNumPiecesX, ny = s.FNumPiecesY;
  const double L = s.FPieceLen;
  TJigsawRandom rnd(s.FRandomSeed);
  rnd.randomInt(2);  // drawn and not used: the same seed then gives the same pattern

  // Every side, corner by corner, row by row: the one to the right of the
  // corner, then the one below it.
  std::vector<std::vector<std::unique_ptr<TPW_JigsawEdge>>> across(ny + 1), down(nx + 1);
  for (auto& row : across) row.resize(nx);
  for (auto& col : down) col.resize(ny);
  for (int y = 0; y <= ny; ++y)
    for (int x = 0; x <= nx; ++x) {
      const TPointF corner = TPointF::fromDouble(x * L, y * L);
      if (x != nx) {
        auto e = std::make_unique<TPW_JigsawEdge>(style.FPalletIdx, style.FColor, style.FThickness, style.FDash, 0);
        e->build(L, false, corner, rnd);
        across[y][x] = std::move(e);
      }
      if (y != ny) {
        auto e = std::make_unique<TPW_JigsawEdge>(style.FPalletIdx, style.FColor, style.FThickness, style.FDash, 0);
        e->build(L, true, corner, rnd);
        down[x][y] = std::move(e);
      }
    }

  std::vector<std::unique_ptr<TPW_Path>> out;
  // One grid line: its sides in order, outer ones straight when asked.
  auto handOver = [&](std::vector<std::unique_ptr<TPW_JigsawEdge>>& edges, bool outer, bool vertical,
                      double at) {
    std::vector<std::unique_ptr<TPW_Path>> line;
    for (size_t i = 0; i < edges.size(); ++i) {
      if (s.FFlatEdge && outer) {
        auto straight = newShape(style, nextId());
        const TPointF a = vertical ? TPointF::fromDouble(at, i * L) : TPointF::fromDouble(i * L, at);
        const TPointF b =
            vertical ? TPointF::fromDouble(at, (i + 1) * L) : TPointF::fromDouble((i + 1) * L, at);
        straight->drawLinePath(a, b);
        line.push_back(std::move(straight));
        continue;
      }
      TPW_JigsawEdge& e = *edges[i];
      for (TPW_Path* p : {e.FBezier1.get(), e.FBezier2.get(), e.FLoop.get()}) p->updateId(nextId());
      const int edgeGroup = nextId();
      for (TPW_Path* p : {e.FBezier1.get(), e.FBezier2.get(), e.FLoop.get()}) p->FGroupID = edgeGroup;
      takeEdge(e, line);
    }
    if (!s.FFlattenPath) {
      const int group = nextId();
      for (auto& p : line) {
        p->FGroupID = group;
        out.push_back(std::move(p));
      }
      return;
    }
    std::string text;
    for (const auto& p : line) text += p->FData.getData();
    auto path = newShape(style, nextId());
    path->FShapeType = ShapeType::Other;
    path->FData.setData(text);
    path->getBoundary(true);
    out.push_back(std::move(path));
  };
  for (int y = 0; y <= ny; ++y) handOver(across[y], y == 0 || y == ny, false, y * L);
  for (int x = 0; x <= nx; ++x) handOver(down[x], x == 0 || x == nx, true, x * L);
  return out;
}
