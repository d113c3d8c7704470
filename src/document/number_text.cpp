#include "document/number_text.h"

#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace {

// The significant digits of |value| rounded to `precision` places, without
// trailing zeros, and the decimal exponent of the first one.
struct TDecimal {
  char digits[24];
  int count = 0;
  int exponent = 0;
};

constexpr int kMaxFastShift = 27;

// Powers of ten up to 10^19, all within 64 bits.
constexpr uint64_t kPow10[20] = {1ull, 10ull, 100ull, 1000ull, 10000ull, 100000ull, 1000000ull,
                                 10000000ull, 100000000ull, 1000000000ull, 10000000000ull,
                                 100000000000ull, 1000000000000ull, 10000000000000ull,
                                 100000000000000ull, 1000000000000000ull, 10000000000000000ull,
                                 100000000000000000ull, 1000000000000000000ull,
                                 10000000000000000000ull};

unsigned __int128 pow10u128(int n) {
  if (n < 20) return kPow10[n];
  return static_cast<unsigned __int128>(kPow10[19]) * kPow10[n - 19];
}

// A single as m * 2^k with m below 2^24, read from its bits.
struct TBinarySingle {
  uint64_t m;
  int k;
};

TBinarySingle splitSingle(float f) {
  const uint32_t bits = std::bit_cast<uint32_t>(f) & 0x7FFFFFFFu;
  const int biased = static_cast<int>(bits >> 23);
  if (biased == 0) return {bits & 0x7FFFFFu, -149};  // subnormal
  return {(bits & 0x7FFFFFu) | 0x800000u, biased - 150};
}

// value * 10^shift rounded half to even, exactly. False when the numbers
// would not fit.
bool scaledSingle(const TBinarySingle& b, int shift, unsigned __int128& out) {
  if (shift < 0 || shift > kMaxFastShift) return false;
  const unsigned __int128 n = static_cast<unsigned __int128>(b.m) * pow10u128(shift);
  if (b.k >= 0) {
    if (b.k > 30) return false;
    out = n << b.k;
    return true;
  }
  const int s = -b.k;
  if (s >= 120) return false;
  const unsigned __int128 q = n >> s;
  const unsigned __int128 rem = n - (q << s);
  const unsigned __int128 half = static_cast<unsigned __int128>(1) << (s - 1);
  out = q + ((rem > half || (rem == half && (q & 1))) ? 1 : 0);
  return true;
}

// Exact digits for values that are singles, with integer arithmetic: the
// common case of every coordinate of the model. Same result as the general
// path below, at a fraction of its cost.
bool singleDigits(double v, int precision, TDecimal& d) {
  if (precision != 15) return false;
  const float f = static_cast<float>(v);
  if (static_cast<double>(f) != v) return false;
  if (!(v >= 1e-20 && v < 1e14)) return false;
  constexpr uint64_t kLow = kPow10[14], kHigh = kPow10[15];
  const TBinarySingle b = splitSingle(f);
  // First guess of the decimal exponent from the binary one; the loop below
  // corrects it where it is off by one.
  const int e2 = b.k + 64 - std::countl_zero(b.m);  // v lies in [2^(e2-1), 2^e2)
  int e10 = ((e2 - 1) * 78913) >> 18;                // floor((e2 - 1) * log10(2))
  unsigned __int128 n = 0;
  for (int attempt = 0; attempt < 3; ++attempt) {
    if (!scaledSingle(b, precision - 1 - e10, n)) return false;
    if (n >= kHigh) ++e10;
    else if (n < kLow) --e10;
    else break;
  }
  if (n >= kHigh) {  // rounding carried into a sixteenth digit: 9.99..95 -> 10
    if (n != kHigh) return false;
    n = kLow;
    ++e10;
  }
  if (n < kLow) return false;
  static constexpr char kPairs[] =
      "00010203040506070809101112131415161718192021222324252627282930313233343536373839"
      "40414243444546474849505152535455565758596061626364656667686970717273747576777879"
      "8081828384858687888990919293949596979899";
  // Fifteen digits as 3 + 4 + 4 + 4, so that the divisions do not wait on
  // each other.
  const uint64_t whole = static_cast<uint64_t>(n);
  const uint64_t high = whole / 100000000, low = whole % 100000000;
  const auto four = [](char* out, uint64_t v) {
    const size_t a = static_cast<size_t>(v / 100) * 2, b = static_cast<size_t>(v % 100) * 2;
    out[0] = kPairs[a], out[1] = kPairs[a + 1], out[2] = kPairs[b], out[3] = kPairs[b + 1];
  };
  char buf[16];
  const uint64_t top = high / 10000;  // three digits
  buf[0] = static_cast<char>('0' + top / 100);
  const size_t t = static_cast<size_t>(top % 100) * 2;
  buf[1] = kPairs[t], buf[2] = kPairs[t + 1];
  four(buf + 3, high % 10000);
  four(buf + 7, low / 10000);
  four(buf + 11, low % 10000);
  int count = 15;
  while (count > 1 && buf[count - 1] == '0') --count;
  std::memcpy(d.digits, buf, static_cast<size_t>(count));
  d.count = count;
  d.exponent = e10;
  return true;
}

