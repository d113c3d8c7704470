#include "document/json_text_writer.h"

#include <sys/mman.h>

#include <charconv>
#include <cstdint>

namespace {

void appendU(std::string& out, uint32_t unit, const char* hex) {
  const char buf[6] = {'\\', 'u', hex[(unit >> 12) & 0xF], hex[(unit >> 8) & 0xF], hex[(unit >> 4) & 0xF],
                       hex[unit & 0xF]};
  out.append(buf, 6);
}

// Decodes one UTF-8 sequence at s[i]; gives the code point and advances i.
// A broken sequence gives U+FFFD for its first byte alone, so that the bytes
// after it are read afresh.
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
  // Overlong forms, surrogates and values past U+10FFFF are not characters.
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

void appendJsonStringLiteral(std::string& out, std::string_view s, TJsonEscapes escapes) {
  const bool api = escapes == TJsonEscapes::ApiReply;
  const char* hex = api ? "0123456789abcdef" : "0123456789ABCDEF";
  // The first byte that is no longer plain ASCII.
  const unsigned char beyondPlain = api ? 128 : 127;
  out += '"';
  size_t i = 0;
  while (i < s.size()) {
    // Runs of plain characters go in at once: keys and names are mostly
    // nothing else.
    size_t run = i;
    while (run < s.size()) {
      const unsigned char c = static_cast<unsigned char>(s[run]);
      if (c < 32 || c >= beyondPlain || c == '"' || c == '\\') break;
      ++run;
    }
    out.append(s.data() + i, run - i);
    i = run;
    if (i == s.size()) break;
    const unsigned char c = static_cast<unsigned char>(s[i]);
    if (c == '"' || c == '\\') {
      out += '\\';
      out += static_cast<char>(c);
      ++i;
    } else if (c < 128) {  // control characters, and DEL in project files
      appendU(out, c, hex);
      ++i;
    } else {
      const uint32_t cp = nextCodePoint(s, i);
      if (cp >= 0x10000) {
        const uint32_t v = cp - 0x10000;
        appendU(out, 0xD800 + (v >> 10), hex);
        appendU(out, 0xDC00 + (v & 0x3FF), hex);
      } else {
        appendU(out, cp, hex);
      }
    }
  }
  out += '"';
}

std::string jsonAsciiString(std::string_view utf8) {
  std::string out;
  appendJsonStringLiteral(out, utf8, TJsonEscapes::ProjectFile);
  return out;
}

TJsonTextWriter::TJsonTextWriter(size_t reserve, TJsonEscapes escapes) : FEscapes(escapes) {
  if (reserve > 0) FOut.reserve(reserve);
}

void TJsonTextWriter::reserve(size_t bytes) {
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

void TJsonTextWriter::open(char bracket) {
  beforeValue();
  FOut += bracket;
  FHasValue.push_back(false);
}

void TJsonTextWriter::close(char bracket) {
  FOut += bracket;
  if (!FHasValue.empty()) FHasValue.pop_back();
}

void TJsonTextWriter::beginObject() { open('{'); }
void TJsonTextWriter::endObject() { close('}'); }
void TJsonTextWriter::beginArray() { open('['); }
void TJsonTextWriter::endArray() { close(']'); }

void TJsonTextWriter::key(std::string_view name) {
  beforeValue();
  appendJsonStringLiteral(FOut, name, FEscapes);
  FOut += ':';
  FAfterKey = true;
}

void TJsonTextWriter::stringValue(std::string_view utf8) {
  beforeValue();
  appendJsonStringLiteral(FOut, utf8, FEscapes);
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
  char buf[24];
  const auto res = std::to_chars(buf, buf + sizeof buf, value);
  FOut.append(buf, res.ptr);
}
