// Clean-ups that a load and every undo snapshot apply to shapes, and the
// search for shapes that lie twice on a layer.
#pragma once

#include <vector>

class TPW_Path;
class TShapeList;

// A "LINE" gets its ends and its centre rounded to four decimals (half away
// from zero) and its path rebuilt from them. A line that already stands so
// keeps its path object untouched, so that copies sharing it stay shared.
// Other kinds are left alone.
void normaliseLine(TPW_Path& shape);

// Duplicates: for each pair on the same layer (earlier i, later j) that
// isIdentical, j is a duplicate. Each duplicate is listed once, in list
// order. The count treats a mandala as one: all duplicates of one
// FMandalaID count once.
struct TDuplicates {
  std::vector<TPW_Path*> FShapes;
  int FCount = 0;
};
TDuplicates findDuplicates(TShapeList& list);
