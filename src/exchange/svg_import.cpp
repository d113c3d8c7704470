#include "exchange/svg_import.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <map>
#include <pugixml.hpp>

#include "document/pw_path.h"
#include "exchange/svg_transform.h"

namespace {

constexpr double kMmPerPx = 25.4 / 96.0;
constexpr double kMaxCoordinate = 1000000.0;  // millimetres
constexpr double kKappa = 0.5522847498307936;  // a quarter circle as one cubic

// Leading number of an attribute's text, and what follows it.
bool leadingNumber(std::string_view s, double& v, std::string_view* rest = nullptr) {
  size_t b = 0;
  while (b < s.size() && std::isspace(static_cast<unsigned char>(s[b]))) ++b;
  if (b < s.size() && s[b] == '+') ++b;
  const auto res = std::from_chars(s.data() + b, s.data() + s.size(), v);
  if (res.ec != std::errc() || !std::isfinite(v)) return false;
  if (rest) *rest = s.substr(static_cast<size_t>(res.ptr - s.data()));
  return true;
}

// Attribute numbers are kept to 1/10000; an absent or unreadable one is 0.
double attrNumber(pugi::xml_node n, const char* name) {
  double v = 0;
  if (!leadingNumber(n.attribute(name).as_string(), v)) return 0;
  return std::round(v * 10000.0) / 10000.0;
}

// All the numbers of a list such as "points", separated by blanks or commas.
std::vector<double> numberList(std::string_view s) {
  std::vector<double> out;
  size_t i = 0;
  while (i < s.size()) {
    while (i < s.size() && (std::isspace(static_cast<unsigned char>(s[i])) || s[i] == ',')) ++i;
    if (i >= s.size()) break;
    double v = 0;
    std::string_view rest;
    if (!leadingNumber(s.substr(i), v, &rest)) break;
    out.push_back(std::round(v * 10000.0) / 10000.0);
    i = s.size() - rest.size();
  }
  return out;
}

// A length of the root in millimetres: "10mm", "2in", "300" (pixels).
bool lengthInMm(std::string_view s, double& mm) {
  double v = 0;
  std::string_view unit;
  if (!leadingNumber(s, v, &unit)) return false;
  while (!unit.empty() && std::isspace(static_cast<unsigned char>(unit.back()))) unit.remove_suffix(1);
  static const std::map<std::string_view, double> kUnits{{"", kMmPerPx},  {"px", kMmPerPx}, {"mm", 1.0},
                                                         {"cm", 10.0},    {"in", 25.4},     {"pt", 25.4 / 72.0},
                                                         {"pc", 25.4 / 6.0}, {"q", 0.25}};
  std::string lower(unit);
  std::transform(lower.begin(), lower.end(), lower.begin(), [](unsigned char c) { return char(std::tolower(c)); });
  const auto it = kUnits.find(lower);
  if (it == kUnits.end()) return false;
  mm = v * it->second;
  return std::isfinite(mm);
}

// A property given as an attribute or in "style".
std::string property(pugi::xml_node n, const char* name) {
  if (pugi::xml_attribute a = n.attribute(name)) return a.as_string();
  const std::string style = n.attribute("style").as_string();
  const std::string key = std::string(name) + ":";
  for (size_t p = style.find(key); p != std::string::npos; p = style.find(key, p + 1)) {
    if (p > 0 && style[p - 1] != ';' && !std::isspace(static_cast<unsigned char>(style[p - 1]))) continue;
    const size_t e = style.find(';', p);
    std::string v = style.substr(p + key.size(), e == std::string::npos ? std::string::npos : e - p - key.size());
    v.erase(0, v.find_first_not_of(" \t"));
    v.erase(v.find_last_not_of(" \t") + 1);
    return v;
  }
  return {};
}

void addRoundedRect(TPathData& p, double x, double y, double w, double h, double rx, double ry) {
  const double kx = rx * kKappa, ky = ry * kKappa;
  auto pt = [](double px, double py) { return TPointF::fromDouble(px, py); };
  p.MoveTo(pt(x + rx, y));
  p.LineTo(pt(x + w - rx, y));
  p.CurveTo(pt(x + w - rx + kx, y), pt(x + w, y + ry - ky), pt(x + w, y + ry));
  p.LineTo(pt(x + w, y + h - ry));
  p.CurveTo(pt(x + w, y + h - ry + ky), pt(x + w - rx + kx, y + h), pt(x + w - rx, y + h));
  p.LineTo(pt(x + rx, y + h));
  p.CurveTo(pt(x + rx - kx, y + h), pt(x, y + h - ry + ky), pt(x, y + h - ry));
  p.LineTo(pt(x, y + ry));
  p.CurveTo(pt(x, y + ry - ky), pt(x + rx - kx, y), pt(x + rx, y));
}

bool withinRange(const TPathData& p) {
  for (const TPathPoint& q : p.points())
    if (!std::isfinite(q.Point.x) || !std::isfinite(q.Point.y) || std::fabs(q.Point.x) > kMaxCoordinate ||
        std::fabs(q.Point.y) > kMaxCoordinate)
      return false;
  return true;
}

std::string allText(pugi::xml_node n) {
  std::string s;
  for (pugi::xml_node c : n.children()) {
    if (c.type() == pugi::node_pcdata || c.type() == pugi::node_cdata) s += c.value();
    else if (c.type() == pugi::node_element) s += allText(c);
  }
  return s;
}

class TSvgReader {
 public:
  explicit TSvgReader(TSvgPicture& out) : FOut(out) {}

