#include "libraries/parts_repository.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <sstream>
#include <unordered_set>

#include "app/app_paths.h"
#include "platform/safe_file.h"
#include "document/json_text_writer.h"
#include "document/project_json.h"
#include "libraries/zip_archive.h"

namespace fs = std::filesystem;
using json = nlohmann::ordered_json;

namespace {

std::string lowerCase(std::string s) {
  for (char& c : s) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return s;
}

bool plainName(const std::string& n) {
  return !n.empty() && n.find_first_of("/\\:") == std::string::npos && n != "." && n != "..";
}

std::time_t fileTime(const std::string& path) {
  std::error_code ec;
  const auto t = fs::last_write_time(path, ec);
  if (ec) return 0;
  return std::chrono::system_clock::to_time_t(std::chrono::file_clock::to_sys(t));
}

void setFileTime(const std::string& path, std::time_t t) {
  std::error_code ec;
  fs::last_write_time(path, std::chrono::file_clock::from_sys(std::chrono::system_clock::from_time_t(t)), ec);
}

}  // namespace

std::string templateFileText(const TPW_Path& shape) {
  TJsonTextWriter w(2048);
  w.beginObject();
  w.key("meta");
  w.beginObject();
  w.stringField("file_type", kRepositoryFileType);
  w.stringField("version", kProjectFileVersion);
  w.endObject();
  w.key("repository");
  shape.toJson(w);
  w.endObject();
  return std::string(kUtf8Bom) + w.text() + "\r\n";
}

TPartRepository::TPartRepository()
    : FRootRepositoryTreeItem(std::make_unique<TRepositoryTreeItem>(&FPartRepository)) {
  FRootRepositoryTreeItem->FName = "root";
}

void TPartRepository::setAppDataPath(const std::string& appDataPath) {
  FAppDataPath = appDataPath;
  FRepositoryPath = joinPath(appDataPath, "repository");
}

// ---- the built-in templates ----

void TPartRepository::deployBuiltinTemplates(std::string_view archiveBase64) {
  FSystemRepositoryFiles.clear();
  FSystemGuids.clear();
  std::vector<TZipEntry> entries;
  try {
    entries = readZipArchive(base64Decode(archiveBase64));
  } catch (const std::exception& e) {
    FLoadProblems.push_back(std::string("built-in templates: ") + e.what());
    return;
  }
  for (const TZipEntry& e : entries) {
    const std::string target = joinPath(FAppDataPath, e.FName);
    FSystemRepositoryFiles.push_back(target);
    const std::string base = fs::path(e.FName).stem().string();
    if (fs::path(e.FName).extension() == kTemplateExtension) FSystemGuids.insert(base);
    std::error_code ec;
    if (fs::exists(target, ec)) {
      if (e.FName == kRepositoryIndexFileName || e.FName == kRepositoryTreeFileName) continue;
      if (e.FModified <= fileTime(target)) continue;
    }
    try {
      ensureFolder(fs::path(target).parent_path().string());
      writeFileAtomically(target, e.FData);
      if (e.FModified > 0) setFileTime(target, e.FModified);
    } catch (const std::exception& ex) {
      FLoadProblems.push_back(ex.what());
    }
  }
}

bool TPartRepository::isSystemTemplate(const TPW_Path& shape) const {
  return FSystemGuids.count(shape.FGUID.toString()) > 0;
}

// ---- loading ----

std::unique_ptr<TPW_Path> TPartRepository::readTemplateFile(const std::string& filename, const TShapeReader& reader,
                                                            std::string& problem) const {
  std::string bytes;
  try {
    bytes = readWholeFile(filename);
  } catch (const std::exception&) {
    problem = "the file cannot be read";
    return nullptr;
  }
  const TParsedJsonText parsed = parseJsonFileText(bytes);
  const json* shapeObject = nullptr;
  if (parsed.FState == TJsonTextState::Object) {
    const auto it = parsed.FRoot.find("repository");
    if (it != parsed.FRoot.end() && it->is_object()) shapeObject = &*it;
  }
  if (!shapeObject) {
    problem = "not a template file";
    return nullptr;
  }
  try {
    auto shape = reader(*shapeObject);
    if (!shape) problem = "not a template file";
    return shape;
  } catch (const std::exception& e) {
    problem = e.what();
    return nullptr;
  }
}

