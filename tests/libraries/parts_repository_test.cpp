// The parts repository's files: loading the index, the templates and the
// tree from a folder that may hold anything; the built-in templates laid
// out from their archive; moves in the tree; import and export.
#include <gtest/gtest.h>

#include <filesystem>

#include "app/safe_file.h"
#include "libraries/builtin_templates.h"
#include "libraries/parts_repository.h"
#include "libraries/template_outline.h"
#include "test_support.h"

namespace fs = std::filesystem;

namespace {

// Reads a template as a project load reads a shape, without irons.
std::unique_ptr<TPW_Path> readShape(const nlohmann::ordered_json& jo) {
  auto s = std::make_unique<TPW_Path>(0, 0xFF000000, 1.0f, TStrokeDash::Solid, -1);
  s->loadJson(jo, nullptr);
  return s;
}

std::unique_ptr<TPW_Path> templateNamed(const std::string& name) {
  TPW_Path line(0, 0xFF000000, 1.0f, TStrokeDash::Solid, 1);
  line.drawLinePath(TPointF(0, 0), TPointF(30, 0));
  return mergeIntoTemplate({&line}, name);
}

struct TRepositoryFolder {
  TTempDir dir;
  TPartRepository repo;
  TRepositoryFolder() {
    repo.setAppDataPath(dir.path());
    fs::create_directories(repo.FRepositoryPath);
  }
  void reopen() {
    repo = TPartRepository();
    repo.setAppDataPath(dir.path());
    repo.load(readShape);
  }
};

}  // namespace

TEST(PartsRepository, LoadsInIndexOrderWithStrayFilesAtTheRootAndBrokenOnesSkipped) {
  TRepositoryFolder f;
  TPW_Path* a = f.repo.addTemplate(templateNamed("A"));
  TRepositoryTreeItem* bags = f.repo.newFolder(nullptr, "Bags");
  TPW_Path* b = f.repo.addTemplate(templateNamed("B"), bags);
  f.repo.saveIndexAndTree();
  const std::string guidA = a->FGUID.toString(), guidB = b->FGUID.toString();
  // A file copied in by hand, a broken one, a foreign one.
  auto c = templateNamed("C");
  writeTextFile(f.repo.FRepositoryPath + "/" + c->FGUID.toString() + ".pwcr", templateFileText(*c));
  writeTextFile(f.repo.FRepositoryPath + "/{BROKEN}.pwcr", "{\"meta\": {}, \"repository\": {\"id\": ");
  writeTextFile(f.repo.FRepositoryPath + "/readme.txt", "hello");
  f.reopen();
  ASSERT_EQ(f.repo.FPartRepository.size(), 3u);
  EXPECT_EQ(f.repo.FPartRepository[0]->FGUID.toString(), guidA);
  EXPECT_EQ(f.repo.FPartRepository[1]->FGUID.toString(), guidB);
  EXPECT_EQ(f.repo.FPartRepository[2]->FName, "C");
  TRepositoryTreeItem& root = *f.repo.FRootRepositoryTreeItem;
  EXPECT_EQ(root.FShapes.size(), 2u);  // A, and the stray C
  EXPECT_EQ(root.FShapes[1]->FName, "C");
  ASSERT_EQ(root.FTreeItems.size(), 1u);
  EXPECT_EQ(root.FTreeItems[0]->FName, "Bags");
  EXPECT_EQ(root.FTreeItems[0]->FShapes.at(0)->FName, "B");
  ASSERT_EQ(f.repo.FLoadProblems.size(), 1u);
  EXPECT_NE(f.repo.FLoadProblems[0].find("{BROKEN}.pwcr"), std::string::npos);

  // Nothing changed: the index and the tree are left as they are.
  const std::string indexFile = f.dir.file("repository_index.txt");
  writeTextFile(indexFile, guidA + "\n" + guidB + "\n");
  f.repo.saveIndexAndTree();
  EXPECT_EQ(readWholeFile(indexFile), guidA + "\n" + guidB + "\n");
  // A broken tree is kept aside when the user's change writes a new one.
  writeTextFile(f.dir.file("repository_tree.json"), "\x01\x02 not json");
  f.reopen();
  EXPECT_EQ(f.repo.FLoadProblems.size(), 2u);
  f.repo.newFolder(nullptr, "Belts");
  f.repo.saveIndexAndTree();
  EXPECT_EQ(readWholeFile(f.dir.file("repository_tree.json.damaged")), "\x01\x02 not json");
  f.reopen();
  EXPECT_EQ(f.repo.FRootRepositoryTreeItem->FTreeItems.size(), 1u);  // the folders of the broken tree are lost
}

