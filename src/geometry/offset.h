// Offsetting: parallel copies of lines, arcs and curves at a distance, the
// way a pattern maker draws a seam allowance or a stitch line beside an
// edge. A line gives a line, an arc an arc, a curve one curve; a chain is
// offset piece by piece and the pieces are joined at their corners.
//
// Sign convention: a positive distance moves a line or a curve to its left
// as seen along its direction (up for a line running to the right on the
// screen, y growing downwards) and an arc outward from its centre.
#pragma once

#include <memory>
#include <vector>

#include "document/pw_path.h"
#include "geometry/bezier_length.h"

class TShapeList;

// The four points of a cubic copied at distance d: the curve sampled at
// t = 0, 1/3, 2/3, 1, each sample moved along its normal, the cubic through
// the four samples, with the source's end directions kept.
TBezier offsetBezier(const TBezier& b, double d);

// A parallel copy at the signed distance d. Null for kinds other than
// "LINE", "ARC" and "BEZIER", for a line without length, for an arc whose
// radius would not stay above 0, and for anything not finite. The copy has
// the source's palette row, colour, thickness, dash and layer, and id -1.
std::unique_ptr<TPW_Path> offsetShape(const TPW_Path& source, double d);

// Which way a single shape (or an open chain, by its first shape) goes
// towards the direction point: +1 or -1 as the factor of d in the rule of
// the shape's kind. Multiply by chainSignOf for the distance offsetShape takes.
int offsetSideSign(const TPW_Path& first, double d, const TPointF& directionPoint);
// -1 for an arc that sweeps backwards, whose left side is its outside.
inline int chainSignOf(const TPW_Path& s) { return s.isType(ShapeType::Arc) && s.FSweepAngle < 0 ? -1 : 1; }

// One shape offset towards the direction point, as the offset tool does
// for a selection that is no chain: lines, arcs and curves by
// offsetSideSign, a circle ("ELLIPSE") by offsetCircleTowards.
std::unique_ptr<TPW_Path> offsetTowards(const TPW_Path& source, double d, const TPointF& directionPoint);
// The copy of an "ELLIPSE": wider when the direction point lies at least
// its width from the centre, else narrower; always a circle of the width
// plus or minus d in both axes. Null when that width would not stay above 0.
std::unique_ptr<TPW_Path> offsetCircleTowards(const TPW_Path& source, double d, const TPointF& directionPoint);

// The copies of a chain (in chain order, each starting where the one before
// it ends) with the pieces that join them, in chain order. A closed chain
// of two shapes or more decides its side by the inside of its outline; an
// open one by the nearness of the direction point. A shape that gives no
// copy leaves a gap that is not joined across.
std::vector<std::unique_ptr<TPW_Path>> smartOffset(const std::vector<const TPW_Path*>& chain, double d,
                                                   const TPointF& directionPoint, bool closed);

// Joins the end of copy a to the start of copy b; `distance` is the offset
// distance, which bounds how far a corner may reach. The ends are moved
// together, or connecting lines are appended to `out` (outer corner at an
// arc), or both copies are cut back to their crossing (inner corner).
void joinOffsets(TPW_Path& a, TPW_Path& b, double distance, std::vector<std::unique_ptr<TPW_Path>>& out);

// The end-joining step after an offset is committed: the ends of every
// arc, curve and line that lie closer than 0.1 mm to a line's end (but not
// on it) move onto it. Returns the shapes that moved; the caller brings
// their crossings up to date.
std::vector<TPW_Path*> snapEndsToLineEnds(TShapeList& list);
