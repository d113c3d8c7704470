// The value forms of the project file and its relatives (clipboard file,
// repository parts): how a number, a flag, a point, a colour, a dash and an
// identifier are written as JSON text, and read back tolerantly.
//
//   num   a JSON string of the float widened to double, 15 significant
//         digits, ".0" added when neither a point nor an exponent shows
//   bool  a JSON string, "-1" for true and "0" for false
//   int   a JSON string of decimal digits
//   pt    a JSON array of two numbers written as num is, unquoted
//   col   a colour name of the standard table ("Red") or "#AARRGGBB"
//   dash  "Solid", "Dash", "Dot", "DashDot", "DashDotDot", "Custom"
//   guid  "{XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}"
#pragma once

#include <stdexcept>
#include <string>

#include <nlohmann/json.hpp>

#include "document/types.h"

class TJsonTextWriter;

// A value of the wrong kind, a number that does not read, a key that is
// required and missing. The message says which key and what is wrong.
class TJsonFormError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// ---- writing ----
std::string numText(float value);
// As numText, but a value that is no finite number is written 0.0, so the
// array stays valid JSON.
std::string ptNumberText(float value);
void writeNum(TJsonTextWriter& w, const char* key, float value);
void writeBool(TJsonTextWriter& w, const char* key, bool value);
void writeInt(TJsonTextWriter& w, const char* key, int value);
void writePt(TJsonTextWriter& w, const char* key, const TPointF& p);
void writeCol(TJsonTextWriter& w, const char* key, TAlphaColor c);

// "Red" for an opaque red; "#80FF0000" for one without a name.
std::string colorToText(TAlphaColor c);
// Takes a name (any case) or "#" with eight (or six, opaque) hex digits.
bool colorFromText(const std::string& text, TAlphaColor& out);

// ---- reading ----
// Each takes the value under `key` of `jo`; `what` names the place for a
// message. A JSON number is accepted where text is written, and text where
// a number is. Throws TJsonFormError on a value of the wrong kind.
float readNum(const nlohmann::ordered_json& v, const std::string& what);
bool readBool(const nlohmann::ordered_json& v, const std::string& what);
// Whole numbers of at most nine digits (a billion and beyond is refused,
// so that identifier counters cannot overflow).
int readInt(const nlohmann::ordered_json& v, const std::string& what);
TPointF readPt(const nlohmann::ordered_json& v, const std::string& what);
TAlphaColor readCol(const nlohmann::ordered_json& v, const std::string& what);
TStrokeDash readDash(const nlohmann::ordered_json& v, const std::string& what);
std::string readText(const nlohmann::ordered_json& v, const std::string& what);
// An unreadable identifier reads as a fresh one.
TGUID readGuid(const nlohmann::ordered_json& v);

// The value under key, or null when the object lacks it.
const nlohmann::ordered_json* findKey(const nlohmann::ordered_json& jo, const char* key);
// The value under key; a missing key is a TJsonFormError naming it.
const nlohmann::ordered_json& requireKey(const nlohmann::ordered_json& jo, const char* key, const std::string& where);
