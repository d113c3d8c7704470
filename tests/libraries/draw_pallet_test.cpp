// The forty line types: factory rows, background modes, the row of a shape
// from an old file, and the options file.
#include <gtest/gtest.h>

#include <memory>

#include "app/ini_file.h"
#include "document/pw_path.h"
#include "libraries/draw_pallet.h"

TEST(LinePalette, FactoryRows) {
  const TPalletList list;
  EXPECT_EQ(list.selectedIndex(), 0);
  EXPECT_EQ(list[0].getColor(), 0xFF00FFFFu);  // dark background at start
  EXPECT_EQ(list[0].FColor_WhiteMode, 0xFF00008Bu);
  EXPECT_EQ(list[0].FThickness, 1.5f);
  EXPECT_EQ(list[2].FThickness, 1.2f);
  EXPECT_EQ(list[3].FThickness, 1.1f);
  EXPECT_EQ(list[3].FDash, TStrokeDash::Dash);
  EXPECT_EQ(list[3].FColor_WhiteMode, 0xFFBDB76Bu);
  EXPECT_EQ(list[4].FDash, TStrokeDash::Dot);
  EXPECT_EQ(list[5].FDash, TStrokeDash::DashDot);
  EXPECT_EQ(list[6].FDash, TStrokeDash::DashDotDot);
  EXPECT_EQ(list[8].FColor_BlackMode, 0xFFA52A2Au);
  EXPECT_EQ(list[8].FThickness, 1.8f);
  EXPECT_EQ(list[9].FColor_WhiteMode, 0xFF8B008Bu);
  EXPECT_EQ(list[10].FColor_WhiteMode, 0xFFFF0000u);
  // 11 to 35: one colour for both backgrounds.
  const TAlphaColor grid[25] = {
      0xFF000077, 0xFF0000BB, 0xFF0000FF, 0xFF007700, 0xFF0077BB, 0xFF00BB00, 0xFF00BB77,
      0xFF00BBBB, 0xFF770000, 0xFF770077, 0xFF7700BB, 0xFF777700, 0xFF777777, 0xFF7777BB,
      0xFF77BB00, 0xFF77BB77, 0xFF77BBBB, 0xFFBB0000, 0xFFBB0077, 0xFFBB00BB, 0xFFBB7700,
      0xFFBB7777, 0xFFBB77BB, 0xFFBBBB77, 0xFFBBBBBB};
  for (int i = 11; i <= 35; ++i) {
    EXPECT_EQ(list[i].FColor_BlackMode, grid[i - 11]) << i;
    EXPECT_EQ(list[i].FColor_WhiteMode, grid[i - 11]) << i;
    EXPECT_EQ(list[i].FThickness, 1.5f) << i;
    EXPECT_EQ(list[i].FDash, TStrokeDash::Solid) << i;
  }
  // The stitching hole row.
  EXPECT_EQ(kStitchHolePalletIndex, 36);
  EXPECT_EQ(list[36].FColor_BlackMode, 0xFFFFFFFFu);
  EXPECT_EQ(list[36].FColor_WhiteMode, 0xFFD2691Eu);
  EXPECT_EQ(list[36].FThickness, 1.0f);
  EXPECT_EQ(list[36].FDash, TStrokeDash::Dot);
  EXPECT_EQ(list[37].FDash, TStrokeDash::Dash);
  EXPECT_EQ(list[38].FThickness, 2.0f);
  EXPECT_EQ(list[39].FColor_WhiteMode, 0xFFFF40FFu);
  for (int i = 0; i < 40; ++i) {
    EXPECT_TRUE(list[i].FIsVisible);
    EXPECT_FALSE(list[i].FIgnoreInPrinting);
  }
  // Outside the palette: a plain row.
  EXPECT_EQ(factoryPallet(40).FThickness, 2.0f);
  EXPECT_EQ(factoryPallet(-1).FColor_WhiteMode, 0xFF000000u);
}

TEST(LinePalette, BackgroundModeSwitchesEveryRowAtOnce) {
  TPalletList list;
  list.setBlackBackgroundMode(false);
  EXPECT_EQ(list[0].getColor(), 0xFF00008Bu);
  EXPECT_EQ(list[36].getColor(), 0xFFD2691Eu);
  list.setBlackBackgroundMode(true);
  EXPECT_EQ(list[36].getColor(), 0xFFFFFFFFu);
}

TEST(LinePalette, SelectionResetAndCopies) {
  TPalletList list;
  list.selectRow(7);
  EXPECT_EQ(list.selectedIndex(), 7);
  EXPECT_FALSE(list[0].FIsSelected);
  list.selectRow(40);  // ignored
  EXPECT_EQ(list.selectedIndex(), 7);

  TPalletList edited;
  copyCore(list, edited);
  edited[3].FThickness = 0.4f;
  edited[3].FColor_BlackMode = 0xFF123456;
  EXPECT_EQ(list[3].FThickness, 1.1f);  // the editor works on its own copy
  copyCore(edited, list);
  EXPECT_EQ(list[3].FThickness, 0.4f);

  list.setBlackBackgroundMode(false);
  list[5].FIsVisible = false;
  list.resetToFactory();
  EXPECT_EQ(list[3].FThickness, 1.1f);
  EXPECT_EQ(list[3].FColor_BlackMode, 0xFFFFFF00u);
  EXPECT_EQ(list.selectedIndex(), 7);
  EXPECT_FALSE(list[5].FIsVisible);
  EXPECT_FALSE(list[0].FIsBlackBackgroundMode);
}

