#include "app/unit_captions.h"

#define PCRE2_CODE_UNIT_WIDTH 8
#include <pcre2.h>

#include <memory>

namespace {

struct TCodeDeleter {
  void operator()(pcre2_code* c) const { pcre2_code_free(c); }
};

// Compiled once; the pattern is fixed.
const pcre2_code* unitWordPattern() {
  static const std::unique_ptr<pcre2_code, TCodeDeleter> code = [] {
    static const char kPattern[] = "(?<=\\s|^)mm(?=\\s|$)";
    int error = 0;
    PCRE2_SIZE offset = 0;
    return std::unique_ptr<pcre2_code, TCodeDeleter>(
        pcre2_compile(reinterpret_cast<PCRE2_SPTR>(kPattern), PCRE2_ZERO_TERMINATED, PCRE2_UTF,
                      &error, &offset, nullptr));
  }();
  return code.get();
}

}  // namespace

std::string replaceUnitWordWithInch(const std::string& caption) {
  const pcre2_code* code = unitWordPattern();
  if (!code || caption.empty()) return caption;
  const char kReplacement[] = "in";
  PCRE2_SIZE outLen = caption.size() + 16;
  std::string out(outLen, '\0');
  int rc = pcre2_substitute(code, reinterpret_cast<PCRE2_SPTR>(caption.data()), caption.size(), 0,
                            PCRE2_SUBSTITUTE_GLOBAL | PCRE2_SUBSTITUTE_OVERFLOW_LENGTH, nullptr,
                            nullptr, reinterpret_cast<PCRE2_SPTR>(kReplacement), 2,
                            reinterpret_cast<PCRE2_UCHAR*>(out.data()), &outLen);
  if (rc == PCRE2_ERROR_NOMEMORY) {
    out.assign(outLen, '\0');
    rc = pcre2_substitute(code, reinterpret_cast<PCRE2_SPTR>(caption.data()), caption.size(), 0,
                          PCRE2_SUBSTITUTE_GLOBAL, nullptr, nullptr,
                          reinterpret_cast<PCRE2_SPTR>(kReplacement), 2,
                          reinterpret_cast<PCRE2_UCHAR*>(out.data()), &outLen);
  }
  if (rc <= 0) return caption;  // no match, or text that is no valid UTF-8
  out.resize(outLen);
  return out;
}

void applyUnitToCaptions(const std::vector<ICaptionLabel*>& labels, bool isInch, TMmInchDict& dict) {
  for (ICaptionLabel* label : labels) {
    if (!label) continue;
    if (isInch) {
      const std::string old = label->caption();
      const std::string changed = replaceUnitWordWithInch(old);
      if (changed != old) {
        dict.emplace(label, old);  // a label converted twice keeps its first caption
        label->setCaption(changed);
      }
    } else {
      const auto it = dict.find(label);
      if (it == dict.end()) continue;
      label->setCaption(it->second);
      dict.erase(it);
    }
  }
}
