// Polygon work for the solids, on Clipper's integer coordinates: millimetres
// times 10^p for a precision p. Regions come out on the 0.01 mm grid
// (precision 2) as strictly simple polygons, outers counter-clockwise and
// holes clockwise, so that the facets built on them share their corners
// exactly.
#pragma once

#include <clipper.hpp>

#include <vector>

#include "exchange/stl_types.h"

namespace stlpoly {

constexpr double kGridScale = 100.0;  // precision 2: the grid of every region
constexpr double kFineScale = 1e6;    // precision 6: where insets are computed

ClipperLib::Path toPath(const TPolygon2& p, double scale);
ClipperLib::Paths toPaths(const std::vector<TPolygon2>& ps, double scale);
// The outer and the holes of a region.
ClipperLib::Paths regionPaths(const TPolyRegion& r, double scale);
ClipperLib::Paths regionPaths(const std::vector<TPolyRegion>& rs, double scale);
TPolygon2 fromPath(const ClipperLib::Path& p, double scale);

// A boolean operation on grid paths; the result is strictly simple and
// cleaned of points closer than the grid allows.
ClipperLib::Paths clip(const ClipperLib::Paths& subject, const ClipperLib::Paths& clipPaths, ClipperLib::ClipType op,
                       ClipperLib::PolyFillType subjectFill = ClipperLib::pftNonZero,
                       ClipperLib::PolyFillType clipFill = ClipperLib::pftNonZero);

// Grid paths grown (delta > 0) or shrunk by delta millimetres; computed at
// precision 6 and brought back to the grid, where rounding may leave a
// crossing: take them through a boolean operation or `regionsOf` (non-zero
// rule) before use. Round joins follow the arc to 0.01 mm.
ClipperLib::Paths offsetPaths(const ClipperLib::Paths& gridPaths, double delta, ClipperLib::JoinType join,
                              double miterLimit = 3.0);

// The regions the grid paths enclose under the fill rule: each outer with
// its holes; an island inside a hole is a region of its own. Paths with an
// area of `minArea` square millimetres or less are left out.
std::vector<TPolyRegion> regionsOf(const ClipperLib::Paths& gridPaths, ClipperLib::PolyFillType fill,
                                   double minArea = 0.0);

// The region inset by `delta` millimetres (outset when negative): the
// outer shrinks and the holes grow, miter joins. Valid only when exactly
// one region with an outer of 3 to 200 points comes out; Reason tells.
TOffsetRegion inflateRegion(const TPolyRegion& region, double delta);

// True when two contours of the regions share a corner, which would join
// separate walls at one edge. The caller then shrinks the regions a little.
bool contoursTouch(const std::vector<TPolyRegion>& regions);

// Shrinks touching regions by 0.01 mm until no two contours share a corner
// (twice at most); false when they still do.
bool separateRegions(std::vector<TPolyRegion>& regions);

// Regions cut to lie strictly inside `face` grid paths shrunk by `margin`.
std::vector<TPolyRegion> regionsInside(const ClipperLib::Paths& shapes, const ClipperLib::Paths& face,
                                       double margin, ClipperLib::PolyFillType shapesFill = ClipperLib::pftNonZero);

// Bounding box of polygons: min and max.
void boundsOf(const std::vector<TPolygon2>& ps, TVec2& lo, TVec2& hi);

// Centroid of a polygon by the shoelace formula (its mean point when it
// has no area).
TVec2 polygonCentroid(const TPolygon2& p);

// Whether the point lies inside the polygon (even-odd rule).
bool pointInPolygon(const TVec2& pt, const TPolygon2& poly);

// A circle as a polygon: enough points that no chord strays more than
// 0.01 mm from the arc, at least `minPoints`.
TPolygon2 circlePolygon(const TVec2& centre, double radius, int minPoints = 12);

}  // namespace stlpoly
