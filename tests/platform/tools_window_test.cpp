// The window's Tools menu and the language's font, on the offscreen
// platform: the jigsaw dialog, the dye mixer window, the stitching order
// from the menu, a translation file imported from the language menu, and
// screenshots of each script when asked for (run under Xvfb).
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QDir>
#include <QDoubleSpinBox>
#include <QElapsedTimer>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QRawFont>
#include <QScreen>
#include <QSpinBox>
#include <QTimer>

#include "app/frm_pelw.h"
#include "app/interface_fonts.h"
#include "platform/qt/dye_mixer_window.h"
#include "platform/qt/jigsaw_dialog.h"
#include "platform/qt/main_window.h"
#include "test_support.h"

namespace {

class ToolsWindow : public ::testing::Test {
 protected:
  TTempDir dir;
  TScriptedDialogs dialogs;
  TfrmPelw form;
  std::unique_ptr<TMainWindow> window;
  QFont appFont = QApplication::font();
  void SetUp() override {
    form.FAppDataPath = dir.path();
    form.FDialogs = &dialogs;
    writeTextFile(dir.file("pw_options.ini"), "[Demo]\nLoadAtStartup=0\n[General]\nLangID=en\n");
    form.FormCreate({});
    window = std::make_unique<TMainWindow>(form);
    window->resize(900, 600);
    window->show();
    QApplication::processEvents();
  }
  void TearDown() override {
    window.reset();
    QApplication::setFont(appFont);
  }
  static QString shotFolder() { return QString::fromUtf8(qgetenv("PELWRIGHT_SCREENSHOT_DIR")); }
  static void settle() {
    QElapsedTimer t;
    t.start();
    while (t.elapsed() < 300) QApplication::processEvents(QEventLoop::AllEvents, 20);
  }
  // A window of its own, saved when screenshots are asked for.
  static void keep(QWidget* w, const QString& name) {
    if (shotFolder().isEmpty()) return;
    settle();
    w->grab().save(QDir(shotFolder()).filePath(name));
  }
};

TEST_F(ToolsWindow, JigsawDialogDrawsOrSaysWhyNot) {
  TfrmJigsaw dialog(form, window.get());
  EXPECT_EQ(dialog.nbJIGSAW_NumPiecesX->value(), 2);
  EXPECT_DOUBLE_EQ(dialog.nbJIGSAW_PieceLen1->value(), 30.0);
  EXPECT_EQ(dialog.nbJIGSAW_RandomSeed->value(), 65535);
  EXPECT_EQ(dialog.windowTitle(), "Jigsaw puzzle");
  dialog.show();
  keep(&dialog, "jigsaw_dialog.png");

  dialog.nbJIGSAW_NumPiecesX->setValue(60);
  dialog.accept();
  EXPECT_NE(dialog.result(), QDialog::Accepted);
  ASSERT_EQ(dialogs.FMessages.size(), 1u);
  EXPECT_EQ(dialogs.FMessages[0], "The number of pieces must be a whole number from 1 to 50.");
  EXPECT_TRUE(form.PathList->empty());

  dialog.nbJIGSAW_NumPiecesX->setValue(3);
  dialog.chkJIGSAW_FlatEdge->setChecked(true);
  dialog.accept();
  EXPECT_EQ(dialog.result(), QDialog::Accepted);
  // 3 by 2 pieces: 10 straight outer sides, 7 inner sides of three shapes.
  EXPECT_EQ(form.PathList->Count(), 10u + 7u * 3u);
  EXPECT_EQ(form.FJigsawSettings.FNumPiecesX, 3);
  window->FActUndo->trigger();
  EXPECT_TRUE(form.PathList->empty());
  window->FActRedo->trigger();
  form.actResetView();
  keep(window.get(), "jigsaw_drawn.png");
}

TEST_F(ToolsWindow, DyeMixerPredictsSearchesAndRefusesBadNumbers) {
  window->FActDyeMixer->trigger();
  TfrmDyeSimulator* mixer = window->FDyeMixer;
  ASSERT_NE(mixer, nullptr);
  EXPECT_TRUE(mixer->isVisible());
  // One part of the first dye at the chart's one to one: its swatch colour.
  EXPECT_EQ(mixer->lblDye_PredictedHex->text(), "#272735");

  mixer->nbDye_Amount[1]->setText("-3");
  EXPECT_FALSE(mixer->updatePrediction());
  EXPECT_EQ(mixer->nbDye_Amount[1]->text(), "0");
  mixer->nbDye_Dilution->setText("abc");
  EXPECT_FALSE(mixer->updatePrediction());
  EXPECT_EQ(mixer->nbDye_Dilution->text(), "2");
  ASSERT_EQ(dialogs.FMessages.size(), 2u);
  EXPECT_EQ(dialogs.FMessages[0], "Each amount must be a number from 0 to 1000.");
  EXPECT_EQ(mixer->lblDye_PredictedHex->text(), "#272735");

  mixer->edtDye_Target->setText("#80");
  EXPECT_FALSE(mixer->search());
  EXPECT_EQ(dialogs.FMessages.back(), "Enter the colour as #RRGGBB or as three numbers from 0 to 255.");
  mixer->edtDye_Target->setText("#6b3a2a");
  ASSERT_TRUE(mixer->search());
  for (int k = 0; k < 3; ++k) {
    EXPECT_TRUE(mixer->results()[k].HasResult);
    EXPECT_TRUE(mixer->FResultTexts[k]->text().startsWith("ΔE ")) << k;
  }
  EXPECT_EQ(mixer->FResultBoxes[1]->title(), "3 dyes");
  form.setLanguage("ja");
  EXPECT_EQ(mixer->FTabs->tabText(1), QString::fromUtf8("レシピを探す"));
  EXPECT_EQ(mixer->FResultBoxes[1]->title(), QString::fromUtf8("3 色"));
  form.setLanguage("en");
  mixer->resize(760, 560);
  mixer->FTabs->setCurrentIndex(1);
  keep(mixer, "dye_mixer_search.png");
  mixer->FTabs->setCurrentIndex(0);
  keep(mixer, "dye_mixer_mix.png");
}

TEST_F(ToolsWindow, FixStitchingOrderFromTheMenuUsesThePointer) {
  TPrickingIron iron;
  std::vector<TPW_Path*> holes;
  for (float x : {8.0f, 0.0f, 4.0f}) {
    auto h = std::make_unique<TPW_Path>(36, 0xFFFFFFFF, 1, TStrokeDash::Solid, 0);
    h->createStichPath(TPointF(x, 0), false, &iron, 0, 0);
    h->FSelected = true;
    holes.push_back(form.addShapeToDocument(std::move(h), 0));
  }
  form.FLastMousePos = form.RealToScreen(TPointF(9, 0));
  window->FActFixStitchingOrder->trigger();
  EXPECT_EQ(holes[0]->FNextStitchID, holes[2]->FID);
  EXPECT_EQ(holes[2]->FNextStitchID, holes[1]->FID);
  EXPECT_EQ(holes[1]->FNextStitchID, -1);
}

TEST_F(ToolsWindow, ATranslationFileFromTheLanguageMenuRetitlesTheMenus) {
  writeTextFile(dir.file("bad.tsv"), "not a table\n");
  writeTextFile(dir.file("fr.tsv"), "\ttwo-letter-codes\ten\tfr\n\tmiFile\tFile\tFichier\n\tmiTools\tTools\tOutils\n");
  dialogs.FFileNames = {dir.file("bad.tsv"), dir.file("fr.tsv")};
  QMenu* file = window->menuBar()->findChild<QMenu*>("miFile");
  window->FActImportTranslation->trigger();
  ASSERT_EQ(dialogs.FMessages.size(), 1u);
  EXPECT_EQ(dialogs.FMessages[0],
            "bad.tsv\nThe file is not a tab-separated translation table.\nThe translations were not changed.");
  EXPECT_EQ(file->title(), "File");
  window->FActImportTranslation->trigger();
  form.setLanguage("fr");
  EXPECT_EQ(file->title(), "Fichier");
  EXPECT_EQ(window->FToolsMenu->title(), "Outils");
}

// Each language's interface fonts have every character of the language's
// own name and of the Japanese and Chinese Tools menu phrases, and a
// character that Japanese and Chinese share takes the language's own font.
TEST_F(ToolsWindow, EachLanguageGetsFontsForItsScript) {
  const TMultiLang& lang = *form.FMultiLang;
  auto fontFor = [](const std::string& code, uint c) {
    for (const std::string& family : interfaceFontFamilies(code)) {
      const QRawFont raw = QRawFont::fromFont(QFont(QString::fromStdString(family)));
      if (raw.isValid() && raw.familyName() == QString::fromStdString(family) && raw.supportsCharacter(c))
        return family;
    }
    return std::string();
  };
  for (const std::string& code : TMultiLang::tableLanguageCodes()) {
    form.setLanguage(code);
    EXPECT_EQ(QApplication::font().families().first().toStdString(), interfaceFontFamilies(code).front());
    const std::string sample = lang.getTranslation(code, "LanguageName") + lang.getTranslation(code, "miTools") +
                               lang.getTranslation(code, "btnJigSaw");
    for (const uint c : QString::fromStdString(sample).toUcs4())
      EXPECT_NE(fontFor(code, c), "") << code << " has no font for U+" << std::hex << c;
  }
  EXPECT_EQ(fontFor("ja", 0x8A9E), "IPAPGothic");            // 語
  EXPECT_EQ(fontFor("zh-cn", 0x4E2D), "WenQuanYi Micro Hei");  // 中
}

// Screenshots of the window in each script, with the language menu open.
TEST_F(ToolsWindow, ScriptsOnScreen) {
  if (shotFolder().isEmpty() || QGuiApplication::platformName() == "offscreen") GTEST_SKIP();
  QMenu* languages = window->menuBar()->findChild<QMenu*>("miSelectLang");
  for (const char* code : {"ja", "zh-cn", "ru", "am"}) {
    form.setLanguage(code);
    window->activateWindow();
    settle();
    QTimer::singleShot(400, [&] {
      QScreen* screen = window->screen();
      screen->grabWindow(0, window->x(), window->y(), window->frameGeometry().width() + 40,
                         window->frameGeometry().height())
          .save(QDir(shotFolder()).filePath(QString("main_window_%1.png").arg(code)));
      languages->close();
    });
    languages->exec(window->mapToGlobal(QPoint(window->menuBar()->actionGeometry(languages->menuAction()).left(),
                                               window->menuBar()->height())));
  }
  // The dialogs laid out for the Japanese texts they were designed in.
  form.setLanguage("ja");
  TfrmJigsaw jigsaw(form, window.get());
  jigsaw.show();
  keep(&jigsaw, "jigsaw_dialog_ja.png");
  window->FActDyeMixer->trigger();
  window->FDyeMixer->search();
  window->FDyeMixer->FTabs->setCurrentIndex(1);
  keep(window->FDyeMixer, "dye_mixer_search_ja.png");
}

}  // namespace
