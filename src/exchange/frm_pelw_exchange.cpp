// The controller's export and import commands: SVG and DXF out through the
// options dialog and a save dialog, SVG in as shapes of the active layer.
#include <cmath>
#include <filesystem>

#include "app/frm_pelw.h"
#include "app/safe_file.h"
#include "exchange/dxf_export.h"
#include "exchange/svg_export.h"
#include "exchange/svg_import.h"
#include "platform/exchange_dialogs.h"

namespace {

TExportDialogValues dialogValues(const TExportSettings& s) {
  TExportDialogValues v;
  v.FHolesAsDots = s.FHolesAsDots;
  v.FDotDiameter = double(s.FDotRadius) * 2.0;
  v.FWithText = s.FWithText;
  v.FWithTemplates = s.FWithTemplates;
  v.FInvertY = s.FInvertY;
  v.FUseR14 = s.FUseR14;
  v.FOnlySelected = s.FOnlySelected;
  v.FSkipHiddenLineTypes = s.FSkipHiddenLineTypes;
  v.FNoStrokeDash = s.FNoStrokeDash;
  return v;
}

TExportSettings settingsOf(const TExportDialogValues& v) {
  TExportSettings s;
  s.FHolesAsDots = v.FHolesAsDots;
  // The diameter box: a sane hole, from a hair to a large punch.
  s.FDotRadius = static_cast<float>(std::clamp(v.FDotDiameter, 0.01, 100.0) / 2.0);
  s.FWithText = v.FWithText;
  s.FWithTemplates = v.FWithTemplates;
  s.FInvertY = v.FInvertY;
  s.FUseR14 = v.FUseR14;
  s.FOnlySelected = v.FOnlySelected;
  s.FSkipHiddenLineTypes = v.FSkipHiddenLineTypes;
  s.FNoStrokeDash = v.FNoStrokeDash;
  return s;
}

// The wait cursor for the time the object lives.
struct TBusy {
  IExchangeDialogs* FDialogs;
  explicit TBusy(IExchangeDialogs* d) : FDialogs(d) {
    if (FDialogs) FDialogs->setBusy(true);
  }
  ~TBusy() {
    if (FDialogs) FDialogs->setBusy(false);
  }
  TBusy(const TBusy&) = delete;
  TBusy& operator=(const TBusy&) = delete;
};

std::string folderOf(const std::string& file) {
  return file.empty() ? std::string() : std::filesystem::path(file).parent_path().string();
}

}  // namespace

TExportScene TfrmPelw::exportScene() const {
  // Holes go out in the colour they have on paper, the white background's,
  // so that they show in every program that opens the file.
  return TExportScene{*PathList, FPalletList, FPalletList[kStitchHolePalletIndex].FColor_WhiteMode,
                      FShowDimensionShapes};
}

bool TfrmPelw::exportDrawing(const std::string& filename, const std::string& type, const TExportSettings& settings) {
  const std::string text =
      type == "DXF" ? dxfExportText(exportScene(), settings) : svgExportText(exportScene(), settings);
  if (text.empty()) return false;
  writeFileAtomically(filename, text);
  return true;
}

void TfrmPelw::actExportAsSVGExecute(const std::string& type) {
  if (!PathList) return;
  if (PathList->empty()) {
    dialogs().showMessage(phrase("NothingToExport"));
    return;
  }
  TExportSettings settings = exportSettingsFrom(FOptions, FExportRun);
  if (FExchangeDialogs) {
    TExportDialogValues values = dialogValues(settings);
    const TPhraseLookup lookup = [this](const std::string& key) { return phrase(key); };
    if (!FExchangeDialogs->exportOptions(type, lookup, values)) return;
    settings = settingsOf(values);
  }
  exportSettingsInto(settings, FOptions);
  FExportRun = settings;

  const std::string ext = type == "DXF" ? ".dxf" : ".svg";
  std::string folder = FOptions.FExchangeFolder.empty() ? folderOf(FFilename) : FOptions.FExchangeFolder;
  std::string name;
  if (!FFilename.empty()) {
    name = std::filesystem::path(FFilename).stem().string() + ext;
    folder = folderOf(FFilename);
  }
  if (!FExchangeDialogs) return;
  std::string file = FExchangeDialogs->saveFileName(type + " Export", type + " Format (*" + ext + ")", folder, name, ext);
  if (file.empty()) return;
  if (std::filesystem::path(file).extension().empty()) file += ext;
  FOptions.FExchangeFolder = folderOf(file);
  bool written = false;
  try {
    TBusy busy(FExchangeDialogs);
    written = exportDrawing(file, type, settings);
  } catch (const std::exception& e) {
    showFault(e.what());
    return;
  }
  dialogs().showMessage(written ? phrase(type == "DXF" ? "ExportedAsDXF" : "ExportedAsSVG") + "\n" + file
                                : phrase("NothingToExport"));
  RepaintCanvas();
}

