#include "stitching/pricking_iron.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "document/number_text.h"

namespace {

struct TBladeRow {
  const char* letter;
  const char* labelJa;
  const char* labelOther;
  float width, height, angle;
};

// In the order of the blade type list of the toolbox.
constexpr TBladeRow kBlades[] = {
    {"D", "菱目", "Diamond", 0.8f, 2.2f, 32.0f},
    {"F", "ヨーロッパ目", "French", 0.25f, 2.0f, 45.0f},
    {"L", "平目", "Flat", 0.3f, 2.0f, 0.0f},
    {"R", "丸目", "Round", 1.0f, 1.0f, 0.0f},
};

std::string upper(std::string s) {
  for (char& c : s)
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  return s;
}

const TBladeRow* findBlade(const std::string& letter) {
  const std::string u = upper(letter);
  for (const auto& b : kBlades)
    if (u == b.letter) return &b;
  return nullptr;
}

}  // namespace

TPrickingIronGroup::TPrickingIronGroup(bool AIsSystemGroup)
    : FPrickingIron(std::make_unique<TPrickingIron>()), FIsSystemGroup(AIsSystemGroup) {}

void TPrickingIronGroup::addPrickingIron(int NumOfBlades) {
  if (std::find(FAvailableBlades.begin(), FAvailableBlades.end(), NumOfBlades) ==
      FAvailableBlades.end())
    FAvailableBlades.push_back(NumOfBlades);
  std::sort(FAvailableBlades.begin(), FAvailableBlades.end());
}

nlohmann::ordered_json TPrickingIronGroup::toJsonObject() const {
  nlohmann::ordered_json jo = nlohmann::ordered_json::object();
  jo["iron"] = FPrickingIron->toJsonObjectFull();
  jo["blades"] = FAvailableBlades;
  jo["system_iron"] = FIsSystemGroup;
  return jo;
}

namespace {

// A blade count: a whole JSON number, or a string of one. Anything else, or
// a count below 1, is passed over.
bool bladeCountFromJson(const nlohmann::ordered_json& v, int& out) {
  double d = 0;
  if (v.is_number_integer()) {
    d = static_cast<double>(v.get<long long>());
  } else if (v.is_number_float()) {
    d = v.get<double>();
  } else if (v.is_string()) {
    if (!textToFloat(v.get<std::string>(), d)) return false;
  } else {
    return false;
  }
  if (!std::isfinite(d) || d != std::floor(d) || d < 1 || d > 1000000) return false;
  out = static_cast<int>(d);
  return true;
}

bool flagFromJson(const nlohmann::ordered_json& v, bool& out) {
  if (v.is_boolean()) {
    out = v.get<bool>();
    return true;
  }
  if (v.is_number()) {
    out = v.get<double>() != 0;
    return true;
  }
  if (v.is_string()) {
    const std::string s = upper(v.get<std::string>());
    if (s == "TRUE" || s == "-1" || s == "1") {
      out = true;
      return true;
    }
    if (s == "FALSE" || s == "0") {
      out = false;
      return true;
    }
  }
  return false;
}

}  // namespace

void TPrickingIronGroup::loadJson(const nlohmann::ordered_json& jo) {
  if (!jo.is_object()) throw std::runtime_error("a group is not a JSON object");
  auto iron = jo.find("iron");
  if (iron == jo.end() || !iron->is_object())
    throw std::runtime_error("a group has no \"iron\" object");
  FPrickingIron->loadJson(*iron);
  auto blades = jo.find("blades");
  if (blades != jo.end() && blades->is_array()) {
    for (const auto& b : *blades) {
      int n = 0;
      if (!bladeCountFromJson(b, n)) continue;
      if (std::find(FAvailableBlades.begin(), FAvailableBlades.end(), n) == FAvailableBlades.end())
        FAvailableBlades.push_back(n);
    }
  }
  auto sys = jo.find("system_iron");
  if (sys != jo.end()) {
    bool flag = false;
    if (!flagFromJson(*sys, flag)) throw std::runtime_error("\"system_iron\" is not true or false");
    FIsSystemGroup = flag;
  }
}

void bladeDefaults(const std::string& letter, float& width, float& height, float& angle) {
  if (const TBladeRow* b = findBlade(letter)) {
    width = b->width;
    height = b->height;
    angle = b->angle;
  } else {
    width = 1.2f;
    height = 1.2f;
    angle = 0.0f;
  }
}

int bladeTypeIndex(const std::string& letter) {
  const TBladeRow* b = findBlade(letter);
  return b ? static_cast<int>(b - kBlades) : -1;
}

std::string bladeTypeLetter(int index) {
  if (index < 0 || index >= static_cast<int>(std::size(kBlades))) return "";
  return kBlades[index].letter;
}

std::string bladeTypeLabel(const std::string& letter, const std::string& langID) {
  const TBladeRow* b = findBlade(letter);
  if (!b) return "";
  return langID == "ja" ? b->labelJa : b->labelOther;
}
