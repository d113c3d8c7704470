// The phrase table built into the program, and the dictionary that serves it:
// lookups with their English fallback, and imports of tab-separated files.
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "app/builtin_phrases.h"
#include "app/multi_lang.h"
#include "test_support.h"

namespace {

// Messages whose English wording is fixed.
const std::pair<const char*, const char*> kFixedMessages[] = {
    {"SaveProject?", "Do you want to save the changes to the current project?"},
    {"OK2RemoveAll", "Is it okay to delete all the shapes?"},
    {"Require1Shape", "At least one shape is required to draw boundary."},
    {"RotationLimitation", "In the current version, only certain shapes can be rotated/scaled."},
    {"TrimmingNotSupported", "Trimming is only available for line, Bezier curve, arc or circle in this version."},
    {"CantMentori", "Can not perform corner beveling since two lines are not connected or crossed."},
    {"RequireNewProject", "To use this feature, please perform \"New Project\" first."},
    {"ShapesNotClosed", "To simulate with leather picture, selected shapes need to be closed (looped)."},
    {"NothingToExport", "There is nothing to export."},
    {"Nothing2Print", "There is nothing to print."},
    {"FileNotFound", "File not found: "},
    {"endlessloop", "Endless loop error"},
    {"num_duplicates", "There exists duplicates at the same location on the same layer:"},
    {"duplicates_deleted", "Number of deleted duplicates:"},
    {"ask_duplicates_deleted", "Do you want to delete them?"},
    {"specifyAngleNeedsTwoLines", "To specify angle, please select two lines jointed at an end."},
    {"confirmDeleteLayer", "Deleting this layer will also delete all the shapes on the layer. Are you sure you want to delete this layer?"},
    {"LayerMoveModeOn", "Select the shapes you want to move to other layer, then click the destination layer in the layer list (Press ESC to cancel)"},
    {"bladeformaterror", "Error in number of blades. Please put numbers separated by space."},
    {"bladeformaterror2", "Please put 1 or larger number(s) in the numbers of blades field separated by space."},
    {"CannotDeleteSystePrickingIrons", "This pricking iron group is defined by system. Cannot be deleted."},
    {"ok2delete?", "Is it okay to delete?"},
    {"deleteLeather", "Are you sure to delete the following leather?"},
    {"stl_msg_no_selection", "Please select one or more closed shapes first. STL Export creates 3D patterns or alignment jigs from the selected shapes."},
    {"stl_msg_no_closed_shapes", "Preview: no closed shapes"},
    {"stl_msg_skipped_regions", "Skipped %d region(s) (chamfer/fillet too tight for some shape)"},
    {"TangentOperationGuide", "Press and hold CTRL key, then select 2 or 3 lines or circles."},
    {"symmetryMode", "Symmetry Mode: Please click the symmetry line (Press ESC key to cancel)"},
    {"selectNextStitchingHoleMode", "Please click the next stitching hole. (Press ESC key to exit)"},
    {"EstimatedBestPitch", "Estimated best pitch: "},
    {"AutoPitch", "Auto pitch: "},
    {"#ofAutoPricks", "# of Pricked Holes:"},
};

// The rows of the built-in table as raw cells, comments left out.
std::vector<std::vector<std::string>> tableRows() {
  std::vector<std::vector<std::string>> rows;
  std::istringstream in{std::string(builtinPhrasesTSV())};
  for (std::string line; std::getline(in, line);) {
    if (line.rfind("//", 0) == 0) continue;
    std::vector<std::string> cells;
    std::istringstream cellsIn(line);
    for (std::string cell; std::getline(cellsIn, cell, '\t');) cells.push_back(cell);
    if (!line.empty() && line.back() == '\t') cells.push_back("");
    rows.push_back(cells);
  }
  return rows;
}

size_t count(const std::string& text, const std::string& what) {
  size_t n = 0;
  for (size_t p = text.find(what); p != std::string::npos; p = text.find(what, p + what.size())) ++n;
  return n;
}

}  // namespace

// ---- the built-in table ----

