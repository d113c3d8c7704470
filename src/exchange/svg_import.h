// SVG import: an SVG file's geometry as paths in millimetres, and those
// paths as shapes. Nested transforms compose; the root's width against its
// viewBox gives the size of a user unit. The reader is bounded: a file of
// more than kSvgMaxBytes, elements nested deeper than kSvgMaxDepth and
// points beyond kSvgMaxPoints are refused or skipped with a note, and
// entities are never resolved. Nothing here touches a document.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "document/path_data.h"
#include "geometry/ellipse_to_beziers.h"

inline constexpr size_t kSvgMaxBytes = 128u * 1024u * 1024u;
inline constexpr int kSvgMaxDepth = 256;
inline constexpr size_t kSvgMaxPoints = 500000;

struct TSvgText {
  std::string FText;
  TPointF FBaseline;  // where the text starts, millimetres
  double FSize = 0;   // millimetres
  double FRotation = 0;  // degrees, clockwise on the screen
};

// What the reader skipped or could not read: a phrase key, its English
// text, and what it concerns (element names and counts, a transform text).
struct TSvgNote {
  std::string FKey;
  std::string FEnglish;
  std::string FDetail;
};

struct TSvgPicture {
  std::vector<TPathData> FPaths;  // millimetres, y downwards
  std::vector<TSvgText> FTexts;
  std::vector<TSvgNote> FNotes;
  // Set when nothing could be read: not XML, no "svg" element, too large.
  TSvgNote FError;
  bool failed() const { return !FError.FKey.empty(); }
  bool empty() const { return FPaths.empty() && FTexts.empty(); }
};

TSvgPicture readSvgPicture(const std::string& bytes);

// Scales paths and texts about the top left of their bounds.
void scaleSvgPicture(TSvgPicture& picture, double factor);
// The bounds of the paths and the text positions; false when there is nothing.
bool svgPictureBounds(const TSvgPicture& picture, TRectF& bounds);

// The shapes of the picture in `style`: with disassemble each path becomes
// its "LINE" and "BEZIER" pieces, otherwise one "OTHER" shape; each text a
// "TEXT" shape in `fontFamily`. Identifiers are left at 0.
std::vector<std::unique_ptr<TPW_Path>> svgPictureShapes(const TSvgPicture& picture, bool disassemble,
                                                        const TShapeStyle& style, const std::string& fontFamily);
