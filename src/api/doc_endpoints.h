// POST /doc/new and POST /viewport/fit.
#pragma once

#include <string>

class TfrmPelw;

// A new, empty project without asking about saving: shapes, crossings and
// memo go, every palette row shows and the first is current, layer 0 is
// active, one undo snapshot is taken, the document counts as unchanged and
// the view is reset. The one place the new-project steps are gathered, so
// that it can hand over to the New command as a whole.
void startNewDocument(TfrmPelw& form);

std::string apiNewDocument(TfrmPelw& form);
// Fits the view to the drawing and reports scale and offset.
std::string apiFitViewport(TfrmPelw& form);

// The number as the pattern "0.###" writes it: at most three decimals,
// rounded half away from zero, no trailing zeros, no point for a whole
// number, a point as decimal mark; a value that rounds to zero is "0".
std::string formatUpTo3Decimals(double value);
