// The drawing's shapes as plan polygons for the solids: closed outlines
// (lines, curves and arcs chained end to end, ellipses, templates), the
// glyphs of text shapes, and the stitching holes as round holes or in the
// shape of their blade. Curves are flattened with 32 pieces each. The
// plan's y runs up, and the centre of the outlines' bounds is the origin.
#pragma once

#include <memory>
#include <vector>

#include "exchange/stl_settings.h"
#include "exchange/stl_types.h"

class TPW_Path;
class TShapeList;
struct TPrickingIron;

struct TStlOutlines {
  std::vector<TPolygon2> Outlines;
  // The glyph contours of each text shape.
  std::vector<std::vector<TPolygon2>> Texts;
  std::vector<TPolygon2> Holes;
  // Chains of lines and curves that do not close.
  int OpenShapes = 0;
  // More points than a solid is made from, or larger than a printer's bed
  // could ever be: nothing else is filled in.
  bool TooDetailed = false;
};

// At most this many points in all the polygons of one solid.
inline constexpr size_t kMaxStlPoints = 400000;
// At most this many millimetres across.
inline constexpr double kMaxStlSize = 10000.0;

TStlOutlines prepareStlOutlines(const std::vector<const TPW_Path*>& shapes, const TSTLExportSettings& settings);

// The shapes a solid is made from: the selected ones where any are
// selected and `useSelection`; otherwise the whole drawing on its visible layers, where
// dashed lines (stitch lines, fold lines) are guides and not outlines,
// unless the drawing has no other closed outline.
struct TStlSource {
  std::vector<const TPW_Path*> Shapes;
  bool FromSelection = false;  // open shapes among them deserve a word
  // Makes Shapes point at copies of their own (and of the holes' irons),
  // for a window that stays open while the drawing may change under it.
  void keepCopies();

 private:
  std::vector<std::shared_ptr<const TPW_Path>> FCopies;
  std::vector<std::shared_ptr<const TPrickingIron>> FIrons;
};
TStlSource stlSourceShapes(const TShapeList& list, bool useSelection = true);
