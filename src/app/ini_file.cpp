#include "app/ini_file.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "platform/safe_file.h"
#include "document/number_text.h"

namespace {

std::string trim(const std::string& s) {
  size_t b = 0, e = s.size();
  while (b < e && std::isspace(static_cast<unsigned char>(s[b]))) ++b;
  while (e > b && std::isspace(static_cast<unsigned char>(s[e - 1]))) --e;
  return s.substr(b, e - b);
}

bool equalsNoCase(const std::string& a, const std::string& b) {
  return a.size() == b.size() &&
         std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
           return std::tolower(static_cast<unsigned char>(x)) == std::tolower(static_cast<unsigned char>(y));
         });
}

}  // namespace

TIniFile::TIniFile(const std::string& filename) {
  std::ifstream in(filename, std::ios::binary);
  if (!in) return;
  std::stringstream ss;
  ss << in.rdbuf();
  loadFromText(ss.str());
}

void TIniFile::loadFromText(const std::string& text) {
  FSections.clear();
  std::istringstream in(text);
  std::string line;
  TSection* current = nullptr;
  bool first = true;
  while (std::getline(in, line)) {
    if (first && line.rfind("\xEF\xBB\xBF", 0) == 0) line.erase(0, 3);
    first = false;
    const std::string t = trim(line);
    if (t.empty() || t[0] == ';' || t[0] == '#') continue;
    if (t.front() == '[') {
      const size_t close = t.find(']');
      if (close == std::string::npos) continue;
      const std::string name = t.substr(1, close - 1);
      current = nullptr;
      for (auto& s : FSections)
        if (equalsNoCase(s.name, name)) current = &s;
      if (!current) {
        FSections.push_back({name, {}});
        current = &FSections.back();
      }
      continue;
    }
    const size_t eq = t.find('=');
    if (eq == std::string::npos || !current) continue;
    const std::string key = trim(t.substr(0, eq));
    const std::string value = trim(t.substr(eq + 1));
    if (key.empty()) continue;
    auto it = std::find_if(current->entries.begin(), current->entries.end(),
                           [&](const auto& e) { return equalsNoCase(e.first, key); });
    if (it != current->entries.end()) it->second = value;
    else current->entries.emplace_back(key, value);
  }
}

std::string TIniFile::toText() const {
  std::string out;
  for (const auto& s : FSections) {
    out += "[" + s.name + "]\n";
    for (const auto& e : s.entries) out += e.first + "=" + e.second + "\n";
    out += "\n";
  }
  return out;
}

void TIniFile::saveToFile(const std::string& filename) const { writeFileAtomically(filename, toText()); }

const std::string* TIniFile::find(const std::string& section, const std::string& key) const {
  for (const auto& s : FSections) {
    if (!equalsNoCase(s.name, section)) continue;
    for (const auto& e : s.entries)
      if (equalsNoCase(e.first, key)) return &e.second;
  }
  return nullptr;
}

bool TIniFile::hasKey(const std::string& section, const std::string& key) const {
  return find(section, key) != nullptr;
}

std::string TIniFile::ReadString(const std::string& section, const std::string& key,
                                 const std::string& def) const {
  const std::string* v = find(section, key);
  return v ? *v : def;
}

int TIniFile::ReadInteger(const std::string& section, const std::string& key, int def) const {
  const std::string* v = find(section, key);
  if (!v) return def;
  char* end = nullptr;
  const long n = std::strtol(v->c_str(), &end, 10);
  if (end == v->c_str() || *end != '\0' || n < INT32_MIN || n > INT32_MAX) return def;
  return static_cast<int>(n);
}

bool TIniFile::ReadBool(const std::string& section, const std::string& key, bool def) const {
  const std::string* v = find(section, key);
  if (!v) return def;
  if (equalsNoCase(*v, "true")) return true;
  if (equalsNoCase(*v, "false")) return false;
  // A whole number: any but 0 is true (-1 is how true is often written).
  const char* s = v->c_str();
  char* end = nullptr;
  const long n = std::strtol(s, &end, 10);
  if (end == s || *end != '\0') return def;
  return n != 0;
}

double TIniFile::ReadFloat(const std::string& section, const std::string& key, double def) const {
  const std::string* v = find(section, key);
  if (!v) return def;
  std::string s = *v;
  std::replace(s.begin(), s.end(), ',', '.');
  double d = 0;
  return textToFloat(s, d) ? d : def;
}

void TIniFile::WriteString(const std::string& section, const std::string& key,
                           const std::string& value) {
  TSection* sec = nullptr;
  for (auto& s : FSections)
    if (equalsNoCase(s.name, section)) sec = &s;
  if (!sec) {
    FSections.push_back({section, {}});
    sec = &FSections.back();
  }
  for (auto& e : sec->entries) {
    if (equalsNoCase(e.first, key)) {
      e.second = value;
      return;
    }
  }
  sec->entries.emplace_back(key, value);
}

void TIniFile::WriteInteger(const std::string& section, const std::string& key, int value) {
  WriteString(section, key, std::to_string(value));
}

void TIniFile::WriteBool(const std::string& section, const std::string& key, bool value) {
  WriteString(section, key, value ? "1" : "0");
}

void TIniFile::WriteFloat(const std::string& section, const std::string& key, double value) {
  WriteString(section, key, floatToText(value));
}
