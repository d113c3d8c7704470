#include "exchange/dxf_r14_writer.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>

#include "app/safe_file.h"
#include "document/number_text.h"
#include "document/path_data.h"

namespace {

constexpr double kPi = 3.141592653589793;
constexpr double kDegToRad = 0.017453292519943295;

std::string num(double v) { return floatToText(v); }

std::string upper(std::string s) {
  std::transform(s.begin(), s.end(), s.begin(), [](unsigned char c) { return char(std::toupper(c)); });
  return s;
}

void insertSorted(std::vector<std::string>& list, const std::string& name) {
  const auto it = std::lower_bound(list.begin(), list.end(), name);
  if (it == list.end() || *it != name) list.insert(it, name);
}

void put(std::vector<std::string>& body, int code, const std::string& value) {
  body.push_back(std::to_string(code));
  body.push_back(value);
}

void putPoint(std::vector<std::string>& body, int code, TDxfPoint p) {
  put(body, code, num(p.x));
  put(body, code + 10, num(p.y));
  put(body, code + 20, "0");
}

void putExtrusion(std::vector<std::string>& body) {
  put(body, 210, "0");
  put(body, 220, "0");
  put(body, 230, "1");
}

TDxfPoint flipped(TDxfPoint p) { return {p.x, -p.y}; }

double norm360(double a) {
  a = std::fmod(a, 360.0);
  if (a < 0) a += 360.0;
  return a;
}

double angularDistance(double x, double y) {
  const double d = std::fabs(x - y);
  return d > 180.0 ? 360.0 - d : d;
}

// The file's lines: group code, then value.
struct TDxfOut {
  std::string s;
  unsigned FNextHandle = 1;
  void code(int c, const std::string& v) {
    s += std::to_string(c);
    s += '\n';
    s += v;
    s += '\n';
  }
  std::string handle() {
    char buf[20];
    std::snprintf(buf, sizeof buf, "%X", FNextHandle++);
    return buf;
  }
};

// A symbol table's head; returns the table's handle.
std::string beginTable(TDxfOut& o, const char* name, size_t count) {
  o.code(0, "TABLE");
  o.code(2, name);
  const std::string h = o.handle();
  o.code(5, h);
  o.code(330, "0");
  o.code(100, "AcDbSymbolTable");
  o.code(70, std::to_string(count));
  return h;
}

void recordHead(TDxfOut& o, const char* type, const std::string& owner, const char* subclass,
                int handleCode = 5) {
  o.code(0, type);
  o.code(handleCode, o.handle());
  o.code(330, owner);
  o.code(100, "AcDbSymbolTableRecord");
  o.code(100, subclass);
}

}  // namespace

std::string TDXFR14Writer::lineTypeOf(TStrokeDash dash) {
  switch (dash) {
    case TStrokeDash::Dash:
    case TStrokeDash::Custom: return "KVT_DASH";
    case TStrokeDash::Dot: return "KVT_DOT";
    case TStrokeDash::DashDot: return "KVT_DASHDOT";
    case TStrokeDash::DashDotDot: return "KVT_DASHDOTDOT";
    default: return "CONTINUOUS";
  }
}

std::vector<double> TDXFR14Writer::dashElementsOf(TStrokeDash dash) {
  switch (dash) {
    case TStrokeDash::Dash:
    case TStrokeDash::Custom: return {0.5, -0.25};
    case TStrokeDash::Dot: return {0.05, -0.25};
    case TStrokeDash::DashDot: return {0.5, -0.2, 0.05, -0.2};
    case TStrokeDash::DashDotDot: return {0.5, -0.2, 0.05, -0.2, 0.05, -0.2};
    default: return {};
  }
}

void TDXFR14Writer::Clear() {
  FEntities.clear();
  FLayers.clear();
  FLinetypes.clear();
  FLTypeDef.clear();
  insertSorted(FLayers, "0");
  registerLinetype("CONTINUOUS", {});
}

