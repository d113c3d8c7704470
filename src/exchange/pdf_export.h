// The conversion's PDF: the drawing laid out anew on the chosen paper, one
// sheet when it fits, tiles with their overlap when it does not, each
// sheet at true size with its scales.
#pragma once

#include <string>
#include <vector>

#include "document/types.h"

struct TExportJob;
struct TExportOption;
class TfrmPelw;
class TPrintLayout;

// --paper, --landscape, --overlap, --calibration, --holes-as-dots.
const std::vector<TExportOption>& pdfExportOptions();
std::string exportPdf(TExportJob& job);

// "X,Y" or one number for both, per cent; false when it is no such text.
bool parseCalibration(const std::string& text, TPointF& percent);
// A length or number of the command line, plain decimal; false otherwise.
bool parsePlainNumber(const std::string& text, double& value);
