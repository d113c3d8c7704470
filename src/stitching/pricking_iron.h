// Pricking irons: the comb of blades that punches a row of stitching holes,
// described by the shape of one blade and the distance between blades. A
// group is one iron with the blade counts it is sold with; the groups fill
// the iron tree of the side panel.
#pragma once

#include <memory>
#include <string>
#include <vector>

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

class TPrickingIronGroup {
 public:
  explicit TPrickingIronGroup(bool AIsSystemGroup = false);

  std::vector<int> FAvailableBlades{1};  // always holds 1
  std::unique_ptr<TPrickingIron> FPrickingIron;  // owned, never null
  bool FIsSystemGroup = false;  // a row of the built-in table: cannot be deleted

  // Adds the count when it is missing and sorts the list.
  void addPrickingIron(int NumOfBlades);
  // "iron", "blades", "system_iron".
  nlohmann::ordered_json toJsonObject() const;
  // "iron" must be an object; each integer of "blades" not yet in the list
  // is appended, unsorted; "system_iron", when present, sets the flag.
  // Throws std::runtime_error on a group it cannot read.
  void loadJson(const nlohmann::ordered_json& jo);
};

// Width, height and angle a new blade of the letter gets. Upper-cases the
// letter; an unknown letter gives 1.2, 1.2 and 0.
void bladeDefaults(const std::string& letter, float& width, float& height, float& angle);

// Position of the letter in the blade type list ("D", "F", "L", "R"); -1
// for an unknown letter. The letter is upper-cased first.
int bladeTypeIndex(const std::string& letter);
// The letter at a position of that list; empty for an unknown index.
std::string bladeTypeLetter(int index);
// "菱目", "ヨーロッパ目", "平目", "丸目" for "ja"; "Diamond", "French",
// "Flat", "Round" for every other language; empty for an unknown letter.
std::string bladeTypeLabel(const std::string& letter, const std::string& langID);

// Reads a number that may be a JSON number or a string, with a decimal
// comma taken as a point. False when it is neither.
bool ironNumberFromJson(const nlohmann::ordered_json& v, double& out);
