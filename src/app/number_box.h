// Length number boxes: reading and writing them in millimetres, and
// converting a whole box (value, digits, limits, steps) when the user
// switches between millimetres and inches.
#pragma once

#include <string>

#include "app/length_format.h"

// What the shell needs of a number box widget. The window provides the
// real ones; TPlainNumberBox stands in without a window.
class INumberBox {
 public:
  virtual ~INumberBox() = default;
  virtual double value() const = 0;
  virtual void setValue(double v) = 0;
  // The text shown, or being typed while the box is edited.
  virtual std::string text() const = 0;
  virtual bool isEditing() const = 0;
  virtual int decimalDigits() const = 0;
  virtual void setDecimalDigits(int digits) = 0;
  virtual double minValue() const = 0;
  virtual double maxValue() const = 0;
  virtual void setLimits(double minValue, double maxValue) = 0;
  // The two spin steps: the small one (arrows, wheel) and the large one.
  virtual double smallStep() const = 0;
  virtual double largeStep() const = 0;
  virtual void setSteps(double smallStep, double largeStep) = 0;
  virtual void setHint(const std::string& hint) = 0;
  // While updating, the box sends no change events.
  virtual void beginUpdate() = 0;
  virtual void endUpdate() = 0;
};

class TPlainNumberBox : public INumberBox {
 public:
  double FValue = 0, FMin = 0, FMax = 1000, FSmallStep = 1, FLargeStep = 10;
  int FDigits = 2;
  bool FEditing = false;
  std::string FEditText;  // the text while FEditing
  std::string FHint;
  int FUpdating = 0;

  double value() const override { return FValue; }
  void setValue(double v) override;
  std::string text() const override;
  bool isEditing() const override { return FEditing; }
  int decimalDigits() const override { return FDigits; }
  void setDecimalDigits(int digits) override { FDigits = digits; }
  double minValue() const override { return FMin; }
  double maxValue() const override { return FMax; }
  void setLimits(double minValue, double maxValue) override;
  double smallStep() const override { return FSmallStep; }
  double largeStep() const override { return FLargeStep; }
  void setSteps(double smallStep, double largeStep) override;
  void setHint(const std::string& hint) override { FHint = hint; }
  void beginUpdate() override { ++FUpdating; }
  void endUpdate() override { --FUpdating; }
};

// Millimetres from a box. While the box is edited its text is read, with
// its value as fallback. `isInch` multiplies by 25.4.
double ReadLengthBox(const INumberBox& box, bool isInch);
// Shows `mm` in the box in the settings' unit, with that unit's digits.
void WriteLengthBox(double mm, INumberBox& box, const TLengthFormatSettings& settings);

// A step or limit of a millimetre box, as the inch box gets it: common
// fractions for the usual sizes ("below 3.126 mm: 1/8 in").
double inchStepForMm(double mm);
// A step or limit of an inch box, as the millimetre box gets it.
double mmStepForInch(double inches);
// A box value in millimetres rounded in inches to a grid by its size:
// below 5 mm to 1/64, 20 to 1/32, 50 to 1/16, 100 to 1/8, else 1/4.
double mmValueToInchGrid(double mm);
// A box value in inches turned to millimetres and rounded by its size
// (ten-thousandths of a millimetre down to hundreds).
double inchValueToMmRounded(double inches);

// Converts one box to the settings' unit: digits, limits, steps, value.
// Change events are held meanwhile (see numberBoxEventsHeld).
void convertLengthBox(INumberBox& box, const TLengthFormatSettings& settings);

// The box's length and, in brackets, the same length in the other unit.
std::string lengthHint(double mm, const TLengthFormatSettings& settings);

// Raised while boxes convert; handlers of box changes return at once while
// it is above 0.
int numberBoxEventsHeld();

class TNumberBoxEventHold {
 public:
  TNumberBoxEventHold();
  ~TNumberBoxEventHold();
  TNumberBoxEventHold(const TNumberBoxEventHold&) = delete;
  TNumberBoxEventHold& operator=(const TNumberBoxEventHold&) = delete;
};
