// Everything the solids are made with, as kept in "STLExport.ini" in the
// application data folder: the plate, its edges, the stitching holes, the
// engraved text, the preview's look and the positioning jig.
#pragma once

#include <string>
#include <vector>

#include "document/types.h"
#include "exchange/stl_types.h"

enum class TSTLTemplateOuterMode { omRectMargin = 0, omRectExplicit = 1, omPatternOffset = 2 };

// A round hole through the jig's floor.
struct TSTLTemplateFingerHole {
  TVec2 Centre;
  double Diameter = 20;
};

// The positioning jig: a block with a pocket of the pattern's shape.
struct TSTLTemplateSettings {
  TSTLTemplateOuterMode OuterMode = TSTLTemplateOuterMode::omRectMargin;
  double OuterMargin = 10;
  double OuterWidth = 150;
  double OuterHeight = 100;
  double PocketGap = 0.3;
  double TotalHeight = 4;
  double PocketDepth = 2;
  bool FingerHoleAtCentroid = true;
  double CentroidFingerDiameter = 20;
  std::vector<TSTLTemplateFingerHole> CustomFingerHoles;
  bool StitchHoles = true;
  bool EngraveContours = false;
  double EngraveDepth = 0.5;
  // Inner outlines stay in the pocket as islands.
  bool KeepNestedContours = false;
};

enum class TEngraveSide { None = 0, Top = 1, Bottom = 2 };

// Edge modes as the dialog's lists number them.
inline constexpr int kEdgeNone = 0, kEdgeChamfer = 1, kEdgeFillet = 2;

// The preview's looks, in the order of the dialog's list.
inline constexpr const char* kMaterialKeys[] = {"mat_leather_brown", "mat_leather_black", "mat_acrylic_glossy",
                                                "mat_acrylic_clear", "mat_metal",         "mat_matte"};
inline constexpr int kMaterialCount = 6;

struct TSTLExportSettings {
  double Thickness = 2.5;
  int EdgeTopMode = kEdgeNone;
  double EdgeTopSize = 0.5;
  int EdgeBottomMode = kEdgeNone;
  double EdgeBottomSize = 0.5;
  int FilletSteps = 6;
  bool StitchAsRound = true;
  double StitchDiameter = 1.6;
  double DiamondL = 2.2, DiamondW = 0.6;
  double EuropeanL = 2.0, EuropeanW = 0.25;
  double FlatL = 2.0, FlatW = 0.3;
  TAlphaColor Color = 0xFFCD853F;
  int MaterialPreset = 0;
  TEngraveSide EngraveSide = TEngraveSide::None;
  bool MultiColorPrint = false;
  double EngraveDepth = 0.5;
  // The jig instead of the pattern.
  bool TemplateMode = false;
  TSTLTemplateSettings Jig;

  // Every number brought into its range; lists to a known entry.
  void clampToRanges();
  TExtrudeOptions extrudeOptions() const;
  // The jig's settings with the pattern's engraving.
  TSTLTemplateSettings jigSettings() const;
};

// The settings file's path in the application data folder.
std::string stlSettingsFile(const std::string& appDataPath);
// Reads the file; missing keys keep their defaults, numbers are clamped.
TSTLExportSettings readStlSettings(const std::string& filename);
// Writes every key, keeping keys the program does not know. Throws
// std::runtime_error naming the file when it cannot be written.
void writeStlSettings(const TSTLExportSettings& s, const std::string& filename);
