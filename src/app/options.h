// TPW_Options: the settings of "pw_options.ini", a plain record the
// controller reads at start and writes at exit. Defaults are those of a
// first start; reading keeps a field's value where the file has no key or
// an unreadable one.
#pragma once

#include <string>
#include <vector>

#include "app/length_format.h"
#include "document/types.h"

class TIniFile;
class TPalletList;

inline constexpr const char* kOptionsFileName = "pw_options.ini";
inline constexpr const char* kRunningVersion = "3.6.1";

struct TPW_Options {
  std::string FLastVersion;  // [Version] AppVersion
  bool FUseAutoSave = false;  // [AutoSave] UseAutoSave: autosave writes the real file too
  // [AutoPricking]
  bool FIsFixedPitchDefault = false;
  int FAutoPrickMode = 0;
  float FCornerAngleThreshold = 160;
  // [AutoPitch]
  bool FForceFitLastPrick = true;
  int FAutoPitchSteps = 50;
  float FAutoPitchPrecision = 0.001f;
  float FAutoPitchStopGap = 0.1f;
  // [Edit]
  bool FIncrementalSelectionMode = false;
  bool FMentoriWithoutCtrl = true;
  // [SVG]
  float FSVGDotRadius = 0.5f;
  bool FSVG_as_dots = true;
  bool FSVG_with_templates = false;
  bool FSVG_with_text_shapes = false;
  std::string FExchangeFolder;  // LastFolder: where export and import looked last
  // [Print], per cent
  TPointF FPrintCalibration{100, 100};
  bool FPrintInColor = false;
  bool FPrintRulerInside = false;
  // [BoxStitch]
  float FBoxStitchDistance = 100;
  // [DXF]
  bool FDXFExportInvertY = true;
  bool FUseDXFR14 = true;
  // [Dimension]: the palette row, gap, font size and decimals of dimensions
  int FDimLineType = 37;
  float FDimGap = 2;
  float FDimFontSize = 3;
  int FDimPrecision = 1;
  // [Text]
  std::string FDefaultFont;  // written "Arial" when empty
  float FTextFontSize = 10;
  // [Stitch]
  bool FShowStitchPattern = false;
  float FStitchThickness = 3;
  // [Notch]
  float FNotchDepth = 2;
  float FNotchAngle = 45;
  // [ZoomScroll]
  bool FReverseMouseWheelZoomDirection = false;
  bool FReverseCursorKeyGridAreaMove = true;
  // [General]
  std::string FLangID;  // two-letter code
  bool FPinSideBar = true;
  TUnitMode FUnitMode = TUnitMode::umMM;
  bool FNewPrickingIronsAdded = false;  // NewSet
  // [Demo]
  bool FLoadDemoProjectAtStartup = true;
  // [Font]: favourite fonts; ignored while RequireReset is set
  bool FFontRequireReset = true;
  std::vector<std::string> FFavouriteFonts;
  // [LeatherSim]
  bool FLeatherSimImageChoiseMade = false;
  bool FAutomaticallyDownloadLeatherSimImages = false;
  bool FNotifyNewOrUpdatedSimImages = false;

  // Settings that have no key.
  TAlphaColor FStitchColor = 0xFFFFFFFF;
  float FStitchOpacity = 1;
  TAlphaColor FWhiteBGColor = 0xFFF8F8F8;
  bool FHighlightSnapTargets = true;
};

// Every section and key of the table; the palette rows too when a palette
// is given. Unknown sections and keys of the file are not touched.
void readOptions(const TIniFile& ini, TPW_Options& o, TPalletList* pallet);
// Writes every key the program owns and the running version; keys it does
// not own (such as [MCP] EnableServer) stay as the file had them.
void writeOptions(TIniFile& ini, const TPW_Options& o, const TPalletList* pallet);
