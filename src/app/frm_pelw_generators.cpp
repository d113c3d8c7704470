// The controller's pattern generators, the stitching order command and the
// import of a translation file.
#include <filesystem>

#include "app/frm_pelw.h"
#include "app/length_format.h"
#include "stitching/stitching_order.h"

bool TfrmPelw::actJigsaw(const TJigsawSettings& settings) {
  const std::string refusal = checkJigsawSettings(settings);
  if (!refusal.empty()) {
    showFault(fillPhrase(phrase(refusal), {FormatLength(kJigsawMinPieceLen, lengthSettings()),
                                           FormatLength(kJigsawMaxPieceLen, lengthSettings())}));
    return false;
  }
  FJigsawSettings = settings;
  const TJigsawStyle style{FSelectedPalette, FCurrentColor, FCurrentThickness, FCurrentDash};
  addShapesToDocument(makeJigsaw(settings, style, [this] { return PathList->getNextID(); }), FActiveLayer);
  RepaintCanvas();
  finishDocumentChange();
  return true;
}

void TfrmPelw::actFixStitchingOrder() {
  std::vector<TPW_Path*> holes;
  for (const auto& s : *PathList)
    if (s->FSelected && s->isType(ShapeType::Hole)) holes.push_back(s.get());
  if (holes.empty()) return;
  linkStitchingOrder(planStitchingOrder(holes, ScreenToReal(FLastMousePos)));
  RepaintCanvas();
  finishDocumentChange();
}

void TfrmPelw::actImportTranslationFile() {
  const std::string file = dialogs().openFileName("", ".tsv");
  if (!file.empty()) importTranslationFile(file);
}

bool TfrmPelw::importTranslationFile(const std::string& filename) {
  using R = TMultiLang::TImportRefusal;
  const TMultiLang::TImportResult result = FMultiLang->importTSV(filename);
  if (result) {
    if (FProgramHost.languageChanged) FProgramHost.languageChanged();
    RepaintCanvas();
    return true;
  }
  std::string text;
  switch (result.FRefusal) {
    case R::Unreadable: text = phrase("import_tsv_unreadable") + filename; break;
    case R::TooLarge: text = phrase("import_tsv_too_large"); break;
    case R::NotUtf8: text = phrase("import_tsv_not_utf8"); break;
    case R::NotTabSeparated: text = phrase("import_tsv_not_tsv"); break;
    case R::NoLanguageRow: text = phrase("import_tsv_no_codes"); break;
    case R::WrongColumnCount:
      text = fillPhrase(phrase("import_tsv_columns"),
                        {std::to_string(result.FLine), std::to_string(result.FCells)});
      break;
    case R::None: break;
  }
  showFault(std::filesystem::path(filename).filename().string() + "\n" + text + "\n" +
            phrase("import_tsv_unchanged"));
  return false;
}
