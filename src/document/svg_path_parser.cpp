// SVG path syntax, read into path data: absolute and relative commands,
// implicit repeats, H V S Q T A as SVG defines them. Quadratic curves and
// elliptical arcs become cubics, since path data holds only cubics.
#include <cctype>
#include <charconv>
#include <cmath>
#include <numbers>

#include "document/path_data.h"

namespace {

class TSvgPathReader {
 public:
  explicit TSvgPathReader(std::string_view text) : s(text) {}

  void skipSeparators() {
    while (pos < s.size() && (std::isspace(static_cast<unsigned char>(s[pos])) || s[pos] == ','))
      ++pos;
  }
  void skipBlanks() {
    while (pos < s.size() && std::isspace(static_cast<unsigned char>(s[pos]))) ++pos;
  }
  bool atEnd() {
    skipSeparators();
    return pos >= s.size();
  }
  // True when a number (not a command letter) comes next.
  bool numberFollows() {
    skipSeparators();
    if (pos >= s.size()) return false;
    const char c = s[pos];
    return std::isdigit(static_cast<unsigned char>(c)) || c == '-' || c == '+' || c == '.';
  }
  bool readCommand(char& c) {
    skipSeparators();
    if (pos >= s.size() || !std::isalpha(static_cast<unsigned char>(s[pos]))) return false;
    c = s[pos++];
    return true;
  }
  bool readNumber(double& v) {
    skipSeparators();
    return readSvgNumber(s, pos, v);
  }
  // An arc flag is a single 0 or 1, with or without separators around it.
  bool readFlag(bool& f) {
    skipSeparators();
    if (pos >= s.size() || (s[pos] != '0' && s[pos] != '1')) return false;
    f = s[pos++] == '1';
    return true;
  }
  bool readPoint(double& x, double& y) { return readNumber(x) && readNumber(y); }

 private:
  std::string_view s;
  size_t pos = 0;
};

// Endpoint arc to cubics, following the conversion in the SVG implementation
// notes: centre parameterisation, radii scaled up when too small, pieces of
// at most a quarter turn.
void appendSvgArc(TPathData& path, double x1, double y1, double rx, double ry, double phiDeg,
                  bool largeArc, bool sweep, double x2, double y2) {
  if (x1 == x2 && y1 == y2) return;
  rx = std::fabs(rx);
  ry = std::fabs(ry);
  if (rx == 0.0 || ry == 0.0) {
    path.LineTo(TPointF::fromDouble(x2, y2));
    return;
  }
  const double pi = std::numbers::pi;
  const double phi = std::fmod(phiDeg, 360.0) * pi / 180.0;
  const double cphi = std::cos(phi), sphi = std::sin(phi);
  const double dx = (x1 - x2) / 2.0, dy = (y1 - y2) / 2.0;
  const double x1p = cphi * dx + sphi * dy;
  const double y1p = -sphi * dx + cphi * dy;
  const double lambda = (x1p * x1p) / (rx * rx) + (y1p * y1p) / (ry * ry);
  if (lambda > 1.0) {
    const double r = std::sqrt(lambda);
    rx *= r;
    ry *= r;
  }
  const double num = rx * rx * ry * ry - rx * rx * y1p * y1p - ry * ry * x1p * x1p;
  const double den = rx * rx * y1p * y1p + ry * ry * x1p * x1p;
  double coef = den == 0.0 ? 0.0 : std::sqrt(std::max(0.0, num / den));
  if (largeArc == sweep) coef = -coef;
  const double cxp = coef * (rx * y1p / ry);
  const double cyp = coef * (-ry * x1p / rx);
  const double cx = cphi * cxp - sphi * cyp + (x1 + x2) / 2.0;
  const double cy = sphi * cxp + cphi * cyp + (y1 + y2) / 2.0;

  auto angle = [](double ux, double uy, double vx, double vy) {
    const double a = std::atan2(ux * vy - uy * vx, ux * vx + uy * vy);
    return a;
  };
  const double theta1 = angle(1.0, 0.0, (x1p - cxp) / rx, (y1p - cyp) / ry);
  double dtheta = angle((x1p - cxp) / rx, (y1p - cyp) / ry, (-x1p - cxp) / rx, (-y1p - cyp) / ry);
  if (!sweep && dtheta > 0) dtheta -= 2.0 * pi;
  else if (sweep && dtheta < 0) dtheta += 2.0 * pi;

  const int pieces = std::max(1, static_cast<int>(std::ceil(std::fabs(dtheta) / (pi / 2.0) - 1e-9)));
  const double step = dtheta / pieces;
  const double k = 4.0 / 3.0 * std::tan(step / 4.0);
  auto pointAt = [&](double t, double& px, double& py) {
    const double ex = rx * std::cos(t), ey = ry * std::sin(t);
    px = cx + cphi * ex - sphi * ey;
    py = cy + sphi * ex + cphi * ey;
  };
  auto derivAt = [&](double t, double& px, double& py) {
    const double ex = -rx * std::sin(t), ey = ry * std::cos(t);
    px = cphi * ex - sphi * ey;
    py = sphi * ex + cphi * ey;
  };
  double t = theta1;
  for (int i = 0; i < pieces; ++i) {
    const double t2 = t + step;
    double ax, ay, bx, by, dax, day, dbx, dby;
    pointAt(t, ax, ay);
    pointAt(t2, bx, by);
    derivAt(t, dax, day);
    derivAt(t2, dbx, dby);
    if (i == pieces - 1) {  // land exactly on the given end point
      bx = x2;
      by = y2;
    }
    path.CurveTo(TPointF::fromDouble(ax + k * dax, ay + k * day),
                 TPointF::fromDouble(bx - k * dbx, by - k * dby), TPointF::fromDouble(bx, by));
    t = t2;
  }
}

}  // namespace

