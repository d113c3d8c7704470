// Start-up in its fixed order, the options file, the command line, the
// demo project, and shut-down.
#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <random>

#include "api/mcp_routes.h"
#include "app/app_paths.h"
#include "app/demo_projects.h"
#include "app/frm_pelw.h"
#include "app/ini_file.h"
#include "platform/safe_file.h"
#include "app/stitch_options.h"
#include "document/number_text.h"

namespace {

bool equalsNoCase(const std::string& a, const std::string& b) {
  return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
           return std::tolower(static_cast<unsigned char>(x)) == std::tolower(static_cast<unsigned char>(y));
         });
}

std::string randomInstanceNumber() {
  std::random_device rd;
  std::mt19937 gen(rd());
  return std::to_string(std::uniform_int_distribution<int>(0, 9999)(gen));
}

}  // namespace

TfrmPelw::~TfrmPelw() { FormDestroy(); }

std::string TfrmPelw::phrase(const std::string& key) const {
  return FMultiLang ? FMultiLang->getTranslation(FLangID, key) : std::string();
}

void TfrmPelw::showFault(const std::string& text) { dialogs().showMessage(text); }

void TfrmPelw::FormCreate(const std::vector<std::string>& args) {
  if (FCreated) return;
  FCreated = true;
  // The canvas starts dark.
  FIsBlackBackgroundMode = true;
  // Every text shown comes from the phrase table, and the window builds its
  // language menu from it: it comes first.
  FMultiLang = std::make_unique<TMultiLang>();
  FMultiLang->loadBuiltinPhrases();
  // Each running copy writes its own autosave file, named by this number.
  FRandomStr = randomInstanceNumber();
  // Factory options until the file is read; no undo levels yet.
  FOptions = TPW_Options{};
  clearUndo();
  // The data folders the libraries and the irons live in.
  if (FAppDataPath.empty()) FAppDataPath = defaultAppDataPath();
  ensureFolder(FAppDataPath);
  FRepositoryPath = joinPath(FAppDataPath, "repository");
  FCatalogPath = joinPath(FAppDataPath, "catalogs");
  ensureFolder(FRepositoryPath);
  ensureFolder(FCatalogPath);
  // What saves cut short by a crash left behind.
  for (const std::string& folder : {FAppDataPath, FRepositoryPath, FCatalogPath, joinPath(FAppDataPath, "demo")})
    removeLeftoverTemporaries(folder);
  // The palette at its factory rows until the options overlay them.
  FPalletList = TPalletList();
  clearBackdrops();
  FCopyBuffer.clear();
  // The user's irons, or the built-in table when there is no iron file.
  FIronStartup = loadPrickingIronsAtStartup(FPrickingIronGroups,
                                            joinPath(FAppDataPath, kPrickingIronFileName), "en");
  // The options, then the irons the built-in table gained since the user's
  // file was written (the options remember which were offered).
  readOptionsFile();
  stitchOptionsChanged(true);
  addNewSystemIronsOnce(FPrickingIronGroups, FIronStartup, FOptions.FNewPrickingIronsAdded, "en");
  palletListChanged();
  selectPalletRow(std::max(0, FPalletList.selectedIndex()));
  FViewOptions.FReverseMouseWheelZoomDirection = FOptions.FReverseMouseWheelZoomDirection;
  FViewOptions.FReverseCursorKeyGridAreaMove = FOptions.FReverseCursorKeyGridAreaMove;
  FViewOptions.FWhiteBGColor = FOptions.FWhiteBGColor;
  FViewOptions.FShowStitchPattern = FOptions.FShowStitchPattern;
  FViewOptions.FStitchThickness = FOptions.FStitchThickness;
  FViewOptions.FStitchOpacity = FOptions.FStitchOpacity;
  FViewOptions.FHighlightSnapTargets = FOptions.FHighlightSnapTargets;
  setUnitMode(FOptions.FUnitMode);
  setBackgroundMode(FIsBlackBackgroundMode);
  // The language: the options', else the system's, else English.
  std::string lang = FOptions.FLangID;
  if (lang.empty() || !FMultiLang->isSupported(lang)) {
    lang = systemLanguage();
    if (lang.empty() || !FMultiLang->isSupported(lang)) lang = "en";
  }
  // The document exists before the language is set, which names its layers.
  PathList = std::make_unique<TShapeList>(FMultiLang.get(), lang);
  FIntersections = std::make_unique<TIntersections>();
  setLanguage(lang);
  // The font new text takes, one the language's users are likely to have.
  FDefaultFont = FOptions.FDefaultFont;
  if (FDefaultFont.empty()) {
    if (FLangID == "ja") FDefaultFont = "メイリオ";
    else FDefaultFont = FFontExists && FFontExists("Helvetica") ? "Helvetica" : "Arial";
  }
  if (!FIronStartup.FMessage.empty()) showFault(FIronStartup.FMessage);
  // 12. Leather catalogs; 14, 15. the built-in templates, then the repository.
  loadCatalogsAtStartup();
  deployBuiltinTemplatesAtStartup();
  loadRepositoryAtStartup();
  updateCaption();
  // With no window there is no canvas to measure: a common window's
  // drawing area, so that fitting the view gives sensible numbers.
  if (FHeadless && (FPboxWidth <= 0 || FPboxHeight <= 0)) pboxResize(kHeadlessCanvasWidth, kHeadlessCanvasHeight);
  // What to show: the file named on the command line, else work an earlier
  // run left unsaved, else a new document.
  const TCommandLineStart start = handleCommandLine(args);
  bool loaded = start.FProjectLoaded;
  if (!start.FCountsAsOpened) loaded = recoverAutosave();
  if (FUndoList.empty()) {
    takeSnapshot();
    setChanged(false);
  }
  // The layer panel shows the document's layers.
  if (FProgramHost.layerPanelChanged) FProgramHost.layerPanelChanged();
  // A person who opened nothing sees the demo project.
  if (!FHeadless && !loaded && FOptions.FLoadDemoProjectAtStartup) openDemoProject();
  else if (PathList->empty()) PathList->clearPrintPagesInfo();
  // A signal may have ended the program while a message was shown.
  if (FDestroyed) return;
  // The autosave timer.
  TimerAutoSave = createTimer();
  TimerAutoSave->setInterval(1000);
  TimerAutoSave->setOnTimer([this] { TimerAutoSaveTimer(); });
  TimerAutoSave->start();
  // Last, the local API, when the options file switches it on: requests
  // may come at once and find everything in place.
  FRouter.setRoutes(buildMcpRoutes(*this));
  startMCPServerIfEnabled();
}

