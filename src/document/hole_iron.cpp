#include "document/hole_iron.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "document/number_text.h"

namespace {

std::string numberText(float v) { return floatToTextWithPoint(static_cast<double>(v)); }

// Reads key into target when present. `minimum` and `allowMinimum` bound the
// value: a pitch must be above 0, a blade size at least 0.
void readNumber(const nlohmann::ordered_json& jo, const char* key, const char* what, float& target,
                double minimum, bool allowMinimum, bool bounded) {
  auto it = jo.find(key);
  if (it == jo.end() || it->is_null()) return;
  double v = 0;
  if (!ironNumberFromJson(*it, v) || !std::isfinite(v))
    throw std::runtime_error(std::string("the ") + what + " \"" +
                             (it->is_string() ? it->get<std::string>() : it->dump()) +
                             "\" is not a number");
  if (bounded && (v < minimum || (!allowMinimum && v == minimum)))
    throw std::runtime_error(std::string("the ") + what + " " + floatToText(v) +
                             " is out of range");
  target = static_cast<float>(v);
}

void readString(const nlohmann::ordered_json& jo, const char* key, std::string& target) {
  auto it = jo.find(key);
  if (it == jo.end() || it->is_null()) return;
  if (!it->is_string()) throw std::runtime_error(std::string("\"") + key + "\" is not a text");
  target = it->get<std::string>();
}

}  // namespace

bool ironNumberFromJson(const nlohmann::ordered_json& v, double& out) {
  if (v.is_number()) {
    out = v.get<double>();
    return true;
  }
  if (!v.is_string()) return false;
  std::string s = v.get<std::string>();
  if (textToFloat(s, out)) return true;
  std::replace(s.begin(), s.end(), ',', '.');
  return textToFloat(s, out);
}

std::unique_ptr<TPrickingIron> TPrickingIron::Clone() const {
  return std::make_unique<TPrickingIron>(*this);
}

nlohmann::ordered_json TPrickingIron::toJsonObjectFull() const {
  nlohmann::ordered_json jo = nlohmann::ordered_json::object();
  jo["nm"] = FName;
  jo["bt"] = FBladeType;
  jo["p"] = numberText(FPitch);
  jo["w"] = numberText(FWidth);
  jo["h"] = numberText(FHeight);
  jo["a"] = numberText(FAngle);
  return jo;
}

nlohmann::ordered_json TPrickingIron::toJsonObjectMinimal() const {
  nlohmann::ordered_json jo = nlohmann::ordered_json::object();
  jo["bt"] = FBladeType;
  jo["p"] = numberText(FPitch);
  return jo;
}

void TPrickingIron::loadJson(const nlohmann::ordered_json& jo) {
  if (!jo.is_object()) throw std::runtime_error("an iron is not a JSON object");
  // Read into a copy so that a bad value leaves this iron as it was.
  TPrickingIron r = *this;
  readString(jo, "nm", r.FName);
  readString(jo, "bt", r.FBladeType);
  readNumber(jo, "p", "pitch", r.FPitch, 0.0, false, true);
  readNumber(jo, "w", "blade width", r.FWidth, 0.0, true, true);
  readNumber(jo, "h", "blade length", r.FHeight, 0.0, true, true);
  readNumber(jo, "a", "blade angle", r.FAngle, 0.0, true, false);
  *this = r;
}

