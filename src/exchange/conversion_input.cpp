#include "exchange/conversion_input.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>

#include "app/app_paths.h"
#include "app/frm_pelw.h"

void prepareConversion(TfrmPelw& f, TScriptedDialogs& dialogs) {
  f.FHeadless = true;
  f.FDialogs = &dialogs;
  f.FMultiLang = std::make_unique<TMultiLang>();
  f.FMultiLang->loadBuiltinPhrases();
  if (f.FAppDataPath.empty()) f.FAppDataPath = defaultAppDataPath();
  f.FOptions = TPW_Options{};
  f.FPalletList = TPalletList();
  f.readOptionsFile();
  std::string lang = f.FOptions.FLangID;
  if (lang.empty() || !f.FMultiLang->isSupported(lang)) {
    lang = TfrmPelw::systemLanguage();
    if (lang.empty() || !f.FMultiLang->isSupported(lang)) lang = "en";
  }
  f.PathList = std::make_unique<TShapeList>(f.FMultiLang.get(), lang);
  f.FIntersections = std::make_unique<TIntersections>();
  f.setLanguage(lang);
  f.setBackgroundMode(true);
  f.palletListChanged();
  f.selectPalletRow(std::max(0, f.FPalletList.selectedIndex()));
  f.FDefaultFont = f.FOptions.FDefaultFont.empty() ? "Arial" : f.FOptions.FDefaultFont;
}

std::string loadConversionInput(TfrmPelw& f, const std::string& input) {
  auto* dialogs = dynamic_cast<TScriptedDialogs*>(f.FDialogs);
  std::error_code ec;
  if (!std::filesystem::is_regular_file(input, ec))
    return f.FMultiLang->getTranslation(f.FLangID, "FileNotFound") + input;
  std::string ext = std::filesystem::path(input).extension().string();
  std::transform(ext.begin(), ext.end(), ext.begin(), [](unsigned char c) { return char(std::tolower(c)); });
  if (ext == ".pwc") {
    const size_t before = dialogs ? dialogs->FMessages.size() : 0;
    if (f.loadProject(input)) return {};
    if (dialogs && dialogs->FMessages.size() > before) return dialogs->FMessages[before];
    return "cannot read " + input;
  }
  if (ext == ".svg") {
    // As the import command does it: split into lines and curves, at the
    // drawing's own size.
    const TfrmPelw::TSvgImportResult r = f.importSVGFile(input, true, false);
    for (const std::string& line : r.FReport) std::fprintf(stderr, "pelwright: %s\n", line.c_str());
    return r.FError;
  }
  return "cannot read \"" + ext + "\" files; the input is a project (.pwc) or an SVG drawing (.svg)";
}
