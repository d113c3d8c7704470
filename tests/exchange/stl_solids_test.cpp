// The solids of the STL export as a maker meets them: plates whose volume
// is their area times the thickness, edges that fall back to a plain plate
// where they do not fit, letters cut into a face, jigs with through and
// blind pockets, and bad drawings that give a refusal instead of a file a
// slicer rejects. Every solid is read back from its file bytes and its
// edges paired there.
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <random>

#include "app/sample_card_holder.h"
#include "document/shape_list.h"
#include "exchange/stl_bevel.h"
#include "exchange/stl_export.h"
#include "exchange/stl_polygons.h"
#include "stitching/iron_groups.h"
#include "stitching/system_irons.h"
#include "stl_test_support.h"

namespace {

constexpr double kPi = std::numbers::pi;

TStlResult pattern(const TStlDrawing& d, const TSTLExportSettings& s = {}) { return buildStlSolid(d.shapes, s); }

// The area of a round stitching hole as the solid makes it.
double holeArea(double diameter) {
  return std::abs(polygonArea(stlpoly::circlePolygon({0, 0}, diameter / 2)));
}

}  // namespace

TEST(StlPattern, PlainPlatesHoldTheirAreaTimesThickness) {
  {
    TStlDrawing d;
    d.rect(0, 0, 40, 20);
    d.hole(10, 10);
    d.hole(30, 10);
    const TStlResult r = pattern(d);
    EXPECT_EQ(r.ErrorKey, "");
    const TStlFileFacts f = expectPrintable(r.Body, "plate with holes");
    EXPECT_NEAR(f.volume, (800 - 2 * holeArea(1.6)) * 2.5, 0.05);
  }
  {
    // A circle of 30 mm, 3 mm thick, and a window in a frame with an island.
    TStlDrawing d;
    d.add(std::make_unique<TPW_Path>(0, claBlack, 1.0f, TStrokeDash::Solid, 1)).drawEllipsePath(TPointF(100, 0), 30, 30);
    d.rect(0, 0, 50, 50);
    d.rect(10, 10, 40, 40);
    d.rect(20, 20, 30, 30);
    TSTLExportSettings s;
    s.Thickness = 3;
    const TStlFileFacts f = expectPrintable(pattern(d, s).Body, "circle, frame and island");
    EXPECT_NEAR(f.volume, (kPi * 15 * 15 + 2500 - 900 + 100) * 3, kPi * 225 * 3 * 0.005);
  }
}

TEST(StlPattern, CardHolderPiecesComeOutWithTheirHolesAndWithoutTheirStitchLines) {
  TPrickingIronGroups irons;
  irons.append(buildSystemIronGroups("en"));
  TShapeList list(nullptr, "en");
  buildCardHolderSample(list, irons.findIron(kCardHolderIronBlade, kCardHolderIronPitch));
  // Nothing selected: the whole drawing, the dashed stitch lines left out
  // (the pocket's is open, the body's would make a ring of the body).
  const TStlSource src = stlSourceShapes(list);
  EXPECT_FALSE(src.FromSelection);
  const TStlOutlines in = prepareStlOutlines(src.Shapes, {});
  EXPECT_EQ(in.Outlines.size(), 2u);
  EXPECT_EQ(in.Holes.size(), 125u);
  EXPECT_EQ(in.OpenShapes, 0);
  const double rounded = 4 * 64 - kPi * 64;  // what corners of R8 take off
  const double area = 100 * 70 - rounded + 100 * 45 - rounded - 125 * holeArea(1.6);
  EXPECT_NEAR(expectPrintable(buildPatternSolid(in, {}).Body, "card holder").volume, area * 2.5, area * 2.5 * 0.002);
  // Rounded edges on both faces. The pocket's first and last holes sit
  // 0.13 mm from its rounded corners: no room for a fillet, so the pocket
  // comes out plain and the body rounded.
  TSTLExportSettings s;
  s.EdgeTopMode = s.EdgeBottomMode = kEdgeFillet;
  const TStlResult r = buildPatternSolid(in, s);
  EXPECT_EQ(r.SkippedRegions, 1);
  const double v = expectPrintable(r.Body, "rounded card holder").volume;
  EXPECT_LT(v, area * 2.5);
  EXPECT_GT(v, area * 2.5 * 0.9);
  // Selecting the body's stitch line alone: it is a closed outline then.
  for (const auto& sh : list)
    sh->FSelected = sh->FPalletIndex == 3 && sh->FCenter.y < 80 && !sh->isType(ShapeType::Hole);
  const TStlSource chosen = stlSourceShapes(list);
  EXPECT_TRUE(chosen.FromSelection);
  EXPECT_EQ(prepareStlOutlines(chosen.Shapes, {}).Outlines.size(), 1u);
}

