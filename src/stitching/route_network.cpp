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
  FStops.clear();
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
      // Where both shapes end here, their ends join them already.
      if (atAnEndOf(ict->FPath1, Pt) && atAnEndOf(ict->FPath2, Pt)) continue;
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

const std::vector<TVertexNetwork::TStop>& TVertexNetwork::stopsOf(const TPW_Path* s) const {
  const auto found = FStops.find(s);
  if (found != FStops.end()) return found->second;
  std::vector<TPointF> points;
  const auto crossings = doc().crossingsOf.find(s);
  if (crossings != doc().crossingsOf.end())
    for (const TIntersection* ict : crossings->second) {
      if (atAnEndOf(s, ict->FPoint)) continue;
      // A crossing at an end of the other shape joins that end.
      const TPW_Path* other = ict->FPath1 == s ? ict->FPath2 : ict->FPath1;
      TPointF p = ict->FPoint;
      if (other && isRouteEnd(other->FStartPt, p)) p = other->FStartPt;
      else if (other && isRouteEnd(other->FEndPt, p)) p = other->FEndPt;
      points.push_back(p);
    }
  std::vector<TPointF> ends{FGrowStart};
  if (FGoalOnShapes) ends.push_back(FGoal);
  for (const TPointF& p : ends) {
    int idx = 0;
    if (!atAnEndOf(s, p) && s->isOnPath(p, idx, 0.1f)) points.push_back(p);
  }
  const std::vector<double> pos = positionsAlong(*s, points);
  std::vector<TStop> stops{{0.0, s->FStartPt}};
  if (!isClosedShape(*s)) stops.push_back({s->calcTotalLength(), s->FEndPt});
  for (size_t i = 0; i < points.size(); ++i)
    if (pos[i] >= 0.0) stops.push_back({pos[i], points[i]});
  std::stable_sort(stops.begin(), stops.end(), [](const TStop& a, const TStop& b) { return a.pos < b.pos; });
  std::vector<TStop> unique;
  for (const TStop& st : stops)
    if (unique.empty() || !isRouteEnd(unique.back().point, st.point)) unique.push_back(st);
  return FStops.emplace(s, std::move(unique)).first->second;
}

struct TVertexNetwork::TMove {
  TConnectionPointInfo from;
  TPW_Path* shape = nullptr;
  TPointF target;
};

std::vector<TVertexNetwork::TMove> TVertexNetwork::movesFrom(const TPointF& pt) const {
  std::vector<TMove> moves;
  auto addMove = [&](const TConnectionPointInfo& from, TPW_Path* s, const TPointF& target) {
    for (const TMove& m : moves)
      if (m.shape == s && isRouteEnd(m.target, target)) return;
    moves.push_back({from, s, target});
  };
  for (const TConnectionPointInfo& c : searchEdgeAndIntersections(pt)) {
    std::vector<TPW_Path*> on{c.FPath};
    if (c.FIntersection) on = {c.FIntersection->FPath1, c.FIntersection->FPath2};
    for (TPW_Path* s : on) {
      if (!s) continue;
      TConnectionPointInfo from = c;
      from.FPath = s;
      // Where pt lies along the shape, and the nearest stop either side.
      const bool closed = isClosedShape(*s);
      double t;
      if (isRouteEnd(s->FStartPt, pt)) t = 0.0;
      else if (isRouteEnd(s->FEndPt, pt)) t = closed ? 0.0 : s->calcTotalLength();
      else t = positionAlong(*s, pt);
      if (t < 0.0) continue;
      const TStop* before = nullptr;
      const TStop* after = nullptr;
      const TStop* first = nullptr;
      const TStop* last = nullptr;
      for (const TStop& st : stopsOf(s)) {
        if (isRouteEnd(st.point, pt)) continue;
        if (!first) first = &st;
        last = &st;
        if (st.pos < t) before = &st;
        else if (!after) after = &st;
      }
      // Round a closed shape the last stop is followed by the first.
      if (closed && !before) before = last;
      if (closed && !after) after = first;
      if (before) addMove(from, s, before->point);
      if (after) addMove(from, s, after->point);
    }
  }
  return moves;
}

bool TVertexNetwork::grow(const TPointF& pt) {
  struct TFrame {
    TRouteVertex* vertex;
    std::vector<TMove> moves;
    size_t next = 0;
  };
  std::vector<TFrame> stack;
  stack.push_back({vertexAt(pt), movesFrom(pt)});
  bool result = false;
  while (!stack.empty()) {
    TFrame& f = stack.back();
    if (f.next >= f.moves.size()) {
      stack.pop_back();
      continue;
    }
    const TMove m = f.moves[f.next++];
    const bool top = stack.size() == 1;
    if (findJoint(m.shape, m.from.FPoint, m.target)) {
      if (top) result = false;
      continue;  // this is what ends the growth
    }
    TConnectionPointInfo far;
    far.SetPoint(m.shape, m.target);
    auto joint = std::make_unique<TJointInfo>();
    joint->SetJoint(m.from.Clone(), far);
    joint->FPath = m.shape;
    float l1 = 0, l2 = 0;
    joint->FLength = calcPathLen(*m.shape, m.from.FPoint, m.target, l1, l2);
    TJointInfo* raw = joint.get();
    f.vertex->FJoints.push_back(raw);
    FJoints.push_back(std::move(joint));
    FJointsByPath[m.shape].push_back(raw);
    if (top) result = true;
    TRouteVertex* next = vertexAt(m.target);
    stack.push_back({next, movesFrom(m.target)});  // `f` is not used after this
  }
  return result;
}

bool TVertexNetwork::dpConnectAddJoints(const TPointF& pt, const TPointF& goalPt) {
  if (!FGrowStart.identical(pt) || !FGoal.identical(goalPt)) FStops.clear();
  FGrowStart = pt;
  FGoal = goalPt;
  return grow(pt);
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
  const bool result = dpConnectAddJoints(rp1, rp2);
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
