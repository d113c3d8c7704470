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

// A row from a to b the way the stitch tool (or the API) lays it.
TRowRun layRow(TDoc& doc, const TPointF& a, const TPointF& b, const TStitchSettings& settings,
               TRowCaller caller = TRowCaller::Tool) {
  TRowRun run;
  TVertexNetwork net(&doc.list, &doc.crossings);
  net.FGoalOnShapes = caller == TRowCaller::Api;
  EXPECT_TRUE(net.dpConnect(a, b));
  TRouteVertex* end = net.GetVertex(b);
  EXPECT_NE(end, nullptr);
  if (!end) return run;
  TOpenRow row = openRowAlong(net, end, a, b, run.route);
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
  EXPECT_EQ(run.out.FTrials, 1) << "the first trial closes within the stop gap: no round of the search runs";
  const auto holes = doc.holesInList();
  ASSERT_EQ(holes.size(), 26u);
  EXPECT_EQ(run.out.count(), 26);
  for (int i = 0; i < 26; ++i) EXPECT_NEAR(holes[size_t(i)]->FCenter.x, 4.0 * i, 1e-4) << i;
  EXPECT_NEAR(run.out.pitch(), 4.0, 1e-4);
  expectFaithfulRow(holes, {l}, 4.0);
}

TEST(OpenRowOnALine, HundredAndOneMillimetresStretchThePitchAndEndOnTheEnd) {
  TDoc doc;
  doc.add(line({0, 0}, {101, 0}));
  const TRowRun run = layRow(doc, {0, 0}, {101, 0}, uniform());
  const auto holes = doc.holesInList();
  ASSERT_EQ(holes.size(), 26u);
  EXPECT_TRUE(hasHoleAt(holes, {101, 0}, 1e-4)) << "the last hole is forced onto the end";
  bool ring = false;
  const auto chain = walkChain(doc.list, chainHead(holes), &ring);
  EXPECT_EQ(chain.size(), holes.size()) << "the links walk every hole once";
  EXPECT_FALSE(ring);
  expectEvenSpacing(chain, 4.04, 0.01);
  EXPECT_NEAR(run.out.pitch(), 4.04, 1e-3) << "the mean spacing of the holes made";
}

TEST(OpenRowOnALine, WithoutForcingTheLastHoleStaysWhereTheWalkLeftIt) {
  // A stop gap wide enough to take the first trial: walked at 4.0, its
  // last position is 1 mm short of the end.
  TStitchSettings s = uniform();
  s.FAutoPitchStopGap = 2.0f;
  TDoc forced, loose;
  forced.add(line({0, 0}, {101, 0}));
  loose.add(line({0, 0}, {101, 0}));
  layRow(forced, {0, 0}, {101, 0}, s);
  s.FForceFitLastPrick = false;
  layRow(loose, {0, 0}, {101, 0}, s);
  const auto fh = forced.holesInList(), lh = loose.holesInList();
  ASSERT_EQ(fh.size(), 26u);
  ASSERT_EQ(lh.size(), 26u);
  EXPECT_TRUE(fh.back()->FCenter.identical(TPointF(101, 0))) << "forced onto the end";
  EXPECT_NEAR(lh.back()->FCenter.x, 100.0, 1e-4) << "where the walk left it";
}

TEST(OpenRowOnALine, FixedPitchKeepsThePitchAndGivesTheEndAHoleWhenMoreThanHalfIsLeft) {
  TDoc a, b;
  a.add(line({0, 0}, {101, 0}));
  b.add(line({0, 0}, {103, 0}));
  const TRowRun ra = layRow(a, {0, 0}, {101, 0}, uniform(TPitchMode::Fixed));
  const TRowRun rb = layRow(b, {0, 0}, {103, 0}, uniform(TPitchMode::Fixed));
  EXPECT_EQ(ra.out.FTrials, 1);
  // 25 steps of 4 reach 100; the 1 mm left over spread over them closes the row.
  EXPECT_FLOAT_EQ(ra.out.FEstimate, 4.04f);
  const auto ha = a.holesInList(), hb = b.holesInList();
  ASSERT_EQ(ha.size(), 26u);
  expectEvenSpacing(ha, 4.0, 1e-4);
  EXPECT_NEAR(ha.back()->FCenter.x, 100.0, 1e-4) << "1 mm left: no hole on the end";
  ASSERT_EQ(hb.size(), 27u);
  EXPECT_TRUE(hb.back()->FCenter.identical(TPointF(103, 0))) << "3 mm left: the end gets one";
  EXPECT_NEAR(rb.out.FEstimate, 4.0 - (4.0 - 3.0) / 26.0, 1e-5);
}

TEST(OpenRowOnALine, CountModeSpreadsTheHolesAskedForOrNone) {
  TDoc doc;
  doc.add(line({0, 0}, {90, 0}));
  TStitchSettings s = uniform(TPitchMode::Count);
  s.FNumOfHoles = 16;
  const TRowRun run = layRow(doc, {0, 0}, {90, 0}, s);
  EXPECT_EQ(run.out.count(), 16);
  EXPECT_NEAR(run.out.pitch(), 6.0, 1e-3);
  s.FNumOfHoles = 1;
  EXPECT_TRUE(layRow(doc, {0, 0}, {90, 0}, s).out.FAbandoned);
  EXPECT_EQ(doc.holesInList().size(), 16u);
}