TEST(StlPattern, EdgesFollowTheBevelStackAndFallBackWhereTheyDoNotFit) {
  TStlDrawing d;
  d.rect(0, 0, 40, 20);
  d.hole(20, 10);
  const double plain = (800 - holeArea(1.6)) * 2.5;
  // A chamfer on top and a fillet below take a little off every edge.
  TSTLExportSettings s;
  s.EdgeTopMode = kEdgeChamfer;
  s.EdgeBottomMode = kEdgeFillet;
  const TStlResult both = pattern(d, s);
  EXPECT_EQ(both.SkippedRegions, 0);
  const double v = expectPrintable(both.Body, "chamfer and fillet").volume;
  EXPECT_LT(v, plain - 120 * 0.125 * 0.9);
  EXPECT_GT(v, plain - 125 * 0.5);

  // A fillet mode of size 0 on top is a plain top.
  TPolyRegion square{{{0, 0}, {10, 0}, {10, 10}, {0, 10}}, {}};
  TExtrudeOptions o;
  o.BottomFillet = 0.5;
  o.TopFillet = 0;
  std::vector<TBevelStackItem> stack;
  std::string message;
  ASSERT_TRUE(BuildBevelStack(square, o, stack, message)) << message;
  ASSERT_EQ(stack.size(), 8u);
  EXPECT_DOUBLE_EQ(stack.front().InsetAmount, 0.5);
  EXPECT_DOUBLE_EQ(stack.back().Z, 2.5);
  EXPECT_DOUBLE_EQ(stack.back().InsetAmount, 0);
  EXPECT_EQ(stack.back().Region.Outer.size(), 4u);

  // Fillets that sum to the thickness: the warning and a plain plate.
  s.EdgeTopMode = s.EdgeBottomMode = kEdgeFillet;
  s.EdgeTopSize = s.EdgeBottomSize = 1.25;
  const TStlResult tooThick = pattern(d, s);
  EXPECT_EQ(tooThick.Warnings, std::vector<std::string>{"Bevel total (2.5) >= Height (2.5) \u2014 falling back to normal extrude."});
  EXPECT_NEAR(expectPrintable(tooThick.Body, "bevel total").volume, plain, 0.05);
  o.TopFillet = 1.25;
  o.BottomFillet = 1.25;
  EXPECT_FALSE(BuildBevelStack(square, o, stack, message));
  EXPECT_EQ(message, "BottomSize + TopSize (2.5) must be less than Height (2.5).");

  // A hole as wide as the inset leaves splits the strip in two.
  TStlDrawing strip;
  strip.rect(0, 0, 20, 3);
  strip.hole(10, 1.5).FStitchType = "R";
  TSTLExportSettings round;
  round.StitchDiameter = 2.0;
  round.EdgeTopMode = kEdgeChamfer;
  const TStlResult split = pattern(strip, round);
  EXPECT_EQ(split.SkippedRegions, 1);
  EXPECT_NEAR(expectPrintable(split.Body, "split strip").volume, (60 - holeArea(2.0)) * 2.5, 0.05);
  const TStlOutlines stripIn = prepareStlOutlines(strip.shapes, round);
  const auto regions = stlpoly::regionsOf(
      stlpoly::clip(stlpoly::toPaths(stripIn.Outlines, 100), stlpoly::toPaths(stripIn.Holes, 100), ClipperLib::ctDifference),
      ClipperLib::pftNonZero);
  ASSERT_EQ(regions.size(), 1u);
  EXPECT_EQ(stlpoly::inflateRegion(regions[0], 0.5).Reason, "BuildPolyRegions count = 2");

  // A curved outline of eight Bezier curves has 256 points: edges fall back.
  TStlDrawing curvy;
  curvy.path(ShapeType::Other,
             "M0,0 C10,-5 20,-5 30,0 C35,10 35,20 30,30 C20,35 10,35 0,30 C-3,25 -3,22 0,20 C-3,18 -3,12 0,10 "
             "C-2,8 -2,6 -1,4 C-1,3 -1,2 -0.5,1.5 C0,1 0,0.5 0,0 Z");
  TSTLExportSettings bevel;
  bevel.EdgeTopMode = kEdgeChamfer;
  const TStlResult many = pattern(curvy, bevel);
  EXPECT_EQ(many.SkippedRegions, 1);
  expectPrintable(many.Body, "detailed outline");
}

