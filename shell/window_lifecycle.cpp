// Construction, start and destruction of a window object.
#include <utility>

#include "common/log.h"
#include "common/text.h"
#include "shell/gdiplus_drawing.h"
#include "shell/vantro_window.h"
#include "shell/window_manager.h"

namespace vantro {

VantroWindow* VantroWindow::instance_ = nullptr;

VantroWindow::VantroWindow(HINSTANCE hInstance) : hInstance_(hInstance) {
  instance_ = this;
  Gdiplus::GdiplusStartupInput input;
  Gdiplus::GdiplusStartup(&gdiplusToken_, &input, nullptr);
  LOG_INFO("=== NEW VANTRO SESSION STARTED - KEYBOARD LOGGING ENABLED ===");
  backgroundBrush_ = CreateSolidBrush(RGB(0, 0, 0));
  LOG_INFO("VantroWindow constructor called");
  LOG_DEBUG("Window class name: %s", NarrowFromWide(className_).c_str());
  LOG_DEBUG("Window title: %s", NarrowFromWide(windowTitle_).c_str());
}

bool VantroWindow::Initialize() {
  LOG_INFO("VantroWindow::Initialize() started");
  if (!InitializeWindow()) {
    LOG_ERROR("VantroWindow::InitializeWindow() failed");
    return false;
  }
  LOG_INFO("VantroWindow::InitializeWindow() succeeded");
  if (!InitializeVLC()) {
    LOG_ERROR("VantroWindow::InitializeVLC() failed");
    return false;
  }
  LOG_INFO("VantroWindow::InitializeVLC() succeeded");
  // Without the overlay the start fails below, because the view has no parent.
  if (overlay_.CreateFlutterOverlay(hInstance_)) {
    LOG_INFO("VantroWindow::CreateFlutterOverlay() succeeded");
  } else {
    LOG_WARNING("VantroWindow::CreateFlutterOverlay() failed");
  }
  if (!InitializeFlutter()) {
    LOG_ERROR("VantroWindow::InitializeFlutter() failed");
    return false;
  }
  overlay_.InstallWindowHook();
  overlay_.EnableOverlayMouseInput();
  if (flutterHostWindow()) {
    overlay_.SetFlutterOverlayTopmost();
    LOG_DEBUG("Final Z-order: Set Flutter overlay on top after all initialization");
  }
  LOG_INFO("VantroWindow::InitializeFlutter() succeeded");
  // Last: the player has started without the stored settings. They may make window and overlay topmost.
  commands_.LoadSettings();
  LOG_INFO("VantroWindow::Initialize() completed successfully");
  return true;
}

// Works with any subset of null members, because it also ends a window whose start failed half-way.
VantroWindow::~VantroWindow() {
  LOG_INFO("~VantroWindow: Destructor called for window %p", static_cast<void*>(this));
  LOG_INFO("~VantroWindow: IsShuttingDown() = %s", IsShuttingDown() ? "true" : "false");
  LOG_INFO("~VantroWindow: Current window count before unregister: %zu", GetWindowRegistry().size());
  if (!IsShuttingDown()) {
    UnregisterWindow(this);
    LOG_INFO("~VantroWindow: Window unregistered, remaining windows: %zu", GetWindowRegistry().size());
    if (GetWindowRegistry().empty()) {
      LOG_INFO("~VantroWindow: This was the last window - forcing application exit");
      PostQuitMessage(0);
    }
  }
  if (reservedTimerId_) KillTimer(hwnd_, std::exchange(reservedTimerId_, 0));
  search_.StopDebounceTimer();
  overlay_.RemoveWindowHook();
  // The handler is destroyed first: its destructor writes the session marker and still uses engine and player.
  methodChannelHandler_.reset();
  flutterEngine_.reset();
  vlcPlayer_.reset();
  overlay_.Destroy();
  // Fails while any window of the class exists.
  if (hInstance_) UnregisterClassW(className_.c_str(), hInstance_);
  DeleteObject(backgroundBrush_);
  titleBar_.EndDrawing();
  Gdiplus::GdiplusShutdown(gdiplusToken_);
  if (instance_ == this) instance_ = nullptr;
  // After a failed start the native window still exists. From here on only the system handles its messages.
  if (IsWindow(hwnd_)) SetWindowLongPtrA(hwnd_, GWLP_USERDATA, 0);
}

}  // namespace vantro
