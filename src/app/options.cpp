#include "app/options.h"

#include <cmath>

#include "app/ini_file.h"
#include "document/number_text.h"
#include "libraries/draw_pallet.h"

namespace {

// Floats keep their value when the file's text is no finite number.
void readFloat(const TIniFile& ini, const char* sec, const char* key, float& v) {
  const double d = ini.ReadFloat(sec, key, v);
  if (std::isfinite(d) && std::fabs(d) <= 3.0e38) v = static_cast<float>(d);
}

void readBool(const TIniFile& ini, const char* sec, const char* key, bool& v) { v = ini.ReadBool(sec, key, v); }

// Seven significant digits give back the same single when read: 0.001 is
// written "0.001", not the widened double's digits.
void writeFloat(TIniFile& ini, const char* sec, const char* key, float v) {
  ini.WriteString(sec, key, floatToText(static_cast<double>(v), 7));
}
void readInt(const TIniFile& ini, const char* sec, const char* key, int& v) { v = ini.ReadInteger(sec, key, v); }

}  // namespace

void readOptions(const TIniFile& ini, TPW_Options& o, TPalletList* pallet) {
  o.FLastVersion = ini.ReadString("Version", "AppVersion", o.FLastVersion);
  readBool(ini, "AutoSave", "UseAutoSave", o.FUseAutoSave);
  readBool(ini, "AutoPricking", "IsFixedPitchDefault", o.FIsFixedPitchDefault);
  readInt(ini, "AutoPricking", "CornerMode", o.FAutoPrickMode);
  readFloat(ini, "AutoPricking", "CornerAngleThreshold", o.FCornerAngleThreshold);
  readBool(ini, "AutoPitch", "ForceFitLastPrick", o.FForceFitLastPrick);
  readInt(ini, "AutoPitch", "AutoPitchSteps2", o.FAutoPitchSteps);
  readFloat(ini, "AutoPitch", "AutoPitchPrecision2", o.FAutoPitchPrecision);
  readFloat(ini, "AutoPitch", "AutoPitchStopGap", o.FAutoPitchStopGap);
  readBool(ini, "Edit", "IncrementalSelectionMode", o.FIncrementalSelectionMode);
  readBool(ini, "Edit", "MentoriWithoutCtrl", o.FMentoriWithoutCtrl);
  readFloat(ini, "SVG", "DotRadius", o.FSVGDotRadius);
  readBool(ini, "SVG", "AsDots", o.FSVG_as_dots);
  readBool(ini, "SVG", "WithTemplates", o.FSVG_with_templates);
  readBool(ini, "SVG", "WithTextShapes", o.FSVG_with_text_shapes);
  o.FExchangeFolder = ini.ReadString("SVG", "LastFolder", o.FExchangeFolder);
  readFloat(ini, "Print", "CalibrationX", o.FPrintCalibration.x);
  readFloat(ini, "Print", "CalibrationY", o.FPrintCalibration.y);
  readBool(ini, "Print", "PrintInColor", o.FPrintInColor);
  readBool(ini, "Print", "PrintRulerInside", o.FPrintRulerInside);
  readFloat(ini, "BoxStitch", "Distance", o.FBoxStitchDistance);
  readBool(ini, "DXF", "InvertYOnDXFExport", o.FDXFExportInvertY);
  readBool(ini, "DXF", "UseR14", o.FUseDXFR14);
  readInt(ini, "Dimension", "LineType", o.FDimLineType);
  readFloat(ini, "Dimension", "Gap", o.FDimGap);
  readFloat(ini, "Dimension", "FontSize", o.FDimFontSize);
  readInt(ini, "Dimension", "Precision", o.FDimPrecision);
  o.FDefaultFont = ini.ReadString("Text", "FontFace", o.FDefaultFont);
  readFloat(ini, "Text", "FontSize", o.FTextFontSize);
  readBool(ini, "Stitch", "ShowStitchPattern", o.FShowStitchPattern);
  readFloat(ini, "Stitch", "ThreadThickness", o.FStitchThickness);
  readFloat(ini, "Notch", "NotchDepth", o.FNotchDepth);
  readFloat(ini, "Notch", "NotchAngle", o.FNotchAngle);
  readBool(ini, "ZoomScroll", "ReverseMouseWheelZoomDirection", o.FReverseMouseWheelZoomDirection);
  readBool(ini, "ZoomScroll", "ReverseCursorKeyGridAreaMove", o.FReverseCursorKeyGridAreaMove);
  o.FLangID = ini.ReadString("General", "LangID", o.FLangID);
  readBool(ini, "General", "PinSidebar", o.FPinSideBar);
  const int unit = ini.ReadInteger("General", "Unit", static_cast<int>(o.FUnitMode));
  if (unit == 0 || unit == 1) o.FUnitMode = static_cast<TUnitMode>(unit);
  readBool(ini, "General", "NewSet", o.FNewPrickingIronsAdded);
  readBool(ini, "Demo", "LoadAtStartup", o.FLoadDemoProjectAtStartup);
  if (pallet) readPalletList(ini, *pallet);
  readBool(ini, "Font", "RequireReset", o.FFontRequireReset);
  if (!o.FFontRequireReset) {
    const int count = ini.ReadInteger("Font", "count", 0);
    o.FFavouriteFonts.clear();
    for (int i = 0; i < count && i < 1000; ++i) {
      const std::string f = ini.ReadString("Font", "family" + std::to_string(i), "");
      if (!f.empty()) o.FFavouriteFonts.push_back(f);
    }
  }
  readBool(ini, "LeatherSim", "ChoiseMade", o.FLeatherSimImageChoiseMade);
  readBool(ini, "LeatherSim", "AutoDownload", o.FAutomaticallyDownloadLeatherSimImages);
  readBool(ini, "LeatherSim", "NotifyNew", o.FNotifyNewOrUpdatedSimImages);
}

