// Export and import on a document of 20,000 shapes: pattern pieces of
// rounded outlines, flaps, snaps and fold lines. SVG out, DXF out in both
// forms, and that SVG read back in through the import command.
#include <benchmark/benchmark.h>

#include "app/safe_file.h"
#include "bench_form.h"
#include "exchange/dxf_export.h"
#include "exchange/svg_export.h"
#include "exchange/svg_import.h"
#include "pattern_document.h"

namespace {

struct TExchangeBench : TBenchForm {
  explicit TExchangeBench(int shapes = 20000) {
    if (shapes) bench_doc::fill(*form->PathList, shapes);
  }
};

void BM_ExportSvg20000(benchmark::State& state) {
  TExchangeBench b;
  size_t bytes = 0;
  for (auto _ : state) bytes = svgExportText(b.form->exportScene(), {}).size();
  state.counters["shapes"] = double(b.form->PathList->Count());
  state.counters["MB"] = double(bytes) / 1e6;
}
BENCHMARK(BM_ExportSvg20000)->Unit(benchmark::kMillisecond)->Iterations(5);

void BM_ExportDxf20000(benchmark::State& state) {
  TExchangeBench b;
  TExportSettings s;
  s.FUseR14 = state.range(0) == 14;
  size_t bytes = 0;
  for (auto _ : state) bytes = dxfExportText(b.form->exportScene(), s).size();
  state.counters["MB"] = double(bytes) / 1e6;
}
BENCHMARK(BM_ExportDxf20000)->Arg(12)->Arg(14)->Unit(benchmark::kMillisecond)->Iterations(5);

// The import command's whole work after its questions: read, parse, the
// shapes, their crossings, the undo step and the fitted view.
void BM_ImportSvg20000(benchmark::State& state) {
  TExchangeBench source;
  const std::string file = source.folder + "/pattern.svg";
  writeFileAtomically(file, svgExportText(source.form->exportScene(), {}));
  size_t shapes = 0;
  for (auto _ : state) {
    state.PauseTiming();
    TExchangeBench target(0);
    state.ResumeTiming();
    shapes = target.form->importSVGFile(file, true, false).FShapeCount;
    state.PauseTiming();
    target.form.reset();
    state.ResumeTiming();
  }
  state.counters["shapes"] = double(shapes);
}
BENCHMARK(BM_ImportSvg20000)->Unit(benchmark::kMillisecond)->Iterations(3);

// The reading alone: XML, transforms, paths, and the shapes they become.
void BM_ReadSvgShapes20000(benchmark::State& state) {
  TExchangeBench source;
  const std::string text = svgExportText(source.form->exportScene(), {});
  for (auto _ : state) {
    const TSvgPicture p = readSvgPicture(text);
    benchmark::DoNotOptimize(svgPictureShapes(p, true, TShapeStyle{}, "Arial").size());
  }
}
BENCHMARK(BM_ReadSvgShapes20000)->Unit(benchmark::kMillisecond)->Iterations(5);

}  // namespace
