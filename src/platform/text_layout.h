// Text layout as the drawing needs it: the size of a string and the outline
// of its glyphs, in model units (a font size of 10 gives a line about 10 mm
// high). The window's toolkit provides the real service; without one, text
// measures nothing and has no outline.
#pragma once

#include <string>

#include "document/path_data.h"

struct TTextExtent {
  double width = 0.0;   // advance width of the string
  double height = 0.0;  // line height of the font
};

class ITextLayout {
 public:
  virtual ~ITextLayout() = default;
  virtual TTextExtent measure(const std::string& text, const std::string& family, double size) = 0;
  // Glyph outlines of the string laid out left to right, the top left of
  // its line box at the origin.
  virtual TPathData outline(const std::string& text, const std::string& family, double size) = 0;
};

// The service in use; never null (a service that measures nothing stands in
// until the platform installs one). Not owned.
ITextLayout& textLayout();
void setTextLayout(ITextLayout* service);
