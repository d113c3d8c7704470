// The sample project: a card holder of two pieces with rounded corners, a
// stitch line inside each with its row of stitching holes, and a few lines
// of text, built through the shape API. Used for screenshots and the demo
// until it ships as a project file.
#pragma once

#include <string>

class TShapeList;
struct TPrickingIron;

// The iron the sample's rows are punched with, from the system table: a
// 3.85 mm diamond iron.
inline constexpr const char* kCardHolderIronBlade = "D";
inline constexpr float kCardHolderIronPitch = 3.85f;

// Adds the sample's shapes to the list, on its first layer. The holes
// borrow `iron`, which must outlive them; without an iron the stitch lines
// are drawn but no holes are punched.
//
// The body's row runs all the way round, 80 holes sewn clockwise from the
// end of the top left corner; the pocket's row is open at the top, where
// the cards go in: 45 holes from its top left down, along the bottom and up
// the right side. Each row closes evenly, the pitch stretched a little from
// the iron's to fit the stitch line. The notes are in Japanese for "ja",
// else in English.
void buildCardHolderSample(TShapeList& list, TPrickingIron* iron, const std::string& langID = "en");
