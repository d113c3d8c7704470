#include "geometry/chain_smoothing.h"

#include <algorithm>
#include <deque>
#include <unordered_set>

#include "document/shape_list.h"
#include "geometry/shape_ends.h"

namespace {

constexpr double kNoLeg = 1e-6;

struct TJunction {
  TPW_Path* a = nullptr;
  TPW_Path* b = nullptr;
  bool aAtEnd = true;    // J is a's end (else its start)
  bool bAtStart = true;  // b meets J with its start (else its end)
  TDPoint j;
};

// Which ends of each chain member are taken by a junction already.
struct TEndsUsed {
  bool start = false, end = false;
  bool usable(bool atEnd) const { return atEnd ? !end : !start; }
  void take(bool atEnd) { (atEnd ? end : start) = true; }
};

// The first pair of free ends that meet, in the order: end of a with start
// of b, end with end, start with start, start with end.
bool findJunction(TPW_Path* a, TPW_Path* b, const TEndsUsed& ua, const TEndsUsed& ub, TJunction& out) {
  for (const auto& [aEnd, bStart] : {std::pair{true, true}, {true, false}, {false, true}, {false, false}}) {
    if (!ua.usable(aEnd) || !ub.usable(!bStart)) continue;
    if (a == b && aEnd == !bStart) continue;  // one end of one shape is no junction
    const TPointF pa = aEnd ? a->FEndPt : a->FStartPt;
    const TPointF pb = bStart ? b->FStartPt : b->FEndPt;
    if (!endsJoin(pa, pb)) continue;
    out = TJunction{a, b, aEnd, bStart, toDPoint(pa)};
    return true;
  }
  return false;
}

// The control point of a curve beside one of its ends.
TPointF& controlBeside(TPW_Path& s, bool atEnd) { return atEnd ? s.FBezierCp2 : s.FBezierCp1; }

class TSmoother {
 public:
  TSmoothOutcome out;

  void moveControl(TPW_Path& s, bool atEnd, const TDPoint& to) {
    const TPointF p = toPointF(to);
    ++out.FUpdatedCount;
    if (controlBeside(s, atEnd).identical(p)) return;
    controlBeside(s, atEnd) = p;
    s.drawBezierPath(s.FStartPt, s.FBezierCp1, s.FBezierCp2, s.FEndPt);
    if (std::find(out.FChanged.begin(), out.FChanged.end(), &s) == out.FChanged.end()) out.FChanged.push_back(&s);
  }

  void g1(const TJunction& k) {
    const bool curveA = k.a->isType(ShapeType::Bezier), curveB = k.b->isType(ShapeType::Bezier);
    if (!curveA && !curveB) return;
    if (!isLineCurveOrArc(*k.a) || !isLineCurveOrArc(*k.b)) return;
    const TDPoint ta = k.aAtEnd ? endTangent(*k.a) : startTangent(*k.a) * -1.0;
    const TDPoint tb = k.bAtStart ? startTangent(*k.b) : endTangent(*k.b) * -1.0;
    if (dot(ta, tb) <= -1.0 + 1e-12) return;  // a cusp stays a cusp
    const TDPoint t = !curveA ? ta : (!curveB ? tb : unit(ta + tb));
    if (std::fabs(t.x) + std::fabs(t.y) < 1e-6) return;
    if (curveA) {
      const double l = distance(toDPoint(controlBeside(*k.a, k.aAtEnd)), k.j);
      if (l > kNoLeg) moveControl(*k.a, k.aAtEnd, k.j - t * l);
    }
    if (curveB) {
      const double l = distance(toDPoint(controlBeside(*k.b, !k.bAtStart)), k.j);
      if (l > kNoLeg) moveControl(*k.b, !k.bAtStart, k.j + t * l);
    }
  }

  void g2(const TJunction& k) {
    if (!k.a->isType(ShapeType::Bezier) || !k.b->isType(ShapeType::Bezier)) return;
    const TDPoint ca = toDPoint(controlBeside(*k.a, k.aAtEnd)), cb = toDPoint(controlBeside(*k.b, !k.bAtStart));
    const double la = distance(ca, k.j), lb = distance(cb, k.j);
    if (la < kNoLeg && lb < kNoLeg) return;
    const double m = (la + lb) / 2.0;
    const TDPoint t = la >= kNoLeg ? unit(k.j - ca) : unit(cb - k.j);
    if (std::fabs(la - m) > 0.0001) moveControl(*k.a, k.aAtEnd, k.j - t * m);
    if (std::fabs(lb - m) > 0.0001) moveControl(*k.b, !k.bAtStart, k.j + t * m);
  }
};

}  // namespace

std::vector<TPW_Path*> gatherChain(TPW_Path* shape, const TShapeList& list) {
  if (!shape || !isLineCurveOrArc(*shape)) return {};
  std::vector<TPW_Path*> members;
  for (const auto& item : list)
    if (isLineCurveOrArc(*item)) members.push_back(item.get());
  const TEndGrid grid(members);
  std::deque<TPW_Path*> chain{shape};
  std::unordered_set<const TPW_Path*> used{shape};
  std::vector<size_t> near;
  auto grow = [&](TPointF freeEnd, bool forward) {
    for (;;) {
      TPW_Path* next = nullptr;
      grid.near(freeEnd, near);
      for (size_t i : near) {
        TPW_Path* s = members[i];
        if (used.count(s)) continue;
        if (endsJoin(s->FStartPt, freeEnd)) freeEnd = s->FEndPt;
        else if (endsJoin(s->FEndPt, freeEnd)) freeEnd = s->FStartPt;
        else continue;
        next = s;
        break;
      }
      if (!next) return;
      used.insert(next);
      if (forward) chain.push_back(next);
      else chain.push_front(next);
    }
  };
  grow(shape->FEndPt, true);
  grow(shape->FStartPt, false);
  return {chain.begin(), chain.end()};
}

TSmoothOutcome smoothChain(const std::vector<TPW_Path*>& chain, bool withLegs) {
  TSmoother smoother;
  const size_t n = chain.size();
  if (n == 0) return smoother.out;
  std::vector<TEndsUsed> ends(n);
  std::vector<TJunction> junctions;
  for (size_t i = 0; i + 1 < n; ++i) {
    TJunction k;
    if (!findJunction(chain[i], chain[i + 1], ends[i], ends[i + 1], k)) continue;
    ends[i].take(k.aAtEnd);
    ends[i + 1].take(!k.bAtStart);
    junctions.push_back(k);
  }
  TJunction closing;
  if (findJunction(chain[n - 1], chain[0], ends[n - 1], ends[0], closing)) {
    smoother.out.FClosedLoop = true;
    junctions.push_back(closing);
  }
  for (const TJunction& k : junctions) smoother.g1(k);
  if (withLegs) {
    for (const TJunction& k : junctions) smoother.g2(k);
  }
  return smoother.out;
}
