#include "exchange/stl_settings.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>

#include "app/app_paths.h"
#include "app/ini_file.h"
#include "libraries/draw_pallet.h"

namespace {

constexpr const char* kSTL = "STL";
constexpr const char* kJIG = "JIG";

double within(double v, double lo, double hi, double fallback) {
  if (!(v == v)) return fallback;  // NaN
  return std::clamp(v, lo, hi);
}

}  // namespace

void TSTLExportSettings::clampToRanges() {
  const TSTLExportSettings d;
  Thickness = within(Thickness, 0.1, 50.0, d.Thickness);
  EdgeTopSize = within(EdgeTopSize, 0.0, 10.0, d.EdgeTopSize);
  EdgeBottomSize = within(EdgeBottomSize, 0.0, 10.0, d.EdgeBottomSize);
  if (EdgeTopMode < kEdgeNone || EdgeTopMode > kEdgeFillet) EdgeTopMode = kEdgeNone;
  if (EdgeBottomMode < kEdgeNone || EdgeBottomMode > kEdgeFillet) EdgeBottomMode = kEdgeNone;
  FilletSteps = std::clamp(FilletSteps, 2, 16);
  StitchDiameter = within(StitchDiameter, 0.5, 5.0, d.StitchDiameter);
  for (double* l : {&DiamondL, &EuropeanL, &FlatL}) *l = within(*l, 0.1, 10.0, 2.0);
  for (double* w : {&DiamondW, &EuropeanW, &FlatW}) *w = within(*w, 0.05, 5.0, 0.3);
  if (MaterialPreset < 0 || MaterialPreset >= kMaterialCount) MaterialPreset = 0;
  if (int(EngraveSide) < 0 || int(EngraveSide) > 2) EngraveSide = TEngraveSide::None;
  EngraveDepth = within(EngraveDepth, 0.1, 5.0, d.EngraveDepth);
  TSTLTemplateSettings& j = Jig;
  const TSTLTemplateSettings dj;
  if (int(j.OuterMode) < 0 || int(j.OuterMode) > 2) j.OuterMode = dj.OuterMode;
  j.OuterMargin = within(j.OuterMargin, 0.0, 500.0, dj.OuterMargin);
  j.OuterWidth = within(j.OuterWidth, 1.0, 2000.0, dj.OuterWidth);
  j.OuterHeight = within(j.OuterHeight, 1.0, 2000.0, dj.OuterHeight);
  j.TotalHeight = within(j.TotalHeight, 0.1, 50.0, dj.TotalHeight);
  j.PocketGap = within(j.PocketGap, 0.0, 10.0, dj.PocketGap);
  j.PocketDepth = within(j.PocketDepth, 0.1, 50.0, dj.PocketDepth);
  j.CentroidFingerDiameter = within(j.CentroidFingerDiameter, 1.0, 200.0, dj.CentroidFingerDiameter);
}

TExtrudeOptions TSTLExportSettings::extrudeOptions() const {
  TExtrudeOptions o;
  o.Height = Thickness;
  if (EdgeTopMode == kEdgeChamfer) o.TopChamfer = EdgeTopSize;
  if (EdgeTopMode == kEdgeFillet) o.TopFillet = EdgeTopSize;
  if (EdgeBottomMode == kEdgeChamfer) o.BottomChamfer = EdgeBottomSize;
  if (EdgeBottomMode == kEdgeFillet) o.BottomFillet = EdgeBottomSize;
  o.FilletSteps = FilletSteps;
  return o;
}

TSTLTemplateSettings TSTLExportSettings::jigSettings() const {
  TSTLTemplateSettings j = Jig;
  j.EngraveContours = EngraveSide != TEngraveSide::None;
  j.EngraveDepth = EngraveDepth;
  return j;
}

std::string stlSettingsFile(const std::string& appDataPath) { return joinPath(appDataPath, "STLExport.ini"); }

