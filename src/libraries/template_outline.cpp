#include "libraries/template_outline.h"

#include <cstdio>

namespace {

void piece(std::string& out, const TPointF& s, const TPointF& c1, const TPointF& c2, const TPointF& e) {
  char buf[256];
  std::snprintf(buf, sizeof buf, "M%.4f,%.4f C%.4f,%.4f %.4f,%.4f %.4f,%.4f ", double(s.x), double(s.y),
                double(c1.x), double(c1.y), double(c2.x), double(c2.y), double(e.x), double(e.y));
  out += buf;
}

void straight(std::string& out, const TPointF& s, const TPointF& e) {
  if (s.identical(e)) return;
  const double dx = double(e.x) - s.x, dy = double(e.y) - s.y;
  piece(out, s, TPointF::fromDouble(s.x + dx / 3, s.y + dy / 3), TPointF::fromDouble(s.x + 2 * dx / 3, s.y + 2 * dy / 3), e);
}

// Every segment of a path, closing lines included.
void walkPath(std::string& out, const TPathData& data) {
  const auto& pts = data.points();
  TPointF cur, start;
  for (size_t i = 0; i < pts.size(); ++i) {
    const TPathPoint& p = pts[i];
    switch (p.Kind) {
      case TPathPointKind::MoveTo:
        cur = start = p.Point;
        break;
      case TPathPointKind::LineTo:
        straight(out, cur, p.Point);
        cur = p.Point;
        break;
      case TPathPointKind::CurveTo:
        if (i + 2 < pts.size()) {
          piece(out, cur, p.Point, pts[i + 1].Point, pts[i + 2].Point);
          cur = pts[i + 2].Point;
          i += 2;
        }
        break;
      case TPathPointKind::Close:
        if (!cur.identical(start)) straight(out, cur, start);
        cur = start;
        break;
    }
  }
}

}  // namespace

std::string templatePathText(const std::vector<const TPW_Path*>& shapes) {
  std::string out;
  for (const TPW_Path* s : shapes) {
    if (!s) continue;
    // Lines, curves and arcs from their defining points: their path data
    // is flattened for painting.
    if (s->FShapeType == ShapeType::Line) {
      straight(out, s->FStartPt, s->FEndPt);
    } else if (s->FShapeType == ShapeType::Bezier) {
      piece(out, s->FStartPt, s->FBezierCp1, s->FBezierCp2, s->FEndPt);
    } else if (s->FShapeType == ShapeType::Arc) {
      auto copy = s->createCopy();
      std::vector<std::unique_ptr<TPW_Path>> pieces = copy->splitArc();
      pieces.push_back(std::move(copy));
      for (auto& p : pieces) {
        p->convertArcToBezier();
        piece(out, p->FStartPt, p->FBezierCp1, p->FBezierCp2, p->FEndPt);
      }
    } else if (s->FShapeType == ShapeType::Ellipse) {
      TPathData e;
      const double rx = s->FWidth / 2.0, ry = s->FHeight / 2.0;
      e.AddEllipse(TRectF(float(s->FCenter.x - rx), float(s->FCenter.y - ry), float(s->FCenter.x + rx),
                          float(s->FCenter.y + ry)));
      if (s->FRotation != 0)
        e.ApplyMatrix(TMatrix::translation(-s->FCenter.x, -s->FCenter.y) *
                      TMatrix::rotation(s->FRotation * 3.14159265358979323846 / 180.0) *
                      TMatrix::translation(s->FCenter.x, s->FCenter.y));
      walkPath(out, e);
    } else {
      walkPath(out, s->FData);
    }
  }
  return out;
}

std::unique_ptr<TPW_Path> mergeIntoTemplate(const std::vector<const TPW_Path*>& shapes, const std::string& name) {
  const std::string text = templatePathText(shapes);
  if (text.empty() || shapes.empty()) return nullptr;
  const TPW_Path& first = *shapes.front();
  auto t = std::make_unique<TPW_Path>(first.FPalletIndex, first.FColor, first.FThickness, first.FDash, 0);
  t->FShapeType = ShapeType::Other;
  t->FData.setData(text);
  t->resetBoundary();
  t->FName = name;
  t->FGUID = TGUID::create();
  t->FLayerID = first.FLayerID;
  t->FSelected = true;
  t->getBoundary(true);
  return t;
}
