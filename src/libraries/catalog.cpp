#include "libraries/catalog.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <sstream>

#include "app/app_paths.h"
#include "platform/safe_file.h"
#include "document/json_text_writer.h"
#include "document/json_value_forms.h"
#include "document/project_json.h"
#include "libraries/picture_codec.h"

namespace fs = std::filesystem;
using json = nlohmann::ordered_json;

namespace {

std::string textOf(const json& jo, const char* key, const std::string& where) {
  const json* v = findKey(jo, key);
  return v && !v->is_null() ? readText(*v, where + ", key \"" + key + "\"") : std::string();
}
float numberOf(const json& jo, const char* key, float fallback, const std::string& where) {
  const json* v = findKey(jo, key);
  if (!v || v->is_null()) return fallback;
  const float f = readNum(*v, where + ", key \"" + key + "\"");
  return std::isfinite(f) ? f : fallback;
}
TGUID guidOf(const json& jo) {
  const json* v = findKey(jo, "GUID");
  return v ? readGuid(*v) : TGUID::create();
}
double single(float f) { return std::isfinite(f) ? double(f) : 0.0; }

// The lines of a text file, without line ends and surrounding blanks.
std::vector<std::string> textLines(const std::string& text) {
  std::vector<std::string> out;
  std::istringstream in(text);
  std::string line;
  while (std::getline(in, line)) {
    const size_t a = line.find_first_not_of(" \t\r\xEF\xBB\xBF");
    if (a == std::string::npos) continue;
    const size_t b = line.find_last_not_of(" \t\r");
    out.push_back(line.substr(a, b - a + 1));
  }
  return out;
}

// The pictures of a shop file are most of its bytes, and base64 text
// needs no JSON parsing: each "zipbmp" value is moved aside before the
// parser runs and left in its place as "#n", its number in `texts`. A
// value with an escape in it is left for the parser.
std::string setPicturesAside(const std::string& bytes, std::vector<std::string>& texts) {
  static constexpr std::string_view kKey = "\"zipbmp\":\"";
  std::string out;
  size_t from = 0;
  for (size_t at = bytes.find(kKey); at != std::string::npos; at = bytes.find(kKey, from)) {
    const size_t start = at + kKey.size();
    const size_t end = bytes.find('"', start);
    if (end == std::string::npos) break;
    if (std::memchr(bytes.data() + start, '\\', end - start)) {
      out.append(bytes, from, end + 1 - from);
      from = end + 1;
      continue;
    }
    if (out.empty()) out.reserve(bytes.size() / 8);
    out.append(bytes, from, start - from);
    out += "#" + std::to_string(texts.size());
    texts.emplace_back(bytes, start, end - start);
    from = end;
  }
  if (texts.empty()) return bytes;
  out.append(bytes, from, std::string::npos);
  return out;
}

bool plainFileName(const std::string& name) {
  return !name.empty() && name.find_first_of("/\\:") == std::string::npos && name != "." && name != "..";
}

}  // namespace

// ---- items ----

const TRasterImage& TPW_Catalog::bitmap() {
  if (FBitmap.isEmpty() && !FZipBmp.empty() && !FDecodeTried) {
    FDecodeTried = true;
    try {
      FBitmap = pictureFromBase64Zip(FZipBmp, kCatalogPictureEntry).FImage;
    } catch (const std::exception&) {
      FBitmap = {};
    }
  }
  return FBitmap;
}

void TPW_Catalog::setBitmap(const TRasterImage& picture) {
  FBitmap = picture;
  FZipBmp = picture.isEmpty() ? std::string() : pictureToBase64Zip(picture, kCatalogPictureEntry);
  FDecodeTried = true;
  fixBitmap();
}

std::string TPW_Catalog::convertBitmapToBase64Zip() const {
  return FBitmap.isEmpty() ? FZipBmp : pictureToBase64Zip(FBitmap, kCatalogPictureEntry);
}

void TPW_Catalog::takeStoredPicture(std::vector<std::string>& texts) {
  if (FZipBmp.size() < 2 || FZipBmp[0] != '#') return;
  const size_t n = std::strtoul(FZipBmp.c_str() + 1, nullptr, 10);
  FZipBmp = n < texts.size() ? std::move(texts[n]) : std::string();
}

void TPW_Catalog::decodeZippedBitmap(const std::string& base64zip) {
  FBitmap = pictureFromBase64Zip(base64zip, kCatalogPictureEntry).FImage;
  FZipBmp = base64zip;
  FDecodeTried = true;
  fixBitmap();
}

