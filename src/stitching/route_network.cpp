#include "stitching/route_network.h"

#include <algorithm>
#include <cmath>
#include <functional>

#include "document/point_helpers.h"
#include "document/shape_list.h"
#include "geometry/geom_helpers.h"
#include "stitching/route_stretch.h"

namespace {

using TKey = std::pair<double, double>;

// The key two points share when they are the same to the hundredth.
TKey hundredthKey(const TPointF& p) { return TKey(round2(p.x) + 0.0, round2(p.y) + 0.0); }

bool isRouteEnd(const TPointF& a, const TPointF& b) { return samePoint(a, b, kRoutePointTolerance); }

// Shapes whose ends a route may stand on.
bool offersEnds(const TPW_Path& s) {
  return s.FShapeType != ShapeType::Hole && s.FShapeType != ShapeType::Text &&
         s.FShapeType != ShapeType::Dot;
}

bool atAnEndOf(const TPW_Path* s, const TPointF& p) {
  return s && (isRouteEnd(s->FStartPt, p) || isRouteEnd(s->FEndPt, p));
}

constexpr double kEndCell = 1.0;

long long cellOf(double v) { return static_cast<long long>(std::floor(v / kEndCell)); }

struct TCellHash {
  size_t operator()(const std::pair<long long, long long>& c) const {
    return std::hash<long long>()(c.first * 1000003LL ^ c.second);
  }
};

}  // namespace

// ---- connection points and joints ----

void TConnectionPointInfo::SetPoint(TPW_Path* APath, const TPointF& Pt) {
  FPath = APath;
  FPoint = Pt;
  FIntersection = nullptr;
  FIsStartPt = APath && isRouteEnd(APath->FStartPt, Pt);
  FIsEndPt = APath && isRouteEnd(APath->FEndPt, Pt);
}

void TConnectionPointInfo::SetPoint(TPW_Path* APath, TIntersection* AIntersection, const TPointF& Pt) {
  FPath = APath;
  FPoint = Pt;
  FIntersection = AIntersection;
  FIsStartPt = false;
  FIsEndPt = false;
}

void TJointInfo::SetJoint(const TConnectionPointInfo& Pt1, const TConnectionPointInfo& Pt2) {
  FPoints[0] = Pt1;
  FPoints[1] = Pt2;
}

bool TJointInfo::hasPoint(const TPW_Path* APath, const TPointF& Pt) const {
  return APath == FPath && (isRouteEnd(FPoints[0].FPoint, Pt) || isRouteEnd(FPoints[1].FPoint, Pt));
}

const TConnectionPointInfo& TJointInfo::getOpponent(const TPointF& pt) const {
  return samePoint(pt, FPoints[0].FPoint, 0.0) ? FPoints[1] : FPoints[0];
}

std::unique_ptr<TPW_Path> TJointInfo::getActualPath() const {
  if (!FPath) return nullptr;
  return makeStretchPath(*FPath, FPoints[0].FPoint, FPoints[1].FPoint);
}

// ---- the document, indexed once per network ----

struct TVertexNetwork::TDocIndex {
  std::vector<TPW_Path*> shapes;
  // Cells of one millimetre -> shapes with an end in them, in list order.
  std::unordered_map<std::pair<long long, long long>, std::vector<int>, TCellHash> ends;
  // Crossings by their point to the hundredth, and by shape; list order.
  std::unordered_map<TKey, std::vector<TIntersection*>, TKeyHash> crossingsAt;
  std::unordered_map<const TPW_Path*, std::vector<TIntersection*>> crossingsOf;
};

