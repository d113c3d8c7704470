// Shapes for the geometry tests, built the way the drawing tools build them.
#pragma once

#include <cmath>
#include <memory>
#include <random>

#include "document/point_helpers.h"
#include "document/pw_path.h"
#include "document/shape_list.h"

namespace shapes {

inline std::unique_ptr<TPW_Path> blank(int id = 1) {
  return std::make_unique<TPW_Path>(0, claBlack, 0.3f, TStrokeDash::Solid, id);
}

inline std::unique_ptr<TPW_Path> line(TPointF a, TPointF b, int id = 1) {
  auto s = blank(id);
  s->drawLinePath(a, b);
  return s;
}

// A circular arc about `center` from `start`, turning `sweep` degrees
// (positive runs clockwise on the screen); the end is worked out.
inline std::unique_ptr<TPW_Path> arc(TPointF center, float radius, TPointF start, float sweep,
                                     int id = 1) {
  auto s = blank(id);
  const TPointF end = rotatePointAbout(start, sweep, center);
  s->drawArcPath(center, TPointF(radius, radius), start, end, sweep);
  return s;
}

// The arc of radius r about center starting at angle a0 (degrees).
inline std::unique_ptr<TPW_Path> arcAt(TPointF center, float r, double a0, float sweep, int id = 1) {
  const TPointF start = rotatePointAbout(TPointF(center.x + r, center.y), a0, center);
  return arc(center, r, start, sweep, id);
}

inline std::unique_ptr<TPW_Path> ellipse(TPointF center, float w, float h, int id = 1) {
  auto s = blank(id);
  s->drawEllipsePath(center, w, h);
  return s;
}

inline std::unique_ptr<TPW_Path> circle(TPointF center, float diameter, int id = 1) {
  return ellipse(center, diameter, diameter, id);
}

inline std::unique_ptr<TPW_Path> bezier(TPointF p0, TPointF p1, TPointF p2, TPointF p3, int id = 1) {
  auto s = blank(id);
  s->drawBezierPath(p0, p1, p2, p3);
  return s;
}

inline std::unique_ptr<TPW_Path> dot(TPointF center, float radius, int id = 1) {
  auto s = blank(id);
  s->drawDotPath(center, radius);
  return s;
}

// A document of mixed shapes scattered over a square, with the joints a
// drawing has: ends snapped to earlier ends, lines along earlier lines,
// circles through earlier points, and a few shapes that never meet.
// Layer 1 is independent, layer 2 hidden.
inline void fillRandomDocument(TShapeList& doc, unsigned seed, int count, float size = 120.0f) {
  std::mt19937 rng(seed);
  std::uniform_real_distribution<float> pos(0.0f, size), len(0.5f, 40.0f), unit(0.0f, 1.0f);
  std::uniform_int_distribution<int> kind(0, 11);
  doc.addLayer(-1, "", true);
  doc.addLayer(-1, "", true);
  doc.SetIsIndependentLayer(1, true);
  doc.SetlayerVisible(2, false);
  std::vector<TPointF> ends;
  // Snapped to an earlier end, stopped just short of one, or anywhere.
  auto somePoint = [&]() {
    const float draw = unit(rng);
    if (ends.empty() || draw > 0.5f) return TPointF(pos(rng), pos(rng));
    const TPointF e = ends[rng() % ends.size()];
    if (draw < 0.3f) return e;
    return TPointF(e.x + (unit(rng) - 0.5f) * 0.2f, e.y + (unit(rng) - 0.5f) * 0.2f);
  };
  auto near = [&](TPointF p) {
    const float a = unit(rng) * 6.2831853f, l = len(rng);
    return TPointF::fromDouble(p.x + l * std::cos(a), p.y + l * std::sin(a));
  };
  for (int i = 0; i < count; ++i) {
    std::unique_ptr<TPW_Path> s;
    const TPointF p = somePoint();
    const int k = kind(rng);
    const TPointF q = near(p);
    if (k < 3) {
      s = line(p, q);
    } else if (k == 3) {  // straight on through an earlier point
      s = line(p, TPointF::fromDouble(2.0 * q.x - p.x, 2.0 * q.y - p.y));
    } else if (k < 6) {  // an arc or a circle through an earlier point
      s = arc(q, distanceOf(q, p), p, (unit(rng) - 0.5f) * 700.0f);
    } else if (k < 8) {
      s = circle(q, 2.0f * distanceOf(q, p) + (unit(rng) < 0.5f ? 0.0f : unit(rng) * 4.0f));
    } else if (k < 10) {
      s = bezier(p, q, near(p), near(p));
    } else if (k == 10) {
      s = ellipse(p, len(rng), len(rng));
    } else {
      s = unit(rng) < 0.5f ? dot(p, 1.0f) : line(p, q);
      s->FIsDimensionLine = unit(rng) < 0.3f;
    }
    ends.push_back(s->FStartPt);
    ends.push_back(s->FEndPt);
    const float layerDraw = unit(rng);
    const int layer = layerDraw < 0.7f ? 0 : (layerDraw < 0.9f ? 1 : 2);
    s->updateId(doc.getNextID());
    doc.add(std::move(s), layer);
  }
}

}  // namespace shapes
