// Path data: the ordered list of path points every shape keeps ready for
// painting, hit tests, lengths and export.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "document/types.h"

enum class TPathPointKind { MoveTo = 0, LineTo = 1, CurveTo = 2, Close = 3 };

struct TPathPoint {
  TPathPointKind Kind = TPathPointKind::MoveTo;
  TPointF Point;
};

// A 2-D affine matrix in row-vector form: x' = x m11 + y m21 + m31,
// y' = x m12 + y m22 + m32.
struct TMatrix {
  double m11 = 1, m12 = 0, m21 = 0, m22 = 1, m31 = 0, m32 = 0;

  static TMatrix identity() { return TMatrix{}; }
  static TMatrix translation(double dx, double dy);
  static TMatrix scaling(double sx, double sy);
  static TMatrix rotation(double radians);  // positive turns clockwise on the y-down screen
  TMatrix operator*(const TMatrix& o) const;  // this first, then o
  TPointF apply(const TPointF& p) const;
};

// The points are shared between copies until one of them changes (copy on
// write), so that copies of a document, as undo keeps them, cost little for
// the shapes that did not change. A reference from mutablePoints() must not
// be kept across a copy of the path.
class TPathData {
 public:
  TPathData() = default;

  // Builders. A cubic is three CurveTo entries: control 1, control 2, end.
  void MoveTo(const TPointF& p);
  void LineTo(const TPointF& p);
  void CurveTo(const TPointF& c1, const TPointF& c2, const TPointF& p);
  // Adds a Close entry whose point is the start of the current figure.
  void ClosePath();
  void Clear() { FShared.reset(); }
  void Translate(double dx, double dy);
  void ApplyMatrix(const TMatrix& m);

  // MoveTo the left middle of the rectangle, then four cubics through top,
  // right, bottom and back to the left middle; no Close entry.
  void AddEllipse(const TRectF& rect);
  // Angles in degrees; radius holds the x and y radius. Pieces of at most a
  // quarter turn, each one cubic; the first starts with MoveTo, later ones
  // with LineTo of their start.
  void AddArc(const TPointF& center, const TPointF& radius, double startAngle, double sweepAngle);

  // Replaces every cubic by straight pieces, in place (see the .cpp for the
  // exact subdivision rule). Flatness below 0.05 is raised to 0.05.
  void Flatten(double flatness);

  // Text form: "M x,y ", "L x,y ", "C x,y x,y x,y ", "Z ", each item ending
  // in a blank.
  std::string getData() const;
  // Parses SVG path syntax and replaces the entries. Parsing stops at the
  // first error, keeping what came before it, as SVG renderers do; the
  // result tells whether the whole text was read.
  bool setData(std::string_view text);

  size_t Count() const { return points().size(); }
  bool isEmpty() const { return points().empty(); }
  const TPathPoint& operator[](size_t i) const { return points()[i]; }
  const std::vector<TPathPoint>& points() const { return FShared ? *FShared : emptyPoints(); }
  // The points for changing in place; detaches this path from its copies.
  std::vector<TPathPoint>& mutablePoints();
  // True when both paths still share one unchanged set of points.
  bool sharesPointsWith(const TPathData& o) const { return FShared && FShared == o.FShared; }
  // Point of the last entry, (0,0) for an empty path.
  TPointF LastPoint() const;
  // Bounding box of all MoveTo, LineTo and CurveTo points, control points
  // included; (0,0,0,0) for an empty path.
  TRectF GetBounds() const;

  bool operator==(const TPathData& o) const;

 private:
  std::shared_ptr<std::vector<TPathPoint>> FShared;  // null when empty
  static const std::vector<TPathPoint>& emptyPoints();
  void push(TPathPointKind kind, const TPointF& p) { mutablePoints().push_back({kind, p}); }
  TPointF figureStart() const;
};

// An SVG number at `pos` of `text`: sign, digits, fraction, exponent ("1.5.5"
// is two numbers, "1-2" too). Its value, and `pos` moved past it; false, with
// `pos` kept, when no number starts there.
bool readSvgNumber(std::string_view text, size_t& pos, double& value);

// Point of a cubic at t, computed in doubles.
TPointF cubicPointAt(const TPointF& p0, const TPointF& p1, const TPointF& p2, const TPointF& p3,
                     double t);
