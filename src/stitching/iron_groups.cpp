#include "stitching/iron_groups.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "document/phrase_lookup.h"
#include "document/number_text.h"
#include "stitching/system_irons.h"

namespace {

std::string upper(std::string s) {
  for (char& c : s)
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  return s;
}

}  // namespace

int TPrickingIronGroups::indexOf(const TPrickingIronGroup* group) const {
  for (size_t i = 0; i < FItems.size(); ++i)
    if (FItems[i].get() == group) return static_cast<int>(i);
  return -1;
}

TPrickingIronGroup* TPrickingIronGroups::groupOfIron(const TPrickingIron* iron) const {
  for (const auto& g : FItems)
    if (g->FPrickingIron.get() == iron) return g.get();
  return nullptr;
}

TPrickingIronGroup* TPrickingIronGroups::add(std::unique_ptr<TPrickingIronGroup> group) {
  if (!group) return nullptr;
  FItems.push_back(std::move(group));
  return FItems.back().get();
}

void TPrickingIronGroups::append(std::vector<std::unique_ptr<TPrickingIronGroup>> groups) {
  for (auto& g : groups) add(std::move(g));
}

TPrickingIronGroup* TPrickingIronGroups::addNewUserGroup() {
  return add(std::make_unique<TPrickingIronGroup>(false));
}

bool TPrickingIronGroups::deleteGroup(size_t index) {
  if (index >= FItems.size() || FItems[index]->FIsSystemGroup) return false;
  FDetachedIrons.push_back(std::move(FItems[index]->FPrickingIron));
  FItems.erase(FItems.begin() + static_cast<std::ptrdiff_t>(index));
  return true;
}

void TPrickingIronGroups::move(size_t from, size_t to) {
  if (from >= FItems.size() || to >= FItems.size() || from == to) return;
  auto g = std::move(FItems[from]);
  FItems.erase(FItems.begin() + static_cast<std::ptrdiff_t>(from));
  FItems.insert(FItems.begin() + static_cast<std::ptrdiff_t>(to), std::move(g));
}

void TPrickingIronGroups::clear() {
  for (auto& g : FItems) FDetachedIrons.push_back(std::move(g->FPrickingIron));
  FItems.clear();
}

TPrickingIron* TPrickingIronGroups::findIron(const std::string& bladeType, float pitch) const {
  for (const auto& g : FItems)
    if (g->FPrickingIron->FBladeType == bladeType && g->FPrickingIron->FPitch == pitch)
      return g->FPrickingIron.get();
  const std::string bt = upper(bladeType);
  for (const auto& g : FItems)
    if (upper(g->FPrickingIron->FBladeType) == bt &&
        std::fabs(double(g->FPrickingIron->FPitch) - pitch) < 0.005)
      return g->FPrickingIron.get();
  return nullptr;
}

TPrickingIron* TPrickingIronGroups::ironForHole(const std::string& bladeType, float pitch) {
  if (TPrickingIron* found = findIron(bladeType, pitch)) return found;
  // An unknown iron met before is used again, so one project's holes share it.
  for (const auto& iron : FDetachedIrons)
    if (iron->FBladeType == bladeType && iron->FPitch == pitch &&
        iron->FName.rfind("Unknown ", 0) == 0)
      return iron.get();
  auto iron = std::make_unique<TPrickingIron>();
  iron->FBladeType = bladeType;
  iron->FPitch = pitch;
  bladeDefaults(bladeType, iron->FWidth, iron->FHeight, iron->FAngle);
  iron->FName = "Unknown " + floatToText(pitch, 7) + "mm";
  FDetachedIrons.push_back(std::move(iron));
  return FDetachedIrons.back().get();
}

void TPrickingIronGroups::renameForLanguage(const std::string& langID) {
  for (auto& g : FItems) g->FPrickingIron->FName = ironNameForLanguage(g->FPrickingIron->FName, langID);
}

std::string ironGroupCaption(const TPrickingIronGroup& group) { return group.FPrickingIron->FName; }

std::string bladeCountCaption(const TPrickingIronGroup& group, int numOfBlades) {
  return group.FPrickingIron->FName + "(" + std::to_string(numOfBlades) + ")";
}

std::string parseBladeCounts(const std::string& text, std::vector<int>& counts) {
  std::vector<int> result{1};
  size_t i = 0;
  while (i < text.size()) {
    if (text[i] == ' ' || text[i] == '\t') {
      ++i;
      continue;
    }
    size_t j = i;
    while (j < text.size() && text[j] != ' ' && text[j] != '\t') ++j;
    const std::string piece = text.substr(i, j - i);
    i = j;
    const char* first = piece.data();
    const char* last = piece.data() + piece.size();
    if (*first == '+') ++first;
    long long n = 0;
    const auto res = std::from_chars(first, last, n);
    if (res.ec != std::errc() || res.ptr != last || first == last) return "bladeformaterror";
    if (n < 1) return "bladeformaterror2";
    if (n > 1000000) return "bladeformaterror";
    const int count = static_cast<int>(n);
    if (std::find(result.begin(), result.end(), count) == result.end()) result.push_back(count);
  }
  counts = std::move(result);
  return "";
}

std::string applyIronEdit(TPrickingIronGroup& group, const TIronEdit& edit) {
  std::vector<int> counts;
  const std::string refusal = parseBladeCounts(edit.FNumOfBlades, counts);
  if (!refusal.empty()) return refusal;
  group.FAvailableBlades = std::move(counts);
  TPrickingIron& iron = *group.FPrickingIron;
  iron.FName = edit.FName;
  iron.FBladeType = edit.FBladeType;
  iron.FWidth = edit.FWidth;
  iron.FHeight = edit.FHeight;
  iron.FAngle = edit.FAngle;
  iron.FPitch = edit.FPitch;
  return "";
}

std::string deleteIronQuestion(const IPhraseLookup& lang, const std::string& langID,
                               const std::string& ironName) {
  const std::string phrase = lang.getTranslation(langID, "OK2DeletePrickingIron");
  if (langID == "ja") return ironName + phrase + "?";
  return phrase + ironName;
}
