// The drawing on paper through the same paint as the screen: the sheets of
// a print or a PDF, and the drawing as the preview shows it.
#pragma once

#include <string>

#include "document/types.h"

class TfrmPelw;
class TPrintLayout;
class IPaperDevice;
class ICanvas;

// Paints each page to print on the next sheet of the device, in order:
// the drawing through pboxPaint at the device's pixels and the
// calibration, then the margins, tile marks and scales. The view, the
// paper flags and the line factor are put back afterwards, also when the
// device fails. Returns "" or why it failed; `sheets` counts the sheets used.
std::string printPages(TfrmPelw& form, const TPrintLayout& layout, IPaperDevice& device, int* sheets = nullptr);

// The drawing in paper colours on white, at `scale` and `offset` on the
// canvas, as the preview shows it under its pages.
void paintPreviewDrawing(TfrmPelw& form, const TPrintLayout& layout, ICanvas& canvas, const TPointF& scale,
                         const TPointF& offset);
