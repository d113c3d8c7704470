#include "app/number_box.h"

#include <cmath>

#include "document/number_text.h"

namespace {

int gEventsHeld = 0;

double roundTo(double v, double step) { return std::nearbyint(v / step) * step; }

}  // namespace

int numberBoxEventsHeld() { return gEventsHeld; }
TNumberBoxEventHold::TNumberBoxEventHold() { ++gEventsHeld; }
TNumberBoxEventHold::~TNumberBoxEventHold() { --gEventsHeld; }

void TPlainNumberBox::setValue(double v) {
  if (v < FMin) v = FMin;
  if (v > FMax) v = FMax;
  FValue = v;
}

std::string TPlainNumberBox::text() const {
  return FEditing ? FEditText : formatFixedDecimals(FValue, FDigits);
}

void TPlainNumberBox::setLimits(double minValue, double maxValue) {
  FMin = minValue;
  FMax = maxValue;
}

void TPlainNumberBox::setSteps(double smallStep, double largeStep) {
  FSmallStep = smallStep;
  FLargeStep = largeStep;
}

double ReadLengthBox(const INumberBox& box, bool isInch) {
  double v = box.value();
  if (box.isEditing()) {
    double typed = 0;
    if (textToFloat(box.text(), typed)) v = typed;
  }
  return isInch ? v * kMmPerInch : v;
}

void WriteLengthBox(double mm, INumberBox& box, const TLengthFormatSettings& settings) {
  const bool inch = settings.isInch();
  const double v = inch ? mm / kMmPerInch : mm;
  const int digits = inch ? settings.InchDecimalDigits : settings.MmDecimalDigits;
  if (box.decimalDigits() != digits) box.setDecimalDigits(digits);
  box.setValue(v);
}

double inchStepForMm(double mm) {
  struct TRow {
    double below, inches;
  };
  static constexpr TRow kRows[] = {
      {0.11, 1.0 / 64}, {0.51, 1.0 / 32}, {1.1, 1.0 / 16}, {3.126, 1.0 / 8}, {4.1, 5.0 / 32},
      {5.1, 3.0 / 16},  {7.6, 1.0 / 4},   {10.1, 3.0 / 8}, {15.1, 1.0 / 2},  {30.1, 1.0},
      {60.1, 2.0},      {120.1, 4.0},
  };
  if (mm < 0.05) return mm / kMmPerInch;
  for (const auto& r : kRows)
    if (mm < r.below) return r.inches;
  return mm / kMmPerInch;
}

double mmStepForInch(double inches) {
  struct TRow {
    double upTo, mm;
  };
  static constexpr TRow kRows[] = {
      {1.0 / 64, 0.1}, {1.0 / 32, 0.5}, {1.0 / 16, 1},  {1.0 / 8, 3},  {0.171875, 4},
      {3.0 / 16, 5},   {1.0 / 4, 7.5},  {3.0 / 8, 10},  {1.0 / 2, 15}, {1.0, 25},
      {2.0, 50},       {4.0, 100},
  };
  if (inches < 1.0 / 64) return inches * kMmPerInch;
  for (const auto& r : kRows)
    if (inches <= r.upTo) return r.mm;
  return inches * kMmPerInch;
}

double mmValueToInchGrid(double mm) {
  const double size = std::fabs(mm);
  double step = 1.0 / 4;
  if (size < 5) step = 1.0 / 64;
  else if (size < 20) step = 1.0 / 32;
  else if (size < 50) step = 1.0 / 16;
  else if (size < 100) step = 1.0 / 8;
  return roundTo(mm / kMmPerInch, step);
}

double inchValueToMmRounded(double inches) {
  const double v = inches * kMmPerInch;
  const double size = std::fabs(v);
  if (size < 0.0001) return roundTo(v, 1e-6);
  if (size < 0.001) return roundTo(v, 1e-5);
  if (size < 0.01) return roundTo(v, 1e-4);
  if (size < 0.1) return roundTo(v, 1e-3);
  if (size < 1) return roundTo(v, 1e-2);
  if (size < 10) return roundTo(v, 1e-1);
  if (size < 100) return roundTo(v, 1);
  if (size < 1000) return roundTo(v, 10);
  if (size < 10000) return roundTo(v, 100);
  return roundTo(v, 1);
}

void convertLengthBox(INumberBox& box, const TLengthFormatSettings& settings) {
  TNumberBoxEventHold hold;
  box.beginUpdate();
  const double v = box.value();
  if (settings.isInch()) {
    box.setDecimalDigits(settings.InchDecimalDigits);
    box.setLimits(inchStepForMm(box.minValue()), inchStepForMm(box.maxValue()));
    box.setSteps(inchStepForMm(box.smallStep()), inchStepForMm(box.largeStep()));
    box.setValue(mmValueToInchGrid(v));
    box.setHint(lengthHint(box.value() * kMmPerInch, settings));
  } else {
    box.setDecimalDigits(settings.MmDecimalDigits);
    box.setLimits(mmStepForInch(box.minValue()), mmStepForInch(box.maxValue()));
    box.setSteps(mmStepForInch(box.smallStep()), mmStepForInch(box.largeStep()));
    box.setValue(inchValueToMmRounded(v));
    box.setHint(lengthHint(box.value(), settings));
  }
  box.endUpdate();
}

std::string lengthHint(double mm, const TLengthFormatSettings& settings) {
  const TLengthFormatSettings other = TLengthFormatSettings::defaultsFor(
      settings.isInch() ? TUnitMode::umMM : TUnitMode::umIN);
  return FormatLength(mm, settings) + " (" + FormatLength(mm, other, true, true) + ")";
}
