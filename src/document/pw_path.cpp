// Construction, copying and the path builders of TPW_Path.
#include "document/pw_path.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "document/point_helpers.h"
#include "geometry/arc_math.h"
#include "platform/text_layout.h"

TPW_Path::TPW_Path(int APalletIdx, TAlphaColor AColor, float AThickness, TStrokeDash ADash, int ID)
    : FColor(AColor),
      FDash(ADash),
      FThickness(AThickness),
      FID(ID),
      FGUID(TGUID::create()),
      FPalletIndex(APalletIdx) {}

std::unique_ptr<TPW_Path> TPW_Path::createCopy() const {
  auto c = std::make_unique<TPW_Path>(FPalletIndex, FColor, FThickness, FDash, FID);
  c->FSelected = FSelected;
  c->FShapeType = FShapeType;
  c->FCenter = FCenter;
  c->FData = FData;
  c->FRotation = FRotation;
  c->FWidth = FWidth;
  c->FHeight = FHeight;
  c->FStitchType = FStitchType;
  c->FStitchInversed = FStitchInversed;
  c->FStartPt = FStartPt;
  c->FEndPt = FEndPt;
  c->FBezierCp2 = FBezierCp2;
  c->FBezierCp1 = FBezierCp1;
  c->FPrickingIron = FPrickingIron;
  c->FLine_param_a = FLine_param_a;
  c->FLine_param_b = FLine_param_b;
  c->FIsVerticalLine = FIsVerticalLine;
  c->FIsHorizontalLine = FIsHorizontalLine;
  c->FClickedPoint = FClickedPoint;
  c->FSweepAngle = FSweepAngle;
  c->FStartAngle = FStartAngle;
  c->FText = FText;
  c->FFontSize = FFontSize;
  c->FFontFamily = FFontFamily;
  c->FName = FName;
  c->FGUID = FGUID;
  c->FGroupID = FGroupID;
  c->FIsSymmetryTarget = FIsSymmetryTarget;
  c->FIsDimensionLine = FIsDimensionLine;
  c->FShowArrowSt = FShowArrowSt;
  c->FShowArrowEd = FShowArrowEd;
  c->FStitchIn = FStitchIn;
  c->FStitchOut = FStitchOut;
  c->FPrevStitchID = FPrevStitchID;
  c->FNextStitchID = FNextStitchID;
  c->FMandalaID = FMandalaID;
  c->FMandalaSectionID = FMandalaSectionID;
  c->FMandalaCenter = FMandalaCenter;
  c->FNumMandalaSections = FNumMandalaSections;
  c->FMandalaRotation = FMandalaRotation;
  c->FLayerID = FLayerID;
  c->FShowBezierOffsetSupport = FShowBezierOffsetSupport;
  c->FOpacity = FOpacity;
  c->FTextStretch = FTextStretch;
  c->FTextRadius = FTextRadius;
  c->FCatalogGUID = FCatalogGUID;
  c->FThreadColor = FThreadColor;
  c->FCatalogRotation = FCatalogRotation;
  c->FAlwaysShowStitchSimulator = FAlwaysShowStitchSimulator;
  c->FCatalogScale = FCatalogScale;
  c->FTextFill = FTextFill;
  return c;
}

void TPW_Path::copyPalletValuesFrom(const TPW_Path& src) {
  FPalletIndex = src.FPalletIndex;
  FColor = src.FColor;
  FThickness = src.FThickness;
  FDash = src.FDash;
}

void TPW_Path::clearTempParams() {
  FTemp_HasStichingHole = false;
  FTemp_vector = TPointF();
  FTemp_OnPath = nullptr;
}

void TPW_Path::resetBoundary() {
  FIsBoundaryCalculated = false;
  FControlPointsCache.clear();
}

void TPW_Path::cleanPathData() {
  std::string text = FData.getData();
  if (text.rfind("M0,0 M", 0) != 0) return;
  while (text.rfind("M0,0 M", 0) == 0) text.erase(0, 5);
  FData.setData(text);
}

void TPW_Path::flattenAndClean(double flatness) {
  FData.Flatten(flatness);
  cleanPathData();
}

