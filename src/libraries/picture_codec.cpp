#include "libraries/picture_codec.h"

#include <cstring>
#include <stdexcept>
#include <vector>

#include "libraries/zip_archive.h"

namespace {

void put16(std::string& s, uint32_t v) {
  s += static_cast<char>(v & 0xFF);
  s += static_cast<char>((v >> 8) & 0xFF);
}
void put32(std::string& s, uint32_t v) {
  put16(s, v & 0xFFFF);
  put16(s, v >> 16);
}
uint32_t get16(std::string_view b, size_t at) {
  return uint32_t(uint8_t(b[at])) | uint32_t(uint8_t(b[at + 1])) << 8;
}
uint32_t get32(std::string_view b, size_t at) { return get16(b, at) | get16(b, at + 2) << 16; }

// Where the bits of a mask start and how many it has.
void maskShift(uint32_t mask, int& shift, int& bits) {
  shift = 0;
  bits = 0;
  if (!mask) return;
  while (!(mask & 1u)) {
    mask >>= 1;
    ++shift;
  }
  while (mask & 1u) {
    mask >>= 1;
    ++bits;
  }
}
uint32_t channel(uint32_t v, int shift, int bits) {
  if (bits == 0) return 0;
  const uint32_t raw = (v >> shift) & ((1u << bits) - 1u);
  return bits >= 8 ? raw >> (bits - 8) : raw * 255u / ((1u << bits) - 1u);
}

}  // namespace

std::string encodeBmp(const TRasterImage& image) {
  if (image.isEmpty()) return {};
  const uint32_t rowBytes = (uint32_t(image.FWidth) * 3 + 3) & ~3u;
  const uint32_t dataSize = rowBytes * uint32_t(image.FHeight);
  std::string s;
  s.reserve(54 + dataSize);
  s += "BM";
  put32(s, 54 + dataSize);
  put32(s, 0);
  put32(s, 54);
  put32(s, 40);
  put32(s, uint32_t(image.FWidth));
  put32(s, uint32_t(image.FHeight));
  put16(s, 1);
  put16(s, 24);
  put32(s, 0);
  put32(s, dataSize);
  put32(s, 11811);  // 300 dots per inch, in dots per metre
  put32(s, 11811);
  put32(s, 0);
  put32(s, 0);
  const size_t start = s.size();
  s.resize(start + dataSize, '\0');
  for (int y = 0; y < image.FHeight; ++y) {
    const uint32_t* src = image.row(image.FHeight - 1 - y);
    auto* out = reinterpret_cast<unsigned char*>(s.data() + start + size_t(y) * rowBytes);
    for (int x = 0; x < image.FWidth; ++x) {
      const uint32_t p = src[x];
      const uint32_t a = p >> 24;
      // Over white: c * a + 255 * (1 - a).
      auto over = [a](uint32_t c) { return static_cast<unsigned char>((c * a + 255u * (255u - a) + 127u) / 255u); };
      out[3 * x + 0] = over(p & 0xFF);
      out[3 * x + 1] = over((p >> 8) & 0xFF);
      out[3 * x + 2] = over((p >> 16) & 0xFF);
    }
  }
  return s;
}

