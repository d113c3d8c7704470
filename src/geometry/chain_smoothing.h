// Smoothing the junctions of a chain of lines, arcs and curves: curves
// yield their control points so that neighbours share their direction at
// each junction (G1), and for G2 two curves also get legs of equal length
// there. Lines and arcs never change; they give the direction.
#pragma once

#include <vector>

#include "document/pw_path.h"

class TShapeList;

// The chain of lines, arcs and curves joined to `shape` end to end (ends
// within 0.5 mm on each axis), in order along it. Where three shapes meet
// the first in list order is taken. Empty for other kinds.
std::vector<TPW_Path*> gatherChain(TPW_Path* shape, const TShapeList& list);

struct TSmoothOutcome {
  int FUpdatedCount = 0;      // control points moved, counted per curve and junction
  bool FClosedLoop = false;   // the last shape joins the first
  std::vector<TPW_Path*> FChanged;  // curves whose geometry changed, each once
};
// Smooths the chain in its given order, changing its curves in place; the
// caller brings their crossings up to date. A cusp (directions exactly
// opposed) is left alone.
TSmoothOutcome smoothChain(const std::vector<TPW_Path*>& chain, bool withLegs);
