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

// The keys of the commands, tools, panels and dialogs, in table order.
const char* const kListedKeys = R"(
two-letter-codes LanguageName miFile miEdit miTools miView miHelp actNewProject actLoadProject
actOpenNewWindow actSaveProject actSaveProjectAs actPrint actExportAsSVG actExportAsDXF
actExportAsPDF actClose actImportSVG ImportSVGAsIs actResetView actShowHideGrid
actShowHidePrintAreas actShowHideTracings actShowHideDimensionLines actShowHideScale
actSelectAll actCopyToClipboard actPasteFromClipboard actCutToClipboard actDeleteSelectedShapes
actDeselectAll actImportRepository actUndo actRedo actOpenOptions actExtendOrTrimLines
actEditShapeSize actEditLineAngle actDeleteDuplicates actOpenDemoProject actViewReleaseNotes
actHowToUseMandala actViewHotKeyList actShowReleaseNote actShowAbout
actMoveOrCopyWithSetDistance actChangeStitchingHoleShape actReversePath actSetAsRotationCenter
actSetAsSnapPoint actCreateGroup actUngroup actDeleteStitchingHolesOnSelectedPaths miBoxStitch
miToParts actSeparateTemplateIntoShapes actConvertToPath actConvertACopyToPath
actConvertArcToBezier actCountNumOfStitchingHolesOnSelectedPaths numOfStitchingHoles
actBezierMenu actShowHideBeizerOffsetSupportLInes actBezierCp_makeOpponentSameLength
actBezierCp_makeOpponentFlat actBezierCp_makeOpponentSymmetric miRepository actAlignment
actAlignLeft actAlignRight actAlignTop actAlignBottom actAlignMiddleH actAlignMiddleV actOrder
actOrder_BringToFront actOrder_SendToBack miStitchPattern actEndsStitchHere
actSelectNextStitchingHole actShowHideStitchingSimulator actToggleAlwaysShowStitchSimulator
actBoxStitch actExtractAsBoxStitchLine miDesignHelper actDesignHelper_GoldenRatio
actDesignHelper_WhiteSilverRatio miRotation actRotateCW1Deg actRotateCW5Deg actRotateCCW1Deg
actRotateCCW5Deg actSpecifyRotationAngle askRotationAngle askRotationAngleBody
actMakeSelectedLineHorizontal actMakeSelectedLineVertical actSpecifyScaleRatio
actSpecifyScaleRatioHorizontally actSpecifyScaleRatioVertically actScaleUp1 actScaleUp5
actScaleDown1 actScaleDown5 askScalingRatio askScalingRatioBody sbSelect sbDot sbLine sbBezier
sbCircle sbArc sbRect sbText sbStitch sbMentori sbOffset sbCenterLine actCenterLine
sbDistMarkLine sbTrimming sbDimensionLine sbMandala sbBackdrop actFlipHorizontally
actFlipVertically actLineSymmetry lblLineAngle rbLineAngleNone rbLineRelativeAngle
rbLineHorizontal chkLineLength chkEllipseXlen chkEllipseYlen rbArc_R rbArc_3_points
rbArc_HalfMoonRatio chkRectWidth chkRectHeight lblTextFontSize lblTextRotation btnEnterText
btnCancelTextEditing lblTextTracking lblTextRadius chkTextFill actEditFontList chkInverted
chkReduceOneBlade lblAutoPrickingMode lblCornerMode lblCornerAngle cmbCornerMode_0
cmbCornerMode_1 cmbCornerMode_2 rbAutoPitchAdjust rbFixedPitch chkShowStitchPattern
chkShowEvenStitches chkShowOddStitches lblMentoriRadius lblOffsetWidth lblCenterLineLen
lblCenterLineDivisions chkDrawEdges lblMarkingPos1 lblMarkingPos2 lblMarkingLineLen
chkDrawFirstPos chkContinuousDistanceMarking chkDms_SingleLine chkDms_TextInside
chkDms_ArrowOnly chkDms_TextReverse lblDMS_Precision lblMandalaMode lblMandala_Num_Sections
lblMandala_rotation lblMandala_Circle_factor lblMandala_ratio chkMandala_RelativeDiameter
actMirrorMandalaItem miMandala actSetAsMandalaCenter btnSetNewMandalaCenter
chkMandala_NoIntersectionCalc btnMandala_ClearIntersections btnMandala_CalcIntersections
actAddBackdrop btnAddBackdrop btnDeleteBackdrop lblTracePosX lblTraceRotation chkOpacity
btnEditPalette btnOpenRepository actClearAll actDrawBoundary rbBlackBG rbWhiteBG chkPinSideBar
actDrawGoldenSpiral CaptionGuideSize_WS QGuideSizeBody_WS CaptionGuideSize_GLD
QGuideSizeBody_GLD lblPTB_Title btnCreateNewGroup btnDeletePrickingIronGroup lblPTB_Name
lblPTB_Kind lblPTB_Width lblPTB_Height lblPTB_Rotation lblPTB_Pitch lblPTB_NumBlades chkShow5mm
chkPTB_Invert btnPTB_ApplyChange actLinePaletteShowHide actLinePaletteSelectAll
actLinePaletteUnselectLineType actLinePaletteUnselectOthers lblEP_LineType lblEP_Color
lblEP_Thickness lblEP_Pattern chkIgnoreInPrinting btnClosePrintPreview lblPPV_LineThickness
chkPrintStitchingHoleAsDot chkShowNotForPrintLines chkPrintIntoMergin btnPageSetup
btnExecutePrint chkTilePrint lblNumTilesX lblTilesOverlap chkPrintSelectedShapesOnly
chkPreview_RulerInside chkTrim_NotchMode lblNotchDepth lblNotchAngle lblLA_Title
lblLA_Description rbNoAdjustment rbUseLength rbUseRatio sbAddToCanvas sbRename btnSortTemplate
sbDelete sbRT_NewFolder sbRT_Move sbRT_Up sbRT_Down sbNewFolder gbOP_DefaultPitchMode
lblOP_DefaultPitchMode rbAutoPitchAuto rbAutoPitchFixed rbSetNumOfHoles chkForceFitLastPrick
gbOP_AutoSave chkUseAutoSave gbOP_EditOptions chkIncrementalSelection chkMentoriWithoutCtrl
gbOP_PrintCalibration lblOP_ActualScaleLengthX lblOP_ActualScaleLengthY gbOP_BoxStitchHelper
lblBoxStitchSearchDistance gbOP_AutoPitchParameters lblOP_AutoPitchPrecision
lblOP_AutoPitchSteps lblOP_AutoPitchGapAllowance gbOP_ZoomAndScroll chkOP_ReverseZoomDirection
chkOP_ReverseKeyboardPanDirection lblOP_PrintCalibrationNote gbOP_Unit rbUnitModeMetrics
rbUnitModeImperial lblGift lblCrypto ExportedAsSVG ExportedAsDXF NoPDFExport NoPrintersFound
NoPrinter MSPrint2PDF PrintCalibrationMac chkPrintInColor OneTemplateWas MultipleTemplateWere
ImportSuccess Nothing2Import asksize asksizebody templatereg regSelPartsToRepo
regSelPartsToRepoBody palletIsNotVisible LayerIsNotVisible LayerIgnored Cancel_LayerIgnored_mac
Cancel_LayerIgnored_win CaptionLayerChangeName QLayerChangeName lblLayerCaption actLayer
actLayer_MoveToAnotherLayer actLayer_ChangeName actLayer_HideOtherLayers actLayer_ShowAllLayers
actLayer_IgnoreLayer actLayer_AddNewLayer actLayer_MoveUp actLayer_MoveDown
actLayer_MergeIntoBelow actLayer_FlattenAllLayers actLayer_DeleteLayer miLayer
actLayer_HighlightShapesOnCurrentLayer actLayer_ActivateLayerOfSelectedShape
actLayer_MoveSelectedShapesToTheLayerBelow IndependentLayer actLayer_ToggleIndependentLayer
actLayer_DuplicateSelectedShapesOnBelowLayer chkHighlightActiveLayer frmLetterStampSimulator
lblLS_FontSet lblLS_StampHeight lblLS_GapBetweenLines lblLS_StampText btnLS_AddFont
btnLS_EditFont btnLS_Rename btnLS_Export btnLS_Import btnLS_Calc btnLS_MakePlaceholder
lblLS_FontFace btnLS_Save btnLS_SaveAs btnLS_Close btnLS_DeleteFont LS_FontsetNameCaption
LS_FontsetNameQ LS_ok2close LS_ok2delete macOSnoPDF actBackToSelectMode NotPWCFile
chkOpenDemoAtStartup DblClickLineTypeChangeDisabled OpeningNewWindow NEW_VERSION_IS_AVAILABLE1
NEW_VERSION_IS_AVAILABLE2 SelectedHoles TotalLen radius directdist Width= Height= diameter
rounddist applychanges OK2DeletePrickingIron RT_SelectMoveDestination renametemplate
renametemplatebody lblMC_moveto_x lblMC_moveto_y chkCopyInsteadOfMove frmMoveOrCopy
btnMOC_reset_values actDrawCommonTangent chkTangentCircleMode rbTG_TangentCircle
rbTG_CommonTangent rbTG_InscribedCircles rbTG_CircumscribedCircles rbTG_BothCircles
chkTG_ArcMode chkTG_SymmetryMode chkTG_OneMore chkTG_TooMany gbSVG_StitchingHole gbSVG_Options
lblSVG_HoleShape rbHole_AsIs rbHole_AsDot lblSVG_Diameter chkSVG_Out_Text chkSVG_Out_Template
chkSVGOPT_DoNotOutputStrokeDash chkDXFExportFlipY lblSVG_BladeAsLine
chkSVGOPT_ExportOnlySelected chkSVGOPT_DoNotExportHiddenLineType frmJigsaw lblJIGSAW_Piece_Len
lblJIGSAW_Num_x lblJIGSAW_Num_y chkJIGSAW_FlatEdge lblJIGSAW_Seed btnJIGSAW_Random
chkJIGSAW_FlattenPath lblWB_WatchLen lblWB_LugInnerWidth lblWB_BuckleInnerWidth
lblWB_BuckleInnerLen lblWB_WristCircumference btnWB_Calc btnWB_Create btnWB_Close
gbBJ_Dimensions lblBJ_BoxWidth lblBJ_BoxHeight lblBJ_BoxDepth lblBJ_PinWidth lblBJ_PinOverhang
lblBJ_BottomOffset BJ_STR_INNER_DIM gbBJ_BoardThickness chkBJ_IsSameThickness Depth= lblBJ_Front
lblBJ_Back lblBJ_Left lblBJ_Right lblBJ_Bottom lblBJ_Top lblBJ_KerfCompensation gbBJ_LidOptions
rbBJ_ClosedBox rbBJ_OpenBox rbBJ_NoLid rbBJ_WithLid rbBJ_WithSlidingLid lblBJ_LidTopOffset
lblBJ_GrooveDepth btnBJ_MakePattern btnBJ_Cancel sbLeatherSimulator miLeatherSimulator
actLeatherSim_RotateImage chkFillOn chkSimulatorOn miLeather_MoveUp miLeather_MoveDown
miLeather_Edit miLeather_Delete deleteCatalog actFixStitchingOrder actChangeThreadColor
actExportCatalog actImportCatalog lblImage lblCatalogItemUnitPrice lblCatalogItemCategory
lblCatalogItemName btnCatalogItemImportImage lblLeatherShop lblLeatherBrand lblLeatherItem
actSimulateWithLeatherPicture lblCI_Scale lblCI_Rotation lblCI_RulerLength lblCI_AreaSelection
btnCatalogItemMax btnCatalogItemSquare btnBringToView btnCatalogItemReset actSim_ZoomIn1pct
actSim_ZoomIn5pct actSim_ZoomOut1pct actSim_ZoomOut5pct actSim_ResetZoom lblDC_TopD
lblDCup_BottomD lblDCup_Height lblDC_LeatherThickness lblDC_OffsetToStitchLine_sb
lblDC_OffsetToStitchLine_ss lblDC_OffsetToStitchLine_sd chkStitchTopRim
lblDC_OffsetToStitchLine_st lblDC_CompensationFactor SimImageDownloading askAutoDownload
groupLeatherSim chkAutoDownload chkNotifyNewImages catalogUpdateAvailable
catalogUpdateAskDownload frmSTLExportOptions actExportAsSTL gbThickness lblThickness gbEdge
lblEdgeTop lblEdgeTopSize lblEdgeBottom lblEdgeBottomSize lblFilletSteps edge_none edge_chamfer
edge_fillet gbStitch rbStitchRound lblStitchDiameter rbStitchOriginal gbStitchSizes lblDiamond
lblEuropean lblFlat gbTextEngrave rbEngraveNone rbEngraveTop rbEngraveBottom chkMultiColor
lblEngraveDepth stl_msg_multicolor_saved lblColor lblMaterial mat_leather_brown
mat_leather_black mat_acrylic_glossy mat_acrylic_clear mat_metal mat_matte gbMaterialColor
lblViewHint btnOK btnCancel jig_mode_group jig_mode_pattern jig_mode_jig jig_outer_group
jig_outer_rectmargin jig_outer_rectexplicit jig_outer_pattern jig_outer_warn jig_outer_margin
jig_outer_w jig_outer_h jig_pocket_group jig_total_height jig_pocket_gap jig_pocket_depth
jig_keep_nested stl_msg_preview_failed_prefix stl_msg_no_mesh_to_save stl_msg_template_failed
stl_msg_no_triangles_to_save stl_msg_open_shape_warning jig_finger_group jig_finger_centroid
jig_finger_diameter actBezier_G1Smoothing actBezier_G2Smoothing
)";