TEST(StlPattern, TextIsCutIntoTheChosenFace) {
  TStlDrawing d;
  d.rect(0, 0, 60, 30);
  // A letter of 20 x 10 with a counter of 10 x 4: 160 square millimetres.
  d.path(ShapeType::Text, "M10,10 L30,10 L30,20 L10,20 Z M15,13 L25,13 L25,17 L15,17 Z");
  TSTLExportSettings s;
  s.EngraveSide = TEngraveSide::Top;
  s.EngraveDepth = 0.5;
  const double plain = 1800 * 2.5;
  EXPECT_NEAR(expectPrintable(pattern(d, s).Body, "top text").volume, plain - 160 * 0.5, 1e-3);
  s.EngraveSide = TEngraveSide::Bottom;
  s.MultiColorPrint = true;
  const TStlResult below = pattern(d, s);
  EXPECT_NEAR(expectPrintable(below.Body, "bottom text").volume, plain - 160 * 0.5, 1e-3);
  EXPECT_NEAR(expectPrintable(below.Text, "letters").volume, 160 * 0.5, 1e-3);
  // Read from below, the letter is mirrored about the plate's middle: its
  // floor spans x from 0 to 20 about the centre at 30.
  double minX = 1e9;
  for (const TTriangle3D& t : below.Text)
    for (const TVec3& v : t.V) minX = std::min(minX, v.x);
  EXPECT_NEAR(minX, 0.0, 1e-9);
  // Deeper than the plate can take: a floor is kept. Rounded edges too.
  s.MultiColorPrint = false;
  s.EngraveDepth = 5;
  s.EdgeTopMode = kEdgeFillet;
  s.EngraveSide = TEngraveSide::Top;
  const TStlResult deep = pattern(d, s);
  EXPECT_EQ(deep.SkippedRegions, 0);
  ASSERT_EQ(deep.Warnings.size(), 1u);
  expectPrintable(deep.Body, "deep letters on a rounded plate");
}

TEST(StlJig, ThroughAndBlindPocketsWithFingerHoles) {
  TStlDrawing d;
  d.rect(0, 0, 40, 20);
  d.hole(20, 10);
  TSTLExportSettings s;
  s.TemplateMode = true;
  s.Jig.PocketGap = 0.5;
  s.Jig.OuterMargin = 10;
  s.Jig.TotalHeight = 4;
  // The pocket: the outline grown by the gap with round corners.
  const double pocket = 800 + 2 * 60 * 0.5 + kPi * 0.25;
  const double outside = 61 * 41;
  s.Jig.PocketDepth = 4;  // as deep as the block: a frame
  EXPECT_NEAR(expectPrintable(buildStlSolid(d.shapes, s).Body, "through jig").volume, (outside - pocket) * 4, 0.5);
  s.Jig.PocketDepth = 2;
  s.Jig.CentroidFingerDiameter = 10;
  const double finger = std::abs(polygonArea(stlpoly::circlePolygon({0, 0}, 5, 16)));
  EXPECT_NEAR(expectPrintable(buildStlSolid(d.shapes, s).Body, "blind jig").volume,
              outside * 4 - pocket * 2 - finger * 2, 0.5);
  // A rectangle smaller than the pocket cannot hold it; a pattern offset can.
  s.Jig.OuterMode = TSTLTemplateOuterMode::omRectExplicit;
  s.Jig.OuterWidth = 30;
  EXPECT_EQ(buildStlSolid(d.shapes, s).ErrorKey, "stl_msg_pocket_too_big");
  s.Jig.OuterMode = TSTLTemplateOuterMode::omPatternOffset;
  s.Jig.OuterMargin = 5;
  s.EngraveSide = TEngraveSide::Top;
  d.path(ShapeType::Text, "M5,5 L15,5 L15,8 L5,8 Z");
  expectPrintable(buildStlSolid(d.shapes, s).Body, "pattern offset jig with letters in the floor");
}

