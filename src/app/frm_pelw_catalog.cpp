// The leather catalogs' commands: shops, groups and items made, edited and
// deleted through the catalog windows, a shop exported to and imported
// from ".ctlg", and shapes filled with an item's picture.
#include <filesystem>

#include "app/frm_pelw.h"
#include "platform/safe_file.h"
#include "libraries/picture_codec.h"

namespace {

void catalogChanged(const TLibraryHost& host) {
  if (host.catalogChanged) host.catalogChanged();
}

// A leather picture needs no more than a few megapixels to look right at
// any zoom a pattern is checked at.
constexpr int64_t kMaxLeatherPicturePixels = 16ll * 1000 * 1000;

}  // namespace

TPW_CatalogShop* TfrmPelw::addCatalogShop(const std::string& name) {
  if (!FCatalogDict) return nullptr;
  auto shop = std::make_unique<TPW_CatalogShop>();
  shop->FName = name;
  shop->FIsModified = true;
  TPW_CatalogShop* s = FCatalogDict->addShop(std::move(shop));
  FCatalogDict->FShopListChanged = true;
  catalogChanged(FLibraryHost);
  return s;
}

TPW_CatalogGroup* TfrmPelw::addCatalogGroup(TPW_CatalogShop& shop, const std::string& name) {
  auto group = std::make_unique<TPW_CatalogGroup>();
  group->FName = name;
  shop.FGroups.push_back(std::move(group));
  catalogEdited(&shop);
  return shop.FGroups.back().get();
}

TPW_Catalog* TfrmPelw::addCatalogItem(TPW_CatalogGroup& group, const std::string& name) {
  auto item = std::make_unique<TPW_Catalog>();
  item->FName = name;
  TPW_Catalog* raw = item.get();
  group.FItems.push_back(std::move(item));
  if (FCatalogDict) {
    FCatalogDict->registerItem(raw);
    catalogEdited(FCatalogDict->findShopByGroup(&group));
  }
  return raw;
}

void TfrmPelw::catalogEdited(const TPW_CatalogShop* shop) {
  if (shop) const_cast<TPW_CatalogShop*>(shop)->FIsModified = true;
  catalogChanged(FLibraryHost);
  RepaintCanvas();
}

bool TfrmPelw::loadCatalogPicture(TPW_Catalog& item, const std::string& filename) {
  std::string bytes;
  try {
    bytes = readWholeFile(filename);
  } catch (const std::exception&) {
    showFault(phrase("FileNotFound") + filename);
    return false;
  }
  const TDecodedPicture picture = decodePicture(bytes, kMaxLeatherPicturePixels);
  if (picture.FImage.isEmpty()) {
    showFault(phrase(picture.FProblem == TPictureProblem::TooLarge ? "PictureTooLarge" : "NotAPicture") + "\n" +
              filename);
    return false;
  }
  item.setBitmap(picture.FImage);
  if (picture.FSourceWidth > picture.FImage.FWidth && picture.FSourceWidth > 0)
    item.FImageDPI = static_cast<float>(item.FImageDPI * picture.FImage.FWidth / double(picture.FSourceWidth));
  catalogEdited(FCatalogDict ? FCatalogDict->findShopByCatalogItem(&item) : nullptr);
  return true;
}

bool TfrmPelw::deleteCatalogItem(TPW_Catalog* item) {
  if (!FCatalogDict || !item) return false;
  if (dialogs().askYesNo(phrase("ok2delete?"), TDialogAnswer::No) != TDialogAnswer::Yes) return false;
  FCatalogDict->deleteCatalog(item);
  catalogEdited(nullptr);
  return true;
}

bool TfrmPelw::deleteCatalogGroup(TPW_CatalogGroup* group) {
  if (!FCatalogDict || !group) return false;
  if (dialogs().askYesNo(phrase("ok2delete?"), TDialogAnswer::No) != TDialogAnswer::Yes) return false;
  FCatalogDict->deleteGroup(group);
  catalogEdited(nullptr);
  return true;
}

bool TfrmPelw::deleteCatalogShop(TPW_CatalogShop* shop) {
  if (!FCatalogDict || !shop) return false;
  if (dialogs().askYesNo(phrase("ok2delete?"), TDialogAnswer::No) != TDialogAnswer::Yes) return false;
  FCatalogDict->deleteShop(shop);
  catalogEdited(nullptr);
  return true;
}

void TfrmPelw::actExportCatalog(const TPW_CatalogShop& shop) {
  std::string name = dialogs().saveFileName("", catalogExportFileName(shop), kCatalogExtension);
  if (name.empty()) return;
  if (!std::filesystem::path(name).has_extension()) name += kCatalogExtension;
  try {
    writeFileAtomically(name, catalogFileText(kCatalogExportFileType, kProjectFileVersion, "shop", shop.ToJson()));
  } catch (const std::exception& e) {
    showFault(e.what());
  }
}

bool TfrmPelw::importCatalogFile(const std::string& filename) {
  if (!FCatalogDict) return false;
  // The export's own key first, then the dictionary's form of it.
  std::string problem;
  auto shop = TPW_CatalogDict::shopFromFile(filename, "shop", problem);
  if (!shop) {
    std::string second;
    shop = TPW_CatalogDict::shopFromFile(filename, "Shop", second);
  }
  if (!shop) {
    showFault(phrase("NotACatalogFile") + "\n" + filename + "\n" + problem);
    return false;
  }
  if (TPW_CatalogShop* known = FCatalogDict->findShopByGUID(shop->FGUID)) {
    showFault(phrase("CatalogAlreadyThere") + "\n" + known->FName);
    return false;
  }
  shop->FIsModified = true;
  FCatalogDict->addShop(std::move(shop));
  FCatalogDict->FShopListChanged = true;
  catalogChanged(FLibraryHost);
  RepaintCanvas();
  return true;
}

void TfrmPelw::actImportCatalog() {
  const std::string name = dialogs().openFileName("", kCatalogExtension);
  if (!name.empty()) importCatalogFile(name);
}

int TfrmPelw::applyCatalogToSelection(const TPW_Catalog* item, float rotation, TPointF scale) {
  if (!PathList) return 0;
  if (!std::isfinite(rotation)) rotation = 0;
  auto sane = [](float v) { return std::isfinite(v) && v > 0.001f && v < 1000.0f; };
  if (!sane(scale.x) || !sane(scale.y)) scale = TPointF(1, 1);
  int n = 0;
  for (const auto& s : *PathList) {
    if (!s->FSelected || s->FShapeType == ShapeType::Dot || s->FShapeType == ShapeType::Hole) continue;
    if (item && !s->fillPath()) continue;
    s->FCatalogGUID = item ? item->FGUID : TGUID::empty();
    s->FCatalogRotation = item ? rotation : 0;
    s->FCatalogScale = item ? scale : TPointF(1, 1);
    ++n;
  }
  if (n > 0) {
    // A leather just chosen is meant to be seen.
    if (item) FPaintSwitches.chkFillOn = true;
    finishDocumentChange();
    RepaintCanvas();
  }
  return n;
}
