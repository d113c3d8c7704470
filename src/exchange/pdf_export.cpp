#include "exchange/pdf_export.h"

#include <charconv>
#include <cmath>

#include "app/frm_pelw.h"
#include "exchange/export_command.h"
#include "exchange/print_layout.h"

bool parsePlainNumber(const std::string& text, double& value) {
  const char* end = text.data() + text.size();
  const auto r = std::from_chars(text.data(), end, value, std::chars_format::fixed);
  return !text.empty() && r.ec == std::errc() && r.ptr == end && std::isfinite(value);
}

bool parseCalibration(const std::string& text, TPointF& percent) {
  const size_t comma = text.find(',');
  double x = 0, y = 0;
  if (comma == std::string::npos) {
    if (!parsePlainNumber(text, x)) return false;
    y = x;
  } else if (!parsePlainNumber(text.substr(0, comma), x) || !parsePlainNumber(text.substr(comma + 1), y)) {
    return false;
  }
  percent = TPointF::fromDouble(x, y);
  return true;
}

const std::vector<TExportOption>& pdfExportOptions() {
  static const std::vector<TExportOption> options = [] {
    std::vector<std::string> papers;
    for (const TPaperSize& p : paperSizes()) papers.push_back(p.FName);
    return std::vector<TExportOption>{
        {"--paper", papers, "the sheet (A4 when not given)"},
        {"--landscape", {}, "the sheet turned"},
        {"--overlap", {}, "overlap of neighbouring tiles (10 when not given)", "MM"},
        {"--calibration", {}, "per cent across and down, 50 to 200 (the options' when not given)", "X,Y"},
        {"--holes-as-dots", {}, "stitching holes as dots of 0.5 mm"}};
  }();
  return options;
}

std::string exportPdf(TExportJob& job) {
  TfrmPelw& form = job.FForm;
  const TExportArgs& args = job.FArgs;
  const TPaperSize* size = findPaperSize(args.value("--paper", "A4"));
  if (!size) return "unknown paper " + args.value("--paper") + "; the papers are " + paperSizeNames();
  TPrintLayout layout(*form.PathList);
  layout.FPaper = paperSetupFor(*size, args.has("--landscape"));
  TPointF calibration = form.FOptions.FPrintCalibration;
  if (args.has("--calibration") && !parseCalibration(args.value("--calibration"), calibration))
    return "--calibration takes per cent across and down as X,Y, not \"" + args.value("--calibration") + "\"";
  layout.FCalibrationRatio = calibration / 100.0;
  if (args.has("--overlap") && !parsePlainNumber(args.value("--overlap"), layout.FSwitches.FOverlapLen))
    return "--overlap takes millimetres, not \"" + args.value("--overlap") + "\"";
  layout.FSwitches.FHolesAsDots = args.has("--holes-as-dots");
  layout.FSwitches.FInColor = form.FOptions.FPrintInColor;
  layout.FSwitches.FRulerInside = form.FOptions.FPrintRulerInside;
  std::string error = layout.checkSettings(*form.FMultiLang, form.FLangID);
  if (!error.empty()) return error;
  if (!layout.setBoundaryFromDrawing())
    return form.FMultiLang->getTranslation(form.FLangID, "Nothing2Print");
  // Laid out anew for this paper: a layout kept in the project was made for another.
  if (layout.fitsOnePage()) {
    form.PathList->clearPrintPagesInfo();
    layout.chooseScaleCorners();
  } else {
    layout.FSwitches.FTilePrint = true;
    const long needed = layout.tileToCover();
    if (needed > kMaxPrintPages)
      return fillPhrase(form.FMultiLang->getTranslation(form.FLangID, "PrintTooManyPages"),
                        {std::to_string(needed), std::to_string(kMaxPrintPages)});
  }
  std::string bytes;
  error = form.makePdfBytes(layout, bytes);
  if (!error.empty()) return error;
  job.FFiles.emplace_back(job.FOutput, std::move(bytes));
  return {};
}
