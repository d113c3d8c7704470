// Writing files so that a failure never leaves a half-written file behind:
// the text goes to a temporary file beside the target, is flushed to disk,
// and is renamed over the target.
#pragma once

#include <string>

// Throws std::runtime_error naming the file when the write or the rename
// fails; the old file then stays as it was.
void writeFileAtomically(const std::string& filename, const std::string& contents);

// Reads a whole file. Throws std::runtime_error naming the file when it
// cannot be read.
std::string readWholeFile(const std::string& filename);
