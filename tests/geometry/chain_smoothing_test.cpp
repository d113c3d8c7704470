// Smoothing chain junctions: curves yield, lines and arcs stay; G1 keeps
// leg lengths and G2 evens them; cusps and gaps.
#include <gtest/gtest.h>

#include "geometry/chain_smoothing.h"
#include "geometry/shape_ends.h"
#include "shape_factory.h"

namespace {

double legCross(const TPointF& c1, const TPointF& j, const TPointF& c2) {
  return cross(unit(toDPoint(j) - toDPoint(c1)), unit(toDPoint(c2) - toDPoint(j)));
}

}  // namespace

TEST(ChainSmoothing, ShallowKinkBecomesStraightG1KeepsLegsG2EvensThem) {
  for (bool withLegs : {false, true}) {
    auto a = shapes::bezier({0, 0}, {10, 0}, {20, 1}, {30, 0});
    auto b = shapes::bezier({30, 0}, {36, -1}, {50, 0}, {60, 0});
    const double la = distanceOf(a->FBezierCp2, a->FEndPt), lb = distanceOf(b->FBezierCp1, b->FStartPt);
    const TSmoothOutcome out = smoothChain({a.get(), b.get()}, withLegs);
    EXPECT_FALSE(out.FClosedLoop);
    EXPECT_EQ(out.FUpdatedCount, withLegs ? 4 : 2);
    EXPECT_NEAR(legCross(a->FBezierCp2, a->FEndPt, b->FBezierCp1), 0, 1e-6);
    const double na = distanceOf(a->FBezierCp2, a->FEndPt), nb = distanceOf(b->FBezierCp1, b->FStartPt);
    if (withLegs) {
      EXPECT_NEAR(na, (la + lb) / 2, 1e-4);
      EXPECT_NEAR(nb, (la + lb) / 2, 1e-4);
    } else {
      EXPECT_NEAR(na, la, 1e-4);
      EXPECT_NEAR(nb, lb, 1e-4);
    }
  }
}

TEST(ChainSmoothing, CurveBetweenLinesTurnsBothLegsLinesStay) {
  auto in = shapes::line({-20, 0}, {0, 0});
  auto c = shapes::bezier({0, 0}, {5, 5}, {10, 5}, {15, 0});
  auto out = shapes::line({15, 0}, {15, 20});
  const TSmoothOutcome r = smoothChain({in.get(), c.get(), out.get()}, false);
  EXPECT_EQ(r.FChanged, std::vector<TPW_Path*>{c.get()});
  EXPECT_NEAR(c->FBezierCp1.y, 0, 1e-5);
  EXPECT_NEAR(c->FBezierCp1.x, std::sqrt(50.0), 1e-4);
  EXPECT_NEAR(c->FBezierCp2.x, 15, 1e-5);
  EXPECT_EQ(in->FEndPt, TPointF(0, 0));
  EXPECT_EQ(out->FStartPt, TPointF(15, 0));
}

TEST(ChainSmoothing, CuspStaysAndAGapOfFourTenthsIsAJunction) {
  auto a = shapes::bezier({0, 0}, {10, 0}, {20, 0}, {30, 0});
  auto back = shapes::bezier({30, 0}, {20, 0}, {10, 5}, {0, 5});
  EXPECT_TRUE(smoothChain({a.get(), back.get()}, true).FChanged.empty());

  auto b = shapes::bezier({30.4f, 0.3f}, {40, 3}, {50, 0}, {60, 0});
  const TSmoothOutcome r = smoothChain({a.get(), b.get()}, false);
  EXPECT_EQ(r.FUpdatedCount, 2);
  EXPECT_EQ(b->FStartPt, TPointF(30.4f, 0.3f));  // the gap stays
  EXPECT_NEAR(legCross(a->FBezierCp2, a->FEndPt, b->FBezierCp1), 0, 1e-6);
}

TEST(ChainSmoothing, GatheredChainRunsInOrderAndCloses) {
  TShapeList doc(nullptr, "en");
  doc.add(shapes::line({0, 0}, {10, 0}, 1), 0);
  doc.add(shapes::line({50, 50}, {60, 50}, 2), 0);
  doc.add(shapes::line({0, 10}, {0, 0}, 3), 0);
  doc.add(shapes::bezier({10, 0}, {12, 4}, {8, 8}, {10.3f, 10}, 4), 0);
  doc.add(shapes::line({10, 10}, {0, 10}, 5), 0);
  const std::vector<TPW_Path*> chain = gatherChain(doc[0], doc);
  std::vector<int> ids;
  for (const TPW_Path* s : chain) ids.push_back(s->FID);
  EXPECT_EQ(ids, (std::vector<int>{1, 4, 5, 3}));
  EXPECT_TRUE(smoothChain(chain, false).FClosedLoop);
  EXPECT_TRUE(mayFormOneChain(chain));
  EXPECT_FALSE(mayFormOneChain({doc[0], doc[1]}));  // apart
  EXPECT_TRUE(gatherChain(doc.findByID(2), doc).size() == 1);
}
