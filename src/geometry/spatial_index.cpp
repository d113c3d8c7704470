#include "geometry/spatial_index.h"

#include <algorithm>
#include <cmath>

namespace {

// A box spanning more cells than this is kept aside and offered to every
// query, so that one long line does not fill a whole row of cells.
constexpr long long kMaxCellsPerBox = 64;

bool isValid(const TGridBox& b) {
  return std::isfinite(b.l) && std::isfinite(b.t) && std::isfinite(b.r) && std::isfinite(b.b);
}

}  // namespace

TBoxGrid::TBoxGrid(const std::vector<TGridBox>& boxes) : FSeen(boxes.size(), 0) {
  std::vector<double> sizes;
  sizes.reserve(boxes.size());
  double l = INFINITY, t = INFINITY, r = -INFINITY, b = -INFINITY;
  for (const TGridBox& g : boxes) {
    if (!isValid(g)) continue;
    l = std::min(l, g.l);
    t = std::min(t, g.t);
    r = std::max(r, g.r);
    b = std::max(b, g.b);
    sizes.push_back(std::max(g.r - g.l, g.b - g.t));
  }
  if (sizes.empty()) {
    FCellStart.assign(1, 0);
    return;
  }
  // Cells about the size of a typical shape, but not so many that the grid
  // outgrows the shapes it holds.
  std::nth_element(sizes.begin(), sizes.begin() + static_cast<std::ptrdiff_t>(sizes.size() / 2),
                   sizes.end());
  const double median = sizes[sizes.size() / 2];
  const double w = std::max(r - l, 1e-6), h = std::max(b - t, 1e-6);
  double cell = std::max({median, 1.0, std::sqrt(w * h / double(sizes.size()))});
  const double maxCells = 4.0 * double(sizes.size()) + 16.0;
  while ((std::floor(w / cell) + 1.0) * (std::floor(h / cell) + 1.0) > maxCells) cell *= 1.5;
  FLeft = l;
  FTop = t;
  FCell = cell;
  FCols = static_cast<int>(std::floor(w / cell)) + 1;
  FRows = static_cast<int>(std::floor(h / cell)) + 1;

  const size_t cells = size_t(FCols) * size_t(FRows);
  std::vector<uint32_t> counts(cells + 1, 0);
  auto forCells = [&](const TGridBox& g, auto&& f) {
    int c0, r0, c1, r1;
    cellRange(g, c0, r0, c1, r1);
    for (int row = r0; row <= r1; ++row)
      for (int col = c0; col <= c1; ++col) f(size_t(row) * size_t(FCols) + size_t(col));
  };
  auto spansTooMany = [&](const TGridBox& g) {
    int c0, r0, c1, r1;
    cellRange(g, c0, r0, c1, r1);
    return (long long)(c1 - c0 + 1) * (long long)(r1 - r0 + 1) > kMaxCellsPerBox;
  };
  for (size_t i = 0; i < boxes.size(); ++i) {
    if (!isValid(boxes[i])) continue;
    if (spansTooMany(boxes[i])) {
      FLarge.push_back(static_cast<int>(i));
      continue;
    }
    forCells(boxes[i], [&](size_t c) { ++counts[c + 1]; });
  }
  for (size_t c = 0; c < cells; ++c) counts[c + 1] += counts[c];
  FCellStart = counts;
  FEntries.resize(FCellStart.back());
  std::vector<uint32_t> fill(FCellStart.begin(), FCellStart.end() - 1);
  for (size_t i = 0; i < boxes.size(); ++i) {
    if (!isValid(boxes[i]) || spansTooMany(boxes[i])) continue;
    forCells(boxes[i], [&](size_t c) { FEntries[fill[c]++] = static_cast<int>(i); });
  }
}

void TBoxGrid::cellRange(const TGridBox& b, int& c0, int& r0, int& c1, int& r1) const {
  auto col = [&](double x) {
    return static_cast<int>(std::clamp(std::floor((x - FLeft) / FCell), 0.0, double(FCols - 1)));
  };
  auto row = [&](double y) {
    return static_cast<int>(std::clamp(std::floor((y - FTop) / FCell), 0.0, double(FRows - 1)));
  };
  c0 = col(b.l);
  c1 = col(b.r);
  r0 = row(b.t);
  r1 = row(b.b);
}

void TBoxGrid::query(const TGridBox& box, double margin, std::vector<int>& out) const {
  out.clear();
  if (FCols == 0 || !isValid(box)) return;
  if (++FQueryNo == 0) {  // the counter wrapped: forget old marks
    std::fill(FSeen.begin(), FSeen.end(), 0);
    FQueryNo = 1;
  }
  for (int i : FLarge) {
    FSeen[i] = FQueryNo;
    out.push_back(i);
  }
  const TGridBox wide{box.l - margin, box.t - margin, box.r + margin, box.b + margin};
  int c0, r0, c1, r1;
  cellRange(wide, c0, r0, c1, r1);
  for (int row = r0; row <= r1; ++row) {
    for (int col = c0; col <= c1; ++col) {
      const size_t c = size_t(row) * size_t(FCols) + size_t(col);
      for (uint32_t k = FCellStart[c]; k < FCellStart[c + 1]; ++k) {
        const int i = FEntries[k];
        if (FSeen[i] == FQueryNo) continue;
        FSeen[i] = FQueryNo;
        out.push_back(i);
      }
    }
  }
}
