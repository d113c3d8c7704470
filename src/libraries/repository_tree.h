// The folder tree of the parts repository: folders hold sub-folders and
// refer to templates of the repository's list. Its file,
// "repository_tree.json", is one object per folder ("name", "id", "exp",
// "shapes" as GUID texts, "subTreeItems"), the root being the file's object.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "document/pw_path.h"

#include <functional>

// The six built-in folders, known by these ids whatever their names.
inline constexpr const char* kBuiltinFolderIds[6] = {
    "{A3B49CF4-19B4-4E58-BE20-355B76F5C40E}", "{8799D1DF-5129-42A9-9673-0C0D46F81C82}",
    "{2AB4D730-B592-4640-8F68-952CFBE6BED0}", "{7A088D31-0A73-4EEB-9D54-9EE015CA53A1}",
    "{C66BDC6B-5091-47BE-AC26-9D3E41B31335}", "{9FAD8492-B9CE-470B-8224-3FE4B521450C}",
};

class TRepositoryTreeItem {
 public:
  // `partsList` is the whole repository, borrowed: ids in the file are
  // resolved against it.
  explicit TRepositoryTreeItem(const std::vector<std::unique_ptr<TPW_Path>>* partsList);

  std::vector<std::unique_ptr<TRepositoryTreeItem>> FTreeItems;  // sub-folders, owned
  std::vector<TPW_Path*> FShapes;                                // templates, borrowed
  std::string FName;
  std::string FID;  // GUID text
  const std::vector<std::unique_ptr<TPW_Path>>* FPartsList;
  bool FIsExpanded = false;

  // Depth first, this folder included; the first match.
  TRepositoryTreeItem* findTreeItemByID(const std::string& id);
  TRepositoryTreeItem* findTreeItemByName(const std::string& name);
  TRepositoryTreeItem* findTreeItemByShape(const TPW_Path* shape);
  // The folder that holds `item` among its sub-folders; null for this one
  // or one outside the tree.
  TRepositoryTreeItem* findParentTreeItem(const TRepositoryTreeItem* item);
  TPW_Path* findShapeFromPartsList(const std::string& guidText) const;

  nlohmann::ordered_json toJson() const;
  // Replaces this folder's content with the object's. Unknown template ids
  // are skipped; a template already placed in another folder stays there.
  void loadJson(const nlohmann::ordered_json& jo);
  // Names of the built-in folders in the language (the phrase of each
  // folder's id); others keep what the user typed.
  using TTranslate = std::function<std::string(const std::string& key)>;
  void translateFolder(const TTranslate& translate);

  // Takes a template or a sub-folder out of wherever it is below this one.
  bool removeShape(const TPW_Path* shape);
  std::unique_ptr<TRepositoryTreeItem> detach(const TRepositoryTreeItem* item);
};

// False when `to` is `from` or lies inside it: a folder cannot move into
// its own sub-folder.
bool checkNoLoop(const TRepositoryTreeItem* from, const TRepositoryTreeItem* to);
