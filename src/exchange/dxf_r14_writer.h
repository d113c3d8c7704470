// TDXFR14Writer: DXF in its R14 form (AC1014) with real arcs, ellipses and
// splines. Numbers in the general form with up to 15 significant digits,
// a point as decimal mark. Beyond the entities, line types and layers the
// drawing uses, the file carries what readers of R13 and later require:
// handles, subclass markers, the tables every drawing has, the model and
// paper space blocks and the root dictionary.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "document/types.h"

struct TDxfPoint {
  double x = 0;
  double y = 0;
};

class TDXFR14Writer {
 public:
  TDXFR14Writer() { Clear(); }

  // Each of these comes in three forms: coordinates as given with no line
  // type, as given with a line type by name, and with a stroke dash, which
  // resolves the line type and turns y upwards (negates every y), so that
  // the screen's drawing reads the right way up.
  void AddLine(TDxfPoint p1, TDxfPoint p2, const std::string& layer, int colorACI,
               const std::string& lineTypeName = {});
  void AddLine(TDxfPoint p1, TDxfPoint p2, const std::string& layer, int colorACI, TStrokeDash dash);
  void AddCircle(TDxfPoint center, double radius, const std::string& layer, int colorACI,
                 const std::string& lineTypeName = {});
  void AddCircle(TDxfPoint center, double radius, const std::string& layer, int colorACI, TStrokeDash dash);
  // The major axis is the longer of rx and ry, so the ratio stays at most 1
  // as readers require.
  void AddEllipse(TDxfPoint center, double rx, double ry, double rotationDeg, const std::string& layer,
                  int colorACI, const std::string& lineTypeName = {});
  void AddEllipse(TDxfPoint center, double rx, double ry, double rotationDeg, const std::string& layer,
                  int colorACI, TStrokeDash dash);
  void AddBezierSpline(TDxfPoint p0, TDxfPoint p1, TDxfPoint p2, TDxfPoint p3, const std::string& layer,
                       int colorACI, const std::string& lineTypeName = {});
  void AddBezierSpline(TDxfPoint p0, TDxfPoint p1, TDxfPoint p2, TDxfPoint p3, const std::string& layer,
                       int colorACI, TStrokeDash dash);
  // An arc about `center` through the two points whose counter-clockwise
  // span is nearer absSweepDeg. Where both spans fit (a half turn), it runs
  // from ptA to ptB unless ptBFirst. Writes nothing for a zero radius or a
  // sweep that normalises to 0.
  void AddArcCenterTwoPointsAbsSweep(TDxfPoint center, TDxfPoint ptA, TDxfPoint ptB, double absSweepDeg,
                                     const std::string& layer, int colorACI, const std::string& lineTypeName,
                                     double angleTolDeg, double radiusTol, bool ptBFirst = false);
  void AddArcCenterTwoPointsAbsSweep(TDxfPoint center, TDxfPoint ptA, TDxfPoint ptB, double absSweepDeg,
                                     const std::string& layer, int colorACI, TStrokeDash dash,
                                     double angleTolDeg, double radiusTol, bool ptBFirst = false);
  // Lines and cubic curves of a path; a close returns to the figure's start.
  void AddPathData(const class TPathData& path, const std::string& layer, int colorACI,
                   const std::string& lineTypeName = {});
  void AddPathData(const class TPathData& path, const std::string& layer, int colorACI, TStrokeDash dash);

  // The whole file's text; SaveToFile writes it atomically.
  std::string Text() const;
  void SaveToFile(const std::string& fileName) const;
  void Clear();

  size_t EntityCount() const { return FEntities.size(); }
  const std::vector<std::string>& Layers() const { return FLayers; }
  const std::vector<std::string>& Linetypes() const { return FLinetypes; }

  // The line type of a stroke dash, and its dash elements.
  static std::string lineTypeOf(TStrokeDash dash);
  static std::vector<double> dashElementsOf(TStrokeDash dash);

 private:
  // One entity: its type, the head's layer, colour and line type, and the
  // lines of its own subclass, code and value alternating.
  struct TEntity {
    std::string FType;
    std::string FLayer;
    int FColorACI = 256;
    std::string FLineType;
    std::vector<std::string> FBody;
  };
  std::vector<TEntity> FEntities;
  std::vector<std::string> FLayers;     // sorted, no duplicates
  std::vector<std::string> FLinetypes;  // upper case, sorted, no duplicates
  std::map<std::string, std::vector<double>> FLTypeDef;

  TEntity& head(const char* type, const std::string& layer, int colorACI, const std::string& lineType);
  void registerLinetype(const std::string& upperName, const std::vector<double>& elements);
};