  void walk(pugi::xml_node parent, const TMatrix& m, int depth, double fontSize) {
    for (pugi::xml_node n : parent.children()) {
      if (n.type() != pugi::node_element) continue;
      if (FPoints > kSvgMaxPoints) {
        FTooMany = true;
        return;
      }
      if (depth >= kSvgMaxDepth) {
        ++FTooDeep;
        continue;
      }
      element(n, m, depth, fontSize);
    }
  }

  void finish() {
    if (!FSkipped.empty()) {
      std::string d;
      for (const auto& [name, count] : FSkipped) d += (d.empty() ? "" : ", ") + name + " (" + std::to_string(count) + ")";
      note("SVGImportSkipped", "Skipped elements that are not drawn as shapes:", d);
    }
    if (FTooDeep) note("SVGImportTooDeep", "Skipped elements nested too deep:", std::to_string(FTooDeep));
    if (FBadPaths) note("SVGImportBadPath", "Path data with errors, read up to the error:", std::to_string(FBadPaths));
    if (FOutOfRange)
      note("SVGImportOutOfRange", "Skipped shapes beyond 1,000,000 mm:", std::to_string(FOutOfRange));
    if (FTooMany)
      note("SVGImportTooManyPoints", "The drawing has too many points; only the first part was read. Points:",
           std::to_string(kSvgMaxPoints));
  }

  void note(const char* key, const char* english, const std::string& detail) {
    FOut.FNotes.push_back({key, english, detail});
  }

 private:
  TSvgPicture& FOut;
  size_t FPoints = 0;
  int FTooDeep = 0, FBadPaths = 0, FOutOfRange = 0;
  bool FTooMany = false;
  std::map<std::string, int> FSkipped;

  void element(pugi::xml_node n, TMatrix m, int depth, double fontSize) {
    const std::string name = n.name();
    if (property(n, "display") == "none") return;
    if (pugi::xml_attribute t = n.attribute("transform")) {
      TMatrix local;
      if (parseSvgTransform(t.as_string(), local)) m = local * m;
      else note("SVGInvalidTransform", "Warning: Invalid transform string format: ", t.as_string());
    }
    double size = 0;
    std::string_view unit;
    if (leadingNumber(property(n, "font-size"), size, &unit) && size > 0 && (unit.empty() || unit == "px"))
      fontSize = size;

    TPathData p;
    if (name == "g" || name == "a" || name == "switch") {
      walk(n, m, depth + 1, fontSize);
      return;
    } else if (name == "svg") {
      // A picture inside the picture: its own origin and viewBox.
      TMatrix inner = TMatrix::translation(attrNumber(n, "x"), attrNumber(n, "y"));
      const std::vector<double> vb = numberList(n.attribute("viewBox").as_string());
      const double w = attrNumber(n, "width"), h = attrNumber(n, "height");
      if (vb.size() == 4 && vb[2] > 0 && vb[3] > 0 && w > 0 && h > 0)
        inner = TMatrix::translation(-vb[0], -vb[1]) * TMatrix::scaling(w / vb[2], h / vb[3]) * inner;
      walk(n, inner * m, depth + 1, fontSize);
      return;
    } else if (name == "path") {
      if (!p.setData(n.attribute("d").as_string())) ++FBadPaths;
    } else if (name == "circle" || name == "ellipse") {
      const double cx = attrNumber(n, "cx"), cy = attrNumber(n, "cy");
      const double rx = name == "circle" ? attrNumber(n, "r") : attrNumber(n, "rx");
      const double ry = name == "circle" ? rx : attrNumber(n, "ry");
      if (rx > 0 && ry > 0)
        p.AddEllipse(TRectF(TPointF::fromDouble(cx - rx, cy - ry), TPointF::fromDouble(cx + rx, cy + ry)));
    } else if (name == "line") {
      p.MoveTo(TPointF::fromDouble(attrNumber(n, "x1"), attrNumber(n, "y1")));
      p.LineTo(TPointF::fromDouble(attrNumber(n, "x2"), attrNumber(n, "y2")));
    } else if (name == "rect") {
      rect(n, p);
    } else if (name == "polygon" || name == "polyline") {
      const std::vector<double> v = numberList(n.attribute("points").as_string());
      for (size_t i = 0; i + 1 < v.size(); i += 2) {
        const TPointF q = TPointF::fromDouble(v[i], v[i + 1]);
        if (i == 0) p.MoveTo(q);
        else p.LineTo(q);
      }
      if (name == "polygon" && p.Count() > 2) p.ClosePath();
    } else if (name == "text") {
      text(n, m, fontSize);
      return;
    } else {
      // Definitions, styles and editor data draw nothing by themselves;
      // anything else of the drawing is counted in the report.
      static const char* kSilent[] = {"defs", "metadata", "title", "desc", "style", "script", "symbol",
                                      "clipPath", "mask", "marker", "pattern", "linearGradient",
                                      "radialGradient", "filter"};
      const bool silent = name.find(':') != std::string::npos ||
                          std::any_of(std::begin(kSilent), std::end(kSilent), [&](const char* s) { return name == s; });
      if (!silent) ++FSkipped[name];
      return;
    }
    if (p.isEmpty()) return;
    FPoints += p.Count();
    p.ApplyMatrix(m);
    if (!withinRange(p)) {
      ++FOutOfRange;
      return;
    }
    FOut.FPaths.push_back(std::move(p));
  }

