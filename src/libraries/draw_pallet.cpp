#include "libraries/draw_pallet.h"

#include <cmath>

#include "document/pw_path.h"

namespace {

struct TFactoryRow {
  TAlphaColor dark;
  TAlphaColor white;
  float thickness;
  TStrokeDash dash;
};

using D = TStrokeDash;

// Rows 11 to 35 are one colour on both backgrounds, a grid of 00, 77, BB
// steps; the others were picked to read well on each background.
constexpr TFactoryRow kFactoryRows[kPalletCount] = {
    {0xFF00FFFF, 0xFF00008B, 1.5f, D::Solid},
    {0xFF00FF00, 0xFF006400, 1.5f, D::Solid},
    {0xFFFFFFFF, 0xFF000000, 1.2f, D::Solid},
    {0xFFFFFF00, 0xFFBDB76B, 1.1f, D::Dash},
    {0xFFEE82EE, 0xFF9400D3, 1.5f, D::Dot},
    {0xFF808080, 0xFFA9A9A9, 1.8f, D::DashDot},
    {0xFF808080, 0xFFA9A9A9, 1.8f, D::DashDotDot},
    {0xFFFFA500, 0xFFFF8C00, 1.5f, D::Solid},
    {0xFFA52A2A, 0xFFE9967A, 1.8f, D::Dash},
    {0xFFFFC0CB, 0xFF8B008B, 1.5f, D::Dash},
    {0xFFFF0000, 0xFFFF0000, 1.5f, D::Solid},
    {0xFF000077, 0xFF000077, 1.5f, D::Solid},
    {0xFF0000BB, 0xFF0000BB, 1.5f, D::Solid},
    {0xFF0000FF, 0xFF0000FF, 1.5f, D::Solid},
    {0xFF007700, 0xFF007700, 1.5f, D::Solid},
    {0xFF0077BB, 0xFF0077BB, 1.5f, D::Solid},
    {0xFF00BB00, 0xFF00BB00, 1.5f, D::Solid},
    {0xFF00BB77, 0xFF00BB77, 1.5f, D::Solid},
    {0xFF00BBBB, 0xFF00BBBB, 1.5f, D::Solid},
    {0xFF770000, 0xFF770000, 1.5f, D::Solid},
    {0xFF770077, 0xFF770077, 1.5f, D::Solid},
    {0xFF7700BB, 0xFF7700BB, 1.5f, D::Solid},
    {0xFF777700, 0xFF777700, 1.5f, D::Solid},
    {0xFF777777, 0xFF777777, 1.5f, D::Solid},
    {0xFF7777BB, 0xFF7777BB, 1.5f, D::Solid},
    {0xFF77BB00, 0xFF77BB00, 1.5f, D::Solid},
    {0xFF77BB77, 0xFF77BB77, 1.5f, D::Solid},
    {0xFF77BBBB, 0xFF77BBBB, 1.5f, D::Solid},
    {0xFFBB0000, 0xFFBB0000, 1.5f, D::Solid},
    {0xFFBB0077, 0xFFBB0077, 1.5f, D::Solid},
    {0xFFBB00BB, 0xFFBB00BB, 1.5f, D::Solid},
    {0xFFBB7700, 0xFFBB7700, 1.5f, D::Solid},
    {0xFFBB7777, 0xFFBB7777, 1.5f, D::Solid},
    {0xFFBB77BB, 0xFFBB77BB, 1.5f, D::Solid},
    {0xFFBBBB77, 0xFFBBBB77, 1.5f, D::Solid},
    {0xFFBBBBBB, 0xFFBBBBBB, 1.5f, D::Solid},
    // Stitching holes.
    {0xFFFFFFFF, 0xFFD2691E, 1.0f, D::Dot},
    {0xFFEE82EE, 0xFFEE82EE, 1.5f, D::Dash},
    {0xFFFFFFFF, 0xFF000000, 2.0f, D::Solid},
    {0xFFFF00FF, 0xFFFF40FF, 1.5f, D::Solid},
};

}  // namespace

TDrawPallet factoryPallet(int row) {
  TDrawPallet p;
  if (row < 0 || row >= kPalletCount) return p;
  const TFactoryRow& f = kFactoryRows[row];
  p.FColor_BlackMode = f.dark;
  p.FColor_WhiteMode = f.white;
  p.FThickness = f.thickness;
  p.FDash = f.dash;
  return p;
}

TPalletList::TPalletList() {
  for (int i = 0; i < kPalletCount; ++i) FRows[static_cast<size_t>(i)] = factoryPallet(i);
  FRows[0].FIsSelected = true;
}

void TPalletList::resetToFactory() {
  for (int i = 0; i < kPalletCount; ++i) {
    TDrawPallet& row = FRows[static_cast<size_t>(i)];
    TDrawPallet f = factoryPallet(i);
    f.FIsSelected = row.FIsSelected;
    f.FIsVisible = row.FIsVisible;
    f.FIsBlackBackgroundMode = row.FIsBlackBackgroundMode;
    row = f;
  }
}

int TPalletList::selectedIndex() const {
  for (int i = 0; i < kPalletCount; ++i)
    if (FRows[static_cast<size_t>(i)].FIsSelected) return i;
  return -1;
}

void TPalletList::selectRow(int i) {
  if (!validIndex(i)) return;
  for (auto& r : FRows) r.FIsSelected = false;
  FRows[static_cast<size_t>(i)].FIsSelected = true;
}

void TPalletList::setBlackBackgroundMode(bool black) {
  for (auto& r : FRows) r.FIsBlackBackgroundMode = black;
}

int TPalletList::findPalletIndexForShape(const TPW_Path& shape) const {
  if (shape.isType(ShapeType::Hole)) return kStitchHolePalletIndex;
  if (shape.FPalletIndex >= 1 && validIndex(shape.FPalletIndex)) return shape.FPalletIndex;
  for (int i = 0; i < kPalletCount; ++i) {
    const TDrawPallet& r = FRows[static_cast<size_t>(i)];
    if (r.getColor() == shape.FColor && r.FDash == shape.FDash) return i;
  }
  for (int i = 0; i < kPalletCount; ++i)
    if (FRows[static_cast<size_t>(i)].getColor() == shape.FColor) return i;
  return -1;
}

int TPalletList::findPalletIndex(TAlphaColor color, float thickness, TStrokeDash dash) const {
  for (const bool sameDash : {true, false}) {
    int best = -1;
    double bestDiff = 0.0;
    for (int i = 0; i < kPalletCount; ++i) {
      const TDrawPallet& r = FRows[static_cast<size_t>(i)];
      if (r.getColor() != color || (sameDash && r.FDash != dash)) continue;
      const double diff = std::fabs(double(r.FThickness) - thickness);
      if (best < 0 || diff < bestDiff) {
        best = i;
        bestDiff = diff;
      }
    }
    if (best >= 0) return best;
  }
  return -1;
}

void copyCore(const TPalletList& listFrom, TPalletList& listTo) {
  for (int i = 0; i < kPalletCount; ++i) listTo[i].copyFrom(listFrom[i]);
}
