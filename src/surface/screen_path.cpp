#include "surface/screen_path.h"


namespace {

struct TXY {
  double x, y;
};

// Whether p lies within `tol2` (squared) of the line through a and b; for a
// and b in one place, of a. The cross product spares a division.
bool nearLine(const TXY& p, const TXY& a, const TXY& b, double tol2) {
  const double dx = b.x - a.x, dy = b.y - a.y, px = p.x - a.x, py = p.y - a.y;
  const double len2 = dx * dx + dy * dy;
  if (len2 == 0) return px * px + py * py < tol2;
  const double cross = dx * py - dy * px;
  return cross * cross < tol2 * len2;
}

}  // namespace

void toScreenPath(const TPathData& real, const TPointF& scale, const TPointF& offset, TPathData& out) {
  const auto& in = real.points();
  auto& dst = out.mutablePoints();
  dst.clear();
  dst.reserve(in.size());
  const double sx = scale.x, sy = scale.y, ox = offset.x, oy = offset.y;
  auto screen = [&](const TPointF& p) { return TXY{p.x * sx + ox, p.y * sy + oy}; };
  auto emit = [&](TPathPointKind kind, const TXY& p) {
    dst.push_back(TPathPoint{kind, TPointF(static_cast<float>(p.x), static_cast<float>(p.y))});
  };
  constexpr double tol2 = kScreenPathTolerance * kScreenPathTolerance;
  constexpr double step2 = kScreenPathMinStep * kScreenPathMinStep;

  bool haveAnchor = false;  // the last point kept, from which lines run
  TXY anchor{0, 0};
  TXY p = in.empty() ? TXY{0, 0} : screen(in[0].Point);
  for (size_t i = 0; i < in.size(); ++i) {
    const TPathPointKind kind = in[i].Kind;
    // Each point is moved to pixels once: the look ahead is kept for the next round.
    const bool ahead = i + 1 < in.size();
    const TXY next = ahead ? screen(in[i + 1].Point) : TXY{0, 0};
    if (kind == TPathPointKind::LineTo && haveAnchor && ahead && in[i + 1].Kind == TPathPointKind::LineTo) {
      const double dx = p.x - anchor.x, dy = p.y - anchor.y;
      if (dx * dx + dy * dy < step2 && nearLine(p, anchor, next, tol2)) {
        p = next;
        continue;
      }
    }
    emit(kind, p);
    switch (kind) {
      case TPathPointKind::MoveTo:
      case TPathPointKind::LineTo:
        anchor = p;
        haveAnchor = true;
        break;
      case TPathPointKind::CurveTo:
        // Control points stand for the curve; the pen stands on the third.
        if (i + 2 < in.size()) {
          emit(in[i + 1].Kind, next);
          anchor = screen(in[i + 2].Point);
          emit(in[i + 2].Kind, anchor);
          i += 2;
          haveAnchor = true;
          p = i + 1 < in.size() ? screen(in[i + 1].Point) : TXY{0, 0};
          continue;
        }
        haveAnchor = false;
        break;
      case TPathPointKind::Close:
        haveAnchor = false;
        break;
    }
    p = next;
  }
}
