#include "platform/qt/qt_canvas.h"

#include <QFontMetricsF>
#include <QVarLengthArray>
#include <algorithm>
#include <cmath>
#include <unordered_map>

namespace {

QColor toQColor(TAlphaColor c) {
  return QColor((c >> 16) & 0xFF, (c >> 8) & 0xFF, c & 0xFF, (c >> 24) & 0xFF);
}

Qt::PenStyle toPenStyle(TStrokeDash d) {
  switch (d) {
    case TStrokeDash::Solid: return Qt::SolidLine;
    case TStrokeDash::Dash: return Qt::DashLine;
    case TStrokeDash::Dot: return Qt::DotLine;
    case TStrokeDash::DashDot: return Qt::DashDotLine;
    case TStrokeDash::DashDotDot: return Qt::DashDotDotLine;
    case TStrokeDash::Custom: return Qt::DashLine;
  }
  return Qt::SolidLine;
}

QRectF toQRect(const TRectF& r) { return QRectF(QPointF(r.Left, r.Top), QPointF(r.Right, r.Bottom)).normalized(); }

}  // namespace

QPainterPath toQPainterPath(const TPathData& path) {
  QPainterPath q;
  const auto& pts = path.points();
  for (size_t i = 0; i < pts.size(); ++i) {
    const TPointF& p = pts[i].Point;
    switch (pts[i].Kind) {
      case TPathPointKind::MoveTo: q.moveTo(p.x, p.y); break;
      case TPathPointKind::LineTo: q.lineTo(p.x, p.y); break;
      case TPathPointKind::CurveTo:
        if (i + 2 < pts.size()) {
          q.cubicTo(p.x, p.y, pts[i + 1].Point.x, pts[i + 1].Point.y, pts[i + 2].Point.x, pts[i + 2].Point.y);
          i += 2;
        }
        break;
      case TPathPointKind::Close: q.closeSubpath(); break;
    }
  }
  return q;
}

TPathData fromQPainterPath(const QPainterPath& q) {
  TPathData out;
  for (int i = 0; i < q.elementCount(); ++i) {
    const auto e = q.elementAt(i);
    const TPointF p = TPointF::fromDouble(e.x, e.y);
    if (e.type == QPainterPath::MoveToElement) out.MoveTo(p);
    else if (e.type == QPainterPath::LineToElement) out.LineTo(p);
    else if (e.type == QPainterPath::CurveToElement && i + 2 < q.elementCount()) {
      const auto c2 = q.elementAt(i + 1), end = q.elementAt(i + 2);
      out.CurveTo(p, TPointF::fromDouble(c2.x, c2.y), TPointF::fromDouble(end.x, end.y));
      i += 2;
    }
  }
  return out;
}

TQtCanvas::TQtCanvas(QPainter& painter, int width, int height, double scale) {
  attach(painter, width, height, scale);
}

