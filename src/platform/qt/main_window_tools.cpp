// The window's Tools menu (jigsaw, dye mixer, stitching order), the import
// of a translation file under the language menu, and the interface font
// that follows the language.
#include <QAction>
#include <QMenu>
#include <QMenuBar>

#include "app/frm_pelw.h"
#include "platform/qt/dye_mixer_window.h"
#include "platform/qt/jigsaw_dialog.h"
#include "platform/qt/main_window.h"
#include "platform/qt/qt_language.h"

void TMainWindow::buildToolsMenu() {
  FToolsMenu = new QMenu("Tools", this);
  FToolsMenu->setObjectName("miTools");
  menuBar()->insertMenu(FLanguageMenu->menuAction(), FToolsMenu);
  FActJigsaw = FToolsMenu->addAction("Jigsaw puzzle...");
  FActJigsaw->setObjectName("btnJigSaw");
  FActDyeMixer = FToolsMenu->addAction("Dye mixer...");
  FActDyeMixer->setObjectName("actDyeMixer");
  FToolsMenu->addSeparator();
  FActFixStitchingOrder = FToolsMenu->addAction("Fix stitching order");
  FActFixStitchingOrder->setObjectName("actFixStitchingOrder");
  connect(FActJigsaw, &QAction::triggered, this, [this] { openJigsawDialog(); });
  connect(FActDyeMixer, &QAction::triggered, this, [this] { openDyeMixer(); });
  connect(FActFixStitchingOrder, &QAction::triggered, this, [this] { FForm.actFixStitchingOrder(); });

  FLanguageMenu->addSeparator();
  FActImportTranslation = FLanguageMenu->addAction("Import translation file...");
  FActImportTranslation->setObjectName("actImportTranslationFile");
  connect(FActImportTranslation, &QAction::triggered, this, [this] { FForm.actImportTranslationFile(); });
}

void TMainWindow::retranslateTools() {
  applyInterfaceFont(FForm.FLangID);
  const TMultiLang* lang = FForm.FMultiLang.get();
  if (const QString t = phraseOf(lang, FForm.FLangID, "miTools"); !t.isEmpty()) FToolsMenu->setTitle(t);
  for (QAction* a : {FActJigsaw, FActDyeMixer, FActFixStitchingOrder, FActImportTranslation})
    if (const QString t = phraseOf(lang, FForm.FLangID, a->objectName().toStdString()); !t.isEmpty()) a->setText(t);
  if (FDyeMixer) FDyeMixer->retranslate();
}

void TMainWindow::openJigsawDialog() {
  TfrmJigsaw dialog(FForm, this);
  dialog.exec();
}

void TMainWindow::openDyeMixer() {
  if (!FDyeMixer) FDyeMixer = new TfrmDyeSimulator(FForm, this);
  FDyeMixer->show();
  FDyeMixer->raise();
  FDyeMixer->activateWindow();
}
