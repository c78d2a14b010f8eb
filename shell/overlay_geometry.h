// The overlay's place, as functions over plain values. Screen pixels.
#pragma once

#include "common/geometry.h"

namespace vantro {

// Returns the rectangle of a client area, without its first topOffset pixels. topLeft is the area's top left corner on
// the screen. There is no guard: a minimized window's client area of 0 by 0 results in a negative height.
constexpr Rect OverlayRectFor(Point topLeft, Size clientArea, int topOffset) {
  return RectAt(topLeft.x, topLeft.y + topOffset, {clientArea.width, clientArea.height - topOffset});
}

// In fullscreen the overlay also covers the title bar's strip, even while the bar is shown.
constexpr int OverlayTopOffset(bool isFullscreen, int titleBarHeight) { return isFullscreen ? 0 : titleBarHeight; }

}  // namespace vantro
