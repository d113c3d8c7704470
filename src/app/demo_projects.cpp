#include "app/demo_projects.h"

#include <filesystem>
#include <system_error>

#include "app/app_paths.h"
#include "platform/safe_file.h"

namespace fs = std::filesystem;

std::string shippedDemoFolder(const std::string& exeFolder) { return joinPath(exeFolder, "demo"); }

int deployDemoProjects(const std::string& sourceFolder, const std::string& targetFolder) {
  std::error_code ec;
  if (sourceFolder.empty() || !fs::is_directory(sourceFolder, ec)) return 0;
  int copied = 0;
  for (const fs::directory_entry& entry : fs::directory_iterator(sourceFolder, ec)) {
    std::error_code e;
    if (!entry.is_regular_file(e) || entry.path().extension() != ".pwc") continue;
    const fs::path target = fs::path(targetFolder) / entry.path().filename();
    // A copy the user saved since it was deployed is newer, and stays.
    if (fs::exists(target, e)) {
      const auto shipped = fs::last_write_time(entry.path(), e);
      if (e) continue;
      const auto present = fs::last_write_time(target, e);
      if (e || present >= shipped) continue;
    }
    try {
      if (!ensureFolder(targetFolder)) return copied;
      writeFileAtomically(target.string(), readWholeFile(entry.path().string()));
      ++copied;
    } catch (const std::exception&) {
    }
  }
  return copied;
}
