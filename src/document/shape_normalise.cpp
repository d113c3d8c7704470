#include "document/shape_normalise.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string>
#include <set>
#include <unordered_map>

#include "document/point_helpers.h"
#include "document/shape_list.h"

namespace {

// roundDecimals(v, 4) without the power: it runs for every line before
// every undo snapshot.
double roundTo4(double v) { return std::trunc(v * 10000.0 + (v < 0 ? -0.5 : 0.5)) / 10000.0; }

TPointF round4(const TPointF& p) { return TPointF::fromDouble(roundTo4(p.x), roundTo4(p.y)); }

bool pathIsLine(const TPathData& d, const TPointF& st, const TPointF& ep) {
  return d.Count() == 2 && d[0].Kind == TPathPointKind::MoveTo && d[1].Kind == TPathPointKind::LineTo &&
         d[0].Point.identical(st) && d[1].Point.identical(ep);
}

}  // namespace

void normaliseLine(TPW_Path& s) {
  if (s.FShapeType != ShapeType::Line) return;
  const TPointF st = round4(s.FStartPt);
  const TPointF ep = round4(s.FEndPt);
  const TPointF mid = round4(TPointF::fromDouble((double(s.FStartPt.x) + s.FEndPt.x) / 2.0,
                                                 (double(s.FStartPt.y) + s.FEndPt.y) / 2.0));
  if (st.identical(s.FStartPt) && ep.identical(s.FEndPt) && pathIsLine(s.FData, st, ep)) {
    s.FCenter = mid;
    s.calcLineParam();
    return;
  }
  s.drawLinePath(st, ep);
  s.FCenter = mid;
}

namespace {

// Shapes that can only be identical when this key is equal: the ends of
// lines, curves and arcs compared after rounding to hundredths, in either
// order, and the path text of text and outlines.
bool exactKey(TPW_Path& s, std::string& key) {
  if (s.FShapeType == ShapeType::Line || s.FShapeType == ShapeType::Bezier || s.FShapeType == ShapeType::Arc) {
    char a[64], b[64];
    std::snprintf(a, sizeof a, "%.2f,%.2f", round2(s.FStartPt.x), round2(s.FStartPt.y));
    std::snprintf(b, sizeof b, "%.2f,%.2f", round2(s.FEndPt.x), round2(s.FEndPt.y));
    const std::string sa = a, sb = b;
    key = sa < sb ? sa + ";" + sb : sb + ";" + sa;
    return true;
  }
  if (s.FShapeType == ShapeType::Text || s.FShapeType == ShapeType::Other) {
    key = s.FData.getData();
    return true;
  }
  return false;
}

// The point that dots, ellipses and holes are compared by.
TPointF anchorOf(const TPW_Path& s) {
  return s.FShapeType == ShapeType::Hole ? s.FStartPt : s.FCenter;
}

}  // namespace

TDuplicates findDuplicates(TShapeList& list) {
  TDuplicates out;
  const size_t n = list.Count();
  std::vector<bool> isDuplicate(n, false);
  // Candidates are gathered in buckets that identical shapes always share,
  // so that a large drawing is not compared pair by pair.
  std::unordered_map<std::string, std::vector<size_t>> exact;
  std::unordered_map<std::string, std::vector<size_t>> byPoint;
  for (size_t i = 0; i < n; ++i) {
    TPW_Path* s = list[i];
    const std::string group = std::to_string(s->FLayerID) + "\x1F" + s->FShapeType + "\x1F";
    std::string key;
    if (exactKey(*s, key)) exact[group + key].push_back(i);
    else if (s->FShapeType == ShapeType::Dot || s->FShapeType == ShapeType::Ellipse ||
             s->FShapeType == ShapeType::Hole)
      byPoint[group].push_back(i);
  }
  auto compareAll = [&](const std::vector<size_t>& members) {
    for (size_t a = 0; a + 1 < members.size(); ++a) {
      TPW_Path* first = list[members[a]];
      for (size_t b = a + 1; b < members.size(); ++b) {
        if (isDuplicate[members[b]]) continue;
        if (first->isIdentical(*list[members[b]])) isDuplicate[members[b]] = true;
      }
    }
  };
  for (auto& entry : exact) compareAll(entry.second);
  for (auto& entry : byPoint) {
    // Sorted by x; equal points differ by at most a few millionths of their
    // size, so each shape meets only its near neighbours.
    std::vector<size_t> m = entry.second;
    std::stable_sort(m.begin(), m.end(), [&](size_t a, size_t b) { return anchorOf(*list[a]).x < anchorOf(*list[b]).x; });
    for (size_t a = 0; a < m.size(); ++a) {
      const double xa = anchorOf(*list[m[a]]).x;
      for (size_t b = a + 1; b < m.size(); ++b) {
        const double xb = anchorOf(*list[m[b]]).x;
        if (!(xb - xa <= std::max(std::fabs(xa), std::fabs(xb)) * 2.5e-6 + 1e-30)) break;
        const size_t first = std::min(m[a], m[b]), later = std::max(m[a], m[b]);
        if (isDuplicate[later]) continue;
        if (list[first]->isIdentical(*list[later])) isDuplicate[later] = true;
      }
    }
  }
  std::set<int> mandalas;
  for (size_t i = 0; i < n; ++i) {
    if (!isDuplicate[i]) continue;
    TPW_Path* s = list[i];
    out.FShapes.push_back(s);
    if (s->FMandalaID > 0) {
      if (mandalas.insert(s->FMandalaID).second) ++out.FCount;
    } else {
      ++out.FCount;
    }
  }
  return out;
}
