// Which blades of a press punch, and how far the iron reaches.
#include <gtest/gtest.h>

#include "stitching/iron_press.h"

TEST(IronPress, ReachOfTheNextPress) {
  EXPECT_EQ(nextHoleCount(1, 1, false), 1);
  EXPECT_EQ(nextHoleCount(1, 5, true), 1);
  EXPECT_EQ(nextHoleCount(4, 1, false), 3) << "on the first click the first blade stands in the start";
  EXPECT_EQ(nextHoleCount(4, 2, false), 4);
  EXPECT_EQ(nextHoleCount(4, 2, true), 3) << "with one blade reduced it always overlaps the last hole";
}

TEST(IronPress, BladesThatPunch) {
  auto r = pressRange(4, 2, false, false);
  EXPECT_EQ(r.FFirst, 0);
  EXPECT_EQ(r.FLast, 3) << "the first press punches the start too";
  r = pressRange(4, 3, false, false);
  EXPECT_EQ(r.FFirst, 1);
  EXPECT_EQ(r.FLast, 4);
  r = pressRange(4, 2, false, true);
  EXPECT_EQ(r.FFirst, 1) << "Shift, or a hole already at the start, leaves blade 0 out";
  r = pressRange(1, 2, false, false);
  EXPECT_EQ(r.FFirst, 0);
  EXPECT_EQ(r.FLast, 1);
  r = pressRange(1, 3, false, false);
  EXPECT_EQ(r.FFirst, 1);
  EXPECT_EQ(r.FLast, 1);
  r = pressRange(1, 1, true, false);
  EXPECT_EQ(r.FFirst, 0);
  EXPECT_EQ(r.FLast, 0) << "the preview before the first press shows the start";
  r = pressRange(4, 1, true, false);
  EXPECT_EQ(r.FLast, 3) << "the preview shows the press the next click makes";
}

TEST(IronPress, PositionsAreWholePitchesAlongTheDirection) {
  const auto p = pressPositions({10, 20}, {0.6f, 0.8f}, 5.0, 3);
  ASSERT_EQ(p.size(), 4u);
  EXPECT_FLOAT_EQ(p[0].x, 10.0f);
  EXPECT_FLOAT_EQ(p[3].x, 19.0f);
  EXPECT_FLOAT_EQ(p[3].y, 32.0f);
}