TSTLExportSettings readStlSettings(const std::string& filename) {
  const TIniFile ini(filename);
  TSTLExportSettings s;
  s.Thickness = ini.ReadFloat(kSTL, "Thickness", s.Thickness);
  s.EdgeTopMode = ini.ReadInteger(kSTL, "EdgeTopMode", s.EdgeTopMode);
  s.EdgeTopSize = ini.ReadFloat(kSTL, "EdgeTopSize", s.EdgeTopSize);
  s.EdgeBottomMode = ini.ReadInteger(kSTL, "EdgeBottomMode", s.EdgeBottomMode);
  s.EdgeBottomSize = ini.ReadFloat(kSTL, "EdgeBottomSize", s.EdgeBottomSize);
  s.FilletSteps = ini.ReadInteger(kSTL, "FilletSteps", s.FilletSteps);
  s.StitchAsRound = ini.ReadBool(kSTL, "StitchAsRound", s.StitchAsRound);
  s.StitchDiameter = ini.ReadFloat(kSTL, "StitchDiameter", s.StitchDiameter);
  s.DiamondL = ini.ReadFloat(kSTL, "DiamondL", s.DiamondL);
  s.DiamondW = ini.ReadFloat(kSTL, "DiamondW", s.DiamondW);
  s.EuropeanL = ini.ReadFloat(kSTL, "EuropeanL", s.EuropeanL);
  s.EuropeanW = ini.ReadFloat(kSTL, "EuropeanW", s.EuropeanW);
  s.FlatL = ini.ReadFloat(kSTL, "FlatL", s.FlatL);
  s.FlatW = ini.ReadFloat(kSTL, "FlatW", s.FlatW);
  TAlphaColor c;
  if (colorFromIniText("$" + ini.ReadString(kSTL, "Color", "FFCD853F"), c)) s.Color = c;
  s.MaterialPreset = ini.ReadInteger(kSTL, "MaterialPreset", s.MaterialPreset);
  s.EngraveSide = TEngraveSide(ini.ReadInteger(kSTL, "EngraveSide", int(s.EngraveSide)));
  s.MultiColorPrint = ini.ReadBool(kSTL, "MultiColorPrint", s.MultiColorPrint);
  s.EngraveDepth = ini.ReadFloat(kSTL, "EngraveDepth", s.EngraveDepth);
  TSTLTemplateSettings& j = s.Jig;
  s.TemplateMode = ini.ReadInteger(kJIG, "TemplateMode", 0) == 1;
  j.OuterMode = TSTLTemplateOuterMode(ini.ReadInteger(kJIG, "OuterMode", int(j.OuterMode)));
  j.OuterMargin = ini.ReadFloat(kJIG, "OuterMargin", j.OuterMargin);
  j.OuterWidth = ini.ReadFloat(kJIG, "OuterWidth", j.OuterWidth);
  j.OuterHeight = ini.ReadFloat(kJIG, "OuterHeight", j.OuterHeight);
  j.TotalHeight = ini.ReadFloat(kJIG, "TotalHeight", j.TotalHeight);
  j.PocketGap = ini.ReadFloat(kJIG, "PocketGap", j.PocketGap);
  j.PocketDepth = ini.ReadFloat(kJIG, "PocketDepth", j.PocketDepth);
  j.FingerHoleAtCentroid = ini.ReadBool(kJIG, "FingerAtCentroid", j.FingerHoleAtCentroid);
  j.CentroidFingerDiameter = ini.ReadFloat(kJIG, "FingerDiameter", j.CentroidFingerDiameter);
  j.KeepNestedContours = ini.ReadBool(kJIG, "KeepNestedContours", j.KeepNestedContours);
  s.clampToRanges();
  return s;
}

void writeStlSettings(const TSTLExportSettings& s, const std::string& filename) {
  TIniFile ini(filename);
  ini.WriteFloat(kSTL, "Thickness", s.Thickness);
  ini.WriteInteger(kSTL, "EdgeTopMode", s.EdgeTopMode);
  ini.WriteFloat(kSTL, "EdgeTopSize", s.EdgeTopSize);
  ini.WriteInteger(kSTL, "EdgeBottomMode", s.EdgeBottomMode);
  ini.WriteFloat(kSTL, "EdgeBottomSize", s.EdgeBottomSize);
  ini.WriteInteger(kSTL, "FilletSteps", s.FilletSteps);
  ini.WriteBool(kSTL, "StitchAsRound", s.StitchAsRound);
  ini.WriteFloat(kSTL, "StitchDiameter", s.StitchDiameter);
  ini.WriteFloat(kSTL, "DiamondL", s.DiamondL);
  ini.WriteFloat(kSTL, "DiamondW", s.DiamondW);
  ini.WriteFloat(kSTL, "EuropeanL", s.EuropeanL);
  ini.WriteFloat(kSTL, "EuropeanW", s.EuropeanW);
  ini.WriteFloat(kSTL, "FlatL", s.FlatL);
  ini.WriteFloat(kSTL, "FlatW", s.FlatW);
  char colour[16];
  std::snprintf(colour, sizeof colour, "%08X", unsigned(s.Color));
  ini.WriteString(kSTL, "Color", colour);
  ini.WriteInteger(kSTL, "MaterialPreset", s.MaterialPreset);
  ini.WriteInteger(kSTL, "EngraveSide", int(s.EngraveSide));
  ini.WriteBool(kSTL, "MultiColorPrint", s.MultiColorPrint);
  ini.WriteFloat(kSTL, "EngraveDepth", s.EngraveDepth);
  const TSTLTemplateSettings& j = s.Jig;
  ini.WriteInteger(kJIG, "TemplateMode", s.TemplateMode ? 1 : 0);
  ini.WriteInteger(kJIG, "OuterMode", int(j.OuterMode));
  ini.WriteFloat(kJIG, "OuterMargin", j.OuterMargin);
  ini.WriteFloat(kJIG, "OuterWidth", j.OuterWidth);
  ini.WriteFloat(kJIG, "OuterHeight", j.OuterHeight);
  ini.WriteFloat(kJIG, "TotalHeight", j.TotalHeight);
  ini.WriteFloat(kJIG, "PocketGap", j.PocketGap);
  ini.WriteFloat(kJIG, "PocketDepth", j.PocketDepth);
  ini.WriteBool(kJIG, "FingerAtCentroid", j.FingerHoleAtCentroid);
  ini.WriteFloat(kJIG, "FingerDiameter", j.CentroidFingerDiameter);
  ini.WriteBool(kJIG, "KeepNestedContours", j.KeepNestedContours);
  ensureFolder(std::filesystem::path(filename).parent_path().string());
  ini.saveToFile(filename);
}