void generalDigits(double v, int precision, TDecimal& d) {
  char buf[64];
  const auto res = std::to_chars(buf, buf + sizeof buf, v, std::chars_format::scientific, precision - 1);
  const char* e = static_cast<const char*>(std::memchr(buf, 'e', static_cast<size_t>(res.ptr - buf)));
  d.count = 0;
  for (const char* p = buf; p < e; ++p)
    if (*p != '.') d.digits[d.count++] = *p;
  while (d.count > 1 && d.digits[d.count - 1] == '0') --d.count;
  int exponent = 0;
  std::from_chars(e + 1 + (e[1] == '+'), res.ptr, exponent);
  d.exponent = exponent;
}

// Writes the text into out (at least 40 chars) and returns its end.
char* writeFloatText(char* out, double value, int precision, bool withPoint) {
  if (std::isnan(value)) return static_cast<char*>(std::memcpy(out, "NAN", 3)) + 3;
  if (std::isinf(value)) {
    if (value > 0) return static_cast<char*>(std::memcpy(out, "INF", 3)) + 3;
    return static_cast<char*>(std::memcpy(out, "-INF", 4)) + 4;
  }
  if (value == 0.0) {
    *out++ = '0';
    if (withPoint) *out++ = '.', *out++ = '0';
    return out;
  }
  if (precision < 1) precision = 1;
  if (precision > 17) precision = 17;

  TDecimal d;
  const double v = std::fabs(value);
  if (!singleDigits(v, precision, d)) generalDigits(v, precision, d);

  if (value < 0) *out++ = '-';
  const int exponent = d.exponent;
  const bool fixed = exponent >= -5 && exponent < precision;
  if (fixed) {
    if (exponent >= 0) {
      const int intLen = exponent + 1;
      if (d.count <= intLen) {
        std::memcpy(out, d.digits, static_cast<size_t>(d.count));
        out += d.count;
        for (int i = d.count; i < intLen; ++i) *out++ = '0';
        if (withPoint) *out++ = '.', *out++ = '0';
      } else {
        std::memcpy(out, d.digits, static_cast<size_t>(intLen));
        out += intLen;
        *out++ = '.';
        std::memcpy(out, d.digits + intLen, static_cast<size_t>(d.count - intLen));
        out += d.count - intLen;
      }
    } else {
      *out++ = '0';
      *out++ = '.';
      for (int i = 0; i < -exponent - 1; ++i) *out++ = '0';
      std::memcpy(out, d.digits, static_cast<size_t>(d.count));
      out += d.count;
    }
  } else {
    *out++ = d.digits[0];
    if (d.count > 1) {
      *out++ = '.';
      std::memcpy(out, d.digits + 1, static_cast<size_t>(d.count - 1));
      out += d.count - 1;
    }
    *out++ = 'E';
    if (exponent < 0) *out++ = '-';
    out = std::to_chars(out, out + 8, std::abs(exponent)).ptr;
  }
  return out;
}

}  // namespace

void appendFloatText(std::string& out, double value, int precision, bool withPoint) {
  char buf[48];
  const char* end = writeFloatText(buf, value, precision, withPoint);
  out.append(buf, static_cast<size_t>(end - buf));
}

std::string floatToText(double value, int precision) {
  std::string s;
  appendFloatText(s, value, precision, false);
  return s;
}

std::string floatToTextWithPoint(double value, int precision) {
  std::string s;
  appendFloatText(s, value, precision, true);
  return s;
}

void appendFixedText(std::string& out, double value, int decimals) {
  char buf[400];
  const auto res = std::to_chars(buf, buf + sizeof buf, value, std::chars_format::fixed, decimals);
  if (res.ec != std::errc()) return;
  const size_t n = static_cast<size_t>(res.ptr - buf);
  const char* p = buf;
  if (buf[0] == '-' && std::strspn(buf + 1, "0.") == n - 1) ++p;
  out.append(p, n - static_cast<size_t>(p - buf));
}

std::string fixedText(double value, int decimals) {
  std::string s;
  appendFixedText(s, value, decimals);
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