const TVertexNetwork::TDocIndex& TVertexNetwork::doc() const {
  if (FDoc) return *FDoc;
  auto d = std::make_unique<TDocIndex>();
  if (FPathList) {
    for (const auto& s : *FPathList) d->shapes.push_back(s.get());
  }
  for (int i = 0; i < static_cast<int>(d->shapes.size()); ++i) {
    const TPW_Path& s = *d->shapes[i];
    if (!offersEnds(s)) continue;
    auto addEnd = [&](const TPointF& p) {
      auto& cell = d->ends[{cellOf(p.x), cellOf(p.y)}];
      if (cell.empty() || cell.back() != i) cell.push_back(i);
    };
    addEnd(s.FStartPt);
    if (cellOf(s.FEndPt.x) != cellOf(s.FStartPt.x) || cellOf(s.FEndPt.y) != cellOf(s.FStartPt.y))
      addEnd(s.FEndPt);
  }
  if (FIntersections) {
    for (const auto& ict : FIntersections->items()) {
      d->crossingsAt[hundredthKey(ict->FPoint)].push_back(ict.get());
      if (ict->FPath1) d->crossingsOf[ict->FPath1].push_back(ict.get());
      if (ict->FPath2 && ict->FPath2 != ict->FPath1) d->crossingsOf[ict->FPath2].push_back(ict.get());
    }
  }
  FDoc = std::move(d);
  return *FDoc;
}

size_t TVertexNetwork::TPairHash::operator()(const std::pair<const void*, const void*>& p) const {
  return std::hash<const void*>()(p.first) * 31u ^ std::hash<const void*>()(p.second);
}

size_t TVertexNetwork::TKeyHash::operator()(const std::pair<double, double>& k) const {
  return std::hash<double>()(k.first) * 1000003u ^ std::hash<double>()(k.second);
}

// ---- the network ----

TVertexNetwork::TVertexNetwork(const TShapeList* APathList, const TIntersections* AIntersections)
    : FPathList(APathList), FIntersections(AIntersections) {}

TVertexNetwork::~TVertexNetwork() = default;

void TVertexNetwork::clearAll() {
  FVertices.clear();
  FJoints.clear();
  FVertexQueue.clear();
  FQueued.clear();
  FVertexByKey.clear();
  FJointsByPath.clear();
  FStartVertex = nullptr;
  FEndVertex = nullptr;
}

int TVertexNetwork::indexOfVertex(const TRouteVertex* v) const {
  for (size_t i = 0; i < FVertices.size(); ++i)
    if (FVertices[i].get() == v) return static_cast<int>(i);
  return -1;
}

int TVertexNetwork::indexOfJoint(const TJointInfo* j) const {
  for (size_t i = 0; i < FJoints.size(); ++i)
    if (FJoints[i].get() == j) return static_cast<int>(i);
  return -1;
}

TRouteVertex* TVertexNetwork::GetVertex(const TPointF& Pt) const {
  const auto it = FVertexByKey.find(hundredthKey(Pt));
  return it == FVertexByKey.end() ? nullptr : it->second;
}

TRouteVertex* TVertexNetwork::addVertex(const TPointF& Pt) {
  auto v = std::make_unique<TRouteVertex>();
  v->FPoint = TPointF(roundTo2Decimals(Pt.x), roundTo2Decimals(Pt.y));
  TRouteVertex* raw = v.get();
  FVertices.push_back(std::move(v));
  FVertexByKey.emplace(hundredthKey(raw->FPoint), raw);  // the first one stays the one found
  return raw;
}

TRouteVertex* TVertexNetwork::vertexAt(const TPointF& Pt) {
  TRouteVertex* v = GetVertex(Pt);
  return v ? v : addVertex(Pt);
}

