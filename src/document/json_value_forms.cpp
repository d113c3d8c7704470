#include "document/json_value_forms.h"

#include <cctype>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <limits>

#include "document/json_text_writer.h"
#include "document/number_text.h"

namespace {

struct TNamedColor {
  const char* name;
  TAlphaColor value;
};

// The standard web colour names, in alphabetical order: where two names
// share a value (Aqua and Cyan, Darkgray and Darkgrey) the writer takes the
// first.
constexpr TNamedColor kColorNames[] = {
    {"Aliceblue", 0xFFF0F8FF}, {"Antiquewhite", 0xFFFAEBD7}, {"Aqua", 0xFF00FFFF},
    {"Aquamarine", 0xFF7FFFD4}, {"Azure", 0xFFF0FFFF}, {"Beige", 0xFFF5F5DC},
    {"Bisque", 0xFFFFE4C4}, {"Black", 0xFF000000}, {"Blanchedalmond", 0xFFFFEBCD},
    {"Blue", 0xFF0000FF}, {"Blueviolet", 0xFF8A2BE2}, {"Brown", 0xFFA52A2A},
    {"Burlywood", 0xFFDEB887}, {"Cadetblue", 0xFF5F9EA0}, {"Chartreuse", 0xFF7FFF00},
    {"Chocolate", 0xFFD2691E}, {"Coral", 0xFFFF7F50}, {"Cornflowerblue", 0xFF6495ED},
    {"Cornsilk", 0xFFFFF8DC}, {"Crimson", 0xFFDC143C}, {"Cyan", 0xFF00FFFF},
    {"Darkblue", 0xFF00008B}, {"Darkcyan", 0xFF008B8B}, {"Darkgoldenrod", 0xFFB8860B},
    {"Darkgray", 0xFFA9A9A9}, {"Darkgreen", 0xFF006400}, {"Darkgrey", 0xFFA9A9A9},
    {"Darkkhaki", 0xFFBDB76B}, {"Darkmagenta", 0xFF8B008B}, {"Darkolivegreen", 0xFF556B2F},
    {"Darkorange", 0xFFFF8C00}, {"Darkorchid", 0xFF9932CC}, {"Darkred", 0xFF8B0000},
    {"Darksalmon", 0xFFE9967A}, {"Darkseagreen", 0xFF8FBC8F}, {"Darkslateblue", 0xFF483D8B},
    {"Darkslategray", 0xFF2F4F4F}, {"Darkslategrey", 0xFF2F4F4F}, {"Darkturquoise", 0xFF00CED1},
    {"Darkviolet", 0xFF9400D3}, {"Deeppink", 0xFFFF1493}, {"Deepskyblue", 0xFF00BFFF},
    {"Dimgray", 0xFF696969}, {"Dimgrey", 0xFF696969}, {"Dodgerblue", 0xFF1E90FF},
    {"Firebrick", 0xFFB22222}, {"Floralwhite", 0xFFFFFAF0}, {"Forestgreen", 0xFF228B22},
    {"Fuchsia", 0xFFFF00FF}, {"Gainsboro", 0xFFDCDCDC}, {"Ghostwhite", 0xFFF8F8FF},
    {"Gold", 0xFFFFD700}, {"Goldenrod", 0xFFDAA520}, {"Gray", 0xFF808080},
    {"Green", 0xFF008000}, {"Greenyellow", 0xFFADFF2F}, {"Grey", 0xFF808080},
    {"Honeydew", 0xFFF0FFF0}, {"Hotpink", 0xFFFF69B4}, {"Indianred", 0xFFCD5C5C},
    {"Indigo", 0xFF4B0082}, {"Ivory", 0xFFFFFFF0}, {"Khaki", 0xFFF0E68C},
    {"Lavender", 0xFFE6E6FA}, {"Lavenderblush", 0xFFFFF0F5}, {"Lawngreen", 0xFF7CFC00},
    {"Lemonchiffon", 0xFFFFFACD}, {"Lightblue", 0xFFADD8E6}, {"Lightcoral", 0xFFF08080},
    {"Lightcyan", 0xFFE0FFFF}, {"Lightgoldenrodyellow", 0xFFFAFAD2}, {"Lightgray", 0xFFD3D3D3},
    {"Lightgreen", 0xFF90EE90}, {"Lightgrey", 0xFFD3D3D3}, {"Lightpink", 0xFFFFB6C1},
    {"Lightsalmon", 0xFFFFA07A}, {"Lightseagreen", 0xFF20B2AA}, {"Lightskyblue", 0xFF87CEFA},
    {"Lightslategray", 0xFF778899}, {"Lightslategrey", 0xFF778899}, {"Lightsteelblue", 0xFFB0C4DE},
    {"Lightyellow", 0xFFFFFFE0}, {"Lime", 0xFF00FF00}, {"Limegreen", 0xFF32CD32},
    {"Linen", 0xFFFAF0E6}, {"Magenta", 0xFFFF00FF}, {"Maroon", 0xFF800000},
    {"Mediumaquamarine", 0xFF66CDAA}, {"Mediumblue", 0xFF0000CD}, {"Mediumorchid", 0xFFBA55D3},
    {"Mediumpurple", 0xFF9370DB}, {"Mediumseagreen", 0xFF3CB371}, {"Mediumslateblue", 0xFF7B68EE},
    {"Mediumspringgreen", 0xFF00FA9A}, {"Mediumturquoise", 0xFF48D1CC},
    {"Mediumvioletred", 0xFFC71585}, {"Midnightblue", 0xFF191970}, {"Mintcream", 0xFFF5FFFA},
    {"Mistyrose", 0xFFFFE4E1}, {"Moccasin", 0xFFFFE4B5}, {"Navajowhite", 0xFFFFDEAD},
    {"Navy", 0xFF000080}, {"Oldlace", 0xFFFDF5E6}, {"Olive", 0xFF808000},
    {"Olivedrab", 0xFF6B8E23}, {"Orange", 0xFFFFA500}, {"Orangered", 0xFFFF4500},
    {"Orchid", 0xFFDA70D6}, {"Palegoldenrod", 0xFFEEE8AA}, {"Palegreen", 0xFF98FB98},
    {"Paleturquoise", 0xFFAFEEEE}, {"Palevioletred", 0xFFDB7093}, {"Papayawhip", 0xFFFFEFD5},
    {"Peachpuff", 0xFFFFDAB9}, {"Peru", 0xFFCD853F}, {"Pink", 0xFFFFC0CB},
    {"Plum", 0xFFDDA0DD}, {"Powderblue", 0xFFB0E0E6}, {"Purple", 0xFF800080},
    {"Red", 0xFFFF0000}, {"Rosybrown", 0xFFBC8F8F}, {"Royalblue", 0xFF4169E1},
    {"Saddlebrown", 0xFF8B4513}, {"Salmon", 0xFFFA8072}, {"Sandybrown", 0xFFF4A460},
    {"Seagreen", 0xFF2E8B57}, {"Seashell", 0xFFFFF5EE}, {"Sienna", 0xFFA0522D},
    {"Silver", 0xFFC0C0C0}, {"Skyblue", 0xFF87CEEB}, {"Slateblue", 0xFF6A5ACD},
    {"Slategray", 0xFF708090}, {"Slategrey", 0xFF708090}, {"Snow", 0xFFFFFAFA},
    {"Springgreen", 0xFF00FF7F}, {"Steelblue", 0xFF4682B4}, {"Tan", 0xFFD2B48C},
    {"Teal", 0xFF008080}, {"Thistle", 0xFFD8BFD8}, {"Tomato", 0xFFFF6347},
    {"Turquoise", 0xFF40E0D0}, {"Violet", 0xFFEE82EE}, {"Wheat", 0xFFF5DEB3},
    {"White", 0xFFFFFFFF}, {"Whitesmoke", 0xFFF5F5F5}, {"Yellow", 0xFFFFFF00},
    {"Yellowgreen", 0xFF9ACD32},
};

bool equalsNoCase(const std::string& a, const char* b) {
  size_t i = 0;
  for (; i < a.size() && b[i]; ++i)
    if (std::tolower(static_cast<unsigned char>(a[i])) != std::tolower(static_cast<unsigned char>(b[i])))
      return false;
  return i == a.size() && b[i] == 0;
}

[[noreturn]] void fail(const std::string& what, const std::string& problem) {
  throw TJsonFormError(what + ": " + problem);
}

std::string shortDump(const nlohmann::ordered_json& v) {
  std::string s = v.dump(-1, ' ', true, nlohmann::ordered_json::error_handler_t::replace);
  if (s.size() > 40) s = s.substr(0, 37) + "...";
  return s;
}

// Number text as the file writes it, or as a person might type it.
bool numberFromText(const std::string& text, double& out) {
  if (textToFloat(text, out)) return true;
  std::string t = text;
  for (char& c : t)
    if (c == ',') c = '.';
  if (textToFloat(t, out)) return true;
  // The writer's forms of values that are no finite number.
  if (t == "NAN" || t == "NaN" || t == "nan") { out = std::numeric_limits<double>::quiet_NaN(); return true; }
  if (t == "INF" || t == "Infinity" || t == "inf") { out = std::numeric_limits<double>::infinity(); return true; }
  if (t == "-INF" || t == "-Infinity" || t == "-inf") { out = -std::numeric_limits<double>::infinity(); return true; }
  return false;
}

double numberValue(const nlohmann::ordered_json& v, const std::string& what) {
  if (v.is_number()) return v.get<double>();
  if (v.is_string()) {
    double d = 0;
    if (numberFromText(v.get_ref<const std::string&>(), d)) return d;
    fail(what, "\"" + v.get_ref<const std::string&>().substr(0, 40) + "\" is not a number");
  }
  fail(what, shortDump(v) + " is not a number");
}

}  // namespace

