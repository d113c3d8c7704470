// The print command, its run and the PDF export: the controller's side.
// The printer, its dialogs and the preview window come from the platform
// through IPrintService, PDF documents through FMakePdfDocument.
#include <exception>
#include <filesystem>

#include "app/frm_pelw.h"
#include "app/safe_file.h"
#include "exchange/print_run.h"

namespace {

// The document's pages, to tell whether the preview moved them.
struct TPagesSeen {
  std::vector<TPointF> offsets;
  std::vector<bool> targets;
  std::vector<int> scales;
  explicit TPagesSeen(const TShapeList& l) : offsets(l.FPrintOffset), targets(l.FPrintTarget), scales(l.FPrintScalePos) {}
  bool differsFrom(const TShapeList& l) const {
    if (offsets.size() != l.FPrintOffset.size() || targets != l.FPrintTarget || scales != l.FPrintScalePos) return true;
    for (size_t i = 0; i < offsets.size(); ++i)
      if (!offsets[i].identical(l.FPrintOffset[i])) return true;
    return false;
  }
};

// The preview over the layout; what the user chose there is kept for the
// next print: the boxes, the paper, the options' two boxes and calibration,
// and the pages (a change to them is a change to the project). True to print.
bool showPrintPreview(TfrmPelw& f, TPrintLayout& layout, TPaperSetup& paper, bool forPdf) {
  const TPagesSeen before(*f.PathList);
  f.FIsPrintAreaAvailable = true;
  const bool go = f.FPrintService->showPreview(f, layout, forPdf);
  f.FPrintSwitches = layout.FSwitches;
  paper = layout.FPaper;
  f.FOptions.FPrintInColor = layout.FSwitches.FInColor;
  f.FOptions.FPrintRulerInside = layout.FSwitches.FRulerInside;
  f.FOptions.FPrintCalibration = layout.FCalibrationRatio * 100.0;
  if (before.differsFrom(*f.PathList)) f.setChanged(true);
  return go;
}

}  // namespace

std::unique_ptr<TPrintLayout> TfrmPelw::makePrintLayout(const TPaperSetup& paper) {
  if (!PathList) return nullptr;
  auto layout = std::make_unique<TPrintLayout>(*PathList);
  if (!layout->setBoundaryFromDrawing()) return nullptr;
  layout->FPaper = paper;
  layout->FCalibrationRatio = FOptions.FPrintCalibration / 100.0;
  layout->FSwitches = FPrintSwitches;
  layout->FSwitches.FInColor = FOptions.FPrintInColor;
  layout->FSwitches.FRulerInside = FOptions.FPrintRulerInside;
  layout->repairPages();
  // A document that never had its pages laid out gets tiles enough for its drawing.
  const bool untouched = layout->pageCount() == 1 && PathList->FPrintOffset[0].identical(TPointF());
  if (untouched && layout->checkSettings(*FMultiLang, FLangID).empty()) {
    if (layout->fitsOnePage()) {
      layout->chooseScaleCorners();
    } else {
      layout->FSwitches.FTilePrint = true;
      layout->tileToCover();
    }
  }
  return layout;
}

void TfrmPelw::actPrint() {
  if (!PathList || PathList->empty()) {
    showFault(phrase("Nothing2Print"));
    return;
  }
  showFault(phrase("MSPrint2PDF"));
  if (!FPrintService || !FPrintService->hasPrinters()) {
    showFault(phrase("NoPrintersFound"));
    return;
  }
  if (!FPrintService->choosePrinter(FPrinterPaper)) return;
  // The run starts once the dialogs have closed.
  if (!timerPrint) {
    timerPrint = createTimer();
    timerPrint->setInterval(100);
    timerPrint->setOnTimer([this] {
      timerPrint->stop();
      printRun();
    });
  }
  timerPrint->start();
}

void TfrmPelw::printRun() {
  if (!FPrintService) return;
  std::unique_ptr<TPrintLayout> layout = makePrintLayout(FPrinterPaper);
  if (!layout) {
    showFault(phrase("Nothing2Print"));
    return;
  }
  const bool go = showPrintPreview(*this, *layout, FPrinterPaper, false);
  FPrintLayout = std::move(layout);
  if (go) {
    std::string error = FPrintLayout->checkSettings(*FMultiLang, FLangID);
    if (FPrintLayout->targetCount() == 0) error = phrase("Nothing2Print");
    std::unique_ptr<IPaperDevice> printer = error.empty() ? FPrintService->openPrinter(FPrintLayout->FDPI) : nullptr;
    if (error.empty() && !printer) error = phrase("NoPrinter");
    if (printer) {
      FPrintLayout->FDPIxy = TPointF::fromDouble(printer->dpiX(), printer->dpiY());
      FPrintService->setBusy(true);
      try {
        error = printPages(*this, *FPrintLayout, *printer);
      } catch (const std::exception& e) {
        error = e.what();
      }
      FPrintService->setBusy(false);
    }
    if (!error.empty()) showFault(error);
  }
  RepaintCanvas();
}

std::string TfrmPelw::makePdfBytes(const TPrintLayout& layout, std::string& bytes) {
  std::string error = layout.checkSettings(*FMultiLang, FLangID);
  if (!error.empty()) return error;
  if (layout.targetCount() == 0) return phrase("Nothing2Print");
  std::unique_ptr<IPdfDocument> pdf = FMakePdfDocument ? FMakePdfDocument(layout.FPaper, layout.FDPI) : nullptr;
  if (!pdf) return "PDF files cannot be made here";
  TPrintLayout pages = layout;
  pages.FDPIxy = TPointF::fromDouble(pdf->dpiX(), pdf->dpiY());
  error = printPages(*this, pages, *pdf);
  if (error.empty()) bytes = pdf->pdfBytes();
  return error;
}

void TfrmPelw::actExportAsPDF() {
  std::unique_ptr<TPrintLayout> layout = makePrintLayout(FPdfPaper);
  if (!layout) {
    showFault(phrase("Nothing2Print"));
    return;
  }
  if (FPrintService) {
    if (!showPrintPreview(*this, *layout, FPdfPaper, true)) {
      FPrintLayout = std::move(layout);
      RepaintCanvas();
      return;
    }
  }
  namespace fs = std::filesystem;
  const fs::path project(FFilename);
  const std::string name = dialogs().saveFileName(
      project.parent_path().string(), project.empty() ? "pattern.pdf" : project.stem().string() + ".pdf", ".pdf");
  if (!name.empty()) {
    std::string bytes;
    if (FPrintService) FPrintService->setBusy(true);
    std::string error;
    try {
      error = makePdfBytes(*layout, bytes);
      if (error.empty()) writeFileAtomically(name, bytes);
    } catch (const std::exception& e) {
      error = e.what();
    }
    if (FPrintService) FPrintService->setBusy(false);
    showFault(error.empty() ? phrase("ExportedAsPDF") + "\n" + name : phrase("PDFNotWritten") + "\n" + error);
  }
  FIsPrintAreaAvailable = true;
  FPrintLayout = std::move(layout);
  RepaintCanvas();
}

void TfrmPelw::actShowHidePrintAreas() {
  FShowPrintAreas = !FShowPrintAreas;
  RepaintCanvas();
}
