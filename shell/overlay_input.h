// The overlay's window procedure: input that reaches the overlay instead of the Flutter view.
#pragma once

#include <windows.h>

namespace vantro {

// Catches F11 and Escape and hands the rest on to the view. Serves every overlay of the process, and whichever it
// serves, it works with the newest window. Main thread.
LRESULT CALLBACK OverlayWindowProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);

}  // namespace vantro
