#include "app/sample_card_holder.h"

#include <cmath>
#include <memory>
#include <numbers>
#include <string>
#include <vector>

#include "document/shape_list.h"
#include "stitching/pricking_iron.h"

namespace {

// Palette rows the sample uses: outline, stitch line, text, holes.
constexpr int kOutlineRow = 0;
constexpr int kStitchRow = 3;
constexpr int kTextRow = 2;
constexpr int kHoleRow = 36;

constexpr double kDeg = std::numbers::pi / 180.0;

// One piece of a stitch line: a straight line, or an arc of a circle given
// by its centre, radius, start angle and sweep in screen degrees (y down,
// positive sweeps clockwise).
struct TLinePiece {
  bool arc = false;
  TPointF a, b;  // the ends of a line
  TPointF c;
  double r = 0, start = 0, sweep = 0;

  static TLinePiece line(TPointF from, TPointF to) { return {false, from, to, {}, 0, 0, 0}; }
  static TLinePiece arcOf(TPointF centre, double radius, double startDeg, double sweepDeg) {
    return {true, {}, {}, centre, radius, startDeg, sweepDeg};
  }

  double length() const {
    return arc ? r * std::abs(sweep) * kDeg : std::hypot(double(b.x) - a.x, double(b.y) - a.y);
  }
  TPointF pointAtAngle(double deg) const {
    return TPointF::fromDouble(c.x + r * std::cos(deg * kDeg), c.y + r * std::sin(deg * kDeg));
  }
  TPointF from() const { return arc ? pointAtAngle(start) : a; }
  TPointF to() const { return arc ? pointAtAngle(start + sweep) : b; }
  // The point `s` millimetres along, and the direction of travel there.
  void at(double s, double& x, double& y, double& dx, double& dy) const {
    const double len = length();
    const double t = len > 0 ? s / len : 0;
    if (!arc) {
      x = a.x + (double(b.x) - a.x) * t;
      y = a.y + (double(b.y) - a.y) * t;
      dx = (double(b.x) - a.x) / len;
      dy = (double(b.y) - a.y) / len;
      return;
    }
    const double deg = (start + sweep * t) * kDeg;
    const double turn = sweep >= 0 ? 1 : -1;
    x = c.x + r * std::cos(deg);
    y = c.y + r * std::sin(deg);
    dx = -std::sin(deg) * turn;
    dy = std::cos(deg) * turn;
  }
};

// A rectangle from (x0, y0) to (x1, y1) with corners of radius r, clockwise
// on the screen from the top left corner's arc.
std::vector<TLinePiece> roundedRect(float x0, float y0, float x1, float y1, float r) {
  return {
      TLinePiece::arcOf(TPointF(x0 + r, y0 + r), r, 180, 90),
      TLinePiece::line(TPointF(x0 + r, y0), TPointF(x1 - r, y0)),
      TLinePiece::arcOf(TPointF(x1 - r, y0 + r), r, 270, 90),
      TLinePiece::line(TPointF(x1, y0 + r), TPointF(x1, y1 - r)),
      TLinePiece::arcOf(TPointF(x1 - r, y1 - r), r, 0, 90),
      TLinePiece::line(TPointF(x1 - r, y1), TPointF(x0 + r, y1)),
      TLinePiece::arcOf(TPointF(x0 + r, y1 - r), r, 90, 90),
      TLinePiece::line(TPointF(x0, y1 - r), TPointF(x0, y0 + r)),
  };
}

// The pocket's stitch line: down the left side from y0, round the bottom
// corners (radius r) and up the right side to y0.
std::vector<TLinePiece> openAtTheTop(float x0, float y0, float x1, float y1, float r) {
  return {
      TLinePiece::line(TPointF(x0, y0), TPointF(x0, y1 - r)),
      TLinePiece::arcOf(TPointF(x0 + r, y1 - r), r, 180, -90),
      TLinePiece::line(TPointF(x0 + r, y1), TPointF(x1 - r, y1)),
      TLinePiece::arcOf(TPointF(x1 - r, y1 - r), r, 90, -90),
      TLinePiece::line(TPointF(x1, y1 - r), TPointF(x1, y0)),
  };
}

// The rotation the stitch tool gives a hole laid along (dx, dy): the blade
// across the row turned to lie along it. Single precision, as the tool has it.
float holeRotationAlong(double dx, double dy) {
  const float x = static_cast<float>(dx), y = static_cast<float>(dy);
  if (x == 0.0f) return y < 0 ? 180.0f : 0.0f;
  return (std::atan2(y, x) - 1.5707964f) * 57.29578f;
}

struct TBuilder {
  TShapeList& list;
  int layer;