void TDXFR14Writer::registerLinetype(const std::string& name, const std::vector<double>& elements) {
  insertSorted(FLinetypes, name);
  if (!FLTypeDef.count(name) || !elements.empty()) FLTypeDef[name] = elements;
}

TDXFR14Writer::TEntity& TDXFR14Writer::head(const char* type, const std::string& layer, int colorACI,
                                            const std::string& lineType) {
  TEntity e;
  e.FType = type;
  e.FLayer = layer.empty() ? "0" : layer;
  e.FColorACI = colorACI;
  insertSorted(FLayers, e.FLayer);
  if (!lineType.empty()) {
    e.FLineType = upper(lineType);
    if (!FLTypeDef.count(e.FLineType)) registerLinetype(e.FLineType, {});
    else insertSorted(FLinetypes, e.FLineType);
  }
  FEntities.push_back(std::move(e));
  return FEntities.back();
}

void TDXFR14Writer::AddLine(TDxfPoint p1, TDxfPoint p2, const std::string& layer, int colorACI,
                            const std::string& lineTypeName) {
  auto& b = head("LINE", layer, colorACI, lineTypeName).FBody;
  put(b, 100, "AcDbLine");
  putPoint(b, 10, p1);
  putPoint(b, 11, p2);
  putExtrusion(b);
}

void TDXFR14Writer::AddCircle(TDxfPoint center, double radius, const std::string& layer, int colorACI,
                              const std::string& lineTypeName) {
  auto& b = head("CIRCLE", layer, colorACI, lineTypeName).FBody;
  put(b, 100, "AcDbCircle");
  putPoint(b, 10, center);
  put(b, 40, num(radius));
  putExtrusion(b);
}

void TDXFR14Writer::AddEllipse(TDxfPoint center, double rx, double ry, double rotationDeg, const std::string& layer,
                               int colorACI, const std::string& lineTypeName) {
  rx = std::fabs(rx), ry = std::fabs(ry);
  if (rx <= 0 || ry <= 0) return;
  double r = rotationDeg * kDegToRad;
  double major = rx, minor = ry;
  if (ry > rx) {
    // Readers take a ratio above 1 for a broken ellipse: the longer axis
    // becomes the major one, turned a quarter.
    std::swap(major, minor);
    r += kPi / 2.0;
  }
  auto& b = head("ELLIPSE", layer, colorACI, lineTypeName).FBody;
  put(b, 100, "AcDbEllipse");
  putPoint(b, 10, center);
  putPoint(b, 11, {std::cos(r) * major, std::sin(r) * major});
  putExtrusion(b);
  put(b, 40, num(minor / major));
  put(b, 41, "0.0");
  put(b, 42, "6.283185307179586");
}

void TDXFR14Writer::AddBezierSpline(TDxfPoint p0, TDxfPoint p1, TDxfPoint p2, TDxfPoint p3,
                                    const std::string& layer, int colorACI, const std::string& lineTypeName) {
  auto& b = head("SPLINE", layer, colorACI, lineTypeName).FBody;
  put(b, 100, "AcDbSpline");
  putExtrusion(b);
  put(b, 70, "8");
  put(b, 71, "3");
  put(b, 72, "8");
  put(b, 73, "4");
  put(b, 74, "0");
  for (const char* k : {"0", "0", "0", "0", "1", "1", "1", "1"}) put(b, 40, k);
  for (const TDxfPoint& p : {p0, p1, p2, p3}) putPoint(b, 10, p);
}

