// The project file's text: one JSON object on one line of ASCII, stored in
// UTF-8 with a byte-order mark. This part writes the whole text from a
// document and turns a file's bytes back into a JSON tree; what the tree
// means is read by the project load of the controller.
#pragma once

#include <string>
#include <vector>

#include <nlohmann/json.hpp>

class TShapeList;
class TPW_Path;
class TJsonTextWriter;

inline constexpr const char* kProjectFileType = "Pelwright";
inline constexpr const char* kCopiedShapesFileType = "Pelwright_Copied_Shapes";
inline constexpr const char* kCopiedShapesFileName = "copied_shapes.json";
inline constexpr const char* kProjectFileVersion = "3.6.1";
inline constexpr const char* kUtf8Bom = "\xEF\xBB\xBF";

// A backdrop object as the file holds it, keys in the file's order, so that
// backdrops go through a load and a save unchanged.
struct TBackdropData {
  nlohmann::ordered_json FJson;
};

// The whole file: BOM, the object ("meta", "layers", "shapes", "backdrops",
// "printareas") and a line end.
std::string projectFileText(const TShapeList& list, const std::vector<TBackdropData>& backdrops);
// The clipboard file: "meta" and "shapes" only.
std::string copiedShapesFileText(const std::vector<const TPW_Path*>& shapes);

// Writes any JSON value in the file's forms: strings escaped to ASCII,
// whole numbers as they are, other numbers with 15 significant digits and
// ".0" when they show no point, object keys in their order.
void writeJsonValue(TJsonTextWriter& w, const nlohmann::ordered_json& v);

// How deep arrays and objects may nest in a file before it is refused.
inline constexpr int kMaxJsonDepth = 200;

enum class TJsonTextState {
  Object,     // the text is a JSON object: `root` holds it
  NotObject,  // valid JSON of another kind
  NotJson,    // not JSON at all, or nested deeper than kMaxJsonDepth
};

struct TParsedJsonText {
  TJsonTextState FState = TJsonTextState::NotJson;
  nlohmann::ordered_json FRoot;
  std::string FProblem;  // what the parser said, for NotJson
};

// Drops a byte-order mark, replaces byte sequences that are not UTF-8 by
// U+FFFD (as a text file loader would keep the rest of the text), refuses
// deep nesting before the parser sees it, and parses.
// A callback, when given, sees each value as the parser completes it and
// may take it out of the tree (nlohmann's parser callback).
TParsedJsonText parseJsonFileText(const std::string& bytes,
                                  const nlohmann::ordered_json::parser_callback_t& callback = nullptr);

// Replaces invalid UTF-8 sequences by U+FFFD; valid text comes back as it is.
std::string repairUtf8(const std::string& bytes);
