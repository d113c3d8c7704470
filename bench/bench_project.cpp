// Project files and undo on document-sized drawings: load and save of a
// 20,000-shape project, one undo snapshot after a one-shape edit on 10,000
// shapes, and the memory that 1,000 such undo levels hold.
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <cstdlib>
#include <filesystem>
#include <memory>

#include "app/frm_pelw.h"
#include "bench_form.h"
#include "platform/safe_file.h"
#include "document/project_json.h"

namespace {

// A workshop's worth of pattern pieces, twenty shapes each: a rectangle of
// four lines, thirteen lines of card slots and folds, a rounded corner and
// two stitching holes of a tab. About 570 bytes a shape in the file, so
// 20,000 shapes make a file of about 11 MB.
void buildPieces(TfrmPelw& f, int shapes) {
  TPrickingIron* iron = f.FPrickingIronGroups[0]->FPrickingIron.get();
  int made = 0;
  auto add = [&](std::unique_ptr<TPW_Path> s) {
    if (made >= shapes) return;
    s->updateId(f.PathList->getNextID());
    f.PathList->add(std::move(s), 0);
    ++made;
  };
  auto line = [&](TPointF a, TPointF b) {
    auto s = std::make_unique<TPW_Path>(0, 0xFF00FFFF, 1.5f, TStrokeDash::Solid, 0);
    s->drawLinePath(a, b);
    add(std::move(s));
  };
  for (int piece = 0; made < shapes; ++piece) {
    const float x = float(piece % 40) * 110.3f, y = float(piece / 40) * 70.7f;
    const TPointF c[4] = {{x + 5, y}, {x + 95, y}, {x + 100, y + 60}, {x, y + 60}};
    for (int k = 0; k < 4; ++k) line(c[k], c[(k + 1) % 4]);
    for (int k = 0; k < 13; ++k) line(TPointF(x + 10, y + 5 + k * 3.9f), TPointF(x + 90, y + 5 + k * 3.9f));
    for (int k = 0; k < 1; ++k) {
      auto a = std::make_unique<TPW_Path>(1, 0xFF00FF00, 1.5f, TStrokeDash::Solid, 0);
      const TPointF ct(x + 5 + k * 90, y + 5);
      a->drawArcPath(ct, TPointF(5, 5), TPointF(ct.x + (k ? 0 : -5), ct.y + (k ? -5 : 0)),
                     TPointF(ct.x + (k ? 5 : 0), ct.y + (k ? 0 : -5)), 90);
      add(std::move(a));
    }
    for (int h = 0; h < 2; ++h) {
      auto hole = std::make_unique<TPW_Path>(36, 0xFFFFFFFF, 1, TStrokeDash::Dot, 0);
      hole->createStichPath(TPointF(x + 40 + h * 4.0f, y + 57), false, iron, 0, 0);
      add(std::move(hole));
    }
  }
  f.recalcIntersections();
}

struct TBenchProgram : TBenchForm {
  explicit TBenchProgram(int shapes) {
    buildPieces(*form, shapes);
    form->clearUndo();
    form->takeSnapshot();
  }
};

size_t heapInUse() {
  const struct mallinfo2 m = mallinfo2();
  return m.uordblks + m.hblkhd;
}

void BM_ProjectSave20000(benchmark::State& state) {
  TBenchProgram p(20000);
  const std::string file = p.folder + "/big.pwc";
  for (auto _ : state) {
    p.form->writeProjectFile(file);
  }
  state.counters["MB"] = double(std::filesystem::file_size(file)) / 1e6;
}
BENCHMARK(BM_ProjectSave20000)->Unit(benchmark::kMillisecond)->Iterations(5);

void BM_ProjectLoad20000(benchmark::State& state) {
  TBenchProgram p(20000);
  const std::string file = p.folder + "/big.pwc";
  p.form->writeProjectFile(file);
  for (auto _ : state) {
    if (!p.form->loadProject(file)) state.SkipWithError("load failed");
  }
  state.counters["shapes"] = double(p.form->PathList->Count());
  state.counters["crossings"] = double(p.form->FIntersections->Count());
}
BENCHMARK(BM_ProjectLoad20000)->Unit(benchmark::kMillisecond)->Iterations(5);

// One shape moved, then the snapshot that ends the operation.
void BM_SnapshotAfterOneShapeEdit10000(benchmark::State& state) {
  TBenchProgram p(10000);
  TfrmPelw& f = *p.form;
  int i = 0;
  for (auto _ : state) {
    state.PauseTiming();
    TPW_Path* s = (*f.PathList)[size_t(i * 7919) % f.PathList->Count()];
    f.forgetIntersectionsOf(s);
    s->FData.Translate(0.5, 0);
    s->FStartPt.x += 0.5f;
    s->FEndPt.x += 0.5f;
    s->resetBoundary();
    f.collectIntersectionsFor(s);
    ++i;
    state.ResumeTiming();
    f.takeSnapshot();
  }
}
BENCHMARK(BM_SnapshotAfterOneShapeEdit10000)->Unit(benchmark::kMicrosecond)->Iterations(1000);

// The heap held by 1,000 undo levels of one-shape edits, against the heap
// of the document itself (shapes, crossings and the first snapshot aside).
void BM_UndoMemory1000Levels10000(benchmark::State& state) {
  for (auto _ : state) {
    const size_t base = heapInUse();
    TBenchProgram p(10000);
    TfrmPelw& f = *p.form;
    const size_t withDocument = heapInUse();
    for (int i = 0; i < 1000; ++i) {
      TPW_Path* s = (*f.PathList)[size_t(i * 7919) % f.PathList->Count()];
      f.forgetIntersectionsOf(s);
      s->FData.Translate(0.5, 0);
      s->FStartPt.x += 0.5f;
      s->FEndPt.x += 0.5f;
      s->resetBoundary();
      f.collectIntersectionsFor(s);
      f.takeSnapshot();
    }
    const size_t withUndo = heapInUse();
    const double document = double(withDocument - base);
    state.counters["document_MB"] = document / 1e6;
    state.counters["undo_MB"] = double(withUndo - withDocument) / 1e6;
    state.counters["ratio"] = double(withUndo - withDocument) / document;
  }
}
BENCHMARK(BM_UndoMemory1000Levels10000)->Unit(benchmark::kMillisecond)->Iterations(1);

}  // namespace
