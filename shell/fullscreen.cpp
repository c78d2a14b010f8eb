#include "shell/fullscreen.h"

#include <windows.h>

#include "common/log.h"
#include "common/measures.h"
#include "common/win32_geometry.h"
#include "shell/fullscreen_placement.h"
#include "shell/input_state.h"
#include "shell/shell_ids.h"

namespace vantro {

namespace {

constexpr DWORD kFullscreenStyle = WS_POPUP | WS_VISIBLE;
constexpr UINT kFrameChange = SWP_FRAMECHANGED | SWP_SHOWWINDOW;

RECT MonitorRectangle(HWND window) {
  MONITORINFO monitor{};
  monitor.cbSize = sizeof monitor;
  // For a window on no monitor this is the primary one. The rectangle is the whole monitor, including the taskbar.
  GetMonitorInfoA(MonitorFromWindow(window, MONITOR_DEFAULTTOPRIMARY), &monitor);
  return monitor.rcMonitor;
}

void SetStyle(HWND window, int index, DWORD style) { SetWindowLongA(window, index, static_cast<LONG>(style)); }

// The timer's ticks are not logged: there are ten a second.
void LogPointer(TopAreaCaller caller, LONG y, bool isMouseInTopArea) {
  const bool isInTopArea = IsInTopArea(static_cast<int>(y));
  if (caller == TopAreaCaller::kMainWindow) {
    LOG_DEBUG("MAIN WINDOW WM_MOUSEMOVE in fullscreen: pt.y=%ld, isNowInTopArea=%d", y, isInTopArea);
  } else if (caller == TopAreaCaller::kOverlay) {
    LOG_DEBUG("OverlayWindowProc: FULLSCREEN MOUSEMOVE - pt.y=%ld, isNowInTopArea=%d, isMouseInTopArea_=%d", y,
              isInTopArea, isMouseInTopArea);
  }
}

void LogMouseEnteredTopArea(TopAreaCaller caller, int y) {
  switch (caller) {
    case TopAreaCaller::kTrackingTimer:
      LOG_INFO("WM_TIMER: Mouse entered top area (y=%ld) - showing title bar", long{y});
      break;
    case TopAreaCaller::kMainWindow:
      LOG_INFO("MAIN WINDOW: Mouse entered top area - SHOWING TITLE BAR");
      break;
    case TopAreaCaller::kOverlay:
      LOG_INFO("OverlayWindowProc: Mouse entered top area - SHOWING TITLE BAR");
      break;
  }
}

void LogMouseLeftTopArea(TopAreaCaller caller, int y) {
  switch (caller) {
    case TopAreaCaller::kTrackingTimer:
      LOG_INFO("WM_TIMER: Mouse left top area (y=%ld) - starting auto-hide timer", long{y});
      break;
    case TopAreaCaller::kMainWindow:
      LOG_INFO("MAIN WINDOW: Mouse left top area - starting auto-hide timer");
      break;
    case TopAreaCaller::kOverlay:
      LOG_INFO("OverlayWindowProc: Mouse left top area - starting auto-hide timer");
      break;
  }
}

}  // namespace

Fullscreen::Fullscreen(const HWND& mainWindow, WindowSize& size, TitleBar& titleBar, FlutterOverlay& overlay)
    : hwnd_(mainWindow), size_(size), titleBar_(titleBar), overlay_(overlay) {}

void Fullscreen::ToggleFullscreen() {
  if (isFullscreen_) {
    LeaveFullscreen();
  } else {
    EnterFullscreen();
  }
}

void Fullscreen::EnterFullscreen() {
  LOG_INFO("ToggleFullscreen: Entering fullscreen mode");
  GetWindowRect(hwnd_, &savedWindowRect_);
  savedStyle_ = static_cast<DWORD>(GetWindowLongA(hwnd_, GWL_STYLE));
  savedExStyle_ = static_cast<DWORD>(GetWindowLongA(hwnd_, GWL_EXSTYLE));
  size_.width_ = savedWindowRect_.right - savedWindowRect_.left;
  size_.height_ = savedWindowRect_.bottom - savedWindowRect_.top;
  LOG_DEBUG("ToggleFullscreen: Saved window state - pos:(%ld,%ld) size:%dx%d style:0x%08lX exStyle:0x%08lX",
            savedWindowRect_.left, savedWindowRect_.top, size_.width_, size_.height_, savedStyle_, savedExStyle_);
  const RECT monitor = MonitorRectangle(hwnd_);
  LOG_INFO("ToggleFullscreen: Monitor rect: %ld,%ld to %ld,%ld", monitor.left, monitor.top, monitor.right,
           monitor.bottom);
  SetStyle(hwnd_, GWL_STYLE, kFullscreenStyle);
  SetWindowPos(hwnd_, nullptr, monitor.left, monitor.top, monitor.right - monitor.left, monitor.bottom - monitor.top,
               kFrameChange);
  // The syncs that the move caused used the title bar's offset. The sync below corrects this.
  isFullscreen_ = true;
  overlay_.SyncFlutterOverlayPosition(isFullscreen_);
  HideTitleBarControls();
  isMouseInTopArea_ = false;
  if (mouseTrackingTimer_) KillTimer(hwnd_, kMouseTrackingTimerId);
  mouseTrackingTimer_ = SetTimer(hwnd_, kMouseTrackingTimerId, kMouseTrackingMs, nullptr);
  LOG_INFO("Started mouse tracking timer for fullscreen mode");
  titleBar_.RedrawMaximizeButton();
  LOG_INFO("Entered fullscreen mode - title bar will auto-hide");
}

void Fullscreen::LeaveFullscreen() {
  LOG_INFO("ToggleFullscreen: Exiting fullscreen mode");
  const auto [place, usesDefaults] = PlacementAfterFullscreen(FromWin32(savedWindowRect_));
  if (usesDefaults) {
    LOG_WARNING("ToggleFullscreen: Invalid saved dimensions (%dx%d), using defaults",
                static_cast<int>(savedWindowRect_.right - savedWindowRect_.left),
                static_cast<int>(savedWindowRect_.bottom - savedWindowRect_.top));
    savedWindowRect_.left = place.left;
    savedWindowRect_.top = place.top;
  }
  size_.width_ = place.Width();
  size_.height_ = place.Height();
  LOG_DEBUG("ToggleFullscreen: Restoring window - pos:(%ld,%ld) size:%dx%d style:0x%08lX", savedWindowRect_.left,
            savedWindowRect_.top, size_.width_, size_.height_, savedStyle_);
  SetStyle(hwnd_, GWL_STYLE, savedStyle_ | WS_VISIBLE);
  SetStyle(hwnd_, GWL_EXSTYLE, savedExStyle_);
  ShowWindow(hwnd_, SW_SHOW);
  // This also ends always-on-top. Nothing restores it here: it stays off until the menu or the next start applies it.
  // The call uses place and not size_, which the WM_SIZE of the style change may have overwritten.
  SetWindowPos(hwnd_, HWND_NOTOPMOST, place.left, place.top, place.Width(), place.Height(), kFrameChange);
  if (mouseTrackingTimer_) {
    KillTimer(hwnd_, kMouseTrackingTimerId);
    mouseTrackingTimer_ = 0;
    LOG_INFO("Stopped mouse tracking timer");
  }
  isFullscreen_ = false;
  overlay_.SyncFlutterOverlayPosition(isFullscreen_);
  ShowTitleBarControls();
  StopTitleBarAutoHideTimer();
  isMouseInTopArea_ = false;
  titleBar_.RedrawMaximizeButton();
  // A null handle would invalidate every window of the desktop.
  if (hwnd_) InvalidateRect(hwnd_, nullptr, TRUE);
  LOG_INFO("Exited fullscreen mode - title bar controls restored");
}

void Fullscreen::ShowTitleBarControls() {
  if (isTitleBarVisible_) return;
  LOG_DEBUG("ShowTitleBarControls: Showing title bar controls in fullscreen");
  titleBar_.ShowControls(SW_SHOW);
  isTitleBarVisible_ = true;
  if (isFullscreen_) {
    if (const auto place = overlay_.MoveBelow(TITLE_BAR_HEIGHT)) {
      LOG_INFO("ShowTitleBarControls: Repositioned overlay below title bar (%dx%d at %ld,%ld)", place->Width(),
               place->Height(), long{place->left}, long{place->top});
    }
  }
  // Paints at once, because the video's messages can delay a WM_PAINT.
  if (titleBar_.PaintNow()) LOG_DEBUG("ShowTitleBarControls: Painted title bar background directly");
  titleBar_.Repaint(false, size_.width_);
  LOG_DEBUG("ShowTitleBarControls: Title bar background painted and invalidated");
}

void Fullscreen::HideTitleBarControls() {
  if (!isTitleBarVisible_) return;
  LOG_DEBUG("HideTitleBarControls: Hiding title bar controls in fullscreen");
  titleBar_.ShowControls(SW_HIDE);
  isTitleBarVisible_ = false;
  if (isFullscreen_) {
    if (const auto place = overlay_.MoveBelow(0)) {
      LOG_INFO("HideTitleBarControls: Repositioned overlay to cover full screen (%dx%d at %ld,%ld)", place->Width(),
               place->Height(), long{place->left}, long{place->top});
    }
  }
  titleBar_.Repaint(true, size_.width_);
  LOG_DEBUG("HideTitleBarControls: Invalidated and updated title bar area");
}

void Fullscreen::StartTitleBarAutoHideTimer() {
  if (titleBarAutoHideTimer_) KillTimer(hwnd_, kTitleBarAutoHideTimerId);
  titleBarAutoHideTimer_ = SetTimer(hwnd_, kTitleBarAutoHideTimerId, kTitleBarAutoHideMs, nullptr);
  LOG_DEBUG("StartTitleBarAutoHideTimer: Started auto-hide timer");
}

void Fullscreen::StopTitleBarAutoHideTimer() {
  if (!titleBarAutoHideTimer_) return;
  KillTimer(hwnd_, kTitleBarAutoHideTimerId);
  titleBarAutoHideTimer_ = 0;
  LOG_DEBUG("StopTitleBarAutoHideTimer: Stopped auto-hide timer");
}

// A tick that arrives after the window has left fullscreen does nothing.
void Fullscreen::OnTitleBarAutoHideTimer() {
  if (!isFullscreen_) return;
  LOG_DEBUG("WM_TIMER: Title bar auto-hide timer fired");
  StopTitleBarAutoHideTimer();
  HideTitleBarControls();
}

void Fullscreen::FollowPointer(TopAreaCaller caller) {
  if (!isFullscreen_) return;
  const auto cursor = CursorIn(hwnd_);
  if (!cursor) return;
  LogPointer(caller, cursor->y, isMouseInTopArea_);
  RunTopAreaStep(static_cast<int>(cursor->y), caller);
}

void Fullscreen::RunTopAreaStep(int y, TopAreaCaller caller) {
  const TopAreaStep step = DecideTopAreaStep(y, isMouseInTopArea_, isTitleBarVisible_, caller);
  isMouseInTopArea_ = step.isMouseInTopArea;
  switch (step.action) {
    case TopAreaAction::kNone:
      break;
    case TopAreaAction::kStartAutoHide:
      StartTitleBarAutoHideTimer();
      LogMouseLeftTopArea(caller, y);
      break;
    case TopAreaAction::kShowAndStopAutoHide:
      ShowTitleBarControls();
      StopTitleBarAutoHideTimer();
      LogMouseEnteredTopArea(caller, y);
      break;
    case TopAreaAction::kStopAutoHide:
      StopTitleBarAutoHideTimer();
      break;
  }
}

}  // namespace vantro
