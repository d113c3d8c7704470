// The stitching operations of the local API: one hole, a row along a route
// between two points, a row round a closed outline. Each returns everything
// its reply needs; the endpoints turn that into JSON.
#include <cctype>
#include <unordered_set>

#include "app/frm_pelw.h"
#include "stitching/chain_order.h"
#include "stitching/row_holes.h"
#include "stitching/stitch_rows.h"
#include "surface/paint_palette.h"

namespace {

std::string lowerCase(std::string s) {
  for (char& c : s) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return s;
}

// Lends the iron another blade type for one call and gives it back.
class TBladeTypeLoan {
 public:
  TBladeTypeLoan(TPrickingIron* iron, const std::string& bladeType) : FIron(iron) {
    if (!FIron) return;
    FSaved = FIron->FBladeType;
    FIron->FBladeType = bladeType;
  }
  ~TBladeTypeLoan() {
    if (FIron) FIron->FBladeType = FSaved;
  }
  TBladeTypeLoan(const TBladeTypeLoan&) = delete;
  TBladeTypeLoan& operator=(const TBladeTypeLoan&) = delete;

 private:
  TPrickingIron* FIron;
  std::string FSaved;
};

}  // namespace

std::string TfrmPelw::bladeTypeOfStitchName(const std::string& stitchType) {
  const std::string name = lowerCase(stitchType);
  if (name == "french") return BladeType::French;
  if (name == "flat") return BladeType::Flat;
  if (name == "round") return BladeType::Round;
  return BladeType::Diamond;
}

int TfrmPelw::apiAddStitchHole(const TStitchHoleRequest& request) {
  if (!PathList) return -1;
  const int layer = request.FLayerId.value_or(FActiveLayer);
  TPrickingIron* iron = stitchIron();
  TBladeTypeLoan loan(iron, bladeTypeOfStitchName(request.FStitchType));
  auto hole = std::make_unique<TPW_Path>(kStitchHolePalletIndex, FColor_StitchingHole, request.FThickness,
                                         request.FDash, PathList->getNextID());
  hole->createStichPath(request.FCenter, FIsInvertedStitchMode, iron, request.FAngle, 0.0f);
  TPW_Path* added = addShapeToDocument(std::move(hole), layer);
  RepaintCanvas();
  finishDocumentChange();
  return added ? added->FID : -1;
}

TfrmPelw::TStitchReply TfrmPelw::apiStitchAlongPath(const TStitchAlongPathRequest& request) {
  TStitchReply reply;
  if (!PathList || !FIntersections) {
    reply.FError = "no route found between startPoint and endPoint";
    return reply;
  }
  TVertexNetwork network(PathList.get(), FIntersections.get());
  network.FGoalOnShapes = true;
  if (!network.dpConnect(request.FStartPoint, request.FEndPoint)) {
    reply.FError = "no route found between startPoint and endPoint";
    return reply;
  }
  TRouteVertex* endVertex = network.GetVertex(request.FEndPoint);
  if (!endVertex) {
    reply.FError = "destination vertex not found in network";
    return reply;
  }
  std::vector<std::unique_ptr<TPW_Path>> route;
  TOpenRow row = openRowAlong(network, endVertex, request.FStartPoint, request.FEndPoint, route);

  TStitchSettings settings = FStitchSettings;
  const std::string mode = lowerCase(request.FMode);
  settings.FPitchMode = mode == "auto" ? TPitchMode::Auto : (mode == "count" ? TPitchMode::Count : TPitchMode::Fixed);
  settings.FPitch = request.FPitchMm;
  settings.FCornerMode = request.FCornerMode;
  settings.FNumOfHoles = static_cast<float>(request.FHoleCount);
  reply.FError = rowSizeRefusal(row.FRoute, settings, true);
  if (!reply.FError.empty()) return reply;

  // The holes of a walked row take the palette row's stroke; the corner
  // methods lay theirs as the tool does.
  THoleLook look{FColor_StitchingHole, 1.0f, TStrokeDash::Dot};
  const bool cornerMethod = settings.FCornerMode < kCornerUniform && !row.FRoute.empty();
  if (!cornerMethod && FPaintPalette && FPaintPalette->contains(kStitchHolePalletIndex)) {
    const TPaletteLook row36 = FPaintPalette->row(kStitchHolePalletIndex);
    look = THoleLook{row36.colorFor(FIsBlackBackgroundMode), row36.FThickness, row36.FDash};
  }
  const int layer = request.FLayerId.value_or(FActiveLayer);
  TPrickingIron* iron = stitchIron();
  TBladeTypeLoan loan(iron, bladeTypeOfStitchName(request.FStitchType));
  validLastStitch();
  TRowHoles holes(*PathList, layer, iron, FIsInvertedStitchMode, look,
                  [this, layer](std::unique_ptr<TPW_Path> h) { return addShapeToDocument(std::move(h), layer); },
                  FLastStitch);
  const TRowOutcome out = layOpenRow(row, settings, holes, TRowCaller::Api);
  noteLastStitch();
  if (out.FAbandoned) {
    reply.FError = "cannot compute pitch: no route or holeCount <= 1";
    return reply;
  }
  for (const TPW_Path* h : out.FMade) reply.FCreatedIds.push_back(h->FID);
  reply.FOk = true;
  reply.FChainPlacement = out.FCornerMethod;
  reply.FCornerMode = settings.FCornerMode;
  reply.FHoleCount = out.count();
  reply.FActualPitchMm = static_cast<float>(out.pitch());
  if (!out.FMade.empty()) {
    RepaintCanvas();
    finishDocumentChange();
  }
  return reply;
}

