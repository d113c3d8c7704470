// A shape's path in pixels: exact where the screen can show a difference,
// thinned where it cannot.
#include <gtest/gtest.h>

#include <cmath>

#include "document/pw_path.h"
#include "surface/screen_path.h"

namespace {

// Farthest distance of any point of `dense` from the polyline `thin`.
double farthestFrom(const TPathData& dense, const TPathData& thin) {
  double worst = 0;
  for (const auto& p : dense.points()) {
    double best = 1e9;
    for (size_t i = 1; i < thin.Count(); ++i) {
      const TPointF a = thin[i - 1].Point, b = thin[i].Point;
      const double dx = double(b.x) - a.x, dy = double(b.y) - a.y;
      const double t = std::clamp(((double(p.Point.x) - a.x) * dx + (double(p.Point.y) - a.y) * dy) / (dx * dx + dy * dy), 0.0, 1.0);
      best = std::min(best, std::hypot(a.x + t * dx - p.Point.x, a.y + t * dy - p.Point.y));
    }
    worst = std::max(worst, best);
  }
  return worst;
}

TEST(ScreenPath, ArcsAreThinnedOnlyWhereThePixelsCannotTell) {
  TPW_Path arc(0, 0xFFFFFFFF, 1, TStrokeDash::Solid, 1);
  arc.drawArcPath(TPointF(25, 15), TPointF(8, 8), TPointF(17, 15), TPointF(25, 7), 90);
  const size_t n = arc.FData.Count();
  ASSERT_GT(n, 30u);
  TPathData far, near, full;
  toScreenPath(arc.FData, TPointF(1.1f, 1.1f), TPointF(-3.5f, 12.25f), far);
  toScreenPath(arc.FData, TPointF(20, 20), TPointF(-3.5f, 12.25f), near);
  // A third of a pixel between points far out: most go, the ends stay,
  // and the arc drawn stays within a twentieth of a pixel of the full one.
  for (const auto& p : arc.FData.points())
    full.mutablePoints().push_back({p.Kind, TPointF(static_cast<float>(p.Point.x * 1.1f - 3.5), static_cast<float>(p.Point.y * 1.1f + 12.25))});
  EXPECT_LT(far.Count(), n / 2);
  EXPECT_TRUE(far[0].Point.identical(full[0].Point));
  EXPECT_TRUE(far[far.Count() - 1].Point.identical(full[n - 1].Point));
  EXPECT_LT(farthestFrom(full, far), 0.05);
  // Six pixels apart close up: only the flattening's repeated first point
  // goes, the others stand exactly.
  ASSERT_EQ(near.Count(), n - 1);
  for (size_t i = 1; i < near.Count(); ++i)
    EXPECT_TRUE(near[i].Point.identical(TPointF(static_cast<float>(arc.FData[i + 1].Point.x * 20.0 - 3.5),
                                                 static_cast<float>(arc.FData[i + 1].Point.y * 20.0 + 12.25))));
}

TEST(ScreenPath, CornersMovesCurvesAndClosesStand) {
  TPathData d;
  d.MoveTo(TPointF(0, 0));
  d.LineTo(TPointF(0.3f, 0));
  d.LineTo(TPointF(0.6f, 0));  // a corner, a quarter pixel off the line past it
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
  EXPECT_EQ(kinds, "MLLMLCCCLZ");  // (0.3, 0), (0.6, 0.3) and (1.0, 0.6) went
  EXPECT_TRUE(out[1].Point.identical(TPointF(0.6f, 0)));
  EXPECT_TRUE(out[8].Point.identical(TPointF(1.1f, 0.6f)));
  // The storage is reused: a shorter path leaves nothing of the longer.
  TPathData line;
  line.MoveTo(TPointF(1, 2));
  line.LineTo(TPointF(3, 4));
  toScreenPath(line, TPointF(10, 10), TPointF(5, 7), out);
  ASSERT_EQ(out.Count(), 2u);
  EXPECT_TRUE(out[1].Point.identical(TPointF(35, 47)));
}

}  // namespace
