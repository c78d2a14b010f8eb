// Log lines about the overlay's place and about the windows that would receive its input. They have no other effect,
// and make no system call while the log is off. Main thread.
#pragma once

#include <windows.h>

#include "common/geometry.h"

namespace vantro {

// The host's windows that a point on the screen may belong to.
struct StackedWindows {
  HWND mainWindow;
  HWND overlay;
  HWND flutterChild;
};

void LogOverlayCreation(HWND mainWindow, const Rect& overlay);
// Logs the overlay after it was switched to capturing input, and the windows at the cursor and at the overlay's centre.
// exStyleBefore is the overlay's extended style before the switch.
void LogOverlayInput(const StackedWindows& windows, LONG_PTR exStyleBefore);

}  // namespace vantro
