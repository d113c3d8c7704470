#include "platform/qt/qt_print_service.h"

#include <QApplication>
#include <QPageLayout>
#include <QPageSetupDialog>
#include <QPrintDialog>
#include <QPrinter>
#include <QPrinterInfo>

#include "app/frm_pelw.h"
#include "platform/qt/print_preview.h"
#include "platform/qt/qt_paper_device.h"

namespace {

// The paper the printer's page setup holds, turned as it lies.
TPaperSetup paperOf(const QPrinter& printer) {
  const QPageLayout layout = printer.pageLayout();
  const QRectF full = layout.fullRect(QPageLayout::Millimeter);
  const QMarginsF m = layout.margins(QPageLayout::Millimeter);
  TPaperSetup p;
  p.FName = layout.pageSize().name().toStdString();
  p.FWidthMm = full.width();
  p.FHeightMm = full.height();
  p.FLandscape = layout.orientation() == QPageLayout::Landscape;
  p.FMarginLeft = m.left();
  p.FMarginTop = m.top();
  p.FMarginRight = m.right();
  p.FMarginBottom = m.bottom();
  return p;
}

}  // namespace

TQtPrintService::TQtPrintService() = default;
TQtPrintService::~TQtPrintService() = default;

QPrinter& TQtPrintService::printer() {
  if (!FPrinter) FPrinter = std::make_unique<QPrinter>(QPrinter::HighResolution);
  return *FPrinter;
}

bool TQtPrintService::hasPrinters() { return !QPrinterInfo::availablePrinterNames().isEmpty(); }

bool TQtPrintService::choosePrinter(TPaperSetup& paper) {
  QPrintDialog dialog(&printer(), FParent);
  if (dialog.exec() != QDialog::Accepted) return false;
  paper = paperOf(printer());
  return true;
}

bool TQtPrintService::pageSetup(TPaperSetup& paper, bool forPdf) {
  if (forPdf) return false;
  QPageSetupDialog dialog(&printer(), FParent);
  if (dialog.exec() != QDialog::Accepted) return false;
  paper = paperOf(printer());
  return true;
}

std::unique_ptr<IPaperDevice> TQtPrintService::openPrinter(double dpi) {
  return makeQtPrinterDevice(printer(), dpi);
}

bool TQtPrintService::showPreview(TfrmPelw& form, TPrintLayout& layout, bool forPdf) {
  TfrmPreview preview(form, layout, this, forPdf, FParent);
  return preview.exec() == QDialog::Accepted;
}

void TQtPrintService::setBusy(bool busy) {
  if (busy) QApplication::setOverrideCursor(Qt::WaitCursor);
  else QApplication::restoreOverrideCursor();
}
