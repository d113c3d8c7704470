// What one paint draws, and in which order, read from a recording canvas.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "app/frm_pelw.h"
#include "platform/recording_canvas.h"
#include "surface/grid_paint.h"
#include "surface/scene_painter.h"
#include "test_support.h"

namespace {

// Three rows are enough: 0 a line row, 1 hidden, 2 the rest.
struct TTestPalette : IPaintPalette {
  std::vector<TPaletteLook> rows;
  TTestPalette() {
    rows.resize(40);
    rows[0].FColor_BlackMode = 0xFF00FFFF;
    rows[0].FColor_WhiteMode = 0xFF00008B;
    rows[1].FIsVisible = false;
    rows[36].FColor_BlackMode = 0xFFFFFFFF;
    rows[36].FColor_WhiteMode = 0xFFD2691E;
    rows[36].FDash = TStrokeDash::Dot;
  }
  int count() const override { return static_cast<int>(rows.size()); }
  TPaletteLook row(int i) const override { return rows[static_cast<size_t>(i)]; }
};

class ScenePaint : public ::testing::Test {
 protected:
  TTempDir dir;
  TfrmPelw form;
  TTestPalette palette;
  TRecordingCanvas canvas{800, 600};
  void SetUp() override {
    form.FAppDataPath = dir.path();
    form.FormCreate({});
    form.pboxResize(800, 600);
    form.FPaintPalette = &palette;
    form.setBackgroundMode(true);
    form.FScale = TPointF(1, 1);
    form.FOffset = TPointF(0, 0);
    form.FShowGrid = false;
  }
  TPW_Path* line(TPointF a, TPointF b, int row = 0) {
    auto s = std::make_unique<TPW_Path>(row, 0xFF123456, 1.0f, TStrokeDash::Solid, form.PathList->getNextID());
    s->drawLinePath(a, b);
    TPW_Path* raw = s.get();
    form.PathList->add(std::move(s), 0);
    return raw;
  }
  TPW_Path* hole(TPointF at, int next = -1) {
    auto s = std::make_unique<TPW_Path>(36, 0xFFFFFFFF, 1.0f, TStrokeDash::Solid, form.PathList->getNextID());
    s->FShapeType = ShapeType::Hole;
    s->FStartPt = s->FCenter = at;
    s->FData.MoveTo(TPointF(at.x, at.y - 1.5f));
    s->FData.LineTo(TPointF(at.x + 0.5f, at.y));
    s->FData.LineTo(TPointF(at.x, at.y + 1.5f));
    s->FData.LineTo(TPointF(at.x - 0.5f, at.y));
    s->FData.ClosePath();
    s->FStitchIn = TPointF(at.x + 0.1f, at.y - 0.5f);
    s->FStitchOut = TPointF(at.x - 0.1f, at.y + 0.5f);
    s->FNextStitchID = next;
    TPW_Path* raw = s.get();
    form.PathList->add(std::move(s), 0);
    return raw;
  }
  std::vector<const TCanvasOp*> paths() const { return canvas.ops("drawPath"); }
};

TEST_F(ScenePaint, BackgroundComesFirstAndFollowsTheMode) {
  form.pboxPaint(&canvas);
  ASSERT_FALSE(canvas.FOps.empty());
  EXPECT_EQ(canvas.FOps.front().op, "clear");
  EXPECT_EQ(canvas.FOps.front().color, 0xFF000000u);
  form.actSetGridBackgroundWhite();
  EXPECT_EQ(form.FColor_Drawing, 0xFF00BBBBu);
  EXPECT_EQ(form.FColor_StitchingHole, 0xFFD2691Eu);
  EXPECT_EQ(form.FStrokeDefs.RulerColor, 0xFFFF8C00u);
  canvas.FOps.clear();
  form.pboxPaint(&canvas);
  EXPECT_EQ(canvas.FOps.front().color, 0xFFF8F8F8u);
  form.FIsPrinting = true;
  canvas.FOps.clear();
  form.pboxPaint(&canvas);
  EXPECT_EQ(canvas.FOps.front().color, 0xFFFFFFFFu);
  // Nothing at all without a canvas or on a canvas of no size.
  form.pboxPaint(nullptr);
  TRecordingCanvas none(0, 0);
  form.pboxPaint(&none);
  EXPECT_TRUE(none.FOps.empty());
}

TEST_F(ScenePaint, HolesLieAboveLinesAndHiddenShapesAreLeftOut) {
  hole(TPointF(50, 50));
  line(TPointF(10, 10), TPointF(90, 10));
  line(TPointF(2000, 10), TPointF(2100, 10));  // off the canvas
  line(TPointF(10, 20), TPointF(90, 20), 1);   // hidden row
  line(TPointF(10, 30), TPointF(90, 30), 77);  // no such row: drawn
  TPW_Path* other = line(TPointF(10, 40), TPointF(90, 40));
  form.PathList->addLayer(5, "back", false);
  other->FLayerID = 5;
  form.FScale = TPointF(2, 2);
  form.pboxPaint(&canvas);
  const auto p = paths();
  ASSERT_EQ(p.size(), 3u);
  EXPECT_FLOAT_EQ(p[0]->path[0].Point.y, 20);
  EXPECT_FLOAT_EQ(p[1]->path[0].Point.y, 60);
  EXPECT_FLOAT_EQ(p[2]->path[0].Point.y, 97);  // the hole, last though it came first
  EXPECT_EQ(p[1]->color, 0xFF123456u);           // own colour without a row
}

TEST_F(ScenePaint, ShapesAreDrawnInPixelsWithTheirRowsPen) {
  form.FScale = TPointF(10, 10);
  form.FOffset = TPointF(5, 7);
  TPW_Path* a = line(TPointF(1, 2), TPointF(30, 2));
  form.pboxPaint(&canvas);
  auto p = paths();
  ASSERT_EQ(p.size(), 1u);
  EXPECT_TRUE(p[0]->path[0].Point.identical(TPointF(15, 27)));
  EXPECT_TRUE(p[0]->path[1].Point.identical(TPointF(305, 27)));
  EXPECT_EQ(p[0]->color, 0xFF00FFFFu);
  EXPECT_FLOAT_EQ(p[0]->thickness, 1.0f);  // (1 - 0.5) + log10(10) / 2
  EXPECT_FLOAT_EQ(p[0]->opacity, 1.0f);
  // Selected: the selection colour and handles at both ends.
  a->FSelected = true;
  canvas.FOps.clear();
  form.pboxPaint(&canvas);
  EXPECT_EQ(paths()[0]->color, 0xFFFF5500u);
  const auto squares = canvas.ops("drawRect");
  ASSERT_EQ(squares.size(), 2u);
  EXPECT_FLOAT_EQ(squares[0]->rect.width(), 6);
  EXPECT_EQ(squares[0]->color, form.FHandleColor);
  // On another layer than the active one, dimmed.
  a->FSelected = false;
  form.PathList->addLayer(3, "other", true);
  a->FLayerID = 3;
  canvas.FOps.clear();
  form.pboxPaint(&canvas);
  EXPECT_FLOAT_EQ(paths()[0]->opacity, 0.5f);
  form.FPaintSwitches.chkHighlightActiveLayer = true;
  canvas.FOps.clear();
  form.pboxPaint(&canvas);
  EXPECT_FLOAT_EQ(paths()[0]->opacity, 1.0f);
}

TEST_F(ScenePaint, HolesGetTheirDotFaintWhileTheThreadShows) {
  form.FScale = TPointF(20, 20);
  TPW_Path* second = hole(TPointF(14, 10));
  hole(TPointF(10, 10), second->FID);
  form.pboxPaint(&canvas);
  auto dots = canvas.ops("fillEllipse");
  ASSERT_EQ(dots.size(), 2u);
  EXPECT_NEAR(dots[0]->rect.width(), 2 * (std::log10(20.0) + 2), 1e-4);
  EXPECT_FLOAT_EQ(dots[0]->opacity, 0.6f);
  EXPECT_EQ(dots[0]->color, 0xFFFFFFFFu);
  // No thread unless asked for: the only lines are the scale bar's three.
  EXPECT_EQ(canvas.count("line"), 3u);

  form.FViewOptions.FShowStitchPattern = true;
  canvas.FOps.clear();
  form.pboxPaint(&canvas);
  dots = canvas.ops("fillEllipse");
  EXPECT_NEAR(dots[0]->rect.width(), 2 * ((std::log10(20.0) - 1) / 10 + 2), 1e-4);
  EXPECT_FLOAT_EQ(dots[0]->opacity, 0.1f);
  EXPECT_FLOAT_EQ(paths()[0]->opacity, 0.1f);
  EXPECT_EQ(canvas.count("line"), 3u + 2u);  // the thread's edge and the thread
  // A selected hole keeps its outline at full strength.
  second->FSelected = true;
  canvas.FOps.clear();
  form.pboxPaint(&canvas);
  EXPECT_FLOAT_EQ(paths()[0]->opacity, 1.0f);
}

TEST_F(ScenePaint, GridCacheIsReusedWhileTheViewMovesAndRedrawnAfterItSettles) {
  form.FShowGrid = true;
  form.pboxPaint(&canvas);
  ASSERT_TRUE(form.FGridCache);
  const ICanvasBitmap* first = form.FGridCache.get();
  auto& grid = static_cast<TRecordingBitmap*>(form.FGridCache.get())->recording();
  EXPECT_GT(grid.count("line"), 10u);
  EXPECT_EQ(canvas.ops("bitmap").at(0)->rect, TRectF(-300, -300, 1100, 900));
  EXPECT_EQ(form.FGridCacheKey, "1400.0;1200.0;1.000;0;5;10;1");
  EXPECT_FALSE(form.FGridSettleTimer);

  // A pan within range: the old bitmap, shifted, and the settle timer runs.
  form.FOffset = TPointF(100, 40);
  canvas.FOps.clear();
  form.pboxPaint(&canvas);
  EXPECT_EQ(form.FGridCache.get(), first);
  EXPECT_EQ(canvas.ops("bitmap").at(0)->rect, TRectF(-200, -260, 1200, 940));
  ASSERT_TRUE(form.FGridSettleTimer);
  EXPECT_EQ(form.FGridSettleTimer->interval(), 140);
  EXPECT_TRUE(form.FGridSettleTimer->isActive());
  // A zoom by more than two, while moving: still the stretched bitmap.
  form.FScale = TPointF(3, 3);
  form.pboxPaint(&canvas);
  EXPECT_EQ(form.FGridCache.get(), first);

  int repaints = 0;
  form.FViewHost.invalidateCanvas = [&repaints] { ++repaints; };
  static_cast<TManualTimer*>(form.FGridSettleTimer.get())->fire();
  EXPECT_FALSE(form.FGridSettleTimer->isActive());
  EXPECT_EQ(repaints, 1);
  EXPECT_EQ(grid.FScenes, 1);  // not drawn again while moving
  form.pboxPaint(&canvas);
  // Drawn again, sharp, at the new scale, into the same bitmap.
  EXPECT_EQ(form.FGridCache.get(), first);
  EXPECT_EQ(grid.FScenes, 2);
  EXPECT_TRUE(form.FGridCacheScale.identical(TPointF(3, 3)));
  EXPECT_EQ(canvas.ops("bitmap").back()->rect, TRectF(-300, -300, 1100, 900));

  // A change of background changes the key: drawn again at once.
  form.actSetGridBackgroundWhite();
  form.pboxPaint(&canvas);
  EXPECT_EQ(grid.FScenes, 3);
}

TEST_F(ScenePaint, AFailingShapeIsLoggedOnceAndTheRestIsDrawn) {
  line(TPointF(10, 10), TPointF(90, 10));
  line(TPointF(10, 20), TPointF(90, 20), 2);
  line(TPointF(10, 30), TPointF(90, 30));
  canvas.FOnOp = [](const TCanvasOp& op) {
    if (op.op == "drawPath" && op.path[0].Point.y == 20) throw std::runtime_error("no ink");
  };
  form.pboxPaint(&canvas);
  form.pboxPaint(&canvas);
  EXPECT_EQ(canvas.count("drawPath"), 6u);  // recorded before the throw, all three each time
  const std::string log = readTextFile(form.paintErrorLogFileName());
  // The line with its time is written once; two paints that straddle a
  // second write it twice, never more.
  const auto lines = std::count(log.begin(), log.end(), '\n');
  EXPECT_GE(lines, 1);
  EXPECT_LE(lines, 2);
  EXPECT_NE(log.find("  std::runtime_error: no ink [shape ID=2 type=LINE]\r\n"), std::string::npos);
  EXPECT_EQ(log[4], '-');  // yyyy-mm-dd
}

TEST_F(ScenePaint, BannersAndScaleBar) {
  form.FBusyMessage = "Searching";
  form.FIgnoreLayer = true;
  form.FScale = TPointF(10, 10);
  form.pboxPaint(&canvas);
  const auto texts = canvas.ops("text");
  ASSERT_GE(texts.size(), 3u);
  EXPECT_EQ(texts[0]->text, "Searching");
  EXPECT_FLOAT_EQ(texts[0]->rect.Top, 2);
  EXPECT_EQ(texts[1]->text, "Warning: Layer ignore mode(Press Ctrl + Alt + i to cancel)");
  EXPECT_FLOAT_EQ(texts[1]->rect.Top, 14 + 5);
  // The scale bar: ten 1 mm ticks at 10 px/mm is 100 px, within a quarter of 800.
  EXPECT_EQ(texts.back()->text, "10.00 mm");
  EXPECT_FLOAT_EQ(texts.back()->rect.Left, 800 - 100 - 10);
}

}  // namespace

