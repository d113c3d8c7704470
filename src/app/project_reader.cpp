#include "app/project_reader.h"

#include <cmath>
#include <numbers>
#include <unordered_map>
#include <unordered_set>

#include "document/json_value_forms.h"
#include "document/point_helpers.h"
#include "document/shape_normalise.h"
#include "geometry/collect_intersections.h"
#include "libraries/draw_pallet.h"
#include "stitching/iron_groups.h"

namespace {

// A hole further out than this is the mark of a damaged file.
constexpr double kCorruptHoleLimit = 1000000.0;

std::string shapeWhere(size_t index) { return "shape " + std::to_string(index + 1); }

// One shape object with the repairs of the load: its iron, its palette row,
// and the hole that lies in outer space.
std::unique_ptr<TPW_Path> readOneShape(const nlohmann::ordered_json& jo, size_t index,
                                       const TProjectReadContext& c) {
  const std::string where = shapeWhere(index);
  if (!jo.is_object()) throw TJsonFormError(where + " is not a JSON object");
  TPrickingIron* iron = nullptr;
  if (const auto* pr = findKey(jo, "pr")) {
    if (!pr->is_object()) throw TJsonFormError(where + ": key \"pr\" is not an object");
    const std::string bt = readText(requireKey(*pr, "bt", where + ", key \"pr\""), where + ", key \"pr\".\"bt\"");
    const float pitch = readNum(requireKey(*pr, "p", where + ", key \"pr\""), where + ", key \"pr\".\"p\"");
    if (c.FIrons && std::isfinite(pitch)) iron = c.FIrons->ironForHole(bt, pitch);
  }
  const TShapeStyle& st = c.FCurrentStyle;
  auto shape = std::make_unique<TPW_Path>(-1, st.FColor, st.FThickness, st.FDash, -1);
  try {
    shape->loadJson(jo, iron);
  } catch (const TJsonFormError& e) {
    std::string what = e.what();
    if (what.rfind("shape", 0) == 0) what = what.substr(5);
    else what = ", " + what;
    throw TJsonFormError(where + what);
  }
  if (shape->FPalletIndex < 0) {
    const int row = c.FPallet ? c.FPallet->findPalletIndex(shape->FColor, shape->FThickness, shape->FDash) : -1;
    shape->FPalletIndex = row >= 0 ? row : 0;
  }
  if (shape->FShapeType == ShapeType::Hole) {
    shape->FPalletIndex = kStitchHolePalletIndex;
    const double x = shape->FStartPt.x;
    if (!(std::fabs(x) <= kCorruptHoleLimit)) {
      shape->FCenter = shape->FStartPt = shape->FEndPt = TPointF(0, 0);
      shape->FData.Clear();
      shape->FData.MoveTo(TPointF(0, 0));
      shape->FData.LineTo(TPointF(10, 0));
      shape->FData.LineTo(TPointF(10, 10));
      shape->FData.LineTo(TPointF(0, 10));
      shape->FData.ClosePath();
      shape->resetBoundary();
    }
  }
  return shape;
}

void readLayers(const nlohmann::ordered_json& root, TShapeList& list) {
  const auto* layers = findKey(root, "layers");
  if (layers && layers->is_array()) {
    for (size_t i = 0; i < layers->size(); ++i) {
      const auto& jo = (*layers)[i];
      const std::string where = "layer " + std::to_string(i + 1);
      if (!jo.is_object()) throw TJsonFormError(where + " is not a JSON object");
      const int id = readInt(requireKey(jo, "id", where), where + ", key \"id\"");
      const std::string name = readText(requireKey(jo, "nam", where), where + ", key \"nam\"");
      const bool visible = readBool(requireKey(jo, "chk", where), where + ", key \"chk\"");
      const bool independent = findKey(jo, "indp") ? readBool(*findKey(jo, "indp"), where + ", key \"indp\"") : false;
      if (list.hasLayer(id)) {
        list.SetLayerName(id, name);
        list.SetlayerVisible(id, visible);
      } else {
        list.addLayer(id, name, visible);
      }
      list.SetIsIndependentLayer(id, independent);
    }
  }
  if (list.FLayers.empty()) list.addLayer(-1, "", true);
}

bool readPrintAreas(const nlohmann::ordered_json& root, TShapeList& list) {
  list.FPrintOffset.clear();
  list.FPrintTarget.clear();
  list.FPrintScalePos.clear();
  const auto* areas = findKey(root, "printareas");
  if (areas && areas->is_array()) {
    for (size_t i = 0; i < areas->size(); ++i) {
      const auto& jo = (*areas)[i];
      const std::string where = "print area " + std::to_string(i + 1);
      if (!jo.is_object()) throw TJsonFormError(where + " is not a JSON object");
      const TPointF offset = readPt(requireKey(jo, "offset", where), where + ", key \"offset\"");
      const bool target = readBool(requireKey(jo, "target", where), where + ", key \"target\"");
      const int scalePos = readInt(requireKey(jo, "scalepos", where), where + ", key \"scalepos\"");
      list.FPrintOffset.push_back(offset);
      list.FPrintTarget.push_back(target);
      list.FPrintScalePos.push_back(scalePos);
    }
  }
  if (list.FPrintOffset.empty()) {
    list.clearPrintPagesInfo();
    return false;
  }
  return true;
}

}  // namespace

std::vector<std::unique_ptr<TPW_Path>> readShapeObjects(const nlohmann::ordered_json& shapes,
                                                        const TProjectReadContext& context) {
  std::vector<std::unique_ptr<TPW_Path>> out;
  if (!shapes.is_array()) return out;
  out.reserve(shapes.size());
  for (size_t i = 0; i < shapes.size(); ++i) out.push_back(readOneShape(shapes[i], i, context));
  return out;
}

