// TPW_Path: the one record of the drawing. Every line, curve, arc, ellipse,
// dot, stitching hole and piece of text is one of these. Each keeps its
// analytic parameters and a ready path (FData) that paint, hit tests,
// lengths and export read.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include <nlohmann/json_fwd.hpp>

#include "document/path_data.h"
#include "document/types.h"

struct TPrickingIron;
class TJsonTextWriter;

// Shape kinds, compared as strings.
namespace ShapeType {
inline constexpr const char* Line = "LINE";
inline constexpr const char* Bezier = "BEZIER";
inline constexpr const char* Arc = "ARC";
inline constexpr const char* Ellipse = "ELLIPSE";
inline constexpr const char* Dot = "DOT";
inline constexpr const char* Hole = "S_HOLE";
inline constexpr const char* Text = "TEXT";
inline constexpr const char* Other = "OTHER";
}  // namespace ShapeType

class TPW_Path {
 public:
  TPW_Path(int APalletIdx, TAlphaColor AColor, float AThickness, TStrokeDash ADash, int ID);
  ~TPW_Path() = default;
  TPW_Path(const TPW_Path&) = delete;
  TPW_Path& operator=(const TPW_Path&) = delete;

  // ---- fields, in declared order ----
  TAlphaColor FColor;
  bool FSelected = false;
  TStrokeDash FDash;
  std::string FShapeType = ShapeType::Other;
  TPointF FCenter;
  TPathData FData;
  float FRotation = 0;
  float FWidth = 0;
  float FHeight = 0;
  std::string FStitchType;
  bool FStitchInversed = false;
  TPointF FStartPt;
  TPointF FEndPt;
  TPointF FBezierCp2;
  TPointF FBezierCp1;
  float FThickness;
  TPrickingIron* FPrickingIron = nullptr;  // shared, never owned
  int FID;
  float FLine_param_a = 0;
  float FLine_param_b = 0;
  bool FIsVerticalLine = false;
  bool FIsHorizontalLine = false;
  TPointF FClickedPoint;
  float FSweepAngle = 0;
  float FStartAngle = 0;
  bool FTemp_HasStichingHole = false;
  TPointF FTemp_vector;
  TPW_Path* FTemp_OnPath = nullptr;  // scratch of the stitch tools, not owned
  std::string FText;
  float FFontSize = 10;
  std::string FFontFamily = "Meiryo UI";
  std::string FName;
  TGUID FGUID;
  bool FIsBoundaryCalculated = false;
  TRectF FBoundaryCache;
  TPointFArray FControlPointsCache;
  int FGroupID = 0;
  bool FIsSymmetryTarget = false;
  int FClickedPathIndex = 0;
  bool FIsDimensionLine = false;
  bool FShowArrowSt = false;
  bool FShowArrowEd = false;
  float FArrowLen = 1;
  TPointF FStitchIn;
  TPointF FStitchOut;
  int FPrevStitchID = -1;
  int FNextStitchID = -1;
  int FMandalaID = 0;
  int FMandalaSectionID = 0;
  TPointF FMandalaCenter;
  int FNumMandalaSections = 0;
  float FMandalaRotation = 0;
  int FLayerID = 0;
  bool FShowBezierOffsetSupport = false;
  int FPalletIndex;
  bool FExportStrokeDashToSVG = false;
  float FOpacity = 0.5f;
  float FTextStretch = 1;
  float FTextRadius = 0;
  TGUID FCatalogGUID;
  TAlphaColor FThreadColor = 0xFFFFFFFF;
  bool FIsManuallyClicked = false;
  float FCatalogRotation = 0;
  bool FAlwaysShowStitchSimulator = false;
  TPointF FCatalogScale{1, 1};
  bool FTextFill = true;

  // ---- construction and copying ----
  // A new shape that keeps FID and FGUID; the caller owns it and must give
  // it a new identifier before it joins a list that holds its source.
  std::unique_ptr<TPW_Path> createCopy() const;
  void copyPalletValuesFrom(const TPW_Path& src);
  void updateId(int newId) { FID = newId; }
  void clearTempParams();
  // Invalidates the boundary and control point caches. Every draw...Path
  // calls it; code that moves FData by other means must call it too.
  void resetBoundary();

  bool isType(const char* type) const { return FShapeType == type; }

