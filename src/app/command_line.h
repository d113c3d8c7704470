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
  // --write-sample FILE (English) or --write-sample-ja FILE (Japanese):
  // write the card holder sample project and end.
  std::string writeSampleFile;
  std::string writeSampleLanguage = "en";
  // --write-templates FILE: write the built-in template archive and end.
  std::string writeTemplatesFile;
  // --export OUTPUT: convert a drawing without a window and end. Every
  // other argument of that mode stays in exportArgs, in order, for the
  // conversion's own parser, which knows the options of each format.
  bool exportMode = false;
  std::string exportOutput;
  std::vector<std::string> exportArgs;
  // Arguments left for the controller, in order: a project file, and
  // "--instance-id" with its stamp for a launched instance.
  std::vector<std::string> args;
  // Set when the line cannot be understood; the program then says it,
  // shows the usage and ends with a non-zero status.
  std::string error;
};

TCommandLine parseCommandLine(int argc, const char* const* argv);

// The text of --help.
std::string commandLineHelp();
