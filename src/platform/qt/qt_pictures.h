// Pictures and PDF pages through Qt: QImageReader decodes PNG, JPEG and
// the rest (reduced while decoding where the format allows, within Qt's
// allocation limit), Qt PDF renders pages.
#pragma once

#include "platform/picture_decoder.h"

class TQtPictureDecoder : public IPictureDecoder {
 public:
  TDecodedPicture decode(std::string_view bytes, int64_t maxPixels) override;
};

class TQtPdfReader : public IPdfReader {
 public:
  std::unique_ptr<IPdfPages> open(const std::string& filename, const std::string& password,
                                     TPdfOpenState& state, std::string& error) override;
};

// Installs both services for the program's life (the window and --headless).
void useQtPictures();