  // ---- path builders ----
  void drawLinePath(const TPointF& st, const TPointF& ep);
  void drawBezierPath(const TPointF& st, const TPointF& cp1, const TPointF& cp2, const TPointF& ep);
  void drawArcPath(const TPointF& center, const TPointF& radius, const TPointF& startPt,
                   const TPointF& endPt, float SweepAngle);
  void drawEllipsePath(const TPointF& center, float width, float height);
  void drawDotPath(const TPointF& center, float radius);
  void drawTextPath(const std::string& tx, const TPointF& startPt, float AFontSize, float ARotation,
                    const std::string& FontFamily, float radius, float stretch);

  // ---- queries ----
  TPointFArray getControlPoints(bool IncludeCenterForArc, bool forceEachPathPoints,
                                bool DoBezierQuaters);
  TRectF getBoundary(bool SetStartEndCenter);
  TRectF getMinMaxRect() const;
  TPointF getCenterPoint();
  TPointF calcCenter();
  // Each rectangle's Left, Top is the interval's start and Right, Bottom its end.
  std::vector<TRectF> getIntervals(bool DoReverse) const;
  std::vector<TPathInterval> getIntervalsFast(bool DoReverse) const;
  float calcTotalLength() const;
  // NaN when the walk would have to wrap round an open shape.
  float calcLengthBetween(int fromIndex, int toIndex, int direction) const;
  float calcLengthFromAnIndex(int fromIndex, int direction) const;
  float calcLengthFromAPoint(const TPointF& fromPt, int direction) const;
  void getFirstTwoPoints(TPointF& pt1, TPointF& pt2) const;
  void getLastTwoPoints(TPointF& pt1, TPointF& pt2) const;
  bool calcCrossPointWith(const TPW_Path& line2, float& x, float& y) const;
  bool calcCrossPointWith(const TPW_Path& line2, TPointF& pt) const;
  float findNearestBezierT(const TPointF& pt, TPointF& ActualPt) const;
  bool fillPath() const;

  // ---- hit tests ----
  // The limit is a fixed 0.06 on the cross product; Threshold is not used.
  bool isOnPath(const TPointF& rp, int& intervalIdx, float Threshold = 0) const;
  bool isInRect(const TPointF& rp) const;
  bool inRange(const TPointF& rsp, const TPointF& rep, bool AllowPartial);
  bool isAPointInsideShape(const TPointF& pt);
  bool doesItIntersectWith(TPW_Path& tp);
  bool isIdentical(TPW_Path& p);

  // ---- edits ----
  void reversePath();
  void convertArcToBezier();
  // The leading pieces, in order; this shape keeps the last piece.
  std::vector<std::unique_ptr<TPW_Path>> splitArc();
  void flattenAndClean(double flatness);
  void cleanPathData();
  void calcLineParam();

  // ---- stitching holes (defined in stitching/hole_makers.cpp) ----
  // Makes this shape an "S_HOLE" of the iron's blade at center, turned by
  // rotation degrees (the direction of the row), with its thread points
  // filled in. The hole borrows the iron.
  // rulerLen above 0 adds a measuring cross. A null iron changes nothing.
  void createStichPath(const TPointF& center, bool IsInverted, TPrickingIron* APrickingIron,
                       float rotation, float rulerLen);
  void setAsDiamondHole(const TPointF& pt, const TPrickingIron& PrickingIron, bool IsInverted,
                        float rotation, float rulerLen);
  void setAsFrenchHole(const TPointF& pt, const TPrickingIron& PrickingIron, bool IsInverted,
                       float rotation, float rulerLen);
  void setAsFlatHole(const TPointF& pt, const TPrickingIron& PrickingIron, float rotation,
                     float rulerLen);
  void setAsRoundHole(const TPointF& pt, const TPrickingIron& PrickingIron, float rotation,
                      float rulerLen);
  // Where the thread enters and leaves the hole: FStitchIn, FStitchOut.
  void calcStitchInOutPos();

  // ---- the shape object of project files (defined in document/shape_json.cpp) ----
  // Writes this shape as one JSON object, keys in the file's order.
  void toJson(TJsonTextWriter& w) const;
  // Reads a shape object; `pr` is the iron the caller found for "pr", or
  // null. Throws TJsonFormError naming the key when a required key is
  // missing or a value has the wrong kind; the shape is then half read
  // and should be thrown away.
  void loadJson(const nlohmann::ordered_json& jo, TPrickingIron* pr);
};

// Flatness of an arc's path, chosen from its x radius.
double arcFlatness(double radiusX);
