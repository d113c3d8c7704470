#include "libraries/backdrop.h"

#include <cmath>
#include <numbers>

#include "document/json_value_forms.h"
#include "libraries/picture_codec.h"

namespace {

constexpr double kMmPerInch = 25.4;

nlohmann::ordered_json ptJson(const TPointF& p) {
  auto v = [](float f) { return std::isfinite(f) ? double(f) : 0.0; };
  return nlohmann::ordered_json::array({v(p.x), v(p.y)});
}

}  // namespace

void TBackdrop::addCurrentStateToUndo() {
  FUndoList.push_back({FLeftTop, FAngle, FDpi});
  FRedoList.clear();
}

TBackdropUndoValues TBackdrop::performUndo() {
  if (FUndoList.size() < 2) return {};
  FRedoList.push_back(FUndoList.back());
  FUndoList.pop_back();
  const TBackdropUndoValues v = FUndoList.back();
  FLeftTop = v.LeftTop;
  FAngle = v.Angle;
  setDPI(v.Dpi);
  updateRotationCenter();
  return v;
}

TBackdropUndoValues TBackdrop::performRedo() {
  if (FRedoList.empty()) return {};
  const TBackdropUndoValues v = FRedoList.back();
  FRedoList.pop_back();
  FUndoList.push_back(v);
  FLeftTop = v.LeftTop;
  FAngle = v.Angle;
  setDPI(v.Dpi);
  updateRotationCenter();
  return v;
}

TRectF TBackdrop::getBoundary() const { return TRectF(0, 0, float(FBitmap.FWidth), float(FBitmap.FHeight)); }

void TBackdrop::setDPI(float dpi) {
  if (!(dpi > 0) || !std::isfinite(dpi)) return;
  FDpi = dpi;
  FWidth = static_cast<float>(FBitmap.FWidth / double(dpi) * kMmPerInch);
  FHeight = static_cast<float>(FBitmap.FHeight / double(dpi) * kMmPerInch);
}

void TBackdrop::setRealSize(float w, float h) {
  const double pw = FBitmap.FWidth, ph = FBitmap.FHeight;
  if (w == 0) {
    if (h == 0) return;
    FHeight = h;
    const double scale = ph / h;
    FWidth = static_cast<float>(ph / scale);
  } else if (h != 0) {
    FWidth = w;
    FHeight = h;
  } else {
    FWidth = w;
    const double scale = pw / w;
    FHeight = static_cast<float>(ph / scale);
  }
  if (FWidth != 0) FDpi = static_cast<float>(pw / FWidth * kMmPerInch);
}

TPointF TBackdrop::centre() const {
  return TPointF::fromDouble(FLeftTop.x + FWidth / 2.0, FLeftTop.y + FHeight / 2.0);
}

TMatrix TBackdrop::pictureToModel() const {
  const TPointF c = centre();
  return TMatrix::translation(FLeftTop.x - double(c.x), FLeftTop.y - double(c.y)) *
         TMatrix::rotation(FAngle * std::numbers::pi / 180.0) * TMatrix::translation(c.x, c.y);
}

TPointF TBackdrop::modelToPicture(const TPointF& p) const {
  const TPointF c = centre();
  const double a = -FAngle * std::numbers::pi / 180.0;
  const double dx = double(p.x) - c.x, dy = double(p.y) - c.y;
  const double rx = dx * std::cos(a) - dy * std::sin(a), ry = dx * std::sin(a) + dy * std::cos(a);
  return TPointF::fromDouble(rx + FWidth / 2.0, ry + FHeight / 2.0);
}

std::vector<TPointF> TBackdrop::corners() const {
  const TMatrix m = pictureToModel();
  return {m.apply(TPointF(0, 0)), m.apply(TPointF(FWidth, 0)), m.apply(TPointF(FWidth, FHeight)),
          m.apply(TPointF(0, FHeight))};
}

bool TBackdrop::containsPoint(const TPointF& p) const {
  const TPointF q = modelToPicture(p);
  return q.x >= 0 && q.y >= 0 && q.x <= FWidth && q.y <= FHeight;
}