void TfrmPelw::FormDestroyAfterSignal() {
  FWriteRecoveryOnExit = true;
  // The window closes after this without asking: the work is in the
  // autosave file, which must not be deleted by an answer of No.
  FCloseQueryAnswered = true;
  FormDestroy();
}

void TfrmPelw::FormDestroy() {
  if (!FCreated || FDestroyed) return;
  FDestroyed = true;
  // The server first, so that no request is left waiting on a closing form.
  stopMCPServer();
  if (TimerAutoSave) TimerAutoSave->stop();
  if (FWriteRecoveryOnExit && PathList && PathList->FIsChanged) {
    try {
      writeProjectFile(autosaveFileName());
    } catch (const std::exception& e) {
      showFault(e.what());
    }
  }
  writeOptionsFile();
  saveLibrariesAtShutdown();
  try {
    writePrickingIronFile(joinPath(FAppDataPath, kPrickingIronFileName), FPrickingIronGroups);
  } catch (const std::exception& e) {
    showFault(e.what());
  }
  TimerAutoSave.reset();
  clearUndo();
  clearRedo();
  FCopyBuffer.clear();
  clearBackdrops();
}

std::string TfrmPelw::optionsFileName() const { return joinPath(FAppDataPath, kOptionsFileName); }

void TfrmPelw::readOptionsFile() {
  // A missing or damaged file leaves the defaults; the exit writes it anew.
  try {
    const TIniFile ini(optionsFileName());
    readOptions(ini, FOptions, &FPalletList);
  } catch (const std::exception&) {
  }
}

