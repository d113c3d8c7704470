// The sample card holder: its rows of real holes, evenly spaced on the stitch
// lines, chained in sewing order, and the simulated thread lying where the
// holes are.
#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <vector>

#include "app/sample_card_holder.h"
#include "document/shape_list.h"
#include "stitching/iron_groups.h"
#include "stitching/stitch_simulation.h"
#include "stitching/system_irons.h"

namespace {

// Whether p lies inside the closed outline (even-odd rule over its points).
bool insideOutline(const TPathData& outline, const TPointF& p) {
  const auto& pts = outline.points();
  bool inside = false;
  for (size_t i = 0, j = pts.size() - 1; i < pts.size(); j = i++) {
    const TPointF a = pts[i].Point, b = pts[j].Point;
    if ((a.y > p.y) != (b.y > p.y) && p.x < (b.x - a.x) * (p.y - a.y) / (b.y - a.y) + a.x) inside = !inside;
  }
  return inside;
}

double dist(const TPointF& a, const TPointF& b) { return std::hypot(double(a.x) - b.x, double(a.y) - b.y); }

class CardHolderSample : public ::testing::Test {
 protected:
  TPrickingIronGroups irons;
  TShapeList list{nullptr, "en"};
  TPrickingIron* iron = nullptr;
  std::vector<const TPW_Path*> holes;

  void SetUp() override {
    irons.append(buildSystemIronGroups("en"));
    iron = irons.findIron(kCardHolderIronBlade, kCardHolderIronPitch);
    ASSERT_NE(iron, nullptr);
    buildCardHolderSample(list, iron);
    for (const auto& s : list)
      if (s->isType(ShapeType::Hole)) holes.push_back(s.get());
  }

  // The row that starts at `first`, in sewing order.
  std::vector<const TPW_Path*> rowFrom(const TPW_Path* first) const {
    std::vector<const TPW_Path*> row{first};
    for (const TPW_Path* h = list.findByID(first->FNextStitchID); h && h != first;
         h = list.findByID(h->FNextStitchID))
      row.push_back(h);
    return row;
  }
};

TEST_F(CardHolderSample, TwoRowsOfTheSystemsDiamondIron) {
  EXPECT_EQ(list.Count(), 33u + 80u + 45u);
  ASSERT_EQ(holes.size(), 125u);
  for (const TPW_Path* h : holes) {
    EXPECT_EQ(h->FPrickingIron, iron);
    EXPECT_EQ(h->FStitchType, "D");
    EXPECT_EQ(h->FPalletIndex, 36);
    EXPECT_FLOAT_EQ(h->FWidth, 0.8f);
    EXPECT_FLOAT_EQ(h->FHeight, 2.2f);
  }
  // The body's row closes on itself; the pocket's is open at the top.
  const auto body = rowFrom(holes[0]);
  ASSERT_EQ(body.size(), 80u);
  EXPECT_EQ(body.back()->FNextStitchID, body.front()->FID);
  EXPECT_EQ(body.front()->FPrevStitchID, body.back()->FID);
  const auto pocket = rowFrom(holes[80]);
  ASSERT_EQ(pocket.size(), 45u);
  EXPECT_EQ(pocket.front()->FPrevStitchID, -1);
  EXPECT_EQ(pocket.back()->FNextStitchID, -1);
  EXPECT_TRUE(pocket.front()->FStartPt.identical(TPointF(3, 88)));
  EXPECT_NEAR(pocket.back()->FStartPt.x, 97, 1e-4);
  EXPECT_NEAR(pocket.back()->FStartPt.y, 88, 1e-4);
}

TEST_F(CardHolderSample, HolesAreEvenlySpacedOnTheStitchLinesAndTurnedWithThem) {
  // On the straight parts the spacing is the stretched pitch exactly; round
  // a corner it is the chord of that much arc.
  const double bodyPitch = (2 * (94 - 10) + 2 * (64 - 10) + 10 * M_PI) / 80;
  const double cornerChord = 2 * 5 * std::sin(bodyPitch / (2 * 5));
  const auto body = rowFrom(holes[0]);
  int straight = 0;
  for (size_t i = 0; i < body.size(); ++i) {
    const double d = dist(body[i]->FCenter, body[(i + 1) % body.size()]->FCenter);
    EXPECT_LE(d, bodyPitch + 1e-4);
    EXPECT_GE(d, cornerChord - 1e-4);
    if (std::abs(d - bodyPitch) < 1e-4) ++straight;
  }
  EXPECT_GT(straight, 64);
  EXPECT_NEAR(bodyPitch, 3.8427, 1e-4);
  // The first hole sits where the top left corner ends, the row heading
  // right: the blade's length lies along the row, turned by the iron's
  // angle (32 degrees) the other way.
  EXPECT_TRUE(body[0]->FCenter.identical(TPointF(8, 3)));
  EXPECT_FLOAT_EQ(body[0]->FRotation, -90.0f);
  // On the right side it heads down, on the bottom left, on the left side up.
  for (const TPW_Path* h : body) {
    if (h->FCenter.x == 97 && h->FCenter.y > 9 && h->FCenter.y < 61) EXPECT_NEAR(h->FRotation, 0, 1e-4);
    if (h->FCenter.y == 67 && h->FCenter.x > 9 && h->FCenter.x < 91) EXPECT_NEAR(h->FRotation, 90, 1e-3);
    if (h->FCenter.x == 3 && h->FCenter.y > 9 && h->FCenter.y < 61) EXPECT_NEAR(std::abs(h->FRotation), 180, 1e-3);
  }
}

TEST_F(CardHolderSample, TheThreadRunsForwardFromHoleToHoleInsideTheSlits) {
  TStitchSimulationOptions on;
  on.FShowStitchPattern = true;
  const TStitchSimulation sim = buildStitchSimulation(list, on);
  // 80 stitches round the body, 44 along the pocket's three sides.
  ASSERT_EQ(sim.FStitches.size(), 124u);
  std::map<int, const TPW_Path*> byID;
  for (const TPW_Path* h : holes) byID[h->FID] = h;
  for (const TThreadStitch& st : sim.FStitches) {
    const TPW_Path* from = byID.at(st.FFromID);
    const TPW_Path* to = byID.at(st.FToID);
    EXPECT_EQ(from->FNextStitchID, to->FID);
    // Each end lies in its hole's slit, never in the leather between.
    EXPECT_TRUE(insideOutline(from->FData, st.FFrom)) << st.FFromID;
    EXPECT_TRUE(insideOutline(to->FData, st.FTo)) << st.FToID;
    // The thread leaves at the front of one slit and goes in at the back of
    // the next: it runs the way the row is sewn, shorter than the pitch.
    const double ax = double(to->FCenter.x) - from->FCenter.x, ay = double(to->FCenter.y) - from->FCenter.y;
    const double sx = double(st.FTo.x) - st.FFrom.x, sy = double(st.FTo.y) - st.FFrom.y;
    EXPECT_GT(ax * sx + ay * sy, 0);
    EXPECT_LT(std::hypot(sx, sy), std::hypot(ax, ay));
    EXPECT_GT(std::hypot(sx, sy), 0.5 * std::hypot(ax, ay));
  }
}

TEST(CardHolderSampleWithoutIron, StitchLinesButNoHoles) {
  TShapeList list{nullptr, "en"};
  buildCardHolderSample(list, nullptr);
  EXPECT_EQ(list.Count(), 33u);
}

}  // namespace
