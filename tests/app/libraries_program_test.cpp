// The libraries as the program runs them: start-up with foreign and broken
// files, shut-down that writes only what changed, templates registered and
// placed, leather fills kept through a save, and backdrops added, changed,
// undone, calibrated and saved in the project.
#include <gtest/gtest.h>

#include <filesystem>

#include "app/safe_file.h"
#include "libraries/picture_codec.h"
#include "program_fixture.h"

namespace fs = std::filesystem;

namespace {

void writeBmp(const std::string& file, int w, int h) {
  std::vector<uint32_t> px(size_t(w) * h, 0xFF8080FFu);
  writeFileAtomically(file, encodeBmp(TRasterImage::fromPixels(w, h, std::move(px))));
}

std::map<std::string, std::pair<std::string, fs::file_time_type>> snapshotFolder(const std::string& folder) {
  std::map<std::string, std::pair<std::string, fs::file_time_type>> files;
  for (const auto& e : fs::recursive_directory_iterator(folder))
    if (e.is_regular_file() && e.path().filename() != "pw_options.ini" && e.path().filename() != "prickingirons.pwcp")
      files[e.path().string()] = {readWholeFile(e.path().string()), fs::last_write_time(e.path())};
  return files;
}

}  // namespace

TEST(LibrariesProgram, StartsWithForeignFilesNamedAndLeavesEverythingAsItWas) {
  TProgram p;
  p.seed("repository/{11111111-2222-4333-8444-555555555555}.pwcr", "garbage");
  p.seed("catalogs/catalog_shop_{X}.json", "{not json");
  p.seed("catalogs/shop_index.txt", "catalog_shop_{X}.json\r\n");
  TfrmPelw& f = p.start();
  // The built-in templates, in their folders named in the language.
  EXPECT_EQ(f.FRepository->FPartRepository.size(), 15u);
  ASSERT_EQ(f.FRepository->FRootRepositoryTreeItem->FTreeItems.size(), 6u);
  EXPECT_EQ(f.FRepository->FRootRepositoryTreeItem->FTreeItems[5]->FName, "Basic shapes");
  f.setLanguage("ja");
  EXPECT_EQ(f.FRepository->FRootRepositoryTreeItem->FTreeItems[5]->FName, "基本図形");
  f.setLanguage("en");
  // One message names both broken files.
  ASSERT_EQ(p.dialogs.FMessages.size(), 2u);
  EXPECT_NE(p.dialogs.FMessages[0].find("catalog_shop_{X}.json"), std::string::npos);
  EXPECT_NE(p.dialogs.FMessages[1].find("{11111111-2222-4333-8444-555555555555}.pwcr"), std::string::npos);
  const auto before = snapshotFolder(p.appData());
  p.stop();
  EXPECT_EQ(snapshotFolder(p.appData()), before);
}

TEST(LibrariesProgram, SelectionBecomesATemplateThatPlacesAsOneUndoStep) {
  TProgram p;
  TfrmPelw& f = p.start();
  f.addShapeToDocument(makeLine(TPointF(0, 0), TPointF(40, 0)), 0);
  f.addShapeToDocument(makeLine(TPointF(40, 0), TPointF(40, 20)), 0);
  for (const auto& s : *f.PathList) s->FSelected = true;
  f.finishDocumentChange();
  p.dialogs.FInputs.push_back("Corner");
  TPW_Path* t = f.miToParts();
  ASSERT_NE(t, nullptr);
  EXPECT_EQ(t->FShapeType, "OTHER");
  EXPECT_EQ(t->FName, "Corner");
  EXPECT_EQ(p.dialogs.FMessages.back(), "\"Corner\" has been registered to the parts repository.");
  EXPECT_TRUE(fs::exists(f.FRepository->templateFileName(*t)));
  EXPECT_NE(readWholeFile(p.appData() + "/repository_index.txt").find(t->FGUID.toString()), std::string::npos);

  const size_t undoLevels = f.FUndoList.size();
  TPW_Path* placed = f.placeTemplate(*t, TPointF(100, 100));
  ASSERT_NE(placed, nullptr);
  EXPECT_EQ(f.PathList->Count(), 3u);
  EXPECT_NE(placed->FID, t->FID);
  EXPECT_TRUE(placed->FSelected);
  EXPECT_EQ(placed->getBoundary(false).normalized().centerPoint(), TPointF(100, 100));
  EXPECT_EQ(f.FUndoList.size(), undoLevels + 1);
  f.actUndo();
  EXPECT_EQ(f.PathList->Count(), 2u);

  // A folder into its own sub-folder is refused with a message.
  TRepositoryTreeItem* outer = f.newRepositoryFolder(nullptr);
  TRepositoryTreeItem* inner = f.newRepositoryFolder(outer);
  EXPECT_EQ(outer->FName, "New Folder");
  EXPECT_FALSE(f.moveRepositoryItem(nullptr, outer, inner));
  EXPECT_EQ(p.dialogs.FMessages.back(), "A folder cannot be moved into itself or into one of its own folders.");
  // An import of what is all here already.
  TTempDir exported;
  f.FRepository->exportFolder(*f.FRepository->FRootRepositoryTreeItem, exported.path());
  p.dialogs.FFolders.push_back(exported.path());
  f.actImportRepository();
  EXPECT_EQ(p.dialogs.FMessages.back(), "There is nothing to import.");
}

