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

inline std::unique_ptr<TPW_Path> circle(TPointF center, float diameter, int id = 1) {
  auto s = blank(id);
  s->drawEllipsePath(center, diameter, diameter);
  return s;
}

inline std::unique_ptr<TPW_Path> ellipse(TPointF center, float w, float h, int id = 1) {
  auto s = blank(id);
  s->drawEllipsePath(center, w, h);
  return s;
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
  auto somePoint = [&]() {
    if (!ends.empty() && unit(rng) < 0.35f) return ends[rng() % ends.size()];
    return TPointF(pos(rng), pos(rng));
  };
  auto near = [&](TPointF p) {
    const float a = unit(rng) * 6.2831853f, l = len(rng);
    return TPointF::fromDouble(p.x + l * std::cos(a), p.y + l * std::sin(a));
  };
  for (int i = 0; i < count; ++i) {
    std::unique_ptr<TPW_Path> s;
    const TPointF p = somePoint();
    switch (kind(rng)) {
      case 0:
      case 1:
      case 2:
        s = line(p, near(p));
        break;
      case 3: {  // straight on from an earlier point, or a copy of a line
        const TPointF q = near(p);
        s = line(p, TPointF::fromDouble(2.0 * q.x - p.x, 2.0 * q.y - p.y));
        break;
      }
      case 4:
      case 5: {
        const TPointF c = near(p);
        const float r = distanceOf(c, p);
        const float sweep = (unit(rng) - 0.5f) * 700.0f;
        s = arc(c, r, p, sweep);
        break;
      }
      case 6:
      case 7: {
        const TPointF c = near(p);
        s = circle(c, 2.0f * distanceOf(c, p) + (unit(rng) < 0.5f ? 0.0f : unit(rng) * 4.0f));
        break;
      }
      case 8:
      case 9:
        s = bezier(p, near(p), near(p), near(p));
        break;
      case 10:
        s = ellipse(p, len(rng), len(rng));
        break;
      default:
        s = unit(rng) < 0.5f ? dot(p, 1.0f) : line(p, near(p));
        if (unit(rng) < 0.3f) s->FIsDimensionLine = true;
        break;
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
