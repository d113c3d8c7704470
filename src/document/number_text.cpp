#include "document/number_text.h"

#include <charconv>
#include <cmath>
#include <cstdlib>

std::string floatToText(double value, int precision) {
  if (std::isnan(value)) return "NAN";
  if (std::isinf(value)) return value > 0 ? "INF" : "-INF";
  if (value == 0.0) return "0";
  if (precision < 1) precision = 1;
  if (precision > 17) precision = 17;

  // Round to `precision` significant digits in scientific form: d.ddd...e±x
  char buf[64];
  const auto res = std::to_chars(buf, buf + sizeof buf, std::fabs(value),
                                 std::chars_format::scientific, precision - 1);
  std::string sci(buf, res.ptr);
  const size_t ePos = sci.find('e');
  std::string digits;
  for (size_t i = 0; i < ePos; ++i)
    if (sci[i] != '.') digits += sci[i];
  int exponent = std::atoi(sci.c_str() + ePos + 1);
  while (digits.size() > 1 && digits.back() == '0') digits.pop_back();

  std::string out = value < 0 ? "-" : "";
  const bool fixed = exponent >= -5 && exponent < precision;
  if (fixed) {
    if (exponent >= 0) {
      const size_t intLen = static_cast<size_t>(exponent) + 1;
      if (digits.size() <= intLen) {
        out += digits + std::string(intLen - digits.size(), '0');
      } else {
        out += digits.substr(0, intLen) + "." + digits.substr(intLen);
      }
    } else {
      out += "0." + std::string(static_cast<size_t>(-exponent - 1), '0') + digits;
    }
  } else {
    out += digits.substr(0, 1);
    if (digits.size() > 1) out += "." + digits.substr(1);
    out += "E";
    if (exponent < 0) out += "-";
    out += std::to_string(std::abs(exponent));
  }
  return out;
}

std::string floatToTextWithPoint(double value, int precision) {
  std::string s = floatToText(value, precision);
  if (s.find('.') == std::string::npos && s.find('E') == std::string::npos &&
      !std::isnan(value) && !std::isinf(value))
    s += ".0";
  return s;
}

bool textToFloat(std::string_view text, double& out) {
  size_t b = 0, e = text.size();
  while (b < e && (text[b] == ' ' || text[b] == '\t')) ++b;
  while (e > b && (text[e - 1] == ' ' || text[e - 1] == '\t')) --e;
  if (b == e) return false;
  const char* first = text.data() + b;
  const char* last = text.data() + e;
  if (*first == '+') ++first;  // from_chars takes no plus sign
  double v = 0;
  const auto res = std::from_chars(first, last, v);
  if (res.ec != std::errc() || res.ptr != last) return false;
  out = v;
  return true;
}
