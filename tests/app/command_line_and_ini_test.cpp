#include <gtest/gtest.h>

#include "app/command_line.h"
#include "app/ini_file.h"
#include "test_support.h"

TEST(CommandLine, ProgramOptionsAreTakenOutTheRestStaysInOrder) {
  const char* argv[] = {"pelwright", "bag.pwc", "--headless", "--api-port", "8123", "--instance-id", "x"};
  const TCommandLine cl = parseCommandLine(7, argv);
  EXPECT_TRUE(cl.headless);
  EXPECT_EQ(cl.apiPort, 8123);
  EXPECT_EQ(cl.args, (std::vector<std::string>{"bag.pwc", "--instance-id", "x"}));
  EXPECT_TRUE(cl.error.empty());
  const char* eq[] = {"pelwright", "--api-port=9000"};
  EXPECT_EQ(parseCommandLine(2, eq).apiPort, 9000);
  const char* plain[] = {"pelwright"};
  EXPECT_EQ(parseCommandLine(1, plain).apiPort, 7777);
  for (const char* bad : {"0", "65536", "77a", "", "-1"}) {
    const char* a[] = {"pelwright", "--api-port", bad};
    EXPECT_FALSE(parseCommandLine(3, a).error.empty()) << bad;
  }
  const char* missing[] = {"pelwright", "--api-port"};
  EXPECT_FALSE(parseCommandLine(2, missing).error.empty());
}

TEST(IniFile, ReadsTolerantlyAndWritesBackWhatItDoesNotOwn) {
  TIniFile ini;
  ini.loadFromText(
      "\xEF\xBB\xBF; comment\r\n[General]\r\nLangID = ja\r\nUnit=1\r\nnot a line\r\n"
      "[Print]\nCalibrationX=99,5\nCalibrationY=100.25\n[MCP]\nEnableServer=TRUE\n"
      "[Odd]\nFlag=yes\n");
  EXPECT_EQ(ini.ReadString("general", "langid", ""), "ja");
  EXPECT_EQ(ini.ReadInteger("General", "Unit", 0), 1);
  EXPECT_EQ(ini.ReadInteger("General", "LangID", 7), 7);  // not a number: the default
  EXPECT_DOUBLE_EQ(ini.ReadFloat("Print", "CalibrationX", 100), 99.5);
  EXPECT_DOUBLE_EQ(ini.ReadFloat("Print", "CalibrationY", 100), 100.25);
  EXPECT_TRUE(ini.ReadBool("MCP", "EnableServer", false));
  EXPECT_TRUE(ini.ReadBool("Odd", "Flag", true));  // unreadable: the default
  EXPECT_FALSE(ini.ReadBool("Odd", "Flag", false));
  EXPECT_FALSE(ini.ReadBool("Missing", "Key", false));

  ini.WriteBool("AutoSave", "UseAutoSave", true);
  ini.WriteFloat("Print", "CalibrationX", 99.5);
  ini.WriteString("General", "LangID", "en");
  EXPECT_EQ(ini.toText(),
            "[General]\nLangID=en\nUnit=1\n\n[Print]\nCalibrationX=99.5\nCalibrationY=100.25\n\n"
            "[MCP]\nEnableServer=TRUE\n\n[Odd]\nFlag=yes\n\n[AutoSave]\nUseAutoSave=1\n\n");
}

TEST(IniFile, SavesByReplacingTheFileWhole) {
  TTempDir dir;
  const std::string file = dir.file("pw_options.ini");
  writeTextFile(file, "[MCP]\nEnableServer=1\n");
  TIniFile ini(file);
  ini.WriteInteger("General", "Unit", 1);
  ini.saveToFile(file);
  EXPECT_EQ(readTextFile(file), "[MCP]\nEnableServer=1\n\n[General]\nUnit=1\n\n");
  EXPECT_THROW(ini.saveToFile(dir.file("no/such/folder/x.ini")), std::runtime_error);
  TIniFile missing(dir.file("absent.ini"));
  EXPECT_EQ(missing.toText(), "");
}
