// TShapeList: the document. An ordered list of shapes (list order is drawing
// order) that also owns the layers, the print page information, the change
// times, the memo and the identifier counter.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "document/pw_path.h"
#include "document/types.h"

class IPhraseLookup;

class TShapeList {
 public:
  TShapeList(const IPhraseLookup* AMultilang, const std::string& ALangID);
  ~TShapeList();
  TShapeList(const TShapeList&) = delete;
  TShapeList& operator=(const TShapeList&) = delete;

  // ---- fields, in order ----
  std::map<int, std::string> FLayerDict;  // layer id -> name
  std::vector<int> FLayers;               // layer ids in panel order
  std::map<int, bool> FLayerVisible;
  // Shapes on an independent layer take no part in crossings with others.
  std::map<int, bool> FIsIndependentLayer;
  const IPhraseLookup* FMultiLang;  // not owned
  std::string FLangID;
  std::vector<std::unique_ptr<TShapeList>> FSubGroups;
  // Print areas: three lists of equal length, never empty after
  // clearPrintPagesInfo.
  std::vector<int> FPrintScalePos;
  std::vector<bool> FPrintTarget;
  std::vector<TPointF> FPrintOffset;
  bool FIsChanged = false;
  TDateTime FLastChangeTime = 0;
  TDateTime FLastSavedTime = 0;
  TDateTime FLastOperatedTime = 0;
  int FNumAlwaysShowStitchSimulator = 0;
  std::string FMemo;
  int FLastID = 0;

  // ---- the shapes ----
  size_t Count() const { return FItems.size(); }
  bool empty() const { return FItems.empty(); }
  TPW_Path* operator[](size_t i) const { return FItems[i].get(); }
  const std::vector<std::unique_ptr<TPW_Path>>& items() const { return FItems; }
  auto begin() const { return FItems.begin(); }
  auto end() const { return FItems.end(); }
  // Sets the shape's layer and appends it; FID is left as it is. Returns
  // the shape's index.
  int add(std::unique_ptr<TPW_Path> shape, int layer);
  void insert(size_t index, std::unique_ptr<TPW_Path> shape);
  // Takes the shape at index out of the list and hands it to the caller.
  std::unique_ptr<TPW_Path> extract(size_t index);
  void erase(size_t index);
  void move(size_t from, size_t to);
  // Index of the shape, -1 when it is not in the list.
  int indexOf(const TPW_Path* shape) const;
  // First shape with the identifier, or null.
  TPW_Path* findByID(int id) const;
  // Whether a shape of the list has the identifier; constant time.
  bool idInUse(int id) const {
    const auto it = FIdCount.find(id);
    return it != FIdCount.end() && it->second > 0;
  }
  // Gives a shape of this list another identifier. A shape in a list changes
  // its identifier only this way, so that idInUse stays true to the list.
  void renumber(TPW_Path& shape, int newId);

  // ---- document operations ----
  // Clears memo, shapes and layers, adds a first layer and the default print
  // page, marks the list unchanged and zeroes the times. FLastID is kept, so
  // identifiers in an emptied document continue upward.
  void clearAll();
  // Frees every shape and leaves everything else (layers, memo, print
  // areas, times, the counter) as it is: for restoring an undo state.
  void clearShapes() {
    FItems.clear();
    FIdCount.clear();
  }
  void copyLayersFrom(const TShapeList& AShapeList);
  // A negative layerId takes the largest id plus one (0 for none), is
  // visible and named from "lblLayerCaption" and its number.
  int addLayer(int layerId, const std::string& name, bool visible);
  void deleteLayer(int layerId);
  // Gives every shape whose layer is missing a layer of its own.
  void restoreLayers();
  void clearPrintPagesInfo();
  void countNumOfAlwaysShowStitchSimulator();
  int getNextID() { return ++FLastID; }
  // FLastID becomes the largest FID or FGroupID of all shapes.
  void updateLastID();

  bool GetlayerVisible(int id) const;
  void SetlayerVisible(int id, bool Value);
  bool GetIsIndependentLayer(int id) const;
  void SetIsIndependentLayer(int id, bool Value);
  std::string GetLayerName(int id) const;
  void SetLayerName(int id, const std::string& Value);
  bool hasLayer(int id) const;

 private:
  std::vector<std::unique_ptr<TPW_Path>> FItems;
  std::unordered_map<int, int> FIdCount;  // identifier -> shapes holding it
  void countId(int id, int delta);
};
