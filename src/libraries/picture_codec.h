// Pictures as files keep them: BMP written and read here in plain C++ (the
// stored form of backdrops and leather pictures), every other format
// through the platform's decoder, and the base64 text of a ZIP archive
// that a project or a catalog holds a picture in.
#pragma once

#include <string>
#include <string_view>

#include "platform/picture_decoder.h"
#include "platform/raster_image.h"

// A 24-bit BMP, bottom row first; transparent pixels are laid on white.
std::string encodeBmp(const TRasterImage& image);
// Uncompressed BMP of 8 (palette), 24 or 32 bits, either row order.
// Empty with `error` set for anything else or a damaged file.
TRasterImage decodeBmp(std::string_view bytes, std::string& error);

// Any picture: BMP here, other formats through the platform's decoder
// (a clear message when there is none or it cannot read them). Pictures
// over maxPixels are reduced or refused as IPictureDecoder tells.
TDecodedPicture decodePicture(std::string_view bytes, int64_t maxPixels = kMaxPicturePixels);

// The picture as BMP in a ZIP archive under `entryName`, in base64 text.
std::string pictureToBase64Zip(const TRasterImage& image, const std::string& entryName);
// The reverse. The entry is looked up by name, else the archive's only
// entry is taken (a picture stored by another writer); its bytes may be
// any format decodePicture reads. Throws TZipError or std::runtime_error
// with a message for the user.
TDecodedPicture pictureFromBase64Zip(std::string_view text, const std::string& entryName,
                                     int64_t maxPixels = kMaxPicturePixels);
