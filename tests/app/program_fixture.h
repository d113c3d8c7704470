// A controller started as the program starts it, in a temporary
// application data folder, with scripted dialogs.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "app/frm_pelw.h"
#include "test_support.h"

struct TProgram {
  TTempDir dir;
  TScriptedDialogs dialogs;
  std::unique_ptr<TfrmPelw> form;
  // The shipped demo folder the next start copies from; empty for none.
  std::string demoSource;

  std::string appData() const { return dir.file("appdata"); }
  std::string file(const std::string& name) const { return dir.file(name); }

  // Writes a file of the application data folder before the start.
  void seed(const std::string& name, const std::string& text) const { writeTextFile(appData() + "/" + name, text); }

  TfrmPelw& start(const std::vector<std::string>& args = {}, bool headless = true) {
    form = std::make_unique<TfrmPelw>();
    form->FAppDataPath = appData();
    form->FDialogs = &dialogs;
    form->FHeadless = headless;
    form->FApiPort = 0;
    form->FDemoSourcePath = demoSource;
    form->FormCreate(args);
    return *form;
  }
  void stop() {
    if (form) form->FormDestroy();
    form.reset();
  }
  ~TProgram() { stop(); }
};

// One line shape as a drawing tool makes it.
inline std::unique_ptr<TPW_Path> makeLine(TPointF a, TPointF b, int id = 0) {
  auto s = std::make_unique<TPW_Path>(0, 0xFF00FFFF, 1.5f, TStrokeDash::Solid, id);
  s->drawLinePath(a, b);
  return s;
}
