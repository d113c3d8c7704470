// The view on the controller's own line palette, and the canvas texts in the
// program's language.
#include <gtest/gtest.h>

#include "app/frm_pelw.h"
#include "platform/recording_canvas.h"
#include "surface/view_phrases.h"
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
    form.FOffset = TPointF(0, 0);
    form.FShowGrid = false;
  }
  TPW_Path* line(int row, float y) {
    auto s = std::make_unique<TPW_Path>(row, 0xFF123456, 1.0f, TStrokeDash::Solid, form.PathList->getNextID());
    s->drawLinePath(TPointF(1, y), TPointF(30, y));
    TPW_Path* raw = s.get();
    form.PathList->add(std::move(s), 0);
    return raw;
  }
  // The shapes' strokes, without the scale bar.
  std::vector<const TCanvasOp*> paint() {
    canvas.FOps.clear();
    form.pboxPaint(&canvas);
    return canvas.ops("drawPath");
  }
};

TEST_F(PalettePaint, ShapesTakeTheirRowsColourForTheBackground) {
  line(0, 2);
  line(3, 4);
  line(77, 6);  // no such row: its own colour
  auto p = paint();
  ASSERT_EQ(p.size(), 3u);
  EXPECT_EQ(p[0]->color, 0xFF00FFFFu);
  EXPECT_EQ(p[1]->color, 0xFFFFFF00u);
  EXPECT_EQ(p[1]->dash, TStrokeDash::Dash);
  EXPECT_EQ(p[2]->color, 0xFF123456u);

  form.actSetGridBackgroundWhite();
  EXPECT_EQ(form.FPalletList[0].getColor(), 0xFF00008Bu);  // every row told
  p = paint();
  EXPECT_EQ(p[0]->color, 0xFF00008Bu);
  EXPECT_EQ(p[1]->color, 0xFFBDB76Bu);
  EXPECT_EQ(p[2]->color, 0xFF123456u);
  // The scale bar is drawn in row 38: black on white.
  EXPECT_EQ(canvas.ops("line").back()->color, 0xFF000000u);
}

TEST_F(PalettePaint, RowEditsShowAtTheNextPaintAndHiddenRowsHideTheirShapes) {
  line(0, 2);
  line(5, 4);
  form.FPalletList[5].FColor_BlackMode = 0xFF445566;
  auto p = paint();
  ASSERT_EQ(p.size(), 2u);
  EXPECT_EQ(p[1]->color, 0xFF445566u);
  form.FPalletList[5].FIsVisible = false;
  p = paint();
  ASSERT_EQ(p.size(), 1u);
  EXPECT_EQ(p[0]->color, 0xFF00FFFFu);
  // Pointing the painter nowhere: each shape keeps its own colour.
  form.FPaintPalette = nullptr;
  p = paint();
  ASSERT_EQ(p.size(), 2u);
  EXPECT_EQ(p[0]->color, 0xFF123456u);
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
  // A hole's dot is filled in that colour.
  auto h = std::make_unique<TPW_Path>(36, 0xFFFFFFFF, 1.0f, TStrokeDash::Solid, form.PathList->getNextID());
  h->FShapeType = ShapeType::Hole;
  h->FStartPt = h->FCenter = TPointF(20, 20);
  h->FData.MoveTo(TPointF(20, 19));
  h->FData.LineTo(TPointF(20, 21));
  form.PathList->add(std::move(h), 0);
  paint();
  ASSERT_EQ(canvas.count("fillEllipse"), 1u);
  EXPECT_EQ(canvas.ops("fillEllipse")[0]->color, 0xFF8B4513u);
  EXPECT_EQ(canvas.ops("drawPath")[0]->dash, TStrokeDash::Dot);  // the row's dash
}

TEST_F(PalettePaint, BannersSpeakTheProgramsLanguage) {
  form.FIgnoreLayer = true;
  form.FSelectNextStitchingHoleMode = true;
  form.FLangID = "ja";
  paint();
  auto texts = canvas.ops("text");
  ASSERT_GE(texts.size(), 2u);
  EXPECT_EQ(texts[0]->text, "次の縫い穴をクリックしてください。(ESCキーで終了)");
  EXPECT_EQ(texts[1]->text, "警告：レイヤー無視モード(Ctrl + Alt + i で解除)");
  // A language without a phrase falls back to English, and with no table
  // at all the English words stand.
  form.FLangID = "de";
  paint();
  EXPECT_EQ(canvas.ops("text")[1]->text, "Warning: Layer ignore mode(Press Ctrl + Alt + i to cancel)");
  form.FMultiLang.reset();
  paint();
  EXPECT_EQ(canvas.ops("text")[0]->text, "Please click the next stitching hole. (Press ESC key to exit)");
}

TEST(ViewPhrase, MissingKeysAndTablesFallBackToTheEnglishWords) {
  TMultiLang lang;
  lang.addTranslation("en", "IndependentLayer", "Independent Layer");
  lang.addTranslation("ja", "IndependentLayer", "独立レイヤー");
  EXPECT_EQ(viewPhrase(&lang, "ja", ViewPhrase::IndependentLayer), "独立レイヤー");
  EXPECT_EQ(viewPhrase(&lang, "fr", ViewPhrase::IndependentLayer), "Independent Layer");
  EXPECT_EQ(viewPhrase(&lang, "ja", {"noSuchKey", "Fallback"}), "Fallback");
  EXPECT_EQ(viewPhrase(nullptr, "ja", ViewPhrase::ResetView), "Reset view");
}

}  // namespace
