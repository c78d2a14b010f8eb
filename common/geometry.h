// Points, sizes and rectangles in pixels, as plain values. What the system hands over in its own structures becomes one
// of these in common/win32_geometry.h.
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

// Right and bottom lie outside. Nothing forbids a right below left: the size is then negative.
struct Rect {
  int left;
  int top;
  int right;
  int bottom;

  constexpr int Width() const { return right - left; }
  constexpr int Height() const { return bottom - top; }
  bool operator==(const Rect&) const = default;
};

// The rectangle of a size with its top left corner at x, y.
constexpr Rect RectAt(int x, int y, Size size) { return {x, y, x + size.width, y + size.height}; }

}  // namespace vantro
