// Starting a further instance of this program.
#pragma once

#include <string>
#include <vector>

// The running program's own file.
std::string ownExecutablePath();
// Starts `program` with `args` as a new process that runs on by itself.
// Returns "" or the system's error text.
std::string launchDetachedProcess(const std::string& program, const std::vector<std::string>& args);
