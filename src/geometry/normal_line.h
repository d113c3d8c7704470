// Straight lines in normal form a x + b y + c = 0, for the tangent tools.
// With (a, b) of unit length, a x + b y + c is the signed distance of a
// point from the line.
#pragma once

#include "document/types.h"

struct TNormalLine {
  double a = 0.0;
  double b = 0.0;
  double c = 0.0;
};

// Divides all three by hypot(a, b); a line whose (a, b) is shorter than
// 1e-9 becomes (0, 0, 0).
TNormalLine normalizeLine(const TNormalLine& l);
// a x + b y + c: the signed distance when the line is normalised.
double signedDistance(const TNormalLine& l, double x, double y);
double signedDistance(const TNormalLine& l, const TPointF& p);
// The foot of the point on the (normalised) line: p - (a, b) times the
// signed distance.
TPointF footOfPoint(const TNormalLine& l, const TPointF& p);
// The normalised line through two points, directed from p0 to p1 (a = -dy,
// b = dx over the length). Two points closer than 1e-9 give the vertical
// line through p0.
TNormalLine lineThroughPoints(const TPointF& p0, const TPointF& p1);
