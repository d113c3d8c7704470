// No source folder reaches up: the document and the geometry know nothing
// of the stitching, the controller, the surface or the API; the stitching
// nothing of the controller and above.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <regex>

TEST(Layering, NoFolderIncludesOneAboveIt) {
  const std::filesystem::path src = std::filesystem::path(PELWRIGHT_SOURCE_DIR) / "src";
  const std::vector<std::pair<std::string, std::string>> rules = {
      {"document", "stitching|app|surface|api|libraries"},
      {"geometry", "stitching|app|surface|api|libraries"},
      {"stitching", "app|surface|api|libraries"}};
  for (const auto& [folder, above] : rules) {
    const std::regex reachUp("#include \"(" + above + ")/");
    for (const auto& entry : std::filesystem::directory_iterator(src / folder)) {
      std::ifstream in(entry.path());
      std::string line;
      for (int n = 1; std::getline(in, line); ++n)
        EXPECT_FALSE(std::regex_search(line, reachUp)) << entry.path().filename().string() << ":" << n << " " << line;
    }
  }
}
