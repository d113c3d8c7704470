// Base64 text of binary data (the standard alphabet, with padding): images
// and other bytes carried inside JSON.
#pragma once

#include <string>
#include <string_view>

std::string base64Encode(std::string_view bytes);
