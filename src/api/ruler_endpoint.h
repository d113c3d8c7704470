// POST /ruler: measures the way along the drawing between two points, and
// lists the route network the measurement grew, for a client that wants to
// see how the way was found.
#pragma once

#include <string>

class TfrmPelw;

std::string apiRuler(TfrmPelw& form, const std::string& body);