  void rect(pugi::xml_node n, TPathData& p) {
    const double x = attrNumber(n, "x"), y = attrNumber(n, "y");
    const double w = attrNumber(n, "width"), h = attrNumber(n, "height");
    if (!(w > 0) || !(h > 0)) return;
    double rx = attrNumber(n, "rx"), ry = attrNumber(n, "ry");
    // As SVG rounds the corners: one radius given stands for both.
    if (!n.attribute("rx")) rx = ry;
    if (!n.attribute("ry")) ry = rx;
    rx = std::clamp(rx, 0.0, w / 2.0);
    ry = std::clamp(ry, 0.0, h / 2.0);
    if (rx > 0 && ry > 0) {
      addRoundedRect(p, x, y, w, h, rx, ry);
      return;
    }
    p.MoveTo(TPointF::fromDouble(x, y));
    p.LineTo(TPointF::fromDouble(x + w, y));
    p.LineTo(TPointF::fromDouble(x + w, y + h));
    p.LineTo(TPointF::fromDouble(x, y + h));
    p.LineTo(TPointF::fromDouble(x, y));
  }

  void text(pugi::xml_node n, const TMatrix& m, double fontSize) {
    std::string s = allText(n);
    s.erase(0, s.find_first_not_of(" \t\r\n"));
    s.erase(s.find_last_not_of(" \t\r\n") + 1);
    if (s.empty()) return;
    const std::vector<double> xs = numberList(n.attribute("x").as_string());
    const std::vector<double> ys = numberList(n.attribute("y").as_string());
    const TPointF at = TPointF::fromDouble(xs.empty() ? 0 : xs[0], ys.empty() ? 0 : ys[0]);
    TSvgText t;
    t.FText = s;
    t.FBaseline = m.apply(at);
    // The matrix's scale along x gives the size, its turn the rotation.
    const double ax = m.m11, ay = m.m12;
    t.FSize = fontSize * std::hypot(ax, ay);
    t.FRotation = std::atan2(ay, ax) * 180.0 / 3.141592653589793;
    if (!(t.FSize > 0) || t.FSize > 10000 || !std::isfinite(t.FBaseline.x) || !std::isfinite(t.FBaseline.y) ||
        std::fabs(t.FBaseline.x) > kMaxCoordinate || std::fabs(t.FBaseline.y) > kMaxCoordinate) {
      ++FOutOfRange;
      return;
    }
    FOut.FTexts.push_back(std::move(t));
  }
};

}  // namespace

