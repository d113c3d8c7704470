// Opening a project file: the text is read into a new document first, so
// that a file that fails, half way or from the start, leaves the open
// document and its name as they were; then
// the new one takes its place, with its stitch links repaired, its layers
// completed, one undo level, and the question about duplicates.
#include <filesystem>
#include <stdexcept>

#include "app/app_paths.h"
#include "app/frm_pelw.h"
#include "app/project_reader.h"
#include "platform/safe_file.h"
#include "document/json_value_forms.h"
#include "document/shape_normalise.h"

TProjectReadContext TfrmPelw::projectReadContext() const {
  TProjectReadContext c;
  c.FMultiLang = FMultiLang.get();
  c.FLangID = FLangID;
  c.FIrons = const_cast<TPrickingIronGroups*>(&FPrickingIronGroups);
  c.FPallet = &FPalletList;
  c.FCurrentStyle = TShapeStyle{FSelectedPalette, FCurrentColor, FCurrentThickness, FCurrentDash};
  c.FActiveLayer = FActiveLayer;
  return c;
}

bool TfrmPelw::loadProject(const std::string& filename) {
  // What an interrupted save of this file left beside it.
  const std::filesystem::path path(filename);
  removeLeftoverTemporaries(path.parent_path().string(), path.filename().string());
  std::string bytes;
  try {
    bytes = readWholeFile(filename);
  } catch (const std::exception& e) {
    showFault(e.what());
    if (FUndoList.empty()) {
      takeSnapshot();
      setChanged(false);
    }
    return false;
  }
  return loadProjectText(filename, bytes);
}

void TfrmPelw::afterDocumentReplaced() {
  FIsPrintAreaAvailable = false;
  clearUndo();
  clearRedo();
  takeSnapshot();
  PathList->FIsChanged = false;
  PathList->FLastChangeTime = 0;
  PathList->FLastSavedTime = 0;
  if (FProgramHost.layerPanelChanged) FProgramHost.layerPanelChanged();
  if (FProgramHost.captionChanged) FProgramHost.captionChanged();
  RepaintCanvas();
}

bool TfrmPelw::loadProjectText(const std::string& filename, const std::string& bytes) {
  if (!PathList) return false;
  TJsonTextState state = TJsonTextState::NotJson;
  TProjectContent content;
  try {
    content = readProjectFileText(bytes, projectReadContext(), state);
  } catch (const std::exception& e) {
    showFault(filename + ": " + e.what());
    return false;
  }
  if (state != TJsonTextState::Object) {
    // Not a project: the open drawing and its name stay, so that a save
    // never writes over a file that could not be read.
    showFault(phrase("NotPWCFile") + "\n" + filename);
    return false;
  }
  PathList = std::move(content.FList);
  FIntersections = std::move(content.FIntersections);
  FFilename = filename;
  loadBackdropsOfProject(content.FBackdrops, filename);
  updateCaption();
  actResetView();
  repairStitchLinks(*PathList);
  PathList->restoreLayers();
  // New shapes must go to a layer the loaded file has.
  if (!PathList->hasLayer(FActiveLayer) && !PathList->FLayers.empty()) FActiveLayer = PathList->FLayers.front();
  PathList->countNumOfAlwaysShowStitchSimulator();
  afterDocumentReplaced();

  const TDuplicates duplicates = findDuplicates(*PathList);
  if (duplicates.FCount > 0) {
    const std::string n = std::to_string(duplicates.FCount);
    const std::string question = phrase("num_duplicates") + " " + n + "\r\n" + phrase("ask_duplicates_deleted");
    if (dialogs().askYesNo(question, TDialogAnswer::No) == TDialogAnswer::Yes) {
      for (TPW_Path* s : duplicates.FShapes) deleteShape(s);
      takeSnapshot();
      showFault(phrase("duplicates_deleted") + " " + n);
      RepaintCanvas();
    }
  }
  return true;
}