void TDXFR14Writer::AddArcCenterTwoPointsAbsSweep(TDxfPoint c, TDxfPoint a, TDxfPoint bp, double absSweepDeg,
                                                  const std::string& layer, int colorACI,
                                                  const std::string& lineTypeName, double angleTolDeg,
                                                  double /*radiusTol: both branches average*/, bool ptBFirst) {
  double rA = std::hypot(a.x - c.x, a.y - c.y);
  double rB = std::hypot(bp.x - c.x, bp.y - c.y);
  if (!(rA > 0) && !(rB > 0)) return;
  if (!(rA > 0)) rA = rB;
  if (!(rB > 0)) rB = rA;
  const double radius = (rA + rB) * 0.5;
  const double aA = norm360(std::atan2(a.y - c.y, a.x - c.x) * 180.0 / kPi);
  const double aB = norm360(std::atan2(bp.y - c.y, bp.x - c.x) * 180.0 / kPi);
  const double s = norm360(std::fabs(absSweepDeg));
  if (s == 0) return;
  const double dab = angularDistance(norm360(aB - aA), s);
  const double dba = angularDistance(norm360(aA - aB), s);
  bool fromA = dba > dab;
  if (std::fabs(dba - dab) <= angleTolDeg) fromA = !ptBFirst;
  auto& b = head("ARC", layer, colorACI, lineTypeName).FBody;
  put(b, 100, "AcDbCircle");
  putPoint(b, 10, c);
  put(b, 40, num(radius));
  putExtrusion(b);
  put(b, 100, "AcDbArc");
  put(b, 50, num(fromA ? aA : aB));
  put(b, 51, num(fromA ? aB : aA));
}

void TDXFR14Writer::AddPathData(const TPathData& path, const std::string& layer, int colorACI,
                                const std::string& lineTypeName) {
  const auto& pts = path.points();
  TDxfPoint cur, start;
  auto at = [](const TPointF& p) { return TDxfPoint{p.x, p.y}; };
  for (size_t i = 0; i < pts.size(); ++i) {
    const TPathPoint& p = pts[i];
    switch (p.Kind) {
      case TPathPointKind::MoveTo:
        cur = start = at(p.Point);
        break;
      case TPathPointKind::LineTo:
        AddLine(cur, at(p.Point), layer, colorACI, lineTypeName);
        cur = at(p.Point);
        break;
      case TPathPointKind::CurveTo:
        if (i + 2 < pts.size()) {
          AddBezierSpline(cur, at(p.Point), at(pts[i + 1].Point), at(pts[i + 2].Point), layer, colorACI,
                          lineTypeName);
          cur = at(pts[i + 2].Point);
        }
        i += 2;
        break;
      case TPathPointKind::Close:
        if (std::fabs(cur.x - start.x) > 1e-6 || std::fabs(cur.y - start.y) > 1e-6)
          AddLine(cur, start, layer, colorACI, lineTypeName);
        cur = start;
        break;
    }
  }
}

// ---- the stroke dash forms: line type from the dash, y upwards ----

void TDXFR14Writer::AddLine(TDxfPoint p1, TDxfPoint p2, const std::string& layer, int colorACI, TStrokeDash dash) {
  registerLinetype(lineTypeOf(dash), dashElementsOf(dash));
  AddLine(flipped(p1), flipped(p2), layer, colorACI, lineTypeOf(dash));
}

void TDXFR14Writer::AddCircle(TDxfPoint center, double radius, const std::string& layer, int colorACI,
                              TStrokeDash dash) {
  registerLinetype(lineTypeOf(dash), dashElementsOf(dash));
  AddCircle(flipped(center), radius, layer, colorACI, lineTypeOf(dash));
}

void TDXFR14Writer::AddEllipse(TDxfPoint center, double rx, double ry, double rotationDeg, const std::string& layer,
                               int colorACI, TStrokeDash dash) {
  registerLinetype(lineTypeOf(dash), dashElementsOf(dash));
  // Turned upwards, a clockwise turn on the screen is a clockwise turn on paper.
  AddEllipse(flipped(center), rx, ry, -rotationDeg, layer, colorACI, lineTypeOf(dash));
}

void TDXFR14Writer::AddBezierSpline(TDxfPoint p0, TDxfPoint p1, TDxfPoint p2, TDxfPoint p3,
                                    const std::string& layer, int colorACI, TStrokeDash dash) {
  registerLinetype(lineTypeOf(dash), dashElementsOf(dash));
  AddBezierSpline(flipped(p0), flipped(p1), flipped(p2), flipped(p3), layer, colorACI, lineTypeOf(dash));
}

