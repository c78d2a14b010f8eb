// Lines in the log about the overlay's place and about who would catch its input. They decide nothing, and ask the
// system nothing while the log is off. Main thread.
#pragma once

#include <windows.h>

#include "common/geometry.h"

namespace vantro {

// The windows that a point on the screen may turn out to belong to.
struct StackedWindows {
  HWND mainWindow;
  HWND overlay;
  HWND flutterChild;
};

void LogOverlayCreation(HWND mainWindow, const Rect& overlay);
// The overlay after it was made to capture input, and the windows under the cursor and at its centre. exStyleBefore is
// its extended style from before.
void LogOverlayInput(const StackedWindows& windows, LONG_PTR exStyleBefore);

}  // namespace vantro
