// The program's command line.
#pragma once

#include <string>
#include <vector>

struct TCommandLine {
  bool headless = false;
  bool help = false;
  // --mcp: the assistant bridge on standard input and output (no window).
  bool mcp = false;
  int apiPort = 7777;
  // --write-sample FILE: write the card holder sample project and end.
  std::string writeSampleFile;
  // --write-templates FILE: write the built-in template archive and end.
  std::string writeTemplatesFile;
  // Arguments left for the controller, in order: a project file, and
  // "--instance-id" with its stamp for a launched instance.
  std::vector<std::string> args;
  // Set when the line cannot be understood; the program then says it and ends.
  std::string error;
};

TCommandLine parseCommandLine(int argc, const char* const* argv);

// The text of --help.
std::string commandLineHelp();
