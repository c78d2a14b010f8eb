#include "shell/flutter_overlay.h"

#include <dwmapi.h>

#include <utility>

#include "common/log.h"
#include "common/measures.h"
#include "common/win32_geometry.h"
#include "shell/flutter_child.h"
#include "shell/overlay_diagnostics.h"
#include "shell/overlay_geometry.h"
#include "shell/overlay_input.h"
#include "shell/vantro_window.h"

namespace vantro {

namespace {

constexpr wchar_t kOverlayClass[] = L"VantroFlutterOverlay";
constexpr wchar_t kOverlayTitle[] = L"Flutter UI";

constexpr UINT kRaiseInPlace = SWP_NOSIZE | SWP_NOMOVE | SWP_NOACTIVATE;
constexpr UINT kQuietMove = SWP_NOACTIVATE | SWP_SHOWWINDOW;

// Set by the first registration. The class stays registered until the process ends.
bool overlayClassRegistered = false;

std::optional<Rect> OverlayRectOver(HWND window, int topOffset) {
  RECT client;
  if (!GetClientRect(window, &client)) return std::nullopt;
  POINT topLeft{client.left, client.top};
  ClientToScreen(window, &topLeft);
  const Rect area = FromWin32(client);
  return OverlayRectFor(FromWin32(topLeft), {area.Width(), area.Height()}, topOffset);
}

struct SentMessage {
  HWND window;
  UINT message;
  WPARAM wParam;
  LPARAM lParam;

  bool operator==(const SentMessage&) const = default;
};

// HWND_TOP raises an owned popup within its owner's group. It does not make it topmost.
void Place(HWND window, const Rect& rect, UINT flags) {
  SetWindowPos(window, HWND_TOP, rect.left, rect.top, rect.Width(), rect.Height(), flags);
}

bool RegisterOverlayClass(HINSTANCE instance) {
  if (overlayClassRegistered) return true;
  WNDCLASSEXW windowClass{};
  windowClass.cbSize = sizeof windowClass;
  windowClass.style = CS_VREDRAW | CS_HREDRAW | CS_DBLCLKS;
  windowClass.lpfnWndProc = OverlayWindowProc;
  windowClass.hInstance = instance;
  windowClass.hCursor = LoadCursor(nullptr, IDC_ARROW);
  windowClass.hbrBackground = static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH));
  windowClass.lpszClassName = kOverlayClass;
  if (!RegisterClassExW(&windowClass)) {
    const DWORD error = GetLastError();
    LOG_ERROR("CreateFlutterOverlay: Failed to register overlay class: %lu", error);
    return false;
  }
  overlayClassRegistered = true;
  LOG_INFO("CreateFlutterOverlay: Overlay window class registered");
  return true;
}

}  // namespace

FlutterOverlay::FlutterOverlay(const HWND& mainWindow, const std::unique_ptr<FlutterEngine>& engine)
    : hwnd_(mainWindow), flutterEngine_(engine) {}

bool FlutterOverlay::CreateFlutterOverlay(HINSTANCE instance) {
  LOG_INFO("CreateFlutterOverlay: Starting Flutter overlay creation");
  if (!hwnd_ || !IsWindow(hwnd_)) {
    LOG_WARNING("CreateFlutterOverlay: Main window not ready");
    return false;
  }
  if (!RegisterOverlayClass(instance)) return false;

  const Rect rect = OverlayRectOver(hwnd_, TITLE_BAR_HEIGHT).value_or(Rect{});
  LogOverlayCreation(hwnd_, rect);
  // Click-through until EnableOverlayMouseInput runs at the end of the start.
  flutterHostWindow_ =
      CreateWindowExW(WS_EX_TRANSPARENT | WS_EX_TOOLWINDOW, kOverlayClass, kOverlayTitle, WS_POPUP | WS_VISIBLE,
                      rect.left, rect.top, rect.Width(), rect.Height(), hwnd_, nullptr, instance, nullptr);
  if (!flutterHostWindow_) {
    const DWORD error = GetLastError();
    LOG_ERROR("CreateFlutterOverlay: Failed to create overlay window: %lu", error);
    return false;
  }
  LOG_INFO("CreateFlutterOverlay: Created overlay window: %p", static_cast<void*>(flutterHostWindow_));

  // With the glass frame over the whole client area, the video shows through where the interface draws nothing.
  const MARGINS wholeClientArea{-1, -1, -1, -1};
  const HRESULT extended = DwmExtendFrameIntoClientArea(flutterHostWindow_, &wholeClientArea);
  LOG_DEBUG("CreateFlutterOverlay: DwmExtendFrameIntoClientArea result: %s",
            SUCCEEDED(extended) ? "SUCCESS" : "FAILED");
  if (FAILED(extended)) {
    LOG_ERROR("CreateFlutterOverlay: DWM error code: 0x%lX", static_cast<unsigned long>(extended));
  }
  LOG_INFO("CreateFlutterOverlay: UpdateLayeredWindow setup completed");
  LOG_INFO("CreateFlutterOverlay: Initial state is click-through (WS_EX_TRANSPARENT)");
  LOG_INFO("CreateFlutterOverlay: Successfully created Flutter overlay");
  LOG_INFO("CreateFlutterOverlay: Final verification - handle is: %p", static_cast<void*>(flutterHostWindow_));
  return true;
}

