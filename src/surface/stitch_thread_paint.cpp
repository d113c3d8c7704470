// The stitching simulator on the canvas: the thread of each row as the
// simulation lays it out, each stitch from the point where the thread
// leaves one hole to the point where it enters the next.
#include <algorithm>
#include <cmath>
#include <vector>

#include "app/frm_pelw.h"
#include "stitching/stitch_simulation.h"
#include "surface/scene_painter.h"

namespace {

// Thread width per unit of the thickness option, in millimetres: the
// default 3 gives a 0.6 mm thread, a common saddle stitching thread.
constexpr double kThreadMmPerUnit = 0.2;
// The dark edge round each stitch, in pixels each side, and its strength.
constexpr double kThreadEdge = 0.75;
constexpr float kThreadEdgeOpacity = 0.55f;
// Strokes up to this wide, in pixels, get square ends.
constexpr double kSquareEndsUpTo = 3.0;

}  // namespace

TStitchSimulationOptions stitchSimulationOptions(const TViewOptions& o) {
  TStitchSimulationOptions s;
  s.FShowStitchPattern = o.FShowStitchPattern;
  // No thread colour of its own: the holes' default, white.
  if (o.FStitchColor >= 0) s.FStitchColor = static_cast<TAlphaColor>(o.FStitchColor);
  s.FStitchThickness = o.FStitchThickness;
  s.FStitchOpacity = o.FStitchOpacity;
  return s;
}

double threadWidthPixels(float stitchThickness, double pixelsPerMm) {
  return std::max(1.0, double(stitchThickness) * kThreadMmPerUnit * pixelsPerMm);
}

void TScenePainter::paintStitchSimulator() {
  if (!F.PathList) return;
  // Holes of hidden layers drop out of their rows; the others are all
  // given, so that stitches keep their place in the row whatever is in view.
  std::vector<const TPW_Path*> holes;
  for (const auto& s : *F.PathList)
    if (s->FShapeType == ShapeType::Hole && F.PathList->GetlayerVisible(s->FLayerID))
      holes.push_back(s.get());
  if (holes.empty()) return;
  const TStitchSimulation sim = buildStitchSimulation(holes, stitchSimulationOptions(F.FViewOptions));
  if (sim.FStitches.empty()) return;

  const TRectF visible = F.VisibleRealRect().normalized();
  const bool even = F.FPaintSwitches.chkShowEvenStitches, odd = F.FPaintSwitches.chkShowOddStitches;
  std::vector<const TThreadStitch*> shown;
  shown.reserve(sim.FStitches.size());
  for (const TThreadStitch& st : sim.FStitches) {
    if (!(st.isEven() ? even : odd)) continue;
    if (std::max(st.FFrom.x, st.FTo.x) < visible.Left || std::min(st.FFrom.x, st.FTo.x) > visible.Right ||
        std::max(st.FFrom.y, st.FTo.y) < visible.Top || std::min(st.FFrom.y, st.FTo.y) > visible.Bottom)
      continue;
    shown.push_back(&st);
  }
  const double width = threadWidthPixels(sim.FThickness, F.FScale.x);
  const float opacity = std::clamp(sim.FOpacity, 0.0f, 1.0f);
  // All edges first, then all threads: where stitches touch in a hole the
  // threads lie side by side instead of each cutting into the last.
  const double edge = width + 2 * kThreadEdge;
  // A thread a few pixels wide shows no round ends; square ones cost Qt a
  // third as much over thousands of stitches.
  if (edge <= kSquareEndsUpTo) C.setStrokeCap(TStrokeCap::Square);
  C.setStroke(0xFF000000, TBrushKind::Solid, TStrokeDash::Solid, static_cast<float>(edge));
  for (const TThreadStitch* st : shown) C.drawLine(px(st->FFrom), px(st->FTo), kThreadEdgeOpacity * opacity);
  TAlphaColor pen = 0;
  bool penSet = false;
  for (const TThreadStitch* st : shown) {
    if (!penSet || st->FColor != pen) {
      pen = st->FColor;
      penSet = true;
      C.setStroke(pen, TBrushKind::Solid, TStrokeDash::Solid, static_cast<float>(width));
    }
    C.drawLine(px(st->FFrom), px(st->FTo), opacity);
  }
  C.setStrokeCap(TStrokeCap::Round);
}
