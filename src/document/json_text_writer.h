// The JSON text writer of the program: project files, the clipboard file and
// the local API's replies all go through it. It writes one line of pure
// ASCII, keys in the order they are given, and number text exactly as the
// caller hands it over, so that each format keeps its own number rules.
//
// Inside strings only the quote and the backslash take a short escape;
// every other character below 32 or above 127 (and DEL, in project files)
// becomes a \uXXXX escape (line ends and tabs too, not the short "\n"
// forms), characters beyond the basic plane a surrogate pair, and bytes
// that are not valid UTF-8 U+FFFD, one for each bad byte.
#pragma once

#include <string>
#include <string_view>
#include <vector>

// The two fixed formats spell escapes slightly differently; readers compare
// their bytes, so each keeps its own.
enum class TJsonEscapes {
  // Project and clipboard files: upper-case hex digits, DEL (127) escaped.
  ProjectFile,
  // Local API replies: lower-case hex digits, DEL left as it is.
  ApiReply,
};

class TJsonTextWriter {
 public:
  explicit TJsonTextWriter(size_t reserve = 0, TJsonEscapes escapes = TJsonEscapes::ProjectFile);

  void beginObject();
  void endObject();
  void beginArray();
  void endArray();
  // The key of the next value in the current object.
  void key(std::string_view name);

  // A string value, escaped as above.
  void stringValue(std::string_view utf8);
  // Number text exactly as given (it must be valid JSON number text).
  void rawNumber(std::string_view text);
  void boolValue(bool value);
  void nullValue();
  void intValue(long long value);
  // The output, after the separator of a new value: the caller appends
  // exactly one complete JSON value to it. For the bulk of large texts,
  // where a call per number and brace would cost more than the writing.
  std::string& appendValue() {
    beforeValue();
    return FOut;
  }

  // Shortcut for a key and its value.
  void stringField(std::string_view name, std::string_view utf8) { key(name); stringValue(utf8); }

  // Room for the whole text, when its size can be told beforehand. A large
  // text asks the system for huge pages: filling tens of megabytes page by
  // page costs more than writing them.
  void reserve(size_t bytes);

  const std::string& text() const { return FOut; }
  std::string take() { return std::move(FOut); }

 private:
  std::string FOut;
  // One entry per open object or array: true once it holds a value.
  std::vector<bool> FHasValue;
  bool FAfterKey = false;
  TJsonEscapes FEscapes;

  void open(char bracket);
  void close(char bracket);
  void beforeValue() {
    if (FAfterKey) {
      FAfterKey = false;
    } else if (!FHasValue.empty()) {
      if (FHasValue.back()) FOut += ',';
      FHasValue.back() = true;
    }
  }
};

// Appends utf8 as a JSON string literal, quotes included, escaped as above.
void appendJsonStringLiteral(std::string& out, std::string_view utf8, TJsonEscapes escapes);
// The escaped JSON string literal of UTF-8 text as a project file writes it.
std::string jsonAsciiString(std::string_view utf8);
