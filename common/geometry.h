// Points, sizes and rectangles in pixels, as plain values. common/win32_geometry.h makes them from the system's
// structures.
#pragma once

namespace vantro {

struct Point {
  int x;
  int y;

  bool operator==(const Point&) const = default;
};

struct Size {
  int width;
  int height;

  bool operator==(const Size&) const = default;
};

// Right and bottom are exclusive. Right may be less than left, or bottom less than top; the size is then negative.
struct Rect {
  int left;
  int top;
  int right;
  int bottom;

  constexpr int Width() const { return right - left; }
  constexpr int Height() const { return bottom - top; }
  bool operator==(const Rect&) const = default;
};

// Returns the rectangle of this size whose top left corner is at x, y.
constexpr Rect RectAt(int x, int y, Size size) { return {x, y, x + size.width, y + size.height}; }

}  // namespace vantro
