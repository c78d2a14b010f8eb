#include "shell/overlay_diagnostics.h"

#include "common/log.h"

namespace vantro {

namespace {

void LogWindowAt(const char* place, POINT point, const StackedWindows& windows) {
  const HWND found = WindowFromPoint(point);
  char className[256] = "";
  char title[256] = "";
  if (found) {
    GetClassNameA(found, className, sizeof className);
    GetWindowTextA(found, title, sizeof title);
  }
  LOG_DEBUG("EnableOverlayMouseInput: Window at %s (%ld,%ld): %p, class '%s', title '%s'", place, point.x, point.y,
            static_cast<void*>(found), className, title);
  if (found == windows.overlay) {
    LOG_DEBUG("EnableOverlayMouseInput: Intercepting window IS our overlay window!");
  } else if (found == windows.mainWindow) {
    LOG_DEBUG("EnableOverlayMouseInput: Intercepting window IS our main window!");
  } else if (found && found == windows.flutterChild) {
    LOG_DEBUG("EnableOverlayMouseInput: Intercepting window IS our Flutter window!");
  } else {
    LOG_DEBUG("EnableOverlayMouseInput: Intercepting window is UNKNOWN - not one of ours!");
  }
}

}  // namespace

void LogOverlayCreation(HWND mainWindow, const Rect& overlay) {
  if (!IsLogOn()) return;
  RECT outer{};
  RECT client{};
  GetWindowRect(mainWindow, &outer);
  GetClientRect(mainWindow, &client);
  LOG_DEBUG("CreateFlutterOverlay: Window rectangle: %ld,%ld to %ld,%ld", outer.left, outer.top, outer.right,
            outer.bottom);
  LOG_DEBUG("CreateFlutterOverlay: Client area: %ldx%ld", client.right, client.bottom);
  // The height above the overlay: the title bar and the frame's top edge.
  LOG_DEBUG("CreateFlutterOverlay: Title bar height: %ld", overlay.top - outer.top);
}

void LogOverlayInput(const StackedWindows& windows, LONG_PTR exStyleBefore) {
  if (!IsLogOn()) return;
  RECT rect{};
  GetWindowRect(windows.overlay, &rect);
  LOG_DEBUG("EnableOverlayMouseInput: Overlay rectangle: %ld,%ld to %ld,%ld", rect.left, rect.top, rect.right,
            rect.bottom);
  LOG_DEBUG("EnableOverlayMouseInput: Extended style before: 0x%08llX, after: 0x%08llX",
            static_cast<unsigned long long>(exStyleBefore),
            static_cast<unsigned long long>(GetWindowLongPtrA(windows.overlay, GWL_EXSTYLE)));
  LOG_DEBUG("EnableOverlayMouseInput: Overlay visible: %s, desktop's top window: %p",
            YesOrNo(IsWindowVisible(windows.overlay)), static_cast<void*>(GetTopWindow(GetDesktopWindow())));
  POINT cursor;
  if (GetCursorPos(&cursor)) LogWindowAt("the cursor", cursor, windows);
  LogWindowAt("the overlay's centre", {(rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2}, windows);
}

}  // namespace vantro
