// Where the program's words come from: a phrase by language code and key.
// The phrase table (app/multi_lang.h) is one; the document and the
// stitching code borrow it through this and need nothing above them.
#pragma once

#include <string>

class IPhraseLookup {
 public:
  virtual ~IPhraseLookup() = default;
  // The phrase; the English one when the language lacks the key; empty
  // when neither has it.
  virtual std::string getTranslation(const std::string& ALangID, const std::string& key) const = 0;
};
