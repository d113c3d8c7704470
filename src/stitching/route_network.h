// The route network: a graph of the drawing, grown outward from a start
// point, in which every vertex learns its shortest distance back to the
// start. From a point the growth runs along each shape the point stands on,
// both ways, to the next place where a route may stop or turn off (a shape
// end, a crossing, the goal), so every way along the drawing is in it and
// round a closed shape both ways are. The stitch tool asks it for the way
// between two clicks; the ruler reply lists what it holds.
#pragma once

#include <array>
#include <deque>
#include <memory>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "document/intersections.h"
#include "document/pw_path.h"

class TShapeList;

// One end of a joint: a point on a shape, which may be one of its ends or
// a crossing.
class TConnectionPointInfo {
 public:
  TPW_Path* FPath = nullptr;  // borrowed
  bool FIsStartPt = false;
  bool FIsEndPt = false;
  TIntersection* FIntersection = nullptr;  // borrowed
  TPointF FPoint;

  // The point on the shape; the flags tell whether it is the shape's start
  // or end (within 0.02).
  void SetPoint(TPW_Path* APath, const TPointF& Pt);
  // The point as a crossing: no end flags.
  void SetPoint(TPW_Path* APath, TIntersection* AIntersection, const TPointF& Pt);
  TConnectionPointInfo Clone() const { return *this; }
};

// An edge: one stretch of one shape between two connection points.
class TJointInfo {
 public:
  TPW_Path* FPath = nullptr;  // borrowed
  float FLength = 0.0f;       // along the shape
  std::array<TConnectionPointInfo, 2> FPoints;

  void SetJoint(const TConnectionPointInfo& Pt1, const TConnectionPointInfo& Pt2);
  // The same shape, and Pt within 0.02 of either end.
  bool hasPoint(const TPW_Path* APath, const TPointF& Pt) const;
  // The end other than pt: the second when pt is the first (to the
  // hundredth), else the first.
  const TConnectionPointInfo& getOpponent(const TPointF& pt) const;
  // A temporary shape holding only the stretch, from the first end to the
  // second; owned by the caller.
  std::unique_ptr<TPW_Path> getActualPath() const;
};

class TRouteVertex {
 public:
  TPointF FPoint;                   // rounded to hundredths at creation
  std::vector<TJointInfo*> FJoints;  // borrowed from the network
  float FMinDist = 0.0f;            // 0: not reached yet (and the start's own value)
  TJointInfo* FMinDistJoint = nullptr;
  TRouteVertex* FMinDistFromVertex = nullptr;
};

struct TRouteQueuePair {
  TRouteVertex* FVertex = nullptr;
  TJointInfo* FJoint = nullptr;
};

class TVertexNetwork {
 public:
  // The document's shapes and crossings, borrowed for the network's life.
  TVertexNetwork(const TShapeList* APathList, const TIntersections* AIntersections);
  ~TVertexNetwork();
  TVertexNetwork(const TVertexNetwork&) = delete;
  TVertexNetwork& operator=(const TVertexNetwork&) = delete;

  // ---- the list of vertices ----
  size_t Count() const { return FVertices.size(); }
  TRouteVertex* operator[](size_t i) const { return FVertices[i].get(); }
  const std::vector<std::unique_ptr<TJointInfo>>& joints() const { return FJoints; }
  // Position of a vertex or joint in its list, -1 when not listed.
  int indexOfVertex(const TRouteVertex* v) const;
  int indexOfJoint(const TJointInfo* j) const;

  TRouteVertex* FStartVertex = nullptr;
  TRouteVertex* FEndVertex = nullptr;
  // Whether a goal in the middle of a shape becomes a vertex there. The
  // local API and the ruler take any point of the drawing as the goal; the
  // stitch tool does not, since a click off the ends and crossings is a
  // press of the iron. A start is always taken where it lies.
  bool FGoalOnShapes = false;

  // Frees vertices, joints and the queue; the shapes stay borrowed.
  void clearAll();
  // The first vertex at the point (to the hundredth), or null.
  TRouteVertex* GetVertex(const TPointF& Pt) const;
  TRouteVertex* addVertex(const TPointF& Pt);

  // Grows the graph from rp1 and finds every shortest distance from it.
  // False for equal points. When the goal is no vertex afterwards, the
  // result is that of the growth and there is no end vertex.
  bool dpConnect(const TPointF& rp1, const TPointF& rp2);
  // Depth-first growth from pt over everything joined to it. True when its
  // last visit made a joint.
  bool dpConnectAddJoints(const TPointF& pt, const TPointF& goalPt);
  void addToQueue(TRouteVertex* AVertex, const TJointInfo* excludeJoint, const TPointF& excludePoint);
  void dpProcessQueue(const TPointF& excludePoint);
  // What the point stands on: shape ends (within 0.02), crossings that are
  // not ends of both their shapes, or else every shape passing through it.
  std::vector<TConnectionPointInfo> searchEdgeAndIntersections(const TPointF& Pt) const;
  TJointInfo* findJoint(const TPW_Path* APath, const TPointF& pt1, const TPointF& pt2) const;
  // Every vertex at an end of a joint lists that joint.
  void checkJoints();
  // The stretches from the vertex back to the start, the vertex's first.
  std::vector<std::unique_ptr<TPW_Path>> getActualPathList(const TRouteVertex* vtx) const;
  // The point `distance` back along the route from the vertex.
  bool getPointOfSpecifiedDistance(const TRouteVertex* AVertex, float distance, TPointF& point) const;

  void debug_print_route() const {}
  void debug_print_all_vertex() const {}

 private:
  const TShapeList* FPathList;
  const TIntersections* FIntersections;
  std::vector<std::unique_ptr<TRouteVertex>> FVertices;
  std::vector<std::unique_ptr<TJointInfo>> FJoints;
  std::deque<TRouteQueuePair> FVertexQueue;

  struct TPairHash {
    size_t operator()(const std::pair<const void*, const void*>& p) const;
  };
  // Pairs now waiting in the queue, so that none waits twice.
  std::unordered_set<std::pair<const void*, const void*>, TPairHash> FQueued;

  // Lookups of what the linear scans would find first.
  struct TKeyHash {
    size_t operator()(const std::pair<double, double>& k) const;
  };
  std::unordered_map<std::pair<double, double>, TRouteVertex*, TKeyHash> FVertexByKey;
  std::unordered_map<const TPW_Path*, std::vector<TJointInfo*>> FJointsByPath;

  // The document, indexed once.
  struct TDocIndex;
  mutable std::unique_ptr<TDocIndex> FDoc;
  const TDocIndex& doc() const;

  // The places on a shape where a route may stop or turn off: its ends,
  // its crossings, and the start and goal of the growth when they lie on
  // it; ordered along the path. Found once per shape and growth.
  struct TStop {
    double pos;
    TPointF point;
  };
  TPointF FGrowStart, FGoal;
  mutable std::unordered_map<const TPW_Path*, std::vector<TStop>> FStops;
  const std::vector<TStop>& stopsOf(const TPW_Path* s) const;

  struct TMove;
  // From a point, along every shape it stands on, to the next stop each way.
  std::vector<TMove> movesFrom(const TPointF& pt) const;
  bool grow(const TPointF& pt);
  TRouteVertex* vertexAt(const TPointF& Pt);
};
