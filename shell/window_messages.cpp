// The main window's procedure: unpacks each message and forwards it to the rooms.
#include <windowsx.h>

#include "common/log.h"
#include "common/measures.h"
#include "common/win32_geometry.h"
#include "shell/hit_test.h"
#include "shell/shell_ids.h"
#include "shell/vantro_window.h"
#include "shell/window_manager.h"

namespace vantro {

// The native window stores the object pointer only after CreateWindowExW has returned. Before that, and after the
// object is destroyed, only the system handles messages.
LRESULT CALLBACK VantroWindow::WindowProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
  auto* const window = reinterpret_cast<VantroWindow*>(GetWindowLongPtrA(hwnd, GWLP_USERDATA));
  if (message == WM_CREATE) LOG_DEBUG("WindowProc: WM_CREATE received");
  return window ? window->HandleMessage(message, wParam, lParam) : DefWindowProcA(hwnd, message, wParam, lParam);
}

LRESULT VantroWindow::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_CREATE:
      return 0;
    case WM_DESTROY:
      return OnDestroy();
    case WM_MOVE:
      return OnMove();
    case WM_SIZE:
      return OnSize();
    case WM_SETFOCUS:
      return keyboard_.OnSetFocus(wParam, lParam);
    case WM_KILLFOCUS:
      return keyboard_.OnKillFocus(wParam, lParam);
    case WM_PAINT:
      return OnPaint();
    case WM_CLOSE:
      return OnClose(wParam, lParam);
    case WM_GETMINMAXINFO:
      return OnGetMinMaxInfo(lParam);
    case WM_DRAWITEM:
      return OnDrawItem(lParam);
    case WM_NCHITTEST:
      return OnHitTest(lParam);
    case WM_NCPAINT:
      return OnNcPaint();
    case WM_KEYDOWN:
      return keyboard_.OnKeyDown(wParam, lParam);
    case WM_KEYUP:
    case WM_CHAR:
    case WM_SYSKEYDOWN:
    case WM_SYSKEYUP:
      return keyboard_.OnOtherKey(message, wParam, lParam);
    case WM_COMMAND:
      return OnCommand(wParam, lParam);
    case WM_TIMER:
      return OnTimer(wParam);
    case WM_CTLCOLOREDIT:
    case WM_CTLCOLORBTN:
    case WM_CTLCOLORSTATIC:
      return OnControlColor(wParam);
    case WM_MOUSEMOVE:
      return mouse_.OnMouseMove(wParam, lParam);
    case WM_LBUTTONDOWN:
      return mouse_.OnLeftButtonDown(wParam, lParam);
    case WM_LBUTTONUP:
    case WM_RBUTTONUP:
    case WM_MBUTTONUP:
      return mouse_.OnButtonUp(message, wParam, lParam);
    case WM_LBUTTONDBLCLK:
    case WM_RBUTTONDOWN:
    case WM_RBUTTONDBLCLK:
    case WM_MBUTTONDOWN:
    case WM_MBUTTONDBLCLK:
    case WM_MOUSEWHEEL:  // none of these is forwarded to the view
      return DefWindowProcA(hwnd_, message, wParam, lParam);
    case WM_VANTRO_NEW_WINDOW:
      return OnNewWindowRequest();
    default:
      return OnDefault(message, wParam, lParam);
  }
}

LRESULT VantroWindow::OnDefault(UINT message, WPARAM wParam, LPARAM lParam) {
  if (flutterEngine_) {
    if (const auto result = flutterEngine_->HandleWindowMessage(hwnd_, message, wParam, lParam)) return *result;
  }
  return DefWindowProcA(hwnd_, message, wParam, lParam);
}

// WM_CLOSE decides whether the process ends. Here the native window is destroyed and the object stays.
LRESULT VantroWindow::OnDestroy() {
  LOG_INFO("WM_DESTROY: Window %p is being destroyed", static_cast<void*>(this));
  commands_.SaveSettings();
  if (vlcPlayer_) {
    LOG_INFO("Stopping VLC playback for closing window");
    vlcPlayer_->StopInternal(false);
  }
  return 0;
}

