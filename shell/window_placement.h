// Where a new window goes, as a decision over plain values.
#pragma once

#include "common/geometry.h"

namespace vantro {

enum class PlacementRule { kRight, kLeft, kBelow, kLargeOffset };

struct WindowPlacement {
  PlacementRule rule;
  int x;
  int y;
  // What the rule moved the window by: the gap to the reference (right, left: dx; below: dy), or for the large offset
  // the two steps, also where the window then wrapped to the work area's corner.
  int dx;
  int dy;

  bool operator==(const WindowPlacement&) const = default;
};

// Takes the first rule that fits: to the right of the reference, to its left, below it, or at a large offset from it.
// reference is the outer rectangle of the window that asked, size what the new window is taken to have, workArea that
// of the reference's monitor, all in pixels of the screen. A window larger than the work area is no error: the gaps
// then take their lower bounds.
WindowPlacement PlaceNewWindow(const Rect& reference, Size size, const Rect& workArea);

}  // namespace vantro
