// A pattern-like document for the benchmarks: pieces laid out side by side
// as on a cutting sheet, each a rounded outline with its stitch line 3 mm
// inside, a curved flap with its own stitch line, snap and rivet holes and
// a fold line across.
#pragma once

#include <cmath>
#include <memory>
#include <random>

#include "document/point_helpers.h"
#include "document/pw_path.h"
#include "document/shape_list.h"

namespace bench_doc {

inline std::unique_ptr<TPW_Path> newShape(TShapeList& doc) {
  return std::make_unique<TPW_Path>(0, claBlack, 0.3f, TStrokeDash::Solid, doc.getNextID());
}

inline void addLine(TShapeList& doc, TPointF a, TPointF b) {
  auto s = newShape(doc);
  s->drawLinePath(a, b);
  doc.add(std::move(s), 0);
}

inline void addArc(TShapeList& doc, TPointF c, float r, double a0, float sweep) {
  auto s = newShape(doc);
  const TPointF st = rotatePointAbout(TPointF(c.x + r, c.y), a0, c);
  s->drawArcPath(c, TPointF(r, r), st, rotatePointAbout(st, sweep, c), sweep);
  doc.add(std::move(s), 0);
}

inline void addCircle(TShapeList& doc, TPointF c, float d) {
  auto s = newShape(doc);
  s->drawEllipsePath(c, d, d);
  doc.add(std::move(s), 0);
}

inline void addBezier(TShapeList& doc, TPointF a, TPointF b, TPointF c, TPointF d) {
  auto s = newShape(doc);
  s->drawBezierPath(a, b, c, d);
  doc.add(std::move(s), 0);
}

// A rectangle with rounded corners: four lines and four quarter arcs
// meeting end to end, clockwise on the screen.
inline void addRoundedRect(TShapeList& doc, float x, float y, float w, float h, float r) {
  addLine(doc, TPointF(x + r, y), TPointF(x + w - r, y));
  addArc(doc, TPointF(x + w - r, y + r), r, -90, 90);
  addLine(doc, TPointF(x + w, y + r), TPointF(x + w, y + h - r));
  addArc(doc, TPointF(x + w - r, y + h - r), r, 0, 90);
  addLine(doc, TPointF(x + w - r, y + h), TPointF(x + r, y + h));
  addArc(doc, TPointF(x + r, y + h - r), r, 90, 90);
  addLine(doc, TPointF(x, y + h - r), TPointF(x, y + r));
  addArc(doc, TPointF(x + r, y + r), r, 180, 90);
}

// One piece: 22 shapes.
inline void addPiece(TShapeList& doc, float x, float y, std::mt19937& rng) {
  std::uniform_real_distribution<float> wd(50, 110), hd(40, 90);
  const float w = wd(rng), h = hd(rng), r = 8, inset = 3;
  addRoundedRect(doc, x, y, w, h, r);
  addRoundedRect(doc, x + inset, y + inset, w - 2 * inset, h - 2 * inset, r - inset);
  // The flap: a curve across the top third and its stitch line below it.
  const float fy = y + h / 3;
  addBezier(doc, TPointF(x, fy), TPointF(x + w / 3, fy + 15), TPointF(x + 2 * w / 3, fy + 15),
            TPointF(x + w, fy));
  addBezier(doc, TPointF(x + inset, fy + inset), TPointF(x + w / 3, fy + 15 + inset),
            TPointF(x + 2 * w / 3, fy + 15 + inset), TPointF(x + w - inset, fy + inset));
  addCircle(doc, TPointF(x + w / 2, fy + 18), 10);  // snap, on the flap's stitch line
  addCircle(doc, TPointF(x + w / 2, y + h - 15), 10);
  addCircle(doc, TPointF(x + 6, y + h / 2), 3);  // rivet over the stitch line
  // Fold line across the whole piece.
  addLine(doc, TPointF(x - 2, y + 2 * h / 3), TPointF(x + w + 2, y + 2 * h / 3));
}

// About `count` shapes of pieces on a sheet.
inline void fill(TShapeList& doc, int count, unsigned seed = 1) {
  std::mt19937 rng(seed);
  const int pieces = (count + 21) / 22;
  const int perRow = static_cast<int>(std::ceil(std::sqrt(double(pieces))));
  for (int i = 0; i < pieces; ++i) addPiece(doc, (i % perRow) * 125.0f, (i / perRow) * 105.0f, rng);
}

}  // namespace bench_doc
