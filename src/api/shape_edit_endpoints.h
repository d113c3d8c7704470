// The endpoints that create, change and delete shapes. Each change takes
// the road of every change: crossings brought up to date, one undo
// snapshot at the end, a repaint. Each returns the reply text; refusals
// travel with HTTP status 200, and a required number that is missing or of
// another type raises (500) before anything changed, except where noted.
#pragma once

#include <string>

class TfrmPelw;

std::string apiCreateLine(TfrmPelw& form, const std::string& body);
std::string apiCreateCircle(TfrmPelw& form, const std::string& body);
std::string apiCreateArc(TfrmPelw& form, const std::string& body);
std::string apiCreateBezier(TfrmPelw& form, const std::string& body);

// PUT /shapes/{id}: new geometry for a line, ellipse, arc or Bezier,
// optionally a new palette row. The palette change and the removal of the
// shape's crossings come before the geometry is read, and stay in force
// when the geometry is refused.
std::string apiUpdateShape(TfrmPelw& form, const std::string& path, const std::string& body);

std::string apiDeleteShape(TfrmPelw& form, const std::string& path);
// DELETE /shapes: with {"ids":[...]} those shapes; with anything else,
// including no body or a body that is not JSON, every shape. Layers stay.
std::string apiDeleteShapes(TfrmPelw& form, const std::string& body);

// The end of every API change: the undo snapshot, then the canvas and both
// rulers repainted.
void finishApiChange(TfrmPelw& form);