bool readSvgNumber(std::string_view s, size_t& pos, double& v) {
  const size_t start = pos;
  size_t p = pos;
  if (p < s.size() && (s[p] == '+' || s[p] == '-')) ++p;
  bool digits = false;
  while (p < s.size() && std::isdigit(static_cast<unsigned char>(s[p]))) ++p, digits = true;
  if (p < s.size() && s[p] == '.') {
    ++p;
    while (p < s.size() && std::isdigit(static_cast<unsigned char>(s[p]))) ++p, digits = true;
  }
  if (!digits) return false;
  if (p < s.size() && (s[p] == 'e' || s[p] == 'E')) {
    size_t e = p + 1;
    if (e < s.size() && (s[e] == '+' || s[e] == '-')) ++e;
    if (e < s.size() && std::isdigit(static_cast<unsigned char>(s[e]))) {
      while (e < s.size() && std::isdigit(static_cast<unsigned char>(s[e]))) ++e;
      p = e;
    }
  }
  const char* first = s.data() + start;
  if (*first == '+') ++first;
  const auto res = std::from_chars(first, s.data() + p, v);
  if (res.ec != std::errc()) return false;
  pos = p;
  return true;
}

bool TPathData::setData(std::string_view text) {
  Clear();
  TSvgPathReader r(text);
  double cx = 0, cy = 0;          // current point
  double sx = 0, sy = 0;          // start of the current figure
  double lastCtrlX = 0, lastCtrlY = 0;
  char lastCmd = 0;               // upper-case letter of the previous segment
  char cmd = 0;
  bool haveCmd = false;

  while (!r.atEnd()) {
    char c;
    if (r.readCommand(c)) {
      cmd = c;
      haveCmd = true;
    } else if (!haveCmd || !r.numberFollows()) {
      return false;  // stray text: keep what was read
    } else if (cmd == 'M') {
      cmd = 'L';  // pairs after a move are lines
    } else if (cmd == 'm') {
      cmd = 'l';
    } else if (cmd == 'Z' || cmd == 'z') {
      return false;
    }
    const bool rel = std::islower(static_cast<unsigned char>(cmd)) != 0;
    const char up = static_cast<char>(std::toupper(static_cast<unsigned char>(cmd)));
    const double ox = rel ? cx : 0.0, oy = rel ? cy : 0.0;
    double x, y, x1, y1, x2, y2;
    switch (up) {
      case 'M':
        if (!r.readPoint(x, y)) return false;
        cx = ox + x;
        cy = oy + y;
        sx = cx;
        sy = cy;
        MoveTo(TPointF::fromDouble(cx, cy));
        break;
      case 'L':
        if (!r.readPoint(x, y)) return false;
        cx = ox + x;
        cy = oy + y;
        LineTo(TPointF::fromDouble(cx, cy));
        break;
      case 'H':
        if (!r.readNumber(x)) return false;
        cx = ox + x;
        LineTo(TPointF::fromDouble(cx, cy));
        break;
      case 'V':
        if (!r.readNumber(y)) return false;
        cy = (rel ? cy : 0.0) + y;
        LineTo(TPointF::fromDouble(cx, cy));
        break;
      case 'C':
        if (!r.readPoint(x1, y1) || !r.readPoint(x2, y2) || !r.readPoint(x, y)) return false;
        x1 += ox, y1 += oy, x2 += ox, y2 += oy, x += ox, y += oy;
        CurveTo(TPointF::fromDouble(x1, y1), TPointF::fromDouble(x2, y2), TPointF::fromDouble(x, y));
        lastCtrlX = x2, lastCtrlY = y2;
        cx = x, cy = y;
        break;
      case 'S':
        if (!r.readPoint(x2, y2) || !r.readPoint(x, y)) return false;
        x2 += ox, y2 += oy, x += ox, y += oy;
        if (lastCmd == 'C' || lastCmd == 'S') x1 = 2 * cx - lastCtrlX, y1 = 2 * cy - lastCtrlY;
        else x1 = cx, y1 = cy;
        CurveTo(TPointF::fromDouble(x1, y1), TPointF::fromDouble(x2, y2), TPointF::fromDouble(x, y));
        lastCtrlX = x2, lastCtrlY = y2;
        cx = x, cy = y;
        break;
      case 'Q':
      case 'T': {
        double qx, qy;
        if (up == 'Q') {
          if (!r.readPoint(qx, qy) || !r.readPoint(x, y)) return false;
          qx += ox, qy += oy;
        } else {
          if (!r.readPoint(x, y)) return false;
          if (lastCmd == 'Q' || lastCmd == 'T') qx = 2 * cx - lastCtrlX, qy = 2 * cy - lastCtrlY;
          else qx = cx, qy = cy;
        }
        x += ox, y += oy;
        CurveTo(TPointF::fromDouble(cx + 2.0 / 3.0 * (qx - cx), cy + 2.0 / 3.0 * (qy - cy)),
                TPointF::fromDouble(x + 2.0 / 3.0 * (qx - x), y + 2.0 / 3.0 * (qy - y)),
                TPointF::fromDouble(x, y));
        lastCtrlX = qx, lastCtrlY = qy;
        cx = x, cy = y;
        break;
      }
      case 'A': {
        double rx, ry, rot;
        bool large, sweep;
        if (!r.readNumber(rx) || !r.readNumber(ry) || !r.readNumber(rot) || !r.readFlag(large) ||
            !r.readFlag(sweep) || !r.readPoint(x, y))
          return false;
        x += ox, y += oy;
        if (isEmpty()) MoveTo(TPointF::fromDouble(cx, cy));
        appendSvgArc(*this, cx, cy, rx, ry, rot, large, sweep, x, y);
        cx = x, cy = y;
        break;
      }
      case 'Z':
        ClosePath();
        cx = sx, cy = sy;
        break;
      default:
        return false;  // unknown command letter
    }
    lastCmd = up;
  }
  return true;
}