// Every phrase that is there keeps the English phrase's markers, in order:
// a translation that drops or swaps a "%d" would print garbage or crash a
// formatter.
TEST(BuiltinPhrases, EveryRowHasFourteenLanguagesAndEveryPhraseTheEnglishMarkers) {
  std::vector<std::string> keys;
  for (const auto& r : tableRows()) {
    ASSERT_EQ(r.size(), 16u) << r.at(1);
    keys.push_back(r[1]);
    EXPECT_EQ(r[0], "") << r[1];
    EXPECT_FALSE(r[2].empty()) << "no Japanese for " << r[1];
    EXPECT_FALSE(r[3].empty()) << "no English for " << r[1];
    for (size_t c = 2; c < r.size(); ++c)
      if (!r[c].empty() && c != 3 && r[1] != "two-letter-codes")
        EXPECT_EQ(phrasePlaceholders(r[c]), phrasePlaceholders(r[3])) << r[1] << " in column " << c;
  }
  EXPECT_EQ(phrasePlaceholders("Skipped %d region(s) at 100 % and %.2f%% or %s"),
            (std::vector<std::string>{"%d", "%.2f", "%s"}));
  EXPECT_EQ(fillPhrase("Line %d has %d columns (100%%)", {"7", "3"}), "Line 7 has 3 columns (100%)");
  std::sort(keys.begin(), keys.end());
  EXPECT_EQ(std::adjacent_find(keys.begin(), keys.end()), keys.end()) << "a key appears twice";
}

// Switched on once the table is translated: no phrase of any language
// falls back to English.
TEST(BuiltinPhrases, DISABLED_EveryLanguageHasEveryPhrase) {
  for (const auto& r : tableRows())
    for (size_t c = 2; c < r.size(); ++c) EXPECT_FALSE(r[c].empty()) << r[1] << " in column " << c;
}

TEST(BuiltinPhrases, EmbeddedTextIsTheResourceFile) {
  const std::string resource = std::string(PELWRIGHT_SOURCE_DIR) + "/resources/phrases.tsv";
  EXPECT_EQ(std::string(builtinPhrasesTSV()), readTextFile(resource));
}

TEST(BuiltinPhrases, LoadsAllLanguagesWithTheirCodesAndNames) {
  TMultiLang lang;
  ASSERT_TRUE(lang.loadBuiltinPhrases());
  EXPECT_EQ(lang.languageOrder(), TMultiLang::tableLanguageCodes());
  ASSERT_EQ(TMultiLang::tableLanguageCodes().size(), 14u);
  for (const auto& code : TMultiLang::tableLanguageCodes()) {
    EXPECT_TRUE(lang.isSupported(code)) << code;
    EXPECT_EQ(lang.getTranslation(code, "two-letter-codes"), code);
    EXPECT_FALSE(lang.getTranslation(code, "LanguageName").empty()) << code;
  }
  const std::pair<const char*, const char*> names[] = {
      {"ja", "日本語"},   {"en", "English"},  {"am", "Հայերեն"},  {"de", "Deutsch"},
      {"es", "Español"}, {"fr", "Français"}, {"it", "Italiano"}, {"no", "Norsk"},
      {"ru", "Русский"}, {"zh-cn", "简体中文"}};
  for (const auto& [code, name] : names) EXPECT_EQ(lang.getTranslation(code, "LanguageName"), name);
  EXPECT_EQ(lang.FLangDict.at("en").FDict.size(), tableRows().size());
  EXPECT_EQ(lang.FLangDict.at("ja").FDict.size(), tableRows().size());
}

TEST(BuiltinPhrases, FixedMessagesReadExactly) {
  TMultiLang lang;
  ASSERT_TRUE(lang.loadBuiltinPhrases());
  for (const auto& [key, english] : kFixedMessages) {
    EXPECT_EQ(lang.getTranslation("en", key), english) << key;
    const std::string japanese = lang.getTranslation("ja", key);
    EXPECT_FALSE(japanese.empty()) << key;
    EXPECT_NE(japanese, english) << key;
  }
  EXPECT_EQ(lang.getTranslation("ja", "actSaveProject"), "プロジェクトを保存");
  EXPECT_EQ(lang.getTranslation("en", "actSaveProject"), "Save project");
  EXPECT_EQ(lang.getTranslation("en", "lblLayerCaption"), "Layer");
}

// ---- lookup ----

TEST(PhraseLookup, FallsBackToEnglishOnlyForLanguagesThatHaveATable) {
  TMultiLang lang;
  lang.addTranslation("en", "onlyEnglish", "Pitch");
  lang.addTranslation("en", "both", "Thread");
  lang.addTranslation("ja", "both", "糸");
  lang.addTranslation("fr", "other", "Fil");

  EXPECT_EQ(lang.getTranslation("ja", "both"), "糸");
  EXPECT_EQ(lang.getTranslation("ja", "onlyEnglish"), "Pitch");
  EXPECT_EQ(lang.getTranslation("fr", "onlyEnglish"), "Pitch");
  // No table at all: nothing, even for a key that English has.
  EXPECT_FALSE(lang.isSupported("de"));
  EXPECT_EQ(lang.getTranslation("de", "onlyEnglish"), "");
  // A key that nobody has is simply empty.
  EXPECT_EQ(lang.getTranslation("ja", "nowhere"), "");
  EXPECT_EQ(lang.getTranslation("en", "other"), "");

  lang.addTranslation("ja", "both", "麻糸");
  EXPECT_EQ(lang.getTranslation("ja", "both"), "麻糸");
  lang.clearLanguages();
  EXPECT_FALSE(lang.isSupported("en"));
  EXPECT_EQ(lang.getTranslation("en", "both"), "");
}

