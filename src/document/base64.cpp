#include "document/base64.h"

#include <array>
#include <cstdint>

namespace {
const char kDigits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
}  // namespace

std::string base64Encode(std::string_view bytes) {
  std::string out;
  out.reserve((bytes.size() + 2) / 3 * 4);
  size_t i = 0;
  auto at = [&](size_t k) { return static_cast<unsigned>(static_cast<unsigned char>(bytes[k])); };
  for (; i + 3 <= bytes.size(); i += 3) {
    const unsigned v = at(i) << 16 | at(i + 1) << 8 | at(i + 2);
    out += kDigits[v >> 18];
    out += kDigits[(v >> 12) & 63];
    out += kDigits[(v >> 6) & 63];
    out += kDigits[v & 63];
  }
  const size_t rest = bytes.size() - i;
  if (rest > 0) {
    const unsigned v = at(i) << 16 | (rest == 2 ? at(i + 1) << 8 : 0u);
    out += kDigits[v >> 18];
    out += kDigits[(v >> 12) & 63];
    out += rest == 2 ? kDigits[(v >> 6) & 63] : '=';
    out += '=';
  }
  return out;
}

std::string base64Decode(std::string_view text) {
  static const std::array<int8_t, 256> table = [] {
    std::array<int8_t, 256> t{};
    t.fill(-1);
    for (int i = 0; i < 64; ++i) t[static_cast<unsigned char>(kDigits[i])] = static_cast<int8_t>(i);
    return t;
  }();
  std::string out;
  out.reserve(text.size() / 4 * 3);
  uint32_t acc = 0;
  int bits = 0;
  bool ended = false;
  for (const char ch : text) {
    const auto c = static_cast<unsigned char>(ch);
    if (c == '\r' || c == '\n' || c == ' ' || c == '\t') continue;
    if (c == '=') {
      ended = true;
      continue;
    }
    const int v = table[c];
    if (v < 0 || ended) throw std::invalid_argument("the text is not base64");
    acc = (acc << 6) | static_cast<uint32_t>(v);
    bits += 6;
    if (bits >= 8) {
      bits -= 8;
      out += static_cast<char>((acc >> bits) & 0xFF);
    }
  }
  return out;
}
