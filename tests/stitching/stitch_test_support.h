// Shared pieces of the stitch row tests: a document with its crossings, a
// hole maker over it, and the checks a leatherworker makes of a row.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <numbers>
#include <vector>

#include "../geometry/shape_factory.h"
#include "document/intersections.h"
#include "document/point_helpers.h"
#include "document/shape_list.h"
#include "geometry/collect_intersections.h"
#include "stitching/pricking_iron.h"
#include "stitching/row_holes.h"

namespace stitchtest {

// A document that gathers crossings as shapes are added, and an iron.
struct TDoc {
  TShapeList list{nullptr, "en"};
  TIntersections crossings;
  TPrickingIron iron{"D", 4.0f, 0.8f, 2.2f, 32.0f};
  TPW_Path* last = nullptr;

  TPW_Path* add(std::unique_ptr<TPW_Path> s, int layer = 0) {
    s->updateId(list.getNextID());
    TPW_Path* raw = s.get();
    list.add(std::move(s), layer);
    collectIntersections(list, crossings, raw);
    return raw;
  }

  // A hole maker that adds to this document.
  std::unique_ptr<TRowHoles> holes(int layer = 0) {
    return std::make_unique<TRowHoles>(list, layer, &iron, false, THoleLook{},
                                       [this](std::unique_ptr<TPW_Path> h) {
                                         TPW_Path* raw = h.get();
                                         const int layerId = h->FLayerID;
                                         list.add(std::move(h), layerId);
                                         return raw;
                                       },
                                       last);
  }

  std::vector<TPW_Path*> holesInList() const {
    std::vector<TPW_Path*> out;
    for (const auto& s : list)
      if (s->FShapeType == ShapeType::Hole) out.push_back(s.get());
    return out;
  }
  std::vector<TPW_Path*> drawing() const {
    std::vector<TPW_Path*> out;
    for (const auto& s : list)
      if (s->FShapeType != ShapeType::Hole) out.push_back(s.get());
    return out;
  }
};

// Shortest distance from p to the shape as drawn: ellipses and curves by
// their own equations, everything else by its path.
inline double distanceToShape(const TPointF& p, const TPW_Path& s) {
  auto toSegment = [&](double ax, double ay, double bx, double by) {
    const double dx = bx - ax, dy = by - ay, len2 = dx * dx + dy * dy;
    const double t = len2 > 0 ? std::clamp(((p.x - ax) * dx + (p.y - ay) * dy) / len2, 0.0, 1.0) : 0.0;
    return std::hypot(p.x - (ax + t * dx), p.y - (ay + t * dy));
  };
  double best = 1e300;
  const bool curve = s.FShapeType == ShapeType::Ellipse || s.FShapeType == ShapeType::Bezier;
  if (!curve) {
    for (const TRectF& r : s.getIntervals(false)) best = std::min(best, toSegment(r.Left, r.Top, r.Right, r.Bottom));
    return best;
  }
  auto at = [&](double t, double& x, double& y) {
    if (s.FShapeType == ShapeType::Ellipse) {
      x = s.FCenter.x + s.FWidth / 2.0 * std::cos(2 * std::numbers::pi * t);
      y = s.FCenter.y + s.FHeight / 2.0 * std::sin(2 * std::numbers::pi * t);
      return;
    }
    const double u = 1 - t, k0 = u * u * u, k1 = 3 * u * u * t, k2 = 3 * u * t * t, k3 = t * t * t;
    x = k0 * s.FStartPt.x + k1 * s.FBezierCp1.x + k2 * s.FBezierCp2.x + k3 * s.FEndPt.x;
    y = k0 * s.FStartPt.y + k1 * s.FBezierCp1.y + k2 * s.FBezierCp2.y + k3 * s.FEndPt.y;
  };
  constexpr int kSamples = 20000;
  double px = 0, py = 0;
  at(0, px, py);
  for (int i = 1; i <= kSamples; ++i) {
    double x = 0, y = 0;
    at(double(i) / kSamples, x, y);
    best = std::min(best, toSegment(px, py, x, y));
    px = x;
    py = y;
  }
  return best;
}

inline double distanceToDrawing(const TPointF& p, const std::vector<TPW_Path*>& shapes) {
  double best = 1e300;
  for (const TPW_Path* s : shapes) best = std::min(best, distanceToShape(p, *s));
  return best;
}

// Follows FNextStitchID from `first`; the holes in sewing order. Stops on
// a link to a hole already walked (a ring) or to nothing.
inline std::vector<TPW_Path*> walkChain(const TShapeList& list, TPW_Path* first, bool* ring = nullptr) {
  std::vector<TPW_Path*> out;
  if (ring) *ring = false;
  for (TPW_Path* h = first; h;) {
    if (std::find(out.begin(), out.end(), h) != out.end()) {
      if (ring) *ring = h == first;
      break;
    }
    out.push_back(h);
    h = h->FNextStitchID >= 0 ? list.findByID(h->FNextStitchID) : nullptr;
  }
  return out;
}

// The hole of a row that no other hole of the row links forward to.
inline TPW_Path* chainHead(const std::vector<TPW_Path*>& holes) {
  for (TPW_Path* h : holes) {
    const bool linkedTo = std::any_of(holes.begin(), holes.end(), [&](TPW_Path* o) { return o->FNextStitchID == h->FID; });
    if (!linkedTo) return h;
  }
  return holes.empty() ? nullptr : holes.front();
}

// Every straight distance between neighbours in sewing order lies within
// `tolerance` of `pitch`; round a ring the closing pair too.
inline void expectEvenSpacing(const std::vector<TPW_Path*>& chain, double pitch, double tolerance,
                              bool ring = false) {
  for (size_t i = 0; i + 1 < chain.size(); ++i)
    EXPECT_NEAR(distanceOf(chain[i]->FCenter, chain[i + 1]->FCenter), pitch, tolerance) << "after hole " << i;
  if (ring && chain.size() > 2)
    EXPECT_NEAR(distanceOf(chain.back()->FCenter, chain.front()->FCenter), pitch, tolerance) << "closing gap";
}

// What a row must be whatever else it is: every hole on the drawing, and no
// two neighbours further apart than one and a half pitches.
inline void expectFaithfulRow(const std::vector<TPW_Path*>& row, const std::vector<TPW_Path*>& drawing,
                              double pitch, bool ring = false) {
  for (const TPW_Path* h : row) EXPECT_LT(distanceToDrawing(h->FCenter, drawing), 0.01) << h->FCenter.x << "," << h->FCenter.y;
  for (size_t i = 0; i + 1 < row.size(); ++i)
    EXPECT_LE(distanceOf(row[i]->FCenter, row[i + 1]->FCenter), 1.5 * pitch) << "after hole " << i;
  if (ring && row.size() > 2) EXPECT_LE(distanceOf(row.back()->FCenter, row.front()->FCenter), 1.5 * pitch);
}

inline bool hasHoleAt(const std::vector<TPW_Path*>& holes, const TPointF& p, double tolerance = 0.01) {
  return std::any_of(holes.begin(), holes.end(), [&](TPW_Path* h) { return distanceOf(h->FCenter, p) < tolerance; });
}

}  // namespace stitchtest
