// The sample project: a card holder of two pieces with rounded corners, a
// stitch line inside each and a few lines of text, built through the shape
// API. Used for screenshots and the demo until it ships as a project file.
#pragma once

class TShapeList;

// Adds the sample's shapes to the list, on its first layer.
void buildCardHolderSample(TShapeList& list);
