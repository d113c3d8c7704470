// The printer of the window: Qt's printer dialog and page setup, the
// printer's sheets, and the preview window.
#pragma once

#include <memory>

#include "platform/paper_device.h"

class QPrinter;
class QWidget;

class TQtPrintService : public IPrintService {
 public:
  TQtPrintService();
  ~TQtPrintService() override;
  // The window the dialogs belong to; null while there is none.
  void setParent(QWidget* parent) { FParent = parent; }

  bool hasPrinters() override;
  bool choosePrinter(TPaperSetup& paper) override;
  bool pageSetup(TPaperSetup& paper, bool forPdf) override;
  std::unique_ptr<IPaperDevice> openPrinter(double dpi) override;
  bool showPreview(TfrmPelw& form, TPrintLayout& layout, bool forPdf) override;
  void setBusy(bool busy) override;

 private:
  QWidget* FParent = nullptr;
  std::unique_ptr<QPrinter> FPrinter;  // made when first needed: asking the print system takes a moment
  QPrinter& printer();
};
