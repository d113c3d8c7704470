#include "platform/qt/qt_text_layout.h"

#include <QFont>
#include <QFontMetricsF>
#include <QPainterPath>
#include <QString>

namespace {

// Fonts are laid out at a large pixel size and scaled down, so that sizes
// of a fraction of a millimetre keep their shape.
constexpr double kReferencePixels = 256.0;

QFont referenceFont(const std::string& family) {
  QFont font(QString::fromStdString(family));
  font.setPixelSize(static_cast<int>(kReferencePixels));
  font.setHintingPreference(QFont::PreferNoHinting);
  font.setStyleStrategy(QFont::ForceOutline);
  font.setKerning(false);
  return font;
}

}  // namespace

TTextExtent TQtTextLayout::measure(const std::string& text, const std::string& family, double size) {
  const QFont font = referenceFont(family);
  const QFontMetricsF fm(font);
  const double k = size / kReferencePixels;
  return {fm.horizontalAdvance(QString::fromStdString(text)) * k, fm.height() * k};
}

TPathData TQtTextLayout::outline(const std::string& text, const std::string& family, double size) {
  const QFont font = referenceFont(family);
  const QFontMetricsF fm(font);
  QPainterPath qp;
  qp.addText(0.0, fm.ascent(), font, QString::fromStdString(text));
  const double k = size / kReferencePixels;
  TPathData out;
  TPointF figureStart;
  bool open = false;
  auto closeIfReturned = [&] {
    if (open && out.LastPoint() == figureStart) out.ClosePath();
    open = false;
  };
  for (int i = 0; i < qp.elementCount(); ++i) {
    const QPainterPath::Element e = qp.elementAt(i);
    const TPointF p = TPointF::fromDouble(e.x * k, e.y * k);
    switch (e.type) {
      case QPainterPath::MoveToElement:
        closeIfReturned();
        out.MoveTo(p);
        figureStart = p;
        open = true;
        break;
      case QPainterPath::LineToElement:
        out.LineTo(p);
        break;
      case QPainterPath::CurveToElement: {
        if (i + 2 >= qp.elementCount()) break;
        const QPainterPath::Element c2 = qp.elementAt(i + 1);
        const QPainterPath::Element end = qp.elementAt(i + 2);
        out.CurveTo(p, TPointF::fromDouble(c2.x * k, c2.y * k),
                    TPointF::fromDouble(end.x * k, end.y * k));
        i += 2;
        break;
      }
      case QPainterPath::CurveToDataElement:
        break;
    }
  }
  closeIfReturned();
  return out;
}
