// A full repaint of a 1920 x 1080 canvas on a raster image: 5,000 shapes
// and 20,000 stitching holes at fit zoom.
#include <benchmark/benchmark.h>

#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <vector>
#include <memory>

#include "app/frm_pelw.h"
#include "bench_gui_app.h"
#include "api/render_endpoint.h"
#include "platform/qt/qt_canvas.h"
#include "platform/qt/qt_png_image.h"
#include "stitching/pricking_iron.h"

namespace {

QGuiApplication& app() { return benchGuiApp(); }

// A 3 mm diamond iron, as in the system table.
TPrickingIron& benchIron() {
  static TPrickingIron iron = [] {
    TPrickingIron i;
    i.FBladeType = "D";
    bladeDefaults("D", i.FWidth, i.FHeight, i.FAngle);
    i.FWidth = 0.6f;
    i.FPitch = 3.0f;
    return i;
  }();
  return iron;
}

// Pattern pieces in a grid: each piece four lines and four arcs, and a row
// of holes along its top and bottom.
void buildScene(TfrmPelw& form, int shapes, int holes) {
  TPrickingIron& iron = benchIron();
  TShapeList& list = *form.PathList;
  int made = 0, holesMade = 0, piece = 0;
  while (made < shapes || holesMade < holes) {
    const float x0 = static_cast<float>((piece % 25) * 60), y0 = static_cast<float>((piece / 25) * 40);
    ++piece;
    for (int i = 0; i < 8 && made < shapes; ++i, ++made) {
      auto s = std::make_unique<TPW_Path>(0, 0xFF00FFFF, 1.5f, TStrokeDash::Solid, list.getNextID());
      if (i % 2 == 0) {
        s->drawLinePath(TPointF(x0 + i * 5, y0), TPointF(x0 + i * 5 + 30, y0 + 25));
      } else {
        s->drawArcPath(TPointF(x0 + 25, y0 + 15), TPointF(8, 8), TPointF(x0 + 17, y0 + 15),
                       TPointF(x0 + 25, y0 + 7), 90);
      }
      list.add(std::move(s), 0);
    }
    for (int i = 0; i < 50 && holesMade < holes; ++i, ++holesMade) {
      auto h = std::make_unique<TPW_Path>(36, 0xFFFFFFFF, 1.0f, TStrokeDash::Dot, list.getNextID());
      const TPointF c(x0 + 2 + (i % 25) * 2, y0 + 2 + (i / 25) * 30);
      h->createStichPath(c, false, &iron, -90, 0);
      list.add(std::move(h), 0);
    }
  }
}

// One paint after another of the same view, as while the pointer moves.
// The first paint, which draws the grid's bitmap, is not timed: the view
// has settled.
void repaintLoop(benchmark::State& state, TfrmPelw& form) {
  QImage image(1920, 1080, QImage::Format_ARGB32_Premultiplied);
  {
    QPainter p(&image);
    TQtCanvas canvas(p, 1920, 1080, 1.0);
    form.pboxPaint(&canvas);
  }
  for (auto _ : state) {
    QPainter p(&image);
    TQtCanvas canvas(p, 1920, 1080, 1.0);
    form.pboxPaint(&canvas);
  }
  state.counters["px_per_mm"] = form.FScale.x;
}

double fastest(const std::vector<double>& v) { return *std::min_element(v.begin(), v.end()); }

void BM_RepaintFitZoom(benchmark::State& state) {
  app();
  TfrmPelw form;
  form.FormCreate({});
  buildScene(form, 5000, 20000);
  form.pboxResize(1920, 1080);
  form.actResetView();
  repaintLoop(state, form);
}
BENCHMARK(BM_RepaintFitZoom)
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(5)
    ->ComputeStatistics("min", fastest)
    ->ReportAggregatesOnly(true);

// The same view with parts of the scene: 0 nothing (background, grid and
// scale bar), 1 the 5,000 shapes alone, 2 the 20,000 holes alone, 3 both
// with the simulated thread on.
void BM_RepaintFitZoomParts(benchmark::State& state) {
  app();
  TfrmPelw form;
  form.FormCreate({});
  const int part = static_cast<int>(state.range(0));
  buildScene(form, part == 0 || part == 2 ? 0 : 5000, part == 0 || part == 1 ? 0 : 20000);
  // Fit the full scene whatever is left of it, so each part is seen alike.
  form.pboxResize(1920, 1080);
  form.FScale = TPointF(1.1f, 1.1f);
  form.FOffset = TPointF(-5, -5);
  if (part == 3) {
    TPW_Path* last = nullptr;
    for (const auto& s : *form.PathList) {
      if (!s->isType(ShapeType::Hole)) continue;
      if (last && std::abs(last->FCenter.y - s->FCenter.y) < 1e-3) last->FNextStitchID = s->FID;
      last = s.get();
    }
    form.FViewOptions.FShowStitchPattern = true;
  }
  repaintLoop(state, form);
}
BENCHMARK(BM_RepaintFitZoomParts)
    ->DenseRange(0, 3)
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(5)
    ->ComputeStatistics("min", fastest)
    ->ReportAggregatesOnly(true);

// The grid drawn again, as 140 ms after the view stops moving: an empty
// drawing at fit zoom, the grid's key cleared before each paint.
void BM_RedrawGrid(benchmark::State& state) {
  app();
  TfrmPelw form;
  form.FormCreate({});
  form.pboxResize(1920, 1080);
  form.FScale = TPointF(1.1f, 1.1f);
  form.FOffset = TPointF(-5, -5);
  QImage image(1920, 1080, QImage::Format_ARGB32_Premultiplied);
  for (auto _ : state) {
    form.FGridCacheKey.clear();
    QPainter p(&image);
    TQtCanvas canvas(p, 1920, 1080, 1.0);
    form.pboxPaint(&canvas);
  }
}
BENCHMARK(BM_RedrawGrid)
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(5)
    ->ComputeStatistics("min", fastest)
    ->ReportAggregatesOnly(true);

// Zoomed in to 20 px/mm: 0 on a few pieces, nearly every shape off the
// canvas; 1 beside the drawing, every shape off the canvas.
void BM_RepaintZoomedIn(benchmark::State& state) {
  app();
  TfrmPelw form;
  form.FormCreate({});
  buildScene(form, 5000, 20000);
  form.pboxResize(1920, 1080);
  form.FScale = TPointF(20, 20);
  form.FOffset = state.range(0) == 0 ? TPointF(-20 * 600, -20 * 400) : TPointF(-20 * 2000, -20 * 400);
  repaintLoop(state, form);
}
BENCHMARK(BM_RepaintZoomedIn)
    ->DenseRange(0, 1)
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(5)
    ->ComputeStatistics("min", fastest)
    ->ReportAggregatesOnly(true);

// POST /render of the whole 5,000-shape, 20,000-hole drawing: the scene
// painted offscreen with a grid cache of its own, and encoded as PNG and
// base64. 0: 1200 x 800 (the default), 1: 2048 x 2048 (the largest).
void BM_RenderPicture(benchmark::State& state) {
  app();
  TfrmPelw form;
  form.FormCreate({});
  form.FMakePngImage = makeQtPngImage;
  buildScene(form, 5000, 20000);
  const std::string body = state.range(0) == 0 ? R"({"area":"drawing","width":1200,"height":800})"
                                               : R"({"area":"drawing","width":2048,"height":2048})";
  for (auto _ : state)
    if (apiRender(form, body).rfind("{\"ok\":true", 0) != 0) state.SkipWithError("refused");
}
BENCHMARK(BM_RenderPicture)
    ->DenseRange(0, 1)
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(5)
    ->ComputeStatistics("min", fastest)
    ->ReportAggregatesOnly(true);

}  // namespace
