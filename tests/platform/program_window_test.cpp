// The window's File, Edit and language menus, its caption, and the save
// question as a user meets it on closing, on the offscreen platform.
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QStatusBar>

#include "api/mcp_server.h"
#include "app/frm_pelw.h"
#include "platform/qt/main_window.h"
#include "test_support.h"

namespace {

class ProgramWindow : public ::testing::Test {
 protected:
  TTempDir dir;
  TScriptedDialogs dialogs;
  TfrmPelw form;
  std::unique_ptr<TMainWindow> window;
  void SetUp() override {
    form.FAppDataPath = dir.path();
    form.FDialogs = &dialogs;
    form.FOptions.FLoadDemoProjectAtStartup = false;
    writeTextFile(dir.file("pw_options.ini"), "[Demo]\nLoadAtStartup=0\n[General]\nLangID=en\n[MCP]\nEnableServer=1\n");
    form.FApiPort = freeLoopbackPort();
    form.FormCreate({});
    window = std::make_unique<TMainWindow>(form);
    window->show();
    QApplication::processEvents();
  }
  void TearDown() override { window.reset(); }
  QMenu* menu(const char* name) { return window->menuBar()->findChild<QMenu*>(name); }
  // Saves a picture of a menu opened under the menu bar when
  // PELWRIGHT_SCREENSHOT_DIR is set (run under Xvfb with QT_QPA_PLATFORM=xcb).
  void keepMenu(QMenu* m, const QString& name) {
    const QByteArray folder = qgetenv("PELWRIGHT_SCREENSHOT_DIR");
    if (folder.isEmpty()) return;
    m->popup(window->mapToGlobal(QPoint(0, window->menuBar()->height())));
    QApplication::processEvents();
    m->grab().save(QDir(QString::fromUtf8(folder)).filePath(name));
    m->hide();
  }
  void change() {
    auto s = std::make_unique<TPW_Path>(0, 0xFF00FFFF, 1.5f, TStrokeDash::Solid, 0);
    s->drawLinePath(TPointF(0, 0), TPointF(20, 10));
    form.addShapeToDocument(std::move(s), 0);
    form.finishDocumentChange();
  }
};

TEST_F(ProgramWindow, LanguageMenuSwitchesEveryText) {
  QStringList names;
  QAction* japanese = nullptr;
  for (QAction* a : menu("miSelectLang")->actions()) {
    names << a->text();
    if (a->data().toString() == "ja") japanese = a;
  }
  EXPECT_TRUE(names.contains("English"));
  ASSERT_NE(japanese, nullptr);
  EXPECT_EQ(japanese->text(), QString::fromUtf8("日本語"));
  EXPECT_EQ(window->FActLoadProject->text(), "Open project...");
  QStringList file;
  for (QAction* a : menu("miFile")->actions())
    if (!a->isSeparator()) file << a->objectName();
  EXPECT_EQ(file, (QStringList{"actNewProject", "actLoadProject", "actOpenNewWindow", "actSaveProject",
                               "actSaveProjectAs", "actImportSVG", "actExportAsSVG", "actExportAsDXF",
                               "actExportAsSTL", "actPrint", "actExportAsPDF", "actClose"}));
  EXPECT_EQ(window->FActSaveProject->shortcut(), QKeySequence(QKeySequence::Save));
  const QString port = QString::number(form.FMCPServer->boundPort());
  auto* server = window->findChild<QLabel*>("lblLocalApi");
  ASSERT_NE(server, nullptr);
  EXPECT_EQ(server->text(), "Local API on 127.0.0.1:" + port);
  japanese->trigger();
  EXPECT_EQ(form.FLangID, "ja");
  EXPECT_TRUE(japanese->isChecked());
  // Every menu, every action of every menu, and the status bar's lines.
  EXPECT_EQ(menu("miFile")->title(), QString::fromUtf8("ファイル"));
  EXPECT_EQ(menu("miView")->title(), QString::fromUtf8("表示"));
  EXPECT_EQ(window->FActUndo->text(), QString::fromUtf8("元に戻す"));
  for (QAction* a : {window->FActResetView, window->FActShowGrid, window->FActBlackBackground})
    EXPECT_EQ(a->text().toStdString(), form.FMultiLang->getTranslation("ja", a->objectName().toStdString()));
  EXPECT_EQ(server->text(), QString::fromUtf8("ローカル API 127.0.0.1:") + port);
  keepMenu(menu("miFile"), "file_menu_ja.png");
}

TEST_F(ProgramWindow, CaptionAndUndoFollowTheDocument) {
  EXPECT_EQ(window->windowTitle(), "Pelwright ver3.6.1[*]");
  EXPECT_FALSE(window->isWindowModified());
  EXPECT_FALSE(window->FActUndo->isEnabled());
  change();
  EXPECT_TRUE(window->isWindowModified());
  EXPECT_TRUE(window->FActUndo->isEnabled());
  window->FActUndo->trigger();
  EXPECT_TRUE(form.PathList->empty());
  EXPECT_TRUE(window->FActRedo->isEnabled());
  dialogs.FFileNames = {dir.file("purse.pwc")};
  window->FActSaveProjectAs->trigger();
  EXPECT_EQ(window->windowTitle(), "purse.pwc - Pelwright ver3.6.1[*]");
  EXPECT_FALSE(window->isWindowModified());
}

TEST_F(ProgramWindow, ClosingAsksAboutUnsavedChanges) {
  change();
  dialogs.FAnswers = {TDialogAnswer::Cancel};
  window->close();
  QApplication::processEvents();
  EXPECT_TRUE(window->isVisible());
  ASSERT_EQ(dialogs.FQuestions.size(), 1u);
  EXPECT_EQ(dialogs.FQuestions[0], "Do you want to save the changes to the current project?");
  // Close from the menu, answered No: asked once, and the window goes.
  dialogs.FAnswers = {TDialogAnswer::No};
  window->FActClose->trigger();
  QApplication::processEvents();
  EXPECT_FALSE(window->isVisible());
  EXPECT_EQ(dialogs.FQuestions.size(), 2u);
}

TEST(ProgramWindowApi, TheStatusBarSaysWhenThePortIsTaken) {
  TPWMCPServer holder(0, nullptr);
  holder.Start();
  TTempDir dir;
  writeTextFile(dir.file("pw_options.ini"), "[MCP]\nEnableServer=1\n[Demo]\nLoadAtStartup=0\n[General]\nLangID=en\n");
  TScriptedDialogs dialogs;
  TfrmPelw form;
  form.FAppDataPath = dir.path();
  form.FDialogs = &dialogs;
  form.FApiPort = holder.boundPort();
  form.FormCreate({});
  TMainWindow window(form);
  if (const QByteArray folder = qgetenv("PELWRIGHT_SCREENSHOT_DIR"); !folder.isEmpty()) {
    window.show();
    QApplication::processEvents();
    window.grab().save(QDir(QString::fromUtf8(folder)).filePath("port_taken.png"));
  }
  QStringList texts;
  for (const QLabel* label : window.statusBar()->findChildren<QLabel*>()) texts << label->text();
  EXPECT_TRUE(texts.contains(QString("Local API not started, the port is in use: 127.0.0.1:%1").arg(holder.boundPort())))
      << texts.join("|").toStdString();
}

}  // namespace
