#include "tests/unit/shell/paint_counter.h"

#include "tests/unit/shell/inside.h"

namespace vantro::test {

PaintCounter* PaintCounter::current_ = nullptr;

std::ostream& operator<<(std::ostream& out, const Paints& paints) {
  return out << "{" << paints.paints << " paints, " << paints.draws << " draws}";
}

PaintCounter::PaintCounter(VantroWindow& window) {
  current_ = this;
  const WindowInside inside = Inside(window);
  Watch(window.hwnd_, "main");
  Watch(inside.appIconStatic_, "icon");
  Watch(inside.titleStatic_, "title");
  Watch(inside.fileButton_, "file");
  Watch(inside.helpButton_, "help");
  Watch(inside.searchBox_, "search");
  Watch(inside.closeButton_, "close");
  Watch(inside.maximizeButton_, "maximize");
  Watch(inside.minimizeButton_, "minimize");
  Watch(inside.speakerIcon_, "speaker");
  Watch(inside.volumeControl_, "volume");
}

PaintCounter::~PaintCounter() {
  for (const auto& [window, watched] : watched_) {
    SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(watched.procedure));
  }
  current_ = nullptr;
}

std::map<std::string, Paints> PaintCounter::Counts() const {
  std::map<std::string, Paints> counts;
  for (const auto& [window, watched] : watched_) counts[watched.name] = watched.paints;
  return counts;
}

void PaintCounter::Watch(HWND window, const std::string& name) {
  const LONG_PTR before = SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Count));
  watched_[window] = {name, reinterpret_cast<WNDPROC>(before), {}};
}

LRESULT CALLBACK PaintCounter::Count(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  Watched& watched = current_->watched_.at(window);
  if (message == WM_PAINT) ++watched.paints.paints;
  if (message == WM_DRAWITEM) {
    const HWND item = reinterpret_cast<const DRAWITEMSTRUCT*>(lParam)->hwndItem;
    ++current_->watched_.at(item).paints.draws;
  }
  return CallWindowProcW(watched.procedure, window, message, wParam, lParam);
}

}  // namespace vantro::test
