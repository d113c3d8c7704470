// A JSON text writer that takes number text as it is given, so that each
// file or reply keeps its own number rules. It writes one line of ASCII:
// every character below 32 or above 127 inside a string becomes a \uXXXX
// escape (characters beyond the basic plane as a surrogate pair), and so do
// line ends, tabs and the like, not the short "\n" forms. Only the quote and
// the backslash take a short escape.
#pragma once

#include <string>
#include <string_view>
#include <vector>

class TJsonTextWriter {
 public:
  explicit TJsonTextWriter(size_t reserve = 0);

  void beginObject();
  void endObject();
  void beginArray();
  void endArray();
  // The key of the next value in the current object.
  void key(std::string_view name);

  // A string value, escaped as above. Bytes that are not valid UTF-8 are
  // written as U+FFFD.
  void stringValue(std::string_view utf8);
  // Number text exactly as given (it must be valid JSON number text).
  void rawNumber(std::string_view text);
  void boolValue(bool value);
  void nullValue();
  void intValue(long long value);
  // Well-formed JSON text put in as it stands (a value already written).
  void rawValue(std::string_view json);

  // Shortcuts for a key and its value.
  void stringField(std::string_view name, std::string_view utf8) { key(name); stringValue(utf8); }
  void rawNumberField(std::string_view name, std::string_view text) { key(name); rawNumber(text); }

  const std::string& text() const { return FOut; }
  std::string take() { return std::move(FOut); }

 private:
  std::string FOut;
  // One entry per open object or array: true once it holds a value.
  std::vector<bool> FHasValue;
  bool FAfterKey = false;
  void beforeValue();
};

// The escaped JSON string literal of UTF-8 text, quotes included.
std::string jsonAsciiString(std::string_view utf8);
