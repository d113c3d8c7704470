// Lengths shown and read in millimetres and inches, number boxes switching
// units, and the unit word in labels.
#include <gtest/gtest.h>

#include "app/frm_pelw.h"
#include "app/global_edit.h"
#include "app/length_format.h"
#include "app/number_box.h"
#include "app/unit_captions.h"

namespace {

const TLengthFormatSettings kMM = TLengthFormatSettings::defaultsFor(TUnitMode::umMM);
const TLengthFormatSettings kIN = TLengthFormatSettings::defaultsFor(TUnitMode::umIN);

TLengthFormatSettings inchWith(TInchDisplayMode mode) {
  TLengthFormatSettings s = kIN;
  s.InchDisplayMode = mode;
  return s;
}

TEST(LengthFormat, Millimetres) {
  EXPECT_EQ(FormatLength(12.7, kMM), "12.70 mm");
  EXPECT_EQ(FormatLength(12.7, kMM, false), "12.70");
  EXPECT_EQ(FormatLength(-3.125, kMM), "-3.13 mm");  // halves away from zero
  EXPECT_EQ(FormatLength(-0.001, kMM), "0.00 mm");
  TLengthFormatSettings s = kMM;
  s.MmDecimalDigits = 0;
  EXPECT_EQ(FormatLength(99.5, s), "100 mm");
  s.MmDecimalDigits = -3;
  EXPECT_EQ(FormatLength(4.4, s), "4 mm");
  s.UnitMode = static_cast<TUnitMode>(7);  // unknown: millimetres, two decimals
  EXPECT_EQ(FormatLength(4.4, s), "4.40 mm");
}

TEST(LengthFormat, HybridInchesShowExactFractionsWithDecimalBehind) {
  EXPECT_EQ(FormatLength(12.7, kIN), "1/2 in (0.500000 in)");
  EXPECT_EQ(FormatLength(12.7, kIN, true, true), "1/2 in");
  EXPECT_EQ(FormatLength(12.7, kIN, false), "1/2 (0.500000)");
  // 0.393701 * 64 is not within 0.0002 of a whole number.
  EXPECT_EQ(FormatLength(10, kIN), "0.393701 in");
  EXPECT_EQ(FormatLength(25.4 * 2.375, kIN, true, true), "2 3/8 in");
  EXPECT_EQ(FormatLength(50.8, kIN, true, true), "2 in");
  EXPECT_EQ(FormatLength(0.001, kIN), "0 in (0.000000 in)");
  TLengthFormatSettings s = kIN;
  s.InchFractionDenom = 0;  // counts as 64
  EXPECT_EQ(FormatLength(25.4 / 64 * 3, s, true, true), "3/64 in");
}

TEST(LengthFormat, DecimalAndFractionInches) {
  EXPECT_EQ(FormatLength(10, inchWith(TInchDisplayMode::idmDecimal)), "0.393701 in");
  const auto frac = inchWith(TInchDisplayMode::idmFraction);
  EXPECT_EQ(FormatLength(10, frac), "25/64 in");  // nearest 64th
  EXPECT_EQ(FormatLength(-25.4 * 1.25, frac), "-1 1/4 in");
  EXPECT_EQ(FormatLength(25.4 * 3, frac, false), "3");
  TLengthFormatSettings eighths = frac;
  eighths.InchFractionDenom = 8;
  // 1/16 in is a tie between 0 and 1/8: ties go to even.
  EXPECT_EQ(FormatLength(25.4 / 16, eighths), "0 in");
  EXPECT_EQ(FormatLength(25.4 * 0.75, eighths), "3/4 in");
}

TEST(NumberBoxes, ReadAndWriteInBothUnits) {
  TPlainNumberBox box;
  box.FValue = 2;
  EXPECT_DOUBLE_EQ(ReadLengthBox(box, false), 2);
  EXPECT_DOUBLE_EQ(ReadLengthBox(box, true), 50.8);
  box.FEditing = true;
  box.FEditText = "3.5";
  EXPECT_DOUBLE_EQ(ReadLengthBox(box, false), 3.5);
  box.FEditText = "3*";  // unreadable while typing: the value stands
  EXPECT_DOUBLE_EQ(ReadLengthBox(box, false), 2);
  box.FEditing = false;

  WriteLengthBox(50.8, box, kIN);
  EXPECT_DOUBLE_EQ(box.FValue, 2);
  EXPECT_EQ(box.FDigits, 6);
  WriteLengthBox(12.345, box, kMM);
  EXPECT_DOUBLE_EQ(box.FValue, 12.345);
  EXPECT_EQ(box.FDigits, 2);
  EXPECT_EQ(box.text(), "12.35");
}

TEST(NumberBoxes, ValuesRoundToCommonSizes) {
  EXPECT_DOUBLE_EQ(mmValueToInchGrid(10), 13.0 / 32);
  EXPECT_DOUBLE_EQ(mmValueToInchGrid(3), 8.0 / 64);
  EXPECT_DOUBLE_EQ(mmValueToInchGrid(60), 19.0 / 8);
  EXPECT_DOUBLE_EQ(mmValueToInchGrid(300), 11.75);
  EXPECT_DOUBLE_EQ(inchValueToMmRounded(13.0 / 32), 10);  // 10.31875 -> whole
  EXPECT_NEAR(inchValueToMmRounded(0.25), 6.3, 1e-9);  // 6.35 lies a hair below the half
  EXPECT_DOUBLE_EQ(inchValueToMmRounded(19.0 / 8), 60);
  EXPECT_DOUBLE_EQ(inchValueToMmRounded(11.75), 300);  // 298.45 -> tens
  EXPECT_DOUBLE_EQ(inchValueToMmRounded(0.01), 0.25);
}

TEST(NumberBoxes, WholeBoxConvertsAndBack) {
  TPlainNumberBox box;
  box.FValue = 10;
  box.FMin = 0;
  box.FMax = 50;
  box.FSmallStep = 0.5;
  box.FLargeStep = 5;
  convertLengthBox(box, kIN);
  EXPECT_EQ(box.FDigits, 6);
  EXPECT_DOUBLE_EQ(box.FValue, 13.0 / 32);
  EXPECT_DOUBLE_EQ(box.FMax, 2);
  EXPECT_DOUBLE_EQ(box.FSmallStep, 1.0 / 32);
  EXPECT_DOUBLE_EQ(box.FLargeStep, 3.0 / 16);
  EXPECT_EQ(box.FUpdating, 0);
  EXPECT_EQ(numberBoxEventsHeld(), 0);
  EXPECT_EQ(box.FHint, "13/32 in (0.406250 in) (10.32 mm)");
  convertLengthBox(box, kMM);
  EXPECT_EQ(box.FDigits, 2);
  EXPECT_DOUBLE_EQ(box.FValue, 10);
  EXPECT_DOUBLE_EQ(box.FMax, 50);
  EXPECT_DOUBLE_EQ(box.FSmallStep, 0.5);
  EXPECT_DOUBLE_EQ(box.FLargeStep, 5);
}

TEST(NumberBoxes, OnlyAChangeOfUnitConvertsTheControllersBoxes) {
  // At start-up in millimetres a box of 10 must stay 10, not become 250.
  TfrmPelw form;
  TPlainNumberBox box;
  box.FValue = 10;
  box.FMax = 50;
  form.FNBList.push_back(&box);
  form.setUnitMode(TUnitMode::umMM);
  EXPECT_DOUBLE_EQ(box.FValue, 10);
  form.setUnitMode(TUnitMode::umIN);
  EXPECT_DOUBLE_EQ(box.FValue, 13.0 / 32);
  form.setUnitMode(TUnitMode::umIN);
  EXPECT_DOUBLE_EQ(box.FValue, 13.0 / 32);
  form.setUnitMode(TUnitMode::umMM);
  EXPECT_DOUBLE_EQ(box.FValue, 10);
}

struct TFakeLabel : ICaptionLabel {
  std::string FText;
  explicit TFakeLabel(std::string t) : FText(std::move(t)) {}
  std::string caption() const override { return FText; }
  void setCaption(const std::string& t) override { FText = t; }
};

TEST(UnitCaptions, OnlyTheStandaloneWordChanges) {
  EXPECT_EQ(replaceUnitWordWithInch("mm"), "in");
  EXPECT_EQ(replaceUnitWordWithInch("Width mm"), "Width in");
  EXPECT_EQ(replaceUnitWordWithInch("mm wide, mm deep"), "in wide, in deep");
  EXPECT_EQ(replaceUnitWordWithInch("Width (mm)"), "Width (mm)");
  EXPECT_EQ(replaceUnitWordWithInch("mmm"), "mmm");
  EXPECT_EQ(replaceUnitWordWithInch("Abstand\tmm"), "Abstand\tin");
  EXPECT_EQ(replaceUnitWordWithInch("間隔 mm"), "間隔 in");
}

TEST(UnitCaptions, InchModeRemembersAndMillimetreModeRestores) {
  TFakeLabel width("Width mm"), name("Name"), pitch("mm Pitch");
  std::vector<ICaptionLabel*> labels{&width, &name, &pitch};
  TMmInchDict dict;
  applyUnitToCaptions(labels, true, dict);
  EXPECT_EQ(width.FText, "Width in");
  EXPECT_EQ(pitch.FText, "in Pitch");
  EXPECT_EQ(dict.size(), 2u);
  applyUnitToCaptions(labels, true, dict);  // twice is harmless
  applyUnitToCaptions(labels, false, dict);
  EXPECT_EQ(width.FText, "Width mm");
  EXPECT_EQ(name.FText, "Name");
  EXPECT_EQ(pitch.FText, "mm Pitch");
  EXPECT_TRUE(dict.empty());
}

// An overlay edit host that runs queued work when told to.
struct TFakeEdit : IOverlayEdit {
  std::string FText;
  bool FHidden = false, FFocusReleased = false;
  std::string text() const override { return FText; }
  void setText(const std::string& t) override { FText = t; }
  void releaseFocus() override { FFocusReleased = true; }
  void hide() override { FHidden = true; }
};
struct TFakeHost : IOverlayEditHost {
  std::vector<std::function<void()>> FQueue;
  IOverlayEdit* FFocused = nullptr;
  std::unique_ptr<IOverlayEdit> createEditOver(INumberBox&) override {
    return std::make_unique<TFakeEdit>();
  }
  void runLater(std::function<void()> fn) override { FQueue.push_back(std::move(fn)); }
  void focusAndSelectAll(IOverlayEdit& e) override { FFocused = &e; }
  void runQueue() {
    auto q = std::move(FQueue);
    FQueue.clear();
    for (auto& f : q) f();
  }
};

TEST(GlobalEdit, ExpressionTypedIntoABoxBecomesItsValue) {
  TFakeHost host;
  TGlobalEdit ge(host);
  TPlainNumberBox box;
  box.FValue = 5;
  auto* edit = static_cast<TFakeEdit*>(ge.setNumberBox(box));
  ASSERT_NE(edit, nullptr);
  EXPECT_EQ(edit->FText, "5.00");
  EXPECT_EQ(host.FFocused, nullptr);  // focused from the queue only
  host.runQueue();
  EXPECT_EQ(host.FFocused, edit);
  edit->FText = "120/3+2";
  EXPECT_TRUE(ge.OnKeyDown(*edit, TGlobalEdit::TKey::Enter));
  EXPECT_TRUE(edit->FFocusReleased);
  ge.OnExit(*edit);
  EXPECT_DOUBLE_EQ(box.FValue, 42);
  EXPECT_TRUE(edit->FHidden);
  EXPECT_EQ(ge.FEdit, nullptr);
  host.runQueue();  // the edit is freed
}

TEST(GlobalEdit, BadExpressionAndEscapeLeaveTheBox) {
  TFakeHost host;
  TGlobalEdit ge(host);
  TPlainNumberBox box;
  box.FValue = 5;
  auto* edit = static_cast<TFakeEdit*>(ge.setNumberBox(box));
  edit->FText = "2*-3";
  ge.OnExit(*edit);
  EXPECT_DOUBLE_EQ(box.FValue, 5);
  host.runQueue();

  edit = static_cast<TFakeEdit*>(ge.setNumberBox(box));
  edit->FText = "99";
  EXPECT_TRUE(ge.OnKeyDown(*edit, TGlobalEdit::TKey::Escape));
  EXPECT_EQ(edit->FText, "5.00");
  EXPECT_EQ(edit->FTag, 1);
  edit->FFocusReleased = false;
  ge.OnMouseLeave(*edit);  // Tag 1: the pointer leaving does nothing more
  EXPECT_FALSE(edit->FFocusReleased);
  ge.OnExit(*edit);
  EXPECT_DOUBLE_EQ(box.FValue, 5);
  EXPECT_FALSE(ge.OnKeyDown(*edit, TGlobalEdit::TKey::Other));
  host.runQueue();
}

}  // namespace
