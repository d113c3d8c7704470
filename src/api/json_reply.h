// The writer of the local API's replies: the program's JSON text writer
// with the API's spelling of escapes and its number convention. One line,
// keys in the order they are given, text as pure ASCII (characters below 32
// and above 127 as \u escapes with lower-case hex digits, those beyond the
// basic plane as surrogate pairs).
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "document/json_text_writer.h"

class TJsonReply {
 public:
  TJsonReply() : FWriter(256, TJsonEscapes::ApiReply) {}

  TJsonReply& beginObject() { FWriter.beginObject(); return *this; }
  TJsonReply& endObject() { FWriter.endObject(); return *this; }
  TJsonReply& beginArray() { FWriter.beginArray(); return *this; }
  TJsonReply& endArray() { FWriter.endArray(); return *this; }
  // The key of the next value inside an object.
  TJsonReply& key(std::string_view name) { FWriter.key(name); return *this; }

  // Whole numbers, written plainly.
  TJsonReply& integer(int64_t v) { FWriter.intValue(v); return *this; }
  // A single of the model, widened to double: 15 significant digits, ".0"
  // added when the text has neither point nor exponent. JSON has no NaN or
  // infinity, so a value that is not finite is written as null.
  TJsonReply& single(float v);
  // Number text taken as it is.
  TJsonReply& numberText(std::string_view text) { FWriter.rawNumber(text); return *this; }
  TJsonReply& text(std::string_view s) { FWriter.stringValue(s); return *this; }
  // The output, after the separator of a new value: the caller appends
  // exactly one complete JSON value to it. For the bulk of large replies.
  std::string& appendValue() { return FWriter.appendValue(); }
  TJsonReply& boolean(bool v) { FWriter.boolValue(v); return *this; }
  TJsonReply& null() { FWriter.nullValue(); return *this; }

  // key + value in one call.
  TJsonReply& field(std::string_view name, int v) { return key(name).integer(v); }
  TJsonReply& field(std::string_view name, const char* s) { return key(name).text(s); }
  TJsonReply& field(std::string_view name, std::string_view s) { return key(name).text(s); }
  TJsonReply& field(std::string_view name, bool v) { return key(name).boolean(v); }
  TJsonReply& fieldSingle(std::string_view name, float v) { return key(name).single(v); }

  // Room for the whole reply, when its size can be told beforehand (huge
  // pages for a large one).
  void reserve(size_t bytes) { FWriter.reserve(bytes); }

  const std::string& str() const { return FWriter.text(); }
  std::string take() { return FWriter.take(); }

 private:
  TJsonTextWriter FWriter;
};

// Appends a model single as TJsonReply::single writes it.
void appendJsonSingle(std::string& out, float v);
// Appends s as a JSON string literal, quotes included, escaped to ASCII.
void appendJsonString(std::string& out, std::string_view s);
