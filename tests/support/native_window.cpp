#include "tests/support/native_window.h"

namespace vantro::test {

ParentWindow::ParentWindow(int width, int height)
    : handle_(CreateWindowExW(0, L"STATIC", L"", WS_POPUP | WS_CLIPCHILDREN, 0, 0, width, height, nullptr, nullptr,
                              GetModuleHandleW(nullptr), nullptr)) {}

void ParentWindow::Destroy() {
  if (IsWindow(handle_)) DestroyWindow(handle_);
}

int ParentWindow::ChildCount() const {
  int count = 0;
  EnumChildWindows(
      handle_,
      [](HWND, LPARAM counter) -> BOOL {
        ++*reinterpret_cast<int*>(counter);
        return TRUE;
      },
      reinterpret_cast<LPARAM>(&count));
  return count;
}

RECT PlaceInParent(HWND child) {
  RECT place{};
  GetWindowRect(child, &place);
  MapWindowPoints(nullptr, GetParent(child), reinterpret_cast<POINT*>(&place), 2);
  return place;
}

}  // namespace vantro::test
