#include "stitching/corner_placement.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "document/point_helpers.h"
#include "stitching/row_holes.h"
#include "stitching/stitch_rules.h"

namespace {

using TPieces = std::vector<TPathInterval>;

TPieces piecesOf(const TPW_Path& s) {
  TPieces out;
  for (const TRectF& r : s.getIntervals(false)) out.push_back(TPathInterval{r.topLeft(), r.bottomRight()});
  return out;
}

double lengthOf(const TPathInterval& p) { return distanceOf(p.St, p.Ed); }

double totalOf(const TPieces& pieces) {
  double sum = 0.0;
  for (const TPathInterval& p : pieces) sum += lengthOf(p);
  return sum;
}

TPointF unitOr(const TPathInterval& p, const TPointF& fallback) {
  const TPointF u = unitVector(p.St, p.Ed);
  return (u.x == 0.0f && u.y == 0.0f) ? fallback : u;
}

TPointF lerp(const TPointF& a, const TPointF& b, double u) {
  return TPointF::fromDouble(a.x + (double(b.x) - a.x) * u, a.y + (double(b.y) - a.y) * u);
}

// The point `target` along the pieces: in the piece where the running
// length reaches it, clamped to the piece, with that piece's direction.
void pointAlong(const TPieces& pieces, double target, TPointF& position, TPointF& direction) {
  double acc = 0.0;
  const TPathInterval* last = nullptr;
  for (const TPathInterval& p : pieces) {
    const double len = lengthOf(p);
    if (!(len > 0.0)) continue;
    last = &p;
    if (acc + len + 1e-9 >= target) {
      position = lerp(p.St, p.Ed, std::clamp((target - acc) / len, 0.0, 1.0));
      direction = unitOr(p, TPointF(1.0f, 0.0f));
      return;
    }
    acc += len;
  }
  if (last) {
    position = last->Ed;
    direction = unitOr(*last, TPointF(1.0f, 0.0f));
  } else if (!pieces.empty()) {
    position = pieces.front().St;
    direction = TPointF(1.0f, 0.0f);
  }
}

TPointF unitOfSum(const TPointF& a, const TPointF& b, const TPointF& fallback) {
  const double x = double(a.x) + b.x, y = double(a.y) + b.y;
  const double len = std::hypot(x, y);
  if (len < 1e-9) return fallback;
  return TPointF::fromDouble(x / len, y / len);
}

// The first or second half of an arc's pieces, the middle piece cut at
// the exact middle.
TPieces halfOf(const TPW_Path& arc, bool second) {
  const TPieces pieces = piecesOf(arc);
  const double half = totalOf(pieces) / 2.0;
  TPieces out;
  double acc = 0.0;
  for (const TPathInterval& p : pieces) {
    const double len = lengthOf(p);
    if (acc + len <= half - 1e-9) {
      if (!second) out.push_back(p);
    } else if (acc >= half - 1e-9) {
      if (second) out.push_back(p);
    } else {
      const TPointF mid = lerp(p.St, p.Ed, (half - acc) / len);
      out.push_back(second ? TPathInterval{mid, p.Ed} : TPathInterval{p.St, mid});
    }
    acc += len;
  }
  return out;
}

int nearestCount(double L, double pitch) { return static_cast<int>(std::max(1LL, roundHalfEven(L / pitch))); }

}  // namespace

void pointAtFraction(const TPW_Path& shape, double t, TPointF& position, TPointF& direction) {
  const TPieces pieces = piecesOf(shape);
  const double L = totalOf(pieces);
  direction = TPointF(1.0f, 0.0f);
  if (L < 1e-9) {
    position = shape.FStartPt;
    return;
  }
  pointAlong(pieces, t * L, position, direction);
}

TPointF startDirectionOf(const TPW_Path& shape) {
  for (const TPathInterval& p : piecesOf(shape))
    if (lengthOf(p) > 0.0) return unitVector(p.St, p.Ed);
  return TPointF();
}

TPointF endDirectionOf(const TPW_Path& shape) {
  const TPieces pieces = piecesOf(shape);
  for (auto it = pieces.rbegin(); it != pieces.rend(); ++it)
    if (lengthOf(*it) > 0.0) return unitVector(it->St, it->Ed);
  return TPointF();
}

