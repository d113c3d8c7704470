// Shared pieces of the stitch row tests: a document with its crossings, a
// hole maker over it, and the checks a leatherworker makes of a row.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <memory>
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
  TPrickingIron iron;
  TPW_Path* last = nullptr;

  TDoc() {
    iron.FBladeType = "D";
    iron.FPitch = 4.0f;
    iron.FWidth = 0.8f;
    iron.FHeight = 2.2f;
    iron.FAngle = 32.0f;
  }

  TPW_Path* add(std::unique_ptr<TPW_Path> s, int layer = 0) {
    s->updateId(list.getNextID());
    TPW_Path* raw = s.get();
    list.add(std::move(s), layer);
    collectIntersections(list, crossings, raw);
    return raw;
  }

  // A hole maker that adds to this document.
  std::unique_ptr<TRowHoles> holes(int layer = 0) {
    return std::make_unique<TRowHoles>(
        list, layer, &iron, false, THoleLook{},
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
};

inline std::vector<TPW_Path*> ptrs(const std::vector<std::unique_ptr<TPW_Path>>& v) {
  std::vector<TPW_Path*> out;
  for (const auto& p : v) out.push_back(p.get());
  return out;
}

// Shortest distance from p to the drawn path of the shapes.
inline double distanceToDrawing(const TPointF& p, const std::vector<TPW_Path*>& shapes) {
  double best = 1e300;
  for (const TPW_Path* s : shapes) {
    for (const TRectF& r : s->getIntervals(false)) {
      const double ax = r.Left, ay = r.Top, bx = r.Right, by = r.Bottom;
      const double dx = bx - ax, dy = by - ay, len2 = dx * dx + dy * dy;
      double t = len2 > 0 ? ((p.x - ax) * dx + (p.y - ay) * dy) / len2 : 0.0;
      t = std::clamp(t, 0.0, 1.0);
      best = std::min(best, std::hypot(p.x - (ax + t * dx), p.y - (ay + t * dy)));
    }
  }
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
// `tolerance` of `pitch`.
inline void expectEvenSpacing(const std::vector<TPW_Path*>& chain, double pitch, double tolerance,
                              bool ring = false) {
  for (size_t i = 0; i + 1 < chain.size(); ++i) {
    SCOPED_TRACE(i);
    EXPECT_NEAR(distanceOf(chain[i]->FCenter, chain[i + 1]->FCenter), pitch, tolerance);
  }
  if (ring && chain.size() > 2)
    EXPECT_NEAR(distanceOf(chain.back()->FCenter, chain.front()->FCenter), pitch, tolerance) << "closing gap";
}

inline void expectOnDrawing(const std::vector<TPW_Path*>& holes, const std::vector<TPW_Path*>& shapes,
                            double tolerance = 0.02) {
  for (const TPW_Path* h : holes) EXPECT_LT(distanceToDrawing(h->FCenter, shapes), tolerance);
}

inline bool hasHoleAt(const std::vector<TPW_Path*>& holes, const TPointF& p, double tolerance = 0.01) {
  return std::any_of(holes.begin(), holes.end(), [&](TPW_Path* h) { return distanceOf(h->FCenter, p) < tolerance; });
}

}  // namespace stitchtest
