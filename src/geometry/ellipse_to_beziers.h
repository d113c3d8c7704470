// An ellipse, or an elliptic arc, as a run of "BEZIER" shapes: the form in
// which a true (not round) ellipse lives in the drawing.
#pragma once

#include <memory>
#include <vector>

#include "document/pw_path.h"

class TShapeList;

// The stroke a new shape takes: a palette row and what it stands for.
struct TShapeStyle {
  int FPalletIndex = 0;
  TAlphaColor FColor = claBlack;
  float FThickness = 0.3f;
  TStrokeDash FDash = TStrokeDash::Solid;
};

// The ellipse about `center` whose two half axes end at axisPoint1 and
// axisPoint2, from `startAngle` over `sweep` (both radians; the sweep runs
// from the first axis towards the second). At most a quarter turn per
// curve; a full turn is four. Each curve takes the style and the next
// identifier of `ids`; the caller adds them to the document. A sweep of 0
// gives an empty list.
std::vector<std::unique_ptr<TPW_Path>> ellipseToBeziers(const TPointF& center,
                                                        const TPointF& axisPoint1,
                                                        const TPointF& axisPoint2,
                                                        double startAngle, double sweep,
                                                        const TShapeStyle& style, TShapeList& ids);