// ---- import ----

TEST(PhraseImport, ReplacesTheTablesWithTheFileOnlyTwoLanguagesGiven) {
  TTempDir dir;
  // Columns in another order than the built-in table; a BOM and Windows
  // line ends, as a spreadsheet writes them.
  writeTextFile(dir.file("two.tsv"),
                "\xEF\xBB\xBF// exported from a spreadsheet\r\n"
                "\ttwo-letter-codes\ten\tja\r\n"
                "1\tactSaveProject\tSave\t保存\r\n"
                "2\tonlyEnglish\tStitch\t\r\n");
  TMultiLang lang;
  ASSERT_TRUE(lang.loadBuiltinPhrases());
  ASSERT_TRUE(lang.importTSV(dir.file("two.tsv")));

  EXPECT_EQ(lang.languageOrder(), (std::vector<std::string>{"en", "ja"}));
  EXPECT_EQ(lang.getTranslation("en", "actSaveProject"), "Save");
  EXPECT_EQ(lang.getTranslation("ja", "actSaveProject"), "保存");
  EXPECT_EQ(lang.getTranslation("ja", "onlyEnglish"), "Stitch");
  EXPECT_EQ(lang.FLangDict.at("en").FDict.size(), 3u);  // with "two-letter-codes"
  // The built-in phrases are gone; the other languages have no table and
  // give nothing, while the language menu still lists all fourteen.
  EXPECT_EQ(lang.getTranslation("en", "SaveProject?"), "");
  for (const char* code : {"de", "ru", "zh-cn"}) {
    EXPECT_FALSE(lang.isSupported(code));
    EXPECT_EQ(lang.getTranslation(code, "actSaveProject"), "");
  }
  EXPECT_EQ(TMultiLang::tableLanguageCodes().size(), 14u);
}

// A file that is not a translation table, or is one with a broken row, is
// refused whole: the tables stay as they were.
TEST(PhraseImport, BadFilesAreRefusedWholeAndChangeNothing) {
  using R = TMultiLang::TImportRefusal;
  const std::string head = "\ttwo-letter-codes\ten\tja\n\tfirst\tOne\t一\n";
  const std::string tail = "\tlast\tThree\t三\n";
  const std::tuple<std::string, R, int> cases[] = {
      {head + "\tshort\tTwo\n" + tail, R::WrongColumnCount, 3},
      {head + "no tabs at all\n" + tail, R::WrongColumnCount, 3},
      {head + "\tshifted\tTwo\t二\textra\n" + tail, R::WrongColumnCount, 3},
      {"\tk\tOne\t一\n", R::NoLanguageRow, 0},
      {"key,en,ja\nfirst,One,Uno\n", R::NotTabSeparated, 0},
      {head + std::string("\tbin\t\0\t\0\n", 8), R::NotTabSeparated, 0},
      {head + "\tlatin1\tCaf\xE9\tx\n", R::NotUtf8, 0},
      {head + std::string(TMultiLang::kMaxImportBytes, '\t'), R::TooLarge, 0},
  };
  TTempDir dir;
  for (const auto& [text, refusal, line] : cases) {
    TMultiLang lang;
    ASSERT_TRUE(lang.loadBuiltinPhrases());
    const auto r = lang.importTSVText(text);
    EXPECT_EQ(r.FRefusal, refusal) << text.substr(0, 60);
    EXPECT_EQ(r.FLine, line) << text.substr(0, 60);
    EXPECT_EQ(lang.getTranslation("ja", "actSaveProject"), "プロジェクトを保存");
    EXPECT_EQ(lang.getTranslation("ja", "first"), "");
    EXPECT_EQ(lang.languageOrder().size(), 14u);
  }
  // A huge file is refused before it is read.
  writeTextFile(dir.file("huge.tsv"), head + std::string(TMultiLang::kMaxImportBytes, 'x'));
  TMultiLang lang;
  lang.addTranslation("de", "old", "alt");
  EXPECT_EQ(lang.importTSV(dir.file("huge.tsv")).FRefusal, R::TooLarge);
  EXPECT_EQ(lang.getTranslation("de", "old"), "alt");
}
