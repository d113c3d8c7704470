// The File menu: the save question before New, Open and Close, the
// commands themselves, and a further window.
#include <chrono>
#include <cstdio>
#include <ctime>
#include <filesystem>

#include "app/frm_pelw.h"
#include "platform/process_launch.h"

bool TfrmPelw::FormCloseQuery() {
  if (!PathList || !PathList->FIsChanged) return true;
  const TDialogAnswer answer = dialogs().askYesNoCancel(phrase("SaveProject?"), TDialogAnswer::Cancel);
  if (answer == TDialogAnswer::Cancel) return false;
  if (answer == TDialogAnswer::Yes && !saveProject()) return false;
  deleteAutosaveFile();
  return true;
}

void TfrmPelw::resetForNewDocument() {
  // The modes a new or opened document starts in.
  FRequireSnapshotRotate = 0;
  FRequireSnapshotScale = 0;
  clearUndo();
  clearRedo();
  PathList->clearAll();
  FIntersections->Clear();
  clearBackdrops();
  FIsPrintAreaAvailable = false;
  FActiveLayer = 0;
}

void TfrmPelw::actNewProject() {
  if (!FormCloseQuery()) return;
  resetForNewDocument();
  FFilename.clear();
  updateCaption();
  if (FProgramHost.layerPanelChanged) FProgramHost.layerPanelChanged();
  takeSnapshot();
  setChanged(false);
  actResetView();
  if (FProgramHost.showMemoPanel) FProgramHost.showMemoPanel(false);
}

void TfrmPelw::newProjectWithoutQuestion() {
  PathList->clearAll();
  FIntersections->Clear();
  FSelectNextStitchingHoleMode = false;
  clearBackdrops();
  FIsPrintAreaAvailable = false;
  FFilename.clear();
  for (int i = 0; i < TPalletList::Count(); ++i) FPalletList[i].FIsVisible = true;
  selectPalletRow(0);
  updateCaption();
  FActiveLayer = 0;
  if (FProgramHost.layerPanelChanged) FProgramHost.layerPanelChanged();
  takeSnapshot();
  setChanged(false);
  actResetView();
  FPaintSwitches.chkHighlightActiveLayer = false;
  if (FProgramHost.showMemoPanel) FProgramHost.showMemoPanel(false);
}

void TfrmPelw::selectPalletRow(int row) {
  if (row < 0 || row >= TPalletList::Count()) return;
  FPalletList.selectRow(row);
  FSelectedPalette = row;
  FCurrentColor = FPalletList[row].getColor();
  FCurrentThickness = FPalletList[row].FThickness;
  FCurrentDash = FPalletList[row].FDash;
}

void TfrmPelw::actLoadProject() {
  if (!FormCloseQuery()) return;
  std::string folder;
  if (!FFilename.empty()) folder = std::filesystem::path(FFilename).parent_path().string();
  const std::string name = dialogs().openFileName(folder, ".pwc");
  if (name.empty()) return;
  const int activeLayer = FActiveLayer;
  FActiveLayer = 0;
  if (!loadProject(name)) {
    // The drawing and its name stay as they were.
    FActiveLayer = activeLayer;
    return;
  }
  FRequireSnapshotRotate = 0;
  FRequireSnapshotScale = 0;
  if (FProgramHost.showMemoPanel) FProgramHost.showMemoPanel(!PathList->FMemo.empty());
}

void TfrmPelw::actSaveProject() {
  if (saveProject()) deleteAutosaveFile();
}

void TfrmPelw::actSaveProjectAs() {
  if (saveProjectAs()) deleteAutosaveFile();
}

void TfrmPelw::actClose() {
  if (!FormCloseQuery()) return;
  FCloseQueryAnswered = true;
  if (FProgramHost.closeWindow) FProgramHost.closeWindow();
}

void TfrmPelw::actOpenNewWindow() {
  if (FViewHost.showStatus) FViewHost.showStatus(phrase("OpeningNewWindow"));
  // "hhnnsszzz": the time with milliseconds; it only marks the instance.
  const auto now = std::chrono::system_clock::now();
  const std::time_t t = std::chrono::system_clock::to_time_t(now);
  std::tm tm{};
  localtime_r(&t, &tm);
  const int ms = static_cast<int>(
      std::chrono::duration_cast<std::chrono::milliseconds>(now.time_since_epoch()).count() % 1000);
  char stamp[16];
  std::snprintf(stamp, sizeof stamp, "%02d%02d%02d%03d", tm.tm_hour, tm.tm_min, tm.tm_sec, ms);
  const std::vector<std::string> args{"--instance-id", stamp};
  const std::string error =
      FLaunchInstance ? FLaunchInstance(args) : launchDetachedProcess(ownExecutablePath(), args);
  if (!error.empty()) showFault(error);
}
