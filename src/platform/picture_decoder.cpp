#include "platform/picture_decoder.h"

namespace {
IPictureDecoder* gDecoder = nullptr;
IPdfReader* gPdfReader = nullptr;
}  // namespace

IPictureDecoder* pictureDecoder() { return gDecoder; }
void setPictureDecoder(IPictureDecoder* decoder) { gDecoder = decoder; }
IPdfReader* pdfReader() { return gPdfReader; }
void setPdfReader(IPdfReader* reader) { gPdfReader = reader; }
