// Offsetting a closed outline of a metre's length made of 400 lines, arcs
// and curves by 3 mm, the joins at every corner included; and the offset
// tool's live preview over the same outline selected, as each pointer move
// repaints it.
#include <benchmark/benchmark.h>

#include <stdlib.h>

#include <cmath>
#include <memory>
#include <vector>

#include "app/frm_pelw.h"
#include "geometry/offset.h"
#include "platform/recording_canvas.h"

namespace {

// A 300 x 200 mm outline (1 m round) in 400 pieces of 2.5 mm, clockwise on
// the screen, taking turns: a line, an arc bulging outward, a curve
// bulging inward.
std::vector<std::unique_ptr<TPW_Path>> outline() {
  std::vector<TPointF> pts;
  const double w = 300, h = 200, step = 2.5;
  for (double s = 0; s < 2 * (w + h) - 1e-9; s += step) {
    if (s < w) pts.push_back(TPointF::fromDouble(s, 0));
    else if (s < w + h) pts.push_back(TPointF::fromDouble(w, s - w));
    else if (s < 2 * w + h) pts.push_back(TPointF::fromDouble(w - (s - w - h), h));
    else pts.push_back(TPointF::fromDouble(0, h - (s - 2 * w - h)));
  }
  std::vector<std::unique_ptr<TPW_Path>> shapes;
  for (size_t i = 0; i < pts.size(); ++i) {
    const TPointF p = pts[i], q = pts[(i + 1) % pts.size()];
    auto s = std::make_unique<TPW_Path>(0, claBlack, 0.3f, TStrokeDash::Solid, static_cast<int>(i) + 1);
    const double dx = double(q.x) - p.x, dy = double(q.y) - p.y, len = std::hypot(dx, dy);
    const double nx = dy / len, ny = -dx / len;  // outward: left of a clockwise run
    const double mx = (double(p.x) + q.x) / 2, my = (double(p.y) + q.y) / 2;
    if (i % 3 == 0) {
      s->drawLinePath(p, q);
    } else if (i % 3 == 1) {
      const double r = 4.0, off = std::sqrt(r * r - len * len / 4);
      const TPointF c = TPointF::fromDouble(mx - nx * off, my - ny * off);
      const double sweep = 2 * std::asin(len / 2 / r) * 57.29577951308232;  // clockwise, the short way
      s->drawArcPath(c, TPointF(4, 4), p, q, static_cast<float>(sweep));
    } else {
      s->drawBezierPath(p, TPointF::fromDouble(p.x + dx / 3 - nx * 0.3, p.y + dy / 3 - ny * 0.3),
                        TPointF::fromDouble(p.x + 2 * dx / 3 - nx * 0.3, p.y + 2 * dy / 3 - ny * 0.3), q);
    }
    shapes.push_back(std::move(s));
  }
  return shapes;
}

void BM_SmartOffsetClosedOutline(benchmark::State& state) {
  const auto shapes = outline();
  std::vector<const TPW_Path*> chain;
  for (const auto& s : shapes) chain.push_back(s.get());
  for (auto _ : state) {
    auto copies = smartOffset(chain, 3.0, TPointF(150, 100), true);
    benchmark::DoNotOptimize(copies.data());
  }
  state.counters["shapes"] = static_cast<double>(chain.size());
}
BENCHMARK(BM_SmartOffsetClosedOutline)->Unit(benchmark::kMillisecond);

void BM_OffsetPreviewOnPointerMove(benchmark::State& state) {
  char folder[] = "/tmp/pelwright_bench_XXXXXX";
  TfrmPelw form;
  form.FAppDataPath = mkdtemp(folder);
  form.FHeadless = true;
  form.FormCreate({});
  for (auto& s : outline()) {
    s->FSelected = true;
    form.PathList->add(std::move(s), 0);
  }
  form.FScale = TPointF(3, 3);
  TRecordingCanvas canvas(1600, 1000);
  int move = 0;
  for (auto _ : state) {
    canvas.FOps.clear();
    const TPointF pointer = TPointF::fromDouble(100 + (move++ % 50), 80);
    form.FSeamEdits.paintOffsetPreview(canvas, pointer);
    benchmark::DoNotOptimize(canvas.FOps.size());
  }
}
BENCHMARK(BM_OffsetPreviewOnPointerMove)->Unit(benchmark::kMillisecond);

}  // namespace
