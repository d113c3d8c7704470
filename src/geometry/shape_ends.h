// The ends of lines, curves and arcs: their direction of travel, and
// moving one end to a new point while the rest of the shape keeps its form.
// Offsets join their pieces with these, trims and chamfers cut with them,
// and chain smoothing reads the directions at the junctions.
#pragma once

#include <cmath>
#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

#include "document/pw_path.h"
#include "geometry/intersect_primitives.h"

// ---- vectors in doubles ----
inline TDPoint operator+(const TDPoint& a, const TDPoint& b) { return {a.x + b.x, a.y + b.y}; }
inline TDPoint operator-(const TDPoint& a, const TDPoint& b) { return {a.x - b.x, a.y - b.y}; }
inline TDPoint operator*(const TDPoint& a, double s) { return {a.x * s, a.y * s}; }
inline double dot(const TDPoint& a, const TDPoint& b) { return a.x * b.x + a.y * b.y; }
inline double cross(const TDPoint& a, const TDPoint& b) { return a.x * b.y - a.y * b.x; }
inline double length(const TDPoint& a) { return std::hypot(a.x, a.y); }
inline double distance(const TDPoint& a, const TDPoint& b) { return length(a - b); }
// The vector scaled to length 1; (0, 0) when it is shorter than `minLength`.
inline TDPoint unit(const TDPoint& a, double minLength = 1e-12) {
  const double l = length(a);
  return l < minLength ? TDPoint{} : TDPoint{a.x / l, a.y / l};
}
inline bool isFinite(const TDPoint& p) { return std::isfinite(p.x) && std::isfinite(p.y); }
// Turned a quarter: clockwise on the screen (y down) for a positive sign.
inline TDPoint quarterTurn(const TDPoint& v, double sign) {
  return sign >= 0 ? TDPoint{-v.y, v.x} : TDPoint{v.y, -v.x};
}
// Angle from u to v in degrees, -180 to 180, positive clockwise on the screen.
double signedAngleDeg(const TDPoint& u, const TDPoint& v);

bool isLineCurveOrArc(const TPW_Path& s);

// Ends of two shapes this close on each axis join in a chain.
inline constexpr double kEndJoinGap = 0.5;
inline bool endsJoin(const TPointF& a, const TPointF& b) {
  return std::fabs(double(a.x) - b.x) <= kEndJoinGap && std::fabs(double(a.y) - b.y) <= kEndJoinGap;
}

// Shapes' ends hashed by cells of the join gap, so that the shapes with an
// end near a point are found without walking them all.
class TEndGrid {
 public:
  explicit TEndGrid(const std::vector<TPW_Path*>& shapes);
  // Indices (into the shapes given) of the shapes with an end within the
  // join gap of p on each axis, and perhaps a few more; ascending, each once.
  void near(const TPointF& p, std::vector<size_t>& out) const;

 private:
  std::unordered_map<uint64_t, std::vector<size_t>> FCells;
};

// Whether the shapes can be one chain at all: their ends join them into one
// connected piece, and at most two ends join no other shape's end. Cheap,
// so that a selection that is no chain never reaches the costly ordering.
bool mayFormOneChain(const std::vector<TPW_Path*>& shapes);

// A new empty shape in the source's palette row, colour, thickness, dash
// and layer, with id -1: the style of everything cut or copied from it.
std::unique_ptr<TPW_Path> newShapeStyledLike(const TPW_Path& source);

// Direction of travel at the start or the end, of unit length; (1, 0)
// when the shape gives none there. A line runs from start to end; a curve
// along its leg (start to first control point, second control point to
// end, or the next point along when a leg has no length); an arc across
// its radius, turned with the sign of the sweep.
TDPoint startTangent(const TPW_Path& s);
TDPoint endTangent(const TPW_Path& s);

// Moves the start (atEnd false) or the end of a line, curve or arc to p.
// A line is redrawn; a curve moves the control point beside that end by
// the same vector, so it keeps the shape of its end; an arc keeps centre
// and radius and its sweep changes by the angle from the old end to p, so
// that its other end stays where it is.
void moveShapeEnd(TPW_Path& s, bool atEnd, const TPointF& p);

// The point of the shape halfway along its parameter: a line's middle, an
// arc at half its sweep, a curve at t = 0.5.
TDPoint shapeMidpoint(const TPW_Path& s);

// The shape as points in order, finely enough that a point 0.01 mm off the
// drawn shape is on the right side of it: lines exactly, arcs and curves
// in short chords. Other kinds give their path's points.
void appendOutlinePoints(const TPW_Path& s, std::vector<TDPoint>& out);
// Even-odd test against the closed polygon.
bool pointInPolygon(const std::vector<TDPoint>& polygon, const TDPoint& p);
