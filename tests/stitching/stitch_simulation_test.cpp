// Where the simulated thread lies along chained holes.
#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "document/pw_path.h"
#include "stitching/pricking_iron.h"
#include "stitching/stitch_simulation.h"

namespace {

class StitchSimulation : public ::testing::Test {
 protected:
  TPrickingIron FIron;
  std::vector<std::unique_ptr<TPW_Path>> FShapes;

  StitchSimulation() {
    FIron.FBladeType = "D";
    bladeDefaults("D", FIron.FWidth, FIron.FHeight, FIron.FAngle);
  }

  TPW_Path* hole(int id, float x) {
    auto s = std::make_unique<TPW_Path>(36, 0xFFFFFFFF, 1.0f, TStrokeDash::Dot, id);
    s->createStichPath(TPointF(x, 0), false, &FIron, 0, 0);
    FShapes.push_back(std::move(s));
    return FShapes.back().get();
  }

  static void link(TPW_Path* a, TPW_Path* b) {
    a->FNextStitchID = b->FID;
    b->FPrevStitchID = a->FID;
  }

  std::vector<const TPW_Path*> all() const {
    std::vector<const TPW_Path*> out;
    for (const auto& s : FShapes) out.push_back(s.get());
    return out;
  }

  static TStitchSimulationOptions shown() {
    TStitchSimulationOptions o;
    o.FShowStitchPattern = true;
    return o;
  }
};

}  // namespace

TEST_F(StitchSimulation, ARowRunsFromEachExitToTheNextEntry) {
  TPW_Path* a = hole(1, 0);
  TPW_Path* b = hole(2, 4);
  TPW_Path* c = hole(3, 8);
  link(a, b);
  link(b, c);
  const TStitchSimulation sim = buildStitchSimulation(all(), shown());
  ASSERT_EQ(sim.FStitches.size(), 2u);
  EXPECT_TRUE(sim.FStitches[0].FFrom.identical(a->FStitchOut));
  EXPECT_TRUE(sim.FStitches[0].FTo.identical(b->FStitchIn));
  EXPECT_EQ(sim.FStitches[0].FFromID, 1);
  EXPECT_EQ(sim.FStitches[0].FToID, 2);
  EXPECT_TRUE(sim.FStitches[0].isEven());
  EXPECT_TRUE(sim.FStitches[1].FFrom.identical(b->FStitchOut));
  EXPECT_EQ(sim.FStitches[1].FIndexInRow, 1);
  EXPECT_FALSE(sim.FStitches[1].isEven());
  EXPECT_EQ(sim.FThickness, 3.0f);
  EXPECT_EQ(sim.FOpacity, 1.0f);
}

TEST_F(StitchSimulation, RowsStartAtTheirFirstHoleWhateverTheListOrder) {
  // Listed backwards; two rows; a line between them is passed over.
  TPW_Path* c = hole(3, 8);
  TPW_Path* b = hole(2, 4);
  auto line = std::make_unique<TPW_Path>(0, 0xFFFFFFFF, 1.0f, TStrokeDash::Solid, 9);
  line->drawLinePath(TPointF(0, 0), TPointF(9, 9));
  line->FNextStitchID = 2;
  FShapes.push_back(std::move(line));
  TPW_Path* a = hole(1, 0);
  TPW_Path* x = hole(10, 50);
  TPW_Path* y = hole(11, 54);
  link(a, b);
  link(b, c);
  link(x, y);
  const TStitchSimulation sim = buildStitchSimulation(all(), shown());
  ASSERT_EQ(sim.FStitches.size(), 3u);
  EXPECT_EQ(sim.FStitches[0].FFromID, 1);
  EXPECT_EQ(sim.FStitches[0].FIndexInRow, 0);
  EXPECT_EQ(sim.FStitches[1].FFromID, 2);
  EXPECT_EQ(sim.FStitches[1].FIndexInRow, 1);
  EXPECT_EQ(sim.FStitches[2].FFromID, 10);
  EXPECT_EQ(sim.FStitches[2].FIndexInRow, 0);
}

TEST_F(StitchSimulation, ClosedRowEndsWithTheStitchThatClosesIt) {
  TPW_Path* a = hole(1, 0);
  TPW_Path* b = hole(2, 4);
  TPW_Path* c = hole(3, 8);
  link(a, b);
  link(b, c);
  link(c, a);
  const TStitchSimulation sim = buildStitchSimulation(all(), shown());
  ASSERT_EQ(sim.FStitches.size(), 3u);
  EXPECT_EQ(sim.FStitches[2].FFromID, 3);
  EXPECT_EQ(sim.FStitches[2].FToID, 1);
  EXPECT_EQ(sim.FStitches[2].FIndexInRow, 2);
}

TEST_F(StitchSimulation, BrokenLinksEndTheRowWithoutLooping) {
  TPW_Path* a = hole(1, 0);
  TPW_Path* b = hole(2, 4);
  TPW_Path* self = hole(3, 8);
  link(a, b);
  b->FNextStitchID = 77;  // gone
  self->FNextStitchID = 3;
  TPW_Path* d = hole(4, 12);
  TPW_Path* e = hole(5, 16);
  link(d, e);
  link(e, d);
  d->FNextStitchID = 5;  // a two-hole loop
  const TStitchSimulation sim = buildStitchSimulation(all(), shown());
  ASSERT_EQ(sim.FStitches.size(), 3u);
  EXPECT_EQ(sim.FStitches[0].FFromID, 1);
  EXPECT_EQ(sim.FStitches[1].FFromID, 4);
  EXPECT_EQ(sim.FStitches[2].FFromID, 5);
  EXPECT_EQ(sim.FStitches[2].FToID, 4);
}

TEST_F(StitchSimulation, OnlyHolesThatAlwaysShowWhenTheSimulatorIsOff) {
  TPW_Path* a = hole(1, 0);
  TPW_Path* b = hole(2, 4);
  TPW_Path* c = hole(3, 8);
  TPW_Path* d = hole(4, 12);
  link(a, b);
  link(b, c);
  link(c, d);
  EXPECT_TRUE(buildStitchSimulation(all(), TStitchSimulationOptions{}).FStitches.empty());
  d->FAlwaysShowStitchSimulator = true;
  const TStitchSimulation sim = buildStitchSimulation(all(), TStitchSimulationOptions{});
  ASSERT_EQ(sim.FStitches.size(), 1u);
  EXPECT_EQ(sim.FStitches[0].FFromID, 3);
  EXPECT_EQ(sim.FStitches[0].FIndexInRow, 2);  // counted along the whole row
}

TEST_F(StitchSimulation, ThreadColourOfTheHoleElseOfTheOptions) {
  TPW_Path* a = hole(1, 0);
  TPW_Path* b = hole(2, 4);
  TPW_Path* c = hole(3, 8);
  link(a, b);
  link(b, c);
  b->FThreadColor = 0xFF8B4513;
  TStitchSimulationOptions o = shown();
  o.FStitchColor = 0xFFFFFF00;
  o.FStitchThickness = 2;
  o.FStitchOpacity = 0.5f;
  const TStitchSimulation sim = buildStitchSimulation(all(), o);
  ASSERT_EQ(sim.FStitches.size(), 2u);
  EXPECT_EQ(sim.FStitches[0].FColor, 0xFFFFFF00u);
  EXPECT_EQ(sim.FStitches[1].FColor, 0xFF8B4513u);
  EXPECT_EQ(sim.FThickness, 2.0f);
  EXPECT_EQ(sim.FOpacity, 0.5f);
}
