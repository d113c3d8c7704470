#include "stitching/system_irons.h"

#include <initializer_list>

namespace {

struct TSystemIronRow {
  const char* letter;
  const char* suffix;
  float pitch;
  std::initializer_list<int> blades;
  bool narrow;  // the two finest diamond irons have 0.6 mm blades
  bool isNew;   // added after the first iron files; appended once on upgrade
};

// Pitches are the sizes the irons are sold by; the inch irons are 1/8 and
// 5/32 of 25.4 mm, both exact in a float.
const TSystemIronRow kSystemIrons[] = {
    {"D", " 3mm", 3.0f, {1, 2, 5, 10}, true, false},
    {"D", " 3.38mm", 3.38f, {1, 2, 5, 10}, true, false},
    {"D", " 3.85mm", 3.85f, {1, 2, 5, 9}, false, false},
    {"D", " 4mm", 4.0f, {1, 2, 4, 6}, false, false},
    {"D", " 4.5mm", 4.5f, {1, 2, 4, 6}, false, true},
    {"D", " 5mm", 5.0f, {1, 2, 4, 6}, false, true},
    {"D", " 1/8 inch", 3.175f, {1, 2, 4, 6}, false, true},
    {"D", " 5/32 inch", 3.96875f, {1, 2, 4, 6}, false, true},
    {"F", " 3mm", 3.0f, {1, 2, 5, 10}, false, false},
    {"F", " 3.38mm", 3.38f, {1, 2, 5, 10}, false, false},
    {"F", " 3.85mm", 3.85f, {1, 2, 5, 9}, false, false},
    {"F", " 4mm", 4.0f, {1, 2, 5, 9}, false, false},
    {"F", " 1/8 inch", 3.175f, {1, 2, 5, 9}, false, true},
    {"F", " 5/32 inch", 3.96875f, {1, 2, 4, 6}, false, true},
    {"L", " 3mm", 3.0f, {1, 2, 5, 10}, false, false},
    {"L", " 4mm", 4.0f, {1, 2, 5, 9}, false, false},
    {"L", " 5mm", 5.0f, {1, 2, 5, 9}, false, false},
    {"R", " 3mm", 3.0f, {1, 2, 5, 10}, false, false},
    {"R", " 4mm", 4.0f, {1, 2, 4, 6}, false, false},
    {"R", " 5mm", 5.0f, {1, 2, 4, 6}, false, false},
};

struct TLabelPair {
  const char* ja;
  const char* en;
};

constexpr TLabelPair kLabels[] = {
    {"菱目", "Diamond"},
    {"ヨーロッパ目", "French"},
    {"平目", "Flat"},
    {"丸目", "Round"},
};

void replaceFirst(std::string& s, const std::string& from, const std::string& to) {
  const size_t at = s.find(from);
  if (at != std::string::npos) s.replace(at, from.size(), to);
}

// One pass, left to right, over non-overlapping pairs of blanks.
std::string collapseDoubleBlanks(const std::string& s) {
  std::string out;
  out.reserve(s.size());
  for (size_t i = 0; i < s.size(); ++i) {
    out += s[i];
    if (s[i] == ' ' && i + 1 < s.size() && s[i + 1] == ' ') ++i;
  }
  return out;
}

}  // namespace

std::vector<std::unique_ptr<TPrickingIronGroup>> buildSystemIronGroups(const std::string& langID,
                                                                       bool onlyNewRows) {
  std::vector<std::unique_ptr<TPrickingIronGroup>> out;
  for (const auto& row : kSystemIrons) {
    if (onlyNewRows && !row.isNew) continue;
    auto g = std::make_unique<TPrickingIronGroup>(true);
    TPrickingIron& iron = *g->FPrickingIron;
    iron.FBladeType = row.letter;
    iron.FPitch = row.pitch;
    bladeDefaults(row.letter, iron.FWidth, iron.FHeight, iron.FAngle);
    if (row.narrow) iron.FWidth = 0.6f;
    iron.FName = bladeTypeLabel(row.letter, langID) + row.suffix;
    for (int n : row.blades) g->addPrickingIron(n);
    out.push_back(std::move(g));
  }
  return out;
}

std::string ironNameForLanguage(const std::string& name, const std::string& langID) {
  std::string s = name;
  for (const auto& l : kLabels) {
    if (langID == "ja")
      replaceFirst(s, l.en, std::string(l.ja) + " ");
    else
      replaceFirst(s, l.ja, std::string(l.en) + " ");
  }
  return collapseDoubleBlanks(s);
}
