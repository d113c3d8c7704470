// The seam line and cut endpoints: round corners, offsets (each shape by
// itself, or a chain with its joins), chain smoothing and trim. They read
// the request, hand it to the controller's seam edits and write what was
// made. A refusal changes nothing; a change is one undo step.
#pragma once

#include <string>

class TfrmPelw;

// POST /shapes/chamfer
std::string apiChamfer(TfrmPelw& form, const std::string& body);
// POST /shapes/offset
std::string apiOffset(TfrmPelw& form, const std::string& body);
// POST /shapes/offset/smart
std::string apiSmartOffset(TfrmPelw& form, const std::string& body);
// POST /shapes/smooth_chain (withLegs false) and /shapes/smooth_chain_g2
std::string apiSmoothChain(TfrmPelw& form, const std::string& body, bool withLegs);
// POST /shapes/trim
std::string apiTrim(TfrmPelw& form, const std::string& body);
