// The shared vocabulary of the drawing: points, rectangles, colours, dashes,
// identifiers and straight path pieces. Model values are 32-bit floats in
// millimetres, x to the right and y downwards; arithmetic is done in doubles
// and rounded back when stored.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

// Two floats are equal when they differ by at most max(|a|, |b|) * 1.25e-6,
// or 6.25e-37 when that product is zero.
bool sameSingle(float a, float b);

struct TPointF {
  float x = 0.0f;
  float y = 0.0f;

  constexpr TPointF() = default;
  constexpr TPointF(float ax, float ay) : x(ax), y(ay) {}
  // Rounds doubles to the stored width; the model keeps singles.
  static TPointF fromDouble(double ax, double ay) {
    return TPointF(static_cast<float>(ax), static_cast<float>(ay));
  }

  TPointF operator+(const TPointF& o) const { return fromDouble(double(x) + o.x, double(y) + o.y); }
  TPointF operator-(const TPointF& o) const { return fromDouble(double(x) - o.x, double(y) - o.y); }
  TPointF operator-() const { return TPointF(-x, -y); }
  TPointF operator*(double s) const { return fromDouble(x * s, y * s); }
  TPointF operator/(double s) const { return fromDouble(x / s, y / s); }
  TPointF& operator+=(const TPointF& o) { return *this = *this + o; }
  TPointF& operator-=(const TPointF& o) { return *this = *this - o; }
  bool operator==(const TPointF& o) const { return sameSingle(x, o.x) && sameSingle(y, o.y); }
  bool operator!=(const TPointF& o) const { return !(*this == o); }
  // Bitwise equality, for caches and change detection.
  bool identical(const TPointF& o) const { return x == o.x && y == o.y; }
};

// Built from two corners and not normalised.
struct TRectF {
  float Left = 0.0f;
  float Top = 0.0f;
  float Right = 0.0f;
  float Bottom = 0.0f;

  constexpr TRectF() = default;
  constexpr TRectF(float l, float t, float r, float b) : Left(l), Top(t), Right(r), Bottom(b) {}
  constexpr TRectF(const TPointF& topLeft, const TPointF& bottomRight)
      : Left(topLeft.x), Top(topLeft.y), Right(bottomRight.x), Bottom(bottomRight.y) {}

  TPointF topLeft() const { return TPointF(Left, Top); }
  TPointF bottomRight() const { return TPointF(Right, Bottom); }
  double width() const { return double(Right) - Left; }
  double height() const { return double(Bottom) - Top; }
  TPointF centerPoint() const {
    return TPointF::fromDouble((double(Left) + Right) / 2.0, (double(Top) + Bottom) / 2.0);
  }
  TRectF normalized() const;
  bool containsPoint(const TPointF& p) const;  // edges included, on the normalised rectangle
  bool operator==(const TRectF& o) const {
    return Left == o.Left && Top == o.Top && Right == o.Right && Bottom == o.Bottom;
  }
};

// The largest coordinate, size or radius, in millimetres, that the program
// takes from outside: a kilometre, far beyond any hide, and still well
// inside what a 32-bit float holds to a tenth of a millimetre.
inline constexpr double kMaxLengthMm = 1000000.0;

// AARRGGBB.
using TAlphaColor = uint32_t;
constexpr TAlphaColor claWhite = 0xFFFFFFFF;
constexpr TAlphaColor claBlack = 0xFF000000;

enum class TStrokeDash { Solid, Dash, Dot, DashDot, DashDotDot, Custom };

// "Solid", "Dash", ... as the enumeration is spelled; parsing falls back to Solid.
const char* strokeDashName(TStrokeDash d);
TStrokeDash strokeDashFromName(const std::string& name, TStrokeDash fallback = TStrokeDash::Solid);

struct TGUID {
  std::array<uint8_t, 16> bytes{};

  static TGUID create();        // a fresh random (version 4) identifier
  static TGUID empty() { return TGUID{}; }
  bool isEmpty() const;
  // "{XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}", upper-case hex.
  std::string toString() const;
  // Accepts the form above, with or without braces; false on anything else.
  static bool tryParse(const std::string& text, TGUID& out);
  bool operator==(const TGUID& o) const { return bytes == o.bytes; }
  bool operator!=(const TGUID& o) const { return bytes != o.bytes; }
};

using TPointFArray = std::vector<TPointF>;

struct TPathInterval {
  TPointF St;
  TPointF Ed;
};

// The line palette row every stitching hole takes.
inline constexpr int kStitchHolePalletIndex = 36;

// Date-time as days since 1899-12-30 in a double, local time.
using TDateTime = double;
TDateTime nowDateTime();
