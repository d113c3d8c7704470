// TfrmPelw: the controller. It owns the document, the view, the tools and
// the local API, and every command goes through it. It is a plain class;
// the window (or the headless runner) forwards events to it and provides
// the platform services.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "api/mcp_router.h"
#include "api/mcp_server.h"
#include "app/multi_lang.h"
#include "app/options.h"
#include "app/project_reader.h"
#include "app/seam_edits.h"
#include "document/intersections.h"
#include "document/project_json.h"
#include "document/shape_list.h"
#include "document/undo_snapshot.h"
#include "libraries/draw_pallet.h"
#include "platform/dialogs.h"
#include "platform/main_thread.h"
#include "platform/png_image.h"
#include "platform/timer.h"
#include "stitching/iron_file.h"
#include "stitching/iron_groups.h"
#include "surface/pallet_paint_palette.h"
#include "surface/view_state.h"
// ---- stitch rows ----
#include <functional>
#include <optional>

#include "stitching/pricking_iron.h"
#include "stitching/route_network.h"
#include "stitching/stitch_settings.h"
// ---- end stitch rows ----
// ---- libraries ----
#include "app/library_host.h"
#include "libraries/backdrop.h"
#include "libraries/catalog.h"
#include "libraries/parts_repository.h"
// ---- end libraries ----
// ---- exchange ----
#include "exchange/export_settings.h"
// ---- end exchange ----
#include "generators/jigsaw.h"
// ---- printing ----
#include "exchange/print_layout.h"
#include "platform/paper_device.h"
// ---- end printing ----

class ICanvas;
class IExchangeDialogs;
class INumberBox;
class ICaptionLabel;

// What the window does for the program's commands: caption, panels and
// buttons that follow the document, and leaving. All optional; headless
// has none of them.
struct TProgramHost {
  std::function<void()> captionChanged;      // captionText() or the changed flag moved
  std::function<void()> undoStateChanged;    // undo and redo buttons
  std::function<void()> layerPanelChanged;   // layers were replaced
  std::function<void(bool)> showMemoPanel;   // open (true) or collapse the memo panel
  std::function<void()> languageChanged;     // texts of menus and widgets
  std::function<void()> closeWindow;         // actClose after the save question
};

// The view's fields (FScale, FOffset, the grid cache, ...) come from
// TViewState; its functions are declared in the view block below.
class TfrmPelw : public TViewState {
 public:
  TfrmPelw();
  ~TfrmPelw();
  TfrmPelw(const TfrmPelw&) = delete;
  TfrmPelw& operator=(const TfrmPelw&) = delete;

  // Start-up in its fixed order; the local API comes last. `args` are the
  // command line arguments left after the program's own options.
  void FormCreate(const std::vector<std::string>& args);
  // Shut-down: the server first, so no request is left hanging; then the
  // options and the iron file.
  void FormDestroy();

  // ---- document ----
  std::unique_ptr<TShapeList> PathList;
  std::unique_ptr<TIntersections> FIntersections;
  int FActiveLayer = 0;

  // ---- document changes: adding, changing and deleting shapes ----
  // Every change to the shapes takes this road so that FIntersections stays
  // right: a shape's crossings are dropped before it changes or goes and
  // gathered again after. None of these takes the undo snapshot; call
  // finishDocumentChange() once at the end of the user's action.

