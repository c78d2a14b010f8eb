#include "painter.h"

#include <windows.h>

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <utility>
#include <vector>

#include "canvas.h"
#include "picture_placement.h"
#include "picture_windows.h"
#include "windows_thread.h"

namespace vantro::devlib {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int kFarAway = 30000;  // beyond every screen

// No event reports that another window uncovered a paused picture, so it is redrawn this often.
constexpr auto kRepaintPeriod = std::chrono::milliseconds(200);

struct Shown {
  std::shared_ptr<Canvas> canvas;
  HWND window = nullptr;  // the window in which the last picture was drawn
  Clock::time_point drawn{};
};

struct State {
  std::mutex lock;
  std::condition_variable wake;
  bool woken = false;
  bool started = false;
  std::vector<std::shared_ptr<Canvas>> added;
  std::vector<std::function<void()>> tasks;
};

// Never destroyed: libvlc's threads may still call while the process ends.
State& state() {
  static State* const instance = new State;
  return *instance;
}

void FillBlack(HDC dc, int left, int top, int right, int bottom) {
  if (right > left && bottom > top) PatBlt(dc, left, top, right - left, bottom - top, BLACKNESS);
}

void FillAround(HDC dc, const RECT& area, const Placement& place) {
  FillBlack(dc, 0, 0, area.right, place.y);
  FillBlack(dc, 0, place.y + place.height, area.right, area.bottom);
  FillBlack(dc, 0, place.y, place.x, place.y + place.height);
  FillBlack(dc, place.x + place.width, place.y, area.right, place.y + place.height);
}

// Returns false when there is no window to draw in.
bool Draw(HWND window, const Frame& frame, PictureSize visible, float scale) {
  RECT area;
  if (!IsWindowVisible(window) || !GetClientRect(window, &area) || area.right <= 0 || area.bottom <= 0) return false;
  // With a region, which here covers everything, Wine computes the visible part again. Without one it may keep using
  // the visible part from before the window's thread made the window larger.
  HRGN everything = CreateRectRgn(-kFarAway, -kFarAway, kFarAway, kFarAway);
  HDC dc = GetDCEx(window, everything, DCX_CACHE | DCX_CLIPSIBLINGS | DCX_CLIPCHILDREN | DCX_INTERSECTRGN);
  if (!dc) return false;
  BITMAPINFO format{};
  format.bmiHeader.biSize = sizeof format.bmiHeader;
  format.bmiHeader.biWidth = static_cast<LONG>(frame.width);
  format.bmiHeader.biHeight = -static_cast<LONG>(visible.height);
  format.bmiHeader.biPlanes = 1;
  format.bmiHeader.biBitCount = 32;
  format.bmiHeader.biCompression = BI_RGB;
  int width = static_cast<int>(visible.width);
  int height = static_cast<int>(visible.height);
  Placement place = PlacePicture(area.right, area.bottom, width, height, scale);
  SetStretchBltMode(dc, COLORONCOLOR);
  StretchDIBits(dc, place.x, place.y, place.width, place.height, 0, 0, width, height, frame.pixels.data(), &format,
                DIB_RGB_COLORS, SRCCOPY);
  FillAround(dc, area, place);
  ReleaseDC(window, dc);
  return true;
}

// Makes a child window as large as the program's window.
void KeepSize(HWND target) {
  RECT area, parent;
  if ((GetWindowLongW(target, GWL_STYLE) & WS_CHILD) == 0) return;
  if (!GetClientRect(target, &area) || !GetClientRect(GetAncestor(target, GA_PARENT), &parent)) return;
  if (area.right != parent.right || area.bottom != parent.bottom) PictureWindows::Fit(target);
}

// Brings one window up to date. Returns false when its canvas is no longer used.
bool Show(Shown* shown, Clock::time_point now) {
  bool changed = false;
  std::shared_ptr<const Frame> frame = shown->canvas->Newest(&changed);
  HWND window = static_cast<HWND>(shown->canvas->target());
  if (!frame || !window) {
    shown->window = nullptr;
    return frame || !shown->canvas->closed();
  }
  if (!changed && window == shown->window && now - shown->drawn < kRepaintPeriod) return true;
  KeepSize(window);
  PictureSize visible = shown->canvas->VisibleSize(frame->width, frame->height);
  if (Draw(window, *frame, visible, shown->canvas->scale())) shown->canvas->OnDrawn();
  shown->window = window;
  shown->drawn = now;
  return true;
}

void Run() {
  State& shared = state();
  std::vector<Shown> windows;
  std::vector<std::function<void()>> tasks;
  bool pictures = false;
  while (true) {
    {
      std::unique_lock guard(shared.lock);
      auto woken = [&] { return shared.woken; };
      if (pictures) {
        shared.wake.wait_for(guard, kRepaintPeriod, woken);
      } else {
        shared.wake.wait(guard, woken);
      }
      shared.woken = false;
      tasks.swap(shared.tasks);
      for (std::shared_ptr<Canvas>& canvas : shared.added) windows.push_back({std::move(canvas), nullptr, {}});
      shared.added.clear();
    }
    for (const std::function<void()>& task : tasks) task();
    tasks.clear();
    Clock::time_point now = Clock::now();
    std::erase_if(windows, [now](Shown& shown) { return !Show(&shown, now); });
    pictures = false;
    for (const Shown& shown : windows) pictures |= shown.window != nullptr;
  }
}

}  // namespace

bool Painter::Add(std::shared_ptr<Canvas> canvas) {
  State& shared = state();
  {
    std::lock_guard guard(shared.lock);
    shared.added.push_back(std::move(canvas));
    shared.woken = true;
    if (!shared.started) shared.started = StartWindowsThread(Run);
    if (!shared.started) return false;
  }
  shared.wake.notify_one();
  return true;
}

void Painter::Post(std::function<void()> task) {
  State& shared = state();
  {
    std::lock_guard guard(shared.lock);
    shared.tasks.push_back(std::move(task));
    shared.woken = true;
  }
  shared.wake.notify_one();
}

void Painter::Wake() {
  State& shared = state();
  {
    std::lock_guard guard(shared.lock);
    shared.woken = true;
  }
  shared.wake.notify_one();
}

}  // namespace vantro::devlib
