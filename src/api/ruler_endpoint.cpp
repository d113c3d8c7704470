#include "api/ruler_endpoint.h"

#include <algorithm>
#include <cmath>
#include <unordered_map>
#include <vector>

#include "api/api_reply.h"
#include "api/api_request.h"
#include "app/frm_pelw.h"
#include "stitching/route_network.h"

namespace {

// A route chain is cut after this many steps.
constexpr int kMaxChainSteps = 1000;

// List positions of the network's vertices and joints, looked up once.
struct TNetworkIndex {
  std::unordered_map<const TRouteVertex*, int> FVertex;
  std::unordered_map<const TJointInfo*, int> FJoint;

  explicit TNetworkIndex(const TVertexNetwork& net) {
    for (size_t i = 0; i < net.Count(); ++i) FVertex.emplace(net[i], static_cast<int>(i));
    for (size_t j = 0; j < net.joints().size(); ++j) FJoint.emplace(net.joints()[j].get(), static_cast<int>(j));
  }
  // -1 for none or for one the network does not list.
  int of(const TRouteVertex* v) const { return lookup(FVertex, v); }
  int of(const TJointInfo* j) const { return lookup(FJoint, j); }

 private:
  template <typename Map, typename Key>
  static int lookup(const Map& m, const Key* k) {
    if (!k) return -1;
    const auto it = m.find(k);
    return it == m.end() ? -1 : it->second;
  }
};

void writeIndexOrNull(TJsonReply& r, int index) {
  if (index >= 0) r.integer(index);
  else r.null();
}

void writeVertices(TJsonReply& r, const TVertexNetwork& net, const TNetworkIndex& index) {
  r.beginArray();
  for (size_t i = 0; i < net.Count(); ++i) {
    const TRouteVertex* v = net[i];
    r.beginObject().field("idx", static_cast<int>(i)).key("point");
    writePoint(r, v->FPoint);
    r.fieldSingle("minDist", v->FMinDist).key("minDistJointIdx");
    writeIndexOrNull(r, index.of(v->FMinDistJoint));
    r.key("minDistFromVertexIdx");
    writeIndexOrNull(r, index.of(v->FMinDistFromVertex));
    r.field("isStart", v == net.FStartVertex).field("isEnd", v == net.FEndVertex).endObject();
  }
  r.endArray();
}

// The vertices near a point, by cells wider than the reach of a joint's
// end, so that a joint looks at a handful of vertices instead of all.
class TVertexCells {
 public:
  explicit TVertexCells(const TVertexNetwork& net) {
    for (size_t i = 0; i < net.Count(); ++i) FCells[cellOf(net[i]->FPoint)].push_back(static_cast<int>(i));
  }
  // List positions of the vertices in the cells about p, in no order.
  void near(const TPointF& p, std::vector<int>& out) const {
    const auto [cx, cy] = cellOf(p);
    for (long long dx = -1; dx <= 1; ++dx)
      for (long long dy = -1; dy <= 1; ++dy) {
        const auto it = FCells.find({cx + dx, cy + dy});
        if (it != FCells.end()) out.insert(out.end(), it->second.begin(), it->second.end());
      }
  }

 private:
  // A joint's end reaches 0.02 mm; a cell is wider, so the eight cells
  // around hold everything within reach.
  static constexpr double kCell = 0.05;
  using TCell = std::pair<long long, long long>;
  struct TCellHash {
    size_t operator()(const TCell& c) const { return std::hash<long long>()(c.first * 73856093LL ^ c.second); }
  };
  std::unordered_map<TCell, std::vector<int>, TCellHash> FCells;
  static TCell cellOf(const TPointF& p) {
    return {static_cast<long long>(std::floor(double(p.x) / kCell)),
            static_cast<long long>(std::floor(double(p.y) / kCell))};
  }
};

// A joint's two ends as the vertices that stand on them: the first vertex
// in list order on the joint, then the next one at another place.
void writeJoints(TJsonReply& r, const TVertexNetwork& net) {
  r.beginArray();
  const TVertexCells cells(net);
  std::vector<int> candidates;
  const auto& joints = net.joints();
  for (size_t j = 0; j < joints.size(); ++j) {
    const TJointInfo& joint = *joints[j];
    candidates.clear();
    cells.near(joint.FPoints[0].FPoint, candidates);
    cells.near(joint.FPoints[1].FPoint, candidates);
    std::sort(candidates.begin(), candidates.end());
    candidates.erase(std::unique(candidates.begin(), candidates.end()), candidates.end());
    const TRouteVertex* first = nullptr;
    const TRouteVertex* second = nullptr;
    for (size_t k = 0; k < candidates.size() && !second; ++k) {
      const TRouteVertex* v = net[size_t(candidates[k])];
      if (!joint.hasPoint(joint.FPath, v->FPoint)) continue;
      if (!first) first = v;
      else if (!v->FPoint.identical(first->FPoint)) second = v;
    }
    r.beginObject().field("idx", static_cast<int>(j)).key("pathId");
    if (joint.FPath) r.integer(joint.FPath->FID);
    else r.null();
    r.fieldSingle("fLength", joint.FLength).key("pt0");
    if (first) writePoint(r, first->FPoint);
    else r.null();
    r.key("pt1");
    if (second) writePoint(r, second->FPoint);
    else r.null();
    r.endObject();
  }
  r.endArray();
}

// From the end back to the start: the end's index first, the start's last.
void writeRouteChain(TJsonReply& r, const TVertexNetwork& net, const TNetworkIndex& index) {
  r.beginArray();
  const TRouteVertex* v = net.FEndVertex;
  for (int steps = 0; v && steps < kMaxChainSteps; ++steps) {
    writeIndexOrNull(r, index.of(v));
    if (v == net.FStartVertex) break;
    v = v->FMinDistFromVertex;
  }
  r.endArray();
}

}  // namespace

std::string apiRuler(TfrmPelw& form, const std::string& body) {
  const auto obj = parseJsonObject(body);
  if (!obj) return errorReply("invalid JSON body");
  const TPointF rp1 = requirePoint(*obj, "x1", "y1");
  const TPointF rp2 = requirePoint(*obj, "x2", "y2");

  // A network of its own, grown for this call only.
  TVertexNetwork net(form.PathList.get(), form.FIntersections.get());
  net.FGoalOnShapes = true;
  const bool connected = net.dpConnect(rp1, rp2);
  const TNetworkIndex index(net);

  TJsonReply r;
  r.beginObject().key("rp1");
  writePoint(r, rp1);
  r.key("rp2");
  writePoint(r, rp2);
  r.field("connected", connected).key("totalDistance");
  if (net.FEndVertex) r.single(net.FEndVertex->FMinDist);
  else r.null();
  r.key("vertices");
  writeVertices(r, net, index);
  r.key("joints");
  writeJoints(r, net);
  r.key("routeChain");
  writeRouteChain(r, net, index);
  r.endObject();
  return r.take();
}
