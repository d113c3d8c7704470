#include "app/multi_lang.h"

#include <fstream>
#include <sstream>

void TMultiLang::addTranslation(const std::string& ALangID, const std::string& key,
                                const std::string& phrase) {
  FLangDict[ALangID].FDict[key] = phrase;
}

std::string TMultiLang::getTranslation(const std::string& ALangID, const std::string& key) const {
  const auto lang = FLangDict.find(ALangID);
  if (lang == FLangDict.end()) return {};
  const auto hit = lang->second.FDict.find(key);
  if (hit != lang->second.FDict.end()) return hit->second;
  if (ALangID != "en") {
    const auto en = FLangDict.find("en");
    if (en != FLangDict.end()) {
      const auto enHit = en->second.FDict.find(key);
      if (enHit != en->second.FDict.end()) return enHit->second;
    }
  }
  return {};
}

void TMultiLang::clearLanguages() {
  FLangDict.clear();
  FLangOrder.clear();
}

bool TMultiLang::isSupported(const std::string& ALangID) const {
  return FLangDict.count(ALangID) != 0;
}

bool TMultiLang::importTSV(const std::string& filename) {
  std::ifstream in(filename, std::ios::binary);
  if (!in) return true;
  std::stringstream ss;
  ss << in.rdbuf();
  return importTSVText(ss.str());
}

// Lines beginning with "//" are comments. Every other line is split at tabs:
// the first cell is dropped, the second is the key, the rest are phrases, one
// for each language. The line keyed "two-letter-codes" names the language of
// each column. A line of fewer than four cells fails the import.
bool TMultiLang::importTSVText(const std::string& text) {
  clearLanguages();
  std::istringstream in(text);
  std::string line;
  bool firstLine = true;
  while (std::getline(in, line)) {
    if (firstLine && line.rfind("\xEF\xBB\xBF", 0) == 0) line.erase(0, 3);
    firstLine = false;
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (line.rfind("//", 0) == 0) continue;
    if (line.empty()) continue;
    std::vector<std::string> cells;
    size_t start = 0;
    while (true) {
      const size_t tab = line.find('\t', start);
      cells.push_back(line.substr(start, tab == std::string::npos ? std::string::npos : tab - start));
      if (tab == std::string::npos) break;
      start = tab + 1;
    }
    if (cells.size() < 4) return false;
    const std::string& key = cells[1];
    if (key == "two-letter-codes") {
      FLangOrder.assign(cells.begin() + 2, cells.end());
      for (const auto& code : FLangOrder)
        if (!code.empty()) addTranslation(code, key, code);
      continue;
    }
    for (size_t c = 2; c < cells.size(); ++c) {
      const size_t col = c - 2;
      if (cells[c].empty() || col >= FLangOrder.size() || FLangOrder[col].empty()) continue;
      addTranslation(FLangOrder[col], key, cells[c]);
    }
  }
  return true;
}
