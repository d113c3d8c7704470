// Leather catalogs: the item, group and shop objects, the dictionary, and
// the shop files, which a catalog folder no one changed keeps untouched.
#include <gtest/gtest.h>

#include <filesystem>

#include "app/safe_file.h"
#include "libraries/catalog.h"
#include "test_support.h"

namespace fs = std::filesystem;

namespace {

std::unique_ptr<TPW_CatalogShop> shopWith(const std::string& name, int items) {
  auto shop = std::make_unique<TPW_CatalogShop>();
  shop->FName = name;
  auto group = std::make_unique<TPW_CatalogGroup>();
  group->FName = "Vegetable tanned";
  for (int i = 0; i < items; ++i) {
    auto item = std::make_unique<TPW_Catalog>();
    item->FName = "Buttero " + std::to_string(i);
    item->FUnitPrice = 12.5f;
    item->FUnitStr = "dm²";
    item->FImageDPI = 150;
    item->setBitmap(TRasterImage::fromPixels(2, 2, {0xFF8B5A2Bu, 0xFF7A4A20u, 0xFF6A3A10u, 0xFF5A2A00u}));
    group->FItems.push_back(std::move(item));
  }
  shop->FGroups.push_back(std::move(group));
  shop->FIsModified = true;
  return shop;
}

std::string readBytes(const std::string& f) { return readWholeFile(f); }

}  // namespace

TEST(LeatherCatalog, ShopObjectRoundTripsWithPictures) {
  auto shop = shopWith("Tannery", 2);
  TPW_CatalogShop back;
  back.loadJson(shop->ToJson());
  EXPECT_EQ(back.FName, "Tannery");
  EXPECT_EQ(back.FGUID, shop->FGUID);
  ASSERT_EQ(back.FGroups.at(0)->FItems.size(), 2u);
  TPW_Catalog& item = *back.FGroups[0]->FItems[1];
  EXPECT_EQ(item.FName, "Buttero 1");
  EXPECT_EQ(item.FUnitStr, "dm²");
  EXPECT_FLOAT_EQ(item.FUnitPrice, 12.5f);
  EXPECT_FLOAT_EQ(item.FImageDPI, 150);
  EXPECT_EQ(item.bitmap().pixel(1, 1), 0xFF5A2A00u);
  EXPECT_FALSE(back.FIsModified);
  // "dpi" of 0 and no picture: the defaults.
  nlohmann::ordered_json jo = shop->FGroups[0]->FItems[0]->ToJson();
  jo["dpi"] = 0;
  jo.erase("zipbmp");
  TPW_Catalog plain;
  plain.loadJson(jo);
  EXPECT_FLOAT_EQ(plain.FImageDPI, 300);
  EXPECT_FALSE(plain.hasPicture());
}

TEST(LeatherCatalog, DictionaryKnowsEachGuidOnce) {
  TPW_CatalogDict dict;
  TPW_CatalogShop* shop = dict.addShop(shopWith("A", 1));
  TPW_Catalog* item = shop->FGroups[0]->FItems[0].get();
  EXPECT_EQ(dict.findCatalogItem(item->FGUID), item);
  EXPECT_EQ(dict.findShopByCatalogItem(item), shop);

  auto same = std::make_unique<TPW_Catalog>();
  same->FGUID = item->FGUID;
  EXPECT_FALSE(dict.addCatalogIfNotRegistered(same));
  ASSERT_TRUE(same);  // the caller keeps it
  EXPECT_EQ(dict.findCatalogItem(item->FGUID), item);

  auto fresh = std::make_unique<TPW_Catalog>();
  const TGUID g = fresh->FGUID;
  EXPECT_TRUE(dict.addCatalogIfNotRegistered(fresh));
  EXPECT_FALSE(fresh);
  EXPECT_NE(dict.findCatalogItem(g), nullptr);
  dict.clearTempCatalogs();
  EXPECT_EQ(dict.findCatalogItem(g), nullptr);

  dict.deleteCatalog(item);
  EXPECT_EQ(dict.findCatalogItem(same->FGUID), nullptr);
  EXPECT_TRUE(shop->FGroups[0]->FItems.empty());
}