TEST(PartsRepository, FoldersMoveButNeverIntoThemselves) {
  TRepositoryFolder f;
  TRepositoryTreeItem* outer = f.repo.newFolder(nullptr, "Outer");
  TRepositoryTreeItem* inner = f.repo.newFolder(outer, "Inner");
  TRepositoryTreeItem* other = f.repo.newFolder(nullptr, "Other");
  EXPECT_FALSE(checkNoLoop(outer, inner));
  EXPECT_FALSE(f.repo.moveFolder(outer, inner));
  EXPECT_FALSE(f.repo.moveFolder(outer, outer));
  EXPECT_EQ(f.repo.FRootRepositoryTreeItem->findParentTreeItem(inner), outer);
  EXPECT_TRUE(f.repo.moveFolder(inner, other));
  EXPECT_EQ(f.repo.FRootRepositoryTreeItem->findParentTreeItem(inner), other);
  TPW_Path* t = f.repo.addTemplate(templateNamed("T"), outer);
  EXPECT_TRUE(f.repo.moveTemplate(t, inner));
  EXPECT_EQ(f.repo.FRootRepositoryTreeItem->findTreeItemByShape(t), inner);
  EXPECT_TRUE(f.repo.shiftFolder(other, -1));
  EXPECT_EQ(f.repo.FRootRepositoryTreeItem->FTreeItems[0].get(), other);
  // A folder goes with all it holds, its template files too.
  const std::string file = f.repo.templateFileName(*t);
  EXPECT_TRUE(fs::exists(file));
  EXPECT_TRUE(f.repo.deleteRepositoryFolderCore(other));
  EXPECT_FALSE(fs::exists(file));
  EXPECT_TRUE(f.repo.FPartRepository.empty());
  EXPECT_FALSE(f.repo.deleteRepositoryFolderCore(f.repo.FRootRepositoryTreeItem.get()));
}

TEST(PartsRepository, BuiltinArchiveIsLaidOutWithoutOverwritingTheUsersFiles) {
  TRepositoryFolder f;
  const std::string archive = builtinTemplateArchiveText();
  // The checked-in archive is the one these shapes make (write it again
  // with `pelwright --write-templates` when they change).
  const std::vector<TZipEntry> shipped = readZipArchive(base64Decode(builtinTemplateArchive()));
  const std::vector<TZipEntry> drawn = builtinTemplateEntries();
  ASSERT_EQ(shipped.size(), drawn.size());
  for (size_t i = 0; i < drawn.size(); ++i) {
    EXPECT_EQ(shipped[i].FName, drawn[i].FName);
    EXPECT_EQ(shipped[i].FData, drawn[i].FData) << drawn[i].FName;
  }

  // The user's own index stays; a missing template comes back.
  writeTextFile(f.dir.file("repository_index.txt"), "");
  f.repo.deployBuiltinTemplates(archive);
  EXPECT_EQ(readWholeFile(f.dir.file("repository_index.txt")), "");
  const std::string oneTemplate = f.dir.file(drawn.front().FName);
  fs::remove(oneTemplate);
  writeTextFile(f.dir.file(drawn[1].FName), "the user's own edit");
  f.repo.deployBuiltinTemplates(archive);
  EXPECT_TRUE(fs::exists(oneTemplate));
  EXPECT_EQ(readWholeFile(f.dir.file(drawn[1].FName)), "the user's own edit");  // newer than the archive's
  fs::last_write_time(f.dir.file(drawn[1].FName), fs::file_time_type::clock::now() - std::chrono::hours(24 * 365 * 30));
  f.repo.deployBuiltinTemplates(archive);
  EXPECT_EQ(readWholeFile(f.dir.file(drawn[1].FName)), drawn[1].FData);  // older: replaced
  EXPECT_EQ(f.repo.FSystemRepositoryFiles.size(), drawn.size());

  TPartRepository started;  // as a start lays them out, then loads
  started.setAppDataPath(f.dir.path());
  started.deployBuiltinTemplates(archive);
  started.load(readShape);
  ASSERT_EQ(started.FPartRepository.size(), drawn.size() - 2);
  EXPECT_EQ(started.FRootRepositoryTreeItem->FTreeItems.size(), 6u);
  for (const auto& t : started.FPartRepository) {
    EXPECT_TRUE(started.isSystemTemplate(*t));
    EXPECT_EQ(t->FData.getData().find_first_of("Zz"), std::string::npos);
  }

  // An archive that would write outside the data folder writes nothing.
  TPartRepository evil;
  evil.setAppDataPath(f.dir.file("other"));
  evil.deployBuiltinTemplates(base64Encode(writeZipArchive({{"../escaped.txt", "x", 0}})));
  EXPECT_FALSE(fs::exists(f.dir.file("escaped.txt")));
  EXPECT_EQ(evil.FLoadProblems.size(), 1u);
}

TEST(PartsRepository, ExportedFolderImportsOnceOnly) {
  TRepositoryFolder from;
  TRepositoryTreeItem* belts = from.repo.newFolder(nullptr, "Belts");
  from.repo.addTemplate(templateNamed("Belt tip"), belts);
  from.repo.addTemplate(templateNamed("Keeper"), from.repo.newFolder(belts, "Keepers"));
  TTempDir out;
  EXPECT_EQ(from.repo.exportFolder(*belts, out.path()), 2);
  writeTextFile(out.file("{00000000-0000-0000-0000-00000000000A}.pwcr"), "not a template");

  TRepositoryFolder to;
  to.repo.load(readShape);
  EXPECT_EQ(to.repo.importFolder(out.path(), readShape), 2);
  EXPECT_EQ(to.repo.FLoadProblems.size(), 1u);
  to.repo.reload(readShape);
  EXPECT_EQ(to.repo.FPartRepository.size(), 2u);
  EXPECT_EQ(to.repo.FRootRepositoryTreeItem->FShapes.size(), 2u);
  EXPECT_TRUE(fs::exists(to.dir.file("repository_index.txt")));
  EXPECT_EQ(to.repo.importFolder(out.path(), readShape), 0);  // all there already
}
