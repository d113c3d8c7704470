// Base64 text of binary data (the standard alphabet, with padding): images
// and other bytes carried inside JSON.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

std::string base64Encode(std::string_view bytes);
// The bytes of base64 text. White space (the line breaks of other writers)
// is skipped; any other character outside the alphabet throws
// std::invalid_argument.
std::string base64Decode(std::string_view text);
