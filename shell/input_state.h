// Small questions about input that several message handlers ask. Main thread.
#pragma once

#include <windows.h>

#include <optional>

namespace vantro {

// Where the pointer is now, in the window's client coordinates; nothing if the system does not tell.
inline std::optional<POINT> CursorIn(HWND window) {
  POINT point;
  if (!GetCursorPos(&point)) return std::nullopt;
  ScreenToClient(window, &point);
  return point;
}

// The same, or the client area's corner.
inline POINT PointerIn(HWND window) { return CursorIn(window).value_or(POINT{}); }

// The left or the right button, as of the message being served.
inline bool IsMouseButtonHeld() { return GetKeyState(VK_LBUTTON) < 0 || GetKeyState(VK_RBUTTON) < 0; }

// WM_KEYDOWN, WM_KEYUP, WM_CHAR, WM_SYSKEYDOWN, WM_SYSKEYUP; not the dead character between them.
constexpr bool IsKeyMessage(UINT message) {
  return message >= WM_KEYDOWN && message <= WM_SYSKEYUP && message != WM_DEADCHAR;
}

}  // namespace vantro