  // Appends the shape to `layer` and gathers its crossings with the others.
  // A shape whose FID is 0, negative or already in use gets a new one.
  // Returns the shape, now owned by the document.
  TPW_Path* addShapeToDocument(std::unique_ptr<TPW_Path> shape, int layer);
  // Keeps each shape's own FLayerID in addShapesToDocument.
  static constexpr int kOwnLayer = -1;
  // Appends the shapes in order (to `layer`, or each to its own with
  // kOwnLayer) and gathers their crossings as if added one at a time.
  // For paste, load and the pattern generators.
  void addShapesToDocument(std::vector<std::unique_ptr<TPW_Path>> shapes, int layer);
  // Call after a shape of the document was rebuilt, moved or resized: its
  // old crossings go and its new ones are gathered.
  void shapeChanged(TPW_Path* shape);
  // Drops the crossings that name the shape, e.g. when a drag begins.
  void forgetIntersectionsOf(TPW_Path* shape);
  // Drops the shape's crossings, takes it out of the document and frees it.
  // A shape that is not in the document is left alone.
  void deleteShape(TPW_Path* shape);
  // Gathers the crossings of one shape with the others (pair engine),
  // unless a drag or handle edit holds them back.
  void collectIntersectionsFor(TPW_Path* shape);
  // Rebuilds FIntersections from scratch over all pairs (polyline engine).
  void recalcIntersections();
  // The recalculate command: the rebuild, then the end of the action.
  void btnRecalcIntersectionsClick();
  // Marks a layer independent (its shapes meet only each other) or not,
  // and recalculates the crossings.
  void setLayerIndependent(int layerId, bool independent);
  // The end of a user's action that changed the document: the undo
  // snapshot is taken here, the document is marked changed.
  void finishDocumentChange();
  // Set by the drag and Bezier handle tools while they run: no crossings
  // are gathered meanwhile (adds and changes only drop old ones), and the
  // tool calls shapeChanged for its shapes when it ends.
  bool FHoldCrossings = false;

  // ---- language ----
  std::unique_ptr<TMultiLang> FMultiLang;
  std::string FLangID = "en";

  // ---- shell ----
  // Set before FormCreate to use another folder; empty takes the default.
  std::string FAppDataPath;
  std::string optionsFileName() const;
  // Port of the local API; the command line may change it.
  int FApiPort = 7777;
  std::unique_ptr<TPWMCPServer> FMCPServer;

  // Calls from other threads onto the main (this object's) thread. The
  // platform drains it from its event loop.
  TMainThreadCalls& mainThreadCalls() { return FMainCalls; }

  // ---- local API ----
  // The server's handler: runs the router on the main thread and waits.
  std::string mcpDispatch(const std::string& method, const std::string& path,
                          const std::string& body, int& status, std::string& contentType);
  // Reads "EnableServer" and "AllowedOrigins" (comma-separated) of section
  // "MCP" and starts the server when enabled. A port that is taken leaves
  // the program without a server; FMCPServerError then says so (and
  // standard error), for the status bar, and --headless ends.
  void startMCPServerIfEnabled();
  std::string FMCPServerError;
  void stopMCPServer();
  const TMcpRouter& router() const { return FRouter; }
  // Images the scene is rendered into for pictures of the drawing
  // (POST /render); the platform sets it. Without it that endpoint refuses.
  TPngImageFactory FMakePngImage;

  // ---- view and paint (defined in src/surface/) ----
  // Millimetres to canvas pixels and back; VisibleRealRect is what the
  // canvas shows.
  TPointF RealToScreen(const TPointF& real) const;
  TPointF ScreenToReal(const TPointF& pixel, bool snap = false) const;
  TRectF VisibleRealRect() const;
  // Repaints the canvas unless skipBox, and the rulers always.
  void RepaintCanvas(bool skipBox = false);
  // Draws the whole scene on `canvas`; nothing without a canvas.
  void pboxPaint(ICanvas* canvas);
  void pbRulerXPaint(ICanvas& canvas);
  void pbRulerYPaint(ICanvas& canvas);
  void pboxResize(int width, int height);
  void FormMouseWheel(int delta, TShiftState shift);
  void pboxMouseDown(TMouseButton button, TShiftState shift, const TPointF& pixel);
  void pboxMouseMove(TShiftState shift, const TPointF& pixel);
  void pboxMouseUp(TMouseButton button, TShiftState shift, const TPointF& pixel);
  // True when the key was used.
  bool FormKeyDown(TViewKey key, TShiftState shift);
  void FormGestureZoom(const TGestureEvent& gesture);
  void FormGesturePan(const TGestureEvent& gesture);
  void actResetView();
  void actSetGridBackgroundBlack();
  void actSetGridBackgroundWhite();
  void actToggleGrid();
  // Takes the colours of the background mode and redraws.
  void setBackgroundMode(bool black);
  // Chooses FGridTick again when FScale changed since the last choice.
  void updateGridTick();
  // "Scale 9.99, Pos: (12.00 mm, 3.50 mm)" and the pending counters.
  std::string statusText() const;
  void refreshStatus();
  // Writes a paint failure to the log, once per distinct text.
  void logPaintError(const std::string& className, const std::string& message, const TPW_Path* shape);
  std::string paintErrorLogFileName() const;

