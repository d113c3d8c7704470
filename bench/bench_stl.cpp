// The STL export on the card holder's two pieces as rounded plates with
// their 125 stitching holes: the solid and its file, and the rebuild the
// preview makes after one setting changes.
#include <benchmark/benchmark.h>

#include "app/sample_card_holder.h"
#include "document/shape_list.h"
#include "exchange/stl_export.h"
#include "exchange/stl_file.h"
#include "stitching/iron_groups.h"
#include "stitching/system_irons.h"

namespace {

struct TCardHolder {
  TPrickingIronGroups irons;
  TShapeList list{nullptr, "en"};
  std::vector<const TPW_Path*> shapes;
  TCardHolder() {
    irons.append(buildSystemIronGroups("en"));
    buildCardHolderSample(list, irons.findIron(kCardHolderIronBlade, kCardHolderIronPitch));
    shapes = stlSourceShapes(list).Shapes;
  }
};

TSTLExportSettings rounded() {
  TSTLExportSettings s;
  s.EdgeTopMode = s.EdgeBottomMode = kEdgeFillet;
  return s;
}

// Shapes to solid to the bytes of the file, as OK or --export does it.
void BM_StlCardHolderSolidAndFile(benchmark::State& state) {
  const TCardHolder c;
  const TSTLExportSettings s = rounded();
  for (auto _ : state) {
    const TStlResult r = buildStlSolid(c.shapes, s);
    std::vector<std::pair<std::string, std::string>> files;
    benchmark::DoNotOptimize(stlFilesFor(r, s, "card.stl", files));
    benchmark::DoNotOptimize(files);
  }
}
BENCHMARK(BM_StlCardHolderSolidAndFile)->Unit(benchmark::kMillisecond);

// The preview's rebuild: the thickness changes and the solid is made again.
void BM_StlPreviewRebuild(benchmark::State& state) {
  const TCardHolder c;
  TSTLExportSettings s = rounded();
  size_t facets = 0;
  for (auto _ : state) {
    s.Thickness = s.Thickness == 2.5 ? 3.0 : 2.5;
    const TStlResult r = buildStlSolid(c.shapes, s);
    facets = r.Body.size();
    benchmark::DoNotOptimize(r);
  }
  state.counters["facets"] = double(facets);
}
BENCHMARK(BM_StlPreviewRebuild)->Unit(benchmark::kMillisecond);

}  // namespace
