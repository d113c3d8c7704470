// The forty line types: factory rows, background modes, the row of a shape
// from an old file, and the options file.
#include <gtest/gtest.h>

#include <memory>

#include "app/ini_file.h"
#include "document/pw_path.h"
#include "libraries/draw_pallet.h"

TEST(LinePalette, RowOfAShapeFromAnOldFile) {
  TPalletList list;
  auto row = [&](const char* type, int idx, TAlphaColor c, TStrokeDash d) {
    auto s = std::make_unique<TPW_Path>(idx, c, 1.0f, d, 1);
    s->FShapeType = type;
    return list.findPalletIndexForShape(*s);
  };
  EXPECT_EQ(row("S_HOLE", 3, 0xFF00FF00, TStrokeDash::Solid), 36);
  EXPECT_EQ(row("LINE", 12, 0xFF00FF00, TStrokeDash::Solid), 12);
  EXPECT_EQ(row("LINE", 0, 0xFF808080, TStrokeDash::DashDotDot), 6);  // colour and dash
  EXPECT_EQ(row("LINE", -1, 0xFF808080, TStrokeDash::Dot), 5);        // colour alone
  EXPECT_EQ(row("ARC", 55, 0xFFFF0000, TStrokeDash::Solid), 10);
  EXPECT_EQ(row("LINE", -1, 0xFF010203, TStrokeDash::Solid), -1);
  list.setBlackBackgroundMode(false);
  EXPECT_EQ(row("LINE", -1, 0xFF00008B, TStrokeDash::Solid), 0);
  EXPECT_EQ(list.findPalletIndex(0xFF00008B, 1.5f, TStrokeDash::Solid), 0);
  // No row of that thickness: the row that draws most like it.
  EXPECT_EQ(list.findPalletIndex(0xFF00008B, 1.4f, TStrokeDash::Solid), 0);
  EXPECT_EQ(list.findPalletIndex(0xFF00008B, 1.4f, TStrokeDash::Dot), 0) << "colour alone";
  EXPECT_EQ(list.findPalletIndex(0xFF010203, 1.5f, TStrokeDash::Solid), -1);
}

TEST(LinePaletteOptions, RoundTripAndExactSection) {
  TPalletList list;
  list[2].FThickness = 0.75f;
  list[2].FColor_BlackMode = 0xFF102030;
  list[2].FColor_WhiteMode = 0x80A0B0C0;
  list[2].FIgnoreInPrinting = true;
  list[2].FDash = TStrokeDash::DashDot;
  TIniFile ini;
  writePalletList(ini, list);
  const std::string text = ini.toText();
  EXPECT_NE(text.find("[LinePallet2]\nThickness=0.75\nColor=#FF102030\nColorW=#80A0B0C0\n"
                      "NotForPrint=1\nDash=DashDot\n"),
            std::string::npos)
      << text;
  EXPECT_EQ(text.find("[LinePallet40]"), std::string::npos);

  TIniFile back;
  back.loadFromText(text);
  TPalletList read;
  readPalletList(back, read);
  for (int i = 0; i < 40; ++i) {
    EXPECT_EQ(read[i].FThickness, list[i].FThickness) << i;
    EXPECT_EQ(read[i].FColor_BlackMode, list[i].FColor_BlackMode) << i;
    EXPECT_EQ(read[i].FColor_WhiteMode, list[i].FColor_WhiteMode) << i;
    EXPECT_EQ(read[i].FIgnoreInPrinting, list[i].FIgnoreInPrinting) << i;
    EXPECT_EQ(read[i].FDash, list[i].FDash) << i;
  }
}

TEST(LinePaletteOptions, HandEditedAndMissingValues) {
  TIniFile ini;
  ini.loadFromText(
      "[LinePallet0]\nThickness=2,5\nColor=-16776961\nColorW=$FF00FF00\nDash=Wavy\n"
      "[LinePallet1]\nThickness=-1\nColor=#GG0000\nColorW=0xff112233\n"
      "[LinePallet3]\nNotForPrint=true\n");
  TPalletList list;
  readPalletList(ini, list);
  EXPECT_EQ(list[0].FThickness, 2.5f);
  EXPECT_EQ(list[0].FColor_BlackMode, 0xFF0000FFu);  // written as a signed integer
  EXPECT_EQ(list[0].FColor_WhiteMode, 0xFF00FF00u);
  EXPECT_EQ(list[0].FDash, TStrokeDash::Solid);  // an unknown name
  EXPECT_EQ(list[1].FThickness, 1.5f);           // unusable values are kept
  EXPECT_EQ(list[1].FColor_BlackMode, 0xFF00FF00u);
  EXPECT_EQ(list[1].FColor_WhiteMode, 0xFF112233u);
  EXPECT_TRUE(list[3].FIgnoreInPrinting);
  EXPECT_EQ(list[3].FDash, TStrokeDash::Dash);  // no key: the factory dash
}
