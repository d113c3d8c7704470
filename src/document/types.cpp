#include "document/types.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <random>

bool sameSingle(float a, float b) {
  const double da = a;
  const double db = b;
  double eps = std::max(std::fabs(da), std::fabs(db)) * 1.25e-6;
  if (eps == 0.0) eps = 6.25e-37;
  return std::fabs(da - db) <= eps;
}

TRectF TRectF::normalized() const {
  return TRectF(std::min(Left, Right), std::min(Top, Bottom), std::max(Left, Right),
                std::max(Top, Bottom));
}

bool TRectF::containsPoint(const TPointF& p) const {
  const TRectF r = normalized();
  return p.x >= r.Left && p.x <= r.Right && p.y >= r.Top && p.y <= r.Bottom;
}

namespace {
const char* const kDashNames[] = {"Solid", "Dash", "Dot", "DashDot", "DashDotDot", "Custom"};
}

const char* strokeDashName(TStrokeDash d) {
  const int i = static_cast<int>(d);
  return (i >= 0 && i < 6) ? kDashNames[i] : kDashNames[0];
}

TStrokeDash strokeDashFromName(const std::string& name, TStrokeDash fallback) {
  for (int i = 0; i < 6; ++i)
    if (name == kDashNames[i]) return static_cast<TStrokeDash>(i);
  return fallback;
}

TGUID TGUID::create() {
  thread_local std::mt19937_64 gen{std::random_device{}() ^
                                   static_cast<uint64_t>(std::chrono::steady_clock::now()
                                                             .time_since_epoch()
                                                             .count())};
  TGUID g;
  for (int i = 0; i < 16; i += 8) {
    const uint64_t v = gen();
    for (int k = 0; k < 8; ++k) g.bytes[i + k] = static_cast<uint8_t>(v >> (8 * k));
  }
  g.bytes[6] = static_cast<uint8_t>((g.bytes[6] & 0x0F) | 0x40);  // version 4
  g.bytes[8] = static_cast<uint8_t>((g.bytes[8] & 0x3F) | 0x80);  // RFC 4122 variant
  return g;
}

bool TGUID::isEmpty() const {
  return std::all_of(bytes.begin(), bytes.end(), [](uint8_t b) { return b == 0; });
}

std::string TGUID::toString() const {
  char buf[40];
  std::snprintf(buf, sizeof buf,
                "{%02X%02X%02X%02X-%02X%02X-%02X%02X-%02X%02X-%02X%02X%02X%02X%02X%02X}",
                bytes[0], bytes[1], bytes[2], bytes[3], bytes[4], bytes[5], bytes[6], bytes[7],
                bytes[8], bytes[9], bytes[10], bytes[11], bytes[12], bytes[13], bytes[14],
                bytes[15]);
  return buf;
}

bool TGUID::tryParse(const std::string& text, TGUID& out) {
  std::string s = text;
  if (s.size() == 38 && s.front() == '{' && s.back() == '}') s = s.substr(1, 36);
  if (s.size() != 36) return false;
  TGUID g;
  int nibble = 0;
  for (size_t i = 0; i < s.size(); ++i) {
    const char c = s[i];
    if (i == 8 || i == 13 || i == 18 || i == 23) {
      if (c != '-') return false;
      continue;
    }
    int v;
    if (c >= '0' && c <= '9') v = c - '0';
    else if (c >= 'a' && c <= 'f') v = c - 'a' + 10;
    else if (c >= 'A' && c <= 'F') v = c - 'A' + 10;
    else return false;
    g.bytes[nibble / 2] = static_cast<uint8_t>((g.bytes[nibble / 2] << 4) | v);
    ++nibble;
  }
  out = g;
  return true;
}

TDateTime nowDateTime() {
  using namespace std::chrono;
  const auto now = system_clock::now();
  const std::time_t t = system_clock::to_time_t(now);
  std::tm local{};
  localtime_r(&t, &local);
  const double msInSecond =
      double(duration_cast<milliseconds>(now.time_since_epoch()).count() % 1000) / 1000.0;
  // Days from 1899-12-30 to the local calendar date, then the time of day.
  const int y = local.tm_year + 1900, m = local.tm_mon + 1, d = local.tm_mday;
  // Days since civil 1970-01-01 (Howard Hinnant's algorithm).
  const int yy = y - (m <= 2);
  const int era = (yy >= 0 ? yy : yy - 399) / 400;
  const unsigned yoe = static_cast<unsigned>(yy - era * 400);
  const unsigned doy = (153 * (m + (m > 2 ? -3 : 9)) + 2) / 5 + d - 1;
  const unsigned doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
  const long days1970 = era * 146097L + static_cast<long>(doe) - 719468L;
  const double secondsOfDay = local.tm_hour * 3600.0 + local.tm_min * 60.0 + local.tm_sec + msInSecond;
  return double(days1970 + 25569) + secondsOfDay / 86400.0;
}