json TPW_Catalog::ToJson() const {
  json jo = json::object();
  jo["Name"] = FName;
  jo["GUID"] = FGUID.toString();
  jo["Category"] = FCategory;
  jo["UnitPrice"] = single(FUnitPrice);
  jo["UnitStr"] = FUnitStr;
  jo["URL"] = FURL;
  jo["Memo"] = FMemo;
  if (!FZipBmp.empty()) jo["zipbmp"] = FZipBmp;
  jo["dpi"] = single(FImageDPI);
  return jo;
}

void TPW_Catalog::loadJson(const json& jo) {
  const std::string where = "leather item";
  if (!jo.is_object()) throw TJsonFormError(where + " is not a JSON object");
  FName = textOf(jo, "Name", where);
  FGUID = guidOf(jo);
  FCategory = textOf(jo, "Category", where);
  FUnitPrice = numberOf(jo, "UnitPrice", 0, where);
  FUnitStr = textOf(jo, "UnitStr", where);
  FURL = textOf(jo, "URL", where);
  FMemo = textOf(jo, "Memo", where);
  FZipBmp = textOf(jo, "zipbmp", where);
  FBitmap = {};
  FDecodeTried = false;
  FImageDPI = numberOf(jo, "dpi", kDefaultCatalogDpi, where);
  if (!(FImageDPI > 0) || FImageDPI > 100000) FImageDPI = kDefaultCatalogDpi;
  fixBitmap();
}

// ---- groups and shops ----

json TPW_CatalogGroup::ToJson() const {
  json jo = json::object();
  jo["Name"] = FName;
  jo["GUID"] = FGUID.toString();
  jo["URL"] = FURL;
  jo["Memo"] = FMemo;
  json items = json::array();
  for (const auto& i : FItems) items.push_back(i->ToJson());
  jo["Items"] = std::move(items);
  return jo;
}

void TPW_CatalogGroup::loadJson(const json& jo) {
  const std::string where = "leather group";
  if (!jo.is_object()) throw TJsonFormError(where + " is not a JSON object");
  FName = textOf(jo, "Name", where);
  FGUID = guidOf(jo);
  FURL = textOf(jo, "URL", where);
  FMemo = textOf(jo, "Memo", where);
  FItems.clear();
  if (const json* items = findKey(jo, "Items"); items && items->is_array())
    for (const json& i : *items) {
      auto item = std::make_unique<TPW_Catalog>();
      item->loadJson(i);
      FItems.push_back(std::move(item));
    }
}

json TPW_CatalogShop::ToJson() const {
  json jo = json::object();
  jo["Name"] = FName;
  jo["GUID"] = FGUID.toString();
  jo["URL"] = FURL;
  jo["Memo"] = FMemo;
  jo["Version"] = FVersion;
  json groups = json::array();
  for (const auto& g : FGroups) groups.push_back(g->ToJson());
  jo["Items"] = std::move(groups);
  return jo;
}

void TPW_CatalogShop::loadJson(const json& jo) {
  const std::string where = "shop";
  if (!jo.is_object()) throw TJsonFormError(where + " is not a JSON object");
  FName = textOf(jo, "Name", where);
  FGUID = guidOf(jo);
  FURL = textOf(jo, "URL", where);
  FMemo = textOf(jo, "Memo", where);
  FVersion = static_cast<int>(numberOf(jo, "Version", 1, where));
  FGroups.clear();
  if (const json* groups = findKey(jo, "Items"); groups && groups->is_array())
    for (const json& g : *groups) {
      auto group = std::make_unique<TPW_CatalogGroup>();
      group->loadJson(g);
      FGroups.push_back(std::move(group));
    }
  FIsModified = false;
}

std::string TPW_CatalogShop::getFileName() const { return "catalog_shop_" + FGUID.toString() + ".json"; }

// ---- the dictionary ----

void TPW_CatalogDict::registerItem(TPW_Catalog* item) {
  if (item) FItems.emplace(item->FGUID, item);
}

TPW_CatalogShop* TPW_CatalogDict::addShop(std::unique_ptr<TPW_CatalogShop> shop) {
  for (const auto& g : shop->FGroups)
    for (const auto& i : g->FItems) registerItem(i.get());
  FShops.push_back(std::move(shop));
  return FShops.back().get();
}

bool TPW_CatalogDict::addCatalogIfNotRegistered(std::unique_ptr<TPW_Catalog>& item) {
  if (!item || FItems.count(item->FGUID)) return false;
  registerItem(item.get());
  FTempCatalogs.push_back(std::move(item));
  return true;
}

void TPW_CatalogDict::clearTempCatalogs() {
  for (const auto& i : FTempCatalogs) {
    const auto it = FItems.find(i->FGUID);
    if (it != FItems.end() && it->second == i.get()) FItems.erase(it);
  }
  FTempCatalogs.clear();
}

