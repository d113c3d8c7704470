// The palette rows in the options file.
#include <cctype>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <string_view>

#include "app/ini_file.h"
#include "libraries/draw_pallet.h"

std::string palletSectionName(int row) { return "LinePallet" + std::to_string(row); }

std::string colorToIniText(TAlphaColor c) {
  char buf[16];
  std::snprintf(buf, sizeof buf, "#%08X", static_cast<unsigned>(c));
  return buf;
}

bool colorFromIniText(const std::string& text, TAlphaColor& out) {
  size_t b = 0, e = text.size();
  while (b < e && std::isspace(static_cast<unsigned char>(text[b]))) ++b;
  while (e > b && std::isspace(static_cast<unsigned char>(text[e - 1]))) --e;
  if (b == e) return false;
  std::string_view s(text.data() + b, e - b);
  int base = 10;
  if (s[0] == '#' || s[0] == '$') {
    s.remove_prefix(1);
    base = 16;
  } else if (s.size() > 2 && s[0] == '0' && (s[1] == 'x' || s[1] == 'X')) {
    s.remove_prefix(2);
    base = 16;
  }
  if (s.empty()) return false;
  if (base == 16) {
    if (s.size() > 8) return false;
    uint32_t v = 0;
    const auto r = std::from_chars(s.data(), s.data() + s.size(), v, 16);
    if (r.ec != std::errc() || r.ptr != s.data() + s.size()) return false;
    out = v;
    return true;
  }
  // Decimal: a colour written as a signed 32-bit integer reads back too.
  long long v = 0;
  const char* first = s.data();
  if (*first == '+') ++first;
  const auto r = std::from_chars(first, s.data() + s.size(), v, 10);
  if (r.ec != std::errc() || r.ptr != s.data() + s.size()) return false;
  if (v < -2147483648LL || v > 4294967295LL) return false;
  out = static_cast<TAlphaColor>(static_cast<uint32_t>(v));
  return true;
}

void readPalletList(const TIniFile& ini, TPalletList& list) {
  for (int i = 0; i < kPalletCount; ++i) {
    const std::string sec = palletSectionName(i);
    TDrawPallet& row = list[i];
    const double t = ini.ReadFloat(sec, "Thickness", row.FThickness);
    if (std::isfinite(t) && t > 0) row.FThickness = static_cast<float>(t);
    TAlphaColor c = 0;
    if (colorFromIniText(ini.ReadString(sec, "Color", ""), c)) row.FColor_BlackMode = c;
    if (colorFromIniText(ini.ReadString(sec, "ColorW", ""), c)) row.FColor_WhiteMode = c;
    row.FIgnoreInPrinting = ini.ReadBool(sec, "NotForPrint", row.FIgnoreInPrinting);
    if (ini.hasKey(sec, "Dash"))
      row.FDash = strokeDashFromName(ini.ReadString(sec, "Dash", "Solid"), TStrokeDash::Solid);
  }
}

void writePalletList(TIniFile& ini, const TPalletList& list) {
  for (int i = 0; i < kPalletCount; ++i) {
    const std::string sec = palletSectionName(i);
    const TDrawPallet& row = list[i];
    ini.WriteFloat(sec, "Thickness", row.FThickness);
    ini.WriteString(sec, "Color", colorToIniText(row.FColor_BlackMode));
    ini.WriteString(sec, "ColorW", colorToIniText(row.FColor_WhiteMode));
    ini.WriteBool(sec, "NotForPrint", row.FIgnoreInPrinting);
    ini.WriteString(sec, "Dash", strokeDashName(row.FDash));
  }
}
