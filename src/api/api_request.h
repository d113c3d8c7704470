// Reading the requests of the local API: the JSON body, required numbers,
// points, shape identifiers in the path, and the palette row and layer of
// a new shape. Every endpoint reads its input through these, so that a
// given key is read the same way everywhere.
#pragma once

#include <array>
#include <nlohmann/json.hpp>
#include <optional>
#include <stdexcept>
#include <string>

#include "document/types.h"

class TPalletList;

using TJson = nlohmann::json;

// A request that cannot be read: a required number missing or of another
// JSON type. The router answers it with 500 and the message.
class TApiRequestError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// A number beyond the sane range (a coordinate, size or radius past
// kMaxLengthMm). Nothing has changed when it is thrown; the router answers
// {"error":...} with status 200, the row endpoints {"ok":false,...}.
class TApiRangeError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// The value, or TApiRangeError naming `name` when its size passes
// kMaxLengthMm. Angles are held to the same bound.
double checkedLength(double value, const char* name);
// requireNumber within kMaxLengthMm.
double requireLength(const TJson& obj, const char* name);

// Nesting deeper than this is not taken as JSON at all.
inline constexpr int kMaxBodyDepth = 200;

// The body as a JSON object; nothing when it is not valid JSON, is nested
// too deeply, or is valid JSON of another kind (an array, a number...).
std::optional<TJson> parseJsonObject(const std::string& body);

// obj[name] as a double. Throws TApiRequestError when the key is missing or
// holds anything but a number.
double requireNumber(const TJson& obj, const char* name);
// Two required lengths narrowed to a point.
TPointF requirePoint(const TJson& obj, const char* nameX, const char* nameY);

// The four points of a Bezier from "points" ([P0, C1, C2, P1], each an
// object with "x" and "y"). Nothing when "points" is missing, is not an
// array or has another length; a point without numbers throws.
std::optional<std::array<TPointF, 4>> readBezierPoints(const TJson& obj);

// A JSON number that holds a whole value within 32 bits.
std::optional<int> wholeNumber(const TJson& value);

// The identifier of a path such as "/shapes/12": the text after the last
// "/" as a 32-bit decimal integer, an optional sign allowed. Nothing when
// it is not one, or when it is negative.
std::optional<int> parseShapeId(const std::string& path);

// The palette row for a shape: "paletteIdx" (one-based) when it is a whole
// number naming a row of the palette, else `activeRow`.
int resolvePaletteRow(const TJson& obj, const TPalletList& pallets, int activeRow);
// The layer for a new shape: "layerId" when it is a whole number, taken
// without looking at the layer list; else `activeLayer`.
int resolveLayer(const TJson& obj, int activeLayer);

// ---- optional values and point objects ----
// obj[name] as a double, or `fallback` when the key is missing. Throws
// TApiRequestError when the key holds anything but a number.
double optionalNumber(const TJson& obj, const char* name, double fallback);
// obj[name] as text, or `fallback` when the key is missing. Throws when the
// key holds anything but a string.
std::string optionalText(const TJson& obj, const char* name, const std::string& fallback);
// obj[name] as a point: an object with the numbers "x" and "y". Throws
// when the key is missing, is not an object, or lacks either number.
TPointF requirePointObject(const TJson& obj, const char* name);
// obj[name] as a whole number within 32 bits, rounded down from a
// fraction; `fallback` when missing. Throws for anything but a number.
int optionalWholeNumber(const TJson& obj, const char* name, int fallback);
