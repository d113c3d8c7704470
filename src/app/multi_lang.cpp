#include "app/multi_lang.h"

#include <cctype>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "app/builtin_phrases.h"
#include "document/project_json.h"

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

TMultiLang::TImportResult TMultiLang::importTSV(const std::string& filename) {
  TImportResult r;
  std::error_code ec;
  if (!std::filesystem::exists(filename, ec)) return r;
  const auto size = std::filesystem::file_size(filename, ec);
  if (ec) {
    r.FRefusal = TImportRefusal::Unreadable;
    return r;
  }
  if (size > kMaxImportBytes) {
    r.FRefusal = TImportRefusal::TooLarge;
    return r;
  }
  std::ifstream in(filename, std::ios::binary);
  std::stringstream ss;
  if (in) ss << in.rdbuf();
  if (!in || in.bad()) {
    r.FRefusal = TImportRefusal::Unreadable;
    return r;
  }
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
//   - a line that begins with "//" is a comment, an empty line is skipped;
//   - the first cell is free for the translator's notes and is dropped, the
//     second is the key, the rest are the phrases, one per language column;
//   - the row keyed "two-letter-codes" names the language of each column,
//     and each language's phrase for that key is its own code;
//   - in every other row each non-empty cell under a named column is entered;
//     rows before the language row are passed over.
// A byte-order mark and Windows line ends are accepted. The whole text is
// checked before anything is replaced: a line of fewer than four cells, or
// with phrases past the named columns (a tab inside a phrase shifts every
// later cell into the wrong language), refuses the file, as do bytes that
// are not UTF-8 and text without tabs.
TMultiLang::TImportResult TMultiLang::importTSVText(std::string_view text) {
  TImportResult r;
  if (text.size() > kMaxImportBytes) {
    r.FRefusal = TImportRefusal::TooLarge;
    return r;
  }
  if (text.substr(0, 3) == "\xEF\xBB\xBF") text.remove_prefix(3);
  if (repairUtf8(std::string(text)) != text) {
    r.FRefusal = TImportRefusal::NotUtf8;
    return r;
  }
  if (text.find('\t') == std::string_view::npos || text.find('\0') != std::string_view::npos) {
    r.FRefusal = TImportRefusal::NotTabSeparated;
    return r;
  }

  std::unordered_map<std::string, TIndividualLang> dict;
  std::vector<std::string> order;
  bool haveOrder = false;
  size_t pos = 0;
  int lineNo = 0;
  while (pos < text.size()) {
    size_t eol = text.find('\n', pos);
    if (eol == std::string_view::npos) eol = text.size();
    std::string_view line = text.substr(pos, eol - pos);
    pos = eol + 1;
    ++lineNo;
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    if (line.empty() || line.substr(0, 2) == "//") continue;

    const std::vector<std::string_view> cells = splitAtTabs(line);
    bool overflow = false;
    if (haveOrder)
      for (size_t c = 2 + order.size(); c < cells.size(); ++c) overflow = overflow || !cells[c].empty();
    if (cells.size() < 4 || overflow) {
      r.FRefusal = TImportRefusal::WrongColumnCount;
      r.FLine = lineNo;
      r.FCells = static_cast<int>(cells.size());
      return r;
    }
    const std::string key(cells[1]);
    if (key == "two-letter-codes") {
      order.assign(cells.begin() + 2, cells.end());
      while (!order.empty() && order.back().empty()) order.pop_back();
      haveOrder = true;
      for (const auto& code : order)
        if (!code.empty()) dict[code].FDict[key] = code;
      continue;
    }
    if (!haveOrder) continue;
    for (size_t c = 2; c < cells.size(); ++c) {
      const size_t col = c - 2;
      if (cells[c].empty() || col >= order.size() || order[col].empty()) continue;
      dict[order[col]].FDict[key] = std::string(cells[c]);
    }
  }
  if (!haveOrder) {
    r.FRefusal = TImportRefusal::NoLanguageRow;
    return r;
  }
  FLangDict = std::move(dict);
  FLangOrder = std::move(order);
  return r;
}

bool TMultiLang::loadBuiltinPhrases() { return static_cast<bool>(importTSVText(builtinPhrasesTSV())); }

const std::vector<std::string>& TMultiLang::tableLanguageCodes() {
  static const std::vector<std::string> codes = {"ja", "en", "am", "de", "es", "fr", "it",
                                                 "no", "pl", "pb", "ro", "ru", "tr", "zh-cn"};
  return codes;
}

namespace {

// Length of the marker at phrase[i] ('%'), 0 when none starts there.
size_t markerLength(std::string_view phrase, size_t i) {
  size_t j = i + 1;
  while (j < phrase.size() && std::strchr("-+0#", phrase[j])) ++j;
  while (j < phrase.size() && std::isdigit(static_cast<unsigned char>(phrase[j]))) ++j;
  if (j < phrase.size() && phrase[j] == '.') {
    ++j;
    while (j < phrase.size() && std::isdigit(static_cast<unsigned char>(phrase[j]))) ++j;
  }
  if (j < phrase.size() && std::strchr("dsgfuxXic", phrase[j])) return j + 1 - i;
  return 0;
}

}  // namespace

std::vector<std::string> phrasePlaceholders(std::string_view phrase) {
  std::vector<std::string> out;
  for (size_t i = 0; i < phrase.size(); ++i) {
    if (phrase[i] != '%') continue;
    if (i + 1 < phrase.size() && phrase[i + 1] == '%') {
      ++i;
      continue;
    }
    if (const size_t n = markerLength(phrase, i)) {
      out.emplace_back(phrase.substr(i, n));
      i += n - 1;
    }
  }
  return out;
}

std::string fillPhrase(std::string_view phrase, const std::vector<std::string>& texts) {
  std::string out;
  size_t next = 0;
  for (size_t i = 0; i < phrase.size(); ++i) {
    if (phrase[i] == '%' && i + 1 < phrase.size() && phrase[i + 1] == '%') {
      out += '%';
      ++i;
      continue;
    }
    const size_t n = phrase[i] == '%' ? markerLength(phrase, i) : 0;
    if (n == 0 || next >= texts.size()) {
      out += phrase[i];
      continue;
    }
    out += texts[next++];
    i += n - 1;
  }
  return out;
}
