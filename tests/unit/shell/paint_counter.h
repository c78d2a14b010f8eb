// Counts what the windows of the chrome are asked to paint.
#pragma once

#include <windows.h>

#include <map>
#include <ostream>
#include <string>

namespace vantro {
class VantroWindow;
}

namespace vantro::test {

struct Paints {
  int paints = 0;  // WM_PAINT
  int draws = 0;   // WM_DRAWITEM, which the main window gets for an owner-drawn control

  bool operator==(const Paints&) const = default;
};
std::ostream& operator<<(std::ostream& out, const Paints& paints);

// Counts while it lives, by the names "main", "close", "search" and so on. One at a time.
class PaintCounter {
 public:
  explicit PaintCounter(VantroWindow& window);
  ~PaintCounter();
  PaintCounter(const PaintCounter&) = delete;
  PaintCounter& operator=(const PaintCounter&) = delete;

  // Of the main window and of each control, by name.
  std::map<std::string, Paints> Counts() const;

 private:
  struct Watched {
    std::string name;
    WNDPROC procedure;
    Paints paints;
  };

  void Watch(HWND window, const std::string& name);
  static LRESULT CALLBACK Count(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

  static PaintCounter* current_;
  std::map<HWND, Watched> watched_;
};

}  // namespace vantro::test
