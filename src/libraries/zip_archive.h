// ZIP archives in memory; they travel as base64 text (document/base64.h)
// inside JSON files: the picture of a backdrop or a leather, the built-in
// templates.
// Archives come from files a user may have edited or received, so reading
// is bounded: entry count, sizes, and names that would leave their folder.
#pragma once

#include <cstdint>
#include <ctime>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "document/base64.h"

class TZipError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

struct TZipEntry {
  std::string FName;  // with "/" between folders
  std::string FData;
  std::time_t FModified = 0;  // seconds since 1970, as the archive records it
};

// Bounds of a read; an archive beyond them is refused as a whole.
struct TZipLimits {
  size_t FMaxEntries = 10000;
  uint64_t FMaxTotalBytes = 1ull << 30;  // uncompressed, all entries together
};

// Every file entry (folders are left out), in archive order. Throws
// TZipError for data that is no archive, an entry that does not inflate,
// a name that is absolute or climbs out ("../"), or an archive beyond the
// limits.
std::vector<TZipEntry> readZipArchive(std::string_view bytes, const TZipLimits& limits = {});
// The one entry of that name (the first, if several), as readZipArchive
// reads it; throws TZipError when it is missing.
std::string readZipEntry(std::string_view bytes, const std::string& name, const TZipLimits& limits = {});

// An archive of the entries, each deflated, with its modification time.
std::string writeZipArchive(const std::vector<TZipEntry>& entries);

// True for a relative name that stays inside its folder: no "..", no
// leading "/" or drive, no backslash, no empty part.
bool zipEntryNameIsSafe(const std::string& name);
