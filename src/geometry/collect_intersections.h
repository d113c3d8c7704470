// The document's list of crossings: gathering one shape's crossings with the
// others (pair engine), a run of newly added shapes, and the full
// recalculation (polyline engine). Candidate pairs come from a grid over the
// shape boxes; the results are exactly those of walking every pair in list
// order, in the same order.
#pragma once

#include <vector>

#include "document/intersections.h"
#include "document/pw_path.h"

class TShapeList;

// How candidate pairs are found: through the grid, or by walking every pair
// (the reference the grid must agree with).
enum class TPairSearch { Grid, AllPairs };

// Layer rule: both layers visible (when asked), and a shape on an
// independent layer meets only shapes of its own layer. Null layers: no rule.
bool layersLetMeet(const TShapeList* layers, const TPW_Path& a, const TPW_Path& b, bool checkVisible);

// Adds every crossing of `shape` with the other shapes, in list order, to
// `intersections` (through its filtering Add). Nothing for a shape that
// never meets anything; hidden layers and other independent layers are
// skipped. The shape need not be in the list.
void collectIntersections(TShapeList& shapes, TIntersections& intersections, TPW_Path* shape);
// The same over any set of shapes; `layers` (may be null) supplies the
// layer rule.
void collectIntersections(const std::vector<TPW_Path*>& shapes, const TShapeList* layers,
                          TIntersections& intersections, TPW_Path* shape);

// Crossings of the shapes from `firstIndex` on, exactly as if each had been
// added to the list in turn and collected then: each meets the shapes
// before it. For loading a file, pasting and generated pieces.
void collectIntersectionsFrom(TShapeList& shapes, TIntersections& intersections, size_t firstIndex,
                              TPairSearch search = TPairSearch::Grid);

// Whether the full recalculation compares the pair at all: only lines,
// arcs, ellipses and Bezier curves, no dimension lines, and two round
// shapes only when their centres are within 1.1 times the width of either.
bool recalcConsidersPair(const TPW_Path& a, const TPW_Path& b);

// The full recalculation: empties `intersections` and fills it with the
// polyline engine's crossings of every pair, earlier shape first.
void recalcAllIntersections(TShapeList& shapes, TIntersections& intersections,
                            TPairSearch search = TPairSearch::Grid);
