#include "platform/qt/main_window.h"

#include <QAction>
#include <QCloseEvent>
#include <QActionGroup>
#include <QGridLayout>
#include <QLabel>
#include <QMenuBar>
#include <QStatusBar>

#include "app/frm_pelw.h"
#include "platform/qt/canvas_widget.h"
#include "platform/qt/library_panels.h"
#include "platform/qt/qt_timer.h"
#include "surface/view_colors.h"
#include "surface/view_phrases.h"

TMainWindow::TMainWindow(TfrmPelw& form, QWidget* parent) : QMainWindow(parent), FForm(form) {
  setWindowTitle("Pelwright");
  useQtTimers();
  buildCanvasArea();
  buildFileMenu();
  buildEditMenu();
  buildViewMenu();
  buildLanguageMenu();
  buildToolsMenu();
  FLibraries = new TLibraryPanels(*this, *FCanvas, FForm);
  buildStlExport();
  buildPrintCommands();
  buildStatusLine();
  connectProgramHost();
  retranslate();
  resize(1200, 800);
}

TMainWindow::~TMainWindow() {
  // The controller outlives the window: it must not call into it any more.
  FForm.FViewHost = TViewHost{};
  FForm.FProgramHost = TProgramHost{};
  FForm.FGridSettleTimer.reset();
}

void TMainWindow::buildCanvasArea() {
  auto* area = new QWidget(this);
  auto* grid = new QGridLayout(area);
  grid->setContentsMargins(0, 0, 0, 0);
  grid->setSpacing(0);
  FCorner = new QWidget(area);
  FCorner->setFixedSize(34, 22);
  FCorner->setAutoFillBackground(true);
  paintCorner();
  FCanvas = new TCanvasWidget(FForm, area);
  FRulerX = new TRulerWidget(FForm, Qt::Horizontal, area);
  FRulerY = new TRulerWidget(FForm, Qt::Vertical, area);
  grid->addWidget(FCorner, 0, 0);
  grid->addWidget(FRulerX, 0, 1);
  grid->addWidget(FRulerY, 1, 0);
  grid->addWidget(FCanvas, 1, 1);
  setCentralWidget(area);
  FForm.FViewHost.invalidateCanvas = [this] { FCanvas->update(); };
  FForm.FViewHost.invalidateRulers = [this] {
    FRulerX->update();
    FRulerY->update();
  };
}

namespace {

// The status bar's line about the local API; %1 is the port.
constexpr TPhraseKey kLocalApiLine{"lblLocalApi", "Local API on 127.0.0.1:%1"};

}  // namespace

QString TMainWindow::phrase(const TPhraseKey& key) const {
  return QString::fromStdString(viewPhrase(FForm.FMultiLang.get(), FForm.FLangID, key));
}

void TMainWindow::buildViewMenu() {
  QMenu* view = menuBar()->addMenu(phrase(ViewPhrase::MenuView));
  FViewMenu = view;
  view->setObjectName("miView");
  FActResetView = view->addAction(phrase(ViewPhrase::ResetView));
  FActResetView->setObjectName("actResetView");
  FActResetView->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_R));
  connect(FActResetView, &QAction::triggered, this, [this] { FForm.actResetView(); });

  FActShowGrid = view->addAction(phrase(ViewPhrase::ShowHideGrid));
  FActShowGrid->setObjectName("actShowHideGrid");
  FActShowGrid->setCheckable(true);
  FActShowGrid->setChecked(FForm.FShowGrid);
  connect(FActShowGrid, &QAction::toggled, this, [this](bool on) {
    if (on != FForm.FShowGrid) FForm.actToggleGrid();
  });

  FActShowStitchSimulator = view->addAction(phrase(ViewPhrase::ShowHideStitchingSimulator));
  FActShowStitchSimulator->setObjectName("actShowHideStitchingSimulator");
  FActShowStitchSimulator->setCheckable(true);
  FActShowStitchSimulator->setChecked(FForm.FViewOptions.FShowStitchPattern);
  connect(FActShowStitchSimulator, &QAction::toggled, this, [this](bool on) {
    FForm.FViewOptions.FShowStitchPattern = on;
    FForm.RepaintCanvas();
  });

  view->addSeparator();
  auto* background = new QActionGroup(this);
  FActBlackBackground = view->addAction(phrase(ViewPhrase::BlackBackground));
  FActBlackBackground->setObjectName("rbBlackBG");
  FActWhiteBackground = view->addAction(phrase(ViewPhrase::WhiteBackground));
  FActWhiteBackground->setObjectName("rbWhiteBG");
  for (QAction* a : {FActBlackBackground, FActWhiteBackground}) {
    a->setCheckable(true);
    background->addAction(a);
  }
  (FForm.FIsBlackBackgroundMode ? FActBlackBackground : FActWhiteBackground)->setChecked(true);
  connect(FActBlackBackground, &QAction::triggered, this, [this] {
    FForm.actSetGridBackgroundBlack();
    paintCorner();
  });
  connect(FActWhiteBackground, &QAction::triggered, this, [this] {
    FForm.actSetGridBackgroundWhite();
    paintCorner();
  });
}

