#include "api/doc_endpoints.h"

#include <charconv>
#include <cmath>

#include "api/api_reply.h"
#include "app/frm_pelw.h"

std::string formatUpTo3Decimals(double value) {
  if (!std::isfinite(value)) return "0";
  // Round the shortest decimal text of the value, not its binary form, so
  // that 2.0005 reads 2.001 as a person would round it.
  char buf[64];
  const auto res = std::to_chars(buf, buf + sizeof buf, std::fabs(value), std::chars_format::fixed);
  std::string digits(buf, res.ptr);
  const size_t point = digits.find('.');
  std::string whole = point == std::string::npos ? digits : digits.substr(0, point);
  std::string frac = point == std::string::npos ? std::string() : digits.substr(point + 1);
  const bool roundUp = frac.size() > 3 && frac[3] >= '5';
  if (frac.size() > 3) frac.resize(3);
  if (roundUp) {
    // Carry through the kept decimals and on into the whole part.
    std::string all = whole + frac;
    int i = static_cast<int>(all.size()) - 1;
    while (i >= 0 && all[static_cast<size_t>(i)] == '9') all[static_cast<size_t>(i--)] = '0';
    if (i < 0) all.insert(all.begin(), '1');
    else ++all[static_cast<size_t>(i)];
    whole = all.substr(0, all.size() - frac.size());
    frac = all.substr(all.size() - frac.size());
  }
  while (!frac.empty() && frac.back() == '0') frac.pop_back();
  std::string out = whole;
  if (!frac.empty()) out += "." + frac;
  if (value < 0 && out != "0") out.insert(out.begin(), '-');
  return out;
}

std::string apiNewDocument(TfrmPelw& form) {
  form.newProjectWithoutQuestion();
  return okReply();
}

std::string apiFitViewport(TfrmPelw& form) {
  form.actResetView();
  TJsonReply r;
  r.beginObject()
      .field("ok", true)
      .key("scale")
      .numberText(formatUpTo3Decimals(form.FScale.x))
      .key("offsetX")
      .numberText(formatUpTo3Decimals(form.FOffset.x))
      .key("offsetY")
      .numberText(formatUpTo3Decimals(form.FOffset.y))
      .endObject();
  return r.take();
}
