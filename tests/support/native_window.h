// A plain native window for tests, and the positions of windows.
#pragma once

#include <windows.h>

namespace vantro::test {

// A hidden top-level window whose client area has the given size.
class ParentWindow {
 public:
  ParentWindow(int width, int height);
  ~ParentWindow() { Destroy(); }
  ParentWindow(const ParentWindow&) = delete;
  ParentWindow& operator=(const ParentWindow&) = delete;

  HWND get() const { return handle_; }
  void Destroy();
  int ChildCount() const;

 private:
  HWND handle_;
};

// Returns a child's rectangle in client coordinates of its parent.
RECT PlaceInParent(HWND child);

}  // namespace vantro::test
