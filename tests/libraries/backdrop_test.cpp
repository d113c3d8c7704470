// The backdrop's real size, its own undo, its place when scaled about a
// point, and its object in the project file.
#include <gtest/gtest.h>

#include "libraries/backdrop.h"
#include "libraries/picture_codec.h"

namespace {

TBackdrop backdropOf(int w, int h) {
  TBackdrop b;
  b.FBitmap = TRasterImage::fromPixels(w, h, std::vector<uint32_t>(size_t(w) * h, 0xFF336699u));
  b.setDPI(300);
  return b;
}

}  // namespace

TEST(Backdrop, RealSizeFromResolutionOrAsSet) {
  TBackdrop b = backdropOf(300, 600);
  EXPECT_FLOAT_EQ(b.FWidth, 25.4f);
  EXPECT_FLOAT_EQ(b.FHeight, 50.8f);
  EXPECT_EQ(b.getBoundary(), TRectF(0, 0, 300, 600));
  // Only a height: the width comes out equal to it, as it always has.
  b.setRealSize(0, 100);
  EXPECT_FLOAT_EQ(b.FWidth, 100.0f);
  EXPECT_FLOAT_EQ(b.FHeight, 100.0f);
  EXPECT_FLOAT_EQ(b.FDpi, 76.2f);
  // Only a width: the height follows the picture.
  b.setRealSize(50, 0);
  EXPECT_FLOAT_EQ(b.FHeight, 100.0f);
  EXPECT_FLOAT_EQ(b.FDpi, 152.4f);
  b.setRealSize(20, 30);
  EXPECT_FLOAT_EQ(b.FWidth, 20.0f);
  EXPECT_FLOAT_EQ(b.FHeight, 30.0f);
  b.setDPI(0);  // no resolution is no change
  EXPECT_FLOAT_EQ(b.FWidth, 20.0f);
}

TEST(Backdrop, UndoIsAStackWhoseTopIsTheCurrentState) {
  TBackdrop b = backdropOf(300, 300);
  b.addCurrentStateToUndo();
  const TBackdropUndoValues none = b.performUndo();
  EXPECT_EQ(none.Angle, -1);
  EXPECT_EQ(none.Dpi, -1);
  EXPECT_EQ(b.FLeftTop, TPointF(0, 0));
  EXPECT_EQ(b.getUndoBufferCount(), 1);

  b.FLeftTop = TPointF(10, 20);
  b.FAngle = 15;
  b.addCurrentStateToUndo();
  b.setDPI(150);
  b.addCurrentStateToUndo();
  EXPECT_EQ(b.performUndo().Dpi, 300);
  EXPECT_FLOAT_EQ(b.FWidth, 25.4f);
  EXPECT_EQ(b.FLeftTop, TPointF(10, 20));
  EXPECT_EQ(b.performUndo().Angle, 0);
  EXPECT_EQ(b.FLeftTop, TPointF(0, 0));
  EXPECT_EQ(b.performRedo().Angle, 15);
  EXPECT_EQ(b.performRedo().Dpi, 150);
  EXPECT_FLOAT_EQ(b.FWidth, 50.8f);
  EXPECT_EQ(b.performRedo().Dpi, -1);
  // A new state drops what could be redone.
  b.performUndo();
  b.addCurrentStateToUndo();
  EXPECT_TRUE(b.FRedoList.empty());
}

TEST(Backdrop, ScalingAboutAPointKeepsThatPointOfThePicture) {
  TBackdrop b = backdropOf(600, 300);  // 50.8 x 25.4 mm
  b.FLeftTop = TPointF(10, 10);
  b.FAngle = 30;
  const TPointF fixed = b.pictureToModel().apply(TPointF(5, 5));
  b.scaleAbout(fixed, 2.0);
  EXPECT_NEAR(b.FWidth, 101.6, 1e-3);
  EXPECT_NEAR(b.FDpi, 150, 1e-3);
  const TPointF after = b.pictureToModel().apply(TPointF(10, 10));  // the same picture point, twice as far
  EXPECT_NEAR(after.x, fixed.x, 1e-3);
  EXPECT_NEAR(after.y, fixed.y, 1e-3);
  EXPECT_TRUE(b.containsPoint(b.centre()));
  EXPECT_FALSE(b.containsPoint(TPointF(-500, -500)));
}

TEST(Backdrop, ProjectObjectRoundTripsAndKeepsOtherWritersKeys) {
  TBackdrop b = backdropOf(40, 20);
  b.FFullPath = "/scans/wallet.png";
  b.FLeftTop = TPointF(12.5f, -3);
  b.FAngle = 7.5f;
  b.setDPI(96);
  b.updateRotationCenter();
  b.FBase64ZippedBitmap = b.convertBitmapToBase64Zip();
  const nlohmann::ordered_json jo = b.ToJson();
  std::vector<std::string> keys;
  for (auto it = jo.begin(); it != jo.end(); ++it) keys.push_back(it.key());
  EXPECT_EQ(keys, (std::vector<std::string>{"fullpath", "topleft", "angle", "rotc", "dpi", "w", "h", "zipbmp"}));
  EXPECT_EQ(jo["angle"], "7.5");
  EXPECT_EQ(jo["dpi"], "96.0");

  nlohmann::ordered_json file = jo;
  file["type"] = "trace";
  TBackdrop c;
  c.loadJson(file);
  c.decodeZippedBitmap(c.FBase64ZippedBitmap);
  c.repairPlacement();
  EXPECT_EQ(c.FFullPath, b.FFullPath);
  EXPECT_EQ(c.FLeftTop, b.FLeftTop);
  EXPECT_FLOAT_EQ(c.FWidth, b.FWidth);
  EXPECT_EQ(*c.FBitmap.FPixels, *b.FBitmap.FPixels);
  EXPECT_EQ(c.ToJson()["type"], "trace");

  // Sizes no one could have meant fall back to the resolution.
  nlohmann::ordered_json bad = jo;
  bad["w"] = "-4.0";
  bad["angle"] = "1e30";
  TBackdrop d;
  d.loadJson(bad);
  d.FBitmap = b.FBitmap;
  d.repairPlacement();
  EXPECT_FLOAT_EQ(d.FWidth, b.FWidth);
  EXPECT_EQ(d.FAngle, 0);
}
