// The phrase dictionary: every word the program shows is looked up here by
// language code and message key, with English as the fallback. The key of a
// widget's text is the widget's own name, so a whole form is translated by
// walking its widgets.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "document/phrase_lookup.h"

// One language's table: key -> phrase.
class TIndividualLang {
 public:
  std::unordered_map<std::string, std::string> FDict;
};

class TMultiLang : public IPhraseLookup {
 public:
  // Language code -> its table; owned.
  std::unordered_map<std::string, TIndividualLang> FLangDict;

  // Creates the language's table if needed; sets or replaces the phrase.
  void addTranslation(const std::string& ALangID, const std::string& key, const std::string& phrase);
  // The phrase; the English one when the language lacks the key; empty when
  // the language has no table at all or neither it nor English has the key.
  // A missing phrase is never an error.
  std::string getTranslation(const std::string& ALangID, const std::string& key) const override;
  void clearLanguages();
  // True when the language has a table.
  bool isSupported(const std::string& ALangID) const;

  // Why an import was refused. A refused import changes nothing.
  enum class TImportRefusal {
    None,
    Unreadable,       // the file could not be opened or read
    TooLarge,         // over kMaxImportBytes
    NotUtf8,          // bytes that are not UTF-8 text
    NotTabSeparated,  // no tab in the whole text, or binary bytes
    NoLanguageRow,    // no row keyed "two-letter-codes"
    WrongColumnCount  // FLine has FCells cells: under four, or past the languages
  };
  struct TImportResult {
    TImportRefusal FRefusal = TImportRefusal::None;
    int FLine = 0;   // one-based line of a wrong column count
    int FCells = 0;  // its number of cells
    explicit operator bool() const { return FRefusal == TImportRefusal::None; }
  };
  static constexpr size_t kMaxImportBytes = 8u << 20;

  // Replaces the tables from a tab-separated file (format in the .cpp), or
  // refuses it whole and leaves the tables as they were. A file that does
  // not exist changes nothing and is no refusal.
  TImportResult importTSV(const std::string& filename);
  // The same from text in memory.
  TImportResult importTSVText(std::string_view text);
  // Replaces the tables with the phrase table built into the program.
  bool loadBuiltinPhrases();

  // Language codes in the column order of the last import.
  const std::vector<std::string>& languageOrder() const { return FLangOrder; }
  // The fourteen languages of the built-in table, in its column order. The
  // language menu lists these whatever a later import holds.
  static const std::vector<std::string>& tableLanguageCodes();

 private:
  std::vector<std::string> FLangOrder;
};

// The printf-style markers of a phrase in order ("%d", "%s", "%.2f"); "%%"
// and a per cent sign before a blank or a digit's unit ("100 %") are text.
std::vector<std::string> phrasePlaceholders(std::string_view phrase);
// The phrase with its markers replaced by the texts in order; markers past
// the texts are left as they are.
std::string fillPhrase(std::string_view phrase, const std::vector<std::string>& texts);