  // ---- lengths and units (src/surface/frm_pelw_units.cpp) ----
  // Switches the unit of the whole program: settings, captions, boxes, view.
  void setUnitMode(TUnitMode unit);
  const TLengthFormatSettings& lengthSettings() const { return FViewOptions.FLengthFormatSettings; }
  bool FIsInch = false;
  std::vector<INumberBox*> FNBList;       // length boxes that convert with the unit; borrowed
  std::vector<ICaptionLabel*> FUnitLabels;  // labels whose "mm" follows the unit; borrowed
  std::map<const ICaptionLabel*, std::string> FMmInchDict;

  // ==== program: start-up, options, project files, undo, autosave ====
  // (src/app/frm_pelw_startup.cpp, frm_pelw_project_load.cpp,
  // frm_pelw_project_save.cpp, frm_pelw_undo.cpp, frm_pelw_autosave.cpp,
  // frm_pelw_file_commands.cpp)

  // Platform services; set before FormCreate. Without dialogs, messages go
  // to the standard error stream and questions keep the user's data.
  IDialogs* FDialogs = nullptr;
  TProgramHost FProgramHost;
  // True for --headless: no demo project, nothing that needs a person.
  bool FHeadless = false;
  // The canvas size --headless works with, having no window to measure.
  static constexpr int kHeadlessCanvasWidth = 1200;
  static constexpr int kHeadlessCanvasHeight = 800;
  // The shipped demo projects (the "demo" folder beside the executable);
  // copied into the application data folder before the demo opens. Empty:
  // only what that folder already holds.
  std::string FDemoSourcePath;
  // Whether the system has a font family (the window's toolkit knows).
  std::function<bool(const std::string&)> FFontExists;
  // Set once the save question was answered for closing the window.
  bool FCloseQueryAnswered = false;
  // Starts a further instance of the program with these arguments; the
  // default starts this program's own file. Returns "" or the error.
  std::function<std::string(const std::vector<std::string>&)> FLaunchInstance;

  TPW_Options FOptions;
  TPrickingIronGroups FPrickingIronGroups;
  TIronStartup FIronStartup;
  // Drawing defaults, from the current palette row.
  TAlphaColor FCurrentColor = 0xFF00FFFF;
  float FCurrentThickness = 1.5f;
  TStrokeDash FCurrentDash = TStrokeDash::Solid;
  int FSelectedPalette = 0;
  std::string FDefaultFont;

  std::string FFilename;  // the open project; empty for a new one
  std::vector<std::unique_ptr<TPW_Path>> FCopyBuffer;
  std::string FRandomStr;  // names this instance's autosave file
  std::string FRepositoryPath;
  std::string FCatalogPath;
  // The read context of a project load (irons, palette, current style).
  TProjectReadContext projectReadContext() const;

  // Undo: the last snapshot always equals the live document.
  std::vector<std::unique_ptr<TUndoSnapshot>> FUndoList;
  std::vector<std::unique_ptr<TUndoSnapshot>> FRedoList;
  std::unique_ptr<ITimer> TimerAutoSave;

  // ---- start-up and shut-down ----
  // The language: the options' if it has a table, else the system's, else "en".
  void setLanguage(const std::string& langID);
  static std::string systemLanguage();
  void readOptionsFile();
  // Writes the options, keeping keys of the file the program does not own.
  void writeOptionsFile();
  // The command line: a project as first argument, "--instance-id".
  struct TCommandLineStart {
    bool FCountsAsOpened = false;  // no autosave recovery then
    bool FProjectLoaded = false;   // a project file was given
  };
  TCommandLineStart handleCommandLine(const std::vector<std::string>& args);
  // Opens the sample project of the language ("demo" folder); says so when
  // it is missing.
  void openDemoProject();
  std::string demoProjectFileName() const;
  // Writes unsaved work to this instance's autosave file, so that the next
  // start brings it back: shut-down on SIGINT, SIGTERM or SIGHUP, without a
  // question, in the window as in --headless.
  void FormDestroyAfterSignal();

