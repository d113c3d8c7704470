// The stitching simulator: the thread of each row drawn from the point
// where it leaves one hole to the point where it enters the next, in the
// sewing order the holes keep.
#include <algorithm>
#include <cmath>
#include <unordered_map>

#include "app/frm_pelw.h"
#include "surface/scene_painter.h"

namespace {
// Thread width per unit of the thickness option, in millimetres: the
// default 3 gives a 0.6 mm thread.
constexpr double kThreadMmPerUnit = 0.2;
}  // namespace

void TScenePainter::paintStitchSimulator() {
  if (!F.PathList) return;
  std::unordered_map<int, TPW_Path*> holes;
  for (const auto& s : *F.PathList)
    if (s->FShapeType == ShapeType::Hole) holes.emplace(s->FID, s.get());
  if (holes.empty()) return;
  const TRectF visible = F.VisibleRealRect().normalized();
  const TViewOptions& o = F.FViewOptions;
  const double width = std::max(1.0, double(o.FStitchThickness) * kThreadMmPerUnit * F.FScale.x);
  const float opacity = std::clamp(o.FStitchOpacity, 0.0f, 1.0f);
  auto inView = [&visible](const TPointF& p) {
    return p.x >= visible.Left && p.x <= visible.Right && p.y >= visible.Top && p.y <= visible.Bottom;
  };
  for (const auto& shape : *F.PathList) {
    TPW_Path* hole = shape.get();
    if (hole->FShapeType != ShapeType::Hole) continue;
    if (!o.FShowStitchPattern && !hole->FAlwaysShowStitchSimulator) continue;
    if (hole->FNextStitchID < 0) continue;
    const auto it = holes.find(hole->FNextStitchID);
    if (it == holes.end() || it->second == hole) continue;
    const TPW_Path* next = it->second;
    if (!F.PathList->GetlayerVisible(hole->FLayerID)) continue;
    if (!inView(hole->FStitchOut) && !inView(next->FStitchIn)) continue;
    const TPointF a = px(hole->FStitchOut), b = px(next->FStitchIn);
    const TAlphaColor colour = o.FStitchColor < 0 ? hole->FThreadColor
                                                  : static_cast<TAlphaColor>(o.FStitchColor);
    // A dark edge under the thread keeps a light thread readable on the
    // white canvas.
    C.setStroke(0xFF000000, TBrushKind::Solid, TStrokeDash::Solid, static_cast<float>(width + 1.0));
    C.drawLine(a, b, 0.45f * opacity);
    C.setStroke(colour, TBrushKind::Solid, TStrokeDash::Solid, static_cast<float>(width));
    C.drawLine(a, b, opacity);
  }
}
