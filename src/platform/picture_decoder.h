// Decoding pictures (PNG, JPEG and the other formats the platform knows)
// and reading PDF pages as pictures. The window's toolkit provides both;
// without it only BMP pictures can be read (libraries/picture_codec.h) and
// PDF files cannot be opened.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "document/types.h"
#include "platform/raster_image.h"

enum class TPictureProblem { None, NotAPicture, TooLarge, Damaged };

struct TDecodedPicture {
  TRasterImage FImage;     // empty on failure
  TPictureProblem FProblem = TPictureProblem::None;
  std::string FError;      // the decoder's own words, on failure
  int FSourceWidth = 0;    // the picture's own size; larger than FImage
  int FSourceHeight = 0;   // when it had to be reduced to fit the limit
};

class IPictureDecoder {
 public:
  virtual ~IPictureDecoder() = default;
  // Reads the header first: a picture of more than maxPixels is decoded
  // reduced to fit (keeping its proportions) where the format allows it
  // cheaply, and refused with a message where it does not, so that no
  // picture can take the memory or the minutes of a huge one.
  virtual TDecodedPicture decode(std::string_view bytes, int64_t maxPixels) = 0;
};

enum class TPdfOpenState { Ok, NeedsPassword, WrongPassword, NotPdf };

class IPdfPages {
 public:
  virtual ~IPdfPages() = default;
  virtual int pageCount() const = 0;
  // Width and height of a page in millimetres.
  virtual TPointF pageSizeMm(int page) const = 0;
  // The page at `dpi` dots per inch (white behind it); empty on failure.
  virtual TRasterImage renderPage(int page, double dpi) = 0;
};

class IPdfReader {
 public:
  virtual ~IPdfReader() = default;
  // Opens the file with the password ("" for none). Null unless the state
  // is Ok; `error` then says why for NotPdf.
  virtual std::unique_ptr<IPdfPages> open(const std::string& filename, const std::string& password,
                                             TPdfOpenState& state, std::string& error) = 0;
};

// The services in use, null until the platform installs them. Not owned.
IPictureDecoder* pictureDecoder();
void setPictureDecoder(IPictureDecoder* decoder);
IPdfReader* pdfReader();
void setPdfReader(IPdfReader* reader);