  // ---- project files ----
  // Loads a project; false when the file was no JSON object or could not
  // be read. Failures are told through the dialogs and leave the open
  // document and FFilename as they were: a failed file is never a save target.
  bool loadProject(const std::string& filename);
  // Saves to FFilename, or asks for a name when there is none. True when saved.
  bool saveProject();
  // Asks for a name (at FFilename's folder), then saves.
  bool saveProjectAs();
  // Writes the project to `filename` (atomically); throws naming the file.
  void writeProjectFile(const std::string& filename);
  // "name.pwc - Pelwright ver3.6.1", or the product alone for a new project.
  std::string captionText() const;
  void updateCaption();
  // The clipboard file "copied_shapes.json" from FCopyBuffer, and back.
  void writeCopiedShapesFile();
  bool readCopiedShapesFile();
  std::string copiedShapesFileName() const;

  // ---- file commands ----
  // The save question; true when the command may go on.
  bool FormCloseQuery();
  void actNewProject();
  // A new project without the save question, as the local API asks for
  // it: unlike the New command the undo list is kept, so the new page is
  // one more undo step.
  void newProjectWithoutQuestion();
  // Makes palette row `row` the current line type for new shapes.
  void selectPalletRow(int row);
  void actLoadProject();
  void actSaveProject();
  void actSaveProjectAs();
  void actClose();
  void actOpenNewWindow();
  // The document's changed flag, through the one road that stamps the time.
  void setChanged(bool changed);

  // ---- undo and redo ----
  // The one entry point: every command that changed the document calls it
  // once at its end.
  void takeSnapshot();
  // A run of wheel rotations or scalings becomes one undo level here.
  void flushPendingSnapshot();
  void actUndo();
  void actRedo();
  void clearUndo();
  void clearRedo();
  // With the backdrop tool these are the selected backdrop's.
  bool canUndo() const;
  bool canRedo() const;

  // ---- autosave ----
  std::string autosaveFileName() const;
  void TimerAutoSaveTimer();
  // Deletes this instance's autosave file when there is one.
  void deleteAutosaveFile();
  // Start-up: loads the newest leftover autosave file (renamed
  // "delete_anytime..." while it loads, so that a file that crashes the
  // load is not taken again), which then stays as this instance's autosave
  // file until a newer autosave or a save replaces it. True when one was found.
  bool recoverAutosave();
  // ---- line palette (src/surface/frm_pelw_palette.cpp) ----
  // The forty rows, factory values until the options overlay them. The
  // painter reads the palette through FPaintPalette, which points at these
  // rows unless a caller points it elsewhere (null: each shape keeps its
  // own colour).
  TPalletList FPalletList;
  TPalletListPaintPalette FPalletPaint{FPalletList};
  const IPaintPalette* FPaintPalette = &FPalletPaint;
  // After the rows changed (options read, editor closed with OK or reset):
  // the colours taken from them follow, and the canvas repaints.
  void palletListChanged();

  // ==== stitch rows (src/app/frm_pelw_stitch*.cpp) ====
  // The stitch tool's state across its clicks, the settings a row is laid
  // with, and the operations the tool and the local API call.

