// uDyeMixer: the colour a mix of leather dyes gives on natural
// vegetable-tanned leather, and the reverse: which mix of two, three or four
// dyes, thinned or not, comes nearest to a wanted colour.
//
// The model is a single-constant Kubelka-Munk mix in linear sRGB, one K/S
// value per channel, anchored on the leather's own colour: a dye adds its
// strength to the leather's, and the sum turns back into a reflectance.
// The pigment tables are built once and only read afterwards.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

using TDyeRGB = std::array<std::uint8_t, 3>;  // sRGB bytes
using TDyeLin = std::array<double, 3>;        // linear sRGB, 0 to 1

// One dye as printed on the maker's colour chart.
struct TDyeSwatch {
  std::string Id;
  std::string LabelJa;
  std::string LabelEn;
  TDyeRGB RGB{};
};

// One dye ready for mixing. KOverS is the strength per channel that the dye
// adds to the leather's own; it can be negative in a channel where the dye
// is lighter than the leather.
struct TDyePigment {
  std::string Id;
  std::string LabelJa;
  std::string LabelEn;
  TDyeRGB RGB{};
  TDyeLin RGBLinear{};
  TDyeLin KOverS{};
};

// One line of a mix; weights are relative.
struct TDyeRecipeEntry {
  std::string PigmentId;
  double Weight = 0;
};

enum class TDyeSystem { dsREN, dsCrafters };

struct TDyeSystemInfo {
  TDyeSystem System;
  std::string LabelJa;
  // The chart shows each dye thinned one to one: a pure dye is this many
  // times as strong as its swatch.
  double ChartDilution;
};

struct TInverseRecipeEntry {
  std::string PigmentId;
  std::string LabelJa;
  double Fraction = 0;
};

// The best mix of K dyes.
struct TInverseResult {
  bool HasResult = false;
  int K = 0;
  double DeltaE = 0;
  TDyeRGB PredictedRGB{};
  double Dilution = 1;
  // Even pure dye does not reach the target; DeltaE says how far it stays.
  bool OutOfGamut = false;
  std::vector<TInverseRecipeEntry> Recipe;
};

// For K = 2, 3, 4 in that order.
using TInverseResults = std::array<TInverseResult, 3>;

struct TDyeMix {
  TDyeRGB RGB{};
  TDyeLin Linear{};
};

// ---- the tables ----
const TDyeSystemInfo& dyeSystemInfo(TDyeSystem system);
// "natural" for REN, "diluent" for Crafters Ink.
const char* dyeDiluentId(TDyeSystem system);
// The chart's swatches in order; REN's first is the bare leather.
const std::vector<TDyeSwatch>& dyeSwatches(TDyeSystem system);
// Every pigment of the system in list order, the diluent among them.
std::vector<const TDyePigment*> dyeAllPigments(TDyeSystem system);
// The pigment with the identifier, or null.
const TDyePigment* findDyePigment(TDyeSystem system, const std::string& id);
// The dyes to mix: every pigment but the leather and the diluent.
std::vector<const TDyePigment*> dyePigmentList(TDyeSystem system);
// The bare leather, in sRGB and linear.
TDyeMix dyeBaseColour();

// ---- colour arithmetic ----
double srgbToLinear(std::uint8_t byte);
std::uint8_t linearToSrgb(double c);
// The Kubelka-Munk function of a linear reflectance, clamped to 0.0001..0.9999.
double kubelkaMunk(double reflectance);
std::array<double, 3> srgbToLab(const TDyeRGB& rgb);
// CIE 1976: the plain distance of the two colours in Lab.
double dyeDeltaE(const TDyeRGB& a, const TDyeRGB& b);
// "#rrggbb", lower case.
std::string dyeHexText(const TDyeRGB& rgb);

// ---- mixing ----
// The colour of the mix on the leather. No weight at all gives the leather;
// an unknown identifier is skipped but its weight still counts.
TDyeMix dyeForwardMix(const std::vector<TDyeRecipeEntry>& recipe, TDyeSystem system);
// The recipe thinned by the factor D: the diluent joins with (D - 1) times
// the dyes' weight. D = 1 is pure dye and adds nothing; D = 2 is the chart's
// one to one.
std::vector<TDyeRecipeEntry> dyeWithDilution(std::vector<TDyeRecipeEntry> recipe, TDyeSystem system,
                                             double dilution);
// The best mixes of two, three and four dyes for the target, by brute force
// over every combination.
TInverseResults dyeInverseSearch(const TDyeRGB& target, TDyeSystem system, bool allowDiluent);

// ---- what the window reads from the user ----
// "#rrggbb", "rrggbb", "#rgb" or three numbers 0 to 255 split by commas or
// blanks; false for anything else, `rgb` then untouched.
bool parseDyeColour(const std::string& text, TDyeRGB& rgb);
inline constexpr double kDyeMaxAmount = 1000;
inline constexpr double kDyeMaxDilution = 100;
// Empty when every weight lies in 0..kDyeMaxAmount and the dilution in
// 1..kDyeMaxDilution; otherwise the phrase key of the refusal.
std::string checkDyeRecipe(const std::vector<TDyeRecipeEntry>& recipe, double dilution);
