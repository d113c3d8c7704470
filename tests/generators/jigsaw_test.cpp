// The jigsaw pattern: its shapes, groups and tabs, as the command draws it
// into the document, and the settings it refuses.
#include <gtest/gtest.h>

#include <cmath>
#include <set>

#include "../app/program_fixture.h"
#include "document/point_helpers.h"
#include "generators/jigsaw.h"

namespace {

std::vector<std::unique_ptr<TPW_Path>> jigsaw(const TJigsawSettings& s) {
  int id = 0;
  return makeJigsaw(s, TJigsawStyle{}, [&id] { return ++id; });
}

int countType(const std::vector<std::unique_ptr<TPW_Path>>& shapes, const char* type) {
  int n = 0;
  for (const auto& p : shapes) n += p->isType(type);
  return n;
}

TEST(Jigsaw, OneByOneHasNoInnerSideAndWithFlatEdgesIsASquare) {
  TProgram program;
  TfrmPelw& form = program.start();
  const size_t steps = form.FUndoList.size();
  TJigsawSettings s;
  s.FNumPiecesX = s.FNumPiecesY = 1;
  s.FFlatEdge = true;
  ASSERT_TRUE(form.actJigsaw(s));
  EXPECT_EQ(form.FUndoList.size(), steps + 1);
  ASSERT_EQ(form.PathList->Count(), 4u);
  std::set<std::pair<float, float>> corners;
  for (const auto& p : *form.PathList) {
    EXPECT_TRUE(p->isType(ShapeType::Line));
    EXPECT_FLOAT_EQ(p->calcTotalLength(), 30.0f);
    corners.insert({p->FStartPt.x, p->FStartPt.y});
    corners.insert({p->FEndPt.x, p->FEndPt.y});
  }
  EXPECT_EQ(corners, (std::set<std::pair<float, float>>{{0, 0}, {30, 0}, {0, 30}, {30, 30}}));

  // Without flat edges the four outer sides carry tabs; none is inside.
  s.FFlatEdge = false;
  const auto shapes = jigsaw(s);
  EXPECT_EQ(shapes.size(), 12u);
  EXPECT_EQ(countType(shapes, ShapeType::Bezier), 8);
  EXPECT_EQ(countType(shapes, ShapeType::Arc), 4);
}

TEST(Jigsaw, SidesAreFlankArcFlankJoinedAtTheGridCornersAndGroupedByGridLine) {
  TJigsawSettings s;
  s.FNumPiecesX = 3;
  s.FNumPiecesY = 2;
  s.FPieceLen = 5;
  const auto shapes = jigsaw(s);
  // (2 + 1) row lines of 3 sides and (3 + 1) column lines of 2 sides.
  ASSERT_EQ(shapes.size(), (3u * 3 + 4 * 2) * 3);
  std::set<int> groups, ids;
  for (size_t i = 0; i < shapes.size(); i += 3) {
    const TPW_Path &b1 = *shapes[i], &b2 = *shapes[i + 1], &arc = *shapes[i + 2];
    ASSERT_TRUE(b1.isType(ShapeType::Bezier) && b2.isType(ShapeType::Bezier) && arc.isType(ShapeType::Arc));
    EXPECT_FLOAT_EQ(arc.FWidth, 0.75f);  // the tab's radius: 0.15 of the side
    EXPECT_FLOAT_EQ(arc.FHeight, 0.75f);
    // The flanks start and end on grid corners, one side length apart, and
    // meet the arc's ends.
    for (const TPointF& p : {b1.FStartPt, b2.FEndPt}) {
      EXPECT_FLOAT_EQ(std::fmod(p.x, 5.0f), 0.0f);
      EXPECT_FLOAT_EQ(std::fmod(p.y, 5.0f), 0.0f);
    }
    EXPECT_NEAR(distanceOf(b1.FStartPt, b2.FEndPt), 5.0, 1e-5);
    EXPECT_TRUE(samePoint(b1.FEndPt, arc.FStartPt, 1e-4));
    EXPECT_TRUE(samePoint(b2.FStartPt, arc.FEndPt, 1e-4));
    // The circle's centre stands a sixth of the side off the grid line.
    const TPointF mid = TPointF::fromDouble((b1.FStartPt.x + b2.FEndPt.x) / 2.0, (b1.FStartPt.y + b2.FEndPt.y) / 2.0);
    EXPECT_NEAR(distanceOf(arc.FCenter, mid), 5.0 / 6.0, 1e-5);
    EXPECT_NEAR(std::fabs(arc.FSweepAngle), 280.0, 10.0);
    // The knob bulges to one side of the line, the shoulders to the other.
    const TPointF across = b1.FStartPt.y == b2.FEndPt.y ? TPointF(0, 1) : TPointF(1, 0);
    auto side = [&](const TPointF& p) { return (p.x - mid.x) * across.x + (p.y - mid.y) * across.y; };
    EXPECT_LT(side(arc.FCenter) * side(b1.FBezierCp1), 0);
    EXPECT_LT(side(arc.FCenter) * side(b2.FBezierCp2), 0);
    EXPECT_EQ(b1.FGroupID, arc.FGroupID);
    EXPECT_EQ(b2.FGroupID, arc.FGroupID);
    groups.insert(arc.FGroupID);
    for (const TPW_Path* p : {&b1, &b2, &arc}) ids.insert(p->FID);
  }
  EXPECT_EQ(groups.size(), 3u + 4u);
  EXPECT_EQ(ids.size(), shapes.size());
}

TEST(Jigsaw, TheSeedDecidesTheCurvesAndFlattenGivesOnePathPerGridLine) {
  TJigsawSettings s;
  s.FNumPiecesX = 4;
  s.FNumPiecesY = 3;
  s.FRandomSeed = -12345;
  const auto a = jigsaw(s), b = jigsaw(s);
  s.FRandomSeed = 12345;
  const auto c = jigsaw(s);
  ASSERT_EQ(a.size(), b.size());
  bool differs = false;
  for (size_t i = 0; i < a.size(); ++i) {
    EXPECT_EQ(a[i]->FData.getData(), b[i]->FData.getData());
    differs = differs || a[i]->FData.getData() != c[i]->FData.getData();
  }
  EXPECT_TRUE(differs);
  // Both ways the tabs point up and down, left and right.
  std::set<bool> sides;
  for (const auto& p : a)
    if (p->isType(ShapeType::Arc)) sides.insert(p->FSweepAngle > 0);
  EXPECT_EQ(sides.size(), 2u);

  s.FFlattenPath = true;
  s.FFlatEdge = true;
  const auto flat = jigsaw(s);
  ASSERT_EQ(flat.size(), 4u + 5u);
  for (const auto& p : flat) EXPECT_TRUE(p->isType(ShapeType::Other));
  // An inner row line holds its four sides' curves, the same as without
  // flat edges and flattening; an outer one is straight.
  std::string inner;
  for (size_t i = 12; i < 24; ++i) inner += c[i]->FData.getData();
  EXPECT_EQ(flat[1]->FData.getData(), inner);
  EXPECT_EQ(flat[0]->getBoundary(false).width(), 4 * 30.0);
  EXPECT_EQ(flat[0]->getBoundary(false).height(), 0.0);
}

TEST(Jigsaw, RefusedSettingsChangeNothing) {
  TProgram program;
  TfrmPelw& form = program.start();
  const size_t steps = form.FUndoList.size();
  for (auto bad : {std::pair{0, 30.0}, {51, 30.0}, {2, 4.9}, {2, 1000.5}, {2, std::nan("")}}) {
    TJigsawSettings s;
    s.FNumPiecesY = bad.first;
    s.FPieceLen = bad.second;
    EXPECT_FALSE(form.actJigsaw(s));
  }
  EXPECT_EQ(form.PathList->Count(), 0u);
  EXPECT_EQ(form.FUndoList.size(), steps);
  ASSERT_EQ(program.dialogs.FMessages.size(), 5u);
  EXPECT_EQ(program.dialogs.FMessages[0], "The number of pieces must be a whole number from 1 to 50.");
  EXPECT_EQ(program.dialogs.FMessages[2], "The piece size must be from 5.00 mm to 1000.00 mm.");
}

}  // namespace
