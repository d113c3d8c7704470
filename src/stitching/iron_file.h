// The user's pricking iron file, "prickingirons.pwcp" in the application
// data folder: one JSON object holding the groups in list order. Read at
// start, seeded from the built-in table, written back at exit.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "stitching/iron_groups.h"

inline constexpr const char* kPrickingIronFileName = "prickingirons.pwcp";
inline constexpr const char* kPrickingIronFileType = "Pelwright_PrickingIronGroups";

// The file's text: UTF-8 with a byte-order mark.
std::string prickingIronFileText(const TPrickingIronGroups& groups);
// Groups from the file's text, each read as a user group first. A missing
// or non-array "pricking_iron_groups" gives no groups. Throws
// std::runtime_error telling what is wrong when the text is damaged.
std::vector<std::unique_ptr<TPrickingIronGroup>> prickingIronGroupsFromText(const std::string& text);

// Written atomically; throws std::runtime_error naming the file on failure.
void writePrickingIronFile(const std::string& filename, const TPrickingIronGroups& groups);

enum class TIronFileState { Missing, Read, Damaged };

struct TIronStartup {
  TIronFileState FState = TIronFileState::Missing;
  bool FGroupsRead = false;  // the file gave at least one group
  // For the user when the file was damaged: names the file and where the
  // damaged copy was kept. Empty otherwise.
  std::string FMessage;
};

// First half of the start-up: reads the file into `groups` (which should be
// empty); when no group came from it, the whole built-in table is made. A
// damaged file leaves the built-in table, is copied aside with ".damaged"
// appended to its name so that the exit's write cannot lose it, and the
// message says so.
TIronStartup loadPrickingIronsAtStartup(TPrickingIronGroups& groups, const std::string& filename,
                                        const std::string& langID);

// Second half, once the options are read: when groups came from the file
// and the option "NewSet" (FNewPrickingIronsAdded) is still false, the
// rows added to the built-in table since are appended. The flag is set true
// in every case.
void addNewSystemIronsOnce(TPrickingIronGroups& groups, const TIronStartup& startup,
                           bool& newPrickingIronsAdded, const std::string& langID);