TRasterImage decodeBmp(std::string_view b, std::string& error) {
  error.clear();
  if (b.size() < 26 || b[0] != 'B' || b[1] != 'M') {
    error = "not a BMP picture";
    return {};
  }
  const uint32_t dataOffset = get32(b, 10);
  const uint32_t headerSize = get32(b, 14);
  if (headerSize < 40 || 14 + size_t(headerSize) > b.size()) {
    error = "this kind of BMP picture is not supported";
    return {};
  }
  const int32_t width = static_cast<int32_t>(get32(b, 18));
  const int32_t rawHeight = static_cast<int32_t>(get32(b, 22));
  const uint32_t bpp = get16(b, 28);
  const uint32_t compression = get32(b, 30);
  const bool topDown = rawHeight < 0;
  const int64_t height = topDown ? -int64_t(rawHeight) : rawHeight;
  if (width <= 0 || height <= 0 || int64_t(width) * height > kMaxPicturePixels) {
    error = width <= 0 || height <= 0 ? "the BMP picture has no size" : "the BMP picture is too large";
    return {};
  }
  uint32_t masks[4] = {0x00FF0000, 0x0000FF00, 0x000000FF, 0};
  if (compression == 3 && bpp == 32) {  // bit fields
    const size_t at = headerSize >= 52 ? 54 : 14 + headerSize;
    if (at + 12 > b.size()) {
      error = "the BMP picture is damaged";
      return {};
    }
    for (int i = 0; i < 3; ++i) masks[i] = get32(b, at + 4 * i);
    masks[3] = headerSize >= 56 && 54 + 16 <= b.size() ? get32(b, 54 + 12) : 0;
  } else if (compression != 0 || (bpp != 8 && bpp != 24 && bpp != 32)) {
    error = "this kind of BMP picture is not supported";
    return {};
  }
  std::vector<uint32_t> palette;
  if (bpp == 8) {
    uint32_t colours = get32(b, 46);
    if (colours == 0 || colours > 256) colours = 256;
    const size_t at = 14 + headerSize;
    if (at + colours * 4 > b.size()) {
      error = "the BMP picture is damaged";
      return {};
    }
    for (uint32_t i = 0; i < colours; ++i) palette.push_back(0xFF000000u | (get32(b, at + 4 * i) & 0xFFFFFF));
  }
  const uint64_t rowBytes = ((uint64_t(width) * bpp + 31) / 32) * 4;
  if (dataOffset > b.size() || rowBytes * uint64_t(height) > b.size() - dataOffset) {
    error = "the BMP picture is damaged";
    return {};
  }
  int sh[4], bits[4];
  for (int i = 0; i < 4; ++i) maskShift(masks[i], sh[i], bits[i]);
  std::vector<uint32_t> px(size_t(width) * size_t(height));
  for (int64_t y = 0; y < height; ++y) {
    const auto* src = reinterpret_cast<const unsigned char*>(b.data() + dataOffset + y * rowBytes);
    uint32_t* out = px.data() + size_t(topDown ? y : height - 1 - y) * size_t(width);
    for (int32_t x = 0; x < width; ++x) {
      if (bpp == 8) {
        const unsigned idx = src[x];
        out[x] = idx < palette.size() ? palette[idx] : 0xFF000000u;
      } else if (bpp == 24) {
        out[x] = 0xFF000000u | uint32_t(src[3 * x + 2]) << 16 | uint32_t(src[3 * x + 1]) << 8 | src[3 * x];
      } else {
        uint32_t v;
        std::memcpy(&v, src + 4 * x, 4);
        const uint32_t a = bits[3] ? channel(v, sh[3], bits[3]) : 255u;
        out[x] = a << 24 | channel(v, sh[0], bits[0]) << 16 | channel(v, sh[1], bits[1]) << 8 |
                 channel(v, sh[2], bits[2]);
      }
    }
  }
  return TRasterImage::fromPixels(width, static_cast<int>(height), std::move(px));
}

TDecodedPicture decodePicture(std::string_view bytes, int64_t maxPixels) {
  TDecodedPicture r;
  if (bytes.size() >= 2 && bytes[0] == 'B' && bytes[1] == 'M') {
    std::string error;
    r.FImage = decodeBmp(bytes, error);
    if (r.FImage.isEmpty() || r.FImage.pixelCount() <= maxPixels) {
      r.FError = error;
      if (r.FImage.isEmpty())
        r.FProblem = error.find("large") != std::string::npos ? TPictureProblem::TooLarge : TPictureProblem::Damaged;
      r.FSourceWidth = r.FImage.FWidth;
      r.FSourceHeight = r.FImage.FHeight;
      return r;
    }
  }
  if (IPictureDecoder* d = pictureDecoder()) return d->decode(bytes, maxPixels);
  if (!r.FImage.isEmpty()) {
    // No platform to reduce it: halve until it fits.
    r.FSourceWidth = r.FImage.FWidth;
    r.FSourceHeight = r.FImage.FHeight;
    while (r.FImage.pixelCount() > maxPixels) r.FImage = r.FImage.halved();
    return r;
  }
  r.FError = "the picture cannot be read here (only BMP pictures without a window)";
  r.FProblem = TPictureProblem::NotAPicture;
  return r;
}

std::string pictureToBase64Zip(const TRasterImage& image, const std::string& entryName) {
  TZipEntry e;
  e.FName = entryName;
  e.FData = encodeBmp(image);
  e.FModified = std::time(nullptr);
  return base64Encode(writeZipArchive({e}));
}

TDecodedPicture pictureFromBase64Zip(std::string_view text, const std::string& entryName, int64_t maxPixels) {
  const std::string archive = base64Decode(text);
  // The picture entry alone: a BMP of the largest picture kept is under 150 MB.
  TZipLimits limits;
  limits.FMaxEntries = 16;
  limits.FMaxTotalBytes = 400ull << 20;
  std::vector<TZipEntry> entries = readZipArchive(archive, limits);
  const TZipEntry* chosen = nullptr;
  for (const TZipEntry& e : entries)
    if (e.FName == entryName) {
      chosen = &e;
      break;
    }
  if (!chosen && entries.size() == 1) chosen = &entries.front();
  if (!chosen) throw TZipError("the archive holds no \"" + entryName + "\"");
  TDecodedPicture r = decodePicture(chosen->FData, maxPixels);
  if (r.FImage.isEmpty()) throw std::runtime_error(r.FError.empty() ? "the picture cannot be read" : r.FError);
  return r;
}
