#include "stitching/stitching_order.h"

#include <cmath>
#include <utility>

namespace {

struct TXY {
  double x, y;
};

double dist(const TXY& a, const TXY& b) { return std::sqrt((b.x - a.x) * (b.x - a.x) + (b.y - a.y) * (b.y - a.y)); }
double dist2(const TXY& a, const TXY& b) { return (b.x - a.x) * (b.x - a.x) + (b.y - a.y) * (b.y - a.y); }

TXY xyOf(const TPointF& p) { return {double(p.x), double(p.y)}; }

// 2-opt over the open path t (indexes into p): wherever two edges crossed
// over give a shorter path, the stretch between them is turned round.
// Passes repeat until one changes nothing.
void twoOpt(std::vector<int>& t, const std::vector<TXY>& p) {
  const int n = static_cast<int>(t.size());
  bool changed = true;
  while (changed) {
    changed = false;
    for (int i = 0; i + 3 <= n; ++i) {
      for (int j = i + 2; j + 2 <= n; ++j) {
        const TXY &a = p[t[i]], &b = p[t[i + 1]], &c = p[t[j]], &d = p[t[j + 1]];
        // An exchange can only pay when one of the new edges is shorter
        // than the old edge it replaces; squares decide that cheaply and
        // in the same order as the distances.
        if (dist2(a, c) >= dist2(a, b) && dist2(b, d) >= dist2(c, d)) continue;
        const double now = dist(a, b) + dist(c, d);
        const double after = dist(a, c) + dist(b, d);
        if (after + 0.0001 < now) {
          for (int lo = i + 1, hi = j; lo < hi; ++lo, --hi) std::swap(t[lo], t[hi]);
          changed = true;
        }
      }
    }
  }
}

}  // namespace

int nearestHole(const TPointF& point, const std::vector<TPW_Path*>& holes) {
  int best = -1;
  double bestDist = 0;
  const TXY q = xyOf(point);
  for (size_t i = 0; i < holes.size(); ++i) {
    const double d = dist(q, xyOf(holes[i]->FStartPt));
    if (best < 0 || d < bestDist) {
      best = static_cast<int>(i);
      bestDist = d;
    }
  }
  return best;
}

double holeDistance(const TPW_Path& a, const TPW_Path& b) { return dist(xyOf(a.FStartPt), xyOf(b.FStartPt)); }

TStitchTour planStitchingOrder(const std::vector<TPW_Path*>& holes, const TPointF& start) {
  TStitchTour tour;
  const int n = static_cast<int>(holes.size());
  if (n == 0) return tour;
  std::vector<TXY> p(n);
  for (int i = 0; i < n; ++i) p[i] = xyOf(holes[i]->FStartPt);

  // Nearest neighbour from the hole nearest the start.
  std::vector<int> t;
  t.reserve(n);
  std::vector<char> used(n, 0);
  int last = nearestHole(start, holes);
  t.push_back(last);
  used[last] = 1;
  while (static_cast<int>(t.size()) < n) {
    int best = -1;
    double bestDist = 0;
    for (int i = 0; i < n; ++i) {
      if (used[i]) continue;
      const double d = dist(p[last], p[i]);
      if (best < 0 || d < bestDist) {
        best = i;
        bestDist = d;
      }
    }
    t.push_back(best);
    used[best] = 1;
    last = best;
  }
  twoOpt(t, p);

  if (n > 2) {
    double sum = 0;
    for (int k = 0; k + 1 < n; ++k) sum += dist(p[t[k]], p[t[k + 1]]);
    tour.FClosed = dist(p[t[n - 1]], p[t[0]]) < 2 * (sum / (n - 1));
  }
  for (int i : t) tour.FOrder.push_back(holes[i]);
  return tour;
}

void linkStitchingOrder(const TStitchTour& tour) {
  const auto& h = tour.FOrder;
  const size_t n = h.size();
  for (size_t k = 0; k < n; ++k) {
    h[k]->FPrevStitchID = k > 0 ? h[k - 1]->FID : (tour.FClosed ? h[n - 1]->FID : -1);
    h[k]->FNextStitchID = k + 1 < n ? h[k + 1]->FID : (tour.FClosed ? h[0]->FID : -1);
  }
}
