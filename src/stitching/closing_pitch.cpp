// The pitch at which the dividers' last step of a count lands on the end of
// the track: a halving, as many walks as it takes steps to reach a
// billionth, or, where the track runs steadily, a few walks and the
// halving's other answers proved from them.
//
// Why they can be proved. Where every stretch of track a window long turns
// through less than a right angle, the straight distance from a point grows
// as one goes further along the track, and shrinks as the point itself
// moves on. Then a longer pitch never puts a step earlier, and never makes
// more steps: a pitch below one that makes the count makes it too, one
// above one that doesn't, doesn't. A speck, where two shapes meet a hair
// apart, can go back on itself by its length; near those walked, pitches
// are then proved only by two walks either side whose steps have no speck
// between them.
#include <algorithm>
#include <cmath>

#include "stitching/route_track.h"

namespace {

// A stretch of track whose direction stays within this angle keeps every
// chord within it at an acute angle to the track at both its ends.
constexpr double kSteadyTurn = 88.0 * 3.14159265358979323846 / 180.0;
// Such a stretch is at least cos(turn / 2) times its length long in a
// straight line, so a window this many pitches long always holds the next
// step of the dividers.
constexpr double kWindowPerPitch = 1.4;
// How close to the pitch at which a count is lost the walks bracket it:
// far below the halving's own last step, far above the rounding of a walk.
constexpr double kBracket = 1e-11;
// Pieces shorter than this are specks, and a window may hold only so much
// of them (a share of its length) for the chord across it still to exceed
// the pitch.
constexpr double kSpeck = 5e-3;
constexpr double kMostSpeck = 1e-3;

TDPoint minus(const TDPoint& a, const TDPoint& b) { return {a.x - b.x, a.y - b.y}; }

}  // namespace

// One walk: its pitch, the steps it made (at most the count), how far along
// the track each step landed, and how much the straight way from the step
// before the last to the end exceeds the pitch.
struct TRouteTrack::TStepLog {
  struct TWalked {
    double pitch = 0.0;
    int made = 0;
    double spare = 0.0;
    std::vector<double> at;
  };
  std::vector<TWalked> walks;  // by pitch
  double yes = 0.0;            // the longest pitch seen to make the count
  double no = HUGE_VAL;        // the shortest seen not to
};

bool TRouteTrack::steadyOver(double window) const {
  if (window <= FSteadyUpTo) return true;
  if (FUnsteadyFrom >= 0.0 && window >= FUnsteadyFrom) return false;
  const int n = pieceCount();
  if (FHeading.empty() && n > 0) {
    // A speck may point anywhere: it keeps the heading of the piece before.
    FHeading.resize(size_t(n));
    TDPoint prev = minus(FPoints[1], FPoints[0]);
    for (int i = 1; i < n; ++i) {
      const TDPoint d = minus(FPoints[size_t(i) + 1], FPoints[size_t(i)]);
      if (FAt[size_t(i) + 1] - FAt[size_t(i)] < kSpeck) {
        FHeading[size_t(i)] = FHeading[size_t(i) - 1];
        FSpecks.push_back(i);
        continue;
      }
      FHeading[size_t(i)] =
          FHeading[size_t(i) - 1] + std::atan2(prev.x * d.y - prev.y * d.x, prev.x * d.x + prev.y * d.y);
      prev = d;
    }
  }
  // The pieces a window touches together: i and j when the way between the
  // end of i and the start of j is no longer than the window. The highest
  // and lowest headings among them, kept in two queues of piece indices.
  std::vector<int> high, low;
  high.reserve(size_t(n));
  low.reserve(size_t(n));
  size_t hFront = 0, lFront = 0;
  bool steady = true;
  for (int j = 0, i = 0; j < n && steady; ++j) {
    const double h = FHeading[size_t(j)];
    while (high.size() > hFront && FHeading[size_t(high.back())] <= h) high.pop_back();
    high.push_back(j);
    while (low.size() > lFront && FHeading[size_t(low.back())] >= h) low.pop_back();
    low.push_back(j);
    while (i < j && FAt[size_t(j)] - FAt[size_t(i) + 1] > window) ++i;
    while (high[hFront] < i) ++hFront;
    while (low[lFront] < i) ++lFront;
    steady = FHeading[size_t(high[hFront])] - FHeading[size_t(low[lFront])] < kSteadyTurn;
  }
  steady = steady && speckWithin(window) < kMostSpeck * window;
  (steady ? FSteadyUpTo : FUnsteadyFrom) = window;
  return steady;
}

double TRouteTrack::speckWithin(double window) const {
  double most = 0.0, sum = 0.0;
  for (size_t k = 0, l = 0; l < FSpecks.size(); ++l) {
    const size_t j = size_t(FSpecks[l]);
    sum += FAt[j + 1] - FAt[j];
    for (; FAt[j] - FAt[size_t(FSpecks[k]) + 1] > window; ++k)
      sum -= FAt[size_t(FSpecks[k]) + 1] - FAt[size_t(FSpecks[k])];
    most = std::max(most, sum);
  }
  return most;
}