TEST(StlJig, NestedOutlinesVanishOrStayAsIslands) {
  TStlDrawing d;
  d.rect(0, 0, 40, 40);
  d.rect(10, 10, 30, 30);
  d.rect(10, 10, 30, 30);  // drawn twice
  TSTLExportSettings s;
  s.TemplateMode = true;
  s.Jig.PocketGap = 0;
  s.Jig.OuterMargin = 5;
  s.Jig.TotalHeight = s.Jig.PocketDepth = 3;
  EXPECT_NEAR(expectPrintable(buildStlSolid(d.shapes, s).Body, "frame").volume, (2500 - 1600) * 3, 1e-3);
  s.Jig.KeepNestedContours = true;
  EXPECT_NEAR(expectPrintable(buildStlSolid(d.shapes, s).Body, "frame and island").volume, (2500 - 1600 + 400) * 3, 1e-3);
  s.Jig.PocketDepth = 1;
  s.Jig.FingerHoleAtCentroid = false;
  EXPECT_NEAR(expectPrintable(buildStlSolid(d.shapes, s).Body, "pocket round an island").volume, 2500 * 3 - 1200, 1e-3);
}

TEST(StlInput, BadDrawingsGiveAFallbackOrARefusal) {
  {
    TStlDrawing open;
    open.polygon({{0, 0}, {10, 0}, {10, 10}});
    open.shapes.pop_back();  // the last side missing
    const TStlResult r = pattern(open);
    EXPECT_EQ(r.ErrorKey, "stl_msg_no_closed_shapes");
    EXPECT_EQ(r.OpenShapes, 1);
    EXPECT_TRUE(r.Body.empty());
    TSTLExportSettings jig;
    jig.TemplateMode = true;
    EXPECT_EQ(buildStlSolid(open.shapes, jig).ErrorKey, "stl_msg_no_closed_shapes");
  }
  {
    // A figure of eight crossing itself, and two squares meeting at a corner.
    TStlDrawing d;
    d.polygon({{0, 0}, {10, 10}, {10, 0}, {0, 10}});
    d.rect(20, 0, 30, 10);
    d.rect(30, 10, 40, 20);
    const TStlFileFacts f = expectPrintable(pattern(d).Body, "self-crossing and touching");
    EXPECT_NEAR(f.volume, (50 + 200) * 2.5, 5.0);  // touching parts part by 0.01 mm
  }
  {
    TStlDrawing huge;
    huge.rect(0, 0, 20000, 10);
    EXPECT_EQ(pattern(huge).ErrorKey, "stl_msg_too_complex");
    std::string text = "M0,0 ";
    for (int i = 0; i < 110000; ++i) text += "L" + std::to_string(i % 2) + "," + std::to_string(i) + " ";
    huge.path(ShapeType::Other, text.c_str());
    EXPECT_EQ(pattern(huge).ErrorKey, "stl_msg_too_complex");
  }
  // An empty result is no file.
  std::vector<std::pair<std::string, std::string>> files;
  EXPECT_EQ(stlFilesFor(TStlResult{}, {}, "a.stl", files), "stl_msg_no_mesh_to_save");
  TSTLExportSettings jig;
  jig.TemplateMode = true;
  EXPECT_EQ(stlFilesFor(TStlResult{}, jig, "a.stl", files), "stl_msg_no_triangles_to_save");
  EXPECT_TRUE(files.empty());
}

