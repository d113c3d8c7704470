// The outline merger: shapes registered as a template become one "OTHER"
// shape whose path is a run of cubic pieces, each "M x,y C x,y x,y x,y "
// with four decimals. Lines become straight cubics, arcs are cut into
// pieces of at most a quarter turn first, curves go as they are.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "document/pw_path.h"

// The path text of the shapes, in order.
std::string templatePathText(const std::vector<const TPW_Path*>& shapes);
// A new "OTHER" shape of that path, with the style of the first shape,
// named `name`, with a fresh GUID; null when the shapes give no path.
std::unique_ptr<TPW_Path> mergeIntoTemplate(const std::vector<const TPW_Path*>& shapes, const std::string& name);
