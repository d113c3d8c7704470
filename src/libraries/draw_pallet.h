// The line palette: forty line types from which every shape takes its
// stroke. Each row has a colour for the dark drawing background and one for
// the white, so that a drawing reads well in both modes. Row 36 is kept for
// stitching holes.
#pragma once

#include <array>
#include <string>

#include "document/types.h"

class TPW_Path;
class TIniFile;

class TDrawPallet {
 public:
  float FThickness = 2;
  TStrokeDash FDash = TStrokeDash::Solid;
  bool FIsSelected = false;       // the current row
  bool FIgnoreInPrinting = false;  // shapes of this row are left out of print
  bool FIsVisible = true;
  bool FIsBlackBackgroundMode = true;  // which colour is current
  TAlphaColor FColor_BlackMode = 0xFFFFFFFF;
  TAlphaColor FColor_WhiteMode = 0xFF000000;

  void copyFrom(const TDrawPallet& pallet) { *this = pallet; }
  TAlphaColor getColor() const { return FIsBlackBackgroundMode ? FColor_BlackMode : FColor_WhiteMode; }
};

inline constexpr int kPalletCount = 40;

// The factory values of a row; a default TDrawPallet for an index outside
// the palette.
TDrawPallet factoryPallet(int row);

// The forty rows, owned; they never move, so a swatch may keep a reference
// to its row.
class TPalletList {
 public:
  // Factory rows, row 0 the current one, dark background.
  TPalletList();

  static constexpr int Count() { return kPalletCount; }
  TDrawPallet& operator[](int i) { return FRows[static_cast<size_t>(i)]; }
  const TDrawPallet& operator[](int i) const { return FRows[static_cast<size_t>(i)]; }
  bool validIndex(int i) const { return i >= 0 && i < kPalletCount; }

  // Every row back to its factory values; the current row and the
  // background mode stay as they are.
  void resetToFactory();
  // The current row, or -1 when none is marked.
  int selectedIndex() const;
  // Makes row i the only current row; an index outside is ignored.
  void selectRow(int i);
  // Tells every row which background is shown; shapes keep their data.
  void setBlackBackgroundMode(bool black);

  // The row for a shape, as old files need it: a hole always takes row 36;
  // a shape with an index of 1 or more keeps it; otherwise the first row
  // whose current colour and dash equal the shape's, else the first of
  // equal colour alone. -1 when none fits (the caller then takes row 0).
  int findPalletIndexForShape(const TPW_Path& shape) const;
  // The row that draws most like this stroke: the first whose current
  // colour, thickness and dash all equal these; else, of the rows of equal
  // colour and dash, then of equal colour alone, the one of the nearest
  // thickness (the first on a tie). -1 when no row has the colour.
  int findPalletIndex(TAlphaColor color, float thickness, TStrokeDash dash) const;

 private:
  std::array<TDrawPallet, kPalletCount> FRows;
};

// The editor's private copy goes through this in both directions.
void copyCore(const TPalletList& listFrom, TPalletList& listTo);

// ---- the options file ----
// Section "LinePallet" + row (0 to 39); keys "Thickness", "Color" (dark
// background), "ColorW" (white background), "NotForPrint", "Dash".
std::string palletSectionName(int row);
// Reads the rows; an absent or unreadable key keeps the row's value, and an
// unknown dash name reads as Solid.
void readPalletList(const TIniFile& ini, TPalletList& list);
void writePalletList(TIniFile& ini, const TPalletList& list);

// Colours in the options file: "#AARRGGBB". The reader also takes "$" or
// "0x" before the hex digits and plain decimal, signed or not.
std::string colorToIniText(TAlphaColor c);
bool colorFromIniText(const std::string& text, TAlphaColor& out);
