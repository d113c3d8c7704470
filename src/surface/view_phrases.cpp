#include "surface/view_phrases.h"

#include "app/multi_lang.h"

std::string viewPhrase(const TMultiLang* lang, const std::string& langID, const TPhraseKey& phrase) {
  if (lang) {
    std::string text = lang->getTranslation(langID, phrase.key);
    if (!text.empty()) return text;
  }
  return phrase.english;
}
