#include "shell/overlay_input.h"

#include <cstdint>
#include <limits>
#include <optional>

#include "common/log.h"
#include "shell/flutter_child.h"
#include "shell/input_state.h"
#include "shell/vantro_window.h"

namespace vantro {

namespace {

constexpr int32_t kLoggedMessages = 50;

// Counts the messages of all overlays. It stops at the type's maximum, so that it does not overflow in a process that
// runs for weeks.
int32_t overlayMessageCount = 0;

void CountAndLog(UINT message) {
  if (overlayMessageCount < std::numeric_limits<int32_t>::max()) ++overlayMessageCount;
  if (overlayMessageCount > kLoggedMessages) return;
  LOG_DEBUG("OverlayWindowProc: Message %d = %u", overlayMessageCount, message);
}

struct OverlayMessage {
  HWND overlay;
  UINT message;
  WPARAM wParam;
  LPARAM lParam;

  LRESULT Default() const { return DefWindowProcA(overlay, message, wParam, lParam); }
  bool PostTo(HWND window) const { return PostMessageA(window, message, wParam, lParam); }
  std::optional<LRESULT> OfferTo(FlutterEngine& engine) const {
    return engine.HandleWindowMessage(overlay, message, wParam, lParam);
  }
};

bool HasEngine(const VantroWindow* window) { return window && window->flutterEngine_; }

// F11 toggles fullscreen, Escape leaves it. Returns whether the key did one of these.
bool CatchFullscreenKey(VantroWindow& window, WPARAM key) {
  if (key == VK_F11) {
    LOG_INFO("OverlayWindowProc: F11 pressed - toggling fullscreen");
  } else if (key == VK_ESCAPE && window.isFullscreen()) {
    LOG_INFO("OverlayWindowProc: Escape pressed in fullscreen - exiting");
  } else {
    return false;
  }
  window.ToggleFullscreen();
  return true;
}

// A key that the view does not take is reported as handled (1), so that the system does not act on it.
LRESULT OnOverlayKeyDown(VantroWindow* window, const OverlayMessage& key) {
  if (window && CatchFullscreenKey(*window, key.wParam)) return 0;
  LOG_DEBUG("OVERLAY_WINDOW_HANDLER: WM_KEYDOWN key=%llu", static_cast<unsigned long long>(key.wParam));
  if (!HasEngine(window)) return key.Default();
  LOG_DEBUG("OverlayWindowProc: Handling keydown on overlay window %p", static_cast<void*>(key.overlay));
  if (const auto result = key.OfferTo(*window->flutterEngine_)) {
    LOG_DEBUG("OverlayWindowProc: Flutter engine handled keydown -> %lld", static_cast<long long>(*result));
    return *result;
  }
  if (const HWND child = LiveFlutterChild(window->flutterEngine_)) {
    if (GetFocus() != child) {
      LOG_DEBUG("OverlayWindowProc: Setting focus to Flutter window for keyboard");
      SetFocus(child);
    }
    LOG_DEBUG("OverlayWindowProc: PostMessage keydown to Flutter window");
    if (key.PostTo(child)) return 1;
  }
  LOG_DEBUG("OverlayWindowProc: Overlay processed keydown");
  return 1;
}

// Gives the view the focus for a key message, but not while a mouse button is down.
void FocusChildForKey(HWND child, UINT message) {
  if (!IsKeyMessage(message) || IsMouseButtonHeld() || GetFocus() == child) return;
  LOG_DEBUG("OverlayWindowProc: Setting focus to Flutter window for keyboard input");
  SetFocus(child);
}

void LogOverlayInputMessage(const OverlayMessage& input) {
  LOG_DEBUG("OVERLAY_WINDOW_HANDLER: REAL INPUT MESSAGE! %u (key=%llu)", input.message,
            static_cast<unsigned long long>(input.wParam));
  LOG_DEBUG(" [Overlay style: %s]",
            GetWindowLongPtrA(input.overlay, GWL_EXSTYLE) & WS_EX_TRANSPARENT ? "CLICK_THROUGH" : "CAPTURES_INPUT");
}

LRESULT OnOverlayInput(VantroWindow* window, const OverlayMessage& input) {
  LogOverlayInputMessage(input);
  if (!HasEngine(window)) {
    LOG_ERROR("OverlayWindowProc: instance_=%p or flutterEngine_ is NULL!", static_cast<void*>(window));
    return input.Default();
  }
  if (const auto result = input.OfferTo(*window->flutterEngine_)) {
    LOG_DEBUG("OverlayWindowProc: Flutter engine handled message %u on overlay -> %lld", input.message,
              static_cast<long long>(*result));
    return *result;
  }
  LOG_DEBUG("OverlayWindowProc: Flutter engine did NOT handle message %u on overlay", input.message);
  if (const HWND child = LiveFlutterChild(window->flutterEngine_)) {
    FocusChildForKey(child, input.message);
    LOG_DEBUG("OverlayWindowProc: Trying PostMessage to Flutter window %p", static_cast<void*>(child));
    const bool posted = input.PostTo(child);
    LOG_DEBUG("OverlayWindowProc: PostMessage result: %s", posted ? "SUCCESS" : "FAILED");
    if (posted) return 1;
  }
  LOG_DEBUG("OverlayWindowProc: Overlay window processed keyboard input message %u", input.message);
  return 1;
}

LRESULT OnOverlayMouseMove(VantroWindow* window, const OverlayMessage& move) {
  if (!window) return move.Default();
  window->FollowPointer(TopAreaCaller::kOverlay);
  if (!window->flutterEngine_) return move.Default();
  if (const auto result = move.OfferTo(*window->flutterEngine_)) return *result;
  if (const HWND child = LiveFlutterChild(window->flutterEngine_)) move.PostTo(child);
  return 1;
}

// Wheel messages are sent and not posted, unlike other input, and are not offered to the engine first.
LRESULT OnOverlayWheel(VantroWindow* window, const OverlayMessage& wheel) {
  LOG_DEBUG("OVERLAY_WINDOW_HANDLER: MOUSE WHEEL MESSAGE %u - forwarding to Flutter window", wheel.message);
  const HWND child = HasEngine(window) ? LiveFlutterChild(window->flutterEngine_) : nullptr;
  if (!child) return wheel.Default();
  LOG_DEBUG("OverlayWindowProc: Forwarding WM_MOUSEWHEEL to Flutter window %p via SendMessage",
            static_cast<void*>(child));
  const LRESULT result = SendMessageA(child, wheel.message, wheel.wParam, wheel.lParam);
  LOG_DEBUG("OverlayWindowProc: SendMessage returned %lld", static_cast<long long>(result));
  return result;
}

}  // namespace

LRESULT CALLBACK OverlayWindowProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
  CountAndLog(message);
  const OverlayMessage received{hwnd, message, wParam, lParam};
  switch (message) {
    case WM_DESTROY:
      return 0;
    case WM_CLOSE:  // hidden only: the overlay is destroyed with its owner
      ShowWindow(hwnd, SW_HIDE);
      return 0;
    case WM_NCHITTEST:
      return HTCLIENT;
    case WM_KEYDOWN:
      return OnOverlayKeyDown(VantroWindow::instance_, received);
    case WM_KEYUP:
    case WM_CHAR:
    case WM_LBUTTONDOWN:
    case WM_LBUTTONUP:
    case WM_LBUTTONDBLCLK:
    case WM_RBUTTONDOWN:
    case WM_RBUTTONUP:
    case WM_RBUTTONDBLCLK:
    case WM_MBUTTONDOWN:
    case WM_MBUTTONUP:
    case WM_MBUTTONDBLCLK:
      return OnOverlayInput(VantroWindow::instance_, received);
    case WM_MOUSEMOVE:
      return OnOverlayMouseMove(VantroWindow::instance_, received);
    case WM_MOUSEWHEEL:
    case WM_MOUSEHWHEEL:
      return OnOverlayWheel(VantroWindow::instance_, received);
    default:
      return received.Default();
  }
}

}  // namespace vantro
