// A small JSON text writer for the replies of the local API. It writes in
// one line, keys in the order they are given, numbers as text that is taken
// verbatim (so every value goes through the one number writer), and text
// as pure ASCII: characters below 32 and above 127 become \u escapes, those
// beyond the basic plane as surrogate pairs.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

class TJsonReply {
 public:
  TJsonReply() { FOut.reserve(256); }

  TJsonReply& beginObject();
  TJsonReply& endObject();
  TJsonReply& beginArray();
  TJsonReply& endArray();
  // The key of the next value inside an object.
  TJsonReply& key(std::string_view name);

  // Whole numbers, written plainly.
  TJsonReply& integer(int64_t v);
  // A single of the model, widened to double: 15 significant digits, ".0"
  // added when the text has neither point nor exponent. JSON has no NaN or
  // infinity, so a value that is not finite is written as null.
  TJsonReply& single(float v);
  // Number text taken as it is.
  TJsonReply& numberText(std::string_view text);
  TJsonReply& text(std::string_view s);
  // The output, after the separator of a new value: the caller appends
  // exactly one complete JSON value to it. For the bulk of large replies.
  std::string& appendValue() {
    beforeValue();
    return FOut;
  }
  TJsonReply& boolean(bool v);
  TJsonReply& null();

  // key + value in one call.
  TJsonReply& field(std::string_view name, int v) { return key(name).integer(v); }
  TJsonReply& field(std::string_view name, const char* s) { return key(name).text(s); }
  TJsonReply& field(std::string_view name, std::string_view s) { return key(name).text(s); }
  TJsonReply& field(std::string_view name, bool v) { return key(name).boolean(v); }
  TJsonReply& fieldSingle(std::string_view name, float v) { return key(name).single(v); }

  // Room for the whole reply, when its size can be told beforehand. A
  // large reply asks the system for huge pages: filling tens of megabytes
  // page by page costs more than writing them.
  void reserve(size_t bytes);

  const std::string& str() const { return FOut; }
  std::string take() { return std::move(FOut); }

 private:
  std::string FOut;
  // One entry per open object or array: true until its first member.
  std::vector<bool> FFirst;
  bool FAfterKey = false;
  void beforeValue();
};

// Appends a model single as TJsonReply::single writes it.
void appendJsonSingle(std::string& out, float v);
// Appends s as a JSON string literal, quotes included, escaped to ASCII.
void appendJsonString(std::string& out, std::string_view s);
