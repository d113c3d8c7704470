#include "exchange/print_run.h"

#include <algorithm>

#include "app/frm_pelw.h"
#include "exchange/print_layout.h"
#include "exchange/print_marks.h"
#include "platform/paper_device.h"
#include "surface/view_set_aside.h"

std::string printPages(TfrmPelw& form, const TPrintLayout& layout, IPaperDevice& device, int* sheets) {
  if (sheets) *sheets = 0;
  {
    TViewSetAside aside(form);
    form.FIsPrinting = true;
    form.FIsPrintPreviewing = false;
    const TPointF scale = TPointF::fromDouble(device.dpiX() / 25.4 * layout.FCalibrationRatio.x,
                                              device.dpiY() / 25.4 * layout.FCalibrationRatio.y);
    layout.applySwitches(form.FPaintSwitches, scale.x);
    for (int page = 0; page < layout.pageCount(); ++page) {
      if (!layout.isTarget(page)) continue;
      ICanvas* canvas = device.nextPage();
      if (!canvas) return device.errorText();
      if (sheets) ++*sheets;
      form.FPrintLineFactor = static_cast<float>(layout.FSwitches.FLineFactor);
      form.FScale = scale;
      const TPointF corner = layout.getOffsetRealPt(page);
      form.FOffset = TPointF::fromDouble(-double(corner.x) * scale.x, -double(corner.y) * scale.y);
      form.pboxResize(canvas->width(), canvas->height());
      form.pboxPaint(canvas);
      paintSheetMarks(*canvas, layout, page, form.FScale, form.FOffset);
      form.FPrintLineFactor = 1.0f;
    }
  }
  form.RepaintCanvas();
  if (!device.finish()) return device.errorText();
  return {};
}

void paintPreviewDrawing(TfrmPelw& form, const TPrintLayout& layout, ICanvas& canvas, const TPointF& scale,
                         const TPointF& offset) {
  TViewSetAside aside(form);
  form.FIsPrinting = true;
  form.FIsPrintPreviewing = true;
  // Lines at least as thick as on the screen, however small the pages.
  layout.applySwitches(form.FPaintSwitches, scale.x);
  form.FPaintSwitches.printThicknessFactor = std::max(form.FPaintSwitches.printThicknessFactor, 1.0);
  form.FScale = scale;
  form.FOffset = offset;
  form.pboxResize(canvas.width(), canvas.height());
  form.pboxPaint(&canvas);
}
