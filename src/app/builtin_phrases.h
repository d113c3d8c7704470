// The phrase table built into the program: the text of resources/phrases.tsv,
// compiled in at build time so that the program needs no file beside it.
#pragma once

#include <string_view>

// The whole table, byte for byte as in the resource file.
std::string_view builtinPhrasesTSV();
