// Where a new window goes, as a decision over plain values.
#pragma once

namespace vantro {

// Half-open screen rectangle in pixels, as Win32 has it.
struct ScreenRect {
  int left;
  int top;
  int right;
  int bottom;
};

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
// reference is the outer rectangle of the window that asked, width and height the size that the new window is taken to
// have, workArea that of the reference's monitor. A window larger than the work area is no error: the gaps then take
// their lower bounds.
WindowPlacement PlaceNewWindow(const ScreenRect& reference, int width, int height, const ScreenRect& workArea);

}  // namespace vantro
