// The plain types of the 3-D solids: plan polygons, regions with holes, the
// levels of a plate's side profile and the facets of a mesh. Millimetres in
// doubles; in plan x runs right and y up (the drawing's y, which runs down,
// is turned over when shapes are read), z up from the plate's underside.
#pragma once

#include <array>
#include <string>
#include <vector>

struct TVec2 {
  double x = 0, y = 0;
};

struct TVec3 {
  double x = 0, y = 0, z = 0;
};

// A closed polygon, the last point not repeating the first.
using TPolygon2 = std::vector<TVec2>;

// One facet, its corners counter-clockwise seen from outside the solid.
struct TTriangle3D {
  std::array<TVec3, 3> V;
};
using TTriangleList = std::vector<TTriangle3D>;

// One solid piece in plan: the outer runs counter-clockwise, each hole
// clockwise.
struct TPolyRegion {
  TPolygon2 Outer;
  std::vector<TPolygon2> Holes;
};

// The result of insetting a region; Reason says why it is not Valid.
struct TOffsetRegion {
  bool Valid = false;
  std::string Reason;
  TPolygon2 Outer;
  std::vector<TPolygon2> Holes;
};

// One level of a plate's side profile: the plan of the plate at height Z,
// inset by InsetAmount from its base outline.
struct TBevelStackItem {
  TPolyRegion Region;
  double Z = 0;
  double InsetAmount = 0;
};

// How a plate is extruded: its height and the edge of each side. A fillet
// above 1e-9 wins over the chamfer of its side; a side with neither is plain.
struct TExtrudeOptions {
  double Height = 2.5;
  double TopChamfer = 0;
  double BottomChamfer = 0;
  double TopFillet = 0;
  double BottomFillet = 0;
  int FilletSteps = 6;
};

enum class TEdgeMode { Plain, Chamfer, Fillet };

inline TEdgeMode topEdgeMode(const TExtrudeOptions& o) {
  return o.TopFillet > 1e-9 ? TEdgeMode::Fillet : o.TopChamfer > 1e-9 ? TEdgeMode::Chamfer : TEdgeMode::Plain;
}
inline TEdgeMode bottomEdgeMode(const TExtrudeOptions& o) {
  return o.BottomFillet > 1e-9 ? TEdgeMode::Fillet : o.BottomChamfer > 1e-9 ? TEdgeMode::Chamfer : TEdgeMode::Plain;
}
// The bevel of a side: its fillet or chamfer, 0 when plain.
inline double topBevelSize(const TExtrudeOptions& o) {
  return o.TopFillet > 1e-9 ? o.TopFillet : o.TopChamfer > 1e-9 ? o.TopChamfer : 0.0;
}
inline double bottomBevelSize(const TExtrudeOptions& o) {
  return o.BottomFillet > 1e-9 ? o.BottomFillet : o.BottomChamfer > 1e-9 ? o.BottomChamfer : 0.0;
}

// Signed area, positive for a counter-clockwise polygon.
double polygonArea(const TPolygon2& p);
// The region's area: the outer less its holes.
double regionArea(const TPolyRegion& r);
