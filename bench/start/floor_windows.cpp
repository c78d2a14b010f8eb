#include "bench/start/floor_windows.h"

namespace floor_program {

namespace {

void Place(HWND window, int fromRight, int y, int width, int height, int clientWidth) {
  if (!window) return;  // not made yet
  SetWindowPos(window, nullptr, clientWidth - fromRight, y, width, height, SWP_NOZORDER);
}

void OnSize() {
  const Window& window = TheWindow();
  RECT client{};
  GetClientRect(window.main, &client);
  LayoutControls();
  if (window.listens) {
    GetClientRect(window.main, &client);
    MoveWindow(window.video, 0, kTitleBarHeight, client.right, client.bottom - kTitleBarHeight, TRUE);
    SetWindowPos(window.video, HWND_NOTOPMOST, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
  }
  SyncOverlay();
}

void OnPaint() {
  const Window& window = TheWindow();
  PAINTSTRUCT paint;
  const HDC dc = BeginPaint(window.main, &paint);
  if (window.showsBar && window.draws) {
    RECT bar{};
    GetClientRect(window.main, &bar);
    bar.top = -2;
    bar.bottom = kTitleBarHeight;
    FillRect(dc, &bar, window.titleBarBrush);
  }
  EndPaint(window.main, &paint);
}

void OnNcPaint() {
  const Window& window = TheWindow();
  if (!window.draws) return;
  const HDC dc = GetWindowDC(window.main);
  RECT strip{};
  GetWindowRect(window.main, &strip);
  OffsetRect(&strip, -strip.left, -strip.top);
  strip.bottom = 3;
  FillRect(dc, &strip, window.titleBarBrush);
  ReleaseDC(window.main, dc);
}

// A control's notification passes the focus on to the view.
void OnCommand() {
  const Window& window = TheWindow();
  if (GetFocus() != window.controls.search && IsWindow(window.viewWindow)) SetFocus(window.viewWindow);
}

LRESULT ControlColor(HDC dc) {
  SetTextColor(dc, RGB(255, 255, 255));
  SetBkColor(dc, RGB(70, 70, 95));
  return reinterpret_cast<LRESULT>(TheWindow().titleBarBrush);
}

LRESULT Default(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  LRESULT result = 0;
  const FlutterDesktopViewControllerRef view = TheWindow().view;
  if (view && FlutterDesktopViewControllerHandleTopLevelWindowProc(view, window, message, wParam, lParam, &result)) {
    return result;
  }
  return DefWindowProcA(window, message, wParam, lParam);
}

}  // namespace

Window& TheWindow() {
  static Window window;
  return window;
}

void LayoutControls() {
  const Window& window = TheWindow();
  RECT client{};
  GetClientRect(window.main, &client);
  const TitleBarControls& controls = window.controls;
  Place(controls.close, 45, 3, 45, 27, client.right);
  Place(controls.maximize, 90, 3, 45, 27, client.right);
  Place(controls.minimize, 135, 3, 45, 27, client.right);
  Place(controls.search, 295, 5, 150, 20, client.right);
  Place(controls.speaker, 410, 5, 20, 20, client.right);
  Place(controls.volume, 385, 5, 80, 20, client.right);
}

void SyncOverlay() {
  Window& window = TheWindow();
  if (window.isSyncing || !IsWindow(window.overlay)) return;
  window.isSyncing = true;
  PlaceOverlay(window.isFullscreen ? 0 : kTitleBarHeight, SWP_SHOWWINDOW);
  if (IsWindow(window.viewWindow)) SetFocus(window.viewWindow);
  window.isSyncing = false;
}

void PlaceOverlay(int topOffset, UINT flags) {
  const Window& window = TheWindow();
  RECT client{};
  GetClientRect(window.main, &client);
  POINT corner{client.left, client.top + topOffset};
  ClientToScreen(window.main, &corner);
  const int height = client.bottom - topOffset;
  SetWindowPos(window.overlay, HWND_TOP, corner.x, corner.y, client.right, height, flags);
  if (IsWindow(window.viewWindow)) {
    SetWindowPos(window.viewWindow, HWND_TOP, 0, 0, client.right, height, SWP_NOACTIVATE | SWP_SHOWWINDOW);
  }
}

LRESULT CALLBACK MainProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (!GetWindowLongPtrA(window, GWLP_USERDATA)) return DefWindowProcA(window, message, wParam, lParam);
  switch (message) {
    case WM_MOVE:
      SyncOverlay();
      return 0;
    case WM_SIZE:
      OnSize();
      return 0;
    case WM_PAINT:
      OnPaint();
      return 0;
    case WM_NCPAINT:
      OnNcPaint();
      return 0;
    case WM_DRAWITEM:
      if (TheWindow().draws) DrawControl(*reinterpret_cast<const DRAWITEMSTRUCT*>(lParam), TheWindow().titleBarBrush);
      return TRUE;
    case WM_CTLCOLOREDIT:
    case WM_CTLCOLORBTN:
    case WM_CTLCOLORSTATIC:
      return ControlColor(reinterpret_cast<HDC>(wParam));
    case WM_GETMINMAXINFO:
      reinterpret_cast<MINMAXINFO*>(lParam)->ptMinTrackSize = {640, 360};
      return 0;
    case WM_COMMAND:
      OnCommand();
      return 0;
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
      return DefWindowProcA(window, message, wParam, lParam);
    default:
      return Default(window, message, wParam, lParam);
  }
}

LRESULT CALLBACK OverlayProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_NCHITTEST) return HTCLIENT;
  return DefWindowProcA(window, message, wParam, lParam);
}

LRESULT CALLBACK FollowMainWindow(int code, WPARAM wParam, LPARAM lParam) {
  const Window& window = TheWindow();
  const auto& sent = *reinterpret_cast<const CWPSTRUCT*>(lParam);
  if (code >= 0 && sent.hwnd == window.main) {
    if (sent.message == WM_MOVE || sent.message == WM_SIZE || sent.message == WM_SHOWWINDOW) {
      SyncOverlay();
    } else if (sent.message == WM_ACTIVATE && (sent.wParam == WA_ACTIVE || sent.wParam == WA_CLICKACTIVE) &&
               GetTopWindow(GetDesktopWindow()) != window.overlay) {
      SetWindowPos(window.overlay, HWND_TOP, 0, 0, 0, 0, SWP_NOSIZE | SWP_NOMOVE | SWP_NOACTIVATE);
    }
  }
  return CallNextHookEx(window.hook, code, wParam, lParam);
}

}  // namespace floor_program
