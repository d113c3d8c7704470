// The view on the controller's own line palette, and the banners in the
// program's language.
#include <gtest/gtest.h>

#include "app/frm_pelw.h"
#include "platform/recording_canvas.h"
#include "test_support.h"

namespace {

class PalettePaint : public ::testing::Test {
 protected:
  TTempDir dir;
  TfrmPelw form;
  TRecordingCanvas canvas{800, 600};
  void SetUp() override {
    form.FAppDataPath = dir.path();
    form.FormCreate({});
    form.pboxResize(800, 600);
    form.FScale = TPointF(10, 10);
    form.FShowGrid = false;
  }
  void add(int row, float y) {
    auto s = std::make_unique<TPW_Path>(row, 0xFF123456, 1.0f, TStrokeDash::Solid, form.PathList->getNextID());
    s->drawLinePath(TPointF(1, y), TPointF(30, y));
    form.PathList->add(std::move(s), 0);
  }
  // The colours the shapes were stroked in.
  std::vector<TAlphaColor> paint() {
    canvas.FOps.clear();
    form.pboxPaint(&canvas);
    std::vector<TAlphaColor> out;
    for (const TCanvasOp* op : canvas.ops("drawPath")) out.push_back(op->color);
    return out;
  }
};

TEST_F(PalettePaint, EachShapeInItsRowsColourForTheBackground) {
  add(0, 2);
  add(3, 4);
  add(77, 6);  // no such row: its own colour
  EXPECT_EQ(paint(), (std::vector<TAlphaColor>{0xFF00FFFF, 0xFFFFFF00, 0xFF123456}));
  EXPECT_EQ(canvas.ops("drawPath")[1]->dash, TStrokeDash::Dash);
  form.actSetGridBackgroundWhite();
  EXPECT_EQ(form.FPalletList[0].getColor(), 0xFF00008Bu);  // every row told
  EXPECT_EQ(paint(), (std::vector<TAlphaColor>{0xFF00008B, 0xFFBDB76B, 0xFF123456}));
  EXPECT_EQ(canvas.ops("line").back()->color, 0xFF000000u);  // the scale bar: row 38
  // Edits show at the next paint; a hidden row hides its shapes.
  form.FPalletList[3].FColor_WhiteMode = 0xFF445566;
  EXPECT_EQ(paint()[1], 0xFF445566u);
  form.FPalletList[3].FIsVisible = false;
  EXPECT_EQ(paint().size(), 2u);
  form.FPaintPalette = nullptr;  // no palette: every shape in its own colour
  EXPECT_EQ(paint(), (std::vector<TAlphaColor>(3, 0xFF123456)));
}

TEST_F(PalettePaint, RowThirtySixIsTheStitchingHoleColour) {
  EXPECT_EQ(form.FColor_StitchingHole, 0xFFFFFFFFu);
  form.actSetGridBackgroundWhite();
  EXPECT_EQ(form.FColor_StitchingHole, 0xFFD2691Eu);
  form.FPalletList[36].FColor_WhiteMode = 0xFF8B4513;
  int repaints = 0;
  form.FViewHost.invalidateCanvas = [&repaints] { ++repaints; };
  form.palletListChanged();
  EXPECT_EQ(form.FColor_StitchingHole, 0xFF8B4513u);
  EXPECT_EQ(repaints, 1);
  auto h = std::make_unique<TPW_Path>(36, 0xFFFFFFFF, 1.0f, TStrokeDash::Solid, form.PathList->getNextID());
  h->FShapeType = ShapeType::Hole;
  h->FStartPt = h->FCenter = TPointF(20, 20);
  h->FData.MoveTo(TPointF(20, 19));
  h->FData.LineTo(TPointF(20, 21));
  form.PathList->add(std::move(h), 0);
  EXPECT_EQ(paint(), std::vector<TAlphaColor>{0xFF8B4513});
  EXPECT_EQ(canvas.ops("drawPath")[0]->dash, TStrokeDash::Dot);  // the row's dash
  EXPECT_EQ(canvas.ops("fillEllipse").at(0)->color, 0xFF8B4513u);  // and its dot
}

}  // namespace