TEST(LinePalette, RowOfAShapeFromAnOldFile) {
  TPalletList list;
  auto shape = [](const char* type, int idx, TAlphaColor c, TStrokeDash d) {
    auto s = std::make_unique<TPW_Path>(idx, c, 1.0f, d, 1);
    s->FShapeType = type;
    return s;
  };
  EXPECT_EQ(list.findPalletIndexForShape(*shape("S_HOLE", 3, 0xFF00FF00, TStrokeDash::Solid)), 36);
  EXPECT_EQ(list.findPalletIndexForShape(*shape("LINE", 12, 0xFF00FF00, TStrokeDash::Solid)), 12);
  // Index 0 or none: by colour and dash, then by colour alone.
  EXPECT_EQ(list.findPalletIndexForShape(*shape("LINE", 0, 0xFF808080, TStrokeDash::DashDotDot)), 6);
  EXPECT_EQ(list.findPalletIndexForShape(*shape("LINE", -1, 0xFF808080, TStrokeDash::Dot)), 5);
  EXPECT_EQ(list.findPalletIndexForShape(*shape("LINE", -1, 0xFF010203, TStrokeDash::Solid)), -1);
  EXPECT_EQ(list.findPalletIndexForShape(*shape("ARC", 55, 0xFFFF0000, TStrokeDash::Solid)), 10);
  // The colour compared is the one of the background shown.
  list.setBlackBackgroundMode(false);
  EXPECT_EQ(list.findPalletIndexForShape(*shape("LINE", -1, 0xFF00008B, TStrokeDash::Solid)), 0);

  EXPECT_EQ(list.findPalletIndex(0xFF00008B, 1.5f, TStrokeDash::Solid), 0);
  EXPECT_EQ(list.findPalletIndex(0xFF00008B, 1.4f, TStrokeDash::Solid), -1);
}

TEST(LinePaletteOptions, WritesEachRowAndReadsItBack) {
  TPalletList list;
  list[2].FThickness = 0.75f;
  list[2].FColor_BlackMode = 0xFF102030;
  list[2].FColor_WhiteMode = 0x80A0B0C0;
  list[2].FIgnoreInPrinting = true;
  list[2].FDash = TStrokeDash::DashDot;
  TIniFile ini;
  ini.WriteString("General", "LangID", "en");
  writePalletList(ini, list);
  const std::string text = ini.toText();
  EXPECT_NE(text.find("[LinePallet2]\nThickness=0.75\nColor=#FF102030\nColorW=#80A0B0C0\n"
                      "NotForPrint=1\nDash=DashDot\n"),
            std::string::npos)
      << text;
  EXPECT_NE(text.find("[LinePallet39]"), std::string::npos);
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
  EXPECT_EQ(back.ReadString("General", "LangID", ""), "en");
}

TEST(LinePaletteOptions, ToleratesHandEditedAndMissingValues) {
  TIniFile ini;
  ini.loadFromText(
      "[LinePallet0]\nThickness=2,5\nColor=-16776961\nColorW=$FF00FF00\nDash=Wavy\n"
      "[LinePallet1]\nThickness=nonsense\nColor=#GG0000\nColorW=0xff112233\n"
      "[LinePallet3]\nNotForPrint=true\n"
      "[LinePallet4]\nThickness=-1\n");
  TPalletList list;
  readPalletList(ini, list);
  EXPECT_EQ(list[0].FThickness, 2.5f);
  EXPECT_EQ(list[0].FColor_BlackMode, 0xFF0000FFu);  // a signed integer colour
  EXPECT_EQ(list[0].FColor_WhiteMode, 0xFF00FF00u);
  EXPECT_EQ(list[0].FDash, TStrokeDash::Solid);  // unknown name
  EXPECT_EQ(list[1].FThickness, 1.5f);           // unreadable: kept
  EXPECT_EQ(list[1].FColor_BlackMode, 0xFF00FF00u);
  EXPECT_EQ(list[1].FColor_WhiteMode, 0xFF112233u);
  EXPECT_TRUE(list[3].FIgnoreInPrinting);
  EXPECT_EQ(list[3].FDash, TStrokeDash::Dash);  // no key: the factory dash stays
  EXPECT_EQ(list[4].FThickness, 1.5f);
  EXPECT_EQ(list[5].FDash, TStrokeDash::DashDot);

  TAlphaColor c = 7;
  EXPECT_FALSE(colorFromIniText("", c));
  EXPECT_FALSE(colorFromIniText("#123456789", c));
  EXPECT_FALSE(colorFromIniText("99999999999", c));
  EXPECT_EQ(c, 7u);
  EXPECT_EQ(colorToIniText(0x0000000A), "#0000000A");
}
