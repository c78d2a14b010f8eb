// The mouse on the main window itself: the title bar, and whatever video and overlay leave free.
#include "common/log.h"
#include "shell/flutter_child.h"
#include "shell/input_state.h"
#include "shell/vantro_window.h"

namespace vantro {

namespace {

// The handlers go by where the pointer is now, not by where it was when the message was posted.
POINT PointerIn(HWND window) { return CursorIn(window).value_or(POINT{}); }

// The control's rectangle in the client coordinates of its parent.
RECT RectInParent(HWND control, HWND parent) {
  RECT rect{};
  GetWindowRect(control, &rect);
  MapWindowPoints(HWND_DESKTOP, parent, reinterpret_cast<POINT*>(&rect), 2);
  return rect;
}

// All four edges belong to the rectangle.
bool ContainsWithEdges(const RECT& rect, POINT point) {
  return rect.left <= point.x && point.x <= rect.right && rect.top <= point.y && point.y <= rect.bottom;
}

}  // namespace

LRESULT VantroWindow::OnMouseMove(WPARAM wParam, LPARAM lParam) {
  fullscreen_.FollowPointer(TopAreaCaller::kMainWindow);
  if (volumeControl_.IsDragging()) {
    const POINT point = PointerIn(titleBar_.Controls().volumeControl_);
    volumeControl_.HandleVolumeClick(static_cast<int>(point.x), static_cast<int>(point.y));
    return 0;
  }
  return DefWindowProcA(hwnd_, WM_MOUSEMOVE, wParam, lParam);
}

LRESULT VantroWindow::OnLeftButtonDown(WPARAM wParam, LPARAM lParam) {
  const POINT point = PointerIn(hwnd_);
  const HWND hit = ChildWindowFromPoint(hwnd_, point);
  LOG_DEBUG("WM_LBUTTONDOWN: Click at (%d, %d), hit window: %p", static_cast<int>(point.x), static_cast<int>(point.y),
            static_cast<void*>(hit));
  LOG_DEBUG("WM_LBUTTONDOWN: Search box window: %p", static_cast<void*>(search_.Window()));
  if (hit && hit == search_.Window()) {
    LOG_DEBUG("WM_LBUTTONDOWN: Click on search box - ensuring it gets focus");
    search_.NoteLeftButtonDown(true);
    return DefWindowProcA(hwnd_, WM_LBUTTONDOWN, wParam, lParam);
  }
  if (hit && hit == titleBar_.Controls().volumeControl_) {
    LOG_DEBUG("WM_LBUTTONDOWN: Click on volume control");
    StartVolumeDragAtPointer();
    return 0;
  }
  // By hand again: the search for a child leaves the right and the lower edge out.
  if (titleBar_.Controls().volumeControl_ &&
      ContainsWithEdges(RectInParent(titleBar_.Controls().volumeControl_, hwnd_), point)) {
    LOG_DEBUG("WM_LBUTTONDOWN: Manual volume control hit test succeeded at (%d, %d)", static_cast<int>(point.x),
              static_cast<int>(point.y));
    StartVolumeDragAtPointer();
    return 0;
  }
  search_.NoteLeftButtonDown(false);
  return DefWindowProcA(hwnd_, WM_LBUTTONDOWN, wParam, lParam);
}

void VantroWindow::StartVolumeDragAtPointer() {
  const POINT point = PointerIn(titleBar_.Controls().volumeControl_);
  const int x = static_cast<int>(point.x);
  const int y = static_cast<int>(point.y);
  LOG_DEBUG("WM_LBUTTONDOWN: Volume control clicked at relative position (%d, %d)", x, y);
  volumeControl_.BeginVolumeDrag(x, y);
}

LRESULT VantroWindow::OnButtonUp(UINT message, WPARAM wParam, LPARAM lParam) {
  if (volumeControl_.IsDragging() && message == WM_LBUTTONUP) volumeControl_.EndVolumeDrag();
  const HWND hit = ChildWindowFromPoint(hwnd_, PointerIn(hwnd_));
  if (hit && (hit == search_.Window() || hit == titleBar_.Controls().volumeControl_)) {
    LOG_DEBUG("MainWindow: Mouse up on search box - maintaining focus on search");
  } else if (GetFocus() == search_.Window()) {
    LOG_DEBUG("MainWindow: Search box has focus, not stealing it");
  } else if (const HWND child = LiveFlutterChild(flutterEngine_)) {
    SetFocus(child);
    LOG_DEBUG("MainWindow: Mouse up - restored focus to Flutter");
  }
  return DefWindowProcA(hwnd_, message, wParam, lParam);
}

}  // namespace vantro
