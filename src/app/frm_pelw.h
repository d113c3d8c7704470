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
#include "surface/pallet_paint_palette.h"
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

 private:
  TMainThreadCalls FMainCalls;
  TMcpRouter FRouter;
  bool FCreated = false;
  bool FDestroyed = false;
};
