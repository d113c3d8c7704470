// A shape's path in pixels: exact where the screen can show a difference,
// thinned where it cannot.
#include <gtest/gtest.h>

#include <cmath>

#include "document/pw_path.h"
#include "surface/screen_path.h"

namespace {

double segmentDistance(const TPointF& p, const TPointF& a, const TPointF& b) {
  const double dx = double(b.x) - a.x, dy = double(b.y) - a.y, len2 = dx * dx + dy * dy;
  double t = len2 > 0 ? ((double(p.x) - a.x) * dx + (double(p.y) - a.y) * dy) / len2 : 0;
  t = std::clamp(t, 0.0, 1.0);
  return std::hypot(a.x + t * dx - p.x, a.y + t * dy - p.y);
}

// Farthest distance of any point of `dense` from the polyline `thin`.
double farthestFrom(const TPathData& dense, const TPathData& thin) {
  double worst = 0;
  for (const auto& p : dense.points()) {
    double best = 1e9;
    for (size_t i = 1; i < thin.Count(); ++i) best = std::min(best, segmentDistance(p.Point, thin[i - 1].Point, thin[i].Point));
    worst = std::max(worst, best);
  }
  return worst;
}

TPathData plain(const TPathData& real, const TPointF& s, const TPointF& o) {
  TPathData out;
  for (const auto& p : real.points())
    out.mutablePoints().push_back(
        {p.Kind, TPointF(static_cast<float>(p.Point.x * double(s.x) + o.x), static_cast<float>(p.Point.y * double(s.y) + o.y))});
  return out;
}

TEST(ScreenPath, ArcsAreThinnedOnlyWhereThePixelsCannotTell) {
  TPW_Path arc(0, 0xFFFFFFFF, 1, TStrokeDash::Solid, 1);
  arc.drawArcPath(TPointF(25, 15), TPointF(8, 8), TPointF(17, 15), TPointF(25, 7), 90);
  ASSERT_GT(arc.FData.Count(), 30u);
  const TPointF offset(-3.5f, 12.25f);
  TPathData out;
  // The whole drawing in view: a third of a pixel between points.
  toScreenPath(arc.FData, TPointF(1.1f, 1.1f), offset, out);
  const TPathData full = plain(arc.FData, TPointF(1.1f, 1.1f), offset);
  EXPECT_LT(out.Count(), full.Count() / 2);
  EXPECT_TRUE(out[0].Point.identical(full[0].Point));
  EXPECT_TRUE(out[out.Count() - 1].Point.identical(full[full.Count() - 1].Point));
  EXPECT_LT(farthestFrom(full, out), 0.05);
  // Close up every point a pixel or more from the last stands, exactly
  // where it was.
  toScreenPath(arc.FData, TPointF(20, 20), offset, out);
  const TPathData near = plain(arc.FData, TPointF(20, 20), offset);
  size_t k = 0;
  for (size_t i = 0; i < near.Count(); ++i) {
    const bool close = i > 0 && i + 1 < near.Count() && segmentDistance(near[i].Point, near[i - 1].Point, near[i - 1].Point) < 1.0;
    if (close) continue;
    ASSERT_LT(k, out.Count());
    EXPECT_TRUE(out[k].Point.identical(near[i].Point)) << i;
    EXPECT_EQ(out[k].Kind, near[i].Kind);
    ++k;
  }
  EXPECT_EQ(k, out.Count());
  EXPECT_GE(out.Count(), near.Count() - 2);
}

TEST(ScreenPath, CornersMovesCurvesAndClosesStand) {
  TPathData d;
  d.MoveTo(TPointF(0, 0));
  d.LineTo(TPointF(0.3f, 0));
  d.LineTo(TPointF(0.6f, 0));  // a corner, 0.13 px off the line past it
  d.LineTo(TPointF(0.6f, 0.3f));
  d.LineTo(TPointF(0.6f, 0.6f));
  d.MoveTo(TPointF(0.7f, 0.6f));  // a move, however near
  d.LineTo(TPointF(0.8f, 0.6f));
  d.CurveTo(TPointF(0.85f, 0.6f), TPointF(0.9f, 0.6f), TPointF(0.95f, 0.6f));
  d.LineTo(TPointF(1.0f, 0.6f));
  d.LineTo(TPointF(1.1f, 0.6f));
  d.ClosePath();
  TPathData out;
  toScreenPath(d, TPointF(1, 1), TPointF(0, 0), out);
  std::string kinds;
  for (const auto& p : out.points()) kinds += "MLCZ"[static_cast<int>(p.Kind)];
  // Dropped: the straight (0.3, 0), (0.6, 0.3), and (1.0, 0.6) after the curve.
  EXPECT_EQ(kinds, "MLLMLCCCLZ");
  EXPECT_TRUE(out[1].Point.identical(TPointF(0.6f, 0)));
  EXPECT_TRUE(out[2].Point.identical(TPointF(0.6f, 0.6f)));
  EXPECT_TRUE(out[8].Point.identical(TPointF(1.1f, 0.6f)));
  // The storage is reused: a shorter path leaves nothing of the longer one.
  TPathData line;
  line.MoveTo(TPointF(1, 2));
  line.LineTo(TPointF(3, 4));
  toScreenPath(line, TPointF(10, 10), TPointF(5, 7), out);
  ASSERT_EQ(out.Count(), 2u);
  EXPECT_TRUE(out[1].Point.identical(TPointF(35, 47)));
  TPathData empty;
  toScreenPath(empty, TPointF(10, 10), TPointF(5, 7), out);
  EXPECT_EQ(out.Count(), 0u);
}

}  // namespace