double jointAngle(const TPW_Path& a, const TPW_Path& b) {
  const TPointF d1 = endDirectionOf(a), d2 = startDirectionOf(b);
  const bool zero1 = d1.x == 0.0f && d1.y == 0.0f, zero2 = d2.x == 0.0f && d2.y == 0.0f;
  if (zero1 || zero2) return 180.0;
  const double c = std::clamp(-(double(d1.x) * d2.x + double(d1.y) * d2.y), -1.0, 1.0);
  return std::acos(c) * 180.0 / std::numbers::pi;
}

int evenArcIntervals(double L, double pitch) {
  int n = nearestCount(L, pitch);
  if (n % 2 != 0) {
    const int up = n + 1, down = std::max(n - 1, 2);
    n = std::fabs(L / down - pitch) < std::fabs(L / up - pitch) ? down : up;
  }
  return std::max(n, 2);
}

double chainLength(const std::vector<TPW_Path*>& chain) {
  double sum = 0.0;
  for (const TPW_Path* s : chain) sum += totalOf(piecesOf(*s));
  return sum;
}

std::vector<TPlannedHole> planEvenSplit(const std::vector<TPW_Path*>& chain, bool closed, float pitch) {
  std::vector<TPlannedHole> plan;
  const size_t count = chain.size();
  const TPW_Path* previous = nullptr;
  for (size_t i = 0; i < count; ++i) {
    const TPW_Path& s = *chain[i];
    const double L = totalOf(piecesOf(s));
    if (L < 1e-9) continue;
    int n = nearestCount(L, pitch);
    const bool chainEnd = !closed && (i == 0 || i + 1 == count);
    // An arc is split evenly so that a hole sits on its middle.
    if (s.FShapeType == ShapeType::Arc && !chainEnd) n = evenArcIntervals(L, pitch);
    for (int k = 0; k < n; ++k) {
      TPlannedHole h;
      h.FSpacing = L / n;
      pointAtFraction(s, double(k) / n, h.FPosition, h.FDirection);
      if (k == 0 && previous) {
        TPointF pos, prevDir;
        pointAtFraction(*previous, 1.0, pos, prevDir);
        if (prevDir.x != 0.0f || prevDir.y != 0.0f) h.FDirection = unitOfSum(prevDir, h.FDirection, prevDir);
      }
      plan.push_back(h);
    }
    if (!closed && i + 1 == count) {
      TPlannedHole h;
      h.FSpacing = L / n;
      pointAtFraction(s, 1.0, h.FPosition, h.FDirection);
      plan.push_back(h);
    }
    previous = &s;
  }
  return plan;
}