std::vector<std::string> TPartRepository::readIndexNames() {
  std::vector<std::string> names;
  const std::string indexFile = joinPath(FAppDataPath, kRepositoryIndexFileName);
  std::error_code ec;
  if (!fs::exists(indexFile, ec)) return names;
  std::string text;
  try {
    text = readWholeFile(indexFile);
  } catch (const std::exception& e) {
    FLoadProblems.push_back(e.what());
    return names;
  }
  if (text.find('\0') != std::string::npos || repairUtf8(text) != text) {
    FLoadProblems.push_back(std::string(kRepositoryIndexFileName) + ": not a list of templates");
    FBrokenFiles.insert(indexFile);
    return names;
  }
  std::istringstream in(text);
  std::string line;
  std::unordered_set<std::string> seen;
  while (std::getline(in, line)) {
    const size_t a = line.find_first_not_of(" \t\r\xEF\xBB\xBF");
    if (a == std::string::npos) continue;
    line = line.substr(a, line.find_last_not_of(" \t\r") - a + 1);
    if (plainName(line) && seen.insert(line).second) names.push_back(line);
  }
  return names;
}

void TPartRepository::loadTemplates(const std::vector<std::string>& listed, const TShapeReader& reader) {
  std::vector<std::string> names = listed;
  // Files dropped into the folder by hand come after the listed ones.
  const std::unordered_set<std::string> known(listed.begin(), listed.end());
  std::vector<std::string> more;
  std::error_code ec;
  for (fs::directory_iterator it(FRepositoryPath, ec), end; !ec && it != end; it.increment(ec)) {
    const fs::path& p = it->path();
    if (lowerCase(p.extension().string()) != kTemplateExtension) continue;
    std::string stem = p.stem().string();
    if (!known.count(stem)) more.push_back(std::move(stem));
  }
  std::sort(more.begin(), more.end());
  names.insert(names.end(), more.begin(), more.end());
  std::set<std::string> seenGuids;
  for (const std::string& name : names) {
    const std::string file = joinPath(FRepositoryPath, name + kTemplateExtension);
    if (!fs::is_regular_file(file, ec)) continue;  // listed, but the file has gone
    std::string problem;
    auto shape = readTemplateFile(file, reader, problem);
    if (!shape) {
      FLoadProblems.push_back(name + kTemplateExtension + ": " + problem);
      FBrokenFiles.insert(file);
      continue;
    }
    if (!seenGuids.insert(shape->FGUID.toString()).second) continue;  // a copy of one already read
    if (isSystemTemplate(*shape)) {
      // Built-in templates stay open paths.
      std::string text = shape->FData.getData();
      const size_t before = text.size();
      std::erase_if(text, [](char c) { return c == 'Z' || c == 'z'; });
      if (text.size() != before) {
        shape->FData.setData(text);
        shape->resetBoundary();
      }
    }
    FSourceFiles[shape.get()] = file;
    FPartRepository.push_back(std::move(shape));
  }
}

void TPartRepository::placeOrphansAtRoot() {
  for (const auto& s : FPartRepository)
    if (!FRootRepositoryTreeItem->findTreeItemByShape(s.get())) FRootRepositoryTreeItem->FShapes.push_back(s.get());
}

void TPartRepository::load(const TShapeReader& reader) {
  FPartRepository.clear();
  FSourceFiles.clear();
  FRootRepositoryTreeItem = std::make_unique<TRepositoryTreeItem>(&FPartRepository);
  FRootRepositoryTreeItem->FName = "root";
  ensureFolder(FRepositoryPath);
  loadTemplates(readIndexNames(), reader);
  const std::string treeFile = joinPath(FAppDataPath, kRepositoryTreeFileName);
  std::error_code ec;
  if (fs::exists(treeFile, ec)) {
    std::string bytes;
    try {
      bytes = readWholeFile(treeFile);
    } catch (const std::exception&) {
    }
    const TParsedJsonText parsed = parseJsonFileText(bytes);
    if (parsed.FState == TJsonTextState::Object) {
      FRootRepositoryTreeItem->loadJson(parsed.FRoot);
    } else {
      FLoadProblems.push_back(std::string(kRepositoryTreeFileName) + ": not a folder tree");
      FBrokenFiles.insert(treeFile);
    }
  }
  placeOrphansAtRoot();
  FChanged = false;
}

void TPartRepository::reload(const TShapeReader& reader) {
  const json tree = FRootRepositoryTreeItem->toJson();
  std::vector<std::string> order;
  for (const auto& s : FPartRepository) order.push_back(fs::path(templateFileName(*s)).stem().string());
  FPartRepository.clear();
  FSourceFiles.clear();
  FRootRepositoryTreeItem = std::make_unique<TRepositoryTreeItem>(&FPartRepository);
  loadTemplates(order, reader);
  FRootRepositoryTreeItem->loadJson(tree);
  placeOrphansAtRoot();
  FChanged = true;
}

// ---- writing ----