LRESULT VantroWindow::OnMove() {
  overlay_.SyncFlutterOverlayPosition(isFullscreen());
  return 0;
}

LRESULT VantroWindow::OnSize() {
  RECT client;  // begins at 0,0
  if (GetClientRect(hwnd_, &client)) {
    size_.width_ = static_cast<int>(client.right);
    size_.height_ = static_cast<int>(client.bottom);
  }
  titleBar_.LayoutTitleBarControls();
  // Below the title bar also in fullscreen, where the bar is shown and hidden above the picture.
  if (VLCPlayer* const player = methodChannelHandler_ ? methodChannelHandler_->vlcPlayer_ : nullptr) {
    const auto [width, height] = ClientSize(player->ParentWindow());
    player->Resize(0, TITLE_BAR_HEIGHT, width, height - TITLE_BAR_HEIGHT);
  }
  overlay_.SyncFlutterOverlayPosition(isFullscreen());
  return 0;
}

LRESULT VantroWindow::OnPaint() {
  titleBar_.Paint(isFullscreen(), fullscreen_.IsTitleBarVisible());
  return 0;
}

LRESULT VantroWindow::OnNcPaint() {
  titleBar_.PaintFrameEdge();
  return 0;
}

LRESULT VantroWindow::OnDrawItem(LPARAM lParam) {
  const auto& item = *reinterpret_cast<const DRAWITEMSTRUCT*>(lParam);
  if (item.CtlType == ODT_STATIC && item.CtlID == kVolumeControlId) {
    volumeControl_.DrawVolumeControl(item);
  } else {
    titleBar_.DrawItem(item, isFullscreen());
  }
  return TRUE;
}

LRESULT VantroWindow::OnClose(WPARAM wParam, LPARAM lParam) {
  BeginClosing(*this);
  // Destroys the native window, and with it the overlay that it owns.
  return DefWindowProcA(hwnd_, WM_CLOSE, wParam, lParam);
}

LRESULT VantroWindow::OnGetMinMaxInfo(LPARAM lParam) {
  auto* const limits = reinterpret_cast<MINMAXINFO*>(lParam);
  limits->ptMinTrackSize = {kMinimumWindowWidth, kMinimumWindowHeight};
  LOG_DEBUG("WM_GETMINMAXINFO: Set minimum window size to %dx%d", kMinimumWindowWidth, kMinimumWindowHeight);
  return 0;
}

LRESULT VantroWindow::OnHitTest(LPARAM lParam) {
  POINT point{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
  ScreenToClient(hwnd_, &point);
  return static_cast<LRESULT>(HitTest(FromWin32(point), ClientSize(hwnd_)));
}

LRESULT VantroWindow::OnCommand(WPARAM wParam, LPARAM lParam) {
  commands_.OnCommand(wParam, lParam);
  return 0;
}

LRESULT VantroWindow::OnTimer(WPARAM timerId) {
  // The player's timers come first. Their ids are derived from addresses.
  if (vlcPlayer_) {
    if (timerId == reinterpret_cast<WPARAM>(vlcPlayer_.get())) {
      vlcPlayer_->OnStallWatchdogTick();
      return 0;
    }
    if (vlcPlayer_->HandleStallNudgeTimer(timerId)) return 0;
  }
  switch (timerId) {
    case kSearchDebounceTimerId:
      search_.OnSearchDebounceTimer();
      break;
    case kTitleBarAutoHideTimerId:
      fullscreen_.OnTitleBarAutoHideTimer();
      break;
    case kMouseTrackingTimerId:
      fullscreen_.FollowPointer(TopAreaCaller::kTrackingTimer);
      break;
  }
  return 0;
}

LRESULT VantroWindow::OnControlColor(WPARAM wParam) {
  return reinterpret_cast<LRESULT>(titleBar_.ColorControl(reinterpret_cast<HDC>(wParam)));
}

LRESULT VantroWindow::OnNewWindowRequest() {
  ServeNewWindowRequest(*this);
  return 0;
}

}  // namespace vantro
