// Pictures as files and projects keep them: ZIP archives in base64 text,
// BMP pictures, and the bounds that keep a hostile archive or picture from
// taking the program's memory or leaving its folder.
#include <gtest/gtest.h>

#include "libraries/picture_codec.h"
#include "libraries/zip_archive.h"

namespace {

TRasterImage checker(int w, int h) {
  std::vector<uint32_t> px(size_t(w) * h);
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) px[size_t(y) * w + x] = ((x + y) % 2) ? 0xFF102030u : 0xFFF0E0D0u;
  return TRasterImage::fromPixels(w, h, std::move(px));
}

}  // namespace

TEST(ZipArchive, EntriesAndTimesComeBackAndBadArchivesAreRefused) {
  const std::vector<TZipEntry> in = {{"repository/{A}.pwcr", "template text", 1735689600},
                                     {"repository_index.txt", std::string(100000, 'x'), 1700000000}};
  const std::string bytes = writeZipArchive(in);
  const std::vector<TZipEntry> out = readZipArchive(bytes);
  ASSERT_EQ(out.size(), 2u);
  EXPECT_EQ(out[0].FName, "repository/{A}.pwcr");
  EXPECT_EQ(out[0].FData, "template text");
  EXPECT_EQ(out[1].FData.size(), 100000u);
  // ZIP keeps local times in two-second steps.
  EXPECT_NEAR(double(out[0].FModified), 1735689600.0, 2.0);
  EXPECT_EQ(readZipEntry(bytes, "repository_index.txt").size(), 100000u);
  EXPECT_THROW(readZipEntry(bytes, "missing"), TZipError);

  // Names that would leave the folder they are laid into.
  for (const char* evil : {"../outside.pwcr", "repository/../../x", "/etc/passwd", "a\\..\\b", "c:/x", "a//b"}) {
    EXPECT_FALSE(zipEntryNameIsSafe(evil)) << evil;
    EXPECT_THROW(readZipArchive(writeZipArchive({{evil, "x", 0}})), TZipError) << evil;
  }
  EXPECT_TRUE(zipEntryNameIsSafe("repository/{A}.pwcr"));
  EXPECT_THROW(readZipArchive("not a zip archive at all"), TZipError);
  TZipLimits small;
  small.FMaxTotalBytes = 1000;
  EXPECT_THROW(readZipArchive(bytes, small), TZipError);
}

TEST(Base64, RoundTripsEveryLengthAndRefusesOtherText) {
  std::string all;
  for (int i = 0; i < 256; ++i) all += static_cast<char>(i);
  for (size_t n : {0u, 1u, 2u, 3u, 4u, 255u, 256u}) EXPECT_EQ(base64Decode(base64Encode(all.substr(0, n))), all.substr(0, n));
  EXPECT_EQ(base64Encode("Man"), "TWFu");
  EXPECT_EQ(base64Encode("Ma"), "TWE=");
  EXPECT_EQ(base64Decode("TW\r\nFu"), "Man");  // line breaks of other writers
  EXPECT_THROW(base64Decode("TW*u"), std::invalid_argument);
}

TEST(PictureCodec, BmpRoundTripsAndReadsOtherWritersForms) {
  const TRasterImage in = checker(5, 3);  // rows padded to four bytes
  std::string error;
  const TRasterImage out = decodeBmp(encodeBmp(in), error);
  ASSERT_FALSE(out.isEmpty()) << error;
  EXPECT_EQ(*out.FPixels, *in.FPixels);

  // An 8-bit grey picture with a palette, stored top row first.
  std::string b = "BM";
  auto u32 = [&](uint32_t v) { for (int i = 0; i < 4; ++i) b += char((v >> (8 * i)) & 0xFF); };
  auto u16 = [&](uint32_t v) { b += char(v & 0xFF); b += char((v >> 8) & 0xFF); };
  u32(0); u32(0); u32(14 + 40 + 1024);
  u32(40); u32(2); u32(uint32_t(-2)); u16(1); u16(8); u32(0); u32(8); u32(0); u32(0); u32(256); u32(0);
  for (int i = 0; i < 256; ++i) u32(uint32_t(i) * 0x010101u);
  b += std::string("\x00\xFF\x00\x00\x80\x40\x00\x00", 8);
  const TRasterImage grey = decodeBmp(b, error);
  ASSERT_EQ(grey.FWidth, 2);
  EXPECT_EQ(grey.pixel(1, 0), 0xFFFFFFFFu);
  EXPECT_EQ(grey.pixel(0, 1), 0xFF808080u);

  EXPECT_TRUE(decodeBmp(b.substr(0, 60), error).isEmpty());
  EXPECT_TRUE(decodeBmp("BM and then nothing useful", error).isEmpty());
}

TEST(PictureCodec, StoredPicturesComeBackAndForeignArchivesAreRead) {
  const TRasterImage in = checker(7, 4);
  const TDecodedPicture back = pictureFromBase64Zip(pictureToBase64Zip(in, "trace_image.bmp"), "trace_image.bmp");
  EXPECT_EQ(*back.FImage.FPixels, *in.FPixels);
  // Another writer named its only entry otherwise.
  const std::string other = base64Encode(writeZipArchive({{"picture.bmp", encodeBmp(in), 0}}));
  EXPECT_EQ(*pictureFromBase64Zip(other, "trace_image.bmp").FImage.FPixels, *in.FPixels);
  EXPECT_THROW(pictureFromBase64Zip(base64Encode(writeZipArchive({{"a.txt", "text", 0}})), "x.bmp"),
               std::runtime_error);
}
