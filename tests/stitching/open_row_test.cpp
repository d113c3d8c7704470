// Rows along open routes: the divider walk, its pitch search, and what the
// leatherworker checks of the holes that come out.
#include <gtest/gtest.h>

#include "stitch_test_support.h"
#include "stitching/divider_walk.h"
#include "stitching/route_network.h"
#include "stitching/stitch_rows.h"

using namespace stitchtest;
using shapes::line;

namespace {

struct TRowRun {
  TRowOutcome out;
  std::vector<std::unique_ptr<TPW_Path>> route;
};

// A row from a to b the way the stitch tool lays it after its two clicks.
TRowRun layRow(TDoc& doc, const TPointF& a, const TPointF& b, const TStitchSettings& settings,
               TRowCaller caller = TRowCaller::Tool) {
  TRowRun run;
  TVertexNetwork net(&doc.list, &doc.crossings);
  EXPECT_TRUE(net.dpConnect(a, b));
  TRouteVertex* end = net.GetVertex(b);
  EXPECT_NE(end, nullptr);
  if (!end) return run;
  TOpenRow row = openRowAlong(net, end, a, b, a, run.route);
  auto holes = doc.holes();
  run.out = layOpenRow(row, settings, *holes, caller);
  return run;
}

TStitchSettings uniform(TPitchMode mode = TPitchMode::Auto, float pitch = 4.0f) {
  TStitchSettings s;
  s.FCornerMode = kCornerUniform;
  s.FPitchMode = mode;
  s.FPitch = pitch;
  return s;
}

}  // namespace

TEST(OpenRowOnALine, HundredMillimetresAtFourCloseAtOnce) {
  TDoc doc;
  TPW_Path* l = doc.add(line({0, 0}, {100, 0}));
  const TRowRun run = layRow(doc, {0, 0}, {100, 0}, uniform());
  EXPECT_FALSE(run.out.FCornerMethod);
  EXPECT_EQ(run.out.FCount, 26);
  EXPECT_FLOAT_EQ(run.out.FBestPitch, 4.0f);
  EXPECT_EQ(run.out.FTrials, 1) << "the first trial closes within the stop gap: no round of the search runs";
  const auto holes = doc.holesInList();
  ASSERT_EQ(holes.size(), 26u);
  for (int i = 0; i < 26; ++i) EXPECT_NEAR(holes[size_t(i)]->FCenter.x, 4.0 * i, 1e-4) << i;
  expectOnDrawing(holes, {l}, 1e-4);
  EXPECT_NEAR(run.out.madePitch(), 4.0, 1e-4);
}

TEST(OpenRowOnALine, HundredAndOneMillimetresStretchThePitchAndEndOnTheEnd) {
  TDoc doc;
  doc.add(line({0, 0}, {101, 0}));
  const TRowRun run = layRow(doc, {0, 0}, {101, 0}, uniform());
  EXPECT_NEAR(run.out.FBestPitch, 4.04, 0.01);
  const auto holes = doc.holesInList();
  ASSERT_EQ(holes.size(), 26u);
  EXPECT_TRUE(hasHoleAt(holes, {101, 0}, 1e-4)) << "the last hole is forced onto the end";
  bool ring = false;
  const auto chain = walkChain(doc.list, chainHead(holes), &ring);
  EXPECT_EQ(chain.size(), holes.size()) << "the links walk every hole once";
  EXPECT_FALSE(ring);
  expectEvenSpacing(chain, 4.04, 0.1);
}

TEST(OpenRowOnALine, WithoutForcingTheLastHoleStaysWhereTheWalkLeftIt) {
  // A stop gap wide enough to take the first trial: walked at 4.0, its
  // last position is 1 mm short of the end.
  TStitchSettings s = uniform();
  s.FAutoPitchStopGap = 2.0f;
  TDoc forced, loose;
  forced.add(line({0, 0}, {101, 0}));
  loose.add(line({0, 0}, {101, 0}));
  const TRowRun f = layRow(forced, {0, 0}, {101, 0}, s);
  s.FForceFitLastPrick = false;
  layRow(loose, {0, 0}, {101, 0}, s);
  EXPECT_EQ(f.out.FTrials, 1);
  const auto fh = forced.holesInList(), lh = loose.holesInList();
  ASSERT_EQ(fh.size(), 26u);
  ASSERT_EQ(lh.size(), 26u);
  EXPECT_TRUE(fh.back()->FCenter.identical(TPointF(101, 0))) << "forced onto the end";
  EXPECT_NEAR(lh.back()->FCenter.x, 100.0, 1e-4) << "where the walk left it";
  for (size_t i = 0; i + 1 < fh.size(); ++i) EXPECT_TRUE(fh[i]->FCenter.identical(lh[i]->FCenter)) << i;
}

TEST(OpenRowOnALine, FixedPitchKeepsThePitchAndReportsTheOneThatWouldClose) {
  TDoc doc;
  doc.add(line({0, 0}, {101, 0}));
  const TRowRun run = layRow(doc, {0, 0}, {101, 0}, uniform(TPitchMode::Fixed));
  EXPECT_EQ(run.out.FTrials, 1);
  // 25 steps of 4 reach 100; the 1 mm left over spread over them closes the row.
  EXPECT_FLOAT_EQ(run.out.FEstimate, 4.04f);
  const auto holes = doc.holesInList();
  ASSERT_EQ(holes.size(), 26u);
  for (size_t i = 0; i + 1 < holes.size(); ++i)
    EXPECT_NEAR(distanceOf(holes[i]->FCenter, holes[i + 1]->FCenter), 4.0, 1e-4);
  EXPECT_NEAR(holes.back()->FCenter.x, 100.0, 1e-4) << "the walk's last position, not the end";
}

