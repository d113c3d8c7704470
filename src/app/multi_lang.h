// The phrase dictionary: every word the program shows is looked up here by
// language code and message key, with English as the fallback.
#pragma once

#include <map>
#include <string>
#include <unordered_map>
#include <vector>

class TIndividualLang {
 public:
  std::unordered_map<std::string, std::string> FDict;  // key -> phrase
};

class TMultiLang {
 public:
  // Language code -> its table; owned.
  std::map<std::string, TIndividualLang> FLangDict;

  void addTranslation(const std::string& ALangID, const std::string& key, const std::string& phrase);
  // The phrase; the English one when the language lacks the key; empty when
  // the language has no table at all or no language has the key.
  std::string getTranslation(const std::string& ALangID, const std::string& key) const;
  void clearLanguages();
  bool isSupported(const std::string& ALangID) const;
  // Replaces the tables from a tab-separated file (see the .cpp). Nothing
  // happens when the file does not exist. False when a line is malformed;
  // the tables then stay as far as they were filled.
  bool importTSV(const std::string& filename);
  // Reads tab-separated text of the same form from memory.
  bool importTSVText(const std::string& text);
  // Language codes in the order of the table's columns.
  const std::vector<std::string>& languageOrder() const { return FLangOrder; }

 private:
  std::vector<std::string> FLangOrder;
};