namespace {

// Records each batch of dots as one operation.
class TBatchCountingCanvas : public TRecordingCanvas {
 public:
  using TRecordingCanvas::TRecordingCanvas;
  std::vector<size_t> FBatches;
  void fillCircles(const std::vector<TPointF>& centres, float radius, float opacity) override {
    FBatches.push_back(centres.size());
    TRecordingCanvas::fillCircles(centres, radius, opacity);
  }
  // "P" for a path, "o" for a dot, "#" for a handle, in order.
  std::string order() const {
    std::string o;
    for (const auto& op : FOps)
      if (op.op == "drawPath" || op.op == "fillEllipse" || op.op == "drawRect")
        o += op.op == "drawPath" ? 'P' : op.op == "drawRect" ? '#' : 'o';
    return o;
  }
};

TEST_F(ScenePaint, HoleDotsGoTogetherWhenNothingComesBetween) {
  for (int i = 0; i < 30; ++i) hole(TPointF(10.0f + 3 * i, 50));
  line(TPointF(10, 10), TPointF(90, 10));
  TBatchCountingCanvas batch(800, 600);
  form.FScale = TPointF(1, 1);  // dots alone
  form.pboxPaint(&batch);
  EXPECT_EQ(batch.FBatches, std::vector<size_t>{30});
  // Close up an outline comes between each two dots, and a handle after
  // its own hole's dot: the order stays that of the shapes.
  form.FScale = TPointF(8, 8);
  form.PathList->findByID(1)->FSelected = true;
  batch.FOps.clear();
  batch.FBatches.clear();
  form.pboxPaint(&batch);
  EXPECT_EQ(batch.FBatches, std::vector<size_t>(30, 1));
  EXPECT_EQ(batch.order().substr(0, 8), "PPo#PoPo");
}

}  // namespace