void TMainWindow::paintCorner() {
  // The square where the rulers meet has the rulers' background.
  const TAlphaColor c = rulerStripBackground(FForm.FIsBlackBackgroundMode, FForm.FViewOptions.FWhiteBGColor);
  FCorner->setPalette(QPalette(QColor::fromRgba(c)));
}

void TMainWindow::buildStatusLine() {
  FStatus = new QLabel(this);
  FStatus->setObjectName("lblStatus");
  statusBar()->addWidget(FStatus, 1);
  FForm.FViewHost.showStatus = [this](const std::string& text) { FStatus->setText(QString::fromStdString(text)); };
  // Where the local API listens, or why it does not; in the program's
  // language (retranslate writes it).
  if (FForm.FMCPServer || !FForm.FMCPServerError.empty()) {
    FServerLine = new QLabel(this);
    FServerLine->setObjectName("lblLocalApi");
    statusBar()->addPermanentWidget(FServerLine);
  }
}

void TMainWindow::showEvent(QShowEvent* e) {
  QMainWindow::showEvent(e);
  if (FShownOnce) return;
  FShownOnce = true;
  // The canvas has its size now: fit what is open.
  FForm.pboxResize(FCanvas->width(), FCanvas->height());
  FForm.actResetView();
  FForm.refreshStatus();
}

// ---- File, Edit, the language menu, and what follows the document ----

namespace {

QAction* addCommand(QMenu* menu, QObject* owner, const char* key, QKeySequence shortcut) {
  QAction* a = menu->addAction(QString::fromUtf8(key));
  a->setObjectName(key);
  if (!shortcut.isEmpty()) a->setShortcut(shortcut);
  (void)owner;
  return a;
}

}  // namespace

void TMainWindow::buildFileMenu() {
  FFileMenu = menuBar()->addMenu("File");
  FFileMenu->setObjectName("miFile");
  FActNewProject = addCommand(FFileMenu, this, "actNewProject", QKeySequence::New);
  FActLoadProject = addCommand(FFileMenu, this, "actLoadProject", QKeySequence::Open);
  FActOpenNewWindow = addCommand(FFileMenu, this, "actOpenNewWindow", QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_N));
  FFileMenu->addSeparator();
  FActSaveProject = addCommand(FFileMenu, this, "actSaveProject", QKeySequence::Save);
  FActSaveProjectAs = addCommand(FFileMenu, this, "actSaveProjectAs", QKeySequence::SaveAs);
  // Some desktops have no Save As key; the common one then.
  if (FActSaveProjectAs->shortcut().isEmpty())
    FActSaveProjectAs->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_S));
  FFileMenu->addSeparator();
  FActImportSVG = addCommand(FFileMenu, this, "actImportSVG", QKeySequence());
  FActExportAsSVG = addCommand(FFileMenu, this, "actExportAsSVG", QKeySequence());
  FActExportAsDXF = addCommand(FFileMenu, this, "actExportAsDXF", QKeySequence());
  FFileMenu->addSeparator();
  FActClose = addCommand(FFileMenu, this, "actClose", QKeySequence::Quit);
  connect(FActNewProject, &QAction::triggered, this, [this] { FForm.actNewProject(); });
  connect(FActLoadProject, &QAction::triggered, this, [this] { FForm.actLoadProject(); });
  connect(FActOpenNewWindow, &QAction::triggered, this, [this] { FForm.actOpenNewWindow(); });
  connect(FActSaveProject, &QAction::triggered, this, [this] { FForm.actSaveProject(); });
  connect(FActSaveProjectAs, &QAction::triggered, this, [this] { FForm.actSaveProjectAs(); });
  connect(FActClose, &QAction::triggered, this, [this] { FForm.actClose(); });
  connect(FActImportSVG, &QAction::triggered, this, [this] {
    FForm.actImportSVG();
    FForm.refreshStatus();
  });
  connect(FActExportAsSVG, &QAction::triggered, this, [this] { FForm.actExportAsSVG(); });
  connect(FActExportAsDXF, &QAction::triggered, this, [this] { FForm.actExportAsDXF(); });
}

