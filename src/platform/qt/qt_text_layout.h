// Text layout through Qt's fonts: string metrics and glyph outlines.
#pragma once

#include "platform/text_layout.h"

class TQtTextLayout : public ITextLayout {
 public:
  TTextExtent measure(const std::string& text, const std::string& family, double size) override;
  TPathData outline(const std::string& text, const std::string& family, double size) override;
};
