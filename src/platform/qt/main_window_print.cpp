// The window's print commands: Print and Export as PDF in the File menu,
// the print areas in the View menu.
#include <QAction>
#include <QMenu>

#include "app/frm_pelw.h"
#include "platform/qt/main_window.h"
#include "platform/qt/qt_language.h"

void TMainWindow::buildPrintCommands() {
  QAction* before = FFileMenu->insertSeparator(FActClose);
  FActPrint = new QAction("Print...", this);
  FActPrint->setObjectName("actPrint");
  FActPrint->setShortcut(QKeySequence::Print);
  FActExportAsPDF = new QAction("Export as PDF...", this);
  FActExportAsPDF->setObjectName("actExportAsPDF");
  FFileMenu->insertAction(before, FActPrint);
  FFileMenu->insertAction(before, FActExportAsPDF);
  connect(FActPrint, &QAction::triggered, this, [this] { FForm.actPrint(); });
  connect(FActExportAsPDF, &QAction::triggered, this, [this] { FForm.actExportAsPDF(); });

  FActShowHidePrintAreas = FViewMenu->addAction("Show/hide print areas");
  FActShowHidePrintAreas->setObjectName("actShowHidePrintAreas");
  FActShowHidePrintAreas->setShortcut(QKeySequence(Qt::Key_F7));
  FActShowHidePrintAreas->setCheckable(true);
  FActShowHidePrintAreas->setChecked(FForm.FShowPrintAreas);
  connect(FActShowHidePrintAreas, &QAction::triggered, this, [this] {
    FForm.actShowHidePrintAreas();
    FActShowHidePrintAreas->setChecked(FForm.FShowPrintAreas);
  });
}

void TMainWindow::retranslatePrint() {
  for (QAction* a : {FActPrint, FActExportAsPDF, FActShowHidePrintAreas})
    if (const QString t = phraseOf(FForm.FMultiLang.get(), FForm.FLangID, a->objectName().toStdString()); !t.isEmpty())
      a->setText(t);
}
