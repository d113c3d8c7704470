#include "exchange/svg_export.h"

#include <cmath>
#include <cstdio>
#include <pugixml.hpp>

#include "app/options.h"
#include "document/number_text.h"
#include "exchange/export_walk.h"

namespace {

std::string fixed(double v, int decimals = 3) { return fixedText(v, decimals); }

void appendPair(std::string& out, const TPointF& p, int decimals = 3) {
  appendFixedText(out, p.x, decimals);
  out += ',';
  appendFixedText(out, p.y, decimals);
}

// A chain's piece of path text; an arc goes as cubic pieces of at most a
// quarter turn, with four decimals, and brings its own move.
void appendPathPiece(std::string& d, const TPW_Path& s, bool skipMove) {
  if (!skipMove) {
    d += 'M';
    appendPair(d, s.FStartPt);
    d += ' ';
  }
  if (s.isType(ShapeType::Line)) {
    d += 'L';
    appendPair(d, s.FEndPt);
    d += ' ';
  } else if (s.isType(ShapeType::Bezier)) {
    d += 'C';
    for (const TPointF& p : {s.FBezierCp1, s.FBezierCp2, s.FEndPt}) {
      appendPair(d, p);
      d += ' ';
    }
  } else if (s.isType(ShapeType::Arc)) {
    auto rest = s.createCopy();
    std::vector<std::unique_ptr<TPW_Path>> pieces = rest->splitArc();
    pieces.push_back(std::move(rest));
    bool first = true;
    for (auto& piece : pieces) {
      piece->convertArcToBezier();
      if (first && !skipMove) {
        d += 'M';
        appendPair(d, piece->FStartPt, 4);
        d += ' ';
      }
      first = false;
      d += 'C';
      for (const TPointF& p : {piece->FBezierCp1, piece->FBezierCp2, piece->FEndPt}) {
        appendPair(d, p, 4);
        d += ' ';
      }
    }
  }
}

void setDashArray(pugi::xml_node node, const TPW_Path& s) {
  if (!s.FExportStrokeDashToSVG) return;
  const char* v = nullptr;
  switch (s.FDash) {
    case TStrokeDash::Dash: v = "3 1"; break;
    case TStrokeDash::Dot: v = "1"; break;
    case TStrokeDash::DashDot: v = "3 1 1 1"; break;
    case TStrokeDash::DashDotDot: v = "3 1 1 1 1 1"; break;
    default: break;
  }
  if (v) node.append_attribute("stroke-dasharray") = v;
}

void setStroke(pugi::xml_node node, TAlphaColor color, float thickness) {
  node.append_attribute("stroke") = svgColorText(color).c_str();
  // Thickness is kept in tenths of a millimetre.
  node.append_attribute("stroke-width") = fixed(double(thickness) * 0.1).c_str();
}

void attr(pugi::xml_node node, const char* name, double v, int decimals = 3) {
  node.append_attribute(name) = fixed(v, decimals).c_str();
}

void pathElement(pugi::xml_node g, const TPW_Path& s, const std::string& d) {
  pugi::xml_node e = g.append_child("path");
  e.append_attribute("d") = d.c_str();
  e.append_attribute("fill") = "none";
  setDashArray(e, s);
  setStroke(e, s.FColor, s.FThickness);
}

void bezierElement(pugi::xml_node g, const TPW_Path& s) {
  std::string d = "M";
  appendPair(d, s.FStartPt);
  d += " C";
  appendPair(d, s.FBezierCp1);
  d += ' ';
  appendPair(d, s.FBezierCp2);
  d += ' ';
  appendPair(d, s.FEndPt);
  pathElement(g, s, d);
}

// One element for a shape that is not in a chain.
void addToSVG(pugi::xml_node g, const TPW_Path& s, const TExportSettings& settings, TAlphaColor holeColor) {
  if (writtenAsDot(s, settings.FHolesAsDots)) {
    pugi::xml_node e = g.append_child("circle");
    attr(e, "cx", s.FCenter.x);
    attr(e, "cy", s.FCenter.y);
    attr(e, "r", settings.FDotRadius, 2);
    e.append_attribute("fill") = "none";
    setStroke(e, s.isType(ShapeType::Hole) ? holeColor : s.FColor, s.FThickness);
  } else if (s.isType(ShapeType::Line)) {
    pugi::xml_node e = g.append_child("line");
    attr(e, "x1", s.FStartPt.x);
    attr(e, "y1", s.FStartPt.y);
    attr(e, "x2", s.FEndPt.x);
    attr(e, "y2", s.FEndPt.y);
    setDashArray(e, s);
    setStroke(e, s.FColor, s.FThickness);
  } else if (s.isType(ShapeType::Bezier)) {
    bezierElement(g, s);
  } else if (s.isType(ShapeType::Ellipse)) {
    const bool circle = std::fabs(double(s.FWidth) - s.FHeight) < 1e-4;
    pugi::xml_node e = g.append_child(circle ? "circle" : "ellipse");
    attr(e, "cx", s.FCenter.x);
    attr(e, "cy", s.FCenter.y);
    if (circle) {
      attr(e, "r", s.FWidth / 2.0);
    } else {
      attr(e, "rx", s.FWidth / 2.0);
      attr(e, "ry", s.FHeight / 2.0);
      // A turned oval stays turned in the file.
      if (std::fabs(s.FRotation) > 1e-6f)
        e.append_attribute("transform") =
            ("rotate(" + fixed(s.FRotation) + " " + fixed(s.FCenter.x) + " " + fixed(s.FCenter.y) + ")").c_str();
    }
    e.append_attribute("fill") = "none";
    setDashArray(e, s);
    setStroke(e, s.FColor, s.FThickness);
  } else if (s.isType(ShapeType::Arc) && std::fabs(s.FSweepAngle) <= 180.0f) {
    auto copy = s.createCopy();
    copy->convertArcToBezier();
    bezierElement(g, *copy);
  } else if (s.isType(ShapeType::Hole)) {
    pugi::xml_node e = g.append_child("path");
    e.append_attribute("d") = s.FData.getData().c_str();
    e.append_attribute("fill") = "none";
    setDashArray(e, s);
    setStroke(e, holeColor, s.FThickness);
  } else if (s.isType(ShapeType::Arc) || s.isType(ShapeType::Other) || s.isType(ShapeType::Text)) {
    pathElement(g, s, s.FData.getData());
  }
}

struct TStringWriter : pugi::xml_writer {
  std::string text;
  void write(const void* data, size_t size) override { text.append(static_cast<const char*>(data), size); }
};

}  // namespace

