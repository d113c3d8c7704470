#include "app/app_paths.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>

std::string defaultAppDataPath() {
#ifdef _WIN32
  const char* appData = std::getenv("APPDATA");
  return joinPath(appData ? appData : ".", "pelwright");
#else
  const char* xdg = std::getenv("XDG_DATA_HOME");
  if (xdg && *xdg) return joinPath(xdg, "pelwright");
  const char* home = std::getenv("HOME");
  return joinPath(joinPath(home && *home ? home : ".", ".local/share"), "pelwright");
#endif
}

bool ensureFolder(const std::string& path) {
  std::error_code ec;
  std::filesystem::create_directories(path, ec);
  return std::filesystem::is_directory(path, ec);
}

std::string joinPath(const std::string& folder, const std::string& name) {
  if (folder.empty()) return name;
  if (folder.back() == '/') return folder + name;
  return folder + "/" + name;
}
