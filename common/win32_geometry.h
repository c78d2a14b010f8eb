// Converts the system's structures to plain values. Any thread.
#pragma once

#include <windows.h>

#include "common/geometry.h"

namespace vantro {

inline Point FromWin32(const POINT& point) { return {static_cast<int>(point.x), static_cast<int>(point.y)}; }

inline Rect FromWin32(const RECT& rect) {
  return {static_cast<int>(rect.left), static_cast<int>(rect.top), static_cast<int>(rect.right),
          static_cast<int>(rect.bottom)};
}

// Returns the size of the window's client area, or 0 by 0 if the system call fails.
inline Size ClientSize(HWND window) {
  RECT client{};
  GetClientRect(window, &client);
  const Rect rect = FromWin32(client);
  return {rect.Width(), rect.Height()};
}

// Returns the window's outer rectangle on the screen, or all 0 if the system call fails.
inline Rect OuterRect(HWND window) {
  RECT rect{};
  GetWindowRect(window, &rect);
  return FromWin32(rect);
}

}  // namespace vantro
