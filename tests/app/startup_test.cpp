// Start-up and shut-down: the options file (none, full, damaged, with keys
// the program does not own), the command line, autosave recovery, the
// demo rule and the iron file.
#include <gtest/gtest.h>

#include <filesystem>

#include "app/ini_file.h"
#include "platform/safe_file.h"
#include "program_fixture.h"
#include "stitching/iron_file.h"

namespace {

namespace fs = std::filesystem;

std::string emptyProject() {
  return "{\"shapes\":[{\"id\":\"1\",\"type\":\"LINE\",\"sp\":[0,0],\"ep\":[10,0],\"ct\":[5,0],\"w\":\"0\","
         "\"h\":\"0\",\"color\":\"Aqua\",\"dash\":\"Solid\",\"path\":\"M0,0 L10,0\",\"rt\":\"0\",\"st\":\"\","
         "\"inv\":\"0\",\"bz1\":[0,0],\"bz2\":[0,0],\"thk\":\"1.5\",\"la\":\"0\",\"lb\":\"0\",\"iv\":\"0\","
         "\"ih\":\"-1\",\"sta\":\"0\",\"swa\":\"0\"}],\"meta\":{\"memo\":\"recovered\"}}";
}

TEST(StartupOptions, NoOptionsFileGivesDefaultsAndIsWrittenAtExit) {
  TProgram p;
  TfrmPelw& f = p.start();
  EXPECT_EQ(f.FCurrentColor, 0xFF00FFFFu);  // palette row 0 on the dark background
  EXPECT_FALSE(f.PathList->FIsChanged);
  EXPECT_EQ(f.FUndoList.size(), 1u);
  EXPECT_TRUE(fs::is_directory(p.appData() + "/repository"));
  EXPECT_TRUE(fs::is_directory(p.appData() + "/catalogs"));
  EXPECT_EQ(f.FMCPServer, nullptr);
  p.stop();
  const TIniFile ini(p.appData() + "/pw_options.ini");
  EXPECT_EQ(ini.ReadString("Version", "AppVersion", ""), "3.6.1");
  EXPECT_EQ(ini.ReadString("AutoPitch", "AutoPitchPrecision2", ""), "0.001");
  EXPECT_EQ(ini.ReadString("LinePallet39", "Dash", ""), "Solid");
  EXPECT_FALSE(ini.hasKey("MCP", "EnableServer"));
  EXPECT_TRUE(fs::exists(p.appData() + "/prickingirons.pwcp"));
}

TEST(StartupOptions, FullFileIsReadWithCommasAndUnknownKeysSurvive) {
  TProgram p;
  p.seed("pw_options.ini",
         "[Version]\nAppVersion=3.5.0\n[AutoSave]\nUseAutoSave=1\n[AutoPricking]\nIsFixedPitchDefault=true\n"
         "CornerMode=2\nCornerAngleThreshold=150,5\n[AutoPitch]\nForceFitLastPrick=0\nAutoPitchSteps2=80\n"
         "AutoPitchPrecision2=0.01\nAutoPitchStopGap=0,25\n[Edit]\nIncrementalSelectionMode=1\n"
         "[SVG]\nDotRadius=0.75\nAsDots=0\n[Print]\nCalibrationX=99.5\nCalibrationY=100,25\n"
         "[DXF]\nUseR14=0\n[Dimension]\nLineType=5\nGap=3\n[Text]\nFontFace=Georgia\nFontSize=12\n"
         "[Stitch]\nShowStitchPattern=1\nThreadThickness=2.5\n[Notch]\nNotchDepth=3\n"
         "[ZoomScroll]\nReverseMouseWheelZoomDirection=1\nReverseCursorKeyGridAreaMove=0\n"
         "[General]\nLangID=ja\nUnit=1\nNewSet=1\n[Demo]\nLoadAtStartup=0\n"
         "[LinePallet0]\nThickness=2.5\nColor=#FF112233\nColorW=#FF445566\nNotForPrint=1\nDash=Dot\n"
         "[Font]\nRequireReset=0\ncount=2\nfamily0=Georgia\nfamily1=Verdana\n"
         "[LeatherSim]\nChoiseMade=1\n[MCP]\nEnableServer=0\nFuture=7\n[Plugins]\nName=keep me\n");
  TfrmPelw& f = p.start({}, false);
  const TPW_Options& o = f.FOptions;
  EXPECT_EQ(o.FLastVersion, "3.5.0");
  EXPECT_TRUE(o.FUseAutoSave);
  EXPECT_FLOAT_EQ(o.FCornerAngleThreshold, 150.5f);
  EXPECT_FLOAT_EQ(o.FAutoPitchStopGap, 0.25f);
  EXPECT_FLOAT_EQ(o.FPrintCalibration.y, 100.25f);
  EXPECT_EQ(f.FDefaultFont, "Georgia");
  EXPECT_EQ(f.FLangID, "ja");
  EXPECT_EQ(o.FUnitMode, TUnitMode::umIN);
  EXPECT_TRUE(f.FIsInch);
  EXPECT_TRUE(f.FViewOptions.FShowStitchPattern);
  EXPECT_EQ(o.FFavouriteFonts, (std::vector<std::string>{"Georgia", "Verdana"}));
  EXPECT_EQ(f.FPalletList[0].FColor_BlackMode, 0xFF112233u);
  EXPECT_EQ(f.FCurrentColor, 0xFF112233u);
  EXPECT_FLOAT_EQ(f.FCurrentThickness, 2.5f);
  // The demo option is off: no message about a missing demo.
  EXPECT_TRUE(p.dialogs.FMessages.empty());
  f.FOptions.FNotchAngle = 30;
  f.setUnitMode(TUnitMode::umMM);
  p.stop();
  const TIniFile ini(p.appData() + "/pw_options.ini");
  EXPECT_EQ(ini.ReadString("MCP", "EnableServer", ""), "0");
  EXPECT_EQ(ini.ReadString("MCP", "Future", ""), "7");
  EXPECT_EQ(ini.ReadString("Plugins", "Name", ""), "keep me");
  EXPECT_EQ(ini.ReadString("Notch", "NotchAngle", ""), "30");
  EXPECT_EQ(ini.ReadString("AutoPricking", "CornerAngleThreshold", ""), "150.5");
  EXPECT_EQ(ini.ReadString("Version", "AppVersion", ""), "3.6.1");
  EXPECT_EQ(ini.ReadString("General", "LangID", ""), "ja");
  EXPECT_EQ(ini.ReadString("General", "Unit", ""), "0");  // switched while running
}

TEST(StartupOptions, DamagedFileLeavesDefaultsAndIsReplacedAtExit) {
  TProgram p;
  p.seed("pw_options.ini", std::string("\x00\xFF[Gen\neral]\n=\n[AutoPitch\nAutoPitchSteps2=lots\n", 40) +
                               "[AutoPitch]\nAutoPitchSteps2=9x\nAutoPitchStopGap=nan\n[Print]\nCalibrationX=1e999\n");
  TfrmPelw& f = p.start();
  EXPECT_EQ(f.FOptions.FAutoPitchSteps, 50);
  EXPECT_FLOAT_EQ(f.FOptions.FAutoPitchStopGap, 0.1f);
  EXPECT_FLOAT_EQ(f.FOptions.FPrintCalibration.x, 100);
  p.stop();
  // Written anew; the damaged one is kept aside.
  const std::string text = readWholeFile(p.appData() + "/pw_options.ini");
  EXPECT_EQ(text.find('\0'), std::string::npos);
  EXPECT_EQ(TIniFile(p.appData() + "/pw_options.ini").ReadString("AutoPitch", "AutoPitchSteps2", ""), "50");
  EXPECT_TRUE(fs::exists(p.appData() + "/pw_options.ini.damaged"));
}

TEST(StartupOptions, LanguageFallsBackToTheSystemThenEnglish) {
  TProgram p;
  p.seed("pw_options.ini", "[General]\nLangID=xx\n");
  const char* lang = std::getenv("LANG");
  const std::string saved = lang ? lang : "";
  ::setenv("LANG", "de_DE.UTF-8", 1);
  ::unsetenv("LC_ALL");
  ::unsetenv("LC_MESSAGES");
  EXPECT_EQ(p.start().FLangID, "de");
  p.stop();
  p.seed("pw_options.ini", "[General]\nLangID=xx\n");
  ::setenv("LANG", "C.UTF-8", 1);
  EXPECT_EQ(p.start().FLangID, "en");
  if (saved.empty()) ::unsetenv("LANG");
  else ::setenv("LANG", saved.c_str(), 1);
}

TEST(StartupCommandLine, ProjectAsFirstArgument) {
  TProgram p;
  writeTextFile(p.file("card.pwc"), emptyProject());
  TfrmPelw& f = p.start({p.file("card.pwc"), "ignored.pwc"});
  EXPECT_EQ(f.FFilename, p.file("card.pwc"));
  EXPECT_EQ(f.PathList->Count(), 1u);
  EXPECT_FALSE(f.PathList->FIsChanged);
  EXPECT_EQ(f.FUndoList.size(), 1u);
}

TEST(StartupRecovery, LeftoverAutosaveIsLoadedRenamedFirstAndKeptAsItsOwn) {
  TProgram p;
  p.seed("autosave_77.tmp", emptyProject());
  p.seed("delete_anytime_77.tmp", "an older crash");
  TfrmPelw& f = p.start();
  EXPECT_EQ(f.PathList->Count(), 1u);
  EXPECT_EQ(f.PathList->FMemo, "recovered");
  EXPECT_TRUE(f.FFilename.empty());
  EXPECT_TRUE(f.PathList->FIsChanged);
  EXPECT_FALSE(fs::exists(p.appData() + "/delete_anytime_77a.tmp"));  // loaded, then kept until replaced:
  EXPECT_EQ(readWholeFile(f.autosaveFileName()), emptyProject());
  EXPECT_EQ(readWholeFile(p.appData() + "/delete_anytime_77.tmp"), "an older crash");
}

TEST(StartupRecovery, AFileThatWillNotLoadStaysForTheUser) {
  TProgram p;
  p.seed("autosave_5.tmp", "{\"shapes\":[{\"id\":\"1\"}]}");
  TfrmPelw& f = p.start();
  EXPECT_TRUE(f.PathList->empty());
  EXPECT_TRUE(fs::exists(p.appData() + "/delete_anytime_5.tmp"));
  EXPECT_FALSE(p.dialogs.FMessages.empty());
  p.stop();
  // The next start does not take it again.
  TfrmPelw& g = p.start();
  EXPECT_TRUE(g.PathList->empty());
  EXPECT_TRUE(fs::exists(p.appData() + "/delete_anytime_5.tmp"));
}

TEST(StartupRecovery, InstanceIdAndCommandLineSkipRecovery) {
  TProgram p;
  p.seed("autosave_3.tmp", emptyProject());
  TfrmPelw& f = p.start({"--Instance-ID", "101112131"});
  EXPECT_TRUE(f.PathList->empty());
  EXPECT_TRUE(fs::exists(p.appData() + "/autosave_3.tmp"));
  p.stop();
  writeTextFile(p.file("x.pwc"), "{}");
  TfrmPelw& g = p.start({p.file("x.pwc")});
  EXPECT_TRUE(g.PathList->empty());
  EXPECT_TRUE(fs::exists(p.appData() + "/autosave_3.tmp"));
}

TEST(StartupDemo, DemoOnlyForAPersonWhoOpenedNothing) {
  TProgram p;
  p.start({}, true);
  EXPECT_TRUE(p.dialogs.FMessages.empty());  // headless: no demo, no word about it
  p.stop();
  p.start({}, false);
  ASSERT_EQ(p.dialogs.FMessages.size(), 1u);
  EXPECT_EQ(p.dialogs.FMessages[0], "Demo project file not found.");
  p.stop();
  p.seed("demo/demo_2.0.8_en.pwc", emptyProject());
  p.dialogs.FMessages.clear();
  TfrmPelw& f = p.start({"--instance-id", "1"}, false);  // a launched window still gets the demo
  EXPECT_TRUE(p.dialogs.FMessages.empty());
  EXPECT_EQ(f.PathList->Count(), 1u);
}

}  // namespace
