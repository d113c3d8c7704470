// The simulated thread on the canvas, over holes made by the real hole
// makers: where each stitch is drawn, how, and which are left out.
#include <gtest/gtest.h>

#include "app/frm_pelw.h"
#include "platform/recording_canvas.h"
#include "stitching/pricking_iron.h"
#include "test_support.h"

namespace {

class ThreadPaint : public ::testing::Test {
 protected:
  TTempDir dir;
  TPrickingIron iron;
  TfrmPelw form;
  TRecordingCanvas canvas{800, 600};

  void SetUp() override {
    bladeDefaults("D", iron.FWidth, iron.FHeight, iron.FAngle);
    iron.FBladeType = "D";
    form.FAppDataPath = dir.path();
    form.FormCreate({});
    form.pboxResize(800, 600);
    form.FScale = TPointF(20, 20);
    form.FShowGrid = false;
    form.FViewOptions.FShowStitchPattern = true;
  }
  // `n` holes sewn rightwards from (x0, y), 4 mm apart.
  std::vector<TPW_Path*> row(int n, float x0, float y, int layer = 0) {
    std::vector<TPW_Path*> out;
    for (int i = 0; i < n; ++i) {
      auto h = std::make_unique<TPW_Path>(36, 0xFFFFFFFF, 1.0f, TStrokeDash::Dot, form.PathList->getNextID());
      h->createStichPath(TPointF(x0 + 4.0f * i, y), false, &iron, -90, 0);
      if (!out.empty()) out.back()->FNextStitchID = h->FID;
      out.push_back(h.get());
      form.PathList->add(std::move(h), layer);
    }
    return out;
  }
  // The thread's strokes, less the scale bar's three lines at the end.
  std::vector<const TCanvasOp*> threadLines() {
    canvas.FOps.clear();
    form.pboxPaint(&canvas);
    auto lines = canvas.ops("line");
    lines.resize(lines.size() - 3);
    return lines;
  }
};

TEST_F(ThreadPaint, StitchesFromExitToNextEntryOverADarkEdge) {
  const auto h = row(4, 5, 10);
  h[1]->FThreadColor = 0xFFAA2200;  // this hole's stitch in its own colour
  form.FViewOptions.FStitchColor = 0xFF2040FF;  // for the holes left white
  auto lines = threadLines();
  ASSERT_EQ(lines.size(), 6u);  // all three edges, then the threads
  for (size_t i = 0; i < 3; ++i) {
    const TCanvasOp &edge = *lines[i], &thread = *lines[i + 3];
    EXPECT_TRUE(thread.a.identical(form.RealToScreen(h[i]->FStitchOut)));
    EXPECT_TRUE(thread.b.identical(form.RealToScreen(h[i + 1]->FStitchIn)));
    EXPECT_TRUE(edge.a.identical(thread.a) && edge.b.identical(thread.b));
    EXPECT_EQ(edge.color, 0xFF000000u);
    // Three fifths of a millimetre at 20 px/mm, the edge 1.5 px wider, round ends.
    EXPECT_FLOAT_EQ(thread.thickness, 12.0f);
    EXPECT_FLOAT_EQ(edge.thickness, 13.5f);
    EXPECT_EQ(edge.cap, TStrokeCap::Round);
  }
  EXPECT_EQ(lines[3]->color, 0xFF2040FFu);
  EXPECT_EQ(lines[4]->color, 0xFFAA2200u);
  // Only the odd stitches: the second of the row.
  form.FPaintSwitches.chkShowEvenStitches = false;
  lines = threadLines();
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_TRUE(lines[1]->a.identical(form.RealToScreen(h[1]->FStitchOut)));
  // Far out the thread is a pixel wide and its edges have square ends; the
  // scale bar after it is round again.
  form.FPaintSwitches.chkShowEvenStitches = true;
  form.FScale = TPointF(1.1f, 1.1f);
  canvas.FOps.clear();
  form.pboxPaint(&canvas);
  const auto far = canvas.ops("line");
  ASSERT_EQ(far.size(), 6u + 3u);
  EXPECT_FLOAT_EQ(far[3]->thickness, 1.0f);
  EXPECT_EQ(far[0]->cap, TStrokeCap::Square);
  EXPECT_EQ(far[6]->cap, TStrokeCap::Round);
}

TEST_F(ThreadPaint, HiddenLayersOffScreenRowsAndTheSwitchLeaveStitchesOut) {
  row(2, 5, 10);
  form.PathList->addLayer(4, "back", false);
  row(3, 5, 20, 4);  // on a hidden layer
  row(3, 500, 10);   // far right of the canvas
  const auto pinned = row(3, 5, 25);
  EXPECT_EQ(threadLines().size(), 2u * (1 + 2));
  // Simulator off: only the rows of holes that always show it.
  form.FViewOptions.FShowStitchPattern = false;
  pinned[2]->FAlwaysShowStitchSimulator = true;
  form.PathList->countNumOfAlwaysShowStitchSimulator();
  const auto lines = threadLines();
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_TRUE(lines[1]->b.identical(form.RealToScreen(pinned[2]->FStitchIn)));
}

}  // namespace
