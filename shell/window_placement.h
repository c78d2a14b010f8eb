// The place of a new window, as a decision over plain values.
#pragma once

#include "common/geometry.h"

namespace vantro {

enum class PlacementRule { kRight, kLeft, kBelow, kLargeOffset };

struct WindowPlacement {
  PlacementRule rule;
  int x;
  int y;
  // The distance that the rule chose: the gap to the reference (right, left: dx; below: dy), or both steps of the large
  // offset. The steps are also set when the window wraps to the work area's corner.
  int dx;
  int dy;

  bool operator==(const WindowPlacement&) const = default;
};

// Uses the first rule that fits: right of the reference, left of it, below it, or at a large offset from it. reference
// is the outer rectangle of the window that requested the new one, size is the assumed size of the new window, and
// workArea is the work area of the reference's monitor, all in screen pixels. A window larger than the work area is no
// error: the gaps then have their lower bounds.
WindowPlacement PlaceNewWindow(const Rect& reference, Size size, const Rect& workArea);

}  // namespace vantro
