// Writing files so that a failure never leaves a half-written file behind:
// the text goes to a temporary file beside the target, is flushed to disk,
// and is renamed over the target.
#pragma once

#include <string>

// Throws std::runtime_error naming the file when the write or the rename
// fails; the old file then stays as it was.
void writeFileAtomically(const std::string& filename, const std::string& contents);

// Removes what an interrupted writeFileAtomically left in `folder`: files
// named "." + name + ".part" + digits, for any name or only for `onlyFor`.
// A temporary that another copy of the program is still writing is locked
// and left alone, and nothing else is touched.
void removeLeftoverTemporaries(const std::string& folder, const std::string& onlyFor = {});

// Reads a whole file. Throws std::runtime_error naming the file when it
// cannot be read.
std::string readWholeFile(const std::string& filename);
