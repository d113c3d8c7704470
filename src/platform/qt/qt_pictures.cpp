#include "platform/qt/qt_pictures.h"

#include <QBuffer>
#include <QImage>
#include <QImageReader>
#include <QPainter>
#include <QPdfDocument>
#include <cmath>

namespace {

// Beyond this many times the limit a picture is refused at once: reducing
// it would still read every pixel, for many seconds.
constexpr int64_t kReducibleFactor = 4;

TRasterImage rasterOf(const QImage& source) {
  const QImage img = source.convertToFormat(QImage::Format_ARGB32);
  std::vector<uint32_t> px(size_t(img.width()) * size_t(img.height()));
  for (int y = 0; y < img.height(); ++y) {
    const auto* row = reinterpret_cast<const uint32_t*>(img.constScanLine(y));
    std::copy(row, row + img.width(), px.begin() + ptrdiff_t(y) * img.width());
  }
  return TRasterImage::fromPixels(img.width(), img.height(), std::move(px));
}

class TQtPdfPages : public IPdfPages {
 public:
  QPdfDocument FDoc;
  int pageCount() const override { return FDoc.pageCount(); }
  TPointF pageSizeMm(int page) const override {
    const QSizeF pt = FDoc.pagePointSize(page);
    return TPointF::fromDouble(pt.width() / 72.0 * 25.4, pt.height() / 72.0 * 25.4);
  }
  TRasterImage renderPage(int page, double dpi) override {
    if (page < 0 || page >= FDoc.pageCount() || !(dpi > 0)) return {};
    const QSizeF pt = FDoc.pagePointSize(page);
    const QSize size(std::max(1, int(std::lround(pt.width() / 72.0 * dpi))),
                     std::max(1, int(std::lround(pt.height() / 72.0 * dpi))));
    if (int64_t(size.width()) * size.height() > kMaxPicturePixels) return {};
    const QImage rendered = FDoc.render(page, size);
    if (rendered.isNull()) return {};
    // Pages are paper: white where the page draws nothing.
    QImage page_(rendered.size(), QImage::Format_ARGB32);
    page_.fill(Qt::white);
    QPainter p(&page_);
    p.drawImage(0, 0, rendered);
    p.end();
    return rasterOf(page_);
  }
};

}  // namespace

TDecodedPicture TQtPictureDecoder::decode(std::string_view bytes, int64_t maxPixels) {
  TDecodedPicture r;
  QByteArray data = QByteArray::fromRawData(bytes.data(), qsizetype(bytes.size()));
  QBuffer buffer(&data);
  buffer.open(QIODevice::ReadOnly);
  QImageReader reader(&buffer);
  reader.setAutoTransform(true);
  if (!reader.canRead()) {
    r.FProblem = TPictureProblem::NotAPicture;
    r.FError = reader.errorString().toStdString();
    return r;
  }
  const QSize size = reader.size();
  r.FSourceWidth = size.width();
  r.FSourceHeight = size.height();
  if (size.isValid()) {
    const int64_t pixels = int64_t(size.width()) * size.height();
    if (pixels > maxPixels * kReducibleFactor) {
      r.FProblem = TPictureProblem::TooLarge;
      return r;
    }
    if (pixels > maxPixels) {
      const double f = std::sqrt(double(maxPixels) / double(pixels));
      reader.setScaledSize(QSize(std::max(1, int(size.width() * f)), std::max(1, int(size.height() * f))));
    }
  }
  const QImage img = reader.read();
  if (img.isNull()) {
    r.FProblem = size.isValid() && int64_t(size.width()) * size.height() > maxPixels ? TPictureProblem::TooLarge
                                                                                    : TPictureProblem::Damaged;
    r.FError = reader.errorString().toStdString();
    return r;
  }
  r.FImage = rasterOf(img);
  if (r.FImage.pixelCount() > maxPixels) {
    // A format without a size in its header: reduce after the fact.
    while (r.FImage.pixelCount() > maxPixels) r.FImage = r.FImage.halved();
  }
  if (r.FSourceWidth <= 0) {
    r.FSourceWidth = r.FImage.FWidth;
    r.FSourceHeight = r.FImage.FHeight;
  }
  return r;
}

std::unique_ptr<IPdfPages> TQtPdfReader::open(const std::string& filename, const std::string& password,
                                                 TPdfOpenState& state, std::string& error) {
  auto doc = std::make_unique<TQtPdfPages>();
  if (!password.empty()) doc->FDoc.setPassword(QString::fromStdString(password));
  const QPdfDocument::Error e = doc->FDoc.load(QString::fromStdString(filename));
  switch (e) {
    case QPdfDocument::Error::None:
      state = TPdfOpenState::Ok;
      return doc;
    case QPdfDocument::Error::IncorrectPassword:
      state = password.empty() ? TPdfOpenState::NeedsPassword : TPdfOpenState::WrongPassword;
      return nullptr;
    default:
      state = TPdfOpenState::NotPdf;
      error = e == QPdfDocument::Error::FileNotFound ? "the file cannot be read" : "not a PDF file";
      return nullptr;
  }
}

void useQtPictures() {
  static TQtPictureDecoder decoder;
  static TQtPdfReader reader;
  setPictureDecoder(&decoder);
  setPdfReader(&reader);
}