void TBackdrop::scaleAbout(const TPointF& fixed, double factor) {
  if (!(factor > 0) || !std::isfinite(factor) || !(FDpi > 0)) return;
  const TPointF c = centre();
  const TPointF nc = TPointF::fromDouble(fixed.x + (double(c.x) - fixed.x) * factor,
                                         fixed.y + (double(c.y) - fixed.y) * factor);
  const double w = FWidth * factor, h = FHeight * factor;
  FWidth = static_cast<float>(w);
  FHeight = static_cast<float>(h);
  FDpi = static_cast<float>(FDpi / factor);
  FLeftTop = TPointF::fromDouble(nc.x - w / 2.0, nc.y - h / 2.0);
  updateRotationCenter();
}

std::string TBackdrop::convertBitmapToBase64Zip() const {
  return pictureToBase64Zip(FBitmap, kBackdropPictureEntry);
}

void TBackdrop::decodeZippedBitmap(const std::string& base64zip) {
  FBitmap = pictureFromBase64Zip(base64zip, kBackdropPictureEntry).FImage;
  FPaintCache.reset();
}

void TBackdrop::setPicture(const TRasterImage& picture, float dpi) {
  FBitmap = picture;
  FPaintCache.reset();
  setDPI(dpi);
  FBase64ZippedBitmap = convertBitmapToBase64Zip();
  updateRotationCenter();
}

nlohmann::ordered_json TBackdrop::ToJson() const {
  nlohmann::ordered_json jo = FFileJson.is_object() ? FFileJson : nlohmann::ordered_json::object();
  jo["fullpath"] = FFullPath;
  jo["topleft"] = ptJson(FLeftTop);
  jo["angle"] = numText(FAngle);
  jo["rotc"] = ptJson(FRotationCenter);
  jo["dpi"] = numText(FDpi);
  jo["w"] = numText(FWidth);
  jo["h"] = numText(FHeight);
  jo["zipbmp"] = FBase64ZippedBitmap;
  return jo;
}

void TBackdrop::loadJson(const nlohmann::ordered_json& jo) {
  FFileJson = jo;
  FFileJson.erase("zipbmp");  // held in FBase64ZippedBitmap; no second copy
  if (const auto* v = findKey(jo, "fullpath")) FFullPath = readText(*v, "backdrop, key \"fullpath\"");
  if (const auto* v = findKey(jo, "topleft")) FLeftTop = readPt(*v, "backdrop, key \"topleft\"");
  if (const auto* v = findKey(jo, "angle")) FAngle = readNum(*v, "backdrop, key \"angle\"");
  if (const auto* v = findKey(jo, "rotc")) FRotationCenter = readPt(*v, "backdrop, key \"rotc\"");
  if (const auto* v = findKey(jo, "dpi")) FDpi = readNum(*v, "backdrop, key \"dpi\"");
  if (const auto* v = findKey(jo, "w")) FWidth = readNum(*v, "backdrop, key \"w\"");
  if (const auto* v = findKey(jo, "h")) FHeight = readNum(*v, "backdrop, key \"h\"");
  if (const auto* v = findKey(jo, "zipbmp")) FBase64ZippedBitmap = readText(*v, "backdrop, key \"zipbmp\"");
}

void TBackdrop::repairPlacement() {
  // Values no one could have meant: a picture of no size or past the
  // drawing's limits falls back to its resolution.
  auto sane = [](float v) { return std::isfinite(v) && std::fabs(v) <= 1.0e6f; };
  if (!sane(FAngle)) FAngle = 0;
  if (!sane(FLeftTop.x) || !sane(FLeftTop.y)) FLeftTop = TPointF();
  if (!(FDpi > 0.01f) || !sane(FDpi)) FDpi = kDefaultBackdropDpi;
  if (!(FWidth > 0) || !(FHeight > 0) || !sane(FWidth) || !sane(FHeight)) setDPI(FDpi);
  if (!sane(FRotationCenter.x) || !sane(FRotationCenter.y)) updateRotationCenter();
}
