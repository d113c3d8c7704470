// Lengths as the user sees and types them. Geometry is always millimetres;
// the unit mode only changes how a length is shown and read. One inch is
// exactly 25.4 mm.
#pragma once

#include <string>

enum class TUnitMode { umMM = 0, umIN = 1 };
enum class TInchDisplayMode { idmDecimal = 0, idmFraction = 1, idmHybrid = 2 };

constexpr double kMmPerInch = 25.4;

struct TLengthFormatSettings {
  TUnitMode UnitMode = TUnitMode::umMM;
  TInchDisplayMode InchDisplayMode = TInchDisplayMode::idmHybrid;
  int InchDecimalDigits = 6;
  int InchFractionDenom = 64;  // finest fraction shown
  int MmDecimalDigits = 2;
  int LargeTickInterval = 10;  // ticks from heavy line to heavy line (grid, rulers)
  int SmallTickInterval = 5;   // index of the middle line

  // The settings a fresh switch to `unit` gives: all fields at once.
  static TLengthFormatSettings defaultsFor(TUnitMode unit);
  bool isInch() const { return UnitMode == TUnitMode::umIN; }
  bool operator==(const TLengthFormatSettings&) const = default;
};

// "12.70 mm", "1/2 in (0.500000 in)", "0.393701 in", ... `withUnit` adds the
// unit word; `fractionOnly` drops the decimal form behind an exact fraction
// in the hybrid inch display.
std::string FormatLength(double mm, const TLengthFormatSettings& settings, bool withUnit = true,
                         bool fractionOnly = false);

// A value with exactly `digits` decimals (a negative count counts as 0),
// halves rounded away from zero, a point as decimal mark: "0.50", "12".
std::string formatFixedDecimals(double v, int digits);

// A value with at most `maxDecimals` decimals and no trailing zeros, no
// leading zero before the point either: 0.5 -> ".5", 4 -> "4", 0 -> "0".
std::string formatOptionalDecimals(double v, int maxDecimals);

// Inches as a reduced fraction of `denom` (64 when not positive): "-1 3/8".
std::string formatInchFraction(double inches, int denom, bool withUnit);
