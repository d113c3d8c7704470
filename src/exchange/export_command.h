// Conversion without a window: pelwright --export OUTPUT [options] INPUT.
// OUTPUT's extension picks a format from a small table; each format names
// the options it takes, and an exporter turns the loaded drawing into the
// bytes of its files. The frame loads the input, checks the options, runs
// the exporter and writes what it made atomically, so a failed conversion
// leaves no file and the input is never touched. No window, no server, no
// autosave, and the options file is only read.
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

class TfrmPelw;

// One option of a format, as given on the command line: a switch
// ("--holes-as-dots") or one that takes a value ("--dxf-version R14", also
// written "--dxf-version=R14").
struct TExportOption {
  std::string FName;
  std::vector<std::string> FValues;  // the values it takes; empty for a switch
  std::string FHelp;
  // An option that takes a value of its own, such as a length, is named
  // by what it takes ("MM") and has no FValues; the exporter checks it.
  std::string FValueName = {};
};

// The options given, by name; a switch maps to "".
struct TExportArgs {
  std::map<std::string, std::string> FValues;
  bool has(const std::string& name) const { return FValues.count(name) > 0; }
  std::string value(const std::string& name, const std::string& fallback = {}) const {
    const auto it = FValues.find(name);
    return it == FValues.end() ? fallback : it->second;
  }
};

// What an exporter works with and gives back.
struct TExportJob {
  // The controller with the input loaded: document, palette and the
  // options file's settings. There is no window and no canvas.
  TfrmPelw& FForm;
  const TExportArgs& FArgs;
  std::string FOutput;  // the file asked for
  // The files to write, name and bytes; the frame writes them after the
  // exporter succeeded. Usually the one output file.
  std::vector<std::pair<std::string, std::string>> FFiles;
};

struct TExportFormat {
  std::string FExtension;  // lower case with the dot: ".svg"
  std::string FSummary;    // one line for --help
  std::vector<TExportOption> FOptions;
  // Fills job.FFiles; returns "" on success, else a one-line message.
  std::string (*FExport)(TExportJob& job) = nullptr;
};

// The table of formats, one row each (export_formats.cpp).
const std::vector<TExportFormat>& exportFormats();

// The result of reading the conversion's arguments.
struct TExportLine {
  const TExportFormat* FFormat = nullptr;  // null when the extension is unknown
  std::string FInput;
  TExportArgs FArgs;
  std::string FUsageError;  // the line is wrong: said with the usage text
};

// Reads the arguments after "--export OUTPUT": options the format knows
// and exactly one input file. An option no format knows, one of another
// format, a bad value or a missing input is a usage error.
TExportLine parseExportLine(const std::string& output, const std::vector<std::string>& args);

// The formats and their options, for --help.
std::string exportCommandHelp();

// The whole conversion on a controller that was constructed but not
// started (the caller provides the text layout for text shapes). Returns
// the exit status: 0 written; 1 with a one-line message on `error` when
// the input cannot be read, there is nothing to export, the format is
// unknown or the file cannot be written; 2 with the reason for a usage
// error (the caller adds the usage text).
int runExportCommand(TfrmPelw& form, const std::string& output, const std::vector<std::string>& args,
                     std::string& error);
