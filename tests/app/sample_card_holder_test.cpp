// The sample card holder: rows of real holes, evenly spaced on the stitch
// lines and chained in sewing order, with the simulated thread lying where
// the slits are.
#include <gtest/gtest.h>

#include <cmath>
#include <map>

#include "app/sample_card_holder.h"
#include "document/shape_list.h"
#include "stitching/iron_groups.h"
#include "stitching/stitch_simulation.h"
#include "stitching/system_irons.h"

namespace {

// Whether p lies inside the closed outline (even-odd rule).
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
  std::map<int, const TPW_Path*> holes;

  void SetUp() override {
    irons.append(buildSystemIronGroups("en"));
    iron = irons.findIron(kCardHolderIronBlade, kCardHolderIronPitch);
    ASSERT_NE(iron, nullptr);
    buildCardHolderSample(list, iron);
    for (const auto& s : list)
      if (s->isType(ShapeType::Hole)) holes[s->FID] = s.get();
  }
  // The row from `first`, in sewing order.
  std::vector<const TPW_Path*> rowFrom(const TPW_Path* first) const {
    std::vector<const TPW_Path*> row{first};
    for (auto it = holes.find(first->FNextStitchID); it != holes.end() && it->second != first;
         it = holes.find(it->second->FNextStitchID))
      row.push_back(it->second);
    return row;
  }
};

TEST_F(CardHolderSample, AClosedRowRoundTheBodyAndAnOpenOneRoundThePocket) {
  EXPECT_EQ(list.Count(), 33u + 125u);
  ASSERT_EQ(holes.size(), 125u);
  const auto body = rowFrom(holes.begin()->second);
  ASSERT_EQ(body.size(), 80u);
  EXPECT_EQ(body.back()->FNextStitchID, body.front()->FID);
  EXPECT_EQ(body.front()->FPrevStitchID, body.back()->FID);
  const TPW_Path* pocketStart = nullptr;
  for (const auto& [id, h] : holes)
    if (h->FPrevStitchID < 0 && !pocketStart) pocketStart = h;
  ASSERT_NE(pocketStart, nullptr);
  const auto pocket = rowFrom(pocketStart);
  ASSERT_EQ(pocket.size(), 45u);
  EXPECT_EQ(pocket.front()->FPrevStitchID, -1);
  EXPECT_EQ(pocket.back()->FNextStitchID, -1);
  EXPECT_TRUE(pocket.front()->FCenter.identical(TPointF(3, 88)));  // 3 mm below the opening
  EXPECT_NEAR(dist(pocket.back()->FCenter, TPointF(97, 88)), 0, 1e-4);
  // Every hole of the iron, evenly spaced: the pitch stretched to close the
  // row on the straights, its chord round the 5 mm corners.
  const double pitch = (2 * (94 - 10) + 2 * (64 - 10) + 10 * M_PI) / 80;
  EXPECT_EQ(body[7]->FPrickingIron, iron);
  EXPECT_EQ(pocket[7]->FStitchType, "D");
  for (size_t i = 0; i < body.size(); ++i) {
    const double d = dist(body[i]->FCenter, body[(i + 1) % body.size()]->FCenter);
    EXPECT_LE(d, pitch + 1e-4);
    EXPECT_GE(d, 2 * 5 * std::sin(pitch / 10) - 1e-4);
  }
  // Sewn clockwise from the end of the top left corner: heading right, the
  // blade turned to lie along the row; down the right side, no turn.
  EXPECT_TRUE(body[0]->FCenter.identical(TPointF(8, 3)));
  EXPECT_FLOAT_EQ(body[0]->FRotation, -90.0f);
  EXPECT_NEAR(body[30]->FRotation, 0, 1e-4);
  EXPECT_FLOAT_EQ(body[30]->FCenter.x, 97);
}

}  // namespace
