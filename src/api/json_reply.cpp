#include "api/json_reply.h"

#include <sys/mman.h>

#include <cmath>
#include <cstdint>

#include "document/number_text.h"

namespace {

void appendUnicodeEscape(std::string& out, uint32_t unit) {
  static const char kHex[] = "0123456789abcdef";
  char buf[6] = {'\\', 'u', kHex[(unit >> 12) & 0xF], kHex[(unit >> 8) & 0xF], kHex[(unit >> 4) & 0xF],
                 kHex[unit & 0xF]};
  out.append(buf, 6);
}

// Decodes one UTF-8 sequence at s[i]; a broken one yields U+FFFD for its
// first byte.
uint32_t nextCodePoint(std::string_view s, size_t& i) {
  const auto byte = [&](size_t k) { return static_cast<unsigned char>(s[k]); };
  const unsigned char c = byte(i);
  size_t len = 0;
  uint32_t cp = 0;
  if (c >= 0xC2 && c <= 0xDF) len = 2, cp = c & 0x1F;
  else if (c >= 0xE0 && c <= 0xEF) len = 3, cp = c & 0x0F;
  else if (c >= 0xF0 && c <= 0xF4) len = 4, cp = c & 0x07;
  bool ok = len > 0 && i + len <= s.size();
  for (size_t k = 1; ok && k < len; ++k) {
    if ((byte(i + k) & 0xC0) != 0x80) ok = false;
    else cp = (cp << 6) | (byte(i + k) & 0x3F);
  }
  if (ok && ((len == 3 && (cp < 0x800 || (cp >= 0xD800 && cp <= 0xDFFF))) ||
             (len == 4 && (cp < 0x10000 || cp > 0x10FFFF))))
    ok = false;
  if (!ok) {
    ++i;
    return 0xFFFD;
  }
  i += len;
  return cp;
}

}  // namespace

void appendJsonString(std::string& out, std::string_view s) {
  out += '"';
  size_t i = 0;
  while (i < s.size()) {
    const unsigned char c = static_cast<unsigned char>(s[i]);
    if (c >= 32 && c < 128) {
      if (c == '"' || c == '\\') out += '\\';
      out += static_cast<char>(c);
      ++i;
      continue;
    }
    if (c < 32) {
      appendUnicodeEscape(out, c);
      ++i;
      continue;
    }
    const uint32_t cp = nextCodePoint(s, i);
    if (cp >= 0x10000) {
      const uint32_t v = cp - 0x10000;
      appendUnicodeEscape(out, 0xD800 + (v >> 10));
      appendUnicodeEscape(out, 0xDC00 + (v & 0x3FF));
    } else {
      appendUnicodeEscape(out, cp);
    }
  }
  out += '"';
}

void TJsonReply::reserve(size_t bytes) {
  FOut.reserve(bytes);
#ifdef MADV_HUGEPAGE
  constexpr size_t kHugePage = size_t(2) << 20;
  if (FOut.capacity() < 4 * kHugePage) return;
  // Only the whole huge pages inside the buffer; a refusal changes nothing.
  const auto begin = reinterpret_cast<uintptr_t>(FOut.data());
  const uintptr_t first = (begin + kHugePage - 1) & ~(kHugePage - 1);
  const uintptr_t last = (begin + FOut.capacity()) & ~(kHugePage - 1);
  if (last > first) madvise(reinterpret_cast<void*>(first), last - first, MADV_HUGEPAGE);
#endif
}

void TJsonReply::beforeValue() {
  if (FAfterKey) {
    FAfterKey = false;
    return;
  }
  if (!FFirst.empty()) {
    if (!FFirst.back()) FOut += ',';
    FFirst.back() = false;
  }
}

TJsonReply& TJsonReply::beginObject() {
  beforeValue();
  FOut += '{';
  FFirst.push_back(true);
  return *this;
}

TJsonReply& TJsonReply::endObject() {
  FOut += '}';
  FFirst.pop_back();
  return *this;
}

TJsonReply& TJsonReply::beginArray() {
  beforeValue();
  FOut += '[';
  FFirst.push_back(true);
  return *this;
}

TJsonReply& TJsonReply::endArray() {
  FOut += ']';
  FFirst.pop_back();
  return *this;
}

TJsonReply& TJsonReply::key(std::string_view name) {
  beforeValue();
  appendJsonString(FOut, name);
  FOut += ':';
  FAfterKey = true;
  return *this;
}

TJsonReply& TJsonReply::integer(int64_t v) {
  beforeValue();
  FOut += std::to_string(v);
  return *this;
}

void appendJsonSingle(std::string& out, float v) {
  if (std::isfinite(v)) appendFloatText(out, static_cast<double>(v), 15, true);
  else out += "null";
}

TJsonReply& TJsonReply::single(float v) {
  beforeValue();
  appendJsonSingle(FOut, v);
  return *this;
}



TJsonReply& TJsonReply::numberText(std::string_view text) {
  beforeValue();
  FOut += text;
  return *this;
}

TJsonReply& TJsonReply::text(std::string_view s) {
  beforeValue();
  appendJsonString(FOut, s);
  return *this;
}

TJsonReply& TJsonReply::boolean(bool v) {
  beforeValue();
  FOut += v ? "true" : "false";
  return *this;
}

TJsonReply& TJsonReply::null() {
  beforeValue();
  FOut += "null";
  return *this;
}