TProjectContent readProjectFileText(const std::string& bytes, const TProjectReadContext& c,
                                    TJsonTextState& state) {
  using J = nlohmann::ordered_json;
  std::vector<std::unique_ptr<TPW_Path>> shapes;
  std::string topKey;
  bool inShapes = false;
  size_t elements = 0;  // of "shapes", so far
  const J::parser_callback_t callback = [&](int depth, J::parse_event_t event, J& parsed) {
    if (depth == 1) {
      if (event == J::parse_event_t::key) topKey = parsed.get<std::string>();
      else if (event == J::parse_event_t::array_start) inShapes = topKey == "shapes";
      else if (event == J::parse_event_t::array_end || event == J::parse_event_t::object_end) inShapes = false;
    } else if (depth == 2 && inShapes) {
      if (event == J::parse_event_t::object_start || event == J::parse_event_t::array_start ||
          event == J::parse_event_t::value) {
        ++elements;
        if (event != J::parse_event_t::object_start)
          throw TJsonFormError("shape " + std::to_string(elements) + " is not a JSON object");
      } else if (event == J::parse_event_t::object_end) {
        // Read at once and dropped from the tree.
        shapes.push_back(readOneShape(parsed, elements - 1, c));
        return false;
      }
    }
    return true;
  };
  TParsedJsonText parsed = parseJsonFileText(bytes, callback);
  state = parsed.FState;
  if (state != TJsonTextState::Object) return {};
  return readProjectObject(parsed.FRoot, c, &shapes);
}

TProjectContent readProjectObject(const nlohmann::ordered_json& root, const TProjectReadContext& c,
                                  std::vector<std::unique_ptr<TPW_Path>>* preRead) {
  TProjectContent content;
  content.FList = std::make_unique<TShapeList>(c.FMultiLang, c.FLangID);
  content.FIntersections = std::make_unique<TIntersections>();
  TShapeList& list = *content.FList;
  list.clearAll();
  list.deleteLayer(0);

  if (const auto* meta = findKey(root, "meta"); meta && meta->is_object())
    if (const auto* memo = findKey(*meta, "memo")) list.FMemo = readText(*memo, "key \"meta\".\"memo\"");
  readLayers(root, list);
  // The curves of true ellipses join the active layer, or where the file
  // has no such layer, its first.
  const int activeLayer = list.hasLayer(c.FActiveLayer) ? c.FActiveLayer : list.FLayers.front();

  std::vector<TPW_Path*> renumber;
  std::unordered_set<int> seen;
  std::vector<std::unique_ptr<TPW_Path>> readHere;
  if (!preRead) {
    if (const auto* shapes = findKey(root, "shapes"); shapes && shapes->is_array())
      readHere = readShapeObjects(*shapes, c);
  }
  std::vector<std::unique_ptr<TPW_Path>>& all = preRead ? *preRead : readHere;
  {
    // Curves of true ellipses take their numbers once the file's own are known.
    TShapeList scratchIds(nullptr, c.FLangID);
    for (auto& shape : all) {
      TPW_Path* raw = shape.get();
      const bool fresh = raw->FID >= 0 && seen.insert(raw->FID).second;
      if (raw->FShapeType == ShapeType::Line && samePoint(raw->FStartPt, raw->FEndPt, 0.0)) continue;
      if (raw->FShapeType == ShapeType::Ellipse && std::fabs(double(raw->FWidth) - raw->FHeight) > 0.01) {
        const TPointF ct = raw->FCenter;
        const TPointF axis1 = TPointF::fromDouble(double(ct.x) + raw->FWidth / 2.0, ct.y);
        const TPointF axis2 = TPointF::fromDouble(ct.x, double(ct.y) + raw->FHeight / 2.0);
        TShapeStyle style{raw->FPalletIndex, raw->FColor, raw->FThickness, raw->FDash};
        auto curves = ellipseToBeziers(ct, axis1, axis2, 0.0, 2.0 * std::numbers::pi, style, scratchIds);
        for (auto& curve : curves) {
          curve->FSelected = raw->FSelected;
          renumber.push_back(curve.get());
          list.add(std::move(curve), activeLayer);
        }
        continue;
      }
      if (!fresh) renumber.push_back(raw);
      normaliseLine(*raw);
      list.add(std::move(shape), raw->FLayerID);
    }
  }
  // Renumbering first, so that crossings and links see the final ids.
  std::unordered_set<TPW_Path*> pending(renumber.begin(), renumber.end());
  list.FLastID = 0;
  for (const auto& s : list)
    if (!pending.count(s.get())) list.FLastID = std::max({list.FLastID, s->FID, s->FGroupID});
    else list.FLastID = std::max(list.FLastID, s->FGroupID);
  for (TPW_Path* s : renumber) list.renumber(*s, list.getNextID());
  if (c.FCalcCrossings) collectIntersectionsFrom(list, *content.FIntersections, 0);

  if (const auto* backdrops = findKey(root, "backdrops"); backdrops && backdrops->is_array())
    for (const auto& b : *backdrops)
      if (b.is_object() && b.contains("fullpath")) content.FBackdrops.push_back({b});

  content.FHadPrintAreas = readPrintAreas(root, list);
  list.FIsChanged = false;
  return content;
}

void repairStitchLinks(TShapeList& list) {
  std::unordered_map<int, TPW_Path*> byId;
  for (const auto& s : list) byId.emplace(s->FID, s.get());  // the first of an id wins
  for (const auto& s : list) {
    if (s->FShapeType != ShapeType::Hole || s->FPrevStitchID < 0) continue;
    const auto it = byId.find(s->FPrevStitchID);
    if (it != byId.end()) it->second->FNextStitchID = s->FID;
    else s->FPrevStitchID = -1;
  }
}