void TPW_Path::calcLineParam() {
  const double dx = double(FStartPt.x) - FEndPt.x;
  const double dy = double(FStartPt.y) - FEndPt.y;
  if (round2(dx) == 0.0) {
    FLine_param_a = 2147483648.0f;
    FLine_param_b = 0;
    FIsVerticalLine = true;
    FIsHorizontalLine = false;
  } else if (round2(dy) == 0.0) {
    FLine_param_a = 0;
    FLine_param_b = FStartPt.y;
    FIsVerticalLine = false;
    FIsHorizontalLine = true;
  } else {
    const double a = dy / dx;
    FLine_param_a = static_cast<float>(a);
    FLine_param_b = static_cast<float>(FStartPt.y - a * FStartPt.x);
    FIsVerticalLine = false;
    FIsHorizontalLine = false;
  }
}

bool TPW_Path::calcCrossPointWith(const TPW_Path& line2, float& x, float& y) const {
  if (FIsVerticalLine && line2.FIsVerticalLine) return false;
  if (FIsHorizontalLine && line2.FIsHorizontalLine) return false;
  if (round2(double(FLine_param_a) - line2.FLine_param_a) == 0.0) return false;
  double cx, cy;
  if (FIsVerticalLine) {
    cx = FStartPt.x;
    cy = line2.FIsHorizontalLine ? double(line2.FLine_param_b)
                                 : double(line2.FLine_param_a) * cx + line2.FLine_param_b;
  } else if (line2.FIsVerticalLine) {
    cx = line2.FStartPt.x;
    cy = FIsHorizontalLine ? double(FLine_param_b) : double(FLine_param_a) * cx + FLine_param_b;
  } else {
    cx = (double(line2.FLine_param_b) - FLine_param_b) /
         (double(FLine_param_a) - line2.FLine_param_a);
    if (FIsHorizontalLine) cy = FLine_param_b;
    else if (line2.FIsHorizontalLine) cy = line2.FLine_param_b;
    else cy = double(FLine_param_a) * cx + FLine_param_b;
  }
  x = static_cast<float>(cx);
  y = static_cast<float>(cy);
  return true;
}

bool TPW_Path::calcCrossPointWith(const TPW_Path& line2, TPointF& pt) const {
  return calcCrossPointWith(line2, pt.x, pt.y);
}

void TPW_Path::drawLinePath(const TPointF& st, const TPointF& ep) {
  resetBoundary();
  FShapeType = ShapeType::Line;
  FStartPt = st;
  FEndPt = ep;
  FData.Clear();
  FData.MoveTo(st);
  FData.LineTo(ep);
  calcLineParam();
}

void TPW_Path::drawBezierPath(const TPointF& st, const TPointF& cp1, const TPointF& cp2,
                              const TPointF& ep) {
  resetBoundary();
  FShapeType = ShapeType::Bezier;
  FStartPt = st;
  FBezierCp1 = cp1;
  FBezierCp2 = cp2;
  FEndPt = ep;
  FData.Clear();
  FData.MoveTo(st);
  FData.CurveTo(cp1, cp2, ep);
  flattenAndClean(0.3);
}

double arcFlatness(double r) {
  if (r < 0.5) return r / 20.0;
  if (r < 1.0) return r / 30.0;
  if (r < 2.0) return r / 40.0;
  if (r < 5.0) return r / 50.0;
  return 0.3;
}

void TPW_Path::drawArcPath(const TPointF& center, const TPointF& radius, const TPointF& startPt,
                           const TPointF& endPt, float SweepAngle) {
  resetBoundary();
  FShapeType = ShapeType::Arc;
  FCenter = center;
  FStartPt = startPt;
  FEndPt = endPt;
  FWidth = radius.x;
  FHeight = radius.y;
  FStartAngle = static_cast<float>(arcStartAngle(center, radius.x, startPt));
  FSweepAngle = normaliseSweep(SweepAngle);
  FData.Clear();
  FData.AddArc(center, radius, FStartAngle, FSweepAngle);
  flattenAndClean(arcFlatness(radius.x));
}

void TPW_Path::drawEllipsePath(const TPointF& center, float width, float height) {
  resetBoundary();
  FShapeType = ShapeType::Ellipse;
  FCenter = center;
  FWidth = width;
  FHeight = height;
  FStartPt = TPointF::fromDouble(double(center.x) - width / 2.0, center.y);
  FEndPt = FStartPt;
  FData.Clear();
  FData.MoveTo(center);
  FData.AddEllipse(TRectF(TPointF::fromDouble(double(center.x) - width / 2.0,
                                              double(center.y) - height / 2.0),
                          TPointF::fromDouble(double(center.x) + width / 2.0,
                                              double(center.y) + height / 2.0)));
  flattenAndClean(0.3);
}

