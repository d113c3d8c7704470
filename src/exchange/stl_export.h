// The STL export as the dialog and the conversion use it: the solid of the
// settings' mode from the chosen shapes, the words for the status line, and
// the files to write.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "exchange/stl_solids.h"

class TMultiLang;

// The status line after a build: why nothing came out, or the warnings,
// skipped plates and open shapes (those only when `openShapesMatter`).
std::string stlStatusText(const TStlResult& r, bool openShapesMatter, const TMultiLang& lang,
                          const std::string& langID);

// The files of a save: the base under `file`, and with a multi-colour print
// the letters under the "_text" name. Returns "" or the phrase key of the
// refusal: no mesh, or a mesh that would not close once its corners are
// welded as the file stores them.
std::string stlFilesFor(const TStlResult& r, const TSTLExportSettings& settings, const std::string& file,
                        std::vector<std::pair<std::string, std::string>>& files);

// The message after a save: the file, or both of a multi-colour print.
std::string stlSavedMessage(const std::vector<std::pair<std::string, std::string>>& files, const TMultiLang& lang,
                            const std::string& langID);
