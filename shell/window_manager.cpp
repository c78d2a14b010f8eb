#include "shell/window_manager.h"

#include <windows.h>

#include <algorithm>
#include <exception>
#include <utility>

#include "common/log.h"
#include "common/win32_geometry.h"
#include "shell/vantro_window.h"
#include "shell/window_placement.h"

namespace vantro {

namespace {

bool shuttingDown = false;

Rect WorkAreaOf(HWND window) {
  MONITORINFO monitor{};
  monitor.cbSize = sizeof monitor;
  GetMonitorInfoA(MonitorFromWindow(window, MONITOR_DEFAULTTONEAREST), &monitor);
  return FromWin32(monitor.rcWork);
}

void LogPlacement(const WindowPlacement& placement) {
  switch (placement.rule) {
    case PlacementRule::kRight:
      LOG_INFO("CreateNewWindow: Placing window to the right with %dpx gap", placement.dx);
      break;
    case PlacementRule::kLeft:
      LOG_INFO("CreateNewWindow: Placing window to the left with %dpx gap", placement.dx);
      break;
    case PlacementRule::kBelow:
      LOG_INFO("CreateNewWindow: Placing window below with %dpx gap", placement.dy);
      break;
    case PlacementRule::kLargeOffset:
      LOG_INFO("CreateNewWindow: Using large offset positioning (%dpx, %dpx)", placement.dx, placement.dy);
      break;
  }
}

// Owns a window until it is registered. A window that fails before that leaves a hidden native window, and requests for
// new windows would be lost on it. The destructor therefore destroys the native window too. It does so after the
// object, so that the native window has no object to call.
class UnregisteredWindow {
 public:
  explicit UnregisteredWindow(HINSTANCE instance) : window_(std::make_unique<VantroWindow>(instance)) {}
  ~UnregisteredWindow() {
    if (!window_) return;
    const HWND native = window_->hwnd_;
    window_.reset();
    if (IsWindow(native)) DestroyWindow(native);
  }
  UnregisteredWindow(const UnregisteredWindow&) = delete;
  UnregisteredWindow& operator=(const UnregisteredWindow&) = delete;

  VantroWindow* operator->() const { return window_.get(); }
  std::unique_ptr<VantroWindow> Release() { return std::move(window_); }

