// The stitching endpoints: one hole, a row along the drawing between two
// points, a row once round a closed outline. They read the request, hand it
// to the controller's stitch operations and write what was made.
#pragma once

#include <string>

class TfrmPelw;

// POST /shapes/stitch_hole
std::string apiStitchHole(TfrmPelw& form, const std::string& body);
// POST /stitch/along_path
std::string apiStitchAlongPath(TfrmPelw& form, const std::string& body);
// POST /stitch/loop
std::string apiStitchLoop(TfrmPelw& form, const std::string& body);