std::vector<TConnectionPointInfo> TVertexNetwork::searchEdgeAndIntersections(const TPointF& Pt) const {
  const TDocIndex& d = doc();
  std::vector<TConnectionPointInfo> out;
  // Shape ends at the point, in list order.
  std::vector<int> found;
  for (long long cx = cellOf(Pt.x - kRoutePointTolerance); cx <= cellOf(Pt.x + kRoutePointTolerance); ++cx)
    for (long long cy = cellOf(Pt.y - kRoutePointTolerance); cy <= cellOf(Pt.y + kRoutePointTolerance);
         ++cy) {
      const auto it = d.ends.find({cx, cy});
      if (it != d.ends.end()) found.insert(found.end(), it->second.begin(), it->second.end());
    }
  std::sort(found.begin(), found.end());
  found.erase(std::unique(found.begin(), found.end()), found.end());
  for (int i : found) {
    TPW_Path* s = d.shapes[i];
    if (!isRouteEnd(s->FStartPt, Pt) && !isRouteEnd(s->FEndPt, Pt)) continue;
    TConnectionPointInfo c;
    c.SetPoint(s, Pt);
    out.push_back(c);
  }
  // Crossings at the point that lie at no end of their shapes.
  const auto at = d.crossingsAt.find(hundredthKey(Pt));
  if (at != d.crossingsAt.end()) {
    for (TIntersection* ict : at->second) {
      if (atAnEndOf(ict->FPath1, Pt) || atAnEndOf(ict->FPath2, Pt)) continue;
      TConnectionPointInfo c;
      c.SetPoint(ict->FPath1, ict, Pt);
      c.SetPoint(ict->FPath2, ict, Pt);  // the second shape is the one recorded
      out.push_back(c);
    }
  }
  if (!out.empty()) return out;
  // A free point: every shape that passes through it.
  for (TPW_Path* s : d.shapes) {
    if (!offersEnds(*s)) continue;
    int idx = 0;
    if (!s->isOnPath(Pt, idx, 0.1f)) continue;
    TConnectionPointInfo c;
    c.SetPoint(s, Pt);
    out.push_back(c);
  }
  return out;
}

TJointInfo* TVertexNetwork::findJoint(const TPW_Path* APath, const TPointF& pt1, const TPointF& pt2) const {
  const auto it = FJointsByPath.find(APath);
  if (it == FJointsByPath.end()) return nullptr;
  for (TJointInfo* j : it->second)
    if (j->hasPoint(APath, pt1) && j->hasPoint(APath, pt2)) return j;
  return nullptr;
}

bool TVertexNetwork::hasIntersectionGoal(const TPW_Path* APath, const TPointF& FromPt,
                                         const TPointF& /*ToPt*/, const TPointF& GoalPt) const {
  const TDocIndex& d = doc();
  const auto it = d.crossingsOf.find(APath);
  if (it == d.crossingsOf.end()) return false;
  for (const TIntersection* ict : it->second)
    if (isRouteEnd(ict->FPoint, GoalPt) && !isRouteEnd(ict->FPoint, FromPt)) return true;
  return false;
}

struct TVertexNetwork::TMove {
  TConnectionPointInfo from;
  TPW_Path* shape = nullptr;
  TPointF target;
};

std::vector<TVertexNetwork::TMove> TVertexNetwork::movesFrom(const TPointF& pt,
                                                             TIntersection* crossing) const {
  std::vector<TConnectionPointInfo> points;
  if (crossing) {
    TConnectionPointInfo c;
    c.SetPoint(crossing->FPath1, crossing, pt);
    c.SetPoint(crossing->FPath2, crossing, pt);
    points.push_back(c);
  } else {
    points = searchEdgeAndIntersections(pt);
  }
  std::vector<TMove> moves;
  for (const TConnectionPointInfo& c : points) {
    if (c.FIntersection) {
      for (TPW_Path* s : {c.FIntersection->FPath1, c.FIntersection->FPath2}) {
        if (!s) continue;
        moves.push_back({c, s, s->FStartPt});
        moves.push_back({c, s, s->FEndPt});
      }
    } else if (c.FIsStartPt) {
      moves.push_back({c, c.FPath, c.FPath->FEndPt});
    } else if (c.FIsEndPt) {
      moves.push_back({c, c.FPath, c.FPath->FStartPt});
    } else {
      // A free point goes to the further end only.
      const bool endIsFurther = distanceOf(pt, c.FPath->FEndPt) > distanceOf(pt, c.FPath->FStartPt);
      moves.push_back({c, c.FPath, endIsFurther ? c.FPath->FEndPt : c.FPath->FStartPt});
    }
  }
  return moves;
}

