// The side profile of a plate with chamfered or rounded edges: a stack of
// levels from the underside to the top, each the plate's region inset by
// the bevel at that height.
#pragma once

#include <string>
#include <vector>

#include "exchange/stl_types.h"

// The levels of the profile, Z rising; on failure returns false with the
// reason in `message` and leaves `items` unspecified.
bool BuildBevelStack(const TPolyRegion& region, const TExtrudeOptions& options, std::vector<TBevelStackItem>& items,
                     std::string& message);

// "Bevel total (...) >= Height (...) — falling back to normal extrude." when
// the two bevels of a plate with edges leave no straight wall, else "".
std::string bevelTotalWarning(const TExtrudeOptions& options);