TEST(LeatherCatalog, ShopFilesAreWrittenOnlyWhenTheyChanged) {
  TTempDir dir;
  const std::string folder = dir.file("catalogs");
  TPW_CatalogDict dict;
  dict.addShop(shopWith("A", 1));
  TPW_CatalogShop* b = dict.addShop(shopWith("B", 1));
  dict.FShopListChanged = true;
  dict.saveShops(folder, "3.6.1");
  const std::string fileA = folder + "/" + dict.FShops[0]->getFileName();
  const std::string fileB = folder + "/" + b->getFileName();
  const std::string index = folder + "/shop_index.txt";
  EXPECT_EQ(readBytes(index), dict.FShops[0]->getFileName() + "\r\n" + b->getFileName() + "\r\n");
  EXPECT_EQ(readBytes(fileA).substr(0, 3), "\xEF\xBB\xBF");
  EXPECT_NE(readBytes(fileA).find("{\"meta\":{\"file_type\":\"Pelwright_CatalogShops\",\"version\":\"3.6.1\"},\"Shops\":[{"),
            std::string::npos);

  // Nothing changed: no file is touched, not even the index.
  const auto timeA = fs::last_write_time(fileA), timeIndex = fs::last_write_time(index);
  std::filesystem::last_write_time(fileA, timeA - std::chrono::hours(1));
  std::filesystem::last_write_time(index, timeIndex - std::chrono::hours(1));
  TPW_CatalogDict again;
  EXPECT_TRUE(again.loadShops(folder));
  ASSERT_EQ(again.FShops.size(), 2u);
  again.FShops[1]->FGroups[0]->FItems[0]->FName = "renamed";
  again.FShops[1]->FIsModified = true;
  again.saveShops(folder, "3.6.1");
  EXPECT_EQ(fs::last_write_time(fileA), timeA - std::chrono::hours(1));
  EXPECT_EQ(fs::last_write_time(index), timeIndex - std::chrono::hours(1));
  EXPECT_NE(readBytes(fileB).find("renamed"), std::string::npos);

  // A deleted shop's file goes with it.
  again.deleteShop(again.FShops[0].get());
  again.saveShops(folder, "3.6.1");
  EXPECT_FALSE(fs::exists(fileA));
  EXPECT_EQ(readBytes(index), b->getFileName() + "\r\n");
}

TEST(LeatherCatalog, BrokenAndForeignFilesAreSkippedAndTheRestLoads) {
  TTempDir dir;
  const std::string folder = dir.file("catalogs");
  TPW_CatalogDict dict;
  dict.addShop(shopWith("Good", 1));
  dict.FShopListChanged = true;
  dict.saveShops(folder, "3.6.1");
  writeTextFile(folder + "/catalog_shop_{00000000-0000-0000-0000-000000000001}.json", "{\"Shops\": [ broken");
  writeTextFile(folder + "/catalog_shop_{00000000-0000-0000-0000-000000000002}.json", "[1, 2]");
  writeTextFile(folder + "/notes.txt", "not a shop");
  writeTextFile(folder + "/shop_index.txt", "../../etc/passwd\r\nmissing.json\r\n" + dict.FShops[0]->getFileName());
  TPW_CatalogDict read;
  EXPECT_FALSE(read.loadShops(folder));
  ASSERT_EQ(read.FShops.size(), 1u);
  EXPECT_EQ(read.FShops[0]->FName, "Good");
  ASSERT_EQ(read.FLoadProblems.size(), 3u);
  EXPECT_NE(read.FLoadProblems[0].find("../../etc/passwd"), std::string::npos);
  EXPECT_NE(read.FLoadProblems[1].find("-000000000001}.json"), std::string::npos);

  // The dictionary's own export form, and an import without "Shop".
  read.exportShop(dir.file("shop.json"), "3.6.1", *read.FShops[0]);
  EXPECT_NE(readBytes(dir.file("shop.json")).find("\"file_type\":\"Pelwright_CatalogShop\""), std::string::npos);
  TPW_CatalogDict other;
  EXPECT_TRUE(other.importShop(dir.file("shop.json")));
  EXPECT_EQ(other.FShops.at(0)->FName, "Good");
  writeTextFile(dir.file("noshop.json"), "{\"shop\": {}}");
  EXPECT_FALSE(other.importShop(dir.file("noshop.json")));
  EXPECT_EQ(other.FShops.size(), 1u);
}
