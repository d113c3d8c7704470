// Paper devices on Qt: PDF documents written in memory by QPdfWriter (no
// printing service needed, so they work without a window too), and the
// sheets of a QPrinter.
#pragma once

#include <memory>

#include "platform/paper_device.h"

class QPrinter;

std::unique_ptr<IPdfDocument> makeQtPdfDocument(const TPaperSetup& paper, double dpi);
// The printer's sheets at `dpi` (it may choose another), painted whole from
// the sheet's corner; the printer is borrowed.
std::unique_ptr<IPaperDevice> makeQtPrinterDevice(QPrinter& printer, double dpi);
