// Solids checked as a slicer reads them: the bytes of the binary STL file,
// with an edge pairing of its own on the stored 32-bit corners.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <map>
#include <memory>
#include <string>

#include "document/pw_path.h"
#include "exchange/stl_file.h"
#include "exchange/stl_solids.h"

struct TStlFileFacts {
  bool wellFormed = false;  // size and count agree
  uint32_t facets = 0;
  size_t unpairedEdges = 0;  // an edge not run back by exactly one other facet
  size_t flippedNormals = 0;  // stored normal against the corners' turn
  double volume = 0;
};

inline TStlFileFacts readStlFacts(const std::string& bytes) {
  TStlFileFacts f;
  if (bytes.size() < 84) return f;
  std::memcpy(&f.facets, bytes.data() + 80, 4);
  if (bytes.size() != 84 + size_t(f.facets) * 50) return f;
  f.wellFormed = true;
  using TCorner = std::array<float, 3>;
  std::map<std::pair<TCorner, TCorner>, int> edges;
  for (uint32_t i = 0; i < f.facets; ++i) {
    float v[12];
    std::memcpy(v, bytes.data() + 84 + size_t(i) * 50, sizeof v);
    const TCorner c[3] = {{v[3], v[4], v[5]}, {v[6], v[7], v[8]}, {v[9], v[10], v[11]}};
    for (int k = 0; k < 3; ++k) ++edges[{c[k], c[(k + 1) % 3]}];
    const double ax = c[1][0] - c[0][0], ay = c[1][1] - c[0][1], az = c[1][2] - c[0][2];
    const double bx = c[2][0] - c[0][0], by = c[2][1] - c[0][1], bz = c[2][2] - c[0][2];
    const double n[3] = {ay * bz - az * by, az * bx - ax * bz, ax * by - ay * bx};
    if (n[0] * v[0] + n[1] * v[1] + n[2] * v[2] <= 0) ++f.flippedNormals;
    f.volume += (double(c[0][0]) * (double(c[1][1]) * c[2][2] - double(c[1][2]) * c[2][1]) -
                 double(c[0][1]) * (double(c[1][0]) * c[2][2] - double(c[1][2]) * c[2][0]) +
                 double(c[0][2]) * (double(c[1][0]) * c[2][1] - double(c[1][1]) * c[2][0])) / 6;
  }
  for (const auto& [e, n] : edges) {
    const auto back = edges.find({e.second, e.first});
    if (n != 1 || back == edges.end() || back->second != 1) ++f.unpairedEdges;
  }
  return f;
}

// The file's facts after the checks every printable solid passes.
inline TStlFileFacts expectPrintable(const TTriangleList& triangles, const std::string& what) {
  const TStlFileFacts f = readStlFacts(binaryStlBytes(weldTriangles(triangles)));
  EXPECT_TRUE(f.wellFormed) << what;
  EXPECT_GT(f.facets, 0u) << what;
  EXPECT_EQ(f.unpairedEdges, 0u) << what;
  EXPECT_EQ(f.flippedNormals, 0u) << what;
  EXPECT_GT(f.volume, 0) << what;
  return f;
}

// Shapes of a test drawing, kept alive with the pointers handed out.
struct TStlDrawing {
  std::vector<std::unique_ptr<TPW_Path>> owned;
  std::vector<const TPW_Path*> shapes;

  TPW_Path& add(std::unique_ptr<TPW_Path> s) {
    shapes.push_back(s.get());
    owned.push_back(std::move(s));
    return *owned.back();
  }
  // A closed outline of straight lines through the points (y down).
  void polygon(const std::vector<TPointF>& pts) {
    for (size_t i = 0; i < pts.size(); ++i) {
      auto s = std::make_unique<TPW_Path>(0, claBlack, 1.5f, TStrokeDash::Solid, int(owned.size()) + 1);
      s->drawLinePath(pts[i], pts[(i + 1) % pts.size()]);
      add(std::move(s));
    }
  }
  void rect(float x0, float y0, float x1, float y1) { polygon({{x0, y0}, {x1, y0}, {x1, y1}, {x0, y1}}); }
  // A path shape of the kind with the path text.
  TPW_Path& path(const char* type, const char* text) {
    auto s = std::make_unique<TPW_Path>(0, claBlack, 1.5f, TStrokeDash::Solid, int(owned.size()) + 1);
    s->FShapeType = type;
    s->FData.setData(text);
    return add(std::move(s));
  }
  TPW_Path& hole(float x, float y) {
    auto s = std::make_unique<TPW_Path>(36, claWhite, 1.0f, TStrokeDash::Solid, int(owned.size()) + 1);
    s->FShapeType = ShapeType::Hole;
    s->FStitchType = "D";
    s->FCenter = TPointF(x, y);
    return add(std::move(s));
  }
};
