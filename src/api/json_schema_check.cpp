#include "api/json_schema_check.h"

#include <cmath>

namespace {

bool hasType(const TMcpJson& v, const std::string& type) {
  if (type == "object") return v.is_object();
  if (type == "array") return v.is_array();
  if (type == "string") return v.is_string();
  if (type == "boolean") return v.is_boolean();
  if (type == "number") return v.is_number();
  // JSON Schema counts 3.0 as an integer.
  if (type == "integer")
    return v.is_number_integer() || (v.is_number_float() && std::isfinite(v.get<double>()) &&
                                     std::floor(v.get<double>()) == v.get<double>());
  return false;
}

std::string article(const std::string& type) {
  return (type == "object" || type == "array" || type == "integer" ? "an " : "a ") + type;
}

std::string place(const std::string& where) { return where.empty() ? "arguments" : where; }

std::string numberText(double v) {
  TMcpJson j = v;
  if (std::floor(v) == v && std::fabs(v) < 1e15) j = static_cast<long long>(v);
  return j.dump();
}

}  // namespace

std::string schemaMismatch(const TMcpJson& schema, const TMcpJson& value, const std::string& where) {
  const std::string at = place(where);
  if (schema.contains("type")) {
    const std::string type = schema["type"].get<std::string>();
    if (!hasType(value, type)) return at + ": expected " + article(type);
  }
  if (schema.contains("enum")) {
    bool found = false;
    for (const auto& e : schema["enum"]) found = found || e == value;
    if (!found) return at + ": expected one of " + schema["enum"].dump();
  }
  if (value.is_number()) {
    const double v = value.get<double>();
    if (schema.contains("minimum") && !(v >= schema["minimum"].get<double>()))
      return at + ": must be at least " + numberText(schema["minimum"].get<double>());
    if (schema.contains("maximum") && !(v <= schema["maximum"].get<double>()))
      return at + ": must be at most " + numberText(schema["maximum"].get<double>());
  }
  if (value.is_array()) {
    if (schema.contains("minItems") && value.size() < schema["minItems"].get<size_t>())
      return at + ": needs at least " + schema["minItems"].dump() + " items";
    if (schema.contains("maxItems") && value.size() > schema["maxItems"].get<size_t>())
      return at + ": takes at most " + schema["maxItems"].dump() + " items";
    if (schema.contains("items"))
      for (size_t i = 0; i < value.size(); ++i) {
        const std::string m = schemaMismatch(schema["items"], value[i], at + "[" + std::to_string(i) + "]");
        if (!m.empty()) return m;
      }
  }
  if (value.is_object()) {
    const std::string prefix = where.empty() ? "" : where + ".";
    if (schema.contains("required"))
      for (const auto& key : schema["required"])
        if (!value.contains(key.get<std::string>())) return at + ": \"" + key.get<std::string>() + "\" is required";
    const bool closed = schema.contains("additionalProperties") && schema["additionalProperties"] == false;
    for (const auto& [key, v] : value.items()) {
      if (schema.contains("properties") && schema["properties"].contains(key)) {
        const std::string m = schemaMismatch(schema["properties"][key], v, prefix + key);
        if (!m.empty()) return m;
      } else if (closed) {
        return at + ": unknown key \"" + key + "\"";
      }
    }
  }
  return {};
}
