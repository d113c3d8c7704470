// Reading a project file's JSON into a new document: every default of
// older files, and the repairs and normalisations a load makes (palette
// rows, holes, identifiers, zero-length lines, true ellipses, crossings).
// The controller's load puts the result in place; nothing here touches the
// open document, so a file that fails half way leaves it as it was.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "document/intersections.h"
#include "document/project_json.h"
#include "document/shape_list.h"
#include "geometry/ellipse_to_beziers.h"

class IPhraseLookup;
class TPrickingIronGroups;
class TPalletList;

struct TProjectReadContext {
  const IPhraseLookup* FMultiLang = nullptr;
  std::string FLangID = "en";
  // Irons of holes are looked up here; an unknown one is made here.
  TPrickingIronGroups* FIrons = nullptr;
  // For shapes of old files without a palette row. Null: row 0.
  const TPalletList* FPallet = nullptr;
  // The stroke a shape starts from before its object is read.
  TShapeStyle FCurrentStyle;
  // Where the curves of a true ellipse go.
  int FActiveLayer = 0;
  // Gather the crossings of the shapes (a load does; a paste does later).
  bool FCalcCrossings = true;
};

struct TProjectContent {
  std::unique_ptr<TShapeList> FList;
  std::unique_ptr<TIntersections> FIntersections;
  std::vector<TBackdropData> FBackdrops;
  bool FHadPrintAreas = false;
};

// The document of a project file's bytes. `state` tells whether they were
// a JSON object at all; the content is empty when not. Throws
// TJsonFormError (naming the shape, layer or print area and the key) for a
// missing required key or a value of the wrong kind. Shapes are read while
// the text is parsed, so the tree of a large file is never built whole.
TProjectContent readProjectFileText(const std::string& bytes, const TProjectReadContext& context,
                                    TJsonTextState& state);

// The document of a parsed project object; `shapes`, when given, were read
// from its "shapes" already, which the object then no longer holds.
TProjectContent readProjectObject(const nlohmann::ordered_json& root, const TProjectReadContext& context,
                                  std::vector<std::unique_ptr<TPW_Path>>* shapes = nullptr);

// The shapes of a clipboard file's object, as read from a project (palette
// and hole repairs, irons), ids as in the file. Throws as above.
std::vector<std::unique_ptr<TPW_Path>> readShapeObjects(const nlohmann::ordered_json& shapes,
                                                        const TProjectReadContext& context);

// The stitch link repair: each hole's previous hole learns it as its next
// one; a link to an id that is not there becomes -1.
void repairStitchLinks(TShapeList& list);