std::vector<TPlannedHole> planSmartCorner(const std::vector<TPW_Path*>& chain, bool closed, float pitch,
                                          float threshold) {
  std::vector<TPlannedHole> plan;
  const int n = static_cast<int>(chain.size());
  if (n == 0) return plan;
  std::vector<double> length(size_t(n), 0.0);
  std::vector<char> shortArc(size_t(n), 0), corner(size_t(n), 0);
  for (int i = 0; i < n; ++i) {
    length[size_t(i)] = totalOf(piecesOf(*chain[size_t(i)]));
    const bool chainEnd = !closed && (i == 0 || i == n - 1);
    // A small arc between two runs is a rounded corner: one hole on its middle.
    if (chain[size_t(i)]->FShapeType == ShapeType::Arc && length[size_t(i)] > 1e-9)
      shortArc[size_t(i)] = evenArcIntervals(length[size_t(i)], pitch) == 2 && !chainEnd;
  }
  corner[0] = closed ? jointAngle(*chain[size_t(n - 1)], *chain[0]) < threshold : 1;
  for (int i = 1; i < n; ++i) corner[size_t(i)] = jointAngle(*chain[size_t(i - 1)], *chain[size_t(i)]) < threshold;

  int start = 0;
  if (closed) {
    for (int i = 0; i < n; ++i)
      if (corner[size_t(i)]) {
        start = i;
        break;
      }
  }
  const int limit = closed ? start + n : n;
  auto at = [&](int u) { return ((u % n) + n) % n; };

  int u = start;
  while (u < limit) {
    const int i = at(u);
    if (shortArc[size_t(i)]) {
      TPlannedHole h;
      const TPieces arc = piecesOf(*chain[size_t(i)]);
      h.FSpacing = length[size_t(i)] / 2.0;
      pointAlong(arc, h.FSpacing, h.FPosition, h.FDirection);
      plan.push_back(h);
      ++u;
      continue;
    }
    // The run: from here while the next is neither a corner nor a small arc.
    int v = u + 1;
    while (v < limit && !corner[size_t(at(v))] && !shortArc[size_t(at(v))]) ++v;
    const bool hasPrevious = closed || u > 0;
    const bool followsArc = hasPrevious && shortArc[size_t(at(u - 1))];
    bool arcFollows = false;
    if (v < limit) arcFollows = shortArc[size_t(at(v))];
    else if (closed) arcFollows = shortArc[size_t(at(v))] && at(v) == start;

    double runLength = 0.0;
    TPieces pieces;
    if (followsArc) pieces = halfOf(*chain[size_t(at(u - 1))], true);
    for (int w = u; w < v; ++w) {
      const TPieces own = piecesOf(*chain[size_t(at(w))]);
      pieces.insert(pieces.end(), own.begin(), own.end());
      runLength += length[size_t(at(w))];
    }
    if (arcFollows) {
      const TPieces half = halfOf(*chain[size_t(at(v))], false);
      pieces.insert(pieces.end(), half.begin(), half.end());
    }
    if (runLength >= 1e-9) {
      double L = totalOf(pieces);
      if (L < 1e-9) L = runLength;
      const int count = nearestCount(L, pitch);
      bool hasCornerDir = false;
      TPointF cornerDir;
      if (!followsArc && hasPrevious) {
        const TPointF before = endDirectionOf(*chain[size_t(at(u - 1))]);
        cornerDir = unitOfSum(before, startDirectionOf(*chain[size_t(i)]), before);
        hasCornerDir = true;
      }
      for (int k = followsArc ? 1 : 0; k < count; ++k) {
        TPlannedHole h;
        h.FSpacing = L / count;
        pointAlong(pieces, k * h.FSpacing, h.FPosition, h.FDirection);
        if (k == 0 && hasCornerDir) h.FDirection = cornerDir;
        plan.push_back(h);
      }
    }
    u = v;
  }
  if (!closed && !shortArc[size_t(n - 1)]) {
    // The end of an open chain gets its own hole.
    const TPieces last = piecesOf(*chain[size_t(n - 1)]);
    if (!last.empty()) {
      TPlannedHole h;
      h.FPosition = last.back().Ed;
      h.FDirection = lengthOf(last.back()) < 1e-9 ? TPointF(1.0f, 0.0f) : unitVector(last.back().St, last.back().Ed);
      h.FSpacing = pitch;
      plan.push_back(h);
    }
  }
  return plan;
}

int placePlannedHoles(const std::vector<TPlannedHole>& plan, bool closed, TRowHoles& holes) {
  TPW_Path* first = nullptr;
  TPW_Path* last = nullptr;
  for (const TPlannedHole& h : plan) {
    if (holes.findHoleNear(h.FPosition, h.FSpacing / 2.0)) continue;
    TPW_Path* hole = holes.makeHole(h.FPosition, rotationOfDirection(TPointF(), h.FDirection));
    if (!hole) continue;
    if (last) {
      TRowHoles::link(*last, *hole);
      holes.setLastStitch(hole);
    } else {
      holes.chainAfterLast(*hole, h.FSpacing);
    }
    last = hole;
    if (!first) first = hole;
  }
  if (closed && first && last && first != last) TRowHoles::link(*last, *first);
  return static_cast<int>(plan.size());
}

int placeEvenSplit(const std::vector<TPW_Path*>& chain, bool closed, float pitch, TRowHoles* holes) {
  const std::vector<TPlannedHole> plan = planEvenSplit(chain, closed, pitch);
  return holes ? placePlannedHoles(plan, closed, *holes) : static_cast<int>(plan.size());
}

int placeSmartCorner(const std::vector<TPW_Path*>& chain, bool closed, float pitch, float threshold,
                     TRowHoles* holes) {
  const std::vector<TPlannedHole> plan = planSmartCorner(chain, closed, pitch, threshold);
  return holes ? placePlannedHoles(plan, closed, *holes) : static_cast<int>(plan.size());
}
