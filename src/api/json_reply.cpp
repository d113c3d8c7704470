#include "api/json_reply.h"

#include <cmath>

#include "document/number_text.h"

void appendJsonSingle(std::string& out, float v) {
  if (std::isfinite(v)) appendFloatText(out, static_cast<double>(v), 15, true);
  else out += "null";
}

TJsonReply& TJsonReply::single(float v) {
  appendJsonSingle(FWriter.appendValue(), v);
  return *this;
}

void appendJsonString(std::string& out, std::string_view s) {
  appendJsonStringLiteral(out, s, TJsonEscapes::ApiReply);
}
