#include "app/sample_card_holder.h"

#include <memory>
#include <string>

#include "document/shape_list.h"

namespace {

// Palette rows the sample uses: outline, stitch line, text.
constexpr int kOutlineRow = 0;
constexpr int kStitchRow = 3;
constexpr int kTextRow = 2;

struct TBuilder {
  TShapeList& list;
  int layer;

  TPW_Path& add(int row, TAlphaColor colour, float thickness, TStrokeDash dash) {
    auto s = std::make_unique<TPW_Path>(row, colour, thickness, dash, list.getNextID());
    TPW_Path& ref = *s;
    list.add(std::move(s), layer);
    return ref;
  }

  // A rectangle from (x0, y0) to (x1, y1) with corners of radius r, as
  // four lines and four quarter arcs, clockwise from the top left corner.
  void roundedRect(float x0, float y0, float x1, float y1, float r, int row, TAlphaColor colour,
                   float thickness, TStrokeDash dash) {
    const TPointF rad(r, r);
    auto arc = [&](TPointF c, TPointF st, TPointF ed) {
      add(row, colour, thickness, dash).drawArcPath(c, rad, st, ed, 90);
    };
    auto line = [&](TPointF a, TPointF b) { add(row, colour, thickness, dash).drawLinePath(a, b); };
    arc(TPointF(x0 + r, y0 + r), TPointF(x0, y0 + r), TPointF(x0 + r, y0));
    line(TPointF(x0 + r, y0), TPointF(x1 - r, y0));
    arc(TPointF(x1 - r, y0 + r), TPointF(x1 - r, y0), TPointF(x1, y0 + r));
    line(TPointF(x1, y0 + r), TPointF(x1, y1 - r));
    arc(TPointF(x1 - r, y1 - r), TPointF(x1, y1 - r), TPointF(x1 - r, y1));
    line(TPointF(x1 - r, y1), TPointF(x0 + r, y1));
    arc(TPointF(x0 + r, y1 - r), TPointF(x0 + r, y1), TPointF(x0, y1 - r));
    line(TPointF(x0, y1 - r), TPointF(x0, y0 + r));
  }

  void text(const std::string& t, TPointF at, float size) {
    add(kTextRow, 0xFFFFFFFF, 1.0f, TStrokeDash::Solid).drawTextPath(t, at, size, 0, "DejaVu Sans", 0, 1);
  }
};

}  // namespace

void buildCardHolderSample(TShapeList& list) {
  const int layer = list.FLayers.empty() ? 0 : list.FLayers.front();
  TBuilder b{list, layer};
  // The body: 100 x 70 mm, folded nowhere; cards slide in from the top.
  b.roundedRect(0, 0, 100, 70, 8, kOutlineRow, 0xFF00FFFF, 1.5f, TStrokeDash::Solid);
  b.roundedRect(3, 3, 97, 67, 5, kStitchRow, 0xFFFFFF00, 1.1f, TStrokeDash::Dash);
  // The pocket: 100 x 45 mm, sewn onto the body's lower part.
  b.roundedRect(0, 85, 100, 130, 8, kOutlineRow, 0xFF00FFFF, 1.5f, TStrokeDash::Solid);
  b.roundedRect(3, 88, 97, 127, 5, kStitchRow, 0xFFFFFF00, 1.1f, TStrokeDash::Dash);
  b.text("Card holder - body, cut 1", TPointF(10, 20), 5);
  b.text("Stitch line 3 mm in", TPointF(10, 30), 4);
  b.text("Pocket, cut 1", TPointF(10, 105), 5);
  b.text("Round corners R8", TPointF(10, 115), 4);
}
