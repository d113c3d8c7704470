#include "app/interface_fonts.h"

std::vector<std::string> interfaceFontFamilies(const std::string& langID) {
  // DejaVu Sans has Latin with every accent of the table, Cyrillic and
  // Armenian; the Japanese and Chinese fonts come next, the language's own
  // first, so that a character both scripts share takes its reader's shape.
  // IPA Gothic's Latin and Cyrillic are set wide for Japanese text, so it
  // does not lead even in Japanese. The setup script installs all three.
  if (langID == "zh-cn") return {"DejaVu Sans", "WenQuanYi Micro Hei", "IPAPGothic"};
  return {"DejaVu Sans", "IPAPGothic", "WenQuanYi Micro Hei"};
}
