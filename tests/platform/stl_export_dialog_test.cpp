// File > Export as STL on the card holder: the preview rebuilt when a
// setting changes but not for a colour, the jig at once, the word for open
// shapes, the files and the settings saved (from copies, whatever happens
// to the drawing meanwhile); screenshots of the preview
// when asked for (run under Xvfb with PELWRIGHT_SCREENSHOT_DIR).
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QDoubleSpinBox>
#include <QElapsedTimer>
#include <QLabel>
#include <QMenu>
#include <QRadioButton>
#include <QScrollArea>

#include "app/frm_pelw.h"
#include "app/safe_file.h"
#include "exchange/stl_settings.h"
#include "platform/qt/main_window.h"
#include "platform/qt/stl_export_dialog.h"
#include "platform/qt/stl_preview.h"
#include "test_support.h"

namespace {

const std::string kSample = std::string(PELWRIGHT_SOURCE_DIR) + "/resources/samples/card_holder.pwc";

class StlExportDialog : public ::testing::Test {
 protected:
  TTempDir dir;
  TScriptedDialogs dialogs;
  TfrmPelw form;
  std::unique_ptr<TMainWindow> window;
  void SetUp() override {
    form.FAppDataPath = dir.path();
    form.FDialogs = &dialogs;
    writeTextFile(dir.file("pw_options.ini"), "[Demo]\nLoadAtStartup=0\n[General]\nLangID=en\n");
    form.FormCreate({kSample});
    window = std::make_unique<TMainWindow>(form);
  }
  static void settle(int ms = 50) {
    QElapsedTimer t;
    t.start();
    while (t.elapsed() < ms) QApplication::processEvents(QEventLoop::AllEvents, 20);
  }
  static void keep(QWidget* w, const QString& name) {
    const QString folder = QString::fromUtf8(qgetenv("PELWRIGHT_SCREENSHOT_DIR"));
    if (folder.isEmpty()) return;
    settle(400);
    w->grab().save(QDir(folder).filePath(name));
  }
};

}  // namespace

TEST_F(StlExportDialog, PreviewFollowsTheSettingsAndTheColourOnlyItsLook) {
  TfrmSTLExportOptions d(form, stlSourceShapes(*form.PathList), window.get());
  d.show();
  settle();
  EXPECT_EQ(d.buildCount(), 1);
  EXPECT_FALSE(d.solid().Body.empty());
  EXPECT_TRUE(d.lblStatus->text().endsWith("triangles")) << d.lblStatus->text().toStdString();
  d.cmbEdgeTopMode->setCurrentIndex(kEdgeFillet);
  d.cmbEdgeBottomMode->setCurrentIndex(kEdgeFillet);
  settle();
  EXPECT_EQ(d.buildCount(), 2);  // two changes, one rebuild
  EXPECT_TRUE(d.lblStatus->text().contains("Skipped 1 region(s)")) << d.lblStatus->text().toStdString();
  keep(&d, "stl_export_pattern.png");
  if (d.FPreview && !qgetenv("PELWRIGHT_SCREENSHOT_DIR").isEmpty()) {
    // The letters cut into the rounded top, seen at a slant.
    d.rbEngraveTop->setChecked(true);
    d.rebuildNow();
    d.FPreview->FPitch = -50;
    d.FPreview->FYaw = 200;
    d.FPreview->FDistance *= 0.6f;
    keep(&d, "stl_export_engraved.png");
    d.rbEngraveNone->setChecked(true);
    d.rebuildNow();
  }

  // Colour and material: the same solid, drawn another way.
  settle();  // the last solid reaches the view
  const int builds = d.buildCount();
  const int uploads = d.FPreview ? d.FPreview->uploadCount() : 0;
  emit d.cbColor->activated(3);
  d.cmbMaterial->setCurrentIndex(2);
  settle();
  EXPECT_EQ(d.buildCount(), builds);
  EXPECT_EQ(d.FPreview ? d.FPreview->uploadCount() : 0, uploads);
  EXPECT_EQ(d.settings().MaterialPreset, 2);

  // The jig at once, with its own controls.
  d.rbModeJig->setChecked(true);
  settle();
  EXPECT_EQ(d.buildCount(), builds + 1);
  EXPECT_TRUE(d.solid().ErrorKey.empty());
  EXPECT_FALSE(d.nbThickness->isEnabled());
  EXPECT_TRUE(d.nbPocketDepth->isEnabled());
  d.cmbMaterial->setCurrentIndex(0);
  if (auto* scroll = d.findChild<QScrollArea*>()) scroll->ensureWidgetVisible(d.nbFingerDiameter);
  keep(&d, "stl_export_jig.png");
}

TEST_F(StlExportDialog, OpenShapesAreNamedAndNothingIsSaved) {
  // The pocket's stitch line alone: open at the top.
  for (const auto& s : *form.PathList) s->FSelected = s->FPalletIndex == 3 && s->FCenter.y > 80;
  TfrmSTLExportOptions d(form, stlSourceShapes(*form.PathList), window.get());
  EXPECT_TRUE(d.solid().Body.empty());
  EXPECT_TRUE(d.lblStatus->text().startsWith("An error occurred during 3D modeling. Open shapes"));
  EXPECT_TRUE(d.lblStatus->text().contains("Preview: no closed shapes"));
  dialogs.FFileNames.push_back(dir.file("never.stl"));
  d.accept();
  EXPECT_EQ(dialogs.FMessages, std::vector<std::string>{"No mesh to save. Please check the preview."});
  EXPECT_EQ(dialogs.FFileNames.size(), 1u) << "no file dialog";
}

TEST_F(StlExportDialog, OkSavesTheSolidAndTheSettings) {
  TfrmSTLExportOptions d(form, stlSourceShapes(*form.PathList), window.get());
  // The drawing may change under the open window (the local API runs in
  // its event loop): the dialog works on copies.
  form.PathList->clearAll();
  d.rbEngraveTop->setChecked(true);
  d.chkMultiColor->setChecked(true);
  d.nbThickness->setValue(3);
  settle();
  dialogs.FFileNames.push_back(dir.file("holder.stl"));
  d.accept();
  EXPECT_EQ(d.result(), QDialog::Accepted);
  ASSERT_EQ(dialogs.FMessages.size(), 1u);
  EXPECT_EQ(dialogs.FMessages[0], "Saved 2 STL files (base + text):\n" + dir.file("holder.stl") + "\n" +
                                      dir.file("holder_text.stl"));
  EXPECT_EQ(readWholeFile(dir.file("holder.stl")).substr(0, 13), "Pelwright STL");
  EXPECT_GT(readWholeFile(dir.file("holder_text.stl")).size(), 84u);
  const TSTLExportSettings kept = readStlSettings(stlSettingsFile(dir.path()));
  EXPECT_EQ(kept.Thickness, 3);
  EXPECT_TRUE(kept.MultiColorPrint);
  EXPECT_EQ(kept.EngraveSide, TEngraveSide::Top);
}

TEST_F(StlExportDialog, TheFileMenuCommandWantsSomethingToMakeASolidOf) {
  ASSERT_NE(window->FActExportAsSTL, nullptr);
  EXPECT_EQ(window->FActExportAsSTL->text(), "Export as STL (3D)...");
  form.actNewProject();
  window->FActExportAsSTL->trigger();
  ASSERT_EQ(dialogs.FMessages.size(), 1u);
  EXPECT_TRUE(dialogs.FMessages[0].starts_with("Please select one or more closed shapes first."));
}
