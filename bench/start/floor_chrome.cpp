#include "bench/start/floor_chrome.h"

#include <cstdio>

#include "bench/shell/timing.h"
#include "bench/start/floor_windows.h"

namespace floor_program {

namespace {

constexpr UINT_PTR kTrackingTimer = 1002;
constexpr UINT kTrackingMs = 100;
constexpr UINT kFrameChange = SWP_FRAMECHANGED | SWP_SHOWWINDOW;

struct Saved {
  RECT place{};
  LONG style = 0;
  LONG exStyle = 0;
};

void RepaintBar(bool erase) {
  const Window& window = TheWindow();
  RECT bar{};
  GetClientRect(window.main, &bar);
  bar.bottom = kTitleBarHeight;
  InvalidateRect(window.main, &bar, erase);
  UpdateWindow(window.main);
}

void ShowControls(int command) {
  const TitleBarControls& controls = TheWindow().controls;
  for (const HWND control : {controls.close, controls.maximize, controls.minimize, controls.search, controls.file,
                             controls.help, controls.volume, controls.speaker, controls.icon, controls.title}) {
    ShowWindow(control, command);
  }
}

void FillBar() {
  const Window& window = TheWindow();
  const HDC dc = GetDC(window.main);
  RECT bar{};
  GetClientRect(window.main, &bar);
  bar.bottom = kTitleBarHeight;
  if (window.draws) FillRect(dc, &bar, window.titleBarBrush);
  ReleaseDC(window.main, dc);
}

void Enter(Saved& saved) {
  Window& window = TheWindow();
  GetWindowRect(window.main, &saved.place);
  saved.style = GetWindowLongA(window.main, GWL_STYLE);
  saved.exStyle = GetWindowLongA(window.main, GWL_EXSTYLE);
  MONITORINFO monitor{};
  monitor.cbSize = sizeof monitor;
  GetMonitorInfoA(MonitorFromWindow(window.main, MONITOR_DEFAULTTOPRIMARY), &monitor);
  const RECT& area = monitor.rcMonitor;
  SetWindowLongA(window.main, GWL_STYLE, static_cast<LONG>(WS_POPUP | WS_VISIBLE));
  SetWindowPos(window.main, nullptr, area.left, area.top, area.right - area.left, area.bottom - area.top, kFrameChange);
  window.isFullscreen = true;
  SyncOverlay();
  ShowControls(SW_HIDE);
  window.showsBar = false;
  PlaceOverlay(0, SWP_NOACTIVATE | SWP_SHOWWINDOW);
  RepaintBar(true);
  SetTimer(window.main, kTrackingTimer, kTrackingMs, nullptr);
  InvalidateRect(window.controls.maximize, nullptr, TRUE);
}

void Leave(const Saved& saved) {
  Window& window = TheWindow();
  SetWindowLongA(window.main, GWL_STYLE, static_cast<LONG>(saved.style | WS_VISIBLE));
  SetWindowLongA(window.main, GWL_EXSTYLE, saved.exStyle);
  ShowWindow(window.main, SW_SHOW);
  SetWindowPos(window.main, HWND_NOTOPMOST, saved.place.left, saved.place.top, saved.place.right - saved.place.left,
               saved.place.bottom - saved.place.top, kFrameChange);
  KillTimer(window.main, kTrackingTimer);
  window.isFullscreen = false;
  SyncOverlay();
  ShowControls(SW_SHOW);
  window.showsBar = true;
  FillBar();
  RepaintBar(false);
  InvalidateRect(window.controls.maximize, nullptr, TRUE);
  InvalidateRect(window.main, nullptr, TRUE);
}

double Median(double seconds, void (*action)()) {
  const auto taken = vantro::bench::SortedMicroseconds(10000, seconds, action);
  return taken[taken.size() / 2];
}

void Repaint() {
  RedrawWindow(TheWindow().main, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW);
}

void ChangeFullscreen() {
  static Saved saved;
  if (TheWindow().isFullscreen)
    Leave(saved);
  else
    Enter(saved);
}

}  // namespace

void PrintChromeTimes(double seconds) {
  for (const bool draws : {true, false}) {
    TheWindow().draws = draws;
    const char* const what = draws ? "calls" : "nothing";
    Repaint();
    std::printf("%s repaint %.1f\n", what, Median(seconds, Repaint));
    ChangeFullscreen();
    ChangeFullscreen();
    std::printf("%s fullscreen %.1f\n", what, Median(seconds, ChangeFullscreen));
    if (TheWindow().isFullscreen) ChangeFullscreen();
  }
  std::fflush(stdout);
}

}  // namespace floor_program