// Messages whose English wording is fixed, in table order after the list.
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

const char* const kFolderIds[] = {
    "{A3B49CF4-19B4-4E58-BE20-355B76F5C40E}", "{8799D1DF-5129-42A9-9673-0C0D46F81C82}",
    "{2AB4D730-B592-4640-8F68-952CFBE6BED0}", "{7A088D31-0A73-4EEB-9D54-9EE015CA53A1}",
    "{C66BDC6B-5091-47BE-AC26-9D3E41B31335}", "{9FAD8492-B9CE-470B-8224-3FE4B521450C}"};

std::vector<std::string> words(const std::string& text) {
  std::istringstream in(text);
  std::vector<std::string> out;
  for (std::string w; in >> w;) out.push_back(w);
  return out;
}

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

TEST(BuiltinPhrases, TheFirst633KeysComeInTheirOrder) {
  const auto rows = tableRows();
  std::vector<std::string> keys;
  for (const auto& r : rows) keys.push_back(r.at(1));
  ASSERT_GE(keys.size(), 633u);
  auto sorted = keys;
  std::sort(sorted.begin(), sorted.end());
  EXPECT_EQ(std::adjacent_find(sorted.begin(), sorted.end()), sorted.end()) << "a key appears twice";

  const auto listed = words(kListedKeys);
  ASSERT_EQ(listed.size(), 565u);
  EXPECT_EQ(std::vector<std::string>(keys.begin(), keys.begin() + 565), listed);
  for (size_t i = 0; i < std::size(kFixedMessages); ++i)
    EXPECT_EQ(keys[565 + i], kFixedMessages[i].first);
  for (size_t i = 0; i < std::size(kFolderIds); ++i) EXPECT_EQ(keys[627 + i], kFolderIds[i]);
}