TPW_Catalog* TPW_CatalogDict::findCatalogItem(const TGUID& guid) const {
  const auto it = FItems.find(guid);
  return it == FItems.end() ? nullptr : it->second;
}

TPW_CatalogGroup* TPW_CatalogDict::findGroupByCatalogItem(const TPW_Catalog* item) const {
  for (const auto& s : FShops)
    for (const auto& g : s->FGroups)
      for (const auto& i : g->FItems)
        if (i.get() == item) return g.get();
  return nullptr;
}

TPW_CatalogShop* TPW_CatalogDict::findShopByCatalogItem(const TPW_Catalog* item) const {
  return findShopByGroup(findGroupByCatalogItem(item));
}

TPW_CatalogShop* TPW_CatalogDict::findShopByGroup(const TPW_CatalogGroup* group) const {
  if (!group) return nullptr;
  for (const auto& s : FShops)
    for (const auto& g : s->FGroups)
      if (g.get() == group) return s.get();
  return nullptr;
}

TPW_CatalogShop* TPW_CatalogDict::findShopByGUID(const TGUID& guid) const {
  for (const auto& s : FShops)
    if (s->FGUID == guid) return s.get();
  return nullptr;
}

void TPW_CatalogDict::deleteCatalog(TPW_Catalog* item) {
  TPW_CatalogGroup* group = findGroupByCatalogItem(item);
  if (!group) return;
  const auto it = FItems.find(item->FGUID);
  if (it != FItems.end() && it->second == item) FItems.erase(it);
  if (TPW_CatalogShop* shop = findShopByGroup(group)) shop->FIsModified = true;
  std::erase_if(group->FItems, [item](const auto& p) { return p.get() == item; });
}

void TPW_CatalogDict::deleteGroup(TPW_CatalogGroup* group) {
  TPW_CatalogShop* shop = findShopByGroup(group);
  if (!shop) return;
  while (!group->FItems.empty()) deleteCatalog(group->FItems.back().get());
  shop->FIsModified = true;
  std::erase_if(shop->FGroups, [group](const auto& p) { return p.get() == group; });
}

void TPW_CatalogDict::unregisterShopItems(const TPW_CatalogShop& shop) {
  for (const auto& g : shop.FGroups)
    for (const auto& i : g->FItems) {
      const auto it = FItems.find(i->FGUID);
      if (it != FItems.end() && it->second == i.get()) FItems.erase(it);
    }
}

void TPW_CatalogDict::deleteShop(TPW_CatalogShop* shop) {
  const auto it = std::find_if(FShops.begin(), FShops.end(), [shop](const auto& p) { return p.get() == shop; });
  if (it == FShops.end()) return;
  unregisterShopItems(*shop);
  FDeletedShopFiles.push_back(shop->getFileName());
  FShops.erase(it);
  FShopListChanged = true;
}

std::string catalogFileText(const char* fileType, const std::string& version, const char* key, const json& value) {
  TJsonTextWriter w(4096);
  w.beginObject();
  w.key("meta");
  w.beginObject();
  w.stringField("file_type", fileType);
  w.stringField("version", version);
  w.endObject();
  w.key(key);
  writeJsonValue(w, value);
  w.endObject();
  return std::string(kUtf8Bom) + w.text() + "\r\n";
}

void TPW_CatalogDict::saveShops(const std::string& filedir, const std::string& appVersion) {
  ensureFolder(filedir);
  for (const auto& s : FShops) {
    if (!s->FIsModified) continue;
    writeFileAtomically(joinPath(filedir, s->getFileName()),
                        catalogFileText(kShopFileType, appVersion, "Shops", json::array({s->ToJson()})));
    s->FIsModified = false;
  }
  for (const std::string& name : FDeletedShopFiles) {
    if (std::any_of(FShops.begin(), FShops.end(), [&](const auto& s) { return s->getFileName() == name; }))
      continue;  // the same shop came back (imported again)
    std::error_code ec;
    fs::remove(joinPath(filedir, name), ec);
  }
  FDeletedShopFiles.clear();
  const std::string indexFile = joinPath(filedir, kShopIndexFileName);
  std::error_code ec;
  if (FShopListChanged || !fs::exists(indexFile, ec)) {
    std::string text;
    for (const auto& s : FShops) text += s->getFileName() + "\r\n";
    if (!FShops.empty() || fs::exists(indexFile, ec)) writeFileAtomically(indexFile, text);
    FShopListChanged = false;
  }
}

