// A controller started headless in a temporary application data folder,
// removed again afterwards.
#pragma once

#include <stdlib.h>

#include <filesystem>
#include <memory>
#include <string>

#include "app/frm_pelw.h"

struct TBenchForm {
  std::string folder;
  std::unique_ptr<TfrmPelw> form;
  TBenchForm() {
    char tmpl[] = "/tmp/pelwright-bench-XXXXXX";
    folder = mkdtemp(tmpl);
    form = std::make_unique<TfrmPelw>();
    form->FAppDataPath = folder + "/appdata";
    form->FHeadless = true;
    form->FormCreate({});
  }
  ~TBenchForm() {
    form.reset();
    std::error_code ec;
    std::filesystem::remove_all(folder, ec);
  }
  TBenchForm(const TBenchForm&) = delete;
  TBenchForm& operator=(const TBenchForm&) = delete;
};
