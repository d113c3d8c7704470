#include "document/project_json.h"

#include <algorithm>
#include <cmath>

#include "document/json_nesting.h"
#include "document/json_text_writer.h"
#include "document/json_value_forms.h"
#include "document/number_text.h"
#include "document/shape_list.h"

// The repaired text, or "" when the text is valid as it is.
std::string repairUtf8Copy(std::string_view bytes);

namespace {

void writeMeta(TJsonTextWriter& w, const char* fileType, const std::string* memo) {
  w.key("meta");
  w.beginObject();
  w.stringField("file_type", fileType);
  w.stringField("version", kProjectFileVersion);
  if (memo) w.stringField("memo", *memo);
  w.endObject();
}

void writeLayers(TJsonTextWriter& w, const TShapeList& list) {
  w.key("layers");
  w.beginArray();
  for (int id : list.FLayers) {
    w.beginObject();
    w.key("id");
    w.intValue(id);
    writeBool(w, "chk", list.GetlayerVisible(id));
    w.stringField("nam", list.GetLayerName(id));
    writeBool(w, "indp", list.GetIsIndependentLayer(id));
    w.endObject();
  }
  w.endArray();
}

void writePrintAreas(TJsonTextWriter& w, const TShapeList& list) {
  w.key("printareas");
  w.beginArray();
  const size_t n = std::min({list.FPrintOffset.size(), list.FPrintTarget.size(), list.FPrintScalePos.size()});
  for (size_t i = 0; i < n; ++i) {
    w.beginObject();
    writePt(w, "offset", list.FPrintOffset[i]);
    w.key("target");
    w.boolValue(list.FPrintTarget[i]);
    w.key("scalepos");
    w.intValue(list.FPrintScalePos[i]);
    w.endObject();
  }
  w.endArray();
}

}  // namespace

void writeJsonValue(TJsonTextWriter& w, const nlohmann::ordered_json& v) {
  switch (v.type()) {
    case nlohmann::ordered_json::value_t::object:
      w.beginObject();
      for (auto it = v.begin(); it != v.end(); ++it) {
        w.key(it.key());
        writeJsonValue(w, it.value());
      }
      w.endObject();
      break;
    case nlohmann::ordered_json::value_t::array:
      w.beginArray();
      for (const auto& e : v) writeJsonValue(w, e);
      w.endArray();
      break;
    case nlohmann::ordered_json::value_t::string:
      w.stringValue(v.get_ref<const std::string&>());
      break;
    case nlohmann::ordered_json::value_t::boolean:
      w.boolValue(v.get<bool>());
      break;
    case nlohmann::ordered_json::value_t::number_integer:
      w.intValue(v.get<long long>());
      break;
    case nlohmann::ordered_json::value_t::number_unsigned:
      w.rawNumber(std::to_string(v.get<unsigned long long>()));
      break;
    case nlohmann::ordered_json::value_t::number_float: {
      const double d = v.get<double>();
      w.rawNumber(std::isfinite(d) ? floatToTextWithPoint(d) : "0.0");
      break;
    }
    default:
      w.nullValue();
      break;
  }
}

std::string projectFileText(const TShapeList& list, const std::vector<TBackdropData>& backdrops) {
  // About 500 bytes a shape; a little more for long paths.
  TJsonTextWriter w(4096 + list.Count() * 600);
  w.beginObject();
  writeMeta(w, kProjectFileType, &list.FMemo);
  writeLayers(w, list);
  w.key("shapes");
  w.beginArray();
  for (const auto& s : list) s->toJson(w);
  w.endArray();
  w.key("backdrops");
  w.beginArray();
  for (const auto& b : backdrops) writeJsonValue(w, b.FJson);
  w.endArray();
  writePrintAreas(w, list);
  w.endObject();
  std::string out = kUtf8Bom;
  out += w.text();
  out += "\r\n";
  return out;
}

std::string copiedShapesFileText(const std::vector<const TPW_Path*>& shapes) {
  TJsonTextWriter w(1024 + shapes.size() * 600);
  w.beginObject();
  writeMeta(w, kCopiedShapesFileType, nullptr);
  w.key("shapes");
  w.beginArray();
  for (const TPW_Path* s : shapes)
    if (s) s->toJson(w);
  w.endArray();
  w.endObject();
  std::string out = kUtf8Bom;
  out += w.text();
  out += "\r\n";
  return out;
}

std::string repairUtf8(const std::string& bytes) {
  std::string r = repairUtf8Copy(bytes);
  return r.empty() && !bytes.empty() ? bytes : r;
}

std::string repairUtf8Copy(std::string_view bytes) {
  // Fast path: most files are valid (our own are plain ASCII).
  size_t i = 0;
  const size_t n = bytes.size();
  auto validAt = [&](size_t at, size_t& len) {
    const unsigned char c = static_cast<unsigned char>(bytes[at]);
    if (c < 0x80) { len = 1; return true; }
    unsigned cp = 0;
    if (c >= 0xC2 && c <= 0xDF) { len = 2; cp = c & 0x1F; }
    else if (c >= 0xE0 && c <= 0xEF) { len = 3; cp = c & 0x0F; }
    else if (c >= 0xF0 && c <= 0xF4) { len = 4; cp = c & 0x07; }
    else return false;
    if (at + len > n) return false;
    for (size_t k = 1; k < len; ++k) {
      const unsigned char cc = static_cast<unsigned char>(bytes[at + k]);
      if ((cc & 0xC0) != 0x80) return false;
      cp = (cp << 6) | (cc & 0x3F);
    }
    if ((len == 3 && cp < 0x800) || (len == 4 && (cp < 0x10000 || cp > 0x10FFFF)) ||
        (cp >= 0xD800 && cp <= 0xDFFF))
      return false;
    return true;
  };
  size_t len = 0;
  while (i < n && validAt(i, len)) i += len;
  if (i == n) return {};
  std::string out(bytes.substr(0, i));
  while (i < n) {
    if (validAt(i, len)) {
      out.append(bytes.substr(i, len));
      i += len;
    } else {
      out += "\xEF\xBF\xBD";
      ++i;
    }
  }
  return out;
}

TParsedJsonText parseJsonFileText(const std::string& bytes,
                                  const nlohmann::ordered_json::parser_callback_t& callback) {
  TParsedJsonText result;
  const size_t skip = bytes.rfind(kUtf8Bom, 0) == 0 ? 3 : 0;
  // Valid text is parsed where it lies; only a damaged one is copied.
  std::string repaired;
  std::string_view text(bytes);
  text.remove_prefix(skip);
  repaired = repairUtf8Copy(text);
  if (!repaired.empty()) text = repaired;
  // Nesting depth, counted outside strings, before the parser builds a tree
  // that deep.
  if (!jsonNestingWithin(text, kMaxJsonDepth)) {
    result.FProblem = "the text nests deeper than " + std::to_string(kMaxJsonDepth) + " levels";
    return result;
  }
  try {
    result.FRoot = nlohmann::ordered_json::parse(text.begin(), text.end(), callback);
  } catch (const nlohmann::ordered_json::exception& e) {
    result.FProblem = e.what();
    result.FRoot = nullptr;
    return result;
  }
  result.FState = result.FRoot.is_object() ? TJsonTextState::Object : TJsonTextState::NotObject;
  return result;
}
