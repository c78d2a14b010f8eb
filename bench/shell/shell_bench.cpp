// How long the window's chrome takes, and whether it holds on to handles. Prints one line a figure.
#include <windows.h>

#include <chrono>
#include <cstdio>

#include "shell/vantro_window.h"

namespace {

using vantro::VantroWindow;

// A menu's modal loop runs timers: this one closes the menu as soon as it stands.
void CALLBACK CloseMenu(HWND, UINT, UINT_PTR, DWORD) {
  if (FindWindowW(L"#32768", nullptr)) EndMenu();
}

template <typename Action>
void Measure(const char* name, int rounds, Action action) {
  const auto began = std::chrono::steady_clock::now();
  for (int i = 0; i < rounds; ++i) action();
  const std::chrono::duration<double, std::micro> took = std::chrono::steady_clock::now() - began;
  std::printf("%-44s %7d rounds %10.1f us a round\n", name, rounds, took.count() / rounds);
  std::fflush(stdout);
}

struct Resources {
  DWORD handles = 0;
  DWORD gdiObjects = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS);
  DWORD userObjects = GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS);
  Resources() { GetProcessHandleCount(GetCurrentProcess(), &handles); }
};

template <typename Action>
void MeasureWithResources(const char* name, int rounds, Action action) {
  const Resources before;
  Measure(name, rounds, action);
  const Resources after;
  std::printf("%-44s handles %lu -> %lu, GDI %lu -> %lu, USER %lu -> %lu\n", "", before.handles, after.handles,
              before.gdiObjects, after.gdiObjects, before.userObjects, after.userObjects);
}

}  // namespace

int main() {
  VantroWindow window(GetModuleHandleW(nullptr));
  if (!window.Initialize()) return std::fprintf(stderr, "the window did not come up\n"), 1;
  ShowWindow(window.hwnd_, SW_SHOWNORMAL);
  UpdateWindow(window.hwnd_);

  const auto repaint = [&] {
    RedrawWindow(window.hwnd_, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW);
  };
  const auto toggle = [&] { window.ToggleFullscreen(); };
  const auto openMenu = [&] {
    const UINT_PTR timer = SetTimer(nullptr, 0, USER_TIMER_MINIMUM, CloseMenu);
    window.ShowFileMenu();
    KillTimer(nullptr, timer);
  };
  repaint();
  toggle();
  toggle();
  MeasureWithResources("repaint of the bar with all its controls", 10000, repaint);
  MeasureWithResources("fullscreen toggle until the overlay stands", 1000, toggle);
  MeasureWithResources("File menu opened and closed by a 10 ms timer", 50, openMenu);
  DestroyWindow(window.hwnd_);
  return 0;
}