bool TRouteTrack::probeSteps(double pitch, int steps, TStepLog& log) const {
  const auto pos = std::lower_bound(log.walks.begin(), log.walks.end(), pitch,
                                    [](const TStepLog::TWalked& w, double p) { return w.pitch < p; });
  TStepLog::TWalked& w = *log.walks.insert(pos, TStepLog::TWalked{pitch, 0, 0.0, {}});
  w.at.reserve(size_t(steps));
  TTrackPos at{0, 0.0}, next;
  TDPoint cur = start(), before = cur;
  for (; w.made < steps; ++w.made) {
    before = cur;
    if (!stepFrom(at, cur, pitch, next)) break;
    at = next;
    cur = pointAt(at);
    w.at.push_back(distanceAt(at));
  }
  const bool reached = w.made >= steps;
  if (reached) log.yes = std::max(log.yes, pitch);
  else log.no = std::min(log.no, pitch);
  const TDPoint toEnd = minus(end(), before);
  w.spare = std::hypot(toEnd.x, toEnd.y) - pitch;
  return reached;
}

void TRouteTrack::homeIn(int steps, double seed, TStepLog& log) const {
  // The count is lost where the last step's circle no longer reaches the
  // end: where `spare` crosses zero. Secant steps from the even split, kept
  // within what the walks have shown; then a walk either side of the root.
  double p = seed > 0.0 && seed <= length() / steps ? seed : length() / steps, pPrev = 0.0, sPrev = 0.0;
  bool havePrev = false;
  for (int i = 0; i < 8; ++i) {
    probeSteps(p, steps, log);
    const auto& w = *std::find_if(log.walks.begin(), log.walks.end(), [&](const auto& x) { return x.pitch == p; });
    double q;
    if (w.made < steps - 1) {
      // Short of the count: shorten the pitch by the steps missing.
      q = p * (1.0 - double(steps - 1 - w.made) / steps);
      havePrev = false;
    } else {
      q = havePrev && w.spare != sPrev ? p - w.spare * (p - pPrev) / (w.spare - sPrev) : p + w.spare / steps;
      pPrev = p;
      sPrev = w.spare;
      havePrev = true;
    }
    if (!(q > log.yes && q < log.no)) q = log.yes > 0.0 && log.no < HUGE_VAL ? (log.yes + log.no) / 2.0 : q;
    if (!(q > 0.0) || log.no - log.yes <= 2.0 * kBracket * p) return;
    if (std::fabs(q - p) <= kBracket * p) {
      p = q;
      break;
    }
    p = q;
  }
  if (p * (1.0 - kBracket) > log.yes) probeSteps(p * (1.0 - kBracket), steps, log);
  if (p * (1.0 + kBracket) < log.no) probeSteps(p * (1.0 + kBracket), steps, log);
}

int TRouteTrack::knownReach(double pitch, int steps, const TStepLog& log, double margin) const {
  // Beyond a speck's worth of the nearest pitch that made the count, or
  // failed to, nothing can turn the answer.
  if (pitch <= log.yes - margin) return 1;
  if (pitch >= log.no + margin) return 0;
  const auto r = std::lower_bound(log.walks.begin(), log.walks.end(), pitch,
                                  [](const TStepLog::TWalked& w, double p) { return w.pitch < p; });
  if (r == log.walks.end()) return -1;
  if (r->pitch == pitch) return r->made >= steps ? 1 : 0;
  if (r == log.walks.begin()) return -1;
  const auto q = r - 1;
  // Two walks either side that agree, every step of the one between held
  // between theirs; no speck between those may turn it.
  const bool reach = q->made >= steps && r->made >= steps;
  if (!reach && !(q->made < steps && q->made == r->made)) return -1;
  // The last steps lie furthest apart: a speck between is likeliest there.
  for (int k = r->made - 1; k >= 0; --k) {
    const double a = q->at[size_t(k)], b = r->at[size_t(k)];
    if (a > b) return -1;
    const auto s = std::lower_bound(FSpecks.begin(), FSpecks.end(), a,
                                    [&](int piece, double d) { return FAt[size_t(piece) + 1] < d; });
    if (s != FSpecks.end() && FAt[size_t(*s)] <= b) return -1;
  }
  return reach ? 1 : 0;
}

double TRouteTrack::pitchForSteps(int steps) const { return pitchForStepsFrom(steps, 0.0); }

double TRouteTrack::pitchForStepsFrom(int steps, double seed) const {
  if (steps < 1 || !(length() > 0.0)) return 0.0;
  // A chord is never longer than the way it spans, so above length / steps
  // the walk cannot make that many.
  double hi = length() / steps * (1.0 + 1e-12);
  double lo = length() / steps * 0.9;
  TStepLog log;
  const bool steady = steadyOver(hi * kWindowPerPitch);
  const double margin = steady ? speckWithin(hi * kWindowPerPitch) : 0.0;
  if (steady) homeIn(steps, seed, log);
  auto reaches = [&](double p) {
    if (!steady) return stepsAt(p, steps) >= steps;
    const int known = knownReach(p, steps, log, margin);
    return known >= 0 ? known == 1 : probeSteps(p, steps, log);
  };
  for (int i = 0; i < 40 && !reaches(lo); ++i) lo /= 2.0;
  if (!reaches(lo)) return 0.0;
  for (int i = 0; i < 64 && hi - lo > 1e-9 * std::max(1.0, hi); ++i) {
    const double mid = (lo + hi) / 2.0;
    (reaches(mid) ? lo : hi) = mid;
  }
  return lo;
}
