// The view's arithmetic and the controller's zoom, pan and reset view.
#include <gtest/gtest.h>

#include "app/frm_pelw.h"
#include "surface/view_math.h"
#include "test_support.h"

namespace {

TEST(ViewMapping, BothWaysWithRoundingToThousandths) {
  const TPointF scale(4, 4), offset(100, 50);
  EXPECT_TRUE(realToScreen(TPointF(10, -5), scale, offset).identical(TPointF(140, 30)));
  EXPECT_TRUE(screenToReal(TPointF(140, 30), scale, offset).identical(TPointF(10, -5)));
  // 1/3 mm rounds to 0.333; the mapping to the screen does not round.
  EXPECT_FLOAT_EQ(screenToReal(TPointF(101, 50), TPointF(3, 3), TPointF(100, 50)).x, 0.333f);
  EXPECT_FLOAT_EQ(realToScreen(TPointF(0.1f, 0), TPointF(3, 3), TPointF(0.5f, 0)).x, 0.8f);
  // Ties to even at the third decimal: 0.0005 -> 0.000, 0.0015 -> 0.002.
  EXPECT_FLOAT_EQ(screenToReal(TPointF(1, 0), TPointF(2000, 1), TPointF(0, 0)).x, 0.0f);
  EXPECT_FLOAT_EQ(screenToReal(TPointF(3, 0), TPointF(2000, 1), TPointF(0, 0)).x, 0.002f);
  const TRectF v = visibleRealRect(scale, offset, 800, 600);
  EXPECT_FLOAT_EQ(v.Left, -25);
  EXPECT_FLOAT_EQ(v.Top, -12.5f);
  EXPECT_FLOAT_EQ(v.Right, 175);
  EXPECT_FLOAT_EQ(v.Bottom, 137.5f);
}

TEST(ViewMapping, GridTickIsTheFinestAtLeastTenPixelsApart) {
  EXPECT_DOUBLE_EQ(chooseGridTick(TUnitMode::umMM, 100), 0.1);
  EXPECT_DOUBLE_EQ(chooseGridTick(TUnitMode::umMM, 40), 0.5);
  EXPECT_DOUBLE_EQ(chooseGridTick(TUnitMode::umMM, 10), 1);
  EXPECT_DOUBLE_EQ(chooseGridTick(TUnitMode::umMM, 3), 5);
  EXPECT_DOUBLE_EQ(chooseGridTick(TUnitMode::umMM, 0.1), 50);  // the largest stays
  EXPECT_DOUBLE_EQ(chooseGridTick(TUnitMode::umIN, 10), 25.4 / 16);  // 15.9 px
  EXPECT_DOUBLE_EQ(chooseGridTick(TUnitMode::umIN, 200), 25.4 / 128);
  EXPECT_DOUBLE_EQ(firstGridLine(23, 1), 10);  // aligned to ten ticks, one block before
  EXPECT_DOUBLE_EQ(firstGridLine(-7, 1), -20);
  const auto mm = TLengthFormatSettings::defaultsFor(TUnitMode::umMM);
  EXPECT_EQ(gridLineStyle(0, mm).thickness, 1.0f);
  EXPECT_EQ(gridLineStyle(5, mm).thickness, 0.75f);
  EXPECT_EQ(gridLineStyle(3, mm).dash, TStrokeDash::Dash);
  // Equality, not divisibility: with 4 as the middle, 8 is a light line.
  const auto in = TLengthFormatSettings::defaultsFor(TUnitMode::umIN);
  EXPECT_EQ(gridLineStyle(4, in).dash, TStrokeDash::Solid);
  EXPECT_EQ(gridLineStyle(2, in).dash, TStrokeDash::Dash);
}

TEST(ViewMapping, FittingADrawing) {
  const TViewPlacement empty = fitView(TRectF(), true, 800, 600);
  EXPECT_TRUE(empty.scale.identical(TPointF(10, 10)));
  EXPECT_TRUE(empty.offset.identical(TPointF(0, 0)));
  // 100 x 50 mm plus margins: min(800/110, 600/60) = 7.27 -> 7.3.
  const TViewPlacement v = fitView(TRectF(0, 0, 100, 50), false, 800, 600);
  EXPECT_FLOAT_EQ(v.scale.x, 7.3f);
  EXPECT_FLOAT_EQ(v.offset.x, 36 - 5);  // round(5 * 7.3) - 5, 7.3 lying a hair below
  EXPECT_FLOAT_EQ(v.offset.y, 36 - 5);
  // A drawing narrower than 10 mm with its margins is fitted as 10 mm wide.
  const TViewPlacement thin = fitView(TRectF(20, 0, 20, 0), false, 400, 400);
  EXPECT_FLOAT_EQ(thin.scale.x, 40.0f);
  // No clamp here: a huge drawing may go below the wheel's limit.
  EXPECT_LT(fitView(TRectF(0, 0, 100000, 100), false, 800, 600).scale.x, 0.5f);
}

class ControllerView : public ::testing::Test {
 protected:
  TTempDir dir;
  TfrmPelw form;
  void SetUp() override {
    form.FAppDataPath = dir.path();
    form.FormCreate({});
    form.pboxResize(800, 600);
  }
  void addLine(TPointF a, TPointF b) {
    auto s = std::make_unique<TPW_Path>(0, 0xFF00FFFF, 1.5f, TStrokeDash::Solid, form.PathList->getNextID());
    s->drawLinePath(a, b);
    form.PathList->add(std::move(s), 0);
  }
};

TEST_F(ControllerView, WheelZoomKeepsThePointUnderThePointer) {
  form.FScale = TPointF(4, 4);
  form.FOffset = TPointF(13, 17);
  form.FLastMousePos = TPointF(400, 300);
  const TPointF before = form.ScreenToReal(form.FLastMousePos);
  form.FormMouseWheel(120, 0);
  EXPECT_NEAR(form.FScale.x, 4 * 1.1809926614, 1e-4);
  EXPECT_EQ(form.FScale.x, form.FScale.y);
  const TPointF back = form.RealToScreen(before);
  EXPECT_NEAR(back.x, 400, 1e-3);
  EXPECT_NEAR(back.y, 300, 1e-3);
  form.FViewOptions.FReverseMouseWheelZoomDirection = true;
  form.FormMouseWheel(120, 0);
  EXPECT_NEAR(form.FScale.x, 4, 1e-4);
}

TEST_F(ControllerView, ShiftWheelAndArrowsPan) {
  form.FOffset = TPointF(0, 0);
  form.FormMouseWheel(121, ssShift);
  EXPECT_FLOAT_EQ(form.FOffset.x, 60);  // integer division towards zero
  form.FormMouseWheel(-121, ssShift | ssAlt);
  EXPECT_FLOAT_EQ(form.FOffset.y, 60);
  // By default the view travels the way the arrow points.
  form.FOffset = TPointF(0, 0);
  form.FLastMousePos = TPointF(10, 10);
  EXPECT_TRUE(form.FormKeyDown(TViewKey::Right, 0));
  EXPECT_TRUE(form.FormKeyDown(TViewKey::Up, 0));
  EXPECT_TRUE(form.FOffset.identical(TPointF(-50, 50)));
  EXPECT_TRUE(form.FLastMousePos.identical(TPointF(-40, 60)));
  form.FViewOptions.FReverseCursorKeyGridAreaMove = false;
  EXPECT_TRUE(form.FormKeyDown(TViewKey::Down, 0));
  EXPECT_FLOAT_EQ(form.FOffset.y, 100);
  EXPECT_FALSE(form.FormKeyDown(TViewKey::Left, ssCtrl));
  EXPECT_FLOAT_EQ(form.FOffset.x, -50);
}

TEST_F(ControllerView, RightDragAndGesturesMoveTheView) {
  form.FOffset = TPointF(5, 5);
  form.pboxMouseDown(TMouseButton::mbRight, ssRight, TPointF(100, 100));
  form.pboxMouseMove(ssRight, TPointF(130, 90));
  EXPECT_TRUE(form.FOffset.identical(TPointF(35, -5)));
  form.pboxMouseUp(TMouseButton::mbRight, 0, TPointF(130, 90));
  form.pboxMouseMove(0, TPointF(200, 200));
  EXPECT_TRUE(form.FOffset.identical(TPointF(35, -5)));

  form.FScale = TPointF(2, 2);
  form.FormGestureZoom({TPointF(400, 300), 100, true, false});
  EXPECT_FLOAT_EQ(form.FScale.x, 2);
  const TPointF under = form.ScreenToReal(TPointF(400, 300));
  form.FormGestureZoom({TPointF(400, 300), 150, false, false});
  EXPECT_FLOAT_EQ(form.FScale.x, 3);
  EXPECT_NEAR(form.RealToScreen(under).x, 400, 1e-3);
  form.FormGestureZoom({TPointF(400, 300), 150, false, true});
  EXPECT_EQ(form.FGestureLastZoomDistance, 0);

  const TPointF start = form.FOffset;
  form.FormGesturePan({TPointF(10, 10), 0, true, false});
  form.FormGesturePan({TPointF(25, 5), 0, false, false});
  EXPECT_TRUE(form.FOffset.identical(start + TPointF(15, -5)));
}

TEST_F(ControllerView, ResetViewFitsTheDocument) {
  form.actResetView();
  EXPECT_TRUE(form.FScale.identical(TPointF(10, 10)));
  EXPECT_TRUE(form.FOffset.identical(TPointF(0, 0)));
  addLine(TPointF(0, 0), TPointF(100, 0));
  addLine(TPointF(0, 50), TPointF(100, 50));
  form.actResetView();
  EXPECT_FLOAT_EQ(form.FScale.x, 7.3f);
  EXPECT_TRUE(form.FOffset.identical(TPointF(31, 31)));
  const TRectF v = form.VisibleRealRect();
  EXPECT_LE(v.Left, 0);
  EXPECT_GE(v.Right, 100);
}

TEST_F(ControllerView, StatusLineInTheChosenUnit) {
  form.FScale = TPointF(12.3456f, 12.3456f);
  form.FOffset = TPointF(0, 0);
  form.FLastMousePos = TPointF(123.456f, 0);
  EXPECT_EQ(form.statusText(), "Scale 12.34, Pos: (10.00 mm, 0.00 mm)");
  std::string shown;
  form.FViewHost.showStatus = [&shown](const std::string& s) { shown = s; };
  form.setUnitMode(TUnitMode::umIN);
  EXPECT_EQ(form.lengthSettings().LargeTickInterval, 8);
  EXPECT_EQ(shown, "Scale 12.34, Pos: (0.393701 in, 0 in (0.000000 in))");
  form.FStickyExists = true;
  form.FStickyPoint = TPointF(12.7f, 25.4f);
  form.FRequireSnapshotRotate = -2;
  EXPECT_EQ(form.statusText(),
            "Scale 12.34, Pos: (1/2 in (0.500000 in), 1 in (1.000000 in))<Sticky>;  Rotate: -2; Scale: 0");
}

}  // namespace
