// A PDF of a large pattern at true size: 1 m by 0.7 m of pieces, 5,000
// shapes and 20,000 stitching holes, tiled on A4 with 10 mm overlap (18
// sheets), painted sheet by sheet and written by Qt's PDF writer in memory.
#include <benchmark/benchmark.h>

#include <QGuiApplication>
#include <algorithm>
#include <memory>

#include "app/frm_pelw.h"
#include "bench_gui_app.h"
#include "bench_form.h"
#include "exchange/print_layout.h"
#include "platform/qt/qt_paper_device.h"
#include "stitching/pricking_iron.h"

namespace {

QGuiApplication& app() { return benchGuiApp(); }

// 20 by 14 pieces of 50 mm, each an outline of four lines and four arcs,
// a stitch line inside it and two snap circles, holes along the stitch line.
void buildPattern(TfrmPelw& form, TPrickingIron& iron) {
  TShapeList& list = *form.PathList;
  auto add = [&](std::unique_ptr<TPW_Path> s) { list.add(std::move(s), 0); };
  auto shape = [&](int palette) { return std::make_unique<TPW_Path>(palette, 0xFF00FFFF, 1.5f, TStrokeDash::Solid, list.getNextID()); };
  int shapes = 0, holes = 0;
  for (int piece = 0; piece < 280; ++piece) {
    const float x0 = float(piece % 20) * 50 + 2, y0 = float(piece / 20) * 50 + 2;
    for (float inset : {0.0f, 3.0f}) {
      const float l = x0 + inset, t = y0 + inset, r = x0 + 46 - inset, b = y0 + 46 - inset, k = 6 - inset;
      for (auto [a, c] : {std::pair{TPointF(l + k, t), TPointF(r - k, t)}, {TPointF(r, t + k), TPointF(r, b - k)},
                          {TPointF(r - k, b), TPointF(l + k, b)}, {TPointF(l, b - k), TPointF(l, t + k)}}) {
        auto s = shape(0);
        s->drawLinePath(a, c);
        add(std::move(s));
        ++shapes;
      }
      const TPointF centres[4] = {TPointF(r - k, t + k), TPointF(r - k, b - k), TPointF(l + k, b - k), TPointF(l + k, t + k)};
      for (int q = 0; q < 4; ++q) {
        auto s = shape(0);
        const TPointF c = centres[q];
        const double a0 = -90 + 90 * q;
        auto at = [&](double deg) {
          const double rad = deg * 3.14159265358979 / 180;
          return TPointF::fromDouble(c.x + k * std::cos(rad), c.y + k * std::sin(rad));
        };
        s->drawArcPath(c, TPointF(k, k), at(a0), at(a0 + 90), 90);
        add(std::move(s));
        ++shapes;
      }
    }
    if (shapes < 5000) {
      auto s = shape(1);
      s->drawEllipsePath(TPointF(x0 + 23, y0 + 23), 8, 8);
      add(std::move(s));
      ++shapes;
    }
    // About 72 holes along the stitch line's straight sides.
    for (int side = 0; side < 4 && holes < 20000; ++side)
      for (int i = 0; i < 18 && holes < 20000; ++i, ++holes) {
        const float u = 9 + i * 1.6f;
        const TPointF c = side == 0 ? TPointF(x0 + u, y0 + 3) : side == 1 ? TPointF(x0 + 43, y0 + u)
                          : side == 2 ? TPointF(x0 + u, y0 + 43) : TPointF(x0 + 3, y0 + u);
        auto h = std::make_unique<TPW_Path>(36, 0xFFFFFFFF, 1.0f, TStrokeDash::Solid, list.getNextID());
        h->createStichPath(c, false, &iron, side % 2 ? 0 : -90, 0);
        add(std::move(h));
      }
  }
}

void BM_PdfOfLargePattern(benchmark::State& state) {
  app();
  TBenchForm bench;
  TfrmPelw& form = *bench.form;
  form.FMakePdfDocument = makeQtPdfDocument;
  TPrickingIron iron;
  iron.FBladeType = "D";
  bladeDefaults("D", iron.FWidth, iron.FHeight, iron.FAngle);
  iron.FPitch = 3;
  buildPattern(form, iron);
  size_t bytes = 0;
  int pages = 0;
  for (auto _ : state) {
    TPrintLayout layout(*form.PathList);
    layout.setBoundaryFromDrawing();
    layout.FPaper = paperSetupFor(*findPaperSize("A4"), false);
    layout.FSwitches.FTilePrint = true;
    layout.tileToCover();
    std::string pdf;
    if (!form.makePdfBytes(layout, pdf).empty()) state.SkipWithError("not written");
    bytes = pdf.size();
    pages = layout.pageCount();
  }
  state.counters["shapes"] = static_cast<double>(form.PathList->Count());
  state.counters["sheets"] = pages;
  state.counters["MB"] = static_cast<double>(bytes) / 1e6;
}
BENCHMARK(BM_PdfOfLargePattern)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1)
    ->Repetitions(5)
    ->ReportAggregatesOnly(true);

}  // namespace
