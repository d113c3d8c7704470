// The main window: the canvas with its rulers, the View menu and a status
// line. Events go to the controller, which owns everything that matters.
#pragma once

#include <QMainWindow>

class TfrmPelw;
class TCanvasWidget;
class TRulerWidget;
class QLabel;
class QAction;
class TLibraryPanels;
class TfrmDyeSimulator;
struct TPhraseKey;

class TMainWindow : public QMainWindow {
  Q_OBJECT
 public:
  explicit TMainWindow(TfrmPelw& form, QWidget* parent = nullptr);
  ~TMainWindow() override;

  TCanvasWidget* canvas() const { return FCanvas; }
  QAction* FActResetView = nullptr;
  QAction* FActShowGrid = nullptr;
  QAction* FActShowStitchSimulator = nullptr;
  QAction* FActBlackBackground = nullptr;
  QAction* FActWhiteBackground = nullptr;
  // File and Edit; each action's object name is its phrase key.
  QAction* FActNewProject = nullptr;
  QAction* FActLoadProject = nullptr;
  QAction* FActOpenNewWindow = nullptr;
  QAction* FActSaveProject = nullptr;
  QAction* FActSaveProjectAs = nullptr;
  QAction* FActImportSVG = nullptr;
  QAction* FActExportAsSVG = nullptr;
  QAction* FActExportAsDXF = nullptr;
  QAction* FActClose = nullptr;
  QAction* FActUndo = nullptr;
  QAction* FActRedo = nullptr;
  QMenu* FLanguageMenu = nullptr;
  TLibraryPanels* FLibraries = nullptr;  // repository, catalog, backdrops

  // Every text of the window from the phrase table, in the current language.
  void retranslate();

  // ---- Tools: jigsaw, dye mixer, stitching order; the translation import
  // (main_window_tools.cpp) ----
  QMenu* FToolsMenu = nullptr;
  QAction* FActJigsaw = nullptr;
  QAction* FActDyeMixer = nullptr;
  QAction* FActFixStitchingOrder = nullptr;
  QAction* FActImportTranslation = nullptr;
  // The dye mixer, made when first opened; a window of its own.
  TfrmDyeSimulator* FDyeMixer = nullptr;
  void openJigsawDialog();
  void openDyeMixer();

  // ---- File > Export as STL: the solids' dialog (main_window_stl.cpp) ----
  QAction* FActExportAsSTL = nullptr;
  void buildStlExport();
  void retranslateStlExport();
  // The selected shapes, or the drawing's closed outlines, in the dialog;
  // a message when there is nothing to make a solid of.
  void actExportAsSTL();

  // ---- printing: Print, Export as PDF, print areas (main_window_print.cpp) ----
  QAction* FActPrint = nullptr;
  QAction* FActExportAsPDF = nullptr;
  QAction* FActShowHidePrintAreas = nullptr;

 protected:
  void showEvent(QShowEvent* e) override;
  void closeEvent(QCloseEvent* e) override;

 private:
  TfrmPelw& FForm;
  TCanvasWidget* FCanvas = nullptr;
  TRulerWidget* FRulerX = nullptr;
  TRulerWidget* FRulerY = nullptr;
  QWidget* FCorner = nullptr;
  QLabel* FStatus = nullptr;
  QLabel* FServerLine = nullptr;  // where the local API listens, when it does
  bool FShownOnce = false;

  void buildCanvasArea();
  void buildViewMenu();
  void buildStatusLine();
  void buildFileMenu();
  void buildEditMenu();
  void buildLanguageMenu();
  void buildToolsMenu();
  void retranslateTools();
  void buildPrintCommands();
  void retranslatePrint();
  void connectProgramHost();
  QMenu* FFileMenu = nullptr;
  QMenu* FEditMenu = nullptr;
  QMenu* FViewMenu = nullptr;
  void paintCorner();
  // A menu text in the program's language.
  QString phrase(const TPhraseKey& key) const;
};