std::string svgColorText(TAlphaColor c) {
  char buf[8];
  std::snprintf(buf, sizeof buf, "#%02X%02X%02X", (c >> 16) & 0xFFu, (c >> 8) & 0xFFu, c & 0xFFu);
  return buf;
}

std::string svgExportText(const TExportScene& scene, const TExportSettings& settings) {
  const std::vector<TExportRun> runs = walkExportShapes(scene, settings);
  if (runs.empty()) return {};
  TRectF b = exportBounds(runs, settings.FHolesAsDots, settings.FDotRadius);
  double left = b.Left, top = b.Top, width = b.width(), height = b.height();
  // A page of no width shows nothing in any viewer: a lone straight line
  // gets a millimetre of page across it.
  if (width < 0.001) left -= 0.5, width += 1.0;
  if (height < 0.001) top -= 0.5, height += 1.0;

  pugi::xml_document doc;
  doc.append_child(pugi::node_declaration).append_attribute("version") = "1.0";
  pugi::xml_node svg = doc.append_child("svg");
  svg.append_attribute("xmlns") = "http://www.w3.org/2000/svg";
  svg.append_attribute("width") = (fixed(width) + "mm").c_str();
  svg.append_attribute("height") = (fixed(height) + "mm").c_str();
  svg.append_attribute("version") = "1.1";
  svg.append_attribute("viewBox") =
      (fixed(left) + " " + fixed(top) + " " + fixed(width) + " " + fixed(height)).c_str();
  svg.append_attribute("preserveAspectRatio") = "none";
  svg.append_child("desc").text() = (std::string("Created with Pelwright v") + kRunningVersion + " by Ostlerbeck.").c_str();
  pugi::xml_node g = svg.append_child("g");
  for (const TExportRun& run : runs) {
    if (!run.isChain()) {
      addToSVG(g, *run.FShapes.front(), settings, scene.FHoleColor);
      continue;
    }
    std::string d;
    for (size_t i = 0; i < run.FShapes.size(); ++i) appendPathPiece(d, *run.FShapes[i], i > 0);
    pathElement(g, *run.FShapes.back(), d);
  }
  if (!g.first_child()) return {};
  TStringWriter w;
  doc.save(w, "  ", pugi::format_default | pugi::format_no_declaration, pugi::encoding_utf8);
  return w.text;
}