void TPW_Path::drawDotPath(const TPointF& center, float radius) {
  resetBoundary();
  FShapeType = ShapeType::Dot;
  FCenter = center;
  FStartPt = center;
  FWidth = FHeight = static_cast<float>(2.0 * radius);
  FData.Clear();
  FData.MoveTo(center);
  FData.AddEllipse(TRectF(TPointF::fromDouble(double(center.x) - radius, double(center.y) - radius),
                          TPointF::fromDouble(double(center.x) + radius, double(center.y) + radius)));
}

namespace {

// Splits UTF-8 text into its characters (code points), each as its own string.
std::vector<std::string> utf8Characters(const std::string& s) {
  std::vector<std::string> out;
  size_t i = 0;
  while (i < s.size()) {
    const unsigned char c = static_cast<unsigned char>(s[i]);
    size_t len = 1;
    if (c >= 0xF0) len = 4;
    else if (c >= 0xE0) len = 3;
    else if (c >= 0xC0) len = 2;
    len = std::min(len, s.size() - i);
    out.push_back(s.substr(i, len));
    i += len;
  }
  return out;
}

}  // namespace

void TPW_Path::drawTextPath(const std::string& tx, const TPointF& startPt, float AFontSize,
                            float ARotation, const std::string& FontFamily, float radius,
                            float stretch) {
  const double pi = std::numbers::pi;
  resetBoundary();
  FData.Clear();
  FText = tx;
  FFontSize = AFontSize;
  FFontFamily = FontFamily;
  FShapeType = ShapeType::Text;
  FRotation = ARotation;
  FTextRadius = radius;
  FTextStretch = stretch;
  const double a0 = ARotation * pi / 180.0;

  ITextLayout& layout = textLayout();
  const TTextExtent whole = layout.measure(tx, FontFamily, AFontSize);
  const double W = whole.width, H = whole.height;
  const TPointF C = TPointF::fromDouble(double(startPt.x) + radius, startPt.y);
  double A = W * stretch / radius;
  double localStretch = stretch;
  if (radius > 0 && A > 2 * pi) {
    A = 2 * pi;
    localStretch = 2 * pi * radius / W;
  }

  const std::vector<std::string> chars = utf8Characters(tx);
  const size_t n = chars.size();
  std::vector<double> w(n), h(n), p(n, 0.0);
  double S = 0.0;
  for (size_t i = 0; i < n; ++i) {
    const TTextExtent e = layout.measure(chars[i], FontFamily, AFontSize);
    w[i] = e.width;
    h[i] = e.height;
    S += w[i];
  }
  for (size_t i = 1; i < n; ++i) {
    if (radius > 0) p[i] = p[i - 1] + (w[i - 1] + w[i]) / 2.0 * localStretch;
    else p[i] = p[i - 1] + w[i - 1] * localStretch;
  }

  std::string text = FData.getData();
  for (size_t i = 0; i < n; ++i) {
    TPathData scratch = layout.outline(chars[i], FontFamily, AFontSize);
    double b = a0;
    if (i > 0) b += A * p[i] / (S * localStretch);
    if (radius > 0) {
      const double px = C.x + radius * std::cos(b - pi);
      const double py = C.y + radius * std::sin(b - pi);
      scratch.Translate(-w[i] / 2.0, -h[i] / 2.0);
      scratch.ApplyMatrix(TMatrix::rotation(b - pi / 2.0));
      scratch.Translate(px, py);
    } else {
      scratch.Translate(p[i] + startPt.x, double(startPt.y) - h[i] / 2.0);
    }
    text += scratch.getData();
  }
  FData.setData(text);

  cleanPathData();
  const TRectF r = getMinMaxRect();
  if (FRotation != 0 && FTextRadius == 0) {
    FData.Translate(-double(r.Left), -double(r.Top));
    FData.ApplyMatrix(TMatrix::rotation(FRotation * pi / 180.0));
    FData.Translate(r.Left, r.Top);
  }
  resetBoundary();
  FCenter = getMinMaxRect().centerPoint();
  FWidth = static_cast<float>(S * FTextStretch);
  FHeight = static_cast<float>(H);
}
