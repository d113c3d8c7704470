#include <gtest/gtest.h>

#include <cmath>
#include <charconv>
#include <cstring>
#include <limits>
#include <random>

#include "document/number_text.h"

TEST(NumberText, SinglesWidenedToFifteenDigits) {
  EXPECT_EQ(floatToText(0.1f), "0.100000001490116");
  EXPECT_EQ(floatToText(12.3f), "12.3000001907349");
  EXPECT_EQ(floatToText(10.0f), "10");
  EXPECT_EQ(floatToText(-2.5f), "-2.5");
  EXPECT_EQ(floatToText(0.0), "0");
  EXPECT_EQ(floatToText(-0.0), "0");
  EXPECT_EQ(floatToText(1234567.0), "1234567");
}

TEST(NumberText, ScientificBelowOneHundredThousandthAndBeyondFifteenDigits) {
  EXPECT_EQ(floatToText(0.00001), "0.00001");
  EXPECT_EQ(floatToText(0.000001), "1E-6");
  EXPECT_EQ(floatToText(-1.5e-7), "-1.5E-7");
  EXPECT_EQ(floatToText(1e15), "1E15");
  EXPECT_EQ(floatToText(999999999999999.0), "999999999999999");
  EXPECT_EQ(floatToText(123456789012345678.0), "1.23456789012346E17");
  EXPECT_EQ(floatToText(2147483648.0), "2147483648");
}

TEST(NumberText, ParsingIsStrictAndLocaleFree) {
  double v = 0;
  EXPECT_TRUE(textToFloat(" 12.5 ", v));
  EXPECT_DOUBLE_EQ(v, 12.5);
  EXPECT_TRUE(textToFloat("+1E-6", v));
  EXPECT_DOUBLE_EQ(v, 1e-6);
  EXPECT_FALSE(textToFloat("12,5", v));
  EXPECT_FALSE(textToFloat("", v));
  EXPECT_FALSE(textToFloat("1.5mm", v));
}

TEST(NumberText, TextOfEverySingleReadsBackExactly) {
  // Fifteen digits are more than a single needs, so the text form of path
  // data and project files loses nothing.
  for (float f : {0.1f, 1.0f / 3.0f, 123.456f, -987654.3f, 1e-6f, 3.4e38f, 1.17549435e-38f}) {
    double back = 0;
    ASSERT_TRUE(textToFloat(floatToText(f), back)) << floatToText(f);
    EXPECT_EQ(static_cast<float>(back), f) << floatToText(f);
  }
}

namespace {

// The writer as first built, through the library's correctly rounded
// scientific form: the oracle for the integer path that singles take.
std::string referenceFloatText(double value) {
  if (value == 0.0) return "0";
  char buf[64];
  const auto res = std::to_chars(buf, buf + sizeof buf, std::fabs(value), std::chars_format::scientific, 14);
  std::string sci(buf, res.ptr);
  const size_t ePos = sci.find('e');
  std::string digits;
  for (size_t i = 0; i < ePos; ++i)
    if (sci[i] != '.') digits += sci[i];
  const int exponent = std::atoi(sci.c_str() + ePos + 1);
  while (digits.size() > 1 && digits.back() == '0') digits.pop_back();
  std::string out = value < 0 ? "-" : "";
  if (exponent >= -5 && exponent < 15) {
    if (exponent >= 0) {
      const size_t intLen = static_cast<size_t>(exponent) + 1;
      if (digits.size() <= intLen) out += digits + std::string(intLen - digits.size(), '0');
      else out += digits.substr(0, intLen) + "." + digits.substr(intLen);
    } else {
      out += "0." + std::string(static_cast<size_t>(-exponent - 1), '0') + digits;
    }
  } else {
    out += digits.substr(0, 1);
    if (digits.size() > 1) out += "." + digits.substr(1);
    out += "E" + std::string(exponent < 0 ? "-" : "") + std::to_string(std::abs(exponent));
  }
  return out;
}

}  // namespace
