// SVG export as a cutter reads it: which ends join one path, the element
// of each kind, the page at the drawing's bounds.
#include <gtest/gtest.h>

#include "exchange/svg_export.h"
#include "exchange_test_support.h"

using namespace shapes;

TEST(SvgExport, EndsCloserThanTwoTenthsJoinOnePath) {
  TDrawing d;
  d.add(line({0, 0}, {10, 0}));
  d.add(line({10.19f, 0}, {10.19f, 5}));
  EXPECT_EQ(svgExportText(d.scene(), {}),
            "<?xml version=\"1.0\"?>\n"
            "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"10.190mm\" height=\"5.000mm\" version=\"1.1\" "
            "viewBox=\"0.000 0.000 10.190 5.000\" preserveAspectRatio=\"none\">\n"
            "  <desc>Created with Pelwright v3.6.1 by Ostlerbeck.</desc>\n"
            "  <g>\n"
            "    <path d=\"M0.000,0.000 L10.000,0.000 L10.190,5.000 \" fill=\"none\" stroke=\"#000000\" "
            "stroke-width=\"0.030\" />\n"
            "  </g>\n"
            "</svg>\n");
  // Two tenths apart they stay two lines; a lone line is a line.
  TDrawing apart;
  apart.add(line({0, 0}, {10, 0}));
  apart.add(line({10.2f, 0}, {10.2f, 5}));
  const std::string svg = svgExportText(apart.scene(), {});
  EXPECT_EQ(countOf(svg, "<line "), 2u);
  EXPECT_EQ(countOf(svg, "<path "), 0u);
}

TEST(SvgExport, ChainsStartAtTheirBeginningAndCloseWithoutZ) {
  TDrawing d;
  // An open run listed from its middle, one piece drawn backwards.
  d.add(line({10, 0}, {20, 0}));
  d.add(line({10, 0}, {0, 0}));
  d.add(line({20, 0}, {30, 0}));
  TPW_Path* backwards = d.list[1];
  std::string svg = svgExportText(d.scene(), {});
  EXPECT_NE(svg.find("d=\"M0.000,0.000 L10.000,0.000 L20.000,0.000 L30.000,0.000 \""), std::string::npos) << svg;
  // The drawing is not changed by the export.
  EXPECT_EQ(backwards->FStartPt, TPointF(10, 0));

  TDrawing box;
  box.add(line({10, 0}, {10, 10}));
  box.add(line({0, 0}, {10, 0}));
  box.add(line({0, 10}, {10, 10}));
  box.add(line({0, 10}, {0, 0}));
  svg = svgExportText(box.scene(), {});
  EXPECT_NE(svg.find("d=\"M10.000,10.000 L0.000,10.000 L0.000,0.000 L10.000,0.000 L10.000,10.000 \""),
            std::string::npos)
      << svg;
  EXPECT_EQ(svg.find('Z'), std::string::npos);
}

TEST(SvgExport, ElementsOfEachKind) {
  TDrawing d;
  d.add(circle({20, 20}, 10));
  auto dashed = line({0, 40}, {30, 40});
  dashed->FDash = TStrokeDash::DashDot;
  d.add(std::move(dashed));
  d.add(arc({50, 20}, 5, {55, 20}, 90));  // a quarter: one cubic
  auto* hole = d.add(dot({5, 5}, 0.4f));
  hole->FShapeType = ShapeType::Hole;
  TExportSettings s;
  std::string svg = svgExportText(d.scene(), s);
  EXPECT_NE(svg.find("<circle cx=\"20.000\" cy=\"20.000\" r=\"5.000\" fill=\"none\""), std::string::npos) << svg;
  EXPECT_NE(svg.find("<circle cx=\"5.000\" cy=\"5.000\" r=\"0.50\" fill=\"none\" stroke=\"#D2691E\""),
            std::string::npos);
  EXPECT_NE(svg.find("<path d=\"M55.000,20.000 C55.000,22.761 52.761,25.000 50.000,25.000\""), std::string::npos);
  EXPECT_EQ(svg.find("stroke-dasharray"), std::string::npos);
  s.FNoStrokeDash = false;
  s.FHolesAsDots = false;
  svg = svgExportText(d.scene(), s);
  EXPECT_NE(svg.find("stroke-dasharray=\"3 1 1 1\""), std::string::npos);
  EXPECT_EQ(svg.find("r=\"0.50\""), std::string::npos);
}

TEST(SvgExport, PageAtTheBoundsAndNothingWhenAllIsFilteredOut) {
  TDrawing d;
  d.add(line({-20, -5}, {10, 15}));
  const std::string svg = svgExportText(d.scene(), {});
  EXPECT_NE(svg.find("width=\"30.000mm\" height=\"20.000mm\""), std::string::npos);
  EXPECT_NE(svg.find("viewBox=\"-20.000 -5.000 30.000 20.000\""), std::string::npos);
  // A hidden layer, a hidden palette row, the selection: nothing left.
  TExportSettings onlySelected;
  onlySelected.FOnlySelected = true;
  EXPECT_EQ(svgExportText(d.scene(), onlySelected), "");
  d.pallet[0].FIsVisible = false;
  EXPECT_EQ(svgExportText(d.scene(), {}), "");
  d.pallet[0].FIsVisible = true;
  d.list.SetlayerVisible(0, false);
  EXPECT_EQ(svgExportText(d.scene(), {}), "");
}