  // The pitch mode, corner mode and search limits; the options and the
  // stitch panel write them here.
  TStitchSettings FStitchSettings;
  int FStitchingCount = 0;         // clicks of the stitching under way; 0 when idle
  TPointF FStitchRealOrigin;       // first click
  TPointF FStitchRealLastPos;      // the last hole: where the next press starts
  TPointF FStitchLastDirection;    // for the press preview
  TPointF FStitchNextPos;
  bool FSkipFirstStitch = false;   // the first click fell on a hole: don't punch it again
  int FSelectedNumOfBlades = 1;    // blade count chosen in the iron tree
  int FNextHoleCnt = 1;            // blades the next press uses
  bool FIsInvertedStitchMode = false;
  // The iron of the chosen group, borrowed. With none, rows use a 4 mm
  // diamond iron of the controller's own.
  TPrickingIron* FSelectedPrickingIron = nullptr;
  // The hole made last, to continue a chain over several commands;
  // borrowed, and checked against the document before use.
  TPW_Path* FLastStitch = nullptr;
  // Points a press may aim at during a stitching: where the reach of the
  // iron crosses the drawing.
  std::unique_ptr<TIntersections> FStitchIntersections;
  // The route search of the stitching under way.
  std::unique_ptr<TVertexNetwork> FVertexNetwork;
  std::vector<TPointF> Clicked_Points;
  // What the stitch panel's two labels show after a row.
  std::string FStitchCountText;   // lblNumOfStitches
  std::string FStitchLengthText;  // lblLength
  // Shows a message to the user (a message box in the window); with none
  // the text is only kept in FStitchMessage.
  std::function<void(const std::string&)> FShowStitchMessage;
  std::string FStitchMessage;

  // A mouse-up of the stitch tool at a canvas pixel: the sticky point if
  // one stands, else the snapped position, goes to stitchClickedAt.
  void stitchClicked(float x, float y, bool shift = false);
  // The click sequence of the stitch tool at a point in millimetres.
  void stitchClickedAt(const TPointF& point, bool shift = false);
  // One press of the iron towards the click. With a canvas it only draws
  // the preview. True when holes were made.
  bool pressIron(ICanvas* canvas, const TPointF& clickScreen, const TPointF& clickReal, float pitch,
                 bool shift = false);
  // The first hole of the active layer closer than radius, or null.
  TPW_Path* findHoleNear(const TPointF& pt, float radius) const;
  // The one-click row round a closed outline; count and pitch of the row.
  void placeOnClosedPath(const std::vector<TPW_Path*>& shapes, const TPointF& startPt, int& count,
                         float& pitch);
  // Ends the stitching under way without a row (Esc, a tool change).
  void cancelStitching();
  // FLastStitch when it is still a shape of the document, else null (and
  // FLastStitch is cleared).
  TPW_Path* validLastStitch();

  // ---- the stitching endpoints of the local API ----
  struct TStitchHoleRequest {
    TPointF FCenter;
    float FAngle = 0.0f;
    std::string FStitchType = "diamond";
    std::optional<int> FLayerId;
    float FThickness = 1.0f;
    TStrokeDash FDash = TStrokeDash::Solid;
  };
  struct TStitchAlongPathRequest {
    TPointF FStartPoint;
    TPointF FEndPoint;
    std::string FMode = "auto";
    float FPitchMm = 4.0f;
    int FCornerMode = 2;
    float FHoleCount = 10.0f;  // a number box: a fraction is taken as given
    std::string FStitchType = "diamond";
    std::optional<int> FLayerId;
  };
  struct TStitchLoopRequest {
    TPointF FPointOnLoop;
    std::string FMode = "auto";
    float FPitchMm = 4.0f;
    float FHoleCount = 10.0f;  // a number box: a fraction is taken as given
    std::string FStitchType = "diamond";
    std::optional<int> FCornerMode;  // none: the current setting
    std::optional<int> FLayerId;
  };
  struct TStitchReply {
    bool FOk = false;
    std::string FError;          // the refusal's text when not ok
    int FHoleCount = 0;
    float FActualPitchMm = 0.0f;
    bool FChainPlacement = false;  // laid by a corner method: the reply tells "cornerMode"
    int FCornerMode = 0;
    std::vector<int> FCreatedIds;
  };
  // One hole; its identifier.
  int apiAddStitchHole(const TStitchHoleRequest& request);
  TStitchReply apiStitchAlongPath(const TStitchAlongPathRequest& request);
  TStitchReply apiStitchLoop(const TStitchLoopRequest& request);
  // "french" F, "flat" L, "round" R, anything else D; any case.
  static std::string bladeTypeOfStitchName(const std::string& stitchType);
  // ---- stitch settings from the options (src/app/stitch_options.cpp) ----
  // FStitchSettings follows FOptions: called when the options are read at
  // start-up (which also picks the pitch button) and after they change.
  void stitchOptionsChanged(bool atStartUp = false);
  // ==== end stitch rows ====