TEST(OpenRowOnALine, FixedPitchGivesTheEndAHoleWhenMoreThanHalfAPitchIsLeft) {
  TDoc doc;
  doc.add(line({0, 0}, {103, 0}));
  const TRowRun run = layRow(doc, {0, 0}, {103, 0}, uniform(TPitchMode::Fixed));
  const auto holes = doc.holesInList();
  ASSERT_EQ(holes.size(), 27u);
  EXPECT_TRUE(holes.back()->FCenter.identical(TPointF(103, 0)));
  EXPECT_NEAR(run.out.FEstimate, 4.0 - (4.0 - 3.0) / 26.0, 1e-5);
}

TEST(OpenRowOnALine, CountModeSpreadsTheHolesAskedFor) {
  TDoc doc;
  doc.add(line({0, 0}, {90, 0}));
  TStitchSettings s = uniform(TPitchMode::Count);
  s.FNumOfHoles = 16;
  const TRowRun run = layRow(doc, {0, 0}, {90, 0}, s);
  EXPECT_EQ(run.out.FPositions, 16);
  EXPECT_NEAR(run.out.FBestPitch, 6.0, 1e-3);
  EXPECT_EQ(doc.holesInList().size(), 16u);
}

TEST(OpenRowOnALine, CountModeWithTooFewHolesIsLeftAlone) {
  TDoc doc;
  doc.add(line({0, 0}, {90, 0}));
  TStitchSettings s = uniform(TPitchMode::Count);
  s.FNumOfHoles = 1;
  const TRowRun run = layRow(doc, {0, 0}, {90, 0}, s);
  EXPECT_TRUE(run.out.FAbandoned);
  EXPECT_TRUE(doc.holesInList().empty());
}

TEST(OpenRowOnALine, ExistingHolesAreNotPunchedTwiceAndTheChainContinues) {
  TDoc doc;
  doc.add(line({0, 0}, {40, 0}));
  doc.add(line({40, 0}, {80, 0}));
  layRow(doc, {0, 0}, {40, 0}, uniform());
  const size_t first = doc.holesInList().size();
  ASSERT_EQ(first, 11u);
  layRow(doc, {40, 0}, {80, 0}, uniform());
  const auto holes = doc.holesInList();
  EXPECT_EQ(holes.size(), 21u) << "the hole at 40 is shared";
  const auto chain = walkChain(doc.list, chainHead(holes));
  EXPECT_EQ(chain.size(), 21u) << "the second row continues the first one's chain";
  expectEvenSpacing(chain, 4.0, 1e-3);
}

// ---- the first step may go either way ----

TEST(DividerWalk, AStartInTheMiddleOffersTheOtherDirection) {
  TDoc doc;
  auto l = line({0, 0}, {100, 0});
  const std::vector<TPW_Path*> route{l.get()};
  // No direction at the start: both crossings of the first circle count.
  TDividerWalk walk(route, TWalkEnds{{50, 0}, {100, 0}, {50, 0}, {50, 0}}, nullptr);
  TTrial t;
  walk.tryPitch(4.0f, false, t);
  EXPECT_TRUE(t.FHasSecond);
  ASSERT_GE(t.count(), 2);
  EXPECT_NEAR(t.FPositions[1].x, 54.0, 1e-4) << "the crossing nearer the end";
  TTrial other;
  walk.tryPitch(4.0f, true, other);
  ASSERT_GE(other.count(), 2);
  EXPECT_NEAR(other.FPositions[1].x, 46.0, 1e-4) << "the first crossing found, away from the end";
  EXPECT_GT(other.FGap, t.FGap);

  TStitchSettings s = uniform();
  TPitchSearch search(walk, s, TKeepRule::Tool);
  search.keepBestTrial(4.0f);
  EXPECT_EQ(search.trials(), 2);
  EXPECT_NEAR(search.best().FPositions[1].x, 54.0, 1e-4) << "judged by its gap, the way to the end wins";
}

TEST(DividerWalk, AHairpinNarrowerThanThePitchIsCrossedNotWalkedRound) {
  // Out along one line and back along another 2 mm away: the circle of the
  // first step already reaches the way back, which lies nearer the end.
  auto out = line({0, 0}, {40, 0});
  auto turn = line({40, 0}, {40, 2});
  auto back = line({40, 2}, {0, 2});
  const std::vector<TPW_Path*> route{back.get(), turn.get(), out.get()};
  TDividerWalk walk(route, TWalkEnds{{0, 0}, {0, 2}, {40, 0}, {0, 0}}, nullptr);
  TTrial t;
  walk.tryPitch(4.0f, false, t);
  ASSERT_EQ(t.count(), 2);
  EXPECT_NEAR(t.FPositions[1].y, 2.0, 1e-6);
}

TEST(DividerWalk, EndlessWalksGiveUp) {
  auto l = line({0, 0}, {6000, 0});
  const std::vector<TPW_Path*> route{l.get()};
  TDividerWalk walk(route, TWalkEnds{{0, 0}, {6000, 0}, {6000, 0}, {0, 0}}, nullptr);
  TTrial t;
  EXPECT_EQ(walk.tryPitch(4.0f, false, t), 0.0f);
  EXPECT_TRUE(walk.endlessLoop());
}