  TPW_Path& add(int row, TAlphaColor colour, float thickness, TStrokeDash dash) {
    auto s = std::make_unique<TPW_Path>(row, colour, thickness, dash, list.getNextID());
    TPW_Path& ref = *s;
    list.add(std::move(s), layer);
    return ref;
  }

  void draw(const std::vector<TLinePiece>& pieces, int row, TAlphaColor colour, float thickness,
            TStrokeDash dash) {
    for (const TLinePiece& p : pieces) {
      TPW_Path& s = add(row, colour, thickness, dash);
      if (p.arc) s.drawArcPath(p.c, TPointF(static_cast<float>(p.r), static_cast<float>(p.r)), p.from(), p.to(),
                               static_cast<float>(p.sweep));
      else s.drawLinePath(p.a, p.b);
    }
  }

  // Holes along the pieces in order, spaced evenly: round a closed line the
  // last hole leads back to the first; an open one has a hole at each end.
  void punchRow(const std::vector<TLinePiece>& pieces, bool closed, TPrickingIron& iron) {
    double total = 0;
    for (const TLinePiece& p : pieces) total += p.length();
    if (!(total > 0) || !(iron.FPitch > 0)) return;
    const int gaps = std::max(1, static_cast<int>(std::lround(total / iron.FPitch)));
    const double pitch = total / gaps;
    const int count = closed ? gaps : gaps + 1;
    std::vector<TPW_Path*> row;
    size_t piece = 0;
    double pieceStart = 0;
    for (int k = 0; k < count; ++k) {
      const double s = std::min(k * pitch, total);
      while (piece + 1 < pieces.size() && s > pieceStart + pieces[piece].length()) {
        pieceStart += pieces[piece].length();
        ++piece;
      }
      double x, y, dx, dy;
      pieces[piece].at(std::min(s - pieceStart, pieces[piece].length()), x, y, dx, dy);
      TPW_Path& h = add(kHoleRow, 0xFFFFFFFF, 1.0f, TStrokeDash::Dot);
      h.createStichPath(TPointF::fromDouble(x, y), false, &iron, holeRotationAlong(dx, dy), 0);
      if (!row.empty()) {
        row.back()->FNextStitchID = h.FID;
        h.FPrevStitchID = row.back()->FID;
      }
      row.push_back(&h);
    }
    if (closed && row.size() > 2) {
      row.back()->FNextStitchID = row.front()->FID;
      row.front()->FPrevStitchID = row.back()->FID;
    }
  }

  void text(const std::string& t, TPointF at, float size, const std::string& font) {
    add(kTextRow, 0xFFFFFFFF, 1.0f, TStrokeDash::Solid).drawTextPath(t, at, size, 0, font, 0, 1);
  }
};

}  // namespace

void buildCardHolderSample(TShapeList& list, TPrickingIron* iron, const std::string& langID) {
  const int layer = list.FLayers.empty() ? 0 : list.FLayers.front();
  TBuilder b{list, layer};
  const TAlphaColor outline = 0xFF00FFFF, stitchLine = 0xFFFFFF00;
  // The body: 100 x 70 mm; cards slide in from the top of the pocket.
  const auto bodyStitch = roundedRect(3, 3, 97, 67, 5);
  b.draw(roundedRect(0, 0, 100, 70, 8), kOutlineRow, outline, 1.5f, TStrokeDash::Solid);
  b.draw(bodyStitch, kStitchRow, stitchLine, 1.1f, TStrokeDash::Dash);
  // The pocket: 100 x 45 mm, sewn onto the body's lower part along three
  // sides; its row begins 3 mm below the opening.
  const auto pocketStitch = openAtTheTop(3, 88, 97, 127, 5);
  b.draw(roundedRect(0, 85, 100, 130, 8), kOutlineRow, outline, 1.5f, TStrokeDash::Solid);
  b.draw(pocketStitch, kStitchRow, stitchLine, 1.1f, TStrokeDash::Dash);
  const bool ja = langID == "ja";
  const std::string font = ja ? "IPAGothic" : "DejaVu Sans";
  b.text(ja ? "カードケース 本体 1枚" : "Card holder - body, cut 1", TPointF(10, 20), 5, font);
  b.text(ja ? "菱目打ち 3.85 mm、縁から 3 mm" : "Diamond iron 3.85 mm, 3 mm in", TPointF(10, 30), 4, font);
  b.text(ja ? "ポケット 1枚" : "Pocket, cut 1", TPointF(10, 105), 5, font);
  b.text(ja ? "角丸 R8" : "Round corners R8", TPointF(10, 115), 4, font);
  if (!iron) return;
  // Sewn clockwise from the end of the top left corner.
  std::vector<TLinePiece> bodyRow(bodyStitch.begin() + 1, bodyStitch.end());
  bodyRow.push_back(bodyStitch.front());
  b.punchRow(bodyRow, true, *iron);
  b.punchRow(pocketStitch, false, *iron);
}
