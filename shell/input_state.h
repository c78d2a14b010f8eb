// Input state that several message handlers read. Main thread.
#pragma once

#include <windows.h>

#include <optional>

namespace vantro {

// Returns the pointer's current position in the window's client coordinates, or nothing if the system call fails.
inline std::optional<POINT> CursorIn(HWND window) {
  POINT point;
  if (!GetCursorPos(&point)) return std::nullopt;
  ScreenToClient(window, &point);
  return point;
}

// The same, but returns 0, 0 if the system call fails.
inline POINT PointerIn(HWND window) { return CursorIn(window).value_or(POINT{}); }

// Returns whether the left or the right button is down, as of the message being handled.
inline bool IsMouseButtonHeld() { return GetKeyState(VK_LBUTTON) < 0 || GetKeyState(VK_RBUTTON) < 0; }

// True for WM_KEYDOWN, WM_KEYUP, WM_CHAR, WM_SYSKEYDOWN and WM_SYSKEYUP. False for WM_DEADCHAR, which is between them.
constexpr bool IsKeyMessage(UINT message) {
  return message >= WM_KEYDOWN && message <= WM_SYSKEYUP && message != WM_DEADCHAR;
}

}  // namespace vantro
