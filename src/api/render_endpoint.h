// POST /render: a picture of the drawing as PNG, painted offscreen by the
// canvas's own routine. Reads only; the view and the document stay as they
// were.
#pragma once

#include <string>

class TfrmPelw;

// The largest picture side, in pixels, and the smallest; and the most
// pixels in all, which keeps one picture within some tenths of a second on
// the main thread.
inline constexpr int kMaxRenderSide = 4096;
inline constexpr int kMinRenderSide = 16;
inline constexpr long kMaxRenderPixels = 2048L * 2048L;

// Body (all optional): "area" "view" (default: what the canvas shows) or
// "drawing" (every shape); "width" and "height" in pixels (default: the
// canvas's size). Reply {"ok":true,"area":..,"width":..,"height":..,
// "scale":..,"offsetX":..,"offsetY":..,"mimeType":"image/png","png":base64}.
std::string apiRender(TfrmPelw& form, const std::string& body);
