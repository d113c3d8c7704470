#include "geometry/collect_intersections.h"

#include <algorithm>
#include <cmath>

#include "document/point_helpers.h"
#include "document/shape_list.h"
#include "geometry/intersect_pair.h"
#include "geometry/intersect_polyline.h"
#include "geometry/spatial_index.h"

namespace {

// A little wider than the engines' own box margins (0.1), so that the
// candidate search never loses a pair to rounding.
constexpr double kCandidateMargin = 0.11;

TGridBox boundaryBox(TPW_Path& s) {
  const TRectF r = s.getBoundary(false).normalized();
  return TGridBox{r.Left, r.Top, r.Right, r.Bottom};
}

// The boundary widened to hold the shape's ends as well: the polyline
// engine matches ends, and an arc's stored ends may lie a little off its
// drawn path.
TGridBox boundaryWithEnds(TPW_Path& s) {
  TGridBox g = boundaryBox(s);
  for (const TPointF& p : {s.FStartPt, s.FEndPt}) {
    g.l = std::min(g.l, double(p.x));
    g.r = std::max(g.r, double(p.x));
    g.t = std::min(g.t, double(p.y));
    g.b = std::max(g.b, double(p.y));
  }
  return g;
}

void addAll(TIntersectionList& found, TIntersections& intersections) {
  for (auto& ict : found) intersections.Add(ict);  // a rejected one is freed with `found`
}

bool isRoundShape(const TPW_Path& s) {
  return (s.FShapeType == ShapeType::Ellipse || s.FShapeType == ShapeType::Arc) &&
         std::fabs(double(s.FWidth) - s.FHeight) <= 0.01;
}

bool recalcKind(const TPW_Path& s) {
  if (s.FIsDimensionLine) return false;
  return s.FShapeType == ShapeType::Line || s.FShapeType == ShapeType::Arc ||
         s.FShapeType == ShapeType::Ellipse || s.FShapeType == ShapeType::Bezier;
}

// Sorted candidate positions below (or above) `self` whose boxes come
// within the margin.
void candidatesOf(const TBoxGrid& grid, const std::vector<TGridBox>& boxes, int self, bool below,
                  std::vector<int>& out) {
  grid.query(boxes[self], kCandidateMargin, out);
  std::erase_if(out, [&](int j) {
    return (below ? j >= self : j <= self) || !gridBoxesMeet(boxes[self], boxes[j], kCandidateMargin);
  });
  std::sort(out.begin(), out.end());
}

}  // namespace

bool layersLetMeet(const TShapeList* layers, const TPW_Path& a, const TPW_Path& b, bool checkVisible) {
  if (!layers) return true;
  if (checkVisible && (!layers->GetlayerVisible(a.FLayerID) || !layers->GetlayerVisible(b.FLayerID)))
    return false;
  if (a.FLayerID == b.FLayerID) return true;
  return !layers->GetIsIndependentLayer(a.FLayerID) && !layers->GetIsIndependentLayer(b.FLayerID);
}

namespace {

// One shape against a run of others, in their order. The pair engine
// rejects boxes further apart than 0.1 at once; testing the cached boxes
// first here spares it, and the kind and layer tests, for the many shapes
// far away.
template <typename Range, typename Get>
void collectAgainst(const Range& shapes, Get get, const TShapeList* layers,
                    TIntersections& intersections, TPW_Path* shape) {
  if (!shape || !canHaveCrossings(*shape)) return;
  const TGridBox box = boundaryBox(*shape);
  for (const auto& item : shapes) {
    TPW_Path* other = get(item);
    if (!other || other == shape) continue;
    if (!gridBoxesMeet(box, boundaryBox(*other), kCandidateMargin)) continue;
    if (!canHaveCrossings(*other) || !layersLetMeet(layers, *shape, *other, true)) continue;
    TIntersectionList found = calcShapeIntersections(shape, other);
    addAll(found, intersections);
  }
}

}  // namespace

void collectIntersections(const std::vector<TPW_Path*>& shapes, const TShapeList* layers,
                          TIntersections& intersections, TPW_Path* shape) {
  collectAgainst(shapes, [](TPW_Path* p) { return p; }, layers, intersections, shape);
}

void collectIntersections(TShapeList& shapes, TIntersections& intersections, TPW_Path* shape) {
  collectAgainst(shapes.items(), [](const std::unique_ptr<TPW_Path>& p) { return p.get(); }, &shapes,
                 intersections, shape);
}

void collectIntersectionsFrom(TShapeList& shapes, TIntersections& intersections, size_t firstIndex,
                              TPairSearch search) {
  const int n = static_cast<int>(shapes.Count());
  if (firstIndex >= size_t(n)) return;
  if (search == TPairSearch::AllPairs) {
    std::vector<TPW_Path*> before;
    before.reserve(shapes.Count());
    for (int k = 0; k < n; ++k) {
      TPW_Path* s = shapes[k];
      if (size_t(k) >= firstIndex) collectIntersections(before, &shapes, intersections, s);
      before.push_back(s);
    }
    return;
  }
  // Shapes that never meet anything get an empty box far from all others.
  std::vector<TGridBox> boxes(n, TGridBox{NAN, NAN, NAN, NAN});
  for (int k = 0; k < n; ++k)
    if (canHaveCrossings(*shapes[k])) boxes[k] = boundaryBox(*shapes[k]);
  const TBoxGrid grid(boxes);
  std::vector<int> cand;
  for (int k = static_cast<int>(firstIndex); k < n; ++k) {
    TPW_Path* s = shapes[k];
    if (!canHaveCrossings(*s)) continue;
    candidatesOf(grid, boxes, k, true, cand);
    for (int j : cand) {
      TPW_Path* other = shapes[j];
      if (!layersLetMeet(&shapes, *s, *other, true)) continue;
      TIntersectionList found = calcShapeIntersections(s, other);
      addAll(found, intersections);
    }
  }
}

bool recalcConsidersPair(const TPW_Path& a, const TPW_Path& b) {
  if (!recalcKind(a) || !recalcKind(b)) return false;
  if (isRoundShape(a) && isRoundShape(b)) {
    const double d = distanceOf(a.FCenter, b.FCenter);
    if (d > 1.1 * a.FWidth && d > 1.1 * b.FWidth) return false;
  }
  return true;
}

void recalcAllIntersections(TShapeList& shapes, TIntersections& intersections, TPairSearch search) {
  intersections.Clear();
  const int n = static_cast<int>(shapes.Count());
  std::vector<TPolyShape> prepared(n);
  std::vector<TGridBox> boxes(n, TGridBox{NAN, NAN, NAN, NAN});
  for (int k = 0; k < n; ++k) {
    if (!recalcKind(*shapes[k])) continue;
    prepared[k] = preparePolyShape(*shapes[k]);
    boxes[k] = boundaryWithEnds(*shapes[k]);
  }
  TIntersectionList found;
  auto runPair = [&](int i, int j) {
    if (!recalcConsidersPair(*shapes[i], *shapes[j])) return;
    found.clear();
    calcPolylineIntersections(prepared[i], prepared[j], &shapes, false, found);
    addAll(found, intersections);
  };
  if (search == TPairSearch::AllPairs) {
    for (int i = 0; i < n; ++i)
      for (int j = i + 1; j < n; ++j) runPair(i, j);
    return;
  }
  const TBoxGrid grid(boxes);
  std::vector<int> cand;
  for (int i = 0; i < n; ++i) {
    if (!recalcKind(*shapes[i])) continue;
    candidatesOf(grid, boxes, i, false, cand);
    for (int j : cand) runPair(i, j);
  }
}
