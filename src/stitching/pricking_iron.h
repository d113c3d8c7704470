// Groups of pricking irons: one iron with the blade counts it is sold with;
// the groups fill the iron tree of the side panel. The iron itself, which
// every hole borrows, is document/hole_iron.h.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "document/hole_iron.h"

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
