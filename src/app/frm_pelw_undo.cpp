// Undo and redo: one snapshot at the end of every operation, shared with
// the one before where shapes did not change.
#include "app/frm_pelw.h"
#include "document/shape_normalise.h"

void TfrmPelw::setChanged(bool changed) {
  if (!PathList) return;
  const bool was = PathList->FIsChanged;
  PathList->FIsChanged = changed;
  if (changed) {
    const TDateTime now = nowDateTime();
    // The first change since the last save starts the wait the autosave
    // keeps to at most ten seconds.
    if (!(PathList->FLastChangeTime > PathList->FLastSavedTime)) FUnsavedSince = now;
    PathList->FLastChangeTime = now;
  }
  if (was != changed && FProgramHost.captionChanged) FProgramHost.captionChanged();
}

void TfrmPelw::takeSnapshot() {
  if (!PathList || !FIntersections) return;
  PathList->FLastOperatedTime = nowDateTime();
  setChanged(true);
  // Lines are normalised before each snapshot, the live ones included.
  for (const auto& s : *PathList) normaliseLine(*s);
  FUndoList.push_back(takeUndoSnapshot(*PathList, *FIntersections,
                                       FUndoList.empty() ? nullptr : FUndoList.back().get(), FSnapshotLinks));
  clearRedo();
  if (FProgramHost.undoStateChanged) FProgramHost.undoStateChanged();
}

void TfrmPelw::finishDocumentChange() { takeSnapshot(); }

void TfrmPelw::flushPendingSnapshot() {
  if (FRequireSnapshotRotate == 0 && FRequireSnapshotScale == 0) return;
  FRequireSnapshotRotate = 0;
  FRequireSnapshotScale = 0;
  takeSnapshot();
}

bool TfrmPelw::canUndo() const {
  if (FBackdropToolActive) return selectedBackdrop() && selectedBackdrop()->getUndoBufferCount() >= 2;
  return FUndoList.size() >= 2;
}

bool TfrmPelw::canRedo() const {
  if (FBackdropToolActive) return selectedBackdrop() && !selectedBackdrop()->FRedoList.empty();
  return !FRedoList.empty();
}

void TfrmPelw::actUndo() {
  // With the backdrop tool the selected backdrop's own undo.
  if (FBackdropToolActive) return backdropUndo();
  // A pending wheel run is stored first, so that undo returns to before it.
  flushPendingSnapshot();
  if (FUndoList.size() < 2) return;
  FRedoList.push_back(std::move(FUndoList.back()));
  FUndoList.pop_back();
  const TUndoSnapshot& state = *FUndoList.back();
  restoreUndoSnapshot(state, *PathList, *FIntersections, true, FSnapshotLinks);
  setChanged(state.FIsChanged);
  PathList->countNumOfAlwaysShowStitchSimulator();
  if (FProgramHost.layerPanelChanged) FProgramHost.layerPanelChanged();
  if (FProgramHost.undoStateChanged) FProgramHost.undoStateChanged();
  RepaintCanvas();
  PathList->FLastOperatedTime = nowDateTime();
}

void TfrmPelw::actRedo() {
  if (FBackdropToolActive) return backdropRedo();
  flushPendingSnapshot();
  if (FRedoList.empty()) return;
  FUndoList.push_back(std::move(FRedoList.back()));
  FRedoList.pop_back();
  // Redo keeps the selection of the snapshot and the changed flag as it is.
  restoreUndoSnapshot(*FUndoList.back(), *PathList, *FIntersections, false, FSnapshotLinks);
  PathList->countNumOfAlwaysShowStitchSimulator();
  if (FProgramHost.layerPanelChanged) FProgramHost.layerPanelChanged();
  if (FProgramHost.undoStateChanged) FProgramHost.undoStateChanged();
  RepaintCanvas();
  PathList->FLastOperatedTime = nowDateTime();
}

void TfrmPelw::clearUndo() {
  FUndoList.clear();
  FSnapshotLinks.clear();
  if (FProgramHost.undoStateChanged) FProgramHost.undoStateChanged();
}

void TfrmPelw::clearRedo() { FRedoList.clear(); }
