// What the window does for the libraries: its repository, catalog and
// backdrop panels follow the controller through these. All optional;
// headless has none of them.
#pragma once

#include <functional>

struct TLibraryHost {
  std::function<void()> openRepository;     // show the parts repository window ("y")
  std::function<void()> repositoryChanged;  // templates or folders changed: rebuild the tree
  std::function<void()> catalogChanged;     // shops, groups or items changed
  std::function<void()> backdropsChanged;   // list, selection or values of backdrops changed
};
