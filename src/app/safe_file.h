// The atomic file writer lives in platform/safe_file.h, below every folder
// that writes files; this name is kept for code written before it moved.
#pragma once

#include "platform/safe_file.h"
