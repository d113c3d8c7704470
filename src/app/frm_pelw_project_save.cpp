// Saving a project, the Save As flow, the window caption, and the
// clipboard file that lets shapes travel to another instance.
#include <filesystem>

#include "app/app_paths.h"
#include "app/frm_pelw.h"
#include "app/project_reader.h"
#include "platform/safe_file.h"

namespace {

std::string folderOf(const std::string& file) {
  if (file.empty()) return {};
  return std::filesystem::path(file).parent_path().string();
}

std::string nameOf(const std::string& file) {
  if (file.empty()) return {};
  return std::filesystem::path(file).filename().string();
}

}  // namespace

void TfrmPelw::writeProjectFile(const std::string& filename) {
  writeFileAtomically(filename, projectFileText(*PathList, backdropsForFile()));
}

bool TfrmPelw::saveProject() {
  if (!PathList) return false;
  if (FFilename.empty()) return saveProjectAs();
  try {
    writeProjectFile(FFilename);
  } catch (const std::exception& e) {
    showFault(e.what());
    return false;
  }
  PathList->FIsChanged = false;
  PathList->FLastSavedTime = nowDateTime();
  updateCaption();
  if (FViewHost.showStatus) FViewHost.showStatus("Saved " + FFilename);
  return true;
}

bool TfrmPelw::saveProjectAs() {
  std::string name = dialogs().saveFileName(folderOf(FFilename), nameOf(FFilename), ".pwc");
  if (name.empty()) return false;
  if (std::filesystem::path(name).extension().empty()) name += ".pwc";
  const std::string previous = FFilename;
  FFilename = name;
  if (saveProject()) return true;
  FFilename = previous;
  updateCaption();
  return false;
}

std::string TfrmPelw::captionText() const {
  const std::string product = std::string("Pelwright ver") + kRunningVersion;
  if (FFilename.empty()) return product;
  return nameOf(FFilename) + " - " + product;
}

void TfrmPelw::updateCaption() {
  if (FProgramHost.captionChanged) FProgramHost.captionChanged();
}

std::string TfrmPelw::copiedShapesFileName() const { return joinPath(FAppDataPath, kCopiedShapesFileName); }

void TfrmPelw::writeCopiedShapesFile() {
  std::vector<const TPW_Path*> shapes;
  for (const auto& s : FCopyBuffer) shapes.push_back(s.get());
  try {
    writeFileAtomically(copiedShapesFileName(), copiedShapesFileText(shapes));
  } catch (const std::exception& e) {
    showFault(e.what());
  }
}

bool TfrmPelw::readCopiedShapesFile() {
  try {
    const TParsedJsonText parsed = parseJsonFileText(readWholeFile(copiedShapesFileName()));
    if (parsed.FState != TJsonTextState::Object) return false;
    const auto it = parsed.FRoot.find("shapes");
    if (it == parsed.FRoot.end()) return false;
    TProjectReadContext c;
    c.FMultiLang = FMultiLang.get();
    c.FLangID = FLangID;
    c.FIrons = &FPrickingIronGroups;
    c.FPallet = &FPalletList;
    c.FCurrentStyle = TShapeStyle{FSelectedPalette, FCurrentColor, FCurrentThickness, FCurrentDash};
    FCopyBuffer = readShapeObjects(*it, c);
    return true;
  } catch (const std::exception&) {
    return false;
  }
}
