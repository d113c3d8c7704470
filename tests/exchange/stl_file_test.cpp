// The binary STL file's bytes, and the settings file of the export.
#include <gtest/gtest.h>

#include <cstring>

#include "app/safe_file.h"
#include "exchange/stl_file.h"
#include "exchange/stl_settings.h"
#include "test_support.h"

TEST(StlFile, HeaderCountAndFiftyBytesAFacetWithWeldedCorners) {
  // The second facet's corner lies 0.0004 mm off the first's: it is welded
  // onto it. The third collapses to a line and is dropped.
  const TTriangleList t{{{TVec3{0, 0, 0}, TVec3{1, 0, 0}, TVec3{0, 1, 0}}},
                        {{TVec3{1.0004, 0, 0}, TVec3{1, 1, 0}, TVec3{0, 1, 0}}},
                        {{TVec3{0, 0, 0}, TVec3{0.0002, 0, 0}, TVec3{5, 5, 5}}}};
  const TWeldedMesh welded = weldTriangles(t);
  ASSERT_EQ(welded.facetCount(), 2u);
  EXPECT_EQ(welded.Facets[3], 1u);
  const std::string b = binaryStlBytes(welded);
  ASSERT_EQ(b.size(), 84u + 2 * 50);
  EXPECT_EQ(std::string(b.data(), 13), "Pelwright STL");
  EXPECT_EQ(b.substr(13, 67), std::string(67, '\0'));
  uint32_t count;
  std::memcpy(&count, b.data() + 80, 4);
  EXPECT_EQ(count, 2u);
  float f[12];
  std::memcpy(f, b.data() + 84, sizeof f);
  EXPECT_EQ(std::vector<float>(f, f + 12), (std::vector<float>{0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1, 0}));
  EXPECT_EQ(b.substr(84 + 48, 2), std::string(2, '\0'));
  EXPECT_EQ(binaryStlBytes(TWeldedMesh{}).size(), 84u);
  EXPECT_EQ(stlTextFileName("/tmp/x/card.holder.stl"), "/tmp/x/card.holder_text.stl");
}

TEST(StlSettings, KeptInItsIniFileWithinTheirRanges) {
  TTempDir dir;
  const std::string file = stlSettingsFile(dir.path() + "/pelwright");
  EXPECT_EQ(file, dir.path() + "/pelwright/STLExport.ini");
  // Defaults when there is no file.
  const TSTLExportSettings d = readStlSettings(file);
  EXPECT_EQ(d.Thickness, 2.5);
  EXPECT_EQ(d.FilletSteps, 6);
  EXPECT_EQ(d.Color, 0xFFCD853Fu);
  EXPECT_TRUE(d.StitchAsRound);
  // Written and read back; keys of others are kept.
  writeTextFile(file, "[Other]\nKey=1\n");
  TSTLExportSettings s;
  s.Thickness = 3.2;
  s.EdgeTopMode = kEdgeFillet;
  s.Color = 0xFF123456;
  s.EngraveSide = TEngraveSide::Bottom;
  s.TemplateMode = true;
  s.Jig.OuterMode = TSTLTemplateOuterMode::omPatternOffset;
  s.Jig.PocketDepth = 1.5;
  s.Jig.KeepNestedContours = true;
  writeStlSettings(s, file);
  const std::string text = readWholeFile(file);
  EXPECT_NE(text.find("[Other]"), std::string::npos);
  EXPECT_NE(text.find("Color=FF123456"), std::string::npos);
  EXPECT_NE(text.find("TemplateMode=1"), std::string::npos);
  const TSTLExportSettings r = readStlSettings(file);
  EXPECT_EQ(r.Thickness, 3.2);
  EXPECT_EQ(r.EdgeTopMode, kEdgeFillet);
  EXPECT_EQ(r.Color, 0xFF123456u);
  EXPECT_EQ(r.EngraveSide, TEngraveSide::Bottom);
  EXPECT_TRUE(r.TemplateMode);
  EXPECT_EQ(r.Jig.OuterMode, TSTLTemplateOuterMode::omPatternOffset);
  EXPECT_EQ(r.Jig.PocketDepth, 1.5);
  EXPECT_TRUE(r.Jig.KeepNestedContours);
  // Out of range: thickness 0 and 5000, steps, modes and a bad colour.
  writeTextFile(file, "[STL]\nThickness=0\nFilletSteps=99\nEdgeTopMode=7\nColor=zz\nEngraveDepth=nan\n"
                      "[JIG]\nTotalHeight=5000\nOuterMode=-1\n");
  const TSTLExportSettings c = readStlSettings(file);
  EXPECT_EQ(c.Thickness, 0.1);
  EXPECT_EQ(c.FilletSteps, 16);
  EXPECT_EQ(c.EdgeTopMode, kEdgeNone);
  EXPECT_EQ(c.Color, 0xFFCD853Fu);
  EXPECT_EQ(c.EngraveDepth, 0.5);
  EXPECT_EQ(c.Jig.TotalHeight, 50);
  EXPECT_EQ(c.Jig.OuterMode, TSTLTemplateOuterMode::omRectMargin);
}
