// Binary STL files: corners welded at 0.001 mm, an 80-byte header, the
// facet count and 50 bytes for each facet; and the check a slicer makes of
// the welded mesh before anything is written.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "exchange/stl_types.h"

// Facets on shared corners: three corner indices for each facet.
struct TWeldedMesh {
  std::vector<TVec3> Corners;
  std::vector<uint32_t> Facets;
  size_t facetCount() const { return Facets.size() / 3; }
};

// Corners within 0.001 mm of one another (on the same 0.001 mm step) become
// the first of them; facets that lose their area that way are dropped.
TWeldedMesh weldTriangles(const TTriangleList& triangles);

// The file's bytes.
std::string binaryStlBytes(const TWeldedMesh& mesh);

// The second file of a multi-colour print: "_text" before the extension.
std::string stlTextFileName(const std::string& file);

// What a slicer asks of a mesh.
struct TMeshCheck {
  size_t Facets = 0;
  size_t OpenEdges = 0;  // an edge of one facet only
  size_t BadEdges = 0;   // of more facets, or run twice the same way
  double Volume = 0;     // positive when the facets face out
  bool closed() const { return Facets > 0 && OpenEdges == 0 && BadEdges == 0 && Volume > 0; }
};
TMeshCheck checkMesh(const TWeldedMesh& mesh);
