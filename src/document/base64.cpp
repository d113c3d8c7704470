#include "document/base64.h"

std::string base64Encode(std::string_view bytes) {
  static const char kDigits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
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
