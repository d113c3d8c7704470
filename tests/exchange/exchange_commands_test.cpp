// The File menu's export and import commands through the controller, with
// scripted dialogs: what the user is told and where the dialogs open.
#include <gtest/gtest.h>

#include <filesystem>

#include "../app/program_fixture.h"
#include "app/safe_file.h"
#include "platform/exchange_dialogs.h"

namespace {

struct TScriptedExchangeDialogs : IExchangeDialogs {
  std::vector<std::string> FFiles;     // answers of the file dialogs, in turn
  std::vector<std::string> FOpenedIn;  // the folder each file dialog opened in
  int FOptionDialogs = 0;
  bool exportOptions(const std::string&, const TPhraseLookup&, TExportDialogValues& v) override {
    ++FOptionDialogs;
    v.FHolesAsDots = false;
    return true;
  }
  bool askNumber(const std::string&, const std::string&, double&) override { return false; }
  std::string next(const std::string& folder) {
    FOpenedIn.push_back(folder);
    if (FFiles.empty()) return {};
    std::string f = FFiles.front();
    FFiles.erase(FFiles.begin());
    return f;
  }
  std::string saveFileName(const std::string&, const std::string&, const std::string& folder, const std::string&,
                           const std::string&) override {
    return next(folder);
  }
  std::string openFileName(const std::string&, const std::string& folder) override { return next(folder); }
};

}  // namespace

TEST(ExchangeCommands, ExportTellsWhatItWroteAndRemembersTheFolder) {
  TProgram p;
  TScriptedExchangeDialogs ex;
  TfrmPelw& f = p.start();
  f.FExchangeDialogs = &ex;
  f.actExportAsSVG();  // an empty drawing: said at once, no dialog
  EXPECT_EQ(p.dialogs.FMessages.back(), "There is nothing to export.");
  EXPECT_EQ(ex.FOptionDialogs, 0);

  f.addShapeToDocument(makeLine({0, 0}, {50, 0}), 0);
  f.finishDocumentChange();
  f.PathList->SetlayerVisible(0, false);
  std::filesystem::create_directories(p.file("out"));
  ex.FFiles = {p.file("out/hidden")};
  f.actExportAsDXF();  // everything filtered out
  EXPECT_EQ(p.dialogs.FMessages.back(), "There is nothing to export.");
  EXPECT_FALSE(std::filesystem::exists(p.file("out/hidden.dxf")));

  f.PathList->SetlayerVisible(0, true);
  ex.FFiles = {p.file("out/strap")};
  f.actExportAsSVG();
  EXPECT_EQ(p.dialogs.FMessages.back(), "Exported as SVG format:\n" + p.file("out/strap.svg"));
  EXPECT_NE(readWholeFile(p.file("out/strap.svg")).find("<line x1=\"0.000\""), std::string::npos);
  EXPECT_FALSE(f.FOptions.FSVG_as_dots);  // the dialog's choice is kept in the options
  // The import dialog opens where the export wrote, and the picture comes in as one undo step.
  ex.FFiles = {p.file("out/strap.svg")};
  f.actImportSVG();
  EXPECT_EQ(ex.FOpenedIn.back(), p.file("out"));
  EXPECT_EQ(f.PathList->Count(), 2u);
  f.actUndo();
  EXPECT_EQ(f.PathList->Count(), 1u);
}
