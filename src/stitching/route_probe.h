// The questions a stitch walk asks of the shapes it walks on, at every
// step: where does the circle of the pitch about the last hole cross them,
// and which way does the drawing run at a point. The shapes are prepared
// once (their analytic forms, their flattened pieces, a grid of boxes), so
// that a step looks only at the shapes near it and allocates nothing. The
// answers are exactly those of a temporary circle put through the crossing
// engine and of a scan over every interval; the reference forms below do
// it that way, for tests and measurements. Crossings of a line further
// than 0.008 mm past its ends are left out of both.
#pragma once

#include <memory>
#include <vector>

#include "document/pw_path.h"
#include "geometry/intersect_primitives.h"
#include "geometry/spatial_index.h"

// Whether p, found on the line p0-p1 by the crossing engine, lies further
// than the engine's near tolerance (0.008 mm) beyond either end. The engine
// takes a line's points up to 0.8 % of its length beyond its ends, which
// on a long line is millimetres: a hole there would stand off the drawing.
bool pastLineEnds(const TDPoint& p0, const TDPoint& p1, const TDPoint& p);

struct TProbeCrossing {
  TPointF FPoint;
  int FShape = -1;  // index into the probe's shapes
};

class TRouteProbe {
 public:
  // The shapes are borrowed and must not change while the probe lives.
  explicit TRouteProbe(const std::vector<TPW_Path*>& shapes);
  TRouteProbe(const TRouteProbe&) = delete;
  TRouteProbe& operator=(const TRouteProbe&) = delete;

  size_t shapeCount() const { return FShapes.size(); }
  TPW_Path* shape(int i) const { return FShapes[size_t(i)].path; }

  // Where the circle of radius `pitch` about `center` crosses the shapes:
  // shape by shape in their order, each shape's points in the crossing
  // engine's order, with the engine's merging of near points.
  void circleCrossings(const TPointF& center, float pitch, std::vector<TProbeCrossing>& out);
  // The same through a temporary "ELLIPSE" and the document's crossing
  // gathering.
  void circleCrossingsReference(const TPointF& center, float pitch, std::vector<TProbeCrossing>& out) const;

  // The drawing's direction at pt: of every interval that pt lies on
  // (cross product within 0.01), the one with the smallest cross product;
  // its shape and its unit direction (end minus start). False, leaving the
  // outputs alone, when pt lies on none.
  bool tangentAt(const TPointF& pt, int& shape, TPointF& direction) const;
  bool tangentAtReference(const TPointF& pt, int& shape, TPointF& direction) const;

 private:
  enum class TKind { None, Line, Arc, Ellipse, Bezier };
  struct TShape {
    TPW_Path* path = nullptr;
    TKind kind = TKind::None;
    TGridBox box;
    TDPoint p0, p1;   // a line
    TDPoint c;        // a circle or arc
    double r = 0.0;
    int firstPiece = 0, pieceCount = 0;  // a curve's flattened pieces
    // An arc's middle direction and the cosine beyond which a point is
    // surely off it: a cheap test before the exact one.
    bool angleFilter = false;
    double mx = 0.0, my = 0.0, cosLimit = -1.0;
  };
  struct TPiece {
    TDPoint p0, p1;
    TGridBox box;
  };
  struct TInterval {
    TPointF st, ed;
    int shape;
  };

  std::vector<TShape> FShapes;
  std::vector<TPiece> FPieces;
  std::vector<TInterval> FIntervals;
  std::vector<int> FWideIntervals;
  std::unique_ptr<TBoxGrid> FShapeGrid;
  std::unique_ptr<TBoxGrid> FIntervalGrid;

  // Scratch, reused from step to step.
  std::vector<int> FCandidates;
  mutable std::vector<int> FIntervalCandidates;
  TDPointList FSolved;
  TDPointList FPieceSolved;
  std::vector<TPointF> FPair;

  void addPairPoints(int shape, std::vector<TProbeCrossing>& out);
  static void prepareArcFilter(TShape& sh);
  bool onArc(const TShape& sh, const TDPoint& p) const;
};

// The drawing's direction at pt over a list of shapes, without a prepared
// probe: every interval of every shape's path is tested; of those pt lies
// on (cross product within 0.01), the smallest cross product wins. False,
// outputs untouched, when pt lies on none.
bool tangentAtPoint(const std::vector<TPW_Path*>& shapes, const TPointF& pt, TPW_Path*& shape,
                    TPointF& direction);
