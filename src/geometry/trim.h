// Cutting a shape at points on it: the trim removes the piece between the
// two cut points around a click (the shape's ends and its crossings), and
// the notch cuts a V into an edge as a marker for aligning two parts.
#pragma once

#include <memory>
#include <vector>

#include "document/pw_path.h"

enum class TTrimSupport { Supported, NotSupported, OvalNotSupported };
// Lines, curves, arcs and circles ("ELLIPSE" with width and height equal
// within 0.01) can be cut.
TTrimSupport trimSupportOf(const TPW_Path& s);

// What remains of a cut shape. The pieces take the shape's palette row,
// colour, thickness, dash and layer, and id -1.
struct TCutPieces {
  std::vector<std::unique_ptr<TPW_Path>> FPieces;
  // A curve keeps its identity: the first piece takes the place of the
  // shape (which is changed in place) and the rest are new.
  bool FFirstReplacesShape = false;
};

// The pieces left when the part around `click` between its neighbouring cut
// points is removed. The cut points are the shape's ends and `crossings`
// (points on the shape). A line keeps at most two lines, an arc two arcs,
// a curve two curves; a circle becomes one arc from one cut point the long
// way round to the other (nothing with fewer than two). A piece of 0.1 mm
// or less is dropped. Nothing for a kind that cannot be cut.
TCutPieces trimPieces(const TPW_Path& shape, const std::vector<TPointF>& crossings, const TPointF& click);

// The V of a notch at P on an edge, cut towards the pointer: the tip lies
// `depth` from P towards the pointer; the arms leave the tip at half the
// angle to each side and reach 1.5 times the depth, past the edge.
struct TNotchArms {
  TPointF FP, FTip, FEnd1, FEnd2;
};
TNotchArms notchArms(const TPointF& p, const TPointF& pointer, double depth, double angleDeg);

// The notch cut into `shape`: its pieces outside the arms, then the two
// arms from where they meet the shape to the tip (lines in the shape's
// style). Empty when an arm does not reach the shape.
TCutPieces notchPieces(const TPW_Path& shape, const TNotchArms& arms);
