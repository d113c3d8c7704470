// Closed solids from plan regions: caps triangulated by the GLU tessellator
// on the regions' own corners, walls between the levels of a side profile,
// and recesses cut into a face (engraved letters, a jig's pocket) with the
// holes through their floors. Every edge of a solid built here belongs to
// exactly two facets that run it in opposite directions, and the facets
// face outwards; a solid whose caps or levels do not fit together is not
// appended at all.
#pragma once

#include <string>
#include <vector>

#include "exchange/stl_types.h"

// A recess cut into a face. Its region lies strictly inside the face (or
// inside the floor of the recess it is cut into): no corner or edge shared.
struct TSolidCut {
  TPolyRegion Region;
  // The height of the recess floor. A cut into the top face that reaches
  // the bottom face (or one into the bottom that reaches the top) is a hole
  // through the solid: its region must then lie strictly inside the other
  // face too.
  double FloorZ = 0;
  std::vector<TSolidCut> Inner;  // cut into this recess's floor
};

struct TSolidPlan {
  // The side profile, Z rising: the first level is the bottom face, the
  // last the top face. Two levels of one region make a plain plate.
  std::vector<TBevelStackItem> Levels;
  std::vector<TSolidCut> TopCuts;
  std::vector<TSolidCut> BottomCuts;
};

// Appends the solid's facets; returns "" or why nothing was appended.
std::string buildSolid(const TSolidPlan& plan, TTriangleList& out);

// A plain plate from z0 to z1; where its caps cannot be made, the region
// shrunk by 0.02 mm.
std::string extrudeRegion(const TPolyRegion& region, double z0, double z1, TTriangleList& out);

// Triangulates the area inside an odd number of the contours at height z,
// facing up or down. False when the tessellator had to add a corner or
// failed: the cap would not close against its walls.
bool tessellateCap(const std::vector<const TPolygon2*>& contours, double z, bool faceUp, TTriangleList& out);
