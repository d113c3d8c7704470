// PDF files from the conversion, measured as a ruler would measure the
// print: each page rendered by poppler at 10 pixels a millimetre, and the
// dark columns and rows of its pixels found.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "document/project_json.h"
#include "document/pw_path.h"
#include "document/shape_list.h"
#include "exchange_program.h"

namespace {

// A rendered page, RGB.
struct TPage {
  int w = 0, h = 0;
  std::vector<unsigned char> px;
  // Dark in all three colours: the drawing and the scales, not the red tile marks.
  bool dark(int x, int y) const {
    const unsigned char* p = &px[(static_cast<size_t>(y) * w + x) * 3];
    return p[0] < 128 && p[1] < 128 && p[2] < 128;
  }
};

// The pages of a PDF at 10 pixels a millimetre (254 dpi); none when poppler fails.
std::vector<TPage> renderPdf(const std::string& pdf) {
  const std::string stem = pdf + "-page";
  const std::string cmd = "pdftoppm -r 254 " + shellQuoted(pdf) + " " + shellQuoted(stem) + " 2>/dev/null";
  std::vector<TPage> pages;
  if (std::system(cmd.c_str()) != 0) return pages;
  for (int i = 1;; ++i) {
    std::string name;
    for (const char* digits : {"%d", "%02d", "%03d"}) {
      char n[16];
      std::snprintf(n, sizeof n, digits, i);
      if (std::filesystem::exists(stem + "-" + n + ".ppm")) name = stem + "-" + n + ".ppm";
    }
    if (name.empty()) break;
    std::ifstream in(name, std::ios::binary);
    std::string magic;
    TPage p;
    int maxval = 0;
    in >> magic >> p.w >> p.h >> maxval;
    in.get();
    p.px.resize(static_cast<size_t>(p.w) * p.h * 3);
    in.read(reinterpret_cast<char*>(p.px.data()), static_cast<std::streamsize>(p.px.size()));
    pages.push_back(std::move(p));
  }
  return pages;
}

// The middles of the dark runs along row y (or column x when `down`).
std::vector<double> darkRuns(const TPage& p, int at, bool down) {
  std::vector<double> runs;
  const int n = down ? p.h : p.w;
  for (int i = 0; i < n;) {
    auto isDark = [&](int k) { return down ? p.dark(at, k) : p.dark(k, at); };
    if (!isDark(i)) {
      ++i;
      continue;
    }
    int j = i;
    while (j < n && isDark(j)) ++j;
    runs.push_back((i + j - 1) / 2.0);
    i = j;
  }
  return runs;
}

// A project of lines, thick enough to be seen at 10 pixels a millimetre.
std::string writeLines(const TTempDir& dir, const std::vector<std::pair<TPointF, TPointF>>& lines) {
  TShapeList list(nullptr, "en");
  int id = 0;
  for (const auto& [a, b] : lines) {
    auto s = std::make_unique<TPW_Path>(2, claBlack, 2.0f, TStrokeDash::Solid, ++id);
    s->drawLinePath(a, b);
    list.add(std::move(s), 0);
  }
  const std::string file = dir.file("lines.pwc");
  writeTextFile(file, projectFileText(list, {}));
  return file;
}

// Vertical lines every 100 mm from x = 0 to `width`, 100 mm tall, and one
// horizontal line under them.
std::vector<std::pair<TPointF, TPointF>> comb(float width) {
  std::vector<std::pair<TPointF, TPointF>> lines;
  for (float x = 0; x <= width; x += 100) lines.push_back({TPointF(x, 0), TPointF(x, 100)});
  lines.push_back({TPointF(0, 100), TPointF(width, 100)});
  return lines;
}

TEST(PdfExport, OnePageAtTrueSizeAndCalibrated) {
  TTempDir home;
  const std::string input = writeLines(home, comb(100));
  const std::string out = home.file("a4.pdf");
  ASSERT_EQ(runPelwright({"--export", out, input}, home).status, 0);
  std::vector<TPage> pages = renderPdf(out);
  ASSERT_EQ(pages.size(), 1u);
  EXPECT_NEAR(pages[0].w, 2100, 1);
  EXPECT_NEAR(pages[0].h, 2970, 1);
  // The area begins 5 mm before the drawing; a row 50 mm down crosses the
  // two lines, and nothing else.
  std::vector<double> runs = darkRuns(pages[0], 550, false);
  ASSERT_EQ(runs.size(), 2u) << ::testing::PrintToString(runs);
  EXPECT_NEAR(runs[0], 50, 1.5);
  EXPECT_NEAR(runs[1] - runs[0], 1000, 1.5);

  // 99 per cent across: the lines 99 mm apart; down stays true.
  const std::string calibrated = home.file("cal.pdf");
  ASSERT_EQ(runPelwright({"--export", calibrated, "--paper", "letter", "--landscape", "--calibration", "99,100", input}, home).status, 0);
  pages = renderPdf(calibrated);
  ASSERT_EQ(pages.size(), 1u);
  EXPECT_NEAR(pages[0].w, 2794, 1);
  EXPECT_NEAR(pages[0].h, 2159, 1);
  // (The scales stand at the right edge here, out of the drawing's way.)
  runs = darkRuns(pages[0], 550, false);
  ASSERT_GE(runs.size(), 2u);
  EXPECT_NEAR(runs[0], 49.5, 1.5);
  EXPECT_NEAR(runs[1] - runs[0], 990, 1.5);
  EXPECT_GT(runs[2], 2500);
  const std::vector<double> down = darkRuns(pages[0], static_cast<int>(std::lround(runs[0])) + 30, true);
  ASSERT_GE(down.size(), 1u);
  EXPECT_NEAR(down.back(), 1050, 1.5) << "the horizontal line 100 mm under the top of the lines";
}

TEST(PdfExport, TilesOverlapBySetLength) {
  TTempDir home;
  const std::string input = writeLines(home, comb(500));
  const std::string out = home.file("tiles.pdf");
  ASSERT_EQ(runPelwright({"--export", out, "--overlap", "20", input}, home).status, 0);
  const std::vector<TPage> pages = renderPdf(out);
  // 515 mm of area: tiles of 210 mm stepping 190 mm, one row.
  ASSERT_EQ(pages.size(), 3u);
  // The line at x = 200 lies 205 mm from the area's edge: on the first
  // tile at 205 mm, on the second at 205 - 190 = 15 mm.
  const std::vector<double> first = darkRuns(pages[0], 550, false);
  const std::vector<double> second = darkRuns(pages[1], 550, false);
  ASSERT_FALSE(first.empty());
  ASSERT_FALSE(second.empty());
  EXPECT_NEAR(first.back(), 2050, 1.5);
  EXPECT_NEAR(second.front(), 150, 1.5);
  EXPECT_NEAR(second[1] - second[0], 1000, 1.5);
}

TEST(PdfExport, RefusesBadSettingsAndLeavesNoFile) {
  TTempDir home;
  const std::string input = writeLines(home, comb(100));
  const std::string out = home.file("bad.pdf");
  for (const std::vector<std::string>& args :
       {std::vector<std::string>{"--calibration", "49,100"}, {"--calibration", "100,201"}, {"--calibration", "x"},
        {"--overlap", "-1"}, {"--overlap", "106"}}) {
    std::vector<std::string> line{"--export", out};
    line.insert(line.end(), args.begin(), args.end());
    line.push_back(input);
    const TProgramRun r = runPelwright(line, home);
    EXPECT_EQ(r.status, 1) << args[1];
    EXPECT_EQ(r.err.rfind("pelwright: ", 0), 0u) << r.err;
  }
  const TProgramRun paper = runPelwright({"--export", out, "--paper", "B5", input}, home);
  EXPECT_EQ(paper.status, 2);
  EXPECT_NE(paper.err.find("A4 or A3 or A5 or Letter or Legal"), std::string::npos) << paper.err;
  EXPECT_EQ(runPelwright({"--export", home.file("missing/out.pdf"), input}, home).status, 1);
  // A hundred metres would take 501 sheets.
  const TProgramRun huge = runPelwright({"--export", out, writeLines(home, {{TPointF(0, 0), TPointF(100000, 0)}})}, home);
  EXPECT_EQ(huge.err, "pelwright: The drawing needs 501 pages on this paper; at most 400 are printed at once.\n");
  EXPECT_FALSE(std::filesystem::exists(out));
  EXPECT_FALSE(std::filesystem::exists(home.file("missing")));
}

}  // namespace
