// Where the program keeps its files for the user.
#pragma once

#include <string>

// The per-user application data folder plus "pelwright": on Linux
// $XDG_DATA_HOME/pelwright, or ~/.local/share/pelwright when that is unset.
// Not created here.
std::string defaultAppDataPath();

// Creates the folder and its parents when missing. False when that fails.
bool ensureFolder(const std::string& path);

// Joins a folder and a name with one separator.
std::string joinPath(const std::string& folder, const std::string& name);
