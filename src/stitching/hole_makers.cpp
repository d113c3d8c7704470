// The hole makers of TPW_Path: the outline a pricking iron's blade punches,
// built around the origin, turned with the row and moved to its place, and
// the two points where the thread enters and leaves the hole.
#include <string>

#include "document/pw_path.h"
#include "stitching/pricking_iron.h"

namespace {

constexpr double kDegToRad = 0.017453292519943295;
// The flat hole turns with a shorter constant, in single precision.
constexpr float kDegToRadSingle = 0.017453292f;

std::string upper(std::string s) {
  for (char& c : s)
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  return s;
}

TPointF P(double x, double y) { return TPointF::fromDouble(x, y); }

// What every maker does first: the shape becomes a hole of the letter at pt
// with an empty path and the blade's size.
void beginHole(TPW_Path& s, const TPointF& pt, const char* letter, float rotation,
               const TPrickingIron& iron) {
  s.resetBoundary();
  s.FDash = TStrokeDash::Solid;
  s.FCenter = pt;
  s.FRotation = rotation;
  s.FShapeType = ShapeType::Hole;
  s.FStitchType = letter;
  s.FData.Clear();
  s.FWidth = iron.FWidth;
  s.FHeight = iron.FHeight;
}

// A cross of rulerLen each way around the origin, to measure the blade by.
void addRuler(TPathData& d, float rulerLen) {
  if (!(rulerLen > 0)) return;
  d.MoveTo(P(-double(rulerLen), 0));
  d.LineTo(P(rulerLen, 0));
  d.MoveTo(P(0, -double(rulerLen)));
  d.LineTo(P(0, rulerLen));
}

void turnAndPlace(TPathData& d, double radians, const TPointF& pt) {
  d.ApplyMatrix(TMatrix::rotation(radians));
  d.Translate(pt.x, pt.y);
}

// A w by h rectangle centred on the origin, drawn from its top left corner.
// With no width it is a single stroke down the blade, ending at `zeroEnd`.
void addBladeRectangle(TPathData& d, double w, double h, const TPointF& zeroEnd) {
  const TPointF start = P(-w / 2, -h / 2);
  d.MoveTo(start);
  if (w == 0.0) {
    d.LineTo(zeroEnd);
    return;
  }
  d.LineTo(P(-w / 2 + w, -h / 2));
  d.LineTo(P(-w / 2 + w, -h / 2 + h));
  d.LineTo(P(-w / 2, -h / 2 + h));
  d.LineTo(start);
}

// The blade angle as drawn: mirrored unless the row is inverted.
double bladeAngle(const TPrickingIron& iron, bool inverted) {
  return inverted ? double(iron.FAngle) : -double(iron.FAngle);
}

}  // namespace

void TPW_Path::setAsDiamondHole(const TPointF& pt, const TPrickingIron& PrickingIron,
                                bool IsInverted, float rotation, float rulerLen) {
  beginHole(*this, pt, "D", rotation, PrickingIron);
  FStitchInversed = IsInverted;
  const double w = FWidth, h = FHeight;
  addRuler(FData, rulerLen);
  FData.MoveTo(P(0, -h / 2));
  if (w == 0.0) {
    FData.LineTo(P(0, h / 2));
  } else {
    FData.LineTo(P(w / 2, 0));
    FData.LineTo(P(0, h / 2));
    FData.LineTo(P(-w / 2, 0));
    FData.LineTo(P(0, -h / 2));
  }
  turnAndPlace(FData, (double(rotation) + bladeAngle(PrickingIron, IsInverted)) * kDegToRad, pt);
}

void TPW_Path::setAsFrenchHole(const TPointF& pt, const TPrickingIron& PrickingIron,
                               bool IsInverted, float rotation, float rulerLen) {
  beginHole(*this, pt, "F", rotation, PrickingIron);
  FStitchInversed = IsInverted;
  const double w = FWidth, h = FHeight;
  addRuler(FData, rulerLen);
  addBladeRectangle(FData, w, h, P(0, h / 2));
  turnAndPlace(FData, (double(rotation) + bladeAngle(PrickingIron, IsInverted)) * kDegToRad, pt);
}

