// Counts the paint messages of the main window and its title bar controls.
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
  int draws = 0;   // WM_DRAWITEM messages to the main window for an owner-drawn control

  bool operator==(const Paints&) const = default;
};
std::ostream& operator<<(std::ostream& out, const Paints& paints);

// Counts under the names "main", "close", "search" and so on. Only one object may exist at a time.
class PaintCounter {
 public:
  explicit PaintCounter(VantroWindow& window);
  ~PaintCounter();
  PaintCounter(const PaintCounter&) = delete;
  PaintCounter& operator=(const PaintCounter&) = delete;

  // The counts of the main window and of each control, by name.
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
