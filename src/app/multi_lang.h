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

  // Replaces the tables from a tab-separated file (format in the .cpp).
  // Nothing happens, and the result is true, when the file does not exist.
  // False when the file can't be read (the tables are then untouched) or a
  // line is malformed (the tables then stay as far as they were filled).
  bool importTSV(const std::string& filename);
  // The same from text in memory.
  bool importTSVText(std::string_view text);
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
