#include "document/json_text_writer.h"

#include <cstdint>

namespace {

const char kHex[] = "0123456789ABCDEF";

void appendU(std::string& out, uint32_t unit) {
  out += "\\u";
  out += kHex[(unit >> 12) & 0xF];
  out += kHex[(unit >> 8) & 0xF];
  out += kHex[(unit >> 4) & 0xF];
  out += kHex[unit & 0xF];
}

// Decodes one UTF-8 sequence at s[i]; gives the code point and advances i.
// An invalid sequence gives U+FFFD and advances by one byte.
uint32_t nextCodePoint(std::string_view s, size_t& i) {
  const unsigned char c = static_cast<unsigned char>(s[i]);
  int len = 0;
  uint32_t cp = 0;
  if (c >= 0xC2 && c <= 0xDF) { len = 2; cp = c & 0x1F; }
  else if (c >= 0xE0 && c <= 0xEF) { len = 3; cp = c & 0x0F; }
  else if (c >= 0xF0 && c <= 0xF4) { len = 4; cp = c & 0x07; }
  else { ++i; return 0xFFFD; }
  if (i + static_cast<size_t>(len) > s.size()) { ++i; return 0xFFFD; }
  for (int k = 1; k < len; ++k) {
    const unsigned char cc = static_cast<unsigned char>(s[i + static_cast<size_t>(k)]);
    if ((cc & 0xC0) != 0x80) { ++i; return 0xFFFD; }
    cp = (cp << 6) | (cc & 0x3F);
  }
  // Overlong forms, surrogates and values past U+10FFFF are not characters.
  if ((len == 3 && cp < 0x800) || (len == 4 && (cp < 0x10000 || cp > 0x10FFFF)) ||
      (cp >= 0xD800 && cp <= 0xDFFF)) {
    ++i;
    return 0xFFFD;
  }
  i += static_cast<size_t>(len);
  return cp;
}

void appendEscaped(std::string& out, std::string_view s) {
  out += '"';
  size_t i = 0;
  while (i < s.size()) {
    const unsigned char c = static_cast<unsigned char>(s[i]);
    if (c >= 32 && c < 127) {
      if (c == '"' || c == '\\') out += '\\';
      out += static_cast<char>(c);
      ++i;
      continue;
    }
    if (c < 128) {  // control characters and DEL
      appendU(out, c);
      ++i;
      continue;
    }
    const uint32_t cp = nextCodePoint(s, i);
    if (cp >= 0x10000) {
      const uint32_t v = cp - 0x10000;
      appendU(out, 0xD800 + (v >> 10));
      appendU(out, 0xDC00 + (v & 0x3FF));
    } else {
      appendU(out, cp);
    }
  }
  out += '"';
}

}  // namespace

TJsonTextWriter::TJsonTextWriter(size_t reserve) { FOut.reserve(reserve); }

void TJsonTextWriter::beforeValue() {
  if (FAfterKey) {
    FAfterKey = false;
    return;
  }
  if (!FHasValue.empty()) {
    if (FHasValue.back()) FOut += ',';
    FHasValue.back() = true;
  }
}

void TJsonTextWriter::beginObject() {
  beforeValue();
  FOut += '{';
  FHasValue.push_back(false);
}

void TJsonTextWriter::endObject() {
  FOut += '}';
  if (!FHasValue.empty()) FHasValue.pop_back();
}

void TJsonTextWriter::beginArray() {
  beforeValue();
  FOut += '[';
  FHasValue.push_back(false);
}

void TJsonTextWriter::endArray() {
  FOut += ']';
  if (!FHasValue.empty()) FHasValue.pop_back();
}

void TJsonTextWriter::key(std::string_view name) {
  beforeValue();
  appendEscaped(FOut, name);
  FOut += ':';
  FAfterKey = true;
}

void TJsonTextWriter::stringValue(std::string_view utf8) {
  beforeValue();
  appendEscaped(FOut, utf8);
}

void TJsonTextWriter::rawNumber(std::string_view text) {
  beforeValue();
  FOut += text;
}

void TJsonTextWriter::boolValue(bool value) {
  beforeValue();
  FOut += value ? "true" : "false";
}

void TJsonTextWriter::nullValue() {
  beforeValue();
  FOut += "null";
}

void TJsonTextWriter::intValue(long long value) {
  beforeValue();
  FOut += std::to_string(value);
}

void TJsonTextWriter::rawValue(std::string_view json) {
  beforeValue();
  FOut += json;
}

std::string jsonAsciiString(std::string_view utf8) {
  std::string out;
  appendEscaped(out, utf8);
  return out;
}
