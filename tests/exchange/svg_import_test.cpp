// SVG import: transforms and units as other programs write them, the
// shapes the paths become, bad files, and the card holder there and back.
#include <gtest/gtest.h>

#include <cmath>

#include "../app/program_fixture.h"
#include "app/safe_file.h"
#include "document/path_data.h"
#include "document/point_helpers.h"
#include "exchange/svg_import.h"
#include "exchange/svg_transform.h"

namespace {

std::string svg(const std::string& body, const std::string& root = "width=\"100mm\" viewBox=\"0 0 100 100\"") {
  return "<svg xmlns=\"http://www.w3.org/2000/svg\" " + root + ">" + body + "</svg>";
}

bool hasNote(const TSvgPicture& p, const std::string& key, const std::string& detail) {
  for (const TSvgNote& n : p.FNotes)
    if (n.FKey == key && n.FDetail == detail) return true;
  return false;
}

// Points along a shape, its pieces as drawn: lines, curves and arcs from
// their parameters, everything else from its path.
std::vector<std::vector<TPointF>> tracks(const TShapeList& list) {
  std::vector<std::vector<TPointF>> out;
  for (const auto& s : list) {
    if (s->isType(ShapeType::Text)) continue;  // text stays out of the export
    std::vector<TPointF> t;
    for (int i = 0; i <= 64; ++i) {
      const double u = i / 64.0;
      if (s->isType(ShapeType::Line)) t.push_back(cubicPointAt(s->FStartPt, s->FStartPt, s->FEndPt, s->FEndPt, u));
      else if (s->isType(ShapeType::Bezier)) t.push_back(cubicPointAt(s->FStartPt, s->FBezierCp1, s->FBezierCp2, s->FEndPt, u));
      else if (s->isType(ShapeType::Arc)) t.push_back(rotatePointAbout(s->FStartPt, s->FSweepAngle * u, s->FCenter));
    }
    if (t.empty())
      for (const TPathPoint& p : s->FData.points()) t.push_back(p.Point);
    out.push_back(std::move(t));
  }
  return out;
}

double segmentDistance(const TPointF& p, const TPointF& a, const TPointF& b) {
  const double dx = double(b.x) - a.x, dy = double(b.y) - a.y, len2 = dx * dx + dy * dy;
  double t = len2 > 0 ? ((double(p.x) - a.x) * dx + (double(p.y) - a.y) * dy) / len2 : 0;
  t = std::clamp(t, 0.0, 1.0);
  return std::hypot(double(p.x) - (a.x + t * dx), double(p.y) - (a.y + t * dy));
}

// How far the farthest point of one drawing lies from the other.
double farthestFrom(const TShapeList& from, const TShapeList& to) {
  const auto a = tracks(from), b = tracks(to);
  std::vector<TRectF> boxes;
  for (const auto& other : b) {
    TPathData box;
    for (const TPointF& p : other) box.LineTo(p);
    boxes.push_back(box.GetBounds());
  }
  double worst = 0;
  for (const auto& track : a)
    for (const TPointF& p : track) {
      double best = 1e9;
      for (size_t k = 0; k < b.size(); ++k) {
        const TRectF& r = boxes[k];
        if (std::max({r.Left - p.x, p.x - r.Right, r.Top - p.y, p.y - r.Bottom}) >= best) continue;
        for (size_t i = 0; i + 1 < b[k].size(); ++i) best = std::min(best, segmentDistance(p, b[k][i], b[k][i + 1]));
      }
      worst = std::max(worst, best);
    }
  return worst;
}

}  // namespace

TEST(SvgImport, TransformsComposeAndTheRootWidthSetsTheUnit) {
  TMatrix m;
  ASSERT_TRUE(parseSvgTransform("translate(1,2) scale(2)", m));
  EXPECT_EQ(m.apply({1, 1}), TPointF(3, 4));
  ASSERT_TRUE(parseSvgTransform("matrix(1 0 0 1 3 4)", m));
  EXPECT_EQ(m.apply({0, 0}), TPointF(3, 4));
  ASSERT_TRUE(parseSvgTransform("translate(5)", m));  // one number: no move in y
  EXPECT_EQ(m.apply({0, 0}), TPointF(5, 0));
  EXPECT_FALSE(parseSvgTransform("translate(5,)", m));

  // Two millimetres a unit; the inner rotation applies first, then the move.
  const TSvgPicture p = readSvgPicture(
      svg("<g transform=\"translate(10,0)\"><g transform=\"rotate(90)\"><line x2=\"10mm\"/></g></g>"
          "<path d=\"M0 0 L1 1\" transform=\"bogus(1)\"/>",
          "width=\"200mm\" height=\"100mm\" viewBox=\"0 0 100 50\""));
  ASSERT_EQ(p.FPaths.size(), 2u);
  EXPECT_EQ(p.FPaths[0][0].Point, TPointF(20, 0));
  EXPECT_EQ(p.FPaths[0][1].Point, TPointF(20, 20));
  EXPECT_EQ(p.FPaths[1][1].Point, TPointF(2, 2));  // the transform it could not read is left out
  EXPECT_TRUE(hasNote(p, "SVGInvalidTransform", "bogus(1)"));
  // Without a width a unit is a CSS pixel.
  EXPECT_NEAR(readSvgPicture(svg("<line x2=\"96\"/>", "viewBox=\"0 0 96 96\"")).FPaths[0][1].Point.x, 25.4, 1e-4);
}

