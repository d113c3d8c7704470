// Autosave: a one-second timer writes unsaved work to this instance's
// recovery file; a start that opened nothing takes a leftover one back.
// Also the log of paint failures.
#include <algorithm>
#include <ctime>
#include <filesystem>
#include <fstream>

#include "app/app_paths.h"
#include "app/frm_pelw.h"

namespace {

constexpr double kSecond = 1.0 / 86400.0;  // in days, as the times are kept

}  // namespace

std::string TfrmPelw::autosaveFileName() const {
  return joinPath(FAppDataPath, "autosave_" + FRandomStr + ".tmp");
}

void TfrmPelw::TimerAutoSaveTimer() {
  if (!PathList || !PathList->FIsChanged) return;
  if (!(PathList->FLastChangeTime > PathList->FLastSavedTime)) return;
  // Someone working without pause is not interrupted, but changes that have
  // waited ten seconds are written whatever is going on: steady work through
  // the local API never pauses.
  const double now = nowDateTime();
  const bool quiet = now - PathList->FLastOperatedTime >= 3 * kSecond && now - PathList->FLastSavedTime >= 3 * kSecond;
  if (!quiet && now - FUnsavedSince < 10 * kSecond) return;
  const std::string remembered = FFilename;
  const bool toRecoveryFile = !FOptions.FUseAutoSave || FFilename.empty();
  const std::string target = toRecoveryFile ? autosaveFileName() : FFilename;
  if (TimerAutoSave) TimerAutoSave->stop();
  try {
    writeProjectFile(target);
    PathList->FLastSavedTime = nowDateTime();
    FLastAutosaveError.clear();
  } catch (const std::exception& e) {
    // Said once, not every second while the disk stays full.
    if (FLastAutosaveError != e.what()) showFault(e.what());
    FLastAutosaveError = e.what();
  }
  FFilename = remembered;
  if (TimerAutoSave) TimerAutoSave->start();
  // An autosave never clears the changed state: the question at close stays.
  PathList->FIsChanged = true;
  updateCaption();
}

void TfrmPelw::deleteAutosaveFile() {
  std::error_code ec;
  std::filesystem::remove(autosaveFileName(), ec);
}

bool TfrmPelw::recoverAutosave() {
  // The newest file wins; of files equally new, the first by name.
  std::vector<std::pair<std::filesystem::file_time_type, std::string>> found;
  std::error_code ec;
  for (const auto& entry : std::filesystem::directory_iterator(FAppDataPath, ec)) {
    const std::string n = entry.path().filename().string();
    if (n.rfind("autosave", 0) == 0 && n.size() >= 12 && n.compare(n.size() - 4, 4, ".tmp") == 0 &&
        entry.is_regular_file(ec))
      found.emplace_back(entry.last_write_time(ec), n);
  }
  if (found.empty()) return false;
  std::sort(found.begin(), found.end(), [](const auto& a, const auto& b) {
    return a.first != b.first ? a.first > b.first : a.second < b.second;
  });
  const std::string chosen = found.front().second;
  try {
    // Renamed before the load, so that a file whose load crashes the
    // program is not loaded at every start.
    std::string name = "delete_anytime" + chosen.substr(8);
    while (std::filesystem::exists(joinPath(FAppDataPath, name)))
      name = name.substr(0, name.size() - 4) + "a.tmp";
    const std::string target = joinPath(FAppDataPath, name);
    std::filesystem::rename(joinPath(FAppDataPath, chosen), target);
    if (loadProject(target)) {
      if (FProgramHost.showMemoPanel && !PathList->FMemo.empty()) FProgramHost.showMemoPanel(true);
      // Kept, as this instance's own autosave file, until a newer autosave
      // or a save replaces it: a second crash meanwhile loses nothing.
      while (std::filesystem::exists(autosaveFileName()))
        FRandomStr = std::to_string((std::stoi(FRandomStr) + 1) % 10000);
      std::filesystem::rename(target, autosaveFileName());
    }
    // A file that would not load stays as "delete_anytime...", for the user.
    FFilename.clear();
    updateCaption();
    setChanged(true);
  } catch (const std::exception& e) {
    showFault(std::string("Autosave data error: ") + "\n" + e.what());
  }
  return true;
}

std::string TfrmPelw::paintErrorLogFileName() const {
  return joinPath(FAppDataPath.empty() ? defaultAppDataPath() : FAppDataPath, "Pelwright_paint_errors.log");
}

void TfrmPelw::logPaintError(const std::string& className, const std::string& message, const TPW_Path* shape) {
  char stamp[32];
  const std::time_t now = std::time(nullptr);
  std::tm tm{};
  localtime_r(&now, &tm);
  std::strftime(stamp, sizeof stamp, "%Y-%m-%d %H:%M:%S", &tm);
  std::string line = std::string(stamp) + "  " + className + ": " + message;
  if (shape) line += " [shape ID=" + std::to_string(shape->FID) + " type=" + shape->FShapeType + "]";
  // The whole line, time included: a failure that repeats at every paint is
  // written at most once a second.
  if (line == FLastPaintError) return;
  FLastPaintError = line;
  try {
    ensureFolder(FAppDataPath.empty() ? defaultAppDataPath() : FAppDataPath);
    std::ofstream out(paintErrorLogFileName(), std::ios::app | std::ios::binary);
    out << line << "\r\n";
  } catch (...) {
    // A log that cannot be written must not stop the paint.
  }
}
