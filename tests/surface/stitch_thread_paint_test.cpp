// The simulated thread on the canvas, over holes made by the real hole
// makers: where each stitch is drawn, in which colour and width, and which
// stitches are left out.
#include <gtest/gtest.h>

#include "app/frm_pelw.h"
#include "platform/recording_canvas.h"
#include "stitching/pricking_iron.h"
#include "surface/scene_painter.h"
#include "test_support.h"

namespace {

class ThreadPaint : public ::testing::Test {
 protected:
  TTempDir dir;
  TPrickingIron iron;
  TfrmPelw form;
  TRecordingCanvas canvas{800, 600};

  void SetUp() override {
    iron.FBladeType = "D";
    bladeDefaults("D", iron.FWidth, iron.FHeight, iron.FAngle);
    iron.FPitch = 4;
    form.FAppDataPath = dir.path();
    form.FormCreate({});
    form.pboxResize(800, 600);
    form.FScale = TPointF(20, 20);
    form.FOffset = TPointF(0, 0);
    form.FShowGrid = false;
    form.FViewOptions.FShowStitchPattern = true;
  }

  // A row of `n` holes sewn rightwards from (x0, y), 4 mm apart.
  std::vector<TPW_Path*> row(int n, float x0, float y, int layer = 0) {
    std::vector<TPW_Path*> out;
    for (int i = 0; i < n; ++i) {
      auto h = std::make_unique<TPW_Path>(36, 0xFFFFFFFF, 1.0f, TStrokeDash::Dot, form.PathList->getNextID());
      h->createStichPath(TPointF(x0 + 4.0f * i, y), false, &iron, -90, 0);
      if (!out.empty()) {
        out.back()->FNextStitchID = h->FID;
        h->FPrevStitchID = out.back()->FID;
      }
      out.push_back(h.get());
      form.PathList->add(std::move(h), layer);
    }
    return out;
  }

  // The thread's strokes: the scale bar's three lines come last.
  std::vector<const TCanvasOp*> threadLines() {
    canvas.FOps.clear();
    form.pboxPaint(&canvas);
    auto lines = canvas.ops("line");
    lines.resize(lines.size() - 3);
    return lines;
  }
};

TEST_F(ThreadPaint, EachStitchFromOneHolesExitToTheNextOnesEntryOverADarkEdge) {
  const auto h = row(3, 5, 10);
  const auto lines = threadLines();
  ASSERT_EQ(lines.size(), 4u);  // both edges, then both threads
  for (int i = 0; i < 2; ++i) {
    const TCanvasOp& edge = *lines[static_cast<size_t>(i)];
    const TCanvasOp& thread = *lines[static_cast<size_t>(i + 2)];
    EXPECT_TRUE(thread.a.identical(form.RealToScreen(h[static_cast<size_t>(i)]->FStitchOut)));
    EXPECT_TRUE(thread.b.identical(form.RealToScreen(h[static_cast<size_t>(i + 1)]->FStitchIn)));
    EXPECT_TRUE(edge.a.identical(thread.a));
    EXPECT_TRUE(edge.b.identical(thread.b));
    EXPECT_EQ(thread.color, 0xFFFFFFFFu);
    EXPECT_EQ(edge.color, 0xFF000000u);
    // Three fifths of a millimetre at 20 px/mm, the edge a pixel and a half wider.
    EXPECT_FLOAT_EQ(thread.thickness, 12.0f);
    EXPECT_FLOAT_EQ(edge.thickness, 13.5f);
    EXPECT_FLOAT_EQ(thread.opacity, 1.0f);
    EXPECT_LT(edge.opacity, thread.opacity);
  }
  // The thread goes forward along the row, shorter than the pitch.
  EXPECT_GT(lines[2]->b.x, lines[2]->a.x);
  EXPECT_LT(lines[2]->b.x - lines[2]->a.x, 4 * 20);
  // Thin threads far out are still a pixel wide.
  EXPECT_DOUBLE_EQ(threadWidthPixels(3.0f, 1.0), 1.0);
  // Close up the stitches have round ends; far out, where they are a few
  // pixels wide, square ones; the scale bar after them is round again.
  EXPECT_EQ(lines[0]->cap, TStrokeCap::Round);
  form.FScale = TPointF(1.1f, 1.1f);
  canvas.FOps.clear();
  form.pboxPaint(&canvas);
  const auto far = canvas.ops("line");
  ASSERT_EQ(far.size(), 4u + 3u);
  EXPECT_EQ(far[0]->cap, TStrokeCap::Square);
  EXPECT_EQ(far[3]->cap, TStrokeCap::Square);
  EXPECT_EQ(far[4]->cap, TStrokeCap::Round);
}

TEST_F(ThreadPaint, ThreadColoursOptionsAndTheTwoThreads) {
  const auto h = row(4, 5, 10);
  h[1]->FThreadColor = 0xFFAA2200;  // this hole's stitch in its own colour
  form.FViewOptions.FStitchColor = 0xFF2040FF;
  form.FViewOptions.FStitchThickness = 5;
  form.FViewOptions.FStitchOpacity = 0.5f;
  auto lines = threadLines();
  ASSERT_EQ(lines.size(), 6u);
  EXPECT_EQ(lines[3]->color, 0xFF2040FFu);
  EXPECT_EQ(lines[4]->color, 0xFFAA2200u);
  EXPECT_EQ(lines[5]->color, 0xFF2040FFu);
  EXPECT_FLOAT_EQ(lines[3]->thickness, 20.0f);
  EXPECT_FLOAT_EQ(lines[3]->opacity, 0.5f);
  // Only the odd stitches: the second of the row.
  form.FPaintSwitches.chkShowEvenStitches = false;
  lines = threadLines();
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_TRUE(lines[1]->a.identical(form.RealToScreen(h[1]->FStitchOut)));
  form.FPaintSwitches.chkShowOddStitches = false;
  EXPECT_TRUE(threadLines().empty());
}

TEST_F(ThreadPaint, HiddenLayersOffScreenRowsAndTheSwitchLeaveStitchesOut) {
  row(2, 5, 10);
  form.PathList->addLayer(4, "back", false);
  row(3, 5, 20, 4);      // on a hidden layer
  row(3, 500, 10);       // far to the right of the canvas
  const auto pinned = row(3, 5, 25);
  EXPECT_EQ(threadLines().size(), 2u * (1 + 2));
  // With the simulator off, only the rows of holes that always show it.
  form.FViewOptions.FShowStitchPattern = false;
  pinned[2]->FAlwaysShowStitchSimulator = true;
  EXPECT_TRUE(threadLines().empty());  // until the list has counted them
  form.PathList->countNumOfAlwaysShowStitchSimulator();
  const auto lines = threadLines();
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_TRUE(lines[1]->b.identical(form.RealToScreen(pinned[2]->FStitchIn)));
}

}  // namespace
