// The stitch settings follow the options: read at start-up, brought into
// range, written back at exit, and used by the next row.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "app/ini_file.h"
#include "app/stitch_options.h"
#include "program_fixture.h"

TEST(StitchOptions, CopiedIntoRangeAndPitchButtonOnlyAtStartUp) {
  TPW_Options o;
  o.FIsFixedPitchDefault = true;
  o.FAutoPrickMode = 1;
  o.FCornerAngleThreshold = 150.5f;
  o.FForceFitLastPrick = false;
  o.FAutoPitchSteps = 80;
  o.FAutoPitchPrecision = 0.01f;
  o.FAutoPitchStopGap = 0.25f;
  TStitchSettings s;
  s.FPitch = 3.0f;
  stitchSettingsFromOptions(o, s, true);
  EXPECT_EQ(s.FPitchMode, TPitchMode::Fixed);
  EXPECT_EQ(s.FCornerMode, kCornerAllJunctions);
  EXPECT_FLOAT_EQ(s.FCornerAngleThreshold, 150.5f);
  EXPECT_FALSE(s.FForceFitLastPrick);
  EXPECT_EQ(s.FAutoPitchSteps, 80);
  EXPECT_FLOAT_EQ(s.FAutoPitchPrecision, 0.01f);
  EXPECT_FLOAT_EQ(s.FAutoPitchStopGap, 0.25f);
  EXPECT_FLOAT_EQ(s.FPitch, 3.0f) << "the wanted pitch is the panel's, not an option";

  // Later changes leave the pressed pitch button alone.
  s.FPitchMode = TPitchMode::Count;
  o.FIsFixedPitchDefault = false;
  stitchSettingsFromOptions(o, s, false);
  EXPECT_EQ(s.FPitchMode, TPitchMode::Count);
  stitchSettingsFromOptions(o, s, true);
  EXPECT_EQ(s.FPitchMode, TPitchMode::Auto);

  // What the panel could not show is brought into range or left at factory.
  o.FAutoPrickMode = 7;
  o.FCornerAngleThreshold = 200.0f;
  o.FAutoPitchSteps = -4;
  o.FAutoPitchPrecision = std::numeric_limits<float>::quiet_NaN();
  stitchSettingsFromOptions(o, s, false);
  EXPECT_EQ(s.FCornerMode, kCornerUniform);
  EXPECT_FLOAT_EQ(s.FCornerAngleThreshold, 179.0f);
  EXPECT_EQ(s.FAutoPitchSteps, 0);
  EXPECT_FLOAT_EQ(s.FAutoPitchPrecision, 0.001f);
}

TEST(StitchOptions, ReadAtStartUpAndTheCornerChoiceWrittenAtExit) {
  TProgram p;
  p.seed("pw_options.ini",
         "[AutoPricking]\nIsFixedPitchDefault=1\nCornerMode=1\nCornerAngleThreshold=150\n"
         "[AutoPitch]\nForceFitLastPrick=0\nAutoPitchSteps2=80\nAutoPitchPrecision2=0.01\nAutoPitchStopGap=0.25\n");
  TfrmPelw& f = p.start();
  EXPECT_EQ(f.FStitchSettings.FPitchMode, TPitchMode::Fixed);
  EXPECT_EQ(f.FStitchSettings.FCornerMode, kCornerAllJunctions);
  EXPECT_FLOAT_EQ(f.FStitchSettings.FCornerAngleThreshold, 150.0f);
  EXPECT_FALSE(f.FStitchSettings.FForceFitLastPrick);
  EXPECT_EQ(f.FStitchSettings.FAutoPitchSteps, 80);
  EXPECT_FLOAT_EQ(f.FStitchSettings.FAutoPitchPrecision, 0.01f);
  EXPECT_FLOAT_EQ(f.FStitchSettings.FAutoPitchStopGap, 0.25f);

  // The user picks another corner mode and angle on the panel.
  f.FStitchSettings.FCornerMode = kCornerUniform;
  f.FStitchSettings.FCornerAngleThreshold = 120.0f;
  p.stop();
  const TIniFile ini(p.appData() + "/pw_options.ini");
  EXPECT_EQ(ini.ReadString("AutoPricking", "CornerMode", ""), "2");
  EXPECT_EQ(ini.ReadString("AutoPricking", "CornerAngleThreshold", ""), "120");
  EXPECT_EQ(ini.ReadString("AutoPitch", "AutoPitchSteps2", ""), "80");
}

TEST(StitchOptions, TheSearchLimitsReachTheNextRow) {
  // 101 mm at pitch 4: the first trial stops a millimetre short of the end,
  // the search finds the pitch that closes the row. With a stop gap wider
  // than that millimetre the first trial stands.
  const auto lastHoleX = [](const char* options) {
    TProgram p;
    p.seed("pw_options.ini", options);
    TfrmPelw& f = p.start();
    f.addShapeToDocument(makeLine(TPointF(0, 0), TPointF(101, 0)), 0);
    TfrmPelw::TStitchAlongPathRequest req;
    req.FStartPoint = TPointF(0, 0);
    req.FEndPoint = TPointF(101, 0);
    const auto reply = f.apiStitchAlongPath(req);
    EXPECT_TRUE(reply.FOk);
    EXPECT_EQ(reply.FHoleCount, 26);
    return double(f.PathList->findByID(reply.FCreatedIds.back())->FCenter.x);
  };
  EXPECT_NEAR(lastHoleX("[AutoPitch]\nAutoPitchStopGap=0.1\n"), 101.0, 0.1);
  EXPECT_NEAR(lastHoleX("[AutoPitch]\nAutoPitchStopGap=2\n"), 100.0, 1e-3);
}