TEST(LibrariesProgram, LeatherFillSurvivesTheItemAndCatalogsTravelAsCtlg) {
  TProgram p;
  TfrmPelw& f = p.start();
  TPW_CatalogShop* shop = f.addCatalogShop("Tannery");
  TPW_Catalog* item = f.addCatalogItem(*f.addCatalogGroup(*shop, "Calf"), "Box calf");
  const TGUID guid = item->FGUID;
  auto circle = std::make_unique<TPW_Path>(0, 0xFF00FFFF, 1.5f, TStrokeDash::Solid, 0);
  circle->FShapeType = ShapeType::Other;
  circle->FData.setData("M0,0 L40,0 L40,30 Z");
  circle->FSelected = true;
  f.addShapeToDocument(std::move(circle), 0);
  EXPECT_EQ(f.applyCatalogToSelection(item, 30, TPointF(2, 2)), 1);

  TTempDir out;
  p.dialogs.FFileNames.push_back(out.file("tannery.ctlg"));
  f.actExportCatalog(*shop);
  EXPECT_NE(readWholeFile(out.file("tannery.ctlg")).find("\"file_type\":\"Pelwright_Catalog_Data\",\"version\":\"3.6.1\"},\"shop\":{\"Name\":\"Tannery\""),
            std::string::npos);
  EXPECT_FALSE(f.importCatalogFile(out.file("tannery.ctlg")));  // known already
  EXPECT_EQ(f.FCatalogDict->FShops.size(), 1u);

  p.dialogs.FAnswers.push_back(TDialogAnswer::Yes);
  EXPECT_TRUE(f.deleteCatalogShop(shop));
  EXPECT_EQ(f.FCatalogDict->findCatalogItem(guid), nullptr);
  f.writeProjectFile(out.file("filled.pwc"));
  EXPECT_NE(readWholeFile(out.file("filled.pwc")).find("\"ctlg\":\"" + guid.toString() + "\",\"ctlgrt\":\"30\""),
            std::string::npos);
  EXPECT_TRUE(f.importCatalogFile(out.file("tannery.ctlg")));
  EXPECT_NE(f.FCatalogDict->findCatalogItem(guid), nullptr);
  const std::string shopFile = p.appData() + "/catalogs/" + f.FCatalogDict->FShops.at(0)->getFileName();
  p.stop();
  EXPECT_NE(readWholeFile(shopFile).find("Box calf"), std::string::npos);
}