TfrmPelw::TSvgImportResult TfrmPelw::importSVGFile(const std::string& filename, bool disassemble, bool askSize) {
  TSvgImportResult r;
  auto noteText = [this](const TSvgNote& n) {
    std::string t = phrase(n.FKey);
    if (t.empty()) t = n.FEnglish;
    return n.FDetail.empty() ? t : t + (t.empty() || t.back() == ' ' ? "" : " ") + n.FDetail;
  };
  std::error_code ec;
  if (!std::filesystem::is_regular_file(filename, ec)) {
    r.FError = phrase("FileNotFound") + filename;
    return r;
  }
  const auto size = std::filesystem::file_size(filename, ec);
  TSvgPicture pic;
  if (!ec && size > kSvgMaxBytes) {
    pic.FError = {"SVGTooLarge", "The file is too large to import. Bytes:", std::to_string(size)};
  } else {
    try {
      TBusy busy(FExchangeDialogs);
      pic = readSvgPicture(readWholeFile(filename));
    } catch (const std::exception& e) {
      r.FError = e.what();
      return r;
    }
  }
  if (pic.failed()) {
    r.FError = noteText(pic.FError);
    return r;
  }
  for (const TSvgNote& n : pic.FNotes) r.FReport.push_back(noteText(n));
  TRectF bounds;
  if (!svgPictureBounds(pic, bounds)) {
    r.FError = phrase("Nothing2Import");
    return r;
  }
  if (askSize && FExchangeDialogs) {
    const double present = bounds.width();
    double wanted = present;
    if (present > 0 && FExchangeDialogs->askNumber(phrase("asksize"), phrase("asksizebody"), wanted) &&
        wanted > 0 && wanted <= 1000000.0)
      scaleSvgPicture(pic, wanted / present);
  }
  TBusy busy(FExchangeDialogs);
  const TShapeStyle style{FSelectedPalette, FCurrentColor, FCurrentThickness, FCurrentDash};
  std::vector<std::unique_ptr<TPW_Path>> shapes = svgPictureShapes(pic, disassemble, style, FDefaultFont);
  r.FShapeCount = shapes.size();
  if (shapes.empty()) {
    r.FError = phrase("Nothing2Import");
    return r;
  }
  addShapesToDocument(std::move(shapes), FActiveLayer);
  finishDocumentChange();
  actResetView();
  return r;
}

void TfrmPelw::importSVG(const std::string& filename) {
  const bool disassemble = dialogs().askYesNo(phrase("ImportSVGAsIs"), TDialogAnswer::Yes) == TDialogAnswer::Yes;
  const TSvgImportResult r = importSVGFile(filename, disassemble, true);
  if (!r.FError.empty()) {
    showFault(r.FError);
    return;
  }
  if (!r.FReport.empty()) {
    std::string text;
    for (const std::string& line : r.FReport) text += (text.empty() ? "" : "\n") + line;
    dialogs().showMessage(text);
  }
}

void TfrmPelw::actImportSVG() {
  if (!FExchangeDialogs) return;
  const std::string folder = FOptions.FExchangeFolder.empty() ? folderOf(FFilename) : FOptions.FExchangeFolder;
  const std::string file = FExchangeDialogs->openFileName("SVG Format (*.svg)", folder);
  if (file.empty()) return;
  FOptions.FExchangeFolder = folderOf(file);
  importSVG(file);
}