// Every phrase that is there keeps the English phrase's markers, in order:
// a translation that drops or swaps a "%d" would print garbage or crash a
// formatter.
TEST(BuiltinPhrases, EveryRowHasFourteenLanguagesAndEveryPhraseTheEnglishMarkers) {
  for (const auto& r : tableRows()) {
    ASSERT_EQ(r.size(), 16u) << r.at(1);
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

TEST(PhraseImport, MissingFileChangesNothing) {
  TTempDir dir;
  TMultiLang lang;
  lang.addTranslation("en", "k", "kept");
  EXPECT_TRUE(lang.importTSV(dir.file("absent.tsv")));
  EXPECT_EQ(lang.getTranslation("en", "k"), "kept");
}

TEST(PhraseImport, RowsBeforeTheCodesAndUnnamedColumnsAreIgnored) {
  TMultiLang lang;
  ASSERT_TRUE(lang.importTSVText(
      "\tearly\tbefore\tcodes\n"
      "\ttwo-letter-codes\ten\t\tfr\n"
      "\n"
      "\tk\tone\tnameless\tun\t\n"));
  EXPECT_EQ(lang.getTranslation("en", "early"), "");
  EXPECT_EQ(lang.getTranslation("en", "k"), "one");
  EXPECT_EQ(lang.getTranslation("fr", "k"), "un");
  EXPECT_EQ(lang.FLangDict.size(), 2u);
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
