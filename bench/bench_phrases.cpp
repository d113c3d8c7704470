// The phrase table: filling it at start-up, and the lookups that every paint
// makes for its banners.
#include <benchmark/benchmark.h>

#include <string>

#include "app/multi_lang.h"

namespace {

void BM_LoadBuiltinPhrases(benchmark::State& state) {
  for (auto _ : state) {
    TMultiLang lang;
    benchmark::DoNotOptimize(lang.loadBuiltinPhrases());
  }
}
BENCHMARK(BM_LoadBuiltinPhrases)->Unit(benchmark::kMicrosecond);

void lookups(benchmark::State& state, const std::string& langID) {
  TMultiLang lang;
  lang.loadBuiltinPhrases();
  const std::string keys[] = {"palletIsNotVisible", "LayerIsNotVisible", "LayerIgnored",
                              "IndependentLayer", "selectNextStitchingHoleMode"};
  for (auto _ : state)
    for (const auto& key : keys) benchmark::DoNotOptimize(lang.getTranslation(langID, key));
  state.SetItemsProcessed(state.iterations() * 5);
}

// Japanese has every phrase: one lookup in its own table.
void BM_TranslationFound(benchmark::State& state) { lookups(state, "ja"); }
BENCHMARK(BM_TranslationFound);

// German's column is empty: every lookup falls back to English.
void BM_TranslationFallback(benchmark::State& state) { lookups(state, "de"); }
BENCHMARK(BM_TranslationFallback);

}  // namespace
