// Where the overlay stands, over plain values. Pixels of the screen.
#pragma once

#include "common/geometry.h"

namespace vantro {

// Over the client area whose top left corner lies at this point of the screen, without its first topOffset pixels.
// There is no guard: a minimized window's client area of 0 by 0 gives a negative height.
constexpr Rect OverlayRectFor(Point topLeft, Size clientArea, int topOffset) {
  return RectAt(topLeft.x, topLeft.y + topOffset, {clientArea.width, clientArea.height - topOffset});
}

// In fullscreen the overlay covers the title bar's strip too, also while the bar is shown.
constexpr int OverlayTopOffset(bool isFullscreen, int titleBarHeight) { return isFullscreen ? 0 : titleBarHeight; }

}  // namespace vantro
