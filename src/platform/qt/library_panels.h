// The libraries in the window: the parts repository and the backdrop panel
// as docks at the right, the leather catalog as a window of its own, the
// "Libraries" menu, and the keys "y" (the repository) and "w" (the
// backdrop tool) on the canvas.
#pragma once

#include <QObject>

class QMainWindow;
class QMenu;
class QDockWidget;
class TfrmPelw;
class TfrmRepository;
class TfrmCatalog;
class TBackdropPanel;

class TLibraryPanels : public QObject {
  Q_OBJECT
 public:
  // Builds the docks and the menu into `window`, and connects the
  // controller's library host; undone when this object goes.
  TLibraryPanels(QMainWindow& window, QWidget& canvas, TfrmPelw& form);
  ~TLibraryPanels() override;

  void openRepository();
  void openCatalog();
  void retranslate();
  TfrmRepository* repository() const { return FRepository; }
  TBackdropPanel* backdropPanel() const { return FBackdrop; }
  TfrmCatalog* catalog() const { return FCatalog; }
  QDockWidget* repositoryDock() const { return FRepositoryDock; }
  QDockWidget* backdropDock() const { return FBackdropDock; }

 private:
  QMainWindow& FWindow;
  TfrmPelw& FForm;
  QMenu* FMenu = nullptr;
  QDockWidget* FRepositoryDock = nullptr;
  QDockWidget* FBackdropDock = nullptr;
  TfrmRepository* FRepository = nullptr;
  TBackdropPanel* FBackdrop = nullptr;
  TfrmCatalog* FCatalog = nullptr;
};
