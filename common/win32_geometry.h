// From the system's structures to plain values. Any thread.
#pragma once

#include <windows.h>

#include "common/geometry.h"

namespace vantro {

inline Point FromWin32(const POINT& point) { return {static_cast<int>(point.x), static_cast<int>(point.y)}; }

inline Rect FromWin32(const RECT& rect) {
  return {static_cast<int>(rect.left), static_cast<int>(rect.top), static_cast<int>(rect.right),
          static_cast<int>(rect.bottom)};
}

// The size of the window's client area; 0 by 0 when the system does not tell.
inline Size ClientSize(HWND window) {
  RECT client{};
  GetClientRect(window, &client);
  const Rect rect = FromWin32(client);
  return {rect.Width(), rect.Height()};
}

// The window's outer rectangle on the screen; all 0 when the system does not tell.
inline Rect OuterRect(HWND window) {
  RECT rect{};
  GetWindowRect(window, &rect);
  return FromWin32(rect);
}

}  // namespace vantro