// ---- writing ----

std::string numText(float value) { return floatToTextWithPoint(static_cast<double>(value)); }

std::string ptNumberText(float value) {
  if (!std::isfinite(value)) return "0.0";
  return numText(value);
}

void writeNum(TJsonTextWriter& w, const char* key, float value) {
  w.key(key);
  w.stringValue(numText(value));
}

void writeBool(TJsonTextWriter& w, const char* key, bool value) {
  w.key(key);
  w.stringValue(value ? "-1" : "0");
}

void writeInt(TJsonTextWriter& w, const char* key, int value) {
  w.key(key);
  w.stringValue(std::to_string(value));
}

void writePt(TJsonTextWriter& w, const char* key, const TPointF& p) {
  w.key(key);
  w.beginArray();
  w.rawNumber(ptNumberText(p.x));
  w.rawNumber(ptNumberText(p.y));
  w.endArray();
}

void writeCol(TJsonTextWriter& w, const char* key, TAlphaColor c) {
  w.key(key);
  w.stringValue(colorToText(c));
}

std::string colorToText(TAlphaColor c) {
  for (const auto& n : kColorNames)
    if (n.value == c) return n.name;
  char buf[16];
  std::snprintf(buf, sizeof buf, "#%08X", static_cast<unsigned>(c));
  return buf;
}

