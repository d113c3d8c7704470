#include "platform/text_layout.h"

namespace {

class TNoTextLayout : public ITextLayout {
 public:
  TTextExtent measure(const std::string&, const std::string&, double) override { return {}; }
  TPathData outline(const std::string&, const std::string&, double) override { return {}; }
};

TNoTextLayout gNoLayout;
ITextLayout* gLayout = &gNoLayout;

}  // namespace

ITextLayout& textLayout() { return *gLayout; }

void setTextLayout(ITextLayout* service) { gLayout = service ? service : &gNoLayout; }
