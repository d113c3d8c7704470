#include "stitching/stitch_simulation.h"

#include <unordered_map>
#include <unordered_set>

#include "document/pw_path.h"
#include "document/shape_list.h"

namespace {

constexpr TAlphaColor kDefaultThread = 0xFFFFFFFF;

class TRowWalker {
 public:
  TRowWalker(const std::vector<const TPW_Path*>& shapes, const TStitchSimulationOptions& options,
             TStitchSimulation& out)
      : FOptions(options), FOut(out) {
    for (const TPW_Path* s : shapes)
      if (s && s->isType(ShapeType::Hole)) {
        FHoles.push_back(s);
        FByID.emplace(s->FID, s);  // the first of a duplicated id wins
      }
  }

  void run() {
    std::unordered_set<const TPW_Path*> reached;
    for (const TPW_Path* h : FHoles)
      if (const TPW_Path* n = next(h)) reached.insert(n);
    // Open rows from their first hole, then whatever is left: closed loops.
    for (const TPW_Path* h : FHoles)
      if (!reached.count(h) && !FVisited.count(h)) walk(h);
    for (const TPW_Path* h : FHoles)
      if (!FVisited.count(h)) walk(h);
  }

 private:
  const TStitchSimulationOptions& FOptions;
  TStitchSimulation& FOut;
  std::vector<const TPW_Path*> FHoles;
  std::unordered_map<int, const TPW_Path*> FByID;
  std::unordered_set<const TPW_Path*> FVisited;

  const TPW_Path* next(const TPW_Path* h) const {
    if (h->FNextStitchID < 0 || h->FNextStitchID == h->FID) return nullptr;
    auto it = FByID.find(h->FNextStitchID);
    return (it == FByID.end() || it->second == h) ? nullptr : it->second;
  }

  void walk(const TPW_Path* h) {
    int index = 0;
    while (h && !FVisited.count(h)) {
      FVisited.insert(h);
      const TPW_Path* n = next(h);
      if (!n) break;
      if (FOptions.FShowStitchPattern || h->FAlwaysShowStitchSimulator ||
          n->FAlwaysShowStitchSimulator) {
        TThreadStitch st;
        st.FFrom = h->FStitchOut;
        st.FTo = n->FStitchIn;
        st.FFromID = h->FID;
        st.FToID = n->FID;
        st.FIndexInRow = index;
        st.FColor = h->FThreadColor != kDefaultThread ? h->FThreadColor : FOptions.FStitchColor;
        FOut.FStitches.push_back(st);
      }
      ++index;
      h = n;
    }
  }
};

}  // namespace

TStitchSimulation buildStitchSimulation(const std::vector<const TPW_Path*>& shapes,
                                        const TStitchSimulationOptions& options) {
  TStitchSimulation out;
  out.FThickness = options.FStitchThickness;
  out.FOpacity = options.FStitchOpacity;
  TRowWalker(shapes, options, out).run();
  return out;
}

TStitchSimulation buildStitchSimulation(const TShapeList& shapes,
                                        const TStitchSimulationOptions& options) {
  std::vector<const TPW_Path*> list;
  list.reserve(shapes.Count());
  for (const auto& s : shapes) list.push_back(s.get());
  return buildStitchSimulation(list, options);
}
