// Fuzzing the SVG importer: any bytes as an SVG file. The reader must
// refuse or read them without a crash, a hang or undefined behaviour, keep
// within its limits, and what it read must become shapes.
#include <cmath>
#include <cstdint>
#include <string>

#include "document/pw_path.h"
#include "exchange/svg_import.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  TSvgPicture picture = readSvgPicture(bytes);
  if (picture.failed()) return 0;
  size_t points = 0;
  for (const TPathData& p : picture.FPaths) {
    points += p.Count();
    for (const TPathPoint& q : p.points())
      if (!(std::fabs(q.Point.x) <= 1e6f) || !(std::fabs(q.Point.y) <= 1e6f)) __builtin_trap();
  }
  if (points > kSvgMaxPoints + 100000) __builtin_trap();
  TRectF bounds;
  if (svgPictureBounds(picture, bounds) && bounds.width() > 0) scaleSvgPicture(picture, 10.0 / bounds.width());
  picture.FTexts.clear();  // no text layout here
  for (bool disassemble : {true, false}) {
    const auto shapes = svgPictureShapes(picture, disassemble, TShapeStyle{}, "Arial");
    for (const auto& s : shapes)
      if (s->FShapeType != ShapeType::Line && s->FShapeType != ShapeType::Bezier && s->FShapeType != ShapeType::Other)
        __builtin_trap();
  }
  return 0;
}
