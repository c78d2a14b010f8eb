#include "shell/startup_diagnostics.h"

#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>

#include "common/log.h"
#include "player/vlc_runtime.h"

namespace vantro {

namespace {

// Converts from the ANSI code page, in which the system returned the narrow path; std::filesystem would read it as
// UTF-8.
std::filesystem::path PathFromAnsi(const std::string& narrow) {
  const int narrowLength = static_cast<int>(narrow.size());
  const int length = MultiByteToWideChar(CP_ACP, 0, narrow.data(), narrowLength, nullptr, 0);
  std::wstring wide(static_cast<size_t>(length), L'\0');
  MultiByteToWideChar(CP_ACP, 0, narrow.data(), narrowLength, wide.data(), length);
  return wide;
}

// A path that cannot be queried counts as absent.
bool CanBeFound(const std::string& path) {
  std::error_code error;
  return std::filesystem::exists(PathFromAnsi(path), error);
}

// Throws if the path cannot be queried.
bool Exists(const std::string& path) { return std::filesystem::exists(PathFromAnsi(path)); }

unsigned long long FileSize(const std::string& path) { return std::filesystem::file_size(PathFromAnsi(path)); }

// Uses the system call, because a variable that cannot be read has its own log line.
void LogPathVariable() {
  const DWORD size = GetEnvironmentVariableA("PATH", nullptr, 0);
  if (size == 0) {
    LOG_WARNING("PATH environment variable not found or empty");
    return;
  }
  std::string value(size, '\0');
  const DWORD length = GetEnvironmentVariableA("PATH", value.data(), size);
  if (length == 0 || length >= size) {
    LOG_WARNING("Failed to get PATH environment variable");
    return;
  }
  LOG_INFO("PATH environment variable: %s", value.c_str());
}

void LogKernelAndLibrary(const std::string& assets) {
  const std::string kernel = assets + "\\kernel_blob.bin";
  if (Exists(kernel)) {
    LOG_INFO("kernel_blob.bin found (%llu bytes)", FileSize(kernel));
  } else {
    LOG_WARNING("WARNING: kernel_blob.bin not found!");
  }
  const std::string library = assets + "\\app.so";
  if (Exists(library)) {
    LOG_INFO("app.so found (%llu bytes)", FileSize(library));
  } else {
    LOG_INFO("Note: app.so not found (JIT mode)");
  }
}

}  // namespace

void LogVlcRuntime() {
  const std::string directory = GetVlcPath();
  LOG_INFO("VLC path: %s", directory.c_str());
  if (!CanBeFound(directory)) {
    LOG_WARNING("WARNING: VLC directory not found at: %s", directory.c_str());
    LogPathVariable();
    return;
  }
  LOG_INFO("VLC directory exists");
  const std::string libvlc = directory + "\\libvlc.dll";
  if (CanBeFound(libvlc)) {
    LOG_INFO("libvlc.dll exists at: %s", libvlc.c_str());
  } else {
    LOG_ERROR("ERROR: libvlc.dll not found at: %s", libvlc.c_str());
  }
  const std::string libvlccore = directory + "\\libvlccore.dll";
  if (CanBeFound(libvlccore)) {
    LOG_INFO("libvlccore.dll exists at: %s", libvlccore.c_str());
  } else {
    LOG_ERROR("ERROR: libvlccore.dll not found at: %s", libvlccore.c_str());
  }
}

void LogLibVlcLoad() {
  const HMODULE library = LoadLibraryA("libvlc.dll");
  if (!library) {
    const DWORD error = GetLastError();
    LOG_ERROR("Manually loading libvlc.dll failed with error: %lu", error);
    if (error == ERROR_MOD_NOT_FOUND) LOG_ERROR("ERROR: A required dependency DLL was not found");
    return;
  }
  LOG_INFO("Manually loading libvlc.dll succeeded");
  if (GetProcAddress(library, "libvlc_new")) {
    LOG_INFO("Found libvlc_new function in libvlc.dll");
  } else {
    const DWORD error = GetLastError();
    LOG_ERROR("Failed to find libvlc_new function, error: %lu", error);
  }
  FreeLibrary(library);
}

void LogFlutterBundle() {
  const std::string base = GetExeDirectory();
  const std::string assets = base + "data\\flutter_assets";
  if (Exists(assets)) {
    LOG_INFO("Flutter assets directory found at: %s", assets.c_str());
    LogKernelAndLibrary(assets);
  } else {
    LOG_WARNING("WARNING: Flutter assets directory not found at: %s", assets.c_str());
  }
  const std::string icu = base + "data\\icudtl.dat";
  if (Exists(icu)) {
    LOG_INFO("ICU data file found at: %s (%llu bytes)", icu.c_str(), FileSize(icu));
  } else {
    LOG_WARNING("WARNING: ICU data file not found at: %s", icu.c_str());
  }
}

void LogWindowCreationFailure(HINSTANCE instance, DWORD error) {
  LOG_ERROR("CreateWindowW failed with error: %lu", error);
  if (error == ERROR_INVALID_WINDOW_HANDLE) {
    LOG_ERROR("Invalid window handle - this may be due to an issue with the window class registration");
  }
  const HWND test = CreateWindowExW(0, L"STATIC", L"Test Window", WS_OVERLAPPEDWINDOW, CW_USEDEFAULT, CW_USEDEFAULT,
                                    100, 100, nullptr, nullptr, instance, nullptr);
  if (test) {
    LOG_WARNING("Test window creation succeeded, issue is specific to application window");
    DestroyWindow(test);
  } else {
    const DWORD testError = GetLastError();
    LOG_ERROR("Test window creation also failed with error: %lu", testError);
  }
}

}  // namespace vantro
