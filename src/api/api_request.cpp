#include "api/api_request.h"

#include <charconv>
#include <cmath>
#include <limits>

#include "document/json_nesting.h"
#include "libraries/draw_pallet.h"

std::optional<TJson> parseJsonObject(const std::string& body) {
  if (!jsonNestingWithin(body, kMaxBodyDepth)) return std::nullopt;
  TJson j = TJson::parse(body, nullptr, false);
  if (j.is_discarded() || !j.is_object()) return std::nullopt;
  return j;
}

double requireNumber(const TJson& obj, const char* name) {
  const auto it = obj.find(name);
  if (it == obj.end()) throw TApiRequestError(std::string("missing number: ") + name);
  if (!it->is_number()) throw TApiRequestError(std::string("not a number: ") + name);
  return it->get<double>();
}

double checkedLength(double value, const char* name) {
  if (!(std::fabs(value) <= kMaxLengthMm))
    throw TApiRangeError(std::string(name) + " out of range: its size must not pass 1000000");
  return value;
}

double requireLength(const TJson& obj, const char* name) { return checkedLength(requireNumber(obj, name), name); }

TPointF requirePoint(const TJson& obj, const char* nameX, const char* nameY) {
  const double x = requireLength(obj, nameX);
  const double y = requireLength(obj, nameY);
  return TPointF::fromDouble(x, y);
}

std::optional<std::array<TPointF, 4>> readBezierPoints(const TJson& obj) {
  const auto it = obj.find("points");
  if (it == obj.end() || !it->is_array() || it->size() != 4) return std::nullopt;
  std::array<TPointF, 4> pts;
  for (size_t i = 0; i < 4; ++i) {
    const TJson& p = (*it)[i];
    if (!p.is_object()) throw TApiRequestError("each of points must be an object with x and y");
    pts[i] = requirePoint(p, "x", "y");
  }
  return pts;
}

std::optional<int> wholeNumber(const TJson& value) {
  if (value.is_number_integer()) {
    if (value.is_number_unsigned()) {
      const auto u = value.get<uint64_t>();
      if (u > static_cast<uint64_t>(std::numeric_limits<int>::max())) return std::nullopt;
      return static_cast<int>(u);
    }
    const auto v = value.get<int64_t>();
    if (v < std::numeric_limits<int>::min() || v > std::numeric_limits<int>::max()) return std::nullopt;
    return static_cast<int>(v);
  }
  if (value.is_number_float()) {
    const double d = value.get<double>();
    if (!std::isfinite(d) || d != std::trunc(d) || d < std::numeric_limits<int>::min() ||
        d > std::numeric_limits<int>::max())
      return std::nullopt;
    return static_cast<int>(d);
  }
  return std::nullopt;
}

std::optional<int> parseShapeId(const std::string& path) {
  const size_t slash = path.rfind('/');
  std::string_view text(path);
  if (slash != std::string::npos) text.remove_prefix(slash + 1);
  if (!text.empty() && text.front() == '+') text.remove_prefix(1);
  if (text.empty()) return std::nullopt;
  int v = 0;
  const auto res = std::from_chars(text.data(), text.data() + text.size(), v);
  if (res.ec != std::errc() || res.ptr != text.data() + text.size()) return std::nullopt;
  if (v < 0) return std::nullopt;
  return v;
}

int resolvePaletteRow(const TJson& obj, const TPalletList& pallets, int activeRow) {
  const auto it = obj.find("paletteIdx");
  if (it == obj.end()) return activeRow;
  const auto oneBased = wholeNumber(*it);
  if (!oneBased) return activeRow;
  const int64_t row = int64_t{*oneBased} - 1;
  return row >= 0 && row < TPalletList::Count() ? static_cast<int>(row) : activeRow;
}

int resolveLayer(const TJson& obj, int activeLayer) {
  const auto it = obj.find("layerId");
  if (it == obj.end()) return activeLayer;
  return wholeNumber(*it).value_or(activeLayer);
}

double optionalNumber(const TJson& obj, const char* name, double fallback) {
  const auto it = obj.find(name);
  if (it == obj.end()) return fallback;
  if (!it->is_number()) throw TApiRequestError(std::string("not a number: ") + name);
  return it->get<double>();
}

std::string optionalText(const TJson& obj, const char* name, const std::string& fallback) {
  const auto it = obj.find(name);
  if (it == obj.end()) return fallback;
  if (!it->is_string()) throw TApiRequestError(std::string("not a string: ") + name);
  return it->get<std::string>();
}

TPointF requirePointObject(const TJson& obj, const char* name) {
  const auto it = obj.find(name);
  if (it == obj.end()) throw TApiRequestError(std::string("missing point: ") + name);
  if (!it->is_object()) throw TApiRequestError(std::string("not a point object: ") + name);
  return requirePoint(*it, "x", "y");
}

int optionalWholeNumber(const TJson& obj, const char* name, int fallback) {
  const double v = optionalNumber(obj, name, fallback);
  if (std::isnan(v)) return fallback;
  const double down = std::floor(v);
  if (down <= std::numeric_limits<int>::min()) return std::numeric_limits<int>::min();
  if (down >= std::numeric_limits<int>::max()) return std::numeric_limits<int>::max();
  return static_cast<int>(down);
}