  // ==== libraries: parts repository, leather catalogs, backdrops ====
  // (src/app/frm_pelw_libraries.cpp, frm_pelw_repository.cpp,
  // frm_pelw_catalog.cpp, frm_pelw_backdrop.cpp; the window's panels are in
  // src/platform/qt/ and call these.)
  TLibraryHost FLibraryHost;
  std::unique_ptr<TPartRepository> FRepository;  // FPartRepository, FRootRepositoryTreeItem
  std::unique_ptr<TPW_CatalogDict> FCatalogDict;
  std::vector<std::unique_ptr<TBackdrop>> FBackdrops;
  // The backdrops as the project file stores them.
  std::vector<TBackdropData> backdropsForFile() const;
  float FBackdropAlpha = 0.8f;   // tbOpacity, common to all backdrops
  bool FShowBackdrops = true;    // chkOpacity
  int FSelectedBackdrop = -1;    // the row of cmbBackdrop
  // The backdrop tool is active (sbBackdrop): undo and redo work on the
  // selected backdrop, a drag moves the backdrop under the pointer.
  bool FBackdropToolActive = false;
  void setBackdropTool(bool on);
  // Start-up steps 12, 14 and 15, and their writes at shut-down.
  void loadCatalogsAtStartup();
  void deployBuiltinTemplatesAtStartup();
  void loadRepositoryAtStartup();
  void saveLibrariesAtShutdown();
  // ---- parts repository ----
  void openRepository();  // "y", btnOpenRepository
  // miToParts: the selection (without dots and holes when asked) becomes
  // one template of the name the user gives. The new template, or null.
  TPW_Path* miToParts(bool skipDots = true, bool skipHoles = true);
  // A copy of the template into the active layer, its middle at `at` (the
  // middle of the view when none), selected; one undo step.
  TPW_Path* placeTemplate(const TPW_Path& templ, const std::optional<TPointF>& at = std::nullopt);
  // The template the repository window has selected: the dot tool places it.
  TPW_Path* FSelectedTemplate = nullptr;
  // After the question "ok2delete?"; true when deleted.
  bool deleteRepositoryItems(const std::vector<TPW_Path*>& templates,
                             const std::vector<TRepositoryTreeItem*>& folders);
  bool renameRepositoryTemplate(TPW_Path* templ);
  bool renameRepositoryFolder(TRepositoryTreeItem* folder);
  TRepositoryTreeItem* newRepositoryFolder(TRepositoryTreeItem* parent);
  // Moves a template or a folder; refuses a folder into its own sub-folder
  // with a message. True when moved.
  bool moveRepositoryItem(TPW_Path* templ, TRepositoryTreeItem* folder, TRepositoryTreeItem* destination);
  void actImportRepository();
  void actExportRepositoryFolder(const TRepositoryTreeItem& folder);
  TPartRepository::TShapeReader templateReader();
  // ---- leather catalogs ----
  TPW_CatalogShop* addCatalogShop(const std::string& name);
  TPW_CatalogGroup* addCatalogGroup(TPW_CatalogShop& shop, const std::string& name);
  TPW_Catalog* addCatalogItem(TPW_CatalogGroup& group, const std::string& name);
  // After an editor changed an item, group or shop: its shop is written at exit.
  void catalogEdited(const TPW_CatalogShop* shop);
  // A picture file for the item; a message when it is no picture.
  bool loadCatalogPicture(TPW_Catalog& item, const std::string& filename);
  // After the question "ok2delete?".
  bool deleteCatalogItem(TPW_Catalog* item);
  bool deleteCatalogGroup(TPW_CatalogGroup* group);
  bool deleteCatalogShop(TPW_CatalogShop* shop);
  void actExportCatalog(const TPW_CatalogShop& shop);
  void actImportCatalog();
  // Imports a ".ctlg" file; a shop already present is not added twice.
  bool importCatalogFile(const std::string& filename);
  // Fills the selected closed shapes with the item's picture (null: none);
  // one undo step. The number of shapes changed.
  int applyCatalogToSelection(const TPW_Catalog* item, float rotation = 0, TPointF scale = TPointF(1, 1));
  // ---- backdrops ----
  void actAddBackdrop();
  // A picture or a PDF (its chosen pages); missing files are looked for
  // beside the project. True when a backdrop was added.
  bool addBackdropFromFile(const std::string& filename);
  // A backdrop of a picture already in memory, placed and selected.
  TBackdrop* addBackdrop(const TRasterImage& picture, float dpi, const std::string& source);
  void btnDeleteBackdrop();
  void selectBackdrop(int index);
  TBackdrop* selectedBackdrop() const;
  // Each is one undo step of the selected backdrop.
  void moveBackdrop(const TPointF& leftTop);
  void rotateBackdrop(float angle);
  void setBackdropDpi(float dpi);
  void setBackdropSize(float width, float height);
  // The two points of the model lie `distance` mm apart on the real
  // object: the picture is scaled about the first one.
  bool calibrateBackdrop(const TPointF& p1, const TPointF& p2, float distance);
  void setBackdropOpacity(float alpha);
  void setShowBackdrops(bool show);
  void backdropUndo();
  void backdropRedo();
  // The backdrop tool's pointer: a press on a backdrop picks it, a drag
  // moves it, the release records the move. With calibration started the
  // next two clicks are its points, then the distance is asked. True when
  // the event was the backdrop tool's.
  bool backdropMouseDown(const TPointF& pixel);
  bool backdropMouseMove(const TPointF& pixel);
  bool backdropMouseUp(const TPointF& pixel);
  void startBackdropCalibration();
  std::vector<TPointF> FCalibrationPoints;
  bool FCalibrating = false;
  // What the painter keeps of the backdrops on the screen.
  std::shared_ptr<void> FBackdropLayerCache;
  // ==== end libraries ====

