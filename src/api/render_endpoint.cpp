#include "api/render_endpoint.h"

#include <algorithm>

#include "api/api_reply.h"
#include "api/api_request.h"
#include "app/frm_pelw.h"
#include "document/base64.h"
#include "surface/offscreen_render.h"

namespace {

// A side from the request, or `fallback`; nothing when the value is not a
// whole number within the limits.
std::optional<int> pictureSide(const TJson& obj, const char* name, int fallback) {
  if (!obj.contains(name)) return fallback;
  const std::optional<int> v = wholeNumber(obj[name]);
  if (!v || *v < kMinRenderSide || *v > kMaxRenderSide) return std::nullopt;
  return v;
}

}  // namespace

std::string apiRender(TfrmPelw& form, const std::string& body) {
  // No body at all asks for the defaults.
  const auto obj = body.empty() ? std::optional<TJson>(TJson::object()) : parseJsonObject(body);
  if (!obj) return errorReply("invalid JSON body");
  const std::string areaName = optionalText(*obj, "area", "view");
  if (areaName != "view" && areaName != "drawing")
    return errorReply("area must be \"view\" or \"drawing\"");
  const TRenderArea area = areaName == "view" ? TRenderArea::View : TRenderArea::Drawing;
  // The canvas's size by default; the headless one when there is no canvas.
  auto side = [](int canvas, int headless) {
    return std::clamp(canvas > 0 ? canvas : headless, kMinRenderSide, kMaxRenderSide);
  };
  const auto width = pictureSide(*obj, "width", side(form.FPboxWidth, TfrmPelw::kHeadlessCanvasWidth));
  const auto height = pictureSide(*obj, "height", side(form.FPboxHeight, TfrmPelw::kHeadlessCanvasHeight));
  if (!width || !height)
    return errorReply("width and height must be whole numbers of pixels from 16 to 4096");
  if (long(*width) * *height > kMaxRenderPixels)
    return errorReply("a picture may have at most 4194304 pixels (2048 x 2048)");
  if (!form.FMakePngImage) return failReply("this program cannot draw pictures");
  const TRenderedPicture pic = renderScenePicture(form, area, *width, *height);
  if (pic.png.empty()) return failReply("the picture could not be drawn");
  TJsonReply r;
  const std::string png = base64Encode(pic.png);
  r.reserve(png.size() + 256);
  r.beginObject().field("ok", true).field("area", areaName).field("width", pic.width);
  r.field("height", pic.height).fieldSingle("scale", pic.scale.x);
  r.fieldSingle("offsetX", pic.offset.x).fieldSingle("offsetY", pic.offset.y);
  r.field("mimeType", "image/png").field("png", png).endObject();
  return r.take();
}
