// The recorder of the adapter's calls of the system.
#pragma once

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "common/log.h"
#include "tests/support/import_hook.h"
#include "tests/unit/runtime/adapter.h"

namespace vantro::test {

// Records the calls of an adapter and passes them on. Only the wait is replaced, and the clock if a test sets it.
class SystemCalls {
 public:
  SystemCalls() { current = this; }
  ~SystemCalls() { current = nullptr; }
  SystemCalls(const SystemCalls&) = delete;
  SystemCalls& operator=(const SystemCalls&) = delete;

  void Hook(HMODULE adapter) {
    adapter_ = adapter;
    Replace("kernel32.dll", "GetModuleFileNameW", &ModulePath);
    Replace("kernel32.dll", "SetThreadErrorMode", &ErrorMode);
    Replace("kernel32.dll", "LoadLibraryExW", &LoadTheLibrary);
    Replace("kernel32.dll", "CreateEventW", &MakeEvent);
    Replace("kernel32.dll", "CloseHandle", &Close);
    Replace("user32.dll", "MsgWaitForMultipleObjectsEx", &Wait);
    Replace("user32.dll", "PeekMessageW", &Peek);
    Replace("kernel32.dll", "SetEvent", &Signal);
    Replace("kernel32.dll", "GetTickCount64", &Clock);
    Replace("kernel32.dll", "GetEnvironmentVariableW", &ReadVariable);
    Replace("msvcrt.dll", "_wfopen", &Open);
    Replace("msvcrt.dll", "fflush", &Flush);
  }

  std::vector<std::string> lines;
  HANDLE event = nullptr;                     // the one that the adapter made last
  int closed = 0;                             // how often that event was closed
  std::function<DWORD()> waitsFor;            // the result of a wait
  std::function<void()> afterSignal = [] {};  // runs on the thread that signals the event
  std::wstring path;                          // the adapter's path, if it is replaced
  bool pathFails = false;
  DWORD loadError = 0;                // the error of the load, if it is replaced
  std::wstring loaded;                // the path of the last load
  std::optional<ULONGLONG> clock;     // milliseconds
  std::vector<std::string> ofTheLog;  // the calls for the adapter's log

 private:
  VANTRO_PRINTF_FORMAT(2, 3) void Note(const char* format, ...) {
    char text[200];
    va_list values;
    va_start(values, format);
    vsnprintf(text, sizeof text, format, values);
    va_end(values);
    lines.push_back(text);
  }
  template <typename Function>
  void Replace(const char* library, const char* name, Function* replacement) {
    hooks_[name] = std::make_unique<ImportHook>(library, name, replacement, adapter_);
  }
  template <typename Function>
  static Function* Original(const char* name) {
    return current->hooks_.at(name)->Original<Function*>();
  }