TEST(OpenRowOnALine, ExistingHolesAreNotPunchedTwiceAndTheChainContinues) {
  TDoc doc;
  doc.add(line({0, 0}, {40, 0}));
  doc.add(line({40, 0}, {80, 0}));
  layRow(doc, {0, 0}, {40, 0}, uniform());
  ASSERT_EQ(doc.holesInList().size(), 11u);
  const TRowRun second = layRow(doc, {40, 0}, {80, 0}, uniform());
  EXPECT_EQ(second.out.count(), 10) << "the hole at 40 is shared, and not counted as made";
  const auto holes = doc.holesInList();
  const auto chain = walkChain(doc.list, chainHead(holes));
  EXPECT_EQ(chain.size(), 21u) << "the second row continues the first one's chain";
  expectEvenSpacing(chain, 4.0, 1e-3);
}

TEST(OpenRowOnALine, ARowShorterThanHalfAPitchIsOneHoleAndSaysSo) {
  TDoc doc;
  doc.add(line({0, 0}, {0.3f, 0}));
  const TRowRun run = layRow(doc, {0, 0}, {0.3f, 0}, uniform(), TRowCaller::Api);
  EXPECT_EQ(run.out.count(), 1);
  EXPECT_EQ(run.out.pitch(), 0.0) << "no two holes, no spacing";
}

// ---- the route's shape: every turn followed, every hole on the drawing ----

TEST(OpenRowAroundTurns, SharpTurnsAreFollowedNotCut) {
  struct TCase {
    const char* name;
    std::vector<std::unique_ptr<TPW_Path>> shapes;
    TPointF from, to;
    float pitch;
  };
  std::vector<TCase> cases;
  auto add = [&](const char* name, TPointF from, TPointF to, float pitch, auto... s) {
    TCase c{name, {}, from, to, pitch};
    (c.shapes.push_back(std::move(s)), ...);
    cases.push_back(std::move(c));
  };
  add("V", TPointF(0, 0), TPointF(100, 0), 3.85f, line({0, 0}, {50, 150}), line({50, 150}, {100, 0}));
  add("curve hairpin", TPointF(0, 0), TPointF(0, 20), 4.0f, shapes::bezier({0, 0}, {120, 0}, {120, 20}, {0, 20}));
  add("hairpin narrower than the pitch", TPointF(0, 0), TPointF(0, 2), 4.0f, line({0, 0}, {40, 0}),
      line({40, 0}, {40, 2}), line({40, 2}, {0, 2}));
  add("zigzag", TPointF(0, 0), TPointF(40, 0), 5.0f, line({0, 0}, {10, 30}), line({10, 30}, {20, 0}),
      line({20, 0}, {30, 30}), line({30, 30}, {40, 0}));
  for (TCase& c : cases) {
    for (const TPitchMode mode : {TPitchMode::Auto, TPitchMode::Fixed}) {
      for (const TRowCaller caller : {TRowCaller::Tool, TRowCaller::Api}) {
        SCOPED_TRACE(std::string(c.name) + (mode == TPitchMode::Auto ? " auto" : " fixed") +
                     (caller == TRowCaller::Tool ? " tool" : " api"));
        TDoc doc;
        for (const auto& s : c.shapes) doc.add(s->createCopy());
        const TRowRun run = layRow(doc, c.from, c.to, uniform(mode, c.pitch), caller);
        const auto holes = doc.holesInList();
        ASSERT_GT(holes.size(), 5u);
        EXPECT_EQ(run.out.count(), static_cast<int>(holes.size()));
        expectFaithfulRow(holes, doc.drawing(), c.pitch);
        EXPECT_TRUE(hasHoleAt(holes, c.from, 1e-3));
      }
    }
  }
}

TEST(OpenRowAroundTurns, CountModeMakesTheCountRoundAVAndPastCorners) {
  TDoc v;
  v.add(line({0, 0}, {50, 150}));
  v.add(line({50, 150}, {100, 0}));
  TStitchSettings s = uniform(TPitchMode::Count);
  s.FNumOfHoles = 83;
  for (const TRowCaller caller : {TRowCaller::Tool, TRowCaller::Api}) {
    TDoc doc;
    for (TPW_Path* shape : v.drawing()) doc.add(shape->createCopy());
    const TRowRun run = layRow(doc, {0, 0}, {100, 0}, s, caller);
    EXPECT_EQ(run.out.count(), 83);
    expectFaithfulRow(doc.holesInList(), doc.drawing(), 316.23 / 82);
    EXPECT_TRUE(hasHoleAt(doc.holesInList(), {100, 0}, 1e-3));
  }
  // Lines meeting a circle at right angles: every corner shortens a chord.
  TDoc doc;
  doc.add(shapes::circle({0, 0}, 40));
  doc.add(line({-50, 0}, {-20, 0}));
  doc.add(line({0, 20}, {0, 50}));
  s.FNumOfHoles = 25;
  EXPECT_EQ(layRow(doc, {-50, 0}, {0, 50}, s, TRowCaller::Api).out.count(), 25);
}

TEST(DividerWalk, EndlessWalksGiveUp) {
  auto l = line({0, 0}, {6000, 0});
  const TRouteTrack track({TTrackLeg{l.get(), l->FStartPt, l->FEndPt}});
  TDividerWalk walk(track);
  TTrial t;
  EXPECT_EQ(walk.tryPitch(4.0f, t), 0.0f);
  EXPECT_TRUE(walk.endlessLoop());
}