bool colorFromText(const std::string& text, TAlphaColor& out) {
  if (text.empty()) return false;
  if (text[0] == '#' || text[0] == '$') {
    const std::string hex = text.substr(1);
    if (hex.size() != 8 && hex.size() != 6) return false;
    uint32_t v = 0;
    const auto r = std::from_chars(hex.data(), hex.data() + hex.size(), v, 16);
    if (r.ec != std::errc() || r.ptr != hex.data() + hex.size()) return false;
    out = hex.size() == 6 ? (0xFF000000u | v) : v;
    return true;
  }
  for (const auto& n : kColorNames)
    if (equalsNoCase(text, n.name)) {
      out = n.value;
      return true;
    }
  // "claRed" as some older files may spell it.
  if (text.size() > 3 && equalsNoCase(text.substr(0, 3), "cla")) return colorFromText(text.substr(3), out);
  return false;
}

// ---- reading ----

const nlohmann::ordered_json* findKey(const nlohmann::ordered_json& jo, const char* key) {
  if (!jo.is_object()) return nullptr;
  const auto it = jo.find(key);
  return it == jo.end() ? nullptr : &*it;
}

const nlohmann::ordered_json& requireKey(const nlohmann::ordered_json& jo, const char* key, const std::string& where) {
  const nlohmann::ordered_json* v = findKey(jo, key);
  if (!v) throw TJsonFormError(where + ": the required key \"" + key + "\" is missing");
  return *v;
}