  static DWORD WINAPI ModulePath(HMODULE module, LPWSTR path, DWORD room) {
    current->Note("GetModuleFileNameW %s %lu", module == current->adapter_ ? "adapter" : "other", room);
    if (current->pathFails) return 0;
    if (!current->path.empty()) {
      const size_t length = std::min<size_t>(current->path.size(), room);
      std::copy_n(current->path.begin(), length, path);
      return static_cast<DWORD>(length);
    }
    return Original<decltype(GetModuleFileNameW)>("GetModuleFileNameW")(module, path, room);
  }
  static BOOL WINAPI ErrorMode(DWORD mode, LPDWORD former) {
    current->Note("SetThreadErrorMode %lu%s", mode, former ? " keeps the former" : "");
    return Original<decltype(SetThreadErrorMode)>("SetThreadErrorMode")(mode, former);
  }
  static HMODULE WINAPI LoadTheLibrary(LPCWSTR path, HANDLE file, DWORD flags) {
    current->Note("LoadLibraryExW %s %p %lu", std::filesystem::path(path).filename().string().c_str(), file, flags);
    current->loaded = path;
    if (current->loadError != 0) {
      SetLastError(current->loadError);
      return nullptr;
    }
    return Original<decltype(LoadLibraryExW)>("LoadLibraryExW")(path, file, flags);
  }
  static HANDLE WINAPI MakeEvent(LPSECURITY_ATTRIBUTES security, BOOL manual, BOOL set, LPCWSTR name) {
    current->Note("CreateEventW %d %d %d %d", security != nullptr, manual, set, name != nullptr);
    return current->event = Original<decltype(CreateEventW)>("CreateEventW")(security, manual, set, name);
  }
  static BOOL WINAPI Close(HANDLE handle) {
    if (handle == current->event) ++current->closed;
    return Original<decltype(CloseHandle)>("CloseHandle")(handle);
  }
  static BOOL WINAPI Signal(HANDLE handle) {
    const BOOL done = Original<decltype(SetEvent)>("SetEvent")(handle);
    if (handle == current->event) current->afterSignal();
    return done;
  }
  static DWORD WINAPI Wait(DWORD count, const HANDLE* handles, DWORD milliseconds, DWORD wake, DWORD flags) {
    current->Note("MsgWaitForMultipleObjectsEx %lu %s %lu %#lx %#lx", count,
                  *handles == current->event ? "event" : "other", milliseconds, wake, flags);
    return current->waitsFor();
  }
  static BOOL WINAPI Peek(LPMSG message, HWND window, UINT first, UINT last, UINT remove) {
    current->Note("PeekMessageW %d %u %u %#x", window != nullptr, first, last, remove);
    return Original<decltype(PeekMessageW)>("PeekMessageW")(message, window, first, last, remove);
  }
  static ULONGLONG WINAPI Clock() {
    return current->clock ? *current->clock : Original<decltype(GetTickCount64)>("GetTickCount64")();
  }
  static DWORD WINAPI ReadVariable(LPCWSTR name, LPWSTR value, DWORD room) {
    current->ofTheLog.push_back("GetEnvironmentVariableW " + std::string(value ? "value " : "null ") +
                                std::to_string(room));
    return Original<decltype(GetEnvironmentVariableW)>("GetEnvironmentVariableW")(name, value, room);
  }
  static FILE* Open(const wchar_t* path, const wchar_t* mode) {
    current->ofTheLog.push_back("_wfopen");
    return Original<decltype(_wfopen)>("_wfopen")(path, mode);
  }
  static int Flush(FILE* file) {
    current->ofTheLog.push_back("fflush");
    return Original<decltype(fflush)>("fflush")(file);
  }

  static inline SystemCalls* current = nullptr;
  HMODULE adapter_ = nullptr;
  std::map<std::string, std::unique_ptr<ImportHook>> hooks_;
};

// A fresh adapter above the library with event managers, whose calls are recorded.
class SystemCallsTest : public testing::Test {
 protected:
  SystemCallsTest() { published::Reset(); }
  ~SystemCallsTest() override {
    if (void* const real = published::Player(1)) published::SetState(real, published::kStopped);
    if (player_) vlc().libvlc_media_player_release(player_);
    if (instance_) vlc().libvlc_release(instance_);
  }
  const Adapter& vlc() const { return fresh_->functions(); }
  // Loads the adapter, which loads its library.
  void LoadAdapter() {
    fresh_ = std::make_unique<FreshAdapter>(ReadFileBytes(RealLibraryFile(Variant::kEvents)), L"calls", L"libvlc.dll",
                                            [this](HMODULE adapter) { calls_.Hook(adapter); });
  }
  void MakePlayer() {
    LoadAdapter();
    instance_ = vlc().libvlc_new(0, nullptr);
    player_ = vlc().libvlc_media_player_new(instance_);
    calls_.lines.clear();
  }

  std::unique_ptr<FreshAdapter> fresh_;
  SystemCalls calls_;
  libvlc_instance_t* instance_ = nullptr;
  libvlc_media_player_t* player_ = nullptr;
};

}  // namespace vantro::test
