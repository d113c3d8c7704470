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
  TStitchSimulationOptions FShown;

  StitchSimulation() {
    FIron.FBladeType = "D";
    FShown.FShowStitchPattern = true;
  }

  // Holes with ids `ids`, 4 mm apart, each linked to the next.
  std::vector<TPW_Path*> row(std::vector<int> ids, float x0 = 0) {
    std::vector<TPW_Path*> out;
    for (int id : ids) {
      auto s = std::make_unique<TPW_Path>(36, 0xFFFFFFFF, 1.0f, TStrokeDash::Dot, id);
      s->createStichPath(TPointF(x0 + 4.0f * out.size(), 0), false, &FIron, 0, 0);
      if (!out.empty()) out.back()->FNextStitchID = id;
      out.push_back(s.get());
      FShapes.push_back(std::move(s));
    }
    return out;
  }

  std::vector<const TPW_Path*> all() const {
    std::vector<const TPW_Path*> out;
    for (const auto& s : FShapes) out.push_back(s.get());
    return out;
  }

  // "from>to:index" for each stitch.
  std::string trace(const TStitchSimulation& sim) const {
    std::string t;
    for (const auto& s : sim.FStitches)
      t += std::to_string(s.FFromID) + ">" + std::to_string(s.FToID) + ":" +
           std::to_string(s.FIndexInRow) + " ";
    return t;
  }
};

}  // namespace

TEST_F(StitchSimulation, RowsOpenThenClosedWhateverTheListOrder) {
  auto open = row({3, 2, 1});  // sewn 3, 2, 1; listed first
  std::swap(FShapes[0], FShapes[2]);  // list order now 1, 2, 3
  auto loop = row({7, 8, 9}, 50);
  loop[2]->FNextStitchID = 7;
  auto broken = row({20, 21}, 100);
  broken[1]->FNextStitchID = 77;  // a hole that is gone
  auto self = row({30}, 150);
  self[0]->FNextStitchID = 30;
  EXPECT_EQ(trace(buildStitchSimulation(all(), FShown)), "3>2:0 2>1:1 20>21:0 7>8:0 8>9:1 9>7:2 ");
}

TEST_F(StitchSimulation, WithTheSimulatorOffOnlyHolesThatAlwaysShow) {
  auto h = row({1, 2, 3, 4});
  EXPECT_TRUE(buildStitchSimulation(all(), TStitchSimulationOptions{}).FStitches.empty());
  h[3]->FAlwaysShowStitchSimulator = true;
  h[1]->FThreadColor = 0xFF8B4513;
  TStitchSimulationOptions o;
  o.FStitchColor = 0xFFFFFF00;
  TStitchSimulation sim = buildStitchSimulation(all(), o);
  EXPECT_EQ(trace(sim), "3>4:2 ");  // still counted along the whole row
  EXPECT_EQ(sim.FStitches[0].FColor, 0xFFFFFF00u);
  h[2]->FAlwaysShowStitchSimulator = true;
  sim = buildStitchSimulation(all(), o);
  EXPECT_EQ(trace(sim), "2>3:1 3>4:2 ");
  EXPECT_EQ(sim.FStitches[0].FColor, 0xFF8B4513u);  // the hole's own thread
}
