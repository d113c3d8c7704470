// A controller started headless in a temporary application data folder,
// removed again afterwards, for benchmarks that need the whole program.
#pragma once

#include <stdlib.h>

#include <filesystem>
#include <memory>
#include <string>

#include "app/frm_pelw.h"

struct TBenchController {
  std::string folder;
  std::unique_ptr<TfrmPelw> form;
  TBenchController() {
    char tmpl[] = "/tmp/pelwright-bench-XXXXXX";
    folder = mkdtemp(tmpl);
    form = std::make_unique<TfrmPelw>();
    form->FAppDataPath = folder + "/appdata";
    form->FHeadless = true;
    form->FormCreate({});
  }
  ~TBenchController() {
    form.reset();
    std::error_code ec;
    std::filesystem::remove_all(folder, ec);
  }
  TBenchController(const TBenchController&) = delete;
  TBenchController& operator=(const TBenchController&) = delete;
};
