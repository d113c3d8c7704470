// The program's entry: a window, or --headless with no window. Both run the
// same controller; the local API serves it when the options switch it on.
#include <QApplication>
#include <QFontDatabase>
#include <QGuiApplication>
#include <clocale>
#include <cstdio>
#include <memory>
#include <vector>

#include "api/mcp_stdio.h"
#include "app/command_line.h"
#include "app/demo_projects.h"
#include "app/frm_pelw.h"
#include "platform/safe_file.h"
#include "app/sample_project_file.h"
#include "exchange/export_command.h"
#include "libraries/builtin_templates.h"
#include "platform/qt/main_window.h"
#include "platform/qt/qt_dialogs.h"
#include "platform/qt/qt_exchange_dialogs.h"
#include "platform/qt/qt_main_thread.h"
#include "platform/qt/qt_paper_device.h"
#include "platform/qt/qt_print_service.h"
#include "platform/qt/qt_pictures.h"
#include "platform/qt/qt_png_image.h"
#include "platform/qt/qt_text_layout.h"
#include "platform/qt/qt_timer.h"
#include "platform/qt/unix_signals.h"

namespace {

std::string usageText() { return commandLineHelp() + exportCommandHelp(); }

// Qt's arguments with the offscreen platform asked for: no display is
// needed, and Qt still gives fonts and an event loop.
struct TOffscreenArgs {
  char platformFlag[10] = "-platform";
  char platformName[10] = "offscreen";
  std::vector<char*> args;
  int argc = 0;
  TOffscreenArgs(int n, char** argv) : args(argv, argv + n) {
    args.insert(args.begin() + 1, {platformFlag, platformName});
    argc = static_cast<int>(args.size());
  }
};

int runWriteSample(int argc, char** argv, const TCommandLine& cl) {
  TOffscreenArgs qt(argc, argv);
  QGuiApplication app(qt.argc, qt.args.data());
  std::setlocale(LC_NUMERIC, "C");
  // The sample's text shapes take their outlines from the text layout.
  TQtTextLayout textLayoutService;
  setTextLayout(&textLayoutService);
  int rc = 0;
  try {
    writeFileAtomically(cl.writeSampleFile, cardHolderSampleFileText(cl.writeSampleLanguage));
  } catch (const std::exception& e) {
    std::fprintf(stderr, "pelwright: %s\n", e.what());
    rc = 1;
  }
  setTextLayout(nullptr);
  return rc;
}

// What both ways of running give the controller: the port, the font
// question, the main-thread queue, and the answer to SIGINT, SIGTERM and
// SIGHUP: no question, unsaved work goes to the autosave file, which the
// next start brings back.
void connectController(TfrmPelw& form, QCoreApplication& app, const TCommandLine& cl) {
  form.FApiPort = cl.apiPort;
  form.FMakePngImage = makeQtPngImage;
  form.FMakePdfDocument = makeQtPdfDocument;
  form.FFontExists = [](const std::string& family) {
    return QFontDatabase::families().contains(QString::fromStdString(family));
  };
  attachToQtEventLoop(form.mainThreadCalls());
  useQtPictures();
  watchTerminationSignals([&app, &form](int) {
    form.FormDestroyAfterSignal();
    app.quit();
  });
}

// --export: the drawing is converted and the program ends. Text shapes
// still need their glyph outlines, so Qt runs offscreen for the fonts.
int runExport(int argc, char** argv, const TCommandLine& cl) {
  // Standard error carries the conversion's one line and nothing of Qt's.
  qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString& text) {
    if (type == QtCriticalMsg || type == QtFatalMsg) std::fprintf(stderr, "pelwright: %s\n", qPrintable(text));
  });
  TOffscreenArgs qt(argc, argv);
  QGuiApplication app(qt.argc, qt.args.data());
  std::setlocale(LC_NUMERIC, "C");
  TQtTextLayout textLayoutService;
  setTextLayout(&textLayoutService);
  std::string error;
  int rc = 0;
  {
    TfrmPelw form;
    form.FMakePdfDocument = makeQtPdfDocument;
    form.FFontExists = [](const std::string& family) {
      return QFontDatabase::families().contains(QString::fromStdString(family));
    };
    rc = runExportCommand(form, cl.exportOutput, cl.exportArgs, error);
  }
  setTextLayout(nullptr);
  if (rc == 2) std::fprintf(stderr, "pelwright: %s\n%s", error.c_str(), usageText().c_str());
  else if (rc != 0) std::fprintf(stderr, "pelwright: %s\n", error.c_str());
  return rc;
}

int runHeadless(int argc, char** argv, const TCommandLine& cl) {
  TOffscreenArgs qt(argc, argv);
  QGuiApplication app(qt.argc, qt.args.data());
  std::setlocale(LC_NUMERIC, "C");
  TQtTextLayout textLayoutService;
  setTextLayout(&textLayoutService);

  useQtTimers();

  TfrmPelw form;
  form.FHeadless = true;
  connectController(form, app, cl);
  form.FormCreate(cl.args);
  // With its port taken, headless has nothing to do: it ends, failing.
  const int rc = form.FMCPServerError.empty() ? app.exec() : 1;
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
  TQtPrintService printService;
  TQtExchangeDialogs exchangeDialogs;
  TfrmPelw form;
  form.FDialogs = &dialogs;
  dialogs.FPhrase = [&form](const char* key) {
    return QString::fromStdString(form.FMultiLang ? form.FMultiLang->getTranslation(form.FLangID, key) : std::string());
  };
  form.FPrintService = &printService;
  form.FExchangeDialogs = &exchangeDialogs;
  form.FDemoSourcePath = shippedDemoFolder(QCoreApplication::applicationDirPath().toStdString());
  connectController(form, app, cl);
  form.FormCreate(cl.args);
  int rc = 0;
  {
    TMainWindow window(form);
    dialogs.setParent(&window);
    printService.setParent(&window);
    exchangeDialogs.setParent(&window);
    window.show();
    rc = app.exec();
    dialogs.setParent(nullptr);
    printService.setParent(nullptr);
    exchangeDialogs.setParent(nullptr);
  }
  form.FormDestroy();
  setTextLayout(nullptr);
  return rc;
}

}  // namespace

int main(int argc, char** argv) {
  const TCommandLine cl = parseCommandLine(argc, argv);
  if (cl.help) {
    std::fputs(usageText().c_str(), stdout);
    return 0;
  }
  if (!cl.error.empty()) {
    std::fprintf(stderr, "pelwright: %s\n%s", cl.error.c_str(), usageText().c_str());
    return 2;
  }
  if (cl.mcp) return runMcpOnStandardStreams(cl.apiPort);
  if (cl.exportMode) return runExport(argc, argv, cl);
  if (!cl.writeSampleFile.empty()) return runWriteSample(argc, argv, cl);
  if (!cl.writeTemplatesFile.empty()) {
    try {
      writeFileAtomically(cl.writeTemplatesFile, builtinTemplateArchiveText());
      return 0;
    } catch (const std::exception& e) {
      std::fprintf(stderr, "pelwright: %s\n", e.what());
      return 1;
    }
  }
  return cl.headless ? runHeadless(argc, argv, cl) : runWindow(argc, argv, cl);
}
