// Pointer, key and gesture input as the view receives it from the window.
#pragma once

#include <cstdint>

#include "document/types.h"

// Modifier keys and buttons held, as a bit set.
enum TShiftFlag : uint32_t {
  ssShift = 1,
  ssAlt = 2,
  ssCtrl = 4,
  ssLeft = 8,
  ssRight = 16,
  ssMiddle = 32,
  ssCommand = 64,
};
using TShiftState = uint32_t;

enum class TMouseButton { mbLeft, mbRight, mbMiddle };

// Keys the view itself handles.
enum class TViewKey { Other, Left, Right, Up, Down };

// A pan or zoom gesture event: where it happens, the zoom distance, and
// whether it begins or ends.
struct TGestureEvent {
  TPointF Location;
  double Distance = 0;
  bool Begins = false;
  bool Ends = false;
};
