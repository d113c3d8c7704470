#include "stitching/chain_order.h"

#include <algorithm>
#include <cmath>

#include "document/point_helpers.h"
#include "document/shape_list.h"

namespace {

bool joins(const TPointF& a, const TPointF& b) {
  return std::fabs(double(a.x) - b.x) <= kChainJoinGap && std::fabs(double(a.y) - b.y) <= kChainJoinGap;
}

bool canTurn(const TPW_Path& s) {
  return s.FShapeType == ShapeType::Line || s.FShapeType == ShapeType::Bezier ||
         s.FShapeType == ShapeType::Arc;
}

}  // namespace

std::unique_ptr<TPW_Path> reversedCopy(const TPW_Path& shape) {
  if (!canTurn(shape)) return nullptr;
  std::unique_ptr<TPW_Path> copy = shape.createCopy();
  copy->reversePath();
  return copy;
}

bool orderIntoChain(const std::vector<TPW_Path*>& shapes, std::vector<TPW_Path*>& chain,
                    std::vector<std::unique_ptr<TPW_Path>>& temporaries) {
  chain.clear();
  temporaries.clear();
  const size_t n = shapes.size();
  if (n == 0) return false;
  std::vector<TPW_Path*> best;
  std::vector<std::unique_ptr<TPW_Path>> bestTemps;
  std::vector<char> used(n);
  for (size_t head = 0; head < n; ++head) {
    for (int pass = 0; pass < 2; ++pass) {
      std::vector<TPW_Path*> run;
      std::vector<std::unique_ptr<TPW_Path>> temps;
      if (pass == 0) {
        run.push_back(shapes[head]);
      } else {
        std::unique_ptr<TPW_Path> turned = reversedCopy(*shapes[head]);
        if (!turned) continue;
        run.push_back(turned.get());
        temps.push_back(std::move(turned));
      }
      std::fill(used.begin(), used.end(), 0);
      used[head] = 1;
      bool extended = true;
      while (extended && run.size() < n) {
        extended = false;
        const TPointF e = run.back()->FEndPt;
        for (size_t i = 0; i < n; ++i) {
          if (used[i]) continue;
          TPW_Path* s = shapes[i];
          if (joins(s->FStartPt, e)) {
            run.push_back(s);
          } else if (joins(s->FEndPt, e)) {
            std::unique_ptr<TPW_Path> turned = reversedCopy(*s);
            if (!turned) continue;
            run.push_back(turned.get());
            temps.push_back(std::move(turned));
          } else {
            continue;
          }
          used[i] = 1;
          extended = true;
          break;
        }
      }
      if (run.size() > best.size()) {
        best = std::move(run);
        bestTemps = std::move(temps);
      }
      if (best.size() == n) {
        chain = std::move(best);
        temporaries = std::move(bestTemps);
        return true;
      }
    }
  }
  return false;
}

std::vector<TPW_Path*> findClosedLoop(TPW_Path* shape, const TShapeList& list) {
  std::vector<TPW_Path*> loop;
  if (!shape || !canTurn(*shape)) return loop;
  loop.push_back(shape);
  std::vector<const TPW_Path*> used{shape};
  TPointF cur = shape->FEndPt;
  while (!samePoint(cur, shape->FStartPt, 0.0)) {
    TPW_Path* nextShape = nullptr;
    for (const auto& item : list) {
      TPW_Path* s = item.get();
      if (!canTurn(*s) || s->FIsDimensionLine || !list.GetlayerVisible(s->FLayerID)) continue;
      if (std::find(used.begin(), used.end(), s) != used.end()) continue;
      if (samePoint(s->FStartPt, cur, 0.0)) {
        cur = s->FEndPt;
      } else if (samePoint(s->FEndPt, cur, 0.0)) {
        cur = s->FStartPt;
      } else {
        continue;
      }
      nextShape = s;
      break;
    }
    if (!nextShape) return {};
    loop.push_back(nextShape);
    used.push_back(nextShape);
  }
  return loop;
}