float readNum(const nlohmann::ordered_json& v, const std::string& what) {
  return static_cast<float>(numberValue(v, what));
}

bool readBool(const nlohmann::ordered_json& v, const std::string& what) {
  if (v.is_boolean()) return v.get<bool>();
  if (v.is_number()) return v.get<double>() != 0.0;
  if (v.is_string()) {
    const std::string& s = v.get_ref<const std::string&>();
    if (s == "-1" || s == "1" || equalsNoCase(s, "true")) return true;
    if (s == "0" || equalsNoCase(s, "false")) return false;
    long long n = 0;
    const auto r = std::from_chars(s.data(), s.data() + s.size(), n);
    if (r.ec == std::errc() && r.ptr == s.data() + s.size()) return n != 0;
    fail(what, "\"" + s.substr(0, 40) + "\" is not a flag");
  }
  fail(what, shortDump(v) + " is not a flag");
}

int readInt(const nlohmann::ordered_json& v, const std::string& what) {
  double d = 0;
  if (v.is_number_integer()) {
    const long long n = v.is_number_unsigned() ? static_cast<long long>(std::min<uint64_t>(
                                                     v.get<uint64_t>(), uint64_t(1) << 62))
                                               : v.get<long long>();
    if (n < -999999999LL || n > 999999999LL) fail(what, std::to_string(n) + " is out of range");
    return static_cast<int>(n);
  }
  if (v.is_number_float()) {
    d = v.get<double>();
  } else if (v.is_string()) {
    const std::string& s = v.get_ref<const std::string&>();
    if (!textToFloat(s, d)) fail(what, "\"" + s.substr(0, 40) + "\" is not a whole number");
  } else {
    fail(what, shortDump(v) + " is not a whole number");
  }
  if (!std::isfinite(d) || d != std::floor(d)) fail(what, shortDump(v) + " is not a whole number");
  if (d < -999999999.0 || d > 999999999.0) fail(what, shortDump(v) + " is out of range");
  return static_cast<int>(d);
}

TPointF readPt(const nlohmann::ordered_json& v, const std::string& what) {
  if (!v.is_array() || v.size() != 2) fail(what, shortDump(v) + " is not a point [x, y]");
  return TPointF(static_cast<float>(numberValue(v[0], what)), static_cast<float>(numberValue(v[1], what)));
}

TAlphaColor readCol(const nlohmann::ordered_json& v, const std::string& what) {
  if (v.is_number_integer()) return static_cast<TAlphaColor>(v.get<long long>());
  if (!v.is_string()) fail(what, shortDump(v) + " is not a colour");
  TAlphaColor c = 0;
  if (!colorFromText(v.get_ref<const std::string&>(), c))
    fail(what, "\"" + v.get_ref<const std::string&>().substr(0, 40) + "\" is not a colour");
  return c;
}

TStrokeDash readDash(const nlohmann::ordered_json& v, const std::string& what) {
  if (v.is_number_integer()) {
    const long long n = v.get<long long>();
    return n >= 0 && n <= 5 ? static_cast<TStrokeDash>(n) : TStrokeDash::Solid;
  }
  if (!v.is_string()) fail(what, shortDump(v) + " is not a dash name");
  return strokeDashFromName(v.get_ref<const std::string&>(), TStrokeDash::Solid);
}

std::string readText(const nlohmann::ordered_json& v, const std::string& what) {
  if (v.is_string()) return v.get<std::string>();
  if (v.is_number_integer()) return std::to_string(v.get<long long>());
  if (v.is_number_float()) return floatToText(v.get<double>());
  if (v.is_null()) return std::string();
  fail(what, shortDump(v) + " is not a text");
}

TGUID readGuid(const nlohmann::ordered_json& v) {
  TGUID g;
  if (v.is_string() && TGUID::tryParse(v.get_ref<const std::string&>(), g)) return g;
  return TGUID::create();
}
