// Seam lines and cuts on the controller: offsets (a stitch line inside an
// edge, a seam allowance), trims, notches, round corners, extend-or-trim of
// two lines, centre lines and the smoothing of chain junctions. The tools
// and the local API call these same operations. Each one that changes the
// document ends with exactly one undo step; one that is refused or finds
// nothing to do changes nothing and takes no step.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "document/pw_path.h"
#include "geometry/chain_smoothing.h"
#include "geometry/trim.h"

class ICanvas;
class TfrmPelw;

// Values of the tools' panels.
struct TSeamToolSettings {
  float FOffsetDistance = 3.0f;    // nbOffsetDist1, mm
  float FMentoriRadius = 5.0f;     // nbR, mm
  float FCenterLineLength = 10.0f; // nbCenterLineLength1, mm
  int FCenterLineDivisions = 2;    // nbNumDividingCenter
  bool FCenterLineDrawEdges = false;  // chkDrawEdges
};

enum class TTrimOutcome { Trimmed, NothingHere, NotSupported, OvalNotSupported };

class TSeamEdits {
 public:
  explicit TSeamEdits(TfrmPelw& form) : F(form) {}
  TSeamEdits(const TSeamEdits&) = delete;
  TSeamEdits& operator=(const TSeamEdits&) = delete;

  TSeamToolSettings FSettings;

  // ---- offset (seam_edits_offset.cpp) ----
  // The offset tool's copies of the selection towards the direction point
  // at the panel's distance. A selection of lines, arcs and curves that
  // forms one chain is offset as a chain (closed when its first start and
  // last end agree to 1/10000 mm); otherwise each shape by itself.
  // The copies are palette row 39 with id -1, not in the document.
  std::vector<std::unique_ptr<TPW_Path>> offsetOfSelection(const TPointF& directionPoint);
  // The tool's live preview for the pointer at `pointerReal`.
  void paintOffsetPreview(ICanvas& canvas, const TPointF& pointerReal);
  // The tool's click: the copies join the active layer in the current line
  // type, the end-joining step runs, one undo step. The new identifiers.
  std::vector<int> commitOffset(const TPointF& directionPoint);

  struct TOffsetRequest {
    double FDistance = 0;
    TPointF FDirectionPoint;
    std::optional<int> FPaletteRow;       // zero-based; none: each source's own
    int FLayer = 0;
    std::optional<std::vector<int>> FShapeIds;  // none: every shape
  };
  struct TOffsetResult {
    std::vector<int> FCreatedIds, FSkippedIds;
  };
  // Every shape (or those named) by itself, with the rules of the local API.
  TOffsetResult offsetShapes(const TOffsetRequest& request);
  // A chain, brought into chain order, offset as one with its joins.
  std::vector<int> smartOffsetShapes(const std::vector<TPW_Path*>& shapes, const TOffsetRequest& request,
                                     bool closed);

  // The frame round a pattern: four lines (palette row 37) along the
  // boundary of the selection, or of every shape, grown by the margin on
  // all sides. One undo step; false with nothing to frame.
  bool drawOuterOffsetEdge(double margin);

  // ---- trim and notch (seam_edits_cuts.cpp) ----
  // Removes the piece of the shape under the point between its neighbouring
  // crossings. Says nothing; the tool shows the refusals.
  TTrimOutcome trimAt(const TPointF& point);
  // The trim tool's click: trimAt, with its refusal shown.
  bool trimClicked(const TPointF& point);
  // The notch tool: without a canvas a click (the first marks the point on
  // an edge, the second cuts the V towards it), with one the preview for
  // the pointer at `point`. True when the click was taken or a notch cut.
  bool notchStep(ICanvas* canvas, const TPointF& point);
  // Forgets the notch's first click (a tool change, Esc).
  void cancelNotch() { FNotchPoint.reset(); }
  bool notchStarted() const { return FNotchPoint.has_value(); }

  // ---- corners (seam_edits_cuts.cpp) ----
  // Rounds the corner of two lines meeting at `crossing` with an arc of the
  // radius. The arc, or null when the lines cannot take it (nothing changed).
  TPW_Path* chamferLines(TPW_Path* a, TPW_Path* b, double radius, const TPointF& crossing);
  // The corner tool's mouse-up: the chamfer of the two selected lines at
  // the panel's radius; a refusal shows its message. True when made.
  bool tryChamferOfSelection();
  struct TChamferReply {
    std::string FError;  // empty when made
    int FArcId = -1;
  };
  // The local API's chamfer: lines that don't meet are extended first. A
  // refusal changes nothing.
  TChamferReply chamferByIds(int lineId1, int lineId2, double radius);
  // Both lines brought exactly to their crossing: each end nearer it moves
  // there. False (nothing changed) for parallels and lines meeting already.
  bool extendOrTrimLines(TPW_Path* a, TPW_Path* b, TPointF& point);

  // ---- centre lines (seam_edits_cuts.cpp) ----
  // Short lines across the stretch from first to second, at its divisions.
  // How many were made (one undo step for all).
  int addCenterLines(const TPointF& first, const TPointF& second);
  void paintCenterLinePreview(ICanvas& canvas, const TPointF& first, const TPointF& pointerReal);

  // ---- chain smoothing (seam_edits_smooth.cpp) ----
  // Smooths the chain in the given order; one undo step when a curve moved.
  TSmoothOutcome smoothShapes(const std::vector<TPW_Path*>& chain, bool withLegs);

 private:
  TfrmPelw& F;
  std::optional<TPointF> FNotchPoint;  // the notch's first click

  std::vector<TPW_Path*> selectedShapes() const;
  std::vector<std::unique_ptr<TPW_Path>> selectionCopies(const TPointF& directionPoint);
  // Adds finished copies to the layer, runs the end-joining step and takes
  // the undo step; their new identifiers.
  std::vector<int> addOffsetCopies(std::vector<std::unique_ptr<TPW_Path>> copies, int layer);
  TPW_Path* applyChamfer(TPW_Path* a, TPW_Path* b, double radius, const TPointF& crossing);
  // Puts cut pieces in place of the shape; the shape may be gone after.
  void replaceByPieces(TPW_Path* shape, TCutPieces& pieces);
  std::vector<TPointF> crossingsOf(const TPW_Path* shape) const;
  std::vector<std::unique_ptr<TPW_Path>> centerLineShapes(const TPointF& first, const TPointF& second) const;
  void showMessage(const char* key);
  void strokePreview(ICanvas& canvas, const TPW_Path& shape);
};
