// Running the program's conversion in a test: its status and what it said
// on standard error, with a temporary application data folder.
#pragma once

#include <sys/wait.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "app/safe_file.h"
#include "test_support.h"

inline const std::string kCardHolderFile = std::string(PELWRIGHT_SOURCE_DIR) + "/resources/samples/card_holder.pwc";

struct TProgramRun {
  int status = -1;
  std::string err;
};

inline std::string shellQuoted(const std::string& s) {
  std::string q = "'";
  for (char c : s) q += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return q + "'";
}

// The program with `args`, XDG_DATA_HOME in `home`, English messages.
inline TProgramRun runPelwright(const std::vector<std::string>& args, const TTempDir& home) {
  std::string cmd = "env XDG_DATA_HOME=" + shellQuoted(home.path()) + " XDG_RUNTIME_DIR=" + shellQuoted(home.path()) +
                    " LANG=C LC_ALL=C " + shellQuoted(PELWRIGHT_BINARY);
  for (const std::string& a : args) cmd += " " + shellQuoted(a);
  const std::string errFile = home.path() + "/../" + std::filesystem::path(home.path()).filename().string() + ".err";
  cmd += " 2>" + shellQuoted(errFile) + " >/dev/null";
  const int raw = std::system(cmd.c_str());
  TProgramRun r;
  r.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
  r.err = readWholeFile(errFile);
  std::remove(errFile.c_str());
  return r;
}

// Standard output of a shell command run with HOME in `home` (Inkscape
// keeps its preferences there); empty when it failed.
inline std::string toolOutput(const std::string& command, const TTempDir& home) {
  const std::string cmd = "env HOME=" + shellQuoted(home.path()) + " XDG_CONFIG_HOME=" + shellQuoted(home.path()) +
                          " " + command + " 2>/dev/null";
  std::string out;
  if (FILE* p = popen(cmd.c_str(), "r")) {
    char buf[4096];
    while (size_t n = fread(buf, 1, sizeof buf, p)) out.append(buf, n);
    if (pclose(p) != 0) out.clear();
  }
  return out;
}