 private:
  std::unique_ptr<VantroWindow> window_;
};

void CreateShowAndRegister(const VantroWindow& reference) {
  UnregisteredWindow window(reference.Instance());
  if (!window->Initialize()) {
    LOG_ERROR("CreateNewWindow: Failed to initialize new window");
    return;
  }
  // Uses the reference's size, which is its client size in the normal state, for the new window.
  const WindowPlacement placement = PlaceNewWindow(
      OuterRect(reference.hwnd_), {reference.Size().width_, reference.Size().height_}, WorkAreaOf(reference.hwnd_));
  LogPlacement(placement);
  SetWindowPos(window->hwnd_, nullptr, placement.x, placement.y, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
  ShowWindow(window->hwnd_, SW_SHOWNORMAL);
  UpdateWindow(window->hwnd_);
  RegisterWindow(window.Release());
  LOG_INFO("CreateNewWindow: New window created and shown successfully");
}

}  // namespace

std::vector<std::unique_ptr<VantroWindow>>& GetWindowRegistry() {
  static std::vector<std::unique_ptr<VantroWindow>> windowRegistry;
  return windowRegistry;
}

bool IsShuttingDown() { return shuttingDown; }

void CreateNewWindow(VantroWindow& referenceWindow) {
  LOG_INFO("CreateNewWindow: Creating new window instance");
  try {
    CreateShowAndRegister(referenceWindow);
  } catch (const std::exception& e) {
    LOG_ERROR("CreateNewWindow: Exception creating new window: %s", e.what());
  } catch (...) {
    LOG_ERROR("CreateNewWindow: Unknown exception creating new window");
  }
}

void RegisterWindow(std::unique_ptr<VantroWindow> ownedWindow) {
  if (shuttingDown) return;
  LOG_INFO("RegisterWindow: Registering window %p", static_cast<void*>(ownedWindow.get()));
  GetWindowRegistry().push_back(std::move(ownedWindow));
  LOG_INFO("RegisterWindow: Total windows now: %zu", GetWindowRegistry().size());
}

void UnregisterWindow(VantroWindow* window) {
  if (shuttingDown) return;
  LOG_INFO("UnregisterWindow: Unregistering window %p", static_cast<void*>(window));
  auto& registry = GetWindowRegistry();
  const auto entry =
      std::find_if(registry.begin(), registry.end(), [window](const auto& owned) { return owned.get() == window; });
  if (entry == registry.end()) {
    LOG_WARNING("UnregisterWindow: Window %p not found in registry", static_cast<void*>(window));
    return;
  }
  // The caller is the window's destructor, so the entry must not delete the window.
  static_cast<void>(entry->release());
  registry.erase(entry);
  LOG_INFO("UnregisterWindow: Window removed. Total windows now: %zu", registry.size());
}

size_t CountActiveWindows() {
  const auto& registry = GetWindowRegistry();
  return static_cast<size_t>(std::count_if(registry.begin(), registry.end(),
                                           [](const auto& window) { return window && !window->isClosing_; }));
}

void BeginClosing(VantroWindow& window) {
  LOG_INFO("WM_CLOSE: Window %p close requested", static_cast<void*>(&window));
  window.isClosing_ = true;
  const size_t active = CountActiveWindows();
  LOG_INFO("WM_CLOSE: Total windows: %zu, Active windows after marking this as closing: %zu",
           GetWindowRegistry().size(), active);
  if (active != 0) {
    LOG_INFO("WM_CLOSE: %zu active windows remain - not exiting application", active);
  } else {
    LOG_INFO("WM_CLOSE: No active windows remain - exiting application");
    PostQuitMessage(0);
  }
}

void ServeNewWindowRequest(VantroWindow& referenceWindow) {
  LOG_INFO("=== RECEIVED WM_VANTRO_NEW_WINDOW MESSAGE ===");
  LOG_INFO("Message received on window: %p", static_cast<void*>(&referenceWindow));
  LOG_INFO("Current window count before: %zu", GetWindowRegistry().size());
  CreateNewWindow(referenceWindow);
  LOG_INFO("Current window count after: %zu", GetWindowRegistry().size());
  LOG_INFO("=== NEW WINDOW REQUEST COMPLETED ===");
}

void ToggleWindowFullscreen(VantroWindow& window) { window.ToggleFullscreen(); }

MethodChannelHandler* MasterHandler() {
  const auto& windows = GetWindowRegistry();
  return windows.empty() || !windows.front() ? nullptr : windows.front()->methodChannelHandler_.get();
}

void BroadcastEncodableToClientWindows(const std::string& methodName, const OwnedValue& value) {
  const auto& registry = GetWindowRegistry();
  LOG_INFO("BroadcastEncodableToClientWindows: Broadcasting '%s' to %zu windows", methodName.c_str(), registry.size());
  // The size is read in each round, because a call may run code that opens a window. Closed windows are called as well.
  for (size_t position = 1; position < registry.size(); ++position) {
    const VantroWindow* const window = registry[position].get();
    if (!window || !window->methodChannelHandler_) continue;
    LOG_INFO("BroadcastEncodableToClientWindows: Sending to client window %zu", position);
    MethodChannel* const channel = window->methodChannelHandler_->methodChannel_.get();
    if (channel) channel->InvokeMethod(methodName, value);
  }
}

void ShutdownWindowManager() {
  LOG_INFO("ShutdownWindowManager: Setting shutdown flag and clearing all windows");
  shuttingDown = true;
  auto& registry = GetWindowRegistry();
  for (auto& window : registry) window.reset();
  registry.clear();
}

}  // namespace vantro