void FlutterOverlay::SyncFlutterOverlayPosition(bool isFullscreen) {
  // Moving the overlay makes the system send messages that call this function again.
  if (isSyncingOverlay_) return;
  isSyncingOverlay_ = true;
  MoveOverClientArea(isFullscreen);
  isSyncingOverlay_ = false;
}

void FlutterOverlay::MoveOverClientArea(bool isFullscreen) {
  LOG_DEBUG("SyncFlutterOverlayPosition: Checking overlay window: %p", static_cast<void*>(flutterHostWindow_));
  if (!flutterHostWindow_) {
    LOG_ERROR("SyncFlutterOverlayPosition: ERROR - flutterHostWindow_ is NULL!");
    return;
  }
  if (!IsWindow(flutterHostWindow_)) {
    LOG_ERROR("SyncFlutterOverlayPosition: ERROR - flutterHostWindow_ is not a valid window!");
    return;
  }
  const auto rect = OverlayRectOver(hwnd_, OverlayTopOffset(isFullscreen, TITLE_BAR_HEIGHT));
  if (!rect) return;
  // No SWP_NOACTIVATE: the overlay may become active. Every sync also raises it.
  Place(flutterHostWindow_, *rect, SWP_SHOWWINDOW);
  if (const HWND child = LiveFlutterChild(flutterEngine_)) {
    Place(child, {0, 0, rect->Width(), rect->Height()}, kQuietMove);
    // The view has the focus after every move, even if the search box had it before.
    SetFocus(child);
    LOG_DEBUG("SyncFlutterOverlayPosition: Set focus to Flutter engine window: %p", static_cast<void*>(child));
    LOG_DEBUG("SyncFlutterOverlayPosition: Resized Flutter window to %dx%d", rect->Width(), rect->Height());
  }
  LOG_DEBUG("SyncFlutterOverlayPosition: Updated overlay to client area %ld,%ld %dx%d", long{rect->left},
            long{rect->top}, rect->Width(), rect->Height());
}

std::optional<Rect> FlutterOverlay::MoveBelow(int topOffset) {
  if (!IsAlive()) return std::nullopt;
  const Rect rect = OverlayRectOver(hwnd_, topOffset).value_or(Rect{});
  Place(flutterHostWindow_, rect, kQuietMove);
  if (const HWND child = LiveFlutterChild(flutterEngine_))
    Place(child, {0, 0, rect.Width(), rect.Height()}, kQuietMove);
  return rect;
}

void FlutterOverlay::ApplyTopmost(bool topmost) {
  const HWND band = topmost ? HWND_TOPMOST : HWND_NOTOPMOST;
  constexpr UINT kInPlace = SWP_NOSIZE | SWP_NOMOVE;
  SetWindowPos(hwnd_, band, 0, 0, 0, 0, kInPlace);
  if (IsWindow(flutterHostWindow_)) SetWindowPos(flutterHostWindow_, band, 0, 0, 0, 0, kInPlace);
}

void FlutterOverlay::SetFlutterOverlayTopmost() {
  if (!IsAlive()) return;
  if (GetTopWindow(GetDesktopWindow()) == flutterHostWindow_) return;
  SetWindowPos(flutterHostWindow_, HWND_TOP, 0, 0, 0, 0, kRaiseInPlace);
  LOG_DEBUG("SetFlutterOverlayTopmost: Top position applied with NOACTIVATE");
}