void TPartRepository::writeOver(const std::string& filename, const std::string& text) {
  if (FBrokenFiles.erase(filename)) {
    std::error_code ec;
    fs::rename(filename, filename + ".damaged", ec);
  }
  writeFileAtomically(filename, text);
}

void TPartRepository::writeIndex() {
  if (FPartRepository.empty()) return;
  std::string text;
  for (const auto& s : FPartRepository) text += s->FGUID.toString() + "\r\n";
  writeOver(joinPath(FAppDataPath, kRepositoryIndexFileName), text);
}

void TPartRepository::writeTree() {
  TJsonTextWriter w(4096);
  writeJsonValue(w, FRootRepositoryTreeItem->toJson());
  writeOver(joinPath(FAppDataPath, kRepositoryTreeFileName), std::string(kUtf8Bom) + w.text() + "\r\n");
}

void TPartRepository::saveIndexAndTree() {
  std::error_code ec;
  const bool indexMissing = !fs::exists(joinPath(FAppDataPath, kRepositoryIndexFileName), ec);
  const bool treeMissing = !fs::exists(joinPath(FAppDataPath, kRepositoryTreeFileName), ec);
  if (FChanged || (indexMissing && !FPartRepository.empty())) writeIndex();
  if (FChanged || (treeMissing && !FPartRepository.empty())) writeTree();
  FChanged = false;
}

std::string TPartRepository::templateFileName(const TPW_Path& shape) const {
  const auto it = FSourceFiles.find(&shape);
  if (it != FSourceFiles.end()) return it->second;
  return joinPath(FRepositoryPath, shape.FGUID.toString() + kTemplateExtension);
}

void TPartRepository::writeTemplateFile(const TPW_Path& shape) {
  ensureFolder(FRepositoryPath);
  writeOver(templateFileName(shape), templateFileText(shape));
}

TPW_Path* TPartRepository::addTemplate(std::unique_ptr<TPW_Path> shape, TRepositoryTreeItem* folder) {
  TPW_Path* raw = shape.get();
  FPartRepository.push_back(std::move(shape));
  (folder ? folder : FRootRepositoryTreeItem.get())->FShapes.push_back(raw);
  FChanged = true;
  writeTemplateFile(*raw);
  writeIndex();
  return raw;
}

// ---- editing the tree ----

TPW_Path* TPartRepository::findTemplate(const TGUID& guid) const {
  for (const auto& s : FPartRepository)
    if (s->FGUID == guid) return s.get();
  return nullptr;
}

void TPartRepository::deleteRepositoryCore(TPW_Path* shape) {
  std::error_code ec;
  fs::remove(templateFileName(*shape), ec);
  FRootRepositoryTreeItem->removeShape(shape);
  FSourceFiles.erase(shape);
  std::erase_if(FPartRepository, [shape](const auto& p) { return p.get() == shape; });
  FChanged = true;
}

bool TPartRepository::deleteRepository(const TGUID& guid) {
  TPW_Path* shape = findTemplate(guid);
  if (!shape) return false;
  deleteRepositoryCore(shape);
  return true;
}

bool TPartRepository::deleteRepositoryFolderCore(TRepositoryTreeItem* folder) {
  if (!folder || folder == FRootRepositoryTreeItem.get()) return false;
  while (!folder->FTreeItems.empty()) deleteRepositoryFolderCore(folder->FTreeItems.back().get());
  while (!folder->FShapes.empty()) deleteRepositoryCore(folder->FShapes.back());
  FRootRepositoryTreeItem->detach(folder);
  FChanged = true;
  return true;
}

TRepositoryTreeItem* TPartRepository::newFolder(TRepositoryTreeItem* parent, const std::string& name) {
  if (!parent) parent = FRootRepositoryTreeItem.get();
  auto folder = std::make_unique<TRepositoryTreeItem>(&FPartRepository);
  folder->FName = name;
  parent->FTreeItems.push_back(std::move(folder));
  parent->FIsExpanded = true;
  FChanged = true;
  return parent->FTreeItems.back().get();
}

bool TPartRepository::moveFolder(TRepositoryTreeItem* folder, TRepositoryTreeItem* destination) {
  if (!folder || !destination || folder == FRootRepositoryTreeItem.get()) return false;
  if (!checkNoLoop(folder, destination)) return false;
  if (FRootRepositoryTreeItem->findParentTreeItem(folder) == destination) return true;
  auto owned = FRootRepositoryTreeItem->detach(folder);
  if (!owned) return false;
  destination->FTreeItems.push_back(std::move(owned));
  FChanged = true;
  return true;
}