void TfrmPelw::writeOptionsFile() {
  try {
    // Read again, so that keys the program does not own survive. A file
    // that is no text (NUL bytes, not UTF-8) is kept aside and replaced,
    // rather than its garbage written back as sections.
    TIniFile ini;
    std::string text;
    try {
      text = readWholeFile(optionsFileName());
    } catch (const std::exception&) {
    }
    if (text.find('\0') != std::string::npos || repairUtf8(text) != text) {
      try {
        writeFileAtomically(optionsFileName() + ".damaged", text);
      } catch (const std::exception&) {
      }
    } else {
      ini.loadFromText(text);
    }
    // The view's settings may have changed while the program ran.
    FOptions.FLangID = FLangID;
    if (!FDefaultFont.empty()) FOptions.FDefaultFont = FDefaultFont;
    FOptions.FUnitMode = FViewOptions.FUnitMode;
    FOptions.FReverseMouseWheelZoomDirection = FViewOptions.FReverseMouseWheelZoomDirection;
    FOptions.FReverseCursorKeyGridAreaMove = FViewOptions.FReverseCursorKeyGridAreaMove;
    FOptions.FShowStitchPattern = FViewOptions.FShowStitchPattern;
    FOptions.FStitchThickness = FViewOptions.FStitchThickness;
    stitchSettingsToOptions(FStitchSettings, FOptions);
    writeOptions(ini, FOptions, &FPalletList);
    ini.saveToFile(optionsFileName());
  } catch (const std::exception& e) {
    showFault(e.what());
  }
}

std::string TfrmPelw::systemLanguage() {
  const char* vars[] = {"LC_ALL", "LC_MESSAGES", "LANG"};
  for (const char* v : vars) {
    const char* value = std::getenv(v);
    if (!value || !*value) continue;
    std::string s = value;
    if (s == "C" || s == "POSIX" || s.rfind("C.", 0) == 0) return {};
    for (char& c : s) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    const std::string region = s.substr(0, s.find_first_of(".@"));
    const std::string language = region.substr(0, region.find('_'));
    if (region == "zh_cn" || region == "zh_sg" || language == "zh") return "zh-cn";
    if (region == "pt_br" || language == "pt") return "pb";
    if (language == "nb" || language == "nn") return "no";
    if (language == "hy") return "am";
    return language;
  }
  return {};
}

void TfrmPelw::setLanguage(const std::string& langID) {
  FLangID = langID;
  FOptions.FLangID = langID;
  if (PathList) PathList->FLangID = langID;
  FPrickingIronGroups.renameForLanguage(langID);
  if (FRepository) {
    FRepository->FRootRepositoryTreeItem->translateFolder([this](const std::string& key) { return phrase(key); });
    if (FLibraryHost.repositoryChanged) FLibraryHost.repositoryChanged();
  }
  if (FProgramHost.languageChanged) FProgramHost.languageChanged();
}

TfrmPelw::TCommandLineStart TfrmPelw::handleCommandLine(const std::vector<std::string>& args) {
  TCommandLineStart r;
  for (const std::string& a : args) {
    if (equalsNoCase(a, "--instance-id")) {
      r.FCountsAsOpened = true;
      break;
    }
    if (!r.FCountsAsOpened) {
      std::error_code ec;
      const auto abs = std::filesystem::absolute(args.front(), ec);
      loadProject(ec ? args.front() : abs.lexically_normal().string());
      r.FCountsAsOpened = true;
      r.FProjectLoaded = true;
    }
  }
  return r;
}

std::string TfrmPelw::demoProjectFileName() const {
  return joinPath(joinPath(FAppDataPath, "demo"), FLangID == "ja" ? "demo_2.0.8_ja.pwc" : "demo_2.0.8_en.pwc");
}

void TfrmPelw::openDemoProject() {
  const std::string file = demoProjectFileName();
  deployDemoProjects(FDemoSourcePath, joinPath(FAppDataPath, "demo"));
  std::error_code ec;
  if (!std::filesystem::is_regular_file(file, ec)) {
    showFault("Demo project file not found.");
    return;
  }
  loadProject(file);
  if (FProgramHost.showMemoPanel && !PathList->FMemo.empty()) FProgramHost.showMemoPanel(true);
}