void FlutterOverlay::EnableOverlayMouseInput() {
  LOG_DEBUG("=== EnableOverlayMouseInput CALLED ===");
  if (!IsAlive()) {
    LOG_ERROR("EnableOverlayMouseInput: ERROR - overlay window invalid!");
    LOG_ERROR("EnableOverlayMouseInput: flutterHostWindow_ = %p", static_cast<void*>(flutterHostWindow_));
    return;
  }
  const LONG_PTR exStyle = GetWindowLongPtrA(flutterHostWindow_, GWL_EXSTYLE);
  SetWindowLongPtrA(flutterHostWindow_, GWL_EXSTYLE, exStyle & ~LONG_PTR{WS_EX_TRANSPARENT});
  // Three times on purpose: a single raise is not reliable when other windows raise themselves at the same time.
  for (int raise = 0; raise < 3; ++raise) {
    SetWindowPos(flutterHostWindow_, HWND_TOP, 0, 0, 0, 0, kRaiseInPlace | SWP_SHOWWINDOW);
  }
  LOG_INFO("EnableOverlayMouseInput: Applied TOP positioning multiple times");
  // Covers the title bar as well. The first WM_SHOWWINDOW moves the overlay below it.
  const Rect rect = OverlayRectOver(hwnd_, 0).value_or(Rect{});
  Place(flutterHostWindow_, rect, kQuietMove);
  if (const HWND child = LiveFlutterChild(flutterEngine_)) {
    Place(child, {0, 0, rect.Width(), rect.Height()}, kQuietMove);
    ShowWindow(child, SW_SHOW);
    SetFocus(child);
  }
  LogOverlayInput({hwnd_, flutterHostWindow_, FlutterChild(flutterEngine_)}, exStyle);
  LOG_DEBUG("=== EnableOverlayMouseInput COMPLETED ===");
}

void FlutterOverlay::Destroy() {
  if (!IsWindow(flutterHostWindow_)) return;
  LOG_DEBUG("Destructor: Destroying overlay window: %p", static_cast<void*>(flutterHostWindow_));
  DestroyWindow(flutterHostWindow_);
  flutterHostWindow_ = nullptr;
}

// Each window installs one hook. All hooks have the same procedure, which follows only the newest window.
void FlutterOverlay::InstallWindowHook() {
  windowHook_ = SetWindowsHookExA(WH_CALLWNDPROC, WindowSyncHookProc, GetModuleHandleA(nullptr), GetCurrentThreadId());
  if (windowHook_) {
    LOG_INFO("Window hook installed successfully for window synchronization");
  } else {
    const DWORD error = GetLastError();
    LOG_ERROR("Failed to set window hook: %lu", error);
  }
}

void FlutterOverlay::RemoveWindowHook() {
  if (!windowHook_) return;
  UnhookWindowsHookEx(windowHook_);
  windowHook_ = nullptr;
}

// Follows only the newest window. Older windows move their overlays in their own message handlers.
//
// Every window installs a hook, and each hook passes the message to the next one, so this procedure runs once per
// window for each message. Only the first run follows the main window; the others just pass the message on. A move
// therefore syncs once from here, however many windows the process has opened.
LRESULT CALLBACK FlutterOverlay::WindowSyncHookProc(int nCode, WPARAM wParam, LPARAM lParam) {
  // The message that the hooks are passing along the chain. It is compared by value, because another program's hook in
  // between may pass on a copy.
  static SentMessage inChain;
  SentMessage message{};
  VantroWindow* const newest = VantroWindow::instance_;
  if (nCode >= 0) {
    if (!newest) return CallNextHookEx(nullptr, nCode, wParam, lParam);
    if (const auto* const sent = reinterpret_cast<const CWPSTRUCT*>(lParam)) {
      message = {sent->hwnd, sent->message, sent->wParam, sent->lParam};
      if (message != inChain && message.window == newest->hwnd_) {
        newest->Overlay().Follow(message.message, message.wParam, newest->isFullscreen());
      }
    }
  }
  const SentMessage outer = std::exchange(inChain, message);
  // Read again: the code above may have destroyed the window.
  const HHOOK hook = VantroWindow::instance_ ? VantroWindow::instance_->Overlay().windowHook_ : nullptr;
  const LRESULT result = CallNextHookEx(hook, nCode, wParam, lParam);
  inChain = outer;
  return result;
}

void FlutterOverlay::Follow(UINT message, WPARAM wParam, bool isFullscreen) {
  switch (message) {
    case WM_MOVE:
    case WM_SIZE:
    case WM_SHOWWINDOW:
      SyncFlutterOverlayPosition(isFullscreen);
      break;
    case WM_ACTIVATE:
      // Compares the whole value: a minimized window sets the high word, and then neither constant matches.
      if (wParam == WA_ACTIVE || wParam == WA_CLICKACTIVE) SetFlutterOverlayTopmost();
      break;
  }
}

}  // namespace vantro