bool TPartRepository::moveTemplate(TPW_Path* shape, TRepositoryTreeItem* destination) {
  if (!shape || !destination) return false;
  FRootRepositoryTreeItem->removeShape(shape);
  destination->FShapes.push_back(shape);
  FChanged = true;
  return true;
}

namespace {
template <typename T>
bool shiftIn(std::vector<T>& list, size_t at, int direction) {
  const long to = long(at) + direction;
  if (to < 0 || to >= long(list.size())) return false;
  std::swap(list[at], list[size_t(to)]);
  return true;
}
}  // namespace

bool TPartRepository::shiftFolder(TRepositoryTreeItem* folder, int direction) {
  TRepositoryTreeItem* parent = FRootRepositoryTreeItem->findParentTreeItem(folder);
  if (!parent) return false;
  const auto it = std::find_if(parent->FTreeItems.begin(), parent->FTreeItems.end(),
                               [folder](const auto& p) { return p.get() == folder; });
  const bool moved = shiftIn(parent->FTreeItems, size_t(it - parent->FTreeItems.begin()), direction);
  FChanged = FChanged || moved;
  return moved;
}

bool TPartRepository::shiftTemplate(TPW_Path* shape, int direction) {
  TRepositoryTreeItem* holder = FRootRepositoryTreeItem->findTreeItemByShape(shape);
  if (!holder) return false;
  const auto it = std::find(holder->FShapes.begin(), holder->FShapes.end(), shape);
  const bool moved = shiftIn(holder->FShapes, size_t(it - holder->FShapes.begin()), direction);
  FChanged = FChanged || moved;
  return moved;
}

void TPartRepository::sortTemplates(TRepositoryTreeItem* folder) {
  if (!folder) return;
  std::stable_sort(folder->FShapes.begin(), folder->FShapes.end(),
                   [](const TPW_Path* a, const TPW_Path* b) { return lowerCase(a->FName) < lowerCase(b->FName); });
  FChanged = true;
}

void TPartRepository::renameTemplate(TPW_Path* shape, const std::string& name) {
  if (!shape) return;
  shape->FName = name;
  writeTemplateFile(*shape);
}

void TPartRepository::renameFolder(TRepositoryTreeItem* folder, const std::string& name) {
  if (!folder) return;
  folder->FName = name;
  FChanged = true;
}

// ---- import and export ----

int TPartRepository::importFolder(const std::string& folder, const TShapeReader& reader) {
  FLoadProblems.clear();
  ensureFolder(FRepositoryPath);
  std::error_code ec;
  const std::string theirIndex = joinPath(folder, kRepositoryIndexFileName);
  const std::string ourIndex = joinPath(FAppDataPath, kRepositoryIndexFileName);
  if (fs::is_regular_file(theirIndex, ec) && !fs::exists(ourIndex, ec)) {
    try {
      writeFileAtomically(ourIndex, readWholeFile(theirIndex));
    } catch (const std::exception& e) {
      FLoadProblems.push_back(e.what());
    }
  }
  std::vector<fs::path> files;
  for (fs::directory_iterator it(folder, ec), end; !ec && it != end; it.increment(ec))
    if (it->is_regular_file(ec) && lowerCase(it->path().extension().string()) == kTemplateExtension)
      files.push_back(it->path());
  std::sort(files.begin(), files.end());
  int count = 0;
  for (const fs::path& p : files) {
    const std::string target = joinPath(FRepositoryPath, p.filename().string());
    if (fs::exists(target, ec)) continue;
    std::string problem;
    if (!readTemplateFile(p.string(), reader, problem)) {
      FLoadProblems.push_back(p.filename().string() + ": " + problem);
      continue;
    }
    try {
      writeFileAtomically(target, readWholeFile(p.string()));
      ++count;
    } catch (const std::exception& e) {
      FLoadProblems.push_back(e.what());
    }
  }
  return count;
}

int TPartRepository::exportFolder(const TRepositoryTreeItem& folder, const std::string& destination) const {
  ensureFolder(destination);
  std::vector<const TPW_Path*> shapes;
  std::function<void(const TRepositoryTreeItem&)> collect = [&](const TRepositoryTreeItem& f) {
    shapes.insert(shapes.end(), f.FShapes.begin(), f.FShapes.end());
    for (const auto& c : f.FTreeItems) collect(*c);
  };
  collect(folder);
  std::string index;
  for (const TPW_Path* s : shapes) {
    writeFileAtomically(joinPath(destination, s->FGUID.toString() + kTemplateExtension), templateFileText(*s));
    index += s->FGUID.toString() + "\r\n";
  }
  if (!shapes.empty()) writeFileAtomically(joinPath(destination, kRepositoryIndexFileName), index);
  return static_cast<int>(shapes.size());
}
