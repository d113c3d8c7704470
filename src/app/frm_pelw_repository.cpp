// The parts repository's commands: registering the selection, placing a
// template, and the tree's edits, import and export. The window's
// repository panel calls these and rebuilds itself on repositoryChanged.
#include <algorithm>

#include "app/frm_pelw.h"
#include "libraries/template_outline.h"

namespace {

void repositoryChanged(const TLibraryHost& host) {
  if (host.repositoryChanged) host.repositoryChanged();
}

// Moves a shape by (dx, dy): its path and every point it keeps.
void translateShape(TPW_Path& s, double dx, double dy) {
  const TPointF d = TPointF::fromDouble(dx, dy);
  s.FData.Translate(dx, dy);
  for (TPointF* p : {&s.FStartPt, &s.FEndPt, &s.FCenter, &s.FBezierCp1, &s.FBezierCp2, &s.FStitchIn, &s.FStitchOut})
    *p += d;
  s.resetBoundary();
}

}  // namespace

void TfrmPelw::openRepository() {
  if (FLibraryHost.openRepository) FLibraryHost.openRepository();
}

TPW_Path* TfrmPelw::miToParts(bool skipDots, bool skipHoles) {
  if (!FRepository || !PathList) return nullptr;
  std::vector<const TPW_Path*> shapes;
  for (const auto& s : *PathList) {
    if (!s->FSelected) continue;
    if (skipDots && s->FShapeType == ShapeType::Dot) continue;
    if (skipHoles && s->FShapeType == ShapeType::Hole) continue;
    shapes.push_back(s.get());
  }
  if (shapes.empty()) return nullptr;
  const auto name = dialogs().inputText(phrase("regSelPartsToRepo"), phrase("regSelPartsToRepoBody"), "");
  if (!name || name->empty()) return nullptr;
  auto templ = mergeIntoTemplate(shapes, *name);
  if (!templ) return nullptr;
  TPW_Path* added = nullptr;
  try {
    added = FRepository->addTemplate(std::move(templ));
  } catch (const std::exception& e) {
    showFault(e.what());
    return nullptr;
  }
  showFault("\"" + *name + "\"" + phrase("templatereg"));
  repositoryChanged(FLibraryHost);
  return added;
}

TPW_Path* TfrmPelw::placeTemplate(const TPW_Path& templ, const std::optional<TPointF>& at) {
  if (!PathList) return nullptr;
  auto copy = templ.createCopy();
  copy->FID = 0;  // a new number from the document
  copy->FSelected = true;
  const TPointF target = at ? *at : VisibleRealRect().normalized().centerPoint();
  const TPointF middle = copy->getBoundary(false).normalized().centerPoint();
  translateShape(*copy, double(target.x) - middle.x, double(target.y) - middle.y);
  copy->getBoundary(copy->FShapeType == ShapeType::Other);
  for (const auto& s : *PathList) s->FSelected = false;
  TPW_Path* placed = addShapeToDocument(std::move(copy), FActiveLayer);
  finishDocumentChange();
  RepaintCanvas();
  return placed;
}

bool TfrmPelw::deleteRepositoryItems(const std::vector<TPW_Path*>& templates,
                                     const std::vector<TRepositoryTreeItem*>& folders) {
  if (!FRepository || (templates.empty() && folders.empty())) return false;
  if (dialogs().askYesNo(phrase("ok2delete?"), TDialogAnswer::No) != TDialogAnswer::Yes) return false;
  // By identity, as a folder may take checked templates and folders with it.
  std::vector<std::string> folderIds;
  for (const TRepositoryTreeItem* f : folders) folderIds.push_back(f->FID);
  std::vector<TGUID> guids;
  for (const TPW_Path* t : templates) guids.push_back(t->FGUID);
  TRepositoryTreeItem& root = *FRepository->FRootRepositoryTreeItem;
  for (const std::string& id : folderIds)
    if (TRepositoryTreeItem* f = root.findTreeItemByID(id); f && f != &root) FRepository->deleteRepositoryFolderCore(f);
  for (const TGUID& g : guids) FRepository->deleteRepository(g);
  if (FSelectedTemplate && !FRepository->findTemplate(FSelectedTemplate->FGUID)) FSelectedTemplate = nullptr;
  repositoryChanged(FLibraryHost);
  return true;
}

bool TfrmPelw::renameRepositoryTemplate(TPW_Path* templ) {
  if (!FRepository || !templ) return false;
  const auto name = dialogs().inputText(phrase("renametemplate"), phrase("renametemplatebody"), templ->FName);
  if (!name || name->empty()) return false;
  try {
    FRepository->renameTemplate(templ, *name);
  } catch (const std::exception& e) {
    showFault(e.what());
  }
  repositoryChanged(FLibraryHost);
  return true;
}

bool TfrmPelw::renameRepositoryFolder(TRepositoryTreeItem* folder) {
  if (!FRepository || !folder || folder == FRepository->FRootRepositoryTreeItem.get()) return false;
  const auto name = dialogs().inputText(phrase("renametemplate"), phrase("renametemplatebody"), folder->FName);
  if (!name || name->empty()) return false;
  FRepository->renameFolder(folder, *name);
  repositoryChanged(FLibraryHost);
  return true;
}

TRepositoryTreeItem* TfrmPelw::newRepositoryFolder(TRepositoryTreeItem* parent) {
  if (!FRepository) return nullptr;
  TRepositoryTreeItem* f = FRepository->newFolder(parent, phrase("New Folder"));
  repositoryChanged(FLibraryHost);
  return f;
}

bool TfrmPelw::moveRepositoryItem(TPW_Path* templ, TRepositoryTreeItem* folder, TRepositoryTreeItem* destination) {
  if (!FRepository || !destination) return false;
  bool moved = false;
  if (folder) {
    if (!checkNoLoop(folder, destination)) {
      showFault(phrase("RT_NoMoveIntoItself"));
      return false;
    }
    moved = FRepository->moveFolder(folder, destination);
  } else if (templ) {
    moved = FRepository->moveTemplate(templ, destination);
  }
  if (moved) repositoryChanged(FLibraryHost);
  return moved;
}

void TfrmPelw::actImportRepository() {
  if (!FRepository) return;
  const std::string folder = dialogs().chooseFolder(phrase("Select Folder"), "");
  if (folder.empty()) return;
  const int n = FRepository->importFolder(folder, templateReader());
  const std::vector<std::string> problems = FRepository->FLoadProblems;
  if (n > 0) {
    showFault((n == 1 ? phrase("OneTemplateWas") : std::to_string(n) + phrase("MultipleTemplateWere")) +
              phrase("ImportSuccess"));
    FRepository->reload(templateReader());
    FRepository->FRootRepositoryTreeItem->translateFolder([this](const std::string& key) { return phrase(key); });
    FSelectedTemplate = nullptr;
    repositoryChanged(FLibraryHost);
  } else {
    showFault(phrase("Nothing2Import"));
  }
  showLibraryProblems(problems);
  FRepository->FLoadProblems.clear();
}

void TfrmPelw::actExportRepositoryFolder(const TRepositoryTreeItem& folder) {
  if (!FRepository) return;
  const std::string destination = dialogs().chooseFolder(phrase("Select Folder"), "");
  if (destination.empty()) return;
  try {
    const int n = FRepository->exportFolder(folder, destination);
    showFault(std::to_string(n) + phrase("TemplatesExported"));
  } catch (const std::exception& e) {
    showFault(e.what());
  }
}
