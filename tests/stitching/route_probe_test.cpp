// The walks' fast questions give exactly what the slow, plain way gives:
// a temporary circle through the crossing engine and a scan of every
// interval. Whole trials are compared position by position.
#include <gtest/gtest.h>

#include <random>

#include "stitch_test_support.h"
#include "stitching/closed_walk.h"
#include "stitching/divider_walk.h"
#include "stitching/route_probe.h"

using namespace stitchtest;

namespace {

// A wandering route of lines, arcs and curves joined end to end, the way
// a pattern's edge is drawn.
std::vector<std::unique_ptr<TPW_Path>> wanderingRoute(unsigned seed, int count, TPointF& start, TPointF& end) {
  std::mt19937 rng(seed);
  std::uniform_real_distribution<float> unit(0.0f, 1.0f);
  std::vector<std::unique_ptr<TPW_Path>> out;
  TPointF p(0, 0);
  double heading = 0.0;
  start = p;
  for (int i = 0; i < count; ++i) {
    heading += (unit(rng) - 0.5) * 1.6;
    const double len = 3.0 + unit(rng) * 25.0;
    const TPointF q = TPointF::fromDouble(p.x + len * std::cos(heading), p.y + len * std::sin(heading));
    const int kind = static_cast<int>(unit(rng) * 3.0f);
    if (kind == 0) {
      out.push_back(shapes::line(p, q));
    } else if (kind == 1) {
      const TPointF c1 = TPointF::fromDouble(p.x + len / 3 * std::cos(heading + 0.6), p.y + len / 3 * std::sin(heading + 0.6));
      const TPointF c2 = TPointF::fromDouble(q.x - len / 3 * std::cos(heading - 0.5), q.y - len / 3 * std::sin(heading - 0.5));
      out.push_back(shapes::bezier(p, c1, c2, q));
    } else {
      // An arc leaving p along the heading, turning left or right.
      const double r = 5.0 + unit(rng) * 20.0;
      const double side = unit(rng) < 0.5 ? 1.0 : -1.0;
      const TPointF c = TPointF::fromDouble(p.x - side * r * std::sin(heading), p.y + side * r * std::cos(heading));
      const float sweep = static_cast<float>(side * (20.0 + unit(rng) * 70.0));
      auto a = shapes::arc(c, static_cast<float>(r), p, sweep);
      heading += sweep * 3.14159265358979 / 180.0;
      out.push_back(std::move(a));
    }
    p = out.back()->FEndPt;
  }
  end = p;
  return out;
}

}  // namespace

TEST(RouteProbe, CircleCrossingsEqualTheCrossingEngines) {
  for (unsigned seed = 1; seed <= 6; ++seed) {
    TPointF a, b;
    auto route = wanderingRoute(seed, 40, a, b);
    TRouteProbe probe(ptrs(route));
    std::mt19937 rng(seed * 77);
    std::uniform_real_distribution<float> jitter(-3.0f, 3.0f), radius(0.5f, 9.0f);
    std::vector<TProbeCrossing> fast, slow;
    int compared = 0;
    for (const auto& s : route) {
      for (int k = 0; k < 6; ++k) {
        const TPointF c(s->FStartPt.x + jitter(rng), s->FStartPt.y + jitter(rng));
        const float r = radius(rng);
        probe.circleCrossings(c, r, fast);
        probe.circleCrossingsReference(c, r, slow);
        ASSERT_EQ(fast.size(), slow.size()) << "seed " << seed;
        for (size_t i = 0; i < fast.size(); ++i) {
          EXPECT_TRUE(fast[i].FPoint.identical(slow[i].FPoint));
          EXPECT_EQ(fast[i].FShape, slow[i].FShape);
        }
        compared += static_cast<int>(fast.size());
      }
    }
    EXPECT_GT(compared, 100);
  }
}

TEST(RouteProbe, DirectionAtAPointEqualsTheScanOfEveryInterval) {
  TPointF a, b;
  auto route = wanderingRoute(9, 60, a, b);
  TRouteProbe probe(ptrs(route));
  int on = 0;
  for (const auto& s : route) {
    for (const TPathInterval& iv : s->getIntervalsFast(false)) {
      for (double u : {0.0, 0.3, 0.5, 1.0}) {
        const TPointF p = TPointF::fromDouble(iv.St.x + (double(iv.Ed.x) - iv.St.x) * u,
                                              iv.St.y + (double(iv.Ed.y) - iv.St.y) * u);
        int s1 = -1, s2 = -1;
        TPointF d1, d2;
        const bool f1 = probe.tangentAt(p, s1, d1), f2 = probe.tangentAtReference(p, s2, d2);
        ASSERT_EQ(f1, f2);
        EXPECT_EQ(s1, s2);
        EXPECT_TRUE(d1.identical(d2));
        on += f1;
      }
    }
  }
  EXPECT_GT(on, 500);
  int s = -1;
  TPointF d;
  EXPECT_FALSE(probe.tangentAt(TPointF(1e4f, 1e4f), s, d));
}

TEST(RouteProbe, WholeTrialsEqualTheReferenceWalk) {
  for (unsigned seed = 11; seed <= 16; ++seed) {
    TPointF a, b;
    auto route = wanderingRoute(seed, 30, a, b);
    std::vector<TPW_Path*> endFirst = ptrs(route);
    std::reverse(endFirst.begin(), endFirst.end());
    const TWalkEnds ends{a, b, route.front()->FEndPt, a};
    TDividerWalk fast(endFirst, ends, nullptr), slow(endFirst, ends, nullptr);
    slow.setReference(true);
    for (float pitch : {2.5f, 3.85f, 4.0f, 6.0f}) {
      TTrial tf, ts;
      const float ef = fast.tryPitch(pitch, false, tf), es = slow.tryPitch(pitch, false, ts);
      fast.fillDirections(tf);
      slow.fillDirections(ts);
      EXPECT_EQ(ef, es) << "seed " << seed << " pitch " << pitch;
      EXPECT_EQ(tf.FGap, ts.FGap);
      ASSERT_EQ(tf.count(), ts.count());
      EXPECT_GT(tf.count(), 5);
      for (int i = 0; i < tf.count(); ++i) {
        EXPECT_TRUE(tf.FPositions[size_t(i)].identical(ts.FPositions[size_t(i)])) << i;
        EXPECT_TRUE(tf.FDirections[size_t(i)].identical(ts.FDirections[size_t(i)])) << i;
      }
    }
  }
}

TEST(RouteProbe, ClosedWalksEqualTheReferenceWalk) {
  // A wandering route closed by a line back to its start.
  for (unsigned seed = 21; seed <= 24; ++seed) {
    TPointF a, b;
    auto route = wanderingRoute(seed, 12, a, b);
    route.push_back(shapes::line(b, a));
    TClosedWalk fast(ptrs(route), a), slow(ptrs(route), a);
    slow.setReference(true);
    for (float pitch : {3.0f, 4.0f}) {
      int cf = 0, cs = 0;
      const float gf = fast.walkClosedPath(cf, pitch, nullptr);
      const float gs = slow.walkClosedPath(cs, pitch, nullptr);
      EXPECT_EQ(gf, gs);
      ASSERT_EQ(cf, cs) << "seed " << seed;
      for (size_t i = 0; i < fast.positions().size(); ++i)
        EXPECT_TRUE(fast.positions()[i].identical(slow.positions()[i])) << i;
    }
  }
}
