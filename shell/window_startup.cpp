// The steps of a window's start: its native window, its player, its view with the channels.
#include <exception>
#include <new>

#include "common/log.h"
#include "common/text.h"
#include "shell/shell_ids.h"
#include "shell/startup_diagnostics.h"
#include "shell/vantro_window.h"
#include "shell/window_manager.h"

namespace vantro {

namespace {

// Set by the first registration and never reset, even when the class is unregistered with its last window.
bool windowClassRegistered = false;

// Returns the string as narrow text for a log line, or "empty".
std::string TextOrEmpty(const std::wstring& wide) { return wide.empty() ? "empty" : NarrowFromWide(wide); }

HICON LoadSystemIcon() {
  LOG_INFO("Using default icon instead");
  return LoadIconA(nullptr, IDI_APPLICATION);
}

HICON LoadMainIcon(HINSTANCE instance) {
  const HICON icon = LoadIconA(instance, MAKEINTRESOURCEA(kAppIconResource));
  return icon ? icon : LoadSystemIcon();
}

HICON LoadSmallIcon(HINSTANCE instance) {
  const HICON icon = LoadIconA(instance, MAKEINTRESOURCEA(kSmallIconResource));
  if (icon) return icon;
  const DWORD error = GetLastError();
  LOG_WARNING("Warning: LoadIcon for small icon failed with error: %lu", error);
  return LoadSystemIcon();
}

}  // namespace

bool VantroWindow::RegisterWindowClass() {
  if (windowClassRegistered) {
    LOG_INFO("Window class already registered - skipping registration");
    return true;
  }
  LOG_INFO("Registering window class for the first time");
  WNDCLASSEXW windowClass{};
  windowClass.cbSize = sizeof windowClass;
  windowClass.style = CS_VREDRAW | CS_HREDRAW | CS_DBLCLKS;
  windowClass.lpfnWndProc = WindowProc;
  windowClass.cbWndExtra = sizeof(LONG_PTR);
  windowClass.hInstance = hInstance_;
  windowClass.hIcon = LoadMainIcon(hInstance_);
  windowClass.hCursor = LoadCursor(nullptr, IDC_ARROW);
  windowClass.hbrBackground = backgroundBrush_;
  windowClass.lpszClassName = className_.c_str();
  windowClass.hIconSm = LoadSmallIcon(hInstance_);
  if (RegisterClassExW(&windowClass)) {
    LOG_INFO("Window class registered successfully");
  } else if (const DWORD error = GetLastError(); error == ERROR_CLASS_ALREADY_EXISTS) {
    LOG_INFO("Window class already exists - continuing");
  } else {
    LOG_ERROR("RegisterClassExW failed with error: %lu", error);
    return false;
  }
  windowClassRegistered = true;
  return true;
}

bool VantroWindow::InitializeWindow() {
  LOG_INFO("VantroWindow::InitializeWindow() started");
  if (!RegisterWindowClass()) return false;
  LOG_DEBUG("Creating window with class name: %s", TextOrEmpty(className_).c_str());
  LOG_DEBUG("Window title: %s", TextOrEmpty(windowTitle_).c_str());
  hwnd_ = CreateWindowExW(0, className_.c_str(), windowTitle_.c_str(), WS_OVERLAPPEDWINDOW, CW_USEDEFAULT,
                          CW_USEDEFAULT, size_.width_, size_.height_, nullptr, nullptr, hInstance_, nullptr);
  if (!hwnd_) {
    const DWORD error = GetLastError();
    LogWindowCreationFailure(hInstance_, error);
    return false;
  }
  // Stored only now, so that the system handles all messages of the creation.
  SetWindowLongPtrA(hwnd_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  LOG_INFO("Window created successfully with HWND: %p", static_cast<void*>(hwnd_));
  LOG_INFO("Set this pointer in GWLP_USERDATA: %p", static_cast<void*>(this));
  titleBar_.RemoveStandardTitleBar();
  titleBar_.CreateCustomTitleBar(hInstance_);
  return true;
}

bool VantroWindow::InitializeVLC() {
  LOG_INFO("VantroWindow::InitializeVLC() started");
  LOG_DEBUG("Window handle (HWND): %p", static_cast<void*>(hwnd_));
  if (!hwnd_ || !IsWindow(hwnd_)) {
    LOG_ERROR("ERROR: Invalid window handle before VLC initialization");
    if (!hwnd_) {
      LOG_ERROR("Window handle is NULL");
    } else {
      LOG_ERROR("IsWindow() reports handle is not a valid window");
    }
    return false;
  }
  LogVlcRuntime();
  try {
    LOG_INFO("Creating VLCPlayer instance");
    vlcPlayer_.reset(new (std::nothrow) VLCPlayer);
    if (!vlcPlayer_) {
      LOG_ERROR("ERROR: Failed to create VLCPlayer instance");
      return false;
    }
    LOG_INFO("Calling VLCPlayer::Initialize");
    if (vlcPlayer_->Initialize(hwnd_)) {
      LOG_INFO("VLC initialized successfully");
      return true;
    }
    LOG_ERROR("VLC initialization failed");
    LogLibVlcLoad();
  } catch (const std::exception& e) {
    LOG_ERROR("EXCEPTION during VLC initialization: %s", e.what());
  } catch (...) {
    LOG_ERROR("UNKNOWN EXCEPTION during VLC initialization");
  }
  return false;
}

bool VantroWindow::InitializeFlutter() {
  LOG_INFO("VantroWindow::InitializeFlutter() started");
  LOG_DEBUG("Checking for Flutter assets...");
  LogFlutterBundle();
  flutterEngine_ = std::make_unique<FlutterEngine>();
  LOG_DEBUG("InitializeFlutter: Checking overlay handle: %p", static_cast<void*>(flutterHostWindow()));
  if (!flutterHostWindow()) {
    LOG_ERROR("ERROR: No separate Flutter window available! Cannot initialize Flutter.");
    LOG_ERROR("ERROR: flutterHostWindow_ is NULL in InitializeFlutter!");
    return false;
  }
  if (!IsWindow(flutterHostWindow())) {
    LOG_ERROR("ERROR: flutterHostWindow_ is not a valid window in InitializeFlutter!");
    LOG_ERROR("ERROR: Handle %p is invalid!", static_cast<void*>(flutterHostWindow()));
    return false;
  }
  LOG_INFO("Initializing Flutter with SEPARATE window: %p", static_cast<void*>(flutterHostWindow()));
  if (!flutterEngine_->Initialize(flutterHostWindow())) {
    LOG_ERROR("Flutter engine initialization failed");
    return false;
  }
  LOG_INFO("Flutter engine initialized successfully");
  if (!CreateMethodChannelHandler()) return false;
  CreateThumbnailWorker();
  LOG_INFO("Flutter initialization completed successfully");
  LOG_DEBUG("After Flutter init - overlay handle: %p", static_cast<void*>(flutterHostWindow()));
  LOG_DEBUG("After Flutter init - IsWindow check: %s", IsWindow(flutterHostWindow()) ? "VALID" : "INVALID");
  return true;
}

bool VantroWindow::CreateMethodChannelHandler() {
  // A window is registered after its start, so only the first window of the process is the master.
  const bool isMaster = GetWindowRegistry().empty();
  try {
    methodChannelHandler_ =
        std::make_unique<MethodChannelHandler>(flutterEngine_.get(), vlcPlayer_.get(), isMaster, this);
    LOG_INFO("Method channel handler created successfully");
    return true;
  } catch (const std::exception& e) {
    LOG_ERROR("Exception creating method channel handler: %s", e.what());
  } catch (...) {
    LOG_ERROR("Unknown exception creating method channel handler");
  }
  return false;
}

// Any failure is accepted: the window then works without thumbnails.
void VantroWindow::CreateThumbnailWorker() {
  try {
    BinaryMessenger* const messenger = flutterEngine_->GetMessenger();
    if (!messenger) {
      LOG_WARNING("WARNING: Binary messenger is null");
      LOG_WARNING("WARNING: Cannot create VOD thumbnail worker plugin - messenger is null");
      return;
    }
    LOG_INFO("Binary messenger is available");
    vodThumbnailPlugin_.reset(new (std::nothrow) vod_thumbnail::VodThumbnailWorkerPlugin(messenger));
    if (vodThumbnailPlugin_) {
      LOG_INFO("VOD thumbnail worker plugin created successfully");
    } else {
      LOG_WARNING("WARNING: Failed to create VOD thumbnail worker plugin");
    }
  } catch (const std::exception& e) {
    LOG_ERROR("Exception creating VOD thumbnail worker plugin: %s", e.what());
  } catch (...) {
    LOG_ERROR("Unknown exception creating VOD thumbnail worker plugin");
  }
}

}  // namespace vantro
