// The font families the window's texts use, by language: a font of the
// language's own script first, so that shared Chinese and Japanese
// characters take the shapes their readers expect, then fonts that cover
// every other script of the language menu.
#pragma once

#include <string>
#include <vector>

// In order of preference; the toolkit takes the first one installed and
// falls back along the list for characters it lacks.
std::vector<std::string> interfaceFontFamilies(const std::string& langID);
