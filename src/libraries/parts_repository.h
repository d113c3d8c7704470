// The parts repository: the user's templates, one file each in the
// "repository" folder, shown in a tree of folders. Built-in templates come
// from an archive inside the program and are laid into the folder on every
// start. The folder may hold files of other programs or broken ones: those
// are skipped and named in FLoadProblems, and no file that failed to load
// is written over until the user changes something (it is then kept aside
// as name + ".damaged").
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

#include "document/pw_path.h"
#include "libraries/repository_tree.h"

inline constexpr const char* kRepositoryFileType = "Pelwright_Repository";
inline constexpr const char* kRepositoryIndexFileName = "repository_index.txt";
inline constexpr const char* kRepositoryTreeFileName = "repository_tree.json";
inline constexpr const char* kTemplateExtension = ".pwcr";

// The text of a template file: BOM, {"meta": {...}, "repository": shape}.
std::string templateFileText(const TPW_Path& shape);

class TPartRepository {
 public:
  // Builds a template from the "repository" object of its file, as a
  // project load builds a shape (irons, palette rows); throws on a bad one.
  using TShapeReader = std::function<std::unique_ptr<TPW_Path>(const nlohmann::ordered_json& shapeObject)>;

  TPartRepository();

  std::vector<std::unique_ptr<TPW_Path>> FPartRepository;  // all templates, in the index's order
  std::unique_ptr<TRepositoryTreeItem> FRootRepositoryTreeItem;
  std::string FAppDataPath;
  std::string FRepositoryPath;
  // Files laid out from the built-in archive (full paths).
  std::vector<std::string> FSystemRepositoryFiles;
  // "file: what is wrong" for each file the last load or import skipped.
  std::vector<std::string> FLoadProblems;
  // The index and the tree differ from their files.
  bool FChanged = false;

  void setAppDataPath(const std::string& appDataPath);

  // Lays the archive's files into the application data folder: a missing
  // file always, an existing one only when the archive's is newer and it
  // is neither the index nor the tree. Each file keeps the archive's time.
  void deployBuiltinTemplates(std::string_view archiveBase64);
  bool isSystemTemplate(const TPW_Path& shape) const;

  // The index, the files it lists and those it does not (at the end), the
  // tree; templates no folder holds go to the root.
  void load(const TShapeReader& reader);
  // The same from what is in memory and the folder's files now: after an
  // import.
  void reload(const TShapeReader& reader);
  // The index and the tree files, when they changed or are missing.
  void saveIndexAndTree();
  void writeIndex();
  void writeTree();

  std::string templateFileName(const TPW_Path& shape) const;
  void writeTemplateFile(const TPW_Path& shape);
  // Adds a template to a folder (the root for null), writes its file and
  // the index.
  TPW_Path* addTemplate(std::unique_ptr<TPW_Path> shape, TRepositoryTreeItem* folder = nullptr);

  // Removes the template's file, takes it out of its folder and the list,
  // frees it. False when no template has that GUID.
  bool deleteRepository(const TGUID& guid);
  void deleteRepositoryCore(TPW_Path* shape);
  // A folder with all it holds, depth first; the root cannot go.
  bool deleteRepositoryFolderCore(TRepositoryTreeItem* folder);

  TRepositoryTreeItem* newFolder(TRepositoryTreeItem* parent, const std::string& name);
  // Refused (false) into itself or its own sub-folders.
  bool moveFolder(TRepositoryTreeItem* folder, TRepositoryTreeItem* destination);
  bool moveTemplate(TPW_Path* shape, TRepositoryTreeItem* destination);
  // One place up (-1) or down (+1) among its siblings.
  bool shiftFolder(TRepositoryTreeItem* folder, int direction);
  bool shiftTemplate(TPW_Path* shape, int direction);
  // The folder's templates by name, ignoring case.
  void sortTemplates(TRepositoryTreeItem* folder);
  void renameTemplate(TPW_Path* shape, const std::string& name);
  void renameFolder(TRepositoryTreeItem* folder, const std::string& name);

  TPW_Path* findTemplate(const TGUID& guid) const;

  // Copies in the template files of a folder that are not here yet (and
  // its index when there is none here). Files that are no templates are
  // left out and named in FLoadProblems. The number copied.
  int importFolder(const std::string& folder, const TShapeReader& reader);
  // Writes the templates of a folder and its sub-folders, with an index
  // of them, into a folder of the file system. The number written.
  int exportFolder(const TRepositoryTreeItem& folder, const std::string& destination) const;

 private:
  std::set<std::string> FSystemGuids;
  std::set<std::string> FBrokenFiles;  // files that failed to load: kept aside before a write
  std::map<const TPW_Path*, std::string> FSourceFiles;  // the file each template came from
  std::vector<std::string> readIndexNames();
  void loadTemplates(const std::vector<std::string>& names, const TShapeReader& reader);
  void placeOrphansAtRoot();
  void writeOver(const std::string& filename, const std::string& text);
  std::unique_ptr<TPW_Path> readTemplateFile(const std::string& filename, const TShapeReader& reader,
                                             std::string& problem) const;
};