TEST(StlInput, RandomDrawingsGiveAClosedFileOrARefusal) {
  // Overlapping rectangles, ellipses, crossing polygons and curved blobs,
  // holes of every blade anywhere, letters, and any setting of either mode.
  std::mt19937 rng(777);
  auto U = [&](double a, double b) { return std::uniform_real_distribution<double>(a, b)(rng); };
  for (int iter = 0; iter < 300; ++iter) {
    TStlDrawing d;
    for (int k = 1 + int(U(0, 5)); k > 0; --k) {
      const float x = float(U(0, 80)), y = float(U(0, 60)), w = float(U(2, 40)), h = float(U(2, 40));
      switch (int(U(0, 4))) {
        case 0: d.rect(x, y, x + w, y + h); break;
        case 1: d.add(std::make_unique<TPW_Path>(0, claBlack, 1.0f, TStrokeDash::Solid, 1)).drawEllipsePath({x, y}, w, h); break;
        case 2: {
          std::vector<TPointF> pts(3 + size_t(U(0, 6)));
          for (TPointF& p : pts) p = TPointF(float(x + U(0, w)), float(y + U(0, h)));
          d.polygon(pts);
          break;
        }
        default: {
          const std::string blob = "M" + std::to_string(x) + "," + std::to_string(y) + " C" + std::to_string(x + w) + "," +
                                   std::to_string(y - h / 2) + " " + std::to_string(x + w) + "," + std::to_string(y + h) +
                                   " " + std::to_string(x) + "," + std::to_string(y + h / 3) + " Z";
          d.path(ShapeType::Other, blob.c_str());
        }
      }
    }
    for (int k = int(U(0, 30)); k > 0; --k) {
      TPW_Path& hole = d.hole(float(U(0, 100)), float(U(0, 80)));
      hole.FRotation = float(U(0, 360));
      hole.FStitchType = std::string(1, "DFLR"[int(U(0, 4))]);
    }
    if (U(0, 1) < 0.5) d.path(ShapeType::Text, "M20,20 L30,20 L30,26 L20,26 Z M22,22 L28,22 L28,24 L22,24 Z");
    TSTLExportSettings s;
    s.Thickness = U(0.5, 6);
    s.EdgeTopMode = int(U(0, 3));
    s.EdgeBottomMode = int(U(0, 3));
    s.EdgeTopSize = U(0, 2);
    s.EdgeBottomSize = U(0, 2);
    s.FilletSteps = int(U(2, 10));
    s.StitchAsRound = U(0, 1) < 0.5;
    s.EngraveSide = TEngraveSide(int(U(0, 3)));
    s.EngraveDepth = U(0.1, 3);
    s.MultiColorPrint = U(0, 1) < 0.3;
    s.TemplateMode = U(0, 1) < 0.35;
    s.Jig = {TSTLTemplateOuterMode(int(U(0, 3))), U(0, 15), U(50, 200), U(50, 200), U(0, 2), U(1, 8), U(0.5, 9),
             U(0, 1) < 0.7, U(2, 30), {}, true, s.EngraveSide != TEngraveSide::None, s.EngraveDepth, U(0, 1) < 0.5};
    const TStlResult r = buildStlSolid(d.shapes, s);
    std::vector<std::pair<std::string, std::string>> files;
    const std::string refusal = stlFilesFor(r, s, "x.stl", files);
    EXPECT_NE(refusal, "stl_msg_not_closed") << iter;
    EXPECT_EQ(r.FailedRegions, 0) << iter;
    for (const auto& [name, bytes] : files) {
      const TStlFileFacts f = readStlFacts(bytes);
      EXPECT_EQ(f.unpairedEdges + f.flippedNormals, 0u) << iter << " " << name;
    }
  }
}