TfrmPelw::TStitchReply TfrmPelw::apiStitchLoop(const TStitchLoopRequest& request) {
  TStitchReply reply;
  if (!PathList) {
    reply.FError = "no shape found near pointOnLoop";
    return reply;
  }
  // The shape is found on the active layer, before the request's layer applies.
  const int savedLayer = FActiveLayer;
  const int layer = request.FLayerId.value_or(FActiveLayer);
  const std::vector<TPW_Path*> hits = stitchHitTest(request.FPointOnLoop);
  if (hits.empty()) {
    reply.FError = "no shape found near pointOnLoop";
    return reply;
  }
  TPW_Path* shape = hits[0];
  std::vector<TPW_Path*> loop;
  if (shape->FShapeType == ShapeType::Ellipse) loop.push_back(shape);
  else loop = findClosedLoop(shape, *PathList);
  if (loop.empty()) {
    reply.FError = "shape at pointOnLoop is not part of a closed loop";
    return reply;
  }
  std::unordered_set<int> before;
  for (const auto& s : *PathList) before.insert(s->FID);

  // The stitch panel's settings are the loop's parameters for this call,
  // and are put back afterwards whatever happens.
  struct TRestore {
    TfrmPelw& f;
    TStitchSettings settings;
    int layer;
    ~TRestore() {
      f.FStitchSettings = settings;
      f.FActiveLayer = layer;
    }
  } restore{*this, FStitchSettings, savedLayer};
  TPrickingIron* iron = stitchIron();
  TBladeTypeLoan loan(iron, bladeTypeOfStitchName(request.FStitchType));
  FActiveLayer = layer;
  FStitchSettings.FPitch = request.FPitchMm;
  if (request.FCornerMode) FStitchSettings.FCornerMode = *request.FCornerMode;
  const std::string mode = lowerCase(request.FMode);
  if (mode == "count") {
    FStitchSettings.FPitchMode = TPitchMode::Count;
    FStitchSettings.FNumOfHoles = static_cast<float>(request.FHoleCount);
  } else if (mode == "fixed") {
    FStitchSettings.FPitchMode = TPitchMode::Fixed;
  } else {
    FStitchSettings.FPitchMode = TPitchMode::Auto;
  }
  reply.FError = rowSizeRefusal(loop, FStitchSettings, true);
  if (!reply.FError.empty()) return reply;
  int count = 0;
  float pitch = 0.0f;
  placeOnClosedPath(loop, shape->FStartPt, count, pitch);
  RepaintCanvas();
  finishDocumentChange();

  for (const auto& s : *PathList)
    if (s->FShapeType == ShapeType::Hole && !before.count(s->FID)) reply.FCreatedIds.push_back(s->FID);
  reply.FOk = true;
  reply.FHoleCount = static_cast<int>(reply.FCreatedIds.size());
  reply.FActualPitchMm = pitch;
  return reply;
}