  // ==== SVG and DXF exchange (src/exchange/frm_pelw_exchange.cpp) ====
  // The export options, file and size dialogs; none without a window.
  IExchangeDialogs* FExchangeDialogs = nullptr;
  // The export dialog's switches that last for the run of the program.
  TExportSettings FExportRun;
  void actExportAsSVG() { actExportAsSVGExecute("SVG"); }
  void actExportAsDXF() { actExportAsSVGExecute("DXF"); }
  // Both export commands: "SVG" or "DXF".
  void actExportAsSVGExecute(const std::string& type);
  // The drawing as the exports read it.
  TExportScene exportScene() const;
  // Writes the drawing as "SVG" or "DXF"; false when the filter left
  // nothing. Throws naming the file when it cannot be written.
  bool exportDrawing(const std::string& filename, const std::string& type, const TExportSettings& settings);
  void actImportSVG();
  // The import command's body after the file dialog: the questions, the
  // import, the report.
  void importSVG(const std::string& filename);
  struct TSvgImportResult {
    size_t FShapeCount = 0;           // shapes added, one undo step
    std::string FError;               // why nothing was read
    std::vector<std::string> FReport;  // what was skipped
  };
  // Reads the picture and adds its shapes to the active layer as one undo
  // step; with askSize the width dialog may scale it.
  TSvgImportResult importSVGFile(const std::string& filename, bool disassemble, bool askSize);
  // ==== end exchange ====

  // ==== seam lines and cuts (src/app/seam_edits*.cpp) ====
  // Offsets, trims, notches, round corners, centre lines and smoothing, for
  // the tools and the local API alike.
  TSeamEdits FSeamEdits{*this};
  // Both selected lines brought exactly to their crossing ("z"); one undo
  // step when they changed.
  void actExtendOrTrimLines();
  // Smoothing of the selected curves' chain through the local API's
  // handler; its reply text (for lblID), empty without a selected curve.
  std::string actBezier_G1Smoothing();
  std::string actBezier_G2Smoothing();
  // The frame round the pattern, at a margin the user types.
  void btnDrawOuterOffsetEdgeClick();
  // ==== end seam lines and cuts ====

