// The libraries at start-up and shut-down: the leather catalogs (step 12),
// the built-in templates (step 14), the parts repository (step 15), and
// their files written at the end.
#include "app/frm_pelw.h"
#include "libraries/builtin_templates.h"

void TfrmPelw::showLibraryProblems(const std::vector<std::string>& problems) {
  if (problems.empty()) return;
  std::string text = phrase("LibraryFilesSkipped");
  // A folder full of foreign files makes a long list: the first twenty.
  const size_t shown = std::min<size_t>(problems.size(), 20);
  for (size_t i = 0; i < shown; ++i) text += "\n" + problems[i];
  if (shown < problems.size()) text += "\n... (" + std::to_string(problems.size() - shown) + ")";
  showFault(text);
}

void TfrmPelw::loadCatalogsAtStartup() {
  FCatalogDict = std::make_unique<TPW_CatalogDict>();
  FCatalogDict->loadShops(FCatalogPath);
  showLibraryProblems(FCatalogDict->FLoadProblems);
}

void TfrmPelw::deployBuiltinTemplatesAtStartup() {
  FRepository = std::make_unique<TPartRepository>();
  FRepository->setAppDataPath(FAppDataPath);
  FRepository->deployBuiltinTemplates(builtinTemplateArchive());
}

TPartRepository::TShapeReader TfrmPelw::templateReader() {
  return [this](const nlohmann::ordered_json& shapeObject) -> std::unique_ptr<TPW_Path> {
    TProjectReadContext c = projectReadContext();
    auto shapes = readShapeObjects(nlohmann::ordered_json::array({shapeObject}), c);
    return shapes.empty() ? nullptr : std::move(shapes.front());
  };
}

void TfrmPelw::loadRepositoryAtStartup() {
  if (!FRepository) deployBuiltinTemplatesAtStartup();
  FRepository->load(templateReader());
  FRepository->FRootRepositoryTreeItem->translateFolder([this](const std::string& key) { return phrase(key); });
  showLibraryProblems(FRepository->FLoadProblems);
  FRepository->FLoadProblems.clear();
}

void TfrmPelw::saveLibrariesAtShutdown() {
  if (FCatalogDict) {
    try {
      FCatalogDict->saveShops(FCatalogPath, PELWRIGHT_VERSION);
    } catch (const std::exception& e) {
      showFault(e.what());
    }
  }
  if (FRepository) {
    try {
      FRepository->saveIndexAndTree();
    } catch (const std::exception& e) {
      showFault(e.what());
    }
  }
}