void TMainWindow::buildEditMenu() {
  FEditMenu = menuBar()->addMenu("Edit");
  FEditMenu->setObjectName("miEdit");
  FActUndo = addCommand(FEditMenu, this, "actUndo", QKeySequence::Undo);
  FActRedo = addCommand(FEditMenu, this, "actRedo", QKeySequence::Redo);
  connect(FActUndo, &QAction::triggered, this, [this] {
    FForm.actUndo();
    FForm.refreshStatus();
  });
  connect(FActRedo, &QAction::triggered, this, [this] {
    FForm.actRedo();
    FForm.refreshStatus();
  });
}

void TMainWindow::buildLanguageMenu() {
  FLanguageMenu = menuBar()->addMenu("Language");
  FLanguageMenu->setObjectName("miSelectLang");
  auto* group = new QActionGroup(this);
  for (const std::string& code : TMultiLang::tableLanguageCodes()) {
    if (!FForm.FMultiLang || !FForm.FMultiLang->isSupported(code)) continue;
    QAction* a = FLanguageMenu->addAction(QString::fromStdString(code));
    a->setObjectName(QString::fromStdString("miLang_" + code));
    a->setData(QString::fromStdString(code));
    a->setCheckable(true);
    group->addAction(a);
    connect(a, &QAction::triggered, this, [this, code] { FForm.setLanguage(code); });
  }
}

void TMainWindow::retranslate() {
  if (!FForm.FMultiLang) return;
  const TMultiLang& lang = *FForm.FMultiLang;
  // Every menu and action is named by its phrase key.
  auto retext = [&](QAction* a) {
    const std::string t = lang.getTranslation(FForm.FLangID, a->objectName().toStdString());
    if (!t.empty()) a->setText(QString::fromStdString(t));
  };
  for (QAction* item : menuBar()->actions()) {
    QMenu* menu = item->menu();
    if (!menu) continue;
    const std::string t = lang.getTranslation(FForm.FLangID, menu->objectName().toStdString());
    if (!t.empty()) menu->setTitle(QString::fromStdString(t));
    if (menu == FLanguageMenu) continue;
    for (QAction* a : menu->actions())
      if (!a->isSeparator()) retext(a);
  }
  if (FLanguageMenu) {
    for (QAction* a : FLanguageMenu->actions()) {
      const std::string code = a->data().toString().toStdString();
      if (code.empty()) continue;
      const std::string name = lang.getTranslation(code, "LanguageName");
      a->setText(QString::fromStdString(name.empty() ? code : name));
      a->setChecked(code == FForm.FLangID);
    }
  }
  if (FServerLine) {
    if (FForm.FMCPServer)
      FServerLine->setText(phrase(kLocalApiLine).arg(FForm.FMCPServer->boundPort()));
    else
      FServerLine->setText(QString::fromStdString(lang.getTranslation(FForm.FLangID, "ApiPortTaken")) +
                           QString(" 127.0.0.1:%1").arg(FForm.FApiPort));
  }
  FForm.refreshStatus();
  FCanvas->update();
  FRulerX->update();
  FRulerY->update();
  retranslateTools();
  retranslateStlExport();
  retranslatePrint();
}

void TMainWindow::connectProgramHost() {
  auto refreshCaption = [this] {
    setWindowTitle(QString::fromStdString(FForm.captionText()) + "[*]");
    setWindowModified(FForm.PathList && FForm.PathList->FIsChanged);
  };
  FForm.FProgramHost.captionChanged = refreshCaption;
  FForm.FProgramHost.undoStateChanged = [this] {
    if (FActUndo) FActUndo->setEnabled(FForm.canUndo());
    if (FActRedo) FActRedo->setEnabled(FForm.canRedo());
  };
  FForm.FProgramHost.layerPanelChanged = [this] { FCanvas->update(); };
  FForm.FProgramHost.languageChanged = [this] {
    retranslate();
    if (FLibraries) FLibraries->retranslate();
  };
  FForm.FProgramHost.closeWindow = [this] { close(); };
  refreshCaption();
  FForm.FProgramHost.undoStateChanged();
}

void TMainWindow::closeEvent(QCloseEvent* e) {
  if (!FForm.FCloseQueryAnswered && !FForm.FormCloseQuery()) {
    e->ignore();
    return;
  }
  FForm.FCloseQueryAnswered = true;
  e->accept();
}
