#include "app/command_line.h"

#include <charconv>

namespace {

bool isOption(const std::string& a) { return a.size() > 1 && a[0] == '-'; }

bool readPort(const std::string& value, TCommandLine& cl) {
  int port = 0;
  const auto res = std::from_chars(value.data(), value.data() + value.size(), port);
  if (res.ec != std::errc() || res.ptr != value.data() + value.size() || port < 1 || port > 65535) {
    cl.error = "--api-port needs a port number from 1 to 65535, not \"" + value + "\"";
    return false;
  }
  cl.apiPort = port;
  return true;
}

// The conversion mode: everything but --export and its file goes to the
// conversion's parser, which refuses what no format knows.
TCommandLine parseExportLine(int argc, const char* const* argv) {
  TCommandLine cl;
  cl.exportMode = true;
  for (int i = 1; i < argc; ++i) {
    const std::string a = argv[i];
    if (a == "--export") {
      if (!cl.exportOutput.empty()) {
        cl.error = "--export is given twice";
        return cl;
      }
      if (i + 1 >= argc || argv[i + 1][0] == '\0' || isOption(argv[i + 1])) {
        cl.error = "--export needs an output file";
        return cl;
      }
      cl.exportOutput = argv[++i];
    } else if (a == "--help" || a == "-h") {
      cl.help = true;
    } else if (a == "--headless" || a == "--mcp" || a == "--write-sample" || a == "--write-sample-ja" ||
               a == "--write-templates" || a == "--api-port" || a.rfind("--api-port=", 0) == 0 ||
               a == "--instance-id") {
      cl.error = a + " does not go with --export";
      return cl;
    } else {
      cl.exportArgs.push_back(a);
    }
  }
  return cl;
}

}  // namespace

TCommandLine parseCommandLine(int argc, const char* const* argv) {
  for (int i = 1; i < argc; ++i)
    if (std::string(argv[i]) == "--export") return parseExportLine(argc, argv);
  TCommandLine cl;
  bool filesOnly = false;  // after "--" every argument is a file name
  for (int i = 1; i < argc; ++i) {
    const std::string a = argv[i];
    if (filesOnly || !isOption(a)) {
      cl.args.push_back(a);
    } else if (a == "--") {
      filesOnly = true;
    } else if (a == "--headless") {
      cl.headless = true;
    } else if (a == "--mcp") {
      cl.mcp = true;
    } else if (a == "--help" || a == "-h") {
      cl.help = true;
    } else if (a == "--write-sample" || a == "--write-sample-ja") {
      if (i + 1 >= argc || argv[i + 1][0] == '\0') {
        cl.error = a + " needs a file name";
        return cl;
      }
      cl.writeSampleFile = argv[++i];
      cl.writeSampleLanguage = a == "--write-sample" ? "en" : "ja";
    } else if (a == "--write-templates") {
      if (i + 1 >= argc || argv[i + 1][0] == '\0') {
        cl.error = "--write-templates needs a file name";
        return cl;
      }
      cl.writeTemplatesFile = argv[++i];
    } else if (a == "--api-port") {
      if (i + 1 >= argc) {
        cl.error = "--api-port needs a port number";
        return cl;
      }
      if (!readPort(argv[++i], cl)) return cl;
    } else if (a.rfind("--api-port=", 0) == 0) {
      if (!readPort(a.substr(11), cl)) return cl;
    } else if (a == "--instance-id") {
      // A launched instance: the controller reads the mark and its stamp.
      cl.args.push_back(a);
      if (i + 1 < argc) cl.args.push_back(argv[++i]);
    } else {
      cl.error = "unknown option " + a;
      return cl;
    }
  }
  if (cl.mcp && (cl.headless || !cl.writeSampleFile.empty() || !cl.writeTemplatesFile.empty() || !cl.args.empty()))
    cl.error = "--mcp takes no project file and no other mode; only --api-port";
  return cl;
}

std::string commandLineHelp() {
  return "Usage: pelwright [options] [project.pwc]\n"
         "       pelwright --export OUTPUT [export options] INPUT\n"
         "\n"
         "Pelwright draws leather goods patterns in true millimetres.\n"
         "\n"
         "Options:\n"
         "  --headless        run without a window; with the local API enabled\n"
         "                    (section [MCP], EnableServer=1 in pw_options.ini)\n"
         "                    other programs edit the drawing through it.\n"
         "                    Ends on SIGINT, SIGTERM or SIGHUP; ends at once\n"
         "                    with status 1 when the port is taken.\n"
         "  --api-port N      port of the local API on 127.0.0.1 (default 7777)\n"
         "  --mcp             serve the Model Context Protocol on standard input\n"
         "                    and output for an assistant, passing its tool\n"
         "                    calls to the running program's local API\n"
         "  --instance-id ID  marks a window opened from another one\n"
         "  --write-sample FILE\n"
         "                    write the card holder sample project to FILE\n"
         "                    and end\n"
         "  --write-sample-ja FILE\n"
         "                    the same in Japanese\n"
         "  --write-templates FILE\n"
         "                    write the archive of the built-in templates (base64\n"
         "                    text) to FILE and end\n"
         "  --export OUTPUT   convert INPUT (a project .pwc or an SVG drawing)\n"
         "                    to OUTPUT without a window and end; OUTPUT's\n"
         "                    extension picks the format (see below)\n"
         "  --help            show this text\n";
}
