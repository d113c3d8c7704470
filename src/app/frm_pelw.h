// TfrmPelw: the controller. It owns the document, the view, the tools and
// the local API, and every command goes through it. It is a plain class;
// the window (or the headless runner) forwards events to it and provides
// the platform services.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "api/mcp_router.h"
#include "api/mcp_server.h"
#include "app/multi_lang.h"
#include "document/intersections.h"
#include "document/shape_list.h"
#include "libraries/draw_pallet.h"
#include "platform/main_thread.h"
#include "surface/view_state.h"

class ICanvas;
class INumberBox;
class ICaptionLabel;

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
  // Shut-down: the server first, so no request is left hanging.
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

  // ---- line palette ----
  // The forty line types; new shapes take the current row.
  TPalletList FPalletList;

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
  // Reads "EnableServer" of section "MCP" and starts the server when it is
  // true; a port that is taken leaves the program without a server, silently.
  void startMCPServerIfEnabled();
  void stopMCPServer();
  const TMcpRouter& router() const { return FRouter; }

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

 private:
  TMainThreadCalls FMainCalls;
  TMcpRouter FRouter;
  bool FCreated = false;
  bool FDestroyed = false;
};