TEST(LibrariesProgram, BackdropChangesAreOwnUndoStepsAndTravelInTheProject) {
  TProgram p;
  TfrmPelw& f = p.start();
  const std::string picture = p.file("scan.bmp");
  writeBmp(picture, 300, 600);
  ASSERT_TRUE(f.addBackdropFromFile(picture));
  TBackdrop* b = f.selectedBackdrop();
  ASSERT_NE(b, nullptr);
  EXPECT_FLOAT_EQ(b->FWidth, 25.4f);
  EXPECT_FLOAT_EQ(b->FHeight, 50.8f);
  EXPECT_TRUE(f.PathList->FIsChanged);
  const size_t documentUndo = f.FUndoList.size();

  f.setBackdropTool(true);
  EXPECT_FALSE(f.canUndo());  // the window's Undo follows the backdrop's own steps
  f.actUndo();  // a fresh backdrop: nothing to undo
  EXPECT_EQ(b->FLeftTop, TPointF(0, 0));
  f.moveBackdrop(TPointF(10, 20));
  EXPECT_TRUE(f.canUndo());
  f.rotateBackdrop(90);
  f.setBackdropDpi(150);
  EXPECT_FLOAT_EQ(b->FWidth, 50.8f);
  f.actUndo();
  EXPECT_FLOAT_EQ(b->FWidth, 25.4f);
  EXPECT_EQ(b->FAngle, 90);
  f.actUndo();
  EXPECT_EQ(b->FAngle, 0);
  f.actRedo();
  EXPECT_EQ(b->FAngle, 90);
  EXPECT_EQ(f.FUndoList.size(), documentUndo);  // the document's undo is not touched

  // Two points 10 mm apart on the picture are 20 mm on the real thing.
  const TPointF p1 = b->centre();
  const TPointF p2 = p1 + TPointF(0, 10);
  EXPECT_TRUE(f.calibrateBackdrop(p1, p2, 20));
  EXPECT_NEAR(b->FHeight, 101.6, 1e-3);
  EXPECT_NEAR(b->FDpi, 150, 1e-3);
  EXPECT_FALSE(f.calibrateBackdrop(p1, p1, 20));

  // The pointer of the backdrop tool drags it, one undo step.
  f.pboxResize(800, 600);
  const TPointF at = f.RealToScreen(b->centre());
  const TPointF before = b->FLeftTop;
  const size_t steps = b->FUndoList.size();
  f.pboxMouseDown(TMouseButton::mbLeft, 0, at);
  f.pboxMouseMove(0, at + TPointF(float(f.FScale.x * 5), 0));
  f.pboxMouseUp(TMouseButton::mbLeft, 0, at + TPointF(float(f.FScale.x * 5), 0));
  EXPECT_NEAR(b->FLeftTop.x - before.x, 5.0, 1e-3);
  EXPECT_EQ(b->FUndoList.size(), steps + 1);

  // Saved and opened again: place, size and picture, without the file.
  const TBackdrop saved = *b;
  f.writeProjectFile(p.file("traced.pwc"));
  fs::remove(picture);
  p.dialogs.FAnswers.push_back(TDialogAnswer::No);  // not saved again
  f.actNewProject();
  EXPECT_TRUE(f.FBackdrops.empty());
  ASSERT_TRUE(f.loadProject(p.file("traced.pwc")));
  ASSERT_EQ(f.FBackdrops.size(), 1u);
  const TBackdrop& loaded = *f.FBackdrops[0];
  EXPECT_EQ(loaded.FLeftTop, saved.FLeftTop);
  EXPECT_EQ(loaded.FAngle, saved.FAngle);
  EXPECT_FLOAT_EQ(loaded.FWidth, saved.FWidth);
  EXPECT_EQ(*loaded.FBitmap.FPixels, *saved.FBitmap.FPixels);
  EXPECT_EQ(loaded.getUndoBufferCount(), 1);
  f.writeProjectFile(p.file("again.pwc"));
  EXPECT_EQ(readWholeFile(p.file("again.pwc")), readWholeFile(p.file("traced.pwc")));

  // Files that are no pictures, or are not there.
  writeTextFile(p.file("notes.png"), "just text");
  EXPECT_FALSE(f.addBackdropFromFile(p.file("notes.png")));
  EXPECT_FALSE(f.addBackdropFromFile(p.file("gone.png")));
  EXPECT_EQ(p.dialogs.FMessages.back(), "File not found: " + p.file("gone.png"));
  EXPECT_EQ(f.FBackdrops.size(), 1u);
}
