// The process: one instance per user session, one message loop for all windows, an orderly shutdown.
#include <windows.h>

#include <objbase.h>

#include <exception>
#include <memory>

#include "common/log.h"
#include "shell/crash_filter.h"
#include "shell/shell_ids.h"
#include "shell/vantro_window.h"
#include "shell/window_manager.h"

namespace vantro {

namespace {

constexpr wchar_t kInstanceMutex[] = L"Vantro_SingleInstance_Mutex";
constexpr wchar_t kWindowClass[] = L"VantroWindowClass";

constexpr int kExitNormal = 0;
constexpr int kExitStartFailed = 1;

// Any main window of the running process can handle the request, so this uses the first one that the system finds. If
// that process has no window yet, the request is lost: this process does not wait.
void RequestWindowFromRunningInstance() {
  LOG_INFO("Vantro instance already running - requesting new window");
  const HWND window = FindWindowW(kWindowClass, nullptr);
  if (!window) {
    LOG_WARNING("Could not find existing Vantro window - no instance running?");
    return;
  }
  LOG_INFO("Found existing Vantro window: %p, sending new window request", static_cast<void*>(window));
  const bool posted = PostMessageA(window, WM_VANTRO_NEW_WINDOW, 0, 0);
  LOG_INFO("PostMessage result: %s", posted ? "SUCCESS" : "FAILED");
}

void ShowStartError(const char* text) { MessageBoxA(nullptr, text, "Error", MB_ICONERROR); }

// Returns null if the window cannot start; the failure is logged and shown.
std::unique_ptr<VantroWindow> CreateFirstWindow(HINSTANCE instance) {
  auto window = std::make_unique<VantroWindow>(instance);
  LOG_INFO("Window instance created");
  if (!window->Initialize()) {
    LOG_ERROR("Failed to initialize application window");
    ShowStartError("Failed to initialize application");
    // Before the window is destroyed: its destructor runs without COM.
    CoUninitialize();
    return nullptr;
  }
  LOG_INFO("Window initialized successfully");
  return window;
}

// Dispatches the messages of all windows until WM_QUIT. A failed GetMessageA (-1) is treated like a message.
int RunMessageLoop() {
  MSG message{};
  while (GetMessageA(&message, nullptr, 0, 0)) {
    TranslateMessage(&message);
    DispatchMessageA(&message);
  }
  return static_cast<int>(message.wParam);
}

int Run(HINSTANCE instance, int showCommand) {
  SetUnhandledExceptionFilter(UnhandledExceptionHandler);
  std::set_terminate(RaiseUncaughtException);
  LOG_INFO("Vantro Initialization Started");

  // Only the existence of the mutex matters; no thread waits for it. A start that fails below leaves the mutex open,
  // and the system closes it when the process has ended.
  const HANDLE mutex = CreateMutexW(nullptr, FALSE, kInstanceMutex);
  if (GetLastError() == ERROR_ALREADY_EXISTS) {
    RequestWindowFromRunningInstance();
    if (mutex) CloseHandle(mutex);
    return kExitNormal;
  }

  const HRESULT com = CoInitializeEx(nullptr, COINIT_MULTITHREADED);
  if (FAILED(com)) {
    LOG_ERROR("Failed to initialize COM: 0x%lX", static_cast<unsigned long>(com));
    ShowStartError("Failed to initialize COM");
    return kExitStartFailed;
  }
  LOG_INFO("COM initialized successfully");

  std::unique_ptr<VantroWindow> first = CreateFirstWindow(instance);
  if (!first) return kExitStartFailed;
  ShowWindow(first->hwnd_, showCommand);
  UpdateWindow(first->hwnd_);
  LOG_INFO("Window shown");
  RegisterWindow(std::move(first));
  LOG_INFO("Initial window registered with window manager");

  const int exitCode = RunMessageLoop();

  ShutdownWindowManager();
  CoUninitialize();
  if (mutex) CloseHandle(mutex);
  LOG_INFO("Application terminated");
  return exitCode;
}

}  // namespace

}  // namespace vantro

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR, int showCommand) {
  return vantro::Run(instance, showCommand);
}
