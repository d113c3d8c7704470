// File > Export as STL: the 3-D solids' dialog for the selected shapes, or
// for the drawing's closed outlines when nothing is selected.
#include <QAction>
#include <QMenu>

#include "app/frm_pelw.h"
#include "exchange/stl_outlines.h"
#include "platform/qt/main_window.h"
#include "platform/qt/qt_language.h"
#include "platform/qt/stl_export_dialog.h"

void TMainWindow::buildStlExport() {
  FActExportAsSTL = new QAction("Export as STL (3D)...", this);
  FActExportAsSTL->setObjectName("actExportAsSTL");
  FFileMenu->insertAction(FActClose, FActExportAsSTL);
  FFileMenu->insertSeparator(FActClose);
  connect(FActExportAsSTL, &QAction::triggered, this, [this] { actExportAsSTL(); });
}

void TMainWindow::retranslateStlExport() {
  const QString t = phraseOf(FForm.FMultiLang.get(), FForm.FLangID, "actExportAsSTL");
  if (!t.isEmpty()) FActExportAsSTL->setText(t);
}

void TMainWindow::actExportAsSTL() {
  TStlSource source = stlSourceShapes(*FForm.PathList);
  if (source.Shapes.empty()) {
    FForm.FDialogs->showMessage(FForm.FMultiLang->getTranslation(FForm.FLangID, "stl_msg_no_selection"));
    return;
  }
  TfrmSTLExportOptions dialog(FForm, std::move(source), this);
  dialog.exec();
}
