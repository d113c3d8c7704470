// A pricking iron: the comb of blades that punches a row of stitching holes,
// described by the shape of one blade and the distance between blades.
// Every hole borrows the iron it was punched with, and a project file keeps
// the iron's blade type and pitch with each hole.
#pragma once

#include <memory>
#include <string>

#include <nlohmann/json.hpp>

// The blade letters.
namespace BladeType {
inline constexpr const char* Diamond = "D";
inline constexpr const char* French = "F";
inline constexpr const char* Flat = "L";
inline constexpr const char* Round = "R";
}  // namespace BladeType

struct TPrickingIron {
  std::string FBladeType = "F";  // one letter: "D", "F", "L" or "R"
  float FPitch = 4.0f;           // blade to blade, mm
  float FWidth = 1.0f;           // blade width, mm
  float FHeight = 2.0f;          // blade length, mm
  float FAngle = 45.0f;          // blade angle against the normal of the row, degrees
  std::string FName = "Unknown";

  std::unique_ptr<TPrickingIron> Clone() const;

  // "nm", "bt", "p", "w", "h", "a"; the four numbers as JSON strings.
  nlohmann::ordered_json toJsonObjectFull() const;
  // "bt" and "p" only: what a hole in a project file keeps of its iron.
  nlohmann::ordered_json toJsonObjectMinimal() const;
  // Reads whichever of the keys are present; the others keep their values.
  // Numbers may be JSON strings or numbers, and a decimal comma is accepted.
  // Throws std::runtime_error when a number cannot be read.
  void loadJson(const nlohmann::ordered_json& jo);
};

// Reads a number that may be a JSON number or a string, with a decimal
// comma taken as a point. False when it is neither.
bool ironNumberFromJson(const nlohmann::ordered_json& v, double& out);
