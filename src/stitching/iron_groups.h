// The user's list of pricking iron groups: what the iron tree shows, what
// the iron file holds, and where a hole read from a project finds its iron.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "stitching/pricking_iron.h"

class IPhraseLookup;

class TPrickingIronGroups {
 public:
  TPrickingIronGroups() = default;
  TPrickingIronGroups(const TPrickingIronGroups&) = delete;
  TPrickingIronGroups& operator=(const TPrickingIronGroups&) = delete;

  size_t Count() const { return FItems.size(); }
  bool empty() const { return FItems.empty(); }
  TPrickingIronGroup* operator[](size_t i) const { return FItems[i].get(); }
  auto begin() const { return FItems.begin(); }
  auto end() const { return FItems.end(); }
  int indexOf(const TPrickingIronGroup* group) const;
  // The group whose iron this is, or null.
  TPrickingIronGroup* groupOfIron(const TPrickingIron* iron) const;

  TPrickingIronGroup* add(std::unique_ptr<TPrickingIronGroup> group);
  void append(std::vector<std::unique_ptr<TPrickingIronGroup>> groups);
  // A new user group with a default iron, at the end of the list.
  TPrickingIronGroup* addNewUserGroup();
  // Removes a user group. A system group is refused (false) and stays. The
  // iron of a removed group is kept alive, since holes may still refer to it.
  bool deleteGroup(size_t index);
  void move(size_t from, size_t to);
  // Empties the list; irons are kept alive as by deleteGroup.
  void clear();

  // The iron of a group with this blade type and pitch: first with the
  // letter and the pitch exactly as stored, then with the letter in any
  // case and the pitch within half a hundredth of a millimetre. Null when
  // none.
  TPrickingIron* findIron(const std::string& bladeType, float pitch) const;
  // As findIron, but a missing iron is made: blade defaults of the type,
  // named "Unknown " and the pitch and "mm". It belongs to no group and is
  // kept here, so the holes of an old project keep an iron to refer to.
  TPrickingIron* ironForHole(const std::string& bladeType, float pitch);

  // Rewrites every iron name for the language (see ironNameForLanguage).
  void renameForLanguage(const std::string& langID);

 private:
  std::vector<std::unique_ptr<TPrickingIronGroup>> FItems;
  // Irons that left the list or never were in it, but that holes borrow.
  std::vector<std::unique_ptr<TPrickingIron>> FDetachedIrons;
};

// ---- captions of the iron tree ----
// A group item shows the iron name; a child the name and "(" count ")".
std::string ironGroupCaption(const TPrickingIronGroup& group);
std::string bladeCountCaption(const TPrickingIronGroup& group, int numOfBlades);

// ---- the iron toolbox ----
// Reads the blade count field: numbers separated by blanks. Gives the
// message key of the refusal ("bladeformaterror" for a piece that is no
// whole number, "bladeformaterror2" for one below 1), or empty when the
// text is good; then `counts` is 1 followed by each number not yet listed.
std::string parseBladeCounts(const std::string& text, std::vector<int>& counts);

struct TIronEdit {
  std::string FName;
  std::string FBladeType;
  float FWidth = 0;
  float FHeight = 0;
  float FAngle = 0;
  float FPitch = 0;
  std::string FNumOfBlades;  // the blade count field as typed
};

// Applies the toolbox fields to a group (system groups too). On a refusal
// nothing changes and the message key is returned; empty on success.
std::string applyIronEdit(TPrickingIronGroup& group, const TIronEdit& edit);

// The refusal for deleting a system group.
inline constexpr const char* kCannotDeleteSystemIronKey = "CannotDeleteSystePrickingIrons";
// The question before deleting a group: the phrase and the name, or in
// Japanese the name, the phrase and "?".
std::string deleteIronQuestion(const IPhraseLookup& lang, const std::string& langID,
                               const std::string& ironName);
