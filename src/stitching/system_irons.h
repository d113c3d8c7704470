// The irons the program knows from the start, and the renaming of iron
// names when the language changes.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "stitching/pricking_iron.h"

// The built-in table, in its order, as system groups. Names are the blade
// label of the language followed by the size ("Diamond 3mm", "菱目 3mm").
// With onlyNewRows, only the rows added since the first iron files: the
// ones an older user file gains once on upgrade.
std::vector<std::unique_ptr<TPrickingIronGroup>> buildSystemIronGroups(const std::string& langID,
                                                                       bool onlyNewRows = false);

// An iron name in the other language: outside "ja" the first occurrence of
// each Japanese blade label becomes the English word and a blank; in "ja"
// the first occurrence of each English word becomes the Japanese label and
// a blank. Then every double blank becomes one.
std::string ironNameForLanguage(const std::string& name, const std::string& langID);
