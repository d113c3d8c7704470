#include <gtest/gtest.h>

#include "document/pw_path.h"
#include "platform/qt/qt_text_layout.h"

namespace {

struct QtLayoutScope {
  TQtTextLayout layout;
  QtLayoutScope() { setTextLayout(&layout); }
  ~QtLayoutScope() { setTextLayout(nullptr); }
};

}  // namespace

TEST(QtTextLayout, GlyphOutlinesSitInTheLineBoxAndAreClosed) {
  TQtTextLayout layout;
  const TPathData o = layout.outline("HO", "Sans", 10);
  ASSERT_FALSE(o.isEmpty());
  const TRectF r = o.GetBounds();
  const TTextExtent e = layout.measure("HO", "Sans", 10);
  EXPECT_GE(r.Left, -0.5);
  EXPECT_GE(r.Top, 0.0);
  EXPECT_LE(r.Right, e.width + 0.5);
  EXPECT_LE(r.Bottom, e.height);
  int moves = 0, closes = 0;
  for (const auto& p : o.points()) {
    moves += p.Kind == TPathPointKind::MoveTo;
    closes += p.Kind == TPathPointKind::Close;
  }
  EXPECT_GE(moves, 3);  // H, and O with its counter
  EXPECT_EQ(moves, closes);
}

TEST(QtTextLayout, TextShapeMeasuresItsOutline) {
  QtLayoutScope scope;
  TPW_Path t(0, claWhite, 0.3f, TStrokeDash::Solid, 1);
  t.drawTextPath("Card holder", TPointF(10, 20), 6, 0, "Sans", 0, 1);
  EXPECT_EQ(t.FShapeType, "TEXT");
  const TRectF r = t.getMinMaxRect();
  EXPECT_NEAR(r.Left, 10, 1.0);
  EXPECT_GT(r.Right, 30);
  EXPECT_LT(r.Top, 20);
  EXPECT_GT(r.Bottom, 20);  // the line is centred on the start point's height
  EXPECT_NEAR(t.FWidth, r.Right - 10, 1.5);
  EXPECT_TRUE(t.fillPath());
}