bool TVertexNetwork::grow(const TPointF& pt, const TPointF& goalPt, TIntersection* crossing) {
  struct TFrame {
    TRouteVertex* vertex;
    std::vector<TMove> moves;
    size_t next = 0;
  };
  std::vector<TFrame> stack;
  stack.push_back({vertexAt(pt), movesFrom(pt, crossing)});
  bool result = false;
  while (!stack.empty()) {
    TFrame& f = stack.back();
    if (f.next >= f.moves.size()) {
      stack.pop_back();
      continue;
    }
    const TMove m = f.moves[f.next++];
    TPointF target = m.target;
    if (hasIntersectionGoal(m.shape, m.from.FPoint, target, goalPt)) target = goalPt;
    TConnectionPointInfo far;
    far.SetPoint(m.shape, target);
    const bool top = stack.size() == 1;
    if (findJoint(m.shape, m.from.FPoint, target)) {
      if (top) result = false;
      continue;  // this is what ends the growth
    }
    auto joint = std::make_unique<TJointInfo>();
    joint->SetJoint(m.from.Clone(), far);
    joint->FPath = m.shape;
    float l1 = 0, l2 = 0;
    joint->FLength = calcPathLen(*m.shape, m.from.FPoint, target, l1, l2);
    TJointInfo* raw = joint.get();
    f.vertex->FJoints.push_back(raw);
    FJoints.push_back(std::move(joint));
    FJointsByPath[m.shape].push_back(raw);
    if (top) result = true;
    TRouteVertex* next = vertexAt(target);
    stack.push_back({next, movesFrom(target, nullptr)});  // `f` is not used after this
  }
  return result;
}

bool TVertexNetwork::dpConnectAddJoints(const TPointF& pt, const TPointF& goalPt) {
  return grow(pt, goalPt, nullptr);
}

bool TVertexNetwork::growOverCrossings(const TPointF& goalPt) {
  if (!FIntersections) return false;
  bool result = false;
  bool grew = true;
  while (grew && !GetVertex(goalPt)) {
    grew = false;
    for (const auto& ict : FIntersections->items()) {
      TIntersection* x = ict.get();
      if (!x->FPath1 || !x->FPath2) continue;
      if (atAnEndOf(x->FPath1, x->FPoint) && atAnEndOf(x->FPath2, x->FPoint)) continue;  // a joint: ends cover it
      if (GetVertex(x->FPoint)) continue;
      if (!FJointsByPath.count(x->FPath1) && !FJointsByPath.count(x->FPath2)) continue;
      result = grow(x->FPoint, goalPt, x) || result;
      grew = true;
      if (GetVertex(goalPt)) break;
    }
  }
  return result;
}

void TVertexNetwork::checkJoints() {
  for (const auto& j : FJoints) {
    for (const TConnectionPointInfo& end : j->FPoints) {
      TRouteVertex* v = GetVertex(end.FPoint);
      if (!v) continue;
      if (std::find(v->FJoints.begin(), v->FJoints.end(), j.get()) == v->FJoints.end())
        v->FJoints.push_back(j.get());
    }
  }
}

void TVertexNetwork::addToQueue(TRouteVertex* AVertex, const TJointInfo* excludeJoint,
                                const TPointF& excludePoint) {
  if (!AVertex) return;
  for (TJointInfo* j : AVertex->FJoints) {
    if (j == excludeJoint) continue;
    const TConnectionPointInfo& o = j->getOpponent(AVertex->FPoint);
    if (samePoint(o.FPoint, excludePoint, 0.0)) continue;
    if (excludeJoint && j->hasPoint(j->FPath, excludeJoint->FPoints[0].FPoint) &&
        j->hasPoint(j->FPath, excludeJoint->FPoints[1].FPoint))
      continue;
    TRouteVertex* ov = GetVertex(o.FPoint);
    if (!ov) continue;
    if (!FQueued.insert({ov, j}).second) continue;
    FVertexQueue.push_back({ov, j});
  }
}