void TPW_Path::setAsFlatHole(const TPointF& pt, const TPrickingIron& PrickingIron, float rotation,
                             float rulerLen) {
  beginHole(*this, pt, "L", rotation, PrickingIron);
  const double w = FWidth, h = FHeight;
  addRuler(FData, rulerLen);
  // A flat blade of no width ends at (0, h), not at (0, h/2) as the others
  // do; holes saved that way keep their look.
  addBladeRectangle(FData, w, h, P(0, h));
  const float radians = rotation * kDegToRadSingle;
  turnAndPlace(FData, radians, pt);
}

void TPW_Path::setAsRoundHole(const TPointF& pt, const TPrickingIron& PrickingIron, float rotation,
                              float rulerLen) {
  beginHole(*this, pt, "R", rotation, PrickingIron);
  const float r = PrickingIron.FWidth / 2;
  FWidth = 2 * r;
  FHeight = 2 * r;
  // A round hole has no direction: the circle is laid out around pt itself
  // and nothing is turned or moved, the ruler cross included.
  addRuler(FData, rulerLen);
  FData.AddEllipse(TRectF(P(double(pt.x) - r, double(pt.y) - r), P(double(pt.x) + r, double(pt.y) + r)));
}

void TPW_Path::createStichPath(const TPointF& center, bool IsInverted, TPrickingIron* APrickingIron,
                               float rotation, float rulerLen) {
  if (!APrickingIron) return;
  const std::string letter = upper(APrickingIron->FBladeType);
  if (letter == "D") {
    setAsDiamondHole(center, *APrickingIron, IsInverted, rotation, rulerLen);
  } else if (letter == "F") {
    setAsFrenchHole(center, *APrickingIron, IsInverted, rotation, rulerLen);
  } else if (letter == "L") {
    setAsFlatHole(center, *APrickingIron, rotation, rulerLen);
  } else if (letter == "R") {
    setAsRoundHole(center, *APrickingIron, rotation, rulerLen);
  } else {
    // A blade this program does not know: a hole without an outline.
    resetBoundary();
    FShapeType = ShapeType::Hole;
    FStitchType = APrickingIron->FBladeType;
    FData.Clear();
    FCenter = center;
  }
  FStartPt = center;
  FCenter = center;
  FThickness = 1.0f;
  FPrickingIron = APrickingIron;
  FLine_param_a = 0;
  FLine_param_b = 0;
  FIsVerticalLine = false;
  FIsHorizontalLine = false;
  FRotation = rotation;
  calcStitchInOutPos();
}

void TPW_Path::calcStitchInOutPos() {
  double angle = 0;
  if (FPrickingIron) angle = FStitchInversed ? double(FPrickingIron->FAngle) : -double(FPrickingIron->FAngle);
  const double w = FWidth, h = FHeight;
  double inX, inY, outX, outY;
  if (FStitchType == "R") {
    inX = 0;
    inY = -h / 2 * 0.75;
    outX = 0;
    outY = h / 2 * 0.75;
  } else if (FStitchType == "D") {
    inX = w * 0.15;
    inY = -h / 2 * 0.65;
    outX = -w * 0.15;
    outY = h / 2 * 0.65;
  } else if (FStitchType == "F") {
    inX = w * 0.15;
    inY = -h / 2 * 0.75;
    outX = -w * 0.15;
    outY = h / 2 * 0.75;
  } else {
    inX = w * 0.05;
    inY = -h / 2 * 0.75;
    outX = -w * 0.05;
    outY = h / 2 * 0.75;
  }
  TPathData d;
  d.MoveTo(P(inX, inY));
  d.LineTo(P(outX, outY));
  turnAndPlace(d, (double(FRotation) + angle) * kDegToRad, FCenter);
  FStitchIn = d[0].Point;
  FStitchOut = d[1].Point;
}
