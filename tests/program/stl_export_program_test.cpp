// pelwright --export OUT.stl: the card holder as plates and as jigs, each
// file read by ADMesh, a mesh checker slicers' users rely on, which must
// find nothing to repair; and drawings that give no file.
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <regex>

#include "document/project_json.h"
#include "document/shape_list.h"
#include "exchange_program.h"

namespace {

struct TAdmeshReport {
  std::string text;
  double number(const std::string& label) const {
    const std::regex re(label + R"(\s*:\s*(-?[0-9.]+))");
    std::smatch m;
    return std::regex_search(text, m, re) ? std::stod(m[1]) : -1;
  }
};

TAdmeshReport admesh(const std::string& file) {
  TAdmeshReport r;
  FILE* p = popen(("admesh " + shellQuoted(file) + " 2>&1").c_str(), "r");
  if (!p) return r;
  char buf[4096];
  while (size_t n = fread(buf, 1, sizeof buf, p)) r.text.append(buf, n);
  pclose(p);
  return r;
}

// Nothing to repair, and the volume within 1 % of what it should be.
void expectSound(const std::string& file, double volume, const std::string& what) {
  const TAdmeshReport r = admesh(file);
  ASSERT_NE(r.text.find("Results produced by ADMesh"), std::string::npos) << "admesh (scripts/setup.sh installs it)\n" << r.text;
  for (const char* label : {"Facets with 1 disconnected edge", "Degenerate facets", "Edges fixed", "Facets removed",
                            "Facets added", "Facets reversed", "Backwards edges", "Normals fixed"})
    EXPECT_EQ(r.number(label), 0) << what << ": " << label << "\n" << r.text;
  EXPECT_NEAR(r.number("Volume"), volume, volume * 0.01) << what;
}

}  // namespace

TEST(StlExportProgram, CardHolderPlatesAndJigsPassTheMeshChecker) {
  TTempDir home;
  const std::string ini = home.file("pelwright/STLExport.ini");
  // Body and pocket less their 125 round holes, 2.5 mm thick.
  const double plates = (7000 + 4500 - 2 * (256 - 64 * 3.14159265) - 125 * 2.0) * 2.5;
  struct TCase {
    std::string name, settings;
    double volume;  // 0: not known in advance, only its soundness
  };
  const std::vector<TCase> cases{
      {"plain", "", plates},
      {"rounded", "[STL]\nEdgeTopMode=2\nEdgeBottomMode=2\nFilletSteps=8\nStitchAsRound=0\nEngraveSide=1\nMultiColorPrint=1\n", 0},
      {"chamfered", "[STL]\nThickness=3\nEdgeTopMode=1\nEdgeTopSize=0.8\nEngraveSide=2\n", 0},
      {"blind jig", "[JIG]\nTemplateMode=1\nTotalHeight=5\nPocketDepth=2\nPocketGap=0.5\n", 0},
      {"frame", "[JIG]\nTemplateMode=1\nOuterMode=2\nOuterMargin=6\nTotalHeight=3\nPocketDepth=3\nKeepNestedContours=1\n", 0},
  };
  for (const TCase& c : cases) {
    writeTextFile(ini, c.settings);
    const std::string out = home.file(c.name + ".stl");
    const TProgramRun r = runPelwright({"--export", out, kCardHolderFile}, home);
    ASSERT_EQ(r.status, 0) << c.name << ": " << r.err;
    expectSound(out, c.volume > 0 ? c.volume : admesh(out).number("Volume"), c.name);
  }
  // The multi-colour print's letters are a file of their own.
  expectSound(home.file("rounded_text.stl"), admesh(home.file("rounded_text.stl")).number("Volume"), "letters");
  EXPECT_GT(admesh(home.file("rounded_text.stl")).number("Number of parts"), 10);
  // --stl-mode overrides the file's mode.
  writeTextFile(ini, "");
  ASSERT_EQ(runPelwright({"--export", home.file("jig.stl"), "--stl-mode", "jig", kCardHolderFile}, home).status, 0);
  EXPECT_EQ(admesh(home.file("jig.stl")).number("Number of parts"), 1);
}

TEST(StlExportProgram, NoClosedOutlineNoFile) {
  TTempDir home;
  TShapeList list(nullptr, "en");
  list.clearAll();
  auto line = std::make_unique<TPW_Path>(0, claBlack, 1.5f, TStrokeDash::Solid, list.getNextID());
  line->drawLinePath(TPointF(0, 0), TPointF(50, 0));
  list.add(std::move(line), 0);
  writeTextFile(home.file("line.pwc"), projectFileText(list, {}));
  const TProgramRun r = runPelwright({"--export", home.file("line.stl"), home.file("line.pwc")}, home);
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.err, "pelwright: Preview: no closed shapes\n");
  EXPECT_FALSE(std::filesystem::exists(home.file("line.stl")));
}