std::unique_ptr<TPW_CatalogShop> TPW_CatalogDict::shopFromFile(const std::string& filename, const char* key,
                                                               std::string& problem) {
  std::string bytes;
  try {
    bytes = readWholeFile(filename);
  } catch (const std::exception& e) {
    problem = e.what();
    return nullptr;
  }
  std::vector<std::string> pictures;
  TParsedJsonText parsed = parseJsonFileText(setPicturesAside(bytes, pictures));
  if (parsed.FState != TJsonTextState::Object) {
    problem = "not a JSON object";
    return nullptr;
  }
  const json* v = findKey(parsed.FRoot, key);
  if (!v || !v->is_object()) {
    problem = std::string("no \"") + key + "\" in the file";
    return nullptr;
  }
  try {
    auto shop = std::make_unique<TPW_CatalogShop>();
    shop->loadJson(*v);
    for (const auto& g : shop->FGroups)
      for (const auto& i : g->FItems) i->takeStoredPicture(pictures);
    return shop;
  } catch (const std::exception& e) {
    problem = e.what();
    return nullptr;
  }
}

bool TPW_CatalogDict::loadShop(const std::string& filename) {
  const std::string name = fs::path(filename).filename().string();
  std::string bytes;
  try {
    bytes = readWholeFile(filename);
  } catch (const std::exception&) {
    FLoadProblems.push_back(name + ": the file cannot be read");
    return false;
  }
  std::vector<std::string> pictures;
  TParsedJsonText parsed = parseJsonFileText(setPicturesAside(bytes, pictures));
  bytes.clear();
  const json* shops = parsed.FState == TJsonTextState::Object ? findKey(parsed.FRoot, "Shops") : nullptr;
  if (!shops || !shops->is_array()) {
    FLoadProblems.push_back(name + ": not a shop file");
    return false;
  }
  std::vector<std::unique_ptr<TPW_CatalogShop>> read;
  try {
    for (const json& s : *shops) {
      auto shop = std::make_unique<TPW_CatalogShop>();
      shop->loadJson(s);
      for (const auto& g : shop->FGroups)
        for (const auto& i : g->FItems) i->takeStoredPicture(pictures);
      read.push_back(std::move(shop));
    }
  } catch (const std::exception& e) {
    FLoadProblems.push_back(name + ": " + e.what());
    return false;
  }
  for (auto& s : read)
    if (!findShopByGUID(s->FGUID)) addShop(std::move(s));  // a copy of a shop already read is left out
  return true;
}

bool TPW_CatalogDict::loadShops(const std::string& filedir) {
  FLoadProblems.clear();
  std::vector<std::string> names;
  const std::string indexFile = joinPath(filedir, kShopIndexFileName);
  std::error_code ec;
  if (fs::exists(indexFile, ec)) {
    try {
      const std::string text = readWholeFile(indexFile);
      if (text.find('\0') != std::string::npos || repairUtf8(text) != text)
        FLoadProblems.push_back(std::string(kShopIndexFileName) + ": not a list of file names");
      else
        for (const std::string& line : textLines(text)) {
          if (plainFileName(line)) names.push_back(line);
          else FLoadProblems.push_back(std::string(kShopIndexFileName) + ": \"" + line + "\" is no file name");
        }
    } catch (const std::exception& e) {
      FLoadProblems.push_back(e.what());
    }
  }
  FIndexedNames = names;
  std::vector<std::string> more;
  for (fs::directory_iterator it(filedir, ec), end; !ec && it != end; it.increment(ec)) {
    const std::string n = it->path().filename().string();
    if (n.rfind("catalog_shop_", 0) == 0 && n.size() > 18 && n.ends_with(".json") &&
        std::find(names.begin(), names.end(), n) == names.end())
      more.push_back(n);
  }
  std::sort(more.begin(), more.end());
  names.insert(names.end(), more.begin(), more.end());
  bool all = true;
  for (const std::string& n : names) {
    const std::string path = joinPath(filedir, n);
    if (!fs::exists(path, ec)) continue;  // listed, but gone: nothing to say
    all = loadShop(path) && all;
  }
  return all && FLoadProblems.empty();
}

void TPW_CatalogDict::exportShop(const std::string& filename, const std::string& appVersion,
                                 const TPW_CatalogShop& shop) const {
  writeFileAtomically(filename, catalogFileText(kCatalogShopFileType, appVersion, "Shop", shop.ToJson()));
}

bool TPW_CatalogDict::importShop(const std::string& filename) {
  std::string problem;
  auto shop = shopFromFile(filename, "Shop", problem);
  if (!shop) return false;
  shop->FIsModified = true;
  addShop(std::move(shop));
  FShopListChanged = true;
  return true;
}

std::string catalogExportFileName(const TPW_CatalogShop& shop) {
  std::string name = shop.FName;
  for (char& c : name)
    if (std::string_view("/\\:*?\"<>|").find(c) != std::string_view::npos || static_cast<unsigned char>(c) < 32)
      c = '_';
  return "pelwright_catalog_" + shop.FGUID.toString() + "_" + name + kCatalogExtension;
}