  // ==== generators, stitching order, translation import ====
  // (src/app/frm_pelw_generators.cpp)
  // The jigsaw dialog's values, kept for its next opening.
  TJigsawSettings FJigsawSettings;
  // Draws the jigsaw pattern in the active layer as one undo step and keeps
  // the settings. Refused settings get a message and change nothing.
  bool actJigsaw(const TJigsawSettings& settings);
  // Chains the selected holes into a short tour that starts at the hole
  // nearest the pointer; one undo step. No hole selected: nothing at all.
  void actFixStitchingOrder();
  // Asks for a tab-separated phrase file and imports it.
  void actImportTranslationFile();
  // Replaces the phrase tables with the file's; a refused file gets a
  // message and changes nothing. True when imported.
  bool importTranslationFile(const std::string& filename);
  // ==== end generators ====

  // ==== printing and PDF (src/exchange/frm_pelw_print.cpp) ====
  // The printer, its dialogs and the preview (none without a window), and
  // PDF documents; the platform sets them.
  IPrintService* FPrintService = nullptr;
  TPdfDocumentFactory FMakePdfDocument;
  // The preview's boxes and the papers, kept for the next print.
  TPrintSwitches FPrintSwitches;
  TPaperSetup FPrinterPaper;
  TPaperSetup FPdfPaper;
  // The pages of the last print or PDF, shown on the canvas as print areas.
  std::unique_ptr<TPrintLayout> FPrintLayout;
  std::unique_ptr<ITimer> timerPrint;
  // Nothing to print, the note on the scales, the printer dialog; then
  // timerPrint starts the print run.
  void actPrint();
  // The print run: the preview, then the sheets of the chosen printer.
  void printRun();
  // The preview with the PDF's paper, then the file: written whole or not at all.
  void actExportAsPDF();
  void actShowHidePrintAreas();
  // The document's pages on `paper`, with the options' calibration and the
  // kept boxes; tiled anew when the drawing needs more than the one page
  // a document starts with. Null for an empty drawing.
  std::unique_ptr<TPrintLayout> makePrintLayout(const TPaperSetup& paper);
  // The printed pages of `layout` as a PDF file's bytes; "" or why not.
  std::string makePdfBytes(const TPrintLayout& layout, std::string& bytes);
  // ==== end printing ====

 private:
  friend class TSeamEdits;  // the hit test, messages and phrases
  // ---- stitch rows ----
  std::unique_ptr<TPrickingIron> FOwnStitchIron;
  int FLastStitchID = -1;
  TPrickingIron* stitchIron();
  void noteLastStitch();
  std::string stitchPhrase(const char* key, const char* english) const;
  void finishStitching(int shownCount, const std::string& lengthText);
  // ---- libraries ----
  TBackdrop* FDraggingBackdrop = nullptr;
  TPointF FBackDropOrgTopLeft;
  TPointF FBackdropDragStart;
  void backdropChanged(bool recordUndo);
  bool addBackdropsFromPdf(const std::string& filename);
  void showLibraryProblems(const std::vector<std::string>& problems);
  void loadBackdropsOfProject(const std::vector<TBackdropData>& data, const std::string& projectFile);
  void clearBackdrops();
  void prepareStitchCandidates();
  std::vector<TPW_Path*> stitchHitTest(const TPointF& point) const;
  // Empty, or why a row over these shapes is not laid with the settings:
  // the local API's words, or the phrase the tool shows.
  std::string rowSizeRefusal(const std::vector<TPW_Path*>& shapes, const TStitchSettings& settings,
                             bool api) const;
  TMainThreadCalls FMainCalls;
  THeadlessDialogs FHeadlessDialogs;
  TSnapshotLinks FSnapshotLinks;
  IDialogs& dialogs() { return FDialogs ? *FDialogs : FHeadlessDialogs; }
  std::string phrase(const std::string& key) const;
  void showFault(const std::string& text);
  // The project load's own work, from the file's text on.
  bool loadProjectText(const std::string& filename, const std::string& bytes);
  void resetForNewDocument();
  void afterDocumentReplaced();
  TMcpRouter FRouter;
  bool FCreated = false;
  bool FDestroyed = false;
  bool FWriteRecoveryOnExit = false;
  TDateTime FUnsavedSince = 0;  // the first change not yet in a file
  std::string FLastAutosaveError;
};
