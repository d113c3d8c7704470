// Shapes joined end to end: putting a route's or an outline's shapes into
// one chain (turning the ones that run the other way), and finding the
// closed outline a shape belongs to.
#pragma once

#include <memory>
#include <vector>

#include "document/pw_path.h"

class TShapeList;

// Ends this close on both axes join.
inline constexpr double kChainJoinGap = 0.5;

// Orders the shapes into one chain, each member starting where the one
// before it ends (within 0.5 on both axes). Every shape is tried as the
// head, as it stands and turned round; the longest run wins. A member that
// runs the other way is replaced by a turned copy, kept in `temporaries`.
// True only when all shapes are in the chain; otherwise the chain is empty
// and no temporaries are kept.
bool orderIntoChain(const std::vector<TPW_Path*>& shapes, std::vector<TPW_Path*>& chain,
                    std::vector<std::unique_ptr<TPW_Path>>& temporaries);

// A turned copy of a line, curve or arc; null for other kinds.
std::unique_ptr<TPW_Path> reversedCopy(const TPW_Path& shape);

// The closed outline through `shape`: from its end, shape after shape whose
// start or end is the same point (to the hundredth), until the outline comes
// back to its start. Lines, curves and arcs of visible layers take part.
// Empty when the outline does not close.
std::vector<TPW_Path*> findClosedLoop(TPW_Path* shape, const TShapeList& list);
