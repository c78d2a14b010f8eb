#include "shell/mouse_router.h"

#include "common/log.h"
#include "shell/flutter_child.h"
#include "shell/input_state.h"

namespace vantro {

MouseRouter::MouseRouter(const HWND& mainWindow, Fullscreen& fullscreen, VolumeControl& volumeControl,
                         SearchBox& search, const std::unique_ptr<FlutterEngine>& engine)
    : hwnd_(mainWindow),
      fullscreen_(fullscreen),
      volumeControl_(volumeControl),
      search_(search),
      flutterEngine_(engine) {}

LRESULT MouseRouter::OnMouseMove(WPARAM wParam, LPARAM lParam) {
  fullscreen_.FollowPointer(TopAreaCaller::kMainWindow);
  if (volumeControl_.IsDragging()) {
    volumeControl_.DragToPointer();
    return 0;
  }
  return DefWindowProcA(hwnd_, WM_MOUSEMOVE, wParam, lParam);
}

LRESULT MouseRouter::OnLeftButtonDown(WPARAM wParam, LPARAM lParam) {
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
  if (hit && hit == volumeControl_.Window()) {
    LOG_DEBUG("WM_LBUTTONDOWN: Click on volume control");
    volumeControl_.BeginDragAtPointer();
    return 0;
  }
  // A second test by hand, because ChildWindowFromPoint excludes the right and bottom edges.
  if (volumeControl_.Covers(point)) {
    LOG_DEBUG("WM_LBUTTONDOWN: Manual volume control hit test succeeded at (%d, %d)", static_cast<int>(point.x),
              static_cast<int>(point.y));
    volumeControl_.BeginDragAtPointer();
    return 0;
  }
  search_.NoteLeftButtonDown(false);
  return DefWindowProcA(hwnd_, WM_LBUTTONDOWN, wParam, lParam);
}

LRESULT MouseRouter::OnButtonUp(UINT message, WPARAM wParam, LPARAM lParam) {
  if (volumeControl_.IsDragging() && message == WM_LBUTTONUP) volumeControl_.EndVolumeDrag();
  const HWND hit = ChildWindowFromPoint(hwnd_, PointerIn(hwnd_));
  if (hit && (hit == search_.Window() || hit == volumeControl_.Window())) {
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
