#include "app/global_edit.h"

#include <algorithm>

#include "app/expression_parser.h"
#include "app/number_box.h"

IOverlayEdit* TGlobalEdit::setNumberBox(INumberBox& nb) {
  auto edit = FHost.createEditOver(nb);
  if (!edit) return nullptr;
  edit->setText(nb.text());
  edit->FTag = 0;
  FNumberBox = &nb;
  FEdit = edit.get();
  IOverlayEdit* raw = edit.get();
  FLiving.push_back(std::move(edit));
  // Focus from the queue, so that the click that opened the edit has ended.
  FHost.runLater([this, raw] {
    const bool alive = std::any_of(FLiving.begin(), FLiving.end(),
                                   [raw](const auto& e) { return e.get() == raw; });
    if (alive) FHost.focusAndSelectAll(*raw);
  });
  return raw;
}

bool TGlobalEdit::OnKeyDown(IOverlayEdit& edit, TKey key) {
  if (key == TKey::Enter) {
    edit.releaseFocus();
    return true;
  }
  if (key == TKey::Escape) {
    if (FNumberBox && FEdit == &edit) edit.setText(FNumberBox->text());
    edit.FTag = 1;
    edit.releaseFocus();
    return true;
  }
  return false;
}

void TGlobalEdit::OnMouseLeave(IOverlayEdit& edit) {
  if (edit.FTag != 1) edit.releaseFocus();
}

void TGlobalEdit::OnExit(IOverlayEdit& edit) {
  if (FInOnExit) return;
  FInOnExit = true;
  if (edit.FTag == 0 && FNumberBox && FEdit == &edit) {
    try {
      const TExpressionParser parser('.', 2);
      const double v = parser.ParseExpressionToFloat(edit.text());
      FNumberBox->setValue(v);
    } catch (...) {
      // A bad expression leaves the box as it was, without a message.
    }
  }
  edit.hide();
  if (FEdit == &edit) {
    FEdit = nullptr;
    FNumberBox = nullptr;
  }
  IOverlayEdit* raw = &edit;
  FHost.runLater([this, raw] { release(raw); });
  FInOnExit = false;
}

void TGlobalEdit::release(IOverlayEdit* edit) {
  FLiving.erase(std::remove_if(FLiving.begin(), FLiving.end(),
                               [edit](const auto& e) { return e.get() == edit; }),
                FLiving.end());
}
