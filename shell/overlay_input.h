// The overlay's window procedure, for input that reaches the overlay instead of the Flutter view.
#pragma once

#include <windows.h>

namespace vantro {

// Handles F11 and Escape and forwards other input to the view. All overlays of the process use it, and it always acts
// on the newest window. Main thread.
LRESULT CALLBACK OverlayWindowProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);

}  // namespace vantro
