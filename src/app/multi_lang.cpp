#include "app/multi_lang.h"

#include <filesystem>
#include <fstream>
#include <sstream>

#include "app/builtin_phrases.h"

void TMultiLang::addTranslation(const std::string& ALangID, const std::string& key,
                                const std::string& phrase) {
  FLangDict[ALangID].FDict[key] = phrase;
}

std::string TMultiLang::getTranslation(const std::string& ALangID, const std::string& key) const {
  const auto lang = FLangDict.find(ALangID);
  if (lang == FLangDict.end()) return {};
  const auto hit = lang->second.FDict.find(key);
  if (hit != lang->second.FDict.end()) return hit->second;
  if (ALangID == "en") return {};
  const auto en = FLangDict.find("en");
  if (en == FLangDict.end()) return {};
  const auto enHit = en->second.FDict.find(key);
  return enHit != en->second.FDict.end() ? enHit->second : std::string();
}

void TMultiLang::clearLanguages() {
  FLangDict.clear();
  FLangOrder.clear();
}

bool TMultiLang::isSupported(const std::string& ALangID) const {
  return FLangDict.count(ALangID) != 0;
}

bool TMultiLang::importTSV(const std::string& filename) {
  std::error_code ec;
  if (!std::filesystem::exists(filename, ec)) return true;
  std::ifstream in(filename, std::ios::binary);
  if (!in) return false;
  std::stringstream ss;
  ss << in.rdbuf();
  if (in.bad()) return false;
  return importTSVText(ss.str());
}

namespace {

// The cells of one line, split at every tab; a line without tabs is one cell.
std::vector<std::string_view> splitAtTabs(std::string_view line) {
  std::vector<std::string_view> cells;
  size_t start = 0;
  while (true) {
    const size_t tab = line.find('\t', start);
    if (tab == std::string_view::npos) {
      cells.push_back(line.substr(start));
      return cells;
    }
    cells.push_back(line.substr(start, tab - start));
    start = tab + 1;
  }
}

}  // namespace

// The format, one row per line, cells separated by tabs:
//   - a line that begins with "//" is a comment;
//   - the first cell is free for the translator's notes and is dropped, the
//     second is the key, the rest are the phrases, one per language column;
//   - the row keyed "two-letter-codes" names the language of each column,
//     and each language's phrase for that key is its own code;
//   - in every other row each non-empty cell under a named column is entered.
// A line of fewer than four cells (an empty line too) stops the import with a
// failure; what was read before it stays. A byte-order mark and Windows line
// ends are accepted.
bool TMultiLang::importTSVText(std::string_view text) {
  clearLanguages();
  if (text.substr(0, 3) == "\xEF\xBB\xBF") text.remove_prefix(3);
  size_t pos = 0;
  while (pos < text.size()) {
    size_t eol = text.find('\n', pos);
    if (eol == std::string_view::npos) eol = text.size();
    std::string_view line = text.substr(pos, eol - pos);
    pos = eol + 1;
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    if (line.substr(0, 2) == "//") continue;

    const std::vector<std::string_view> cells = splitAtTabs(line);
    if (cells.size() < 4) return false;
    const std::string key(cells[1]);
    if (key == "two-letter-codes") {
      FLangOrder.assign(cells.begin() + 2, cells.end());
      for (const auto& code : FLangOrder)
        if (!code.empty()) addTranslation(code, key, code);
      continue;
    }
    for (size_t c = 2; c < cells.size(); ++c) {
      const size_t col = c - 2;
      if (cells[c].empty() || col >= FLangOrder.size() || FLangOrder[col].empty()) continue;
      addTranslation(FLangOrder[col], key, std::string(cells[c]));
    }
  }
  return true;
}

bool TMultiLang::loadBuiltinPhrases() { return importTSVText(builtinPhrasesTSV()); }

const std::vector<std::string>& TMultiLang::tableLanguageCodes() {
  static const std::vector<std::string> codes = {"ja", "en", "am", "de", "es", "fr", "it",
                                                 "no", "pl", "pb", "ro", "ru", "tr", "zh-cn"};
  return codes;
}
