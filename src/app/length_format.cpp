#include "app/length_format.h"

#include <cmath>
#include <cstdio>
#include <numeric>

TLengthFormatSettings TLengthFormatSettings::defaultsFor(TUnitMode unit) {
  TLengthFormatSettings s;
  s.UnitMode = unit;
  if (unit == TUnitMode::umIN) {
    s.LargeTickInterval = 8;
    s.SmallTickInterval = 4;
  }
  return s;
}

namespace {

constexpr double kMaxExactInteger = 9.0e15;

// Digits of a non-negative whole number held in a double.
std::string wholeDigits(double w) {
  char buf[64];
  std::snprintf(buf, sizeof buf, "%.0f", w);
  return buf;
}

}  // namespace

std::string formatFixedDecimals(double v, int digits) {
  if (std::isnan(v)) return "NAN";
  if (std::isinf(v)) return v > 0 ? "INF" : "-INF";
  if (digits < 0) digits = 0;
  if (digits > 15) digits = 15;
  const double p = std::pow(10.0, digits);
  const double scaled = std::round(std::fabs(v) * p);  // halves away from zero
  if (scaled > kMaxExactInteger) {
    char buf[512];
    std::snprintf(buf, sizeof buf, "%.*f", digits, v);
    return buf;
  }
  std::string out = (v < 0 && scaled != 0) ? "-" : "";
  const double whole = std::floor(scaled / p);
  out += wholeDigits(whole);
  if (digits > 0) {
    std::string frac = wholeDigits(scaled - whole * p);
    out += "." + std::string(static_cast<size_t>(digits) - frac.size(), '0') + frac;
  }
  return out;
}

std::string formatOptionalDecimals(double v, int maxDecimals) {
  std::string s = formatFixedDecimals(v, maxDecimals);
  const size_t point = s.find('.');
  if (point != std::string::npos) {
    while (s.back() == '0') s.pop_back();
    if (s.back() == '.') s.pop_back();
  }
  // Optional digits before the point: "0.5" -> ".5", "-0.5" -> "-.5".
  if (s.rfind("0.", 0) == 0) s.erase(0, 1);
  else if (s.rfind("-0.", 0) == 0) s.erase(1, 1);
  if (s == "-0") s = "0";
  return s;
}

std::string formatInchFraction(double v, int denom, bool withUnit) {
  long long d = denom > 0 ? denom : 64;
  const std::string sign = v < 0 ? "-" : "";
  // Round to the nearest 1/d, ties to even.
  const long long n = static_cast<long long>(std::nearbyint(std::fabs(v) * double(d)));
  const long long whole = n / d;
  long long rem = n % d;
  std::string out = sign;
  if (rem == 0) {
    out += std::to_string(whole);
  } else {
    const long long g = std::gcd(rem, d);
    rem /= g;
    d /= g;
    if (whole != 0) out += std::to_string(whole) + " ";
    out += std::to_string(rem) + "/" + std::to_string(d);
  }
  if (withUnit) out += " in";
  return out;
}

std::string FormatLength(double mm, const TLengthFormatSettings& settings, bool withUnit,
                         bool fractionOnly) {
  switch (settings.UnitMode) {
    case TUnitMode::umMM: {
      std::string s = formatFixedDecimals(mm, settings.MmDecimalDigits);
      if (withUnit) s += " mm";
      return s;
    }
    case TUnitMode::umIN: {
      double v = mm / kMmPerInch;
      if (std::fabs(v) < 0.0001) v = 0.0;
      auto decimal = [&] {
        std::string s = formatFixedDecimals(v, settings.InchDecimalDigits);
        if (withUnit) s += " in";
        return s;
      };
      switch (settings.InchDisplayMode) {
        case TInchDisplayMode::idmDecimal:
          return decimal();
        case TInchDisplayMode::idmFraction:
          return formatInchFraction(v, settings.InchFractionDenom, withUnit);
        case TInchDisplayMode::idmHybrid: {
          const int d = settings.InchFractionDenom > 0 ? settings.InchFractionDenom : 64;
          const double scaled = v * d;
          if (std::fabs(scaled - std::round(scaled)) <= 0.0002) {
            std::string s = formatInchFraction(v, d, withUnit);
            if (!fractionOnly) s += " (" + decimal() + ")";
            return s;
          }
          return decimal();
        }
      }
      return decimal();
    }
  }
  // An unknown mode reads as millimetres with two decimals.
  std::string s = formatFixedDecimals(mm, 2);
  if (withUnit) s += " mm";
  return s;
}
