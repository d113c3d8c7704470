// POST /doc/new and POST /viewport/fit.
#pragma once

#include <string>

class TfrmPelw;

std::string apiNewDocument(TfrmPelw& form);
// Fits the view to the drawing and reports scale and offset.
std::string apiFitViewport(TfrmPelw& form);

// The number as the pattern "0.###" writes it: at most three decimals,
// rounded half away from zero, no trailing zeros, no point for a whole
// number, a point as decimal mark; a value that rounds to zero is "0".
std::string formatUpTo3Decimals(double value);
