#include "exchange/export_command.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <stdexcept>

#include "app/app_paths.h"
#include "app/frm_pelw.h"
#include "app/safe_file.h"
#include "platform/dialogs.h"
#include "exchange/conversion_input.h"

namespace {

std::string lowerCase(std::string s) {
  std::transform(s.begin(), s.end(), s.begin(), [](unsigned char c) { return char(std::tolower(c)); });
  return s;
}

std::string extensionOf(const std::string& file) {
  return lowerCase(std::filesystem::path(file).extension().string());
}

const TExportOption* findOption(const TExportFormat& f, const std::string& name) {
  for (const TExportOption& o : f.FOptions)
    if (o.FName == name) return &o;
  return nullptr;
}

const TExportOption* findInAnyFormat(const std::string& name) {
  for (const TExportFormat& f : exportFormats())
    if (const TExportOption* o = findOption(f, name)) return o;
  return nullptr;
}

std::string joined(const std::vector<std::string>& values, const char* separator) {
  std::string s;
  for (const std::string& v : values) s += (s.empty() ? "" : separator) + v;
  return s;
}

// A message of the program on one line.
std::string oneLine(std::string text) {
  std::replace(text.begin(), text.end(), '\n', ' ');
  std::replace(text.begin(), text.end(), '\r', ' ');
  while (!text.empty() && text.back() == ' ') text.pop_back();
  return text;
}

}  // namespace

TExportLine parseExportLine(const std::string& output, const std::vector<std::string>& args) {
  TExportLine line;
  const std::string ext = extensionOf(output);
  for (const TExportFormat& f : exportFormats())
    if (f.FExtension == ext) line.FFormat = &f;
  std::vector<std::string> files;
  bool filesOnly = false;
  for (size_t i = 0; i < args.size(); ++i) {
    const std::string& a = args[i];
    if (filesOnly || a.size() < 2 || a[0] != '-') {
      files.push_back(a);
      continue;
    }
    if (a == "--") {
      filesOnly = true;
      continue;
    }
    const size_t eq = a.find('=');
    const std::string name = a.substr(0, eq);
    const TExportOption* option = line.FFormat ? findOption(*line.FFormat, name) : findInAnyFormat(name);
    if (!option) {
      line.FUsageError = findInAnyFormat(name) ? name + " does not apply to " + ext + " output"
                                               : "unknown option " + name;
      return line;
    }
    std::string value;
    if (!option->FValues.empty() || !option->FValueName.empty()) {
      if (eq != std::string::npos) value = a.substr(eq + 1);
      else if (i + 1 < args.size()) value = args[++i];
      else {
        line.FUsageError = name + " needs a value: " +
                           (option->FValues.empty() ? option->FValueName : joined(option->FValues, " or "));
        return line;
      }
      if (option->FValues.empty()) {
        line.FArgs.FValues[name] = value;
        continue;
      }
      const auto known = std::find_if(option->FValues.begin(), option->FValues.end(),
                                      [&](const std::string& v) { return lowerCase(v) == lowerCase(value); });
      if (known == option->FValues.end()) {
        line.FUsageError = name + " takes " + joined(option->FValues, " or ") + ", not \"" + value + "\"";
        return line;
      }
      value = *known;
    } else if (eq != std::string::npos) {
      line.FUsageError = name + " takes no value";
      return line;
    }
    line.FArgs.FValues[name] = value;
  }
  if (files.empty()) line.FUsageError = "--export needs an input file";
  else if (files.size() > 1) line.FUsageError = "--export takes one input file, not " + joined(files, ", ");
  else line.FInput = files.front();
  return line;
}

std::string exportCommandHelp() {
  std::string s =
      "\nConversion: pelwright --export OUTPUT [export options] INPUT\n"
      "  INPUT is a project (.pwc) or an SVG drawing (.svg, its shapes split\n"
      "  into lines and curves at the drawing's own size). Export options not\n"
      "  given come from pw_options.ini, which is only read. Exit status 0 when\n"
      "  written, 1 with a message when it cannot be, 2 for a wrong command\n"
      "  line. A failed conversion leaves no file.\n"
      "  Output formats:\n";
  for (const TExportFormat& f : exportFormats()) {
    s += "    " + f.FExtension + std::string(8 - std::min<size_t>(7, f.FExtension.size()), ' ') + f.FSummary + "\n";
    for (const TExportOption& o : f.FOptions) {
      const std::string takes = o.FValues.empty() ? o.FValueName : joined(o.FValues, "|");
      std::string head = "      " + o.FName + (takes.empty() ? "" : " " + takes);
      if (head.size() < 30) head += std::string(30 - head.size(), ' ');
      else head += "\n" + std::string(30, ' ');
      s += head + o.FHelp + "\n";
    }
  }
  return s;
}

int runExportCommand(TfrmPelw& form, const std::string& output, const std::vector<std::string>& args,
                     std::string& error) {
  const TExportLine line = parseExportLine(output, args);
  if (!line.FUsageError.empty()) {
    error = line.FUsageError;
    return 2;
  }
  if (!line.FFormat) {
    std::string known;
    for (const TExportFormat& f : exportFormats()) known += (known.empty() ? "" : ", ") + f.FExtension;
    error = "cannot export to \"" + extensionOf(output) + "\" files; the formats are " + known;
    return 1;
  }
  std::error_code ec;
  if (std::filesystem::equivalent(line.FInput, output, ec)) {
    error = "the output would replace the input " + line.FInput;
    return 1;
  }
  TScriptedDialogs dialogs;
  prepareConversion(form, dialogs);
  std::string message = loadConversionInput(form, line.FInput);
  if (!message.empty()) {
    error = oneLine(message);
    form.FDialogs = nullptr;
    return 1;
  }
  TExportJob job{form, line.FArgs, output, {}};
  message = line.FFormat->FExport(job);
  form.FDialogs = nullptr;
  if (!message.empty()) {
    error = oneLine(message);
    return 1;
  }
  try {
    for (const auto& [file, bytes] : job.FFiles) writeFileAtomically(file, bytes);
  } catch (const std::exception& e) {
    error = oneLine(e.what());
    return 1;
  }
  return 0;
}
