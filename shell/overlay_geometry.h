// Where the overlay stands, over plain numbers.
#pragma once

namespace vantro {

struct OverlayRect {
  int x;  // screen
  int y;
  int width;
  int height;

  bool operator==(const OverlayRect&) const = default;
};

// Over the client area whose top left corner is at x, y on the screen, without its first topOffset pixels. There is no
// guard: a minimized window's client area of 0 by 0 gives a negative height.
constexpr OverlayRect OverlayRectFor(int x, int y, int clientWidth, int clientHeight, int topOffset) {
  return {x, y + topOffset, clientWidth, clientHeight - topOffset};
}

// In fullscreen the overlay covers the title bar's strip too, also while the bar is shown.
constexpr int OverlayTopOffset(bool isFullscreen, int titleBarHeight) { return isFullscreen ? 0 : titleBarHeight; }

}  // namespace vantro
