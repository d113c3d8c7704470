#include "libraries/repository_tree.h"

#include <algorithm>
#include <unordered_set>

using json = nlohmann::ordered_json;

TRepositoryTreeItem::TRepositoryTreeItem(const std::vector<std::unique_ptr<TPW_Path>>* partsList)
    : FID(TGUID::create().toString()), FPartsList(partsList) {}

TRepositoryTreeItem* TRepositoryTreeItem::findTreeItemByID(const std::string& id) {
  if (FID == id) return this;
  for (const auto& c : FTreeItems)
    if (TRepositoryTreeItem* r = c->findTreeItemByID(id)) return r;
  return nullptr;
}

TRepositoryTreeItem* TRepositoryTreeItem::findTreeItemByName(const std::string& name) {
  if (FName == name) return this;
  for (const auto& c : FTreeItems)
    if (TRepositoryTreeItem* r = c->findTreeItemByName(name)) return r;
  return nullptr;
}

TRepositoryTreeItem* TRepositoryTreeItem::findTreeItemByShape(const TPW_Path* shape) {
  if (std::find(FShapes.begin(), FShapes.end(), shape) != FShapes.end()) return this;
  for (const auto& c : FTreeItems)
    if (TRepositoryTreeItem* r = c->findTreeItemByShape(shape)) return r;
  return nullptr;
}

TRepositoryTreeItem* TRepositoryTreeItem::findParentTreeItem(const TRepositoryTreeItem* item) {
  for (const auto& c : FTreeItems) {
    if (c.get() == item) return this;
    if (TRepositoryTreeItem* r = c->findParentTreeItem(item)) return r;
  }
  return nullptr;
}

TPW_Path* TRepositoryTreeItem::findShapeFromPartsList(const std::string& guidText) const {
  if (!FPartsList) return nullptr;
  TGUID g;
  if (!TGUID::tryParse(guidText, g)) return nullptr;
  for (const auto& s : *FPartsList)
    if (s->FGUID == g) return s.get();
  return nullptr;
}

json TRepositoryTreeItem::toJson() const {
  json jo = json::object();
  jo["name"] = FName;
  jo["id"] = FID;
  jo["exp"] = FIsExpanded;
  json shapes = json::array();
  for (const TPW_Path* s : FShapes) shapes.push_back(s->FGUID.toString());
  jo["shapes"] = std::move(shapes);
  json subs = json::array();
  for (const auto& c : FTreeItems) subs.push_back(c->toJson());
  jo["subTreeItems"] = std::move(subs);
  return jo;
}

namespace {

std::string textKey(const json& jo, const char* key) {
  const auto it = jo.find(key);
  return it != jo.end() && it->is_string() ? it->get<std::string>() : std::string();
}

void loadNode(TRepositoryTreeItem& node, const json& jo, std::unordered_set<const TPW_Path*>& placed,
              std::unordered_set<std::string>& ids) {
  node.FName = textKey(jo, "name");
  const std::string id = textKey(jo, "id");
  // A folder without an id, or with one used twice, gets a fresh one so
  // that moves and deletes find the right folder.
  node.FID = !id.empty() && ids.insert(id).second ? id : TGUID::create().toString();
  if (node.FID != id) ids.insert(node.FID);
  const auto exp = jo.find("exp");
  node.FIsExpanded = exp != jo.end() && exp->is_boolean() && exp->get<bool>();
  node.FShapes.clear();
  node.FTreeItems.clear();
  if (const auto shapes = jo.find("shapes"); shapes != jo.end() && shapes->is_array())
    for (const json& g : *shapes) {
      if (!g.is_string()) continue;
      TPW_Path* s = node.findShapeFromPartsList(g.get<std::string>());
      if (s && placed.insert(s).second) node.FShapes.push_back(s);
    }
  if (const auto subs = jo.find("subTreeItems"); subs != jo.end() && subs->is_array())
    for (const json& sub : *subs) {
      if (!sub.is_object()) continue;
      auto child = std::make_unique<TRepositoryTreeItem>(node.FPartsList);
      loadNode(*child, sub, placed, ids);
      node.FTreeItems.push_back(std::move(child));
    }
}

}  // namespace

void TRepositoryTreeItem::loadJson(const json& jo) {
  if (!jo.is_object()) return;
  std::unordered_set<const TPW_Path*> placed;
  std::unordered_set<std::string> ids;
  loadNode(*this, jo, placed, ids);
}

void TRepositoryTreeItem::translateFolder(const TTranslate& translate) {
  if (translate)
    for (const char* id : kBuiltinFolderIds)
      if (FID == id) {
        const std::string t = translate(id);
        if (!t.empty()) FName = t;
      }
  for (const auto& c : FTreeItems) c->translateFolder(translate);
}

bool TRepositoryTreeItem::removeShape(const TPW_Path* shape) {
  TRepositoryTreeItem* holder = findTreeItemByShape(shape);
  if (!holder) return false;
  std::erase(holder->FShapes, shape);
  return true;
}

std::unique_ptr<TRepositoryTreeItem> TRepositoryTreeItem::detach(const TRepositoryTreeItem* item) {
  TRepositoryTreeItem* parent = findParentTreeItem(item);
  if (!parent) return nullptr;
  auto it = std::find_if(parent->FTreeItems.begin(), parent->FTreeItems.end(),
                         [item](const auto& p) { return p.get() == item; });
  std::unique_ptr<TRepositoryTreeItem> out = std::move(*it);
  parent->FTreeItems.erase(it);
  return out;
}

bool checkNoLoop(const TRepositoryTreeItem* from, const TRepositoryTreeItem* to) {
  if (!from || !to) return false;
  if (from == to) return false;
  for (const auto& c : from->FTreeItems)
    if (!checkNoLoop(c.get(), to)) return false;
  return true;
}
