// The program's entry: a window, or --headless with no window. Both run the
// same controller; the local API serves it when the options switch it on.
#include <QApplication>
#include <QFontDatabase>
#include <QGuiApplication>
#include <clocale>
#include <cstdio>
#include <memory>
#include <vector>

#include "app/command_line.h"
#include "app/frm_pelw.h"
#include "platform/qt/main_window.h"
#include "platform/qt/qt_dialogs.h"
#include "platform/qt/qt_main_thread.h"
#include "platform/qt/qt_text_layout.h"
#include "platform/qt/qt_timer.h"
#include "platform/qt/unix_signals.h"

namespace {

int runHeadless(int argc, char** argv, const TCommandLine& cl) {
  // No display is needed: Qt's offscreen platform still gives fonts and an
  // event loop.
  std::vector<char*> qtArgs(argv, argv + argc);
  char platformFlag[] = "-platform";
  char platformName[] = "offscreen";
  qtArgs.insert(qtArgs.begin() + 1, {platformFlag, platformName});
  int qtArgc = static_cast<int>(qtArgs.size());
  QGuiApplication app(qtArgc, qtArgs.data());
  std::setlocale(LC_NUMERIC, "C");
  TQtTextLayout textLayoutService;
  setTextLayout(&textLayoutService);

  useQtTimers();

  TfrmPelw form;
  form.FApiPort = cl.apiPort;
  form.FHeadless = true;
  form.FFontExists = [](const std::string& family) {
    return QFontDatabase::families().contains(QString::fromStdString(family));
  };
  attachToQtEventLoop(form.mainThreadCalls());
  // No question on a signal: unsaved work goes to the autosave file, which
  // the next start brings back.
  watchTerminationSignals([&app, &form](int) {
    form.FormDestroyAfterSignal();
    app.quit();
  });
  form.FormCreate(cl.args);
  const int rc = app.exec();
  form.FormDestroy();
  setTextLayout(nullptr);
  return rc;
}

int runWindow(int argc, char** argv, const TCommandLine& cl) {
  QApplication app(argc, argv);
  std::setlocale(LC_NUMERIC, "C");
  TQtTextLayout textLayoutService;
  setTextLayout(&textLayoutService);

  useQtTimers();

  TQtDialogs dialogs;
  TfrmPelw form;
  form.FApiPort = cl.apiPort;
  form.FDialogs = &dialogs;
  form.FFontExists = [](const std::string& family) {
    return QFontDatabase::families().contains(QString::fromStdString(family));
  };
  attachToQtEventLoop(form.mainThreadCalls());
  watchTerminationSignals([&app, &form](int) {
    form.FormDestroyAfterSignal();
    app.quit();
  });
  form.FormCreate(cl.args);
  int rc = 0;
  {
    TMainWindow window(form);
    dialogs.setParent(&window);
    window.show();
    rc = app.exec();
    dialogs.setParent(nullptr);
  }
  form.FormDestroy();
  setTextLayout(nullptr);
  return rc;
}

}  // namespace

int main(int argc, char** argv) {
  const TCommandLine cl = parseCommandLine(argc, argv);
  if (cl.help) {
    std::fputs(commandLineHelp().c_str(), stdout);
    return 0;
  }
  if (!cl.error.empty()) {
    std::fprintf(stderr, "pelwright: %s\n%s", cl.error.c_str(), commandLineHelp().c_str());
    return 2;
  }
  return cl.headless ? runHeadless(argc, argv, cl) : runWindow(argc, argv, cl);
}
