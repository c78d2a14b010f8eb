// The hit test of a main window, as a table over plain values. The window has no system caption or border, so it
// answers WM_NCHITTEST itself.
#pragma once

#include "common/geometry.h"

namespace vantro {

// The WM_NCHITTEST codes that the window returns.
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

// Returns the code for a point in client coordinates. The point may be outside the client area.
HitCode HitTest(Point point, Size clientArea);

}  // namespace vantro