void writeOptions(TIniFile& ini, const TPW_Options& o, const TPalletList* pallet) {
  ini.WriteString("Version", "AppVersion", kRunningVersion);
  ini.WriteBool("AutoSave", "UseAutoSave", o.FUseAutoSave);
  ini.WriteBool("AutoPricking", "IsFixedPitchDefault", o.FIsFixedPitchDefault);
  ini.WriteInteger("AutoPricking", "CornerMode", o.FAutoPrickMode);
  writeFloat(ini, "AutoPricking", "CornerAngleThreshold", o.FCornerAngleThreshold);
  ini.WriteBool("AutoPitch", "ForceFitLastPrick", o.FForceFitLastPrick);
  ini.WriteInteger("AutoPitch", "AutoPitchSteps2", o.FAutoPitchSteps);
  writeFloat(ini, "AutoPitch", "AutoPitchPrecision2", o.FAutoPitchPrecision);
  writeFloat(ini, "AutoPitch", "AutoPitchStopGap", o.FAutoPitchStopGap);
  ini.WriteBool("Edit", "IncrementalSelectionMode", o.FIncrementalSelectionMode);
  ini.WriteBool("Edit", "MentoriWithoutCtrl", o.FMentoriWithoutCtrl);
  writeFloat(ini, "SVG", "DotRadius", o.FSVGDotRadius);
  ini.WriteBool("SVG", "AsDots", o.FSVG_as_dots);
  ini.WriteBool("SVG", "WithTemplates", o.FSVG_with_templates);
  ini.WriteBool("SVG", "WithTextShapes", o.FSVG_with_text_shapes);
  ini.WriteString("SVG", "LastFolder", o.FExchangeFolder);
  writeFloat(ini, "Print", "CalibrationX", o.FPrintCalibration.x);
  writeFloat(ini, "Print", "CalibrationY", o.FPrintCalibration.y);
  ini.WriteBool("Print", "PrintInColor", o.FPrintInColor);
  ini.WriteBool("Print", "PrintRulerInside", o.FPrintRulerInside);
  writeFloat(ini, "BoxStitch", "Distance", o.FBoxStitchDistance);
  ini.WriteBool("DXF", "InvertYOnDXFExport", o.FDXFExportInvertY);
  ini.WriteBool("DXF", "UseR14", o.FUseDXFR14);
  ini.WriteInteger("Dimension", "LineType", o.FDimLineType);
  writeFloat(ini, "Dimension", "Gap", o.FDimGap);
  writeFloat(ini, "Dimension", "FontSize", o.FDimFontSize);
  ini.WriteInteger("Dimension", "Precision", o.FDimPrecision);
  ini.WriteString("Text", "FontFace", o.FDefaultFont.empty() ? "Arial" : o.FDefaultFont);
  writeFloat(ini, "Text", "FontSize", o.FTextFontSize);
  ini.WriteBool("Stitch", "ShowStitchPattern", o.FShowStitchPattern);
  writeFloat(ini, "Stitch", "ThreadThickness", o.FStitchThickness);
  writeFloat(ini, "Notch", "NotchDepth", o.FNotchDepth);
  writeFloat(ini, "Notch", "NotchAngle", o.FNotchAngle);
  ini.WriteBool("ZoomScroll", "ReverseMouseWheelZoomDirection", o.FReverseMouseWheelZoomDirection);
  ini.WriteBool("ZoomScroll", "ReverseCursorKeyGridAreaMove", o.FReverseCursorKeyGridAreaMove);
  ini.WriteString("General", "LangID", o.FLangID);
  ini.WriteBool("General", "PinSidebar", o.FPinSideBar);
  ini.WriteInteger("General", "Unit", static_cast<int>(o.FUnitMode));
  ini.WriteBool("General", "NewSet", o.FNewPrickingIronsAdded);
  ini.WriteBool("Demo", "LoadAtStartup", o.FLoadDemoProjectAtStartup);
  if (pallet) writePalletList(ini, *pallet);
  ini.WriteBool("Font", "RequireReset", o.FFontRequireReset);
  ini.WriteInteger("Font", "count", static_cast<int>(o.FFavouriteFonts.size()));
  for (size_t i = 0; i < o.FFavouriteFonts.size(); ++i)
    ini.WriteString("Font", "family" + std::to_string(i), o.FFavouriteFonts[i]);
  ini.WriteBool("LeatherSim", "ChoiseMade", o.FLeatherSimImageChoiseMade);
  ini.WriteBool("LeatherSim", "AutoDownload", o.FAutomaticallyDownloadLeatherSimImages);
  ini.WriteBool("LeatherSim", "NotifyNew", o.FNotifyNewOrUpdatedSimImages);
}
