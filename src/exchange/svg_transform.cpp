#include "exchange/svg_transform.h"

#include <cctype>
#include <cmath>
#include <numbers>
#include <string>
#include <vector>

namespace {

class TTransformReader {
 public:
  explicit TTransformReader(std::string_view s) : s(s) {}

  void skipBlanks() {
    while (pos < s.size() && std::isspace(static_cast<unsigned char>(s[pos]))) ++pos;
  }
  void skipSeparators() {
    skipBlanks();
    if (pos < s.size() && s[pos] == ',') ++pos;
    skipBlanks();
  }
  bool atEnd() {
    skipBlanks();
    return pos >= s.size();
  }
  bool name(std::string& out) {
    skipSeparators();
    const size_t b = pos;
    while (pos < s.size() && std::isalpha(static_cast<unsigned char>(s[pos]))) ++pos;
    out.assign(s.substr(b, pos - b));
    return !out.empty();
  }
  bool expect(char c) {
    skipBlanks();
    if (pos >= s.size() || s[pos] != c) return false;
    ++pos;
    return true;
  }
  // The numbers between the parentheses.
  bool arguments(std::vector<double>& args) {
    if (!expect('(')) return false;
    for (bool first = true;; first = false) {
      skipBlanks();
      if (pos < s.size() && s[pos] == ')') {
        ++pos;
        return true;
      }
      if (!first) {
        // Numbers are parted by blanks or one comma; a comma wants a number after it.
        if (pos < s.size() && s[pos] == ',') {
          ++pos;
          skipBlanks();
          if (pos >= s.size() || s[pos] == ')') return false;
        }
      }
      if (!first && args.size() > 6) return false;
      double v = 0;
      if (!number(v)) return false;
      args.push_back(v);
    }
  }

 private:
  std::string_view s;
  size_t pos = 0;

  bool number(double& v) { return readSvgNumber(s, pos, v) && std::isfinite(v); }
};

double radians(double deg) { return deg * std::numbers::pi / 180.0; }

// SVG's matrix(a b c d e f): x' = a x + c y + e, y' = b x + d y + f.
TMatrix svgMatrix(double a, double b, double c, double d, double e, double f) {
  TMatrix m;
  m.m11 = a, m.m12 = b, m.m21 = c, m.m22 = d, m.m31 = e, m.m32 = f;
  return m;
}

bool oneTransform(const std::string& name, const std::vector<double>& a, TMatrix& m) {
  const size_t n = a.size();
  if (name == "matrix" && n == 6) m = svgMatrix(a[0], a[1], a[2], a[3], a[4], a[5]);
  else if (name == "translate" && (n == 1 || n == 2)) m = TMatrix::translation(a[0], n == 2 ? a[1] : 0);
  else if (name == "scale" && (n == 1 || n == 2)) m = TMatrix::scaling(a[0], n == 2 ? a[1] : a[0]);
  else if (name == "rotate" && (n == 1 || n == 3)) {
    const double r = radians(a[0]);
    m = svgMatrix(std::cos(r), std::sin(r), -std::sin(r), std::cos(r), 0, 0);
    if (n == 3) m = TMatrix::translation(-a[1], -a[2]) * m * TMatrix::translation(a[1], a[2]);
  } else if (name == "skewX" && n == 1) m = svgMatrix(1, 0, std::tan(radians(a[0])), 1, 0, 0);
  else if (name == "skewY" && n == 1) m = svgMatrix(1, std::tan(radians(a[0])), 0, 1, 0, 0);
  else return false;
  return true;
}

}  // namespace

bool parseSvgTransform(std::string_view text, TMatrix& out) {
  out = TMatrix::identity();
  TTransformReader r(text);
  TMatrix total;
  while (!r.atEnd()) {
    std::string name;
    std::vector<double> args;
    TMatrix m;
    if (!r.name(name) || !r.arguments(args) || !oneTransform(name, args, m)) return false;
    // "A B" applies B first: the later transform comes first in the product.
    total = m * total;
  }
  for (double v : {total.m11, total.m12, total.m21, total.m22, total.m31, total.m32})
    if (!std::isfinite(v)) return false;
  out = total;
  return true;
}
