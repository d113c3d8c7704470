// uPW_Jigsaw: a jigsaw cutting pattern, a grid of pieces whose inner sides
// carry interlocking tabs of random shape. Each tab is two Bezier flanks and
// one arc, so the result stays editable like any drawing.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "document/pw_path.h"

// The values of the dialog TfrmJigsaw, with its defaults.
struct TJigsawSettings {
  int FNumPiecesX = 2;     // nbJIGSAW_NumPiecesX, 1 to 50
  int FNumPiecesY = 2;     // nbJIGSAW_NumPiecesY, 1 to 50
  double FPieceLen = 30;   // nbJIGSAW_PieceLen1, millimetres, 5 to 1000
  std::int32_t FRandomSeed = 65535;
  bool FFlatEdge = false;     // outer sides straight
  bool FFlattenPath = false;  // each grid line as one path shape
};

inline constexpr int kJigsawMaxPieces = 50;
inline constexpr double kJigsawMinPieceLen = 5;
inline constexpr double kJigsawMaxPieceLen = 1000;

// Empty when the settings can be drawn; otherwise the phrase key of the
// refusal ("jigsaw_bad_count", "jigsaw_bad_length").
std::string checkJigsawSettings(const TJigsawSettings& settings);

// The pattern's own random numbers: one seed always gives the same draws.
class TJigsawRandom {
 public:
  explicit TJigsawRandom(std::int32_t seed) : FGen(static_cast<std::uint32_t>(seed)) {}
  // In [0, 1).
  double random() { return FGen() / 4294967296.0; }
  // 0 to n - 1.
  int randomInt(int n) { return static_cast<int>(random() * n); }

 private:
  std::mt19937 FGen;
};

// Colour, thickness, dash and palette row of the shapes made.
struct TJigsawStyle {
  int FPalletIdx = 0;
  TAlphaColor FColor = 0xFF00FFFF;
  float FThickness = 1.5f;
  TStrokeDash FDash = TStrokeDash::Solid;
};

// One side of a piece: the first flank, the arc over the tab, the second
// flank. The shapes belong to the edge until they are taken.
class TPW_JigsawEdge {
 public:
  // The three shapes get the identifiers ID, ID + 1 and ID + 2.
  TPW_JigsawEdge(int APalletIdx, TAlphaColor AColor, float AThickness, TStrokeDash ADash, int ID);
  std::unique_ptr<TPW_Path> FBezier1;
  std::unique_ptr<TPW_Path> FBezier2;
  std::unique_ptr<TPW_Path> FLoop;

  // Draws a side of length L from `origin`: along x, or turned a quarter
  // turn clockwise so that it runs down. The tab's shape and side come from
  // nine draws of `rnd`.
  void build(double L, bool vertical, const TPointF& origin, TJigsawRandom& rnd);
};

// The whole pattern's shapes, ready for the document: the row lines top to
// bottom, then the column lines left to right. Each grid line is one group,
// or with FFlattenPath one "OTHER" shape. `nextId` hands out identifiers
// for shapes and groups alike. The settings must have passed the check.
std::vector<std::unique_ptr<TPW_Path>> makeJigsaw(const TJigsawSettings& settings, const TJigsawStyle& style,
                                                  const std::function<int()>& nextId);
