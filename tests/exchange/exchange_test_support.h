// A drawing for the export tests: a document, factory palette rows, and
// the scene the exports read.
#pragma once

#include <memory>
#include <string>

#include "document/shape_list.h"
#include "exchange/export_settings.h"
#include "geometry/shape_factory.h"
#include "libraries/draw_pallet.h"

struct TDrawing {
  TShapeList list{nullptr, "en"};
  TPalletList pallet;
  TDrawing() { list.clearAll(); }
  TPW_Path* add(std::unique_ptr<TPW_Path> s, int layer = 0) {
    s->updateId(list.getNextID());
    TPW_Path* p = s.get();
    list.add(std::move(s), layer);
    return p;
  }
  TExportScene scene() const { return TExportScene{list, pallet, 0xFFD2691E, true}; }
};

inline size_t countOf(const std::string& text, const std::string& what) {
  size_t n = 0;
  for (size_t p = text.find(what); p != std::string::npos; p = text.find(what, p + 1)) ++n;
  return n;
}
