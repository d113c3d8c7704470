// The templates that ship with the program: outlines a leatherworker
// starts from (wallet and card case bodies, pockets, a key fob, basic
// shapes), drawn here from their dimensions and shipped as the base64 text
// of a ZIP archive laid into the application data folder at each start.
// The archive text is checked in (resources/templates/builtin_templates.b64)
// and compiled into the program; `pelwright --write-templates FILE` writes
// it again after a change here, and a test fails while the two differ.
#pragma once

#include <ctime>
#include <string>
#include <string_view>
#include <vector>

#include "libraries/zip_archive.h"

// The time every file of the archive carries; raise it when the templates
// change, so that installed copies are replaced.
inline constexpr std::time_t kBuiltinTemplatesStamp = 1735689600;  // 2025-01-01

// The archive's files: "repository/{GUID}.pwcr" for each template,
// "repository_index.txt" and "repository_tree.json".
std::vector<TZipEntry> builtinTemplateEntries();
// Those files as the base64 text of a ZIP archive.
std::string builtinTemplateArchiveText();
// The archive compiled into the program.
std::string_view builtinTemplateArchive();
