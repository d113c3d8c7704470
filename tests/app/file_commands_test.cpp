// The File commands and autosave: the save question's paths, New, Open,
// Save and Save As, atomic saving, the autosave timer and its file, and
// the paint failure log.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "platform/safe_file.h"
#include "program_fixture.h"

namespace {

namespace fs = std::filesystem;

class FileCommands : public ::testing::Test {
 protected:
  TProgram program;
  TfrmPelw* f = nullptr;
  TScriptedDialogs& dialogs = program.dialogs;
  void SetUp() override { f = &program.start(); }
  void change() {
    f->addShapeToDocument(makeLine(TPointF(0, 0), TPointF(10, float(f->PathList->Count()))), 0);
    f->finishDocumentChange();
  }
  void makeAutosaveFile() { writeTextFile(f->autosaveFileName(), "{}"); }
};

TEST_F(FileCommands, CancelKeepsTheDocument) {
  change();
  makeAutosaveFile();
  dialogs.FAnswers = {TDialogAnswer::Cancel};
  f->actNewProject();
  ASSERT_EQ(dialogs.FQuestions.size(), 1u);
  EXPECT_EQ(dialogs.FQuestions[0], "Do you want to save the changes to the current project?");
  EXPECT_EQ(f->PathList->Count(), 1u);
  EXPECT_TRUE(fs::exists(f->autosaveFileName()));
  // Without a person the question keeps the work too.
  EXPECT_FALSE(f->FormCloseQuery());
}

TEST_F(FileCommands, NoDropsTheChangesAndTheAutosaveFile) {
  change();
  makeAutosaveFile();
  dialogs.FAnswers = {TDialogAnswer::No};
  f->actNewProject();
  EXPECT_TRUE(f->PathList->empty());
  EXPECT_FALSE(f->PathList->FIsChanged);
  EXPECT_FALSE(fs::exists(f->autosaveFileName()));
  EXPECT_EQ(f->FUndoList.size(), 1u);
  EXPECT_TRUE(f->FFilename.empty());
}

TEST_F(FileCommands, YesSavesFirstAndAsksForANameWhenThereIsNone) {
  change();
  makeAutosaveFile();
  // Yes, then the save dialog is cancelled: nothing happens.
  dialogs.FAnswers = {TDialogAnswer::Yes};
  f->actNewProject();
  EXPECT_EQ(f->PathList->Count(), 1u);
  EXPECT_TRUE(fs::exists(f->autosaveFileName()));
  // Yes with a name given: saved, then the new document.
  const std::string file = program.file("holder.pwc");
  dialogs.FAnswers = {TDialogAnswer::Yes};
  dialogs.FFileNames = {program.file("holder")};  // the extension is added
  f->actNewProject();
  EXPECT_TRUE(fs::exists(file));
  EXPECT_TRUE(f->PathList->empty());
  EXPECT_FALSE(fs::exists(f->autosaveFileName()));
  ASSERT_EQ(dialogs.FFileDialogs.size(), 2u);
  EXPECT_EQ(dialogs.FFileDialogs[0], "save:|");
}

TEST_F(FileCommands, OpenSaveAndSaveAs) {
  change();
  const std::string a = program.file("a.pwc"), b = program.file("sub/b.pwc");
  dialogs.FFileNames = {a};
  f->actSaveProject();  // no name yet: Save As
  EXPECT_EQ(f->FFilename, a);
  EXPECT_FALSE(f->PathList->FIsChanged);
  EXPECT_EQ(f->captionText(), "a.pwc - Pelwright ver3.6.1");
  change();
  makeAutosaveFile();
  f->actSaveProject();  // the same file, no dialog
  EXPECT_EQ(dialogs.FFileDialogs.size(), 1u);
  EXPECT_FALSE(fs::exists(f->autosaveFileName()));
  fs::create_directories(program.file("sub"));
  dialogs.FFileNames = {b};
  f->actSaveProjectAs();
  EXPECT_EQ(dialogs.FFileDialogs.back(), "save:" + program.dir.path() + "|a.pwc");
  EXPECT_EQ(readWholeFile(a), readWholeFile(b));

  f->actNewProject();
  EXPECT_EQ(f->captionText(), "Pelwright ver3.6.1");
  dialogs.FFileNames = {b};
  f->actLoadProject();
  EXPECT_EQ(f->FFilename, b);
  EXPECT_EQ(f->PathList->Count(), 2u);
  // Cancelled open dialog: nothing changes.
  f->actLoadProject();
  EXPECT_EQ(f->FFilename, b);
}

TEST_F(FileCommands, AFailedSaveLeavesTheOldFileWholeAndSaysWhy) {
  change();
  const std::string folder = program.file("locked");
  fs::create_directories(folder);
  const std::string file = folder + "/p.pwc";
  f->FFilename = file;
  ASSERT_TRUE(f->saveProject());
  const std::string before = readWholeFile(file);
  change();
  ::chmod(folder.c_str(), 0555);
  const bool canStillWrite = ::access(folder.c_str(), W_OK) == 0;  // root ignores the mode
  if (!canStillWrite) {
    EXPECT_FALSE(f->saveProject());
    ASSERT_FALSE(dialogs.FMessages.empty());
    EXPECT_NE(dialogs.FMessages.back().find("Cannot write " + file), std::string::npos);
    EXPECT_EQ(readWholeFile(file), before);
    EXPECT_TRUE(f->PathList->FIsChanged);
  }
  ::chmod(folder.c_str(), 0755);
  // A folder in place of the file cannot be renamed over either.
  const std::string blocked = program.file("blocked.pwc");
  fs::create_directories(blocked + "/x");
  f->FFilename = blocked;
  EXPECT_FALSE(f->saveProject());
  EXPECT_NE(dialogs.FMessages.back().find(blocked), std::string::npos);
  EXPECT_TRUE(fs::is_directory(blocked));
}

TEST_F(FileCommands, CloseAsksAndTellsTheWindow) {
  int closed = 0;
  f->FProgramHost.closeWindow = [&] { ++closed; };
  change();
  dialogs.FAnswers = {TDialogAnswer::Cancel};
  f->actClose();
  EXPECT_EQ(closed, 0);
  EXPECT_FALSE(f->FCloseQueryAnswered);
  dialogs.FAnswers = {TDialogAnswer::No};
  f->actClose();
  EXPECT_EQ(closed, 1);
  EXPECT_TRUE(f->FCloseQueryAnswered);
}

TEST_F(FileCommands, OpenNewWindowStartsAnInstanceWithItsMarker) {
  std::vector<std::string> got;
  f->FLaunchInstance = [&](const std::vector<std::string>& args) {
    got = args;
    return std::string();
  };
  f->actOpenNewWindow();
  ASSERT_EQ(got.size(), 2u);
  EXPECT_EQ(got[0], "--instance-id");
  EXPECT_EQ(got[1].size(), 9u);  // hhnnsszzz
  f->FLaunchInstance = [](const std::vector<std::string>&) { return std::string("Cannot start x: denied"); };
  f->actOpenNewWindow();
  EXPECT_EQ(dialogs.FMessages.back(), "Cannot start x: denied");
}

class Autosave : public FileCommands {
 protected:
  // Times as the timer sees them: the last operation and save long ago.
  void ageTimes() {
    f->PathList->FLastOperatedTime -= 10.0 / 86400;
    f->PathList->FLastChangeTime = f->PathList->FLastOperatedTime;
    f->PathList->FLastSavedTime = f->PathList->FLastChangeTime - 1.0 / 86400;
  }
};

TEST_F(Autosave, TimerWritesTheRecoveryFileAfterAPause) {
  EXPECT_EQ(f->TimerAutoSave->interval(), 1000);
  EXPECT_TRUE(f->TimerAutoSave->isActive());
  f->TimerAutoSaveTimer();  // nothing changed
  EXPECT_FALSE(fs::exists(f->autosaveFileName()));
  change();
  f->TimerAutoSaveTimer();  // the user is still at work
  EXPECT_FALSE(fs::exists(f->autosaveFileName()));
  ageTimes();
  f->FFilename = program.file("real.pwc");
  f->TimerAutoSaveTimer();
  ASSERT_TRUE(fs::exists(f->autosaveFileName()));
  EXPECT_FALSE(fs::exists(program.file("real.pwc")));  // the option is off
  EXPECT_EQ(f->FFilename, program.file("real.pwc"));
  // The changed state stays, so the question at close still comes.
  EXPECT_TRUE(f->PathList->FIsChanged);
  EXPECT_GT(f->PathList->FLastSavedTime, f->PathList->FLastChangeTime);
  // Its content is the project, loadable as such.
  TProgram other;
  TfrmPelw& g = other.start();
  ASSERT_TRUE(g.loadProject(f->autosaveFileName()));
  EXPECT_EQ(g.PathList->Count(), 1u);
  const std::string name = fs::path(f->autosaveFileName()).filename().string();
  EXPECT_EQ(name, "autosave_" + f->FRandomStr + ".tmp");
  EXPECT_LE(std::stoi(f->FRandomStr), 9999);
}

TEST_F(Autosave, WithTheOptionTheProjectFileItselfIsWritten) {
  f->FOptions.FUseAutoSave = true;
  change();
  ageTimes();
  f->FFilename = program.file("real.pwc");
  f->TimerAutoSaveTimer();
  EXPECT_TRUE(fs::exists(program.file("real.pwc")));
  EXPECT_FALSE(fs::exists(f->autosaveFileName()));
  EXPECT_TRUE(f->PathList->FIsChanged);
}

}  // namespace
