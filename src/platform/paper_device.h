// Paper to paint on: the sheets of a printer or the pages of a PDF file.
// The print code lays the drawing on each sheet through ICanvas; the
// platform provides the device, the printer's dialogs and the preview.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/canvas.h"

class TfrmPelw;
class TPrintLayout;

// A sheet as it lies in the printer: landscape is already turned.
struct TPaperSetup {
  std::string FName = "A4";
  double FWidthMm = 210;
  double FHeightMm = 297;
  bool FLandscape = false;
  // Where the device cannot print, millimetres from each edge.
  double FMarginLeft = 0, FMarginTop = 0, FMarginRight = 0, FMarginBottom = 0;
};

class IPaperDevice {
 public:
  virtual ~IPaperDevice() = default;
  // Device pixels per inch, across and down.
  virtual double dpiX() const = 0;
  virtual double dpiY() const = 0;
  // The next sheet's canvas: the whole sheet in device pixels, (0, 0) at
  // its top left corner. Null when the device failed (errorText says why).
  // Valid until the next call or finish.
  virtual ICanvas* nextPage() = 0;
  // Ends the document; false when it could not be finished.
  virtual bool finish() = 0;
  virtual std::string errorText() const = 0;
};

// A PDF document made in memory; its file's bytes after finish().
class IPdfDocument : public IPaperDevice {
 public:
  virtual std::string pdfBytes() const = 0;
};

// Makes a PDF document of sheets of this paper at `dpi` device pixels per
// inch; null when the platform cannot.
using TPdfDocumentFactory = std::function<std::unique_ptr<IPdfDocument>(const TPaperSetup& paper, double dpi)>;

// The printer and the windows of a print run, as the window provides them.
class IPrintService {
 public:
  virtual ~IPrintService() = default;
  virtual bool hasPrinters() = 0;
  // The printer dialog; takes the chosen printer's paper. False on cancel.
  virtual bool choosePrinter(TPaperSetup& paper) = 0;
  // The page setup of the printer, or of a PDF file's paper; false on cancel.
  virtual bool pageSetup(TPaperSetup& paper, bool forPdf) = 0;
  // The chosen printer at `dpi` (it may give another resolution); null when
  // it cannot be opened.
  virtual std::unique_ptr<IPaperDevice> openPrinter(double dpi) = 0;
  // The preview, modal, over the layout; true when the user asked to print.
  virtual bool showPreview(TfrmPelw& form, TPrintLayout& layout, bool forPdf) = 0;
  // A busy cursor while pages are made.
  virtual void setBusy(bool busy) = 0;
};
