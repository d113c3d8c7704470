// Leather catalogs: shops hold groups, groups hold items, and an item is a
// leather with a picture, a price and a density. Shapes refer to an item
// by its GUID to be filled with its picture. Each shop lives in a file of
// its own in the "catalogs" folder, written only when it changed.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "document/types.h"
#include "platform/raster_image.h"

inline constexpr const char* kCatalogPictureEntry = "image.bmp";
inline constexpr float kDefaultCatalogDpi = 300.0f;
inline constexpr const char* kShopIndexFileName = "shop_index.txt";
inline constexpr const char* kShopFileType = "Pelwright_CatalogShops";
inline constexpr const char* kCatalogExportFileType = "Pelwright_Catalog_Data";
inline constexpr const char* kCatalogShopFileType = "Pelwright_CatalogShop";
inline constexpr const char* kCatalogExtension = ".ctlg";

// One leather.
class TPW_Catalog {
 public:
  std::string FCategory;
  float FUnitPrice = 0;
  std::string FName;
  std::string FURL;
  std::string FMemo;
  TGUID FGUID = TGUID::create();
  std::string FUnitStr;
  float FImageDPI = kDefaultCatalogDpi;

  // The picture. Read from its stored text the first time it is asked for
  // (a catalog of hundreds of leathers opens without decoding them), and
  // only then; a stored text that is no picture leaves it empty.
  const TRasterImage& bitmap();
  bool hasPicture() const { return !FZipBmp.empty() || !FBitmap.isEmpty(); }
  // A new picture; the stored text follows.
  void setBitmap(const TRasterImage& picture);
  // What the painter keeps for the fill (the brush); made by the painter.
  std::shared_ptr<void> FBrushBitmap;

  nlohmann::ordered_json ToJson() const;
  void loadJson(const nlohmann::ordered_json& jo);
  std::string convertBitmapToBase64Zip() const;
  // Decodes at once and rebuilds the brush (throws for text that is no picture).
  void decodeZippedBitmap(const std::string& base64zip);
  void fixBitmap() { FBrushBitmap.reset(); }
  // A stored text read as "#n" stands for texts[n] (see catalog.cpp).
  void takeStoredPicture(std::vector<std::string>& texts);

 private:
  TRasterImage FBitmap;
  std::string FZipBmp;   // the stored form, kept as read until the picture changes
  bool FDecodeTried = false;
};

class TPW_CatalogGroup {
 public:
  std::string FName;
  TGUID FGUID = TGUID::create();
  std::string FURL;
  std::string FMemo;
  std::vector<std::unique_ptr<TPW_Catalog>> FItems;

  nlohmann::ordered_json ToJson() const;
  void loadJson(const nlohmann::ordered_json& jo);
};

class TPW_CatalogShop {
 public:
  std::string FName;
  TGUID FGUID = TGUID::create();
  std::string FURL;
  std::string FMemo;
  int FVersion = 1;
  bool FIsModified = false;
  std::vector<std::unique_ptr<TPW_CatalogGroup>> FGroups;

  nlohmann::ordered_json ToJson() const;
  void loadJson(const nlohmann::ordered_json& jo);
  // "catalog_shop_" + the GUID text + ".json".
  std::string getFileName() const;
};

struct TGUIDLess {
  bool operator()(const TGUID& a, const TGUID& b) const { return a.bytes < b.bytes; }
};

// All shops, and every item by its GUID.
class TPW_CatalogDict {
 public:
  std::vector<std::unique_ptr<TPW_CatalogShop>> FShops;
  // Items held only while a dialogue runs.
  std::vector<std::unique_ptr<TPW_Catalog>> FTempCatalogs;

  // Appends the shop and registers every item whose GUID is new.
  TPW_CatalogShop* addShop(std::unique_ptr<TPW_CatalogShop> shop);
  // A new GUID: the dictionary takes the item (into FTempCatalogs) and
  // `item` is left empty. A known GUID changes nothing and the caller
  // keeps the item. True when taken.
  bool addCatalogIfNotRegistered(std::unique_ptr<TPW_Catalog>& item);
  void clearTempCatalogs();
  // Registers an item added to a group of a shop by an editor.
  void registerItem(TPW_Catalog* item);

  TPW_Catalog* findCatalogItem(const TGUID& guid) const;
  TPW_CatalogShop* findShopByCatalogItem(const TPW_Catalog* item) const;
  TPW_CatalogGroup* findGroupByCatalogItem(const TPW_Catalog* item) const;
  TPW_CatalogShop* findShopByGUID(const TGUID& guid) const;
  TPW_CatalogShop* findShopByGroup(const TPW_CatalogGroup* group) const;

  // Each removes from the dictionary and from its parent, and frees. The
  // shop of an item or group is marked modified; a deleted shop's file
  // goes at the next saveShops.
  void deleteCatalog(TPW_Catalog* item);
  void deleteGroup(TPW_CatalogGroup* group);
  void deleteShop(TPW_CatalogShop* shop);

  // Writes the file of each modified shop, removes the files of deleted
  // ones, and writes "shop_index.txt" when the list of shops changed or
  // the file is missing: a catalog folder no one touched stays as it was.
  // Throws naming the file when a write fails.
  void saveShops(const std::string& filedir, const std::string& appVersion);
  // Reads "shop_index.txt", then every "catalog_shop_*.json" it does not
  // list. Files that cannot be read are skipped; their names go to
  // FLoadProblems. True when every file loaded.
  bool loadShops(const std::string& filedir);
  bool loadShop(const std::string& filename);
  void exportShop(const std::string& filename, const std::string& appVersion, const TPW_CatalogShop& shop) const;
  // Reads "Shop" of the file into a new shop; false (nothing added) when
  // the file has none or cannot be read.
  bool importShop(const std::string& filename);

  // The shop's object of a file's JSON, as a new shop: the reader of the
  // ".ctlg" export ("shop") and of importShop ("Shop").
  static std::unique_ptr<TPW_CatalogShop> shopFromFile(const std::string& filename, const char* key,
                                                       std::string& problem);

  // Set by changes to the list of shops (add, delete, order).
  bool FShopListChanged = false;
  // "name: what went wrong" for each file loadShops skipped.
  std::vector<std::string> FLoadProblems;

 private:
  std::map<TGUID, TPW_Catalog*, TGUIDLess> FItems;
  std::vector<std::string> FDeletedShopFiles;
  std::vector<std::string> FIndexedNames;  // the index as read, to tell a change
  void unregisterShopItems(const TPW_CatalogShop& shop);
};

// The export file's suggested name: "pelwright_catalog_" + GUID + "_" +
// the shop's name (characters a file name cannot hold replaced) + ".ctlg".
std::string catalogExportFileName(const TPW_CatalogShop& shop);
// The text of a catalog file: BOM, {"meta": {file_type, version}, key: value}.
std::string catalogFileText(const char* fileType, const std::string& version, const char* key,
                            const nlohmann::ordered_json& value);
