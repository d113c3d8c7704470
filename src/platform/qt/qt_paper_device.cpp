#include "platform/qt/qt_paper_device.h"

#include <QBuffer>
#include <QByteArray>
#include <QPageLayout>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QPrinter>
#include <cmath>

#include "platform/qt/qt_canvas.h"

namespace {

// Sheets painted one after another on a paged device.
template <class TDevice>
class TQtSheets : public TDevice {
 public:
  ICanvas* nextPage() override {
    if (!FError.empty()) return nullptr;
    if (FPages == 0) {
      if (!FPainter.begin(device())) return fail("the device cannot be painted on");
    } else if (!newPage()) {
      return fail("no further page");
    }
    ++FPages;
    FCanvas = std::make_unique<TQtCanvas>(FPainter, device()->width(), device()->height(), 1.0);
    FCanvas->setVectorOutput(true);
    return FCanvas.get();
  }
  bool finish() override {
    FCanvas.reset();
    if (FPainter.isActive() && !FPainter.end() && FError.empty()) FError = "the document could not be finished";
    if (FPages == 0 && FError.empty()) FError = "no page";
    return FError.empty();
  }
  std::string errorText() const override { return FError; }

 protected:
  virtual QPagedPaintDevice* device() = 0;
  virtual bool newPage() = 0;
  ~TQtSheets() override {
    FCanvas.reset();
    if (FPainter.isActive()) FPainter.end();
  }

 private:
  QPainter FPainter;
  std::unique_ptr<TQtCanvas> FCanvas;
  int FPages = 0;
  std::string FError;
  ICanvas* fail(const char* why) {
    FError = why;
    return nullptr;
  }
};

QPageSize pageSizeOf(const TPaperSetup& paper) {
  const double w = paper.FLandscape ? paper.FHeightMm : paper.FWidthMm;
  const double h = paper.FLandscape ? paper.FWidthMm : paper.FHeightMm;
  for (auto [name, id] : {std::pair{"A4", QPageSize::A4}, {"A3", QPageSize::A3}, {"A5", QPageSize::A5},
                          {"Letter", QPageSize::Letter}, {"Legal", QPageSize::Legal}}) {
    const QSizeF mm = QPageSize::size(id, QPageSize::Millimeter);
    if (paper.FName == name && std::abs(mm.width() - w) < 0.1 && std::abs(mm.height() - h) < 0.1) return QPageSize(id);
  }
  return QPageSize(QSizeF(w, h), QPageSize::Millimeter, QString::fromStdString(paper.FName), QPageSize::ExactMatch);
}

class TQtPdfDocument : public TQtSheets<IPdfDocument> {
 public:
  TQtPdfDocument(const TPaperSetup& paper, double dpi) : FBuffer(&FBytes) {
    FBuffer.open(QIODevice::WriteOnly);
    FWriter = std::make_unique<QPdfWriter>(&FBuffer);
    FWriter->setCreator("Pelwright");
    FWriter->setResolution(static_cast<int>(dpi));
    FWriter->setPageLayout(QPageLayout(pageSizeOf(paper), paper.FLandscape ? QPageLayout::Landscape : QPageLayout::Portrait,
                                       QMarginsF(0, 0, 0, 0), QPageLayout::Millimeter));
  }
  double dpiX() const override { return FWriter->resolution(); }
  double dpiY() const override { return FWriter->resolution(); }
  bool finish() override {
    const bool ok = TQtSheets::finish();
    FBuffer.close();
    return ok;
  }
  std::string pdfBytes() const override { return std::string(FBytes.constData(), static_cast<size_t>(FBytes.size())); }

 protected:
  QPagedPaintDevice* device() override { return FWriter.get(); }
  bool newPage() override { return FWriter->newPage(); }

 private:
  QByteArray FBytes;
  QBuffer FBuffer;
  std::unique_ptr<QPdfWriter> FWriter;
};

class TQtPrinterSheets : public TQtSheets<IPaperDevice> {
 public:
  TQtPrinterSheets(QPrinter& printer, double dpi) : FPrinter(printer) {
    FPrinter.setFullPage(true);
    FPrinter.setResolution(static_cast<int>(dpi));
  }
  double dpiX() const override { return FPrinter.resolution(); }
  double dpiY() const override { return FPrinter.resolution(); }

 protected:
  QPagedPaintDevice* device() override { return &FPrinter; }
  bool newPage() override { return FPrinter.newPage(); }

 private:
  QPrinter& FPrinter;
};

}  // namespace

std::unique_ptr<IPdfDocument> makeQtPdfDocument(const TPaperSetup& paper, double dpi) {
  return std::make_unique<TQtPdfDocument>(paper, dpi);
}

std::unique_ptr<IPaperDevice> makeQtPrinterDevice(QPrinter& printer, double dpi) {
  return std::make_unique<TQtPrinterSheets>(printer, dpi);
}
