#include "platform/qt/library_panels.h"

#include <QAction>
#include <QDockWidget>
#include <QMainWindow>
#include <QMenuBar>
#include <QToolButton>

#include "app/frm_pelw.h"
#include "platform/qt/backdrop_panel.h"
#include "platform/qt/catalog_window.h"
#include "platform/qt/repository_panel.h"

namespace {
QString phraseOf(const TfrmPelw& f, const char* key) {
  return f.FMultiLang ? QString::fromStdString(f.FMultiLang->getTranslation(f.FLangID, key)) : QString(key);
}
}  // namespace

TLibraryPanels::TLibraryPanels(QMainWindow& window, QWidget& canvas, TfrmPelw& form)
    : QObject(&window), FWindow(window), FForm(form) {
  FRepository = new TfrmRepository(form);
  FRepositoryDock = new QDockWidget(&window);
  FRepositoryDock->setObjectName("dockRepository");
  FRepositoryDock->setWidget(FRepository);
  window.addDockWidget(Qt::RightDockWidgetArea, FRepositoryDock);
  FRepositoryDock->hide();

  FBackdrop = new TBackdropPanel(form);
  FBackdropDock = new QDockWidget(&window);
  FBackdropDock->setObjectName("dockBackdrop");
  FBackdropDock->setWidget(FBackdrop);
  window.addDockWidget(Qt::RightDockWidgetArea, FBackdropDock);
  FBackdropDock->hide();

  FMenu = window.menuBar()->addMenu(QString());
  FMenu->setObjectName("miLibraries");
  auto add = [this](const char* key, auto slot, QKeySequence shortcut = {}) {
    QAction* a = FMenu->addAction(QString());
    a->setObjectName(key);
    if (!shortcut.isEmpty()) a->setShortcut(shortcut);
    connect(a, &QAction::triggered, this, slot);
    return a;
  };
  add("btnOpenRepository", [this] { openRepository(); });
  add("miToParts", [this] { FForm.miToParts(); });
  add("actImportRepository", [this] { FForm.actImportRepository(); });
  FMenu->addSeparator();
  add("frmCatalog", [this] { openCatalog(); });
  add("actImportCatalog", [this] { FForm.actImportCatalog(); });
  FMenu->addSeparator();
  add("actAddBackdrop", [this] { FForm.actAddBackdrop(); });
  QAction* tool = add("sbBackdrop", [this](bool on) {
    FBackdropDock->show();
    FBackdrop->FTool->setChecked(on);
  });
  tool->setCheckable(true);
  connect(FBackdrop->FTool, &QToolButton::toggled, tool, &QAction::setChecked);

  // The single keys act on the canvas only, so that typing elsewhere is left alone.
  auto* keyY = new QAction(&canvas);
  keyY->setShortcut(Qt::Key_Y);
  keyY->setShortcutContext(Qt::WidgetShortcut);
  connect(keyY, &QAction::triggered, this, [this] { FForm.openRepository(); });
  canvas.addAction(keyY);
  auto* keyW = new QAction(&canvas);
  keyW->setShortcut(Qt::Key_W);
  keyW->setShortcutContext(Qt::WidgetShortcut);
  connect(keyW, &QAction::triggered, this, [this] {
    FBackdropDock->show();
    FBackdrop->FTool->toggle();
  });
  canvas.addAction(keyW);

  form.FLibraryHost.openRepository = [this] { openRepository(); };
  form.FLibraryHost.repositoryChanged = [this] { FRepository->setRepositoryTree(); };
  form.FLibraryHost.catalogChanged = [this] {
    if (FCatalog) FCatalog->refresh();
  };
  form.FLibraryHost.backdropsChanged = [this] {
    FBackdrop->refresh();
    if (!FForm.FBackdrops.empty()) FBackdropDock->show();
  };
  retranslate();
}

TLibraryPanels::~TLibraryPanels() { FForm.FLibraryHost = TLibraryHost{}; }

void TLibraryPanels::openRepository() {
  FRepositoryDock->show();
  FRepositoryDock->raise();
  FRepository->tree()->setFocus();
}

void TLibraryPanels::openCatalog() {
  if (!FCatalog) FCatalog = new TfrmCatalog(FForm, &FWindow);
  FCatalog->refresh();
  FCatalog->show();
  FCatalog->raise();
}

void TLibraryPanels::retranslate() {
  FMenu->setTitle(phraseOf(FForm, "miLibraries"));
  for (QAction* a : FMenu->actions())
    if (!a->objectName().isEmpty()) a->setText(phraseOf(FForm, a->objectName().toUtf8().constData()));
  FRepositoryDock->setWindowTitle(phraseOf(FForm, "miRepository"));
  FBackdropDock->setWindowTitle(phraseOf(FForm, "tabTop_Backdrop"));
  FRepository->retranslate();
  FBackdrop->retranslate();
  if (FCatalog) FCatalog->retranslate();
}