void TDXFR14Writer::AddArcCenterTwoPointsAbsSweep(TDxfPoint center, TDxfPoint ptA, TDxfPoint ptB,
                                                  double absSweepDeg, const std::string& layer, int colorACI,
                                                  TStrokeDash dash, double angleTolDeg, double radiusTol,
                                                  bool ptBFirst) {
  registerLinetype(lineTypeOf(dash), dashElementsOf(dash));
  AddArcCenterTwoPointsAbsSweep(flipped(center), flipped(ptA), flipped(ptB), absSweepDeg, layer, colorACI,
                                lineTypeOf(dash), angleTolDeg, radiusTol, ptBFirst);
}

void TDXFR14Writer::AddPathData(const TPathData& path, const std::string& layer, int colorACI, TStrokeDash dash) {
  TPathData up = path;
  up.ApplyMatrix(TMatrix::scaling(1, -1));
  registerLinetype(lineTypeOf(dash), dashElementsOf(dash));
  AddPathData(up, layer, colorACI, lineTypeOf(dash));
}

// ---- the file ----

std::string TDXFR14Writer::Text() const {
  // Handles are given in the order the objects are written; the header's
  // seed, which must exceed them all, is known only at the end.
  TDxfOut o;
  // Tables.
  o.code(0, "SECTION");
  o.code(2, "TABLES");
  std::string t = beginTable(o, "VPORT", 0);
  o.code(0, "ENDTAB");
  // ByBlock and ByLayer stand in every drawing's line types.
  std::vector<std::string> ltypes{"BYBLOCK", "BYLAYER"};
  for (const std::string& n : FLinetypes)
    if (n != "BYBLOCK" && n != "BYLAYER") ltypes.push_back(n);
  t = beginTable(o, "LTYPE", ltypes.size());
  for (const std::string& name : ltypes) {
    const auto it = FLTypeDef.find(name);
    const std::vector<double> el = it == FLTypeDef.end() ? std::vector<double>{} : it->second;
    recordHead(o, "LTYPE", t, "AcDbLinetypeTableRecord");
    o.code(2, name);
    o.code(70, "0");
    o.code(3, "KVT dash");
    o.code(72, "65");
    o.code(73, std::to_string(el.size()));
    double total = 0;
    for (double e : el) total += std::fabs(e);
    o.code(40, num(total));
    for (double e : el) {
      o.code(49, num(e));
      o.code(74, "0");
    }
  }
  o.code(0, "ENDTAB");
  t = beginTable(o, "LAYER", FLayers.size());
  for (const std::string& name : FLayers) {
    recordHead(o, "LAYER", t, "AcDbLayerTableRecord");
    o.code(2, name);
    o.code(70, "0");
    o.code(62, "7");
    o.code(6, "CONTINUOUS");
  }
  o.code(0, "ENDTAB");
  t = beginTable(o, "STYLE", 1);
  recordHead(o, "STYLE", t, "AcDbTextStyleTableRecord");
  for (auto [c, v] : {std::pair{2, "STANDARD"}, {70, "0"}, {40, "0.0"}, {41, "1.0"}, {50, "0.0"}, {71, "0"},
                      {42, "2.5"}, {3, "txt"}, {4, ""}})
    o.code(c, v);
  o.code(0, "ENDTAB");
  beginTable(o, "VIEW", 0);
  o.code(0, "ENDTAB");
  beginTable(o, "UCS", 0);
  o.code(0, "ENDTAB");
  t = beginTable(o, "APPID", 1);
  recordHead(o, "APPID", t, "AcDbRegAppTableRecord");
  o.code(2, "ACAD");
  o.code(70, "0");
  o.code(0, "ENDTAB");
  t = beginTable(o, "DIMSTYLE", 1);
  recordHead(o, "DIMSTYLE", t, "AcDbDimStyleTableRecord", 105);
  o.code(2, "STANDARD");
  o.code(70, "0");
  o.code(0, "ENDTAB");
  t = beginTable(o, "BLOCK_RECORD", 2);
  std::string spaceHandle[2];
  for (int i = 0; i < 2; ++i) {
    o.code(0, "BLOCK_RECORD");
    spaceHandle[i] = o.handle();
    o.code(5, spaceHandle[i]);
    o.code(330, t);
    o.code(100, "AcDbSymbolTableRecord");
    o.code(100, "AcDbBlockTableRecord");
    o.code(2, i == 0 ? "*Model_Space" : "*Paper_Space");
  }
  o.code(0, "ENDTAB");
  o.code(0, "ENDSEC");
  // Blocks: the two spaces, empty.
  o.code(0, "SECTION");
  o.code(2, "BLOCKS");
  for (int i = 0; i < 2; ++i) {
    const char* name = i == 0 ? "*Model_Space" : "*Paper_Space";
    o.code(0, "BLOCK");
    o.code(5, o.handle());
    o.code(330, spaceHandle[i]);
    o.code(100, "AcDbEntity");
    if (i == 1) o.code(67, "1");
    o.code(8, "0");
    o.code(100, "AcDbBlockBegin");
    o.code(2, name);
    o.code(70, "0");
    o.code(10, "0.0");
    o.code(20, "0.0");
    o.code(30, "0.0");
    o.code(3, name);
    o.code(1, "");
    o.code(0, "ENDBLK");
    o.code(5, o.handle());
    o.code(330, spaceHandle[i]);
    o.code(100, "AcDbEntity");
    if (i == 1) o.code(67, "1");
    o.code(8, "0");
    o.code(100, "AcDbBlockEnd");
  }
  o.code(0, "ENDSEC");
  // Entities, owned by model space.
  o.code(0, "SECTION");
  o.code(2, "ENTITIES");
  for (const TEntity& e : FEntities) {
    o.code(0, e.FType);
    o.code(5, o.handle());
    o.code(330, spaceHandle[0]);
    o.code(100, "AcDbEntity");
    o.code(8, e.FLayer);
    if (e.FColorACI != 256) o.code(62, std::to_string(e.FColorACI));
    if (!e.FLineType.empty()) o.code(6, e.FLineType);
    for (size_t i = 0; i + 1 < e.FBody.size(); i += 2) {
      o.s += e.FBody[i];
      o.s += '\n';
      o.s += e.FBody[i + 1];
      o.s += '\n';
    }
  }
  o.code(0, "ENDSEC");
  // Objects: the root dictionary and the group dictionary it names.
  o.code(0, "SECTION");
  o.code(2, "OBJECTS");
  const std::string root = o.handle(), groups = o.handle();
  o.code(0, "DICTIONARY");
  o.code(5, root);
  o.code(330, "0");
  o.code(100, "AcDbDictionary");
  o.code(3, "ACAD_GROUP");
  o.code(350, groups);
  o.code(0, "DICTIONARY");
  o.code(5, groups);
  o.code(330, root);
  o.code(100, "AcDbDictionary");
  o.code(0, "ENDSEC");
  o.code(0, "EOF");

  TDxfOut h;
  h.code(0, "SECTION");
  h.code(2, "HEADER");
  h.code(9, "$ACADVER");
  h.code(1, "AC1014");
  h.code(9, "$HANDSEED");
  h.code(5, o.handle());
  // Metric drawing: millimetres.
  h.code(9, "$MEASUREMENT");
  h.code(70, "1");
  h.code(0, "ENDSEC");
  h.code(0, "SECTION");
  h.code(2, "CLASSES");
  h.code(0, "ENDSEC");
  return h.s + o.s;
}

void TDXFR14Writer::SaveToFile(const std::string& fileName) const { writeFileAtomically(fileName, Text()); }
