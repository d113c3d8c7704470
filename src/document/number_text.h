// The one writer of numbers as text, shared by path data, project files and
// the local API, so that every place writes a value the same way.
#pragma once

#include <string>
#include <string_view>

// General format with up to `precision` significant digits, a point as the
// decimal mark and no trailing zeros: 10 -> "10", 0.1f widened -> "0.100000001490116".
// Scientific form ("1E-6", "1.5E20") is used when the value is below 1e-5 in
// magnitude or has more than `precision` digits before the point.
// Locale independent.
std::string floatToText(double value, int precision = 15);

// As floatToText, with ".0" appended when the text shows neither a point nor
// an exponent: 10 -> "10.0".
std::string floatToTextWithPoint(double value, int precision = 15);

// Appends the text of floatToText (or, with withPoint, floatToTextWithPoint)
// to out without building a string of its own: for writers of many numbers.
void appendFloatText(std::string& out, double value, int precision = 15, bool withPoint = false);

// Fixed decimals, as printf's "%.3f" writes them in the C locale, except
// that a value rounding to zero has no minus sign: -0.0001 -> "0.000".
// For file formats whose numbers have a fixed number of decimals.
void appendFixedText(std::string& out, double value, int decimals);
std::string fixedText(double value, int decimals);

// Parses a decimal number with a point as decimal mark, locale independent.
// Leading and trailing blanks are allowed. False when the text is not a number.
bool textToFloat(std::string_view text, double& out);
