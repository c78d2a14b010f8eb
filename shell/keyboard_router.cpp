#include "shell/keyboard_router.h"

#include "common/log.h"
#include "shell/flutter_child.h"

namespace vantro {

namespace {

// For the log: "null" for a null handle, otherwise whether the window exists.
const char* Liveness(HWND window) {
  if (!window) return "null";
  return IsWindow(window) ? "true" : "false";
}

void LogFlutterChild(HWND child) {
  if (!IsLogOn()) return;
  char className[256] = "";
  DWORD processId = 0;
  GetClassNameA(child, className, sizeof className);
  GetWindowThreadProcessId(child, &processId);
  LOG_DEBUG("MainWindow: Flutter window info - Class: %s, ProcessId: %lu, IsVisible: %s", className, processId,
            IsWindowVisible(child) ? "true" : "false");
}

unsigned long long Key(WPARAM wParam) { return wParam; }
long long Result(LRESULT result) { return result; }

}  // namespace

KeyboardRouter::KeyboardRouter(const HWND& mainWindow, const TitleBar& titleBar, const FlutterOverlay& overlay,
                               Fullscreen& fullscreen, const std::unique_ptr<FlutterEngine>& engine)
    : hwnd_(mainWindow), titleBar_(titleBar), overlay_(overlay), fullscreen_(fullscreen), flutterEngine_(engine) {}

LRESULT KeyboardRouter::OnSetFocus(WPARAM wParam, LPARAM lParam) const {
  LOG_DEBUG("WM_SETFOCUS: Main window got focus, current focus window: %p", static_cast<void*>(GetFocus()));
  LOG_DEBUG("WM_SETFOCUS: Search box: %p, File button: %p, Help button: %p",
            static_cast<void*>(titleBar_.Controls().searchBox_), static_cast<void*>(titleBar_.Controls().fileButton_),
            static_cast<void*>(titleBar_.Controls().helpButton_));
  LOG_DEBUG("WM_SETFOCUS: Flutter overlay: %p", static_cast<void*>(overlay_.Window()));
  LOG_DEBUG("WM_SETFOCUS: Flutter engine window: %p", static_cast<void*>(FlutterChild(flutterEngine_)));
  return DefWindowProcA(hwnd_, WM_SETFOCUS, wParam, lParam);
}

LRESULT KeyboardRouter::OnKillFocus(WPARAM wParam, LPARAM lParam) const {
  LOG_DEBUG("WM_KILLFOCUS: Main window lost focus, new focus window: %p", reinterpret_cast<void*>(wParam));
  LOG_DEBUG("WM_KILLFOCUS: Search box: %p, File button: %p, Help button: %p",
            static_cast<void*>(titleBar_.Controls().searchBox_), static_cast<void*>(titleBar_.Controls().fileButton_),
            static_cast<void*>(titleBar_.Controls().helpButton_));
  LOG_DEBUG("WM_KILLFOCUS: Flutter overlay: %p", static_cast<void*>(overlay_.Window()));
  LOG_DEBUG("WM_KILLFOCUS: Flutter engine window: %p", static_cast<void*>(FlutterChild(flutterEngine_)));
  return DefWindowProcA(hwnd_, WM_KILLFOCUS, wParam, lParam);
}

LRESULT KeyboardRouter::OnKeyDown(WPARAM wParam, LPARAM lParam) {
  LOG_DEBUG("MAIN_WINDOW_HANDLER: Received WM_KEYDOWN, key=%llu", Key(wParam));
  LOG_DEBUG("MainWindow: Overlay window handle: %p", static_cast<void*>(overlay_.Window()));
  LOG_DEBUG("MainWindow: Current focus when keydown received: %p", static_cast<void*>(GetFocus()));
  LOG_DEBUG("MainWindow: Is current focus == main window? %s", YesOrNo(GetFocus() == hwnd_));
  if (wParam == VK_F11 || (wParam == VK_ESCAPE && fullscreen_.IsFullscreen())) {
    fullscreen_.ToggleFullscreen();
    return 0;
  }
  if (!flutterEngine_) {
    LOG_ERROR("MainWindow: flutterEngine_ is NULL - cannot forward keyboard events!");
    return 0;
  }
  const HWND child = FlutterChild(flutterEngine_);
  LOG_DEBUG("MainWindow: flutterEngine exists, flutterWindow = %p", static_cast<void*>(child));
  if (!child || !IsWindow(child)) {
    LOG_ERROR("MainWindow: Invalid Flutter window - flutterWindow=%p, IsWindow=%s", static_cast<void*>(child),
              Liveness(child));
    return 0;
  }
  LogFlutterChild(child);
  LOG_DEBUG("MainWindow: Forwarding keyboard event directly to Flutter (no focus change)");
  if (const auto result = flutterEngine_->HandleWindowMessage(child, WM_KEYDOWN, wParam, lParam)) {
    LOG_DEBUG("MainWindow: Flutter engine handled keyboard, result: %lld", Result(*result));
    return *result;
  }
  LOG_DEBUG("MainWindow: Flutter engine did NOT handle keyboard event");
  return SendUnhandledKeyDown(child, wParam, lParam);
}

// The fallbacks for a key that the engine did not handle: the view's window, then the overlay with its own rules.
// Returns the first result that is not zero.
LRESULT KeyboardRouter::SendUnhandledKeyDown(HWND child, WPARAM wParam, LPARAM lParam) const {
  LOG_DEBUG("MainWindow: MAIN_WINDOW_FALLBACK - sending keyboard directly to Flutter window");
  const LRESULT childResult = SendMessageA(child, WM_KEYDOWN, wParam, lParam);
  LOG_DEBUG("MainWindow: Direct SendMessage result: %lld", Result(childResult));
  if (childResult != 0) return childResult;
  if (!overlay_.Window() || !IsWindow(overlay_.Window())) return 0;
  LOG_DEBUG("MainWindow: Trying Flutter overlay window as fallback: %p", static_cast<void*>(overlay_.Window()));
  const LRESULT overlayResult = SendMessageA(overlay_.Window(), WM_KEYDOWN, wParam, lParam);
  LOG_DEBUG("MainWindow: Overlay SendMessage result: %lld", Result(overlayResult));
  return overlayResult;
}

LRESULT KeyboardRouter::OnOtherKey(UINT message, WPARAM wParam, LPARAM lParam) const {
  LOG_DEBUG("MainWindow: Received keyboard message %u, key=%llu", message, Key(wParam));
  if (!flutterEngine_) {
    LOG_ERROR("MainWindow: flutterEngine_ is NULL - cannot forward keyboard message %u!", message);
    return 0;
  }
  const HWND child = FlutterChild(flutterEngine_);
  if (!child || !IsWindow(child)) {
    LOG_ERROR("MainWindow: Invalid Flutter window for message %u - flutterWindow=%p, IsWindow=%s", message,
              static_cast<void*>(child), Liveness(child));
    return 0;
  }
  LOG_DEBUG("MainWindow: Forwarding keyboard message %u directly to Flutter", message);
  if (const auto result = flutterEngine_->HandleWindowMessage(child, message, wParam, lParam)) {
    LOG_DEBUG("MainWindow: Flutter handled keyboard message %u, result: %lld", message, Result(*result));
    return *result;
  }
  LOG_DEBUG("MainWindow: Flutter engine did NOT handle keyboard message %u", message);
  LOG_DEBUG("MainWindow: MAIN_WINDOW_FALLBACK2 - sending keyboard message %u directly to Flutter window", message);
  const LRESULT result = SendMessageA(child, message, wParam, lParam);
  LOG_DEBUG("MainWindow: Direct SendMessage result for message %u: %lld", message, Result(result));
  return result;
}

}  // namespace vantro
