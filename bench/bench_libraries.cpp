// The libraries' costs: a start-up with a repository of 2,000 templates and
// a catalog of 500 leathers against one with neither, and the repaint of a
// 6,000 x 4,000 pixel backdrop at fit zoom (the same view again, and a view
// that moved, which draws the backdrop layer anew).
#include <benchmark/benchmark.h>

#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <random>

#include "app/frm_pelw.h"
#include "bench_form.h"
#include "bench_gui_app.h"
#include "app/safe_file.h"
#include "libraries/picture_codec.h"
#include "libraries/template_outline.h"
#include "platform/qt/qt_canvas.h"

namespace fs = std::filesystem;

namespace {

QGuiApplication& app() { return benchGuiApp(); }

// Folders made for the run, removed when it ends.
struct TBenchFolders {
  std::vector<fs::path> made;
  ~TBenchFolders() {
    std::error_code ec;
    for (const fs::path& p : made) fs::remove_all(p, ec);
  }
};

std::string tempFolder(const char* name) {
  static TBenchFolders folders;
  const fs::path p = fs::temp_directory_path() / (std::string("pelwright_bench_") + name + "_" +
                                                   std::to_string(std::random_device{}()));
  fs::create_directories(p);
  folders.made.push_back(p);
  return p.string();
}

// A pattern piece as a template: four sides and two diagonals.
std::unique_ptr<TPW_Path> pieceTemplate(int i) {
  std::vector<std::unique_ptr<TPW_Path>> lines;
  const float w = 40.0f + float(i % 50), h = 20.0f + float(i % 30);
  const TPointF pts[] = {{0, 0}, {w, 0}, {w, h}, {0, h}, {0, 0}, {w, h}};
  for (int k = 0; k + 1 < 6; ++k) {
    auto l = std::make_unique<TPW_Path>(0, 0xFF000000, 0.3f, TStrokeDash::Solid, k + 1);
    l->drawLinePath(pts[k], pts[k + 1]);
    lines.push_back(std::move(l));
  }
  std::vector<const TPW_Path*> raw;
  for (const auto& l : lines) raw.push_back(l.get());
  return mergeIntoTemplate(raw, "Piece " + std::to_string(i));
}

// A data folder with the repository and the catalogs filled.
const std::string& filledDataFolder() {
  static const std::string folder = [] {
    const std::string root = tempFolder("libraries");
    TPartRepository repo;
    repo.setAppDataPath(root);
    fs::create_directories(repo.FRepositoryPath);
    std::vector<TRepositoryTreeItem*> folders;
    for (int f = 0; f < 20; ++f) folders.push_back(repo.newFolder(nullptr, "Folder " + std::to_string(f)));
    for (int i = 0; i < 2000; ++i) {
      auto t = pieceTemplate(i);
      TPW_Path* raw = t.get();
      repo.FPartRepository.push_back(std::move(t));
      folders[size_t(i % 20)]->FShapes.push_back(raw);
      writeFileAtomically(repo.templateFileName(*raw), templateFileText(*raw));
    }
    repo.writeIndex();
    repo.writeTree();
    // Five shops of a hundred leathers, each with a 256 x 256 picture.
    std::mt19937 gen(7);
    TPW_CatalogDict dict;
    for (int s = 0; s < 5; ++s) {
      auto shop = std::make_unique<TPW_CatalogShop>();
      shop->FName = "Shop " + std::to_string(s);
      shop->FIsModified = true;
      for (int g = 0; g < 4; ++g) {
        auto group = std::make_unique<TPW_CatalogGroup>();
        group->FName = "Group " + std::to_string(g);
        for (int i = 0; i < 25; ++i) {
          auto item = std::make_unique<TPW_Catalog>();
          item->FName = "Leather " + std::to_string(i);
          std::vector<uint32_t> px(256 * 256);
          for (uint32_t& p : px) p = 0xFF000000u | (0x80 + gen() % 32) << 16 | (0x50 + gen() % 16) << 8 | 0x30;
          item->setBitmap(TRasterImage::fromPixels(256, 256, std::move(px)));
          group->FItems.push_back(std::move(item));
        }
        shop->FGroups.push_back(std::move(group));
      }
      dict.addShop(std::move(shop));
    }
    dict.FShopListChanged = true;
    dict.saveShops(root + "/catalogs", "3.6.1");
    return root;
  }();
  return folder;
}

void startUp(benchmark::State& state, const std::string& folder) {
  app();
  {
    TfrmPelw warm;  // lays out the built-in templates once
    warm.FAppDataPath = folder;
    warm.FHeadless = true;
    warm.FApiPort = 0;
    warm.FormCreate({});
  }
  for (auto _ : state) {
    auto form = std::make_unique<TfrmPelw>();
    form->FAppDataPath = folder;
    form->FHeadless = true;
    form->FApiPort = 0;
    form->FormCreate({});
    state.PauseTiming();
    form.reset();
    state.ResumeTiming();
  }
}

double fastest(const std::vector<double>& v) { return *std::min_element(v.begin(), v.end()); }

void BM_StartUpEmptyDataFolder(benchmark::State& state) {
  static const std::string folder = tempFolder("empty");
  startUp(state, folder);
}
BENCHMARK(BM_StartUpEmptyDataFolder)->Unit(benchmark::kMillisecond)->Repetitions(5)->ReportAggregatesOnly(true);

void BM_StartUp2000Templates500Leathers(benchmark::State& state) {
  startUp(state, filledDataFolder());
  state.counters["templates"] = 2000;
  state.counters["leathers"] = 500;
}
BENCHMARK(BM_StartUp2000Templates500Leathers)->Unit(benchmark::kMillisecond)->Repetitions(5)->ReportAggregatesOnly(true);

// 0: the empty view without a backdrop; 1: the same view with the backdrop,
// painted again and again; 2: the backdrop with the view moved a pixel
// before each paint.
void BM_BackdropRepaintFitZoom(benchmark::State& state) {
  app();
  TBenchForm bench;
  TfrmPelw& form = *bench.form;
  const int mode = int(state.range(0));
  if (mode > 0) {
    std::vector<uint32_t> px(size_t(6000) * 4000);
    for (size_t i = 0; i < px.size(); ++i) px[i] = 0xFF000000u | uint32_t((i * 2654435761u) >> 8 & 0xFFFFFF);
    form.addBackdrop(TRasterImage::fromPixels(6000, 4000, std::move(px)), 300, "scan.png");
  }
  form.pboxResize(1920, 1080);
  // Fit the 508 x 338.7 mm picture.
  const float scale = std::min(1920.0f / 508.0f, 1080.0f / 338.67f) * 0.95f;
  form.FScale = TPointF(scale, scale);
  form.FOffset = TPointF(20, 20);
  QImage image(1920, 1080, QImage::Format_ARGB32_Premultiplied);
  auto paint = [&] {
    QPainter p(&image);
    TQtCanvas canvas(p, 1920, 1080, 1.0);
    form.pboxPaint(&canvas);
  };
  paint();  // the pyramid and the grid are made once
  float nudge = 0;
  for (auto _ : state) {
    if (mode == 2) form.FOffset = TPointF(20 + (nudge = 1 - nudge), 20);
    paint();
  }
}
BENCHMARK(BM_BackdropRepaintFitZoom)
    ->DenseRange(0, 2)
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(5)
    ->ComputeStatistics("min", fastest)
    ->ReportAggregatesOnly(true);

}  // namespace
