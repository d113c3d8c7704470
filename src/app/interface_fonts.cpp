#include "app/interface_fonts.h"

std::vector<std::string> interfaceFontFamilies(const std::string& langID) {
  // DejaVu Sans has Latin with every accent of the table, Cyrillic and
  // Armenian; IPA Gothic has Japanese, WenQuanYi Micro Hei Simplified
  // Chinese. The setup script installs all three.
  if (langID == "ja") return {"IPAPGothic", "IPAGothic", "DejaVu Sans", "WenQuanYi Micro Hei"};
  if (langID == "zh-cn") return {"WenQuanYi Micro Hei", "DejaVu Sans", "IPAPGothic"};
  return {"DejaVu Sans", "IPAPGothic", "WenQuanYi Micro Hei"};
}
