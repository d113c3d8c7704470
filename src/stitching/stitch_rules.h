// Small rules every way of laying holes shares: how a hole is turned to
// its row, and the rounding the counts use.
#pragma once

#include "document/types.h"

// The most holes one row may have. Rows are refused beyond it before they
// are walked, and every walk stops there as well.
inline constexpr int kMaxRowHoles = 100000;

// The hole rotation for a row running from `from` to `to`, in degrees, all
// in single precision: a row running straight down is 0. A vertical vector
// (x exactly 0) gives 180 upwards and 0 otherwise.
float rotationOfDirection(const TPointF& from, const TPointF& to);

// Rounds to the nearest whole number, halves to the even neighbour, the way
// the counts of holes are rounded.
long long roundHalfEven(double v);