void TVertexNetwork::dpProcessQueue(const TPointF& excludePoint) {
  while (!FVertexQueue.empty()) {
    const TRouteQueuePair pair = FVertexQueue.front();
    FVertexQueue.pop_front();
    FQueued.erase({pair.FVertex, pair.FJoint});
    TRouteVertex* v = pair.FVertex;
    TJointInfo* j = pair.FJoint;
    TRouteVertex* o = GetVertex(j->getOpponent(v->FPoint).FPoint);
    if (!o) continue;
    // Distances compare to the hundredth: of two routes equal to that, the
    // one found first stays.
    const float viaO = o->FMinDist + j->FLength;
    const float viaV = v->FMinDist + j->FLength;
    if (v->FMinDist == 0.0f) {
      v->FMinDist = viaO;
      v->FMinDistJoint = j;
      v->FMinDistFromVertex = o;
      addToQueue(v, j, excludePoint);
    } else if (roundTo2Decimals(v->FMinDist) > roundTo2Decimals(viaO)) {
      v->FMinDist = viaO;
      v->FMinDistJoint = j;
      v->FMinDistFromVertex = o;
      addToQueue(v, j, excludePoint);
    } else if (roundTo2Decimals(o->FMinDist) > roundTo2Decimals(viaV)) {
      o->FMinDist = viaV;
      o->FMinDistJoint = j;
      o->FMinDistFromVertex = v;
      addToQueue(o, j, excludePoint);
    }
  }
}

bool TVertexNetwork::dpConnect(const TPointF& rp1, const TPointF& rp2) {
  if (samePoint(rp1, rp2, 0.0)) return false;
  bool result = dpConnectAddJoints(rp1, rp2);
  if (!GetVertex(rp2)) result = growOverCrossings(rp2) || result;
  checkJoints();
  TRouteVertex* goal = GetVertex(rp2);
  if (!goal) return result;
  FEndVertex = goal;
  FStartVertex = GetVertex(rp1);
  addToQueue(FStartVertex, nullptr, rp1);
  dpProcessQueue(rp1);
  return true;
}

std::vector<std::unique_ptr<TPW_Path>> TVertexNetwork::getActualPathList(const TRouteVertex* vtx) const {
  std::vector<std::unique_ptr<TPW_Path>> out;
  size_t guard = FVertices.size() + 1;
  while (vtx && vtx->FMinDistJoint && guard-- > 0) {
    out.push_back(vtx->FMinDistJoint->getActualPath());
    vtx = vtx->FMinDistFromVertex;
  }
  return out;
}

bool TVertexNetwork::getPointOfSpecifiedDistance(const TRouteVertex* AVertex, float distance,
                                                 TPointF& point) const {
  size_t guard = FVertices.size() + 1;
  double rest = distance;
  while (AVertex && guard-- > 0) {
    if (rest > AVertex->FMinDist) return false;
    const TJointInfo* j = AVertex->FMinDistJoint;
    if (!j) {
      if (rest > 0.005) return false;
      point = AVertex->FPoint;
      return true;
    }
    std::unique_ptr<TPW_Path> stretch = j->getActualPath();
    std::vector<TPathInterval> pieces = stretch->getIntervalsFast(false);
    if (pieces.empty()) return false;
    // Walk from this vertex's end of the stretch, whichever way it runs.
    if (distanceOf(AVertex->FPoint, pieces.front().St) > distanceOf(AVertex->FPoint, pieces.back().Ed)) {
      std::reverse(pieces.begin(), pieces.end());
      for (auto& p : pieces) std::swap(p.St, p.Ed);
    }
    for (const TPathInterval& p : pieces) {
      const double len = distanceOf(p.St, p.Ed);
      if (len < rest) {
        rest -= len;
        continue;
      }
      if (std::fabs(len - rest) <= 0.005 || len <= 0.0) {
        point = p.Ed;
      } else {
        const double u = rest / len;
        point = TPointF::fromDouble(p.St.x + (double(p.Ed.x) - p.St.x) * u,
                                    p.St.y + (double(p.Ed.y) - p.St.y) * u);
      }
      return true;
    }
    AVertex = AVertex->FMinDistFromVertex;
  }
  return false;
}
