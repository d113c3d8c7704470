#include "document/shape_list.h"

#include <algorithm>

#include "document/phrase_lookup.h"

TShapeList::TShapeList(const IPhraseLookup* AMultilang, const std::string& ALangID)
    : FMultiLang(AMultilang), FLangID(ALangID) {
  addLayer(-1, "", true);
  clearPrintPagesInfo();
}

TShapeList::~TShapeList() = default;

void TShapeList::countId(int id, int delta) {
  const auto it = FIdCount.try_emplace(id, 0).first;
  it->second += delta;
  if (it->second <= 0) FIdCount.erase(it);
}

void TShapeList::renumber(TPW_Path& shape, int newId) {
  countId(shape.FID, -1);
  countId(newId, 1);
  shape.updateId(newId);
}

int TShapeList::add(std::unique_ptr<TPW_Path> shape, int layer) {
  shape->FLayerID = layer;
  countId(shape->FID, 1);
  FItems.push_back(std::move(shape));
  return static_cast<int>(FItems.size() - 1);
}

void TShapeList::insert(size_t index, std::unique_ptr<TPW_Path> shape) {
  index = std::min(index, FItems.size());
  countId(shape->FID, 1);
  FItems.insert(FItems.begin() + static_cast<std::ptrdiff_t>(index), std::move(shape));
}

std::unique_ptr<TPW_Path> TShapeList::extract(size_t index) {
  if (index >= FItems.size()) return nullptr;
  auto shape = std::move(FItems[index]);
  FItems.erase(FItems.begin() + static_cast<std::ptrdiff_t>(index));
  countId(shape->FID, -1);
  return shape;
}

void TShapeList::erase(size_t index) { extract(index); }

void TShapeList::move(size_t from, size_t to) {
  if (from >= FItems.size() || to >= FItems.size() || from == to) return;
  auto shape = std::move(FItems[from]);
  FItems.erase(FItems.begin() + static_cast<std::ptrdiff_t>(from));
  FItems.insert(FItems.begin() + static_cast<std::ptrdiff_t>(to), std::move(shape));
}

int TShapeList::indexOf(const TPW_Path* shape) const {
  for (size_t i = 0; i < FItems.size(); ++i)
    if (FItems[i].get() == shape) return static_cast<int>(i);
  return -1;
}

TPW_Path* TShapeList::findByID(int id) const {
  if (!idInUse(id)) return nullptr;
  for (const auto& s : FItems)
    if (s->FID == id) return s.get();
  return nullptr;
}

void TShapeList::clearAll() {
  FMemo.clear();
  clearShapes();
  FLayerDict.clear();
  FLayers.clear();
  FLayerVisible.clear();
  FIsIndependentLayer.clear();
  addLayer(-1, "", true);
  clearPrintPagesInfo();
  FIsChanged = false;
  FLastChangeTime = 0;
  FLastSavedTime = 0;
  FLastOperatedTime = 0;
  FNumAlwaysShowStitchSimulator = 0;
}

void TShapeList::copyLayersFrom(const TShapeList& AShapeList) {
  FLayers = AShapeList.FLayers;
  FLayerDict = AShapeList.FLayerDict;
  FLayerVisible = AShapeList.FLayerVisible;
  FIsIndependentLayer = AShapeList.FIsIndependentLayer;
}

int TShapeList::addLayer(int layerId, const std::string& name, bool visible) {
  int id = layerId;
  std::string layerName = name;
  if (layerId < 0) {
    id = FLayers.empty() ? 0 : *std::max_element(FLayers.begin(), FLayers.end()) + 1;
    visible = true;
    const std::string caption = FMultiLang ? FMultiLang->getTranslation(FLangID, "lblLayerCaption") : "";
    layerName = caption + " " + std::to_string(id + 1);
  }
  FLayers.push_back(id);
  FLayerDict[id] = layerName;
  FLayerVisible[id] = visible;
  FIsIndependentLayer[id] = false;
  return id;
}

void TShapeList::deleteLayer(int layerId) {
  FLayerDict.erase(layerId);
  FLayerVisible.erase(layerId);
  FIsIndependentLayer.erase(layerId);
  std::erase(FLayers, layerId);
}

void TShapeList::restoreLayers() {
  for (const auto& s : FItems) {
    if (hasLayer(s->FLayerID)) continue;
    const int id = s->FLayerID;
    FLayers.push_back(id);
    FLayerDict[id] = "Layer " + std::to_string(id + 1);
    FLayerVisible[id] = true;
    FIsIndependentLayer[id] = false;
  }
}

void TShapeList::clearPrintPagesInfo() {
  FPrintScalePos.assign(1, 0);
  FPrintTarget.assign(1, true);
  FPrintOffset.assign(1, TPointF(0, 0));
}

void TShapeList::countNumOfAlwaysShowStitchSimulator() {
  FNumAlwaysShowStitchSimulator = static_cast<int>(std::count_if(
      FItems.begin(), FItems.end(), [](const auto& s) { return s->FAlwaysShowStitchSimulator; }));
}

void TShapeList::updateLastID() {
  FLastID = 0;
  for (const auto& s : FItems) FLastID = std::max({FLastID, s->FID, s->FGroupID});
}

bool TShapeList::hasLayer(int id) const {
  return std::find(FLayers.begin(), FLayers.end(), id) != FLayers.end();
}

bool TShapeList::GetlayerVisible(int id) const {
  const auto it = FLayerVisible.find(id);
  return it != FLayerVisible.end() && it->second;
}

void TShapeList::SetlayerVisible(int id, bool Value) { FLayerVisible[id] = Value; }

bool TShapeList::GetIsIndependentLayer(int id) const {
  const auto it = FIsIndependentLayer.find(id);
  return it != FIsIndependentLayer.end() && it->second;
}

void TShapeList::SetIsIndependentLayer(int id, bool Value) { FIsIndependentLayer[id] = Value; }

std::string TShapeList::GetLayerName(int id) const {
  const auto it = FLayerDict.find(id);
  return it != FLayerDict.end() ? it->second : std::string();
}

void TShapeList::SetLayerName(int id, const std::string& Value) { FLayerDict[id] = Value; }
