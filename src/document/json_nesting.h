// How deep a JSON text nests, found before a parser builds a tree that deep
// (a recursive parser would run out of stack on a hostile text).
#pragma once

#include <string_view>

// True when no array or object in the text lies deeper than `limit`
// levels; brackets inside strings do not count. Stops at the first level
// past the limit. The text need not be valid JSON.
bool jsonNestingWithin(std::string_view text, int limit);