TEST(SvgImport, ElementsBecomeLinesAndCurves) {
  const TSvgPicture p = readSvgPicture(
      svg("<rect x=\"0\" y=\"0\" width=\"20\" height=\"10\" rx=\"2\"/>"
          "<polygon points=\"0 20 10 20 5 30\"/><circle cx=\"50\" cy=\"50\" r=\"5\"/>"
          "<image href=\"leather.png\"/><defs><line x2=\"5\"/></defs>"));
  const TShapeStyle style{2, 0xFF00FF00, 1.5f, TStrokeDash::Solid};
  const auto shapes = svgPictureShapes(p, true, style, "Arial");
  std::map<std::string, int> kinds;
  for (const auto& s : shapes) ++kinds[s->FShapeType];
  // Rounded rectangle: four sides, four corners; the triangle closes; the circle is four curves.
  EXPECT_EQ(kinds, (std::map<std::string, int>{{"BEZIER", 8}, {"LINE", 7}}));
  EXPECT_EQ(shapes[1]->FStartPt, TPointF(18, 0));  // the first corner starts where the top side ends
  EXPECT_EQ(shapes.front()->FPalletIndex, 2);
  EXPECT_TRUE(hasNote(p, "SVGImportSkipped", "image (1)"));
  // Not split: one template shape a path.
  EXPECT_EQ(svgPictureShapes(p, false, style, "Arial").size(), 3u);
}

TEST(SvgImport, BadFilesGiveAReasonOrWhatCouldBeRead) {
  EXPECT_EQ(readSvgPicture("<svg><g></svg>").FError.FKey, "SVGNotXML");
  EXPECT_EQ(readSvgPicture("<html/>").FError.FKey, "SVGNotXML");
  // Ten thousand nested groups: the drawing near the top is read, the rest reported.
  std::string deep;
  for (int i = 0; i < 10000; ++i) deep += "<g>";
  deep += "<line x2=\"1\"/>";
  for (int i = 0; i < 10000; ++i) deep += "</g>";
  TSvgPicture p = readSvgPicture(svg("<line x2=\"5\"/>" + deep));
  EXPECT_EQ(p.FPaths.size(), 1u);
  EXPECT_TRUE(hasNote(p, "SVGImportTooDeep", "1"));
  // An external entity is never read.
  p = readSvgPicture("<?xml version=\"1.0\"?><!DOCTYPE svg [<!ENTITY x SYSTEM \"file:///etc/passwd\">]>" +
                     svg("<text x=\"1\" y=\"1\">&x;</text>"));
  ASSERT_FALSE(p.failed());
  ASSERT_EQ(p.FTexts.size(), 1u);
  EXPECT_EQ(p.FTexts[0].FText.find("root"), std::string::npos);
  EXPECT_TRUE(hasNote(p, "SVGImportEntities", ""));
  // Coordinates beyond any leather are left out.
  p = readSvgPicture(svg("<line x2=\"1e12\"/><line x2=\"3\"/>"));
  EXPECT_EQ(p.FPaths.size(), 1u);
  EXPECT_TRUE(hasNote(p, "SVGImportOutOfRange", "1"));
}

TEST(SvgImport, TheCardHolderComesBackWithinAHundredthOfAMillimetre) {
  TProgram source;
  TfrmPelw& f = source.start({std::string(PELWRIGHT_SOURCE_DIR) + "/resources/samples/card_holder.pwc"});
  ASSERT_GT(f.PathList->Count(), 100u);
  TExportSettings asIs = exportSettingsFrom(f.FOptions);
  asIs.FHolesAsDots = false;
  const std::string file = source.file("card_holder.svg");
  ASSERT_TRUE(f.exportDrawing(file, "SVG", asIs));

  TProgram target;
  TfrmPelw& g = target.start();
  const TfrmPelw::TSvgImportResult r = g.importSVGFile(file, true, false);
  EXPECT_EQ(r.FError, "");
  EXPECT_TRUE(r.FReport.empty());
  EXPECT_EQ(r.FShapeCount, g.PathList->Count());
  EXPECT_TRUE(g.canUndo());
  EXPECT_LE(farthestFrom(*f.PathList, *g.PathList), 0.01);
  EXPECT_LE(farthestFrom(*g.PathList, *f.PathList), 0.01);
}
