// Files of the conversion read back by the programs a cutter uses: Inkscape
// for SVG at true size, and ezdxf's auditor for DXF. Both are installed by
// the project's setup for its tests.
#include <gtest/gtest.h>

#include <cstdio>
#include <sstream>

#include "exchange_program.h"

namespace {

const std::string kDxfCheck = std::string(PELWRIGHT_SOURCE_DIR) + "/tests/program/dxf_check.py";
constexpr double kMmPerPx = 25.4 / 96.0;

// Inkscape's bounding box of the whole drawing, in millimetres: x, y, width, height.
std::vector<double> inkscapeBox(const std::string& svg, const TTempDir& home) {
  std::istringstream first(toolOutput("inkscape --query-all " + shellQuoted(svg), home));
  std::string line;
  std::getline(first, line);
  std::vector<double> box;
  std::istringstream cells(line);
  std::string cell;
  std::getline(cells, cell, ',');  // the element's id
  while (std::getline(cells, cell, ',')) box.push_back(std::stod(cell) * kMmPerPx);
  return box;
}

// Width and height in pixels of a PNG.
std::pair<int, int> pngSize(const std::string& file) {
  const std::string b = readWholeFile(file);
  auto be32 = [&](size_t at) {
    return int((unsigned char)b[at] << 24 | (unsigned char)b[at + 1] << 16 | (unsigned char)b[at + 2] << 8 |
               (unsigned char)b[at + 3]);
  };
  return b.size() > 24 ? std::pair{be32(16), be32(20)} : std::pair{0, 0};
}

std::string dxfCheck(const std::string& dxf, const TTempDir& home) {
  std::string out = toolOutput("/usr/bin/python3 " + shellQuoted(kDxfCheck) + " " + shellQuoted(dxf), home);
  if (!out.empty() && out.back() == '\n') out.pop_back();
  return out;
}

}  // namespace

TEST(ExportConsumers, InkscapeOpensTheCardHolderAtTrueSize) {
  TTempDir home;
  const std::string svg = home.file("card_holder.svg");
  ASSERT_EQ(runPelwright({"--export", svg, kCardHolderFile}, home).status, 0);
  // One pixel a millimetre: the page is the pattern's 100 by 130 mm.
  toolOutput("inkscape --export-type=png --export-dpi=25.4 -o " + shellQuoted(home.file("page.png")) + " " +
                 shellQuoted(svg),
             home);
  EXPECT_EQ(pngSize(home.file("page.png")), (std::pair{100, 130}));
  // The drawing: the outline with half its 0.15 mm stroke on each side.
  const std::vector<double> box = inkscapeBox(svg, home);
  ASSERT_EQ(box.size(), 4u) << "is Inkscape installed? ./scripts/setup.sh --tests";
  EXPECT_NEAR(box[0], -0.075, 0.01);
  EXPECT_NEAR(box[2], 100.15, 0.01);
  EXPECT_NEAR(box[3], 130.15, 0.01);
}

TEST(ExportConsumers, TheDxfAuditorAcceptsR12AndR14AtTrueSize) {
  TTempDir home;
  for (const char* version : {"R12", "R14"}) {
    const std::string dxf = home.file(std::string("card_holder_") + version + ".dxf");
    ASSERT_EQ(runPelwright({"--export", dxf, "--dxf-version", version, kCardHolderFile}, home).status, 0);
    const std::string check = dxfCheck(dxf, home);
    EXPECT_EQ(check.substr(0, 18), "errors=0 fixes=0 e") << version << ": " << check;
    EXPECT_NE(check.find("extents=0.000,-130.000,100.000,0.000"), std::string::npos) << version << ": " << check;
  }
}

TEST(ExportConsumers, AnInkscapeDrawingConvertsToDxfAtItsOwnSize) {
  // Filled, unstroked shapes, so that Inkscape's box is the geometry's.
  TTempDir home;
  const std::string svg = home.file("turned.svg");
  writeTextFile(svg,
                "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"80mm\" height=\"60mm\" viewBox=\"0 0 320 240\">"
                "<g transform=\"translate(20,10) rotate(30 100 50)\" style=\"fill:#000;stroke:none\">"
                "<rect x=\"10\" y=\"10\" width=\"200\" height=\"100\" rx=\"20\"/>"
                "<circle cx=\"250\" cy=\"150\" r=\"30\"/>"
                "<path d=\"M 0 200 C 50 150 100 250 150 200 Z\"/></g></svg>");
  const std::vector<double> box = inkscapeBox(svg, home);
  ASSERT_EQ(box.size(), 4u);
  for (const char* version : {"R12", "R14"}) {
    const std::string dxf = home.file(std::string("turned_") + version + ".dxf");
    ASSERT_EQ(runPelwright({"--export", dxf, "--dxf-version", version, svg}, home).status, 0);
    double x0 = 0, y0 = 0, x1 = 0, y1 = 0;
    const std::string check = dxfCheck(dxf, home);
    ASSERT_EQ(std::sscanf(check.c_str(), "errors=0 fixes=0 entities=%*d extents=%lf,%lf,%lf,%lf", &x0, &y0, &x1, &y1),
              4)
        << check;
    // On paper y points up: the drawing's top is the file's largest y.
    EXPECT_NEAR(x0, box[0], 0.01) << version;
    EXPECT_NEAR(x1 - x0, box[2], 0.01) << version;
    EXPECT_NEAR(-y1, box[1], 0.01) << version;
    EXPECT_NEAR(y1 - y0, box[3], 0.01) << version;
  }
}
