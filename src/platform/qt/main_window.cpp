#include "platform/qt/main_window.h"

#include <QAction>
#include <QActionGroup>
#include <QGridLayout>
#include <QLabel>
#include <QMenuBar>
#include <QStatusBar>

#include "app/frm_pelw.h"
#include "platform/qt/canvas_widget.h"
#include "platform/qt/qt_timer.h"
#include "surface/view_colors.h"
#include "surface/view_phrases.h"

TMainWindow::TMainWindow(TfrmPelw& form, QWidget* parent) : QMainWindow(parent), FForm(form) {
  setWindowTitle("Pelwright");
  useQtTimers();
  buildCanvasArea();
  buildViewMenu();
  buildStatusLine();
  resize(1200, 800);
}

TMainWindow::~TMainWindow() {
  // The controller outlives the window: it must not call into it any more.
  FForm.FViewHost = TViewHost{};
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

QString TMainWindow::phrase(const TPhraseKey& key) const {
  return QString::fromStdString(viewPhrase(FForm.FMultiLang.get(), FForm.FLangID, key));
}

void TMainWindow::buildViewMenu() {
  QMenu* view = menuBar()->addMenu(phrase(ViewPhrase::MenuView));
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
  if (FForm.FMCPServer)
    statusBar()->addPermanentWidget(
        new QLabel(QString("Local API on 127.0.0.1:%1").arg(FForm.FMCPServer->boundPort()), this));
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
