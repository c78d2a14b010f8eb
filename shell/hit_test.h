// What lies where on a main window, as a table over plain values: the window has no system caption or border of its
// own, so it answers the system's question itself.
#pragma once

#include "common/geometry.h"

namespace vantro {

// The codes of WM_NCHITTEST that the window answers.
enum class HitCode {
  kClient = 1,
  kCaption = 2,
  kLeft = 10,
  kRight = 11,
  kTop = 12,
  kTopLeft = 13,
  kTopRight = 14,
  kBottom = 15,
  kBottomLeft = 16,
  kBottomRight = 17,
};

// The point is in client coordinates and may lie outside the client area.
HitCode HitTest(Point point, Size clientArea);

}  // namespace vantro