void TQtCanvas::attach(QPainter& painter, int width, int height, double scale) {
  FPainter = &painter;
  FW = width;
  FH = height;
  FScale = scale;
  FPen = QPen(Qt::black, 1.0, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
  FBrush = QBrush(Qt::black);
  FFont = painter.font();
  painter.setRenderHint(QPainter::Antialiasing, true);
}

void TQtCanvas::clear(TAlphaColor color) {
  const QPainter::CompositionMode mode = FPainter->compositionMode();
  FPainter->setCompositionMode(QPainter::CompositionMode_Source);
  FPainter->setOpacity(1.0);
  FPainter->fillRect(QRectF(0, 0, FW, FH), toQColor(color));
  FPainter->setCompositionMode(mode);
}

// The pen and brush change only when a value does: a QPen or QBrush that
// the painter shares is copied on each change, and most shapes in a row
// are drawn alike.
void TQtCanvas::setStroke(TAlphaColor color, TBrushKind kind, TStrokeDash dash, float thickness) {
  setStrokeColor(color);
  const Qt::PenStyle style = kind == TBrushKind::None ? Qt::NoPen : toPenStyle(dash);
  if (FPen.style() != style) FPen.setStyle(style);
  setStrokeThickness(thickness);
}
void TQtCanvas::setStrokeColor(TAlphaColor color) {
  const QColor c = toQColor(color);
  if (FPen.color() != c) FPen.setColor(c);
}
void TQtCanvas::setStrokeDash(TStrokeDash dash) {
  const Qt::PenStyle style = toPenStyle(dash);
  if (FPen.style() != style) FPen.setStyle(style);
}
void TQtCanvas::setStrokeThickness(float thickness) {
  // Qt takes 0 as a hairline; a line thinner than that is drawn as one.
  // Lines a hair over one pixel are drawn at one: the eye cannot tell, and
  // Qt strokes them on its fast path.
  double w = std::max(0.1, double(thickness));
  if (w > 1.0 && w < 1.25) w = 1.0;
  if (FPen.widthF() != w) FPen.setWidthF(w);
}

void TQtCanvas::setStrokeCap(TStrokeCap cap) {
  const Qt::PenCapStyle style = cap == TStrokeCap::Square ? Qt::SquareCap : Qt::RoundCap;
  if (FPen.capStyle() != style) FPen.setCapStyle(style);
}

void TQtCanvas::setFill(TAlphaColor color, TBrushKind kind) {
  if (kind == TBrushKind::None) {
    if (FBrush.style() != Qt::NoBrush) FBrush = QBrush(Qt::NoBrush);
    return;
  }
  const QColor c = toQColor(color);
  if (FVectorOutput || FBrush.style() != Qt::SolidPattern || FBrush.color() != c) FBrush = QBrush(c);
}

void TQtCanvas::setFillBitmap(const ICanvasBitmap* bitmap) {
  if (const auto* b = dynamic_cast<const TQtBitmap*>(bitmap)) FBrush = QBrush(b->image());
}

void TQtCanvas::setFontSize(float points) { FFont.setPointSizeF(std::max(1.0f, points)); }

void TQtCanvas::stroke() {
  FPainter->setPen(FPen);
  FPainter->setBrush(Qt::NoBrush);
}

void TQtCanvas::fill(float opacity) {
  FPainter->setPen(Qt::NoPen);
  if (FVectorOutput && opacity < 1 && FBrush.style() == Qt::SolidPattern) {
    // On a PDF or a printer the opacity goes into the colour: Qt's PDF
    // engine, once its painter was translucent, draws the next strokes as
    // filled outlines instead of lines.
    QColor c = FBrush.color();
    c.setAlphaF(c.alphaF() * std::clamp(double(opacity), 0.0, 1.0));
    FPainter->setBrush(c);
    FPainter->setOpacity(1.0);
    return;
  }
  FPainter->setBrush(FBrush);
  FPainter->setOpacity(opacity);
}

void TQtCanvas::drawLine(const TPointF& a, const TPointF& b, float opacity) {
  stroke();
  FPainter->setOpacity(opacity);
  FPainter->drawLine(QPointF(a.x, a.y), QPointF(b.x, b.y));
}

namespace {

// Qt hands the blending of a stroke that covers more scan lines than this to
// its thread pool, in small parts; for a long vertical line the waiting on
// those threads costs several times the drawing.
constexpr double kThreadedSpanRows = 96;

bool longVertical(const TStrokedLine& l) {
  return l.a.x == l.b.x && std::abs(double(l.b.y) - l.a.y) >= kThreadedSpanRows;
}

}  // namespace

void TQtCanvas::drawStrokedLines(const std::vector<TStrokedLine>& lines, float opacity) {
  const bool plain = !FVectorOutput && FPainter->transform().isIdentity();
  for (size_t i = 0; i < lines.size();) {
    size_t j = i;
    while (plain && j < lines.size() && longVertical(lines[j])) ++j;
    if (j - i >= 2) {
      drawVerticalRun(&lines[i], &lines[j - 1] + 1, opacity);
      i = j;
      continue;
    }
    const TStrokedLine& l = lines[i++];
    setStroke(l.color, TBrushKind::Solid, l.dash, l.thickness);
    drawLine(l.a, l.b, opacity);
  }
}

// The lines are drawn as horizontal ones into a scratch image whose rows are
// the canvas's columns, where Qt blends each in one go, and the scratch
// image is laid over the canvas turned back, pixel for pixel: the same
// picture as drawing them one by one, in a fraction of the time.
void TQtCanvas::drawVerticalRun(const TStrokedLine* first, const TStrokedLine* last, float opacity) {
  double left = 1e300, right = -1e300, top = 1e300, bottom = -1e300;
  for (const TStrokedLine* l = first; l != last; ++l) {
    const double reach = std::max(1.0, double(l->thickness)) + 2;
    left = std::min(left, l->a.x - reach);
    right = std::max(right, l->a.x + reach);
    top = std::min({top, double(l->a.y) - reach, double(l->b.y) - reach});
    bottom = std::max({bottom, double(l->a.y) + reach, double(l->b.y) + reach});
  }
  // Whole logical pixels, so that the turn moves no line off its sub-pixel place.
  const int x0 = static_cast<int>(std::floor(std::max(left, 0.0)));
  const int x1 = static_cast<int>(std::ceil(std::min(right, double(FW))));
  const int y0 = static_cast<int>(std::floor(std::max(top, 0.0)));
  const int y1 = static_cast<int>(std::ceil(std::min(bottom, double(FH))));
  if (x1 <= x0 || y1 <= y0) return;
  const double dpr = FScale > 0 ? FScale : 1.0;
  const QSize size(static_cast<int>(std::lround((y1 - y0) * dpr)), static_cast<int>(std::lround((x1 - x0) * dpr)));
  if (FAcross.size() != size) FAcross = QImage(size, QImage::Format_ARGB32_Premultiplied);
  FAcross.setDevicePixelRatio(dpr);
  FAcross.fill(Qt::transparent);
  {
    QPainter across(&FAcross);
    across.setRenderHint(QPainter::Antialiasing, true);
    across.setOpacity(opacity);
    for (const TStrokedLine* l = first; l != last; ++l) {
      setStroke(l->color, TBrushKind::Solid, l->dash, l->thickness);
      across.setPen(FPen);
      across.drawLine(QPointF(double(l->a.y) - y0, double(l->a.x) - x0), QPointF(double(l->b.y) - y0, double(l->b.x) - x0));
    }
  }
  FPainter->save();
  FPainter->setOpacity(1.0);
  FPainter->setRenderHint(QPainter::SmoothPixmapTransform, false);
  FPainter->setTransform(QTransform(0, 1, 1, 0, x0, y0));
  FPainter->drawImage(QPointF(0, 0), FAcross);
  FPainter->restore();
}

void TQtCanvas::drawEllipse(const TRectF& r, float opacity) {
  stroke();
  FPainter->setOpacity(opacity);
  FPainter->drawEllipse(toQRect(r));
}

namespace {

// Small filled circles (the dots of thousands of holes) come from a cache
// of pre-drawn discs, placed at quarter pixels.
struct TDiscKey {
  QRgb colour;   // with the opacity taken into its alpha
  int size4;     // diameter in quarter pixels
  int phase;     // sub-pixel phase, x and y in quarters
  bool operator==(const TDiscKey&) const = default;
};
struct TDiscKeyHash {
  size_t operator()(const TDiscKey& k) const {
    return (size_t(k.colour) * 1000003u) ^ (size_t(k.size4) << 8) ^ size_t(k.phase);
  }
};

// The fill colour seen through an opacity: drawn so, a disc needs no
// opacity of the painter, which Qt blits several times faster.
QRgb withOpacity(const QColor& c, float opacity) {
  const int a = static_cast<int>(std::lround(c.alpha() * std::clamp(double(opacity), 0.0, 1.0)));
  return qRgba(c.red(), c.green(), c.blue(), a);
}
constexpr double kMaxDiscDiameter = 12.0;

std::unordered_map<TDiscKey, QImage, TDiscKeyHash>& discCache() {
  static std::unordered_map<TDiscKey, QImage, TDiscKeyHash> cache;
  return cache;
}

// Called before a drawing call looks discs up, never during one: the images
// it hands out stay put until then.
void trimDiscCache() {
  if (discCache().size() > 512) discCache().clear();
}

const QImage& discImage(const TDiscKey& key) {
  auto& cache = discCache();
  auto it = cache.find(key);
  if (it != cache.end()) return it->second;
  const double d = key.size4 / 4.0;
  const int side = static_cast<int>(std::ceil(d)) + 2;
  QImage img(side, side, QImage::Format_ARGB32_Premultiplied);
  img.fill(Qt::transparent);
  QPainter p(&img);
  p.setRenderHint(QPainter::Antialiasing, true);
  p.setPen(Qt::NoPen);
  p.setBrush(QColor::fromRgba(key.colour));
  p.drawEllipse(QRectF(1 + (key.phase & 3) / 4.0, 1 + (key.phase >> 2) / 4.0, d, d));
  p.end();
  return cache.emplace(key, std::move(img)).first->second;
}

}  // namespace

// Where a small disc of the box's size is blitted from the cache, and which
// one: false when the box is no small circle or the painter is turned.
bool TQtCanvas::smallDisc(const QRectF& q, float opacity, QPointF& at, const QImage*& image) const {
  // A circle's box, made in floats about a centre, is a hair wider than it
  // is high as often as not: that still is a circle.
  if (FVectorOutput || FBrush.style() != Qt::SolidPattern || std::abs(q.width() - q.height()) >= 0.01 ||
      q.width() > kMaxDiscDiameter || !FPainter->transform().isIdentity())
    return false;
  const double fx = std::floor(q.left()), fy = std::floor(q.top());
  const int px = static_cast<int>(std::lround((q.left() - fx) * 4)), py = static_cast<int>(std::lround((q.top() - fy) * 4));
  const TDiscKey key{withOpacity(FBrush.color(), opacity), static_cast<int>(std::lround(q.width() * 4)),
                     (px & 3) | ((py & 3) << 2)};
  at = QPointF(fx + (px >> 2) - 1, fy + (py >> 2) - 1);
  image = &discImage(key);
  return true;
}

void TQtCanvas::fillEllipse(const TRectF& r, float opacity) {
  trimDiscCache();
  const QRectF q = toQRect(r);
  QPointF at;
  const QImage* disc = nullptr;
  if (smallDisc(q, opacity, at, disc)) {
    FPainter->setOpacity(1.0);
    FPainter->drawImage(at, *disc);
    return;
  }
  fill(opacity);
  FPainter->drawEllipse(q);
}

void TQtCanvas::fillCircles(const std::vector<TPointF>& centres, float radius, float opacity) {
  if (centres.empty()) return;
  trimDiscCache();
  QPointF at;
  const QImage* disc = nullptr;
  if (!smallDisc(toQRect(circleBox(centres.front(), radius)), opacity, at, disc)) {
    fill(opacity);
    for (const TPointF& c : centres) FPainter->drawEllipse(toQRect(circleBox(c, radius)));
    return;
  }
  FPainter->setOpacity(1.0);
  // Sixteen sub-pixel phases of one disc; each dot picks its own.
  const QImage* phases[16] = {};
  for (const TPointF& c : centres) {
    const QRectF q = toQRect(circleBox(c, radius));
    const double fx = std::floor(q.left()), fy = std::floor(q.top());
    const int px = static_cast<int>(std::lround((q.left() - fx) * 4)), py = static_cast<int>(std::lround((q.top() - fy) * 4));
    const int phase = (px & 3) | ((py & 3) << 2);
    if (!phases[phase]) smallDisc(q, opacity, at, phases[phase]);
    FPainter->drawImage(QPointF(fx + (px >> 2) - 1, fy + (py >> 2) - 1), *phases[phase]);
  }
}

void TQtCanvas::drawRect(const TRectF& r, float opacity) {
  stroke();
  FPainter->setOpacity(opacity);
  FPainter->drawRect(toQRect(r));
}

void TQtCanvas::fillRect(const TRectF& r, float opacity) {
  FPainter->setOpacity(opacity);
  FPainter->fillRect(toQRect(r), FBrush);
}

void TQtCanvas::drawPath(const TPathData& path, float opacity) {
  stroke();
  FPainter->setOpacity(opacity);
  const auto& pts = path.points();
  // Polylines, the common case, go without building a path object.
  bool plain = pts.size() >= 2 && pts[0].Kind == TPathPointKind::MoveTo;
  for (size_t i = 1; plain && i < pts.size(); ++i) plain = pts[i].Kind == TPathPointKind::LineTo;
  if (plain) {
    QVarLengthArray<QPointF, 64> q(static_cast<int>(pts.size()));
    for (size_t i = 0; i < pts.size(); ++i) q[static_cast<int>(i)] = QPointF(pts[i].Point.x, pts[i].Point.y);
    FPainter->drawPolyline(q.data(), q.size());
    return;
  }
  FPainter->drawPath(toQPainterPath(path));
}

void TQtCanvas::fillPath(const TPathData& path, float opacity) {
  fill(opacity);
  QPainterPath q = toQPainterPath(path);
  q.setFillRule(Qt::OddEvenFill);
  FPainter->drawPath(q);
}

void TQtCanvas::drawBitmap(const ICanvasBitmap& bitmap, const TRectF& src, const TRectF& dst,
                           float opacity, bool fastStretch) {
  const auto* b = dynamic_cast<const TQtBitmap*>(&bitmap);
  if (!b) return;
  FPainter->setOpacity(opacity);
  FPainter->setRenderHint(QPainter::SmoothPixmapTransform, !fastStretch);
  FPainter->drawImage(toQRect(dst), b->image(), toQRect(src));
}

void TQtCanvas::fillText(const TRectF& r, const std::string& text, float opacity, TTextAlign horz,
                         TTextAlign vert) {
  int flags = 0;
  flags |= horz == TTextAlign::Leading ? Qt::AlignLeft : horz == TTextAlign::Center ? Qt::AlignHCenter : Qt::AlignRight;
  flags |= vert == TTextAlign::Leading ? Qt::AlignTop : vert == TTextAlign::Center ? Qt::AlignVCenter : Qt::AlignBottom;
  FPainter->setOpacity(opacity);
  FPainter->setFont(FFont);
  FPainter->setPen(QPen(FBrush.color()));
  FPainter->drawText(toQRect(r), flags | Qt::TextDontClip, QString::fromStdString(text));
}

float TQtCanvas::textWidth(const std::string& text) {
  return static_cast<float>(QFontMetricsF(FFont, FPainter->device()).horizontalAdvance(QString::fromStdString(text)));
}

float TQtCanvas::textHeight(const std::string&) {
  return static_cast<float>(QFontMetricsF(FFont, FPainter->device()).height());
}

TPathData TQtCanvas::textToPath(const std::string& text, const TRectF& r) {
  QPainterPath q;
  q.addText(QPointF(r.Left, r.Top + QFontMetricsF(FFont, FPainter->device()).ascent()), FFont,
            QString::fromStdString(text));
  return fromQPainterPath(q);
}

void TQtCanvas::setMatrix(const TMatrix& m) {
  FMatrix = m;
  FPainter->setTransform(QTransform(m.m11, m.m12, m.m21, m.m22, m.m31, m.m32));
}

std::unique_ptr<ICanvasBitmap> TQtCanvas::createBitmap(int w, int h, double scale) {
  return std::make_unique<TQtBitmap>(w, h, scale);
}

class TQtBitmap::TImageCanvas : public TQtCanvas {
 public:
  explicit TImageCanvas(QImage& image) : FImage(image) {}
  bool beginScene() override {
    if (FImagePainter.isActive()) return true;
    if (!FImagePainter.begin(&FImage)) return false;
    const double s = FImage.devicePixelRatio();
    attach(FImagePainter, static_cast<int>(std::lround(FImage.width() / s)),
           static_cast<int>(std::lround(FImage.height() / s)), s);
    return true;
  }
  void endScene() override {
    if (FImagePainter.isActive()) FImagePainter.end();
  }
  ~TImageCanvas() override { endScene(); }

 private:
  QImage& FImage;
  QPainter FImagePainter;
};

TQtBitmap::TQtBitmap(int w, int h, double scale)
    : FImage(std::max(1, static_cast<int>(std::lround(w * scale))),
             std::max(1, static_cast<int>(std::lround(h * scale))), QImage::Format_ARGB32_Premultiplied) {
  FImage.setDevicePixelRatio(scale);
  FImage.fill(Qt::transparent);
}

TQtBitmap::TQtBitmap(QImage image) : FImage(std::move(image)) {}

TQtBitmap::~TQtBitmap() = default;

// The picture's pixels as a QImage. An opaque picture is shown in place
// (its pixels are already Qt's RGB32); one with transparency is copied
// into the premultiplied form Qt draws fastest.
QImage qImageOfPicture(const TRasterImage& image) {
  if (image.isEmpty()) return {};
  const std::vector<uint32_t>& px = *image.FPixels;
  const bool opaque = std::all_of(px.begin(), px.end(), [](uint32_t p) { return (p >> 24) == 0xFF; });
  auto* keep = new std::shared_ptr<const std::vector<uint32_t>>(image.FPixels);
  QImage shared(reinterpret_cast<const uchar*>(px.data()), image.FWidth, image.FHeight, image.FWidth * 4,
                opaque ? QImage::Format_RGB32 : QImage::Format_ARGB32,
                [](void* p) { delete static_cast<std::shared_ptr<const std::vector<uint32_t>>*>(p); }, keep);
  if (opaque) return shared;
  return shared.convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

std::unique_ptr<ICanvasBitmap> TQtCanvas::createOpaqueBitmap(int w, int h, double scale) {
  // RGB32: Qt draws it as a copy, not a blend.
  QImage image(std::max(1, static_cast<int>(std::lround(w * scale))), std::max(1, static_cast<int>(std::lround(h * scale))),
               QImage::Format_RGB32);
  image.setDevicePixelRatio(scale);
  image.fill(Qt::black);
  return std::make_unique<TQtBitmap>(std::move(image));
}

std::unique_ptr<ICanvasBitmap> TQtCanvas::createBitmapFromImage(const TRasterImage& image) {
  if (image.isEmpty()) return nullptr;
  return std::make_unique<TQtBitmap>(qImageOfPicture(image));
}

void TQtCanvas::fillPathWithBitmap(const TPathData& path, const ICanvasBitmap& bitmap, const TMatrix& m,
                                   float opacity) {
  const auto* b = dynamic_cast<const TQtBitmap*>(&bitmap);
  if (!b || b->image().isNull()) return;
  QBrush brush(b->image());
  brush.setTransform(QTransform(m.m11, m.m12, m.m21, m.m22, m.m31, m.m32));
  FPainter->setOpacity(opacity);
  FPainter->setRenderHint(QPainter::SmoothPixmapTransform, true);
  FPainter->fillPath(toQPainterPath(path), brush);
}

ICanvas& TQtBitmap::canvas() {
  if (!FCanvas) FCanvas = std::make_unique<TImageCanvas>(FImage);
  return *FCanvas;
}
