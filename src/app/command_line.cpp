#include "app/command_line.h"

#include <charconv>

TCommandLine parseCommandLine(int argc, const char* const* argv) {
  TCommandLine cl;
  for (int i = 1; i < argc; ++i) {
    const std::string a = argv[i];
    if (a == "--headless") {
      cl.headless = true;
    } else if (a == "--mcp") {
      cl.mcp = true;
    } else if (a == "--help" || a == "-h") {
      cl.help = true;
    } else if (a == "--write-sample") {
      if (i + 1 >= argc || argv[i + 1][0] == '\0') {
        cl.error = "--write-sample needs a file name";
        return cl;
      }
      cl.writeSampleFile = argv[++i];
    } else if (a == "--write-templates") {
      if (i + 1 >= argc || argv[i + 1][0] == '\0') {
        cl.error = "--write-templates needs a file name";
        return cl;
      }
      cl.writeTemplatesFile = argv[++i];
    } else if (a == "--api-port" || a.rfind("--api-port=", 0) == 0) {
      std::string value;
      if (a == "--api-port") {
        if (i + 1 >= argc) {
          cl.error = "--api-port needs a port number";
          return cl;
        }
        value = argv[++i];
      } else {
        value = a.substr(11);
      }
      int port = 0;
      const auto res = std::from_chars(value.data(), value.data() + value.size(), port);
      if (res.ec != std::errc() || res.ptr != value.data() + value.size() || port < 1 || port > 65535) {
        cl.error = "--api-port needs a port number from 1 to 65535, not \"" + value + "\"";
        return cl;
      }
      cl.apiPort = port;
    } else {
      cl.args.push_back(a);
    }
  }
  if (cl.mcp && (cl.headless || !cl.writeSampleFile.empty() || !cl.args.empty()))
    cl.error = "--mcp takes no project file and no other mode; only --api-port";
  return cl;
}

std::string commandLineHelp() {
  return "Usage: pelwright [options] [project.pwc]\n"
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
         "  --write-templates FILE\n"
         "                    write the archive of the built-in templates (base64\n"
         "                    text) to FILE and end\n"
         "  --help            show this text\n";
}
