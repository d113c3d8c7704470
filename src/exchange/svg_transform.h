// The "transform" attribute of SVG: a list of matrix, translate, scale,
// rotate, skewX and skewY, numbers separated by blanks or commas, applied
// right to left as the standard says.
#pragma once

#include <string_view>

#include "document/path_data.h"

// The matrix of the list (identity for an empty text). False when the text
// is not a transform list; `out` is then the identity.
bool parseSvgTransform(std::string_view text, TMatrix& out);