TSvgPicture readSvgPicture(const std::string& bytes) {
  TSvgPicture pic;
  if (bytes.size() > kSvgMaxBytes) {
    pic.FError = {"SVGTooLarge", "The file is too large to import. Bytes:", std::to_string(bytes.size())};
    return pic;
  }
  pugi::xml_document doc;
  // No DOCTYPE parsing: entities are never declared, fetched or expanded.
  const pugi::xml_parse_result res =
      doc.load_buffer(bytes.data(), bytes.size(), pugi::parse_default & ~pugi::parse_doctype);
  if (!res) {
    pic.FError = {"SVGNotXML", "The file is not an SVG drawing:",
                  std::string(res.description()) + " (byte " + std::to_string(res.offset) + ")"};
    return pic;
  }
  pugi::xml_node root = doc.find_node([](pugi::xml_node n) {
    return n.type() == pugi::node_element && std::string_view(n.name()) == "svg";
  });
  if (!root) {
    pic.FError = {"SVGNotXML", "The file is not an SVG drawing:", "no svg element"};
    return pic;
  }
  // The size of a user unit: the root's width over its viewBox width, else
  // a CSS pixel.
  double unit = kMmPerPx;
  const std::vector<double> vb = numberList(root.attribute("viewBox").as_string());
  double widthMm = 0;
  const bool hasWidth = lengthInMm(root.attribute("width").as_string(), widthMm) && widthMm > 0;
  if (vb.size() == 4 && vb[2] > 0 && hasWidth) unit = widthMm / vb[2];
  TSvgReader reader(pic);
  if (bytes.find("<!ENTITY") != std::string::npos)
    reader.note("SVGImportEntities", "The file declares entities; they were not read.", "");
  reader.walk(root, TMatrix::scaling(unit, unit), 0, 16.0);
  reader.finish();
  return pic;
}

bool svgPictureBounds(const TSvgPicture& pic, TRectF& bounds) {
  double l = 0, t = 0, r = 0, b = 0;
  bool any = false;
  auto take = [&](const TPointF& p) {
    if (!any) l = r = p.x, t = b = p.y;
    l = std::min(l, double(p.x)), r = std::max(r, double(p.x));
    t = std::min(t, double(p.y)), b = std::max(b, double(p.y));
    any = true;
  };
  for (const TPathData& p : pic.FPaths)
    for (const TPathPoint& q : p.points()) take(q.Point);
  for (const TSvgText& tx : pic.FTexts) take(tx.FBaseline);
  bounds = TRectF(TPointF::fromDouble(l, t), TPointF::fromDouble(r, b));
  return any;
}

void scaleSvgPicture(TSvgPicture& pic, double factor) {
  TRectF b;
  if (!svgPictureBounds(pic, b) || !(factor > 0) || !std::isfinite(factor)) return;
  const TMatrix m = TMatrix::translation(-double(b.Left), -double(b.Top)) * TMatrix::scaling(factor, factor) *
                    TMatrix::translation(b.Left, b.Top);
  for (TPathData& p : pic.FPaths) p.ApplyMatrix(m);
  for (TSvgText& t : pic.FTexts) {
    t.FBaseline = m.apply(t.FBaseline);
    t.FSize *= factor;
  }
}

std::vector<std::unique_ptr<TPW_Path>> svgPictureShapes(const TSvgPicture& pic, bool disassemble,
                                                        const TShapeStyle& style, const std::string& fontFamily) {
  std::vector<std::unique_ptr<TPW_Path>> out;
  auto shape = [&] {
    return std::make_unique<TPW_Path>(style.FPalletIndex, style.FColor, style.FThickness, style.FDash, 0);
  };
  for (const TPathData& p : pic.FPaths) {
    if (!disassemble) {
      auto s = shape();
      s->FData = p;
      s->FShapeType = ShapeType::Other;
      s->getBoundary(true);
      out.push_back(std::move(s));
      continue;
    }
    const auto& pts = p.points();
    TPointF cur, start;
    for (size_t i = 0; i < pts.size(); ++i) {
      const TPathPoint& q = pts[i];
      if (q.Kind == TPathPointKind::MoveTo) {
        cur = start = q.Point;
      } else if (q.Kind == TPathPointKind::LineTo || q.Kind == TPathPointKind::Close) {
        const TPointF to = q.Kind == TPathPointKind::Close ? start : q.Point;
        if (!cur.identical(to)) {
          auto s = shape();
          s->drawLinePath(cur, to);
          out.push_back(std::move(s));
        }
        cur = to;
      } else if (i + 2 < pts.size()) {
        const TPointF c1 = q.Point, c2 = pts[i + 1].Point, end = pts[i + 2].Point;
        if (!(cur.identical(c1) && cur.identical(c2) && cur.identical(end))) {
          auto s = shape();
          s->drawBezierPath(cur, c1, c2, end);
          out.push_back(std::move(s));
        }
        cur = end;
        i += 2;
      }
    }
  }
  for (const TSvgText& t : pic.FTexts) {
    auto s = shape();
    // The shape's point is the left middle of its line; SVG gives the baseline.
    const double up = t.FSize * 0.35, r = t.FRotation * 3.141592653589793 / 180.0;
    const TPointF at = TPointF::fromDouble(t.FBaseline.x + up * std::sin(r), t.FBaseline.y - up * std::cos(r));
    s->drawTextPath(t.FText, at, static_cast<float>(t.FSize), static_cast<float>(t.FRotation), fontFamily, 0, 1);
    out.push_back(std::move(s));
  }
  return out;
}
